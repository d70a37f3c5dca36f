// A block of properties, for the application.
#pragma once

#include "common/core/css/StyleDeclaration.h"
#include "mac/Frameworks/WQCSS/WQCSSValue.h"

class WQCSSMutableStyleDeclaration;
template <class T> class NilStyleDeclaration;

// Around no declaration, as on null, every query answers 0 or null, and nothing is changed.
class WQCSSStyleDeclaration : public wq::Object {
public:
    // Around a declaration of the engine, which is shared.
    template <class T = WQCSSStyleDeclaration> static Ref<T> newWithCSSStyleDeclaration(CSS::StyleDeclaration* declaration) {
        return wq::make<T>(&T::initWithCSSStyleDeclaration, declaration);
    }
    virtual bool initWithCSSStyleDeclaration(CSS::StyleDeclaration* declaration);

    // The engine's, which this object keeps; null around none.
    CSS::StyleDeclaration* cssStyleDeclaration() const { return my.styleDeclaration.Get(); }

    NSString cssText() const;                                      // the properties, each with "; " behind it
    NSString propertyValue(const NSString& name) const;            // empty where there is none
    Ref<WQCSSValue> propertyCSSValue(const NSString& name) const;  // a new object each time; null where there is none
    NSString propertyPriority(const NSString& name) const;         // not supported: a hard assertion of the engine
    size_t length() const;                                         // how many properties
    NSString item(size_t index) const;  // behind the last: std::out_of_range, or empty for a computed declaration

    // Takes out of `other` what this declaration says in the same words. Null: nothing.
    void removeDuplicatePropertiesFromStyle(const Ref<WQCSSMutableStyleDeclaration>& other) const;

    template <class T> using Nil = NilStyleDeclaration<T>;

private:
    struct {
        SharedPtr<CSS::StyleDeclaration> styleDeclaration;
    } my;
};

template <class T> class NilStyleDeclaration : public T {
public:
    bool initWithCSSStyleDeclaration(CSS::StyleDeclaration*) override { return false; }
};
