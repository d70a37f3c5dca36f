#include "examples/book/Pages.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace {

struct Case {
    const char* name;
    std::vector<Row> rows;
    const char* pages;  // "first row: tops | first row!: tops"; "!" is begun on purpose
};

void PrintTo(const Case& aCase, std::ostream* out) { *out << aCase.name; }

Row stays(Row row) {
    row.mayBreakAbove = false;
    return row;
}

Row begins(Row row) {
    row.mustBreakAbove = true;
    return row;
}

std::string told(const std::vector<PageOfRows>& pages) {
    std::ostringstream line;
    for (const auto& page : pages) {
        line << (&page == &pages.front() ? "" : " | ") << page.first << (page.isBegunOnPurpose ? "!:" : ":");
        for (const double top : page.tops) line << ' ' << top;
    }
    return line.str();
}

class PagesTest : public testing::TestWithParam<Case> {};

TEST_P(PagesTest, OfAHundredPoints) { EXPECT_EQ(told(paginate(GetParam().rows, 100)), GetParam().pages); }

// clang-format off
const Case kCases[] = {
    {"NoRows", {}, ""},
    {"OneRow", {{30}}, "0!: 0"},
    {"APageThatIsJustFull", {{30}, {30}, {40}}, "0!: 0 30 60"},
    {"ARowThatDoesNotFit", {{40}, {40}, {40}}, "0!: 0 40 | 2: 0"},
    {"ManyPages", {{60}, {60}, {60}, {30}, {10}}, "0!: 0 | 1: 0 | 2: 0 60 90"},

    {"TheRowThatDoesNotFitMayNotBegin", {{40}, {40}, stays({40})}, "0!: 0 | 1: 0 40"},
    {"BackToTheLastThatMay", {{10}, {10}, stays({30}), stays({40}), stays({20})}, "0!: 0 | 1: 0 10 40 80"},
    {"NotBackToAnEarlierOne", {{10}, {10}, {30}, stays({40}), stays({20})}, "0!: 0 10 | 2: 0 30 70"},
    {"NotBackToTheHeadOfThePage", {{40}, stays({40}), stays({40})}, "0!: 0 40 | 2: 0"},
    {"NoneMay", {stays({40}), stays({40}), stays({40}), stays({40})}, "0!: 0 40 | 2: 0 40"},
    {"WhatWentBackIsCountedOnTheNextPage", {{50}, {30}, stays({40}), {40}}, "0!: 0 | 1: 0 30 | 3: 0"},

    {"Begun", {{10}, begins({10}), {10}}, "0!: 0 | 1!: 0 10"},
    {"BegunThoughItMayNot", {{10}, begins(stays({10}))}, "0!: 0 | 1!: 0"},
    {"BegunTwice", {{10}, begins({10}), begins({10})}, "0!: 0 | 1!: 0 | 2!: 0"},
    {"BegunWhereAPageEndsAnyway", {{100}, begins({10})}, "0!: 0 | 1!: 0"},
    {"TheFirstPageIsBegunOnPurpose", {{10, 20}, {10}}, "0!: 20 30"},
    {"BegunByTheFirst", {begins({10, 20}), {10}}, "0!: 20 30"},
    {"BegunAndThenFull", {{10}, begins({60, 20}), {40, 10}}, "0!: 0 | 1!: 20 | 2: 0"},

    {"SpaceBetweenRows", {{30}, {30, 10}, {20, 10}}, "0!: 0 40 80"},
    {"SpaceIsDroppedAtTheHead", {{60}, {60, 20}, {10, 5}}, "0!: 0 | 1: 0 65"},
    {"SpaceIsKeptOnAPageBegunOnPurpose", {{60}, begins({60, 20})}, "0!: 0 | 1!: 20"},
    {"SpaceThatDoesNotFit", {{60}, {40, 1}}, "0!: 0 | 1: 0"},
    {"SpaceIsDroppedWhereAPageIsEndedEarlier", {{40}, {40, 10}, stays({40})}, "0!: 0 | 1: 0 40"},

    {"FramesAroundARow", {{30, 10, 5, 7}, {30, 3}}, "0!: 15 55"},
    {"FramesBetweenRows", {{20}, {30, 10, 5, 7}, {20, 3}}, "0!: 0 35 75"},
    {"FramesAreKeptAtTheHead", {{60}, {50, 9, 5}}, "0!: 0 | 1: 5"},
    {"AFrameBelowThatDoesNotFit", {{60}, {40, 0, 0, 1}}, "0!: 0 | 1: 0"},
    {"AFrameAboveThatDoesNotFit", {{60}, {40, 0, 1, 0}}, "0!: 0 | 1: 1"},
    {"AFrameThatJustFits", {{60}, {30, 3, 3, 4}}, "0!: 0 66"},

    {"HigherThanAPage", {{150}}, "0!: 0"},
    {"HigherThanAPageAmongOthers", {{10}, {150}, {10}}, "0!: 0 | 1: 0 | 2: 0"},
    {"HigherThanAPageAndMayNotBegin", {{10}, stays({150}), stays({10})}, "0!: 0 | 1: 0 | 2: 0"},
    {"HigherThanAPageWithItsSpaceOnly", {{10}, begins({90, 20}), {10}}, "0!: 0 | 1!: 20 | 2: 0"},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(, PagesTest, testing::ValuesIn(kCases), [](const auto& each) { return std::string(each.param.name); });

TEST(PagesOfFractionsTest, LinesWhoseHeightsAddUpToAPageFillIt) {
    EXPECT_EQ(paginate({{1.1}, {1.1}, {1.1}}, 3.3).size(), 1u);
    EXPECT_EQ(paginate(std::vector<Row>(32, {14.9996}), 480).size(), 1u);
    EXPECT_EQ(paginate(std::vector<Row>(33, {14.9996}), 480).size(), 2u);
}

TEST(PagesOfFractionsTest, EveryRowIsOnOnePageInOrder) {
    std::vector<Row> rows;
    for (size_t index = 0; index < 500; ++index)
        rows.push_back({double(index * 7 % 40), double(index % 5), double(index % 3), double(index % 2), index % 4 != 0, index % 61 == 60});
    size_t next = 0;
    for (const auto& page : paginate(rows, 100)) {
        EXPECT_EQ(page.first, next);
        ASSERT_FALSE(page.tops.empty());
        next += page.tops.size();
    }
    EXPECT_EQ(next, rows.size());
}

}  // namespace
