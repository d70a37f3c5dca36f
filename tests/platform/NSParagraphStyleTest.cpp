#include <gtest/gtest.h>

#include <functional>

#include "platform/NSMutableParagraphStyle.h"

namespace {

// Changes one value of a style.
using Change = std::function<void(const Ref<NSMutableParagraphStyle>&)>;

const std::vector<std::pair<const char*, Change>>& changes() {
    static const std::vector<std::pair<const char*, Change>> all{
        {"paragraphSpacingBefore", [](auto& style) { style->setParagraphSpacingBefore(1.5); }},
        {"paragraphSpacing", [](auto& style) { style->setParagraphSpacing(2.5); }},
        {"firstLineHeadIndent", [](auto& style) { style->setFirstLineHeadIndent(-3.5); }},
        {"headIndent", [](auto& style) { style->setHeadIndent(4.5); }},
        {"tailIndent", [](auto& style) { style->setTailIndent(-5.5); }},
        {"minimumLineHeight", [](auto& style) { style->setMinimumLineHeight(6.5); }},
        {"maximumLineHeight", [](auto& style) { style->setMaximumLineHeight(7.5); }},
        {"lineHeightMultiple", [](auto& style) { style->setLineHeightMultiple(1.25); }},
        {"alignment", [](auto& style) { style->setAlignment(3); }},
        {"tabStops",
         [](auto& style) {
             style->setTabStops({36, 72});
         }},
        {"textBlocks", [](auto& style) { style->setTextBlocks({NSTextBlock::textBlock()}); }},
    };
    return all;
}

Ref<NSMutableParagraphStyle> mutableStyle() { return NSParagraphStyle::defaultParagraphStyle()->mutableCopy(); }

void expectLengths(const Ref<NSParagraphStyle>& style, const std::vector<double>& expected) {
    const std::vector<double> lengths{
        style->paragraphSpacingBefore(), style->paragraphSpacing(),  style->firstLineHeadIndent(), style->headIndent(), style->tailIndent(),
        style->minimumLineHeight(),      style->maximumLineHeight(), style->lineHeightMultiple()};
    EXPECT_EQ(lengths, expected);
}

const std::vector<double> zeros(8, 0.0);
const std::vector<double> defaultStops{28, 56, 84, 112, 140, 168, 196, 224, 252, 280, 308, 336};

}  // namespace

TEST(NSParagraphStyle, TheAlignmentsHaveTheNumbersOfThePlatform) {
    EXPECT_EQ(NSTextAlignmentLeft, 0);
    EXPECT_EQ(NSTextAlignmentRight, 1);
    EXPECT_EQ(NSTextAlignmentCenter, 2);
    EXPECT_EQ(NSTextAlignmentJustified, 3);
    EXPECT_EQ(NSTextAlignmentNatural, 4);
}

TEST(NSParagraphStyle, TheDefaultHasNoLengthsNaturalAlignmentAndTwelveTabStops) {
    const auto style = NSParagraphStyle::defaultParagraphStyle();
    expectLengths(style, zeros);
    EXPECT_EQ(style->alignment(), 4);
    EXPECT_EQ(style->tabStops(), defaultStops);
    EXPECT_TRUE(style->textBlocks().empty());
}

TEST(NSParagraphStyle, TheDefaultIsOneObjectAndNotMutable) {
    const auto style = NSParagraphStyle::defaultParagraphStyle();
    EXPECT_EQ(NSParagraphStyle::defaultParagraphStyle(), style);
    EXPECT_EQ(wq::cast<NSMutableParagraphStyle>(style), nullptr);
}

TEST(NSParagraphStyle, AMutableCopyBeginsAsTheSameStyle) {
    const auto copy = mutableStyle();
    EXPECT_NE(copy, NSParagraphStyle::defaultParagraphStyle());
    EXPECT_NE(copy, mutableStyle());
    EXPECT_TRUE(copy->isEqual(NSParagraphStyle::defaultParagraphStyle()));
    EXPECT_EQ(copy->tabStops(), defaultStops);
}

TEST(NSParagraphStyle, EverySetterSetsItsOwnValue) {
    const auto style = mutableStyle();
    for (const auto& [name, change] : changes()) change(style);
    expectLengths(style, {1.5, 2.5, -3.5, 4.5, -5.5, 6.5, 7.5, 1.25});
    EXPECT_EQ(style->alignment(), 3);
    EXPECT_EQ(style->tabStops(), (std::vector<double>{36, 72}));
    EXPECT_EQ(style->textBlocks().size(), 1u);
}

TEST(NSParagraphStyle, AChangedCopyLeavesTheOriginalAlone) {
    const auto original = mutableStyle();
    original->setHeadIndent(10);
    const auto copy = original->mutableCopy();
    for (const auto& [name, change] : changes()) change(copy);
    EXPECT_EQ(original->headIndent(), 10.0);
    EXPECT_EQ(original->alignment(), 4);
    EXPECT_EQ(original->tabStops(), defaultStops);
    EXPECT_TRUE(original->textBlocks().empty());
    EXPECT_EQ(NSParagraphStyle::defaultParagraphStyle()->alignment(), 4);
    expectLengths(NSParagraphStyle::defaultParagraphStyle(), zeros);
}

TEST(NSParagraphStyle, TabStopsCanBeTakenAway) {
    const auto style = mutableStyle();
    style->setTabStops({});
    EXPECT_TRUE(style->tabStops().empty());
}

TEST(NSParagraphStyle, ACopySharesTextBlocks) {
    const auto style = mutableStyle();
    const auto outer = NSTextBlock::textBlock(), inner = NSTextBlock::textBlock();
    style->setTextBlocks({outer, inner});
    const auto copy = style->mutableCopy();
    ASSERT_EQ(copy->textBlocks().size(), 2u);
    EXPECT_EQ(copy->textBlocks()[0], outer);
    EXPECT_EQ(copy->textBlocks()[1], inner);
}

TEST(NSParagraphStyle, EqualsAnotherOfTheSameValues) {
    const auto block = NSTextBlock::textBlock();
    const auto one = mutableStyle(), other = mutableStyle();
    for (const auto& style : {one, other}) {
        for (const auto& [name, change] : changes()) change(style);
        style->setTextBlocks({block});
    }
    EXPECT_TRUE(one->isEqual(one));
    EXPECT_TRUE(one->isEqual(other));
    EXPECT_TRUE(NSParagraphStyle::defaultParagraphStyle()->isEqual(mutableStyle()));
}

TEST(NSParagraphStyle, DiffersInEachValue) {
    const auto original = NSParagraphStyle::defaultParagraphStyle();
    for (const auto& [name, change] : changes()) {
        const auto changed = original->mutableCopy();
        change(changed);
        EXPECT_FALSE(changed->isEqual(original)) << name;
        EXPECT_FALSE(original->isEqual(changed)) << name;
    }
}

TEST(NSParagraphStyle, TellsTextBlocksApartByIdentity) {
    const auto one = mutableStyle(), other = mutableStyle();
    one->setTextBlocks({NSTextBlock::textBlock()});
    other->setTextBlocks({NSTextBlock::textBlock()});
    EXPECT_FALSE(one->isEqual(other));
}

TEST(NSParagraphStyle, NullAnswersZeroAndEqualsNothing) {
    const Ref<NSParagraphStyle> null;
    expectLengths(null, zeros);
    EXPECT_EQ(null->alignment(), 0);
    EXPECT_TRUE(null->tabStops().empty());
    EXPECT_TRUE(null->textBlocks().empty());
    EXPECT_EQ(null->mutableCopy(), nullptr);
    EXPECT_FALSE(null->isEqual(null));
    EXPECT_FALSE(null->isEqual(NSParagraphStyle::defaultParagraphStyle()));
    EXPECT_FALSE(NSParagraphStyle::defaultParagraphStyle()->isEqual(null));
}

TEST(NSParagraphStyle, NullTakesNothing) {
    const Ref<NSMutableParagraphStyle> null;
    for (const auto& [name, change] : changes()) change(null);
    expectLengths(null, zeros);
    EXPECT_EQ(null->alignment(), 0);
    EXPECT_TRUE(null->tabStops().empty());
    EXPECT_TRUE(null->textBlocks().empty());
}

// ---- Text lists

namespace {

Ref<NSTextList> textList() { return NSTextList::textListWithMarkerFormat(u"{disc}"); }

Ref<NSMutableParagraphStyle> styleInLists(std::vector<Ref<NSTextList>> lists) {
    const auto style = mutableStyle();
    style->setTextLists(std::move(lists));
    return style;
}

}  // namespace

TEST(NSParagraphStyle, TheDefaultIsInNoTextList) { EXPECT_TRUE(NSParagraphStyle::defaultParagraphStyle()->textLists().empty()); }

TEST(NSParagraphStyle, KeepsItsTextListsInOrder) {
    const auto outer = textList(), inner = textList();
    const auto style = styleInLists({outer, inner});
    EXPECT_EQ(style->textLists(), (std::vector<Ref<NSTextList>>{outer, inner}));
    style->setTextLists({});
    EXPECT_TRUE(style->textLists().empty());
}

TEST(NSParagraphStyle, ACopySharesTextListsAndGoesItsOwnWay) {
    const auto list = textList();
    const auto style = styleInLists({list});
    const auto copy = style->mutableCopy();
    EXPECT_EQ(copy->textLists(), (std::vector<Ref<NSTextList>>{list}));
    copy->setTextLists({});
    EXPECT_EQ(style->textLists(), (std::vector<Ref<NSTextList>>{list}));
}

TEST(NSParagraphStyle, TellsTextListsApartByIdentityAndOrder) {
    const auto one = textList(), other = textList();
    EXPECT_TRUE(styleInLists({one, other})->isEqual(styleInLists({one, other})));
    EXPECT_FALSE(styleInLists({one, other})->isEqual(styleInLists({other, one})));
    EXPECT_FALSE(styleInLists({one})->isEqual(styleInLists({other})));
    EXPECT_FALSE(styleInLists({one})->isEqual(styleInLists({one, other})));
    EXPECT_FALSE(styleInLists({one})->isEqual(mutableStyle()));
}

TEST(NSParagraphStyle, NullIsInNoTextListAndTakesNone) {
    const Ref<NSMutableParagraphStyle> null;
    null->setTextLists({textList()});
    EXPECT_TRUE(null->textLists().empty());
}

TEST(NSParagraphStyle, EqualsNoObjectOfAnotherClass) {
    EXPECT_FALSE(mutableStyle()->isEqual(NSTextBlock::textBlock()));
    EXPECT_FALSE(mutableStyle()->isEqual(NSTextList::textListWithMarkerFormat(u"{disc}")));
}
