#include "platform/NSAttributedString.h"

#include <gtest/gtest.h>

#include "platform/NSAttributeNames.h"
#include "platform/NSColor.h"
#include "platform/NSFont.h"
#include "platform/NSMutableAttributedString.h"
#include "platform/NSMutableParagraphStyle.h"
#include "platform/NSURL.h"
#include "tests/platform/AttributedText.h"
#include "tests/platform/Raised.h"

namespace {

using test::nameRaised;
using test::runsOf;
using test::with;

using Lists = std::vector<Ref<NSTextList>>;

Ref<NSTextList> newList() { return NSTextList::textListWithMarkerFormat(u"{disc}"); }

Ref<NSParagraphStyle> styleInLists(Lists lists) {
    auto style = NSParagraphStyle::defaultParagraphStyle()->mutableCopy();
    style->setTextLists(std::move(lists));
    return style;
}

struct Part {
    NSString text;
    Ref<NSDictionary> attributes;
};

Ref<NSAttributedString> textOf(const std::vector<Part>& parts) {
    auto text = NSMutableAttributedString::newWithString(u"");
    for (const auto& [part, attributes] : parts)
        text->appendAttributedString(NSAttributedString::attributedStringWithString_attributes(part, attributes));
    return text;
}

// Paragraphs, each in its lists.
Ref<NSAttributedString> paragraphs(const std::vector<std::pair<NSString, Lists>>& all) {
    std::vector<Part> parts;
    for (const auto& [text, lists] : all) parts.push_back({text, with(NSParagraphStyleAttributeName, styleInLists(lists))});
    return textOf(parts);
}

// "one" in a, "two" in a and b, "three" in b.
Ref<NSAttributedString> oneTwoThree() {
    return textOf(
        {{u"one", with(u"a", u"1")}, {u"two", NSDictionary::dictionary({{u"a", u"1"}, {u"b", u"2"}})}, {u"three", with(u"b", u"2")}});
}

constexpr NSRange unset{99, 99};

}  // namespace

TEST(NSAttributedString, HoldsATextAndItsAttributes) {
    const auto text = NSAttributedString::newWithString_attributes(u"a\U0001D11Eb", with(u"a", u"1"));
    EXPECT_EQ(text->string(), u"a\U0001D11Eb");
    EXPECT_EQ(text->length(), 4u);
    EXPECT_EQ(
        runsOf(text),
        "a\xF0\x9D\x84\x9E"
        "b[a=1]");
}

TEST(NSAttributedString, ATextWithoutAttributesHasEmptyOnes) {
    EXPECT_EQ(runsOf(NSAttributedString::newWithString(u"x")), "x[]");
    EXPECT_EQ(runsOf(NSAttributedString::attributedStringWithString_attributes(u"x", nullptr)), "x[]");
    EXPECT_EQ(runsOf(NSAttributedString::attributedStringWithString_attributes(u"x", NSDictionary::dictionary())), "x[]");
}

TEST(NSAttributedString, TheEmptyTextHasNoRun) {
    const auto empty = NSAttributedString::newWithString_attributes(u"", with(u"a", u"1"));
    ASSERT_TRUE(empty);
    EXPECT_EQ(empty->string(), u"");
    EXPECT_EQ(empty->length(), 0u);
    EXPECT_EQ(runsOf(empty), "");
}

TEST(NSAttributedString, IsNullForANullText) {
    EXPECT_FALSE(NSAttributedString::newWithString(nullptr));
    EXPECT_FALSE(NSAttributedString::newWithString_attributes(nullptr, with(u"a", u"1")));
    EXPECT_FALSE(NSAttributedString::attributedStringWithString_attributes(nullptr, nullptr));
}

TEST(NSAttributedString, TakesTheAttributesAsTheyAreWhenItIsMade) {
    const auto attributes = with(u"a", u"1");
    const auto text = NSAttributedString::newWithString_attributes(u"x", attributes);
    attributes->setObject_forKey(u"2", u"a");
    EXPECT_EQ(runsOf(text), "x[a=1]");
}

TEST(NSAttributedString, WhatItAnswersCanBeChangedWithoutHarm) {
    const auto text = NSAttributedString::newWithString_attributes(u"x", with(u"a", u"1"));
    text->attributesAtIndex_effectiveRange(0, nullptr)->removeObjectForKey(u"a");
    text->attributesAtIndex_longestEffectiveRange_inRange(0, nullptr, {0, 1})->removeObjectForKey(u"a");
    EXPECT_EQ(runsOf(text), "x[a=1]");
}

TEST(NSAttributedString, ANullValueIsTheSameAsNone) {
    const auto text = textOf({{u"x", with(u"a", nullptr)}, {u"y", nullptr}});
    EXPECT_FALSE(text->attributesAtIndex_effectiveRange(0, nullptr)->containsKey(u"a"));
    EXPECT_EQ(runsOf(text), "xy[]");
}

TEST(NSAttributedString, AnswersTheAttributesAndTheRunAtEachIndex) {
    const auto text = oneTwoThree();
    EXPECT_EQ(runsOf(text), "one[a=1]two[a=1 b=2]three[b=2]");
    for (uint64_t index = 0; index < 11; ++index) {
        SCOPED_TRACE(index);
        const NSRange expected = index < 3 ? NSRange{0, 3} : index < 6 ? NSRange{3, 3} : NSRange{6, 5};
        NSRange run = unset;
        const auto attributes = text->attributesAtIndex_effectiveRange(index, &run);
        EXPECT_EQ(attributes->containsKey(u"a"), index < 6);
        EXPECT_EQ(attributes->containsKey(u"b"), index >= 3);
        EXPECT_EQ(run, expected);
    }
}

TEST(NSAttributedString, OneAttributeComesWithTheRunAsItIsStored) {
    const auto text = oneTwoThree();
    NSRange run = unset;
    EXPECT_EQ(text->attribute_atIndex_effectiveRange(u"a", 4, &run).string(), u"1");
    EXPECT_EQ(run, (NSRange{3, 3}));
    EXPECT_FALSE(text->attribute_atIndex_effectiveRange(u"a", 6, &run));
    EXPECT_EQ(run, (NSRange{6, 5}));
    EXPECT_FALSE(text->attribute_atIndex_effectiveRange(nullptr, 0, &run));
    EXPECT_EQ(run, (NSRange{0, 3}));
}

TEST(NSAttributedString, TheLongestRangeOfAnAttributeSpansRuns) {
    const auto text = oneTwoThree();
    const struct {
        const char16_t* name;
        uint64_t index;
        NSRange limit, range;
        const char16_t* value;
    } rows[] = {
        {u"a", 0, {0, 11}, {0, 6}, u"1"},     {u"a", 5, {0, 11}, {0, 6}, u"1"}, {u"a", 6, {0, 11}, {6, 5}, nullptr},
        {u"b", 2, {0, 11}, {0, 3}, nullptr},  {u"b", 3, {0, 11}, {3, 8}, u"2"}, {u"b", 10, {0, 11}, {3, 8}, u"2"},
        {u"c", 4, {0, 11}, {0, 11}, nullptr}, {u"a", 4, {1, 4}, {1, 4}, u"1"},  {u"a", 4, {4, 5}, {4, 2}, u"1"},
        {u"b", 3, {3, 3}, {3, 3}, u"2"},      {u"b", 6, {5, 3}, {5, 3}, u"2"},  {u"c", 4, {4, 1}, {4, 1}, nullptr},
        {u"a", 7, {2, 9}, {6, 5}, nullptr},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(
            testing::Message() << wq::toUTF8(row.name) << " at " << row.index << " in {" << row.limit.location << ", " << row.limit.length
                               << "}");
        NSRange range = unset;
        EXPECT_EQ(
            text->attribute_atIndex_longestEffectiveRange_inRange(row.name, row.index, &range, row.limit).string(), NSString(row.value));
        EXPECT_EQ(range, row.range);
    }
}

TEST(NSAttributedString, TheLongestRangeOfAllAttributesIsTheRunCutToTheLimit) {
    const auto text = oneTwoThree();
    NSRange range = unset;
    EXPECT_EQ(test::printed(text->attributesAtIndex_longestEffectiveRange_inRange(4, &range, {0, 11})), "a=1 b=2");
    EXPECT_EQ(range, (NSRange{3, 3}));
    text->attributesAtIndex_longestEffectiveRange_inRange(4, &range, {4, 7});
    EXPECT_EQ(range, (NSRange{4, 2}));
    text->attributesAtIndex_longestEffectiveRange_inRange(4, &range, {1, 4});
    EXPECT_EQ(range, (NSRange{3, 2}));
}

TEST(NSAttributedString, NullPointersToARangeArePassedOver) {
    const auto text = oneTwoThree();
    EXPECT_TRUE(text->attributesAtIndex_effectiveRange(0, nullptr));
    EXPECT_TRUE(text->attributesAtIndex_longestEffectiveRange_inRange(0, nullptr, {0, 1}));
    EXPECT_EQ(text->attribute_atIndex_effectiveRange(u"a", 0, nullptr).string(), u"1");
    EXPECT_EQ(text->attribute_atIndex_longestEffectiveRange_inRange(u"a", 0, nullptr, {0, 1}).string(), u"1");
}

TEST(NSAttributedString, AnIndexAtOrPastTheEndRaises) {
    const auto list = newList();
    for (const auto& text : {oneTwoThree(), NSAttributedString::newWithString(u"")})
        for (const uint64_t index : {text->length(), text->length() + 1, NSNotFound, UINT64_MAX}) {
            SCOPED_TRACE(index);
            NSRange range = unset;
            const NSRange all{0, text->length()};
            EXPECT_EQ(nameRaised([&] { text->attributesAtIndex_effectiveRange(index, &range); }), u"NSRangeException");
            EXPECT_EQ(nameRaised([&] { text->attributesAtIndex_longestEffectiveRange_inRange(index, &range, all); }), u"NSRangeException");
            EXPECT_EQ(nameRaised([&] { text->attribute_atIndex_effectiveRange(u"a", index, &range); }), u"NSRangeException");
            EXPECT_EQ(
                nameRaised([&] { text->attribute_atIndex_longestEffectiveRange_inRange(u"a", index, &range, all); }), u"NSRangeException");
            EXPECT_EQ(nameRaised([&] { text->rangeOfTextList_atIndex(list, index); }), u"NSRangeException");
            EXPECT_EQ(nameRaised([&] { text->itemNumberInTextList_atIndex(list, index); }), u"NSRangeException");
            EXPECT_EQ(range, unset);
        }
}

TEST(NSAttributedString, ALimitPastTheEndOrBesideTheIndexRaises) {
    const auto text = oneTwoThree();
    for (const NSRange limit : {NSRange{0, 12}, NSRange{12, 0}, NSRange{4, UINT64_MAX}, NSRange{5, 2}, NSRange{0, 4}, NSRange{4, 0}}) {
        SCOPED_TRACE(testing::Message() << "{" << limit.location << ", " << limit.length << "}");
        EXPECT_EQ(nameRaised([&] { text->attribute_atIndex_longestEffectiveRange_inRange(u"a", 4, nullptr, limit); }), u"NSRangeException");
        EXPECT_EQ(nameRaised([&] { text->attributesAtIndex_longestEffectiveRange_inRange(4, nullptr, limit); }), u"NSRangeException");
    }
}

// ---- What counts as equal

TEST(NSAttributedString, RunsThatTouchAndAreEqualAreOne) {
    EXPECT_EQ(runsOf(textOf({{u"x", with(u"a", u"1")}, {u"y", with(u"a", u"1")}, {u"z", with(u"a", u"2")}})), "xy[a=1]z[a=2]");
    EXPECT_EQ(runsOf(textOf({{u"x", with(u"a", u"1")}, {u"", with(u"a", u"2")}, {u"y", with(u"a", u"1")}})), "xy[a=1]");
}

TEST(NSAttributedString, ValuesThatSayTheSameMakeOneRun) {
    const auto style = [](double indent) {
        auto made = NSParagraphStyle::defaultParagraphStyle()->mutableCopy();
        made->setHeadIndent(indent);
        return made;
    };
    const std::pair<NSValue, NSValue> same[] = {
        {1.0, 1.0},
        {true, true},
        {u"text", u"text"},
        {NSColor::colorWithSRGBRed_green_blue_alpha(1, 0, 0, 1), NSColor::colorWithSRGBRed_green_blue_alpha(1, 0, 0, 1)},
        {NSColor::textColor(), NSColor::textColor()},
        {NSFont::userFontOfSize(12), NSFont::userFontOfSize(12)},
        {style(3), style(3)},
        {NSParagraphStyle::defaultParagraphStyle(), style(0)},
        {NSURL::URLWithString(u"http://wq.invalid/"), NSURL::URLWithString(u"http://wq.invalid/")},
        {with(u"a", style(3)), with(u"a", style(3))},
    };
    for (const auto& [one, other] : same)
        EXPECT_EQ(runsOf(textOf({{u"x", with(u"v", one)}, {u"y", with(u"v", other)}})).substr(0, 3), "xy[") << &one - &same[0].first;
}

TEST(NSAttributedString, ValuesThatDifferMakeTwoRuns) {
    const auto one = newList(), other = newList();
    const std::pair<NSValue, NSValue> different[] = {
        {1.0, 2.0},
        {true, 1.0},
        {u"text", u"Text"},
        {1.0, nullptr},
        {NSColor::colorWithSRGBRed_green_blue_alpha(1, 0, 0, 1), NSColor::colorWithSRGBRed_green_blue_alpha(1, 0, 0, 0.5)},
        {NSColor::colorWithSRGBRed_green_blue_alpha(0, 0, 0, 1), NSColor::colorWithDeviceRed_green_blue_alpha(0, 0, 0, 1)},
        {NSColor::textColor(), NSColor::colorWithSRGBRed_green_blue_alpha(0, 0, 0, 1)},
        {NSFont::userFontOfSize(12), NSFont::userFontOfSize(13)},
        {styleInLists({one}), styleInLists({other})},
        {NSURL::URLWithString(u"http://wq.invalid/"), NSURL::URLWithString(u"http://WQ.invalid/")},
        {NSURL::URLWithString(u"x"), u"x"},
        {NSTextBlock::textBlock(), NSTextBlock::textBlock()},
        {with(u"a", 1.0), with(u"a", 2.0)},
        {with(u"a", 1.0), with(u"b", 1.0)},
        {with(u"a", 1.0), NSDictionary::dictionary({{u"a", 1.0}, {u"b", 1.0}})},
    };
    for (const auto& [left, right] : different) {
        NSRange run;
        textOf({{u"x", with(u"v", left)}, {u"y", with(u"v", right)}})->attributesAtIndex_effectiveRange(0, &run);
        EXPECT_EQ(run, (NSRange{0, 1})) << &left - &different[0].first;
    }
}

TEST(NSAttributedString, TheLongestRangeComparesValuesByWhatTheySay) {
    const auto link = [] { return NSURL::URLWithString(u"http://wq.invalid/"); };
    const auto text = textOf(
        {{u"x", NSDictionary::dictionary({{u"link", link()}, {u"bold", true}})},
         {u"y", with(u"link", link())},
         {u"z", with(u"link", u"http://wq.invalid/")}});
    NSRange range;
    text->attribute_atIndex_longestEffectiveRange_inRange(u"link", 1, &range, {0, 3});
    EXPECT_EQ(range, (NSRange{0, 2}));
}

TEST(NSAttributedString, EqualsATextOfTheSameCharactersAndAttributes) {
    const auto text = oneTwoThree();
    EXPECT_TRUE(text->isEqual(text));
    EXPECT_TRUE(text->isEqual(oneTwoThree()));
    EXPECT_TRUE(text->isEqual(text->attributedSubstringFromRange({0, 11})));
    EXPECT_TRUE(NSAttributedString::newWithString(u"")->isEqual(NSAttributedString::newWithString_attributes(u"", with(u"a", u"1"))));
    EXPECT_TRUE(NSAttributedString::newWithString(u"x")->isEqual(NSMutableAttributedString::newWithString(u"x")));
    EXPECT_TRUE(NSMutableAttributedString::newWithString(u"x")->isEqual(NSAttributedString::newWithString(u"x")));
}

TEST(NSAttributedString, DiffersInTextRunsAndValues) {
    const auto text = oneTwoThree();
    EXPECT_FALSE(text->isEqual(NSAttributedString::newWithString(u"onetwothree")));
    EXPECT_FALSE(text->isEqual(text->attributedSubstringFromRange({0, 10})));
    const auto x = NSAttributedString::newWithString_attributes(u"xx", with(u"a", u"1"));
    EXPECT_FALSE(x->isEqual(NSAttributedString::newWithString_attributes(u"xy", with(u"a", u"1"))));
    EXPECT_FALSE(x->isEqual(NSAttributedString::newWithString_attributes(u"xx", with(u"a", u"2"))));
    EXPECT_FALSE(x->isEqual(NSAttributedString::newWithString_attributes(u"xx", with(u"b", u"1"))));
    EXPECT_FALSE(x->isEqual(textOf({{u"x", with(u"a", u"1")}, {u"x", nullptr}})));
    EXPECT_FALSE(x->isEqual(nullptr));
    EXPECT_FALSE(x->isEqual(with(u"a", u"1")));
}

TEST(NSAttributedString, ASubstringKeepsTheAttributesOfItsCharacters) {
    const auto text = oneTwoThree();
    EXPECT_EQ(runsOf(text->attributedSubstringFromRange({0, 11})), "one[a=1]two[a=1 b=2]three[b=2]");
    EXPECT_EQ(runsOf(text->attributedSubstringFromRange({1, 6})), "ne[a=1]two[a=1 b=2]t[b=2]");
    EXPECT_EQ(runsOf(text->attributedSubstringFromRange({3, 3})), "two[a=1 b=2]");
    EXPECT_EQ(runsOf(text->attributedSubstringFromRange({4, 1})), "w[a=1 b=2]");
    EXPECT_EQ(runsOf(text->attributedSubstringFromRange({10, 1})), "e[b=2]");
    EXPECT_EQ(text->attributedSubstringFromRange({11, 0})->string(), u"");
    EXPECT_EQ(text->attributedSubstringFromRange({4, 0})->string(), u"");
}

TEST(NSAttributedString, ASubstringOfATextThatChangesDoesNot) {
    const auto text = NSMutableAttributedString::newWithString_attributes(u"xyz", with(u"a", u"1"));
    const auto part = text->attributedSubstringFromRange({0, 2});
    EXPECT_FALSE(wq::cast<NSMutableAttributedString>(part));
    text->addAttribute_value_range(u"b", u"2", {0, 3});
    text->deleteCharactersInRange({0, 1});
    EXPECT_EQ(runsOf(part), "xy[a=1]");
}

TEST(NSAttributedString, ASubstringPastTheEndRaises) {
    const auto text = oneTwoThree();
    for (const NSRange range : {NSRange{0, 12}, NSRange{11, 1}, NSRange{12, 0}, NSRange{1, UINT64_MAX}, NSRange{NSNotFound, 0}})
        EXPECT_EQ(nameRaised([&] { text->attributedSubstringFromRange(range); }), u"NSRangeException") << range.location;
}

// ---- Lists

TEST(NSAttributedString, TheRangeOfAListIsItsParagraphs) {
    const auto list = newList();
    const auto text = paragraphs({{u"before\n", {}}, {u"one\n", {list}}, {u"two\n", {list}}, {u"after", {}}});
    for (uint64_t index = 0; index < text->length(); ++index) {
        const bool isInside = index >= 7 && index < 15;
        EXPECT_EQ(text->rangeOfTextList_atIndex(list, index), (isInside ? NSRange{7, 8} : NSRange{NSNotFound, 0})) << index;
        EXPECT_EQ(text->itemNumberInTextList_atIndex(list, index), !isInside ? 0 : index < 11 ? 1 : 2) << index;
    }
}

TEST(NSAttributedString, AListMayReachFromTheStartToTheEnd) {
    const auto list = newList();
    const auto text = paragraphs({{u"one\r\ntwo\u2029", {list}}, {u"three", {list}}});
    EXPECT_EQ(text->rangeOfTextList_atIndex(list, 0), (NSRange{0, 14}));
    EXPECT_EQ(text->rangeOfTextList_atIndex(list, 4), (NSRange{0, 14}));
    EXPECT_EQ(text->rangeOfTextList_atIndex(list, 13), (NSRange{0, 14}));
    EXPECT_EQ(text->itemNumberInTextList_atIndex(list, 4), 1);
    EXPECT_EQ(text->itemNumberInTextList_atIndex(list, 5), 2);
    EXPECT_EQ(text->itemNumberInTextList_atIndex(list, 9), 3);
}

TEST(NSAttributedString, AParagraphInBetweenPartsAList) {
    const auto list = newList();
    const auto text = paragraphs({{u"a\n", {list}}, {u"b\n", {}}, {u"c\nd\n", {list}}});
    EXPECT_EQ(text->rangeOfTextList_atIndex(list, 0), (NSRange{0, 2}));
    EXPECT_EQ(text->rangeOfTextList_atIndex(list, 4), (NSRange{4, 4}));
    EXPECT_EQ(text->itemNumberInTextList_atIndex(list, 4), 1);
    EXPECT_EQ(text->itemNumberInTextList_atIndex(list, 6), 2);
}

TEST(NSAttributedString, ListsOfTheSameFormatAreTwo) {
    const auto one = newList(), other = newList();
    const auto text = paragraphs({{u"a\n", {one}}, {u"b\n", {other}}});
    EXPECT_EQ(text->rangeOfTextList_atIndex(one, 0), (NSRange{0, 2}));
    EXPECT_EQ(text->rangeOfTextList_atIndex(other, 2), (NSRange{2, 2}));
    EXPECT_EQ(text->rangeOfTextList_atIndex(other, 0), (NSRange{NSNotFound, 0}));
    EXPECT_EQ(text->itemNumberInTextList_atIndex(other, 2), 1);
}

TEST(NSAttributedString, AnInnerListBelongsToTheItemBeforeIt) {
    const auto outer = newList(), inner = newList(), second = newList();
    const auto text = paragraphs(
        {{u"A\n", {outer}},
         {u"a\n", {outer, inner}},
         {u"b\n", {outer, inner}},
         {u"B\n", {outer}},
         {u"c\n", {outer, second}},
         {u"C\n", {outer}}});
    const long outerNumbers[] = {1, 1, 1, 2, 2, 3}, innerNumbers[] = {0, 1, 2, 0, 0, 0};
    for (uint64_t paragraph = 0; paragraph < 6; ++paragraph) {
        SCOPED_TRACE(paragraph);
        EXPECT_EQ(text->rangeOfTextList_atIndex(outer, 2 * paragraph), (NSRange{0, 12}));
        EXPECT_EQ(text->itemNumberInTextList_atIndex(outer, 2 * paragraph), outerNumbers[paragraph]);
        EXPECT_EQ(text->itemNumberInTextList_atIndex(inner, 2 * paragraph + 1), innerNumbers[paragraph]);
    }
    EXPECT_EQ(text->rangeOfTextList_atIndex(inner, 3), (NSRange{2, 4}));
    EXPECT_EQ(text->rangeOfTextList_atIndex(second, 8), (NSRange{8, 2}));
}

TEST(NSAttributedString, AnInnerListAheadOfTheFirstItemHasNone) {
    const auto outer = newList(), inner = newList();
    const auto text = paragraphs({{u"a\n", {outer, inner}}, {u"A\n", {outer}}});
    EXPECT_EQ(text->rangeOfTextList_atIndex(outer, 0), (NSRange{0, 4}));
    EXPECT_EQ(text->itemNumberInTextList_atIndex(outer, 0), 0);
    EXPECT_EQ(text->itemNumberInTextList_atIndex(outer, 2), 1);
}

TEST(NSAttributedString, AParagraphIsInTheListsOfItsFirstCharacter) {
    const auto list = newList();
    const auto text = paragraphs({{u"one ", {list}}, {u"more\n", {}}, {u"two ", {}}, {u"more\n", {list}}});
    EXPECT_EQ(text->rangeOfTextList_atIndex(list, 6), (NSRange{0, 9}));
    EXPECT_EQ(text->itemNumberInTextList_atIndex(list, 6), 1);
    EXPECT_EQ(text->rangeOfTextList_atIndex(list, 15), (NSRange{NSNotFound, 0}));
    EXPECT_EQ(text->itemNumberInTextList_atIndex(list, 15), 0);
}

TEST(NSAttributedString, OtherAttributesDoNotPartAList) {
    const auto list = newList();
    const auto style = styleInLists({list});
    const auto text = textOf(
        {{u"one", with(NSParagraphStyleAttributeName, style)},
         {u" bold", NSDictionary::dictionary({{NSParagraphStyleAttributeName, style}, {u"b", true}})},
         {u"\ntwo", with(NSParagraphStyleAttributeName, style)}});
    EXPECT_EQ(text->rangeOfTextList_atIndex(list, 5), (NSRange{0, 12}));
    EXPECT_EQ(text->itemNumberInTextList_atIndex(list, 11), 2);
}

TEST(NSAttributedString, NothingIsInTheNullList) {
    const auto text = paragraphs({{u"a\n", {}}, {u"b\n", {newList()}}});
    EXPECT_EQ(text->rangeOfTextList_atIndex(nullptr, 0), (NSRange{NSNotFound, 0}));
    EXPECT_EQ(text->itemNumberInTextList_atIndex(nullptr, 2), 0);
    EXPECT_EQ(NSAttributedString::newWithString(u"x")->rangeOfTextList_atIndex(newList(), 0), (NSRange{NSNotFound, 0}));
}

// ---- Classes and null

TEST(NSAttributedString, ASubclassDecidesAboutTheText) {
    struct Loud : NSAttributedString {
        bool initWithString_attributes(const NSString& text, const Ref<NSDictionary>& attributes) override {
            return NSAttributedString::initWithString_attributes(text + u"!", attributes);
        }
    };
    EXPECT_EQ(runsOf(NSAttributedString::newWithString_attributes<Loud>(u"x", with(u"a", u"1"))), "x![a=1]");
    EXPECT_EQ(runsOf(NSAttributedString::newWithString<Loud>(u"x")), "x![]");
}

TEST(NSAttributedString, NullAnswersNothingAndNeverRaises) {
    const Ref<NSAttributedString> null;
    NSRange range = unset;
    EXPECT_EQ(null->string(), nullptr);
    EXPECT_EQ(null->length(), 0u);
    EXPECT_FALSE(null->attributesAtIndex_effectiveRange(7, &range));
    EXPECT_EQ(range, (NSRange{0, 0}));
    EXPECT_FALSE(null->attribute_atIndex_effectiveRange(u"a", 7, nullptr));
    EXPECT_FALSE(null->attribute_atIndex_longestEffectiveRange_inRange(u"a", 7, &(range = unset), {3, 4}));
    EXPECT_EQ(range, (NSRange{0, 0}));
    EXPECT_FALSE(null->attributedSubstringFromRange({3, 4}));
    EXPECT_FALSE(null->isEqual(null));
    EXPECT_FALSE(null->isEqual(NSAttributedString::newWithString(u"")));
}
