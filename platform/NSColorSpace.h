// One of the three RGB spaces that colours come in: a value with a null state.
#pragma once

#include "platform/NSString.h"

class NSColorSpace {
public:
    NSColorSpace() = default;  // null
    // The spaces of the colours that NSColor makes from components; the generic one is that of calibrated colours.
    static constexpr NSColorSpace genericRGBColorSpace() { return NSColorSpace(kGeneric); }
    static constexpr NSColorSpace deviceRGBColorSpace() { return NSColorSpace(kDevice); }
    static constexpr NSColorSpace sRGBColorSpace() { return NSColorSpace(kSRGB); }

    explicit operator bool() const { return kind != kNull; }  // false for null alone
    bool operator==(const NSColorSpace&) const = default;
    NSString localizedName() const;  // "Generic RGB", "Device RGB", "sRGB"

private:
    enum Kind : uint8_t { kNull, kGeneric, kDevice, kSRGB };
    explicit constexpr NSColorSpace(Kind ofKind) : kind(ofKind) {}
    Kind kind = kNull;
};
