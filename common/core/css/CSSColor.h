// Colours of the CSS engine: one packed word each, passed by value.
#pragma once

#include <cstdint>
#include <string>

namespace CSS {

// A row of the table of colour names: 149 names in lower case.
struct ColorName {
    const char* name;
    uint32_t rgb;  // red, green and blue in the lower 24 bits, red on top
};

// The row of a name of `length` bytes, or null. The comparison is exact: "Red" is no name. The bytes need no
// NUL behind them.
const ColorName* LookupColor(const char* name, unsigned int length);

struct CSSColor {
    // The unreadable colour.
    CSSColor() = default;

    // Opaque; what `rgb` has in its top byte is overwritten.
    explicit CSSColor(int rgb);

    // Components are fractions from 0 to 1, taken times 255 and cut, so that 0.5 is 127. They do not saturate:
    // of larger and of negative numbers the low eight bits stay. What is no number, or too large for 32 bits, is 0.
    CSSColor(float red, float green, float blue, float alpha);

    // A name of the table, "#rgb" or "#rrggbb" with digits of both cases; opaque. Anything else is unreadable.
    // Digits are read by strtol to base 16: those behind the first bad one are dropped, so "#12x456" is 0x000012.
    explicit CSSColor(const std::string& text);

    // "#rrggbb", in lower case. Alpha is dropped, so that an unreadable colour reads as black.
    std::string stringValue() const;

    bool operator==(const CSSColor& other) const = default;

    // Alpha, red, green and blue from the top byte down; 0 is a colour that could not be read.
    uint32_t rgbaValue = 0;
};

}  // namespace CSS
