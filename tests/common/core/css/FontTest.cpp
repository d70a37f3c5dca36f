#include "common/core/css/Font.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <type_traits>
#include <typeinfo>

#include "tests/common/core/css/PlainStyle.h"

namespace {

// Has something of its own besides, as a platform's font has.
class NumberedFont : public CSS::Font {
public:
    NumberedFont* Clone() const override { return new NumberedFont(*this); }
    bool fieldsAreInOrder() const { return static_cast<const void*>(&size) < static_cast<const void*>(&family); }
    int number = 0;
};

#ifdef __x86_64__
// The place of a virtual operation among those of its class. A pointer to one is that place in bytes, and one.
template <class Operation> int64_t slotOf(Operation operation) {
    int64_t words[2];
    static_assert(sizeof operation == sizeof words);
    std::memcpy(words, &operation, sizeof words);
    return words[0] / static_cast<int64_t>(sizeof(void*));
}
#endif

}  // namespace

static_assert(std::is_base_of_v<SharedObject, CSS::Font>);
static_assert(std::is_abstract_v<CSS::Font>, "fonts are the platform's");

TEST(Font, IsNormalCourierOfTwelvePointsAtFirst) {
    const PlainFont font;
    EXPECT_EQ(font.refCount, 0);
    EXPECT_EQ(font.Weight(), WQCSSFontWeightNormal);
    EXPECT_EQ(font.Style(), WQCSSFontStyleNormal);
    EXPECT_EQ(font.Size(), 12.0F);
    EXPECT_EQ(font.Family(), "Courier");
}

TEST(Font, KeepsWhatIsSet) {
    PlainFont font;
    font.SetWeight(WQCSSFontWeightBold);
    EXPECT_EQ(font.Weight(), WQCSSFontWeightBold);
    font.SetStyle(WQCSSFontStyleItalic);
    EXPECT_EQ(font.Style(), WQCSSFontStyleItalic);
    font.SetSize(9.5F);
    EXPECT_EQ(font.Size(), 9.5F);
    font.SetFamily("TeX Gyre Heros");
    EXPECT_EQ(font.Family(), "TeX Gyre Heros");
    font.SetWeight(WQCSSFontWeightNormal);
    font.SetStyle(WQCSSFontStyleNormal);
    EXPECT_EQ(font.Weight(), WQCSSFontWeightNormal);
    EXPECT_EQ(font.Style(), WQCSSFontStyleNormal);
}

TEST(Font, CutsTheWeightToFourBits) {
    PlainFont font;
    font.SetWeight(static_cast<WQCSSFontWeight>(0x1F));
    EXPECT_EQ(font.Weight(), 15U);
    EXPECT_EQ(font.Style(), WQCSSFontStyleNormal);
    font.SetWeight(static_cast<WQCSSFontWeight>(700));
    EXPECT_EQ(font.Weight(), 12U);
}

TEST(Font, CutsTheStyleToTwoBits) {
    PlainFont font;
    font.SetStyle(static_cast<WQCSSFontStyle>(0xFFFFFFFF));
    EXPECT_EQ(font.Style(), 3U);
    EXPECT_EQ(font.Weight(), WQCSSFontWeightNormal);
    font.SetStyle(static_cast<WQCSSFontStyle>(5));
    EXPECT_EQ(font.Style(), WQCSSFontStyleItalic);
}

TEST(Font, KeepsAnySize) {
    PlainFont font;
    font.SetSize(-0.0F);
    EXPECT_TRUE(std::signbit(font.Size()));
    font.SetSize(-3);
    EXPECT_EQ(font.Size(), -3.0F);
    font.SetSize(std::numeric_limits<float>::infinity());
    EXPECT_EQ(font.Size(), std::numeric_limits<float>::infinity());
    font.SetSize(std::numeric_limits<float>::quiet_NaN());
    EXPECT_TRUE(std::isnan(font.Size()));
}

TEST(Font, KeepsTheFamilyByteByByte) {
    PlainFont font;
    for (const std::string& family : {std::string(), std::string("a\0b", 3), std::string("\xFF\xC3"), std::string("\"Courier\", serif")}) {
        font.SetFamily(family);
        EXPECT_EQ(font.Family(), family);
    }
}

TEST(Font, GivesACopyOfItsFamily) {
    PlainFont font;
    std::string family = font.Family();
    family += " New";
    EXPECT_EQ(font.Family(), "Courier");
    font.SetFamily(family);
    family.clear();
    EXPECT_EQ(font.Family(), "Courier New");
}

TEST(Font, ACloneHasTheSameFieldsAndACountOfZero) {
    const SharedPtr<PlainFont> font(new PlainFont);
    font->SetWeight(WQCSSFontWeightBold);
    font->SetStyle(WQCSSFontStyleItalic);
    font->SetSize(17);
    font->SetFamily("Serif");
    CSS::Font* const clone = font->Clone();
    EXPECT_EQ(clone->refCount, 0);
    const SharedPtr<CSS::Font> holder(clone);
    EXPECT_NE(clone, font.Get());
    EXPECT_EQ(clone->Weight(), WQCSSFontWeightBold);
    EXPECT_EQ(clone->Style(), WQCSSFontStyleItalic);
    EXPECT_EQ(clone->Size(), 17.0F);
    EXPECT_EQ(clone->Family(), "Serif");
    EXPECT_EQ(font->refCount, 1);
}

TEST(Font, ACloneIsOfTheSameClass) {
    NumberedFont font;
    font.number = 42;
    const CSS::Font& base = font;
    const SharedPtr<CSS::Font> clone(base.Clone());
    const CSS::Font& cloned = *clone;
    ASSERT_EQ(typeid(cloned), typeid(NumberedFont));
    EXPECT_EQ(static_cast<const NumberedFont&>(cloned).number, 42);
}

TEST(Font, ACloneChangesByItself) {
    PlainFont font;
    const SharedPtr<CSS::Font> clone(font.Clone());
    clone->SetWeight(WQCSSFontWeightBold);
    clone->SetStyle(WQCSSFontStyleItalic);
    clone->SetSize(17);
    clone->SetFamily("Serif");
    EXPECT_EQ(font.Weight(), WQCSSFontWeightNormal);
    EXPECT_EQ(font.Style(), WQCSSFontStyleNormal);
    EXPECT_EQ(font.Size(), 12.0F);
    EXPECT_EQ(font.Family(), "Courier");
}

TEST(Font, HasItsSizeBeforeItsFamily) { EXPECT_TRUE(NumberedFont().fieldsAreInOrder()); }

#ifdef __x86_64__
TEST(Font, HasItsOperationsInOrder) {
    int64_t next = 2;  // behind the two destructors
    EXPECT_EQ(slotOf(&CSS::Font::Clone), next++);
    EXPECT_EQ(slotOf(&CSS::Font::Weight), next++);
    EXPECT_EQ(slotOf(&CSS::Font::SetWeight), next++);
    EXPECT_EQ(slotOf(&CSS::Font::Size), next++);
    EXPECT_EQ(slotOf(&CSS::Font::SetSize), next++);
    EXPECT_EQ(slotOf(&CSS::Font::Style), next++);
    EXPECT_EQ(slotOf(&CSS::Font::SetStyle), next++);
    EXPECT_EQ(slotOf(&CSS::Font::Family), next++);
    EXPECT_EQ(slotOf(&CSS::Font::SetFamily), next++);
}
#endif
