// Style sheets that people use. sheets/README.md tells where they come from, and what the cut ones lack.
#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "common/core/css/Parser.h"
#include "tests/common/core/css/Sheets.h"

using test::printedBy;

namespace {

using Texts = std::vector<std::string>;
using Rules = std::vector<SharedPtr<CSS::StyleRule>>;

std::string contentsOf(const std::string& name) {
    std::ifstream file(WQ_SOURCE_FOLDER "/tests/common/core/css/sheets/" + name, std::ios::binary);
    EXPECT_TRUE(file) << name;
    return {std::istreambuf_iterator<char>(file), {}};
}

struct Reading {
    SharedPtr<CSS::Stylesheet> sheet;
    std::string printed;
};

Reading readingOf(const std::string& name) {
    Reading reading;
    reading.printed = printedBy([&] { reading.sheet = SharedPtr<CSS::Stylesheet>(CSS::Stylesheet::CreateWithData(contentsOf(name))); });
    return reading;
}

// Asking for the text of others is a hard assertion.
bool hasText(const CSS::SimpleSelector& condition) {
    return dynamic_cast<const CSS::AttributeValueSelector*>(&condition) || dynamic_cast<const CSS::AttributeListSelector*>(&condition) ||
           dynamic_cast<const CSS::PseudoElement*>(&condition);
}
bool hasText(const CSS::StyleRule& rule) {
    for (const auto& selector : rule.selectors)
        for (const CSS::TypeSelector* part = selector->chainHead; part; part = part->chainLeft)
            for (const CSS::SimpleSelector* condition = part->next; condition; condition = condition->next)
                if (!hasText(*condition)) return false;
    return true;
}

// The declarations of each rule with these selectors.
Texts declared(const Rules& rules, const std::string& selectors) {
    Texts texts;
    for (const auto& rule : rules)
        if (hasText(*rule) && rule->GetSelectorText() == selectors) texts.push_back(rule->declaration->cssText());
    return texts;
}

struct Row {
    std::string selectors;
    Texts declarations;
};
void expectDeclared(const Rules& rules, const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.selectors);
        EXPECT_EQ(declared(rules, row.selectors), row.declarations);
    }
}

}  // namespace

TEST(RealSheets, WarnOfEachDeclarationThatIsNotInTheLanguageAndOfNoOther) {
    for (const std::string name : {"html4css1", "normalize-cut", "asciidoctor-default-cut"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(readingOf(name + ".css").printed, contentsOf(name + ".warnings"));
    }
}

TEST(RealSheets, KeepAllTheirRules) {
    struct {
        const char* name;
        size_t styles;
        Texts media;  // with the number of rules within
        size_t pages;
    } const rows[] = {
        {"html4css1.css", 86, {}, 0},
        {"normalize-cut.css", 29, {}, 0},
        {"asciidoctor-default-cut.css",
         349,
         {"screen 5", "screen 9", "screen 6", "screen 2", "screen 1", "screen 1", "print 28", "amzn-kf8 5", "amzn-kf8 1"},
         1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const auto sheet = readingOf(row.name).sheet;
        ASSERT_TRUE(sheet);
        EXPECT_EQ(sheet->styleRules.size(), row.styles);
        Texts media;
        for (const auto& rule : sheet->mediaRules)
            media.push_back(test::joined(rule->media, ", ") + " " + std::to_string(rule->rules.size()));
        EXPECT_EQ(media, row.media);
        EXPECT_EQ(sheet->pageRules.size(), row.pages);
        EXPECT_EQ(sheet->importRules.size(), 0U);
    }
}

TEST(RealSheets, DeclareInHtml4css1WhatIsInTheLanguage) {
    const auto sheet = readingOf("html4css1.css").sheet;
    ASSERT_TRUE(sheet);
    expectDeclared(
        sheet->styleRules, {
                               {"*.first", {"margin-top: 0pt!important; "}},
                               {"div.sidebar", {"background-color: #ffffee; width: 40%; "}},
                               {"object[type=\"\"image/svg+xml\"\"],object[type=\"\"application/x-shockwave-flash\"\"]", {""}},
                               {"pre.code *.keyword,code *.keyword", {"color: #3b0d06; font-weight: bold; "}},
                               {"table.docutils.booktabs *", {""}},
                               {"table.docutils.booktabs th", {"text-align: left; "}},
                               {"ul.auto-toc", {""}},
                           });
}

TEST(RealSheets, DeclareInNormalizeWhatIsInTheLanguage) {
    const auto sheet = readingOf("normalize-cut.css").sheet;
    ASSERT_TRUE(sheet);
    expectDeclared(
        sheet->styleRules,
        {
            {"html", {"line-height: 1.15; "}},
            {"code,kbd,samp", {"font-family: monospace, monospace; "}},
            {"button,input,optgroup,select,textarea",
             {"font-family: inherit; line-height: 1.15; margin-top: 0pt; margin-left: 0pt; margin-bottom: 0pt; margin-right: 0pt; "}},
            {"button,*[type=\"\"button\"\"],*[type=\"\"reset\"\"],*[type=\"\"submit\"\"]", {""}},
            {"button:-moz-focusring", {}},
        });
}

TEST(RealSheets, DeclareInAsciidoctorWhatIsInTheLanguage) {
    const auto sheet = readingOf("asciidoctor-default-cut.css").sheet;
    ASSERT_TRUE(sheet);
    expectDeclared(
        sheet->styleRules,
        {
            {"a", {"", "color: #2156a5; text-decoration: underline; "}},
            {"kbd", {"font-family: \"Droid Sans Mono\", \"DejaVu Sans Mono\", monospace; line-height: 1.45; vertical-align: middle; "}},
            {"b.button:before", {"content: [; "}},
            {"*:.nobreak", {""}},
            {"table.grid-all>*>tr>*", {""}},
            {"table.frame-none>colgroup+*>*:first-child>*,table.frame-sides>colgroup+*>*:first-child>*", {""}},
            {"*.sidebarblock>*.content>*.title", {"color: #7a2518; margin-top: 0pt; text-align: center; "}},
        });
    ASSERT_EQ(sheet->mediaRules.size(), 9U);
    expectDeclared(sheet->mediaRules[6]->rules, {{"a", {"text-decoration: underline!important; "}}, {"h1", {}}});
    ASSERT_EQ(sheet->pageRules.size(), 1U);
    EXPECT_EQ(
        sheet->pageRules[0]->declaration->cssText(),
        "margin-top: 1.25cm; margin-left: 0.75cm; margin-bottom: 1.25cm; margin-right: 0.75cm; ");
}

// The first property that begins with a hyphen; in front of it there is nothing to warn of.
TEST(RealSheetsDeathTest, WithPropertiesOfBrowsersAreNotInTheLanguage) {
    for (const std::string name : {"normalize.css", "asciidoctor-default.css"}) {
        SCOPED_TRACE(name);
        test::expectSyntaxErrorInSheet(contentsOf(name), "-");
    }
}
