// What a font is by name, size and style, fixed when the font is made.
#pragma once

#include <cstdint>

#include "platform/Object.h"

// The bits of symbolicTraits.
inline constexpr uint32_t NSFontItalicTrait = 1;
inline constexpr uint32_t NSFontBoldTrait = 2;

class NSFontDescriptor : public wq::Object {
public:
    // As the platform spells it.
    const NSString& familyName() const { return my.familyName; }
    double pointSize() const { return my.pointSize; }  // points
    // Those of the face that was found, whatever was asked for. Null: 0.
    uint32_t symbolicTraits() const { return my.symbolicTraits; }

private:
    friend class NSFont;
    struct {
        NSString familyName;
        double pointSize = 0;
        uint32_t symbolicTraits = 0;
    } my;
};
