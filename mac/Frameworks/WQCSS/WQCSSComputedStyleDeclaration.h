// What a resolved style says, property by property, for the application.
#pragma once

#include "mac/Frameworks/WQCSS/WQCSSStyle.h"
#include "mac/Frameworks/WQCSS/WQCSSStyleDeclaration.h"

template <class T> class NilComputedStyleDeclaration;

class WQCSSComputedStyleDeclaration : public WQCSSStyleDeclaration {
public:
    // Null for a null style, and for one around none of the engine's.
    template <class T = WQCSSComputedStyleDeclaration> static Ref<T> computedStyleDeclarationWithStyle(const Ref<WQCSSStyle>& style) {
        return newWithStyle<T>(style);
    }
    template <class T = WQCSSComputedStyleDeclaration> static Ref<T> newWithStyle(const Ref<WQCSSStyle>& style) {
        return wq::make<T>(&T::initWithStyle, style);
    }
    virtual bool initWithStyle(const Ref<WQCSSStyle>& style);

    template <class T> using Nil = NilComputedStyleDeclaration<T>;
};

template <class T> class NilComputedStyleDeclaration : public NilStyleDeclaration<T> {
public:
    bool initWithStyle(const Ref<WQCSSStyle>&) override { return false; }
};
