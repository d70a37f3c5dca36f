#include "mac/Frameworks/WQCSS/WQCSSPrimitiveValue.h"

bool WQCSSPrimitiveValue::init() { return initWithCSSValue(new CSS::PrimitiveValue); }

// Null around a value of another kind.
CSS::PrimitiveValue* WQCSSPrimitiveValue::primitive() const { return dynamic_cast<CSS::PrimitiveValue*>(cssValue()); }

unsigned short WQCSSPrimitiveValue::primitiveType() const { return primitive() ? primitive()->primitiveType : 0; }

float WQCSSPrimitiveValue::floatValue(unsigned short) const { return primitive() ? primitive()->floatValue() : 0; }

void WQCSSPrimitiveValue::setFloatValue_unitType(float number, unsigned short unitType) {
    if (primitive()) primitive()->setFloatValue(unitType, number);
}

NSString WQCSSPrimitiveValue::stringValue() const { return primitive() ? wq::fromUTF8(primitive()->stringValue()) : nullptr; }

void WQCSSPrimitiveValue::setStringValue_unitType(const NSString& string, unsigned short unitType) {
    if (primitive()) primitive()->setStringValue(unitType, wq::toUTF8(string));
}
