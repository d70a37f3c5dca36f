#include "platform/NSParagraphStyle.h"

#include "platform/NSMutableParagraphStyle.h"

Ref<NSParagraphStyle> NSParagraphStyle::defaultParagraphStyle() {
    static NSParagraphStyle* const style = [] {
        auto* made = wq::immortal<NSParagraphStyle>();
        made->my.alignment = NSTextAlignmentNatural;
        for (int stop = 1; stop <= 12; ++stop) made->my.tabStops.push_back(28 * stop);
        return made;
    }();
    return Ref<NSParagraphStyle>(style);
}

Ref<NSMutableParagraphStyle> NSParagraphStyle::mutableCopy() const {
    return isNil() ? nullptr : NSMutableParagraphStyle::paragraphStyleWithFields(my);
}

bool NSParagraphStyle::isEqual(const Ref<wq::Object>& other) const {
    const auto style = wq::cast<NSParagraphStyle>(other);
    return !isNil() && style && my == style->my;
}
