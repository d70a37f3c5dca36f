#include "mac/Frameworks/WQCSS/WQCSSStyleDeclaration.h"

#include "mac/Frameworks/WQCSS/WQCSSMutableStyleDeclaration.h"

bool WQCSSStyleDeclaration::initWithCSSStyleDeclaration(CSS::StyleDeclaration* declaration) {
    my.styleDeclaration = declaration;
    return true;
}

NSString WQCSSStyleDeclaration::cssText() const { return my.styleDeclaration ? wq::fromUTF8(my.styleDeclaration->cssText()) : nullptr; }

NSString WQCSSStyleDeclaration::propertyValue(const NSString& name) const {
    return my.styleDeclaration ? wq::fromUTF8(my.styleDeclaration->propertyValue(wq::toUTF8(name))) : nullptr;
}

Ref<WQCSSValue> WQCSSStyleDeclaration::propertyCSSValue(const NSString& name) const {
    if (!my.styleDeclaration) return nullptr;
    const SharedPtr<CSS::Value> value = my.styleDeclaration->propertyCSSValue(wq::toUTF8(name));
    return WQCSSValue::valueWithCSSValue(value.Get());
}

NSString WQCSSStyleDeclaration::propertyPriority(const NSString& name) const {
    return my.styleDeclaration ? wq::fromUTF8(my.styleDeclaration->propertyPriority(wq::toUTF8(name))) : nullptr;
}

size_t WQCSSStyleDeclaration::length() const { return my.styleDeclaration ? my.styleDeclaration->length() : 0; }

NSString WQCSSStyleDeclaration::item(size_t index) const {
    return my.styleDeclaration ? wq::fromUTF8(my.styleDeclaration->item(index)) : nullptr;
}

void WQCSSStyleDeclaration::removeDuplicatePropertiesFromStyle(const Ref<WQCSSMutableStyleDeclaration>& other) const {
    if (my.styleDeclaration) my.styleDeclaration->removeDuplicatePropertiesFromStyle(other->mutableDeclaration());
}
