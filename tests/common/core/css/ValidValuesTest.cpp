#include "common/core/css/ValidValues.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "common/core/css/Property.h"
#include "tests/common/core/css/Declarations.h"

using namespace CSS;

namespace {

struct Row {
    PropertyID property;
    int number;
    const ValueID* exported;
    std::vector<ValueID> entries;
};

const std::vector<Row>& rows() {
    static const std::vector<ValueID> side{ValueLengthKind, ValuePercentageKind, ValueAuto, ValueInherit};
    static const std::vector<Row> all{
        {PropertyUnknown, 0, propInvalidValues, {}},
        {PropertyBackgroundColor, 1, propBackgroundColorValues, {ValueColorKind, ValueTransparent, ValueInherit}},
        {PropertyColor, 2, propColorValues, {ValueColorKind, ValueInherit}},
        {PropertyContent,
         3,
         propContentValues,
         {ValueCounterKind, ValueStringKind, ValueOpenQuote, ValueCloseQuote, ValueNoOpenQuote, ValueNoCloseQuote}},
        {PropertyDisplay, 4, propDisplayValues, {ValueBlock, ValueInline, ValueNone}},
        {PropertyFont,
         5,
         propFontValues,
         {ValueCaption, ValueIcon, ValueMenu, ValueMessageBox, ValueSmallCaption, ValueStatusBar, ValueInherit}},
        {PropertyFontFamily, 6, propFontFamilyValues, {ValueFamilyNameKind, ValueGenericFamilyKind}},
        {PropertyFontSize, 7, propFontSizeValues, {ValueLengthKind}},
        {PropertyFontStyle, 8, propFontStyleValues, {ValueNormal, ValueItalic}},
        {PropertyFontVariant, 9, propFontVariantValues, {ValueNormal, ValueSmallCaps, ValueInherit}},
        {PropertyFontWeight, 10, propFontWeightValues, {ValueNormal, ValueBold}},
        {PropertyLineHeight, 11, propLineHeightValues, {ValueNumberKind}},
        {PropertyListStyleType,
         12,
         propListStyleTypeValues,
         {ValueBox, ValueCheck, ValueCircle, ValueDiamond, ValueDisc, ValueHyphen, ValueSquare, ValueLowerHexadecimal,
          ValueUpperHexadecimal, ValueOctal, ValueLowerAlpha, ValueLowerLatin, ValueUpperAlpha, ValueUpperLatin, ValueLowerRoman,
          ValueUpperRoman, ValueDecimal}},
        {PropertyMargin, 13, propMarginValues, side},
        {PropertyMarginBottom, 14, propMarginBottomValues, side},
        {PropertyMarginLeft, 15, propMarginLeftValues, side},
        {PropertyMarginRight, 16, propMarginRightValues, side},
        {PropertyMarginTop, 17, propMarginTopValues, side},
        {PropertyPageBreakAfter, 18, propPageBreakAfterValues, {ValueAuto, ValueAlways, ValueInherit}},
        {PropertyPageBreakBefore, 19, propPageBreakBeforeValues, {ValueAuto, ValueAlways, ValueInherit}},
        {PropertyPosition, 20, propPositionValues, {ValueStatic}},
        {PropertyTextAlign, 21, propTextAlignValues, {ValueLeft, ValueRight, ValueCenter, ValueJustify}},
        {PropertyTextDecoration, 22, propTextDecorationValues, {ValueNone, ValueUnderline}},
        {PropertyTextIndent, 23, propTextIndentValues, {ValueLengthKind}},
        {PropertyVerticalAlign, 24, propVerticalAlignValues, {ValueTop, ValueMiddle, ValueBottom}},
        {PropertyWidth, 25, propWidthValues, side},
    };
    return all;
}

}  // namespace

TEST(ValidValues, HasARowForEachPropertyAndOneForNone) {
    EXPECT_EQ(validValues.size(), 26u);
    EXPECT_EQ(rows().size(), 26u);
}

TEST(ValidValues, IsIndexedByTheNumberOfTheProperty) {
    for (const auto& row : rows()) {
        SCOPED_TRACE(row.number);
        const auto& found = validValues.at(static_cast<size_t>(row.number));
        EXPECT_EQ(row.property, row.number);
        EXPECT_EQ(found.property, row.number);
        EXPECT_EQ(found.values, row.exported);
    }
}

TEST(ValidValues, HasTheseEntriesInThisOrderAndAZeroBehindThem) {
    for (const auto& row : rows()) {
        SCOPED_TRACE(row.number);
        std::vector<ValueID> entries;
        for (const ValueID* each = row.exported; *each != 0; ++each) entries.push_back(*each);
        EXPECT_EQ(entries, row.entries);
    }
}

TEST(ValidValues, RowZeroIsEmpty) { EXPECT_EQ(validValues[0].values[0], ValueInvalid); }

TEST(ValidValues, EntriesAre32BitsWide) {
    EXPECT_EQ(sizeof(ValueID), 4u);
    EXPECT_EQ(sizeof(PropertyID), 4u);
}

TEST(ValidValues, NoRowStandsForAnotherProperty) {
    for (const auto& row : rows())
        for (const ValueID* each = row.exported; *each != 0; ++each) EXPECT_GE(*each, ValueColorKind) << row.number;
}

// ---- Property::isValidValue

// Every number there is, for every property: keywords, kinds, numbers of properties, and those of nobody.
TEST(IsValidValue, SaysYesToTheEntriesOfTheRowAndNoToAllElse) {
    for (const auto& row : rows()) {
        for (int32_t value = -1; value <= 90; ++value) {
            const bool expected = std::count(row.entries.begin(), row.entries.end(), static_cast<ValueID>(value)) == 1;
            EXPECT_EQ(Property::isValidValue(row.property, static_cast<ValueID>(value)), expected) << row.number << ": " << value;
        }
    }
}

TEST(IsValidValue, ZeroIsNeverValid) {
    for (const auto& row : rows()) EXPECT_FALSE(Property::isValidValue(row.property, ValueInvalid)) << row.number;
}

TEST(IsValidValue, NothingIsValidForNoProperty) {
    EXPECT_FALSE(Property::isValidValue(PropertyUnknown, ValueInherit));
    EXPECT_FALSE(Property::isValidValue(PropertyUnknown, ValueNone));
    EXPECT_FALSE(Property::isValidValue(PropertyUnknown, ValueLengthKind));
}

// What other languages of style have, and this one leaves out.
TEST(ValidValues, AreNarrowerThanElsewhereOnPurpose) {
    EXPECT_EQ(PrimitiveValue::IdentForString("bolder"), ValueInvalid);
    EXPECT_EQ(PrimitiveValue::IdentForString("lighter"), ValueInvalid);
    for (const char* text :
         {"font-weight: bolder",       "font-weight: lighter",     "font-size: small",         "font-size: 120%",
          "line-height: 12pt",         "line-height: 120%",        "line-height: normal",      "display: list-item",
          "display: inherit",          "font-style: oblique",      "font-style: inherit",      "font-weight: inherit",
          "position: absolute",        "position: inherit",        "text-align: inherit",      "text-decoration: inherit",
          "text-decoration: overline", "text-indent: inherit",     "vertical-align: baseline", "vertical-align: inherit",
          "list-style-type: none",     "list-style-type: inherit", "line-height: inherit",     "font-size: inherit",
          "page-break-after: avoid"}) {
        const std::string line(text), name = line.substr(0, line.find(':')), value = line.substr(line.find(' ') + 1);
        EXPECT_EQ(test::readDeclarations(line), "Warning: Unsupported property " + name + " or invalid value \"" + value + "\"\n");
    }
}

// The rows of these three are not read by their own validation.
TEST(ValidValues, OfColorContentAndFontFamilyStandForThemselves) {
    EXPECT_TRUE(Property::isValidValue(PropertyColor, ValueInherit));
    EXPECT_EQ(test::readDeclarations("color: inherit"), "Warning: Unsupported property color or invalid value \"inherit\"\n");
    EXPECT_TRUE(Property::isValidValue(PropertyContent, ValueOpenQuote));
    EXPECT_EQ(test::readDeclarations("content: open-quote"), "Warning: Unsupported property content or invalid value \"open-quote\"\n");
    EXPECT_FALSE(Property::isValidValue(PropertyFontFamily, ValueInherit));
    EXPECT_EQ(test::readDeclarations("font-family: inherit"), "0 font-family: ['inherit']\n");
}
