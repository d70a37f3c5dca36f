#include "mac/Frameworks/WQCSS/WQCSSValue.h"

#include "mac/Frameworks/WQCSS/WQCSSPrimitiveValue.h"
#include "mac/Frameworks/WQCSS/WQCSSValueList.h"

Ref<WQCSSValue> WQCSSValue::valueWithCSSValue(CSS::Value* value) {
    switch (value ? value->cssValueType() : 0) {
        case CSS::CSS_PRIMITIVE_VALUE: return WQCSSPrimitiveValue::newWithCSSValue<WQCSSPrimitiveValue>(value);
        case CSS::CSS_VALUE_LIST: return WQCSSValueList::newWithCSSValue<WQCSSValueList>(value);
        default: return nullptr;
    }
}

bool WQCSSValue::initWithCSSValue(CSS::Value* value) {
    my.cssValue = value;
    return true;
}

NSString WQCSSValue::cssText() const { return my.cssValue ? wq::fromUTF8(my.cssValue->cssText()) : nullptr; }

void WQCSSValue::setCssText(const NSString& text) {
    if (my.cssValue) my.cssValue->setCssText(wq::toUTF8(text));
}

unsigned short WQCSSValue::cssValueType() const { return my.cssValue ? my.cssValue->cssValueType() : 0; }
