#include "mac/Frameworks/WQCSS/WQCSSPrimitiveValue.h"

#include "tests/dom/Support.h"

using namespace test;

namespace {

CSS::PrimitiveValue* engine(const Ref<WQCSSPrimitiveValue>& value) { return static_cast<CSS::PrimitiveValue*>(value->cssValue()); }

using Units = std::vector<unsigned short>;

TEST(WQCSSPrimitiveValueTest, IsOfNoKindAtFirst) {
    const auto value = WQCSSPrimitiveValue::newPrimitiveValue();
    EXPECT_EQ(value->cssValueType(), 1);
    EXPECT_EQ(value->primitiveType(), 0);
    EXPECT_EQ(value->floatValue(CSS::CSS_NUMBER), 0);
    EXPECT_EQ(value->stringValue(), u"");
    EXPECT_EQ(value->cssText(), u"");
    EXPECT_EQ(value->cssValue()->refCount, 1);
}

TEST(WQCSSPrimitiveValueTest, EachHasAValueOfItsOwn) {
    EXPECT_NE(WQCSSPrimitiveValue::newPrimitiveValue()->cssValue(), nullptr);
    const auto one = WQCSSPrimitiveValue::newPrimitiveValue(), other = WQCSSPrimitiveValue::newPrimitiveValue();
    EXPECT_NE(one->cssValue(), other->cssValue());
}

TEST(WQCSSPrimitiveValueTest, IsMadeOfANumber) {
    const auto value = WQCSSPrimitiveValue::primitiveValueWithFloat_unitType(-1.5f, CSS::CSS_PT);
    EXPECT_EQ(value->primitiveType(), 9);
    EXPECT_EQ(value->cssText(), u"-1.5pt");
    EXPECT_EQ(engine(value)->floatValue(), -1.5f);
    EXPECT_EQ(value->cssValue()->refCount, 1);
}

TEST(WQCSSPrimitiveValueTest, IsMadeOfAString) {
    const auto value = WQCSSPrimitiveValue::primitiveValueWithString_unitType(u"a.png", CSS::CSS_URI);
    EXPECT_EQ(value->primitiveType(), 20);
    EXPECT_EQ(value->stringValue(), u"a.png");
    EXPECT_EQ(value->cssText(), u"url(a.png)");
    EXPECT_EQ(engine(value)->stringValue(), "a.png");
}

TEST(WQCSSPrimitiveValueTest, TakesAnyUnitOfANumber) {
    for (const auto unit : Units({0, 1, 18, 19, 25, 26, 65535})) {
        SCOPED_TRACE(unit);
        const auto value = WQCSSPrimitiveValue::primitiveValueWithFloat_unitType(2, unit);
        EXPECT_EQ(value->primitiveType(), unit);
    }
}

TEST(WQCSSPrimitiveValueTest, AnswersTheStoredNumberWhateverUnitIsAskedFor) {
    const auto value = WQCSSPrimitiveValue::primitiveValueWithFloat_unitType(2.54f, CSS::CSS_CM);
    for (const auto unit : Units({0, 1, 2, 5, 6, 8, 9, 19, 25, 26, 65535})) EXPECT_EQ(value->floatValue(unit), 2.54f) << unit;
    EXPECT_EQ(value->primitiveType(), 6);
}

TEST(WQCSSPrimitiveValueTest, ForwardsItsNumber) {
    const SharedPtr<CSS::PrimitiveValue> shared = new CSS::PrimitiveValue(1, CSS::CSS_EMS);
    const auto value = WQCSSValue::newWithCSSValue<WQCSSPrimitiveValue>(shared.Get());
    EXPECT_EQ(value->primitiveType(), 3);
    EXPECT_EQ(value->floatValue(3), 1);
    shared->setFloatValue(CSS::CSS_IN, 2);
    EXPECT_EQ(value->primitiveType(), 8);
    EXPECT_EQ(value->floatValue(3), 2);
    value->setFloatValue_unitType(3, CSS::CSS_PC);
    EXPECT_EQ(shared->primitiveType, 10);
    EXPECT_EQ(shared->floatValue(), 3);
}

TEST(WQCSSPrimitiveValueTest, ForwardsItsString) {
    const SharedPtr<CSS::PrimitiveValue> shared = new CSS::PrimitiveValue("one", CSS::CSS_STRING);
    const auto value = WQCSSValue::newWithCSSValue<WQCSSPrimitiveValue>(shared.Get());
    EXPECT_EQ(value->stringValue(), u"one");
    shared->setStringValue(CSS::CSS_ATTR, "two");
    EXPECT_EQ(value->primitiveType(), 22);
    EXPECT_EQ(value->stringValue(), u"two");
    value->setStringValue_unitType(u"three", CSS::CSS_URI);
    EXPECT_EQ(shared->primitiveType, 20);
    EXPECT_EQ(shared->stringValue(), "three");
}

TEST(WQCSSPrimitiveValueTest, StringsCrossInUTF8) {
    const auto value = WQCSSPrimitiveValue::primitiveValueWithString_unitType(u"\U0001D11E & <]]>\"'\r\n", CSS::CSS_STRING);
    EXPECT_EQ(engine(value)->stringValue(), "\xF0\x9D\x84\x9E & <]]>\"'\r\n");
    EXPECT_EQ(value->stringValue(), u"\U0001D11E & <]]>\"'\r\n");
    const char16_t lone[] = {0xDD1E, u'a', 0};
    value->setStringValue_unitType(lone, CSS::CSS_STRING);
    EXPECT_EQ(engine(value)->stringValue(), "\xEF\xBF\xBD\x61");
}

TEST(WQCSSPrimitiveValueTest, ANullStringIsEmpty) {
    const auto value = WQCSSPrimitiveValue::primitiveValueWithString_unitType(nullptr, CSS::CSS_STRING);
    EXPECT_EQ(value->primitiveType(), 19);
    EXPECT_EQ(value->stringValue(), u"");
}

TEST(WQCSSPrimitiveValueTest, AStringOfAnotherUnitLosesTheContent) {
    const auto value = WQCSSPrimitiveValue::primitiveValueWithString_unitType(u"kept", CSS::CSS_STRING);
    value->setStringValue_unitType(u"new", CSS::CSS_PX);
    EXPECT_EQ(value->primitiveType(), 0);
    EXPECT_EQ(value->stringValue(), u"");
    for (const auto unit : Units({0, 1, 5, 18, 21, 23, 24, 25, 26}))
        EXPECT_EQ(WQCSSPrimitiveValue::primitiveValueWithString_unitType(u"new", unit)->primitiveType(), 0) << unit;
}

TEST(WQCSSPrimitiveValueTest, ANumberHasNoStringAndAStringNoNumber) {
    EXPECT_EQ(WQCSSPrimitiveValue::primitiveValueWithFloat_unitType(1, CSS::CSS_PX)->stringValue(), u"");
    EXPECT_EQ(WQCSSPrimitiveValue::primitiveValueWithString_unitType(u"1", CSS::CSS_STRING)->floatValue(CSS::CSS_PX), 0);
}

class Marked : public WQCSSPrimitiveValue {};

TEST(WQCSSPrimitiveValueTest, AnApplicationsClassIsMadeTheSameWay) {
    const Ref<Marked> number = WQCSSPrimitiveValue::primitiveValueWithFloat_unitType<Marked>(1, CSS::CSS_PX);
    EXPECT_EQ(number->cssText(), u"1px");
    const Ref<Marked> string = WQCSSPrimitiveValue::primitiveValueWithString_unitType<Marked>(u"a", CSS::CSS_STRING);
    EXPECT_EQ(string->cssText(), u"a");
}

void expectNothingToBeAnswered(const Ref<WQCSSPrimitiveValue>& value) {
    EXPECT_EQ(value->primitiveType(), 0);
    EXPECT_EQ(value->floatValue(5), 0);
    EXPECT_EQ(value->stringValue(), nullptr);
    value->setFloatValue_unitType(1, 5);
    value->setStringValue_unitType(u"a", 19);
    EXPECT_EQ(value->primitiveType(), 0);
    EXPECT_EQ(value->stringValue(), nullptr);
}

TEST(WQCSSPrimitiveValueTest, AroundNoneItAnswersAsNullDoes) {
    const auto none = WQCSSValue::newWithCSSValue<WQCSSPrimitiveValue>(nullptr);
    ASSERT_TRUE(none);
    expectNothingToBeAnswered(none);
}

TEST(WQCSSPrimitiveValueTest, AroundAListItAnswersAsNullDoes) {
    const auto list = WQCSSValue::newWithCSSValue<WQCSSPrimitiveValue>(new CSS::ValueList);
    expectNothingToBeAnswered(list);
    EXPECT_EQ(list->cssValueType(), 2);
}

}  // namespace
