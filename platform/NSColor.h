// A colour of four components, or the dynamic colour of text. Colours do not change.
//
// There is no colour management: a colour that goes from one RGB space to another keeps its numbers.
#pragma once

#include "platform/NSColorSpace.h"
#include "platform/Object.h"

// The kinds of colours, for colorUsingType.
inline constexpr long NSColorTypeComponentBased = 0;
inline constexpr long NSColorTypePattern = 1;
inline constexpr long NSColorTypeCatalog = 2;

class NSColor : public wq::Object {
public:
    // Components go from 0 to 1; what lies outside is brought to the nearer end, and what is no number to 0.
    static Ref<NSColor> colorWithCalibratedRed_green_blue_alpha(double red, double green, double blue, double alpha);
    static Ref<NSColor> colorWithDeviceRed_green_blue_alpha(double red, double green, double blue, double alpha);
    static Ref<NSColor> colorWithSRGBRed_green_blue_alpha(double red, double green, double blue, double alpha);

    // The colour of text that is given none: one object, known by its address. It has no
    // components until it is converted; it is drawn black.
    static Ref<NSColor> textColor();

    // 0, component based: a component colour itself, and opaque black of sRGB for the dynamic one.
    // 2, catalog: the dynamic colour itself. Null where there is no such conversion.
    Ref<NSColor> colorUsingType(long type);
    // The colour with the same numbers in that space, itself if it is there already; the dynamic colour
    // becomes black. Null for the null space.
    Ref<NSColor> colorUsingColorSpace(NSColorSpace space);

    // From 0 to 1. All of these raise "NSInvalidArgumentException" for the dynamic colour.
    double redComponent() const { return components().red; }
    double greenComponent() const { return components().green; }
    double blueComponent() const { return components().blue; }
    double alphaComponent() const { return components().alpha; }
    // Null pointers are passed over. Null: sets 0.
    void getRed_green_blue_alpha(double* red, double* green, double* blue, double* alpha) const;
    // Where the components belong; null for null.
    NSColorSpace colorSpace() const { return components().space; }

    // The same space and the same components. The dynamic colour equals itself alone, null nothing.
    bool isEqual(const Ref<wq::Object>& other) const override;

private:
    struct Components {
        double red = 0;
        double green = 0;
        double blue = 0;
        double alpha = 0;
        NSColorSpace space;
        bool isDynamic = false;
        bool operator==(const Components&) const = default;
    } my;

    static Ref<NSColor> colorWithComponents(const Components& components);
    const Components& components() const;
};
