#include "common/core/css/Rule.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

#include "tests/common/core/css/Sheets.h"

using namespace CSS;
using test::printedBy;

namespace {

// The first rule of a sheet; it outlives the sheet.
SharedPtr<StyleRule> ruleOf(const std::string& text) {
    const SharedPtr<Stylesheet> sheet = Parser().Parse(text);
    return sheet->styleRules[0];
}

std::string printed(const Rule& rule) {
    return printedBy([&] { rule.Print(); });
}

}  // namespace

TEST(Rule, IsAbstractAndCounted) {
    static_assert(std::is_abstract_v<Rule> && std::is_base_of_v<SharedObject, Rule>);
    static_assert(std::is_base_of_v<Rule, StyleRule> && std::is_base_of_v<Rule, PageRule>);
    static_assert(std::is_base_of_v<Rule, MediaRule> && std::is_base_of_v<Rule, ImportRule>);
}

// ---- StyleRule

TEST(StyleRule, HasAnEmptyDeclarationOfItsOwnAtFirst) {
    const StyleRule rule, other;
    EXPECT_EQ(rule.refCount, 0);
    EXPECT_TRUE(rule.selectors.empty());
    ASSERT_TRUE(rule.declaration);
    EXPECT_EQ(rule.declaration->refCount, 1);
    EXPECT_EQ(rule.declaration->length(), 0U);
    EXPECT_NE(rule.declaration.Get(), other.declaration.Get());
}

TEST(StyleRule, PartsOutliveIt) {
    SharedPtr<StyleRule> rule = ruleOf("a.x b { color: red }");
    const auto selector = rule->selectors[0];
    const auto declaration = rule->declaration;
    rule = SharedPtr<StyleRule>();
    EXPECT_EQ(test::dumpOfSelector(*selector), "0 a class[class ~= x] | 1 b");
    EXPECT_EQ(test::dumpOfDeclaration(*declaration), "0 color: #ff0000\n");
}

TEST(StyleRule, JoinsTheTextsOfItsSelectorsWithCommas) {
    const struct {
        const char *rule, *text;
    } rows[] = {
        {"a { }", "a"},
        {"a , b c { }", "a,b c"},
        {"a,b,a { color: red }", "a,b,a"},
        {".x, a > b, [y='z']:w { }", "*.x,a>b,*[y=\"'z'\"]:w"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.rule);
        EXPECT_EQ(ruleOf(row.rule)->GetSelectorText(), row.text);
    }
}

TEST(StyleRule, WithoutSelectorsHasAnEmptySelectorText) { EXPECT_EQ(StyleRule().GetSelectorText(), ""); }

TEST(StyleRule, AnswersTheSameSelectorTextAgain) {
    const auto rule = ruleOf("a, b { }");
    EXPECT_EQ(rule->GetSelectorText(), "a,b");
    EXPECT_EQ(rule->GetSelectorText(), "a,b");
}

TEST(StyleRuleDeathTest, ASelectorWithoutATextFormHasNone) {
    for (const std::string condition : {"#x", "[x]", "[x|=y]", "[x^=y]", "[x$=y]", "[x*=y]"}) {
        SCOPED_TRACE(condition);
        const auto rule = ruleOf("a, b" + condition + ", c { }");
#ifdef WQ_NO_HARD_ASSERTIONS
        EXPECT_EQ(rule->GetSelectorText(), "a,b,c");
#else
        test::expectAssertion([&] { rule->GetSelectorText(); }, "0", "AppendSelectorText", "Selector");
#endif
    }
}

TEST(StyleRule, PrintsSelectorsAndProperties) {
    EXPECT_EQ(printed(*ruleOf("a{}")), "a  { \n}\n");
    EXPECT_EQ(printed(*ruleOf("a, b > c { }")), "a ,b c> { \n}\n");
    EXPECT_EQ(
        printed(*ruleOf("a { color: red; display: none !important }")), "a  { \n\tcolor: #ff0000; \n\tdisplay: none!important; \n}\n");
    EXPECT_EQ(printed(*ruleOf("a#x { color: red }")), "a  { \n\tcolor: #ff0000; \n}\n");
}

TEST(StyleRule, PrintsTheFirstOfTwoLikePropertiesTwice) {
    EXPECT_EQ(
        printed(*ruleOf("a { color: red; display: none; color: blue }")),
        "a  { \n\tcolor: #ff0000; \n\tdisplay: none; \n\tcolor: #ff0000; \n}\n");
}

TEST(StyleRule, PrintsBracesWithoutAnySelector) { EXPECT_EQ(printed(StyleRule()), " { \n}\n"); }

// ---- The others

TEST(PageRule, HasAnEmptyDeclarationOfItsOwnAtFirst) {
    const PageRule rule, other;
    EXPECT_EQ(rule.refCount, 0);
    EXPECT_EQ(rule.pseudoPage, "");
    ASSERT_TRUE(rule.declaration);
    EXPECT_EQ(rule.declaration->refCount, 1);
    EXPECT_EQ(rule.declaration->length(), 0U);
    EXPECT_NE(rule.declaration.Get(), other.declaration.Get());
}

TEST(MediaRule, IsEmptyAtFirst) {
    const MediaRule rule;
    EXPECT_EQ(rule.refCount, 0);
    EXPECT_TRUE(rule.media.empty());
    EXPECT_TRUE(rule.rules.empty());
}

TEST(ImportRule, IsEmptyAtFirst) {
    const ImportRule rule;
    EXPECT_EQ(rule.refCount, 0);
    EXPECT_EQ(rule.href, "");
    EXPECT_TRUE(rule.media.empty());
}

TEST(Rule, OthersThanStyleRulesPrintNothing) {
    const SharedPtr<Stylesheet> sheet = Parser().Parse("@import 'x' m ; @media m /**/{ a { color: red } } @page { color: red }");
    EXPECT_EQ(printed(*sheet->importRules[0]), "");
    EXPECT_EQ(printed(*sheet->mediaRules[0]), "");
    EXPECT_EQ(printed(*sheet->pageRules[0]), "");
}
