#include "common/core/css/StyleDeclaration.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include "common/core/css/PropContent.h"
#include "common/core/css/ShorthandProperties.h"
#include "tests/common/core/css/Declarations.h"
#include "tests/common/core/css/PlainStyle.h"

using CSS::ComputedStyleDeclaration;
using CSS::MutableStyleDeclaration;
using CSS::PrimitiveValue;
using CSS::Property;
using CSS::Value;
using test::dumpOfDeclaration;
using testing::ElementsAre;

namespace {

// A declaration of the text.
struct Declared : MutableStyleDeclaration {
    explicit Declared(const std::string& text) { CSS::Parser().ParseStyleDeclaration(text, this); }
};

SharedPtr<Property> colored(const char* name) {
    SharedPtr<Property> color = new CSS::PropColor;
    color->setValue(new PrimitiveValue(CSS::CSSColor(std::string(name))));
    return color;
}

SharedPtr<CSS::Style> newStyle() {
    SharedPtr<CSS::Style> style = new PlainStyle;
    style->SetFont(SharedPtr<CSS::Font>(new PlainFont));
    style->SetListStyleType(WQCSSListStyleTypeDisc);
    return style;
}

struct Computed : ComputedStyleDeclaration {
    Computed() : ComputedStyleDeclaration(newStyle().Get()) {}
};

// Writes down which of its operations are called by name.
struct LoggingDeclaration : MutableStyleDeclaration {
    std::string removeProperty(const std::string& name) override {
        log.push_back("remove " + name);
        return MutableStyleDeclaration::removeProperty(name);
    }
    std::vector<std::string> log;
};

// ---- MutableStyleDeclaration

TEST(MutableStyleDeclaration, IsEmptyAtFirst) {
    MutableStyleDeclaration declaration;
    EXPECT_EQ(declaration.length(), 0u);
    EXPECT_EQ(declaration.cssText(), "");
    EXPECT_EQ(declaration.property("color").Get(), nullptr);
    EXPECT_EQ(declaration.propertyCSSValue("color"), nullptr);
    EXPECT_EQ(declaration.propertyValue("color"), "");
}

TEST(MutableStyleDeclaration, KeepsPropertiesInTheOrderOfTheirAddition) {
    MutableStyleDeclaration declaration;
    const auto color = colored("red");
    declaration.addProperty(new CSS::PropWidth);
    declaration.addProperty(color.Get());
    EXPECT_EQ(declaration.length(), 2u);
    EXPECT_EQ(declaration.item(0), "width");
    EXPECT_EQ(declaration.item(1), "color");
    EXPECT_EQ(declaration.propertyAtIndex(1).Get(), color.Get());
    EXPECT_EQ(declaration.properties[1].Get(), color.Get());
    EXPECT_EQ(color->refCount, 2);
}

TEST(MutableStyleDeclaration, MayHoldANameTwiceAndThenTheFirstAnswers) {
    Declared declaration("color: red; color: blue");
    EXPECT_EQ(declaration.length(), 2u);
    EXPECT_EQ(declaration.propertyValue("color"), "#ff0000");
    EXPECT_EQ(declaration.property("color").Get(), declaration.propertyAtIndex(0).Get());
    EXPECT_EQ(declaration.cssText(), "color: #ff0000; color: #0000ff; ");
}

TEST(MutableStyleDeclaration, AnIndexBehindTheLastRaises) {
    Declared declaration("color: red; width: 1px");
    EXPECT_EQ(declaration.item(1), "width");
    for (const unsigned long index : {2ul, 3ul, 1ul << 32, std::numeric_limits<unsigned long>::max()}) {
        SCOPED_TRACE(index);
        EXPECT_THROW(declaration.item(index), std::out_of_range);
        EXPECT_THROW(declaration.propertyAtIndex(index), std::out_of_range);
    }
    MutableStyleDeclaration empty;
    EXPECT_THROW(empty.item(0), std::out_of_range);
    EXPECT_THROW(empty.propertyAtIndex(0), std::out_of_range);
}

TEST(MutableStyleDeclaration, NamesCompareExactly) {
    Declared declaration("color: red; margin-top: 1px");
    for (const std::string name : {"Color", "colo", "color ", "background-color", "margin", "margin-to", ""}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(declaration.property(name).Get(), nullptr);
        EXPECT_EQ(declaration.propertyCSSValue(name), nullptr);
        EXPECT_EQ(declaration.propertyValue(name), "");
    }
}

TEST(MutableStyleDeclaration, AValueStaysItsPropertys) {
    Declared declaration("color: red");
    const SharedPtr<Value> value = declaration.propertyCSSValue("color");
    EXPECT_EQ(value.Get(), declaration.propertyAtIndex(0)->value.Get());
    EXPECT_EQ(value->refCount, 2);
    EXPECT_EQ(declaration.propertyValue("color"), "#ff0000");
    EXPECT_EQ(value->refCount, 2);
}

TEST(MutableStyleDeclaration, ItsTextIsThatOfAllPropertiesJoined) {
    EXPECT_EQ(
        Declared("color: red !important; font-family: A B,'C'; margin-top: 0").cssText(),
        "color: #ff0000!important; font-family: A B, 'C'; margin-top: 0pt; ");
}

TEST(MutableStyleDeclaration, APropertyWithoutAValueIsWrittenAsQuestionMarks) {
    MutableStyleDeclaration declaration;
    declaration.addProperty(new CSS::PropColor);
    EXPECT_EQ(declaration.cssText(), "color: ???; ");
}

TEST(MutableStyleDeclaration, APropertyWithoutAValueReadsAsTheEmptyText) {
    MutableStyleDeclaration declaration;
    declaration.addProperty(new CSS::PropColor);
    EXPECT_EQ(declaration.propertyCSSValue("color"), nullptr);
    EXPECT_EQ(declaration.propertyValue("color"), "");
    EXPECT_EQ(declaration.removeProperty("color"), "");
    EXPECT_EQ(declaration.length(), 0u);
}

TEST(MutableStyleDeclaration, AFirstPropertyWithoutAValueHidesTheSecond) {
    MutableStyleDeclaration declaration;
    declaration.addProperty(new CSS::PropColor);
    declaration.addProperty(colored("red").Get());
    EXPECT_EQ(declaration.propertyValue("color"), "");
}

TEST(MutableStyleDeclaration, APropertyOfAnUnknownNameHasTheEmptyName) {
    MutableStyleDeclaration declaration;
    declaration.addProperty(new CSS::PropGeneric("foo"));
    EXPECT_EQ(declaration.item(0), "");
    EXPECT_EQ(declaration.property("foo").Get(), nullptr);
    EXPECT_EQ(declaration.property("").Get(), declaration.propertyAtIndex(0).Get());
}

TEST(MutableStyleDeclaration, BreaksUpAMargin) {
    Declared declaration("margin: 1pt");
    EXPECT_EQ(declaration.length(), 4u);
    EXPECT_EQ(declaration.cssText(), "margin-top: 1pt; margin-left: 1pt; margin-bottom: 1pt; margin-right: 1pt; ");
    EXPECT_EQ(declaration.property("margin").Get(), nullptr);
    EXPECT_EQ(declaration.removeProperty("margin"), "");
    EXPECT_EQ(declaration.length(), 4u);
}

TEST(MutableStyleDeclaration, BreaksUpAFontAndLeavesOutWhatWasNotWritten) {
    Declared declaration("font: bold italic 12pt/2 Times");
    EXPECT_EQ(declaration.cssText(), "font-style: italic; font-weight: bold; font-size: 12pt; line-height: 2; font-family: Times; ");
    EXPECT_EQ(declaration.propertyCSSValue("font"), nullptr);
    EXPECT_EQ(declaration.propertyValue("font"), "");
}

TEST(MutableStyleDeclaration, PutsThePartsOfAShorthandBehindTheOthers) {
    Declared declaration("margin-left: 5pt; color: red");
    const SharedPtr<CSS::PropMargin> margin = new CSS::PropMargin;
    margin->important = true;
    margin->marginTop = new CSS::PropMarginTop;
    margin->marginLeft = new CSS::PropMarginLeft;
    margin->marginBottom = new CSS::PropMarginBottom;
    margin->marginRight = new CSS::PropMarginRight;
    margin->marginLeft->setValue(new PrimitiveValue(1, CSS::CSS_PT));
    declaration.addProperty(margin.Get());
    EXPECT_EQ(
        declaration.cssText(),
        "margin-left: 5pt; color: #ff0000; margin-top: ???; margin-left: 1pt; margin-bottom: ???; margin-right: ???; ");
    EXPECT_EQ(declaration.propertyAtIndex(3).Get(), margin->marginLeft.Get());  // itself, no copy
    EXPECT_EQ(declaration.propertyValue("margin-left"), "5pt");
    EXPECT_EQ(margin->refCount, 1);
}

TEST(MutableStyleDeclaration, AShorthandWithoutPartsAddsNothing) {
    MutableStyleDeclaration declaration;
    const SharedPtr<Property> font = new CSS::PropFont;
    declaration.addProperty(font.Get());
    EXPECT_EQ(declaration.length(), 0u);
    EXPECT_EQ(font->refCount, 1);
}

TEST(MutableStyleDeclaration, TheImportanceOfAShorthandIsLost) {
    Declared declaration("margin: 1pt !important; color: red !important");
    EXPECT_EQ(
        declaration.cssText(), "margin-top: 1pt; margin-left: 1pt; margin-bottom: 1pt; margin-right: 1pt; color: #ff0000!important; ");
}

TEST(MutableStyleDeclaration, RemovingTakesTheFirstOfANameAndAnswersItsText) {
    Declared declaration("color: red; width: 1px; color: blue");
    const auto first = declaration.propertyAtIndex(0);
    EXPECT_EQ(declaration.removeProperty("color"), "#ff0000");
    EXPECT_EQ(declaration.cssText(), "width: 1px; color: #0000ff; ");
    EXPECT_EQ(declaration.propertyValue("color"), "#0000ff");
    EXPECT_EQ(first->refCount, 1);
    EXPECT_EQ(first->cssText(), "color: #ff0000; ");
    EXPECT_EQ(declaration.removeProperty("color"), "#0000ff");
    EXPECT_EQ(declaration.removeProperty("color"), "");
    EXPECT_EQ(declaration.cssText(), "width: 1px; ");
}

TEST(MutableStyleDeclaration, RemovingAnAbsentNameChangesNothing) {
    Declared declaration("color: red");
    EXPECT_EQ(declaration.removeProperty("width"), "");
    EXPECT_EQ(declaration.removeProperty(""), "");
    EXPECT_EQ(declaration.cssText(), "color: #ff0000; ");
}

TEST(MutableStyleDeclaration, RemovingTheLastOneLeavesAnEmptyDeclaration) {
    Declared declaration("color: red");
    EXPECT_EQ(declaration.removeProperty("color"), "#ff0000");
    EXPECT_EQ(declaration.length(), 0u);
    EXPECT_EQ(declaration.cssText(), "");
}

TEST(MutableStyleDeclaration, SettingAValueObjectRemovesThePropertyAndAddsNothing) {
    Declared declaration("color: red; width: 1px");
    const SharedPtr<Value> value = new PrimitiveValue(CSS::CSSColor(0x0000ff));
    declaration.setProperty("color", value.Get(), "");
    EXPECT_EQ(declaration.cssText(), "width: 1px; ");
    EXPECT_EQ(value->refCount, 1);
}

TEST(MutableStyleDeclaration, SettingAValueObjectRemovesOnlyTheFirstOfAName) {
    Declared declaration("color: red; color: blue");
    const SharedPtr<Value> value = new PrimitiveValue(CSS::CSSColor(0x0000ff));
    declaration.setProperty("color", value.Get(), "");
    EXPECT_EQ(declaration.cssText(), "color: #0000ff; ");
}

TEST(MutableStyleDeclaration, SettingAValueObjectOfAnAbsentNameChangesNothing) {
    Declared declaration("width: 1px");
    const SharedPtr<Value> value = new PrimitiveValue(1, CSS::CSS_PX);
    for (const std::string name : {"color", "margin", "font", "foo", ""}) {
        SCOPED_TRACE(name);
        declaration.setProperty(name, value.Get(), "important");
        EXPECT_EQ(declaration.cssText(), "width: 1px; ");
        EXPECT_EQ(value->refCount, 1);
    }
}

TEST(MutableStyleDeclaration, SettingAValueObjectDoesNotReadThePriority) {
    for (const std::string priority : {"", "important", "!important", "nonsense"}) {
        Declared declaration("color: red; width: 1px");
        const SharedPtr<Value> value = new PrimitiveValue(CSS::CSSColor(0x0000ff));
        declaration.setProperty("color", value.Get(), priority);
        EXPECT_EQ(declaration.cssText(), "width: 1px; ") << priority;
    }
}

TEST(MutableStyleDeclaration, SettingANullValueObjectRemovesThePropertyToo) {
    Declared declaration("color: red; width: 1px");
    declaration.setProperty("color", static_cast<Value*>(nullptr), "");
    EXPECT_EQ(declaration.cssText(), "width: 1px; ");
}

TEST(MutableStyleDeclaration, SettingAValueObjectThatNobodyHoldsDestroysIt) {
    MutableStyleDeclaration declaration;
    declaration.setProperty("color", new PrimitiveValue(CSS::CSSColor(0x0000ff)), "");  // would leak
    EXPECT_EQ(declaration.length(), 0u);
}

TEST(MutableStyleDeclaration, SettingTheValueObjectThatThePropertyHasIsSafe) {
    Declared declaration("color: red; width: 1px");
    const SharedPtr<Value> value = declaration.propertyCSSValue("color");
    declaration.setProperty("color", value.Get(), "");
    EXPECT_EQ(declaration.cssText(), "width: 1px; ");
    EXPECT_EQ(value->refCount, 1);
}

TEST(MutableStyleDeclaration, SettingTheValueObjectThatOnlyThePropertyHoldsIsSafe) {
    Declared declaration("color: red; width: 1px");
    declaration.setProperty("color", declaration.propertyCSSValue("color"), "");
    EXPECT_EQ(declaration.cssText(), "width: 1px; ");
}

TEST(MutableStyleDeclaration, SettingAValueObjectMakesOneProperty) {
    Declared declaration("");
    declaration.setProperty("color", static_cast<Value*>(nullptr), "");
    EXPECT_EQ(Property::gOrderCounter, 1);
    declaration.setProperty("font", static_cast<Value*>(nullptr), "");
    EXPECT_EQ(Property::gOrderCounter, 2);
}

TEST(MutableStyleDeclaration, SettingAValueObjectRemovesByTheOverridableOperation) {
    LoggingDeclaration declaration;
    declaration.setProperty("color", static_cast<Value*>(nullptr), "");
    EXPECT_THAT(declaration.log, ElementsAre("remove color"));
}

// ---- ComputedStyleDeclaration

TEST(ComputedStyleDeclaration, HasEveryPropertyInAFixedOrder) {
    const char* const names[] = {
        "font",        "color",           "content",          "font-size",  "font-style",       "font-family",       "font-variant",
        "position",    "vertical-align",  "list-style-type",  "margin",     "display",          "line-height",       "margin-top",
        "margin-left", "margin-right",    "margin-bottom",    "width",      "page-break-after", "page-break-before", "font-weight",
        "text-indent", "text-decoration", "background-color", "text-align",
    };
    Computed computed;
    EXPECT_EQ(computed.length(), 25u);
    for (unsigned long i = 0; i < 25; ++i) {
        EXPECT_EQ(computed.item(i), names[i]) << i;
        EXPECT_EQ(computed.propertyAtIndex(i)->name(), names[i]) << i;
    }
}

TEST(ComputedStyleDeclaration, AnItemBehindTheLastIsEmpty) {
    Computed computed;
    EXPECT_EQ(computed.item(25), "");
    EXPECT_EQ(computed.item(26), "");
    EXPECT_EQ(computed.item(0xFFFFFFFF), "");
}

TEST(ComputedStyleDeclaration, CutsAnIndexTo32Bits) {
    Computed computed;
    EXPECT_EQ(computed.item(1ul << 32), "font");
    EXPECT_EQ(computed.item((1ul << 32) + 24), "text-align");
    EXPECT_EQ(computed.item((1ul << 32) + 25), "");
    EXPECT_EQ(computed.propertyAtIndex((1ul << 32) + 1)->name(), "color");
}

TEST(ComputedStyleDeclaration, ItsPropertiesAreNewAndWithoutAValue) {
    Computed computed;
    const auto color = computed.property("color");
    EXPECT_EQ(color->value.Get(), nullptr);
    EXPECT_EQ(color->cssText(), "color: ???; ");
    EXPECT_EQ(color->refCount, 1);
    EXPECT_NE(computed.property("color").Get(), color.Get());
}

TEST(ComputedStyleDeclaration, APropertyOfAnUnknownNameHasNoName) {
    Computed computed;
    for (const auto& property :
         {computed.property("foo"), computed.property("Color"), computed.property(""), computed.propertyAtIndex(25)}) {
        ASSERT_TRUE(property);
        EXPECT_EQ(property->name(), "");
        EXPECT_EQ(property->cssText(), ": ???; ");
    }
}

TEST(ComputedStyleDeclaration, AValueIsNewWithACountOfZero) {
    Computed computed;
    Value* const value = computed.propertyCSSValue("color");
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(value->refCount, 0);
    EXPECT_EQ(value->cssText(), "#000000");
    const SharedPtr<Value> other = computed.propertyCSSValue("color");
    EXPECT_NE(other.Get(), value);
    delete value;
}

TEST(ComputedStyleDeclaration, ShorthandsHaveNoValue) {
    Computed computed;
    for (const std::string name : {"font", "margin"}) {
        EXPECT_EQ(computed.propertyCSSValue(name), nullptr) << name;
        EXPECT_EQ(computed.propertyValue(name), "") << name;
    }
}

TEST(ComputedStyleDeclaration, PropertiesWithoutEffectAndUnknownNamesHaveNoValue) {
    Computed computed;
    for (const std::string name : {"content", "position", "font-variant", "background-color", "foo", "Color", ""}) {
        EXPECT_EQ(computed.propertyCSSValue(name), nullptr) << name;
        EXPECT_EQ(computed.propertyValue(name), "") << name;
    }
}

TEST(ComputedStyleDeclaration, EachQuestionMakesOneProperty) {
    Declared nothing("");
    Computed computed;
    EXPECT_EQ(computed.propertyValue("color"), "#000000");
    EXPECT_EQ(Property::gOrderCounter, 1);
    EXPECT_EQ(computed.propertyValue("font"), "");
    EXPECT_EQ(Property::gOrderCounter, 2);
    computed.property("width");
    EXPECT_EQ(Property::gOrderCounter, 3);
}

const std::string defaultText =
    "color:#000000; font-size:12px; font-style:normal; font-family:Courier; vertical-align:middle; list-style-type:disc; display:block; "
    "line-height:1; margin-top:0px; margin-left:0px; margin-right:0px; margin-bottom:0px; width:auto; page-break-after:auto; "
    "page-break-before:auto; font-weight:normal; text-indent:0px; text-decoration:none; text-align:left; ";

TEST(ComputedStyleDeclaration, ItsTextHasNoBlankBehindColonsAndSkipsWhatHasNoValue) { EXPECT_EQ(Computed().cssText(), defaultText); }

TEST(ComputedStyleDeclaration, BackgroundColorIsNeverInItsText) {
    Declared rules("background-color: #ffffff; position: static; font-variant: small-caps; content: 'a'");
    ASSERT_EQ(rules.length(), 4u);
    Computed computed;
    for (const auto& property : rules.properties) property->applyToStyle(computed.style.Get());
    EXPECT_EQ(computed.cssText(), defaultText);
}

TEST(ComputedStyleDeclaration, ReadsTheStyleItIsGiven) {
    Declared rules(
        "color: #010203; font: italic bold 1in/1.5 'A B', C; margin: 1pt 10% auto 1cm; width: 50%; display: none; text-indent: 1pc;"
        "list-style-type: octal; page-break-after: inherit; page-break-before: always; text-decoration: underline; text-align: justify;"
        "vertical-align: top");
    Computed computed;
    for (const auto& property : rules.properties) property->applyToStyle(computed.style.Get());
    EXPECT_EQ(
        computed.cssText(),
        "color:#010203; font-size:72px; font-style:italic; font-family:'A B'; vertical-align:top; list-style-type:octal; display:block; "
        "line-height:1.5; margin-top:1px; margin-left:28.3465px; margin-right:10%; margin-bottom:auto; width:50%; page-break-after:inline; "
        "page-break-before:always; font-weight:bold; text-indent:12px; text-decoration:underline; text-align:justify; ");
}

TEST(ComputedStyleDeclaration, FollowsAStyleThatChanges) {
    Computed computed;
    computed.style->SetFontSize(20);
    EXPECT_EQ(computed.propertyValue("font-size"), "20px");
}

TEST(ComputedStyleDeclaration, SkipsAValueThatTheStyleCannotSay) {
    Computed computed;
    computed.style->SetMarginTop({0, WQCSSLengthTypeNone});
    EXPECT_EQ(computed.propertyCSSValue("margin-top"), nullptr);
    EXPECT_EQ(computed.propertyValue("margin-top"), "");
    EXPECT_EQ(computed.cssText().find("margin-top"), std::string::npos);
}

TEST(ComputedStyleDeclaration, ItsTextAsksTheOverridableOperation) {
    struct Overridden : Computed {
        Value* propertyCSSValue(const std::string& name) override {
            return name == "font" || name == "width" ? new PrimitiveValue(1, CSS::CSS_PX) : nullptr;
        }
    } computed;
    EXPECT_EQ(computed.cssText(), "font:1px; width:1px; ");
}

TEST(ComputedStyleDeclaration, KeepsItsStyleAlive) {
    SharedPtr<CSS::Style> style = newStyle();
    {
        ComputedStyleDeclaration computed(style.Get());
        EXPECT_EQ(computed.style.Get(), style.Get());
        EXPECT_EQ(style->refCount, 2);
    }
    EXPECT_EQ(style->refCount, 1);
    ComputedStyleDeclaration computed(style.Get());
    style = nullptr;
    EXPECT_EQ(computed.propertyValue("color"), "#000000");
}

// ---- Both

TEST(StyleDeclaration, APropertyValueAsksTheOverridableOperationAndHoldsItsAnswer) {
    struct Overridden : MutableStyleDeclaration {
        Value* propertyCSSValue(const std::string& name) override { return new PrimitiveValue(name + "!", CSS::CSS_STRING); }
    } declaration;
    EXPECT_EQ(declaration.propertyValue("foo"), "foo!");  // would leak
}

TEST(StyleDeclaration, RemovingDuplicatesFromNothingDoesNothing) {
    Declared declaration("color: red");
    declaration.removeDuplicatePropertiesFromStyle(nullptr);
    EXPECT_EQ(declaration.cssText(), "color: #ff0000; ");
    Computed().removeDuplicatePropertiesFromStyle(nullptr);
}

TEST(StyleDeclaration, RemovingDuplicatesEmptiesADeclarationThatSaysTheSame) {
    Declared declaration("color: red; margin: 1pt; font-family: A, B"), other("font-family: A,B; margin-left: 1pt; color: #ff0000");
    declaration.removeDuplicatePropertiesFromStyle(&other);
    EXPECT_EQ(other.length(), 0u);
    EXPECT_EQ(declaration.length(), 6u);
}

TEST(StyleDeclaration, RemovingDuplicatesLeavesWhatDiffers) {
    Declared declaration("color: red; width: 12pt; text-align: left; margin: 1pt");
    Declared other("color: blue; width: 12.0pt; display: block; text-align: left; margin: 1pt 2pt");
    declaration.removeDuplicatePropertiesFromStyle(&other);
    EXPECT_EQ(other.cssText(), "color: #0000ff; display: block; margin-left: 2pt; margin-right: 2pt; ");
}

TEST(StyleDeclaration, DuplicatesAreComparedByText) {
    Declared declaration("width: 12pt; margin-top: 1in; line-height: 1.50; font-family: 'a'");
    Declared other("width: 12px; margin-top: 72pt; line-height: 1.5; font-family: \"a\"");
    declaration.removeDuplicatePropertiesFromStyle(&other);
    EXPECT_EQ(other.cssText(), "width: 12px; margin-top: 72pt; font-family: \"a\"; ");
}

TEST(StyleDeclaration, ImportanceMakesNoDifferenceToDuplicates) {
    Declared declaration("color: red"), other("color: red !important");
    declaration.removeDuplicatePropertiesFromStyle(&other);
    EXPECT_EQ(other.length(), 0u);
}

TEST(StyleDeclaration, DuplicatesAreThoseOfTheFirstPropertyOfAName) {
    Declared declaration("color: red; color: blue"), other("color: blue");
    declaration.removeDuplicatePropertiesFromStyle(&other);
    EXPECT_EQ(other.cssText(), "color: #0000ff; ");
}

TEST(StyleDeclaration, RemovingADuplicateTakesTheFirstOfItsName) {
    Declared declaration("color: blue"), other("color: red; color: blue");
    declaration.removeDuplicatePropertiesFromStyle(&other);
    EXPECT_EQ(other.cssText(), "color: #0000ff; ");
}

TEST(StyleDeclaration, RemovingDuplicatesThatOccurTwiceTakesTheFirstTwoOfTheirName) {
    Declared declaration("color: blue"), other("color: lime; color: red; color: blue; width: 1px; color: blue");
    declaration.removeDuplicatePropertiesFromStyle(&other);
    EXPECT_EQ(other.cssText(), "color: #0000ff; width: 1px; color: #0000ff; ");
}

TEST(StyleDeclaration, RemovingDuplicatesFromItselfTakesWhatAnswers) {
    Declared declaration("color: red; width: 1px; color: blue");
    declaration.removeDuplicatePropertiesFromStyle(&declaration);
    EXPECT_EQ(declaration.cssText(), "color: #0000ff; ");
}

TEST(StyleDeclaration, DuplicatesAreRemovedByNameInOrderAfterTheWalk) {
    LoggingDeclaration other;
    CSS::Parser().ParseStyleDeclaration("width: 1px; color: red; display: none; width: 1px", &other);
    Declared("color: red; width: 1px").removeDuplicatePropertiesFromStyle(&other);
    EXPECT_THAT(other.log, ElementsAre("remove width", "remove color", "remove width"));
    EXPECT_EQ(other.cssText(), "display: none; ");
}

TEST(StyleDeclaration, APropertyWithoutAValueIsNoDuplicateOfAColor) {
    MutableStyleDeclaration other;
    other.addProperty(new CSS::PropColor);
    Declared("color: red").removeDuplicatePropertiesFromStyle(&other);
    EXPECT_EQ(other.length(), 1u);

    MutableStyleDeclaration declaration;
    declaration.addProperty(new CSS::PropColor);
    declaration.removeDuplicatePropertiesFromStyle(&other);  // without a value here, nothing is a duplicate
    EXPECT_EQ(other.length(), 1u);
}

TEST(StyleDeclaration, APropertyWithoutAValueIsADuplicateOfAnEmptyText) {
    MutableStyleDeclaration other;
    other.addProperty(new CSS::PropContent);
    Declared("content: counter(a)").removeDuplicatePropertiesFromStyle(&other);  // counters write nothing
    EXPECT_EQ(other.length(), 0u);
}

TEST(StyleDeclaration, AComputedDeclarationComparesComputedValues) {
    Declared other(
        "color: black; font-size: 12px; font-size: 12pt; margin: 0px; margin-top: 0; font-style: italic; display: none; display: block;"
        "background-color: black; position: static");
    Computed().removeDuplicatePropertiesFromStyle(&other);
    // Two names occur twice: the duplicates are the first size, of pixels, and the second display, for which the first goes.
    EXPECT_EQ(
        other.cssText(),
        "font-size: 12pt; margin-top: 0pt; font-style: italic; display: block; background-color: #000000; position: static; ");
}

#ifdef WQ_NO_HARD_ASSERTIONS

TEST(StyleDeclaration, AnswersNoPriorityAndNoRule) {
    Declared declaration("color: red !important");
    EXPECT_EQ(declaration.propertyPriority("color"), "");
    EXPECT_EQ(declaration.parentRule(), nullptr);
    EXPECT_EQ(Computed().propertyPriority("color"), "");
    EXPECT_EQ(Computed().parentRule(), nullptr);
}

#else

TEST(StyleDeclarationDeathTest, AskingForAPriorityFails) {
    const char* const message =
        "^Assertion failed: \\(0\\), function propertyPriority, file common/core/css/StyleDeclaration, line [0-9]+\\.\n";
    EXPECT_EXIT(Declared("color: red !important").propertyPriority("color"), testing::KilledBySignal(SIGABRT), message);
    EXPECT_EXIT(Computed().propertyPriority("foo"), testing::KilledBySignal(SIGABRT), message);
}

TEST(StyleDeclarationDeathTest, AskingForTheRuleFails) {
    const char* const message = "^Assertion failed: \\(0\\), function parentRule, file common/core/css/StyleDeclaration, line [0-9]+\\.\n";
    EXPECT_EXIT(MutableStyleDeclaration().parentRule(), testing::KilledBySignal(SIGABRT), message);
    EXPECT_EXIT(Computed().parentRule(), testing::KilledBySignal(SIGABRT), message);
}

#endif

}  // namespace
