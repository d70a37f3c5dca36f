#include "common/core/css/LonghandProperties.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "common/core/css/Style.h"
#include "common/core/css/Token.h"

namespace CSS {

namespace {

// ---- Keywords

template <class Enumerator> struct Row {
    ValueID keyword;
    Enumerator enumerator;
};

constexpr Row<WQCSSDisplay> displays[] = {
    {ValueBlock, WQCSSDisplayBlock},
    {ValueInline, WQCSSDisplayInline},
    {ValueNone, WQCSSDisplayNone}};
constexpr Row<WQCSSDisplay> displaysReadBack[] = {  // wanted: each of them says "block"
    {ValueBlock, WQCSSDisplayBlock},
    {ValueBlock, WQCSSDisplayInline},
    {ValueBlock, WQCSSDisplayNone}};
constexpr Row<WQCSSFontStyle> fontStyles[] = {{ValueNormal, WQCSSFontStyleNormal}, {ValueItalic, WQCSSFontStyleItalic}};
constexpr Row<WQCSSFontWeight> fontWeights[] = {{ValueNormal, WQCSSFontWeightNormal}, {ValueBold, WQCSSFontWeightBold}};
constexpr Row<WQCSSPageBreakAfter> pageBreaksAfter[] = {
    {ValueAuto, WQCSSPageBreakAfterAuto},
    {ValueAlways, WQCSSPageBreakAfterAlways},
    {ValueInherit, WQCSSPageBreakAfterInherit}};
constexpr Row<WQCSSPageBreakAfter> pageBreaksAfterReadBack[] = {  // wanted: "inline" for what is stored as "inherit"
    {ValueAuto, WQCSSPageBreakAfterAuto},
    {ValueAlways, WQCSSPageBreakAfterAlways},
    {ValueInline, WQCSSPageBreakAfterInherit}};
constexpr Row<WQCSSPageBreakBefore> pageBreaksBefore[] = {
    {ValueAuto, WQCSSPageBreakBeforeAuto},
    {ValueAlways, WQCSSPageBreakBeforeAlways},
    {ValueInherit, WQCSSPageBreakBeforeInherit}};
constexpr Row<WQCSSPageBreakBefore> pageBreaksBeforeReadBack[] = {  // as above
    {ValueAuto, WQCSSPageBreakBeforeAuto},
    {ValueAlways, WQCSSPageBreakBeforeAlways},
    {ValueInline, WQCSSPageBreakBeforeInherit}};
constexpr Row<WQCSSTextAlign> textAligns[] = {
    {ValueLeft, WQCSSTextAlignLeft},
    {ValueRight, WQCSSTextAlignRight},
    {ValueCenter, WQCSSTextAlignCenter},
    {ValueJustify, WQCSSTextAlignJustify}};
constexpr Row<WQCSSTextDecoration> textDecorations[] = {
    {ValueNone, WQCSSTextDecorationNone},
    {ValueUnderline, WQCSSTextDecorationUnderline}};
constexpr Row<WQCSSVerticalAlign> verticalAligns[] = {
    {ValueTop, WQCSSVerticalAlignTop},
    {ValueMiddle, WQCSSVerticalAlignMiddle},
    {ValueBottom, WQCSSVerticalAlignBottom}};
constexpr Row<WQCSSListStyleType> listStyleTypes[] = {
    {ValueBox, WQCSSListStyleTypeBox},
    {ValueCheck, WQCSSListStyleTypeCheck},
    {ValueCircle, WQCSSListStyleTypeCircle},
    {ValueDiamond, WQCSSListStyleTypeDiamond},
    {ValueDisc, WQCSSListStyleTypeDisc},
    {ValueHyphen, WQCSSListStyleTypeHyphen},
    {ValueSquare, WQCSSListStyleTypeSquare},
    {ValueLowerHexadecimal, WQCSSListStyleTypeLowerHexadecimal},
    {ValueUpperHexadecimal, WQCSSListStyleTypeUpperHexadecimal},
    {ValueOctal, WQCSSListStyleTypeOctal},
    {ValueLowerAlpha, WQCSSListStyleTypeLowerAlpha},
    {ValueLowerLatin, WQCSSListStyleTypeLowerLatin},
    {ValueUpperAlpha, WQCSSListStyleTypeUpperAlpha},
    {ValueUpperLatin, WQCSSListStyleTypeUpperLatin},
    {ValueLowerRoman, WQCSSListStyleTypeLowerRoman},
    {ValueUpperRoman, WQCSSListStyleTypeUpperRoman},
    {ValueDecimal, WQCSSListStyleTypeDecimal}};

template <class Enumerator, size_t count> const Row<Enumerator>* rowOfKeyword(const Row<Enumerator> (&rows)[count], ValueID keyword) {
    const auto row = std::find_if(rows, rows + count, [&](const auto& each) { return each.keyword == keyword; });
    return row == rows + count ? nullptr : row;
}

bool isKeyword(const PrimitiveValue* value) { return value && value->primitiveType == CSS_IDENT; }

// Hands the enumerator of the value's keyword to the setter.
template <class Enumerator, size_t count>
void applyKeyword(const PrimitiveValue& value, const Row<Enumerator> (&rows)[count], Style* style, void (Style::*set)(Enumerator)) {
    if (const auto* row = rowOfKeyword(rows, value.identValue())) return (style->*set)(row->enumerator);
    WQ_HARD_ASSERT("common/core/css/Property", "applyToStyle", 0);
}

// The keyword of an enumerator, or null.
template <class Enumerator, size_t count> Value* keywordOf(const Row<Enumerator> (&rows)[count], Enumerator enumerator) {
    for (const auto& row : rows)
        if (row.enumerator == enumerator) return new PrimitiveValue(row.keyword);
    return nullptr;
}

Value* required(Value* value) {
    if (!value) WQ_HARD_ASSERT("common/core/css/Property", "valueFromStyle", 0);
    return value;
}

// ---- Lengths

// Whether a value was a length, which it always is where hard assertions are on.
bool isLength(_WQCSSLength length) { return length.type != WQCSSLengthTypeNone; }

// Hands the length, or that of "auto", to the setter.
void applyLength(const PrimitiveValue* value, Style* style, void (Style::*set)(_WQCSSLength)) {
    if (!value) return;
    if (value->identValue() == ValueAuto) return (style->*set)({0, WQCSSLengthTypeAuto});
    const _WQCSSLength length = value->lengthValueForStyle(style);
    if (isLength(length)) (style->*set)(length);
}

// ---- Terms

// `answer`, with the node where to go on.
bool answer(bool isValid, AST* term, AST** next) {
    if (next) *next = isValid ? term->next : term;
    return isValid;
}

// The colour of a name or a hash, or null.
PrimitiveValue* colorValue(const std::string& text) {
    const CSSColor color(text);
    return color.rgbaValue != 0 ? new PrimitiveValue(color) : nullptr;
}

}  // namespace

// ---- Keywords

void PropDisplay::applyToStyle(Style* style) {
    if (isKeyword(primitiveValue())) applyKeyword(*primitiveValue(), displays, style, &Style::SetDisplay);
}
Value* PropDisplay::valueFromStyle(Style* style) { return required(keywordOf(displaysReadBack, style->GetDisplay())); }

void PropFontStyle::applyToStyle(Style* style) {
    if (isKeyword(primitiveValue())) applyKeyword(*primitiveValue(), fontStyles, style, &Style::SetFontStyle);
}
Value* PropFontStyle::valueFromStyle(Style* style) { return keywordOf(fontStyles, style->GetFontStyle()); }

void PropFontWeight::applyToStyle(Style* style) {
    if (isKeyword(primitiveValue())) applyKeyword(*primitiveValue(), fontWeights, style, &Style::SetFontWeight);
}
Value* PropFontWeight::valueFromStyle(Style* style) { return required(keywordOf(fontWeights, style->GetFontWeight())); }

bool PropFontWeight::validate(AST* term, AST** next) {
    static constexpr const char* weights[] = {"100", "200", "300", "400", "500", "600", "700", "800", "900"};
    if (!term) return false;
    bool isValid = false;
    if (term->type == IDENT) {
        const ValueID ident = PrimitiveValue::IdentForString(term->text);
        isValid = isValidValue(id, ident);
        if (isValid) value = new PrimitiveValue(ident);
    } else if (term->type == NUMBER) {
        isValid = std::find(std::begin(weights), std::end(weights), term->text) != std::end(weights);
        if (isValid) value = PrimitiveValue::ParseNumFromString(term->text);
    }
    return answer(isValid, term, next);
}

void PropPageBreakAfter::applyToStyle(Style* style) {
    if (isKeyword(primitiveValue())) applyKeyword(*primitiveValue(), pageBreaksAfter, style, &Style::SetPageBreakAfter);
}
Value* PropPageBreakAfter::valueFromStyle(Style* style) { return required(keywordOf(pageBreaksAfterReadBack, style->GetPageBreakAfter())); }

void PropPageBreakBefore::applyToStyle(Style* style) {
    if (isKeyword(primitiveValue())) applyKeyword(*primitiveValue(), pageBreaksBefore, style, &Style::SetPageBreakBefore);
}
Value* PropPageBreakBefore::valueFromStyle(Style* style) {
    return required(keywordOf(pageBreaksBeforeReadBack, style->GetPageBreakBefore()));
}

void PropTextAlign::applyToStyle(Style* style) {
    if (primitiveValue()) applyKeyword(*primitiveValue(), textAligns, style, &Style::SetTextAlign);
}
Value* PropTextAlign::valueFromStyle(Style* style) { return required(keywordOf(textAligns, style->GetTextAlign())); }

void PropTextDecoration::applyToStyle(Style* style) {
    if (isKeyword(primitiveValue())) applyKeyword(*primitiveValue(), textDecorations, style, &Style::SetTextDecoration);
}
Value* PropTextDecoration::valueFromStyle(Style* style) { return required(keywordOf(textDecorations, style->GetTextDecoration())); }

void PropVerticalAlign::applyToStyle(Style* style) {
    if (primitiveValue()) applyKeyword(*primitiveValue(), verticalAligns, style, &Style::SetVerticalAlign);
}
Value* PropVerticalAlign::valueFromStyle(Style* style) { return required(keywordOf(verticalAligns, style->GetVerticalAlign())); }

void PropListStyleType::applyToStyle(Style* style) {
    if (!primitiveValue()) return;
    if (const auto* row = rowOfKeyword(listStyleTypes, primitiveValue()->identValue())) style->SetListStyleType(row->enumerator);
}
Value* PropListStyleType::valueFromStyle(Style* style) { return keywordOf(listStyleTypes, style->GetListStyleType()); }

// ---- Lengths

void PropMarginTop::applyToStyle(Style* style) { applyLength(primitiveValue(), style, &Style::SetMarginTop); }
Value* PropMarginTop::valueFromStyle(Style* style) { return valueForLength(style->GetMarginTop()); }

void PropMarginBottom::applyToStyle(Style* style) { applyLength(primitiveValue(), style, &Style::SetMarginBottom); }
Value* PropMarginBottom::valueFromStyle(Style* style) { return valueForLength(style->GetMarginBottom()); }

void PropMarginLeft::applyToStyle(Style* style) { applyLength(primitiveValue(), style, &Style::SetMarginLeft); }
Value* PropMarginLeft::valueFromStyle(Style* style) { return valueForLength(style->GetMarginLeft()); }

void PropMarginRight::applyToStyle(Style* style) { applyLength(primitiveValue(), style, &Style::SetMarginRight); }
Value* PropMarginRight::valueFromStyle(Style* style) { return valueForLength(style->GetMarginRight()); }

void PropWidth::applyToStyle(Style* style) { applyLength(primitiveValue(), style, &Style::SetWidth); }
Value* PropWidth::valueFromStyle(Style* style) { return valueForLength(style->GetWidth()); }

void PropTextIndent::applyToStyle(Style* style) {
    if (!primitiveValue()) return;
    const _WQCSSLength length = primitiveValue()->lengthValueForStyle(style);
    if (isLength(length)) style->SetTextIndent(length);
}
Value* PropTextIndent::valueFromStyle(Style* style) { return valueForLength(style->GetTextIndent()); }

void PropFontSize::applyToStyle(Style* style) {
    if (!primitiveValue()) return;
    const _WQCSSLength length = primitiveValue()->lengthValueForStyle(style);
    if (isLength(length)) style->SetFontSize(length.value);
}
Value* PropFontSize::valueFromStyle(Style* style) { return new PrimitiveValue(style->GetFontSize(), CSS_PX); }

void PropLineHeight::applyToStyle(Style* style) {
    if (!primitiveValue()) return;
    if (primitiveValue()->primitiveType == CSS_NUMBER) return style->SetLineHeight(primitiveValue()->floatValue());
    WQ_HARD_ASSERT("common/core/css/Property", "applyToStyle", 0);
}
Value* PropLineHeight::valueFromStyle(Style* style) { return new PrimitiveValue(style->GetLineHeight(), CSS_NUMBER); }

// ---- Others

void PropColor::applyToStyle(Style* style) {
    if (primitiveValue()) style->SetColor(CSSColor(static_cast<int>(primitiveValue()->colorValue().rgbaValue)));
}
Value* PropColor::valueFromStyle(Style* style) { return new PrimitiveValue(style->GetColor()); }

bool PropColor::validate(AST* term, AST** next) {
    if (!term || term->child) return false;
    if (term->type != IDENT && term->type != HASH) {
        std::printf("Unhandled color token %d\n", term->type);
        return answer(false, term, next);
    }
    PrimitiveValue* color = colorValue(term->text);
    if (color) value = color;
    return answer(color != nullptr, term, next);
}

void PropBackgroundColor::applyToStyle(Style*) {}
Value* PropBackgroundColor::valueFromStyle(Style*) { return nullptr; }

bool PropBackgroundColor::validate(AST* term, AST** next) {
    if (!term) return false;
    if (term->type == IDENT) {
        const ValueID ident = PrimitiveValue::IdentForString(term->text);
        if (isValidValue(id, ident)) {  // wanted: the keyword is kept, and yet refused
            value = new PrimitiveValue(ident);
            return answer(false, term, next);
        }
    }
    PrimitiveValue* color = term->type == IDENT || term->type == HASH ? colorValue(term->text) : nullptr;
    if (color) value = color;
    return answer(color != nullptr, term, next);
}

// The first name is taken whatever fonts there are, since the setter is always content.
void PropFontFamily::applyToStyle(Style* style) {
    if (!valueList()) return;
    for (const SharedPtr<Value>& name : valueList()->values) {
        if (!name || !name->isPrimitiveValue()) continue;
        if (style->SetFontFamily(static_cast<PrimitiveValue*>(name.Get())->stringValue())) return;
    }
}
Value* PropFontFamily::valueFromStyle(Style* style) { return new PrimitiveValue(style->GetFontFamily(), CSS_STRING); }

bool PropFontFamily::validate(AST* root) { return !root->next && validate(root->child, nullptr); }

bool PropFontFamily::validate(AST* term, AST** next) {
    std::vector<std::string> names;
    bool found = false;
    int32_t previousType = 0;
    AST* cursor = term;
    for (; cursor; previousType = cursor->type, cursor = cursor->next) {
        if (cursor->child) return answer(false, term, next);
        if (cursor->type == ' ' || cursor->type == COMMA) continue;
        if (cursor->type == STRING) {
            found = true;
            names.push_back(cursor->text);  // with its quotes, which so come into the style
        } else if (cursor->type == IDENT || cursor->type == NUMBER) {
            found = true;
            if (previousType != ' ')
                names.push_back(cursor->text);
            else if (!names.empty())
                names.back() += " " + cursor->text;
        } else {
            found = false;
            break;
        }
    }
    if (!found) return answer(false, term, next);

    const SharedPtr<ValueList> list = new ValueList;
    for (const std::string& name : names) list->append(new PrimitiveValue(name, CSS_STRING));
    value = list.Get();
    if (next) *next = cursor;
    return true;
}

void PropFontVariant::applyToStyle(Style*) {
    if (!isKeyword(primitiveValue())) return;
    if (isValidValue(id, primitiveValue()->identValue())) return;
    WQ_HARD_ASSERT("common/core/css/Property", "applyToStyle", 0);
}
Value* PropFontVariant::valueFromStyle(Style*) { return nullptr; }

void PropPosition::applyToStyle(Style*) {}
Value* PropPosition::valueFromStyle(Style*) { return nullptr; }

}  // namespace CSS
