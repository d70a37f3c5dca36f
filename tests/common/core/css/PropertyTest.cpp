#include "common/core/css/Property.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

#include "common/core/css/Parser.h"
#include "common/core/css/PropertyFactory.h"
#include "common/core/css/ShorthandProperties.h"
#include "common/core/css/Token.h"
#include "tests/common/core/css/Declarations.h"
#include "tests/common/core/css/PlainStyle.h"

using namespace CSS;
using test::dumpOfValue;
using test::printedBy;
using test::readDeclarations;

namespace {

SharedPtr<Property> make(const std::string& name) { return PropertyFactory::MakeProperty(name); }

AST* add(AST& parent, int type, const std::string& text = "") {
    AST* const node = parent.AddChild();
    node->type = type;
    node->text = text;
    return node;
}

// The value of one term, or "refused".
std::string validated(const std::string& name, int type, const std::string& text) {
    const auto property = make(name);
    AST root;
    add(root, type, text);
    const bool valid = property->validate(&root);
    EXPECT_EQ(valid, property->value.Get() != nullptr);
    return valid ? dumpOfValue(property->value.Get()) : "refused";
}

std::string warning(const std::string& name, const std::string& value) {
    return "Warning: Unsupported property " + name + " or invalid value \"" + value + "\"\n";
}

// A property of our own that writes down which terms it is asked about.
class Watcher : public Property {
public:
    explicit Watcher(PropertyID anID = PropertyDisplay, bool anAnswer = true) : Property(anID), answer(anAnswer) {}
    void applyToStyle(Style*) override {}
    Value* valueFromStyle(Style*) override { return nullptr; }
    using Property::validate;
    bool validate(AST* term, AST** next) override {
        terms.push_back(term);
        hadNext = next != nullptr;
        return answer;
    }

    std::vector<AST*> terms;
    bool hadNext = false;
    bool answer;
};

}  // namespace

// ---- What a property is

TEST(Property, HasNoValueAndNoImportanceAtFirst) {
    const Watcher property;
    EXPECT_EQ(property.value.Get(), nullptr);
    EXPECT_FALSE(property.important);
    EXPECT_EQ(property.refCount, 0);
    EXPECT_EQ(property.id, PropertyDisplay);
}

TEST(Property, IsNoShorthandByItself) { EXPECT_FALSE(Watcher().isShorthandProperty()); }

TEST(Property, IsAbstract) {
    static_assert(std::is_abstract_v<Property> && std::is_abstract_v<ShorthandProperty>);
    static_assert(std::is_base_of_v<SharedObject, Property> && std::is_base_of_v<Property, ShorthandProperty>);
}

TEST(Property, ItsNameIsThatOfItsNumber) {
    EXPECT_EQ(Watcher(PropertyDisplay).name(), "display");
    EXPECT_EQ(Watcher(PropertyPageBreakBefore).name(), "page-break-before");
    EXPECT_EQ(Watcher(PropertyUnknown).name(), "");
    EXPECT_EQ(Watcher(static_cast<PropertyID>(26)).name(), "");
}

TEST(Property, SetValueTakesACount) {
    const SharedPtr<Value> first = new PrimitiveValue(ValueBlock), second = new PrimitiveValue(ValueInline);
    Watcher property;
    property.setValue(first.Get());
    EXPECT_EQ(property.value.Get(), first.Get());
    EXPECT_EQ(first->refCount, 2);
    property.setValue(second.Get());
    EXPECT_EQ(first->refCount, 1);
    EXPECT_EQ(second->refCount, 2);
    property.setValue(second.Get());
    EXPECT_EQ(second->refCount, 2);
    property.setValue(nullptr);
    EXPECT_EQ(property.value.Get(), nullptr);
    EXPECT_EQ(second->refCount, 1);
}

TEST(Property, SharesItsValue) {
    const SharedPtr<PrimitiveValue> value = new PrimitiveValue(1, CSS_PT);
    Watcher first, second;
    first.setValue(value.Get());
    second.setValue(value.Get());
    value->setFloatValue(CSS_PT, 2);
    EXPECT_EQ(first.cssText(), "display: 2pt; ");
    EXPECT_EQ(second.cssText(), "display: 2pt; ");
}

TEST(Property, AnswersItsValueByKind) {
    Watcher property;
    EXPECT_EQ(property.primitiveValue(), nullptr);
    EXPECT_EQ(property.valueList(), nullptr);
    auto* const primitive = new PrimitiveValue(ValueBlock);
    property.setValue(primitive);
    EXPECT_EQ(property.primitiveValue(), primitive);
    EXPECT_EQ(property.valueList(), nullptr);
    auto* const list = new ValueList;
    property.setValue(list);
    EXPECT_EQ(property.primitiveValue(), nullptr);
    EXPECT_EQ(property.valueList(), list);
}

// ---- order

TEST(PropertyOrder, IsTheCounterBeforeItIsIncremented) {
    Property::gOrderCounter = 0;
    const Watcher first, second;
    EXPECT_EQ(first.order, 0);
    EXPECT_EQ(second.order, 1);
    EXPECT_EQ(Property::gOrderCounter, 2);
}

TEST(PropertyOrder, TheFirstPropertyOfAParseHasZero) {
    Property::gOrderCounter = 99;
    EXPECT_EQ(readDeclarations("display: block; color: red"), "0 display: block\n1 color: #ff0000\n");
    EXPECT_EQ(Property::gOrderCounter, 2);
}

TEST(PropertyOrder, BeginsAnewWithEveryParse) {
    readDeclarations("display: block; color: red");
    EXPECT_EQ(readDeclarations("width: 1pt"), "0 width: 1pt (9)\n");
}

TEST(PropertyOrder, AParseOfNothingBeginsAnewAsWell) {
    Property::gOrderCounter = 99;
    EXPECT_EQ(readDeclarations(""), "");
    EXPECT_EQ(Property::gOrderCounter, 0);
}

TEST(PropertyOrder, CountsPropertiesThatFail) {
    EXPECT_EQ(
        readDeclarations("color: none; foo: bar; display: block"), "2 display: block\n" + warning("color", "none") + warning("foo", "bar"));
}

TEST(PropertyOrder, CountsThePartsOfAShorthand) {
    const std::string dump = readDeclarations("margin: 0; color: red");
    EXPECT_NE(dump.find("\n5 color: #ff0000\n"), std::string::npos) << dump;
    EXPECT_EQ(Property::gOrderCounter, 6);
}

TEST(PropertyOrder, CountsNoPartsOfAShorthandThatFails) {
    EXPECT_EQ(readDeclarations("margin: a; color: red"), "1 color: #ff0000\n" + warning("margin", "a"));
}

TEST(PropertyOrder, NothingButAParseResetsIt) {
    Property::gOrderCounter = 5;
    const auto property = make("display");
    AST root;
    add(root, IDENT, "block");
    EXPECT_TRUE(property->validate(&root));
    const SharedPtr<Style> style = new PlainStyle;
    property->applyToStyle(style.Get());
    const SharedPtr<Value> value = property->valueFromStyle(style.Get());
    EXPECT_EQ(property->cssText(), "display: block; ");
    EXPECT_EQ(Property::gOrderCounter, 6);
    EXPECT_EQ(property->order, 5);
}

// ---- skipSpaces

TEST(SkipSpaces, OfNothingIsNothing) { EXPECT_EQ(Property::skipSpaces(nullptr), nullptr); }

TEST(SkipSpaces, StaysAtANodeThatIsNoSpace) {
    AST root;
    for (const int type : {0, 47, int{COMMA}, int{IDENT}, int{S}, 33}) {
        AST* const node = add(root, type);
        EXPECT_EQ(Property::skipSpaces(node), node) << type;
    }
}

TEST(SkipSpaces, GoesToTheFirstNodeThatIsNoSpace) {
    AST root;
    AST* const first = add(root, 32);
    add(root, 32);
    AST* const comma = add(root, COMMA);
    add(root, 32);
    EXPECT_EQ(Property::skipSpaces(first), comma);
}

TEST(SkipSpaces, BehindSpacesOnlyThereIsNothing) {
    AST root;
    AST* const first = add(root, 32);
    AST* const last = add(root, 32);
    EXPECT_EQ(Property::skipSpaces(first), nullptr);
    EXPECT_EQ(Property::skipSpaces(last), nullptr);
}

// ---- The whole expression

TEST(ValidateRoot, AsksForTheOneTermWithoutAPlaceForTheNext) {
    Watcher property;
    AST root;
    AST* const term = add(root, IDENT, "anything");
    EXPECT_TRUE(property.validate(&root));
    EXPECT_EQ(property.terms, std::vector<AST*>{term});
    EXPECT_FALSE(property.hadNext);
}

TEST(ValidateRoot, AnswersWhatTheTermAnswers) {
    Watcher property(PropertyDisplay, false);
    AST root;
    add(root, IDENT, "block");
    EXPECT_FALSE(property.validate(&root));
    EXPECT_EQ(property.terms.size(), 1u);
}

TEST(ValidateRoot, ARootWithASiblingIsRefusedUnseen) {
    Watcher property;
    AST parent;
    AST* const root = add(parent, 0);
    add(*root, IDENT, "block");
    add(parent, 0);
    EXPECT_FALSE(property.validate(root));
    EXPECT_TRUE(property.terms.empty());
}

TEST(ValidateRoot, TwoTermsAreRefusedUnseen) {
    Watcher property;
    AST root;
    add(root, IDENT, "block");
    add(root, 32);
    add(root, IDENT, "inline");
    EXPECT_FALSE(property.validate(&root));
    EXPECT_TRUE(property.terms.empty());
}

TEST(ValidateRoot, ATrailingOperatorIsASecondChildToo) {
    Watcher property;
    AST root;
    add(root, IDENT, "block");
    add(root, 32);
    EXPECT_FALSE(property.validate(&root));
    EXPECT_TRUE(property.terms.empty());
}

TEST(ValidateRoot, TwoTermsLeaveAnEarlierValue) {
    const auto property = make("display");
    property->setValue(new PrimitiveValue(ValueNone));
    AST root;
    add(root, IDENT, "block");
    add(root, 32);
    add(root, IDENT, "inline");
    EXPECT_FALSE(property->validate(&root));
    EXPECT_EQ(property->cssText(), "display: none; ");
}

TEST(ValidateRoot, AnExpressionOfNothingIsRefused) {
    AST root;
    for (const char* name : {"display", "width", "color", "background-color", "font-weight", "font-family", "foo"})
        EXPECT_EQ(printedBy([&] { EXPECT_FALSE(make(name)->validate(&root)) << name; }), "") << name;
}

TEST(ValidateRoot, TwoTermsAreRefusedWhateverTheyAre) {
    EXPECT_EQ(readDeclarations("display: block inline"), warning("display", "block inline"));
    EXPECT_EQ(readDeclarations("display: block, block"), warning("display", "blockblock"));
    EXPECT_EQ(readDeclarations("width: 1pt/2pt"), warning("width", "1pt/2pt"));
    EXPECT_EQ(readDeclarations("margin-top: 1pt 2pt"), warning("margin-top", "1pt 2pt"));
}

// ---- One term, the default form

// Every kind of token for a property of lengths and percentages, one of lengths, one of numbers, one of keywords.
TEST(ValidateTerm, TakesWhatTheRowOfThePropertyHolds) {
    struct Row {
        int type;
        const char* text;
        const char* width;
        const char* fontSize;
        const char* lineHeight;
        const char* display;
    };
    const char* const no = "refused";
    const Row rows[] = {
        {IDENT, "auto", "auto", no, no, no},
        {IDENT, "inherit", "inherit", no, no, no},
        {IDENT, "block", no, no, no, "block"},
        {IDENT, "none", no, no, no, "none"},
        {IDENT, "Block", no, no, no, no},
        {IDENT, "-block", no, no, no, no},
        {IDENT, "foo", no, no, no, no},
        {IDENT, "", no, no, no, no},
        {LENGTH, "12pt", "12pt (9)", "12pt (9)", no, no},
        {LENGTH, "-1.5px", "-1.5px (5)", "-1.5px (5)", no, no},
        {LENGTH, "1cm", "1cm (6)", "1cm (6)", no, no},
        {LENGTH, "2mm", "2mm (7)", "2mm (7)", no, no},
        {LENGTH, "3in", "3in (8)", "3in (8)", no, no},
        {LENGTH, "4pc", "4pc (10)", "4pc (10)", no, no},
        {LENGTH, "0pt", "0pt (9)", "0pt (9)", no, no},
        {LENGTH, "12PT", no, no, no, no},  // the unit is read exactly, and no number comes of it
        {LENGTH, "pt", no, no, no, no},
        {PERCENTAGE, "10%", "10% (2)", no, no, no},
        {PERCENTAGE, "-10%", "-10% (2)", no, no, no},
        {NUMBER, "0", "0pt (9)", "0pt (9)", no, no},
        {NUMBER, "0.0", no, no, "0 (1)", no},
        {NUMBER, "00", no, no, "0 (1)", no},
        {NUMBER, "-0", no, no, "-0 (1)", no},
        {NUMBER, "0.", no, no, "0 (1)", no},
        {NUMBER, "12", no, no, "12 (1)", no},
        {NUMBER, "1.5", no, no, "1.5 (1)", no},
        {NUMBER, "-1.5", no, no, "-1.5 (1)", no},
        {NUMBER, "", no, no, no, no},
        {EMS, "2em", no, no, no, no},
        {EXS, "2ex", no, no, no, no},
        {ANGLE, "2deg", no, no, no, no},
        {TIME, "2s", no, no, no, no},
        {FREQ, "2hz", no, no, no, no},
        {DIMEN, "2foo", no, no, no, no},
        {STRING, "\"block\"", no, no, no, no},
        {STRING, "0", no, no, no, no},
        {HASH, "#ffffff", no, no, no, no},
        {URI, "url(block)", no, no, no, no},
        {FUNCTION, "block", no, no, no, no},
        {32, "", no, no, no, no},
        {47, "", no, no, no, no},
        {COMMA, "", no, no, no, no},
        {0, "block", no, no, no, no},
        {EMS, "0", no, no, no, no},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::to_string(row.type) + " " + row.text);
        EXPECT_EQ(validated("width", row.type, row.text), row.width);
        EXPECT_EQ(validated("font-size", row.type, row.text), row.fontSize);
        EXPECT_EQ(validated("line-height", row.type, row.text), row.lineHeight);
        EXPECT_EQ(validated("display", row.type, row.text), row.display);
        EXPECT_EQ(validated("foo", row.type, row.text), no);
    }
}

TEST(ValidateTerm, OnlyABareZeroIsALengthWithoutAUnit) {
    for (const char* name : {"margin-top", "margin-left", "margin-bottom", "margin-right", "width", "text-indent", "font-size"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(validated(name, NUMBER, "0"), "0pt (9)");
        for (const char* text : {"-0", "00", "0.0", "1", "-1"}) EXPECT_EQ(validated(name, NUMBER, text), "refused") << text;
    }
}

TEST(ValidateTerm, ABareZeroIsNoLineHeight) {
    EXPECT_EQ(readDeclarations("line-height: 0"), warning("line-height", "0"));
    EXPECT_EQ(readDeclarations("line-height: 0.0"), "0 line-height: 0 (1)\n");
}

TEST(ValidateTerm, MinusZeroAndLongZerosArePlainNumbers) {
    EXPECT_EQ(readDeclarations("line-height: -0"), "0 line-height: -0 (1)\n");
    EXPECT_EQ(readDeclarations("line-height: 00"), "0 line-height: 0 (1)\n");
    EXPECT_EQ(readDeclarations("margin-top: -0"), warning("margin-top", "-0"));
    EXPECT_EQ(readDeclarations("margin-top: 00"), warning("margin-top", "00"));
    EXPECT_EQ(readDeclarations("margin-top: 0.0"), warning("margin-top", "0.0"));
}

TEST(ValidateTerm, ABareZeroIsAMarginOfZeroPoints) { EXPECT_EQ(readDeclarations("margin-top: 0"), "0 margin-top: 0pt (9)\n"); }

TEST(ValidateTerm, ANumberIsNoFontSize) { EXPECT_EQ(readDeclarations("font-size: 12"), warning("font-size", "12")); }

TEST(ValidateTerm, LengthsInEmAndExAreNotInTheLanguage) {
    EXPECT_EQ(readDeclarations("font-size: 2em"), warning("font-size", "2em"));
    EXPECT_EQ(readDeclarations("margin-top: 2ex"), warning("margin-top", "2ex"));
    EXPECT_EQ(readDeclarations("text-indent: 1em"), warning("text-indent", "1em"));
    EXPECT_EQ(readDeclarations("width: 0em"), warning("width", "0em"));
}

TEST(ValidateTerm, ASignInFrontOfAKeywordSpoilsIt) {
    EXPECT_EQ(readDeclarations("display: -block"), warning("display", "-block"));
    EXPECT_EQ(readDeclarations("margin-top: -auto"), warning("margin-top", "-auto"));
}

TEST(ValidateTerm, KeywordsAreExact) { EXPECT_EQ(readDeclarations("display: BLOCK"), warning("display", "BLOCK")); }

TEST(ValidateTerm, AFailureClearsAnEarlierValue) {
    for (const int type : {int{IDENT}, int{LENGTH}, int{NUMBER}, int{STRING}, int{FUNCTION}, 0}) {
        const auto property = make("display");
        property->setValue(new PrimitiveValue(ValueNone));
        AST root;
        EXPECT_FALSE(property->validate(add(root, type, "foo"), nullptr)) << type;
        EXPECT_EQ(property->value.Get(), nullptr) << type;
    }
}

TEST(ValidateTerm, ASuccessReplacesAnEarlierValue) {
    const auto property = make("display");
    property->setValue(new PrimitiveValue(ValueNone));
    AST root;
    EXPECT_TRUE(property->validate(add(root, IDENT, "block"), nullptr));
    EXPECT_EQ(property->cssText(), "display: block; ");
    EXPECT_EQ(property->value->refCount, 1);
}

TEST(ValidateTerm, ATermWithArgumentsIsRefusedAndLeavesAllAsItWas) {
    for (const int type : {int{FUNCTION}, int{IDENT}}) {
        const auto property = make("display");
        property->setValue(new PrimitiveValue(ValueNone));
        AST root, elsewhere;
        AST* const term = add(root, type, "block");
        add(*term, NUMBER, "1");
        AST* next = &elsewhere;
        EXPECT_FALSE(property->validate(term, &next));
        EXPECT_EQ(next, &elsewhere);
        EXPECT_EQ(property->cssText(), "display: none; ");
    }
}

TEST(ValidateTerm, NextIsTheSiblingOnSuccessAndTheTermOnFailure) {
    const auto property = make("display");
    AST root;
    AST* const good = add(root, IDENT, "block");
    AST* const space = add(root, 32);
    AST* const last = add(root, IDENT, "none");
    AST* next = nullptr;
    EXPECT_TRUE(property->validate(good, &next));
    EXPECT_EQ(next, space);
    EXPECT_FALSE(property->validate(space, &next));
    EXPECT_EQ(next, space);
    EXPECT_TRUE(property->validate(last, &next));
    EXPECT_EQ(next, nullptr);
}

TEST(ValidateTerm, PrintsNothing) {
    EXPECT_EQ(printedBy([] { validated("display", IDENT, "foo"); }), "");
    EXPECT_EQ(printedBy([] { validated("width", NUMBER, "12"); }), "");
    EXPECT_EQ(printedBy([] { validated("foo", IDENT, "bar"); }), "");
}

// ---- Text

TEST(PropertyCssText, HasTheNameTheValueAndATrailingBlank) {
    Watcher property;
    property.setValue(new PrimitiveValue(ValueBlock));
    EXPECT_EQ(property.cssText(), "display: block; ");
}

TEST(PropertyCssText, HasQuestionMarksForNoValue) { EXPECT_EQ(Watcher().cssText(), "display: ???; "); }

TEST(PropertyCssText, ImportanceFollowsWithoutABlank) {
    const auto property = make("color");
    AST root;
    add(root, HASH, "#ff0000");
    EXPECT_TRUE(property->validate(&root));
    property->important = true;
    EXPECT_EQ(property->cssText(), "color: #ff0000!important; ");
    property->setValue(nullptr);
    EXPECT_EQ(
        property->cssText(),
        "color: ???"
        "!important; ");
}

TEST(PropertyCssText, JoinsAList) {
    Watcher property(PropertyFontFamily);
    auto* const list = new ValueList;
    property.setValue(list);
    EXPECT_EQ(property.cssText(), "font-family: ; ");
    list->append(new PrimitiveValue(std::string("Times"), CSS_STRING));
    list->append(new PrimitiveValue(std::string("serif"), CSS_STRING));
    EXPECT_EQ(property.cssText(), "font-family: Times, serif; ");
}

TEST(PropertyCssText, OfAnUnknownPropertyHasNoName) {
    const auto property = make("foo");
    EXPECT_EQ(property->cssText(), ": ???; ");
    property->important = true;
    property->setValue(new PrimitiveValue(ValueBold));
    EXPECT_EQ(property->cssText(), ": bold!important; ");
}

TEST(PropertyCssText, OfAMarginHasQuestionMarks) {
    const auto property = make("margin");
    EXPECT_EQ(property->cssText(), "margin: ???; ");
    AST root;
    add(root, LENGTH, "1pt");
    EXPECT_TRUE(property->validate(&root));
    EXPECT_EQ(property->cssText(), "margin: ???; ");
}

TEST(PropertyPrint, WritesTheTextWithoutALineEnd) {
    Watcher property;
    property.important = true;
    property.setValue(new PrimitiveValue(50, CSS_PERCENTAGE));
    EXPECT_EQ(printedBy([&] { property.print(); }), "display: 50%!important; ");
}

TEST(PropertyPrint, WritesTextThatLooksLikeAFormatAsItIs) {
    Watcher property;
    property.setValue(new PrimitiveValue(std::string("%s%n%d"), CSS_STRING));
    EXPECT_EQ(printedBy([&] { property.print(); }), "display: %s%n%d; ");
}

// ---- Unknown properties

TEST(PropGeneric, KeepsItsNameAsWritten) {
    const PropGeneric property("Foo-Bar");
    EXPECT_EQ(property.genericName, "Foo-Bar");
    EXPECT_EQ(property.id, 0);
    EXPECT_EQ(property.name(), "");
}

TEST(PropGeneric, HasNoEffectOnAStyleAndReadsNothing) {
    PropGeneric property("display");
    property.setValue(new PrimitiveValue(ValueNone));
    const SharedPtr<Style> style = new PlainStyle;
    property.applyToStyle(style.Get());
    EXPECT_EQ(style->GetDisplay(), WQCSSDisplayInline);
    EXPECT_EQ(property.valueFromStyle(style.Get()), nullptr);
}

TEST(PropGeneric, NoValueIsValidForIt) {
    for (const char* value : {"bar", "inherit", "none", "0", "1", "12pt", "10%", "\"text\"", "#fff", "red", "url(x)"})
        EXPECT_EQ(readDeclarations("foo: " + std::string(value)), warning("foo", value));
    EXPECT_EQ(readDeclarations("foo: f(x)"), warning("foo", "fx"));
    EXPECT_EQ(readDeclarations("foo: a, b"), warning("foo", "ab"));
}

TEST(PropGeneric, OfAnUnknownNameTheDeclarationIsDroppedWithAWarning) {
    EXPECT_EQ(readDeclarations("foo: bar"), warning("foo", "bar"));
    EXPECT_EQ(readDeclarations("Color: red"), warning("Color", "red"));
    EXPECT_EQ(readDeclarations("foo: bar; color: red"), "1 color: #ff0000\n" + warning("foo", "bar"));
}

// ---- The road of a declaration

TEST(Declaration, KeepsTheImportanceOfAProperty) {
    EXPECT_EQ(readDeclarations("display: block !important; width: 1pt"), "0 display: block !\n1 width: 1pt (9)\n");
}

TEST(Declaration, TheWarningHasTheWholeExpression) {
    EXPECT_EQ(readDeclarations("width: 1em 2%/f(x, \"y\"), z"), warning("width", "1em 2%/fx\"y\"z"));
}

TEST(Declaration, ARefusedImportantOneIsDroppedAsWell) {
    EXPECT_EQ(readDeclarations("display: foo !important; width: 1pt"), "1 width: 1pt (9)\n" + warning("display", "foo"));
}

TEST(Declaration, OfAShorthandThereAreThePartsOnly) {
    MutableStyleDeclaration declaration;
    EXPECT_TRUE(Parser().ParseStyleDeclaration("margin: 1pt", &declaration));
    ASSERT_EQ(declaration.length(), 4u);
    for (const auto& property : declaration.properties) EXPECT_FALSE(property->isShorthandProperty());
}

TEST(Declaration, HoldsItsPropertiesAlone) {
    MutableStyleDeclaration declaration;
    EXPECT_TRUE(Parser().ParseStyleDeclaration("display: block", &declaration));
    EXPECT_EQ(declaration.properties.at(0)->refCount, 1);
    EXPECT_EQ(declaration.properties.at(0)->value->refCount, 1);
}
