#include "common/core/css/Value.h"

#include <charconv>
#include <clocale>
#include <cstdlib>
#include <utility>

#include "common/core/css/NameTables.h"
#include "common/core/css/Style.h"

namespace CSS {

// ---- Value

bool Value::isInheritedValue() const { return false; }
bool Value::isPrimitiveValue() const { return false; }
bool Value::isValueList() const { return false; }
bool Value::isCustomValue() const { return false; }

namespace {

// What stands behind a number, by its code; "hz" and "khz" in lower case.
constexpr const char* unitTexts[] = {nullptr, "",   "%",   "em",  "ex",   "px", "cm", "mm", "in",
                                     "pt",    "pc", "deg", "rad", "grad", "ms", "s",  "hz", "khz"};

std::string numberText(float number) {
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, number, std::chars_format::general, 6).ptr;
    return {digits, end};
}

std::string keywordText(ValueID ident) {
    for (const Keyword& keyword : keywordRows())
        if (keyword.id == ident) return keyword.text;
    return {};
}

// 0 for what is no number, percentage or length.
unsigned short codeOfUnit(const std::string& unit) {
    if (unit == "pt") return CSS_PT;
    if (unit == "in") return CSS_IN;
    if (unit == "px") return CSS_PX;
    if (unit == "cm") return CSS_CM;
    if (unit == "mm") return CSS_MM;
    if (unit == "pc") return CSS_PC;
    if (unit == "em") return CSS_EMS;
    if (unit == "ex") return CSS_EXS;
    if (unit == "%") return CSS_PERCENTAGE;
    return CSS_UNKNOWN;
}

// A point is the decimal mark, whatever the process's locale says.
float readFloat(const char* text, char** end) {
    static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
    return strtof_l(text, end, plain);
}

}  // namespace

// ---- PrimitiveValue

PrimitiveValue::PrimitiveValue() : primitiveType(CSS_UNKNOWN) {}
PrimitiveValue::PrimitiveValue(ValueID ident) : primitiveType(CSS_IDENT), primitiveValue(ident) {}
PrimitiveValue::PrimitiveValue(float number, unsigned short unitType) : primitiveType(unitType), primitiveValue(number) {}
PrimitiveValue::PrimitiveValue(std::string string, unsigned short unitType)
    : primitiveType(unitType), primitiveValue(std::make_unique<std::string>(std::move(string))) {}
PrimitiveValue::PrimitiveValue(Counter* counter) : primitiveType(CSS_COUNTER), primitiveValue(SharedPtr<Counter>(counter)) {}
PrimitiveValue::PrimitiveValue(CSSColor color) : primitiveType(CSS_RGBCOLOR), primitiveValue(color) {}

std::string PrimitiveValue::cssText() const {
    switch (primitiveType) {
        case CSS_UNKNOWN:
        case CSS_STRING:
        case CSS_ATTR: return stringValue();
        case CSS_URI: return "url(" + stringValue() + ")";
        case CSS_IDENT: return keywordText(identValue());
        case CSS_RGBCOLOR: return colorValue().stringValue();
        default: break;
    }
    if (primitiveType <= CSS_KHZ) return numberText(floatValue()) + unitTexts[primitiveType];
    return {};
}

void PrimitiveValue::setCssText(std::string) { WQ_HARD_ASSERT("common/core/css/Value", "setCssText", 0); }

unsigned short PrimitiveValue::cssValueType() const { return CSS_PRIMITIVE_VALUE; }
bool PrimitiveValue::isPrimitiveValue() const { return true; }

void PrimitiveValue::releaseValue() {
    primitiveValue = std::monostate();
    primitiveType = CSS_UNKNOWN;
}

void PrimitiveValue::setFloatValue(unsigned short unitType, float value) {
    releaseValue();
    primitiveType = unitType;
    primitiveValue = value;
}

void PrimitiveValue::setStringValue(unsigned short unitType, const std::string& value) {
    auto copy = std::make_unique<std::string>(value);  // first: it may be the text that goes
    releaseValue();
    if (unitType != CSS_STRING && unitType != CSS_URI && unitType != CSS_ATTR) return;
    primitiveType = unitType;
    primitiveValue = std::move(copy);
}

ValueID PrimitiveValue::identValue() const {
    const auto* ident = std::get_if<ValueID>(&primitiveValue);
    return ident && primitiveType == CSS_IDENT ? *ident : ValueInvalid;
}

float PrimitiveValue::floatValue() const {
    const auto* number = std::get_if<float>(&primitiveValue);
    return number ? *number : 0;
}

const std::string& PrimitiveValue::stringValue() const {
    static const std::string none;
    const auto* string = std::get_if<std::unique_ptr<std::string>>(&primitiveValue);
    return string ? **string : none;
}

CSSColor PrimitiveValue::colorValue() const {
    const auto* color = std::get_if<CSSColor>(&primitiveValue);
    return color ? *color : CSSColor();
}

SharedPtr<Counter> PrimitiveValue::counterValue() const {
    const auto* counter = std::get_if<SharedPtr<Counter>>(&primitiveValue);
    return counter ? *counter : SharedPtr<Counter>();
}

ValueID PrimitiveValue::IdentForString(const std::string& text) {
    const Keyword* keyword = findKeyword(text.data(), text.size());
    return keyword ? keyword->id : ValueInvalid;
}

PrimitiveValue* PrimitiveValue::ParseIdentFromString(const std::string& text) {
    const ValueID ident = IdentForString(text);
    return ident ? new PrimitiveValue(ident) : nullptr;
}

PrimitiveValue* PrimitiveValue::ParseNumFromString(const std::string& text) {
    const size_t unitStart = text.find_first_not_of("0123456789.-");
    unsigned short unitType = CSS_NUMBER;
    if (unitStart != std::string::npos) {
        unitType = codeOfUnit(text.substr(unitStart, 2));
        if (unitType == CSS_UNKNOWN) return nullptr;
    }

    const std::string digits = text.substr(0, unitStart);
    char* end = nullptr;
    const float number = readFloat(digits.c_str(), &end);
    if (number == 0 && end == digits.c_str()) return nullptr;
    return new PrimitiveValue(number, unitType);
}

_WQCSSLength PrimitiveValue::lengthValueForStyle(Style*) const {
    switch (primitiveType) {
        case CSS_PERCENTAGE: return {floatValue(), WQCSSLengthTypePercentage};
        case CSS_PX: return Style::ConvertValueToLength(floatValue(), WQCSSLengthUnitsPixel);
        case CSS_CM: return Style::ConvertValueToLength(floatValue(), WQCSSLengthUnitsCentimetre);
        case CSS_MM: return Style::ConvertValueToLength(floatValue(), WQCSSLengthUnitsMillimetre);
        case CSS_IN: return Style::ConvertValueToLength(floatValue(), WQCSSLengthUnitsInch);
        case CSS_PT: return Style::ConvertValueToLength(floatValue(), WQCSSLengthUnitsPoint);
        case CSS_PC: return Style::ConvertValueToLength(floatValue(), WQCSSLengthUnitsPica);
        default: break;
    }
    WQ_HARD_ASSERT("common/core/css/Value", "lengthValueForStyle", 0);
    return {0, WQCSSLengthTypeNone};
}

// ---- ValueList

void ValueList::append(Value* value) { values.push_back(value); }

std::string ValueList::cssText() const {
    std::string text, separator;
    for (const SharedPtr<Value>& value : values) {
        text += separator;
        if (value) text += value->cssText();
        separator = ", ";
    }
    return text;
}

void ValueList::setCssText(std::string) { WQ_HARD_ASSERT("common/core/css/Value", "setCssText", 0); }

unsigned short ValueList::cssValueType() const { return CSS_VALUE_LIST; }
bool ValueList::isValueList() const { return true; }

PrimitiveValue* valueForLength(_WQCSSLength length) {
    switch (length.type) {
        case WQCSSLengthTypeAbsolute: return new PrimitiveValue(length.value, CSS_PX);
        case WQCSSLengthTypePercentage: return new PrimitiveValue(length.value, CSS_PERCENTAGE);
        case WQCSSLengthTypeAuto: return new PrimitiveValue(ValueAuto);
        default: return nullptr;
    }
}

}  // namespace CSS
