// One space of numbers for what a value can be: properties, kinds of values and keywords.
#pragma once

#include <cstdint>

namespace CSS {

// The numbers are stored in the tables of valid values and never change. Those from 1 to 25 belong to
// the properties, 26 and 27 to nobody.
enum ValueID : int32_t {
    ValueInvalid = 0,  // no identifier; the end of a table

    // Kinds: a whole class of input.
    ValueColorKind = 28,
    ValueCounterKind = 29,
    ValueFamilyNameKind = 30,
    ValueGenericFamilyKind = 31,
    ValueLengthKind = 32,  // also the bare number 0
    ValueNumberKind = 33,
    ValuePercentageKind = 34,
    ValueStringKind = 35,

    // Keywords, in the order of their texts.
    ValueAlways = 36,
    ValueAuto = 37,
    ValueBlock = 38,
    ValueBold = 39,
    ValueBottom = 40,
    ValueBox = 41,
    ValueCaption = 42,
    ValueCenter = 43,
    ValueCheck = 44,
    ValueCircle = 45,
    ValueCloseQuote = 46,
    ValueDecimal = 47,
    ValueDiamond = 48,
    ValueDisc = 49,
    ValueHyphen = 50,
    ValueIcon = 51,
    ValueInherit = 52,
    ValueInline = 53,
    ValueItalic = 54,
    ValueJustify = 55,
    ValueLeft = 56,
    ValueLowerAlpha = 57,
    ValueLowerHexadecimal = 58,
    ValueLowerLatin = 59,
    ValueLowerRoman = 60,
    ValueMenu = 61,
    ValueMessageBox = 62,
    ValueMiddle = 63,
    ValueNoCloseQuote = 64,
    ValueNoOpenQuote = 65,
    ValueNone = 66,
    ValueNormal = 67,
    ValueOctal = 68,
    ValueOpenQuote = 69,
    ValueRight = 70,
    ValueSmallCaps = 71,
    ValueSmallCaption = 72,
    ValueSquare = 73,
    ValueStatic = 74,
    ValueStatusBar = 75,
    ValueTop = 76,
    ValueTransparent = 77,
    ValueUnderline = 78,
    ValueUpperAlpha = 79,
    ValueUpperHexadecimal = 80,
    ValueUpperLatin = 81,
    ValueUpperRoman = 82,
};

}  // namespace CSS
