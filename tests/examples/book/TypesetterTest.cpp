#include "examples/book/Typesetter.h"

#include "tests/examples/book/Support.h"

using namespace test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

constexpr double kMeasure = 160;
constexpr double kUnit = 1.0 / 1024;  // Pango's
const std::string kWords = "The ferrywoman explained immediately afterwards that understanding machinery is extraordinarily difficult. ";

// The first paragraph of a document, set.
struct Set {
    explicit Set(
        const std::string& content,
        const std::string& rules = "",
        const std::string& language = "",
        StyledTree::Dress dress = [](auto&&, auto&&) {})
        : manuscript("<book>" + content + "</book>", rules, std::move(dress)), typesetter(kMeasure, language) {
        paragraph = typesetter.set(manuscript.paragraphs().at(0));
    }

    std::string text() const { return pango_layout_get_text(paragraph.layout.get()); }
    std::string textOfLine(size_t line) const {
        const auto* set = paragraph.lines.at(line).line;
        return text().substr(static_cast<size_t>(set->start_index), static_cast<size_t>(set->length));
    }
    double widthOfLine(size_t line) const {
        PangoRectangle logical;
        pango_layout_line_get_extents(paragraph.lines.at(line).line, nullptr, &logical);
        return logical.width * kUnit;
    }
    double leftOfLine(size_t line) const { return paragraph.lines.at(line).x; }
    double rightOfLine(size_t line) const { return leftOfLine(line) + widthOfLine(line); }
    size_t lastLine() const { return paragraph.lines.size() - 1; }

    // The run at a byte of the text: its font, and what is said of it besides.
    const PangoItem* itemAt(int byte) const {
        for (const auto& line : paragraph.lines)
            for (const GSList* run = line.line->runs; run; run = run->next) {
                const PangoItem* item = static_cast<PangoGlyphItem*>(run->data)->item;
                if (item->offset <= byte && byte < item->offset + item->length) return item;
            }
        return nullptr;
    }
    std::string fontAt(int byte) const {
        PangoFontDescription* description = pango_font_describe(itemAt(byte)->analysis.font);
        char* words = pango_font_description_to_string(description);
        const std::string font = words;
        g_free(words);
        pango_font_description_free(description);
        return font;
    }
    const PangoAttribute* attributeAt(int byte, PangoAttrType type) const {
        for (const GSList* each = itemAt(byte)->analysis.extra_attrs; each; each = each->next)
            if (const auto* attribute = static_cast<PangoAttribute*>(each->data); attribute->klass->type == type) return attribute;
        return nullptr;
    }
    bool isUnderlined(int byte) const {
        const auto* attribute = attributeAt(byte, PANGO_ATTR_UNDERLINE);
        return attribute && reinterpret_cast<const PangoAttrInt*>(attribute)->value != PANGO_UNDERLINE_NONE;
    }
    std::string colorAt(int byte) const {
        const auto* attribute = attributeAt(byte, PANGO_ATTR_FOREGROUND);
        if (!attribute) return "none";
        const auto color = reinterpret_cast<const PangoAttrColor*>(attribute)->color;
        char text[8];
        std::snprintf(text, sizeof text, "#%02x%02x%02x", color.red >> 8, color.green >> 8, color.blue >> 8);
        return text;
    }
    std::string features() const {
        std::string all;
        for (size_t byte = 0; byte < text().size(); ++byte)
            if (const auto* attribute = attributeAt(static_cast<int>(byte), PANGO_ATTR_FONT_FEATURES))
                all += std::string(reinterpret_cast<const PangoAttrFontFeatures*>(attribute)->features) + ";";
        return all;
    }

    Manuscript manuscript;
    Typesetter typesetter;
    SetParagraph paragraph;
};

std::string p(const std::string& words) { return "<p>" + words + "</p>"; }

// ---- Lines

TEST(TypesetterTest, LinesHaveTheHeightOfTheStyleAndTheBaselineOfTheirFont) {
    for (const char* rules : {"", "p { line-height: 0.5 }", "p { line-height: 3 }"}) {
        SCOPED_TRACE(rules);
        const Set set(p("One"), rules);
        const double height = std::string(rules).empty() ? 15 : rules[17] == '0' ? 6 : 36;
        PangoFontMetrics* metrics = pango_font_get_metrics(set.itemAt(0)->analysis.font, nullptr);
        const double ascent = pango_font_metrics_get_ascent(metrics) * kUnit, descent = pango_font_metrics_get_descent(metrics) * kUnit;
        pango_font_metrics_unref(metrics);
        EXPECT_NEAR(set.paragraph.lineHeight, height, 0.001);
        EXPECT_NEAR(set.paragraph.baseline, (height + ascent - descent) / 2, 0.01);
    }
}

TEST(TypesetterTest, LinesAreBrokenWithinTheMeasure) {
    const Set set(p(kWords + kWords));
    EXPECT_GT(set.paragraph.lines.size(), 4u);
    for (size_t line = 0; line <= set.lastLine(); ++line) {
        EXPECT_EQ(set.leftOfLine(line), 0);
        EXPECT_LE(set.rightOfLine(line), kMeasure + 0.01);
    }
}

TEST(TypesetterTest, ALineSeparatorEndsALine) {
    const Set set(p("One<br/>two"));
    ASSERT_EQ(set.paragraph.lines.size(), 2u);
    EXPECT_EQ(set.textOfLine(0), "One\u2028");
    EXPECT_EQ(set.textOfLine(1), "two");
}

TEST(TypesetterTest, MarginsAndTheIndentOfTheFirstLine) {
    const Set set(p(kWords + kWords), "p { margin-left: 20px; margin-right: 30px; text-indent: 7px }");
    EXPECT_NEAR(set.leftOfLine(0), 27, 0.01);
    for (size_t line = 1; line <= set.lastLine(); ++line) EXPECT_NEAR(set.leftOfLine(line), 20, 0.01);
    for (size_t line = 0; line <= set.lastLine(); ++line) EXPECT_LE(set.rightOfLine(line), kMeasure - 30 + 0.01);
    EXPECT_EQ(set.paragraph.left, 20);
}

TEST(TypesetterTest, ANegativeIndentHangs) {
    const Set set(p(kWords), "p { margin-left: 20px; text-indent: -12px }");
    EXPECT_NEAR(set.leftOfLine(0), 8, 0.01);
    EXPECT_NEAR(set.leftOfLine(1), 20, 0.01);
}

TEST(TypesetterTest, TheIndentIsForTheFirstLineAndNotBehindASeparator) {
    const Set set(p("One<br/>two"), "p { text-indent: 7px }");
    EXPECT_NEAR(set.leftOfLine(0), 7, 0.01);
    EXPECT_NEAR(set.leftOfLine(1), 0, 0.01);
}

TEST(TypesetterTest, LinesAreAligned) {
    const Set centred(p(kWords), "p { text-align: center; margin-left: 10px }"),
        right(p(kWords), "p { text-align: right; margin-right: 10px }");
    for (size_t line = 0; line <= centred.lastLine(); ++line)
        EXPECT_NEAR((centred.leftOfLine(line) + centred.rightOfLine(line)) / 2, (10 + kMeasure) / 2, 0.1);
    for (size_t line = 0; line <= right.lastLine(); ++line) EXPECT_NEAR(right.rightOfLine(line), kMeasure - 10, 0.1);
}

TEST(TypesetterTest, JustifiedLinesEndAtTheMeasureButTheLast) {
    const Set set(p(kWords + kWords), "p { text-align: justify; margin-right: 10px; text-indent: 9px }");
    ASSERT_GT(set.lastLine(), 3u);
    for (size_t line = 0; line < set.lastLine(); ++line) EXPECT_NEAR(set.rightOfLine(line), kMeasure - 10, 0.1) << line;
    EXPECT_LT(set.rightOfLine(set.lastLine()), kMeasure - 10);
}

TEST(TypesetterTest, AJustifiedLineAheadOfASeparatorIsNotStretched) {
    const Set set(p("One two<br/>" + kWords), "p { text-align: justify }");
    EXPECT_LT(set.rightOfLine(0), kMeasure / 2);
}

TEST(TypesetterTest, HyphenatedLinesEndAtTheMeasureWithTheirHyphens) {
    const Set set(p(kWords + kWords + kWords), "p { text-align: justify }", "en");
    size_t hyphens = 0;
    for (size_t line = 0; line < set.lastLine(); ++line) {
        EXPECT_NEAR(set.rightOfLine(line), kMeasure, 0.1) << line;
        const std::string text = set.textOfLine(line);
        hyphens += text.back() != ' ' && set.textOfLine(line + 1).front() != ' ';
    }
    EXPECT_GT(hyphens, 1u);
}

TEST(TypesetterTest, WithoutALanguageNoWordIsDivided) {
    const Set set(p(kWords + kWords + kWords), "p { text-align: justify }");
    for (size_t line = 0; line < set.lastLine(); ++line) EXPECT_EQ(set.textOfLine(line).back(), ' ');
}

TEST(TypesetterTest, SpacesAreThoseOfTheStyle) {
    const Set set(p("One"), "p { margin-top: 3px; margin-bottom: 4px }");
    EXPECT_EQ(set.paragraph.spaceAbove, 3);
    EXPECT_EQ(set.paragraph.spaceBelow, 4);
    EXPECT_EQ(set.paragraph.source.block->localName(), u"p");
}

// ---- Runs

TEST(TypesetterTest, FontsColoursAndUnderlinesOfRunsReachTheLines) {
    const Set set(
        p("aé <em>b</em> <strong>c</strong> <u>d</u>"),
        "em { font-style: italic; color: #102030 } strong { font-weight: bold; font-size: 18px } u { text-decoration: underline }");
    const auto at = [&](char letter) { return static_cast<int>(set.text().find(letter)); };
    EXPECT_THAT(set.fontAt(at('a')), testing::StartsWith("TeX Gyre Pagella"));
    EXPECT_THAT(set.fontAt(at('a')), Not(HasSubstr("Italic")));
    EXPECT_THAT(set.fontAt(at('b')), HasSubstr("Italic"));
    EXPECT_EQ(set.colorAt(at('b')), "#102030");
    EXPECT_EQ(set.colorAt(at('a')), "#000000");
    EXPECT_THAT(set.fontAt(at('c')), testing::AllOf(HasSubstr("Bold"), testing::ContainsRegex("18(px)?$")));
    EXPECT_TRUE(set.isUnderlined(at('d')));
    EXPECT_FALSE(set.isUnderlined(at('c')));
}

TEST(TypesetterTest, CharactersThatTheFontLacksComeFromAnother) {
    const Set set(p("a \U0001D54A b"));
    EXPECT_EQ(set.text(), "a \U0001D54A b");
    EXPECT_THAT(set.fontAt(2), testing::StartsWith("DejaVu Sans"));
    EXPECT_THAT(set.fontAt(7), testing::StartsWith("TeX Gyre Pagella"));
}

TEST(TypesetterTest, LinksAreBytesOfTheText) {
    const Set set(p("Né <a href='http://h/'>thé <b>re</b></a>, <a href='http://h/2'>x</a>"), "b { font-weight: bold }");
    ASSERT_EQ(set.paragraph.links.size(), 2u);
    std::vector<std::string> links;
    for (const auto& link : set.paragraph.links)
        links.push_back(
            set.text().substr(static_cast<size_t>(link.start), static_cast<size_t>(link.end - link.start)) + " " + link.address);
    EXPECT_THAT(links, ElementsAre("thé re http://h/", "x http://h/2"));
}

TEST(TypesetterTest, AnOpeningBeginsWithSmallCapitalsThatAreNotDivided) {
    const std::string words = "Extraordinarily misunderstanding machinery immediately " + kWords;
    const Set opening("<p class='opening'>" + words + "</p>", "", "en");
    EXPECT_THAT(opening.features(), HasSubstr("smcp"));
    EXPECT_THAT(Set(p(words), "", "en").features(), Not(HasSubstr("smcp")));
    const size_t end = words.find(" immediately");
    for (size_t line = 1; line <= opening.lastLine(); ++line) {
        const auto start = static_cast<size_t>(opening.paragraph.lines[line].line->start_index);
        EXPECT_TRUE(start > end || opening.text()[start - 1] == ' ') << opening.textOfLine(line);
    }
}

// ---- Markers and frames

TEST(TypesetterTest, MarkersStandLeftOfTheText) {
    const Set set("<list><item>" + kWords + "</item></list>", "list { list-style-type: decimal } item { margin-left: 20px }");
    EXPECT_STREQ(pango_layout_get_text(set.paragraph.marker.get()), "1.");
    EXPECT_THAT(set.text(), testing::StartsWith("The ferrywoman"));
    int width;
    pango_layout_get_size(set.paragraph.marker.get(), &width, nullptr);
    EXPECT_GE(set.paragraph.markerX, 0);
    EXPECT_LT(set.paragraph.markerX + width * kUnit, 20);
    for (size_t line = 0; line <= set.lastLine(); ++line) EXPECT_NEAR(set.leftOfLine(line), 20, 0.01);
    EXPECT_FALSE(Set(p("One")).paragraph.marker);
}

TEST(TypesetterTest, FramesTakeWidth) {
    const auto dress = [](const Ref<WQXMLElement>& element, const Ref<WQCSSStyle>& style) {
        if (element->localName() != u"quote") return;
        style->setBorderLeft({2, 0});
        style->setBorderTop({1, 0});
        style->setPaddingLeft({10, WQCSSLengthTypeAbsolute});
        style->setPaddingRight({3, WQCSSLengthTypeAbsolute});
        style->setPaddingTop({4, WQCSSLengthTypeAbsolute});
        style->setPaddingBottom({5, WQCSSLengthTypeAbsolute});
    };
    const Set set(
        "<quote>" + kWords + kWords + "</quote>", "quote { margin-left: 5px; margin-right: 6px; text-align: justify }", "", dress);
    ASSERT_EQ(set.paragraph.frames.size(), 1u);
    const auto& frame = set.paragraph.frames[0];
    EXPECT_EQ(frame.left, 5);
    EXPECT_EQ(frame.right, kMeasure - 6);
    EXPECT_EQ(frame.above, 5);
    EXPECT_EQ(frame.below, 5);
    EXPECT_THAT(frame.borders, ElementsAre(2, 1, 0, 0));
    EXPECT_NEAR(set.leftOfLine(1), 5 + 2 + 10, 0.01);
    EXPECT_NEAR(set.rightOfLine(1), kMeasure - 6 - 3, 0.1);
}

TEST(TypesetterTest, FramesStandInEachOther) {
    const auto dress = [](const Ref<WQXMLElement>& element, const Ref<WQCSSStyle>& style) {
        if (element->localName() == u"quote") style->setPaddingLeft({10, WQCSSLengthTypeAbsolute});
    };
    const Set set("<quote><quote>One</quote></quote>", "quote { margin-left: 5px }", "", dress);
    ASSERT_EQ(set.paragraph.frames.size(), 2u);
    EXPECT_EQ(set.paragraph.frames[0].left, 5);
    EXPECT_EQ(set.paragraph.frames[1].left, 20);
    EXPECT_NEAR(set.leftOfLine(0), 30, 0.01);
}

// ---- Others

TEST(TypesetterTest, MarginsThatLeaveNoRoomEndNobody) {
    const Set set(p(kWords), "p { margin-left: 150px; margin-right: 150px; text-indent: 500px }");
    EXPECT_THAT(set.paragraph.lines, Not(IsEmpty()));
}

TEST(TypesetterTest, TheWordsOfAParagraphAreWithoutMarkerAndTerminator) {
    const auto words = [](const std::string& content) { return wordsOf(Manuscript("<book>" + content + "</book>").paragraphs().at(0)); };
    EXPECT_EQ(words("<title>The <em>Near</em><br/>Bell</title>"), "The Near Bell");
    EXPECT_EQ(words("<list><item>Né</item></list>"), "Né");
}

TEST(TypesetterTest, ALineOfItsOwn) {
    const Typesetter typesetter(kMeasure, "");
    const auto layout = typesetter.lineOf("12 & a very long heading that is wider than the measure", "TeX Gyre Pagella", 9, true);
    EXPECT_STREQ(pango_layout_get_text(layout.get()), "12 & a very long heading that is wider than the measure");
    EXPECT_EQ(pango_layout_get_line_count(layout.get()), 1);
    EXPECT_TRUE(pango_layout_is_ellipsized(layout.get()));
    int width = 0;
    pango_layout_get_size(layout.get(), &width, nullptr);
    EXPECT_LE(points(width), kMeasure);
}

}  // namespace
