// The style and the font that the engine's factories make: with the platform's font and text attributes beside them.
#pragma once

#include "common/core/css/Font.h"
#include "common/core/css/Style.h"
#include "platform/NSDictionary.h"
#include "platform/NSFont.h"

namespace CSS {

// How the platform is asked for a font: by traits of NSFontManager and its regular weight. A weight or style that is
// none asks for nothing.
unsigned long fontTraitsOf(WQCSSFontWeight weight, WQCSSFontStyle style);
inline constexpr int regularFontWeight = 5;

// The first of the platform's families that is the same in lower case, as the platform spells it; null if there is none.
NSString availableFamily(const NSString& family);

// Speaks of the user's text font at 12 points until it is changed.
class FontImpl : public Font {
public:
    FontImpl();

    Font* Clone() const override;  // shares the font object until either changes

    // Each forgets the font object, also where the value is the present one.
    void SetWeight(WQCSSFontWeight newWeight) override;
    void SetSize(float newSize) override;
    void SetStyle(WQCSSFontStyle newStyle) override;
    void SetFamily(const std::string& newFamily) override;

    // The platform's font of this family, exactly or without regard to case; null if there is none, which is
    // not remembered.
    Ref<NSFont> GetFont();

    // As GetFont asks for it where the exact family is unknown: of the first family that is the same in lower case.
    // `traits` are those of NSFontManager, `size` is in points.
    Ref<NSFont> BestMatchForFont(const NSString& family, unsigned long traits, int weight, float size) const;

private:
    FontImpl(const FontImpl&) = default;

    Ref<NSFont> cachedFont;
};

class StyleImpl : public Style {
public:
    StyleImpl() = default;

    void InheritPropertiesFrom(Style* aParent) override;

    // What the text system wants: a paragraph style, a colour, and the font where there is one. Made by the first
    // call and kept: what is set afterwards does not show. Of the box it has the margins above and below; there
    // is no underline, and the colour is opaque. The font must be a FontImpl.
    virtual Ref<NSDictionary> GetAttributes();

private:
    Style* parent = nullptr;  // written and never read; not kept alive
    Ref<NSDictionary> attributes;
};

}  // namespace CSS
