#include "platform/NSValue.h"

#include <gtest/gtest.h>

#include <iterator>

#include "platform/NSData.h"
#include "platform/NSDictionary.h"
#include "platform/NSError.h"

namespace {
const wq::Class* classOfError() {
    class Made : public wq::Object {};
    return &wq::Class::of<Made>();
}
}  // namespace

TEST(NSValue, IsNullAtFirst) {
    EXPECT_FALSE(static_cast<bool>(NSValue()));
    EXPECT_TRUE(NSValue() == NSValue(nullptr));
}

TEST(NSValue, HoldsABoolean) {
    EXPECT_TRUE(NSValue(true).boolean());
    EXPECT_FALSE(NSValue(false).boolean());
}

TEST(NSValue, HoldsANumber) { EXPECT_EQ(NSValue(-2.5).number(), -2.5); }

TEST(NSValue, HoldsAString) {
    EXPECT_EQ(NSValue(u"text").string(), u"text");
    EXPECT_EQ(NSValue(NSString(u"text")).string(), u"text");
    EXPECT_EQ(NSValue(u"").string(), u"");
}

TEST(NSValue, HoldsAnObjectAndCountsIt) {
    const auto data = NSData::dataWithBytes("x");
    {
        const NSValue value = data;
        EXPECT_EQ(data->referenceCount(), 2);
        EXPECT_TRUE(value.object() == data);
        EXPECT_TRUE(value.object<NSData>() == data);
        EXPECT_EQ(value.object<NSError>(), nullptr);
    }
    EXPECT_EQ(data->referenceCount(), 1);
}

TEST(NSValue, HoldsAClass) { EXPECT_EQ(NSValue(classOfError()).classValue(), classOfError()); }

TEST(NSValue, FalseZeroAndEmptyAreNotNull) {
    EXPECT_TRUE(static_cast<bool>(NSValue(false)));
    EXPECT_TRUE(static_cast<bool>(NSValue(0.0)));
    EXPECT_TRUE(static_cast<bool>(NSValue(u"")));
}

TEST(NSValue, WhatIsNullMakesANullValue) {
    const char16_t* const noLiteral = nullptr;
    const wq::Class* const noClass = nullptr;
    EXPECT_TRUE(NSValue(NSString()) == NSValue());
    EXPECT_TRUE(NSValue(noLiteral) == NSValue());
    EXPECT_TRUE(NSValue(noClass) == NSValue());
    EXPECT_TRUE(NSValue(Ref<NSData>()) == NSValue());
}

TEST(NSValue, AnswersNothingForAnotherKind) {
    const NSValue values[] = {nullptr, true, 1.0, u"1", NSData::dataWithBytes("1"), classOfError()};
    enum { Null, Boolean, Number, String, Object, Class };
    for (int kind = Null; kind <= Class; ++kind) {
        SCOPED_TRACE(kind);
        const NSValue& value = values[kind];
        EXPECT_EQ(value.boolean(), kind == Boolean);
        EXPECT_EQ(value.number() == 1.0, kind == Number);
        EXPECT_EQ(value.number() == 0.0, kind != Number);
        EXPECT_EQ(static_cast<bool>(value.string()), kind == String);
        EXPECT_EQ(static_cast<bool>(value.object()), kind == Object);
        EXPECT_EQ(value.classValue() != nullptr, kind == Class);
    }
}

TEST(NSValue, IsEqualByKindAndContent) {
    const auto data = NSData::dataWithBytes("1");
    const NSValue values[] = {nullptr, false, true, 0.0, 1.0, u"", u"1", data, NSData::dataWithBytes("1"), classOfError()};
    const NSValue same[] = {NSValue(), false, true, 0.0, 1.0, u"", u"1", data};
    for (size_t left = 0; left < std::size(values); ++left)
        for (size_t right = 0; right < std::size(same); ++right)
            EXPECT_EQ(values[left] == same[right], left == right) << left << " " << right;
}

TEST(NSValue, NoPointerBecomesABoolean) {
    EXPECT_FALSE((std::is_constructible_v<NSValue, void*>));
    EXPECT_FALSE((std::is_constructible_v<NSValue, const char*>));
}

TEST(NSValue, ObjectsAreEqualAsTheirClassesSay) {
    const auto dictionary = [](double number) { return NSDictionary::dictionary({{u"x", number}}); };
    const auto data = NSData::dataWithBytes("1");
    EXPECT_TRUE(NSValue(dictionary(1)).isEqual(dictionary(1)));
    EXPECT_FALSE(NSValue(dictionary(1)) == NSValue(dictionary(1)));
    EXPECT_FALSE(NSValue(dictionary(1)).isEqual(dictionary(2)));
    EXPECT_FALSE(NSValue(dictionary(1)).isEqual(data));
    EXPECT_FALSE(NSValue(dictionary(1)).isEqual(nullptr));
    EXPECT_FALSE(NSValue().isEqual(dictionary(1)));
    EXPECT_TRUE(NSValue(data).isEqual(data));
    EXPECT_FALSE(NSValue(data).isEqual(NSData::dataWithBytes("1")));
}

TEST(NSValue, WhatIsNoObjectIsEqualByKindAndContent) {
    const NSValue values[] = {nullptr, false, true, 0.0, 1.0, u"", u"1", classOfError()};
    for (size_t left = 0; left < std::size(values); ++left)
        for (size_t right = 0; right < std::size(values); ++right)
            EXPECT_EQ(values[left].isEqual(values[right]), left == right) << left << " " << right;
}
