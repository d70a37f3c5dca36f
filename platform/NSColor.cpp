#include "platform/NSColor.h"

#include <algorithm>

#include "platform/WQXMLException.h"

namespace {
double clamped(double component) { return component > 0 ? std::min(component, 1.0) : 0; }
}  // namespace

Ref<NSColor> NSColor::colorWithComponents(const Components& components) {
    auto made = Ref<NSColor>(new NSColor);
    made->my = components;
    return made;
}

Ref<NSColor> NSColor::colorWithCalibratedRed_green_blue_alpha(double red, double green, double blue, double alpha) {
    return colorWithComponents({clamped(red), clamped(green), clamped(blue), clamped(alpha), NSColorSpace::genericRGBColorSpace()});
}

Ref<NSColor> NSColor::colorWithDeviceRed_green_blue_alpha(double red, double green, double blue, double alpha) {
    return colorWithComponents({clamped(red), clamped(green), clamped(blue), clamped(alpha), NSColorSpace::deviceRGBColorSpace()});
}

Ref<NSColor> NSColor::colorWithSRGBRed_green_blue_alpha(double red, double green, double blue, double alpha) {
    return colorWithComponents({clamped(red), clamped(green), clamped(blue), clamped(alpha), NSColorSpace::sRGBColorSpace()});
}

Ref<NSColor> NSColor::textColor() {
    static NSColor* const color = [] {
        auto* made = wq::immortal<NSColor>();
        made->my.isDynamic = true;
        return made;
    }();
    return Ref<NSColor>(color);
}

Ref<NSColor> NSColor::colorUsingType(long type) {
    if (type == NSColorTypeComponentBased && my.isDynamic) return colorUsingColorSpace(NSColorSpace::sRGBColorSpace());
    const long ownType = my.isDynamic ? NSColorTypeCatalog : NSColorTypeComponentBased;
    return type == ownType ? Ref<NSColor>(this) : nullptr;
}

Ref<NSColor> NSColor::colorUsingColorSpace(NSColorSpace space) {
    if (isNil() || !space) return nullptr;
    if (my.isDynamic) return colorWithComponents({0, 0, 0, 1, space});
    if (space == my.space) return Ref<NSColor>(this);
    return colorWithComponents({my.red, my.green, my.blue, my.alpha, space});
}

const NSColor::Components& NSColor::components() const {
    if (my.isDynamic) throw WQXMLException(u"NSInvalidArgumentException", u"The dynamic colour of text has no components");
    return my;
}

void NSColor::getRed_green_blue_alpha(double* red, double* green, double* blue, double* alpha) const {
    const Components& own = components();
    if (red) *red = own.red;
    if (green) *green = own.green;
    if (blue) *blue = own.blue;
    if (alpha) *alpha = own.alpha;
}

bool NSColor::isEqual(const Ref<wq::Object>& other) const {
    const auto color = wq::cast<NSColor>(other);
    return color && my == color->my;
}
