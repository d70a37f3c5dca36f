#include "mac/Frameworks/WQCSS/WQCSSMutableStyleDeclaration.h"

#include <fmt/format.h>

#include <algorithm>

#include "platform/NSAttributeNames.h"
#include "platform/NSColor.h"
#include "platform/NSFont.h"
#include "platform/NSParagraphStyle.h"

namespace {

// With six decimals, whatever the process's locale, and no more than single precision.
NSString numberText(double number, const char* unit) {
    return wq::fromUTF8(fmt::format("{:f}{}", static_cast<double>(static_cast<float>(number)), unit));
}

NSString pixels(double points) { return numberText(points, "px"); }

const char16_t* textOfAlignment(long alignment) {
    switch (alignment) {
        case NSTextAlignmentRight: return u"right";
        case NSTextAlignmentCenter: return u"center";
        case NSTextAlignmentJustified: return u"justify";
        default: return u"left";
    }
}

NSString quotedIfNeeded(const NSString& family) {
    return family.view().find(u' ') == std::u16string_view::npos ? family : u"'" + family + u"'";
}

int byteOf(double component) { return std::min(static_cast<int>(component * 255.0), 255); }

NSString hashOf(const Ref<NSColor>& color) {
    const auto rgb = color->colorUsingType(NSColorTypeComponentBased)->colorUsingColorSpace(NSColorSpace::genericRGBColorSpace());
    return wq::fromUTF8(
        fmt::format("#{:02x}{:02x}{:02x}", byteOf(rgb->redComponent()), byteOf(rgb->greenComponent()), byteOf(rgb->blueComponent())));
}

}  // namespace

bool WQCSSMutableStyleDeclaration::init() { return initWithCSSStyleDeclaration(new CSS::MutableStyleDeclaration); }

CSS::MutableStyleDeclaration* WQCSSMutableStyleDeclaration::mutableDeclaration() const {
    return dynamic_cast<CSS::MutableStyleDeclaration*>(cssStyleDeclaration());
}

void WQCSSMutableStyleDeclaration::setCssText(const NSString& text) {
    if (mutableDeclaration()) mutableDeclaration()->setCssText(wq::toUTF8(text));
}

void WQCSSMutableStyleDeclaration::setProperty_value(const NSString& name, const NSString& value) {
    setProperty_value_priority(name, value, u"");
}

void WQCSSMutableStyleDeclaration::setProperty_value_priority(const NSString& name, const NSString& value, const NSString& priority) {
    if (mutableDeclaration()) mutableDeclaration()->setProperty(wq::toUTF8(name), wq::toUTF8(value), wq::toUTF8(priority));
}

void WQCSSMutableStyleDeclaration::setProperty_cssValue(const NSString& name, const Ref<WQCSSValue>& value) {
    if (mutableDeclaration()) mutableDeclaration()->setProperty(wq::toUTF8(name), value->cssValue(), "");
}

NSString WQCSSMutableStyleDeclaration::removeProperty(const NSString& name) {
    return mutableDeclaration() ? wq::fromUTF8(mutableDeclaration()->removeProperty(wq::toUTF8(name))) : nullptr;
}

void WQCSSMutableStyleDeclaration::setPropertiesFromAttributes(const Ref<NSDictionary>& attributes) {
    const auto paragraph = attributes->objectForKey(NSParagraphStyleAttributeName).object<NSParagraphStyle>();
    setProperty_value(u"margin-left", pixels(paragraph->headIndent()));
    setProperty_value(u"margin-top", pixels(paragraph->paragraphSpacingBefore()));
    setProperty_value(u"margin-bottom", pixels(paragraph->paragraphSpacing()));
    setProperty_value(u"text-indent", pixels(paragraph->firstLineHeadIndent() - paragraph->headIndent()));
    setProperty_value(u"line-height", numberText(paragraph->lineHeightMultiple(), ""));
    setProperty_value(u"text-align", textOfAlignment(paragraph->alignment()));

    const auto font = attributes->objectForKey(NSFontAttributeName).object<NSFont>();
    const auto descriptor = font->fontDescriptor();
    const uint32_t traits = descriptor->symbolicTraits();
    setProperty_value(u"font-family", font ? quotedIfNeeded(font->familyName()) : u"Helvetica");
    setProperty_value(u"font-size", font ? pixels(descriptor->pointSize()) : u"12px");
    setProperty_value(u"font-weight", traits & NSFontBoldTrait ? u"bold" : u"normal");
    setProperty_value(u"font-style", traits & NSFontItalicTrait ? u"italic" : u"normal");

    const bool isUnderlined = static_cast<bool>(attributes->objectForKey(NSUnderlineStyleAttributeName));
    setProperty_value(u"text-decoration", isUnderlined ? u"underline" : u"none");

    const auto color = attributes->objectForKey(NSForegroundColorAttributeName).object<NSColor>();
    if (color) setProperty_value(u"color", hashOf(color));
}
