#include "mac/Frameworks/WQCSS/WQCSSStyleResolver.h"

bool WQCSSStyleResolver::init() { return initWithCSSStyleResolver(new CSS::StyleResolver); }

bool WQCSSStyleResolver::initWithCSSStyleResolver(CSS::StyleResolver* resolver) {
    my.styleResolver = resolver;
    return true;
}

Ref<WQCSSStyle> WQCSSStyleResolver::defaultStyle() const {
    return my.styleResolver ? WQCSSStyle::newWithCSSStyle(my.styleResolver->DefaultStyle().Get()) : nullptr;
}

Ref<WQCSSStyle> WQCSSStyleResolver::resolveStyle_parentStyle(const Ref<WQXMLNode>& node, const Ref<WQCSSStyle>& parent) const {
    if (!my.styleResolver) return nullptr;
    return WQCSSStyle::newWithCSSStyle(my.styleResolver->ResolveStyle(node->xmlNode(), parent->cssStyle()).Get());
}

void WQCSSStyleResolver::processRulesFromStyleSheet(const Ref<WQCSSStyleSheet>& sheet) {
    if (my.styleResolver) my.styleResolver->ProcessRules(sheet->cssStyleSheet());
}
