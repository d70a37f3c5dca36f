#include "platform/NSFont.h"

#include <fmt/format.h>

#include "platform/Faces.h"

Ref<NSFont> NSFont::userFontOfSize(double size) { return fontWithFace_size(wq::userFace(), size); }

Ref<NSFont> NSFont::fontWithFace_size(const wq::Face& face, double size) {
    auto descriptor = Ref<NSFontDescriptor>(new NSFontDescriptor);
    descriptor->my.familyName = wq::fromUTF8(face.family);
    descriptor->my.pointSize = size > 0 ? size : 12;
    descriptor->my.symbolicTraits = (face.isItalic ? NSFontItalicTrait : 0) | (face.isBold() ? NSFontBoldTrait : 0);
    auto made = Ref<NSFont>(new NSFont);
    made->my = {descriptor, face.path.empty() ? NSString() : wq::fromUTF8(face.path), face.index};
    return made;
}

bool NSFont::isEqual(const Ref<wq::Object>& other) const {
    const auto font = wq::cast<NSFont>(other);
    return font && familyName() == font->familyName() && pointSize() == font->pointSize() &&
           fontDescriptor()->symbolicTraits() == font->fontDescriptor()->symbolicTraits() && path() == font->path() &&
           faceIndex() == font->faceIndex();
}

NSString NSFont::description() const {
    if (isNil()) return nullptr;
    const uint32_t traits = my.descriptor->symbolicTraits();
    return wq::fromUTF8(fmt::format(
        "{} {}{}{}", wq::toUTF8(familyName()), pointSize(), traits & NSFontBoldTrait ? " bold" : "",
        traits & NSFontItalicTrait ? " italic" : ""));
}
