#include "mac/Frameworks/WQCSS/WQCSSStyle.h"

#include "common/core/osx/StyleImpl.h"
#include "platform/Assertion.h"
#include "platform/Log.h"
#include "platform/NSFontManager.h"

namespace {

double componentOf(uint32_t word, int shift) { return (word >> shift & 0xFF) / 255.0; }

}  // namespace

bool WQCSSStyle::initWithCSSStyle(CSS::Style* style) {
    my.style = style;
    return true;
}

_WQCSSLength WQCSSStyle::lengthForValue_units(float value, WQCSSLengthUnits units) {
    return CSS::Style::ConvertValueToLength(value, units);
}

void WQCSSStyle::inheritPropertiesFromStyle(const Ref<WQCSSStyle>& parent) {
    if (my.style && parent->cssStyle()) my.style->InheritPropertiesFrom(parent->cssStyle());
}

// ---- Fields

Ref<NSColor> WQCSSStyle::color() const {
    if (!my.style) return nullptr;
    const uint32_t word = my.style->GetColor().rgbaValue;
    return NSColor::colorWithDeviceRed_green_blue_alpha(
        componentOf(word, 16), componentOf(word, 8), componentOf(word, 0), componentOf(word, 24));
}

void WQCSSStyle::setColor(const Ref<NSColor>& color) {
    if (!my.style) return;
    double red = 0, green = 0, blue = 0, alpha = 0;
    color->getRed_green_blue_alpha(&red, &green, &blue, &alpha);
    my.style->SetColor(
        CSS::CSSColor(static_cast<float>(red), static_cast<float>(green), static_cast<float>(blue), static_cast<float>(alpha)));
}

NSString WQCSSStyle::fontFamily() const { return my.style ? wq::fromUTF8(my.style->GetFontFamily()) : nullptr; }

void WQCSSStyle::setFontFamily(const NSString& family) {
    if (my.style) my.style->SetFontFamily(wq::toUTF8(family));
}

// "inimplemented" is how the line has always read, and what is looked for.
void WQCSSStyle::setPosition(uint32_t) { logUnimplemented(u"setPosition:", u"inimplemented"); }
void WQCSSStyle::setHeight(_WQCSSLength) { logUnimplemented(u"setHeight:", u"unimplemented"); }
void WQCSSStyle::setMaxHeight(_WQCSSLength) { logUnimplemented(u"setMaxHeight:", u"unimplemented"); }
void WQCSSStyle::setMinHeight(_WQCSSLength) { logUnimplemented(u"setMinHeight:", u"unimplemented"); }
void WQCSSStyle::setMaxWidth(_WQCSSLength) { logUnimplemented(u"setMaxWidth:", u"unimplemented"); }
void WQCSSStyle::setMinWidth(_WQCSSLength) { logUnimplemented(u"setMinWidth:", u"unimplemented"); }

void WQCSSStyle::logUnimplemented(const char16_t* operation, const char16_t* word) const {
    if (my.style) wq::log(description() + u" " + operation + u" is " + word);
}

// ---- The text system

Ref<NSDictionary> WQCSSStyle::attributes() const {
    auto* style = dynamic_cast<CSS::StyleImpl*>(my.style.Get());
    return style ? style->GetAttributes() : nullptr;
}

NSString WQCSSStyle::description() const {
    const NSString base = Object::description();
    return my.style ? base + u" - " + wq::printed(attributes()->description()) : base;
}

Ref<NSFont> WQCSSStyle::font() const {
    if (!my.style) return nullptr;
    const unsigned long traits = CSS::fontTraitsOf(fontWeight(), fontStyle());
    const auto manager = NSFontManager::sharedFontManager();
    const auto exact = manager->fontWithFamily_traits_weight_size(fontFamily(), traits, CSS::regularFontWeight, fontSize());
    return exact ? exact : bestMatchForFont_traits_weight_size(fontFamily(), traits, CSS::regularFontWeight, fontSize());
}

Ref<NSFont> WQCSSStyle::bestMatchForFont_traits_weight_size(const NSString& family, unsigned long traits, int weight, float size) const {
    if (!my.style) return nullptr;
    const NSString found = CSS::availableFamily(family);
    if (!found) return NSFont::userFontOfSize(size);
    return NSFontManager::sharedFontManager()->fontWithFamily_traits_weight_size(found, traits, weight, size);
}

// ---- Text blocks

unsigned WQCSSStyle::typeForLength(_WQCSSLength length) const {
    if (!my.style) return 0;
    switch (length.type) {
        case WQCSSLengthTypeAbsolute:
        case WQCSSLengthTypeAuto: return NSTextBlockAbsoluteValueType;
        case WQCSSLengthTypePercentage: return NSTextBlockPercentageValueType;
        default: wq::fail({__func__, this, "mac/Frameworks/WQCSS/WQCSSStyle", __LINE__, u"Unsupported length type"}); return 0;
    }
}

void WQCSSStyle::setWidthForBlock_top_left_bottom_right_layer(
    const Ref<NSTextBlock>& block,
    _WQCSSLength top,
    _WQCSSLength left,
    _WQCSSLength bottom,
    _WQCSSLength right,
    long layer) const {
    if (!my.style) return;
    block->setWidth_type_forLayer_edge(top.value, typeForLength(top), layer, NSMinYEdge);
    block->setWidth_type_forLayer_edge(left.value, typeForLength(left), layer, NSMinXEdge);
    block->setWidth_type_forLayer_edge(bottom.value, typeForLength(bottom), layer, NSMaxYEdge);
    block->setWidth_type_forLayer_edge(right.value, typeForLength(right), layer, NSMaxXEdge);
}

void WQCSSStyle::setBorderForBlock_top_left_bottom_right(
    const Ref<NSTextBlock>& block,
    _WQCSSBorder top,
    _WQCSSBorder left,
    _WQCSSBorder bottom,
    _WQCSSBorder right) const {
    if (!my.style) return;
    block->setWidth_type_forLayer_edge(top.width, NSTextBlockAbsoluteValueType, NSTextBlockBorder, NSMinYEdge);
    block->setWidth_type_forLayer_edge(left.width, NSTextBlockAbsoluteValueType, NSTextBlockBorder, NSMinXEdge);
    block->setWidth_type_forLayer_edge(bottom.width, NSTextBlockAbsoluteValueType, NSTextBlockBorder, NSMaxYEdge);
    block->setWidth_type_forLayer_edge(right.width, NSTextBlockAbsoluteValueType, NSTextBlockBorder, NSMaxXEdge);
}

void WQCSSStyle::applyToTextBlock(const Ref<NSTextBlock>& block) const {
    setWidthForBlock_top_left_bottom_right_layer(block, paddingTop(), paddingLeft(), paddingBottom(), paddingRight(), NSTextBlockPadding);
    setBorderForBlock_top_left_bottom_right(block, borderTop(), borderLeft(), borderBottom(), borderRight());
    setWidthForBlock_top_left_bottom_right_layer(block, marginTop(), marginLeft(), marginBottom(), marginRight(), NSTextBlockMargin);
}
