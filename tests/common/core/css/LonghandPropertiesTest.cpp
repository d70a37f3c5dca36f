#include "common/core/css/LonghandProperties.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "common/core/css/PropertyFactory.h"
#include "common/core/css/Token.h"
#include "tests/common/core/css/Declarations.h"
#include "tests/common/core/css/PlainStyle.h"

using namespace CSS;
using namespace std::string_literals;
using test::dumpOfValue;
using test::printedBy;
using test::readDeclarations;

namespace {

using P = SharedPtr<Property>;

P make(const std::string& name) { return PropertyFactory::MakeProperty(name); }

P withValue(const std::string& name, Value* value) {
    const P property = make(name);
    property->setValue(value);
    return property;
}

AST* add(AST& parent, int type, const std::string& text = "") {
    AST* const node = parent.AddChild();
    node->type = type;
    node->text = text;
    return node;
}

std::string warning(const std::string& name, const std::string& value) {
    return "Warning: Unsupported property " + name + " or invalid value \"" + value + "\"\n";
}

// Writes down which setters are called, and can hold what its fields are too narrow for.
class LoggingStyle : public PlainStyle {
public:
    LoggingStyle() { SetFont(new PlainFont); }

    void SetDisplay(WQCSSDisplay display) override { note("SetDisplay", display), PlainStyle::SetDisplay(display); }
    void SetFontStyle(WQCSSFontStyle style) override { note("SetFontStyle", style), PlainStyle::SetFontStyle(style); }
    void SetFontWeight(WQCSSFontWeight weight) override { note("SetFontWeight", weight), PlainStyle::SetFontWeight(weight); }
    void SetPageBreakAfter(WQCSSPageBreakAfter value) override { note("SetPageBreakAfter", value), PlainStyle::SetPageBreakAfter(value); }
    void SetPageBreakBefore(WQCSSPageBreakBefore value) override {
        note("SetPageBreakBefore", value), PlainStyle::SetPageBreakBefore(value);
    }
    void SetTextAlign(WQCSSTextAlign align) override { note("SetTextAlign", wideAlign = align), PlainStyle::SetTextAlign(align); }
    WQCSSTextAlign GetTextAlign() const override { return wideAlign; }
    void SetTextDecoration(WQCSSTextDecoration value) override {
        note("SetTextDecoration", wideDecoration = value), PlainStyle::SetTextDecoration(value);
    }
    WQCSSTextDecoration GetTextDecoration() const override { return wideDecoration; }
    void SetVerticalAlign(WQCSSVerticalAlign align) override { note("SetVerticalAlign", align), PlainStyle::SetVerticalAlign(align); }
    void SetListStyleType(WQCSSListStyleType type) override { note("SetListStyleType", type), PlainStyle::SetListStyleType(type); }
    void SetColor(CSSColor color) override {
        char word[16];
        std::snprintf(word, sizeof word, "%08x", color.rgbaValue);
        log += "SetColor "s + word + "\n";
        PlainStyle::SetColor(color);
    }
    bool SetFontFamily(const std::string& family) override {
        log += "SetFontFamily " + family + "\n";
        return unavailableFamilies.count(family) ? false : PlainStyle::SetFontFamily(family);
    }
    void SetFontSize(float size) override { noteFloat("SetFontSize", size), PlainStyle::SetFontSize(size); }
    void SetLineHeight(float multiple) override { noteFloat("SetLineHeight", multiple), PlainStyle::SetLineHeight(multiple); }
    void SetMarginTop(_WQCSSLength length) override { noteLength("SetMarginTop", length), PlainStyle::SetMarginTop(length); }
    void SetMarginBottom(_WQCSSLength length) override { noteLength("SetMarginBottom", length), PlainStyle::SetMarginBottom(length); }
    void SetMarginLeft(_WQCSSLength length) override { noteLength("SetMarginLeft", length), PlainStyle::SetMarginLeft(length); }
    void SetMarginRight(_WQCSSLength length) override { noteLength("SetMarginRight", length), PlainStyle::SetMarginRight(length); }
    void SetWidth(_WQCSSLength length) override { noteLength("SetWidth", length), PlainStyle::SetWidth(length); }
    void SetTextIndent(_WQCSSLength length) override { noteLength("SetTextIndent", length), PlainStyle::SetTextIndent(length); }

    std::string log;
    std::set<std::string> unavailableFamilies;

private:
    void note(const char* setter, uint32_t value) { log += setter + " "s + std::to_string(value) + "\n"; }
    void noteFloat(const char* setter, float value) { log += setter + " "s + text(value) + "\n"; }
    void noteLength(const char* setter, _WQCSSLength length) {
        log += setter + " "s + text(length.value) + " type " + std::to_string(length.type) + "\n";
    }
    static std::string text(float value) {
        char buffer[32];
        std::snprintf(buffer, sizeof buffer, "%.9g", static_cast<double>(value));
        return buffer;
    }

    WQCSSTextAlign wideAlign = WQCSSTextAlignLeft;
    WQCSSTextDecoration wideDecoration = WQCSSTextDecorationNone;
};

// The calls that the property makes of a style, one a line.
std::string applied(const P& property) {
    const SharedPtr<LoggingStyle> style = new LoggingStyle;
    const std::string before = property->cssText();
    property->applyToStyle(style.Get());
    EXPECT_EQ(property->cssText(), before);
    return style->log;
}

// Of each of the declarations of a text.
std::string applied(const std::string& text) {
    MutableStyleDeclaration declaration;
    EXPECT_TRUE(Parser().ParseStyleDeclaration(text, &declaration));
    std::string log;
    for (const auto& property : declaration.properties) log += applied(property);
    return log;
}

std::string read(const std::string& name, Style& style) {
    Value* const made = make(name)->valueFromStyle(&style);
    EXPECT_TRUE(!made || made->refCount == 0);
    const SharedPtr<Value> value = made;
    return value ? dumpOfValue(value.Get()) : "null";
}

// A declaration of one property: what the style says of it afterwards.
std::string applyAndRead(const std::string& text) {
    MutableStyleDeclaration declaration;
    EXPECT_TRUE(Parser().ParseStyleDeclaration(text, &declaration));
    EXPECT_EQ(declaration.length(), 1u);
    if (declaration.length() != 1) return "refused";
    const SharedPtr<LoggingStyle> style = new LoggingStyle;
    const P property = declaration.propertyAtIndex(0);
    property->applyToStyle(style.Get());
    const std::string log = style->log, answer = read(property->name(), *style);
    EXPECT_EQ(style->log, log) << "reading changes nothing";
    return answer;
}

#ifdef WQ_NO_HARD_ASSERTIONS
void expectApplyFails(const P& property, const char* = nullptr) { EXPECT_EQ(applied(property), "") << property->cssText(); }
void expectReadFails(const std::string& name, Style& style) { EXPECT_EQ(read(name, style), "null") << name; }
#else
const char* const inApply = "^Assertion failed: \\(0\\), function applyToStyle, file common/core/css/Property, line [0-9]+\\.\n";
const char* const inRead = "^Assertion failed: \\(0\\), function valueFromStyle, file common/core/css/Property, line [0-9]+\\.\n";
const char* const inLength = "^Assertion failed: \\(0\\), function lengthValueForStyle, file common/core/css/Value, line [0-9]+\\.\n";

void expectApplyFails(const P& property, const char* words = inApply) {
    SCOPED_TRACE(property->cssText());
    const SharedPtr<LoggingStyle> style = new LoggingStyle;
    EXPECT_EXIT(property->applyToStyle(style.Get()), testing::KilledBySignal(SIGABRT), words);
}
void expectReadFails(const std::string& name, Style& style) {
    SCOPED_TRACE(name);
    const P property = make(name);
    EXPECT_EXIT(property->valueFromStyle(&style), testing::KilledBySignal(SIGABRT), inRead);
}
#endif
void expectLengthFails(const P& property) {
#ifdef WQ_NO_HARD_ASSERTIONS
    expectApplyFails(property);
#else
    expectApplyFails(property, inLength);
#endif
}

// Whether a term is a value, what the property holds then, and where it says to go on.
std::string validatedTerm(const P& property, AST* term) {
    AST elsewhere;
    AST* next = &elsewhere;
    const bool valid = property->validate(term, &next);
    return (valid ? "valid " : "refused ") + dumpOfValue(property->value.Get()) +
           (next == term->next   ? " next"
            : next == term       ? " here"
            : next == &elsewhere ? " untouched"
                                 : " beyond");
}

std::string validatedTerm(const std::string& name, int type, const std::string& text, bool withValue = false, bool withChild = false) {
    const P property = make(name);
    if (withValue) property->setValue(new PrimitiveValue("earlier"s, CSS_STRING));
    AST root;
    AST* const term = add(root, type, text);
    add(root, 32);
    if (withChild) add(*term, NUMBER, "1");
    return validatedTerm(property, term);
}

// ---- The keyword properties

enum Cell { Nothing, Null, Assertion };

template <class Argument> void call(Style& style, void (Style::*setter)(Argument), uint32_t number) {
    (style.*setter)(static_cast<Argument>(number));
}

struct KeywordRow {
    const char* name;
    const char* setter;
    void (*set)(Style& style, uint32_t number);
    std::vector<std::pair<const char*, uint32_t>> written;
    std::vector<const char*> readings;  // by number
    struct {
        Cell nonKeyword, otherKeyword, otherNumber;
    } outcome;
};

const std::vector<KeywordRow>& keywordRows() {
    static const std::vector<KeywordRow> all{
        {"display",
         "SetDisplay",
         [](Style& style, uint32_t number) { call(style, &Style::SetDisplay, number); },
         {{"block", 0}, {"inline", 1}, {"none", 2}},
         {"block", "block", "block"},
         {Nothing, Assertion, Assertion}},
        {"font-style",
         "SetFontStyle",
         [](Style& style, uint32_t number) { call(style, &Style::SetFontStyle, number); },
         {{"normal", 0}, {"italic", 1}},
         {"normal", "italic"},
         {Nothing, Assertion, Null}},
        {"font-weight",
         "SetFontWeight",
         [](Style& style, uint32_t number) { call(style, &Style::SetFontWeight, number); },
         {{"normal", 0}, {"bold", 1}},
         {"normal", "bold"},
         {Nothing, Assertion, Assertion}},
        {"page-break-after",
         "SetPageBreakAfter",
         [](Style& style, uint32_t number) { call(style, &Style::SetPageBreakAfter, number); },
         {{"auto", 0}, {"always", 1}, {"inherit", 2}},
         {"auto", "always", "inline"},
         {Nothing, Assertion, Assertion}},
        {"page-break-before",
         "SetPageBreakBefore",
         [](Style& style, uint32_t number) { call(style, &Style::SetPageBreakBefore, number); },
         {{"auto", 0}, {"always", 1}, {"inherit", 2}},
         {"auto", "always", "inline"},
         {Nothing, Assertion, Assertion}},
        {"text-align",
         "SetTextAlign",
         [](Style& style, uint32_t number) { call(style, &Style::SetTextAlign, number); },
         {{"left", 0}, {"right", 1}, {"center", 2}, {"justify", 3}},
         {"left", "right", "center", "justify"},
         {Assertion, Assertion, Assertion}},
        {"text-decoration",
         "SetTextDecoration",
         [](Style& style, uint32_t number) { call(style, &Style::SetTextDecoration, number); },
         {{"none", 0}, {"underline", 1}},
         {"none", "underline"},
         {Nothing, Assertion, Assertion}},
        {"vertical-align",
         "SetVerticalAlign",
         [](Style& style, uint32_t number) { call(style, &Style::SetVerticalAlign, number); },
         {{"top", 0}, {"middle", 1}, {"bottom", 2}},
         {"top", "middle", "bottom"},
         {Assertion, Assertion, Assertion}},
        {"list-style-type",
         "SetListStyleType",
         [](Style& style, uint32_t number) { call(style, &Style::SetListStyleType, number); },
         {{"box", 0},
          {"check", 1},
          {"circle", 2},
          {"diamond", 3},
          {"disc", 4},
          {"hyphen", 5},
          {"square", 6},
          {"lower-hexadecimal", 7},
          {"upper-hexadecimal", 8},
          {"octal", 9},
          {"lower-alpha", 10},
          {"lower-latin", 11},
          {"upper-alpha", 12},
          {"upper-latin", 13},
          {"lower-roman", 14},
          {"upper-roman", 15},
          {"decimal", 16}},
         {"box", "check", "circle", "diamond", "disc", "hyphen", "square", "lower-hexadecimal", "upper-hexadecimal", "octal", "lower-alpha",
          "lower-latin", "upper-alpha", "upper-latin", "lower-roman", "upper-roman", "decimal"},
         {Nothing, Nothing, Null}},
    };
    return all;
}

class KeywordProperty : public testing::TestWithParam<size_t> {
protected:
    const KeywordRow& row() const { return keywordRows().at(GetParam()); }
    bool isOwn(int ident) const {
        for (const auto& [keyword, number] : row().written)
            if (PrimitiveValue::IdentForString(keyword) == ident) return true;
        return false;
    }
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(, KeywordProperty, testing::Range<size_t>(0, 9), [](const auto& test) {
    std::string name;
    for (const char each : std::string(keywordRows().at(test.param).name))
        if (each != '-') name += each;
    return name;
});

TEST_P(KeywordProperty, WritesItsKeywords) {
    for (const auto& [keyword, number] : row().written) {
        const std::string text = row().name + ": "s + keyword;
        EXPECT_EQ(readDeclarations(text), "0 " + text + "\n");
        EXPECT_EQ(applied(text), row().setter + " "s + std::to_string(number) + "\n") << text;
    }
}

TEST_P(KeywordProperty, ReadsItsNumbers) {
    const SharedPtr<Style> style = new LoggingStyle;
    for (uint32_t number = 0; number < row().readings.size(); ++number) {
        row().set(*style, number);
        EXPECT_EQ(read(row().name, *style), row().readings[number]) << number;
    }
}

TEST_P(KeywordProperty, WithoutAValueOrWithAListItDoesNothing) {
    EXPECT_EQ(applied(make(row().name)), "");
    EXPECT_EQ(applied(withValue(row().name, new ValueList)), "");
    auto* const list = new ValueList;
    list->append(new PrimitiveValue(PrimitiveValue::IdentForString(row().written.back().first)));
    EXPECT_EQ(applied(withValue(row().name, list)), "");
}

TEST_P(KeywordProperty, ANonKeywordDoesNothingOrIsAnAssertion) {
    const P number = withValue(row().name, new PrimitiveValue(1, CSS_NUMBER));
    const P string = withValue(row().name, new PrimitiveValue(std::string(row().written[0].first), CSS_STRING));
    if (row().outcome.nonKeyword == Assertion) {
        expectApplyFails(number);
        expectApplyFails(string);
    } else {
        EXPECT_EQ(applied(number), "");
        EXPECT_EQ(applied(string), "");
    }
}

TEST_P(KeywordProperty, AnotherKeywordDoesNothingOrIsAnAssertion) {
#ifndef WQ_NO_HARD_ASSERTIONS
    if (row().outcome.otherKeyword == Assertion) {
        for (const auto other : {ValueInvalid, ValueStatic, ValueLengthKind})
            expectApplyFails(withValue(row().name, new PrimitiveValue(other)));
        return;
    }
#endif
    for (int ident = 0; ident <= 83; ++ident) {
        if (isOwn(ident)) continue;
        EXPECT_EQ(applied(withValue(row().name, new PrimitiveValue(static_cast<ValueID>(ident)))), "") << ident;
    }
}

TEST_P(KeywordProperty, AnotherNumberReadsAsNullOrIsAnAssertion) {
    const SharedPtr<Style> style = new LoggingStyle;
    row().set(*style, static_cast<uint32_t>(row().readings.size()));
    if (row().outcome.otherNumber == Assertion)
        expectReadFails(row().name, *style);
    else
        EXPECT_EQ(read(row().name, *style), "null");
}

// ---- What looks wrong in them, and is wanted

TEST(PropDisplay, TheComputedDisplayIsAlwaysBlock) {
    EXPECT_EQ(applied("display: none"), "SetDisplay 2\n");
    EXPECT_EQ(applyAndRead("display: none"), "block");
    EXPECT_EQ(applyAndRead("display: inline"), "block");
    EXPECT_EQ(applyAndRead("display: block"), "block");
}

TEST(PropPageBreakAfter, InheritReadsAsInline) {
    EXPECT_EQ(applied("page-break-after: inherit"), "SetPageBreakAfter 2\n");
    EXPECT_EQ(applyAndRead("page-break-after: inherit"), "inline");
}

TEST(PropPageBreakBefore, InheritReadsAsInline) {
    EXPECT_EQ(applied("page-break-before: inherit"), "SetPageBreakBefore 2\n");
    EXPECT_EQ(applyAndRead("page-break-before: inherit"), "inline");
}

TEST(PropPageBreakAfter, InlineThatIsReadCannotBeWritten) {
    EXPECT_EQ(readDeclarations("page-break-after: inline"), warning("page-break-after", "inline"));
    expectApplyFails(withValue("page-break-after", new PrimitiveValue(ValueInline)));
    expectApplyFails(withValue("page-break-before", new PrimitiveValue(ValueInline)));
}

TEST(PropPageBreakAfter, DoesNotLookAtAParent) {
    const SharedPtr<LoggingStyle> parent = new LoggingStyle, child = new LoggingStyle;
    parent->SetPageBreakAfter(WQCSSPageBreakAfterAlways);
    child->InheritPropertiesFrom(parent.Get());
    withValue("page-break-after", new PrimitiveValue(ValueInherit))->applyToStyle(child.Get());
    EXPECT_EQ(child->GetPageBreakAfter(), WQCSSPageBreakAfterInherit);
}

TEST(PropFontStyle, AStyleThatIsNeitherReadsAsNull) {
    const SharedPtr<Style> style = new LoggingStyle;
    style->SetFontStyle(static_cast<WQCSSFontStyle>(2));
    EXPECT_EQ(read("font-style", *style), "null");
    style->SetFontStyle(static_cast<WQCSSFontStyle>(3));
    EXPECT_EQ(read("font-style", *style), "null");
}

TEST(PropListStyleType, OctalIsNumberNine) {
    EXPECT_EQ(applied("list-style-type: octal"), "SetListStyleType 9\n");
    EXPECT_EQ(applyAndRead("list-style-type: octal"), "octal");
}

TEST(PropListStyleType, NumbersBehindTheLastReadAsNull) {
    const SharedPtr<Style> style = new LoggingStyle;
    for (uint32_t number = 17; number < 32; ++number) {
        style->SetListStyleType(static_cast<WQCSSListStyleType>(number));
        EXPECT_EQ(read("list-style-type", *style), "null") << number;
    }
}

TEST(LonghandProperties, ANewValueIsReadEachTime) {
    const SharedPtr<Style> style = new LoggingStyle;
    const P property = make("text-align");
    const SharedPtr<Value> first = property->valueFromStyle(style.Get()), second = property->valueFromStyle(style.Get());
    EXPECT_NE(first.Get(), second.Get());
    EXPECT_EQ(property->value.Get(), nullptr);
}

// ---- font-weight

TEST(PropFontWeight, ValidatesByItsOwnRules) {
    EXPECT_EQ(validatedTerm("font-weight", IDENT, "normal"), "valid normal next");
    EXPECT_EQ(validatedTerm("font-weight", IDENT, "bold"), "valid bold next");
    for (const char* text : {"100", "200", "300", "400", "500", "600", "700", "800", "900"})
        EXPECT_EQ(validatedTerm("font-weight", NUMBER, text), "valid "s + text + " (1) next");
    for (const char* text : {"701", "150", "700.0", "0700", "-700", "0", "1000", "50", "", "7", "00", "100 ", "70"})
        EXPECT_EQ(validatedTerm("font-weight", NUMBER, text), "refused no value here") << text;
    for (const char* text : {"bolder", "lighter", "Bold", "inherit", "italic", "700", "-bold", ""})
        EXPECT_EQ(validatedTerm("font-weight", IDENT, text), "refused no value here") << text;
    for (const int type : {int{STRING}, int{LENGTH}, int{PERCENTAGE}, int{EMS}, int{HASH}, int{URI}, int{FUNCTION}, int{COMMA}, 32, 47, 0})
        EXPECT_EQ(validatedTerm("font-weight", type, "700"), "refused no value here") << type;
}

TEST(PropFontWeight, KeepsAnEarlierValueWhenItFails) {
    for (const int type : {int{IDENT}, int{NUMBER}, int{STRING}, int{FUNCTION}})
        EXPECT_EQ(validatedTerm("font-weight", type, "lighter", true), "refused 'earlier' here") << type;
    EXPECT_EQ(validatedTerm("font-weight", IDENT, "bold", true), "valid bold next");
}

TEST(PropFontWeight, DoesNotTestForArguments) {
    EXPECT_EQ(validatedTerm("font-weight", IDENT, "bold", false, true), "valid bold next");
    EXPECT_EQ(validatedTerm("font-weight", NUMBER, "700", false, true), "valid 700 (1) next");
    EXPECT_EQ(validatedTerm("font-weight", FUNCTION, "bold", false, true), "refused no value here");
}

TEST(PropFontWeight, AWeightByNumberIsKeptAndDoesNotMeanBold) {
    EXPECT_EQ(readDeclarations("font-weight: 700"), "0 font-weight: 700 (1)\n");
    EXPECT_EQ(applied("font-weight: 700"), "");
    EXPECT_EQ(applyAndRead("font-weight: 700"), "normal");
    const SharedPtr<Style> style = new LoggingStyle;
    style->SetFontWeight(WQCSSFontWeightBold);
    withValue("font-weight", new PrimitiveValue(400, CSS_NUMBER))->applyToStyle(style.Get());
    EXPECT_EQ(style->GetFontWeight(), WQCSSFontWeightBold);
}

TEST(PropFontWeight, StaysInTheTextOfTheDeclaration) {
    MutableStyleDeclaration declaration;
    EXPECT_TRUE(Parser().ParseStyleDeclaration("font-weight: 700", &declaration));
    EXPECT_EQ(declaration.properties.at(0)->cssText(), "font-weight: 700; ");
}

TEST(PropFontWeight, OnlyWholeHundredsAreWeights) {
    EXPECT_EQ(readDeclarations("font-weight: 701"), warning("font-weight", "701"));
    EXPECT_EQ(readDeclarations("font-weight: 700.0"), warning("font-weight", "700.0"));
}

TEST(PropFontWeight, BolderAndLighterAreNotInTheLanguage) {
    EXPECT_EQ(readDeclarations("font-weight: bolder"), warning("font-weight", "bolder"));
    EXPECT_EQ(readDeclarations("font-weight: lighter"), warning("font-weight", "lighter"));
}

TEST(PropFontWeight, TwoTermsAreTooMany) { EXPECT_EQ(readDeclarations("font-weight: bold 700"), warning("font-weight", "bold 700")); }

// ---- Lengths

namespace {

struct LengthRow {
    const char* name;
    const char* setter;
    void (Style::*set)(_WQCSSLength);
};
const LengthRow sides[] = {
    {"margin-top", "SetMarginTop", &Style::SetMarginTop},
    {"margin-bottom", "SetMarginBottom", &Style::SetMarginBottom},
    {"margin-left", "SetMarginLeft", &Style::SetMarginLeft},
    {"margin-right", "SetMarginRight", &Style::SetMarginRight},
    {"width", "SetWidth", &Style::SetWidth},
};
const LengthRow indent{"text-indent", "SetTextIndent", &Style::SetTextIndent};

struct Written {
    const char* text;
    const char* length;
    const char* readAs;
};
const Written lengths[] = {
    {"1pt", "1 type 1", "1px (5)"},
    {"1px", "1 type 1", "1px (5)"},
    {"1cm", "28.3464565 type 1", "28.3465px (5)"},
    {"1mm", "2.83464575 type 1", "2.83465px (5)"},
    {"1in", "72 type 1", "72px (5)"},
    {"2pc", "24 type 1", "24px (5)"},
    {"-1.5pt", "-1.5 type 1", "-1.5px (5)"},
    {"0", "0 type 1", "0px (5)"},
};

void expectWritten(const LengthRow& row, const Written& written) {
    const std::string text = row.name + ": "s + written.text;
    SCOPED_TRACE(text);
    EXPECT_EQ(applied(text), row.setter + " "s + written.length + "\n");
    EXPECT_EQ(applyAndRead(text), written.readAs);
}

}  // namespace

TEST(LengthProperty, OfASideTakesLengthsPercentagesAndAuto) {
    for (const auto& row : sides) {
        for (const auto& each : lengths) expectWritten(row, each);
        expectWritten(row, {"10%", "10 type 3", "10% (2)"});
        expectWritten(row, {"-10%", "-10 type 3", "-10% (2)"});
        expectWritten(row, {"auto", "0 type 4", "auto"});
    }
}

TEST(PropTextIndent, TakesLengthsOnly) {
    for (const auto& each : lengths) expectWritten(indent, each);
    EXPECT_EQ(readDeclarations("text-indent: 10%"), warning("text-indent", "10%"));
    EXPECT_EQ(readDeclarations("text-indent: auto"), warning("text-indent", "auto"));
    EXPECT_EQ(readDeclarations("text-indent: inherit"), warning("text-indent", "inherit"));
}

TEST(PropTextIndent, ReadsAndWritesAPercentageThatIsPutIn) {
    EXPECT_EQ(applied(withValue("text-indent", new PrimitiveValue(10, CSS_PERCENTAGE))), "SetTextIndent 10 type 3\n");
}

TEST(PropTextIndent, DoesNotCheckForAuto) { expectLengthFails(withValue("text-indent", new PrimitiveValue(ValueAuto))); }

TEST(LengthProperty, ReadsWhatTheStyleHolds) {
    std::vector<LengthRow> all(std::begin(sides), std::end(sides));
    all.push_back(indent);
    for (const auto& row : all) {
        SCOPED_TRACE(row.name);
        const SharedPtr<Style> style = new LoggingStyle;
        const auto reading = [&](_WQCSSLength length) {
            ((*style).*row.set)(length);
            return read(row.name, *style);
        };
        EXPECT_EQ(reading({12, 1}), "12px (5)");
        EXPECT_EQ(reading({12, 3}), "12% (2)");
        EXPECT_EQ(reading({12, 4}), "auto");
        EXPECT_EQ(reading({12, 0}), "null");
        EXPECT_EQ(reading({12, 2}), "null");
        EXPECT_EQ(reading({12, 5}), "null");
    }
}

TEST(LengthProperty, OfANewStyleReadsTheDefaults) {
    const SharedPtr<Style> style = new LoggingStyle;
    for (const char* name : {"margin-top", "margin-bottom", "margin-left", "margin-right", "text-indent"})
        EXPECT_EQ(read(name, *style), "0px (5)") << name;
    EXPECT_EQ(read("width", *style), "auto");
    EXPECT_EQ(read("font-size", *style), "12px (5)");
    EXPECT_EQ(read("line-height", *style), "1 (1)");
}

TEST(LengthProperty, WithoutAValueOrWithAListItDoesNothing) {
    for (const char* name :
         {"margin-top", "margin-bottom", "margin-left", "margin-right", "width", "text-indent", "font-size", "line-height"}) {
        EXPECT_EQ(applied(make(name)), "") << name;
        auto* const list = new ValueList;
        list->append(new PrimitiveValue(1, CSS_PT));
        EXPECT_EQ(applied(withValue(name, list)), "") << name;
    }
}

TEST(LengthProperty, InheritIsAcceptedAndIsAnAssertionWhenItIsApplied) {
    for (const auto& row : sides) {
        EXPECT_EQ(readDeclarations(row.name + ": inherit"s), "0 "s + row.name + ": inherit\n");
        expectLengthFails(withValue(row.name, new PrimitiveValue(ValueInherit)));
    }
}

TEST(LengthProperty, LengthsInEmAndExAndOtherValuesAreAnAssertion) {
    expectLengthFails(withValue("margin-top", new PrimitiveValue(2, CSS_EMS)));
    expectLengthFails(withValue("width", new PrimitiveValue(2, CSS_EXS)));
    expectLengthFails(withValue("margin-left", new PrimitiveValue(ValueBlock)));
    expectLengthFails(withValue("margin-right", new PrimitiveValue("1pt"s, CSS_STRING)));
    expectLengthFails(withValue("margin-bottom", new PrimitiveValue(0, CSS_NUMBER)));
    expectLengthFails(withValue("text-indent", new PrimitiveValue(2, CSS_EMS)));
    expectLengthFails(withValue("font-size", new PrimitiveValue(2, CSS_EMS)));
    expectLengthFails(withValue("font-size", new PrimitiveValue(ValueAuto)));
}

TEST(PropMarginTop, PointsReadAsPixelsFromTheStyleAndAsPointsFromTheDeclaration) {
    EXPECT_EQ(readDeclarations("margin-top: 0"), "0 margin-top: 0pt (9)\n");
    EXPECT_EQ(applyAndRead("margin-top: 0"), "0px (5)");
    EXPECT_EQ(applyAndRead("margin-top: 1cm"), "28.3465px (5)");
}

TEST(PropMarginTop, AutoReadsAsAuto) { EXPECT_EQ(applyAndRead("margin-top: auto"), "auto"); }

TEST(PropMarginLeft, APercentageStaysOne) {
    EXPECT_EQ(applied("margin-left: 10%"), "SetMarginLeft 10 type 3\n");
    EXPECT_EQ(applyAndRead("margin-left: 10%"), "10% (2)");
}

TEST(PropMarginTop, ChangesNoOtherStyle) {
    const SharedPtr<Style> first = new LoggingStyle, second = new LoggingStyle;
    withValue("margin-top", new PrimitiveValue(5, CSS_PT))->applyToStyle(first.Get());
    EXPECT_EQ(first->GetMarginTop(), (_WQCSSLength{5, 1}));
    EXPECT_EQ(second->GetMarginTop(), (_WQCSSLength{0, 1}));
}

TEST(PropFontSize, IsInPointsAndReadsInPixels) {
    EXPECT_EQ(applied("font-size: 1in"), "SetFontSize 72\n");
    EXPECT_EQ(applyAndRead("font-size: 1in"), "72px (5)");
    EXPECT_EQ(applied("font-size: 1cm"), "SetFontSize 28.3464565\n");
    EXPECT_EQ(applied("font-size: 1mm"), "SetFontSize 2.83464575\n");
    EXPECT_EQ(applied("font-size: 2pc"), "SetFontSize 24\n");
    EXPECT_EQ(applied("font-size: 9pt"), "SetFontSize 9\n");
    EXPECT_EQ(applied("font-size: 9px"), "SetFontSize 9\n");
    EXPECT_EQ(applied("font-size: -9px"), "SetFontSize -9\n");
    EXPECT_EQ(applied("font-size: 0"), "SetFontSize 0\n");
}

TEST(PropFontSize, TakesLengthsOnly) {
    for (const char* value : {"12", "2em", "120%", "small", "larger", "inherit", "auto"})
        EXPECT_EQ(readDeclarations("font-size: "s + value), warning("font-size", value));
}

TEST(PropFontSize, OfAPercentageThatIsPutInTakesTheNumber) {
    EXPECT_EQ(applied(withValue("font-size", new PrimitiveValue(50, CSS_PERCENTAGE))), "SetFontSize 50\n");
}

TEST(PropFontSize, LeavesTheFontOfTheParent) {
    const SharedPtr<Style> parent = new LoggingStyle, child = new LoggingStyle;
    child->InheritPropertiesFrom(parent.Get());
    withValue("font-size", new PrimitiveValue(20, CSS_PT))->applyToStyle(child.Get());
    EXPECT_EQ(child->GetFontSize(), 20.0f);
    EXPECT_EQ(parent->GetFontSize(), 12.0f);
}

TEST(PropLineHeight, IsANumber) {
    EXPECT_EQ(applied("line-height: 1.5"), "SetLineHeight 1.5\n");
    EXPECT_EQ(applyAndRead("line-height: 1.5"), "1.5 (1)");
    EXPECT_EQ(applied("line-height: 0.0"), "SetLineHeight 0\n");
    EXPECT_EQ(applied("line-height: -0"), "SetLineHeight -0\n");
    EXPECT_EQ(applied("line-height: -2"), "SetLineHeight -2\n");
    for (const char* value : {"0", "12pt", "120%", "normal", "inherit", "1.5em"})
        EXPECT_EQ(readDeclarations("line-height: "s + value), warning("line-height", value));
}

TEST(PropLineHeight, AnyOtherValueIsAnAssertion) {
    expectApplyFails(withValue("line-height", new PrimitiveValue(12, CSS_PT)));
    expectApplyFails(withValue("line-height", new PrimitiveValue(120, CSS_PERCENTAGE)));
    expectApplyFails(withValue("line-height", new PrimitiveValue(ValueNormal)));
    expectApplyFails(withValue("line-height", new PrimitiveValue("1.5"s, CSS_STRING)));
}

// ---- color

TEST(PropColor, TakesNamesAndHashes) {
    EXPECT_EQ(validatedTerm("color", IDENT, "red"), "valid #ff0000 next");
    EXPECT_EQ(validatedTerm("color", IDENT, "lightgoldenrodyellow"), "valid #fafad2 next");
    EXPECT_EQ(validatedTerm("color", HASH, "#abc"), "valid #aabbcc next");
    EXPECT_EQ(validatedTerm("color", HASH, "#ABCDEF"), "valid #abcdef next");
    EXPECT_EQ(validatedTerm("color", HASH, "#000"), "valid #000000 next");
    EXPECT_EQ(validatedTerm("color", IDENT, "black"), "valid #000000 next");
    EXPECT_EQ(validatedTerm("color", HASH, "red"), "valid #ff0000 next");
    EXPECT_EQ(validatedTerm("color", IDENT, "#fff"), "valid #ffffff next");
}

TEST(PropColor, WhatIsNoColourIsRefusedInSilenceAndAnEarlierValueStays) {
    const std::string printed = printedBy([] {
        for (const char* text : {"#12", "#1234", "#", "#ggg"})
            EXPECT_EQ(validatedTerm("color", HASH, text, true), "refused 'earlier' here") << text;
        for (const char* text : {"Red", "inherit", "transparent", "-red", "none", ""})
            EXPECT_EQ(validatedTerm("color", IDENT, text, true), "refused 'earlier' here") << text;
    });
    EXPECT_EQ(printed, "");
}

TEST(PropColor, ASuccessReplacesAnEarlierValue) { EXPECT_EQ(validatedTerm("color", IDENT, "red", true), "valid #ff0000 next"); }

TEST(PropColor, ATermOfAnotherKindIsTold) {
    const std::pair<int, const char*> rows[] = {{STRING, "266"}, {EMS, "274"},   {EXS, "275"},      {LENGTH, "276"}, {ANGLE, "277"},
                                                {TIME, "278"},   {FREQ, "279"},  {DIMEN, "280"},    {URI, "283"},    {PERCENTAGE, "281"},
                                                {NUMBER, "282"}, {COMMA, "265"}, {FUNCTION, "284"}, {32, "32"},      {47, "47"},
                                                {0, "0"},        {-1, "-1"}};
    for (const auto& row : rows) {
        std::string result;
        EXPECT_EQ(
            printedBy([&] { result = validatedTerm("color", row.first, "red", true); }), "Unhandled color token "s + row.second + "\n");
        EXPECT_EQ(result, "refused 'earlier' here") << row.second;
    }
}

TEST(PropColor, ATermWithArgumentsIsRefusedInSilenceAndLeavesAllAsItWas) {
    for (const int type : {int{FUNCTION}, int{IDENT}, int{HASH}, int{NUMBER}}) {
        std::string result;
        EXPECT_EQ(printedBy([&] { result = validatedTerm("color", type, "red", true, true); }), "") << type;
        EXPECT_EQ(result, "refused 'earlier' untouched") << type;
    }
}

TEST(PropColor, ALengthIsToldByThePropertyAndThenByTheParser) {
    EXPECT_EQ(readDeclarations("color: 12pt"), "Unhandled color token 276\n" + warning("color", "12pt"));
    EXPECT_EQ(readDeclarations("color: 0"), "Unhandled color token 282\n" + warning("color", "0"));
    EXPECT_EQ(readDeclarations("color: \"red\""), "Unhandled color token 266\n" + warning("color", "\"red\""));
}

TEST(PropColor, OfTwoTermsNoneIsTold) {
    EXPECT_EQ(readDeclarations("color: 12pt 13pt"), warning("color", "12pt 13pt"));
    EXPECT_EQ(readDeclarations("color: red 12pt"), warning("color", "red 12pt"));
}

TEST(PropColor, AHashOfTwoDigitsIsNoColour) { EXPECT_EQ(readDeclarations("color: #12"), warning("color", "#12")); }

TEST(PropColor, ThereIsNoColourFunction) { EXPECT_EQ(readDeclarations("color: rgb(1, 2, 3)"), warning("color", "rgb123")); }

TEST(PropColor, InheritIsAColourNameThatIsNone) { EXPECT_EQ(readDeclarations("color: inherit"), warning("color", "inherit")); }

TEST(PropColor, IsAppliedAndReads) {
    EXPECT_EQ(applied("color: #010203"), "SetColor ff010203\n");
    EXPECT_EQ(applyAndRead("color: #010203"), "#010203");
    const SharedPtr<Style> style = new LoggingStyle;
    EXPECT_EQ(read("color", *style), "#000000");
    const SharedPtr<Value> value = make("color")->valueFromStyle(style.Get());
    EXPECT_EQ(static_cast<PrimitiveValue*>(value.Get())->primitiveType, CSS_RGBCOLOR);
    EXPECT_EQ(static_cast<PrimitiveValue*>(value.Get())->colorValue().rgbaValue, 0xFF000000u);
}

TEST(PropColor, IsAppliedOpaque) {
    const CSSColor halfRed(1, 0, 0, 0.5f);
    ASSERT_EQ(halfRed.rgbaValue, 0x7FFF0000u);
    EXPECT_EQ(applied(withValue("color", new PrimitiveValue(halfRed))), "SetColor ffff0000\n");
    EXPECT_EQ(applied(withValue("color", new PrimitiveValue(CSSColor()))), "SetColor ff000000\n");
}

TEST(PropColor, ReadsWithTheAlphaOfTheStyle) {
    const SharedPtr<Style> style = new LoggingStyle;
    style->SetColor(CSSColor(1, 0, 0, 0.5f));
    const SharedPtr<Value> value = make("color")->valueFromStyle(style.Get());
    EXPECT_EQ(static_cast<PrimitiveValue*>(value.Get())->colorValue().rgbaValue, 0x7FFF0000u);
}

// ---- background-color

TEST(PropBackgroundColor, TakesNamesAndHashes) {
    EXPECT_EQ(validatedTerm("background-color", IDENT, "red"), "valid #ff0000 next");
    EXPECT_EQ(validatedTerm("background-color", HASH, "#abc"), "valid #aabbcc next");
    EXPECT_EQ(validatedTerm("background-color", HASH, "#000000", true), "valid #000000 next");
}

TEST(PropBackgroundColor, TransparentAndInheritAreRefusedButStored) {
    for (const char* keyword : {"transparent", "inherit"}) {
        EXPECT_EQ(validatedTerm("background-color", IDENT, keyword), "refused "s + keyword + " here");
        EXPECT_EQ(validatedTerm("background-color", IDENT, keyword, true), "refused "s + keyword + " here");
        EXPECT_EQ(readDeclarations("background-color: "s + keyword), warning("background-color", keyword));
    }
}

TEST(PropBackgroundColor, WhatIsNoColourIsRefusedInSilenceAndAnEarlierValueStays) {
    const std::string printed = printedBy([] {
        for (const char* text : {"#12", "#1234", "#", "#ggg"})
            EXPECT_EQ(validatedTerm("background-color", HASH, text, true), "refused 'earlier' here") << text;
        for (const char* text : {"Red", "none", "auto", "Transparent", "-red", ""})
            EXPECT_EQ(validatedTerm("background-color", IDENT, text, true), "refused 'earlier' here") << text;
        for (const int type : {int{STRING}, int{LENGTH}, int{NUMBER}, int{PERCENTAGE}, int{URI}, int{FUNCTION}, int{COMMA}, 32, 47, 0})
            EXPECT_EQ(validatedTerm("background-color", type, "red", true), "refused 'earlier' here") << type;
    });
    EXPECT_EQ(printed, "");
}

TEST(PropBackgroundColor, DoesNotTestForArguments) {
    EXPECT_EQ(validatedTerm("background-color", IDENT, "red", false, true), "valid #ff0000 next");
    EXPECT_EQ(validatedTerm("background-color", HASH, "#fff", false, true), "valid #ffffff next");
    EXPECT_EQ(validatedTerm("background-color", FUNCTION, "red", true, true), "refused 'earlier' here");
}

TEST(PropBackgroundColor, IsKeptWithoutEffectOnAStyle) {
    EXPECT_EQ(readDeclarations("background-color: #ffffff"), "0 background-color: #ffffff\n");
    EXPECT_EQ(applied("background-color: #ffffff"), "");
    EXPECT_EQ(applyAndRead("background-color: #ffffff"), "null");
    EXPECT_EQ(applied(make("background-color")), "");
    EXPECT_EQ(applied(withValue("background-color", new PrimitiveValue(ValueTransparent))), "");
}

TEST(PropBackgroundColor, RefusesFunctionsAndTwoTerms) {
    EXPECT_EQ(readDeclarations("background-color: rgb(1, 2, 3)"), warning("background-color", "rgb123"));
    EXPECT_EQ(readDeclarations("background-color: red red"), warning("background-color", "red red"));
}

// ---- font-family

namespace {

// The names of a family list, from its terms.
std::string families(const std::vector<std::pair<int, const char*>>& terms) {
    const P property = make("font-family");
    AST root;
    for (const auto& term : terms) add(root, term.first, term.second);
    AST* next = root.child;
    const bool valid = property->validate(root.child, &next);
    EXPECT_EQ(next, valid ? nullptr : root.child);
    EXPECT_EQ(valid, make("font-family")->validate(&root));
    return valid ? dumpOfValue(property->value.Get()) : "refused";
}

}  // namespace

TEST(PropFontFamily, JoinsTheWordsOfANameWithOneBlank) {
    EXPECT_EQ(readDeclarations("font-family: Times New Roman, serif"), "0 font-family: ['Times New Roman', 'serif']\n");
    EXPECT_EQ(readDeclarations("font-family: Times  \n New\tRoman"), "0 font-family: ['Times New Roman']\n");
    EXPECT_EQ(applied("font-family: Times New Roman, serif"), "SetFontFamily Times New Roman\n");
    EXPECT_EQ(applyAndRead("font-family: Times New Roman, serif"), "'Times New Roman'");
}

TEST(PropFontFamily, QuotesStayInTheName) {
    EXPECT_EQ(readDeclarations("font-family: \"Times New\""), "0 font-family: ['\"Times New\"']\n");
    EXPECT_EQ(readDeclarations("font-family: 'a', \"b\""), "0 font-family: [''a'', '\"b\"']\n");
    EXPECT_EQ(applied("font-family: \"Times New\", serif"), "SetFontFamily \"Times New\"\n");
    EXPECT_EQ(applyAndRead("font-family: 'a'"), "''a''");
}

TEST(PropFontFamily, GenericFamiliesAreNamesLikeOthers) {
    EXPECT_EQ(readDeclarations("font-family: serif"), "0 font-family: ['serif']\n");
    EXPECT_EQ(readDeclarations("font-family: sans-serif, inherit"), "0 font-family: ['sans-serif', 'inherit']\n");
    EXPECT_EQ(applied("font-family: monospace"), "SetFontFamily monospace\n");
}

TEST(PropFontFamily, ANumberIsAWordOfAName) {
    EXPECT_EQ(readDeclarations("font-family: Book 2"), "0 font-family: ['Book 2']\n");
    EXPECT_EQ(readDeclarations("font-family: Helvetica, 2"), "0 font-family: ['Helvetica', '2']\n");
    EXPECT_EQ(readDeclarations("font-family: 2"), "0 font-family: ['2']\n");
    EXPECT_EQ(readDeclarations("font-family: Book -2"), "0 font-family: ['Book -2']\n");
}

TEST(PropFontFamily, ALengthIsNoName) { EXPECT_EQ(readDeclarations("font-family: 12pt"), warning("font-family", "12pt")); }

TEST(PropFontFamily, ALengthBehindANameRefusesAll) {
    EXPECT_EQ(readDeclarations("font-family: Arial 12pt"), warning("font-family", "Arial 12pt"));
    EXPECT_EQ(readDeclarations("font-family: Arial, 12pt"), warning("font-family", "Arial12pt"));
    EXPECT_EQ(readDeclarations("font-family: Arial 12pt, serif"), warning("font-family", "Arial 12ptserif"));
}

TEST(PropFontFamily, AFunctionAsThirdTermRefusesAll) {
    EXPECT_EQ(readDeclarations("font-family: a, b, f(c)"), warning("font-family", "abfc"));
}

TEST(PropFontFamily, ASlashRefusesAll) { EXPECT_EQ(readDeclarations("font-family: a/b"), warning("font-family", "a/b")); }

TEST(PropFontFamily, WalksTheTermsToTheEnd) {
    EXPECT_EQ(families({{IDENT, "a"}}), "['a']");
    EXPECT_EQ(families({{IDENT, "a"}, {32, ""}, {IDENT, "b"}, {32, ""}, {NUMBER, "3"}}), "['a b 3']");
    EXPECT_EQ(families({{IDENT, "a"}, {COMMA, ""}, {IDENT, "b"}, {COMMA, ""}, {STRING, "'c'"}}), "['a', 'b', ''c'']");
    EXPECT_EQ(families({{NUMBER, "1"}, {COMMA, ""}, {NUMBER, "2"}}), "['1', '2']");
}

TEST(PropFontFamily, AStringIsAlwaysANewName) {
    EXPECT_EQ(families({{IDENT, "a"}, {32, ""}, {STRING, "'b'"}}), "['a', ''b'']");
    EXPECT_EQ(families({{STRING, "'a'"}, {32, ""}, {STRING, "'b'"}}), "[''a'', ''b'']");
}

TEST(PropFontFamily, AWordBehindASpaceContinuesAStringToo) {
    EXPECT_EQ(families({{STRING, "'a'"}, {32, ""}, {IDENT, "b"}}), "[''a' b']");
    EXPECT_EQ(readDeclarations("font-family: 'a' b"), "0 font-family: [''a' b']\n");
}

TEST(PropFontFamily, AWordWithoutAnOperatorInFrontIsANewName) { EXPECT_EQ(families({{IDENT, "a"}, {IDENT, "b"}}), "['a', 'b']"); }

TEST(PropFontFamily, OnlyTheLastOperatorInFrontOfAWordCounts) {
    EXPECT_EQ(families({{IDENT, "a"}, {COMMA, ""}, {32, ""}, {IDENT, "b"}}), "['a b']");
    EXPECT_EQ(families({{IDENT, "a"}, {32, ""}, {COMMA, ""}, {IDENT, "b"}}), "['a', 'b']");
    EXPECT_EQ(families({{IDENT, "a"}, {32, ""}, {32, ""}, {IDENT, "b"}}), "['a b']");
    EXPECT_EQ(families({{IDENT, "a"}, {COMMA, ""}, {COMMA, ""}, {IDENT, "b"}}), "['a', 'b']");
}

TEST(PropFontFamily, OperatorsAtTheEndsAreNothing) {
    EXPECT_EQ(families({{COMMA, ""}, {IDENT, "a"}, {COMMA, ""}}), "['a']");
    EXPECT_EQ(families({{IDENT, "a"}, {32, ""}}), "['a']");
}

// A word behind a space, with no name to continue, is skipped; it counts as found all the same.
TEST(PropFontFamily, ALeadingSpaceSwallowsTheWord) {
    EXPECT_EQ(families({{32, ""}, {IDENT, "a"}}), "[]");
    EXPECT_EQ(families({{32, ""}, {IDENT, "a"}, {32, ""}, {IDENT, "b"}}), "[]");
    EXPECT_EQ(families({{32, ""}, {IDENT, "a"}, {COMMA, ""}, {IDENT, "b"}}), "['b']");
    EXPECT_EQ(families({{32, ""}, {STRING, "'a'"}}), "[''a'']");
}

TEST(PropFontFamily, NothingButOperatorsIsRefused) {
    EXPECT_EQ(families({{32, ""}}), "refused");
    EXPECT_EQ(families({{COMMA, ""}, {32, ""}}), "refused");
}

TEST(PropFontFamily, AnyOtherTermRefusesAll) {
    for (const int type :
         {0, 47, int{HASH}, int{EMS}, int{EXS}, int{LENGTH}, int{ANGLE}, int{TIME}, int{FREQ}, int{PERCENTAGE}, int{URI}, int{DIMEN},
          int{FUNCTION}, int{S}}) {
        EXPECT_EQ(families({{type, "a"}}), "refused") << type;
        EXPECT_EQ(families({{IDENT, "a"}, {COMMA, ""}, {type, "a"}}), "refused") << type;
        EXPECT_EQ(families({{type, "a"}, {COMMA, ""}, {IDENT, "a"}}), "refused") << type;
    }
}

TEST(PropFontFamily, ATermWithArgumentsRefusesAllAtOnce) {
    for (const int type : {int{FUNCTION}, int{IDENT}, int{STRING}, int{COMMA}, 32}) {
        const P property = make("font-family");
        AST root;
        add(root, IDENT, "a");
        add(*add(root, type, "b"), IDENT, "c");
        add(root, IDENT, "d");
        EXPECT_FALSE(property->validate(&root)) << type;
        EXPECT_FALSE(property->validate(root.child, nullptr)) << type;
        EXPECT_EQ(property->value.Get(), nullptr) << type;
    }
}

TEST(PropFontFamily, KeepsAnEarlierValueWhenItFails) {
    const P property = withValue("font-family", new PrimitiveValue("earlier"s, CSS_STRING));
    AST root;
    add(root, IDENT, "a");
    add(root, LENGTH, "12pt");
    EXPECT_FALSE(property->validate(&root));
    EXPECT_EQ(property->cssText(), "font-family: earlier; ");
}

TEST(PropFontFamily, BeginsAtTheTermGiven) {
    const P property = make("font-family");
    AST root, elsewhere;
    add(root, LENGTH, "12pt");
    add(root, 32);
    AST* const term = add(root, IDENT, "a");
    add(root, COMMA);
    add(root, IDENT, "b");
    AST* next = &elsewhere;
    EXPECT_TRUE(property->validate(term, &next));
    EXPECT_EQ(next, nullptr);
    EXPECT_EQ(property->cssText(), "font-family: a, b; ");
}

TEST(PropFontFamily, ARootWithASiblingIsRefused) {
    const P property = make("font-family");
    AST parent;
    AST* const root = add(parent, 0);
    add(*root, IDENT, "a");
    EXPECT_TRUE(property->validate(root));
    add(parent, 0);
    EXPECT_FALSE(make("font-family")->validate(root));
}

TEST(PropFontFamily, ItsValueIsAListOfStrings) {
    const P property = make("font-family");
    AST root;
    add(root, IDENT, "a");
    ASSERT_TRUE(property->validate(&root));
    ASSERT_TRUE(property->valueList());
    EXPECT_EQ(property->value->refCount, 1);
    ASSERT_EQ(property->valueList()->values.size(), 1u);
    EXPECT_EQ(static_cast<PrimitiveValue*>(property->valueList()->values[0].Get())->primitiveType, CSS_STRING);
    EXPECT_EQ(property->valueList()->values[0]->refCount, 1);
}

TEST(PropFontFamily, WritesACommaAndABlankBetweenNames) {
    MutableStyleDeclaration declaration;
    EXPECT_TRUE(Parser().ParseStyleDeclaration("font-family:a,b  ,  'c'", &declaration));
    EXPECT_EQ(declaration.properties.at(0)->cssText(), "font-family: a, b, 'c'; ");
}

TEST(PropFontFamily, TheFirstNameAlwaysWins) {
    EXPECT_EQ(applied("font-family: No Such Font At All, Courier"), "SetFontFamily No Such Font At All\n");
}

TEST(PropFontFamily, AsksOnUntilTheStyleTakesAName) {
    MutableStyleDeclaration declaration;
    EXPECT_TRUE(Parser().ParseStyleDeclaration("font-family: a, b, c, d", &declaration));
    const SharedPtr<LoggingStyle> style = new LoggingStyle;
    style->unavailableFamilies = {"a", "b"};
    declaration.properties.at(0)->applyToStyle(style.Get());
    EXPECT_EQ(style->log, "SetFontFamily a\nSetFontFamily b\nSetFontFamily c\n");
    EXPECT_EQ(style->GetFontFamily(), "c");
}

TEST(PropFontFamily, PassesOverMembersThatAreNotPrimitive) {
    auto* const list = new ValueList;
    list->append(new ValueList);
    list->append(nullptr);
    list->append(new PrimitiveValue("a"s, CSS_STRING));
    EXPECT_EQ(applied(withValue("font-family", list)), "SetFontFamily a\n");
}

TEST(PropFontFamily, AppliesNothingButANonEmptyList) {
    EXPECT_EQ(applied(make("font-family")), "");
    EXPECT_EQ(applied(withValue("font-family", new ValueList)), "");
    EXPECT_EQ(applied(withValue("font-family", new PrimitiveValue("a"s, CSS_STRING))), "");
}

TEST(PropFontFamily, ReadsOneStringAndNoList) {
    const SharedPtr<Style> style = new LoggingStyle;
    EXPECT_EQ(read("font-family", *style), "'Courier'");
    style->SetFontFamily("a, b");
    EXPECT_EQ(read("font-family", *style), "'a, b'");
}

TEST(PropFontFamily, LeavesTheFontOfTheParent) {
    const SharedPtr<Style> parent = new LoggingStyle, child = new LoggingStyle;
    child->InheritPropertiesFrom(parent.Get());
    auto* const list = new ValueList;
    list->append(new PrimitiveValue("a"s, CSS_STRING));
    withValue("font-family", list)->applyToStyle(child.Get());
    EXPECT_EQ(child->GetFontFamily(), "a");
    EXPECT_EQ(parent->GetFontFamily(), "Courier");
}

// ---- font-variant and position

TEST(PropFontVariant, IsKeptWithoutEffectOnAStyle) {
    for (const char* keyword : {"normal", "small-caps", "inherit"}) {
        const std::string text = "font-variant: "s + keyword;
        EXPECT_EQ(readDeclarations(text), "0 " + text + "\n");
        EXPECT_EQ(applied(text), "");
        EXPECT_EQ(applyAndRead(text), "null");
    }
    EXPECT_EQ(readDeclarations("font-variant: italic"), warning("font-variant", "italic"));
}

TEST(PropFontVariant, AnotherKeywordIsAnAssertion) {
    expectApplyFails(withValue("font-variant", new PrimitiveValue(ValueItalic)));
    expectApplyFails(withValue("font-variant", new PrimitiveValue(ValueInvalid)));
}

TEST(PropFontVariant, WithoutAKeywordItDoesNothing) {
    EXPECT_EQ(applied(make("font-variant")), "");
    EXPECT_EQ(applied(withValue("font-variant", new PrimitiveValue(1, CSS_NUMBER))), "");
    EXPECT_EQ(applied(withValue("font-variant", new PrimitiveValue("italic"s, CSS_STRING))), "");
    EXPECT_EQ(applied(withValue("font-variant", new ValueList)), "");
}

TEST(PropPosition, IsAcceptedWithoutEffectOnAStyle) {
    EXPECT_EQ(readDeclarations("position: static"), "0 position: static\n");
    EXPECT_EQ(applied("position: static"), "");
    EXPECT_EQ(applyAndRead("position: static"), "null");
    EXPECT_EQ(applied(make("position")), "");
    EXPECT_EQ(applied(withValue("position", new PrimitiveValue(ValueBlock))), "");
    EXPECT_EQ(applied(withValue("position", new PrimitiveValue(1, CSS_NUMBER))), "");
    EXPECT_EQ(readDeclarations("position: absolute"), warning("position", "absolute"));
}

// ---- All

TEST(LonghandProperties, NoTermIsNoValue) {
    for (unsigned int i = 0; i < PropertyFactory::PropertyListLength(); ++i) {
        const P property = make(PropertyFactory::PropertyAtIndex(i));
        EXPECT_EQ(printedBy([&] { EXPECT_FALSE(property->validate(nullptr, nullptr)) << property->name(); }), "");
        EXPECT_EQ(property->value.Get(), nullptr) << property->name();
    }
}

TEST(LonghandProperties, InheritIsTakenByThese) {
    for (const char* name :
         {"font-variant", "margin-top", "margin-left", "margin-bottom", "margin-right", "width", "page-break-after", "page-break-before"})
        EXPECT_EQ(readDeclarations(name + ": inherit"s), "0 "s + name + ": inherit\n");
}

TEST(LonghandProperties, InheritIsRefusedByAllOthers) {
    for (const char* name :
         {"color", "background-color", "font", "content", "display", "font-size", "font-style", "font-weight", "line-height",
          "list-style-type", "position", "text-align", "text-decoration", "text-indent", "vertical-align"})
        EXPECT_EQ(readDeclarations(name + ": inherit"s), warning(name, "inherit"));
}

TEST(PropFontFamily, InheritIsAFamilyName) { EXPECT_EQ(applied("font-family: inherit"), "SetFontFamily inherit\n"); }

TEST(LonghandProperties, InheritIsTakenByMarginForItsParts) {
    const std::string dump = readDeclarations("margin: inherit");
    for (const char* name : {"margin-top", "margin-left", "margin-bottom", "margin-right"})
        EXPECT_NE(dump.find(name + ": inherit\n"s), std::string::npos) << name;
}
