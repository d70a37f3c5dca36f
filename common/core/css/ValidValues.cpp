#include "common/core/css/ValidValues.h"

namespace CSS {

const ValueID propInvalidValues[] = {ValueInvalid};
const ValueID propBackgroundColorValues[] = {ValueColorKind, ValueTransparent, ValueInherit, ValueInvalid};
const ValueID propColorValues[] = {ValueColorKind, ValueInherit, ValueInvalid};
const ValueID propContentValues[] = {ValueCounterKind, ValueStringKind,   ValueOpenQuote, ValueCloseQuote,
                                     ValueNoOpenQuote, ValueNoCloseQuote, ValueInvalid};
const ValueID propDisplayValues[] = {ValueBlock, ValueInline, ValueNone, ValueInvalid};
const ValueID propFontValues[] = {ValueCaption,      ValueIcon,      ValueMenu,    ValueMessageBox,
                                  ValueSmallCaption, ValueStatusBar, ValueInherit, ValueInvalid};
const ValueID propFontFamilyValues[] = {ValueFamilyNameKind, ValueGenericFamilyKind, ValueInvalid};
const ValueID propFontSizeValues[] = {ValueLengthKind, ValueInvalid};
const ValueID propFontStyleValues[] = {ValueNormal, ValueItalic, ValueInvalid};
const ValueID propFontVariantValues[] = {ValueNormal, ValueSmallCaps, ValueInherit, ValueInvalid};
const ValueID propFontWeightValues[] = {ValueNormal, ValueBold, ValueInvalid};
const ValueID propLineHeightValues[] = {ValueNumberKind, ValueInvalid};
const ValueID propListStyleTypeValues[] = {ValueBox,        ValueCheck,      ValueCircle,           ValueDiamond,          ValueDisc,
                                           ValueHyphen,     ValueSquare,     ValueLowerHexadecimal, ValueUpperHexadecimal, ValueOctal,
                                           ValueLowerAlpha, ValueLowerLatin, ValueUpperAlpha,       ValueUpperLatin,       ValueLowerRoman,
                                           ValueUpperRoman, ValueDecimal,    ValueInvalid};
const ValueID propMarginValues[] = {ValueLengthKind, ValuePercentageKind, ValueAuto, ValueInherit, ValueInvalid};
const ValueID propMarginBottomValues[] = {ValueLengthKind, ValuePercentageKind, ValueAuto, ValueInherit, ValueInvalid};
const ValueID propMarginLeftValues[] = {ValueLengthKind, ValuePercentageKind, ValueAuto, ValueInherit, ValueInvalid};
const ValueID propMarginRightValues[] = {ValueLengthKind, ValuePercentageKind, ValueAuto, ValueInherit, ValueInvalid};
const ValueID propMarginTopValues[] = {ValueLengthKind, ValuePercentageKind, ValueAuto, ValueInherit, ValueInvalid};
const ValueID propPageBreakAfterValues[] = {ValueAuto, ValueAlways, ValueInherit, ValueInvalid};
const ValueID propPageBreakBeforeValues[] = {ValueAuto, ValueAlways, ValueInherit, ValueInvalid};
const ValueID propPositionValues[] = {ValueStatic, ValueInvalid};
const ValueID propTextAlignValues[] = {ValueLeft, ValueRight, ValueCenter, ValueJustify, ValueInvalid};
const ValueID propTextDecorationValues[] = {ValueNone, ValueUnderline, ValueInvalid};
const ValueID propTextIndentValues[] = {ValueLengthKind, ValueInvalid};
const ValueID propVerticalAlignValues[] = {ValueTop, ValueMiddle, ValueBottom, ValueInvalid};
const ValueID propWidthValues[] = {ValueLengthKind, ValuePercentageKind, ValueAuto, ValueInherit, ValueInvalid};

namespace {

constexpr std::array<ValidValues, 26> rowsByNumber() {
    std::array<ValidValues, 26> rows{};
    rows[PropertyUnknown] = {PropertyUnknown, propInvalidValues};
#define WQ_CSS_PROPERTY(name, number, Word) rows[number] = {Property##Word, prop##Word##Values};
#include "common/core/css/Properties.def"
#undef WQ_CSS_PROPERTY
    return rows;
}

}  // namespace

constinit const std::array<ValidValues, 26> validValues = rowsByNumber();

}  // namespace CSS
