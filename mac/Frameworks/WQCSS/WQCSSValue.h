// What a declaration says, for the application.
#pragma once

#include "common/core/css/Value.h"
#include "platform/Object.h"

template <class T> class NilCSSValue;

// Around no value, as on null, every query answers 0 or null, and every setter does nothing.
class WQCSSValue : public wq::Object {
public:
    // A WQCSSPrimitiveValue or a WQCSSValueList around a value of the engine, which is shared; null for null and for
    // any other kind.
    static Ref<WQCSSValue> valueWithCSSValue(CSS::Value* value);

    // Around a value of the engine, which is shared, without a look at its kind.
    template <class T = WQCSSValue> static Ref<T> newWithCSSValue(CSS::Value* value) { return wq::make<T>(&T::initWithCSSValue, value); }
    virtual bool initWithCSSValue(CSS::Value* value);

    // The engine's, which this object keeps; null around none.
    CSS::Value* cssValue() const { return my.cssValue.Get(); }

    NSString cssText() const;               // null around no value
    void setCssText(const NSString& text);  // not supported: a hard assertion of the engine
    unsigned short cssValueType() const;    // a CSS::ValueType

    template <class T> using Nil = NilCSSValue<T>;

private:
    struct {
        SharedPtr<CSS::Value> cssValue;
    } my;
};

template <class T> class NilCSSValue : public T {
public:
    bool initWithCSSValue(CSS::Value*) override { return false; }
};
