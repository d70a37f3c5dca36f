#include "platform/Faces.h"

#include <gtest/gtest.h>

using wq::Face;

namespace {

// A face named by its path, regular unless a test says otherwise.
Face face(const char* path) {
    Face made;
    made.path = path;
    made.format = "CFF";
    return made;
}
Face italic(Face made) {
    made.isItalic = true;
    return made;
}
Face weighing(double weight, Face made) {
    made.weight = weight;
    return made;
}
Face wide(double width, Face made) {
    made.width = width;
    return made;
}
Face variable(Face made) {
    made.isVariable = true;
    return made;
}
Face in(const char* format, Face made) {
    made.format = format;
    return made;
}
Face at(int index, Face made) {
    made.index = index;
    return made;
}

// The path of the nearest of two faces, whichever comes first.
std::string nearest(const Face& one, const Face& other, bool isItalic = false, bool isBold = false) {
    const std::vector<Face> faces{one, other}, turned{other, one};
    EXPECT_EQ(wq::nearestFace(faces, isItalic, isBold)->path, wq::nearestFace(turned, isItalic, isBold)->path);
    return wq::nearestFace(faces, isItalic, isBold)->path;
}

}  // namespace

TEST(NearestFace, IsNullWithoutFaces) { EXPECT_EQ(wq::nearestFace({}, false, false), nullptr); }

TEST(NearestFace, IsItalicAsAskedBeforeAllElse) {
    const Face good = face("upright"), poor = italic(wide(50, weighing(200, variable(in("WOFF", face("italic"))))));
    EXPECT_EQ(nearest(good, poor, true), "italic");
    EXPECT_EQ(nearest(italic(good), wide(50, face("poor"))), "poor");
}

TEST(NearestFace, HasTheWidthNearestToNormalBeforeTheWeight) {
    EXPECT_EQ(nearest(wide(75, weighing(200, face("narrow"))), face("normal"), false, true), "normal");
    EXPECT_EQ(nearest(wide(87, face("semicondensed")), wide(75, face("condensed"))), "semicondensed");
    EXPECT_EQ(nearest(wide(87, face("semicondensed")), wide(112, face("semiexpanded"))), "semiexpanded");
}

TEST(NearestFace, IsBoldAsAskedBeforeTheWeightItself) {
    EXPECT_EQ(nearest(weighing(180, face("semibold")), weighing(179, face("lighter")), false, true), "semibold");
    EXPECT_EQ(nearest(weighing(180, face("semibold")), weighing(0, face("thin"))), "thin");
    EXPECT_EQ(nearest(weighing(210, face("black")), weighing(100, face("medium")), false, true), "black");
}

TEST(NearestFace, HasTheWeightNearestToRegularOrBold) {
    EXPECT_EQ(nearest(weighing(100, face("medium")), weighing(50, face("light"))), "medium");
    EXPECT_EQ(nearest(weighing(80, face("regular")), weighing(75, face("book"))), "regular");
    EXPECT_EQ(nearest(weighing(180, face("semibold")), weighing(205, face("extrabold")), false, true), "extrabold");
    EXPECT_EQ(nearest(weighing(100, face("medium")), weighing(50, face("light")), false, true), "medium");
}

TEST(NearestFace, IsRatherNotVariable) { EXPECT_EQ(nearest(variable(face("a")), in("WOFF", face("fixed"))), "fixed"); }

TEST(NearestFace, IsCFFBeforeTrueTypeBeforeOthersBeforeWOFF) {
    EXPECT_EQ(nearest(face("z"), in("TrueType", face("a"))), "z");
    EXPECT_EQ(nearest(in("TrueType", face("z")), in("Type 1", face("a"))), "z");
    EXPECT_EQ(nearest(in("Type 1", face("z")), in("WOFF", face("a"))), "z");
}

TEST(NearestFace, IsTheFirstByPathAndIndexAmongEquals) {
    EXPECT_EQ(nearest(face("b"), face("a")), "a");
    EXPECT_EQ(wq::nearestFace({at(1, face("a")), at(0, face("a"))}, false, false)->index, 0);
}

TEST(Face, IsBoldFromSemiboldOn) {
    EXPECT_TRUE(weighing(180, face("semibold")).isBold());
    EXPECT_FALSE(weighing(179.9, face("lighter")).isBold());
}

TEST(FontFamilies, HoldTheirFaces) {
    const auto& faces = wq::fontFamilies().at("DejaVu Sans");
    ASSERT_EQ(faces.size(), 2u);
    for (const Face& found : faces) {
        EXPECT_EQ(found.family, "DejaVu Sans");
        EXPECT_EQ(found.format, "TrueType");
        EXPECT_EQ(found.width, 100);
        EXPECT_EQ(found.weight, found.path.ends_with("/DejaVuSans-Bold.ttf") ? 200 : 80);
        EXPECT_FALSE(found.isItalic);
        EXPECT_FALSE(found.isVariable);
    }
}

TEST(FontFamilies, KnowNarrowFaces) {
    for (const Face& found : wq::fontFamilies().at("TeX Gyre Heros Cn")) EXPECT_EQ(found.width, 75);
}
