// What the fields of a computed style hold: lengths, borders, and the keywords of the properties by number.
#pragma once

#include <cstdint>

// What the value of a length is.
enum WQCSSLengthType : int32_t {
    WQCSSLengthTypeNone = 0,        // no length: the maxima of a style
    WQCSSLengthTypeAbsolute = 1,    // points
    WQCSSLengthTypePercentage = 3,  // percent; 2 has no meaning of its own and is read as points
    WQCSSLengthTypeAuto = 4,
};

// A length of a style; 0 points, unless it is made with something else.
struct _WQCSSLength {
    float value = 0;                         // points or percent; without meaning for other types
    int32_t type = WQCSSLengthTypeAbsolute;  // a WQCSSLengthType

    // As floats are: a length that is not a number differs from itself.
    bool operator==(const _WQCSSLength& other) const = default;
};

// The border on one side of a box. It has neither colour nor style.
struct _WQCSSBorder {
    int32_t width = 0;     // points
    int32_t reserved = 0;  // kept and compared, interpreted by nobody

    bool operator==(const _WQCSSBorder& other) const = default;
};

// Units in which a length is given.
enum WQCSSLengthUnits : uint32_t {
    WQCSSLengthUnitsPixel = 1,
    WQCSSLengthUnitsCentimetre = 2,
    WQCSSLengthUnitsMillimetre = 3,
    WQCSSLengthUnitsInch = 4,
    WQCSSLengthUnitsPoint = 5,
    WQCSSLengthUnitsPica = 6,
};

// The three ways of CSS that the engine knows.
enum WQCSSDisplay : uint32_t { WQCSSDisplayBlock = 0, WQCSSDisplayInline = 1, WQCSSDisplayNone = 2 };

// There is no oblique.
enum WQCSSFontStyle : uint32_t { WQCSSFontStyleNormal = 0, WQCSSFontStyleItalic = 1 };

// There are no numbers between the two: see PropFontWeight.
enum WQCSSFontWeight : uint32_t { WQCSSFontWeightNormal = 0, WQCSSFontWeightBold = 1 };

// The numbers are those of the platform's alignments.
enum WQCSSTextAlign : uint32_t {
    WQCSSTextAlignLeft = 0,
    WQCSSTextAlignRight = 1,
    WQCSSTextAlignCenter = 2,
    WQCSSTextAlignJustify = 3,
};

// There are no lines but the one below.
enum WQCSSTextDecoration : uint32_t { WQCSSTextDecorationNone = 0, WQCSSTextDecorationUnderline = 1 };

// There is no baseline: a new style has the middle.
enum WQCSSVerticalAlign : uint32_t { WQCSSVerticalAlignTop = 0, WQCSSVerticalAlignMiddle = 1, WQCSSVerticalAlignBottom = 2 };

// "inherit" is a value of its own here, which nothing resolves against a parent.
enum WQCSSPageBreakAfter : uint32_t {
    WQCSSPageBreakAfterAuto = 0,
    WQCSSPageBreakAfterAlways = 1,
    WQCSSPageBreakAfterInherit = 2,
};

// As WQCSSPageBreakAfter.
enum WQCSSPageBreakBefore : uint32_t {
    WQCSSPageBreakBeforeAuto = 0,
    WQCSSPageBreakBeforeAlways = 1,
    WQCSSPageBreakBeforeInherit = 2,
};

// The names are those of the platform's list marker formats.
enum WQCSSListStyleType : uint32_t {
    WQCSSListStyleTypeBox = 0,
    WQCSSListStyleTypeCheck = 1,
    WQCSSListStyleTypeCircle = 2,
    WQCSSListStyleTypeDiamond = 3,
    WQCSSListStyleTypeDisc = 4,
    WQCSSListStyleTypeHyphen = 5,
    WQCSSListStyleTypeSquare = 6,
    WQCSSListStyleTypeLowerHexadecimal = 7,
    WQCSSListStyleTypeUpperHexadecimal = 8,
    WQCSSListStyleTypeOctal = 9,
    WQCSSListStyleTypeLowerAlpha = 10,
    WQCSSListStyleTypeLowerLatin = 11,
    WQCSSListStyleTypeUpperAlpha = 12,
    WQCSSListStyleTypeUpperLatin = 13,
    WQCSSListStyleTypeLowerRoman = 14,
    WQCSSListStyleTypeUpperRoman = 15,
    WQCSSListStyleTypeDecimal = 16,
};
