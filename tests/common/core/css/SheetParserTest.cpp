// Style sheets, read: rules and selectors. ParserTest.cpp reads declarations.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/core/css/Parser.h"
#include "tests/common/core/css/Sheets.h"

using namespace std::string_literals;
using test::expectSyntaxErrorInSheet;
using test::readSheet;

namespace {

struct Row {
    std::string text, dump;
};
void expectSheets(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(readSheet(row.text), row.dump);
    }
}

struct ErrorRow {
    std::string text, token;
};
void expectSyntaxErrors(const std::vector<ErrorRow>& rows) {
    for (const ErrorRow& row : rows) expectSyntaxErrorInSheet(row.text, row.token);
}

// A rule without declarations for each selector.
void expectSelectors(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(readSheet(row.text + "{}"), "rule " + row.dump + "\n");
    }
}

const std::string a = "rule 0 a\n", b = "rule 0 b\n";

std::string refused(const std::string& name, const std::string& value) {
    return "Warning: Unsupported property " + name + " or invalid value \"" + value + "\"\n";
}

std::string repeated(const std::string& text, size_t times) {
    std::string all;
    for (size_t i = 0; i < times; ++i) all += text;
    return all;
}

}  // namespace

// ---- Parse

TEST(SheetParser, MakesASheetThatNobodyHolds) {
    const auto sheet = CSS::Parser().Parse("a { }");
    EXPECT_EQ(sheet->refCount, 0);
    delete sheet;
}

TEST(SheetParser, MakesAuthorsSheets) {
    const SharedPtr<CSS::Stylesheet> sheet = CSS::Parser().Parse("");
    EXPECT_EQ(sheet->origin, 2);
}

TEST(SheetParser, HoldsEachRuleAndSelectorOnce) {
    const SharedPtr<CSS::Stylesheet> sheet = CSS::Parser().Parse("@import 'x'; @media m /**/{ a {} } @page {} b { color: red }");
    EXPECT_EQ(sheet->importRules[0]->refCount, 1);
    EXPECT_EQ(sheet->mediaRules[0]->refCount, 1);
    EXPECT_EQ(sheet->mediaRules[0]->rules[0]->refCount, 1);
    EXPECT_EQ(sheet->pageRules[0]->refCount, 1);
    EXPECT_EQ(sheet->styleRules[0]->refCount, 1);
    EXPECT_EQ(sheet->styleRules[0]->selectors[0]->refCount, 1);
    EXPECT_EQ(sheet->styleRules[0]->declaration->refCount, 1);
    EXPECT_EQ(sheet->styleRules[0]->declaration->properties[0]->refCount, 1);
}

TEST(SheetParser, CountsPropertiesThroughTheSheetAndAnewInEverySheet) {
    const std::string sheet = "@media m /**/{ a { color: red } } @page { color: red } a { color: red; width: 1px } b { color: red }";
    const std::string dump =
        "media (m) {\nrule 0 a\n0 color: #ff0000\n}\n"
        "page \n1 color: #ff0000\n"
        "rule 0 a\n2 color: #ff0000\n3 width: 1px (5)\n"
        "rule 0 b\n4 color: #ff0000\n";
    EXPECT_EQ(readSheet(sheet), dump);
    EXPECT_EQ(readSheet(sheet), dump);
}

TEST(SheetParser, BeginsToCountPropertiesAnewInASheetWithoutAny) {
    CSS::Property::gOrderCounter = 7;
    readSheet("");
    EXPECT_EQ(CSS::Property::gOrderCounter, 0);
}

// ---- stylesheet

TEST(SheetParser, ATextWithoutRulesIsAnEmptySheet) {
    for (const std::string text : {"", " ", " \t\r\n\f", "/* a {} */", " /**/ /* a */\n/**/", "<!--", "-->", "<!-- <!-- --> /**/ -->"}) {
        SCOPED_TRACE(text);
        EXPECT_EQ(readSheet(text), "");
    }
}

TEST(SheetParser, PassesOverTheSignsOfHtmlCommentsAtTheTopLevel) {
    expectSheets({
        {"<!-- a { } -->", a},
        {"-->a{}<!--b{}", a + b},
        {"<!--<!-- a {} --> <!-- /**/ --> b {} -->", a + b},
    });
}

TEST(SheetParser, WhatBeginsNoRuleEndsTheSheetInSilence) {
    for (const std::string rest :
         {"@font-face { } b { }",
          "@x; b {}",
          "@ import 'x';",
          "} b { }",
          "; b { }",
          ", b { }",
          "> b { }",
          "+ b { }",
          "~ b { }",
          "{ } b { }",
          "'x' b { }",
          "\" b { }",
          "12 { } b { }",
          "1px b { }",
          "12foo b {}",
          ".5 b {}",
          "-b { }",
          "! b { }",
          "!important b { }",
          "url(x) b { }",
          "f(x) b { }",
          ") b { }",
          "( b { }",
          "] b { }",
          "= b { }",
          "~= b { }",
          "|= b { }",
          "^= b { }",
          "$= b { }",
          "*= b { }",
          "\\\n b { }",
          "/ b { }",
          "/* b { }",
          "% b { }",
          "# b { }",
          "& b { }",
          "$ b { }",
          "\x7f b { }"}) {
        SCOPED_TRACE(rest);
        EXPECT_EQ(readSheet("a { } " + rest), a);
        EXPECT_EQ(readSheet(rest), "");
    }
}

TEST(SheetParser, ANulByteEndsTheSheet) { EXPECT_EQ(readSheet("a { } \0 b { }"s), a); }

TEST(SheetParser, AnImportBehindTheFirstRuleEndsTheSheet) {
    expectSheets({
        {"a { } @import \"x\";", a},
        {"a { } @import 'x'; b { }", a},
        {"@page { } @import 'x'; b { }", "page \n"},
        {"@media m /**/{ } @import 'x'; b { }", "media (m) {\n}\n"},
    });
}

// ---- charset

TEST(SheetParser, DropsTheNameOfTheCharset) {
    for (const std::string text :
         {"@charset \"utf-8\"; a{}", "@charset 'x';a{}", "@CHARSET \n 'x' \t ; <!-- a{}", "/**/@charset/**/'x'/**/ /**/;/**/a{}",
          "@charset''; a{}"}) {
        SCOPED_TRACE(text);
        EXPECT_EQ(readSheet(text), a);
    }
}

TEST(SheetParser, ACharsetElsewhereThanAtTheStartEndsTheSheet) {
    expectSheets({
        {" @charset 'x'; a { }", ""},
        {"<!-- @charset 'x'; a { }", ""},
        {"@charset 'x'; @charset 'x'; a { }", ""},
        {"@import 'x'; @charset 'x'; a { }", "import 'x' ()\n"},
        {"a { } @charset 'x'; b { }", a},
    });
}

TEST(SheetParserDeathTest, ACharsetNeedsAStringAndASemicolon) {
    expectSyntaxErrors({
        {"@charset;", ";"},
        {"@charset utf-8;", "utf-8"},
        {"@charset url(x);", "url(x)"},
        {"@charset <!-- 'x';", "<!--"},
        {"@charset", ""},
        {"@charset 'x'", ""},
        {"@charset 'x' a { }", "a"},
        {"@charset 'x' 'y';", "'y'"},
        {"@charset 'x' { }", " {"},
    });
}

// ---- import

TEST(SheetParser, KeepsTheRawAddressOfAnImport) {
    expectSheets({
        {"@import \"x\";", "import \"x\" ()\n"},
        {"@import 'x' ;", "import 'x' ()\n"},
        {"@IMPORT\n'a\\'b';", "import 'a\\'b' ()\n"},
        {"@import'x'/**/ /**/;", "import 'x' ()\n"},
        {"@import url(x.css);", "import url(x.css) ()\n"},
        {"@import URL( 'x' );", "import URL( 'x' ) ()\n"},
        {"@import '';", "import '' ()\n"},
    });
}

TEST(SheetParser, AnImportMayLackItsAddress) {
    expectSheets({
        {"@import;", "import  ()\n"},
        {"@import /**/ ;", "import  ()\n"},
        {"@import print ;", "import  (print)\n"},
    });
}

TEST(SheetParser, ReadsTheMediaOfAnImport) {
    expectSheets({
        {"@import \"x\" print ;", "import \"x\" (print)\n"},
        {"@import 'x'Print\n;", "import 'x' (Print)\n"},
        {"@import 'x' print /**/;", "import 'x' (print)\n"},
        {"@import 'x' print/**/ ;", "import 'x' (print)\n"},
        {"@import 'x' print /**/, screen ;", "import 'x' (print, screen)\n"},
        {"@import 'x' print /**/ , /**/ screen /**/,tv ;", "import 'x' (print, screen, tv)\n"},
        {"@import 'x' print /**/, print ;", "import 'x' (print, print)\n"},
    });
}

TEST(SheetParser, ReadsImportsInTheirOrder) {
    expectSheets({
        {"@import 'x'; @import url(y);@import 'x'; a { }", "import 'x' ()\nimport url(y) ()\nimport 'x' ()\n" + a},
        {"@charset 'c'; @import 'x';", "import 'x' ()\n"},
        {"<!-- @import 'x'; --> <!-- @import 'y'; a { } -->", "import 'x' ()\nimport 'y' ()\n" + a},
    });
}

TEST(SheetParserDeathTest, AMediumOfAnImportNeedsExactlyOneRunOfWhiteSpace) {
    expectSyntaxErrors({
        {"@import 'x' print;", ";"},
        {"@import 'x' print/**/;", ";"},
        {"@import 'x' print, screen ;", ","},
        {"@import 'x' print , screen ;", " ,"},
        {"@import 'x' print /**/, screen;", ";"},
        {"@import 'x' print /**/ /**/;", " "},
        {"@import 'x' print /**/\n/**/, screen ;", "\n"},
        {"@import 'x' print", ""},
    });
}

TEST(SheetParserDeathTest, AnImportIsAnAddressAndMedia) {
    expectSyntaxErrors({
        {"@import", ""},
        {"@import 'x'", ""},
        {"@import 'x' 'y';", "'y'"},
        {"@import 'x' { }", " {"},
        {"@import url(a b);", "url("},
        {"@import <!-- 'x';", "<!--"},
        {"@import 'x' , print ;", " ,"},
        {"@import 'x' print screen ;", "screen"},
        {"@import 'x' print /**/, ;", ";"},
        {"@import 'x' print /**/,, screen ;", ","},
        {"@import 'x' print 'y';", "'y'"},
        {"@import 1;", "1"},
        {"@import #x;", "#x"},
    });
}

// ---- media

TEST(SheetParser, ReadsAMediaRule) {
    expectSheets({
        {"@media print /*x*/{ a { } }", "media (print) {\n" + a + "}\n"},
        {"@media print /**/ { a { } }", "media (print) {\n" + a + "}\n"},
        {"@MEDIA/**/Print\n/**/\t{}", "media (Print) {\n}\n"},
        {"@media m /**/{ a{}b{} \n/**/ a{} }b{}", "media (m) {\n" + a + b + a + "}\n" + b},
        {"@media m /**/{ * {} #x {} .x {} :x {} [x] {} }",
         "media (m) {\nrule 0 *\nrule 0 * id(#x)\nrule 0 * class[class ~= x]\nrule 0 * pseudo(x)\nrule 0 * [x]\n}\n"},
        {"@media m /**/{ a, b { color: red; foo: bar } }", "media (m) {\nrule 0 a, 0 b\n0 color: #ff0000\n}\n" + refused("foo", "bar")},
        {"@media m /**/{} <!-- @media n /**/{} -->", "media (m) {\n}\nmedia (n) {\n}\n"},
    });
}

TEST(SheetParserDeathTest, AMediumOfAMediaRuleNeedsWhiteSpaceAndAComment) {
    expectSyntaxErrors({
        {"@media print { a { } }", " {"},
        {"@media print{ a { } }", "{"},
        {"@media print/**/{ a { } }", "{"},
        {"@media print/**/ { a { } }", " {"},
        {"@media print /**/ /**/{ a { } }", " "},
    });
}

TEST(SheetParserDeathTest, AMediaRuleNamesExactlyOneMedium) {
    expectSyntaxErrors({
        {"@media print, screen /*x*/{ }", ","},
        {"@media print /**/, screen /**/{ }", ","},
        {"@media print /**/ , screen /**/{ }", " ,"},
        {"@media print screen /**/{ }", "screen"},
        {"@media { a { } }", " {"},
        {"@media /**/{ }", "{"},
        {"@media 'print' /**/{ }", "'print'"},
        {"@media print ;", ";"},
        {"@media print /**/", ""},
        {"@media print", ""},
        {"@media", ""},
    });
}

TEST(SheetParserDeathTest, AMediaRuleHoldsStyleRulesOnly) {
    expectSyntaxErrors({
        {"@media m /**/{ a { }", ""},
        {"@media m /**/{ a { } ; }", ";"},
        {"@media m /**/{ @page { } }", "@page"},
        {"@media m /**/{ @media m /**/{ } }", "@media"},
        {"@media m /**/{ @import 'x'; }", "@import"},
        {"@media m /**/{ <!-- a { } --> }", "<!--"},
        {"@media m /**/{{ }", "{"},
        {"@media m /**/{ color: red }", " "},
        {"@media m /**/{ @font-face { } }", "@"},
    });
}

// ---- page, pseudo_page

TEST(SheetParser, ReadsAPageRule) {
    expectSheets({
        {"@page { }", "page \n"},
        {"@PAGE{}@page/**/{}", "page \npage \n"},
        {"@page { color: red; ; width: 1px }", "page \n0 color: #ff0000\n1 width: 1px (5)\n"},
        {"@page {;color: red;}", "page \n0 color: #ff0000\n"},
        {"@page { foo: bar } a { }", "page \n" + a + refused("foo", "bar")},
    });
}

TEST(SheetParser, DropsTheNameOfAPage) {
    expectSheets({
        {"@page :first { }", "page \n"},
        {"@page:first{}", "page \n"},
        {"@page \n:/**/Whatever/**/{}", "page \n"},
        {"@page :first { margin: 1px }",
         "page \n1 margin-top: 1px (5)\n2 margin-left: 1px (5)\n3 margin-bottom: 1px (5)\n4 margin-right: 1px (5)\n"},
    });
}

TEST(SheetParserDeathTest, APageIsAPseudoPageAndABlock) {
    expectSyntaxErrors({
        {"@page x { }", "x"},
        {"@page x:first { }", "x"},
        {"@page : first { }", " "},
        {"@page : { }", " {"},
        {"@page :first /**/{ }", " "},
        {"@page :first:left { }", ":"},
        {"@page :first(x) { }", "first("},
        {"@page :'x' { }", "'x'"},
        {"@page , :first { }", " ,"},
        {"@page;", ";"},
        {"@page", ""},
        {"@page :first", ""},
        {"@page { color: red", ""},
        {"@page { color: red } @page { @x }", "@"},
        {"@page { a { } }", " {"},
    });
}

// ---- ruleset

TEST(SheetParser, ReadsRules) {
    expectSheets({
        {"a { }", a},
        {"a{}", a},
        {"a\n{/**/}b{ /**/ }\n", a + b},
        {"a { color: red }", a + "0 color: #ff0000\n"},
        {"a{color:red}", a + "0 color: #ff0000\n"},
        {"a { color: red; width: 1px; }", a + "0 color: #ff0000\n1 width: 1px (5)\n"},
        {"a { color: red !important; width: 1px }", a + "0 color: #ff0000 !\n1 width: 1px (5)\n"},
        {"a { color: red; color: blue }", a + "0 color: #ff0000\n1 color: #0000ff\n"},
    });
}

TEST(SheetParser, SkipsEmptyDeclarationsOfARule) {
    expectSheets({
        {"a { ; ; color: red ; }", a + "0 color: #ff0000\n"},
        {"a {;}", a},
        {"a { ;;; }", a},
    });
}

TEST(SheetParser, ARuleMayHaveManySelectors) {
    expectSheets({
        {"a, b { }", "rule 0 a, 0 b\n"},
        {"a,b,a{}", "rule 0 a, 0 b, 0 a\n"},
        {"a \n,/**/ /**/b { color: red }", "rule 0 a, 0 b\n0 color: #ff0000\n"},
        {"a/**/,b c,.x{}", "rule 0 a, 0 b | 1 c, 0 * class[class ~= x]\n"},
    });
}

TEST(SheetParser, ABadValueCostsItsDeclarationOnly) {
    expectSheets({
        {"a { foo: bar }", a + refused("foo", "bar")},
        {"a { color: red; foo: bar; width: 1px } b { COLOR: red }",
         a + "0 color: #ff0000\n2 width: 1px (5)\n" + b + refused("foo", "bar") + refused("COLOR", "red")},
        {"a { x: 12px/14px serif !important }", a + refused("x", "12px/14px serif")},
        {"a { x: -1px }", a + refused("x", "-1px")},
    });
}

TEST(SheetParserDeathTest, SelectorsStandBetweenCommas) {
    expectSyntaxErrors({
        {"a,,b { }", ","},
        {"a, { }", " {"},
        {"a /**/, b { }", ","},
        {"a, <!-- b { }", "<!--"},
        {"a, 1 { }", "1"},
        {"a,", ""},
    });
}

TEST(SheetParserDeathTest, ABlockHoldsDeclarationsOnly) {
    expectSyntaxErrors({
        {"a {", ""},
        {"a { color: red", ""},
        {"a { color: red;", ""},
        {"a { color: red } b", ""},
        {"a { color: red } b;", ";"},
        {"a { color red }", "red"},
        {"a { color: red: blue }", ":"},
        {"a { color }", "}"},
        {"a { color: }", "}"},
        {"a { b { } }", " {"},
        {"a { { } }", " {"},
        {"a { @x }", "@"},
        {"a { @media m /**/{ } }", "@media"},
        {"a { <!-- color: red }", "<!--"},
        {"a { color: red --> }", "-->"},
        {"a { color: red !important !important }", "!important"},
        {"a { 'x' }", "'x'"},
        {"a { -x: y }", "-"},
        {"a { color: red \0 }"s, ""},
    });
}

TEST(SheetParserDeathTest, AValueIsATerm) {
    expectSyntaxErrors({
        {"a { color: +1 }", " +"},
        {"a { width: 12foo }", "12foo"},
        {"a { width: - 1px }", " "},
    });
}

TEST(SheetParserDeathTest, APlusOrANumberWithANameBehindACompleteValueIsAnErrorAfterTheWarning) {
    expectSyntaxErrorInSheet("a { color: red 12foo }", "12foo");
    expectSyntaxErrorInSheet("a { color: red + 1 }", " +");
    expectSyntaxErrorInSheet("a { foo: bar 12foo }", "12foo", refused("foo", "bar"));
    expectSyntaxErrorInSheet("a { foo: bar +1 }", " +", refused("foo", "bar"));
    expectSyntaxErrorInSheet("a { foo: bar; color: no 1px 12foo; x: y }", "12foo", refused("foo", "bar") + refused("color", "no 1px"));
}

TEST(SheetParserDeathTest, AnErrorBehindGoodRulesCostsTheWholeSheet) {
    expectSyntaxErrors({
        {"@import 'x'; @media m /**/{ a { } } @page { color: red } a { color: red } b b b { width: 1px; } c { } a ~ b { }", "~"},
    });
}

// ---- selector, combinator

TEST(SheetParser, ReadsCombinators) {
    expectSelectors({
        {"a b", "0 a | 1 b"},
        {"a > b", "0 a | 2 b"},
        {"a + b", "0 a | 3 b"},
        {"a b > c + d ", "0 a | 1 b | 2 c | 3 d"},
        {"a>b+c", "0 a | 2 b | 3 c"},
        {"a\r\n\tb", "0 a | 1 b"},
        {"a /**/ /**/ b", "0 a | 1 b"},
        {"a/**/ b", "0 a | 1 b"},
        {"a /**/b", "0 a | 1 b"},
        {"a >/**/ /**/b", "0 a | 2 b"},
        {"a/**/+ b", "0 a | 3 b"},
        {"a * .x #y", "0 a | 1 * | 1 * class[class ~= x] | 1 * id(#y)"},
        {".x>[y]+:z", "0 * class[class ~= x] | 2 * [y] | 3 * pseudo(z)"},
        {"[x] [y]", "0 * [x] | 1 * [y]"},
    });
}

TEST(SheetParserDeathTest, ATildeIsNoCombinator) {
    expectSyntaxErrors({
        {"a ~ b { }", "~"},
        {"a~b { }", "~"},
        {"a > ~ b { }", "~"},
    });
}

TEST(SheetParserDeathTest, WhiteSpaceInFrontOfACommentIsACombinator) {
    expectSyntaxErrors({
        {"a /**/ { }", " {"},
        {"a /**/{ }", "{"},
        {"a /**/> b { }", ">"},
        {"a /**/ + b { }", " +"},
        {"a /**/", ""},
        {"a ", ""},
    });
}

TEST(SheetParserDeathTest, ACombinatorNeedsASimpleSelector) {
    expectSyntaxErrors({
        {"a > { }", " {"},
        {"a + + b { }", " +"},
        {"a > > b { }", " >"},
        {"a > , b { }", " ,"},
        {"a }", "}"},
        {"a 'x' { }", "'x'"},
        {"a <!-- b { }", "<!--"},
        {"a @x { }", "@"},
        {"a 1 { }", "1"},
    });
}

// ---- simple_selector, element_name

TEST(SheetParser, KeepsElementNamesAsTyped) {
    expectSelectors({
        {"a", "0 a"},
        {"DIV", "0 DIV"},
        {"*", "0 *"},
        {"_a-1", "0 _a-1"},
        {"a\\:b", "0 a\\:b"},
        {"\xc3\xa9\xff", "0 \xc3\xa9\xff"},
    });
}

TEST(SheetParser, ImpliesAnElementName) {
    expectSheets({
        {".x { }", "rule 0 * class[class ~= x]\n"},
        {"#x { }", "rule 0 * id(#x)\n"},
        {"[x] { }", "rule 0 * [x]\n"},
        {":x { }", "rule 0 * pseudo(x)\n"},
    });
}

TEST(SheetParser, ReadsConditionsInAnyOrder) {
    expectSelectors({
        {"a#x.b[c]:d", "0 a id(#x) class[class ~= b] [c] pseudo(d)"},
        {"*:d[c].b#x", "0 * pseudo(d) [c] class[class ~= b] id(#x)"},
        {"#x#x.y.y", "0 * id(#x) id(#x) class[class ~= y] class[class ~= y]"},
        {"a/**/.b/**/#c/**/[d]/**/:e", "0 a class[class ~= b] id(#c) [d] pseudo(e)"},
        {"a.b c.d", "0 a class[class ~= b] | 1 c class[class ~= d]"},
        {"#1", "0 * id(#1)"},
        {"#-", "0 * id(#-)"},
        {"a#B\\:c", "0 a id(#B\\:c)"},
    });
}

TEST(SheetParserDeathTest, AnythingElseEndsTheSelector) {
    expectSyntaxErrors({
        {"a/**/b { }", "b"},
        {"a* { }", "*"},
        {"a.b* { }", "*"},
        {"a# { }", "#"},
        {"a'x' { }", "'x'"},
        {"a|b { }", "|"},
        {"a<!-- { }", "<!--"},
        {"a; b { }", ";"},
        {"a} b { }", "}"},
        {"a] { }", "]"},
        {"a", ""},
        {"a f(b) { }", "f("},
    });
}

// ---- css_class

TEST(SheetParser, ReadsClasses) {
    expectSelectors({
        {".x", "0 * class[class ~= x]"},
        {"a.X-1", "0 a class[class ~= X-1]"},
        {"a./**/x", "0 a class[class ~= x]"},
        {".\xe9", "0 * class[class ~= \xe9]"},
    });
}

TEST(SheetParserDeathTest, AClassNeedsItsNameDirectlyBehindTheDot) {
    expectSyntaxErrors({
        {". x { }", " "},
        {"a. x { }", " "},
        {".#x { }", "#x"},
        {"..x { }", "."},
        {".'x' { }", "'x'"},
        {".* { }", "*"},
        {".f(x) { }", "f("},
        {".-x { }", "-"},
        {". { }", " {"},
        {".", ""},
        {"a.1x { }", ".1x"},
    });
}

// ---- attrib

TEST(SheetParser, ReadsEveryAttributeOperator) {
    expectSelectors({
        {"[x]", "0 * [x]"},
        {"[x=y]", "0 * [x = y]"},
        {"[x~=y]", "0 * [x ~= y]"},
        {"[x|=y]", "0 * [x |= y]"},
        {"[x^=y]", "0 * [x ^= y]"},
        {"[x$=y]", "0 * [x $= y]"},
        {"[x*=y]", "0 * [x *= y]"},
    });
}

TEST(SheetParser, KeepsTheQuotesOfAttributeValues) {
    expectSelectors({
        {"[x=\"y\"]", "0 * [x = \"y\"]"},
        {"[x~='y z']", "0 * [x ~= 'y z']"},
        {"[x|='a\\'b']", "0 * [x |= 'a\\'b']"},
        {"[x^='']", "0 * [x ^= '']"},
        {"[class~=x]", "0 * [class ~= x]"},
        {"[X=Y]", "0 * [X = Y]"},
    });
}

TEST(SheetParser, TakesWhiteSpaceWithinBrackets) {
    expectSelectors({
        {"[ x ]", "0 * [x]"},
        {"[ x = y ]", "0 * [x = y]"},
        {"[\nx\t~=\r'y'\f]", "0 * [x ~= 'y']"},
        {"a[/**/ /**/x/**/ /**/=/**/ /**/y/**/ /**/]", "0 a [x = y]"},
    });
}

TEST(SheetParserDeathTest, AnAttributeConditionIsANameAnOperatorAndAValue) {
    expectSyntaxErrors({
        {"[] { }", "]"},
        {"[*] { }", "*"},
        {"['x'] { }", "'x'"},
        {"[#x] { }", "#x"},
        {"[1] { }", "1"},
        {"[", ""},
        {"[x { }", " {"},
        {"[x", ""},
        {"[x=] { }", "]"},
        {"[x=1] { }", "1"},
        {"[x=#y] { }", "#y"},
        {"[x==y] { }", "="},
        {"[x!=y] { }", "!"},
        {"[x ~ = y] { }", "~"},
        {"[x=-y] { }", "-"},
        {"[x=y z] { }", "z"},
        {"[x='y' 'z'] { }", "'z'"},
        {"[x y] { }", "y"},
        {"[x|y] { }", "|"},
        {"[x=url(y)] { }", "url(y)"},
        {"[x=f(y)] { }", "f("},
        {"[x > y] { }", " >"},
        {"[x, y] { }", ","},
        {"[x=y, z] { }", ","},
        {"[x=y { }", " {"},
        {"[x=", ""},
        {"[x=y", ""},
        {"[f(x)] { }", "f("},
        {"[x=<!--] { }", "<!--"},
    });
}

// ---- pseudo

TEST(SheetParser, ReadsWhateverFollowsAColon) {
    expectSelectors({
        {"a:first", "0 a pseudo(first)"},
        {"a:First-Line:hover", "0 a pseudo(First-Line) pseudo(hover)"},
        {":/**/x", "0 * pseudo(x)"},
    });
}

TEST(SheetParser, DropsTheNameAndTheArgumentOfAPseudoFunction) {
    expectSelectors({
        {"a:lang(en)", "0 a pseudo()"},
        {"a:lang( \n en).b", "0 a pseudo() class[class ~= b]"},
        {":lang(/**/ /**/en/**/)", "0 * pseudo()"},
    });
}

TEST(SheetParserDeathTest, NoBlankIsSkippedInFrontOfTheParenthesisOfAPseudoFunction) {
    expectSyntaxErrors({
        {":lang(en ) { }", " "},
        {":lang( en\n) { }", "\n"},
    });
}

TEST(SheetParserDeathTest, APseudoElementIsANameOrAFunctionOfAName) {
    expectSyntaxErrors({
        {"a::before { }", ":"},
        {": x { }", " "},
        {":#x { }", "#x"},
        {":.x { }", "."},
        {":* { }", "*"},
        {":1 { }", "1"},
        {":'x' { }", "'x'"},
        {": { }", " {"},
        {":", ""},
        {":lang() { }", ")"},
        {":lang('en') { }", "'en'"},
        {":lang(en, de) { }", ","},
        {":lang(en de) { }", " "},
        {":nth-child(2n) { }", "2n"},
        {":nth-child(2) { }", "2"},
        {":not(.x) { }", "."},
        {":f(g(x)) { }", "g("},
        {":lang(en { }", " {"},
        {":lang(", ""},
        {":lang(en", ""},
    });
}

// ---- Long sheets

TEST(SheetParser, AChainMayHave200000Parts) {
    const SharedPtr<CSS::Stylesheet> sheet = CSS::Parser().Parse(repeated("a ", 200'000) + "b {}");
    ASSERT_EQ(sheet->styleRules.size(), 1U);
    const CSS::TypeSelector* part = sheet->styleRules[0]->selectors[0]->chainHead;
    EXPECT_EQ(part->name, "b");
    size_t parts = 0;
    for (; part; part = part->chainLeft) ++parts;
    EXPECT_EQ(parts, 200'001U);
}

TEST(SheetParser, APartMayHave200000Conditions) {
    const SharedPtr<CSS::Stylesheet> sheet = CSS::Parser().Parse("a" + repeated(".x[y]#z:w", 50'000) + " {}");
    ASSERT_EQ(sheet->styleRules.size(), 1U);
    size_t conditions = 0;
    for (const CSS::SimpleSelector* each = sheet->styleRules[0]->selectors[0]->chainHead->next; each; each = each->next) ++conditions;
    EXPECT_EQ(conditions, 200'000U);
}

TEST(SheetParser, ARuleMayHave100000SelectorsAndASheet100000Rules) {
    const SharedPtr<CSS::Stylesheet> sheet = CSS::Parser().Parse(repeated("a,", 99'999) + "a {}" + repeated("b{}", 99'999));
    ASSERT_EQ(sheet->styleRules.size(), 100'000U);
    EXPECT_EQ(sheet->styleRules[0]->selectors.size(), 100'000U);
}

TEST(SheetParserDeathTest, AnUnfinishedChainIsDestroyedHoweverLongItIs) {
    test::expectSyntaxErrorInSheet(repeated("a.x ", 200'000), "");
    test::expectSyntaxErrorInSheet(repeated(".x", 200'000), "");
}
