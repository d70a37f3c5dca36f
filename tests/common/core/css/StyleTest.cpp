#include "common/core/css/Style.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>
#include <new>
#include <string>
#include <type_traits>
#include <vector>

#include "tests/common/core/css/PlainStyle.h"

using CSS::BoxDimensions;
using CSS::CSSColor;
using CSS::Style;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

SharedPtr<Style> newStyle() { return new PlainStyle; }

// Writes down what is asked of it, and the end of it.
class LoggingFont : public PlainFont {
public:
    explicit LoggingFont(std::vector<std::string>& aLog) : log(aLog) {}
    ~LoggingFont() override { log.push_back("~Font"); }
    LoggingFont* Clone() const override {
        log.push_back("Clone");
        return new LoggingFont(*this);
    }
    void SetWeight(WQCSSFontWeight newWeight) override {
        log.push_back("SetWeight");
        PlainFont::SetWeight(newWeight);
    }
    void SetSize(float newSize) override {
        log.push_back("SetSize");
        PlainFont::SetSize(newSize);
    }
    void SetStyle(WQCSSFontStyle newStyle) override {
        log.push_back("SetStyle");
        PlainFont::SetStyle(newStyle);
    }
    void SetFamily(const std::string& newFamily) override {
        log.push_back("SetFamily");
        PlainFont::SetFamily(newFamily);
    }

private:
    std::vector<std::string>& log;
};

struct LoggingBox : BoxDimensions {
    explicit LoggingBox(std::vector<std::string>& aLog) : log(aLog) {}
    ~LoggingBox() override { log.push_back("~BoxDimensions"); }
    std::vector<std::string>& log;
};

SharedPtr<Style> newStyleWithFont() {
    SharedPtr<Style> style = newStyle();
    style->SetFont(new PlainFont);
    return style;
}

struct LengthOfBox {
    const char* name;
    _WQCSSLength (Style::*get)() const;
    void (Style::*set)(_WQCSSLength);
    _WQCSSLength BoxDimensions::*field;
};
constexpr LengthOfBox lengthsOfBox[] = {
    {"MarginLeft", &Style::GetMarginLeft, &Style::SetMarginLeft, &BoxDimensions::marginLeft},
    {"MarginRight", &Style::GetMarginRight, &Style::SetMarginRight, &BoxDimensions::marginRight},
    {"MarginTop", &Style::GetMarginTop, &Style::SetMarginTop, &BoxDimensions::marginTop},
    {"MarginBottom", &Style::GetMarginBottom, &Style::SetMarginBottom, &BoxDimensions::marginBottom},
    {"PaddingLeft", &Style::GetPaddingLeft, &Style::SetPaddingLeft, &BoxDimensions::paddingLeft},
    {"PaddingRight", &Style::GetPaddingRight, &Style::SetPaddingRight, &BoxDimensions::paddingRight},
    {"PaddingTop", &Style::GetPaddingTop, &Style::SetPaddingTop, &BoxDimensions::paddingTop},
    {"PaddingBottom", &Style::GetPaddingBottom, &Style::SetPaddingBottom, &BoxDimensions::paddingBottom},
    {"Width", &Style::GetWidth, &Style::SetWidth, &BoxDimensions::width},
};

struct BorderOfBox {
    const char* name;
    _WQCSSBorder (Style::*get)() const;
    void (Style::*set)(_WQCSSBorder);
    _WQCSSBorder BoxDimensions::*field;
};
constexpr BorderOfBox bordersOfBox[] = {
    {"BorderLeft", &Style::GetBorderLeft, &Style::SetBorderLeft, &BoxDimensions::borderLeft},
    {"BorderRight", &Style::GetBorderRight, &Style::SetBorderRight, &BoxDimensions::borderRight},
    {"BorderTop", &Style::GetBorderTop, &Style::SetBorderTop, &BoxDimensions::borderTop},
    {"BorderBottom", &Style::GetBorderBottom, &Style::SetBorderBottom, &BoxDimensions::borderBottom},
};

// Every field of the box, as one text to compare.
std::string printed(const BoxDimensions& box) {
    std::string text;
    for (const auto& row : lengthsOfBox) text += std::to_string((box.*row.field).value) + "/" + std::to_string((box.*row.field).type) + " ";
    for (const auto& row : bordersOfBox)
        text += std::to_string((box.*row.field).width) + "/" + std::to_string((box.*row.field).reserved) + " ";
    return text + std::to_string(box.height.value) + "/" + std::to_string(box.height.type);
}
const std::string defaultBox =
    "0.000000/1 0.000000/1 0.000000/1 0.000000/1 0.000000/1 0.000000/1 0.000000/1 0.000000/1 0.000000/4 0/0 0/0 0/0 0/0 0.000000/4";

// Gives each of the thirteen fields of the box a value of its own.
void fill(Style& style) {
    float value = 1;
    for (const auto& row : lengthsOfBox) (style.*row.set)({value++, WQCSSLengthTypePercentage});
    for (const auto& row : bordersOfBox) (style.*row.set)({static_cast<int32_t>(value++), 7});
}
const std::string filledBox =
    "1.000000/3 2.000000/3 3.000000/3 4.000000/3 5.000000/3 6.000000/3 7.000000/3 8.000000/3 9.000000/3 10/7 11/7 12/7 13/7 0.000000/4";

// The fields of a few bits each, by their setters.
template <class Enumeration> struct Keyword {
    Enumeration (Style::*get)() const;
    void (Style::*set)(Enumeration);
};
constexpr Keyword<WQCSSDisplay> displayKeyword{&Style::GetDisplay, &Style::SetDisplay};
constexpr Keyword<WQCSSVerticalAlign> verticalAlign{&Style::GetVerticalAlign, &Style::SetVerticalAlign};
constexpr Keyword<WQCSSTextDecoration> textDecoration{&Style::GetTextDecoration, &Style::SetTextDecoration};
constexpr Keyword<WQCSSPageBreakAfter> pageBreakAfter{&Style::GetPageBreakAfter, &Style::SetPageBreakAfter};
constexpr Keyword<WQCSSPageBreakBefore> pageBreakBefore{&Style::GetPageBreakBefore, &Style::SetPageBreakBefore};
constexpr Keyword<WQCSSTextAlign> textAlign{&Style::GetTextAlign, &Style::SetTextAlign};
constexpr Keyword<WQCSSListStyleType> listStyleType{&Style::GetListStyleType, &Style::SetListStyleType};
constexpr Keyword<WQCSSFontStyle> fontStyle{&Style::GetFontStyle, &Style::SetFontStyle};
constexpr Keyword<WQCSSFontWeight> fontWeight{&Style::GetFontWeight, &Style::SetFontWeight};

// What is left of a number that the field has no room for.
template <class Enumeration> uint32_t kept(const Keyword<Enumeration>& keyword, uint32_t number) {
    const SharedPtr<Style> style = newStyleWithFont();
    ((*style).*keyword.set)(static_cast<Enumeration>(number));
    return ((*style).*keyword.get)();
}

// The keywords are numbered as they stand here, and a style keeps each of them.
template <class Enumeration, size_t count> void expectNumbers(const Keyword<Enumeration>& keyword, const Enumeration (&values)[count]) {
    for (uint32_t number = 0; number < count; ++number) {
        SCOPED_TRACE(number);
        EXPECT_EQ(values[number], number);
        EXPECT_EQ(kept(keyword, values[number]), number);
    }
}

// All the packed fields: display, position, vertical align, text decoration, page breaks, text align, list style.
std::vector<uint32_t> keywordsOf(const Style& style) {
    return {style.GetDisplay(),        style.GetPosition(),        style.GetVerticalAlign(), style.GetTextDecoration(),
            style.GetPageBreakAfter(), style.GetPageBreakBefore(), style.GetTextAlign(),     style.GetListStyleType()};
}

#ifdef __x86_64__
// The place of a virtual operation among those of its class. A pointer to one is that place in bytes, and one.
template <class Operation> int64_t slotOf(Operation operation) {
    int64_t words[2];
    static_assert(sizeof operation == sizeof words);
    std::memcpy(words, &operation, sizeof words);
    return words[0] / static_cast<int64_t>(sizeof(void*));
}

template <class... Operations> std::vector<int64_t> slotsOf(Operations... operations) { return {slotOf(operations)...}; }
#endif

}  // namespace

static_assert(std::is_base_of_v<SharedObject, Style>);
static_assert(!std::is_default_constructible_v<Style>, "styles are the platform's");
static_assert(sizeof(CSS::NonInheritedProperties) == 2);

// The enumerations

TEST(StyleTypes, DisplayIsBlockInlineOrNone) { expectNumbers(displayKeyword, {WQCSSDisplayBlock, WQCSSDisplayInline, WQCSSDisplayNone}); }
TEST(StyleTypes, FontStyleIsNormalOrItalic) { expectNumbers(fontStyle, {WQCSSFontStyleNormal, WQCSSFontStyleItalic}); }
TEST(StyleTypes, FontWeightIsNormalOrBold) { expectNumbers(fontWeight, {WQCSSFontWeightNormal, WQCSSFontWeightBold}); }
TEST(StyleTypes, TextAlignIsLeftRightCenterOrJustify) {
    expectNumbers(textAlign, {WQCSSTextAlignLeft, WQCSSTextAlignRight, WQCSSTextAlignCenter, WQCSSTextAlignJustify});
}
TEST(StyleTypes, TextDecorationIsNoneOrUnderline) {
    expectNumbers(textDecoration, {WQCSSTextDecorationNone, WQCSSTextDecorationUnderline});
}
TEST(StyleTypes, VerticalAlignIsTopMiddleOrBottom) {
    expectNumbers(verticalAlign, {WQCSSVerticalAlignTop, WQCSSVerticalAlignMiddle, WQCSSVerticalAlignBottom});
}
TEST(StyleTypes, PageBreakAfterIsAutoAlwaysOrInherit) {
    expectNumbers(pageBreakAfter, {WQCSSPageBreakAfterAuto, WQCSSPageBreakAfterAlways, WQCSSPageBreakAfterInherit});
}
TEST(StyleTypes, PageBreakBeforeIsAutoAlwaysOrInherit) {
    expectNumbers(pageBreakBefore, {WQCSSPageBreakBeforeAuto, WQCSSPageBreakBeforeAlways, WQCSSPageBreakBeforeInherit});
}
TEST(StyleTypes, ListStyleTypesAreSeventeen) {
    expectNumbers(
        listStyleType, {
                           WQCSSListStyleTypeBox,
                           WQCSSListStyleTypeCheck,
                           WQCSSListStyleTypeCircle,
                           WQCSSListStyleTypeDiamond,
                           WQCSSListStyleTypeDisc,
                           WQCSSListStyleTypeHyphen,
                           WQCSSListStyleTypeSquare,
                           WQCSSListStyleTypeLowerHexadecimal,
                           WQCSSListStyleTypeUpperHexadecimal,
                           WQCSSListStyleTypeOctal,
                           WQCSSListStyleTypeLowerAlpha,
                           WQCSSListStyleTypeLowerLatin,
                           WQCSSListStyleTypeUpperAlpha,
                           WQCSSListStyleTypeUpperLatin,
                           WQCSSListStyleTypeLowerRoman,
                           WQCSSListStyleTypeUpperRoman,
                           WQCSSListStyleTypeDecimal,
                       });
}
TEST(StyleTypes, LengthTypesLeaveOutTwo) {
    EXPECT_EQ(WQCSSLengthTypeNone, 0);
    EXPECT_EQ(WQCSSLengthTypeAbsolute, 1);
    EXPECT_EQ(WQCSSLengthTypePercentage, 3);
    EXPECT_EQ(WQCSSLengthTypeAuto, 4);
}
TEST(StyleTypes, LengthUnitsBeginWithOne) {
    EXPECT_EQ(WQCSSLengthUnitsPixel, 1U);
    EXPECT_EQ(WQCSSLengthUnitsCentimetre, 2U);
    EXPECT_EQ(WQCSSLengthUnitsMillimetre, 3U);
    EXPECT_EQ(WQCSSLengthUnitsInch, 4U);
    EXPECT_EQ(WQCSSLengthUnitsPoint, 5U);
    EXPECT_EQ(WQCSSLengthUnitsPica, 6U);
}

// A new style

TEST(Style, HasTheDefaultsOfEveryFieldAtFirst) {
    const SharedPtr<Style> style = newStyle();
    EXPECT_EQ(style->GetColor().rgbaValue, 0xFF000000);
    EXPECT_EQ(style->GetDisplay(), WQCSSDisplayInline);
    EXPECT_EQ(style->GetPosition(), 0U);
    EXPECT_EQ(style->GetVerticalAlign(), WQCSSVerticalAlignMiddle);
    EXPECT_EQ(style->GetTextDecoration(), WQCSSTextDecorationNone);
    EXPECT_EQ(style->GetPageBreakAfter(), WQCSSPageBreakAfterAuto);
    EXPECT_EQ(style->GetPageBreakBefore(), WQCSSPageBreakBeforeAuto);
    EXPECT_EQ(style->GetTextAlign(), WQCSSTextAlignLeft);
    EXPECT_EQ(style->GetListStyleType(), WQCSSListStyleTypeDisc);
    EXPECT_EQ(style->GetLineHeight(), 1.0F);
    EXPECT_EQ(style->GetTextIndent(), (_WQCSSLength{0, 1}));
    EXPECT_EQ(style->GetWidth(), (_WQCSSLength{0, 4}));
    EXPECT_EQ(style->GetHeight(), (_WQCSSLength{0, 4}));
    for (const auto& row : lengthsOfBox) EXPECT_EQ(((*style).*row.get)(), (_WQCSSLength{0, row.field == &BoxDimensions::width ? 4 : 1}));
    for (const auto& row : bordersOfBox) EXPECT_EQ(((*style).*row.get)(), (_WQCSSBorder{0, 0}));
    EXPECT_EQ(printed(*style->dimensions), defaultBox);
    EXPECT_EQ(style->font.Get(), nullptr);
}

TEST(Style, BelongsToNobodyAtFirst) { EXPECT_EQ(PlainStyle().refCount, 0); }

TEST(Style, LeavesNothingOfItsStorageUninitialized) {
    alignas(PlainStyle) std::byte storage[sizeof(PlainStyle)];
    for (const int byte : {0x00, 0xFF}) {
        std::memset(storage, byte, sizeof storage);
        Style* const style = new (storage) PlainStyle;
        EXPECT_THAT(keywordsOf(*style), ElementsAre(1, 0, 1, 0, 0, 0, 0, 4));
        EXPECT_EQ(style->GetColor().rgbaValue, 0xFF000000);
        EXPECT_EQ(style->GetLineHeight(), 1.0F);
        EXPECT_EQ(style->GetTextIndent(), (_WQCSSLength{0, 1}));
        EXPECT_EQ(style->font.Get(), nullptr);
        EXPECT_EQ(style->refCount, 0);
        style->~Style();
    }
}

TEST(Style, SharesTheDefaultBoxWithEveryOtherNewStyle) {
    const SharedPtr<Style> first = newStyle();
    EXPECT_EQ(first->dimensions->refCount, 2);  // the default's own, and the style's
    const SharedPtr<Style> second = newStyle();
    EXPECT_EQ(first->dimensions.Get(), second->dimensions.Get());
    EXPECT_EQ(first->dimensions->refCount, 3);
}

TEST(Style, LeavesTheDefaultBoxToTheStylesAfterIt) {
    const BoxDimensions* const box = newStyle()->dimensions.Get();
    const SharedPtr<Style> later = newStyle();
    EXPECT_EQ(later->dimensions.Get(), box);
    EXPECT_EQ(later->dimensions->refCount, 2);
}

TEST(Style, DropsTheBoxBeforeTheFont) {
    std::vector<std::string> log;
    {
        const SharedPtr<Style> style = newStyle();
        style->SetFont(new LoggingFont(log));
        style->dimensions = new LoggingBox(log);
    }
    EXPECT_THAT(log, ElementsAre("~BoxDimensions", "~Font"));
}

TEST(Style, HasItsFieldsInOrder) {
    const PlainStyle style;
    const std::vector<const void*> fields{&style.refCount, &style.inherited, &style.font, &style.nonInherited, &style.dimensions};
    for (size_t i = 1; i < fields.size(); ++i) EXPECT_LT(fields[i - 1], fields[i]);
    EXPECT_EQ(offsetof(CSS::InheritedProperties, color), 0U);
    EXPECT_LT(offsetof(CSS::InheritedProperties, color), offsetof(CSS::InheritedProperties, textIndent));
    EXPECT_LT(offsetof(CSS::InheritedProperties, textIndent), offsetof(CSS::InheritedProperties, lineHeight));
}

TEST(Style, PacksTheFieldsThatAreNotInheritedFromTheLowestBit) {
    const auto wordOf = [](const CSS::NonInheritedProperties& fields) {
        uint16_t word;
        std::memcpy(&word, &fields, sizeof word);
        return word & 0x7FFF;  // the top bit is nobody's
    };
    CSS::NonInheritedProperties fields;
    EXPECT_EQ(wordOf(fields), 0x0101);  // inline, middle
    fields.display = 0;
    fields.verticalAlign = 0;
    EXPECT_EQ(wordOf(fields), 0);
    fields.display = 31;
    EXPECT_EQ(wordOf(fields), 0x001F);
    fields.position = 7;
    EXPECT_EQ(wordOf(fields), 0x00FF);
    fields.verticalAlign = 3;
    EXPECT_EQ(wordOf(fields), 0x03FF);
    fields.textDecoration = 1;
    EXPECT_EQ(wordOf(fields), 0x07FF);
    fields.pageBreakAfter = 3;
    EXPECT_EQ(wordOf(fields), 0x1FFF);
    fields.pageBreakBefore = 3;
    EXPECT_EQ(wordOf(fields), 0x7FFF);
}

#ifdef __x86_64__
TEST(Style, HasItsOperationsInOrder) {
    const std::vector<int64_t> slots = slotsOf(
        &Style::InheritPropertiesFrom, &Style::GetColor, &Style::SetColor, &Style::SetFont, &Style::GetDisplay, &Style::SetDisplay,
        &Style::GetPosition, &Style::GetFontStyle, &Style::SetFontStyle, &Style::GetFontWeight, &Style::SetFontWeight,
        &Style::GetFontFamily, &Style::SetFontFamily, &Style::GetFontSize, &Style::SetFontSize, &Style::GetLineHeight,
        &Style::SetLineHeight, &Style::GetListStyleType, &Style::SetListStyleType, &Style::GetMarginLeft, &Style::SetMarginLeft,
        &Style::GetMarginRight, &Style::SetMarginRight, &Style::GetMarginTop, &Style::SetMarginTop, &Style::GetMarginBottom,
        &Style::SetMarginBottom, &Style::GetBorderLeft, &Style::SetBorderLeft, &Style::GetBorderRight, &Style::SetBorderRight,
        &Style::GetBorderTop, &Style::SetBorderTop, &Style::GetBorderBottom, &Style::SetBorderBottom, &Style::GetPaddingLeft,
        &Style::SetPaddingLeft, &Style::GetPaddingRight, &Style::SetPaddingRight, &Style::GetPaddingTop, &Style::SetPaddingTop,
        &Style::GetPaddingBottom, &Style::SetPaddingBottom, &Style::GetTextAlign, &Style::SetTextAlign, &Style::GetTextDecoration,
        &Style::SetTextDecoration, &Style::GetTextIndent, &Style::SetTextIndent, &Style::GetHeight, &Style::GetWidth, &Style::SetWidth,
        &Style::GetMaxHeight, &Style::GetMinHeight, &Style::GetMaxWidth, &Style::GetMinWidth, &Style::GetBoxDimensions,
        &Style::GetVerticalAlign, &Style::SetVerticalAlign, &Style::GetPageBreakAfter, &Style::SetPageBreakAfter,
        &Style::GetPageBreakBefore, &Style::SetPageBreakBefore);
    for (size_t i = 0; i < slots.size(); ++i) EXPECT_EQ(slots[i], static_cast<int64_t>(i) + 2);  // behind the two destructors
}
#endif

// Setters of the style's own fields

TEST(Style, KeepsWhatIsSet) {
    const SharedPtr<Style> style = newStyle();
    style->SetColor(CSSColor("teal"));
    EXPECT_EQ(style->GetColor().rgbaValue, 0xFF008080);
    style->SetLineHeight(1.5F);
    EXPECT_EQ(style->GetLineHeight(), 1.5F);
    style->SetTextIndent({-2.5F, WQCSSLengthTypePercentage});
    EXPECT_EQ(style->GetTextIndent(), (_WQCSSLength{-2.5F, 3}));
    style->SetDisplay(WQCSSDisplayBlock);
    style->SetVerticalAlign(WQCSSVerticalAlignBottom);
    style->SetTextDecoration(WQCSSTextDecorationUnderline);
    style->SetPageBreakAfter(WQCSSPageBreakAfterInherit);
    style->SetPageBreakBefore(WQCSSPageBreakBeforeAlways);
    style->SetTextAlign(WQCSSTextAlignJustify);
    style->SetListStyleType(WQCSSListStyleTypeDecimal);
    EXPECT_THAT(keywordsOf(*style), ElementsAre(0, 0, 2, 1, 2, 1, 3, 16));
    EXPECT_EQ(style->GetColor().rgbaValue, 0xFF008080);
    EXPECT_EQ(style->GetLineHeight(), 1.5F);
    EXPECT_EQ(style->GetTextIndent(), (_WQCSSLength{-2.5F, 3}));
}

TEST(Style, KeepsAnUnreadableColorAsItIs) {
    const SharedPtr<Style> style = newStyle();
    style->SetColor(CSSColor());
    EXPECT_EQ(style->GetColor().rgbaValue, 0U);
    style->SetColor(CSSColor(1, 0, 0, 0.5F));
    EXPECT_EQ(style->GetColor().rgbaValue, 0x7FFF0000U);
}

TEST(Style, CutsKeywordsToTheWidthOfTheirFields) {
    EXPECT_EQ(kept(displayKeyword, 33), 1U);
    EXPECT_EQ(kept(displayKeyword, 31), 31U);
    EXPECT_EQ(kept(verticalAlign, 6), 2U);
    EXPECT_EQ(kept(verticalAlign, 3), 3U);
    EXPECT_EQ(kept(textDecoration, 3), 1U);
    EXPECT_EQ(kept(textDecoration, 2), 0U);
    EXPECT_EQ(kept(pageBreakAfter, 5), 1U);
    EXPECT_EQ(kept(pageBreakAfter, 3), 3U);
    EXPECT_EQ(kept(pageBreakBefore, 6), 2U);
    EXPECT_EQ(kept(pageBreakBefore, 3), 3U);
    EXPECT_EQ(kept(textAlign, 6), 2U);
    EXPECT_EQ(kept(listStyleType, 48), 16U);
    EXPECT_EQ(kept(listStyleType, 31), 31U);
    EXPECT_EQ(kept(fontStyle, 5), 1U);
    EXPECT_EQ(kept(fontWeight, 17), 1U);
    EXPECT_EQ(kept(fontWeight, 15), 15U);
}

TEST(Style, AKeywordThatIsTooLargeLeavesItsNeighboursAlone) {
    constexpr uint32_t all = 0xFFFFFFFF;
    const auto keywordsAfter = [](auto set, auto keyword) {
        const SharedPtr<Style> style = newStyle();
        ((*style).*set)(keyword);
        return keywordsOf(*style);
    };
    EXPECT_THAT(keywordsAfter(&Style::SetDisplay, WQCSSDisplay{all}), ElementsAre(31, 0, 1, 0, 0, 0, 0, 4));
    EXPECT_THAT(keywordsAfter(&Style::SetVerticalAlign, WQCSSVerticalAlign{all}), ElementsAre(1, 0, 3, 0, 0, 0, 0, 4));
    EXPECT_THAT(keywordsAfter(&Style::SetTextDecoration, WQCSSTextDecoration{all}), ElementsAre(1, 0, 1, 1, 0, 0, 0, 4));
    EXPECT_THAT(keywordsAfter(&Style::SetPageBreakAfter, WQCSSPageBreakAfter{all}), ElementsAre(1, 0, 1, 0, 3, 0, 0, 4));
    EXPECT_THAT(keywordsAfter(&Style::SetPageBreakBefore, WQCSSPageBreakBefore{all}), ElementsAre(1, 0, 1, 0, 0, 3, 0, 4));
    EXPECT_THAT(keywordsAfter(&Style::SetTextAlign, WQCSSTextAlign{all}), ElementsAre(1, 0, 1, 0, 0, 0, 3, 4));
    EXPECT_THAT(keywordsAfter(&Style::SetListStyleType, WQCSSListStyleType{all}), ElementsAre(1, 0, 1, 0, 0, 0, 0, 31));
}

TEST(Style, KeepsTheSignOfAZeroTextIndent) {
    const SharedPtr<Style> style = newStyle();
    style->SetTextIndent({-0.0F, 1});
    EXPECT_TRUE(std::signbit(style->GetTextIndent().value));
}

TEST(Style, KeepsAnyLineHeight) {
    const SharedPtr<Style> style = newStyle();
    style->SetLineHeight(-0.0F);
    EXPECT_TRUE(std::signbit(style->GetLineHeight()));
    style->SetLineHeight(notANumber);
    EXPECT_TRUE(std::isnan(style->GetLineHeight()));
}

TEST(Style, TakesSettersWithoutBoxOrFontBeingTouched) {
    const SharedPtr<Style> style = newStyleWithFont(), other = newStyle();
    style->SetDisplay(WQCSSDisplayNone);
    style->SetColor(CSSColor("red"));
    style->SetTextIndent({7, 1});
    style->SetTextAlign(WQCSSTextAlignCenter);
    EXPECT_EQ(style->dimensions.Get(), other->dimensions.Get());
    EXPECT_EQ(style->font->refCount, 1);
}

// The box

TEST(StyleBox, KeepsEveryFieldUnderItsOwnName) {
    const SharedPtr<Style> style = newStyle();
    fill(*style);
    float value = 1;
    for (const auto& row : lengthsOfBox) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(((*style).*row.get)(), (_WQCSSLength{value, 3}));
        EXPECT_EQ((*style->dimensions).*row.field, (_WQCSSLength{value++, 3}));
    }
    for (const auto& row : bordersOfBox) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(((*style).*row.get)(), (_WQCSSBorder{static_cast<int32_t>(value), 7}));
        EXPECT_EQ((*style->dimensions).*row.field, (_WQCSSBorder{static_cast<int32_t>(value++), 7}));
    }
    EXPECT_EQ(printed(*style->dimensions), filledBox);
}

// Sets a field of the box first to the value that it has, then to others.
template <class Row, class Value> void expectCopyOnWrite(const Row& row, Value present, Value changed, Value again) {
    SCOPED_TRACE(row.name);
    const SharedPtr<Style> style = newStyle(), other = newStyle();
    const SharedPtr<BoxDimensions> shared = style->dimensions;

    ((*style).*row.set)(present);
    EXPECT_EQ(style->dimensions.Get(), shared.Get());
    EXPECT_EQ(shared->refCount, 4);  // the default's own, two styles and this test

    ((*style).*row.set)(changed);
    EXPECT_NE(style->dimensions.Get(), shared.Get());
    EXPECT_EQ(((*style).*row.get)(), changed);
    EXPECT_EQ(style->dimensions->refCount, 1);
    EXPECT_EQ(shared->refCount, 3);
    EXPECT_EQ(other->dimensions.Get(), shared.Get());
    EXPECT_EQ(((*other).*row.get)(), present);
    EXPECT_EQ(printed(*shared), defaultBox);
    EXPECT_EQ(newStyle()->dimensions.Get(), shared.Get());

    const BoxDimensions* const own = style->dimensions.Get();
    ((*style).*row.set)(again);
    EXPECT_EQ(style->dimensions.Get(), own);
    EXPECT_EQ(((*style).*row.get)(), again);

    ((*style).*row.set)(present);  // the same values as the default's again, but a record of its own
    EXPECT_EQ(style->dimensions.Get(), own);
    EXPECT_EQ(printed(*own), defaultBox);
}

TEST(StyleBox, IsSharedUntilALengthIsSetToAnotherValue) {
    for (const auto& row : lengthsOfBox) {
        const _WQCSSLength present{0, row.field == &BoxDimensions::width ? 4 : 1};
        expectCopyOnWrite(row, present, _WQCSSLength{12.5F, 1}, _WQCSSLength{50, 3});
    }
}

TEST(StyleBox, IsSharedUntilABorderIsSetToAnotherValue) {
    for (const auto& row : bordersOfBox) expectCopyOnWrite(row, _WQCSSBorder{0, 0}, _WQCSSBorder{2, 0}, _WQCSSBorder{-1, 5});
}

TEST(StyleBox, IsCopiedForAnotherTypeOfLengthAlone) {
    for (const auto& row : lengthsOfBox)
        expectCopyOnWrite(row, _WQCSSLength{0, row.field == &BoxDimensions::width ? 4 : 1}, _WQCSSLength{0, 3}, _WQCSSLength{0, 0});
}

TEST(StyleBox, IsCopiedForAnotherReservedNumberAlone) {
    for (const auto& row : bordersOfBox) expectCopyOnWrite(row, _WQCSSBorder{0, 0}, _WQCSSBorder{0, 1}, _WQCSSBorder{0, 2});
}

TEST(StyleBox, IsCopiedWithAllItsFields) {
    const SharedPtr<Style> first = newStyle();
    fill(*first);
    for (const auto& row : lengthsOfBox) {
        SCOPED_TRACE(row.name);
        const SharedPtr<Style> second = newStyle();
        second->dimensions = first->dimensions;
        ((*second).*row.set)({99, 1});
        EXPECT_NE(second->dimensions.Get(), first->dimensions.Get());
        EXPECT_EQ(printed(*first->dimensions), filledBox);
        EXPECT_EQ(first->dimensions->refCount, 1);
        (*second->dimensions).*row.field = (*first->dimensions).*row.field;
        EXPECT_EQ(printed(*second->dimensions), filledBox);
    }
    for (const auto& row : bordersOfBox) {
        SCOPED_TRACE(row.name);
        const SharedPtr<Style> second = newStyle();
        second->dimensions = first->dimensions;
        ((*second).*row.set)({99, 1});
        (*second->dimensions).*row.field = (*first->dimensions).*row.field;
        EXPECT_EQ(printed(*second->dimensions), filledBox);
    }
}

TEST(StyleBox, IsCopiedWithItsHeight) {
    const SharedPtr<Style> style = newStyle();
    style->dimensions = new BoxDimensions;
    style->dimensions->height = {3, 1};
    const SharedPtr<BoxDimensions> shared = style->dimensions;
    style->SetWidth({5, 1});
    EXPECT_NE(style->dimensions.Get(), shared.Get());
    EXPECT_EQ(style->GetHeight(), (_WQCSSLength{3, 1}));
}

TEST(StyleBox, LengthsThatAreNoNumbersDifferFromThemselves) {
    const SharedPtr<Style> style = newStyle();
    style->SetMarginLeft({notANumber, 1});
    EXPECT_TRUE(std::isnan(style->GetMarginLeft().value));
    const SharedPtr<BoxDimensions> held = style->dimensions;
    style->SetMarginLeft({notANumber, 1});
    EXPECT_NE(style->dimensions.Get(), held.Get());
    EXPECT_TRUE(std::isnan(style->GetMarginLeft().value));
    EXPECT_EQ(held->refCount, 1);
}

TEST(StyleBox, AZeroWithAnotherSignIsTheSame) {
    const SharedPtr<Style> style = newStyle(), other = newStyle();
    style->SetMarginTop({-0.0F, 1});
    EXPECT_FALSE(std::signbit(style->GetMarginTop().value));
    EXPECT_EQ(style->dimensions.Get(), other->dimensions.Get());

    style->SetMarginTop({-3, 1});
    style->SetMarginTop({-0.0F, 1});
    EXPECT_TRUE(std::signbit(style->GetMarginTop().value));
}

TEST(StyleBox, HasLimitsThatNothingChanges) {
    const SharedPtr<Style> plain = newStyle(), filled = newStyle();
    fill(*filled);
    for (const Style* const style : {plain.Get(), filled.Get()}) {
        EXPECT_EQ(style->GetMaxHeight(), (_WQCSSLength{0, 0}));
        EXPECT_EQ(style->GetMinHeight(), (_WQCSSLength{0, 1}));
        EXPECT_EQ(style->GetMaxWidth(), (_WQCSSLength{0, 0}));
        EXPECT_EQ(style->GetMinWidth(), (_WQCSSLength{0, 1}));
        EXPECT_EQ(style->GetHeight(), (_WQCSSLength{0, 4}));
        EXPECT_EQ(style->GetPosition(), 0U);
    }
}

TEST(StyleBox, IsGivenOutAsANewObjectEachTime) {
    const SharedPtr<Style> style = newStyle();
    BoxDimensions* const first = style->GetBoxDimensions();
    BoxDimensions* const second = style->GetBoxDimensions();
    EXPECT_NE(first, second);
    EXPECT_NE(first, style->dimensions.Get());
    EXPECT_EQ(first->refCount, 0);
    EXPECT_EQ(second->refCount, 0);
    EXPECT_EQ(style->dimensions->refCount, 2);
    delete first;
    delete second;
}

TEST(StyleBox, GivenOutIsACopyOfAllFields) {
    const SharedPtr<Style> style = newStyle();
    fill(*style);
    const SharedPtr<BoxDimensions> copy(style->GetBoxDimensions());
    EXPECT_EQ(printed(*copy), filledBox);
    style->SetMarginLeft({99, 1});
    EXPECT_EQ(printed(*copy), filledBox);
    copy->paddingTop = {98, 1};
    EXPECT_EQ(style->GetPaddingTop(), (_WQCSSLength{7, 3}));
}

// The font

TEST(StyleFont, IsWhatIsSet) {
    const SharedPtr<Style> style = newStyle();
    const SharedPtr<CSS::Font> font(new PlainFont);
    font->SetSize(17);
    style->SetFont(font);
    EXPECT_EQ(style->font.Get(), font.Get());
    EXPECT_EQ(font->refCount, 2);
    EXPECT_EQ(style->GetFontSize(), 17.0F);
    EXPECT_EQ(style->GetFontFamily(), "Courier");
    EXPECT_EQ(style->GetFontWeight(), WQCSSFontWeightNormal);
    EXPECT_EQ(style->GetFontStyle(), WQCSSFontStyleNormal);
}

TEST(StyleFont, IsDroppedForAnotherOne) {
    std::vector<std::string> log;
    const SharedPtr<Style> style = newStyle();
    style->SetFont(new LoggingFont(log));
    style->SetFont(new PlainFont);
    EXPECT_THAT(log, ElementsAre("~Font"));
    style->SetFont(nullptr);
    EXPECT_EQ(style->font.Get(), nullptr);
}

TEST(StyleFont, IsWrittenInPlaceWhileNobodySharesIt) {
    std::vector<std::string> log;
    const SharedPtr<Style> style = newStyle();
    CSS::Font* const font = new LoggingFont(log);
    style->SetFont(font);
    style->SetFontWeight(WQCSSFontWeightBold);
    style->SetFontStyle(WQCSSFontStyleItalic);
    style->SetFontSize(9);
    EXPECT_TRUE(style->SetFontFamily("Serif"));
    EXPECT_EQ(style->font.Get(), font);
    EXPECT_THAT(log, ElementsAre("SetWeight", "SetStyle", "SetSize", "SetFamily"));
    EXPECT_EQ(style->GetFontWeight(), WQCSSFontWeightBold);
    EXPECT_EQ(style->GetFontStyle(), WQCSSFontStyleItalic);
    EXPECT_EQ(style->GetFontSize(), 9.0F);
    EXPECT_EQ(style->GetFontFamily(), "Serif");
}

TEST(StyleFont, IsNotTouchedByTheValuesItHas) {
    std::vector<std::string> log;
    const SharedPtr<Style> parent = newStyle(), child = newStyle();
    parent->SetFont(new LoggingFont(log));
    child->InheritPropertiesFrom(parent.Get());
    child->SetFontWeight(WQCSSFontWeightNormal);
    child->SetFontStyle(WQCSSFontStyleNormal);
    child->SetFontSize(12);
    EXPECT_TRUE(child->SetFontFamily("Courier"));
    EXPECT_THAT(log, IsEmpty());
    EXPECT_EQ(child->font.Get(), parent->font.Get());
}

// A setter on a font that two styles share makes a clone and sets that.
void expectClone(const std::string& setter, void (*set)(Style&)) {
    SCOPED_TRACE(setter);
    std::vector<std::string> log;
    const SharedPtr<Style> parent = newStyle(), child = newStyle();
    parent->SetFont(new LoggingFont(log));
    const CSS::Font* const font = parent->font.Get();
    child->InheritPropertiesFrom(parent.Get());
    set(*child);
    EXPECT_THAT(log, ElementsAre("Clone", setter));
    EXPECT_NE(child->font.Get(), font);
    EXPECT_NE(dynamic_cast<LoggingFont*>(child->font.Get()), nullptr);
    EXPECT_EQ(child->font->refCount, 1);
    EXPECT_EQ(parent->font.Get(), font);
    EXPECT_EQ(parent->font->refCount, 1);
    EXPECT_EQ(parent->GetFontWeight(), WQCSSFontWeightNormal);
    EXPECT_EQ(parent->GetFontStyle(), WQCSSFontStyleNormal);
    EXPECT_EQ(parent->GetFontSize(), 12.0F);
    EXPECT_EQ(parent->GetFontFamily(), "Courier");
}

TEST(StyleFont, IsClonedForANewWeight) {
    expectClone("SetWeight", [](Style& child) {
        child.SetFontWeight(WQCSSFontWeightBold);
        EXPECT_EQ(child.GetFontWeight(), WQCSSFontWeightBold);
        EXPECT_EQ(child.GetFontSize(), 12.0F);
        EXPECT_EQ(child.GetFontFamily(), "Courier");
    });
}
TEST(StyleFont, IsClonedForANewStyle) {
    expectClone("SetStyle", [](Style& child) {
        child.SetFontStyle(WQCSSFontStyleItalic);
        EXPECT_EQ(child.GetFontStyle(), WQCSSFontStyleItalic);
    });
}
TEST(StyleFont, IsClonedForANewSize) {
    expectClone("SetSize", [](Style& child) {
        child.SetFontSize(12.5F);
        EXPECT_EQ(child.GetFontSize(), 12.5F);
    });
}
TEST(StyleFont, IsClonedForANewFamily) {
    expectClone("SetFamily", [](Style& child) {
        EXPECT_TRUE(child.SetFontFamily("courier"));  // the case counts
        EXPECT_EQ(child.GetFontFamily(), "courier");
    });
}
TEST(StyleFont, IsClonedForAFamilyThatGoesOnBehindANullByte) {
    expectClone("SetFamily", [](Style& child) {
        const std::string family("Courier\0New", 11);
        EXPECT_TRUE(child.SetFontFamily(family));
        EXPECT_EQ(child.GetFontFamily(), family);
    });
}
TEST(StyleFont, IsClonedForASizeThatIsNoNumber) {
    const SharedPtr<Style> parent = newStyleWithFont(), child = newStyle();
    parent->SetFontSize(notANumber);
    child->InheritPropertiesFrom(parent.Get());
    child->SetFontSize(notANumber);
    EXPECT_NE(child->font.Get(), parent->font.Get());
    EXPECT_TRUE(std::isnan(child->GetFontSize()));
}

TEST(StyleFont, StaysForASizeOfZeroWithAnotherSign) {
    const SharedPtr<Style> style = newStyleWithFont();
    style->SetFontSize(0);
    style->SetFontSize(-0.0F);
    EXPECT_FALSE(std::signbit(style->GetFontSize()));
}

TEST(StyleFont, OfAChildThatSetsAnotherWeightIsItsChildrensToo) {
    const SharedPtr<Style> parent = newStyleWithFont(), child = newStyle(), grandchild = newStyle();
    child->InheritPropertiesFrom(parent.Get());
    child->SetFontWeight(WQCSSFontWeightBold);
    grandchild->InheritPropertiesFrom(child.Get());
    grandchild->SetFontWeight(WQCSSFontWeightBold);
    EXPECT_EQ(grandchild->font.Get(), child->font.Get());
    EXPECT_EQ(child->font->refCount, 2);
    EXPECT_EQ(parent->GetFontWeight(), WQCSSFontWeightNormal);
}

TEST(StyleFont, OfAParentThatChangesLaterStaysTheChilds) {
    const SharedPtr<Style> parent = newStyleWithFont(), child = newStyle();
    child->InheritPropertiesFrom(parent.Get());
    parent->SetFontSize(20);
    EXPECT_EQ(child->GetFontSize(), 12.0F);
    EXPECT_EQ(parent->GetFontSize(), 20.0F);
}

TEST(StyleFont, OutlivesTheParentThatItCameFrom) {
    const SharedPtr<Style> child = newStyle();
    {
        const SharedPtr<Style> parent = newStyleWithFont();
        parent->SetFontFamily("Serif");
        child->InheritPropertiesFrom(parent.Get());
    }
    EXPECT_EQ(child->font->refCount, 1);
    EXPECT_EQ(child->GetFontFamily(), "Serif");
}

// Inheritance

TEST(StyleInheritance, CopiesTheFiveInheritedFields) {
    const SharedPtr<Style> parent = newStyle(), child = newStyle();
    parent->SetColor(CSSColor("teal"));
    parent->SetTextAlign(WQCSSTextAlignCenter);
    parent->SetListStyleType(WQCSSListStyleTypeSquare);
    parent->SetTextIndent({18, WQCSSLengthTypePercentage});
    parent->SetLineHeight(1.25F);
    child->InheritPropertiesFrom(parent.Get());
    for (const Style* const style : {parent.Get(), child.Get()}) {
        EXPECT_EQ(style->GetColor().rgbaValue, 0xFF008080);
        EXPECT_EQ(style->GetTextAlign(), WQCSSTextAlignCenter);
        EXPECT_EQ(style->GetListStyleType(), WQCSSListStyleTypeSquare);
        EXPECT_EQ(style->GetTextIndent(), (_WQCSSLength{18, 3}));
        EXPECT_EQ(style->GetLineHeight(), 1.25F);
    }
    parent->SetLineHeight(2);
    parent->SetColor(CSSColor("red"));
    EXPECT_EQ(child->GetLineHeight(), 1.25F);
    EXPECT_EQ(child->GetColor().rgbaValue, 0xFF008080);
}

TEST(StyleInheritance, LeavesTheOtherFieldsAlone) {
    const SharedPtr<Style> parent = newStyle(), child = newStyle();
    parent->SetDisplay(WQCSSDisplayBlock);
    parent->SetVerticalAlign(WQCSSVerticalAlignTop);
    parent->SetTextDecoration(WQCSSTextDecorationUnderline);
    parent->SetPageBreakAfter(WQCSSPageBreakAfterAlways);
    parent->SetPageBreakBefore(WQCSSPageBreakBeforeInherit);
    child->SetDisplay(WQCSSDisplayNone);
    child->SetPageBreakAfter(WQCSSPageBreakAfterInherit);
    child->InheritPropertiesFrom(parent.Get());
    EXPECT_THAT(keywordsOf(*child), ElementsAre(2, 0, 1, 0, 2, 0, 0, 4));
}

TEST(StyleInheritance, LeavesTheBoxAlone) {
    const SharedPtr<Style> parent = newStyle(), child = newStyle();
    fill(*parent);
    child->SetMarginLeft({5, 1});
    const BoxDimensions* const box = child->dimensions.Get();
    child->InheritPropertiesFrom(parent.Get());
    EXPECT_EQ(child->dimensions.Get(), box);
    EXPECT_EQ(child->GetMarginLeft(), (_WQCSSLength{5, 1}));
    EXPECT_EQ(child->GetMarginRight(), (_WQCSSLength{0, 1}));
    EXPECT_EQ(parent->dimensions->refCount, 1);
}

TEST(StyleInheritance, SharesTheFontAndReleasesTheOldOne) {
    std::vector<std::string> log;
    const SharedPtr<Style> parent = newStyleWithFont(), child = newStyle();
    child->SetFont(new LoggingFont(log));
    child->InheritPropertiesFrom(parent.Get());
    EXPECT_THAT(log, ElementsAre("~Font"));
    EXPECT_EQ(child->font.Get(), parent->font.Get());
    EXPECT_EQ(parent->font->refCount, 2);
    child->InheritPropertiesFrom(parent.Get());
    EXPECT_EQ(parent->font->refCount, 2);
}

TEST(StyleInheritance, FromAStyleWithoutFontTakesTheFontAway) {
    const SharedPtr<Style> parent = newStyle(), child = newStyleWithFont();
    child->InheritPropertiesFrom(parent.Get());
    EXPECT_EQ(child->font.Get(), nullptr);
}

TEST(StyleInheritance, FromItselfChangesNothing) {
    const SharedPtr<Style> style = newStyleWithFont();
    style->SetTextIndent({3, 1});
    style->InheritPropertiesFrom(style.Get());
    EXPECT_EQ(style->font->refCount, 1);
    EXPECT_EQ(style->GetTextIndent(), (_WQCSSLength{3, 1}));
}

// Lengths

TEST(StyleLength, ThereAreSeventyTwoDotsToTheInch) { EXPECT_EQ(Style::DPI(), 72.0F); }

TEST(StyleLength, UnitsHaveTheirFactorsToTheBit) {
    constexpr struct {
        uint32_t unit, bits;
    } rows[] = {
        {0, 0x3F800000},                   // an unknown unit counts as a pixel
        {1, 0x3F800000}, {2, 0x41E2C58B},  // 28.34645652770996
        {3, 0x40356AD6},                   // 2.8346457481384277
        {4, 0x42900000}, {5, 0x3F800000},       {6, 0x41400000},          {7, 0x3F800000},
        {8, 0x3F800000}, {0x10002, 0x3F800000}, {0xFFFFFFFF, 0x3F800000},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.unit);
        const _WQCSSLength length = Style::ConvertValueToLength(1, static_cast<WQCSSLengthUnits>(row.unit));
        EXPECT_EQ(std::bit_cast<uint32_t>(length.value), row.bits);
        EXPECT_EQ(length.type, 1);
    }
}

TEST(StyleLength, IsMultipliedInSinglePrecision) {
    constexpr struct {
        float value;
        WQCSSLengthUnits unit;
        uint32_t bits;
    } rows[] = {
        {2.5F, WQCSSLengthUnitsCentimetre, 0x428DBB77},
        {2.5F, WQCSSLengthUnitsMillimetre, 0x40E2C58C},  // with the exact factor it would end in 8B
        {21.0F, WQCSSLengthUnitsMillimetre, 0x426E1C39},
        {-3.0F, WQCSSLengthUnitsCentimetre, 0xC2AA1428},
        {0.7F, WQCSSLengthUnitsInch, 0x42499999},
        {0.7F, WQCSSLengthUnitsPica, 0x41066666},
        {0.1F, WQCSSLengthUnitsPoint, 0x3DCCCCCD},
        {0.1F, WQCSSLengthUnitsPixel, 0x3DCCCCCD},
        {1e38F, WQCSSLengthUnitsInch, 0x7F800000},
        {-0.0F, WQCSSLengthUnitsPixel, 0x80000000},
        {-0.0F, WQCSSLengthUnitsCentimetre, 0x80000000},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.value << " in unit " << row.unit);
        const _WQCSSLength length = Style::ConvertValueToLength(row.value, row.unit);
        EXPECT_EQ(std::bit_cast<uint32_t>(length.value), row.bits);
        EXPECT_EQ(length.type, 1);
    }
    EXPECT_TRUE(std::isnan(Style::ConvertValueToLength(notANumber, WQCSSLengthUnitsInch).value));
}

// A style without a font

#ifdef WQ_NO_HARD_ASSERTIONS

TEST(StyleWithoutFont, AnswersNormalZeroAndEmpty) {
    const SharedPtr<Style> style = newStyle();
    EXPECT_EQ(style->GetFontWeight(), WQCSSFontWeightNormal);
    EXPECT_EQ(style->GetFontStyle(), WQCSSFontStyleNormal);
    EXPECT_EQ(style->GetFontSize(), 0.0F);
    EXPECT_EQ(style->GetFontFamily(), "");
}

TEST(StyleWithoutFont, IgnoresItsSetters) {
    const SharedPtr<Style> style = newStyle();
    style->SetFontWeight(WQCSSFontWeightBold);
    style->SetFontStyle(WQCSSFontStyleItalic);
    style->SetFontSize(9);
    EXPECT_TRUE(style->SetFontFamily("Serif"));
    EXPECT_EQ(style->font.Get(), nullptr);
}

#else

namespace {

void expectAssertion(void (*operation)(Style&), const std::string& expression, const std::string& function) {
    EXPECT_EXIT(
        operation(*newStyle()), testing::KilledBySignal(SIGABRT),
        "Assertion failed: \\(" + expression + "\\), function " + function + ", file common/core/css/Style, line [0-9]+\\.\n");
}
const std::string fontIsThere = "font\\.Get\\(\\) != 0", any = ".+";

}  // namespace

TEST(StyleWithoutFontDeathTest, CannotBeGivenAWeight) {
    expectAssertion([](Style& style) { style.SetFontWeight(WQCSSFontWeightNormal); }, fontIsThere, "SetFontWeight");
}
TEST(StyleWithoutFontDeathTest, CannotBeGivenAStyle) {
    expectAssertion([](Style& style) { style.SetFontStyle(WQCSSFontStyleNormal); }, fontIsThere, "SetFontStyle");
}
TEST(StyleWithoutFontDeathTest, CannotBeGivenASize) {
    expectAssertion([](Style& style) { style.SetFontSize(12); }, fontIsThere, "SetFontSize");
}
TEST(StyleWithoutFontDeathTest, CannotBeGivenAFamily) {
    expectAssertion([](Style& style) { style.SetFontFamily("Courier"); }, fontIsThere, "SetFontFamily");
}
TEST(StyleWithoutFontDeathTest, HasNoWeight) {
    expectAssertion([](Style& style) { style.GetFontWeight(); }, any, "GetFontWeight");
}
TEST(StyleWithoutFontDeathTest, HasNoStyle) {
    expectAssertion([](Style& style) { style.GetFontStyle(); }, any, "GetFontStyle");
}
TEST(StyleWithoutFontDeathTest, HasNoSize) {
    expectAssertion([](Style& style) { style.GetFontSize(); }, any, "GetFontSize");
}
TEST(StyleWithoutFontDeathTest, HasNoFamily) {
    expectAssertion([](Style& style) { style.GetFontFamily(); }, any, "GetFontFamily");
}

#endif
