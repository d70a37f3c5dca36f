#include "platform/NSString.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "platform/NSError.h"
#include "platform/NSURL.h"
#include "platform/WQXMLException.h"

namespace {

using namespace wq::literals;
using namespace std::string_view_literals;

constexpr const char16_t* kKey = u"a\U0001D11Eb";  // a G clef between two letters: four units

template <class Action> NSString raised(Action action) {
    try {
        action();
    } catch (const WQXMLException& exception) {
        return exception.name();
    }
    return nullptr;
}

}  // namespace

TEST(NSString, IsNullAtFirst) {
    const NSString null;
    EXPECT_FALSE(static_cast<bool>(null));
    EXPECT_TRUE(null == nullptr);
    EXPECT_TRUE(null == NSString(nullptr));
}

TEST(NSString, NullDiffersFromEmpty) {
    const NSString null, empty = u"";
    EXPECT_FALSE(null == empty);
    EXPECT_TRUE(null != empty);
    EXPECT_FALSE(null == u"");
    EXPECT_TRUE(empty == u"");
    EXPECT_FALSE(empty == nullptr);
    EXPECT_TRUE(static_cast<bool>(empty));
}

TEST(NSString, NullIsWhatANullLiteralGives) {
    const char16_t* const nothing = nullptr;
    EXPECT_EQ(NSString(nothing), nullptr);
    EXPECT_TRUE(NSString() == nothing);
    EXPECT_FALSE(NSString(u"") == nothing);
}

TEST(NSString, AnEmptyViewGivesTheEmptyString) {
    EXPECT_EQ(NSString(std::u16string_view()), u"");
    EXPECT_EQ(NSString(std::u16string()), u"");
    EXPECT_EQ(u""_ns, u"");
}

TEST(NSString, NullAnswersNothing) {
    const NSString null;
    EXPECT_EQ(null.length(), 0u);
    EXPECT_TRUE(null.view().empty());
    EXPECT_EQ(null.substringWithRange({5, 5}), nullptr);
    EXPECT_EQ(null.stringByReplacingCharactersInRange_withString({5, 5}, u"x"), nullptr);
    EXPECT_EQ(wq::toUTF8(null), "");
}

TEST(NSString, CountsUTF16Units) {
    EXPECT_EQ(NSString(u"").length(), 0u);
    EXPECT_EQ(NSString(u"Gr\u00FC\u00DFe").length(), 5u);
    EXPECT_EQ(NSString(kKey).length(), 4u);
}

TEST(NSString, KeepsWhatALiteralHoldsBehindANUL) {
    EXPECT_EQ(u"a\0b"_ns.length(), 3u);
    EXPECT_EQ(u"a\0b"_ns.view()[2], u'b');
}

TEST(NSString, SubstringTakesUnits) {
    const NSString text = kKey;
    EXPECT_EQ(text.substringWithRange({0, 1}), u"a");
    EXPECT_EQ(text.substringWithRange({1, 2}), u"\U0001D11E");
    EXPECT_EQ(text.substringWithRange({3, 1}), u"b");
    EXPECT_EQ(text.substringWithRange({0, 4}), text);
    EXPECT_EQ(text.substringWithRange({4, 0}), u"");
    EXPECT_EQ(text.substringWithRange({2, 1}).view()[0], 0xDD1E);  // half of the clef
}

TEST(NSString, ReplacingGivesANewString) {
    const NSString text = kKey;
    EXPECT_EQ(text.stringByReplacingCharactersInRange_withString({1, 2}, u"-"), u"a-b");
    EXPECT_EQ(text.stringByReplacingCharactersInRange_withString({0, 0}, u"xy"), u"xya\U0001D11Eb");
    EXPECT_EQ(text.stringByReplacingCharactersInRange_withString({4, 0}, u"!"), u"a\U0001D11Eb!");
    EXPECT_EQ(text.stringByReplacingCharactersInRange_withString({0, 4}, u""), u"");
    EXPECT_EQ(text.stringByReplacingCharactersInRange_withString({0, 3}, NSString()), u"b");
    EXPECT_EQ(text, kKey);
}

TEST(NSString, RangesPastTheEndRaise) {
    const NSRange ranges[] = {
        {0, 5},
        {1, 4},
        {4, 1},
        {5, 0},
        {5, 1},
        {1, UINT64_MAX},
        {UINT64_MAX, 1},
        {UINT64_MAX, 0},
        {NSNotFound, 0},
        {0, UINT64_MAX},
        {4, UINT64_MAX - 3}};
    const NSString text = kKey;
    for (const NSRange range : ranges) {
        SCOPED_TRACE(testing::Message() << "{" << range.location << ", " << range.length << "}");
        EXPECT_EQ(raised([&] { text.substringWithRange(range); }), u"NSRangeException");
        EXPECT_EQ(raised([&] { text.stringByReplacingCharactersInRange_withString(range, u"x"); }), u"NSRangeException");
        EXPECT_EQ(text, kKey);
    }
}

TEST(NSString, TheExceptionNamesRangeAndLength) {
    try {
        NSString(u"abc").substringWithRange({2, 7});
        FAIL() << "nothing was raised";
    } catch (const WQXMLException& exception) {
        EXPECT_EQ(exception.reason(), u"Range {2, 7} out of bounds; string length 3");
    }
}

TEST(NSString, JoinsWithPlus) {
    EXPECT_EQ(NSString(u"a") + u"b", u"ab");
    EXPECT_EQ(NSString(u"a") + NSString(u"b") + u"c", u"abc");
    EXPECT_EQ(NSString(u"a") + NSString(), u"a");
    EXPECT_EQ(NSString() + u"b", u"b");
    EXPECT_EQ(NSString() + NSString(), u"");
}

TEST(NSString, AppendsInPlace) {
    NSString text;
    text += u"";
    EXPECT_EQ(text, u"");
    text += u"ab";
    text += text;
    EXPECT_EQ(text, u"abab");
}

TEST(NSString, JoiningLeavesTheLeftSideAlone) {
    const NSString left = u"a";
    EXPECT_EQ(left + u"b", u"ab");
    EXPECT_EQ(left, u"a");
}

TEST(NSString, IsOrderedUnitByUnitNullFirst) {
    // By characters U+FFFD would come before the clef; by units it comes behind its first half.
    const NSString ordered[] = {nullptr, u"", u"A", u"Z", u"a", u"a\U0001D11E", u"a\uFFFD", u"aa\u00E4", u"\u00E4"};
    const NSString byUnits[] = {nullptr, u"", u"A", u"Z", u"a", u"aa\u00E4", u"a\U0001D11E", u"a\uFFFD", u"\u00E4"};
    EXPECT_TRUE(ordered[7] < ordered[5]);
    for (size_t left = 0; left < std::size(byUnits); ++left)
        for (size_t right = 0; right < std::size(byUnits); ++right)
            EXPECT_EQ(byUnits[left] <=> byUnits[right], left <=> right) << left << " " << right;
}

TEST(NSString, PrintsNullInParentheses) {
    EXPECT_EQ(wq::printed(nullptr), u"(null)");
    EXPECT_EQ(wq::printed(u""), u"");
    EXPECT_EQ(wq::printed(u"text"), u"text");
}

TEST(NSString, IsPrintedByTheTestFramework) {
    EXPECT_EQ(testing::PrintToString(NSString()), "null");
    EXPECT_EQ(testing::PrintToString(NSString(u"\u00E4")), "\"\xC3\xA4\"");
}

TEST(FromUTF8, GivesNullForNull) {
    EXPECT_EQ(wq::fromUTF8(static_cast<const char*>(nullptr)), nullptr);
    EXPECT_EQ(wq::fromUTF8(static_cast<const unsigned char*>(nullptr)), nullptr);
    EXPECT_EQ(wq::fromUTF8(std::string_view()), u"");
}

TEST(FromUTF8, ReadsTheTwoTerminatedForms) {
    const unsigned char bytes[] = {0xC3, 0xA4, 0};
    EXPECT_EQ(wq::fromUTF8("\xC3\xA4"), u"\u00E4");
    EXPECT_EQ(wq::fromUTF8(bytes), u"\u00E4");
}

TEST(FromUTF8, LetsANULPass) {
    EXPECT_EQ(wq::fromUTF8("a\0b"sv), u"a\0b"_ns);
    EXPECT_EQ(wq::fromUTF8("\0"sv).length(), 1u);
}

TEST(FromUTF8, ReadsAllLengthsOfCharacters) {
    EXPECT_EQ(wq::fromUTF8("a\xC3\xA4\xE2\x82\xAC\xF0\x9D\x84\x9E"sv), u"a\u00E4\u20AC\U0001D11E");
    EXPECT_EQ(wq::fromUTF8("\xF4\x8F\xBF\xBF"sv), u"\U0010FFFF");
    EXPECT_EQ(
        wq::fromUTF8("\xEF\xBB\xBF"
                     "a"sv),
        u"\uFEFFa");  // a byte order mark is kept
    EXPECT_EQ(wq::fromUTF8("\xEF\xBF\xBE"sv).view()[0], 0xFFFE);
}

TEST(FromUTF8, ReplacesEachPartThatCannotBeRead) {
    const struct {
        std::string_view bytes;
        const char16_t* text;
    } rows[] = {
        {"\xE2\x82"sv, u"\uFFFD"},  // cut off
        {"\xE2\x82z"sv, u"\uFFFDz"},
        {"\xF0\x9D\x84"sv, u"\uFFFD"},
        {"\xC0\x80"sv, u"\uFFFD\uFFFD"},                      // too long a form
        {"\xED\xA0\x80"sv, u"\uFFFD\uFFFD\uFFFD"},            // a surrogate
        {"\xF4\x90\x80\x80"sv, u"\uFFFD\uFFFD\uFFFD\uFFFD"},  // beyond U+10FFFF
        {"\x80"sv, u"\uFFFD"},
        {"\xFFz"sv, u"\uFFFDz"},
        {"a\xC3"sv, u"a\uFFFD"},
    };
    for (const auto& row : rows) EXPECT_EQ(wq::fromUTF8(row.bytes), row.text) << testing::PrintToString(row.bytes);
}

TEST(ToUTF8, WritesAllLengthsOfCharacters) {
    EXPECT_EQ(wq::toUTF8(u"a\u00E4\u20AC\U0001D11E"), "a\xC3\xA4\xE2\x82\xAC\xF0\x9D\x84\x9E");
    EXPECT_EQ(wq::toUTF8(u"a\0b"_ns), "a\0b"sv);
    EXPECT_EQ(wq::toUTF8(u""), "");
}

TEST(ToUTF8, ReplacesEachLoneSurrogate) {
    const char16_t high[] = {0xD834, 0}, low[] = {0xDD1E, 0}, swapped[] = {0xDD1E, 0xD834, 0}, between[] = {u'a', 0xD834, u'b', 0};
    EXPECT_EQ(wq::toUTF8(high), "\xEF\xBF\xBD");
    EXPECT_EQ(wq::toUTF8(low), "\xEF\xBF\xBD");
    EXPECT_EQ(wq::toUTF8(swapped), "\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(
        wq::toUTF8(between),
        "a\xEF\xBF\xBD"
        "b");
}

// ---- Lower case

TEST(NSString, LowersTheCaseOfEachCharacter) {
    const std::pair<NSString, NSString> rows[] = {
        {u"", u""},
        {u"TeX Gyre 12!", u"tex gyre 12!"},
        {u"already", u"already"},
        {u"\u00C4\u00D6\u00DC\u00DF", u"\u00E4\u00F6\u00FC\u00DF"},
        {u"\u1E9E", u"\u00DF"},                 // a capital sharp s
        {u"\u0416\u0424", u"\u0436\u0444"},     // Cyrillic
        {u"I\u0130\u0131", u"ii\u0307\u0131"},  // the dot of the capital stays, as a character of its own
        {u"\u039F\u0394\u039F\u03A3 \u03A3\u0391", u"\u03BF\u03B4\u03BF\u03C2 \u03C3\u03B1"},  // a sigma at the end of a word
        {u"\U00010400\U0001D11E", u"\U00010428\U0001D11E"},
        {u"A\0B"_ns, u"a\0b"_ns},
    };
    for (const auto& [text, lower] : rows) EXPECT_EQ(text.lowercaseString(), lower);
}

TEST(NSString, LoweringTheCaseKeepsLoneSurrogates) {
    const char16_t lone[] = {u'A', 0xD834, u'B', 0xDD1E, u'C', 0}, lower[] = {u'a', 0xD834, u'b', 0xDD1E, u'c', 0};
    EXPECT_EQ(NSString(lone).lowercaseString(), lower);
}

TEST(NSString, NullInLowerCaseIsNull) { EXPECT_EQ(NSString().lowercaseString(), nullptr); }

TEST(NSString, LoweringTheCaseKnowsNoLanguage) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    const bool isTurkish = std::setlocale(LC_ALL, "tr_TR.utf8");
    const NSString lower = u"TITLE"_ns.lowercaseString();
    std::setlocale(LC_ALL, before.c_str());
    EXPECT_EQ(lower, u"title");
    if (!isTurkish) GTEST_SKIP() << "this system has no Turkish locale";
}

TEST(NSString, LoweringTheCaseOfAMillionUnits) {
    EXPECT_EQ(NSString(std::u16string(1000000, u'A')).lowercaseString(), std::u16string(1000000, u'a'));
    EXPECT_EQ(NSString(std::u16string(100000, u'\u0130')).lowercaseString().length(), 200000u);  // grows
}

// ---- The text of a resource

namespace {

class NSStringFileTest : public testing::Test {
protected:
    NSStringFileTest() {
        std::string pattern = testing::TempDir() + "wq-XXXXXX";
        folder = mkdtemp(pattern.data());
    }
    ~NSStringFileTest() override { std::filesystem::remove_all(folder); }

    NSString textOf(std::string_view bytes) {
        std::ofstream(folder / "a", std::ios::binary) << bytes;
        return read("a");
    }
    NSString read(const char* name) {
        error = nullptr;
        const NSString text = NSString::stringWithContentsOfURL_encoding_error(
            NSURL::fileURLWithPath(wq::fromUTF8((folder / name).string())), NSUTF8StringEncoding, &error);
        EXPECT_EQ(static_cast<bool>(text), error == nullptr);
        return text;
    }
    void expectRefused(std::string_view bytes) {
        SCOPED_TRACE(testing::PrintToString(bytes));
        EXPECT_EQ(textOf(bytes), nullptr);
        EXPECT_EQ(error->domain(), NSCocoaErrorDomain);
        EXPECT_EQ(error->code(), NSFileReadInapplicableStringEncodingError);
        EXPECT_EQ(error->code(), 261);
        EXPECT_NE(error->localizedDescription(), nullptr);
    }

    std::filesystem::path folder;
    Ref<NSError> error;
};

}  // namespace

TEST_F(NSStringFileTest, ReadsUTF8) {
    EXPECT_EQ(textOf("a\r\n\xC3\xA4\xE2\x82\xAC\xF0\x9D\x84\x9E"), u"a\r\n\u00E4\u20AC\U0001D11E");
    EXPECT_EQ(textOf("a\0b"sv), u"a\0b"_ns);
    EXPECT_EQ(textOf("\xF4\x8F\xBF\xBF\xEF\xBF\xBF\xED\x9F\xBF"), u"\U0010FFFF\uFFFF\uD7FF");
    EXPECT_EQ(textOf("\xEF\xBF\xBD"), u"\uFFFD");
}

TEST_F(NSStringFileTest, AnEmptyResourceIsTheEmptyText) { EXPECT_EQ(textOf(""), u""); }

TEST_F(NSStringFileTest, AByteOrderMarkIsACharacter) { EXPECT_EQ(textOf("\xEF\xBB\xBF\x61"), u"\uFEFFa"); }

TEST_F(NSStringFileTest, BytesThatAreNotUTF8AreAnError) {
    for (const auto bytes :
         {"\xFF"sv, "a\xE4z"sv, "\xC3"sv, "\x80"sv, "\xC0\x80"sv, "\xED\xA0\x80"sv, "\xF4\x90\x80\x80"sv, "\xE2\x82"sv, "\xFF\xFE\x61\0"sv})
        expectRefused(bytes);
}

TEST_F(NSStringFileTest, WhatCannotBeReadIsAnError) {
    EXPECT_EQ(read("missing"), nullptr);
    EXPECT_EQ(error->domain(), NSPOSIXErrorDomain);
    EXPECT_EQ(error->code(), ENOENT);
    EXPECT_EQ(read("."), nullptr);
    EXPECT_EQ(error->code(), EISDIR);
}

TEST_F(NSStringFileTest, NobodyNeedsToAskForTheError) {
    const auto url = NSURL::fileURLWithPath(wq::fromUTF8((folder / "missing").string()));
    EXPECT_EQ(NSString::stringWithContentsOfURL_encoding_error(url, NSUTF8StringEncoding, nullptr), nullptr);
    std::ofstream(folder / "missing") << "\xFF";
    EXPECT_EQ(NSString::stringWithContentsOfURL_encoding_error(url, NSUTF8StringEncoding, nullptr), nullptr);
}

TEST_F(NSStringFileTest, ANullURLIsAnError) {
    EXPECT_EQ(NSString::stringWithContentsOfURL_encoding_error(nullptr, NSUTF8StringEncoding, &error), nullptr);
    EXPECT_TRUE(error);
    EXPECT_EQ(NSString::stringWithContentsOfURL_encoding_error(nullptr, NSUTF8StringEncoding, nullptr), nullptr);
}

// ---- Paragraphs

namespace {

struct Bounds {
    uint64_t start, end, contentsEnd;
    bool operator==(const Bounds&) const = default;
};
void PrintTo(const Bounds& bounds, std::ostream* out) { *out << bounds.start << " " << bounds.end << " " << bounds.contentsEnd; }

Bounds paragraphs(const NSString& text, NSRange range) {
    Bounds bounds{99, 99, 99};
    text.getParagraphStart_end_contentsEnd_forRange(&bounds.start, &bounds.end, &bounds.contentsEnd, range);
    return bounds;
}

}  // namespace

TEST(NSStringParagraphs, EndAtFourTerminators) {
    for (const char16_t* terminator : {u"\n", u"\r", u"\u2029"}) {
        const NSString text = NSString(u"ab") + terminator + u"cd";
        SCOPED_TRACE(testing::PrintToString(text));
        for (const uint64_t index : {0u, 1u, 2u}) EXPECT_EQ(paragraphs(text, {index, 0}), (Bounds{0, 3, 2})) << index;
        for (const uint64_t index : {3u, 4u, 5u}) EXPECT_EQ(paragraphs(text, {index, 0}), (Bounds{3, 5, 5})) << index;
    }
    for (const uint64_t index : {0u, 1u, 2u, 3u}) EXPECT_EQ(paragraphs(u"ab\r\ncd", {index, 0}), (Bounds{0, 4, 2})) << index;
    for (const uint64_t index : {4u, 5u, 6u}) EXPECT_EQ(paragraphs(u"ab\r\ncd", {index, 0}), (Bounds{4, 6, 6})) << index;
}

TEST(NSStringParagraphs, EndAtNothingElse) {
    for (const char16_t* other : {u"\u2028", u"\u0085", u"\v", u"\f", u"\u001C", u"\u001D", u"\u001E", u" ", u"\t", u"\u2030"})
        EXPECT_EQ(paragraphs(NSString(u"ab") + other + u"cd", {1, 0}), (Bounds{0, 5, 5})) << testing::PrintToString(NSString(other));
    EXPECT_EQ(paragraphs(u"a\0b"_ns, {0, 0}), (Bounds{0, 3, 3}));
}

TEST(NSStringParagraphs, LFThenCRAreTwoTerminators) {
    EXPECT_EQ(paragraphs(u"a\n\rb", {0, 0}), (Bounds{0, 2, 1}));
    EXPECT_EQ(paragraphs(u"a\n\rb", {2, 0}), (Bounds{2, 3, 2}));
    EXPECT_EQ(paragraphs(u"a\r\r\nb", {0, 0}), (Bounds{0, 2, 1}));
    EXPECT_EQ(paragraphs(u"a\r\r\nb", {2, 0}), (Bounds{2, 4, 2}));
    EXPECT_EQ(paragraphs(u"a\r\n\n", {3, 0}), (Bounds{3, 4, 3}));
}

TEST(NSStringParagraphs, MayBeEmpty) {
    EXPECT_EQ(paragraphs(u"\n\nx", {0, 0}), (Bounds{0, 1, 0}));
    EXPECT_EQ(paragraphs(u"\n\nx", {1, 0}), (Bounds{1, 2, 1}));
    EXPECT_EQ(paragraphs(u"\r\n", {0, 0}), (Bounds{0, 2, 0}));
    EXPECT_EQ(paragraphs(u"", {0, 0}), (Bounds{0, 0, 0}));
}

TEST(NSStringParagraphs, TheEndOfTheTextIsInTheLastParagraph) {
    EXPECT_EQ(paragraphs(u"ab\ncd", {5, 0}), (Bounds{3, 5, 5}));
    EXPECT_EQ(paragraphs(u"ab\n", {3, 0}), (Bounds{3, 3, 3}));
    EXPECT_EQ(paragraphs(u"ab\r\n", {4, 0}), (Bounds{4, 4, 4}));
    EXPECT_EQ(paragraphs(u"ab\r", {3, 0}), (Bounds{3, 3, 3}));
}

TEST(NSStringParagraphs, ARangeTouchesTheParagraphsOfItsUnits) {
    const NSString text = u"ab\ncd\r\nef";
    EXPECT_EQ(paragraphs(text, {1, 1}), (Bounds{0, 3, 2}));
    EXPECT_EQ(paragraphs(text, {1, 2}), (Bounds{0, 3, 2}));  // the terminator included
    EXPECT_EQ(paragraphs(text, {1, 3}), (Bounds{0, 7, 5}));
    EXPECT_EQ(paragraphs(text, {2, 4}), (Bounds{0, 7, 5}));  // up to between CR and LF
    EXPECT_EQ(paragraphs(text, {2, 5}), (Bounds{0, 7, 5}));
    EXPECT_EQ(paragraphs(text, {6, 1}), (Bounds{3, 7, 5}));  // the LF of a pair
    EXPECT_EQ(paragraphs(text, {0, 9}), (Bounds{0, 9, 9}));
    EXPECT_EQ(paragraphs(u"ab\n", {0, 3}), (Bounds{0, 3, 2}));
}

TEST(NSStringParagraphs, PassOverNullPointers) {
    const NSString text = u"ab\ncd\n";
    uint64_t value = 99;
    text.getParagraphStart_end_contentsEnd_forRange(nullptr, nullptr, nullptr, {4, 0});
    text.getParagraphStart_end_contentsEnd_forRange(&value, nullptr, nullptr, {4, 0});
    EXPECT_EQ(value, 3u);
    text.getParagraphStart_end_contentsEnd_forRange(nullptr, &value, nullptr, {4, 0});
    EXPECT_EQ(value, 6u);
    text.getParagraphStart_end_contentsEnd_forRange(nullptr, nullptr, &value, {4, 0});
    EXPECT_EQ(value, 5u);
}

TEST(NSStringParagraphs, ARangePastTheEndRaises) {
    for (const NSRange range : {NSRange{0, 4}, NSRange{3, 1}, NSRange{4, 0}, NSRange{1, UINT64_MAX}, NSRange{NSNotFound, 0}})
        EXPECT_EQ(raised([&] { paragraphs(u"ab\n", range); }), u"NSRangeException") << range.location;
}

TEST(NSStringParagraphs, OfNullAreZeros) {
    EXPECT_EQ(paragraphs(nullptr, {0, 0}), (Bounds{0, 0, 0}));
    EXPECT_EQ(paragraphs(nullptr, {5, 5}), (Bounds{0, 0, 0}));
}

// ---- Copies share their units

TEST(NSString, ACopyDoesNotFollowAChange) {
    NSString first = u"bell";
    const NSString second = first;
    first += u"s";
    EXPECT_EQ(first, u"bells");
    EXPECT_EQ(second, u"bell");
}

TEST(NSString, AnOriginalDoesNotFollowAChangeOfItsCopy) {
    const NSString first = u"bell";
    NSString second = first, third = second;
    second += u"s";
    third += u"!";
    EXPECT_EQ(first, u"bell");
    EXPECT_EQ(second, u"bells");
    EXPECT_EQ(third, u"bell!");
}

TEST(NSString, ACopyOutlivesItsOriginal) {
    NSString copy;
    {
        const NSString original(std::u16string(1000, u'x'));
        copy = original;
    }
    EXPECT_EQ(copy, NSString(std::u16string(1000, u'x')));
}

TEST(NSString, ACopyTakenBetweenTwoChangesStaysAsItWas) {
    NSString growing = u"a";
    std::vector<NSString> stages;
    for (int i = 0; i < 5; ++i) {
        stages.push_back(growing);
        growing += u"b";
    }
    EXPECT_EQ(growing, u"abbbbb");
    EXPECT_EQ(stages, (std::vector<NSString>{u"a", u"ab", u"abb", u"abbb", u"abbbb"}));
}

TEST(NSString, GrowsByItself) {
    NSString string = u"ab";
    string += string;
    EXPECT_EQ(string, u"abab");
    string += string.view().substr(1);
    EXPECT_EQ(string, u"ababbab");
    for (int i = 0; i < 10; ++i) string += string;
    EXPECT_EQ(string.length(), 7u * 1024);
    EXPECT_EQ(string.substringWithRange({7 * 1023, 7}), u"ababbab");
}

TEST(NSString, GrowsUnitByUnit) {
    NSString string;
    std::u16string expected;
    for (char16_t unit = u'a'; unit < u'a' + 2000; ++unit) {
        string += std::u16string_view(&unit, 1);
        expected += unit;
    }
    EXPECT_EQ(string, NSString(expected));
}

TEST(NSString, NothingAddedToNullGivesTheEmptyString) {
    NSString string;
    string += u"";
    EXPECT_EQ(string, u"");
    EXPECT_TRUE(static_cast<bool>(string));
}

TEST(NSString, AStringAssignedToItselfStays) {
    NSString string = u"bell";
    const NSString& same = string;
    string = same;
    EXPECT_EQ(string, u"bell");
}

TEST(NSString, AStringThatWasMovedFromIsNull) {
    NSString from = u"bell";
    const NSString to = std::move(from);
    EXPECT_EQ(to, u"bell");
    EXPECT_EQ(from, nullptr);  // NOLINT(bugprone-use-after-move)
}

TEST(NSString, EqualUnitsAreEqualWhetherSharedOrNot) {
    const NSString first = u"bell", shared = first, other = u"bell", greater = u"bells";
    EXPECT_EQ(first, shared);
    EXPECT_EQ(first, other);
    EXPECT_EQ(first <=> shared, std::strong_ordering::equal);
    EXPECT_EQ(first <=> other, std::strong_ordering::equal);
    EXPECT_EQ(first <=> greater, std::strong_ordering::less);
    EXPECT_EQ(NSString() <=> NSString(), std::strong_ordering::equal);
    EXPECT_EQ(NSString() <=> NSString(u""), std::strong_ordering::less);
}

TEST(NSString, AResultSharesNothingWithItsSource) {
    NSString source = u"near bell";
    NSString part = source.substringWithRange({5, 4}), whole = source.substringWithRange({0, 9});
    NSString replaced = source.stringByReplacingCharactersInRange_withString({0, 0}, u"");
    source += u"?";
    part += u"!";
    EXPECT_EQ(part, u"bell!");
    EXPECT_EQ(whole, u"near bell");
    EXPECT_EQ(replaced, u"near bell");
}

TEST(NSString, ReplacesByAPartOfItself) {
    const NSString text = u"abcdef";
    EXPECT_EQ(text.stringByReplacingCharactersInRange_withString({1, 2}, text), u"aabcdefdef");
    EXPECT_EQ(text.stringByReplacingCharactersInRange_withString({0, 6}, text.view().substr(2, 3)), u"cde");
}

// The first characters beyond ASCII stand at every place of a step of the conversion.
TEST(NSString, CrossesToUTF8AndBackWhereverTheFirstOtherCharacterStands) {
    const std::pair<const char16_t*, const char*> others[] = {
        {u"\u00E4", "\xC3\xA4"}, {u"\u20AC", "\xE2\x82\xAC"}, {u"\U0001D11E", "\xF0\x9D\x84\x9E"}, {u"\u007F\u0080", "\x7F\xC2\x80"}};
    const size_t lengthsBehind[] = {0, 1, 7, 8, 9};
    for (size_t ahead = 0; ahead <= 18; ++ahead)
        for (const size_t behind : lengthsBehind)
            for (const auto& [units, bytes] : others) {
                const std::u16string text = std::u16string(ahead, u'x') + units + std::u16string(behind, u'y');
                const std::string utf8 = std::string(ahead, 'x') + bytes + std::string(behind, 'y');
                EXPECT_EQ(wq::toUTF8(text), utf8);
                EXPECT_EQ(wq::fromUTF8(utf8), NSString(text));
            }
}

TEST(NSString, CrossesPlainTextOfEveryLength) {
    for (size_t length = 0; length <= 40; ++length) {
        EXPECT_EQ(wq::toUTF8(std::u16string(length, u'\x7F')), std::string(length, '\x7F'));
        EXPECT_EQ(wq::fromUTF8(std::string(length, '\0')), NSString(std::u16string(length, u'\0')));
    }
}

TEST(NSString, ALoneSurrogateBehindPlainTextIsReplaced) {
    const char16_t lone[] = {u'a', u'b', 0xD834, u'c', 0};
    EXPECT_EQ(
        wq::toUTF8(lone),
        "ab\xEF\xBF\xBD"
        "c");
    const char16_t last[] = {u'a', u'b', u'c', u'd', u'e', u'f', u'g', u'h', 0xDD1E, 0};
    EXPECT_EQ(wq::toUTF8(last), "abcdefgh\xEF\xBF\xBD");
}
