#include "common/core/osx/StyleImpl.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <vector>

#include "platform/NSAttributeNames.h"
#include "platform/NSColor.h"
#include "platform/NSMutableParagraphStyle.h"

using CSS::CSSColor;
using CSS::FontImpl;
using CSS::StyleImpl;

namespace {

SharedPtr<StyleImpl> newStyle() {
    SharedPtr<StyleImpl> style(new StyleImpl);
    style->SetFont(SharedPtr<CSS::Font>(CreateCSSFont()));
    return style;
}

SharedPtr<StyleImpl> styleWith(auto&& change) {
    const auto style = newStyle();
    change(*style);
    return style;
}

Ref<NSParagraphStyle> paragraphStyle(const SharedPtr<StyleImpl>& style) {
    return style->GetAttributes()->objectForKey(NSParagraphStyleAttributeName).object<NSParagraphStyle>();
}
Ref<NSFont> font(const SharedPtr<StyleImpl>& style) { return style->GetAttributes()->objectForKey(NSFontAttributeName).object<NSFont>(); }
Ref<NSColor> color(const SharedPtr<StyleImpl>& style) {
    return style->GetAttributes()->objectForKey(NSForegroundColorAttributeName).object<NSColor>();
}

// What the length becomes in the paragraph style, by each of the three setters that take one.
double spacingBefore(_WQCSSLength length) {
    return paragraphStyle(styleWith([&](StyleImpl& style) { style.SetMarginTop(length); }))->paragraphSpacingBefore();
}
double spacingBehind(_WQCSSLength length) {
    return paragraphStyle(styleWith([&](StyleImpl& style) { style.SetMarginBottom(length); }))->paragraphSpacing();
}
double indent(_WQCSSLength length) {
    return paragraphStyle(styleWith([&](StyleImpl& style) { style.SetTextIndent(length); }))->firstLineHeadIndent();
}

}  // namespace

// ---- Making and inheriting

TEST(StyleImpl, TheFactoryMakesANewStyleWithACountOfZeroAndWithoutAFont) {
    const std::unique_ptr<CSS::Style> first(CreateStyle()), second(CreateStyle());
    EXPECT_EQ(first->refCount, 0);
    EXPECT_NE(first, second);
    EXPECT_NE(dynamic_cast<StyleImpl*>(first.get()), nullptr);
    EXPECT_EQ(first->font.Get(), nullptr);
}

TEST(StyleImpl, InheritsAsAnyStyle) {
    const auto parent = styleWith([](StyleImpl& style) {
        style.SetColor(CSSColor(0x102030));
        style.SetTextAlign(WQCSSTextAlignJustify);
        style.SetLineHeight(2);
        style.SetTextIndent({3, WQCSSLengthTypeAbsolute});
        style.SetListStyleType(WQCSSListStyleTypeOctal);
        style.SetDisplay(WQCSSDisplayNone);
        style.SetMarginTop({5, WQCSSLengthTypeAbsolute});
    });
    const SharedPtr<StyleImpl> child(new StyleImpl);
    child->InheritPropertiesFrom(parent.Get());
    EXPECT_EQ(child->GetColor(), CSSColor(0x102030));
    EXPECT_EQ(child->GetTextAlign(), WQCSSTextAlignJustify);
    EXPECT_EQ(child->GetLineHeight(), 2);
    EXPECT_EQ(child->GetTextIndent(), (_WQCSSLength{3, WQCSSLengthTypeAbsolute}));
    EXPECT_EQ(child->GetListStyleType(), WQCSSListStyleTypeOctal);
    EXPECT_EQ(child->font.Get(), parent->font.Get());
    EXPECT_EQ(child->GetDisplay(), WQCSSDisplayInline);
    EXPECT_EQ(child->GetMarginTop(), _WQCSSLength());
}

TEST(StyleImpl, KeepsNoCountOfItsParentAndOutlivesIt) {
    auto parent = styleWith([](StyleImpl& style) { style.SetFontSize(9); });
    const SharedPtr<StyleImpl> child(new StyleImpl);
    child->InheritPropertiesFrom(parent.Get());
    EXPECT_EQ(parent->refCount, 1);
    parent = nullptr;
    EXPECT_EQ(font(child)->pointSize(), 9.0);
    EXPECT_EQ(paragraphStyle(child)->minimumLineHeight(), 9.0);
}

TEST(StyleImpl, InheritsFromItselfWithoutHarm) {
    const auto style = styleWith([](StyleImpl& each) { each.SetFontSize(9); });
    style->InheritPropertiesFrom(style.Get());
    EXPECT_EQ(style->refCount, 1);
    EXPECT_EQ(font(style)->pointSize(), 9.0);
}

TEST(StyleImpl, InheritsNoAttributes) {
    const auto parent = newStyle();
    const auto attributes = parent->GetAttributes();
    const SharedPtr<StyleImpl> child(new StyleImpl);
    child->InheritPropertiesFrom(parent.Get());
    EXPECT_NE(child->GetAttributes(), attributes);
    EXPECT_EQ(font(child), font(parent));
}

// ---- The attributes

TEST(StyleImpl, HasThreeAttributes) {
    const auto style = newStyle();
    EXPECT_EQ(style->GetAttributes()->count(), 3u);
    EXPECT_TRUE(paragraphStyle(style));
    EXPECT_EQ(font(style), static_cast<FontImpl*>(style->font.Get())->GetFont());
    EXPECT_EQ(font(style)->description(), u"TeX Gyre Pagella 12");
    EXPECT_TRUE(color(style));
}

TEST(StyleImpl, WithAnUnknownFamilyHasTwoAttributes) {
    const auto style = styleWith([](StyleImpl& each) { each.SetFontFamily("Nonesuch"); });
    EXPECT_EQ(style->GetAttributes()->count(), 2u);
    EXPECT_FALSE(style->GetAttributes()->containsKey(NSFontAttributeName));
    EXPECT_TRUE(paragraphStyle(style));
    EXPECT_TRUE(color(style));
}

#ifdef WQ_NO_HARD_ASSERTIONS
TEST(StyleImpl, AStyleThatWasGivenNoFontHasTwoAttributes) {
    const SharedPtr<StyleImpl> style(new StyleImpl);
    EXPECT_EQ(style->GetAttributes()->count(), 2u);
    EXPECT_EQ(paragraphStyle(style)->minimumLineHeight(), 0.0);
}
#endif

TEST(StyleImpl, TheFontIsTheFaceOfTheStyle) {
    const auto style = styleWith([](StyleImpl& each) {
        each.SetFontFamily("tex gyre termes");
        each.SetFontWeight(WQCSSFontWeightBold);
        each.SetFontStyle(WQCSSFontStyleItalic);
        each.SetFontSize(10.5f);
    });
    EXPECT_EQ(font(style)->description(), u"TeX Gyre Termes 10.5 bold italic");
}

TEST(StyleImpl, ADefaultStyleIsSetInLinesAsHighAsItsFont) {
    const auto paragraph = paragraphStyle(newStyle());
    EXPECT_EQ(paragraph->paragraphSpacingBefore(), 0.0);
    EXPECT_EQ(paragraph->paragraphSpacing(), 0.0);
    EXPECT_EQ(paragraph->firstLineHeadIndent(), 0.0);
    EXPECT_EQ(paragraph->headIndent(), 0.0);
    EXPECT_EQ(paragraph->tailIndent(), 0.0);
    EXPECT_EQ(paragraph->minimumLineHeight(), 12.0);
    EXPECT_EQ(paragraph->maximumLineHeight(), 12.0);
    EXPECT_EQ(paragraph->lineHeightMultiple(), 0.0);
    EXPECT_EQ(paragraph->alignment(), NSTextAlignmentLeft);
    EXPECT_TRUE(paragraph->tabStops().empty());
    EXPECT_TRUE(paragraph->textBlocks().empty());
}

TEST(StyleImpl, TheDefaultParagraphStyleStaysAsItWas) {
    (void)paragraphStyle(styleWith([](StyleImpl& style) {
        style.SetMarginTop({5, WQCSSLengthTypeAbsolute});
        style.SetTextAlign(WQCSSTextAlignCenter);
    }));
    const auto untouched = NSParagraphStyle::defaultParagraphStyle();
    EXPECT_EQ(untouched->tabStops().size(), 12u);
    EXPECT_EQ(untouched->alignment(), NSTextAlignmentNatural);
    EXPECT_EQ(untouched->paragraphSpacingBefore(), 0.0);
    EXPECT_EQ(untouched->minimumLineHeight(), 0.0);
}

TEST(StyleImpl, MarginsAboveAndBelowBecomeSpacing) {
    const struct {
        _WQCSSLength length;
        double points;
    } rows[] = {
        {{5, 1}, 5},
        {{-5, 1}, -5},
        {{0.1f, 1}, 0.10000000149011612},
        {{5, 2}, 5},
        {{0, 1}, 0},
        {{-0.0f, 1}, 0},
        {{50, 3}, 0},
        {{0, 3}, 0},
        {{7, 4}, 0},
        {{0, 4}, 0},
        {{7, 0}, -1},
        {{0, 0}, 0},  // 0 is passed over
        {{7, 5}, -1},
        {{0, 5}, 0},
        {{7, -1}, -1},
        {{7, std::numeric_limits<int32_t>::max()}, -1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.length.value << " of type " << row.length.type);
        EXPECT_EQ(spacingBefore(row.length), row.points);
        EXPECT_EQ(spacingBehind(row.length), row.points);
    }
}

TEST(StyleImpl, MarginsThatAreNoNumbersAreSet) {
    const float nan = std::numeric_limits<float>::quiet_NaN(), infinity = std::numeric_limits<float>::infinity();
    EXPECT_TRUE(std::isnan(spacingBefore({nan, 1})));
    EXPECT_TRUE(std::isnan(spacingBehind({nan, 2})));
    EXPECT_EQ(spacingBefore({infinity, 1}), std::numeric_limits<double>::infinity());
    EXPECT_EQ(spacingBefore({nan, 4}), 0.0);
    EXPECT_EQ(spacingBefore({nan, 3}), 0.0);  // passed over
}

TEST(StyleImpl, EachMarginIsItsOwn) {
    const auto paragraph = paragraphStyle(styleWith([](StyleImpl& style) {
        style.SetMarginTop({5, 1});
        style.SetMarginBottom({7, 1});
        style.SetTextIndent({-9, 1});
    }));
    EXPECT_EQ(paragraph->paragraphSpacingBefore(), 5.0);
    EXPECT_EQ(paragraph->paragraphSpacing(), 7.0);
    EXPECT_EQ(paragraph->firstLineHeadIndent(), -9.0);
    EXPECT_EQ(paragraph->headIndent(), 0.0);
}

TEST(StyleImpl, TheIndentIsAlwaysSet) {
    const struct {
        _WQCSSLength length;
        double points;
    } rows[] = {
        {{5, 1}, 5},   {{-5, 1}, -5}, {{0.1f, 1}, 0.10000000149011612},
        {{5, 2}, 5},   {{0, 1}, 0},   {{50, 3}, 0},
        {{-50, 3}, 0}, {{7, 4}, 0},   {{7, 0}, -1},
        {{0, 0}, -1},  {{0, 5}, -1},  {{7, -1}, -1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.length.value << " of type " << row.length.type);
        EXPECT_EQ(indent(row.length), row.points);
    }
    EXPECT_TRUE(std::isnan(indent({std::numeric_limits<float>::infinity(), 3})));
}

TEST(StyleImpl, TheLineHeightIsExactAndMultipliedInSinglePrecision) {
    const struct {
        float multiple, size;
        double points;
    } rows[] = {{1, 12, 12}, {1.5f, 10, 15}, {1.1f, 10.1f, 11.110000610351562}, {0, 12, 0}, {-1, 12, -12}, {1, 0, 0}};
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.multiple << " times " << row.size);
        const auto paragraph = paragraphStyle(styleWith([&](StyleImpl& style) {
            style.SetLineHeight(row.multiple);
            style.SetFontSize(row.size);
        }));
        EXPECT_EQ(paragraph->minimumLineHeight(), row.points);
        EXPECT_EQ(paragraph->maximumLineHeight(), row.points);
    }
}

TEST(StyleImpl, AlignmentsAreThePlatforms) {
    const struct {
        WQCSSTextAlign align;
        long alignment;
    } rows[] = {{WQCSSTextAlignLeft, 0}, {WQCSSTextAlignRight, 1}, {WQCSSTextAlignCenter, 2}, {WQCSSTextAlignJustify, 3}};
    for (const auto& row : rows)
        EXPECT_EQ(paragraphStyle(styleWith([&](StyleImpl& style) { style.SetTextAlign(row.align); }))->alignment(), row.alignment);
}

TEST(StyleImpl, ColorsAreRoundedToSinglePrecision) {
    const auto made = color(styleWith([](StyleImpl& style) { style.SetColor(CSSColor(0x3366FF)); }));
    EXPECT_EQ(made->redComponent(), 0.20000000298023224);
    EXPECT_EQ(made->greenComponent(), 0.4000000059604645);
    EXPECT_EQ(made->blueComponent(), 1.0);
    EXPECT_EQ(made->alphaComponent(), 1.0);
    EXPECT_EQ(made->colorSpace(), NSColorSpace::genericRGBColorSpace());
}

TEST(StyleImpl, EachComponentIsItsOwn) {
    const struct {
        int rgb;
        double red, green, blue;
    } rows[] = {{0xFF0000, 1, 0, 0}, {0x00FF00, 0, 1, 0}, {0x0000FF, 0, 0, 1}, {0, 0, 0, 0}};
    for (const auto& row : rows) {
        const auto made = color(styleWith([&](StyleImpl& style) { style.SetColor(CSSColor(row.rgb)); }));
        EXPECT_EQ(made->redComponent(), row.red);
        EXPECT_EQ(made->greenComponent(), row.green);
        EXPECT_EQ(made->blueComponent(), row.blue);
    }
}

TEST(StyleImpl, TheAlphaOfAColorIsIgnored) {
    for (const uint32_t word : {0x80FF0000u, 0x00FF0000u, 0xFFFF0000u}) {
        CSSColor translucent;
        translucent.rgbaValue = word;
        const auto made = color(styleWith([&](StyleImpl& style) { style.SetColor(translucent); }));
        EXPECT_EQ(made->alphaComponent(), 1.0);
        EXPECT_EQ(made->redComponent(), 1.0);
        EXPECT_EQ(made->greenComponent(), 0.0);
    }
}

TEST(StyleImpl, NothingElseReachesTheAttributes) {
    const auto style = styleWith([](StyleImpl& each) {
        const _WQCSSLength length{7, WQCSSLengthTypeAbsolute};
        const _WQCSSBorder border{3, 0};
        each.SetTextDecoration(WQCSSTextDecorationUnderline);
        each.SetDisplay(WQCSSDisplayNone);
        each.SetVerticalAlign(WQCSSVerticalAlignTop);
        each.SetListStyleType(WQCSSListStyleTypeOctal);
        each.SetPageBreakAfter(WQCSSPageBreakAfterAlways);
        each.SetPageBreakBefore(WQCSSPageBreakBeforeAlways);
        each.SetWidth(length);
        each.SetMarginLeft(length);
        each.SetMarginRight(length);
        each.SetPaddingLeft(length);
        each.SetPaddingRight(length);
        each.SetPaddingTop(length);
        each.SetPaddingBottom(length);
        each.SetBorderLeft(border);
        each.SetBorderRight(border);
        each.SetBorderTop(border);
        each.SetBorderBottom(border);
    });
    const auto plain = newStyle();
    EXPECT_EQ(style->GetAttributes()->count(), 3u);
    EXPECT_FALSE(style->GetAttributes()->containsKey(NSUnderlineStyleAttributeName));
    EXPECT_TRUE(paragraphStyle(style)->isEqual(paragraphStyle(plain)));
    EXPECT_TRUE(color(style)->isEqual(color(plain)));
    EXPECT_EQ(font(style)->description(), u"TeX Gyre Pagella 12");
}

// ---- The cache

TEST(StyleImpl, MakesTheAttributesOnce) {
    const auto style = newStyle();
    const auto attributes = style->GetAttributes();
    EXPECT_EQ(style->GetAttributes(), attributes);
    EXPECT_EQ(attributes->referenceCount(), 2);
}

TEST(StyleImpl, WhatIsSetAfterwardsDoesNotShow) {
    const auto style = newStyle(), other = styleWith([](StyleImpl&each) { each.SetFontSize(20); });
    const auto attributes = style->GetAttributes();
    style->SetColor(CSSColor(0xFF0000));
    style->SetMarginTop({5, WQCSSLengthTypeAbsolute});
    style->SetTextAlign(WQCSSTextAlignCenter);
    style->SetFontFamily("Nonesuch");
    EXPECT_EQ(style->GetAttributes(), attributes);
    EXPECT_EQ(attributes->count(), 3u);
    EXPECT_EQ(color(style)->redComponent(), 0.0);
    EXPECT_EQ(paragraphStyle(style)->paragraphSpacingBefore(), 0.0);
    EXPECT_EQ(paragraphStyle(style)->alignment(), 0);
    EXPECT_EQ(font(style)->description(), u"TeX Gyre Pagella 12");
    style->SetFont(other->font);
    style->InheritPropertiesFrom(other.Get());
    EXPECT_EQ(style->GetAttributes(), attributes);
    EXPECT_EQ(paragraphStyle(style)->minimumLineHeight(), 12.0);
}

TEST(StyleImpl, LetsTheAttributesGoWithItself) {
    Ref<NSDictionary> attributes;
    {
        const auto style = newStyle();
        attributes = style->GetAttributes();
    }
    EXPECT_EQ(attributes->referenceCount(), 1);
    EXPECT_EQ(attributes->count(), 3u);
}

TEST(StyleImpl, StylesThatShareAFontShareThePlatformsFont) {
    const auto parent = newStyle();
    const SharedPtr<StyleImpl> child(new StyleImpl);
    child->InheritPropertiesFrom(parent.Get());
    const auto shared = font(parent);
    EXPECT_EQ(font(child), shared);
    EXPECT_NE(paragraphStyle(child), paragraphStyle(parent));
}

TEST(StyleImpl, AsksOverridesForItsFields) {
    struct Overridden : StyleImpl {
        _WQCSSLength GetMarginTop() const override { return {5, WQCSSLengthTypeAbsolute}; }
        CSSColor GetColor() const override { return CSSColor(0x00FF00); }
        float GetLineHeight() const override { return 2; }
    };
    const SharedPtr<StyleImpl> style(new Overridden);
    style->SetFont(SharedPtr<CSS::Font>(CreateCSSFont()));
    EXPECT_EQ(paragraphStyle(style)->paragraphSpacingBefore(), 5.0);
    EXPECT_EQ(paragraphStyle(style)->minimumLineHeight(), 24.0);
    EXPECT_EQ(color(style)->greenComponent(), 1.0);
}
