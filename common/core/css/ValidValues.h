// What each property accepts.
#pragma once

#include <array>

#include "common/core/css/PropertyID.h"
#include "common/core/css/ValueID.h"

namespace CSS {

// propFontValues and so on, for each row of Properties.def. An entry is a keyword, a kind of value, or the number of
// a property (1 to 25), which stands for all that this one accepts; ValueInvalid ends the table.
extern const ValueID propInvalidValues[];
#define WQ_CSS_PROPERTY(name, number, Word) extern const ValueID prop##Word##Values[];
#include "common/core/css/Properties.def"
#undef WQ_CSS_PROPERTY

// A row of the table below.
struct ValidValues {
    PropertyID property;    // the index of the row
    const ValueID* values;  // up to ValueInvalid
};

// Indexed by PropertyID; row 0 is empty. Three properties check their values by rules of their own and do not
// read their rows: "color", "content", "font-family".
extern const std::array<ValidValues, 26> validValues;

}  // namespace CSS
