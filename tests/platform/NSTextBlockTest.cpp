#include "platform/NSTextBlock.h"

#include <gtest/gtest.h>

#include "tests/platform/Raised.h"

namespace {
constexpr long layers[] = {-1, 0, 1};
constexpr unsigned edges[] = {0, 1, 2, 3};
}  // namespace

TEST(NSTextBlock, TheNamesStandForTheNumbersOfThePlatform) {
    EXPECT_EQ(NSTextBlockPadding, -1);
    EXPECT_EQ(NSTextBlockBorder, 0);
    EXPECT_EQ(NSTextBlockMargin, 1);
    EXPECT_EQ(NSTextBlockAbsoluteValueType, 0u);
    EXPECT_EQ(NSTextBlockPercentageValueType, 1u);
    EXPECT_EQ(NSMinXEdge, 0u);
    EXPECT_EQ(NSMinYEdge, 1u);
    EXPECT_EQ(NSMaxXEdge, 2u);
    EXPECT_EQ(NSMaxYEdge, 3u);
}

TEST(NSTextBlock, HasNoWidthsAtFirst) {
    const auto block = NSTextBlock::textBlock();
    for (const long layer : layers)
        for (const unsigned edge : edges) {
            EXPECT_EQ(block->widthForLayer_edge(layer, edge), 0.0);
            EXPECT_EQ(block->widthValueTypeForLayer_edge(layer, edge), 0u);
        }
}

TEST(NSTextBlock, KeepsAWidthForEachLayerAndEdge) {
    const auto block = NSTextBlock::textBlock();
    for (const long layer : layers)
        for (const unsigned edge : edges)
            block->setWidth_type_forLayer_edge(10.0 * static_cast<double>(layer) + edge, edge % 2, layer, edge);

    EXPECT_EQ(block->widthForLayer_edge(-1, 0), -10.0);
    EXPECT_EQ(block->widthForLayer_edge(-1, 3), -7.0);
    EXPECT_EQ(block->widthForLayer_edge(0, 0), 0.0);
    EXPECT_EQ(block->widthForLayer_edge(0, 1), 1.0);
    EXPECT_EQ(block->widthForLayer_edge(0, 2), 2.0);
    EXPECT_EQ(block->widthForLayer_edge(1, 0), 10.0);
    EXPECT_EQ(block->widthForLayer_edge(1, 3), 13.0);
    EXPECT_EQ(block->widthValueTypeForLayer_edge(-1, 0), 0u);
    EXPECT_EQ(block->widthValueTypeForLayer_edge(0, 1), 1u);
    EXPECT_EQ(block->widthValueTypeForLayer_edge(1, 2), 0u);
    EXPECT_EQ(block->widthValueTypeForLayer_edge(1, 3), 1u);
}

TEST(NSTextBlock, SettingReplacesWidthAndType) {
    const auto block = NSTextBlock::textBlock();
    block->setWidth_type_forLayer_edge(50, 1, 1, 2);
    block->setWidth_type_forLayer_edge(4.5, 0, 1, 2);
    EXPECT_EQ(block->widthForLayer_edge(1, 2), 4.5);
    EXPECT_EQ(block->widthValueTypeForLayer_edge(1, 2), 0u);
}

TEST(NSTextBlock, AnotherLayerOrEdgeRaises) {
    const auto block = NSTextBlock::textBlock();
    const auto expectRaised = [&](long layer, unsigned edge) {
        SCOPED_TRACE(testing::Message() << layer << ", " << edge);
        EXPECT_EQ(test::nameRaised([&] { block->setWidth_type_forLayer_edge(1, 0, layer, edge); }), u"NSInvalidArgumentException");
        EXPECT_EQ(test::nameRaised([&] { block->widthForLayer_edge(layer, edge); }), u"NSInvalidArgumentException");
        EXPECT_EQ(test::nameRaised([&] { block->widthValueTypeForLayer_edge(layer, edge); }), u"NSInvalidArgumentException");
    };
    expectRaised(-2, 0);
    expectRaised(2, 0);
    expectRaised(0, 4);
    expectRaised(1, 4294967295u);
    for (const long layer : layers)
        for (const unsigned edge : edges) EXPECT_EQ(block->widthForLayer_edge(layer, edge), 0.0);
}

TEST(NSTextBlock, AnotherTypeRaisesAndStoresNothing) {
    const auto block = NSTextBlock::textBlock();
    block->setWidth_type_forLayer_edge(3, 1, 0, 0);
    EXPECT_EQ(test::nameRaised([&] { block->setWidth_type_forLayer_edge(5, 2, 0, 0); }), u"NSInvalidArgumentException");
    EXPECT_EQ(block->widthForLayer_edge(0, 0), 3.0);
    EXPECT_EQ(block->widthValueTypeForLayer_edge(0, 0), 1u);
}

TEST(NSTextBlock, NullHasNoWidthsAndRaisesNothing) {
    const Ref<NSTextBlock> null;
    null->setWidth_type_forLayer_edge(5, 1, 0, 0);
    null->setWidth_type_forLayer_edge(5, 9, 9, 9);
    EXPECT_EQ(null->widthForLayer_edge(0, 0), 0.0);
    EXPECT_EQ(null->widthValueTypeForLayer_edge(0, 0), 0u);
    EXPECT_EQ(null->widthForLayer_edge(9, 9), 0.0);
    EXPECT_EQ(null->widthValueTypeForLayer_edge(9, 9), 0u);
}
