// The computed style of a node, for the application.
#pragma once

#include "common/core/css/Style.h"
#include "platform/NSColor.h"
#include "platform/NSDictionary.h"
#include "platform/NSFont.h"
#include "platform/NSTextBlock.h"

template <class T> class NilStyle;

// Around no style, as on null, every query but the description answers 0 or null, and every setter does nothing. There is no operation for
// the list style type: ask the engine's style.
class WQCSSStyle : public wq::Object {
public:
    // Around a style of the engine, which is shared: what is changed here is seen there.
    template <class T = WQCSSStyle> static Ref<T> newWithCSSStyle(CSS::Style* style) { return wq::make<T>(&T::initWithCSSStyle, style); }
    virtual bool initWithCSSStyle(CSS::Style* style);

    // The engine's, which this object keeps; null around none.
    CSS::Style* cssStyle() const { return my.style.Get(); }

    // In points; a number that is no unit counts as a pixel, which is a point.
    static _WQCSSLength lengthForValue_units(float value, WQCSSLengthUnits units);

    // Null: nothing.
    void inheritPropertiesFromStyle(const Ref<WQCSSStyle>& parent);

    // ---- Fields of the style, as CSS::Style has them; lengths and sizes in points

    // In the device's colour space, with its alpha. A null colour, or one whose components are 0, is transparent.
    // Components are cut to eight bits.
    Ref<NSColor> color() const;
    void setColor(const Ref<NSColor>& color);

    WQCSSDisplay display() const { return ask(&CSS::Style::GetDisplay); }
    void setDisplay(WQCSSDisplay display) { tell(&CSS::Style::SetDisplay, display); }
    uint32_t position() const { return ask(&CSS::Style::GetPosition); }  // always 0
    WQCSSFontStyle fontStyle() const { return ask(&CSS::Style::GetFontStyle); }
    void setFontStyle(WQCSSFontStyle style) { tell(&CSS::Style::SetFontStyle, style); }
    WQCSSFontWeight fontWeight() const { return ask(&CSS::Style::GetFontWeight); }
    void setFontWeight(WQCSSFontWeight weight) { tell(&CSS::Style::SetFontWeight, weight); }
    NSString fontFamily() const;
    void setFontFamily(const NSString& family);
    float fontSize() const { return ask(&CSS::Style::GetFontSize); }
    void setFontSize(float points) { tell(&CSS::Style::SetFontSize, points); }

    _WQCSSLength marginLeft() const { return ask(&CSS::Style::GetMarginLeft); }
    void setMarginLeft(_WQCSSLength length) { tell(&CSS::Style::SetMarginLeft, length); }
    _WQCSSLength marginRight() const { return ask(&CSS::Style::GetMarginRight); }
    void setMarginRight(_WQCSSLength length) { tell(&CSS::Style::SetMarginRight, length); }
    _WQCSSLength marginTop() const { return ask(&CSS::Style::GetMarginTop); }
    void setMarginTop(_WQCSSLength length) { tell(&CSS::Style::SetMarginTop, length); }
    _WQCSSLength marginBottom() const { return ask(&CSS::Style::GetMarginBottom); }
    void setMarginBottom(_WQCSSLength length) { tell(&CSS::Style::SetMarginBottom, length); }
    _WQCSSLength paddingLeft() const { return ask(&CSS::Style::GetPaddingLeft); }
    void setPaddingLeft(_WQCSSLength length) { tell(&CSS::Style::SetPaddingLeft, length); }
    _WQCSSLength paddingRight() const { return ask(&CSS::Style::GetPaddingRight); }
    void setPaddingRight(_WQCSSLength length) { tell(&CSS::Style::SetPaddingRight, length); }
    _WQCSSLength paddingTop() const { return ask(&CSS::Style::GetPaddingTop); }
    void setPaddingTop(_WQCSSLength length) { tell(&CSS::Style::SetPaddingTop, length); }
    _WQCSSLength paddingBottom() const { return ask(&CSS::Style::GetPaddingBottom); }
    void setPaddingBottom(_WQCSSLength length) { tell(&CSS::Style::SetPaddingBottom, length); }

    _WQCSSBorder borderLeft() const { return ask(&CSS::Style::GetBorderLeft); }
    void setBorderLeft(_WQCSSBorder border) { tell(&CSS::Style::SetBorderLeft, border); }
    _WQCSSBorder borderRight() const { return ask(&CSS::Style::GetBorderRight); }
    void setBorderRight(_WQCSSBorder border) { tell(&CSS::Style::SetBorderRight, border); }
    _WQCSSBorder borderTop() const { return ask(&CSS::Style::GetBorderTop); }
    void setBorderTop(_WQCSSBorder border) { tell(&CSS::Style::SetBorderTop, border); }
    _WQCSSBorder borderBottom() const { return ask(&CSS::Style::GetBorderBottom); }
    void setBorderBottom(_WQCSSBorder border) { tell(&CSS::Style::SetBorderBottom, border); }

    _WQCSSLength height() const { return ask(&CSS::Style::GetHeight); }
    _WQCSSLength width() const { return ask(&CSS::Style::GetWidth); }
    void setWidth(_WQCSSLength length) { tell(&CSS::Style::SetWidth, length); }
    _WQCSSLength maxHeight() const { return ask(&CSS::Style::GetMaxHeight); }
    _WQCSSLength minHeight() const { return ask(&CSS::Style::GetMinHeight); }
    _WQCSSLength maxWidth() const { return ask(&CSS::Style::GetMaxWidth); }
    _WQCSSLength minWidth() const { return ask(&CSS::Style::GetMinWidth); }

    float lineHeight() const { return ask(&CSS::Style::GetLineHeight); }
    void setLineHeight(float multiple) { tell(&CSS::Style::SetLineHeight, multiple); }
    WQCSSTextAlign textAlign() const { return ask(&CSS::Style::GetTextAlign); }
    void setTextAlign(WQCSSTextAlign align) { tell(&CSS::Style::SetTextAlign, align); }
    WQCSSTextDecoration textDecoration() const { return ask(&CSS::Style::GetTextDecoration); }
    void setTextDecoration(WQCSSTextDecoration decoration) { tell(&CSS::Style::SetTextDecoration, decoration); }
    _WQCSSLength textIndent() const { return ask(&CSS::Style::GetTextIndent); }
    void setTextIndent(_WQCSSLength length) { tell(&CSS::Style::SetTextIndent, length); }
    WQCSSVerticalAlign verticalAlign() const { return ask(&CSS::Style::GetVerticalAlign); }
    void setVerticalAlign(WQCSSVerticalAlign align) { tell(&CSS::Style::SetVerticalAlign, align); }
    WQCSSPageBreakAfter pageBreakAfter() const { return ask(&CSS::Style::GetPageBreakAfter); }
    void setPageBreakAfter(WQCSSPageBreakAfter pageBreak) { tell(&CSS::Style::SetPageBreakAfter, pageBreak); }
    WQCSSPageBreakBefore pageBreakBefore() const { return ask(&CSS::Style::GetPageBreakBefore); }
    void setPageBreakBefore(WQCSSPageBreakBefore pageBreak) { tell(&CSS::Style::SetPageBreakBefore, pageBreak); }

    // These log that they are not implemented, and do nothing else.
    void setPosition(uint32_t position);
    void setHeight(_WQCSSLength length);
    void setMaxHeight(_WQCSSLength length);
    void setMinHeight(_WQCSSLength length);
    void setMaxWidth(_WQCSSLength length);
    void setMinWidth(_WQCSSLength length);

    // ---- The text system

    // What CSS::StyleImpl has: made by the first call and kept. Null for a style that is none of the platform's.
    Ref<NSDictionary> attributes() const;

    // The base description and the attributes, which are made by that, and kept.
    NSString description() const override;

    // The font of the style's family, exactly or without regard to case; otherwise the user's, unlike that of the
    // attributes.
    Ref<NSFont> font() const;

    // The same where the exact family is unknown. `traits` are those of NSFontManager, `size` is in points.
    Ref<NSFont> bestMatchForFont_traits_weight_size(const NSString& family, unsigned long traits, int weight, float size) const;

    // ---- Text blocks

    // What a text block calls the type of a length: 0 points (also for "auto"), 1 percent. A length of another type is
    // an assertion, and counts as points.
    unsigned typeForLength(_WQCSSLength length) const;

    // Sets the four widths of one layer; null blocks take nothing.
    void setWidthForBlock_top_left_bottom_right_layer(
        const Ref<NSTextBlock>& block,
        _WQCSSLength top,
        _WQCSSLength left,
        _WQCSSLength bottom,
        _WQCSSLength right,
        long layer) const;
    void setBorderForBlock_top_left_bottom_right(
        const Ref<NSTextBlock>& block,
        _WQCSSBorder top,
        _WQCSSBorder left,
        _WQCSSBorder bottom,
        _WQCSSBorder right) const;

    // Padding, borders and margins of the style.
    void applyToTextBlock(const Ref<NSTextBlock>& block) const;

    template <class T> using Nil = NilStyle<T>;

private:
    // What null answers: also of lengths every byte is 0.
    template <class T> static T zero() { return T(); }

    template <class T> T ask(T (CSS::Style::*get)() const) const { return my.style ? (my.style.Get()->*get)() : zero<T>(); }
    template <class T> void tell(void (CSS::Style::*set)(T), T value) {
        if (my.style) (my.style.Get()->*set)(value);
    }
    void logUnimplemented(const char16_t* operation, const char16_t* word) const;

    struct {
        SharedPtr<CSS::Style> style;
    } my;
};

template <class T> class NilStyle : public T {
public:
    bool initWithCSSStyle(CSS::Style*) override { return false; }
};

// No length at all (type 0), where a length is 0 points unless it is made with something else.
template <> inline _WQCSSLength WQCSSStyle::zero() { return {0, 0}; }
