#include "examples/book/Book.h"

#include <sstream>

#include "tests/examples/book/Support.h"

using namespace test;
using testing::ElementsAre;

namespace {

// Ten lines of 15 points fit a page.
PageFormat tenLines() {
    PageFormat format;
    format.height = format.head + format.foot + 150;
    return format;
}

std::string lines(size_t count) {
    std::string text = "line";
    for (size_t index = 1; index < count; ++index) text += "<br/>line";
    return text;
}
std::string p(size_t count) { return "<p>" + lines(count) + "</p>"; }
std::string title(size_t count = 1) { return "<title>" + lines(count) + "</title>"; }

struct Bound {
    explicit Bound(
        const std::string& content,
        const std::string& rules = "",
        StyledTree::Dress dress = [](auto&&, auto&&) {})
        : manuscript("<book>" + content + "</book>", rules, std::move(dress)), typesetter(tenLines().measure(), "en") {
        book = makeBook(manuscript.paragraphs(), typesetter, tenLines(), {});
    }

    // "5 1 2 | 3": how many lines of each paragraph stand on each page.
    std::string pages() const {
        std::ostringstream told;
        for (const auto& page : book.pages) {
            told << (&page == &book.pages.front() ? "" : " | ");
            for (size_t index = 0; index < page.lines.size();) {
                size_t count = 1;
                while (index + count < page.lines.size() && page.lines[index + count].paragraph == page.lines[index].paragraph) ++count;
                told << (index ? " " : "") << count;
                index += count;
            }
        }
        return told.str();
    }

    // Where the lines of a page begin, from the head of the text.
    std::vector<double> tops(size_t page) const {
        std::vector<double> tops;
        for (const auto& line : book.pages.at(page).lines) tops.push_back(line.top);
        return tops;
    }

    Manuscript manuscript;
    Typesetter typesetter;
    Book book;
};

std::string pagesOf(const std::string& content) { return Bound(content).pages(); }

TEST(BookTest, LinesFollowEachOtherAndFillAPage) {
    const Bound bound(p(4) + p(6));
    EXPECT_EQ(bound.pages(), "4 6");
    EXPECT_THAT(bound.tops(0), ElementsAre(0, 15, 30, 45, 60, 75, 90, 105, 120, 135));
}

TEST(BookTest, APageBreaksBetweenLines) {
    EXPECT_EQ(pagesOf(p(25)), "10 | 10 | 5");
    EXPECT_EQ(pagesOf(p(8) + p(4)), "8 2 | 2");
    EXPECT_EQ(pagesOf(p(7) + p(6)), "7 3 | 3");
}

TEST(BookTest, TheFirstLineOfAParagraphIsNotAloneAtTheFoot) { EXPECT_EQ(pagesOf(p(9) + p(4)), "9 | 4"); }

TEST(BookTest, TheLastLineOfAParagraphIsNotAloneAtTheHead) {
    EXPECT_EQ(pagesOf(p(7) + p(4)), "7 2 | 2");
    EXPECT_EQ(pagesOf(p(11)), "9 | 2");
}

TEST(BookTest, ParagraphsOfTwoOrThreeLinesAreNotDivided) {
    EXPECT_EQ(pagesOf(p(9) + p(2)), "9 | 2");
    EXPECT_EQ(pagesOf(p(8) + p(3)), "8 | 3");
}

TEST(BookTest, AParagraphOfOneLineMayStandAnywhere) { EXPECT_EQ(pagesOf(p(9) + p(1) + p(1)), "9 1 | 1"); }

TEST(BookTest, AHeadingStaysWithTwoLinesOfWhatFollows) {
    EXPECT_EQ(pagesOf(p(7) + title() + p(5)), "7 1 2 | 3");
    EXPECT_EQ(pagesOf(p(8) + title() + p(5)), "8 | 1 5");
    EXPECT_EQ(pagesOf(p(9) + title() + p(5)), "9 | 1 5");
    EXPECT_EQ(pagesOf(p(7) + title() + p(3)), "7 | 1 3");  // which would be divided ahead of its last line
}

TEST(BookTest, AHeadingStaysWithTwoShortParagraphs) {
    EXPECT_EQ(pagesOf(p(7) + title() + p(1) + p(1)), "7 1 1 1");
    EXPECT_EQ(pagesOf(p(8) + title() + p(1) + p(1)), "8 | 1 1 1");
    EXPECT_EQ(pagesOf(p(9) + title() + p(1)), "9 | 1 1");
}

TEST(BookTest, AHeadingStaysWithAHeadingBelowIt) {
    EXPECT_EQ(pagesOf(p(6) + title() + title() + p(4)), "6 1 1 2 | 2");
    EXPECT_EQ(pagesOf(p(7) + title() + title() + p(4)), "7 | 1 1 4");
}

TEST(BookTest, AHeadingIsNotDivided) { EXPECT_EQ(pagesOf(p(9) + title(2) + p(2)), "9 | 2 2"); }

TEST(BookTest, AHeadingAtTheVeryEndStandsWhereItCan) { EXPECT_EQ(pagesOf(p(9) + title()), "9 1"); }

TEST(BookTest, TheLargerOfTwoSpacesThatMeetCounts) {
    const Bound bound(
        "<p>a</p><quote>b</quote><p>c</p>", "p { margin-top: 4px; margin-bottom: 6px } quote { margin-top: 9px; margin-bottom: 2px }");
    EXPECT_THAT(bound.tops(0), ElementsAre(4, 4 + 15 + 9, 4 + 15 + 9 + 15 + 4));
}

TEST(BookTest, SpaceIsDroppedAtTheHeadOfAPage) {
    const Bound bound(p(10) + "<quote>b</quote><p>c</p>", "quote { margin-top: 20px; margin-bottom: 3px }");
    EXPECT_THAT(bound.tops(1), ElementsAre(0, 18));
    EXPECT_FALSE(bound.book.pages[1].isBegunOnPurpose);
}

TEST(BookTest, SpaceIsKeptAtTheHeadOfAPageThatIsBegunOnPurpose) {
    const Bound bound("<p>a</p><quote>b</quote>", "p { margin-bottom: 50px } quote { page-break-before: always; margin-top: 20px }");
    EXPECT_EQ(bound.pages(), "1 | 1");
    EXPECT_THAT(bound.tops(1), ElementsAre(20));
    EXPECT_TRUE(bound.book.pages[1].isBegunOnPurpose);
}

TEST(BookTest, APageEndsBehindABlockThatSaysSo) {
    const Bound bound("<quote>a</quote><p>b</p>", "quote { page-break-after: always } p { margin-top: 7px }");
    EXPECT_EQ(bound.pages(), "1 | 1");
    EXPECT_THAT(bound.tops(1), ElementsAre(7));
    EXPECT_EQ(Bound("<p>a</p><quote>b</quote>", "quote { page-break-after: always }").pages(), "1 1");
}

TEST(BookTest, ABreakBeforeTheFirstParagraphMakesNoEmptyPage) {
    EXPECT_EQ(Bound("<chapter><p>a</p></chapter>", "chapter { page-break-before: always }").pages(), "1");
    EXPECT_EQ(
        Bound("<chapter><p>a</p></chapter><chapter><p>b</p></chapter>", "chapter { page-break-before: always; page-break-after: always }")
            .pages(),
        "1 | 1");
}

TEST(BookTest, AFrameStandsAroundAllOfItsParagraphs) {
    const auto dress = [](const Ref<WQXMLElement>& element, const Ref<WQCSSStyle>& style) {
        if (element->localName() != u"quote") return;
        style->setBorderTop({1, 0});
        style->setPaddingTop({4, WQCSSLengthTypeAbsolute});
        style->setPaddingBottom({6, WQCSSLengthTypeAbsolute});
    };
    const Bound bound("<p>a</p><quote><p>b</p><p>c</p></quote><p>d</p>", "", dress);
    EXPECT_THAT(bound.tops(0), ElementsAre(0, 15 + 5, 15 + 5 + 15, 15 + 5 + 30 + 6));
}

TEST(BookTest, ThePageOfAnElementIsWhereItsParagraphBegins) {
    const Bound bound("<p>a</p>" + p(12) + "<remark>x</remark><quote>b</quote>", "remark { display: none }");
    EXPECT_EQ(bound.pages(), "1 9 | 3 1");
    const auto& book = bound.book;
    EXPECT_EQ(pageOf(book, book.paragraphs[0].source.block), 0u);
    EXPECT_EQ(pageOf(book, book.paragraphs[1].source.block), 0u);
    EXPECT_EQ(pageOf(book, find(bound.manuscript.document, u"quote")), 1u);
    EXPECT_EQ(pageOf(book, find(bound.manuscript.document, u"remark")), 2u);
    EXPECT_EQ(pageOf(book, nullptr), 2u);
}

TEST(BookTest, TheTitleIsTheFirstHeading) {
    const Bound bound("<p>a</p><title>The <em>Near</em><br/>Bell</title><chapter><title>One</title></chapter>");
    EXPECT_EQ(bound.book.title, "The Near Bell");
    EXPECT_EQ(bound.book.family, "TeX Gyre Pagella");
    EXPECT_EQ(Bound("<p>a</p>").book.title, "");
}

TEST(BookTest, PagesAreTitledByTheirChapter) {
    const std::string chapters = "<chapter><title>One</title>" + p(18) + "</chapter><chapter><title>Two</title>" + p(12) + "</chapter>";
    const Bound bound("<title>Bells</title>" + chapters, "chapter { page-break-before: always }");
    ASSERT_EQ(bound.pages(), "1 | 1 9 | 9 | 1 9 | 3");
    EXPECT_EQ(bound.book.pages[2].heading, "One");
    EXPECT_EQ(bound.book.pages[4].heading, "Two");
}

TEST(BookTest, TheFullestOfThePagesThatFaceEachOther) {
    const std::string rules = "quote { page-break-before: always }";
    const auto leaf = [](size_t count) { return "<quote>" + lines(count) + "</quote>"; };
    EXPECT_EQ(fullestLeftPage(Bound(leaf(9) + leaf(9), rules).book), 0u);
    EXPECT_EQ(fullestLeftPage(Bound(leaf(9) + leaf(1) + leaf(1), rules).book), 1u);
    EXPECT_EQ(fullestLeftPage(Bound(leaf(9) + leaf(9) + leaf(2) + leaf(4) + leaf(8) + leaf(9), rules).book), 3u);
}

TEST(BookTest, EveryParagraphIsTold) {
    const Manuscript manuscript("<book>" + p(1) + p(1) + p(1) + "</book>");
    const Typesetter typesetter(200, "en");
    size_t last = 0, all = 0;
    makeBook(manuscript.paragraphs(), typesetter, tenLines(), [&](size_t done, size_t total) {
        EXPECT_GE(done, last);
        last = done;
        all = total;
    });
    EXPECT_EQ(last, 3u);
    EXPECT_EQ(all, 3u);
}

}  // namespace
