#include "common/core/osx/StyleImpl.h"

#include "platform/NSAttributeNames.h"
#include "platform/NSColor.h"
#include "platform/NSFontManager.h"
#include "platform/NSMutableParagraphStyle.h"

namespace CSS {

namespace {

// Percentages count for nothing.
double pointsOf(_WQCSSLength length) {
    switch (length.type) {
        case WQCSSLengthTypeAbsolute:
        case 2: return length.value;
        case WQCSSLengthTypePercentage: return length.value * 0.0 / 100.0;
        case WQCSSLengthTypeAuto: return 0;
        default: return -1;
    }
}

bool isSpacing(_WQCSSLength length) { return length.type != WQCSSLengthTypePercentage && length.value != 0; }

Ref<NSParagraphStyle> paragraphStyleOf(const Style& style) {
    const auto paragraph = NSParagraphStyle::defaultParagraphStyle()->mutableCopy();
    if (isSpacing(style.GetMarginTop())) paragraph->setParagraphSpacingBefore(pointsOf(style.GetMarginTop()));
    if (isSpacing(style.GetMarginBottom())) paragraph->setParagraphSpacing(pointsOf(style.GetMarginBottom()));
    paragraph->setFirstLineHeadIndent(pointsOf(style.GetTextIndent()));
    paragraph->setTabStops({});
    const float lineHeight = style.GetLineHeight() * style.GetFontSize();
    paragraph->setMinimumLineHeight(lineHeight);
    paragraph->setMaximumLineHeight(lineHeight);
    paragraph->setAlignment(static_cast<long>(style.GetTextAlign()));
    return paragraph;
}

// A component, rounded to single precision on the way.
double componentOf(uint32_t word, int shift) { return static_cast<float>((word >> shift & 0xFF) / 255.0); }

Ref<NSColor> opaqueColorOf(CSSColor color) {
    return NSColor::colorWithCalibratedRed_green_blue_alpha(
        componentOf(color.rgbaValue, 16), componentOf(color.rgbaValue, 8), componentOf(color.rgbaValue, 0), 1);
}

}  // namespace

unsigned long fontTraitsOf(WQCSSFontWeight weight, WQCSSFontStyle style) {
    unsigned long traits = 0;
    if (weight == WQCSSFontWeightNormal) traits = NSUnboldFontMask;
    if (weight == WQCSSFontWeightBold) traits = NSBoldFontMask;
    if (style == WQCSSFontStyleItalic) traits |= NSItalicFontMask;
    if (style == WQCSSFontStyleNormal) traits |= NSUnitalicFontMask;
    return traits;
}

NSString availableFamily(const NSString& family) {
    const NSString wanted = family.lowercaseString();
    for (const NSString& each : NSFontManager::sharedFontManager()->availableFontFamilies())
        if (each.lowercaseString() == wanted) return each;
    return nullptr;
}

// ---- FontImpl

FontImpl::FontImpl() { family = wq::toUTF8(NSFont::userFontOfSize(size)->familyName()); }

Font* FontImpl::Clone() const { return new FontImpl(*this); }

void FontImpl::SetWeight(WQCSSFontWeight newWeight) {
    Font::SetWeight(newWeight);
    cachedFont = nullptr;
}

void FontImpl::SetSize(float newSize) {
    Font::SetSize(newSize);
    cachedFont = nullptr;
}

void FontImpl::SetStyle(WQCSSFontStyle newStyle) {
    Font::SetStyle(newStyle);
    cachedFont = nullptr;
}

void FontImpl::SetFamily(const std::string& newFamily) {
    Font::SetFamily(newFamily);
    cachedFont = nullptr;
}

Ref<NSFont> FontImpl::GetFont() {
    if (cachedFont) return cachedFont;
    const NSString name = wq::fromUTF8(Family());
    const unsigned long traits = fontTraitsOf(Weight(), Style());
    cachedFont = NSFontManager::sharedFontManager()->fontWithFamily_traits_weight_size(name, traits, regularFontWeight, Size());
    if (!cachedFont) cachedFont = BestMatchForFont(name, traits, regularFontWeight, Size());
    return cachedFont;
}

Ref<NSFont> FontImpl::BestMatchForFont(const NSString& aFamily, unsigned long traits, int aWeight, float aSize) const {
    const NSString found = availableFamily(aFamily);
    return found ? NSFontManager::sharedFontManager()->fontWithFamily_traits_weight_size(found, traits, aWeight, aSize) : nullptr;
}

// ---- StyleImpl

void StyleImpl::InheritPropertiesFrom(Style* aParent) {
    Style::InheritPropertiesFrom(aParent);
    parent = aParent;
}

Ref<NSDictionary> StyleImpl::GetAttributes() {
    if (attributes) return attributes;
    const auto paragraph = paragraphStyleOf(*this);
    const auto color = opaqueColorOf(GetColor());
    const Ref<NSFont> platformFont = font ? static_cast<FontImpl*>(font.Get())->GetFont() : nullptr;
    attributes = NSDictionary::dictionary({{NSParagraphStyleAttributeName, paragraph}, {NSForegroundColorAttributeName, color}});
    if (platformFont) attributes->setObject_forKey(platformFont, NSFontAttributeName);
    WQ_HARD_ASSERT("common/core/osx/StyleImpl", "GetAttributes", attributes);
    return attributes;
}

}  // namespace CSS

CSS::Font* CreateCSSFont() { return new CSS::FontImpl; }

CSS::Style* CreateStyle() { return new CSS::StyleImpl; }
