#include "platform/NSColor.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/platform/Raised.h"

namespace {

const auto calibrated = NSColor::colorWithCalibratedRed_green_blue_alpha;
const auto device = NSColor::colorWithDeviceRed_green_blue_alpha;
const auto sRGB = NSColor::colorWithSRGBRed_green_blue_alpha;

void expectComponents(const Ref<NSColor>& color, double red, double green, double blue, double alpha) {
    EXPECT_EQ(color->redComponent(), red);
    EXPECT_EQ(color->greenComponent(), green);
    EXPECT_EQ(color->blueComponent(), blue);
    EXPECT_EQ(color->alphaComponent(), alpha);
}

}  // namespace

TEST(NSColorSpace, IsOneOfThree) {
    EXPECT_EQ(NSColorSpace::genericRGBColorSpace().localizedName(), u"Generic RGB");
    EXPECT_EQ(NSColorSpace::deviceRGBColorSpace().localizedName(), u"Device RGB");
    EXPECT_EQ(NSColorSpace::sRGBColorSpace().localizedName(), u"sRGB");
}

TEST(NSColorSpace, EqualsItselfAlone) {
    EXPECT_TRUE(NSColorSpace::sRGBColorSpace() == NSColorSpace::sRGBColorSpace());
    EXPECT_FALSE(NSColorSpace::sRGBColorSpace() == NSColorSpace::deviceRGBColorSpace());
    EXPECT_FALSE(NSColorSpace::deviceRGBColorSpace() == NSColorSpace::genericRGBColorSpace());
    EXPECT_FALSE(NSColorSpace::genericRGBColorSpace() == NSColorSpace());
}

TEST(NSColorSpace, IsNullAtFirst) {
    EXPECT_FALSE(static_cast<bool>(NSColorSpace()));
    EXPECT_TRUE(static_cast<bool>(NSColorSpace::genericRGBColorSpace()));
    EXPECT_EQ(NSColorSpace().localizedName(), nullptr);
}

TEST(NSColor, AnswersItsComponents) {
    expectComponents(calibrated(0.25, 0.5, 0.75, 1), 0.25, 0.5, 0.75, 1);
    expectComponents(device(0.1, 0.2, 0.3, 0.4), 0.1, 0.2, 0.3, 0.4);
    expectComponents(sRGB(1, 0, 0.5, 0), 1, 0, 0.5, 0);
}

TEST(NSColor, KnowsItsSpace) {
    EXPECT_TRUE(calibrated(0, 0, 0, 1)->colorSpace() == NSColorSpace::genericRGBColorSpace());
    EXPECT_TRUE(device(0, 0, 0, 1)->colorSpace() == NSColorSpace::deviceRGBColorSpace());
    EXPECT_TRUE(sRGB(0, 0, 0, 1)->colorSpace() == NSColorSpace::sRGBColorSpace());
}

TEST(NSColor, BringsComponentsBetweenZeroAndOne) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const auto& made : {calibrated, device, sRGB}) {
        expectComponents(made(-0.5, 1.5, -infinity, infinity), 0, 1, 0, 1);
        expectComponents(made(std::nan(""), 0, 1, 0.999), 0, 0, 1, 0.999);
    }
}

TEST(NSColor, AnswersAllComponentsAtOnce) {
    double red = -1, green = -1, blue = -1, alpha = -1;
    device(0.1, 0.2, 0.3, 0.4)->getRed_green_blue_alpha(&red, &green, &blue, &alpha);
    EXPECT_EQ(red, 0.1);
    EXPECT_EQ(green, 0.2);
    EXPECT_EQ(blue, 0.3);
    EXPECT_EQ(alpha, 0.4);
}

TEST(NSColor, PassesOverNullPointers) {
    double green = -1;
    const auto color = device(0.1, 0.2, 0.3, 0.4);
    color->getRed_green_blue_alpha(nullptr, &green, nullptr, nullptr);
    EXPECT_EQ(green, 0.2);
    color->getRed_green_blue_alpha(nullptr, nullptr, nullptr, nullptr);
}

TEST(NSColor, TheColorOfTextIsOneObject) {
    const auto color = NSColor::textColor();
    ASSERT_NE(color, nullptr);
    EXPECT_EQ(NSColor::textColor(), color);
    EXPECT_NE(sRGB(0, 0, 0, 1), color);
}

TEST(NSColor, TheColorOfTextHasNoComponents) {
    const auto color = NSColor::textColor();
    double red = -1;
    EXPECT_EQ(test::nameRaised([&] { color->redComponent(); }), u"NSInvalidArgumentException");
    EXPECT_EQ(test::nameRaised([&] { color->greenComponent(); }), u"NSInvalidArgumentException");
    EXPECT_EQ(test::nameRaised([&] { color->blueComponent(); }), u"NSInvalidArgumentException");
    EXPECT_EQ(test::nameRaised([&] { color->alphaComponent(); }), u"NSInvalidArgumentException");
    EXPECT_EQ(test::nameRaised([&] { color->colorSpace(); }), u"NSInvalidArgumentException");
    EXPECT_EQ(test::nameRaised([&] { color->getRed_green_blue_alpha(&red, nullptr, nullptr, nullptr); }), u"NSInvalidArgumentException");
    EXPECT_EQ(red, -1);
}

TEST(NSColor, TheColorOfTextBecomesOpaqueBlack) {
    const auto black = NSColor::textColor()->colorUsingType(0);
    expectComponents(black, 0, 0, 0, 1);
    EXPECT_TRUE(black->colorSpace() == NSColorSpace::sRGBColorSpace());
}

TEST(NSColor, AComponentColorIsItsOwnComponentColor) {
    const auto color = calibrated(0.1, 0.2, 0.3, 0.4);
    EXPECT_EQ(color->colorUsingType(0), color);
}

TEST(NSColor, OfOtherTypesThereIsOnlyTheColorOfTextItself) {
    EXPECT_EQ(NSColor::textColor()->colorUsingType(2), NSColor::textColor());
    for (const long type : {-1L, 1L, 3L}) EXPECT_EQ(NSColor::textColor()->colorUsingType(type), nullptr) << type;
    for (const long type : {-1L, 1L, 2L, 3L}) EXPECT_EQ(sRGB(0, 0, 0, 1)->colorUsingType(type), nullptr) << type;
}

TEST(NSColor, KeepsItsNumbersInAnotherSpace) {
    const auto color = device(0.1, 0.2, 0.3, 0.4);
    const auto converted = color->colorUsingColorSpace(NSColorSpace::genericRGBColorSpace());
    expectComponents(converted, 0.1, 0.2, 0.3, 0.4);
    EXPECT_TRUE(converted->colorSpace() == NSColorSpace::genericRGBColorSpace());
    EXPECT_TRUE(color->colorSpace() == NSColorSpace::deviceRGBColorSpace());
}

TEST(NSColor, IsItselfInItsOwnSpace) {
    const auto color = device(0.1, 0.2, 0.3, 0.4);
    EXPECT_EQ(color->colorUsingColorSpace(NSColorSpace::deviceRGBColorSpace()), color);
}

TEST(NSColor, TheColorOfTextIsBlackInAnySpace) {
    const auto black = NSColor::textColor()->colorUsingColorSpace(NSColorSpace::genericRGBColorSpace());
    expectComponents(black, 0, 0, 0, 1);
    EXPECT_TRUE(black->colorSpace() == NSColorSpace::genericRGBColorSpace());
}

TEST(NSColor, HasNothingInTheNullSpace) {
    EXPECT_EQ(device(0, 0, 0, 1)->colorUsingColorSpace({}), nullptr);
    EXPECT_EQ(NSColor::textColor()->colorUsingColorSpace({}), nullptr);
}

TEST(NSColor, EqualsAColorOfTheSameSpaceAndComponents) {
    const auto color = device(0.1, 0.2, 0.3, 0.4);
    EXPECT_TRUE(color->isEqual(color));
    EXPECT_TRUE(color->isEqual(device(0.1, 0.2, 0.3, 0.4)));
    EXPECT_TRUE(device(2, -1, 0, 1)->isEqual(device(1, 0, 0, 1)));
}

TEST(NSColor, DiffersInEachComponentAndInSpace) {
    const auto color = device(0.1, 0.2, 0.3, 0.4);
    EXPECT_FALSE(color->isEqual(device(0, 0.2, 0.3, 0.4)));
    EXPECT_FALSE(color->isEqual(device(0.1, 0, 0.3, 0.4)));
    EXPECT_FALSE(color->isEqual(device(0.1, 0.2, 0, 0.4)));
    EXPECT_FALSE(color->isEqual(device(0.1, 0.2, 0.3, 0)));
    EXPECT_FALSE(color->isEqual(sRGB(0.1, 0.2, 0.3, 0.4)));
}

TEST(NSColor, TheColorOfTextEqualsItselfAlone) {
    EXPECT_TRUE(NSColor::textColor()->isEqual(NSColor::textColor()));
    EXPECT_FALSE(NSColor::textColor()->isEqual(NSColor::textColor()->colorUsingType(0)));
    EXPECT_FALSE(sRGB(0, 0, 0, 1)->isEqual(NSColor::textColor()));
}

TEST(NSColor, NullHasNoColorAndEqualsNothing) {
    const Ref<NSColor> null;
    expectComponents(null, 0, 0, 0, 0);
    EXPECT_FALSE(static_cast<bool>(null->colorSpace()));
    EXPECT_EQ(null->colorUsingType(0), nullptr);
    EXPECT_EQ(null->colorUsingType(2), nullptr);
    EXPECT_EQ(null->colorUsingColorSpace(NSColorSpace::sRGBColorSpace()), nullptr);
    EXPECT_FALSE(null->isEqual(null));
    EXPECT_FALSE(null->isEqual(sRGB(0, 0, 0, 0)));
    EXPECT_FALSE(sRGB(0, 0, 0, 0)->isEqual(null));
    double alpha = -1;
    null->getRed_green_blue_alpha(nullptr, nullptr, nullptr, &alpha);
    EXPECT_EQ(alpha, 0);
}
