// What a style sheet says of a font. Styles share one object until somebody changes it.
#pragma once

#include <string>

#include "common/core/css/StyleTypes.h"
#include "common/core/include/Shared.h"

namespace CSS {

class Font : public SharedObject {
public:
    // A new font of the same class with the same fields and a count of 0. The platform's font finds out by its own
    // Clone and setters when a font object that it keeps has grown old.
    virtual Font* Clone() const = 0;

    // Nothing is checked against the fonts that there are.
    virtual WQCSSFontWeight Weight() const;
    virtual void SetWeight(WQCSSFontWeight newWeight);  // cut to four bits
    virtual float Size() const;                         // points
    virtual void SetSize(float newSize);
    virtual WQCSSFontStyle Style() const;
    virtual void SetStyle(WQCSSFontStyle newStyle);  // cut to two bits
    virtual std::string Family() const;              // one name, in UTF-8
    virtual void SetFamily(const std::string& newFamily);

protected:
    Font() = default;
    Font(const Font&) = default;

    // What the operations above read and write; the platform's class starts with a family of its own.
    uint32_t weight : 4 = WQCSSFontWeightNormal;
    uint32_t style : 2 = WQCSSFontStyleNormal;
    float size = 12;
    std::string family = "Courier";
};

}  // namespace CSS

// A new font of the platform's class, with a count of 0: the user's text font at 12 points.
CSS::Font* CreateCSSFont();
