// "font" and "margin", which break into other properties.
//
// The parts are never important, even where the shorthand is.
#pragma once

#include "common/core/css/LonghandProperties.h"

namespace CSS {

// [style, variant and weight in any order] size[/line-height] family, ...
//
// Each of the first three takes the first term that it can, in this order: the first "normal" is a style, the second
// a variant. The name of a system font or "inherit" as the first term is refused; "inherit" further on is a variant.
// Parts that an earlier validation has found stay.
class PropFont : public ShorthandProperty {
public:
    PropFont() : ShorthandProperty(PropertyFont) {}
    void applyToStyle(Style* style) override;      // the parts that are set; the line height only with a size
    Value* valueFromStyle(Style* style) override;  // a hard assertion; without hard assertions, null
    using Property::validate;
    bool validate(AST* root) override;  // what was found before a failure stays in the fields
    std::string cssText() override;     // "font:italic 12pt/1.5 Times, serif; "; importance is not written
    std::vector<SharedPtr<Property>> propertyList() override;

    // The parts; null where no value had one.
    SharedPtr<PropFontStyle> fontStyle;
    SharedPtr<PropFontVariant> fontVariant;
    SharedPtr<PropFontWeight> fontWeight;
    SharedPtr<PropFontSize> fontSize;
    SharedPtr<PropLineHeight> lineHeight;
    SharedPtr<PropFontFamily> fontFamily;
    bool valid = false;  // whether the last validation came to its end

private:
    AST* takeStyleVariantAndWeight(AST* term);
};

// One to four values, for the sides as in CSS. Sides of one value share it.
class PropMargin : public ShorthandProperty {
public:
    PropMargin() : ShorthandProperty(PropertyMargin) {}
    void applyToStyle(Style* style) override;  // only of an object that was validated
    Value* valueFromStyle(Style* style) override;
    using Property::validate;
    bool validate(AST* root) override;
    std::vector<SharedPtr<Property>> propertyList() override;  // top, left, bottom, right

    // The sides: null until a value was valid, then none of them is.
    SharedPtr<PropMarginTop> marginTop;
    SharedPtr<PropMarginLeft> marginLeft;
    SharedPtr<PropMarginBottom> marginBottom;
    SharedPtr<PropMarginRight> marginRight;
};

}  // namespace CSS
