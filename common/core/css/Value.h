// What a declaration says, once its text is understood: one number, text, keyword, colour or counter, or a list.
//
// A new value has a count of 0. Values can be changed in place, and every holder sees the change.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "common/core/css/CSSColor.h"
#include "common/core/css/Counter.h"
#include "common/core/css/StyleTypes.h"
#include "common/core/css/ValueID.h"
#include "common/core/include/Shared.h"

namespace CSS {

class Style;

// What a value is: the constants of CSSValue in DOM Level 2 Style. There is no class for "inherit", which is
// a keyword like any other.
enum ValueType : unsigned short { CSS_PRIMITIVE_VALUE = 1, CSS_VALUE_LIST = 2 };

// What a primitive value is, and its unit: the constants of CSSPrimitiveValue in DOM Level 2 Style. CSS_NUMBER
// to CSS_DIMENSION are numbers.
enum UnitType : unsigned short {
    CSS_UNKNOWN = 0,
    CSS_NUMBER = 1,
    CSS_PERCENTAGE = 2,
    CSS_EMS = 3,
    CSS_EXS = 4,
    CSS_PX = 5,
    CSS_CM = 6,
    CSS_MM = 7,
    CSS_IN = 8,
    CSS_PT = 9,
    CSS_PC = 10,
    CSS_DEG = 11,
    CSS_RAD = 12,
    CSS_GRAD = 13,
    CSS_MS = 14,
    CSS_S = 15,
    CSS_HZ = 16,
    CSS_KHZ = 17,
    CSS_DIMENSION = 18,
    CSS_STRING = 19,
    CSS_URI = 20,
    CSS_IDENT = 21,
    CSS_ATTR = 22,
    CSS_COUNTER = 23,
    CSS_RECT = 24,
    CSS_RGBCOLOR = 25,
};

class Value : public SharedObject {
public:
    virtual std::string cssText() const = 0;  // as in a style sheet, but for what the subclasses say

    // Not supported: a hard assertion. Without hard assertions nothing changes.
    virtual void setCssText(std::string text) = 0;

    virtual unsigned short cssValueType() const = 0;  // a ValueType
    virtual bool isInheritedValue() const;            // false for all there are
    virtual bool isPrimitiveValue() const;            // true for a PrimitiveValue alone
    virtual bool isValueList() const;                 // true for a ValueList alone
    virtual bool isCustomValue() const;               // false for all there are
};

// Anything but a list: a payload of one of a few types, and a code (a UnitType) that says what it is.
class PrimitiveValue : public Value {
public:
    // Code 0 and no payload. Like any value at code 0 that was given no text it reads as the empty text.
    PrimitiveValue();
    explicit PrimitiveValue(ValueID ident);

    // Any code is taken. What does not fit the payload reads as 0, as no keyword, as the empty text.
    PrimitiveValue(float number, unsigned short unitType);
    PrimitiveValue(std::string string, unsigned short unitType);

    // Takes a count of the counter, which may be null.
    explicit PrimitiveValue(Counter* counter);
    explicit PrimitiveValue(CSSColor color);

    PrimitiveValue(const PrimitiveValue&) = delete;
    PrimitiveValue& operator=(const PrimitiveValue&) = delete;

    // Numbers have up to six significant digits and no more than they need, as 12, 1.5 or 1e+06, whatever the
    // process's locale. Strings have no quotes added. A dimension, a counter, a rectangle, a code above 25
    // and an identifier that is no keyword read as the empty text.
    std::string cssText() const override;
    void setCssText(std::string text) override;
    unsigned short cssValueType() const override;
    bool isPrimitiveValue() const override;

    // Drops the payload; the code is 0 then.
    void releaseValue();

    void setFloatValue(unsigned short unitType, float value);  // any code is taken

    // For CSS_STRING, CSS_URI and CSS_ATTR. With any other code the old content is lost all the same, nothing is
    // reported, and the value is left at code 0.
    void setStringValue(unsigned short unitType, const std::string& value);

    ValueID identValue() const;               // ValueInvalid unless the code is CSS_IDENT
    float floatValue() const;                 // 0 if the payload is no number
    const std::string& stringValue() const;   // empty if the payload is no text
    CSSColor colorValue() const;              // the unreadable colour if the payload is none
    SharedPtr<Counter> counterValue() const;  // null if the payload is none

    // Both compare exactly: "Bold" is no keyword. The new value has a count of 0; null for what is no keyword.
    static ValueID IdentForString(const std::string& text);
    static PrimitiveValue* ParseIdentFromString(const std::string& text);

    // A number, a percentage or a length from the text of a token, such as "12", "-1.5%" or "12pt"; a new
    // value with a count of 0. Null for what has no number in front, and for all other units. What follows the two
    // letters of a unit is ignored.
    static PrimitiveValue* ParseNumFromString(const std::string& text);

    // In points, or as a percentage. `style` is not used: "em" and "ex" are for the caller, and like any other code
    // but those of a percentage and of absolute lengths they are a hard assertion. Without hard assertions the
    // answer is then a length of type WQCSSLengthTypeNone.
    _WQCSSLength lengthValueForStyle(Style* style) const;

    unsigned short primitiveType;  // a UnitType; read it, change it by the operations
    // The payload, of the alternative that the maker or setter put in; null for a counter that is null.
    std::variant<std::monostate, float, ValueID, CSSColor, std::unique_ptr<std::string>, SharedPtr<Counter>> primitiveValue;
};
static_assert(sizeof(PrimitiveValue) <= 32, "numbers, keywords and colours cost one small allocation");

// Of primitive values, in this system. Lists in lists are destroyed by recursion.
class ValueList : public Value {
public:
    // Takes a count. Null becomes a null element.
    void append(Value* value);

    // The elements with ", " between them; a null element writes nothing.
    std::string cssText() const override;
    void setCssText(std::string text) override;
    unsigned short cssValueType() const override;
    bool isValueList() const override;

    std::vector<SharedPtr<Value>> values;  // in their order; may hold null
};

// The value that a stored length reads back as: pixels for points, a percentage, or the keyword "auto". New, with a
// count of 0; null for lengths of any other type.
PrimitiveValue* valueForLength(_WQCSSLength length);

}  // namespace CSS
