#include "mac/Frameworks/WQCSS/WQCSSStyle.h"

#include <csignal>
#include <utility>

#include "common/core/osx/StyleImpl.h"
#include "mac/Frameworks/WQCSS/WQCSSStyleResolver.h"
#include "platform/Log.h"
#include "platform/NSAttributeNames.h"
#include "platform/NSFontManager.h"
#include "platform/NSParagraphStyle.h"
#include "tests/common/core/css/PlainStyle.h"
#include "tests/dom/Support.h"

// GoogleTest prints a length and a border by their fields.
static void PrintTo(const _WQCSSLength& length, std::ostream* out) { *out << length.value << " of type " << length.type; }
static void PrintTo(const _WQCSSBorder& border, std::ostream* out) { *out << border.width << " and " << border.reserved; }

using namespace test;
using testing::ElementsAre;
using testing::MatchesRegex;

namespace {

constexpr _WQCSSLength points(float value) { return {value, WQCSSLengthTypeAbsolute}; }
constexpr _WQCSSLength percent(float value) { return {value, WQCSSLengthTypePercentage}; }
constexpr _WQCSSLength automatic{0, WQCSSLengthTypeAuto};

Ref<WQCSSStyle> newStyle() { return WQCSSStyleResolver::newStyleResolver()->defaultStyle(); }
Ref<WQCSSStyle> around(CSS::Style* style) { return WQCSSStyle::newWithCSSStyle(style); }

uint32_t word(const Ref<WQCSSStyle>& style) { return style->cssStyle()->GetColor().rgbaValue; }

CSS::CSSColor colorOfWord(uint32_t rgba) {
    CSS::CSSColor color;
    color.rgbaValue = rgba;
    return color;
}

Ref<NSColor> device(double red, double green, double blue, double alpha) {
    return NSColor::colorWithDeviceRed_green_blue_alpha(red, green, blue, alpha);
}

class LogLines {
public:
    LogLines() : previous(wq::setLogSink([this](const NSString& line) { lines.push_back(wq::toUTF8(line)); })) {}
    ~LogLines() { wq::setLogSink(std::move(previous)); }
    LogLines(const LogLines&) = delete;
    LogLines& operator=(const LogLines&) = delete;

    std::vector<std::string> lines;

private:
    wq::LogSink previous;
};

TEST(WQCSSStyleTest, KeepsOneCountAsLongAsItLives) {
    const SharedPtr<CSS::Style> style = CreateStyle();
    auto wrapped = around(style.Get());
    EXPECT_EQ(wrapped->cssStyle(), style.Get());
    EXPECT_EQ(style->refCount, 2);
    wrapped = nullptr;
    EXPECT_EQ(style->refCount, 1);
}

TEST(WQCSSStyleTest, KeepsTheStyleAliveAlone) {
    const auto style = around(CreateStyle());
    EXPECT_EQ(style->cssStyle()->refCount, 1);
    EXPECT_EQ(style->lineHeight(), 1);
}

// ---- Fields

// What is set on either side is seen on the other; `one` is not the default.
template <class V> void expectForwarded(
    V (WQCSSStyle::*get)() const,
    void (WQCSSStyle::*set)(V),
    V (CSS::Style::*engineGet)() const,
    void (CSS::Style::*engineSet)(V),
    V one,
    V other) {
    const auto style = newStyle();
    CSS::Style* const engine = style->cssStyle();
    EXPECT_EQ((style.get()->*get)(), (engine->*engineGet)());
    EXPECT_FALSE((style.get()->*get)() == one);
    (style.get()->*set)(one);
    EXPECT_EQ((engine->*engineGet)(), one);
    EXPECT_EQ((style.get()->*get)(), one);
    (engine->*engineSet)(other);
    EXPECT_EQ((style.get()->*get)(), other);
}

#define EXPECT_FORWARDED(get, Name, one, other)                                                                                \
    {                                                                                                                          \
        SCOPED_TRACE(#get);                                                                                                    \
        expectForwarded(&WQCSSStyle::get, &WQCSSStyle::set##Name, &CSS::Style::Get##Name, &CSS::Style::Set##Name, one, other); \
    }

TEST(WQCSSStyleTest, ForwardsKeywords){
    EXPECT_FORWARDED(display, Display, WQCSSDisplayBlock, WQCSSDisplayNone)
        EXPECT_FORWARDED(fontStyle, FontStyle, WQCSSFontStyleItalic, WQCSSFontStyleNormal)
            EXPECT_FORWARDED(fontWeight, FontWeight, WQCSSFontWeightBold, WQCSSFontWeightNormal)
                EXPECT_FORWARDED(textAlign, TextAlign, WQCSSTextAlignJustify, WQCSSTextAlignCenter)
                    EXPECT_FORWARDED(textDecoration, TextDecoration, WQCSSTextDecorationUnderline, WQCSSTextDecorationNone)
                        EXPECT_FORWARDED(verticalAlign, VerticalAlign, WQCSSVerticalAlignTop, WQCSSVerticalAlignBottom)
                            EXPECT_FORWARDED(pageBreakAfter, PageBreakAfter, WQCSSPageBreakAfterAlways, WQCSSPageBreakAfterInherit)
                                EXPECT_FORWARDED(pageBreakBefore, PageBreakBefore, WQCSSPageBreakBeforeInherit, WQCSSPageBreakBeforeAlways)}

TEST(WQCSSStyleTest, ForwardsNumbers){EXPECT_FORWARDED(fontSize, FontSize, 10.5f, 20.f) EXPECT_FORWARDED(lineHeight, LineHeight, 1.5f, 2.f)}

TEST(WQCSSStyleTest, ForwardsLengths){
    EXPECT_FORWARDED(marginLeft, MarginLeft, points(1), percent(2)) EXPECT_FORWARDED(marginRight, MarginRight, points(1), automatic)
        EXPECT_FORWARDED(marginTop, MarginTop, percent(1), points(2)) EXPECT_FORWARDED(marginBottom, MarginBottom, automatic, points(2))
            EXPECT_FORWARDED(paddingLeft, PaddingLeft, points(1), percent(2))
                EXPECT_FORWARDED(paddingRight, PaddingRight, points(1), percent(2))
                    EXPECT_FORWARDED(paddingTop, PaddingTop, points(1), percent(2))
                        EXPECT_FORWARDED(paddingBottom, PaddingBottom, points(1), percent(2))
                            EXPECT_FORWARDED(width, Width, points(1), percent(2))
                                EXPECT_FORWARDED(textIndent, TextIndent, points(-1), (_WQCSSLength{3, 2}))}

TEST(WQCSSStyleTest, ForwardsBorders) {
    constexpr _WQCSSBorder one{1, 2}, other{-3, 4};
    EXPECT_FORWARDED(borderLeft, BorderLeft, one, other)
    EXPECT_FORWARDED(borderRight, BorderRight, one, other)
    EXPECT_FORWARDED(borderTop, BorderTop, one, other)
    EXPECT_FORWARDED(borderBottom, BorderBottom, one, other)
}

// A mixed-up side would pass the rows above.
TEST(WQCSSStyleTest, EachSideIsItsOwn) {
    const auto style = newStyle();
    style->setMarginLeft(points(1));
    style->setMarginRight(points(2));
    style->setMarginTop(points(3));
    style->setMarginBottom(points(4));
    style->setPaddingLeft(points(5));
    style->setPaddingRight(points(6));
    style->setPaddingTop(points(7));
    style->setPaddingBottom(points(8));
    style->setBorderLeft({9, 0});
    style->setBorderRight({10, 0});
    style->setBorderTop({11, 0});
    style->setBorderBottom({12, 0});
    EXPECT_EQ(style->marginLeft(), points(1));
    EXPECT_EQ(style->marginRight(), points(2));
    EXPECT_EQ(style->marginTop(), points(3));
    EXPECT_EQ(style->marginBottom(), points(4));
    EXPECT_EQ(style->paddingLeft(), points(5));
    EXPECT_EQ(style->paddingRight(), points(6));
    EXPECT_EQ(style->paddingTop(), points(7));
    EXPECT_EQ(style->paddingBottom(), points(8));
    EXPECT_EQ(style->borderLeft().width, 9);
    EXPECT_EQ(style->borderRight().width, 10);
    EXPECT_EQ(style->borderTop().width, 11);
    EXPECT_EQ(style->borderBottom().width, 12);
}

TEST(WQCSSStyleTest, ForwardsTheFamilyInUTF8) {
    const auto style = newStyle();
    EXPECT_EQ(style->fontFamily(), u"TeX Gyre Pagella");
    style->setFontFamily(u"\U0001D11E \u00E4");
    EXPECT_EQ(style->cssStyle()->GetFontFamily(), "\xF0\x9D\x84\x9E \xC3\xA4");
    EXPECT_EQ(style->fontFamily(), u"\U0001D11E \u00E4");
    style->cssStyle()->SetFontFamily("'Quoted'");
    EXPECT_EQ(style->fontFamily(), u"'Quoted'");
    style->cssStyle()->SetFontFamily("\xFF");
    EXPECT_EQ(style->fontFamily(), u"\uFFFD");
    const char16_t lone[] = {0xDD1E, 0};
    style->setFontFamily(lone);
    EXPECT_EQ(style->cssStyle()->GetFontFamily(), "\xEF\xBF\xBD");
    style->setFontFamily(nullptr);
    EXPECT_EQ(style->cssStyle()->GetFontFamily(), "");
    EXPECT_EQ(style->fontFamily(), u"");
}

TEST(WQCSSStyleTest, WhatCannotBeSetHasItsFixedValue) {
    const auto style = newStyle();
    EXPECT_EQ(style->position(), 0u);
    EXPECT_EQ(style->height(), automatic);
    EXPECT_EQ(style->maxHeight(), (_WQCSSLength{0, 0}));
    EXPECT_EQ(style->minHeight(), points(0));
    EXPECT_EQ(style->maxWidth(), (_WQCSSLength{0, 0}));
    EXPECT_EQ(style->minWidth(), points(0));
}

// A style that has what no other has.
class OddStyle : public PlainStyle {
public:
    uint32_t GetPosition() const override { return 3; }
    _WQCSSLength GetHeight() const override { return points(1); }
    _WQCSSLength GetMaxHeight() const override { return points(2); }
    _WQCSSLength GetMinHeight() const override { return points(3); }
    _WQCSSLength GetMaxWidth() const override { return points(4); }
    _WQCSSLength GetMinWidth() const override { return points(5); }
};

TEST(WQCSSStyleTest, ForwardsWhatCannotBeSet) {
    const auto style = around(new OddStyle);
    EXPECT_EQ(style->position(), 3u);
    EXPECT_EQ(style->height(), points(1));
    EXPECT_EQ(style->maxHeight(), points(2));
    EXPECT_EQ(style->minHeight(), points(3));
    EXPECT_EQ(style->maxWidth(), points(4));
    EXPECT_EQ(style->minWidth(), points(5));
}

template <class T>
concept HasListStyleType = requires(T& style) {
    style.listStyleType();
};
static_assert(!HasListStyleType<WQCSSStyle>);

TEST(WQCSSStyleTest, TheListStyleTypeIsAskedOfTheEnginesStyle) {
    const auto style = newStyle();
    style->cssStyle()->SetListStyleType(WQCSSListStyleTypeOctal);
    EXPECT_EQ(style->cssStyle()->GetListStyleType(), WQCSSListStyleTypeOctal);
}

TEST(WQCSSStyleTest, ConvertsEachUnitToPoints) {
    const std::pair<int, float> rows[] = {
        {1, 2.f}, {2, 56.69291305541992f}, {3, 5.6692914962768555f}, {4, 144.f}, {5, 2.f}, {6, 24.f}, {0, 2.f}, {7, 2.f}, {99, 2.f}};
    for (const auto& [units, value] : rows)
        EXPECT_EQ(WQCSSStyle::lengthForValue_units(2, static_cast<WQCSSLengthUnits>(units)), points(value)) << units;
}

TEST(WQCSSStyleTest, InheritsFromTheStyleOfTheArgument) {
    const auto parent = newStyle(), child = newStyle();
    parent->setTextAlign(WQCSSTextAlignRight);
    parent->setFontFamily(u"x");
    parent->setDisplay(WQCSSDisplayNone);
    child->inheritPropertiesFromStyle(parent);
    EXPECT_EQ(child->textAlign(), WQCSSTextAlignRight);
    EXPECT_EQ(child->fontFamily(), u"x");
    EXPECT_EQ(child->display(), WQCSSDisplayInline);
    EXPECT_EQ(child->cssStyle()->font.Get(), parent->cssStyle()->font.Get());
}

TEST(WQCSSStyleTest, InheritsNothingFromNull) {
    const auto style = newStyle();
    style->setFontFamily(u"x");
    style->inheritPropertiesFromStyle(nullptr);
    style->inheritPropertiesFromStyle(around(nullptr));
    EXPECT_EQ(style->fontFamily(), u"x");
}

#ifdef WQ_NO_HARD_ASSERTIONS

TEST(WQCSSStyleTest, WithoutAFontItHasNoFamilyAndKeepsNone) {
    const auto style = around(CreateStyle());
    style->setFontSize(20);
    EXPECT_EQ(style->fontSize(), 0);
    EXPECT_EQ(style->fontFamily(), u"");
}

#else

TEST(WQCSSStyleDeathTest, TheFontOfAStyleWithoutOneIsAHardAssertion) {
    const auto style = around(CreateStyle());
    EXPECT_EXIT(
        style->setFontSize(20), testing::KilledBySignal(SIGABRT), "function SetFontSize, file common/core/css/Style, line [0-9]+\\.\n");
}

#endif

// ---- Colours

TEST(WQCSSStyleTest, AColorIsOfTheDeviceAndKeepsItsAlpha) {
    const auto style = newStyle();
    style->cssStyle()->SetColor(colorOfWord(0x80FF4001));
    const auto color = style->color();
    EXPECT_EQ(color->redComponent(), 1.0);
    EXPECT_EQ(color->greenComponent(), 64 / 255.0);
    EXPECT_EQ(color->blueComponent(), 1 / 255.0);
    EXPECT_EQ(color->alphaComponent(), 128 / 255.0);
    EXPECT_EQ(color->colorSpace(), NSColorSpace::deviceRGBColorSpace());
}

TEST(WQCSSStyleTest, TheColorOfTheAttributesIsOpaqueAndCalibrated) {
    const auto style = newStyle();
    style->cssStyle()->SetColor(colorOfWord(0x80FF4001));
    const auto color = style->attributes()->objectForKey(NSForegroundColorAttributeName).object<NSColor>();
    EXPECT_EQ(color->alphaComponent(), 1.0);
    EXPECT_EQ(color->greenComponent(), 0.250980406999588);  // 64 / 255 in single precision
    EXPECT_EQ(color->colorSpace(), NSColorSpace::genericRGBColorSpace());
}

TEST(WQCSSStyleTest, AnUnreadableColorIsTransparentBlack) {
    const auto style = newStyle();
    style->cssStyle()->SetColor(CSS::CSSColor());
    EXPECT_TRUE(style->color()->isEqual(device(0, 0, 0, 0)));
}

TEST(WQCSSStyleTest, SettingAColorCutsItsComponents) {
    const auto style = newStyle();
    style->setColor(device(1, 0.5, 0.25, 0.75));
    EXPECT_EQ(word(style), 0xBFFF7F3Fu);
    style->setColor(NSColor::colorWithSRGBRed_green_blue_alpha(0, 0, 1, 1));
    EXPECT_EQ(word(style), 0xFF0000FFu);
    style->setColor(NSColor::colorWithCalibratedRed_green_blue_alpha(0, 1, 0, 1));
    EXPECT_EQ(word(style), 0xFF00FF00u);
}

TEST(WQCSSStyleTest, SettingAColorNarrowsItsComponentsFirst) {
    const auto style = newStyle();
    style->setColor(device(0.99999999, 0.99, 0, 1));  // the first is 1 in single precision
    EXPECT_EQ(word(style), 0xFFFFFC00u);
}

TEST(WQCSSStyleTest, SettingAColorOfNothingMakesItTransparent) {
    const auto style = newStyle();
    style->setColor(nullptr);
    EXPECT_EQ(word(style), 0u);
    style->setColor(device(1, 1, 1, 1));
    style->setColor(device(0, 0, 0, 0));
    EXPECT_EQ(word(style), 0u);
}

TEST(WQCSSStyleTest, SettingTheColorOfTextRaisesAsItsComponentsDo) {
    const auto style = newStyle();
    style->setColor(device(1, 0, 0, 1));
    EXPECT_THAT(raised([&] { style->setColor(NSColor::textColor()); }), testing::StartsWith("NSInvalidArgumentException"));
    EXPECT_EQ(word(style), 0xFFFF0000u);
}

// ---- What is not implemented

TEST(WQCSSStyleTest, SettersWithoutAnEngineLogAndChangeNothing) {
    const std::pair<std::string, void (*)(const Ref<WQCSSStyle>&)> rows[] = {
        {"setPosition: is inimplemented", [](const auto& style) { style->setPosition(1); }},
        {"setHeight: is unimplemented", [](const auto& style) { style->setHeight(points(1)); }},
        {"setMaxHeight: is unimplemented", [](const auto& style) { style->setMaxHeight(points(1)); }},
        {"setMinHeight: is unimplemented", [](const auto& style) { style->setMinHeight(points(1)); }},
        {"setMaxWidth: is unimplemented", [](const auto& style) { style->setMaxWidth(points(1)); }},
        {"setMinWidth: is unimplemented", [](const auto& style) { style->setMinWidth(points(1)); }},
    };
    const Assertions assertions;
    for (const auto& [words, set] : rows) {
        SCOPED_TRACE(words);
        const auto style = newStyle();
        const LogLines log;
        set(style);
        EXPECT_THAT(log.lines, ElementsAre(wq::toUTF8(style->description()) + " " + words));
        EXPECT_EQ(style->position(), 0u);
        EXPECT_EQ(style->height(), automatic);
        EXPECT_EQ(style->maxHeight(), (_WQCSSLength{0, 0}));
        EXPECT_EQ(style->minHeight(), points(0));
        EXPECT_EQ(style->maxWidth(), (_WQCSSLength{0, 0}));
        EXPECT_EQ(style->minWidth(), points(0));
        EXPECT_EQ(style->width(), automatic);
    }
    EXPECT_THAT(assertions.descriptions, testing::IsEmpty());
}

TEST(WQCSSStyleTest, LoggingFreezesTheAttributes) {
    const LogLines log;
    const auto style = newStyle();
    style->setHeight(points(1));
    style->setFontSize(30);
    EXPECT_EQ(style->attributes()->objectForKey(NSFontAttributeName).object<NSFont>()->pointSize(), 12);
}

// ---- Attributes and description

TEST(WQCSSStyleTest, TheAttributesAreThoseOfTheEngine) {
    const auto style = newStyle();
    const auto attributes = style->attributes();
    EXPECT_EQ(attributes->count(), 3u);
    EXPECT_EQ(attributes, static_cast<CSS::StyleImpl*>(style->cssStyle())->GetAttributes());
    EXPECT_EQ(attributes, around(style->cssStyle())->attributes());
}

TEST(WQCSSStyleTest, TheAttributesAreMadeOnce) {
    const auto style = newStyle();
    style->setFontSize(20);
    const auto attributes = style->attributes();
    style->setFontSize(30);
    EXPECT_EQ(style->attributes(), attributes);
    EXPECT_EQ(attributes->objectForKey(NSFontAttributeName).object<NSFont>()->pointSize(), 20);
}

TEST(WQCSSStyleTest, AStyleThatIsNoneOfThePlatformsHasNoAttributes) {
    const auto style = around(new PlainStyle);
    EXPECT_FALSE(style->attributes());
    EXPECT_THAT(wq::toUTF8(style->description()), MatchesRegex("<WQCSSStyle: 0x[0-9a-f]+> - \\(null\\)"));
}

TEST(WQCSSStyleTest, IsDescribedByItselfAndItsAttributes) {
    const auto style = newStyle();
    EXPECT_THAT(wq::toUTF8(style->description()), MatchesRegex("<WQCSSStyle: 0x[0-9a-f]+> - <NSDictionary: 0x[0-9a-f]+>"));
    EXPECT_TRUE(wq::toUTF8(style->description()).ends_with(" - " + wq::toUTF8(style->attributes()->description())));
    EXPECT_EQ(style->description(), style->description());
}

TEST(WQCSSStyleTest, ADescriptionFreezesTheAttributes) {
    const auto style = newStyle();
    style->description();
    style->setFontSize(30);
    EXPECT_EQ(style->attributes()->objectForKey(NSFontAttributeName).object<NSFont>()->pointSize(), 12);
}

// ---- Fonts

Ref<WQCSSStyle> styleWith(const NSString& family, WQCSSFontWeight weight, WQCSSFontStyle fontStyle, float size) {
    const auto style = newStyle();
    style->setFontFamily(family);
    style->setFontWeight(weight);
    style->setFontStyle(fontStyle);
    style->setFontSize(size);
    return style;
}
NSString fontOf(const NSString& family, int weight, int fontStyle, float size) {
    return styleWith(family, static_cast<WQCSSFontWeight>(weight), static_cast<WQCSSFontStyle>(fontStyle), size)->font()->description();
}

TEST(WQCSSStyleTest, TheFontIsThatOfFamilyWeightStyleAndSize) {
    EXPECT_EQ(fontOf(u"TeX Gyre Termes", 0, 0, 10.5f), u"TeX Gyre Termes 10.5");
    EXPECT_EQ(fontOf(u"TeX Gyre Termes", 1, 0, 10.5f), u"TeX Gyre Termes 10.5 bold");
    EXPECT_EQ(fontOf(u"TeX Gyre Termes", 0, 1, 10.5f), u"TeX Gyre Termes 10.5 italic");
    EXPECT_EQ(fontOf(u"TeX Gyre Termes", 1, 1, 10.5f), u"TeX Gyre Termes 10.5 bold italic");
}

TEST(WQCSSStyleTest, AWeightOrStyleWithoutANameAsksForNothing) {
    EXPECT_EQ(fontOf(u"TeX Gyre Termes", 2, 0, 12), u"TeX Gyre Termes 12");
    EXPECT_EQ(fontOf(u"TeX Gyre Termes", 15, 3, 12), u"TeX Gyre Termes 12");
    EXPECT_EQ(fontOf(u"TeX Gyre Termes", 1, 2, 12), u"TeX Gyre Termes 12 bold");
}

TEST(WQCSSStyleTest, TheFontIsFoundWithoutRegardToCase) {
    EXPECT_EQ(fontOf(u"tex gyre TERMES", 1, 1, 9), u"TeX Gyre Termes 9 bold italic");
}

TEST(WQCSSStyleTest, TheExactFamilyComesFirstThenTheFirstOfTheList) {
    EXPECT_EQ(fontOf(u"Wanderer", 0, 0, 12), u"Wanderer 12");
    EXPECT_EQ(fontOf(u"WANDERER", 0, 0, 12), u"WANDERER 12 bold");
    EXPECT_EQ(fontOf(u"wanderer", 0, 0, 12), u"WANDERER 12 bold");
}

TEST(WQCSSStyleTest, AnUnknownFamilyHasTheUsersFontAndNoneInTheAttributes) {
    const auto style = styleWith(u"Nowhere", WQCSSFontWeightBold, WQCSSFontStyleItalic, 10.5f);
    EXPECT_EQ(style->font()->description(), u"TeX Gyre Pagella 10.5");
    EXPECT_EQ(style->attributes()->count(), 2u);
    EXPECT_FALSE(style->attributes()->containsKey(NSFontAttributeName));
}

TEST(WQCSSStyleTest, AFamilyInQuotesIsUnknown) { EXPECT_EQ(fontOf(u"'TeX Gyre Termes'", 0, 0, 12), u"TeX Gyre Pagella 12"); }

TEST(WQCSSStyleTest, TheFontFollowsTheStyle) {
    const auto style = styleWith(u"TeX Gyre Termes", WQCSSFontWeightNormal, WQCSSFontStyleNormal, 12);
    style->attributes();
    style->setFontSize(20);
    EXPECT_EQ(style->font()->description(), u"TeX Gyre Termes 20");
}

TEST(WQCSSStyleTest, TheBestMatchIsTheFirstFamilyThatIsTheSameInLowerCase) {
    const auto style = newStyle();
    const auto best = [&](const NSString& family, unsigned long traits, int weight) {
        return style->bestMatchForFont_traits_weight_size(family, traits, weight, 10.5f)->description();
    };
    EXPECT_EQ(best(u"TeX Gyre Termes", NSBoldFontMask, 5), u"TeX Gyre Termes 10.5 bold");
    EXPECT_EQ(best(u"TEX GYRE TERMES", NSItalicFontMask, 5), u"TeX Gyre Termes 10.5 italic");
    EXPECT_EQ(best(u"tex gyre termes", 0, 9), u"TeX Gyre Termes 10.5 bold");
    EXPECT_EQ(best(u"Wanderer", 0, 5), u"WANDERER 10.5 bold");
}

TEST(WQCSSStyleTest, TheBestMatchOfNoFamilyIsTheUsersFont) {
    const auto style = newStyle();
    for (const NSString& family : {u"Nowhere"_ns, u""_ns, u"\U0001D11E"_ns, NSString()})
        EXPECT_EQ(style->bestMatchForFont_traits_weight_size(family, NSBoldFontMask, 5, 9)->description(), u"TeX Gyre Pagella 9");
}

TEST(WQCSSStyleTest, TheBestMatchNeedsNoStyleOfThePlatform) {
    EXPECT_EQ(
        around(new PlainStyle)->bestMatchForFont_traits_weight_size(u"tex gyre termes", 0, 5, 9)->description(), u"TeX Gyre Termes 9");
}

// ---- Text blocks

// Writes down what it is told: "width/type layer edge".
class Telling : public NSTextBlock {
public:
    void setWidth_type_forLayer_edge(double width, unsigned type, long layer, unsigned edge) override {
        std::ostringstream line;
        line << width << '/' << type << ' ' << layer << ' ' << edge;
        lines.push_back(line.str());
        NSTextBlock::setWidth_type_forLayer_edge(width, type, layer, edge);
    }
    std::vector<std::string> lines;
};

TEST(WQCSSStyleTest, ALengthIsAbsoluteOrAPercentage) {
    const auto style = newStyle();
    EXPECT_EQ(style->typeForLength(points(1)), 0u);
    EXPECT_EQ(style->typeForLength(automatic), 0u);
    EXPECT_EQ(style->typeForLength(percent(1)), 1u);
}

TEST(WQCSSStyleTest, AnyOtherTypeOfALengthFailsAndCountsAsAbsolute) {
    const auto style = newStyle();
    for (const int type : {0, 2, 5, -1}) {
        SCOPED_TRACE(type);
        const Assertions assertions;
        EXPECT_EQ(style->typeForLength({1, type}), 0u);
        EXPECT_THAT(assertions.descriptions, ElementsAre("Unsupported length type"));
        EXPECT_THAT(assertions.files, ElementsAre("mac/Frameworks/WQCSS/WQCSSStyle"));
        EXPECT_THAT(assertions.operations, ElementsAre("typeForLength"));
    }
    EXPECT_EQ(raised([&] { style->typeForLength(style->maxWidth()); }), "NSInternalInconsistencyException: Unsupported length type");
}

TEST(WQCSSStyleTest, TheFourWidthsOfALayerGoToTheirEdgesInOrder) {
    const Ref<Telling> block(new Telling);
    newStyle()->setWidthForBlock_top_left_bottom_right_layer(block, points(1.5f), percent(2), {3, WQCSSLengthTypeAuto}, points(-4), 1);
    EXPECT_THAT(block->lines, ElementsAre("1.5/0 1 1", "2/1 1 0", "3/0 1 3", "-4/0 1 2"));
}

TEST(WQCSSStyleTest, AWidthOfAnotherTypeFailsAndIsSetInPoints) {
    const Ref<Telling> block(new Telling);
    const Assertions assertions;
    newStyle()->setWidthForBlock_top_left_bottom_right_layer(block, points(1), {2, 0}, percent(3), {4, 2}, -1);
    EXPECT_THAT(block->lines, ElementsAre("1/0 -1 1", "2/0 -1 0", "3/1 -1 3", "4/0 -1 2"));
    EXPECT_THAT(assertions.descriptions, ElementsAre("Unsupported length type", "Unsupported length type"));
}

TEST(WQCSSStyleTest, AnotherLayerIsTheBlocksError) {
    const auto block = NSTextBlock::textBlock();
    EXPECT_THAT(
        raised([&] { newStyle()->setWidthForBlock_top_left_bottom_right_layer(block, points(1), points(1), points(1), points(1), 2); }),
        testing::StartsWith("NSInvalidArgumentException"));
}

TEST(WQCSSStyleTest, TheFourBordersGoToTheirEdgesInOrder) {
    const Ref<Telling> block(new Telling);
    newStyle()->setBorderForBlock_top_left_bottom_right(block, {1, 9}, {2, 9}, {16777217, 9}, {-4, 9});
    EXPECT_EQ(block->widthForLayer_edge(NSTextBlockBorder, NSMaxYEdge), 16777217.0);
    EXPECT_THAT(block->lines, ElementsAre("1/0 0 1", "2/0 0 0", "1.67772e+07/0 0 3", "-4/0 0 2"));
}

TEST(WQCSSStyleTest, AppliesPaddingBordersAndMarginsInOrder) {
    const auto style = newStyle();
    style->setPaddingTop(points(1));
    style->setPaddingLeft(points(2));
    style->setPaddingBottom(percent(3));
    style->setPaddingRight(points(4));
    style->setBorderTop({5, 0});
    style->setBorderLeft({6, 0});
    style->setBorderBottom({7, 0});
    style->setBorderRight({8, 0});
    style->setMarginTop(points(9));
    style->setMarginLeft(percent(10));
    style->setMarginBottom(automatic);
    style->setMarginRight(points(12));
    const Ref<Telling> block(new Telling);
    style->applyToTextBlock(block);
    EXPECT_THAT(
        block->lines, ElementsAre(
                          "1/0 -1 1", "2/0 -1 0", "3/1 -1 3", "4/0 -1 2",  // padding
                          "5/0 0 1", "6/0 0 0", "7/0 0 3", "8/0 0 2",      // border
                          "9/0 1 1", "10/1 1 0", "0/0 1 3", "12/0 1 2"));  // margin
}

TEST(WQCSSStyleTest, AppliesWidthsOfZeroToo) {
    const auto block = NSTextBlock::textBlock();
    for (const long layer : {-1, 0, 1})
        for (const unsigned edge : {0u, 1u, 2u, 3u}) block->setWidth_type_forLayer_edge(7, NSTextBlockPercentageValueType, layer, edge);
    newStyle()->applyToTextBlock(block);
    for (const long layer : {-1, 0, 1})
        for (const unsigned edge : {0u, 1u, 2u, 3u}) {
            EXPECT_EQ(block->widthForLayer_edge(layer, edge), 0);
            EXPECT_EQ(block->widthValueTypeForLayer_edge(layer, edge), 0u);
        }
}

TEST(WQCSSStyleTest, ANullBlockTakesNothing) {
    const auto style = newStyle();
    style->applyToTextBlock(nullptr);
    style->setWidthForBlock_top_left_bottom_right_layer(nullptr, points(1), points(1), points(1), points(1), 9);
    style->setBorderForBlock_top_left_bottom_right(nullptr, {1, 0}, {1, 0}, {1, 0}, {1, 0});
}

// ---- Around none

TEST(WQCSSStyleTest, AroundNoneEachQueryAnswersAsNullDoes) {
    const auto none = around(nullptr);
    ASSERT_TRUE(none);
    const Assertions assertions;
    EXPECT_EQ(none->cssStyle(), nullptr);
    EXPECT_FALSE(none->color());
    EXPECT_EQ(none->display(), WQCSSDisplayBlock);
    EXPECT_EQ(none->position(), 0u);
    EXPECT_EQ(none->fontStyle(), WQCSSFontStyleNormal);
    EXPECT_EQ(none->fontWeight(), WQCSSFontWeightNormal);
    EXPECT_EQ(none->fontFamily(), nullptr);
    EXPECT_EQ(none->fontSize(), 0);
    for (const auto length :
         {none->marginLeft(), none->marginRight(), none->marginTop(), none->marginBottom(), none->paddingLeft(), none->paddingRight(),
          none->paddingTop(), none->paddingBottom(), none->height(), none->width(), none->maxHeight(), none->minHeight(), none->maxWidth(),
          none->minWidth(), none->textIndent()})
        EXPECT_EQ(length, (_WQCSSLength{0, 0}));
    for (const auto border : {none->borderLeft(), none->borderRight(), none->borderTop(), none->borderBottom()})
        EXPECT_EQ(border, (_WQCSSBorder{0, 0}));
    EXPECT_EQ(none->lineHeight(), 0);
    EXPECT_EQ(none->textAlign(), WQCSSTextAlignLeft);
    EXPECT_EQ(none->textDecoration(), WQCSSTextDecorationNone);
    EXPECT_EQ(none->verticalAlign(), WQCSSVerticalAlignTop);
    EXPECT_EQ(none->pageBreakAfter(), WQCSSPageBreakAfterAuto);
    EXPECT_EQ(none->pageBreakBefore(), WQCSSPageBreakBeforeAuto);
    EXPECT_FALSE(none->attributes());
    EXPECT_FALSE(none->font());
    EXPECT_THAT(assertions.descriptions, testing::IsEmpty());
}

TEST(WQCSSStyleTest, AroundNoneEachSetterDoesNothing) {
    const auto none = around(nullptr);
    none->inheritPropertiesFromStyle(newStyle());
    none->setColor(device(1, 1, 1, 1));
    none->setFontFamily(u"x");
    none->setFontSize(1);
    none->setDisplay(WQCSSDisplayNone);
    none->setMarginTop(points(1));
    none->setBorderTop({1, 1});
    none->setWidth(points(1));
    none->setLineHeight(2);
    none->setTextIndent(points(1));
    EXPECT_EQ(none->fontSize(), 0);
    const Ref<Telling> block(new Telling);
    none->applyToTextBlock(block);
    EXPECT_THAT(block->lines, testing::IsEmpty());
}

}  // namespace
