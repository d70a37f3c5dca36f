#include "common/core/css/BoxDimensions.h"

#include <gtest/gtest.h>

#include <limits>
#include <type_traits>

using CSS::BoxDimensions;

namespace {

constexpr _WQCSSLength BoxDimensions::*lengths[] = {
    &BoxDimensions::marginTop,  &BoxDimensions::marginLeft,  &BoxDimensions::marginBottom,  &BoxDimensions::marginRight,
    &BoxDimensions::paddingTop, &BoxDimensions::paddingLeft, &BoxDimensions::paddingBottom, &BoxDimensions::paddingRight,
};
constexpr _WQCSSBorder BoxDimensions::*borders[] = {
    &BoxDimensions::borderTop,
    &BoxDimensions::borderLeft,
    &BoxDimensions::borderBottom,
    &BoxDimensions::borderRight,
};

}  // namespace

static_assert(std::is_base_of_v<SharedObject, BoxDimensions>);
static_assert(std::is_same_v<decltype(_WQCSSLength::value), float> && std::is_same_v<decltype(_WQCSSLength::type), int32_t>);
static_assert(std::is_same_v<decltype(_WQCSSBorder::width), int32_t> && std::is_same_v<decltype(_WQCSSBorder::reserved), int32_t>);
static_assert(sizeof(_WQCSSLength) == 8 && std::is_trivially_copyable_v<_WQCSSLength>);
static_assert(sizeof(_WQCSSBorder) == 8 && std::is_trivially_copyable_v<_WQCSSBorder>);

TEST(Length, IsEqualOnlyIfValueAndTypeAre) {
    const _WQCSSLength length{2.5F, WQCSSLengthTypeAbsolute};
    EXPECT_EQ(length, (_WQCSSLength{2.5F, 1}));
    EXPECT_NE(length, (_WQCSSLength{2.25F, 1}));
    EXPECT_NE(length, (_WQCSSLength{2.5F, 3}));
}

TEST(Length, ComparesValuesAsFloats) {
    const _WQCSSLength none{std::numeric_limits<float>::quiet_NaN(), 1};
    const _WQCSSLength same = none;
    EXPECT_FALSE(none == same);
    EXPECT_TRUE(none != same);
    EXPECT_EQ((_WQCSSLength{-0.0F, 1}), (_WQCSSLength{0.0F, 1}));
}

TEST(Border, IsEqualOnlyIfBothNumbersAre) {
    const _WQCSSBorder border{1, 2};
    EXPECT_EQ(border, (_WQCSSBorder{1, 2}));
    EXPECT_NE(border, (_WQCSSBorder{3, 2}));
    EXPECT_NE(border, (_WQCSSBorder{1, 3}));
}

TEST(BoxDimensions, BelongToNobodyAtFirst) { EXPECT_EQ(BoxDimensions().refCount, 0); }

TEST(BoxDimensions, AreZeroPointsAroundAnAutomaticSizeAtFirst) {
    const BoxDimensions box;
    for (const auto field : lengths) {
        EXPECT_EQ((box.*field).value, 0.0F);
        EXPECT_EQ((box.*field).type, 1);
    }
    for (const auto field : borders) {
        EXPECT_EQ((box.*field).width, 0);
        EXPECT_EQ((box.*field).reserved, 0);
    }
    EXPECT_EQ(box.width.value, 0.0F);
    EXPECT_EQ(box.width.type, 4);
    EXPECT_EQ(box.height.value, 0.0F);
    EXPECT_EQ(box.height.type, 4);
}

TEST(BoxDimensions, HaveTheirFieldsInOrder) {
    const BoxDimensions box;
    const void* last = &box.refCount;
    const auto follows = [&last](const void* field) {
        EXPECT_LT(last, field);
        last = field;
    };
    for (const auto field : lengths) follows(&(box.*field));
    for (const auto field : borders) follows(&(box.*field));
    follows(&box.width);
    follows(&box.height);
}

TEST(BoxDimensions, CopiedAreANewObjectWithTheSameFields) {
    BoxDimensions original;
    float value = 1;
    for (const auto field : lengths) original.*field = {value++, WQCSSLengthTypePercentage};
    for (const auto field : borders) original.*field = {static_cast<int32_t>(value++), -1};
    original.width = {13, 1};
    original.height = {14, 1};
    original.refCount = 7;

    const BoxDimensions copy(original);
    original.refCount = 0;
    EXPECT_EQ(copy.refCount, 0);
    value = 1;
    for (const auto field : lengths) EXPECT_EQ(copy.*field, (_WQCSSLength{value++, 3}));
    for (const auto field : borders) EXPECT_EQ(copy.*field, (_WQCSSBorder{static_cast<int32_t>(value++), -1}));
    EXPECT_EQ(copy.width, (_WQCSSLength{13, 1}));
    EXPECT_EQ(copy.height, (_WQCSSLength{14, 1}));
}
