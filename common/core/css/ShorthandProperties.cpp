#include "common/core/css/ShorthandProperties.h"

#include "common/core/css/PropertyFactory.h"
#include "common/core/css/Token.h"

namespace CSS {

namespace {

// Offers the term at the cursor to a new property, which is kept and moves the cursor if it accepts.
template <class T> bool take(SharedPtr<T>& field, AST*& cursor) {
    const SharedPtr<T> property = new T;
    if (!property->validate(cursor, &cursor)) return false;
    field = property;
    return true;
}

template <class T> bool takeIfMissing(SharedPtr<T>& field, AST*& cursor) { return !field && take(field, cursor); }

std::string textOf(const Property& part) { return part.value ? part.value->cssText() : std::string(); }

template <class... T> std::vector<SharedPtr<Property>> listOf(const SharedPtr<T>&... fields) {
    std::vector<SharedPtr<Property>> list;
    ((fields ? void(list.emplace_back(fields.Get())) : void()), ...);
    return list;
}

}  // namespace

// ---- font

// Style, variant and weight, until three passes have taken nothing. A failed pass changes nothing, but its tries count
// for the order of properties. Answers where to go on; null at the end of the list.
AST* PropFont::takeStyleVariantAndWeight(AST* term) {
    AST* cursor = skipSpaces(term);
    for (int failedPasses = 0; cursor && failedPasses < 3; cursor = skipSpaces(cursor)) {
        if (takeIfMissing(fontStyle, cursor)) continue;
        if (takeIfMissing(fontVariant, cursor)) continue;
        if (takeIfMissing(fontWeight, cursor)) continue;
        ++failedPasses;
    }
    return cursor;
}

bool PropFont::validate(AST* root) {
    valid = false;
    AST* cursor = root->child;
    if (!cursor) return false;
    if (cursor->type == IDENT && isValidValue(PropertyFont, PrimitiveValue::IdentForString(cursor->text))) return false;

    cursor = takeStyleVariantAndWeight(cursor);
    if (!cursor || !take(fontSize, cursor)) return false;

    cursor = skipSpaces(cursor);
    if (cursor && cursor->type == '/') {
        cursor = skipSpaces(cursor->next);
        if (!cursor || !take(lineHeight, cursor)) return false;
    }

    cursor = skipSpaces(cursor);
    if (!cursor || !take(fontFamily, cursor)) return false;
    valid = true;
    return true;
}

void PropFont::applyToStyle(Style* style) {
    if (fontStyle) fontStyle->applyToStyle(style);
    if (fontVariant) fontVariant->applyToStyle(style);
    if (fontWeight) fontWeight->applyToStyle(style);
    if (fontSize) fontSize->applyToStyle(style);
    if (fontSize && lineHeight) lineHeight->applyToStyle(style);
    if (fontFamily) fontFamily->applyToStyle(style);
}

Value* PropFont::valueFromStyle(Style*) {
    WQ_HARD_ASSERT("common/core/css/Property", "valueFromStyle", 0);
    return nullptr;
}

std::string PropFont::cssText() {
    std::string text = name() + ":";
    if (fontStyle) text += textOf(*fontStyle) + " ";
    if (fontVariant) text += textOf(*fontVariant) + " ";
    if (fontWeight) text += textOf(*fontWeight) + " ";
    if (fontSize) {
        text += textOf(*fontSize);
        if (lineHeight) text += "/" + textOf(*lineHeight);
        text += " ";
    }
    if (fontFamily) text += textOf(*fontFamily);
    return text + "; ";
}

std::vector<SharedPtr<Property>> PropFont::propertyList() {
    return listOf(fontStyle, fontVariant, fontWeight, fontSize, lineHeight, fontFamily);
}

// ---- margin

bool PropMargin::validate(AST* root) {
    const SharedPtr<ValueList> list = new ValueList;
    for (AST* cursor = skipSpaces(root->child); cursor; cursor = skipSpaces(cursor)) {
        Property::validate(cursor, &cursor);
        if (!value) return false;
        list->append(value.Get());
        setValue(nullptr);
    }
    const auto& values = list->values;
    if (values.empty() || values.size() > 4) return false;

    marginTop = new PropMarginTop;
    marginLeft = new PropMarginLeft;
    marginBottom = new PropMarginBottom;
    marginRight = new PropMarginRight;
    const size_t right = values.size() > 1 ? 1 : 0;
    const size_t bottom = values.size() > 2 ? 2 : 0;
    const size_t left = values.size() > 3 ? 3 : right;
    marginTop->setValue(values[0].Get());
    marginRight->setValue(values[right].Get());
    marginBottom->setValue(values[bottom].Get());
    marginLeft->setValue(values[left].Get());
    return true;
}

void PropMargin::applyToStyle(Style* style) {
    for (const SharedPtr<Property>& side : propertyList()) side->applyToStyle(style);
}

Value* PropMargin::valueFromStyle(Style*) { return nullptr; }

std::vector<SharedPtr<Property>> PropMargin::propertyList() { return listOf(marginTop, marginLeft, marginBottom, marginRight); }

}  // namespace CSS
