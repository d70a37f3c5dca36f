// The computed style of one node: a small record, of which nodes share all that they have in common.
//
// Lengths are in points; a pixel is a point. What the engine does not model (backgrounds, floats, border colours)
// is absent. Setters stay legal as long as the style lives.
#pragma once

#include <string>

#include "common/core/css/BoxDimensions.h"
#include "common/core/css/CSSColor.h"
#include "common/core/css/Font.h"
#include "common/core/css/StyleTypes.h"
#include "common/core/include/Shared.h"

// The CSS engine: from text over rules and the cascade to the style of a node.
namespace CSS {

// Copied from the parent's style by value.
struct InheritedProperties {
    CSSColor color{"black"};
    uint32_t textAlign : 2 = WQCSSTextAlignLeft;
    uint32_t listStyleType : 5 = WQCSSListStyleTypeDisc;
    _WQCSSLength textIndent;
    float lineHeight = 1;  // a multiple of the font size
};

// Fresh on each style.
struct NonInheritedProperties {
    uint16_t display : 5 = WQCSSDisplayInline;
    uint16_t position : 3 = 0;
    uint16_t verticalAlign : 2 = WQCSSVerticalAlignMiddle;
    uint16_t textDecoration : 1 = WQCSSTextDecorationNone;
    uint16_t pageBreakAfter : 2 = WQCSSPageBreakAfterAuto;
    uint16_t pageBreakBefore : 2 = WQCSSPageBreakBeforeAuto;
};
static_assert(sizeof(NonInheritedProperties) == 2);

// Enumerators are cut to the width of their field. Setters of the box and of the font that get the value which is
// there leave the shared record shared; with another value the style gets a record of its own, unless it has one.
//
// The font of a style without one cannot be asked or changed: a hard assertion. Without hard assertions a getter then
// answers normal, 0 or the empty text, and a setter does nothing.
class Style : public SharedObject {
public:
    ~Style() override;

    // The inherited properties are copied, the font is shared. `parent` must not be null.
    virtual void InheritPropertiesFrom(Style* parent);

    // ---- The fields, each with a getter and a setter. Lengths, font sizes and the widths of borders are in points,
    // unless the type of a length says otherwise; line heights are multiples of the font size.

    virtual CSSColor GetColor() const;
    virtual void SetColor(CSSColor color);
    virtual void SetFont(const SharedPtr<Font>& newFont);  // shared with whoever holds it; null takes the font away
    virtual WQCSSDisplay GetDisplay() const;
    virtual void SetDisplay(WQCSSDisplay display);
    virtual uint32_t GetPosition() const;  // always 0: the property has no effect

    virtual WQCSSFontStyle GetFontStyle() const;
    virtual void SetFontStyle(WQCSSFontStyle style);
    virtual WQCSSFontWeight GetFontWeight() const;
    virtual void SetFontWeight(WQCSSFontWeight weight);
    virtual std::string GetFontFamily() const;
    virtual bool SetFontFamily(const std::string& family);  // always true, whatever fonts there are
    virtual float GetFontSize() const;
    virtual void SetFontSize(float size);

    virtual float GetLineHeight() const;
    virtual void SetLineHeight(float multiple);
    virtual WQCSSListStyleType GetListStyleType() const;
    virtual void SetListStyleType(WQCSSListStyleType type);

    virtual _WQCSSLength GetMarginLeft() const;
    virtual void SetMarginLeft(_WQCSSLength length);
    virtual _WQCSSLength GetMarginRight() const;
    virtual void SetMarginRight(_WQCSSLength length);
    virtual _WQCSSLength GetMarginTop() const;
    virtual void SetMarginTop(_WQCSSLength length);
    virtual _WQCSSLength GetMarginBottom() const;
    virtual void SetMarginBottom(_WQCSSLength length);

    virtual _WQCSSBorder GetBorderLeft() const;
    virtual void SetBorderLeft(_WQCSSBorder border);
    virtual _WQCSSBorder GetBorderRight() const;
    virtual void SetBorderRight(_WQCSSBorder border);
    virtual _WQCSSBorder GetBorderTop() const;
    virtual void SetBorderTop(_WQCSSBorder border);
    virtual _WQCSSBorder GetBorderBottom() const;
    virtual void SetBorderBottom(_WQCSSBorder border);

    virtual _WQCSSLength GetPaddingLeft() const;
    virtual void SetPaddingLeft(_WQCSSLength length);
    virtual _WQCSSLength GetPaddingRight() const;
    virtual void SetPaddingRight(_WQCSSLength length);
    virtual _WQCSSLength GetPaddingTop() const;
    virtual void SetPaddingTop(_WQCSSLength length);
    virtual _WQCSSLength GetPaddingBottom() const;
    virtual void SetPaddingBottom(_WQCSSLength length);

    virtual WQCSSTextAlign GetTextAlign() const;
    virtual void SetTextAlign(WQCSSTextAlign align);
    virtual WQCSSTextDecoration GetTextDecoration() const;
    virtual void SetTextDecoration(WQCSSTextDecoration decoration);
    virtual _WQCSSLength GetTextIndent() const;
    virtual void SetTextIndent(_WQCSSLength length);

    virtual _WQCSSLength GetHeight() const;  // always auto: nothing sets it
    virtual _WQCSSLength GetWidth() const;
    virtual void SetWidth(_WQCSSLength length);
    virtual _WQCSSLength GetMaxHeight() const;  // none; nothing is stored for the four limits
    virtual _WQCSSLength GetMinHeight() const;  // 0 points
    virtual _WQCSSLength GetMaxWidth() const;   // none
    virtual _WQCSSLength GetMinWidth() const;   // 0 points

    // A new record with a count of 0, which the caller owns.
    virtual BoxDimensions* GetBoxDimensions() const;

    virtual WQCSSVerticalAlign GetVerticalAlign() const;
    virtual void SetVerticalAlign(WQCSSVerticalAlign align);
    virtual WQCSSPageBreakAfter GetPageBreakAfter() const;
    virtual void SetPageBreakAfter(WQCSSPageBreakAfter pageBreak);
    virtual WQCSSPageBreakBefore GetPageBreakBefore() const;
    virtual void SetPageBreakBefore(WQCSSPageBreakBefore pageBreak);

    // ---- Units

    static float DPI();  // 72

    // In points. A number that is no unit counts as a pixel, and a pixel is a point.
    static _WQCSSLength ConvertValueToLength(float value, WQCSSLengthUnits units);

    // In this order. `font` is null in a new style, `dimensions` never.
    InheritedProperties inherited;
    SharedPtr<Font> font;
    NonInheritedProperties nonInherited;
    SharedPtr<BoxDimensions> dimensions;

protected:
    Style();

private:
    template <class Field> void setInBox(Field BoxDimensions::*field, const Field& value);
    Font* ownFont();
};
static_assert(sizeof(Style) <= 56, "there is one for each node");

}  // namespace CSS

// A new style of the platform's class, with a count of 0 and without a font.
CSS::Style* CreateStyle();
