#include "mac/Frameworks/WQCSS/WQCSSValueList.h"

#include <limits>

#include "mac/Frameworks/WQCSS/WQCSSPrimitiveValue.h"
#include "tests/dom/Support.h"

using namespace test;

namespace {

Ref<WQCSSValueList> around(CSS::ValueList* list) { return WQCSSValue::newWithCSSValue<WQCSSValueList>(list); }
CSS::ValueList* engine(const Ref<WQCSSValueList>& list) { return static_cast<CSS::ValueList*>(list->cssValue()); }

TEST(WQCSSValueListTest, IsEmptyAtFirst) {
    const auto list = WQCSSValueList::newValueList();
    EXPECT_EQ(list->length(), 0u);
    EXPECT_EQ(list->cssText(), u"");
    EXPECT_EQ(list->cssValueType(), 2);
    EXPECT_EQ(list->cssValue()->refCount, 1);
    EXPECT_NE(list->cssValue(), WQCSSValueList::newValueList()->cssValue());
}

TEST(WQCSSValueListTest, SeesWhatIsAppendedToTheEnginesList) {
    const SharedPtr<CSS::ValueList> shared = new CSS::ValueList;
    const auto list = around(shared.Get());
    shared->append(new CSS::PrimitiveValue(1, CSS::CSS_PX));
    EXPECT_EQ(list->length(), 1u);
    shared->append(new CSS::PrimitiveValue("\xF0\x9D\x84\x9E", CSS::CSS_STRING));
    EXPECT_EQ(list->length(), 2u);
    EXPECT_EQ(list->item(0)->cssText(), u"1px");
    EXPECT_EQ(list->item(1)->cssText(), u"\U0001D11E");
    EXPECT_EQ(list->cssText(), u"1px, \U0001D11E");
}

TEST(WQCSSValueListTest, AMemberIsWrappedAnewEachTime) {
    const auto list = WQCSSValueList::newValueList();
    engine(list)->append(new CSS::PrimitiveValue(1, CSS::CSS_PX));
    const auto one = list->item(0), other = list->item(0);
    EXPECT_NE(one.get(), other.get());
    EXPECT_EQ(one->cssValue(), other->cssValue());
    EXPECT_EQ(one->cssValue(), engine(list)->values[0].Get());
    EXPECT_EQ(one->cssValue()->refCount, 3);
}

TEST(WQCSSValueListTest, AChangedMemberChangesTheList) {
    const auto list = WQCSSValueList::newValueList();
    engine(list)->append(new CSS::PrimitiveValue(1, CSS::CSS_PX));
    wq::cast<WQCSSPrimitiveValue>(list->item(0))->setFloatValue_unitType(2, CSS::CSS_PT);
    EXPECT_EQ(list->cssText(), u"2pt");
}

TEST(WQCSSValueListTest, AMemberIsWrappedByItsKind) {
    const auto list = WQCSSValueList::newValueList();
    engine(list)->append(new CSS::PrimitiveValue);
    engine(list)->append(new CSS::ValueList);
    EXPECT_TRUE(wq::cast<WQCSSPrimitiveValue>(list->item(0)));
    EXPECT_TRUE(wq::cast<WQCSSValueList>(list->item(1)));
}

TEST(WQCSSValueListTest, AMemberOutlivesTheList) {
    auto list = WQCSSValueList::newValueList();
    engine(list)->append(new CSS::PrimitiveValue(1, CSS::CSS_PX));
    const auto member = list->item(0);
    list = nullptr;
    EXPECT_EQ(member->cssText(), u"1px");
}

TEST(WQCSSValueListTest, AnIndexBehindTheLastGivesNull) {
    const auto list = WQCSSValueList::newValueList();
    EXPECT_FALSE(list->item(0));
    engine(list)->append(new CSS::PrimitiveValue(1, CSS::CSS_PX));
    for (const size_t index : {size_t(1), size_t(2), size_t(1) << 32, std::numeric_limits<size_t>::max()})
        EXPECT_FALSE(list->item(index)) << index;
}

TEST(WQCSSValueListTest, AMissingMemberIsNullAndCounts) {
    const auto list = WQCSSValueList::newValueList();
    engine(list)->append(nullptr);
    engine(list)->append(new CSS::PrimitiveValue(1, CSS::CSS_PX));
    EXPECT_EQ(list->length(), 2u);
    EXPECT_FALSE(list->item(0));
    EXPECT_EQ(list->item(1)->cssText(), u"1px");
}

void expectNothingToBeAnswered(const Ref<WQCSSValueList>& list) {
    ASSERT_TRUE(list);
    EXPECT_EQ(list->length(), 0u);
    EXPECT_FALSE(list->item(0));
}

TEST(WQCSSValueListTest, AroundNoneItAnswersAsNullDoes) {
    expectNothingToBeAnswered(around(nullptr));
    EXPECT_EQ(around(nullptr)->cssText(), nullptr);
}

TEST(WQCSSValueListTest, AroundAPrimitiveValueItAnswersAsNullDoes) {
    expectNothingToBeAnswered(WQCSSValue::newWithCSSValue<WQCSSValueList>(new CSS::PrimitiveValue(1, CSS::CSS_PX)));
}

}  // namespace
