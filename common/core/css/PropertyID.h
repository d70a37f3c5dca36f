// The properties by number. Property number N stands for what it accepts in the tables of valid values.
#pragma once

#include <cstdint>

namespace CSS {

// PropertyFont = 5, PropertyColor = 2 and so on, for each row of Properties.def.
enum PropertyID : int32_t {
    PropertyUnknown = 0,
#define WQ_CSS_PROPERTY(name, number, Word) Property##Word = (number),
#include "common/core/css/Properties.def"
#undef WQ_CSS_PROPERTY
};

}  // namespace CSS
