// One number, text, keyword, colour or counter, for the application.
#pragma once

#include "mac/Frameworks/WQCSS/WQCSSValue.h"

template <class T> class NilPrimitiveValue;

// Unit types are those of CSS::UnitType. Around a value of another kind it is as around none.
class WQCSSPrimitiveValue : public WQCSSValue {
public:
    // Of no kind (CSS::CSS_UNKNOWN), to be set.
    template <class T = WQCSSPrimitiveValue> static Ref<T> newPrimitiveValue() { return wq::make<T>(&T::init); }
    virtual bool init();  // around a new value of no kind

    // A new value as the setter below leaves it. `unitType` is a CSS::UnitType.
    template <class T = WQCSSPrimitiveValue> static Ref<T> primitiveValueWithFloat_unitType(float number, unsigned short unitType) {
        const auto value = newPrimitiveValue<T>();
        value->setFloatValue_unitType(number, unitType);
        return value;
    }
    template <class T = WQCSSPrimitiveValue>
    static Ref<T> primitiveValueWithString_unitType(const NSString& string, unsigned short unitType) {
        const auto value = newPrimitiveValue<T>();
        value->setStringValue_unitType(string, unitType);
        return value;
    }

    unsigned short primitiveType() const;  // a CSS::UnitType; 0 around a value of another class

    // The stored number as it is: the unit type is not used, nothing is converted.
    float floatValue(unsigned short unitType) const;
    void setFloatValue_unitType(float number, unsigned short unitType);

    // Text, addresses and attribute names. Of any other unit type the setter loses the old content and leaves no kind.
    NSString stringValue() const;
    void setStringValue_unitType(const NSString& string, unsigned short unitType);

    template <class T> using Nil = NilPrimitiveValue<T>;

private:
    CSS::PrimitiveValue* primitive() const;
};

template <class T> class NilPrimitiveValue : public NilCSSValue<T> {
public:
    bool init() override { return false; }
};
