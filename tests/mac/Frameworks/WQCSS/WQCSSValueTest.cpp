#include "mac/Frameworks/WQCSS/WQCSSValue.h"

#include <csignal>

#include "mac/Frameworks/WQCSS/WQCSSPrimitiveValue.h"
#include "mac/Frameworks/WQCSS/WQCSSValueList.h"
#include "tests/dom/Support.h"

using namespace test;

namespace {

// A value of a kind that the engine does not have.
class OddValue : public CSS::Value {
public:
    explicit OddValue(unsigned short itsType) : type(itsType) {}
    std::string cssText() const override { return text; }
    void setCssText(std::string newText) override { text = std::move(newText); }
    unsigned short cssValueType() const override { return type; }

    const unsigned short type;
    std::string text = "odd";
};

using Held = SharedPtr<CSS::Value>;

TEST(WQCSSValueTest, IsMadeByTheKindOfTheValue) {
    const Held number = new CSS::PrimitiveValue(1.5f, CSS::CSS_PX), list = new CSS::ValueList;
    const auto primitive = WQCSSValue::valueWithCSSValue(number.Get()), several = WQCSSValue::valueWithCSSValue(list.Get());
    EXPECT_TRUE(wq::cast<WQCSSPrimitiveValue>(primitive));
    EXPECT_FALSE(wq::cast<WQCSSValueList>(primitive));
    EXPECT_EQ(primitive->cssValue(), number.Get());
    EXPECT_TRUE(wq::cast<WQCSSValueList>(several));
    EXPECT_FALSE(wq::cast<WQCSSPrimitiveValue>(several));
    EXPECT_EQ(several->cssValue(), list.Get());
}

TEST(WQCSSValueTest, IsNullForAnyOtherKind) {
    for (const auto type : std::vector<unsigned short>{0, 3, 7, 257, 65535}) {
        SCOPED_TRACE(type);
        const Held odd = new OddValue(type);
        EXPECT_FALSE(WQCSSValue::valueWithCSSValue(odd.Get()));
        EXPECT_EQ(odd->refCount, 1);
    }
}

TEST(WQCSSValueTest, IsNullForNull) { EXPECT_FALSE(WQCSSValue::valueWithCSSValue(nullptr)); }

TEST(WQCSSValueTest, IsANewObjectEachTime) {
    const Held number = new CSS::PrimitiveValue(1, CSS::CSS_NUMBER);
    const auto one = WQCSSValue::valueWithCSSValue(number.Get()), other = WQCSSValue::valueWithCSSValue(number.Get());
    EXPECT_NE(one.get(), other.get());
    EXPECT_EQ(one->cssValue(), other->cssValue());
    EXPECT_EQ(number->refCount, 3);
}

TEST(WQCSSValueTest, KeepsOneCountAsLongAsItLives) {
    const Held number = new CSS::PrimitiveValue(1, CSS::CSS_NUMBER);
    auto value = WQCSSValue::newWithCSSValue(number.Get());
    EXPECT_EQ(number->refCount, 2);
    value = nullptr;
    EXPECT_EQ(number->refCount, 1);
}

TEST(WQCSSValueTest, KeepsTheValueAliveAlone) {
    const auto value = WQCSSValue::valueWithCSSValue(new CSS::PrimitiveValue(12, CSS::CSS_PT));
    EXPECT_EQ(value->cssValue()->refCount, 1);
    EXPECT_EQ(value->cssText(), u"12pt");
}

TEST(WQCSSValueTest, ForwardsItsTextAndItsType) {
    OddValue* const odd = new OddValue(7);
    const auto value = WQCSSValue::newWithCSSValue(odd);
    EXPECT_EQ(value->cssText(), u"odd");
    EXPECT_EQ(value->cssValueType(), 7);
    odd->text = "changed";
    EXPECT_EQ(value->cssText(), u"changed");
    value->setCssText(u"set");
    EXPECT_EQ(odd->text, "set");
}

TEST(WQCSSValueTest, CrossesInUTF8) {
    OddValue* const odd = new OddValue(7);
    const auto value = WQCSSValue::newWithCSSValue(odd);
    value->setCssText(u"\U0001D11E\u00E4");
    EXPECT_EQ(odd->text, "\xF0\x9D\x84\x9E\xC3\xA4");
    EXPECT_EQ(value->cssText(), u"\U0001D11E\u00E4");
    const char16_t lone[] = {u'a', 0xD834, 0};
    value->setCssText(lone);
    EXPECT_EQ(odd->text, "a\xEF\xBF\xBD");
    odd->text = "\xFF";
    EXPECT_EQ(value->cssText(), u"\uFFFD");
    odd->text = "";
    EXPECT_EQ(value->cssText(), u"");
}

TEST(WQCSSValueTest, TheTypeIsOneForPrimitiveValuesAndTwoForLists) {
    EXPECT_EQ(WQCSSValue::valueWithCSSValue(new CSS::PrimitiveValue)->cssValueType(), 1);
    EXPECT_EQ(WQCSSValue::valueWithCSSValue(new CSS::ValueList)->cssValueType(), 2);
}

TEST(WQCSSValueTest, AroundNoneItAnswersAsNullDoes) {
    const auto none = WQCSSValue::newWithCSSValue(nullptr);
    ASSERT_TRUE(none);
    EXPECT_EQ(none->cssValue(), nullptr);
    EXPECT_EQ(none->cssText(), nullptr);
    EXPECT_EQ(none->cssValueType(), 0);
    none->setCssText(u"x");
    EXPECT_EQ(none->cssText(), nullptr);
}

#ifdef WQ_NO_HARD_ASSERTIONS

TEST(WQCSSValueTest, SettingTheTextOfTheEnginesValuesChangesNothing) {
    const auto value = WQCSSValue::valueWithCSSValue(new CSS::PrimitiveValue(12, CSS::CSS_PT));
    value->setCssText(u"1px");
    EXPECT_EQ(value->cssText(), u"12pt");
}

#else

TEST(WQCSSValueDeathTest, SettingTheTextOfTheEnginesValuesIsNotSupported) {
    const char* const message = "^Assertion failed: \\(0\\), function setCssText, file common/core/css/Value, line [0-9]+\\.\n";
    const auto value = WQCSSValue::valueWithCSSValue(new CSS::PrimitiveValue(12, CSS::CSS_PT));
    EXPECT_EXIT(value->setCssText(u"12pt"), testing::KilledBySignal(SIGABRT), message);
    const auto list = WQCSSValue::valueWithCSSValue(new CSS::ValueList);
    EXPECT_EXIT(list->setCssText(u""), testing::KilledBySignal(SIGABRT), message);
}

#endif

}  // namespace
