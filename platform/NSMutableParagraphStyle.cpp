#include "platform/NSMutableParagraphStyle.h"

Ref<NSMutableParagraphStyle> NSMutableParagraphStyle::paragraphStyleWithFields(const Fields& fields) {
    auto made = Ref<NSMutableParagraphStyle>(new NSMutableParagraphStyle);
    made->my = fields;
    return made;
}
