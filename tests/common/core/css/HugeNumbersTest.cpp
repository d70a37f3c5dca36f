// Numbers that no single-precision number can hold.
#include <gtest/gtest.h>

#include <string>

#include "common/core/css/StyleDeclaration.h"

namespace {

const std::string kHuge(400, '9'), kTiny = "0." + std::string(400, '0') + "1";

std::string textOf(const std::string& declarations) {
    CSS::MutableStyleDeclaration declaration;
    declaration.setCssText(declarations);
    return declaration.cssText();
}

}  // namespace

TEST(HugeNumbersTest, LengthsBeyondSinglePrecisionAreInfinite) {
    EXPECT_EQ(textOf("margin-left:" + kHuge + "pt"), "margin-left: infpt; ");
    EXPECT_EQ(textOf("margin-left:-" + kHuge + "px"), "margin-left: -infpx; ");
    EXPECT_EQ(textOf("margin-left:" + kHuge + "%"), "margin-left: inf%; ");
    EXPECT_EQ(textOf("font-size:" + kHuge + "pt"), "font-size: infpt; ");
}

TEST(HugeNumbersTest, SoAreNumbersWithoutUnit) { EXPECT_EQ(textOf("line-height:" + kHuge), "line-height: inf; "); }

TEST(HugeNumbersTest, WhatIsTooSmallIsZero) { EXPECT_EQ(textOf("margin-left:" + kTiny + "pt"), "margin-left: 0pt; "); }
