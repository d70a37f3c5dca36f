#include "examples/book/StyledText.h"

#include "platform/NSColor.h"
#include "platform/NSFont.h"
#include "platform/NSTextBlock.h"
#include "platform/NSTextList.h"
#include "tests/examples/book/Support.h"

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::vector<std::string> textsOf(std::string_view xml, const std::string& rules = "") { return told(Manuscript(xml, rules).paragraphs()); }

// "left+first indents, right; space above/below" of each paragraph.
std::vector<std::string> layoutsOf(const Manuscript& manuscript) {
    std::vector<std::string> lines;
    for (const auto& paragraph : manuscript.paragraphs()) {
        const auto style = styleOf(paragraph);
        std::ostringstream line;
        line << style->headIndent() << '+' << style->firstLineHeadIndent() - style->headIndent() << ' ' << -style->tailIndent() << ' '
             << style->paragraphSpacingBefore() << '/' << style->paragraphSpacing();
        lines.push_back(line.str());
    }
    return lines;
}
std::vector<std::string> layoutsOf(std::string_view xml, const std::string& rules) { return layoutsOf(Manuscript(xml, rules)); }

// The runs of the first paragraph, without its line feed: "plain|bold[b]|both[b i]|linked[u ->address]".
std::string runsOf(std::string_view xml, const std::string& rules = "", const NSString& base = nullptr) {
    const Manuscript manuscript(xml, rules);
    const auto text = manuscript.paragraphs(base).at(0).text;
    std::string runs;
    NSRange run;
    for (uint64_t index = 0; index + 1 < text->length(); index = run.location + run.length) {
        const auto attributes = text->attributesAtIndex_effectiveRange(index, &run);
        const auto font = attributes->objectForKey(NSFontAttributeName).object<NSFont>();
        const auto color = attributes->objectForKey(NSForegroundColorAttributeName).object<NSColor>();
        const auto link = attributes->objectForKey(NSLinkAttributeName);
        std::vector<std::string> marks;
        if (font->fontDescriptor()->symbolicTraits() & NSFontBoldTrait) marks.push_back("b");
        if (font->fontDescriptor()->symbolicTraits() & NSFontItalicTrait) marks.push_back("i");
        if (font->pointSize() != 12) marks.push_back(std::to_string(static_cast<int>(font->pointSize())) + "pt");
        if (color->redComponent() == 1) marks.push_back("red");
        if (attributes->objectForKey(NSUnderlineStyleAttributeName)) marks.push_back("u");
        if (link) marks.push_back("->" + wq::toUTF8(link.string() ? link.string() : link.object<NSURL>()->absoluteString()));
        std::string piece = wq::toUTF8(text->string().substringWithRange(run));
        if (piece.ends_with('\n')) piece.pop_back();
        if (piece.empty()) continue;
        if (!runs.empty()) runs += '|';
        runs += piece;
        for (const auto& mark : marks) runs += (&mark == &marks.front() ? "[" : " ") + mark;
        if (!marks.empty()) runs += ']';
    }
    return runs;
}

// "b-e1" and so on: begins a page, ends a page, level of the heading.
std::vector<std::string> marksOf(std::string_view xml, const std::string& rules = "") {
    std::vector<std::string> lines;
    for (const auto& paragraph : Manuscript(xml, rules).paragraphs())
        lines.push_back(
            std::string(paragraph.beginsPage ? "b" : "-") + (paragraph.endsPage ? "e" : "-") + std::to_string(paragraph.headingLevel));
    return lines;
}

// ---- Blocks

TEST(StyledTextTest, ABlockWithTextIsAParagraph) {
    EXPECT_THAT(textsOf("<book><p>One</p><p>Two</p></book>"), ElementsAre("p: One", "p: Two"));
    EXPECT_THAT(textsOf("<book>Bare <em>text</em></book>"), ElementsAre("book: Bare text"));
}

TEST(StyledTextTest, BlocksInsideDivideAParagraphAndTheTextBehindThemIsOneOfItsOwn) {
    EXPECT_THAT(
        textsOf("<book><p>One <quote>two</quote> three <quote>four</quote> five</p></book>"),
        ElementsAre("p: One", "quote: two", "p: three", "quote: four", "p: five"));
    EXPECT_THAT(textsOf("<book><quote><p>One</p></quote>\n two</book>"), ElementsAre("p: One", "book: two"));
}

TEST(StyledTextTest, ABlockInsideAnInlineDividesToo) {
    EXPECT_THAT(
        textsOf("<book><p>One <em>two <quote>three</quote> four</em></p></book>"), ElementsAre("p: One two", "quote: three", "p: four"));
}

TEST(StyledTextTest, ABlockWithoutTextIsNoParagraph) {
    EXPECT_THAT(textsOf("<book><p/><p> \n\t</p><p><em> </em></p><p><!--c--><?i?></p><p>x</p></book>"), ElementsAre("p: x"));
    EXPECT_THAT(textsOf("<book/>"), IsEmpty());
}

TEST(StyledTextTest, WhatIsNotDisplayedIsLeftOutWithAllThatItHolds) {
    const std::string rules = "remark { display: none } remark p { display: block }";
    EXPECT_THAT(textsOf("<book><p>One <remark>no</remark> two</p><remark><p>no</p></remark></book>", rules), ElementsAre("p: One two"));
    EXPECT_THAT(textsOf("<book><p>x</p></book>", "book { display: none }"), IsEmpty());
}

TEST(StyledTextTest, WithoutBlocksTheElementItselfIsOneParagraph) {
    EXPECT_THAT(textsOf("<text>One <a>two</a></text>"), ElementsAre("text: One two"));
}

TEST(StyledTextTest, JoinedParagraphsAreOneText) {
    const auto paragraphs = Manuscript("<book><p>One</p><p><em>Two</em></p></book>", "em { font-weight: bold }").paragraphs();
    const auto text = joined(paragraphs);
    EXPECT_EQ(text->string(), u"One\nTwo\n");
    EXPECT_EQ(
        text->attributesAtIndex_effectiveRange(5, nullptr)->isEqual(paragraphs[1].text->attributesAtIndex_effectiveRange(1, nullptr)),
        true);
    EXPECT_EQ(joined({})->length(), 0u);
}

// ---- Text

TEST(StyledTextTest, WhiteSpaceIsOneBlankBetweenWordsAndNoneAtTheEnds) {
    EXPECT_THAT(textsOf("<book><p>\n  One \t\n two  </p></book>"), ElementsAre("p: One two"));
    EXPECT_THAT(textsOf("<book><p>One <em> two </em> <em> </em> three </p></book>"), ElementsAre("p: One two three"));
    EXPECT_THAT(textsOf("<book><p><em> One</em><em>two </em></p></book>"), ElementsAre("p: Onetwo"));
    EXPECT_THAT(textsOf("<book><p>One&#13;two</p></book>"), ElementsAre("p: One two"));
}

TEST(StyledTextTest, ANoBreakSpaceIsNoWhiteSpace) {
    EXPECT_THAT(textsOf("<book><p>&#160;One &#160; two&#160;</p></book>"), ElementsAre("p: \u00A0One \u00A0 two\u00A0"));
}

TEST(StyledTextTest, ABreakIsALineSeparatorWithoutBlanksAroundIt) {
    EXPECT_THAT(textsOf("<book><p>One<br/>two</p></book>"), ElementsAre("p: One↵two"));
    EXPECT_THAT(textsOf("<book><p>One <br/>\n two<br/><br/>three</p></book>"), ElementsAre("p: One↵two↵↵three"));
}

TEST(StyledTextTest, InPreformattedTextWhiteSpaceIsKept) {
    const std::string rules = "pre { display: block }";
    EXPECT_THAT(
        textsOf("<book><pre>  one\n\n two\t<b>three  </b></pre><p> x  y </p></book>", rules),
        ElementsAre("pre:   one↵↵ two three  ", "p: x y"));
    EXPECT_THAT(textsOf("<book><p xml:space='preserve'>a  <b>b\n</b>c</p></book>"), ElementsAre("p: a  b↵c"));
    EXPECT_THAT(textsOf("<book><p xml:space='preserve'>a  <b xml:space='default'> b  b</b></p></book>"), ElementsAre("p: a  b b"));
}

TEST(StyledTextTest, SectionsOfCharacterDataAreText) {
    EXPECT_THAT(textsOf("<book><p>One<![CDATA[ <two>  & ]]>three</p></book>"), ElementsAre("p: One <two> & three"));
}

TEST(StyledTextTest, ReferencesToEntitiesAreWhatTheyStandFor) {
    EXPECT_THAT(
        textsOf("<!DOCTYPE book [<!ENTITY a 'one &b;'><!ENTITY b '  two'>]><book><p>&a; &amp; &#x1F600;</p></book>"),
        ElementsAre("p: one two & 😀"));
}

TEST(StyledTextTest, OfAnEntityWithMarkupTheWordsCount) {
    EXPECT_THAT(textsOf("<!DOCTYPE book [<!ENTITY e 'one <em>two</em>'>]><book><p>&e; three</p></book>"), ElementsAre("p: one two three"));
}

TEST(StyledTextTest, CommentsAndInstructionsAreNoText) {
    EXPECT_THAT(textsOf("<book><p>On<!-- x -->e<?y z?></p></book>"), ElementsAre("p: One"));
}

// ---- Runs

TEST(StyledTextTest, AnInlineIsARunWithItsFontAndColour) {
    EXPECT_EQ(
        runsOf("<book><p>One <em>two <b>three</b></em> four</p></book>", "em { font-style: italic } b { font-weight: bold; color: red }"),
        "One |two [i]|three[b i red]| four");
    EXPECT_EQ(runsOf("<book><p>One <small>two</small></p></book>", "small { font-size: 9px }"), "One |two[9pt]");
}

TEST(StyledTextTest, AnUnderlineHoldsForAllThatIsBelow) {
    const std::string rules = "u { text-decoration: underline } b { font-weight: bold; text-decoration: none }";
    EXPECT_EQ(runsOf("<book><p>One <u>two <b>three</b></u> four</p></book>", rules), "One |two [u]|three[b u]| four");
    EXPECT_EQ(runsOf("<book><p>One <b>two</b></p></book>", rules + "p { text-decoration: underline }"), "One [u]|two[b u]");
    EXPECT_EQ(runsOf("<book><p>One</p></book>", "book { text-decoration: underline }"), "One[u]");
}

TEST(StyledTextTest, AnAddressHoldsForAllThatIsBelow) {
    EXPECT_EQ(
        runsOf("<book><p>See <a href='http://h/x#y'>one <em>two</em></a>.</p></book>", "em { font-style: italic }"),
        "See |one [->http://h/x#y]|two[i ->http://h/x#y]|.");
}

TEST(StyledTextTest, ARelativeAddressIsCompletedByTheBase) {
    const std::string_view xml = "<book><p><a href='../b.html?q#f'>x</a></p></book>";
    EXPECT_EQ(runsOf(xml, "", u"http://h/d/e/a.xml"), "x[->http://h/d/b.html?q#f]");
    EXPECT_EQ(runsOf(xml), "x[->../b.html?q#f]");
    EXPECT_EQ(runsOf("<book><p><a href='#f'>x</a></p></book>", "", u"http://h/a.xml"), "x[->http://h/a.xml#f]");
}

TEST(StyledTextTest, CharactersThatNoAddressMayHaveAreEscaped) {
    EXPECT_EQ(runsOf("<book><p><a href='http://h/a b&quot;é'>x</a></p></book>"), "x[->http://h/a%20b%22%C3%A9]");
}

TEST(StyledTextTest, WhatIsNoAddressEvenSoIsNoLink) { EXPECT_EQ(runsOf("<book><p><a href='http://[h/'>One</a></p></book>"), "One"); }

TEST(StyledTextTest, AnAnchorWithoutAnAddressIsNoLink) { EXPECT_EQ(runsOf("<book><p><a name='x'>One</a></p></book>"), "One"); }

// ---- Lists

const std::string kLists =
    "list, ul, ol { list-style-type: decimal } list list { list-style-type: disc }"
    "list list list { list-style-type: lower-roman } item, li { margin-left: 20px }";

TEST(StyledTextTest, ItemsHaveMarkersInFrontByTheTypeOfTheList) {
    EXPECT_THAT(
        textsOf("<book><list><item>One</item><item>Two</item></list></book>", kLists), ElementsAre("item: →1.→One", "item: →2.→Two"));
    EXPECT_THAT(textsOf("<book><ul><li>One</li></ul><ol><li>Two</li></ol></book>", kLists), ElementsAre("li: →1.→One", "li: →1.→Two"));
    EXPECT_THAT(textsOf("<book><ul><li>One</li></ul></book>", "ul { list-style-type: disc }"), ElementsAre("li: →•→One"));
}

TEST(StyledTextTest, ListsOfThreeLevelsCountEachForItself) {
    EXPECT_THAT(
        textsOf(
            "<book><list><item>a<list><item>b<list><item>c</item><item>d</item></list></item><item>e</item></list></item>"
            "<item>f</item></list></book>",
            kLists),
        ElementsAre("item: →1.→a", "item: →•→b", "item: →i.→c", "item: →ii.→d", "item: →•→e", "item: →2.→f"));
}

TEST(StyledTextTest, ListsAreThoseOfTheParagraphStyle) {
    const Manuscript manuscript("<book><list><item>a<list><item>b</item></list></item><item>c</item></list><p>d</p></book>", kLists);
    const auto paragraphs = manuscript.paragraphs();
    const auto outer = styleOf(paragraphs[0])->textLists(), inner = styleOf(paragraphs[1])->textLists();
    ASSERT_EQ(outer.size(), 1u);
    ASSERT_EQ(inner.size(), 2u);
    EXPECT_EQ(inner[0], outer[0]);
    EXPECT_EQ(outer[0]->markerFormat(), u"{decimal}.");
    EXPECT_EQ(inner[1]->markerFormat(), u"{disc}");
    EXPECT_THAT(styleOf(paragraphs[2])->textLists(), ElementsAre(outer[0]));
    EXPECT_THAT(styleOf(paragraphs[3])->textLists(), IsEmpty());

    const auto text = joined(paragraphs);
    EXPECT_EQ(text->itemNumberInTextList_atIndex(outer[0], paragraphs[0].text->length() + paragraphs[1].text->length()), 2);
}

TEST(StyledTextTest, TheMarkerOfAnItemStandsAheadOfItsFirstParagraphAlone) {
    EXPECT_THAT(
        textsOf("<book><list><item><p>One</p><p>Two</p></item><item><p>Three</p></item></list></book>", kLists),
        ElementsAre("p: →1.→One", "p: Two", "p: →2.→Three"));
}

TEST(StyledTextTest, TheTextOfAnItemBehindADeeperListHasNoMarker) {
    EXPECT_THAT(
        textsOf("<book><list><item>One<list><item>two</item></list> three</item><item>Four</item></list></book>", kLists),
        ElementsAre("item: →1.→One", "item: →•→two", "item: three", "item: →2.→Four"));
}

TEST(StyledTextTest, AnItemThatIsNotShownDoesNotCount) {
    EXPECT_THAT(
        textsOf("<book><list><item class='x'>One</item><item>Two</item></list></book>", kLists + ".x { display: none }"),
        ElementsAre("item: →1.→Two"));
}

TEST(StyledTextTest, AnItemWithoutAListHasNoMarker) {
    EXPECT_THAT(textsOf("<book><item>One</item></book>", kLists), ElementsAre("item: One"));
}

TEST(StyledTextTest, MarkersHaveTheFontOfTheirItem) {
    EXPECT_EQ(runsOf("<book><ul><li><b>One</b></li></ul></book>", kLists + "b { font-weight: bold }"), "\t1.\t|One[b]");
}

// ---- Layout

TEST(StyledTextTest, LeftAndRightMarginsAddUp) {
    EXPECT_THAT(
        layoutsOf(
            "<book><quote><p>One</p></quote><p>Two</p></book>",
            "quote { margin-left: 20px; margin-right: 10px } p { margin-left: 5px; margin-right: 3px; text-indent: 7px }"),
        ElementsAre("25+7 13 0/0", "5+7 3 0/0"));
}

TEST(StyledTextTest, MarginsOfInlinesDoNotCount) {
    EXPECT_THAT(layoutsOf("<book><p><em>One</em></p></book>", "em { margin: 20px }"), ElementsAre("0+0 0 0/0"));
}

TEST(StyledTextTest, TheLargerOfTheMarginsThatBeginWithAParagraphCounts) {
    const std::string_view xml = "<book><quote><p>One</p><p>Two</p><p>Three</p></quote></book>";
    EXPECT_THAT(
        layoutsOf(xml, "quote { margin-top: 8px; margin-bottom: 9px } p { margin-top: 2px; margin-bottom: 3px }"),
        ElementsAre("0+0 0 8/3", "0+0 0 2/3", "0+0 0 2/9"));
    EXPECT_THAT(
        layoutsOf(xml, "quote { margin-top: 1px; margin-bottom: 1px } p { margin-top: 2px; margin-bottom: 3px }"),
        ElementsAre("0+0 0 2/3", "0+0 0 2/3", "0+0 0 2/3"));
}

TEST(StyledTextTest, AMarginCountsWhereTheBlockBeginsAndEndsAndNotWhereItIsDivided) {
    EXPECT_THAT(
        layoutsOf("<book><p>One<quote>two</quote>three</p></book>", "p { margin-top: 8px; margin-bottom: 9px }"),
        ElementsAre("0+0 0 8/0", "0+0 0 0/0", "0+0 0 0/9"));
}

TEST(StyledTextTest, LineHeightAndAlignmentAreThoseOfTheBlock) {
    const Manuscript manuscript("<book><p>One</p></book>", "p { text-align: justify; line-height: 2 }");
    const auto style = styleOf(manuscript.paragraphs()[0]);
    EXPECT_EQ(style->alignment(), NSTextAlignmentJustified);
    EXPECT_EQ(style->minimumLineHeight(), 24);
    EXPECT_EQ(style->maximumLineHeight(), 24);
}

TEST(StyledTextTest, ABlockWithPaddingOrBordersIsATextBlockOfItsParagraphs) {
    const auto dress = [](const Ref<WQXMLElement>& element, const Ref<WQCSSStyle>& style) {
        if (element->localName() != u"quote") return;
        style->setBorderLeft({2, 0});
        style->setPaddingTop({4, WQCSSLengthTypeAbsolute});
    };
    const Manuscript manuscript("<book><quote><p>One</p><p>Two</p></quote><p>Three</p></book>", "quote { margin: 0 6px 0 5px }", dress);
    const auto paragraphs = manuscript.paragraphs();
    const auto blocks = styleOf(paragraphs[0])->textBlocks();
    ASSERT_EQ(blocks.size(), 1u);
    EXPECT_EQ(blocks[0]->widthForLayer_edge(NSTextBlockBorder, NSMinXEdge), 2);
    EXPECT_EQ(blocks[0]->widthForLayer_edge(NSTextBlockPadding, NSMinYEdge), 4);
    EXPECT_EQ(blocks[0]->widthForLayer_edge(NSTextBlockMargin, NSMinXEdge), 5);
    EXPECT_EQ(blocks[0]->widthForLayer_edge(NSTextBlockMargin, NSMaxXEdge), 6);
    EXPECT_THAT(styleOf(paragraphs[1])->textBlocks(), ElementsAre(blocks[0]));
    EXPECT_THAT(styleOf(paragraphs[2])->textBlocks(), IsEmpty());
}

TEST(StyledTextTest, TextBlocksStandInEachOtherTheOutermostFirst) {
    const auto dress = [](const Ref<WQXMLElement>& element, const Ref<WQCSSStyle>& style) {
        if (element->localName() == u"quote") style->setBorderTop({1, 0});
    };
    const Manuscript manuscript("<book><quote><quote>One</quote>two</quote></book>", "", dress);
    const auto paragraphs = manuscript.paragraphs();
    const auto blocks = styleOf(paragraphs[0])->textBlocks();
    ASSERT_EQ(blocks.size(), 2u);
    EXPECT_THAT(styleOf(paragraphs[1])->textBlocks(), ElementsAre(blocks[0]));
}

// ---- Pages and headings

TEST(StyledTextTest, ABreakBeforeABlockIsOneBeforeItsFirstParagraph) {
    EXPECT_THAT(
        marksOf("<book><p>a</p><chapter><section><p>b</p></section><p>c</p></chapter></book>", "chapter { page-break-before: always }"),
        ElementsAre("--0", "b-0", "--0"));
}

TEST(StyledTextTest, ABreakBehindABlockIsOneBehindItsLastParagraph) {
    EXPECT_THAT(
        marksOf("<book><chapter><p>a</p><section><p>b</p></section></chapter><p>c</p></book>", "chapter { page-break-after: always }"),
        ElementsAre("--0", "-e0", "--0"));
    EXPECT_THAT(
        marksOf("<book><p>a<quote>b</quote>c</p></book>", "p { page-break-after: always; page-break-before: always }"),
        ElementsAre("b-0", "--0", "-e0"));
}

TEST(StyledTextTest, ABreakOfABlockWithoutTextIsKept) {
    EXPECT_THAT(marksOf("<book><p>a</p><quote/><p>b</p></book>", "quote { page-break-before: always }"), ElementsAre("--0", "b-0"));
}

TEST(StyledTextTest, TheLevelOfATitleIsItsDepth) {
    EXPECT_THAT(
        marksOf("<book><title>a</title><chapter><title>b</title><section><title>c</title><p>d</p></section></chapter></book>"),
        ElementsAre("--1", "--2", "--3", "--0"));
}

TEST(StyledTextTest, HeadingsOfHTMLHaveTheirNumbers) {
    EXPECT_THAT(
        marksOf(
            "<book><section><h1>a</h1></section><h2>b</h2><h3>c</h3><h4>d</h4><h5>e</h5><h6>f</h6><h7>g</h7></book>",
            "h7 { display: block }"),
        ElementsAre("--1", "--2", "--3", "--4", "--5", "--6", "--0"));
}

}  // namespace
