#include "platform/NSFontManager.h"

#include "platform/Faces.h"

Ref<NSFontManager> NSFontManager::sharedFontManager() {
    static NSFontManager* const shared = wq::immortal<NSFontManager>();
    return Ref<NSFontManager>(shared);
}

std::vector<NSString> NSFontManager::availableFontFamilies() const {
    std::vector<NSString> names;
    names.reserve(wq::fontFamilies().size());
    for (const auto& [name, faces] : wq::fontFamilies()) names.push_back(wq::fromUTF8(name));
    return names;
}

Ref<NSFont> NSFontManager::fontWithFamily_traits_weight_size(const NSString& family, unsigned long traits, int weight, double size) const {
    const auto found = wq::fontFamilies().find(wq::toUTF8(family));
    if (found == wq::fontFamilies().end()) return nullptr;
    const bool italic = traits & NSItalicFontMask;
    const bool bold = traits & NSBoldFontMask || (!(traits & NSUnboldFontMask) && weight >= 9);
    return NSFont::fontWithFace_size(*wq::nearestFace(found->second, italic, bold), size);
}
