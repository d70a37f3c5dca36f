// Which fonts there are, and the font for a family and a style.
#pragma once

#include <vector>

#include "platform/NSFont.h"

template <class T> class NilFontManager;

// The bits of a traits argument. Italic wins over not italic, bold over not bold.
inline constexpr unsigned long NSItalicFontMask = 1;
inline constexpr unsigned long NSBoldFontMask = 2;
inline constexpr unsigned long NSUnboldFontMask = 4;
inline constexpr unsigned long NSUnitalicFontMask = 0x01000000;

class NSFontManager : public wq::Object {
public:
    // The one manager, the same object each time. It reads the system's fonts when it is first
    // asked for one, and knows those to the end of the process.
    static Ref<NSFontManager> sharedFontManager();

    // The English names of all families, each once, in the order of their UTF-8 bytes. Null: none.
    virtual std::vector<NSString> availableFontFamilies() const;

    // The font of the family that comes nearest to the traits; null only if no family has exactly
    // that name, in that case. Nothing is emboldened or slanted: the font's own traits tell what was found.
    // Without a bit for bold the weight decides, 5 being regular and 9 and above bold; without a bit
    // for italic the font is upright where there is one. The size is in points, and read as 12 unless above 0.
    virtual Ref<NSFont> fontWithFamily_traits_weight_size(const NSString& family, unsigned long traits, int weight, double size) const;

    template <class T> using Nil = NilFontManager<T>;
};

template <class T> class NilFontManager : public T {
public:
    std::vector<NSString> availableFontFamilies() const override { return {}; }
    Ref<NSFont> fontWithFamily_traits_weight_size(const NSString&, unsigned long, int, double) const override { return nullptr; }
};
