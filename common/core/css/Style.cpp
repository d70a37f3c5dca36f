#include "common/core/css/Style.h"

#define REQUIRE_FONT(function) WQ_HARD_ASSERT("common/core/css/Style", function, font.Get() != 0)

namespace CSS {

namespace {

// Shared by all styles that have changed nothing of their box. It holds one count itself, so that nobody
// takes it for a record of their own.
SharedPtr<BoxDimensions> defaultDimensions;

// Multiplied in single precision.
float pointsIn(WQCSSLengthUnits units) {
    switch (units) {
        case WQCSSLengthUnitsCentimetre: return 28.34645652770996F;
        case WQCSSLengthUnitsMillimetre: return 2.8346457481384277F;
        case WQCSSLengthUnitsInch: return 72;
        case WQCSSLengthUnitsPica: return 12;
        default: return 1;
    }
}

}  // namespace

Style::Style() {
    if (!defaultDimensions) defaultDimensions = new BoxDimensions;
    dimensions = defaultDimensions;
}

// The fields go from the last to the first: the box record, then the font.
Style::~Style() = default;

void Style::InheritPropertiesFrom(Style* parent) {
    inherited = parent->inherited;
    font = parent->font;
}

// ---- Copy on write

template <class Field> void Style::setInBox(Field BoxDimensions::*field, const Field& value) {
    if (dimensions.Get()->*field == value) return;
    if (dimensions->refCount >= 2) dimensions = new BoxDimensions(*dimensions);
    dimensions.Get()->*field = value;
}

// The font, this style's alone.
Font* Style::ownFont() {
    if (font->refCount >= 2) font = font->Clone();
    return font.Get();
}

// ---- In the order of the header

CSSColor Style::GetColor() const { return inherited.color; }
void Style::SetColor(CSSColor color) { inherited.color = color; }

void Style::SetFont(const SharedPtr<Font>& newFont) { font = newFont; }

WQCSSDisplay Style::GetDisplay() const { return static_cast<WQCSSDisplay>(nonInherited.display); }
void Style::SetDisplay(WQCSSDisplay display) { nonInherited.display = display & 0x1F; }

uint32_t Style::GetPosition() const { return nonInherited.position; }

WQCSSFontStyle Style::GetFontStyle() const {
    REQUIRE_FONT("GetFontStyle");
    return font ? font->Style() : WQCSSFontStyleNormal;
}
void Style::SetFontStyle(WQCSSFontStyle style) {
    REQUIRE_FONT("SetFontStyle");
    if (!font || font->Style() == style) return;
    ownFont()->SetStyle(style);
}

WQCSSFontWeight Style::GetFontWeight() const {
    REQUIRE_FONT("GetFontWeight");
    return font ? font->Weight() : WQCSSFontWeightNormal;
}
void Style::SetFontWeight(WQCSSFontWeight weight) {
    REQUIRE_FONT("SetFontWeight");
    if (!font || font->Weight() == weight) return;
    ownFont()->SetWeight(weight);
}

std::string Style::GetFontFamily() const {
    REQUIRE_FONT("GetFontFamily");
    return font ? font->Family() : std::string();
}
bool Style::SetFontFamily(const std::string& family) {
    REQUIRE_FONT("SetFontFamily");
    if (!font || font->Family() == family) return true;
    ownFont()->SetFamily(family);
    return true;
}

float Style::GetFontSize() const {
    REQUIRE_FONT("GetFontSize");
    return font ? font->Size() : 0;
}
void Style::SetFontSize(float size) {
    REQUIRE_FONT("SetFontSize");
    if (!font || font->Size() == size) return;
    ownFont()->SetSize(size);
}

float Style::GetLineHeight() const { return inherited.lineHeight; }
void Style::SetLineHeight(float multiple) { inherited.lineHeight = multiple; }

WQCSSListStyleType Style::GetListStyleType() const { return static_cast<WQCSSListStyleType>(inherited.listStyleType); }
void Style::SetListStyleType(WQCSSListStyleType type) { inherited.listStyleType = type & 0x1F; }

_WQCSSLength Style::GetMarginLeft() const { return dimensions->marginLeft; }
void Style::SetMarginLeft(_WQCSSLength length) { setInBox(&BoxDimensions::marginLeft, length); }
_WQCSSLength Style::GetMarginRight() const { return dimensions->marginRight; }
void Style::SetMarginRight(_WQCSSLength length) { setInBox(&BoxDimensions::marginRight, length); }
_WQCSSLength Style::GetMarginTop() const { return dimensions->marginTop; }
void Style::SetMarginTop(_WQCSSLength length) { setInBox(&BoxDimensions::marginTop, length); }
_WQCSSLength Style::GetMarginBottom() const { return dimensions->marginBottom; }
void Style::SetMarginBottom(_WQCSSLength length) { setInBox(&BoxDimensions::marginBottom, length); }

_WQCSSBorder Style::GetBorderLeft() const { return dimensions->borderLeft; }
void Style::SetBorderLeft(_WQCSSBorder border) { setInBox(&BoxDimensions::borderLeft, border); }
_WQCSSBorder Style::GetBorderRight() const { return dimensions->borderRight; }
void Style::SetBorderRight(_WQCSSBorder border) { setInBox(&BoxDimensions::borderRight, border); }
_WQCSSBorder Style::GetBorderTop() const { return dimensions->borderTop; }
void Style::SetBorderTop(_WQCSSBorder border) { setInBox(&BoxDimensions::borderTop, border); }
_WQCSSBorder Style::GetBorderBottom() const { return dimensions->borderBottom; }
void Style::SetBorderBottom(_WQCSSBorder border) { setInBox(&BoxDimensions::borderBottom, border); }

_WQCSSLength Style::GetPaddingLeft() const { return dimensions->paddingLeft; }
void Style::SetPaddingLeft(_WQCSSLength length) { setInBox(&BoxDimensions::paddingLeft, length); }
_WQCSSLength Style::GetPaddingRight() const { return dimensions->paddingRight; }
void Style::SetPaddingRight(_WQCSSLength length) { setInBox(&BoxDimensions::paddingRight, length); }
_WQCSSLength Style::GetPaddingTop() const { return dimensions->paddingTop; }
void Style::SetPaddingTop(_WQCSSLength length) { setInBox(&BoxDimensions::paddingTop, length); }
_WQCSSLength Style::GetPaddingBottom() const { return dimensions->paddingBottom; }
void Style::SetPaddingBottom(_WQCSSLength length) { setInBox(&BoxDimensions::paddingBottom, length); }

WQCSSTextAlign Style::GetTextAlign() const { return static_cast<WQCSSTextAlign>(inherited.textAlign); }
void Style::SetTextAlign(WQCSSTextAlign align) { inherited.textAlign = align & 0x3; }

WQCSSTextDecoration Style::GetTextDecoration() const { return static_cast<WQCSSTextDecoration>(nonInherited.textDecoration); }
void Style::SetTextDecoration(WQCSSTextDecoration decoration) { nonInherited.textDecoration = decoration & 0x1; }

_WQCSSLength Style::GetTextIndent() const { return inherited.textIndent; }
void Style::SetTextIndent(_WQCSSLength length) { inherited.textIndent = length; }

_WQCSSLength Style::GetHeight() const { return dimensions->height; }
_WQCSSLength Style::GetWidth() const { return dimensions->width; }
void Style::SetWidth(_WQCSSLength length) { setInBox(&BoxDimensions::width, length); }
_WQCSSLength Style::GetMaxHeight() const { return {0, WQCSSLengthTypeNone}; }
_WQCSSLength Style::GetMinHeight() const { return {0, WQCSSLengthTypeAbsolute}; }
_WQCSSLength Style::GetMaxWidth() const { return {0, WQCSSLengthTypeNone}; }
_WQCSSLength Style::GetMinWidth() const { return {0, WQCSSLengthTypeAbsolute}; }

BoxDimensions* Style::GetBoxDimensions() const { return new BoxDimensions(*dimensions); }

WQCSSVerticalAlign Style::GetVerticalAlign() const { return static_cast<WQCSSVerticalAlign>(nonInherited.verticalAlign); }
void Style::SetVerticalAlign(WQCSSVerticalAlign align) { nonInherited.verticalAlign = align & 0x3; }

WQCSSPageBreakAfter Style::GetPageBreakAfter() const { return static_cast<WQCSSPageBreakAfter>(nonInherited.pageBreakAfter); }
void Style::SetPageBreakAfter(WQCSSPageBreakAfter pageBreak) { nonInherited.pageBreakAfter = pageBreak & 0x3; }

WQCSSPageBreakBefore Style::GetPageBreakBefore() const { return static_cast<WQCSSPageBreakBefore>(nonInherited.pageBreakBefore); }
void Style::SetPageBreakBefore(WQCSSPageBreakBefore pageBreak) { nonInherited.pageBreakBefore = pageBreak & 0x3; }

// ---- Of no style

float Style::DPI() { return 72; }

_WQCSSLength Style::ConvertValueToLength(float value, WQCSSLengthUnits units) { return {value * pointsIn(units), WQCSSLengthTypeAbsolute}; }

}  // namespace CSS
