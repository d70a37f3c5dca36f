#include "common/core/css/Parser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <string>
#include <type_traits>
#include <vector>

#include "tests/common/core/css/Declarations.h"

using namespace std::string_literals;
using CSS::MutableStyleDeclaration;
using CSS::Parser;
using CSS::Property;
using test::dumpOfDeclaration;
using test::printedBy;
using test::readDeclarations;
using testing::ElementsAre;

namespace {

const std::string red = "0 color: #ff0000\n";

std::string refused(const std::string& name, const std::string& value) {
    return "Warning: Unsupported property " + name + " or invalid value \"" + value + "\"\n";
}

// The warning for the value of a property that is none: the text of the tree that was read.
std::string treeOf(const std::string& value) {
    const std::string start = "Warning: Unsupported property x or invalid value \"", warning = readDeclarations("x: " + value);
    return warning.starts_with(start) && warning.ends_with("\"\n") ? warning.substr(start.size(), warning.size() - start.size() - 2)
                                                                   : warning;
}

// A declaration of the text.
struct Declared : MutableStyleDeclaration {
    explicit Declared(const std::string& text) { Parser().ParseStyleDeclaration(text, this); }
    std::string dump() { return dumpOfDeclaration(*this); }
    std::string dumpAfterSetting(const std::string& name, const std::string& value, const std::string& priority = "") {
        const std::string printed = printedBy([&] { setProperty(name, value, priority); });
        return dump() + printed;
    }
    std::string dumpAfterSetCssText(const std::string& text) {
        const std::string printed = printedBy([&] { setCssText(text); });
        return dump() + printed;
    }
};

#ifdef WQ_NO_HARD_ASSERTIONS
// The work fails with the message on standard error.
template <class Work> void expectErrorOf(Work&& work, const std::string& token) {
    testing::internal::CaptureStderr();
    work();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "CSS Parse Error before token " + token + "\n");
}
#else
// The work ends the process, whatever the message would be.
template <class Work> void expectErrorOf(Work&& work, const std::string&) {
    EXPECT_EXIT(
        work(), testing::KilledBySignal(SIGABRT),
        "^Assertion failed: \\(0\\), function error, file common/core/css/Parser, line [0-9]+\\.\n");
}
#endif

void expectSyntaxError(const std::string& text, const std::string& token) {
    SCOPED_TRACE(text);
    expectErrorOf(
        [&] {
            MutableStyleDeclaration declaration;
            EXPECT_FALSE(Parser().ParseStyleDeclaration(text, &declaration));
        },
        token);
}

// ---- ParseStyleDeclaration

TEST(Parser, ReadsOneDeclaration) {
    EXPECT_EQ(readDeclarations("color: red"), red);
    EXPECT_EQ(readDeclarations("color: red;"), red);
}

TEST(Parser, ReadsDeclarationsInTheirOrder) {
    EXPECT_EQ(
        readDeclarations("color: red; width: 1px;display:none ; color: blue"),
        red + "1 width: 1px (5)\n2 display: none\n3 color: #0000ff\n");
}

TEST(Parser, AnEmptyTextDeclaresNothing) { EXPECT_EQ(readDeclarations(""), ""); }

TEST(Parser, ATextThatBeginsWithABlankDeclaresNothing) {
    for (const std::string text :
         {" color: red", "\ncolor: red", "\tcolor: red; width: 1px", "\r\fcolor: red", " ", " ; color: red", "/* c */ color: red"}) {
        SCOPED_TRACE(text);
        EXPECT_EQ(readDeclarations(text), "");
    }
}

TEST(Parser, ACommentAtTheStartIsNoBlank) { EXPECT_EQ(readDeclarations("/* c */color: red"), red); }

TEST(Parser, SkipsEmptyDeclarations) {
    for (const std::string text : {";color: red", "; ; color: red ;", ";;;color: red;;;", "color: red; ;\n;"}) {
        SCOPED_TRACE(text);
        EXPECT_EQ(readDeclarations(text), red);
    }
    EXPECT_EQ(readDeclarations(";"), "");
    EXPECT_EQ(readDeclarations("; ;;"), "");
}

TEST(Parser, TakesWhiteSpaceAndCommentsBetweenAllTokens) {
    for (const std::string text :
         {"color:red", "color : red", "color\r\n:\t\f red", "color: red ", "color/**/:/**/red/**/",
          "color /**/ : /**/ /**/ red /**/ /**/ ;", "color:red/* ; width: 1px */"}) {
        SCOPED_TRACE(text);
        EXPECT_EQ(readDeclarations(text), red);
    }
    EXPECT_EQ(readDeclarations("color: red /**/ ! \n important /**/ ; /**/ width: 1px"), "0 color: #ff0000 !\n1 width: 1px (5)\n");
}

TEST(Parser, WhatIsNoDeclarationEndsTheListInSilence) {
    for (const std::string text :
         {"color: red } width: 1px",
          "color: red; } width: 1px",
          "color: red; {",
          "color: red {",
          "color: red: blue",
          "color: red ) ; width: 1px",
          "color: red; 'x'; width: 1px",
          "color: red; 12; width: 1px",
          "color: red; #a: b",
          "color: red; -width: 1px",
          "color: red; @page; width: 1px",
          "color: red @page; width: 1px",
          "color: red; <!-- width: 1px",
          "color: red <!-- ; width: 1px",
          "color: red; --> width: 1px",
          "color: red > 1; width: 1px",
          "color: red * 1; width: 1px",
          "color: red = 1; width: 1px",
          "color: red | 1; width: 1px",
          "color: red ~= 1",
          "color: red ! x; width: 1px",
          "color: red ! /**/ important; width: 1px",
          "color: red (blue); width: 1px",
          "color: red 'blue",
          "color: red; f(width): 1px",
          "color: red; /* width: 1px"}) {
        SCOPED_TRACE(text);
        EXPECT_EQ(readDeclarations(text), red);
    }
    for (const std::string text :
         {"}", "{", "{color: red}", ":", ":red", "12", "'color': red", "@page", "-color: red", "<!-- color: red", "--> color: red", ")"}) {
        SCOPED_TRACE(text);
        EXPECT_EQ(readDeclarations(text), "");
    }
}

TEST(Parser, ANumberWithANameBehindACompleteValueEndsTheListInSilence) {
    EXPECT_EQ(readDeclarations("color: red 12foo; width: 1px"), red);
    EXPECT_EQ(readDeclarations("width: 1px 1e3; color: red"), "0 width: 1px (5)\n");
}

TEST(Parser, APlusBehindACompleteValueEndsTheListInSilence) {
    EXPECT_EQ(readDeclarations("color: red + blue; width: 1px"), red);
    EXPECT_EQ(readDeclarations("color: red+blue; width: 1px"), red);
    EXPECT_EQ(readDeclarations("width: 1px +1px; color: red"), "0 width: 1px (5)\n");
}

TEST(Parser, ANulByteEndsTheText) {
    EXPECT_EQ(readDeclarations("color: red\0; width: 1px"s), red);
    EXPECT_EQ(readDeclarations("color: red; \0width: 1px"s), red);
    EXPECT_EQ(readDeclarations("\0color: red"s), "");
}

TEST(Parser, AddsToWhatADeclarationHas) {
    Declared declaration("color: blue; width: 1px");
    EXPECT_TRUE(Parser().ParseStyleDeclaration("color: red", &declaration));
    EXPECT_EQ(declaration.dump(), "0 color: #0000ff\n1 width: 1px (5)\n0 color: #ff0000\n");
}

TEST(Parser, EveryParseBeginsToCountPropertiesAnew) {
    const SharedPtr<Property> some = new CSS::PropColor, more = new CSS::PropColor;
    EXPECT_NE(Property::gOrderCounter, 0);
    EXPECT_EQ(readDeclarations(""), "");
    EXPECT_EQ(Property::gOrderCounter, 0);
    EXPECT_EQ(readDeclarations("color: red; color: red"), red + "1 color: #ff0000\n");
    EXPECT_EQ(readDeclarations("color: red"), red);
    EXPECT_EQ(Property::gOrderCounter, 1);
}

TEST(Parser, ARefusedPropertyHasUsedUpItsNumber) {
    EXPECT_EQ(
        readDeclarations("foo: bar; color: rot; color: red; ; width: 1px"),
        "2 color: #ff0000\n3 width: 1px (5)\n" + refused("foo", "bar") + refused("color", "rot"));
}

TEST(Parser, AddsByTheOverridableOperation) {
    struct Logging : MutableStyleDeclaration {
        void addProperty(Property* added) override { log.push_back(added->name() + " " + std::to_string(added->refCount > 0)); }
        std::vector<std::string> log;
    } declaration;
    EXPECT_TRUE(Parser().ParseStyleDeclaration("margin: 1px; color: red", &declaration));
    EXPECT_THAT(declaration.log, ElementsAre("margin 1", "color 1"));
}

// ---- Importance

TEST(Parser, ReadsImportance) {
    for (const std::string text :
         {"color: red !important", "color:red!important;", "color: red ! important ;", "color: red !IMPORTANT",
          "color: red !\n\tImportant"}) {
        SCOPED_TRACE(text);
        EXPECT_EQ(readDeclarations(text), "0 color: #ff0000 !\n");
    }
}

TEST(Parser, ImportanceIsOneDeclarations) {
    EXPECT_EQ(readDeclarations("color: red; width: 1px !important; display: none"), red + "1 width: 1px (5) !\n2 display: none\n");
}

TEST(Parser, WhatFollowsTheImportanceEndsTheListInSilence) {
    EXPECT_EQ(readDeclarations("color: red !important blue; width: 1px"), "0 color: #ff0000 !\n");
    EXPECT_EQ(readDeclarations("color: red !important !important; width: 1px"), "0 color: #ff0000 !\n");
}

TEST(Parser, ImportanceIsLostInAShorthand) {
    EXPECT_EQ(
        readDeclarations("margin: 1px !important"),
        "1 margin-top: 1px (5)\n2 margin-left: 1px (5)\n3 margin-bottom: 1px (5)\n4 margin-right: 1px (5)\n");
}

TEST(Parser, ImportanceIsSetBeforeTheValueIsJudged) {
    struct Logging : MutableStyleDeclaration {
        void addProperty(Property* added) override { text = added->cssText(); }
        std::string text;
    } declaration;
    EXPECT_TRUE(Parser().ParseStyleDeclaration("color: red !important", &declaration));
    EXPECT_EQ(declaration.text, "color: #ff0000!important; ");
}

// ---- Warnings

TEST(Parser, AnUnknownPropertyIsAWarning) { EXPECT_EQ(readDeclarations("foo: bar"), refused("foo", "bar")); }

TEST(Parser, AnInvalidValueIsAWarning) { EXPECT_EQ(readDeclarations("text-align: middle"), refused("text-align", "middle")); }

TEST(Parser, NamesCompareExactlyAndAreToldAsTyped) {
    for (const std::string name : {"Color", "COLOR", "c\\6Flor", "colo\\r", "colour", "_x", "\xC3\xA9"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(readDeclarations(name + ": red"), refused(name, "red"));
    }
}

TEST(Parser, AWarningCostsItsDeclarationOnly) {
    EXPECT_EQ(
        readDeclarations("foo: 1 !important; color: red; width: bar; display: none"),
        "1 color: #ff0000\n3 display: none\n" + refused("foo", "1") + refused("width", "bar"));
}

TEST(Parser, AWarningMayHavePercentSigns) { EXPECT_EQ(readDeclarations("x: 10% '%s%n' url(%d)"), refused("x", "10% '%s%n' url(%d)")); }

TEST(Parser, ThePropertysMessageComesBeforeTheWarning) {
    EXPECT_EQ(readDeclarations("color: 12pt"), "Unhandled color token 276\n" + refused("color", "12pt"));
    EXPECT_EQ(readDeclarations("color: 'red'"), "Unhandled color token 266\n" + refused("color", "'red'"));
}

TEST(Parser, ALengthAsLineHeightSpoilsAFont) {
    EXPECT_EQ(readDeclarations("font: 12px/14px serif !important"), refused("font", "12px/14px serif"));
}

// ---- Terms and operators

TEST(Parser, ReadsEveryKindOfTerm) {
    const std::string terms[] = {
        "1",   "1.5",  ".5",       "10%",     "1px",    "1cm",          "1mm",  "1in",  "1pt",    "1pc",  "1em",
        "1ex", "1deg", "1rad",     "1grad",   "1ms",    "1s",           "1hz",  "1khz", "'a b'",  "\"\"", "a",
        "a-b", "_a",   "\xC3\xA9", "a\\20 b", "url(a)", "url( 'a b' )", "12PX", "1Em",  "URL(a)", "Abc",  "'a\\'b'",
    };
    for (const std::string& term : terms) {
        SCOPED_TRACE(term);
        EXPECT_EQ(treeOf(term), term);
        EXPECT_EQ(treeOf("-" + term), "-" + term);    // with a sign
        EXPECT_EQ(treeOf("a " + term), "a " + term);  // behind white space
        EXPECT_EQ(treeOf("a -" + term), "a -" + term);
        EXPECT_EQ(treeOf("a/" + term), "a/" + term);  // behind a slash
        EXPECT_EQ(treeOf("a," + term), "a" + term);   // behind a comma, which writes nothing
        EXPECT_EQ(treeOf("f(" + term + ")"), "f" + term);
    }
}

TEST(Parser, ReadsColours) {
    for (const std::string hash : {"#fff", "#FFFFFF", "#a", "#-", "#xyz"}) {
        SCOPED_TRACE(hash);
        EXPECT_EQ(treeOf(hash), hash);
        EXPECT_EQ(treeOf("a " + hash + ", 1"), "a " + hash + "1");
    }
    EXPECT_EQ(readDeclarations("color: #fff"), "0 color: #ffffff\n");
}

TEST(Parser, ASignInFrontOfAColourIsDropped) {
    EXPECT_EQ(treeOf("-#fff"), "#fff");
    EXPECT_EQ(readDeclarations("color: -#fff"), "0 color: #ffffff\n");
}

TEST(Parser, ASignInFrontOfAFunctionIsDropped) {
    EXPECT_EQ(treeOf("-f(a)"), "fa");
    EXPECT_EQ(treeOf("f(-g(-a))"), "fg-a");
    EXPECT_EQ(readDeclarations("content: -counter(a)"), "0 content: [counter(a, decimal, )]\n");
}

TEST(Parser, ASignInFrontOfANumberIsKept) { EXPECT_EQ(readDeclarations("margin-top: -1px"), "0 margin-top: -1px (5)\n"); }

TEST(Parser, ASignInFrontOfAStringAndOfAWordIsKept) {
    EXPECT_EQ(readDeclarations("font-family: -'A', -B"), "0 font-family: ['-'A'', '-B']\n");
    EXPECT_EQ(readDeclarations("display: -none"), refused("display", "-none"));
}

TEST(Parser, ReadsOperators) {
    struct Row {
        const char *value, *tree;
    };
    const Row rows[] = {
        {"12px/14px serif", "12px/14px serif"},
        {"a, b", "ab"},
        {"a ,b", "ab"},
        {"a\n,\tb", "ab"},
        {"a,b c", "ab c"},
        {"a / b", "a/b"},
        {"a /b", "a/b"},
        {"a   b", "a b"},
        {"a/**/b", "a b"},  // white space that is not there
        {"a'b'#c", "a 'b' #c"},
        {"1-2", "1 -2"},
        {"1-a", "1 -a"},
        {"a -b", "a -b"},
        {"a-b", "a-b"},
        {"a /* c */ , /* c */ b", "ab"},
        {"a /* c */ / /* c */ b", "a/b"},
        {"a/-1", "a/-1"},
        {"a,-1", "a-1"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.value);
        EXPECT_EQ(treeOf(row.value), row.tree);
    }
}

TEST(Parser, ReadsFunctions) {
    struct Row {
        const char *value, *tree;
    };
    const Row rows[] = {
        {"f(a)", "fa"},
        {"F( a )", "Fa"},
        {"f(\n/* c */a\t)", "fa"},
        {"f(a, b)", "fab"},
        {"f(a b / c)", "fa b/c"},
        {"f(g(a) b, h(c))", "fga bhc"},
        {"a f(b) c", "a fb c"},
        {"f(a)g(b)", "fa gb"},
        {"f(a), b", "fab"},
        {"url(a b)", "urla b"},  // no address
        {"rgb(1, 2, 3)", "rgb123"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.value);
        EXPECT_EQ(treeOf(row.value), row.tree);
    }
}

TEST(Parser, AFunctionAsColourIsRefusedWithTheWarningOnly) {
    EXPECT_EQ(readDeclarations("color: rgb(1, 2, 3)"), refused("color", "rgb123"));
}

TEST(Parser, FunctionsNest100000Deep) {
    constexpr size_t depth = 100000;
    std::string value, written;
    for (size_t i = 0; i < depth; ++i) value += "f(", written += "f";
    value += "a" + std::string(depth, ')');
    written += "a";
    for (const std::string name : {"x", "color", "background-color", "font", "font-family", "font-weight", "margin", "content", "width"}) {
        const bool same = readDeclarations(name + ": " + value + "; color: red").ends_with("color: #ff0000\n" + refused(name, written));
        EXPECT_TRUE(same) << name;
    }
}

TEST(Parser, FunctionsBehindOthersNest100000DeepToo) {
    constexpr size_t depth = 100000;
    std::string value, written;
    for (size_t i = 0; i < depth; ++i) value += "1 -f(", written += "1 f";
    value += "a" + std::string(depth, ')');
    written += "a";
    const bool same = readDeclarations("content: " + value) == refused("content", written);
    EXPECT_TRUE(same);
}

TEST(Parser, AValueMayHave100000Terms) {
    constexpr size_t width = 100000;
    std::string value = "a";
    for (size_t i = 1; i < width; ++i) value += ",a";
    const bool same = readDeclarations("x: " + value) == refused("x", std::string(width, 'a'));
    EXPECT_TRUE(same);
}

// ---- Syntax errors

TEST(ParserDeathTest, ADeclarationNeedsAColon) {
    expectSyntaxError("color", "");
    expectSyntaxError("color ", "");
    expectSyntaxError("color red", "red");
    expectSyntaxError("color;", ";");
    expectSyntaxError("color = red", "=");
    expectSyntaxError("color: red; width", "");
    expectSyntaxError("color }", "}");
}

TEST(ParserDeathTest, ADeclarationNeedsAValue) {
    expectSyntaxError("color:", "");
    expectSyntaxError("color: ", "");
    expectSyntaxError("color:;", ";");
    expectSyntaxError("color: }", "}");
    expectSyntaxError("color: !important", "!important");
    expectSyntaxError("color: ! Important", "! Important");
    expectSyntaxError("color::red", ":");
}

TEST(ParserDeathTest, TheMessageKeepsTheWhiteSpaceThatBelongsToTheToken) {
    expectSyntaxError("color {", " {");
    expectSyntaxError("color \n,", " \n,");
    expectSyntaxError("color +", " +");
    expectSyntaxError("color  > red", "  >");
    expectSyntaxError("color: , red", " ,");
    expectSyntaxError("color: /**/ , red", " ,");
}

TEST(ParserDeathTest, APlusIsNoTerm) {
    expectSyntaxError("color: +1", " +");
    expectSyntaxError("color:+1", "+");
    expectSyntaxError("color: a, +1", " +");
    expectSyntaxError("color: f(+1)", "+");
}

TEST(ParserDeathTest, ANumberWithANameIsNoTerm) {
    expectSyntaxError("width: 12foo", "12foo");
    expectSyntaxError("width: -12foo", "12foo");
    expectSyntaxError("width: 1e3", "1e3");
    expectSyntaxError("width: 1px-a", "1px-a");
    expectSyntaxError("width: 1px, 12foo", "12foo");
    expectSyntaxError("width: f(12foo)", "12foo");
}

TEST(ParserDeathTest, ASignNeedsATermDirectlyBehindIt) {
    expectSyntaxError("width: - 1px", " ");
    expectSyntaxError("width: -", "");
    expectSyntaxError("width: --1px", "-");
    expectSyntaxError("width: -+1px", "+");
    expectSyntaxError("width: 1px - 1px", " ");
    expectSyntaxError("width: -;", ";");
}

TEST(ParserDeathTest, AnOperatorNeedsATermBehindIt) {
    expectSyntaxError("color: red,", "");
    expectSyntaxError("color: red , ;", ";");
    expectSyntaxError("color: red,,blue", ",");
    expectSyntaxError("color: red , , blue", " ,");
    expectSyntaxError("color: red/", "");
    expectSyntaxError("color: red//blue", "/");
    expectSyntaxError("color: red, !important", "!important");
    expectSyntaxError("color: red /* blue", "*");
}

TEST(ParserDeathTest, AFunctionNeedsArguments) {
    expectSyntaxError("color: f()", ")");
    expectSyntaxError("color: f( )", ")");
    expectSyntaxError("color: f(/**/)", ")");
    expectSyntaxError("color: f(g())", ")");
    expectSyntaxError("color: f(", "");
    expectSyntaxError("color: f(a,)", ")");
    expectSyntaxError("color: red f()", ")");
}

TEST(ParserDeathTest, AFunctionNeedsItsParenthesis) {
    expectSyntaxError("color: f(a", "");
    expectSyntaxError("color: f(a;b)", ";");
    expectSyntaxError("color: f(g(a)", "");
    expectSyntaxError("color: f(a + b)", " +");
    expectSyntaxError("color: f(a 12foo)", "12foo");
    expectSyntaxError("color: f(a !important)", "!important");
    expectSyntaxError("color: f(a }", "}");
}

TEST(ParserDeathTest, AnythingElseIsNoTerm) {
    for (const std::string token :
         {"(", ")", "'", "\"",   "@",   "*",  "/",  "=",  "#",  "%",  "&",       "[",     "|",      "~",       "!",
          ".", "{", ">", "<!--", "-->", "~=", "|=", "^=", "$=", "*=", "@import", "@page", "@media", "@charset"})
        expectSyntaxError("color:" + token, token);
    expectSyntaxError("color:\0red"s, "");
}

#ifdef WQ_NO_HARD_ASSERTIONS

std::string mildly(const std::string& text) {
    testing::internal::CaptureStderr();
    const std::string dump = readDeclarations(text);
    return dump + testing::internal::GetCapturedStderr();
}

TEST(Parser, ASyntaxErrorLeavesWhatWasReadBeforeIt) {
    EXPECT_EQ(mildly("color: red; width: }; display: none"), red + "failed\nCSS Parse Error before token }\n");
    EXPECT_EQ(mildly("foo: bar; color: red f("), refused("foo", "bar") + "failed\nCSS Parse Error before token \n");
}

TEST(Parser, ADeclarationWithASyntaxErrorMakesNoProperty) {
    EXPECT_EQ(mildly("color: red; width: f("), red + "failed\nCSS Parse Error before token \n");
    EXPECT_EQ(Property::gOrderCounter, 1);
}

TEST(Parser, AnUnfinishedValueIsDestroyedHoweverDeepItIs) {
    std::string text = "x: ";
    for (int i = 0; i < 100000; ++i) text += "f(";
    EXPECT_EQ(mildly(text), "failed\nCSS Parse Error before token \n");
    EXPECT_EQ(mildly(text + "a"), "failed\nCSS Parse Error before token \n");
    EXPECT_EQ(mildly(text + ")"), "failed\nCSS Parse Error before token )\n");
}

TEST(Parser, ASyntaxErrorInSetCssTextLeavesAnEmptyDeclaration) {
    Declared declaration("width: 1px");
    expectErrorOf([&] { declaration.setCssText("color: red; display: +"); }, " +");
    EXPECT_EQ(declaration.dump(), "");
}

TEST(Parser, ASyntaxErrorInSetPropertyLeavesAnEmptyDeclaration) {
    Declared declaration("width: 1px; color: red");
    expectErrorOf([&] { declaration.setProperty("display", "", ""); }, ";");
    EXPECT_EQ(declaration.dump(), "");
}

TEST(Parser, ADeclarationIsUsableAfterASyntaxError) {
    Declared declaration("width: 1px");
    expectErrorOf([&] { declaration.setProperty("width", "12px", "important"); }, "12pximportant");
    declaration.setProperty("color", "red", "");
    EXPECT_EQ(declaration.dump(), red);
}

#else

TEST(ParserDeathTest, ASyntaxErrorInSetCssTextFails) {
    expectErrorOf([] { Declared("").setCssText("color: red; display: +"); }, "");
}

TEST(ParserDeathTest, ASyntaxErrorInSetPropertyFails) {
    expectErrorOf([] { Declared("").setProperty("display", "", ""); }, "");
    expectErrorOf([] { Declared("").setProperty("width", "12px", "important"); }, "");
}

#endif

TEST(ParseError, SaysItsMessage) {
    static_assert(std::is_base_of_v<std::exception, CSS::ParseError>);
    const CSS::ParseError error("CSS Parse Error before token }");
    EXPECT_STREQ(error.what(), "CSS Parse Error before token }");
    try {
        throw error;
    } catch (const std::exception& caught) {
        EXPECT_STREQ(caught.what(), "CSS Parse Error before token }");
    }
}

// ---- setCssText

TEST(SetCssText, ReplacesAll) {
    EXPECT_EQ(Declared("width: 1px; display: none").dumpAfterSetCssText("color: red; color: blue"), red + "1 color: #0000ff\n");
}

TEST(SetCssText, OfTheEmptyTextLeavesAnEmptyDeclaration) { EXPECT_EQ(Declared("color: red").dumpAfterSetCssText(""), ""); }

TEST(SetCssText, OfATextThatBeginsWithABlankLeavesAnEmptyDeclaration) {
    EXPECT_EQ(Declared("color: red").dumpAfterSetCssText(" color: blue"), "");
}

TEST(SetCssText, ABadValueCostsOnlyItsProperty) {
    EXPECT_EQ(
        Declared("display: none").dumpAfterSetCssText("color: rot; width: 1px; foo: bar"),
        "1 width: 1px (5)\n" + refused("color", "rot") + refused("foo", "bar"));
}

TEST(SetCssText, KeepsImportance) { EXPECT_EQ(Declared("").dumpAfterSetCssText("color: red !important"), "0 color: #ff0000 !\n"); }

TEST(SetCssText, ReadsTheTextOfADeclaration) {
    Declared declaration("color: red !important; margin: 1px auto; list-style-type: octal; font-family: A B, 'C'");
    const std::string text = declaration.cssText();
    EXPECT_EQ(declaration.dumpAfterSetCssText(text).substr(0, 19), "0 color: #ff0000 !\n");
    EXPECT_EQ(declaration.cssText(), text);
}

TEST(SetCssText, OldPropertiesLiveAsLongAsTheyAreHeld) {
    Declared declaration("color: red");
    const auto old = declaration.propertyAtIndex(0);
    declaration.setCssText("color: blue");
    EXPECT_EQ(old->refCount, 1);
    EXPECT_EQ(old->cssText(), "color: #ff0000; ");
}

// The first name of the first property, which must be a font family: the text that its value holds, no copy.
const std::string& firstFamilyOf(MutableStyleDeclaration& declaration) {
    const auto* const list = static_cast<CSS::ValueList*>(declaration.properties.at(0)->value.Get());
    return static_cast<CSS::PrimitiveValue*>(list->values.at(0).Get())->stringValue();
}

TEST(SetCssText, MayReadATextThatItsOwnValuesHold) {
    Declared declaration("font-family: 'A'");  // what begins with a quote declares nothing
    EXPECT_EQ(printedBy([&] { declaration.setCssText(firstFamilyOf(declaration)); }), "");
    EXPECT_EQ(declaration.length(), 0u);
}

// ---- setProperty by text

TEST(SetProperty, MayReadATextThatItsOwnValuesHold) {
    Declared declaration("font-family: A");
    declaration.setProperty("font-family", firstFamilyOf(declaration), "");
    EXPECT_EQ(declaration.dump(), "0 font-family: ['A']\n");
}

TEST(SetProperty, AddsAProperty) { EXPECT_EQ(Declared("").dumpAfterSetting("color", "red"), red); }

TEST(SetProperty, PutsTheNewPropertyLastAndCountsItAnew) {
    EXPECT_EQ(
        Declared("color: blue; width: 1px; display: none").dumpAfterSetting("color", "red"), "1 width: 1px (5)\n2 display: none\n" + red);
}

TEST(SetProperty, ARefusedValueLeavesNone) {
    EXPECT_EQ(Declared("color: blue; width: 1px").dumpAfterSetting("color", "rot"), "1 width: 1px (5)\n" + refused("color", "rot"));
}

TEST(SetProperty, AnUnknownPropertyIsAWarning) {
    EXPECT_EQ(Declared("color: red").dumpAfterSetting("foo", "bar"), red + refused("foo", "bar"));
}

TEST(SetProperty, ReplacesTheFirstOfANameAndTheOtherAnswers) {
    Declared declaration("color: blue; color: lime");
    EXPECT_EQ(declaration.dumpAfterSetting("color", "red"), "1 color: #00ff00\n" + red);
    EXPECT_EQ(declaration.propertyValue("color"), "#00ff00");
}

TEST(SetProperty, ThePartsOfAShorthandComeBehindOlderOnesWhichGoOnAnswering) {
    Declared declaration("margin-left: 5px");
    EXPECT_EQ(
        declaration.dumpAfterSetting("margin", "1px"),
        "0 margin-left: 5px (5)\n1 margin-top: 1px (5)\n2 margin-left: 1px (5)\n3 margin-bottom: 1px (5)\n4 margin-right: 1px (5)\n");
    EXPECT_EQ(declaration.propertyValue("margin-left"), "5px");
}

TEST(SetProperty, ARefusedShorthandLeavesTheOlderParts) {
    EXPECT_EQ(Declared("margin-left: 5px").dumpAfterSetting("margin", "x"), "0 margin-left: 5px (5)\n" + refused("margin", "x"));
}

TEST(SetProperty, ThePriorityImportantIsGluedToTheValue) {
    Declared declaration("color: blue; width: 1px");
    EXPECT_EQ(declaration.dumpAfterSetting("color", "red", "important"), "1 width: 1px (5)\n" + refused("color", "redimportant"));
    EXPECT_EQ(declaration.property("color").Get(), nullptr);
}

TEST(SetProperty, TheGluedWordSpoilsOrJoinsTheLastTerm) {
    struct Row {
        std::string name, value, outcome;
    };
    const Row rows[] = {
        {"color", "#fff", refused("color", "#fffimportant")},
        {"display", "none", refused("display", "noneimportant")},
        {"margin", "1px auto", refused("margin", "1px autoimportant")},
        {"font-family", "Times", "0 font-family: ['Timesimportant']\n"},
        {"font-family", "A, B C", "0 font-family: ['A', 'B Cimportant']\n"},
        {"font", "12pt Times", "10 font-size: 12pt (9)\n11 font-family: ['Timesimportant']\n"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.value);
        EXPECT_EQ(Declared("").dumpAfterSetting(row.name, row.value, "important"), row.outcome);
    }
}

TEST(SetProperty, TheGluedWordIsATermOfItsOwnBehindATokenThatCannotGrow) {
    struct Row {
        std::string name, value, outcome;
    };
    const Row rows[] = {
        {"font-family", "'A B'", "0 font-family: [''A B' important']\n"},
        {"width", "10%", refused("width", "10% important")},
        {"content", "\"x\"", refused("content", "\"x\" important")},
        {"content", "counter(a)", refused("content", "countera important")},
        {"background-color", "url(a)", refused("background-color", "url(a) important")},
        {"color", "red ", refused("color", "red important")},
        {"font-family", "A, ", "0 font-family: ['A', 'important']\n"},
        {"font-family", "", "0 font-family: ['important']\n"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.value);
        EXPECT_EQ(Declared("").dumpAfterSetting(row.name, row.value, "important"), row.outcome);
    }
}

TEST(SetProperty, TheGluedWordIsAnImportanceBehindAnExclamationMark) {
    EXPECT_EQ(Declared("").dumpAfterSetting("color", "red !", "important"), "0 color: #ff0000 !\n");
}

TEST(SetProperty, IgnoresOtherPriorities) {
    for (const std::string priority : {"", "!important", "IMPORTANT", " important", "important ", "normal", "; width: 1px"})
        EXPECT_EQ(Declared("").dumpAfterSetting("color", "red", priority), red) << priority;
}

TEST(SetProperty, AnImportanceInTheValueCounts) {
    EXPECT_EQ(Declared("").dumpAfterSetting("color", "red !important"), "0 color: #ff0000 !\n");
}

TEST(SetProperty, AValueMayBringFurtherDeclarations) {
    EXPECT_EQ(Declared("width: 2px").dumpAfterSetting("color", "red; width: 1px"), "0 width: 2px (5)\n" + red + "1 width: 1px (5)\n");
}

TEST(SetProperty, WhatFollowsACompleteValueIsDropped) {
    EXPECT_EQ(Declared("").dumpAfterSetting("color", "red } ; width: 1px"), red);
    EXPECT_EQ(Declared("").dumpAfterSetting("color", " red 12foo"), red);
}

TEST(SetProperty, ANameThatBeginsNoDeclarationChangesNothing) {
    for (const std::string name : {"", " color", "-color", "12", "{"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(Declared("color: red").dumpAfterSetting(name, "blue"), red);
    }
}

TEST(SetProperty, RemovesAndAddsByTheOverridableOperations) {
    struct Logging : MutableStyleDeclaration {
        std::string removeProperty(const std::string& name) override {
            log.push_back("remove " + name);
            return "dropped";
        }
        void addProperty(Property* added) override { log.push_back("add " + added->name()); }
        std::vector<std::string> log;
    } declaration;
    declaration.setProperty("color", "red", "");
    EXPECT_THAT(declaration.log, ElementsAre("remove color", "add color"));
}

}  // namespace
