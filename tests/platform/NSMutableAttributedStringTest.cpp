#include "platform/NSMutableAttributedString.h"

#include <gtest/gtest.h>

#include "platform/NSAttributeNames.h"
#include "platform/NSMutableParagraphStyle.h"
#include "platform/NSTextList.h"
#include "tests/platform/AttributedText.h"
#include "tests/platform/Raised.h"

namespace {

using test::nameRaised;
using test::runsOf;
using test::with;

// "one" with a=1, "two" with b=2.
Ref<NSMutableAttributedString> oneTwo() {
    auto text = NSMutableAttributedString::newWithString_attributes(u"one", with(u"a", u"1"));
    text->appendAttributedString(NSAttributedString::newWithString_attributes(u"two", with(u"b", u"2")));
    return text;
}

// What becomes of oneTwo().
template <class Edit> std::string edited(Edit edit) {
    const auto text = oneTwo();
    edit(text);
    return runsOf(text);
}

constexpr NSRange pastTheEnd[] = {{0, 7}, {6, 1}, {7, 0}, {1, UINT64_MAX}, {NSNotFound, 0}};

}  // namespace

TEST(NSMutableAttributedString, IsMadeAsTheOtherTextIs) {
    const Ref<NSMutableAttributedString> one = NSMutableAttributedString::newWithString_attributes(u"x", with(u"a", u"1"));
    const Ref<NSMutableAttributedString> two = NSMutableAttributedString::attributedStringWithString_attributes(u"y", with(u"a", u"2"));
    EXPECT_EQ(runsOf(one), "x[a=1]");
    EXPECT_EQ(runsOf(two), "y[a=2]");
    EXPECT_EQ(runsOf(NSMutableAttributedString::newWithString(u"z")), "z[]");
    EXPECT_FALSE(NSMutableAttributedString::newWithString(nullptr));
    EXPECT_FALSE(NSMutableAttributedString::newWithString_attributes(nullptr, nullptr));
}

// ---- Appending

TEST(NSMutableAttributedString, AppendsTextWithItsAttributes) {
    const auto text = NSMutableAttributedString::newWithString(u"");
    text->appendAttributedString(oneTwo());
    text->appendAttributedString(NSAttributedString::newWithString(u"!"));
    EXPECT_EQ(text->string(), u"onetwo!");
    EXPECT_EQ(runsOf(text), "one[a=1]two[b=2]![]");
}

TEST(NSMutableAttributedString, AppendingJoinsAtTheSeam) {
    const auto text = oneTwo();
    text->appendAttributedString(NSAttributedString::newWithString_attributes(u"more", with(u"b", u"2")));
    EXPECT_EQ(runsOf(text), "one[a=1]twomore[b=2]");
}

TEST(NSMutableAttributedString, AppendsItself) {
    const auto text = oneTwo();
    text->appendAttributedString(text);
    EXPECT_EQ(runsOf(text), "one[a=1]two[b=2]one[a=1]two[b=2]");
    const auto single = NSMutableAttributedString::newWithString(u"x");
    single->appendAttributedString(single);
    EXPECT_EQ(runsOf(single), "xx[]");
}

TEST(NSMutableAttributedString, AppendingNullOrNothingChangesNothing) {
    const auto text = oneTwo();
    text->appendAttributedString(nullptr);
    text->appendAttributedString(NSAttributedString::newWithString_attributes(u"", with(u"c", u"3")));
    EXPECT_EQ(runsOf(text), "one[a=1]two[b=2]");
}

TEST(NSMutableAttributedString, WhatWasAppendedStaysAsItWas) {
    const auto text = NSMutableAttributedString::newWithString(u""), other = oneTwo();
    text->appendAttributedString(other);
    other->setAttributes_range(nullptr, {0, 6});
    EXPECT_EQ(runsOf(text), "one[a=1]two[b=2]");
    text->removeAttribute_range(u"a", {0, 6});
    text->removeAttribute_range(u"b", {0, 6});
    EXPECT_EQ(runsOf(text), "onetwo[]");
}

// ---- Replacing

TEST(NSMutableAttributedString, NewTextTakesTheAttributesOfTheFirstCharacterThatItReplaces) {
    const struct {
        NSRange range;
        const char16_t* string;
        const char* runs;
    } rows[] = {
        {{0, 1}, u"O", "One[a=1]two[b=2]"},
        {{1, 2}, u"", "o[a=1]two[b=2]"},
        {{2, 2}, u"-", "on-[a=1]wo[b=2]"},
        {{3, 1}, u"T", "one[a=1]Two[b=2]"},
        {{3, 3}, u"three", "one[a=1]three[b=2]"},
        {{5, 1}, u"OO", "one[a=1]twOO[b=2]"},
        {{0, 6}, u"all", "all[a=1]"},
        {{0, 3}, u"", "two[b=2]"},
        {{3, 3}, u"", "one[a=1]"},
        {{0, 6}, u"", ""},
        {{1, 4}, u"", "o[a=1]o[b=2]"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(edited([&](auto& text) { text->replaceCharactersInRange_withString(row.range, row.string); }), row.runs);
}

TEST(NSMutableAttributedString, TextThatReplacesNothingTakesTheAttributesBeforeIt) {
    const std::pair<uint64_t, const char*> rows[] = {
        {0, "-one[a=1]two[b=2]"}, {1, "o-ne[a=1]two[b=2]"}, {3, "one-[a=1]two[b=2]"}, {4, "one[a=1]t-wo[b=2]"}, {6, "one[a=1]two-[b=2]"}};
    for (const auto& row : rows)
        EXPECT_EQ(edited([&](auto& text) { text->replaceCharactersInRange_withString({row.first, 0}, u"-"); }), row.second) << row.first;
}

TEST(NSMutableAttributedString, TextInAnEmptyTextHasNoAttributes) {
    const auto text = NSMutableAttributedString::newWithString_attributes(u"", with(u"a", u"1"));
    text->replaceCharactersInRange_withString({0, 0}, u"x");
    EXPECT_EQ(runsOf(text), "x[]");
}

TEST(NSMutableAttributedString, ATextWhoseCharactersAllWentForgetsTheirAttributes) {
    const auto text = oneTwo();
    text->deleteCharactersInRange({0, 6});
    text->replaceCharactersInRange_withString({0, 0}, u"x");
    EXPECT_EQ(runsOf(text), "x[]");
}

TEST(NSMutableAttributedString, ReplacingNothingByNothingChangesNothing) {
    for (const uint64_t index : {0u, 2u, 3u, 6u})
        EXPECT_EQ(edited([&](auto& text) { text->replaceCharactersInRange_withString({index, 0}, u""); }), "one[a=1]two[b=2]") << index;
}

TEST(NSMutableAttributedString, NullReplacesLikeTheEmptyText) {
    EXPECT_EQ(edited([](auto& text) { text->replaceCharactersInRange_withString({1, 3}, nullptr); }), "o[a=1]wo[b=2]");
}

TEST(NSMutableAttributedString, DeletesAcrossRunsAndJoinsWhatMeets) {
    const auto text = oneTwo();
    text->appendAttributedString(NSAttributedString::newWithString_attributes(u"three", with(u"a", u"1")));
    text->deleteCharactersInRange({2, 5});
    EXPECT_EQ(runsOf(text), "onhree[a=1]");
}

TEST(NSMutableAttributedString, ReplacesByItsOwnText) {
    const auto text = oneTwo();
    text->replaceCharactersInRange_withString({3, 0}, text->string());
    EXPECT_EQ(runsOf(text), "oneonetwo[a=1]two[b=2]");
    text->replaceCharactersInRange_withString({12, 0}, text->string());
    EXPECT_EQ(runsOf(text), "oneonetwo[a=1]twooneonetwotwo[b=2]");
}

TEST(NSMutableAttributedString, CountsUTF16Units) {
    const auto text = NSMutableAttributedString::newWithString(u"a\U0001D11Eb");
    text->addAttribute_value_range(u"a", u"1", {1, 2});
    text->replaceCharactersInRange_withString({3, 1}, u"\U0001D11E");
    EXPECT_EQ(runsOf(text), "a[]\xF0\x9D\x84\x9E[a=1]\xF0\x9D\x84\x9E[]");
    text->deleteCharactersInRange({1, 1});
    EXPECT_EQ(text->string(), u"a\xDD1E\U0001D11E");
}

// ---- Attributes

TEST(NSMutableAttributedString, SetsAttributesAndForgetsOthers) {
    const auto set = [](NSRange range) { return edited([&](auto& text) { text->setAttributes_range(with(u"c", u"3"), range); }); };
    EXPECT_EQ(set({0, 6}), "onetwo[c=3]");
    EXPECT_EQ(set({0, 3}), "one[c=3]two[b=2]");
    EXPECT_EQ(set({1, 1}), "o[a=1]n[c=3]e[a=1]two[b=2]");
    EXPECT_EQ(set({2, 2}), "on[a=1]et[c=3]wo[b=2]");
    EXPECT_EQ(set({5, 1}), "one[a=1]tw[b=2]o[c=3]");
}

TEST(NSMutableAttributedString, SettingNullTakesAllAttributesAway) {
    EXPECT_EQ(edited([](auto& text) { text->setAttributes_range(nullptr, {2, 2}); }), "on[a=1]et[]wo[b=2]");
}

TEST(NSMutableAttributedString, SettingJoinsWithBothNeighbours) {
    const auto text = oneTwo();
    text->appendAttributedString(NSAttributedString::newWithString_attributes(u"three", with(u"a", u"1")));
    text->setAttributes_range(with(u"a", u"1"), {3, 3});
    EXPECT_EQ(runsOf(text), "onetwothree[a=1]");
}

TEST(NSMutableAttributedString, TakesSetAttributesAsTheyAreThen) {
    const auto text = oneTwo();
    const auto attributes = with(u"c", u"3");
    text->setAttributes_range(attributes, {0, 6});
    attributes->setObject_forKey(u"4", u"c");
    EXPECT_EQ(runsOf(text), "onetwo[c=3]");
}

TEST(NSMutableAttributedString, AddsAnAttributeToEachRun) {
    const auto add = [](NSRange range) { return edited([&](auto& text) { text->addAttribute_value_range(u"c", u"3", range); }); };
    EXPECT_EQ(add({0, 6}), "one[a=1 c=3]two[b=2 c=3]");
    EXPECT_EQ(add({2, 2}), "on[a=1]e[a=1 c=3]t[b=2 c=3]wo[b=2]");
    EXPECT_EQ(add({5, 1}), "one[a=1]tw[b=2]o[b=2 c=3]");
}

TEST(NSMutableAttributedString, AnAddedAttributeReplacesItsValue) {
    EXPECT_EQ(edited([](auto& text) { text->addAttribute_value_range(u"a", u"9", {1, 1}); }), "o[a=1]n[a=9]e[a=1]two[b=2]");
    EXPECT_EQ(edited([](auto& text) { text->addAttribute_value_range(u"a", u"1", {1, 1}); }), "one[a=1]two[b=2]");
}

TEST(NSMutableAttributedString, AddingNullRemoves) {
    EXPECT_EQ(edited([](auto& text) { text->addAttribute_value_range(u"a", nullptr, {0, 6}); }), "one[]two[b=2]");
}

TEST(NSMutableAttributedString, RemovesAnAttributeAndJoins) {
    const auto text = NSMutableAttributedString::newWithString_attributes(u"onetwo", with(u"a", u"1"));
    text->addAttribute_value_range(u"b", u"2", {2, 2});
    EXPECT_EQ(runsOf(text), "on[a=1]et[a=1 b=2]wo[a=1]");
    text->removeAttribute_range(u"c", {0, 6});
    text->removeAttribute_range(u"b", {2, 1});
    EXPECT_EQ(runsOf(text), "one[a=1]t[a=1 b=2]wo[a=1]");
    text->removeAttribute_range(u"b", {0, 6});
    EXPECT_EQ(runsOf(text), "onetwo[a=1]");
}

TEST(NSMutableAttributedString, AnEmptyRangeHasNoAttributesToChange) {
    for (const uint64_t index : {0u, 2u, 3u, 6u}) {
        EXPECT_EQ(
            edited([&](auto& text) {
                text->setAttributes_range(with(u"c", u"3"), {index, 0});
                text->addAttribute_value_range(u"c", u"3", {index, 0});
                text->removeAttribute_range(u"a", {index, 0});
            }),
            "one[a=1]two[b=2]")
            << index;
    }
}

// ---- Failures and null

TEST(NSMutableAttributedString, RangesPastTheEndRaiseAndChangeNothing) {
    const auto text = oneTwo();
    for (const NSRange range : pastTheEnd) {
        SCOPED_TRACE(testing::Message() << "{" << range.location << ", " << range.length << "}");
        EXPECT_EQ(nameRaised([&] { text->replaceCharactersInRange_withString(range, u"x"); }), u"NSRangeException");
        EXPECT_EQ(nameRaised([&] { text->deleteCharactersInRange(range); }), u"NSRangeException");
        EXPECT_EQ(nameRaised([&] { text->setAttributes_range(nullptr, range); }), u"NSRangeException");
        EXPECT_EQ(nameRaised([&] { text->addAttribute_value_range(u"a", u"3", range); }), u"NSRangeException");
        EXPECT_EQ(nameRaised([&] { text->removeAttribute_range(u"a", range); }), u"NSRangeException");
        EXPECT_EQ(runsOf(text), "one[a=1]two[b=2]");
    }
}

TEST(NSMutableAttributedString, AnAttributeWithoutNameRaisesAndChangesNothing) {
    const auto text = oneTwo();
    EXPECT_EQ(nameRaised([&] { text->addAttribute_value_range(nullptr, u"3", {1, 1}); }), u"NSInvalidArgumentException");
    EXPECT_EQ(nameRaised([&] { text->addAttribute_value_range(nullptr, nullptr, {1, 1}); }), u"NSInvalidArgumentException");
    EXPECT_EQ(nameRaised([&] { text->removeAttribute_range(nullptr, {1, 1}); }), u"NSInvalidArgumentException");
    EXPECT_EQ(runsOf(text), "one[a=1]two[b=2]");
}

TEST(NSMutableAttributedString, NullTakesNothing) {
    const Ref<NSMutableAttributedString> null;
    null->appendAttributedString(oneTwo());
    null->replaceCharactersInRange_withString({3, 4}, u"x");
    null->deleteCharactersInRange({3, 4});
    null->setAttributes_range(with(u"a", u"1"), {3, 4});
    null->addAttribute_value_range(nullptr, u"1", {3, 4});
    null->removeAttribute_range(nullptr, {3, 4});
    EXPECT_EQ(null->string(), nullptr);
    EXPECT_EQ(null->length(), 0u);
    EXPECT_FALSE(null->attributesAtIndex_effectiveRange(0, nullptr));
}

TEST(NSMutableAttributedString, HoldsALongTextOfManyRuns) {
    const auto text = NSMutableAttributedString::newWithString(u"");
    const auto odd = NSAttributedString::newWithString_attributes(u"odd ", with(u"a", u"1")),
               even = NSAttributedString::newWithString(u"even");
    for (int count = 0; count < 50000; ++count) {
        text->appendAttributedString(odd);
        text->appendAttributedString(even);
    }
    EXPECT_EQ(text->length(), 400000u);
    NSRange run;
    EXPECT_EQ(text->attribute_atIndex_effectiveRange(u"a", 200001, &run).string(), u"1");
    EXPECT_EQ(run, (NSRange{200000, 4}));
    text->deleteCharactersInRange({4, 399992});
    EXPECT_EQ(runsOf(text), "odd [a=1]even[]");
}

TEST(NSMutableAttributedString, ItemsAreNumberedAnewAfterAnEdit) {
    const auto list = NSTextList::textListWithMarkerFormat(u"{decimal}.");
    const auto style = NSParagraphStyle::defaultParagraphStyle()->mutableCopy();
    style->setTextLists({list});
    const auto item = NSDictionary::dictionary({{NSParagraphStyleAttributeName, style}});
    const auto text = NSMutableAttributedString::newWithString_attributes(u"a\nb\nc\nd\n", item);
    const auto numberAt = [&](uint64_t index) { return text->itemNumberInTextList_atIndex(list, index); };
    EXPECT_EQ(numberAt(6), 4);
    EXPECT_EQ(numberAt(7), 4);
    EXPECT_EQ(numberAt(2), 2);
    text->deleteCharactersInRange({0, 2});
    EXPECT_EQ(numberAt(4), 3);
    text->appendAttributedString(NSAttributedString::newWithString_attributes(u"e", item));
    EXPECT_EQ(numberAt(6), 4);
    text->removeAttribute_range(NSParagraphStyleAttributeName, {0, 2});
    EXPECT_EQ(numberAt(6), 3);
    EXPECT_EQ(numberAt(0), 0);
    text->setAttributes_range(item, {0, 2});
    EXPECT_EQ(numberAt(6), 4);
}
