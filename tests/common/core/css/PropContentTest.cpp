#include "common/core/css/PropContent.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/common/core/css/Declarations.h"
#include "tests/common/core/css/PlainStyle.h"

using CSS::AST;
using CSS::PropContent;
using test::readDeclarations;

namespace {

AST* addChild(AST* parent, int type, const std::string& text) {
    AST* const node = parent->AddChild();
    node->type = type;
    node->text = text;
    return node;
}

std::string content(const std::string& value) { return "0 content: [" + value + "]\n"; }

std::string refused(const std::string& value) { return "Warning: Unsupported property content or invalid value \"" + value + "\"\n"; }

struct Row {
    const char *value, *outcome;
};

template <size_t Count> void expectValues(const Row (&rows)[Count], std::string (*outcome)(const std::string&)) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.value);
        EXPECT_EQ(readDeclarations(std::string("content: ") + row.value), outcome(row.outcome));
    }
}

TEST(PropContent, IsAListOfStringsWithoutTheirQuotesAndOfCounters) {
    EXPECT_EQ(readDeclarations("content: \"Page \" counter(page)"), content("'Page ', counter(page, decimal, )"));
}

TEST(PropContent, TakesStringsAndCountersInAnyOrder) {
    const Row rows[] = {
        {"'a'", "'a'"},
        {"\"a\"", "'a'"},
        {"''", "''"},
        {"'a' \"b\" ''", "'a', 'b', ''"},
        {"'a''b'", "'a', 'b'"},
        {"'\"'", "'\"'"},
        {"'\\41'", "'\\41'"},  // escapes stay as they are
        {"counter(a)", "counter(a, decimal, )"},
        {"counter(a) 'b' counters(c, d, e)", "counter(a, decimal, ), 'b', counter(c, d, e)"},
    };
    expectValues(rows, content);
}

TEST(PropContent, ReadsTheWordsOfCounters) {
    const Row rows[] = {
        {"counter(a)", "counter(a, decimal, )"},   {"counter(a, b)", "counter(a, b, )"},
        {"counters(a)", "counter(a, decimal, )"},  {"counters(a, b)", "counter(a, b, )"},  // a list style, no separator
        {"counters(a, b, c)", "counter(a, b, c)"},
    };
    expectValues(rows, content);
}

TEST(PropContent, RefusesCountersWithAnotherNumberOfWords) {
    const Row rows[] = {
        {"counter(a, b, c)", "counterabc"}, {"counter(a, b, c, d)", "counterabcd"},   {"counters(a, b, c, d)", "countersabcd"},
        {"counter('a')", "counter'a'"},     {"counters('a', 'b')", "counters'a''b'"}, {"counter(1)", "counter1"},
    };
    expectValues(rows, refused);
}

TEST(PropContent, TheSeparatorInQuotesIsLost) {
    const Row rows[] = {
        {"counters(a, '.')", "counter(a, decimal, )"},
        {"counters(a, '.', b)", "counter(a, b, )"},
        {"counter('.', a)", "counter(a, decimal, )"},
    };
    expectValues(rows, content);
}

TEST(PropContent, WhateverIsNoWordIsSkippedInACounter) {
    const Row rows[] = {
        {"counter(a b)", "counter(a, b, )"},
        {"counter(a / b)", "counter(a, b, )"},
        {"counter(a, 1, #b, url(c), 2pt)", "counter(a, decimal, )"},
        {"counter(a, counter(b))", "counter(a, decimal, )"},
        {"counter(f(b), a)", "counter(a, decimal, )"},
        {"counters(a b c)", "counter(a, b, c)"},
    };
    expectValues(rows, content);
}

TEST(PropContent, NoListStyleIsLookedUp) {
    EXPECT_EQ(readDeclarations("content: counter(a, Nonsense)"), content("counter(a, Nonsense, )"));
}

TEST(PropContent, FunctionNamesCompareExactly) {
    const Row rows[] = {
        {"Counter(a)", "Countera"},   {"COUNTERS(a)", "COUNTERSa"}, {"attr(a)", "attra"},
        {"counterx(a)", "counterxa"}, {"count(a)", "counta"},
    };
    expectValues(rows, refused);
}

TEST(PropContent, RefusesTheQuoteKeywordsOfItsRow) {
    for (const std::string keyword : {"open-quote", "close-quote", "no-open-quote", "no-close-quote"}) {
        SCOPED_TRACE(keyword);
        EXPECT_TRUE(CSS::Property::isValidValue(CSS::PropertyContent, CSS::PrimitiveValue::IdentForString(keyword)));
        EXPECT_EQ(readDeclarations("content: " + keyword), refused(keyword));
    }
}

TEST(PropContent, RefusesNone) { EXPECT_EQ(readDeclarations("content: none"), refused("none")); }

TEST(PropContent, RefusesAllOtherTerms) {
    const Row rows[] = {
        {"normal", "normal"},
        {"inherit", "inherit"},
        {"url(a)", "url(a)"},
        {"12", "12"},
        {"0", "0"},
        {"1pt", "1pt"},
        {"1%", "1%"},
        {"1em", "1em"},
        {"#abc", "#abc"},
        {"attr(x)", "attrx"},
        {"'a' b", "'a' b"},
        {"b 'a'", "b 'a'"},
        {"'a', 'b'", "'a''b'"},
        {"'a'/'b'", "'a'/'b'"},
        {"'a' attr(x)", "'a' attrx"},
        {"counter(a), 'b'", "countera'b'"},
    };
    expectValues(rows, refused);
}

TEST(PropContent, ASignInFrontOfAStringTakesThePlaceOfItsQuote) { EXPECT_EQ(readDeclarations("content: -'a'"), content("''a'")); }

TEST(PropContent, CanBeImportant) { EXPECT_EQ(readDeclarations("content: 'a' !important"), "0 content: ['a'] !\n"); }

TEST(PropContent, AnExpressionWithoutItemsIsRefused) {
    PropContent property;
    AST empty, blank;
    addChild(&blank, ' ', "");
    addChild(&blank, ' ', "");
    EXPECT_FALSE(property.validate(&empty));
    EXPECT_FALSE(property.validate(&blank));
    EXPECT_EQ(property.value.Get(), nullptr);
}

TEST(PropContent, ARefusedExpressionLeavesNoValue) {
    AST root;
    addChild(&root, CSS::STRING, "'a'");
    addChild(&root, ' ', "");
    addChild(&root, CSS::IDENT, "none");
    PropContent property;
    EXPECT_FALSE(property.validate(&root));
    EXPECT_EQ(property.value.Get(), nullptr);
}

TEST(PropContent, HasStringsAndCountersAsValues) {
    AST root;
    addChild(&root, CSS::STRING, "'a'");
    AST* const function = addChild(&root, CSS::FUNCTION, "counter");
    addChild(function, CSS::IDENT, "b");
    PropContent property;
    ASSERT_TRUE(property.validate(&root));
    ASSERT_NE(property.valueList(), nullptr);
    const auto& values = property.valueList()->values;
    ASSERT_EQ(values.size(), 2u);
    EXPECT_EQ(static_cast<CSS::PrimitiveValue*>(values[0].Get())->primitiveType, 19);
    EXPECT_EQ(static_cast<CSS::PrimitiveValue*>(values[1].Get())->primitiveType, 23);
    EXPECT_EQ(static_cast<CSS::PrimitiveValue*>(values[1].Get())->counterValue()->identifier, "b");
}

TEST(PropContent, OnlyAFunctionIsACounter) {
    for (const int type : {int(CSS::IDENT), int(CSS::STRING), int(CSS::URI), int(' '), 0}) {
        AST node;
        node.type = type;
        node.text = "counter";
        addChild(&node, CSS::IDENT, "a");
        EXPECT_EQ(PropContent().parseCounter(&node), nullptr) << type;
    }
}

TEST(PropContent, ANewCounterBelongsToNobody) {
    AST node;
    node.type = CSS::FUNCTION;
    node.text = "counters";
    for (const char* const word : {"a", "b", "c"}) addChild(&node, CSS::IDENT, word);
    const auto counter = PropContent().parseCounter(&node);
    ASSERT_NE(counter, nullptr);
    EXPECT_EQ(counter->refCount, 0);
    EXPECT_EQ(counter->identifier, "a");
    EXPECT_EQ(counter->listStyle, "b");
    EXPECT_EQ(counter->separator, "c");
    delete counter;
}

TEST(PropContent, AFunctionWithoutWordsIsNoCounter) {
    AST node;
    node.type = CSS::FUNCTION;
    node.text = "counter";
    EXPECT_EQ(PropContent().parseCounter(&node), nullptr);
}

TEST(PropContent, HasNoEffectOnAStyle) {
    CSS::MutableStyleDeclaration declaration;
    CSS::Parser().ParseStyleDeclaration("content: 'a' counter(b)", &declaration);
    const auto style = [] {
        SharedPtr<CSS::Style> plain = new PlainStyle;
        plain->SetFont(SharedPtr<CSS::Font>(new PlainFont));
        return plain;
    };
    CSS::ComputedStyleDeclaration untouched(style().Get()), applied(style().Get());
    declaration.properties.at(0)->applyToStyle(applied.style.Get());
    EXPECT_EQ(applied.cssText(), untouched.cssText());
    EXPECT_EQ(declaration.properties.at(0)->valueFromStyle(applied.style.Get()), nullptr);
}

TEST(PropContent, ItsTextHasNeitherQuotesNorCounters) {
    CSS::MutableStyleDeclaration declaration;
    CSS::Parser().ParseStyleDeclaration("content: 'a' counter(b) \"c\"", &declaration);
    EXPECT_EQ(declaration.cssText(), "content: a, , c; ");
}

TEST(PropContent, IsNoShorthand) {
    PropContent property;
    EXPECT_FALSE(property.isShorthandProperty());
    EXPECT_EQ(property.id, 3);
    EXPECT_EQ(property.cssText(), "content: ???; ");
}

}  // namespace
