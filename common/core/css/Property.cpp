#include "common/core/css/Property.h"

#include <cstdio>
#include <utility>

#include "common/core/css/PropertyFactory.h"
#include "common/core/css/Token.h"

namespace CSS {

int32_t Property::gOrderCounter = 0;

namespace {

// The value of a term by the property's table, or null.
Value* valueOfTerm(PropertyID property, const AST& term) {
    switch (term.type) {
        case IDENT: {
            const ValueID ident = PrimitiveValue::IdentForString(term.text);
            return Property::isValidValue(property, ident) ? new PrimitiveValue(ident) : nullptr;
        }
        case LENGTH: return Property::isValidValue(property, ValueLengthKind) ? PrimitiveValue::ParseNumFromString(term.text) : nullptr;
        case PERCENTAGE:
            return Property::isValidValue(property, ValuePercentageKind) ? PrimitiveValue::ParseNumFromString(term.text) : nullptr;
        case NUMBER:
            if (term.text == "0")  // a length or nothing: where numbers are valid, a bare zero is still none
                return Property::isValidValue(property, ValueLengthKind) ? new PrimitiveValue(0, CSS_PT) : nullptr;
            return Property::isValidValue(property, ValueNumberKind) ? PrimitiveValue::ParseNumFromString(term.text) : nullptr;
        default: return nullptr;
    }
}

}  // namespace

void Property::print() {
    const std::string text = cssText();
    std::fwrite(text.data(), 1, text.size(), stdout);
}

bool Property::validate(AST* root) {
    if (root->next) return false;
    AST* term = root->child;
    if (!term || term->next) return false;
    return validate(term, nullptr);
}

bool Property::validate(AST* term, AST** next) {
    if (!term || term->child) return false;
    value = valueOfTerm(id, *term);
    if (next) *next = value ? term->next : term;
    return static_cast<bool>(value);
}

std::string Property::cssText() {
    std::string text = name() + ": " + (value ? value->cssText() : "???");
    if (important) text += "!important";
    return text + "; ";
}

bool Property::isShorthandProperty() { return false; }

PrimitiveValue* Property::primitiveValue() const {
    return value && value->isPrimitiveValue() ? static_cast<PrimitiveValue*>(value.Get()) : nullptr;
}

ValueList* Property::valueList() const { return value && value->isValueList() ? static_cast<ValueList*>(value.Get()) : nullptr; }

std::string Property::name() const {
    const char* known = PropertyFactory::NameForID(id);
    return known ? known : "";
}

bool Property::hasName(std::string_view wanted) const {
    const char* known = PropertyFactory::NameForID(id);
    return wanted == (known ? known : "");
}

void Property::setValue(Value* newValue) { value = newValue; }

AST* Property::skipSpaces(AST* node) {
    while (node && node->type == ' ') node = node->next;
    return node;
}

bool Property::isValidValue(PropertyID property, ValueID value) {
    for (const ValueID* entry = validValues.at(static_cast<size_t>(property)).values; *entry != ValueInvalid; ++entry) {
        if (*entry == value) return true;
        const bool isProperty = *entry >= 1 && *entry <= 25;
        if (isProperty && isValidValue(static_cast<PropertyID>(*entry), value)) return true;
    }
    return false;
}

bool ShorthandProperty::isShorthandProperty() { return true; }

PropGeneric::PropGeneric(std::string aName) : Property(PropertyUnknown), genericName(std::move(aName)) {}
void PropGeneric::applyToStyle(Style*) {}
Value* PropGeneric::valueFromStyle(Style*) { return nullptr; }

}  // namespace CSS
