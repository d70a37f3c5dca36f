// What the tests of the writing application share.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "examples/book/StyledText.h"
#include "examples/book/StyledTree.h"
#include "platform/NSAttributeNames.h"
#include "platform/NSParagraphStyle.h"
#include "tests/dom/Support.h"

namespace test {

// 12 points on 15, without indents.
inline const std::string kBlocks =
    "book, chapter, section, quote, list, item, title, p, ul, ol, li, h1, h2, h3, h4, h5, h6 { display: block }"
    "book { font-family: TeX Gyre Pagella; font-size: 12px; line-height: 1.25 }";

inline Ref<WQCSSStyleResolver> resolverOf(const std::string& sheet) {
    const auto resolver = WQCSSStyleResolver::newStyleResolver();
    resolver->processRulesFromStyleSheet(WQCSSStyleSheet::styleSheetWithString(wq::fromUTF8(sheet)));
    return resolver;
}

// A document with its styles. `rules` follow those of kBlocks.
struct Manuscript {
    explicit Manuscript(
        std::string_view xml,
        const std::string& rules = "",
        StyledTree::Dress dress = [](auto&&, auto&&) {})
        : document(parse(xml)), styles(document, resolverOf(kBlocks + rules), std::move(dress)) {
        styles.resolve();
    }

    std::vector<StyledParagraph> paragraphs(const NSString& base = nullptr) const {
        return styledParagraphs(document->documentElement(), styles, NSURL::URLWithString(base));
    }

    Ref<WQXMLDocument> document;
    StyledTree styles;
};

// A paragraph's style, which holds for all of it.
inline Ref<NSParagraphStyle> styleOf(const StyledParagraph& paragraph) {
    NSRange range;
    const NSRange all{0, paragraph.text->length()};
    const auto style = paragraph.text->attribute_atIndex_longestEffectiveRange_inRange(NSParagraphStyleAttributeName, 0, &range, all);
    EXPECT_EQ(range, all);
    return style.object<NSParagraphStyle>();
}

// "p: its text", with tabs as →, line separators as ↵ and line feeds as ¶. Every paragraph ends with its line feed.
inline std::string told(const StyledParagraph& paragraph) {
    std::u16string text(paragraph.text->string().view());
    EXPECT_TRUE(text.ends_with(u'\n'));
    text.pop_back();
    std::replace(text.begin(), text.end(), u'\t', u'→');
    std::replace(text.begin(), text.end(), u'\u2028', u'↵');
    std::replace(text.begin(), text.end(), u'\n', u'¶');
    return wq::toUTF8(wq::printed(paragraph.block->localName())) + ": " + wq::toUTF8(text);
}

inline std::vector<std::string> told(const std::vector<StyledParagraph>& paragraphs) {
    std::vector<std::string> lines;
    for (const auto& paragraph : paragraphs) lines.push_back(told(paragraph));
    return lines;
}

}  // namespace test
