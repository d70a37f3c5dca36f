#include "mac/Frameworks/WQCSS/WQCSSStyleDeclaration.h"

#include <csignal>
#include <limits>
#include <stdexcept>

#include "mac/Frameworks/WQCSS/WQCSSMutableStyleDeclaration.h"
#include "mac/Frameworks/WQCSS/WQCSSPrimitiveValue.h"
#include "mac/Frameworks/WQCSS/WQCSSValueList.h"
#include "tests/dom/Support.h"

using namespace test;

namespace {

SharedPtr<CSS::MutableStyleDeclaration> declared(const std::string& text) {
    const SharedPtr<CSS::MutableStyleDeclaration> declaration = new CSS::MutableStyleDeclaration;
    declaration->setCssText(text);
    return declaration;
}

Ref<WQCSSStyleDeclaration> around(CSS::StyleDeclaration* declaration) {
    return WQCSSStyleDeclaration::newWithCSSStyleDeclaration(declaration);
}
Ref<WQCSSStyleDeclaration> facade(const std::string& text) { return around(declared(text).Get()); }
Ref<WQCSSMutableStyleDeclaration> changeable(const std::string& text) {
    return WQCSSStyleDeclaration::newWithCSSStyleDeclaration<WQCSSMutableStyleDeclaration>(declared(text).Get());
}

TEST(WQCSSStyleDeclarationTest, KeepsOneCountAsLongAsItLives) {
    const auto declaration = declared("");
    auto wrapped = around(declaration.Get());
    EXPECT_EQ(wrapped->cssStyleDeclaration(), declaration.Get());
    EXPECT_EQ(declaration->refCount, 2);
    wrapped = nullptr;
    EXPECT_EQ(declaration->refCount, 1);
}

TEST(WQCSSStyleDeclarationTest, ForwardsEachQuestion) {
    const auto declaration = declared("color: red; margin-top: 1pt");
    const auto wrapped = around(declaration.Get());
    EXPECT_EQ(wrapped->cssText(), u"color: #ff0000; margin-top: 1pt; ");
    EXPECT_EQ(wrapped->propertyValue(u"color"), u"#ff0000");
    EXPECT_EQ(wrapped->propertyCSSValue(u"margin-top")->cssText(), u"1pt");
    EXPECT_EQ(wrapped->length(), 2u);
    EXPECT_EQ(wrapped->item(0), u"color");
    EXPECT_EQ(wrapped->item(1), u"margin-top");
}

TEST(WQCSSStyleDeclarationTest, SeesWhatChangesInTheEngine) {
    const auto declaration = declared("color: red");
    const auto wrapped = around(declaration.Get());
    declaration->setCssText("width: 2px; color: blue; display: none");
    EXPECT_EQ(wrapped->cssText(), u"width: 2px; color: #0000ff; display: none; ");
    EXPECT_EQ(wrapped->propertyValue(u"color"), u"#0000ff");
    EXPECT_EQ(wrapped->propertyCSSValue(u"width")->cssText(), u"2px");
    EXPECT_EQ(wrapped->length(), 3u);
    EXPECT_EQ(wrapped->item(2), u"display");
}

TEST(WQCSSStyleDeclarationTest, IsEmptyAroundAnEmptyOne) {
    const auto empty = facade("");
    EXPECT_EQ(empty->cssText(), u"");
    EXPECT_EQ(empty->length(), 0u);
    EXPECT_THROW(empty->item(0), std::out_of_range);
}

TEST(WQCSSStyleDeclarationTest, AMissingPropertyHasAnEmptyTextAndNoValue) {
    const auto wrapped = facade("color: red");
    for (const NSString& name : {u"width"_ns, u"Color"_ns, u""_ns, u"\U0001D11E"_ns, NSString()}) {
        EXPECT_EQ(wrapped->propertyValue(name), u"");
        EXPECT_FALSE(wrapped->propertyCSSValue(name));
    }
}

TEST(WQCSSStyleDeclarationTest, AValueIsWrappedAnewEachTime) {
    const auto declaration = declared("color: red");
    const auto wrapped = around(declaration.Get());
    const auto one = wrapped->propertyCSSValue(u"color"), other = wrapped->propertyCSSValue(u"color");
    EXPECT_NE(one.get(), other.get());
    EXPECT_EQ(one->cssValue(), other->cssValue());
    EXPECT_EQ(one->cssValue(), declaration->propertyCSSValue("color"));
}

TEST(WQCSSStyleDeclarationTest, AValueIsWrappedByItsKind) {
    const auto wrapped = facade("color: red; font-family: a, b");
    EXPECT_TRUE(wq::cast<WQCSSPrimitiveValue>(wrapped->propertyCSSValue(u"color")));
    const auto families = wq::cast<WQCSSValueList>(wrapped->propertyCSSValue(u"font-family"));
    ASSERT_TRUE(families);
    EXPECT_EQ(families->length(), 2u);
    EXPECT_EQ(families->item(1)->cssText(), u"b");
}

TEST(WQCSSStyleDeclarationTest, AChangedValueChangesTheDeclaration) {
    const auto wrapped = facade("width: 1px");
    wq::cast<WQCSSPrimitiveValue>(wrapped->propertyCSSValue(u"width"))->setFloatValue_unitType(3, CSS::CSS_PT);
    EXPECT_EQ(wrapped->cssText(), u"width: 3pt; ");
}

TEST(WQCSSStyleDeclarationTest, AValueOutlivesTheDeclaration) {
    auto wrapped = facade("width: 1px");
    const auto value = wrapped->propertyCSSValue(u"width");
    wrapped = nullptr;
    EXPECT_EQ(value->cssText(), u"1px");
}

TEST(WQCSSStyleDeclarationTest, CrossesInUTF8) {
    const auto wrapped = facade("font-family: \xF0\x9D\x84\x9E\xC3\xA4");
    EXPECT_EQ(wrapped->cssText(), u"font-family: \U0001D11E\u00E4; ");
    EXPECT_EQ(wrapped->propertyValue(u"font-family"), u"\U0001D11E\u00E4");
}

TEST(WQCSSStyleDeclarationTest, AnIndexBehindTheLastRaisesTheStandardException) {
    const auto wrapped = facade("color: red");
    for (const size_t index : {size_t(1), size_t(2), size_t(1) << 32, std::numeric_limits<size_t>::max()}) {
        SCOPED_TRACE(index);
        EXPECT_THROW(wrapped->item(index), std::out_of_range);
    }
}

// ---- removeDuplicatePropertiesFromStyle

TEST(WQCSSStyleDeclarationTest, TakesOutOfTheArgumentWhatItSaysItself) {
    const auto parent = facade("color: red; width: 1px; display: none");
    const auto child = changeable("color: red; width: 2px; font-style: italic; display: none");
    parent->removeDuplicatePropertiesFromStyle(child);
    EXPECT_EQ(child->cssText(), u"width: 2px; font-style: italic; ");
    EXPECT_EQ(parent->cssText(), u"color: #ff0000; width: 1px; display: none; ");
}

TEST(WQCSSStyleDeclarationTest, TakesNothingOutOfNull) {
    const auto parent = facade("color: red");
    parent->removeDuplicatePropertiesFromStyle(nullptr);
    const auto none = WQCSSStyleDeclaration::newWithCSSStyleDeclaration<WQCSSMutableStyleDeclaration>(nullptr);
    parent->removeDuplicatePropertiesFromStyle(none);
    EXPECT_EQ(parent->cssText(), u"color: #ff0000; ");
}

TEST(WQCSSStyleDeclarationTest, ADeclarationThinnedByItselfIsEmpty) {
    const auto wrapped = changeable("color: red; width: 1px");
    wrapped->removeDuplicatePropertiesFromStyle(wrapped);
    EXPECT_EQ(wrapped->length(), 0u);
}

// ---- Around none

TEST(WQCSSStyleDeclarationTest, AroundNoneItAnswersAsNullDoes) {
    const auto none = around(nullptr);
    ASSERT_TRUE(none);
    EXPECT_EQ(none->cssStyleDeclaration(), nullptr);
    EXPECT_EQ(none->cssText(), nullptr);
    EXPECT_EQ(none->propertyValue(u"color"), nullptr);
    EXPECT_FALSE(none->propertyCSSValue(u"color"));
    EXPECT_EQ(none->propertyPriority(u"color"), nullptr);
    EXPECT_EQ(none->length(), 0u);
    EXPECT_EQ(none->item(0), nullptr);
    const auto child = changeable("color: red");
    none->removeDuplicatePropertiesFromStyle(child);
    EXPECT_EQ(child->length(), 1u);
}

// ---- propertyPriority

// A declaration that knows priorities.
struct KnowingDeclaration : CSS::MutableStyleDeclaration {
    std::string propertyPriority(const std::string& name) override { return "\xF0\x9D\x84\x9E of " + name; }
};

TEST(WQCSSStyleDeclarationTest, ForwardsThePriority) {
    EXPECT_EQ(around(new KnowingDeclaration)->propertyPriority(u"\u00E4"), u"\U0001D11E of \u00E4");
}

#ifdef WQ_NO_HARD_ASSERTIONS

TEST(WQCSSStyleDeclarationTest, ThePriorityIsEmpty) { EXPECT_EQ(facade("color: red !important")->propertyPriority(u"color"), u""); }

#else

TEST(WQCSSStyleDeclarationDeathTest, ThePriorityIsNotSupported) {
    EXPECT_EXIT(
        facade("color: red !important")->propertyPriority(u"color"), testing::KilledBySignal(SIGABRT),
        "^Assertion failed: \\(0\\), function propertyPriority, file common/core/css/StyleDeclaration, line [0-9]+\\.\n");
}

#endif

}  // namespace
