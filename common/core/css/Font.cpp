#include "common/core/css/Font.h"

namespace CSS {

WQCSSFontWeight Font::Weight() const { return static_cast<WQCSSFontWeight>(weight); }
void Font::SetWeight(WQCSSFontWeight newWeight) { weight = newWeight & 0xF; }

float Font::Size() const { return size; }
void Font::SetSize(float newSize) { size = newSize; }

WQCSSFontStyle Font::Style() const { return static_cast<WQCSSFontStyle>(style); }
void Font::SetStyle(WQCSSFontStyle newStyle) { style = newStyle & 0x3; }

std::string Font::Family() const { return family; }
void Font::SetFamily(const std::string& newFamily) { family = newFamily; }

}  // namespace CSS
