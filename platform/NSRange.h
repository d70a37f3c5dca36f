// A location and a length, both unsigned, and the index that stands for "not found".
#pragma once

#include <cstdint>

// The answer of an index search that found nothing, and the location of a range that found nothing.
inline constexpr uint64_t NSNotFound = 0x7fffffffffffffff;

struct NSRange {
    uint64_t location = 0;
    uint64_t length = 0;
    bool operator==(const NSRange&) const = default;
};
