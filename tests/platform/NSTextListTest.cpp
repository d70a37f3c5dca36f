#include "platform/NSTextList.h"

#include <gtest/gtest.h>

#include <climits>
#include <locale>

namespace {

NSString marker(const NSString& format, long number) { return NSTextList::textListWithMarkerFormat(format)->markerForItemNumber(number); }

constexpr long numbers[] = {1, 2, 4, 26, 27, 28, 1999};

struct Row {
    const char16_t* keyword;
    const char16_t* markers[std::size(numbers)];
};

const Row counted[] = {
    {u"decimal", {u"1", u"2", u"4", u"26", u"27", u"28", u"1999"}},
    {u"octal", {u"1", u"2", u"4", u"32", u"33", u"34", u"3717"}},
    {u"lower-hexadecimal", {u"1", u"2", u"4", u"1a", u"1b", u"1c", u"7cf"}},
    {u"upper-hexadecimal", {u"1", u"2", u"4", u"1A", u"1B", u"1C", u"7CF"}},
    {u"lower-alpha", {u"a", u"b", u"d", u"z", u"aa", u"ab", u"bxw"}},
    {u"lower-latin", {u"a", u"b", u"d", u"z", u"aa", u"ab", u"bxw"}},
    {u"upper-alpha", {u"A", u"B", u"D", u"Z", u"AA", u"AB", u"BXW"}},
    {u"upper-latin", {u"A", u"B", u"D", u"Z", u"AA", u"AB", u"BXW"}},
    {u"lower-roman", {u"i", u"ii", u"iv", u"xxvi", u"xxvii", u"xxviii", u"mcmxcix"}},
    {u"upper-roman", {u"I", u"II", u"IV", u"XXVI", u"XXVII", u"XXVIII", u"MCMXCIX"}},
};

const std::pair<const char16_t*, const char16_t*> signs[] = {
    {u"box", u"\u25A1"},  {u"check", u"\u2713"},  {u"circle", u"\u25E6"}, {u"diamond", u"\u25C6"},
    {u"disc", u"\u2022"}, {u"hyphen", u"\u2043"}, {u"square", u"\u25AA"},
};

NSString inBraces(const char16_t* keyword) { return NSString(u"{") + keyword + u"}"; }

struct Group : std::numpunct<char> {
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

}  // namespace

TEST(NSTextList, KeepsItsFormat) {
    EXPECT_EQ(NSTextList::textListWithMarkerFormat(u"({decimal})")->markerFormat(), u"({decimal})");
    EXPECT_EQ(NSTextList::newWithMarkerFormat(u"")->markerFormat(), u"");
}

TEST(NSTextList, IsNullForTheNullFormat) {
    EXPECT_FALSE(NSTextList::textListWithMarkerFormat(nullptr));
    EXPECT_FALSE(NSTextList::newWithMarkerFormat(nullptr));
}

TEST(NSTextList, CountsInEachKindOfNumbers) {
    for (const Row& row : counted) {
        SCOPED_TRACE(wq::toUTF8(row.keyword));
        const auto list = NSTextList::textListWithMarkerFormat(inBraces(row.keyword));
        for (size_t index = 0; index < std::size(numbers); ++index)
            EXPECT_EQ(list->markerForItemNumber(numbers[index]), row.markers[index]) << numbers[index];
    }
}

TEST(NSTextList, ASignIsTheSameForEveryNumber) {
    for (const auto& [keyword, sign] : signs)
        for (const long number : {LONG_MIN, -1L, 0L, 1L, 2L, 4000L, LONG_MAX})
            EXPECT_EQ(marker(inBraces(keyword), number), sign) << wq::toUTF8(keyword) << " " << number;
}

TEST(NSTextList, LettersGoOnWithPairsAndTriples) {
    const std::pair<long, const char16_t*> rows[] = {{25, u"y"},    {51, u"ay"},     {52, u"az"},     {53, u"ba"},   {676, u"yz"},
                                                     {677, u"za"},  {702, u"zz"},    {703, u"aaa"},   {704, u"aab"}, {728, u"aaz"},
                                                     {729, u"aba"}, {18278, u"zzz"}, {18279, u"aaaa"}};
    for (const auto& [number, letters] : rows) EXPECT_EQ(marker(u"{lower-alpha}", number), letters) << number;
    EXPECT_EQ(marker(u"{upper-latin}", 703), u"AAA");
}

TEST(NSTextList, RomanNumbersSubtractOneDigit) {
    const std::pair<long, const char16_t*> rows[] = {
        {3, u"iii"},         {5, u"v"},   {6, u"vi"},       {8, u"viii"}, {9, u"ix"},   {10, u"x"},        {14, u"xiv"},
        {19, u"xix"},        {40, u"xl"}, {49, u"xlix"},    {50, u"l"},   {90, u"xc"},  {99, u"xcix"},     {100, u"c"},
        {400, u"cd"},        {500, u"d"}, {444, u"cdxliv"}, {900, u"cm"}, {1000, u"m"}, {2024, u"mmxxiv"}, {3888, u"mmmdccclxxxviii"},
        {3999, u"mmmcmxcix"}};
    for (const auto& [number, letters] : rows) EXPECT_EQ(marker(u"{lower-roman}", number), letters) << number;
    EXPECT_EQ(marker(u"{upper-roman}", 3999), u"MMMCMXCIX");
}

TEST(NSTextList, RomanNumbersEndAt3999) {
    EXPECT_EQ(marker(u"{lower-roman}", 4000), u"4000");
    EXPECT_EQ(marker(u"{upper-roman}", 4000), u"4000");
    EXPECT_EQ(marker(u"{upper-roman}", LONG_MAX), u"9223372036854775807");
}

TEST(NSTextList, LettersAndRomanNumbersBeginAtOne) {
    for (const char16_t* keyword : {u"lower-alpha", u"lower-latin", u"upper-alpha", u"upper-latin", u"lower-roman", u"upper-roman"}) {
        SCOPED_TRACE(wq::toUTF8(keyword));
        EXPECT_EQ(marker(inBraces(keyword), 0), u"0");
        EXPECT_EQ(marker(inBraces(keyword), -3), u"-3");
        EXPECT_EQ(marker(inBraces(keyword), LONG_MIN), u"-9223372036854775808");
    }
}

TEST(NSTextList, DigitsBelowZeroStandBehindAMinusSign) {
    EXPECT_EQ(marker(u"{decimal}", 0), u"0");
    EXPECT_EQ(marker(u"{decimal}", -12), u"-12");
    EXPECT_EQ(marker(u"{octal}", 0), u"0");
    EXPECT_EQ(marker(u"{octal}", -8), u"-10");
    EXPECT_EQ(marker(u"{lower-hexadecimal}", 0), u"0");
    EXPECT_EQ(marker(u"{lower-hexadecimal}", -255), u"-ff");
    EXPECT_EQ(marker(u"{upper-hexadecimal}", -255), u"-FF");
    EXPECT_EQ(marker(u"{upper-hexadecimal}", LONG_MIN), u"-8000000000000000");
}

TEST(NSTextList, KeepsTheTextAroundTheKeyword) {
    EXPECT_EQ(marker(u"{decimal}.", 4), u"4.");
    EXPECT_EQ(marker(u"({lower-alpha})", 28), u"(ab)");
    EXPECT_EQ(marker(u"\u00A7\U0001D11E {upper-roman}:\t", 9), u"\u00A7\U0001D11E IX:\t");
    EXPECT_EQ(marker(u"} {decimal}", 4), u"} 4");
}

TEST(NSTextList, WithoutBracesTheFormatIsTheMarker) {
    EXPECT_EQ(marker(u"decimal", 4), u"decimal");
    EXPECT_EQ(marker(u"*", 4), u"*");
    EXPECT_EQ(marker(u"a}", 4), u"a}");
    EXPECT_EQ(marker(u"", 4), u"");
}

TEST(NSTextList, AnUnknownKeywordStandsForItself) {
    EXPECT_EQ(marker(u"<{lower-greek}>", 4), u"<lower-greek>");
    EXPECT_EQ(marker(u"{none}", 4), u"none");
    EXPECT_EQ(marker(u"{Decimal}", 4), u"Decimal");
    EXPECT_EQ(marker(u"{ decimal}", 4), u" decimal");
    EXPECT_EQ(marker(u"{roman}", 4), u"roman");
    EXPECT_EQ(marker(u"-{}-", 4), u"--");
}

TEST(NSTextList, ABraceThatIsNotClosedReachesToTheEnd) {
    EXPECT_EQ(marker(u"a {decimal", 4), u"a 4");
    EXPECT_EQ(marker(u"a {decimal.", 4), u"a decimal.");
    EXPECT_EQ(marker(u"a {", 4), u"a ");
}

TEST(NSTextList, OnlyTheFirstBracesCount) {
    EXPECT_EQ(marker(u"{decimal}.{decimal}", 4), u"4.{decimal}");
    EXPECT_EQ(marker(u"{{decimal}}", 4), u"{decimal}");
}

TEST(NSTextList, NumbersDoNotFollowTheLocale) {
    const std::locale previous = std::locale::global(std::locale(std::locale::classic(), new Group));
    const NSString decimal = marker(u"{decimal}", 1999), roman = marker(u"{lower-roman}", 4000);
    std::locale::global(previous);
    EXPECT_EQ(decimal, u"1999");
    EXPECT_EQ(roman, u"4000");
}

TEST(NSTextList, EqualsItselfAlone) {
    const auto one = NSTextList::textListWithMarkerFormat(u"{disc}"), other = NSTextList::textListWithMarkerFormat(u"{disc}");
    EXPECT_TRUE(one->isEqual(one));
    EXPECT_FALSE(one->isEqual(other));
}

TEST(NSTextList, ASubclassDecidesAboutTheFormat) {
    struct Numbered : NSTextList {
        bool initWithMarkerFormat(const NSString& format) override { return NSTextList::initWithMarkerFormat(format + u"{decimal}"); }
    };
    const auto list = NSTextList::textListWithMarkerFormat<Numbered>(u"No. ");
    EXPECT_EQ(list->markerForItemNumber(7), u"No. 7");
}

TEST(NSTextList, NullAnswersNull) {
    const Ref<NSTextList> null;
    EXPECT_EQ(null->markerFormat(), nullptr);
    EXPECT_EQ(null->markerForItemNumber(1), nullptr);
    EXPECT_FALSE(null->initWithMarkerFormat(u"{disc}"));
    EXPECT_EQ(null->markerFormat(), nullptr);
}
