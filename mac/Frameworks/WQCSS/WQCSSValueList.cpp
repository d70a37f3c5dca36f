#include "mac/Frameworks/WQCSS/WQCSSValueList.h"

bool WQCSSValueList::init() { return initWithCSSValue(new CSS::ValueList); }

// Null around a value of another kind.
CSS::ValueList* WQCSSValueList::list() const { return dynamic_cast<CSS::ValueList*>(cssValue()); }

size_t WQCSSValueList::length() const { return list() ? list()->values.size() : 0; }

Ref<WQCSSValue> WQCSSValueList::item(size_t index) const {
    return index < length() ? valueWithCSSValue(list()->values[index].Get()) : nullptr;
}
