#include "mac/Frameworks/WQCSS/WQCSSMutableStyleDeclaration.h"

#include <csignal>
#include <locale>
#include <optional>

#include "mac/Frameworks/WQCSS/WQCSSComputedStyleDeclaration.h"
#include "mac/Frameworks/WQCSS/WQCSSPrimitiveValue.h"
#include "mac/Frameworks/WQCSS/WQCSSStyleResolver.h"
#include "platform/Faces.h"
#include "platform/NSAttributeNames.h"
#include "platform/NSColor.h"
#include "platform/NSFontManager.h"
#include "platform/NSMutableParagraphStyle.h"
#include "tests/common/core/css/Declarations.h"
#include "tests/dom/Support.h"

using namespace test;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

using Lines = std::vector<std::string>;

Ref<WQCSSMutableStyleDeclaration> declaration(const NSString& text) {
    const auto made = WQCSSMutableStyleDeclaration::newStyleDeclaration();
    made->setCssText(text);
    return made;
}

// Writes down what it is told.
struct Telling : CSS::MutableStyleDeclaration {
    void setProperty(const std::string& name, const std::string& value, const std::string& priority) override {
        lines.push_back(name + ": " + value + (priority.empty() ? "" : " !" + priority));
        MutableStyleDeclaration::setProperty(name, value, priority);
    }
    void setProperty(const std::string& name, CSS::Value* value, const std::string& priority) override {
        lines.push_back(name + " = " + (value ? value->cssText() : "null") + (priority.empty() ? "" : " !" + priority));
        MutableStyleDeclaration::setProperty(name, value, priority);
    }
    void setCssText(const std::string& text) override {
        lines.push_back(text);
        MutableStyleDeclaration::setCssText(text);
    }
    std::string removeProperty(const std::string& name) override {
        removed.push_back(name);
        return MutableStyleDeclaration::removeProperty(name);
    }
    Lines lines, removed;
};
class TellingDeclaration : public WQCSSMutableStyleDeclaration {
public:
    bool init() override { return initWithCSSStyleDeclaration(new Telling); }
    Lines& lines() const { return static_cast<Telling*>(cssStyleDeclaration())->lines; }
    Lines& removed() const { return static_cast<Telling*>(cssStyleDeclaration())->removed; }
};
Ref<TellingDeclaration> telling() { return WQCSSMutableStyleDeclaration::newStyleDeclaration<TellingDeclaration>(); }

TEST(WQCSSMutableStyleDeclarationTest, IsEmptyAtFirst) {
    const auto made = WQCSSMutableStyleDeclaration::newStyleDeclaration();
    EXPECT_EQ(made->length(), 0u);
    EXPECT_EQ(made->cssText(), u"");
    EXPECT_EQ(made->cssStyleDeclaration()->refCount, 1);
    EXPECT_EQ(made->mutableDeclaration(), made->cssStyleDeclaration());
    EXPECT_NE(made->cssStyleDeclaration(), WQCSSMutableStyleDeclaration::newStyleDeclaration()->cssStyleDeclaration());
}

TEST(WQCSSMutableStyleDeclarationTest, ChangesTheDeclarationThatItShares) {
    const SharedPtr<CSS::MutableStyleDeclaration> shared = new CSS::MutableStyleDeclaration;
    const auto made = WQCSSStyleDeclaration::newWithCSSStyleDeclaration<WQCSSMutableStyleDeclaration>(shared.Get());
    made->setCssText(u"color: red; width: 1px");
    EXPECT_EQ(shared->cssText(), "color: #ff0000; width: 1px; ");
    made->setProperty_value(u"color", u"blue");
    EXPECT_EQ(shared->cssText(), "width: 1px; color: #0000ff; ");
    made->setProperty_value_priority(u"width", u"2px", u"");
    EXPECT_EQ(shared->cssText(), "color: #0000ff; width: 2px; ");
    EXPECT_EQ(made->removeProperty(u"color"), u"#0000ff");
    EXPECT_EQ(shared->cssText(), "width: 2px; ");
    made->setProperty_cssValue(u"width", made->propertyCSSValue(u"width"));
    EXPECT_EQ(shared->cssText(), "");
}

TEST(WQCSSMutableStyleDeclarationTest, ForwardsWithAnEmptyPriority) {
    const auto made = telling();
    made->setProperty_value(u"color", u"red");
    made->setProperty_cssValue(u"width", WQCSSPrimitiveValue::primitiveValueWithFloat_unitType(1, CSS::CSS_PX));
    EXPECT_THAT(made->lines(), ElementsAre("color: red", "width = 1px"));
}

TEST(WQCSSMutableStyleDeclarationTest, ForwardsTheRest) {
    const auto made = telling();
    EXPECT_EQ(made->removeProperty(u"color"), u"");
    EXPECT_THAT(made->removed(), ElementsAre("color"));
    made->setCssText(u"display: none");
    printedBy([&] { made->setProperty_value_priority(u"color", u"red", u"important"); });
    made->setProperty_value_priority(u"width", u"1px", u"other");
    EXPECT_THAT(made->lines(), ElementsAre("display: none", "color: red !important", "width: 1px !other"));
    EXPECT_EQ(made->cssText(), u"display: none; width: 1px; ");
}

TEST(WQCSSMutableStyleDeclarationTest, ThePriorityImportantSpoilsTheValue) {
    const auto made = declaration(u"color: blue; width: 1px");
    const std::string warning = printedBy([&] { made->setProperty_value_priority(u"color", u"red", u"important"); });
    EXPECT_EQ(warning, "Warning: Unsupported property color or invalid value \"redimportant\"\n");
    EXPECT_EQ(made->cssText(), u"width: 1px; ");
}

TEST(WQCSSMutableStyleDeclarationTest, SettingAValueObjectRemovesAndAddsNothing) {
    const auto made = declaration(u"color: red; width: 1px; color: blue");
    const auto value = made->propertyCSSValue(u"color");
    made->setProperty_cssValue(u"color", value);
    EXPECT_EQ(made->cssText(), u"width: 1px; color: #0000ff; ");
    made->setProperty_cssValue(u"display", value);
    EXPECT_EQ(made->cssText(), u"width: 1px; color: #0000ff; ");
    made->setProperty_cssValue(u"color", nullptr);
    EXPECT_EQ(made->cssText(), u"width: 1px; ");
    EXPECT_EQ(value->cssText(), u"#ff0000");
    EXPECT_EQ(value->cssValue()->refCount, 1);
}

TEST(WQCSSMutableStyleDeclarationTest, RemovingAnswersTheTextOfTheFirstOfTheName) {
    const auto made = declaration(u"color: red; color: blue");
    EXPECT_EQ(made->removeProperty(u"color"), u"#ff0000");
    EXPECT_EQ(made->removeProperty(u"color"), u"#0000ff");
    EXPECT_EQ(made->removeProperty(u"color"), u"");
}

TEST(WQCSSMutableStyleDeclarationTest, CrossesInUTF8) {
    const auto made = telling();
    made->setProperty_value(u"font-family", u"\U0001D11E\u00E4");
    EXPECT_EQ(made->propertyValue(u"font-family"), u"\U0001D11E\u00E4");
    EXPECT_EQ(made->removeProperty(u"font-family"), u"\U0001D11E\u00E4");
    made->setCssText(u"font-family: \U0001D11E");
    EXPECT_EQ(made->cssText(), u"font-family: \U0001D11E; ");
    made->removeProperty(u"\U0001D11E");
    const char16_t lone[] = {0xD834, 0};
    made->setProperty_value_priority(u"font-family", lone, lone);
    EXPECT_THAT(
        made->lines(),
        ElementsAre("font-family: \xF0\x9D\x84\x9E\xC3\xA4", "font-family: \xF0\x9D\x84\x9E", "font-family: \xEF\xBF\xBD !\xEF\xBF\xBD"));
    EXPECT_EQ(made->removed()[2], "\xF0\x9D\x84\x9E");
}

TEST(WQCSSMutableStyleDeclarationTest, NullStringsAreEmpty) {
    const auto made = telling();
    EXPECT_EQ(made->removeProperty(nullptr), u"");
    made->setProperty_cssValue(nullptr, nullptr);
    made->setProperty_value_priority(u"width", u"1px", nullptr);
    made->setCssText(nullptr);
    EXPECT_THAT(made->lines(), ElementsAre(" = null", "width: 1px", ""));
    EXPECT_EQ(made->length(), 0u);
}

void expectNothingToBeDone(const Ref<WQCSSMutableStyleDeclaration>& made, const NSString& text) {
    ASSERT_TRUE(made);
    EXPECT_EQ(made->mutableDeclaration(), nullptr);
    made->setCssText(u"color: red");
    made->setProperty_value(u"color", u"red");
    made->setProperty_value_priority(u"color", u"red", u"");
    made->setProperty_cssValue(u"color", nullptr);
    EXPECT_EQ(made->removeProperty(u"color"), nullptr);
    EXPECT_EQ(made->cssText(), text);
}

TEST(WQCSSMutableStyleDeclarationTest, AroundNoneItAnswersAsNullDoes) {
    expectNothingToBeDone(WQCSSStyleDeclaration::newWithCSSStyleDeclaration<WQCSSMutableStyleDeclaration>(nullptr), nullptr);
}

TEST(WQCSSMutableStyleDeclarationTest, AroundOneThatCannotBeChangedItLeavesThatAlone) {
    const auto style = WQCSSStyleResolver::newStyleResolver()->defaultStyle();
    const auto computed = WQCSSComputedStyleDeclaration::newWithStyle(style);
    expectNothingToBeDone(
        WQCSSStyleDeclaration::newWithCSSStyleDeclaration<WQCSSMutableStyleDeclaration>(computed->cssStyleDeclaration()),
        computed->cssText());
}

#ifdef WQ_NO_HARD_ASSERTIONS

TEST(WQCSSMutableStyleDeclarationTest, ASyntaxErrorEmptiesIt) {
    testing::internal::CaptureStderr();
    const auto made = declaration(u"color: red");
    made->setProperty_value(u"width", u"");
    EXPECT_EQ(made->length(), 0u);
    made->setCssText(u"color: red; width: }");
    EXPECT_EQ(made->length(), 0u);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "CSS Parse Error before token ;\nCSS Parse Error before token }\n");
}

#endif

// ---- styleDeclarationFromAttributes

// What is told to the declaration that attributes become.
Lines linesOf(const Ref<NSDictionary>& attributes) {
    return WQCSSMutableStyleDeclaration::styleDeclarationFromAttributes<TellingDeclaration>(attributes)->lines();
}
Ref<WQCSSMutableStyleDeclaration> of(const Ref<NSDictionary>& attributes) {
    return WQCSSMutableStyleDeclaration::styleDeclarationFromAttributes(attributes);
}

// The one line of a property; "" if it was not set.
std::string line(const Ref<NSDictionary>& attributes, const std::string& name) {
    std::string found;
    for (const std::string& each : linesOf(attributes))
        if (each.starts_with(name + ": ")) found += each.substr(name.size() + 2);
    return found;
}

Ref<NSMutableParagraphStyle> newParagraph() { return NSParagraphStyle::defaultParagraphStyle()->mutableCopy(); }
Ref<NSDictionary> with(const Ref<NSMutableParagraphStyle>& paragraph) {
    return NSDictionary::dictionary({{NSParagraphStyleAttributeName, paragraph}});
}
Ref<NSDictionary> with(const Ref<NSFont>& font) { return NSDictionary::dictionary({{NSFontAttributeName, font}}); }
Ref<NSDictionary> with(const Ref<NSColor>& color) { return NSDictionary::dictionary({{NSForegroundColorAttributeName, color}}); }

// The way to fonts of any name, also of those that are not installed.
using MakeFont = Ref<NSFont> (*)(const wq::Face&, double);
MakeFont makeFont();
template <MakeFont function> struct Opened {
    friend MakeFont makeFont() { return function; }
};
template struct Opened<&NSFont::fontWithFace_size>;

Ref<NSFont> fontNamed(const NSString& family, double size = 12, bool isBold = false, bool isItalic = false) {
    wq::Face face;
    face.family = wq::toUTF8(family);
    face.weight = isBold ? 200 : 80;
    face.isItalic = isItalic;
    return makeFont()(face, size);
}

const Lines kNothing{
    "margin-left: 0.000000px", "margin-top: 0.000000px", "margin-bottom: 0.000000px", "text-indent: 0.000000px",
    "line-height: 0.000000",   "text-align: left",       "font-family: Helvetica",    "font-size: 12px",
    "font-weight: normal",     "font-style: normal",     "text-decoration: none",
};
const NSString nothingAsText =
    u"margin-left: 0px; margin-top: 0px; margin-bottom: 0px; text-indent: 0px; line-height: 0; text-align: left; "
    u"font-family: Helvetica; font-size: 12px; font-weight: normal; font-style: normal; text-decoration: none; ";

TEST(WQCSSStyleDeclarationFromAttributesTest, EmptyAttributesGiveTheLiteralDefaultsAndNoColor) {
    EXPECT_EQ(linesOf(NSDictionary::dictionary()), kNothing);
    const auto made = of(NSDictionary::dictionary());
    EXPECT_EQ(made->cssText(), nothingAsText);
    EXPECT_EQ(made->propertyValue(u"font-family"), u"Helvetica");
    EXPECT_EQ(made->propertyValue(u"font-size"), u"12px");
    EXPECT_EQ(made->propertyValue(u"text-decoration"), u"none");
    EXPECT_FALSE(made->propertyCSSValue(u"color"));
}

TEST(WQCSSStyleDeclarationFromAttributesTest, NullAttributesAreEmptyOnes) {
    EXPECT_EQ(linesOf(nullptr), kNothing);
    EXPECT_EQ(of(nullptr)->cssText(), nothingAsText);
}

TEST(WQCSSStyleDeclarationFromAttributesTest, EachPropertyIsSetInItsOrder) {
    const auto paragraph = newParagraph();
    paragraph->setHeadIndent(10);
    paragraph->setParagraphSpacingBefore(1.5);
    paragraph->setParagraphSpacing(2.25);
    paragraph->setFirstLineHeadIndent(14);
    paragraph->setLineHeightMultiple(1.2);
    paragraph->setAlignment(NSTextAlignmentCenter);
    const auto font = NSFontManager::sharedFontManager()->fontWithFamily_traits_weight_size(
        u"TeX Gyre Termes", NSBoldFontMask | NSItalicFontMask, 5, 10.5);
    const auto attributes = NSDictionary::dictionary(
        {{NSParagraphStyleAttributeName, paragraph},
         {NSFontAttributeName, font},
         {NSUnderlineStyleAttributeName, 1.0},
         {NSForegroundColorAttributeName, NSColor::colorWithSRGBRed_green_blue_alpha(1, 0.5, 0, 0.25)}});
    EXPECT_THAT(
        linesOf(attributes),
        ElementsAre(
            "margin-left: 10.000000px", "margin-top: 1.500000px", "margin-bottom: 2.250000px", "text-indent: 4.000000px",
            "line-height: 1.200000", "text-align: center", "font-family: 'TeX Gyre Termes'", "font-size: 10.500000px", "font-weight: bold",
            "font-style: italic", "text-decoration: underline", "color: #ff7f00"));
    EXPECT_EQ(
        of(attributes)->cssText(),
        u"margin-left: 10px; margin-top: 1.5px; margin-bottom: 2.25px; text-indent: 4px; line-height: 1.2; text-align: center; "
        u"font-family: 'TeX Gyre Termes'; font-size: 10.5px; font-weight: bold; font-style: italic; text-decoration: underline; "
        u"color: #ff7f00; ");
}

TEST(WQCSSStyleDeclarationFromAttributesTest, TheAttributeNamesAreThoseOfThePlatform) {
    const auto attributes = NSDictionary::dictionary(
        {{u"NSParagraphStyle", newParagraph()}, {u"NSFont", fontNamed(u"Courier")}, {u"NSUnderline", 0.0}, {u"NSLink", u"x:"}});
    attributes->setObject_forKey(NSColor::textColor(), u"NSColor");
    EXPECT_EQ(line(attributes, "font-family"), "Courier");
    EXPECT_EQ(line(attributes, "text-decoration"), "underline");
    EXPECT_EQ(line(attributes, "color"), "#000000");
}

TEST(WQCSSStyleDeclarationFromAttributesTest, LengthsAreNarrowedAndHaveSixDecimals) {
    const struct {
        double length;
        std::string text;
    } rows[] = {
        {0, "0.000000px"},
        {-2.5, "-2.500000px"},
        {0.1, "0.100000px"},
        {1.0 / 3, "0.333333px"},
        {0.0000004, "0.000000px"},
        {0.0000006, "0.000001px"},
        {1000000, "1000000.000000px"},
        {16777217, "16777216.000000px"},
        {123456.789, "123456.789062px"},
        {1e10, "10000000000.000000px"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        const auto paragraph = newParagraph();
        paragraph->setHeadIndent(row.length);
        paragraph->setFirstLineHeadIndent(row.length + row.length);
        paragraph->setParagraphSpacingBefore(row.length);
        paragraph->setParagraphSpacing(row.length);
        paragraph->setLineHeightMultiple(row.length);
        for (const char* name : {"margin-left", "margin-top", "margin-bottom", "text-indent"})
            EXPECT_EQ(line(with(paragraph), name), row.text) << name;
        EXPECT_EQ(line(with(paragraph), "line-height") + "px", row.text);
    }
}

TEST(WQCSSStyleDeclarationFromAttributesTest, LengthsReadBackWithSixDecimals) {
    const auto paragraph = newParagraph();
    paragraph->setHeadIndent(0.1234567);
    paragraph->setParagraphSpacing(-0.5);
    const auto made = of(with(paragraph));
    EXPECT_EQ(wq::cast<WQCSSPrimitiveValue>(made->propertyCSSValue(u"margin-left"))->floatValue(CSS::CSS_PX), 0.123457f);
    EXPECT_EQ(made->propertyValue(u"margin-bottom"), u"-0.5px");
}

TEST(WQCSSStyleDeclarationFromAttributesTest, TheIndentIsTakenBeforeItIsNarrowed) {
    const auto paragraph = newParagraph();
    paragraph->setHeadIndent(16777216);
    paragraph->setFirstLineHeadIndent(16777217);
    EXPECT_EQ(line(with(paragraph), "text-indent"), "1.000000px");
    paragraph->setHeadIndent(20);
    paragraph->setFirstLineHeadIndent(5.5);
    EXPECT_EQ(line(with(paragraph), "text-indent"), "-14.500000px");
}

TEST(WQCSSStyleDeclarationFromAttributesTest, EachAlignmentHasItsWord) {
    const std::pair<long, const char*> rows[] = {{0, "left"}, {1, "right"}, {2, "center"}, {3, "justify"},
                                                 {4, "left"}, {5, "left"},  {-1, "left"},  {1l << 32, "left"}};
    for (const auto& [alignment, word] : rows) {
        const auto paragraph = newParagraph();
        paragraph->setAlignment(alignment);
        EXPECT_EQ(line(with(paragraph), "text-align"), word) << alignment;
    }
}

TEST(WQCSSStyleDeclarationFromAttributesTest, TheDefaultParagraphStyleIsAlignedToTheLeft) {
    EXPECT_EQ(line(with(newParagraph()), "text-align"), "left");
}

// Decimal commas, in C and in C++, until the end of the scope.
struct GermanNumbers {
    GermanNumbers() {
        try {
            previous = std::locale::global(std::locale("de_DE.utf8"));
        } catch (const std::runtime_error&) {}
    }
    ~GermanNumbers() {
        if (previous) std::locale::global(*previous);
    }
    GermanNumbers(const GermanNumbers&) = delete;
    GermanNumbers& operator=(const GermanNumbers&) = delete;

    std::optional<std::locale> previous;
};

TEST(WQCSSStyleDeclarationFromAttributesTest, NumbersHaveADecimalPointInAnyLocale) {
    const GermanNumbers locale;
    if (!locale.previous) GTEST_SKIP() << "this system has no German locale";
    char comma[8];
    std::snprintf(comma, sizeof comma, "%.1f", 1.5);
    ASSERT_STREQ(comma, "1,5");
    const auto paragraph = newParagraph();
    paragraph->setHeadIndent(1234567.5);
    paragraph->setLineHeightMultiple(1.5);
    const auto attributes = NSDictionary::dictionary(
        {{NSParagraphStyleAttributeName, paragraph},
         {NSFontAttributeName, fontNamed(u"Courier", 10.25)},
         {NSForegroundColorAttributeName, NSColor::colorWithDeviceRed_green_blue_alpha(1, 1, 1, 1)}});
    EXPECT_EQ(line(attributes, "margin-left"), "1234567.500000px");
    EXPECT_EQ(line(attributes, "line-height"), "1.500000");
    EXPECT_EQ(line(attributes, "font-size"), "10.250000px");
    EXPECT_EQ(of(attributes)->propertyValue(u"font-size"), u"10.25px");
    EXPECT_EQ(of(attributes)->propertyValue(u"color"), u"#ffffff");
}

TEST(WQCSSStyleDeclarationFromAttributesTest, AFontGivesItsSizeAndItsTraits) {
    const struct {
        bool isBold, isItalic;
        const char *weight, *style;
    } rows[] = {
        {false, false, "normal", "normal"},
        {true, false, "bold", "normal"},
        {false, true, "normal", "italic"},
        {true, true, "bold", "italic"}};
    for (const auto& row : rows) {
        const auto attributes = with(fontNamed(u"Courier", 9.1, row.isBold, row.isItalic));
        EXPECT_EQ(line(attributes, "font-weight"), row.weight);
        EXPECT_EQ(line(attributes, "font-style"), row.style);
        EXPECT_EQ(line(attributes, "font-size"), "9.100000px");
    }
}

TEST(WQCSSStyleDeclarationFromAttributesTest, TheUsersFontIsNoDefault) {
    EXPECT_EQ(line(with(NSFont::userFontOfSize(12)), "font-family"), "'TeX Gyre Pagella'");
    EXPECT_EQ(line(NSDictionary::dictionary(), "font-family"), "Helvetica");
}

TEST(WQCSSStyleDeclarationFromAttributesTest, AFamilyWithABlankIsQuotedAndOneWithoutIsBare) {
    const std::pair<NSString, std::string> rows[] = {
        {u"Courier", "Courier"},
        {u"TeX Gyre Termes", "'TeX Gyre Termes'"},
        {u" ", "' '"},
        {u"Courier ", "'Courier '"},
        {u"No\u00A0Blank",
         "No\xC2\xA0"
         "Blank"},
        {u"Tab\tulator", "Tab\tulator"},
        {u"\U0001D11E", "\xF0\x9D\x84\x9E"},
        {u"\U0001D11E Clef", "'\xF0\x9D\x84\x9E Clef'"},
        {u"1942", "1942"},
        {u"12px", "12px"},
        {u"O'Brien", "O'Brien"},
        {u"O'Brien Sans", "'O'Brien Sans'"},
    };
    for (const auto& row : rows) printedBy([&] { EXPECT_EQ(line(with(fontNamed(row.first)), "font-family"), row.second); });
}

// What the family reads back as.
NSString familyOf(const NSString& family) { return of(with(fontNamed(family)))->propertyValue(u"font-family"); }

TEST(WQCSSStyleDeclarationFromAttributesTest, ABareFamilyReadsBackAsTheGrammarHasIt) {
    EXPECT_EQ(familyOf(u"Courier"), u"Courier");
    EXPECT_EQ(familyOf(u"\U0001D11E\u00E4"), u"\U0001D11E\u00E4");
    EXPECT_EQ(familyOf(u"1942"), u"1942");
    EXPECT_EQ(familyOf(u"a,b"), u"a, b");
}

TEST(WQCSSStyleDeclarationFromAttributesTest, AStrayCharacterEndsABareFamilyInSilence) {
    EXPECT_EQ(
        printedBy([] {
            EXPECT_EQ(familyOf(u"Wander*er"), u"Wander");
            EXPECT_EQ(familyOf(u"O'Brien"), u"O");
        }),
        "");
}

TEST(WQCSSStyleDeclarationFromAttributesTest, ABareFamilyThatIsNoNameIsRefused) {
    EXPECT_EQ(
        printedBy([] { EXPECT_EQ(familyOf(u"12px"), u""); }), "Warning: Unsupported property font-family or invalid value \"12px\"\n");
}

TEST(WQCSSStyleDeclarationFromAttributesTest, AnApostropheBreaksTheQuotesOfAFamily) { EXPECT_EQ(familyOf(u"Paul's Own"), u"'Paul' s Own"); }

TEST(WQCSSStyleDeclarationFromAttributesTest, AQuotedFamilyKeepsItsQuotes) {
    EXPECT_EQ(familyOf(u"TeX Gyre Termes"), u"'TeX Gyre Termes'");
    EXPECT_EQ(familyOf(u"\U0001D11E Clef"), u"'\U0001D11E Clef'");
}

#ifdef WQ_NO_HARD_ASSERTIONS

TEST(WQCSSStyleDeclarationFromAttributesTest, AFamilyThatBeginsNoTermCostsWhatWasSetBefore) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(
        of(with(fontNamed(u"*Wanderer")))->cssText(), u"font-size: 12px; font-weight: normal; font-style: normal; text-decoration: none; ");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "CSS Parse Error before token *\n");
}

#else

TEST(WQCSSStyleDeclarationFromAttributesDeathTest, AFamilyThatBeginsNoTermIsASyntaxError) {
    EXPECT_EXIT(
        of(with(fontNamed(u"*Wanderer"))), testing::KilledBySignal(SIGABRT),
        "^Assertion failed: \\(0\\), function error, file common/core/css/Parser, line [0-9]+\\.\n");
}

#endif

TEST(WQCSSStyleDeclarationFromAttributesTest, AnyUnderlineUnderlines) {
    for (const NSValue& value : {NSValue(1.0), NSValue(0.0), NSValue(9.0), NSValue(false), NSValue(u"")})
        EXPECT_EQ(line(NSDictionary::dictionary({{NSUnderlineStyleAttributeName, value}}), "text-decoration"), "underline");
}

TEST(WQCSSStyleDeclarationFromAttributesTest, ALinkIsNoUnderlineAndNoColor) {
    EXPECT_EQ(linesOf(NSDictionary::dictionary({{NSLinkAttributeName, u"http://localhost/"}})), kNothing);
}

TEST(WQCSSStyleDeclarationFromAttributesTest, AColorOfAnySpaceKeepsItsNumbers) {
    using Maker = Ref<NSColor> (*)(double, double, double, double);
    for (const Maker make :
         {&NSColor::colorWithCalibratedRed_green_blue_alpha, &NSColor::colorWithDeviceRed_green_blue_alpha,
          &NSColor::colorWithSRGBRed_green_blue_alpha})
        EXPECT_EQ(line(with(make(0.25, 0.5, 0.75, 1)), "color"), "#3f7fbf");
    EXPECT_EQ(line(with(NSColor::textColor()), "color"), "#000000");
}

TEST(WQCSSStyleDeclarationFromAttributesTest, ComponentsAreCut) {
    const std::pair<double, const char*> rows[] = {
        {0, "00"},         {1, "ff"},         {0.9999, "fe"},     {254.999 / 255, "fe"}, {0.5, "7f"},
        {1.0 / 255, "01"}, {0.9 / 255, "00"}, {16.0 / 255, "10"}, {0.05, "0c"},
    };
    for (const auto& [component, digits] : rows) {
        const std::string twice = std::string(digits) + digits;
        EXPECT_EQ(
            line(with(NSColor::colorWithDeviceRed_green_blue_alpha(component, component, component, 1)), "color"), "#" + twice + digits);
    }
}

TEST(WQCSSStyleDeclarationFromAttributesTest, EachComponentHasItsPlace) {
    EXPECT_EQ(line(with(NSColor::colorWithDeviceRed_green_blue_alpha(1, 0, 0, 1)), "color"), "#ff0000");
    EXPECT_EQ(line(with(NSColor::colorWithDeviceRed_green_blue_alpha(0, 1, 0, 1)), "color"), "#00ff00");
    EXPECT_EQ(line(with(NSColor::colorWithDeviceRed_green_blue_alpha(0, 0, 1, 1)), "color"), "#0000ff");
}

TEST(WQCSSStyleDeclarationFromAttributesTest, AlphaIsDropped) {
    EXPECT_EQ(line(with(NSColor::colorWithDeviceRed_green_blue_alpha(1, 1, 0, 0)), "color"), "#ffff00");
}

TEST(WQCSSStyleDeclarationFromAttributesTest, TheAttributesStayAsTheyAre) {
    const auto paragraph = newParagraph();
    const auto attributes = with(paragraph);
    of(attributes);
    EXPECT_EQ(attributes->count(), 1u);
    EXPECT_TRUE(paragraph->isEqual(NSParagraphStyle::defaultParagraphStyle()));
    EXPECT_EQ(paragraph->referenceCount(), 2);
}

}  // namespace
