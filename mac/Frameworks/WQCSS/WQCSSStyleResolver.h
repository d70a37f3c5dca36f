// The cascade, for the application: sheets in, the style of a node out.
#pragma once

#include "common/core/css/StyleResolver.h"
#include "dom/WQXMLNode.h"
#include "mac/Frameworks/WQCSS/WQCSSStyle.h"
#include "mac/Frameworks/WQCSS/WQCSSStyleSheet.h"

template <class T> class NilStyleResolver;

// Around no resolver, as on null, every query answers null, and nothing is taken in.
class WQCSSStyleResolver : public wq::Object {
public:
    // Without rules; processRulesFromStyleSheet brings them.
    template <class T = WQCSSStyleResolver> static Ref<T> newStyleResolver() { return wq::make<T>(&T::init); }
    virtual bool init();  // around a new one, without rules

    // Around a resolver of the engine, which is shared.
    template <class T = WQCSSStyleResolver> static Ref<T> newWithCSSStyleResolver(CSS::StyleResolver* resolver) {
        return wq::make<T>(&T::initWithCSSStyleResolver, resolver);
    }
    virtual bool initWithCSSStyleResolver(CSS::StyleResolver* resolver);

    // The engine's, which this object keeps; null around none.
    CSS::StyleResolver* cssStyleResolver() const { return my.styleResolver.Get(); }

    // A new style each time: default fields, and the user's text font.
    Ref<WQCSSStyle> defaultStyle() const;

    // The style of an element or a text, a new one each time. A null parent is the default style. Any other node, a
    // dead one and null are a hard assertion of the engine.
    Ref<WQCSSStyle> resolveStyle_parentStyle(const Ref<WQXMLNode>& node, const Ref<WQCSSStyle>& parent) const;

    // Takes in the style rules of a sheet. Null: nothing.
    void processRulesFromStyleSheet(const Ref<WQCSSStyleSheet>& sheet);

    template <class T> using Nil = NilStyleResolver<T>;

private:
    struct {
        SharedPtr<CSS::StyleResolver> styleResolver;
    } my;
};

template <class T> class NilStyleResolver : public T {
public:
    bool init() override { return false; }
    bool initWithCSSStyleResolver(CSS::StyleResolver*) override { return false; }
};
