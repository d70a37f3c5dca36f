#include "mac/Frameworks/WQCSS/WQCSSComputedStyleDeclaration.h"

bool WQCSSComputedStyleDeclaration::initWithStyle(const Ref<WQCSSStyle>& style) {
    return style->cssStyle() && initWithCSSStyleDeclaration(new CSS::ComputedStyleDeclaration(style->cssStyle()));
}
