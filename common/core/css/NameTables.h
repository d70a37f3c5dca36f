// The tables that the build makes perfect hashes of: Colors.gperf, Keywords.gperf and Properties.def.
#pragma once

#include <cstddef>
#include <span>

#include "common/core/css/CSSColor.h"
#include "common/core/css/ValueID.h"

namespace CSS {

// All three refuse by length before they hash, and compare with the bytes of a row of that length only.
const ColorName* findColorName(const char* name, size_t length);

struct Keyword {
    const char* text;
    ValueID id;
};
const Keyword* findKeyword(const char* text, size_t length);

struct PropertyName {
    const char* name;
    unsigned int row;  // of Properties.def
};
const PropertyName* findPropertyName(const char* name, size_t length);

// All rows of the table of keywords, in no order; ValueInvalid marks the empty ones between them.
std::span<const Keyword> keywordRows();

}  // namespace CSS
