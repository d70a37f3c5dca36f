#include "common/core/css/Counter.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

using CSS::Counter;

static_assert(std::is_base_of_v<SharedObject, Counter>);
static_assert(std::is_const_v<decltype(Counter::identifier)>);
static_assert(std::is_const_v<decltype(Counter::listStyle)>);
static_assert(std::is_const_v<decltype(Counter::separator)>);

TEST(Counter, KeepsItsThreeTexts) {
    const Counter counter("chapter", "upper-roman", ".");
    EXPECT_EQ(counter.identifier, "chapter");
    EXPECT_EQ(counter.listStyle, "upper-roman");
    EXPECT_EQ(counter.separator, ".");
    EXPECT_EQ(counter.refCount, 0);
}

TEST(Counter, TakesTheTextsAsTheyAre) {
    const std::string separator("\"\0\xFF\n", 4);
    const Counter counter("", "No-List-Style", separator);
    EXPECT_EQ(counter.identifier, "");
    EXPECT_EQ(counter.listStyle, "No-List-Style");
    EXPECT_EQ(counter.separator, separator);
}

TEST(Counter, HasItsFieldsInOrder) {
    const Counter counter("a", "b", "c");
    EXPECT_LT(&counter.identifier, &counter.listStyle);
    EXPECT_LT(&counter.listStyle, &counter.separator);
}

TEST(Counter, LivesAsLongAsSomebodyHoldsIt) {
    SharedPtr<Counter> holder;
    {
        const SharedPtr<Counter> first(new Counter(std::string(100, 'i'), "decimal", ""));
        holder = first;
        EXPECT_EQ(holder->refCount, 2);
    }
    EXPECT_EQ(holder->refCount, 1);
    EXPECT_EQ(holder->identifier, std::string(100, 'i'));
    EXPECT_EQ(holder->listStyle, "decimal");
    EXPECT_EQ(holder->separator, "");
}
