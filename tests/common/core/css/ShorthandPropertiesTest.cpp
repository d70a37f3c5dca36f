#include "common/core/css/ShorthandProperties.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <string>
#include <utility>
#include <vector>

#include "tests/common/core/css/Declarations.h"
#include "tests/common/core/css/PlainStyle.h"

using CSS::IDENT;
using CSS::LENGTH;
using CSS::NUMBER;
using CSS::PrimitiveValue;
using CSS::Property;
using CSS::PropFont;
using CSS::PropMargin;
using test::dumpOfValue;
using test::readDeclarations;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// An expression made by hand.
struct Expression {
    Expression(const std::vector<std::pair<int, std::string>>& nodes) {
        for (const auto& [type, text] : nodes) {
            CSS::AST* const node = root.AddChild();
            node->type = type;
            node->text = text;
        }
    }
    CSS::AST root;
};

// Keeps the shorthand itself, and nothing of it.
struct ShorthandCatcher : CSS::MutableStyleDeclaration {
    void addProperty(Property* added) override { caught = added; }
    SharedPtr<Property> caught;
};

// The validated shorthand of a text, which must be valid.
template <class Shorthand> SharedPtr<Shorthand> parsed(const std::string& text) {
    ShorthandCatcher catcher;
    CSS::Parser().ParseStyleDeclaration(text, &catcher);
    return dynamic_cast<Shorthand*>(catcher.caught.Get());
}

std::string refused(const std::string& name, const std::string& value) {
    return "Warning: Unsupported property " + name + " or invalid value \"" + value + "\"\n";
}

std::string textOf(const _WQCSSLength& length) {
    return std::to_string(static_cast<int>(length.value)) + "/" + std::to_string(length.type);
}

// Writes down what is set in it.
struct LoggingStyle : PlainStyle {
    void SetFontStyle(WQCSSFontStyle style) override { log.push_back("style " + std::to_string(style)); }
    void SetFontWeight(WQCSSFontWeight weight) override { log.push_back("weight " + std::to_string(weight)); }
    void SetFontSize(float size) override { log.push_back("size " + std::to_string(static_cast<int>(size))); }
    void SetLineHeight(float multiple) override { log.push_back("line height " + std::to_string(static_cast<int>(multiple))); }
    bool SetFontFamily(const std::string& family) override {
        log.push_back("family " + family);
        return true;
    }
    void SetMarginTop(_WQCSSLength length) override { log.push_back("top " + textOf(length)); }
    void SetMarginLeft(_WQCSSLength length) override { log.push_back("left " + textOf(length)); }
    void SetMarginBottom(_WQCSSLength length) override { log.push_back("bottom " + textOf(length)); }
    void SetMarginRight(_WQCSSLength length) override { log.push_back("right " + textOf(length)); }
    std::vector<std::string> log;
};

std::vector<std::string> appliedBy(Property& property) {
    LoggingStyle style;
    property.applyToStyle(&style);
    return style.log;
}

std::vector<std::string> namesIn(const std::vector<SharedPtr<Property>>& properties) {
    std::vector<std::string> names;
    for (const auto& each : properties) names.push_back(each->name());
    return names;
}

// ---- font

TEST(PropFont, BreaksIntoTheLonghandsThatWereWritten) {
    struct Row {
        const char *value, *longhands;
    };
    // In front of each longhand stands its number: every try of a style, a variant and a weight takes one.
    const Row rows[] = {
        {"12pt Times", "10 font-size: 12pt (9)\n11 font-family: ['Times']\n"},
        {"italic bold 12pt Times", "1 font-style: italic\n3 font-weight: bold\n7 font-size: 12pt (9)\n8 font-family: ['Times']\n"},
        {"bold italic 12pt Times", "4 font-style: italic\n3 font-weight: bold\n8 font-size: 12pt (9)\n9 font-family: ['Times']\n"},
        {"italic small-caps bold 12pt Times",
         "1 font-style: italic\n2 font-variant: small-caps\n3 font-weight: bold\n4 font-size: 12pt (9)\n5 font-family: ['Times']\n"},
        {"bold small-caps italic 12pt Times",
         "6 font-style: italic\n5 font-variant: small-caps\n3 font-weight: bold\n7 font-size: 12pt (9)\n8 font-family: ['Times']\n"},
        {"small-caps 12pt Times", "2 font-variant: small-caps\n9 font-size: 12pt (9)\n10 font-family: ['Times']\n"},
        {"700 12pt Times", "3 font-weight: 700 (1)\n10 font-size: 12pt (9)\n11 font-family: ['Times']\n"},
        {"italic 100 12pt Times", "1 font-style: italic\n3 font-weight: 100 (1)\n7 font-size: 12pt (9)\n8 font-family: ['Times']\n"},
        {"12pt/1.5 Times", "10 font-size: 12pt (9)\n11 line-height: 1.5 (1)\n12 font-family: ['Times']\n"},
        {"12pt / 1.5 Times", "10 font-size: 12pt (9)\n11 line-height: 1.5 (1)\n12 font-family: ['Times']\n"},
        {"12pt/0.0 Times", "10 font-size: 12pt (9)\n11 line-height: 0 (1)\n12 font-family: ['Times']\n"},
        {"0 Times", "10 font-size: 0pt (9)\n11 font-family: ['Times']\n"},
        {"-2cm Times", "10 font-size: -2cm (6)\n11 font-family: ['Times']\n"},
        {"12pt Times, serif", "10 font-size: 12pt (9)\n11 font-family: ['Times', 'serif']\n"},
        {"12pt Times New Roman,serif", "10 font-size: 12pt (9)\n11 font-family: ['Times New Roman', 'serif']\n"},
        {"12pt \"A B\", 'C'", "10 font-size: 12pt (9)\n11 font-family: ['\"A B\"', ''C'']\n"},
        {"12pt Book 2", "10 font-size: 12pt (9)\n11 font-family: ['Book 2']\n"},
        {"12pt 2", "10 font-size: 12pt (9)\n11 font-family: ['2']\n"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.value);
        EXPECT_EQ(readDeclarations(std::string("font: ") + row.value), row.longhands);
    }
}

TEST(PropFont, TheFirstNormalIsAStyle) {
    EXPECT_EQ(readDeclarations("font: normal 12pt Times"), "1 font-style: normal\n8 font-size: 12pt (9)\n9 font-family: ['Times']\n");
}

TEST(PropFont, TheSecondNormalIsAVariant) {
    EXPECT_EQ(
        readDeclarations("font: normal normal 12pt Times"),
        "1 font-style: normal\n2 font-variant: normal\n6 font-size: 12pt (9)\n7 font-family: ['Times']\n");
}

TEST(PropFont, TheThirdNormalIsAWeight) {
    EXPECT_EQ(
        readDeclarations("font: normal normal normal 12pt Times"),
        "1 font-style: normal\n2 font-variant: normal\n3 font-weight: normal\n4 font-size: 12pt (9)\n5 font-family: ['Times']\n");
}

TEST(PropFont, AFourthNormalIsNoSize) {
    EXPECT_EQ(readDeclarations("font: normal normal normal normal 12pt Times"), refused("font", "normal normal normal normal 12pt Times"));
}

TEST(PropFont, InheritInTheMiddleIsAVariant) {
    EXPECT_EQ(
        readDeclarations("font: italic inherit 12pt Times"),
        "1 font-style: italic\n2 font-variant: inherit\n6 font-size: 12pt (9)\n7 font-family: ['Times']\n");
    EXPECT_EQ(
        readDeclarations("font: bold inherit 12pt Times"),
        "5 font-variant: inherit\n3 font-weight: bold\n9 font-size: 12pt (9)\n10 font-family: ['Times']\n");
}

TEST(PropFont, AKeywordBehindTheSizeIsAFamily) {
    EXPECT_EQ(readDeclarations("font: 12pt bold"), "10 font-size: 12pt (9)\n11 font-family: ['bold']\n");
}

TEST(PropFont, ACommaBehindTheSizeIsPassedOver) {
    EXPECT_EQ(readDeclarations("font: 12pt, Times"), "10 font-size: 12pt (9)\n11 font-family: ['Times']\n");
}

TEST(PropFont, RefusesSystemFontsWhichHaveARowForIt) {
    for (const std::string name : {"caption", "icon", "menu", "message-box", "small-caption", "status-bar", "inherit"}) {
        SCOPED_TRACE(name);
        EXPECT_TRUE(Property::isValidValue(CSS::PropertyFont, PrimitiveValue::IdentForString(name)));
        EXPECT_EQ(readDeclarations("font: " + name), refused("font", name));
        EXPECT_EQ(readDeclarations("font: " + name + " 12pt Times"), refused("font", name + " 12pt Times"));
    }
}

TEST(PropFont, RefusesWhatIsNoFont) {
    const std::string values[] = {
        "120% Times",   // no size by percentage,
        "large Times",  // nor by keyword,
        "12 Times",     // nor without a unit,
        "2em Times",    // nor by another font
        "Times 12pt",   // the size comes first
        "Times",
        "'Times'",
        "12pt/14pt Times",  // a length is no line height,
        "12pt/120% Times",
        "12pt/normal Times",
        "12pt/0 Times",     // and a bare zero is a length
        "12pt/12/2 Times",  // one line height
        "italic italic 12pt Times",
        "normal italic 12pt Times",
        "700 bold 12pt Times",
        "701 12pt Times",
        "bolder 12pt Times",
        "Italic 12pt Times",
        "-italic 12pt Times",
        "12pt #fff",
        "12pt url(a)",
        "12pt Times 10px",
        "12pt 10px Times",
        "1pt 2pt Times",
    };
    for (const std::string& value : values) {
        SCOPED_TRACE(value);
        EXPECT_EQ(readDeclarations("font: " + value), refused("font", value));
    }
}

TEST(PropFont, RefusesFunctions) {
    EXPECT_EQ(readDeclarations("font: f(italic) 12pt Times"), refused("font", "fitalic 12pt Times"));
    EXPECT_EQ(readDeclarations("font: f(12pt) Times"), refused("font", "f12pt Times"));
    EXPECT_EQ(readDeclarations("font: 12pt f(Times)"), refused("font", "12pt fTimes"));
    EXPECT_EQ(readDeclarations("font: 12pt Times, f(Times)"), refused("font", "12pt TimesfTimes"));
}

TEST(PropFont, TheFamilyIsNotTakenForAMissingLineHeight) {
    EXPECT_EQ(readDeclarations("font: 12pt/ Times"), refused("font", "12pt/Times"));
}

TEST(PropFont, AValueThatEndsEarlyIsRefused) {
    for (const std::string value : {"italic", "bold italic", "normal normal normal", "12pt", "italic 12pt", "12pt/1.5"}) {
        SCOPED_TRACE(value);
        EXPECT_EQ(readDeclarations("font: " + value), refused("font", value));
    }
}

TEST(PropFont, ARefusedValueHasUsedUpTheNumbersOfItsTries) {
    struct Row {
        const char* value;
        int next;
    };
    const Row rows[] = {
        {"caption", 1},                    // nothing was tried
        {"italic", 2},                     // there are no tries at the end of the value,
        {"italic bold", 4},                // whatever was found in front of it
        {"small-caps", 3},  {"12pt", 11},  // nine tries, the size, and no family
        {"12pt/1.5", 12},   {"120% Times", 11}, {"12pt/14pt Times", 12}, {"12pt #fff", 12}, {"normal normal normal normal 12pt a", 5},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.value);
        EXPECT_EQ(
            readDeclarations(std::string("font: ") + row.value + "; position: static"),
            std::to_string(row.next) + " position: static\n" + refused("font", row.value));
    }
}

TEST(PropFont, ImportanceIsLostInTheLonghands) {
    EXPECT_EQ(
        readDeclarations("font: italic 12pt/2 Times !important"),
        "1 font-style: italic\n8 font-size: 12pt (9)\n9 line-height: 2 (1)\n10 font-family: ['Times']\n");
    EXPECT_TRUE(parsed<PropFont>("font: 12pt Times !important")->important);
}

TEST(PropFont, IsAShorthandWithoutAValueOfItsOwn) {
    const auto font = parsed<PropFont>("font: 12pt Times");
    EXPECT_TRUE(font->isShorthandProperty());
    EXPECT_EQ(font->value.Get(), nullptr);
    EXPECT_EQ(font->id, 5);
}

TEST(PropFont, IsEmptyAtFirst) {
    PropFont font;
    EXPECT_FALSE(font.fontStyle || font.fontVariant || font.fontWeight || font.fontSize || font.lineHeight || font.fontFamily);
    EXPECT_FALSE(font.valid);
    EXPECT_THAT(font.propertyList(), IsEmpty());
    EXPECT_EQ(font.cssText(), "font:; ");
}

TEST(PropFont, ListsItsPartsInTheOrderOfItsFields) {
    const auto font = parsed<PropFont>("font: bold italic 12pt Times");
    EXPECT_THAT(namesIn(font->propertyList()), ElementsAre("font-style", "font-weight", "font-size", "font-family"));
    EXPECT_EQ(font->fontVariant.Get(), nullptr);
    const auto all = parsed<PropFont>("font: bold small-caps italic 12pt/2 Times");
    EXPECT_THAT(
        namesIn(all->propertyList()), ElementsAre("font-style", "font-variant", "font-weight", "font-size", "line-height", "font-family"));
}

TEST(PropFont, ListsItsOwnPartsAndNoCopies) {
    auto font = parsed<PropFont>("font: 12pt Times");
    auto list = font->propertyList();
    EXPECT_EQ(list[0].Get(), font->fontSize.Get());
    EXPECT_EQ(list[1].Get(), font->fontFamily.Get());
    EXPECT_EQ(list[0]->refCount, 2);
    font = nullptr;
    EXPECT_EQ(list[0]->refCount, 1);
    EXPECT_EQ(list[0]->cssText(), "font-size: 12pt; ");
}

TEST(PropFont, IsValidAtTheVeryEndOnly) {
    Expression good({{LENGTH, "12pt"}, {' ', ""}, {IDENT, "Times"}}), bad({{IDENT, "caption"}});
    PropFont font;
    EXPECT_TRUE(font.validate(&good.root));
    EXPECT_TRUE(font.valid);
    EXPECT_FALSE(font.validate(&bad.root));
    EXPECT_FALSE(font.valid);
}

TEST(PropFont, KeepsWhatItFoundBeforeAFailure) {
    Expression expression(
        {{IDENT, "italic"},
         {' ', ""},
         {IDENT, "bold"},
         {' ', ""},
         {LENGTH, "12pt"},
         {'/', ""},
         {LENGTH, "14pt"},
         {' ', ""},
         {IDENT, "Times"}});
    PropFont font;
    EXPECT_FALSE(font.validate(&expression.root));
    EXPECT_FALSE(font.valid);
    EXPECT_THAT(namesIn(font.propertyList()), ElementsAre("font-style", "font-weight", "font-size"));
}

TEST(PropFont, ASecondValidationKeepsThePartsThatItDoesNotFindAnew) {
    Expression first({{IDENT, "italic"}, {' ', ""}, {LENGTH, "12pt"}, {' ', ""}, {IDENT, "Times"}});
    Expression second({{LENGTH, "10pt"}, {' ', ""}, {IDENT, "Arial"}});
    PropFont font;
    EXPECT_TRUE(font.validate(&first.root));
    EXPECT_TRUE(font.validate(&second.root));
    EXPECT_EQ(font.cssText(), "font:italic 10pt Arial; ");
}

TEST(PropFont, ASecondValidationHasNoRoomForASecondStyle) {
    Expression expression({{IDENT, "italic"}, {' ', ""}, {LENGTH, "12pt"}, {' ', ""}, {IDENT, "Times"}});
    PropFont font;
    EXPECT_TRUE(font.validate(&expression.root));
    EXPECT_FALSE(font.validate(&expression.root));
}

TEST(PropFont, SkipsAnyNumberOfSpacesInAnExpression) {
    Expression expression(
        {{' ', ""},
         {IDENT, "italic"},
         {' ', ""},
         {' ', ""},
         {LENGTH, "12pt"},
         {' ', ""},
         {'/', ""},
         {' ', ""},
         {NUMBER, "2"},
         {' ', ""},
         {' ', ""},
         {IDENT, "Times"},
         {' ', ""}});
    PropFont font;
    EXPECT_TRUE(font.validate(&expression.root));
    EXPECT_EQ(font.cssText(), "font:italic 12pt/2 Times; ");
}

TEST(PropFont, AnExpressionWithoutTermsIsRefused) {
    PropFont font;
    CSS::AST empty;
    EXPECT_FALSE(font.validate(&empty));
    Expression blank({{' ', ""}, {' ', ""}});
    EXPECT_FALSE(font.validate(&blank.root));
    Expression sizeAndBlank({{LENGTH, "12pt"}, {' ', ""}});
    EXPECT_FALSE(font.validate(&sizeAndBlank.root));
    Expression sizeAndSlash({{LENGTH, "12pt"}, {'/', ""}});
    EXPECT_FALSE(font.validate(&sizeAndSlash.root));
    EXPECT_FALSE(font.valid);
}

TEST(PropFont, AppliesItsPartsInOrder) {
    EXPECT_THAT(
        appliedBy(*parsed<PropFont>("font: bold small-caps italic 1in/2 Times, serif")),
        ElementsAre("style 1", "weight 1", "size 72", "line height 2", "family Times"));
}

TEST(PropFont, AppliesNothingThatWasNotWritten) {
    EXPECT_THAT(appliedBy(*parsed<PropFont>("font: 12pt Times")), ElementsAre("size 12", "family Times"));
    PropFont empty;
    EXPECT_THAT(appliedBy(empty), IsEmpty());
}

TEST(PropFont, AppliesNoWeightByNumber) {
    EXPECT_THAT(appliedBy(*parsed<PropFont>("font: 700 12pt Times")), ElementsAre("size 12", "family Times"));
}

TEST(PropFont, ALineHeightWithoutASizeIsNeitherAppliedNorWritten) {
    PropFont font;
    font.lineHeight = new CSS::PropLineHeight;
    font.lineHeight->setValue(new PrimitiveValue(2, CSS::CSS_NUMBER));
    EXPECT_THAT(appliedBy(font), IsEmpty());
    EXPECT_EQ(font.cssText(), "font:; ");
    EXPECT_THAT(namesIn(font.propertyList()), ElementsAre("line-height"));
}

TEST(PropFont, WritesItsPartsWithoutABlankBehindTheColon) {
    EXPECT_EQ(parsed<PropFont>("font: 12pt Times")->cssText(), "font:12pt Times; ");
    EXPECT_EQ(parsed<PropFont>("font: 12pt/1.5 Times,serif")->cssText(), "font:12pt/1.5 Times, serif; ");
    EXPECT_EQ(
        parsed<PropFont>("font: 700 small-caps italic 12pt / 1.5 'A  B',serif")->cssText(),
        "font:italic small-caps 700 12pt/1.5 'A  B', serif; ");
}

TEST(PropFont, DoesNotWriteItsImportance) {
    EXPECT_EQ(parsed<PropFont>("font: bold 12pt Times !important")->cssText(), "font:bold 12pt Times; ");
}

TEST(PropFont, WritesASizeWithoutAFamilyWithItsBlank) {
    PropFont font;
    font.fontSize = new CSS::PropFontSize;
    font.fontSize->setValue(new PrimitiveValue(12, CSS::CSS_PT));
    EXPECT_EQ(font.cssText(), "font:12pt ; ");
}

#ifdef WQ_NO_HARD_ASSERTIONS
TEST(PropFont, ReadsNothingFromAStyle) {
    const SharedPtr<CSS::Style> style = new PlainStyle;
    PropFont font;
    EXPECT_EQ(font.valueFromStyle(style.Get()), nullptr);
}
#else
TEST(PropFontDeathTest, ReadingItFromAStyleFails) {
    const SharedPtr<CSS::Style> style = new PlainStyle;
    PropFont font;
    EXPECT_EXIT(
        font.valueFromStyle(style.Get()), testing::KilledBySignal(SIGABRT),
        "^Assertion failed: \\(0\\), function valueFromStyle, file common/core/css/Property, line [0-9]+\\.\n");
}
#endif

// ---- margin

TEST(PropMargin, DealsItsValuesOutToTheSides) {
    struct Row {
        const char *value, *top, *left, *bottom, *right;
    };
    const Row rows[] = {
        {"1pt", "1pt (9)", "1pt (9)", "1pt (9)", "1pt (9)"},
        {"1pt 2pt", "1pt (9)", "2pt (9)", "1pt (9)", "2pt (9)"},
        {"1pt 2pt 3pt", "1pt (9)", "2pt (9)", "3pt (9)", "2pt (9)"},
        {"1pt 2pt 3pt 4pt", "1pt (9)", "4pt (9)", "3pt (9)", "2pt (9)"},
        {"auto", "auto", "auto", "auto", "auto"},
        {"inherit", "inherit", "inherit", "inherit", "inherit"},
        {"0", "0pt (9)", "0pt (9)", "0pt (9)", "0pt (9)"},
        {"auto 10% 0 -1.5cm", "auto", "-1.5cm (6)", "0pt (9)", "10% (2)"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.value);
        EXPECT_EQ(
            readDeclarations(std::string("margin: ") + row.value), std::string("1 margin-top: ") + row.top +
                                                                       "\n2 margin-left: " + row.left + "\n3 margin-bottom: " + row.bottom +
                                                                       "\n4 margin-right: " + row.right + "\n");
    }
}

TEST(PropMargin, RefusesAFifthValue) {
    EXPECT_EQ(readDeclarations("margin: 1pt 2pt 3pt 4pt 5pt"), refused("margin", "1pt 2pt 3pt 4pt 5pt"));
}

TEST(PropMargin, RefusesCommasAndSlashes) {
    EXPECT_EQ(readDeclarations("margin: 1pt, 2pt"), refused("margin", "1pt2pt"));
    EXPECT_EQ(readDeclarations("margin: 1pt/2pt"), refused("margin", "1pt/2pt"));
    EXPECT_EQ(readDeclarations("margin: 1pt 2pt / 3pt"), refused("margin", "1pt 2pt/3pt"));
}

TEST(PropMargin, OneBadValueSpoilsAll) {
    for (const std::string value : {"1em", "12", "0.0", "none", "Auto", "1PT", "'1pt'", "#fff", "url(a)", "2ex", "1deg"}) {
        SCOPED_TRACE(value);
        EXPECT_EQ(readDeclarations("margin: " + value), refused("margin", value));
        EXPECT_EQ(readDeclarations("margin: 1pt " + value + " 2pt"), refused("margin", "1pt " + value + " 2pt"));
        EXPECT_EQ(readDeclarations("margin: 1pt 2pt " + value), refused("margin", "1pt 2pt " + value));
    }
}

TEST(PropMargin, RefusesFunctions) {
    EXPECT_EQ(readDeclarations("margin: f(1pt)"), refused("margin", "f1pt"));
    EXPECT_EQ(readDeclarations("margin: 1pt f(1pt)"), refused("margin", "1pt f1pt"));
}

TEST(PropMargin, ARefusedValueMakesNoSides) {
    EXPECT_EQ(
        readDeclarations("margin: 1pt 2pt 3pt 4pt 5pt; position: static"),
        "1 position: static\n" + refused("margin", "1pt 2pt 3pt 4pt 5pt"));
    EXPECT_EQ(readDeclarations("margin: 1pt x; position: static"), "1 position: static\n" + refused("margin", "1pt x"));
}

TEST(PropMargin, SidesOfOneValueShareIt) {
    const auto one = parsed<PropMargin>("margin: 1pt");
    EXPECT_EQ(one->marginTop->value.Get(), one->marginRight->value.Get());
    EXPECT_EQ(one->marginTop->value.Get(), one->marginBottom->value.Get());
    EXPECT_EQ(one->marginTop->value.Get(), one->marginLeft->value.Get());
    EXPECT_EQ(one->marginTop->value->refCount, 4);

    const auto two = parsed<PropMargin>("margin: 1pt 1pt");
    EXPECT_EQ(two->marginTop->value.Get(), two->marginBottom->value.Get());
    EXPECT_EQ(two->marginLeft->value.Get(), two->marginRight->value.Get());
    EXPECT_NE(two->marginTop->value.Get(), two->marginLeft->value.Get());

    const auto three = parsed<PropMargin>("margin: 1pt 1pt 1pt");
    EXPECT_EQ(three->marginLeft->value.Get(), three->marginRight->value.Get());
    EXPECT_NE(three->marginTop->value.Get(), three->marginBottom->value.Get());

    const auto four = parsed<PropMargin>("margin: 1pt 1pt 1pt 1pt");
    for (const auto& side : four->propertyList()) EXPECT_EQ(side->value->refCount, 1) << side->name();
}

TEST(PropMargin, ImportanceIsLostInTheSides) {
    EXPECT_EQ(
        readDeclarations("margin: 1pt !important"),
        "1 margin-top: 1pt (9)\n2 margin-left: 1pt (9)\n3 margin-bottom: 1pt (9)\n4 margin-right: 1pt (9)\n");
}

TEST(PropMargin, HasNoValueBeforeAndAfterValidation) {
    const auto margin = parsed<PropMargin>("margin: 1pt 2pt");
    EXPECT_TRUE(margin->isShorthandProperty());
    EXPECT_EQ(margin->id, 13);
    EXPECT_EQ(margin->value.Get(), nullptr);

    PropMargin empty;
    EXPECT_FALSE(empty.marginTop || empty.marginLeft || empty.marginBottom || empty.marginRight);
    EXPECT_THAT(empty.propertyList(), IsEmpty());
}

TEST(PropMargin, AFailedValidationSetsNoSide) {
    Expression expression({{LENGTH, "1pt"}, {' ', ""}, {IDENT, "bold"}});
    PropMargin margin;
    EXPECT_FALSE(margin.validate(&expression.root));
    EXPECT_THAT(margin.propertyList(), IsEmpty());
    EXPECT_EQ(margin.value.Get(), nullptr);
}

TEST(PropMargin, AnExpressionWithoutTermsIsRefused) {
    PropMargin margin;
    CSS::AST empty;
    EXPECT_FALSE(margin.validate(&empty));
    Expression blank({{' ', ""}, {' ', ""}});
    EXPECT_FALSE(margin.validate(&blank.root));
}

TEST(PropMargin, SkipsAnyNumberOfSpacesInAnExpression) {
    Expression expression({{' ', ""}, {LENGTH, "1pt"}, {' ', ""}, {' ', ""}, {LENGTH, "2pt"}, {' ', ""}});
    PropMargin margin;
    ASSERT_TRUE(margin.validate(&expression.root));
    EXPECT_EQ(dumpOfValue(margin.marginTop->value.Get()), "1pt (9)");
    EXPECT_EQ(dumpOfValue(margin.marginRight->value.Get()), "2pt (9)");
}

TEST(PropMargin, ListsItsSidesInTheOrderOfItsFields) {
    auto margin = parsed<PropMargin>("margin: 1pt");
    const auto list = margin->propertyList();
    EXPECT_THAT(namesIn(list), ElementsAre("margin-top", "margin-left", "margin-bottom", "margin-right"));
    EXPECT_EQ(list[1].Get(), margin->marginLeft.Get());
    margin = nullptr;
    EXPECT_EQ(list[1]->refCount, 1);
}

TEST(PropMargin, AppliesItsSidesInTheOrderOfItsFields) {
    EXPECT_THAT(appliedBy(*parsed<PropMargin>("margin: 1pt 2% auto 4px")), ElementsAre("top 1/1", "left 4/1", "bottom 0/4", "right 2/3"));
}

TEST(PropMargin, ReadsNothingFromAStyle) {
    const SharedPtr<CSS::Style> style = new PlainStyle;
    EXPECT_EQ(parsed<PropMargin>("margin: 1pt")->valueFromStyle(style.Get()), nullptr);
}

TEST(PropMargin, WritesQuestionMarks) {
    EXPECT_EQ(parsed<PropMargin>("margin: 1pt")->cssText(), "margin: ???; ");
    EXPECT_EQ(
        parsed<PropMargin>("margin: 1pt !important")->cssText(),
        "margin: ???"
        "!important; ");
}

#ifdef WQ_NO_HARD_ASSERTIONS
TEST(PropMargin, InheritIsAcceptedAndLeavesTheStyleAlone) { EXPECT_THAT(appliedBy(*parsed<PropMargin>("margin: inherit")), IsEmpty()); }
#else
TEST(PropMarginDeathTest, InheritIsAcceptedAndFailsWhenItIsApplied) {
    const auto margin = parsed<PropMargin>("margin: inherit");
    EXPECT_EXIT(
        appliedBy(*margin), testing::KilledBySignal(SIGABRT),
        "^Assertion failed: \\(0\\), function lengthValueForStyle, file common/core/css/Value, line [0-9]+\\.\n");
}
#endif

}  // namespace
