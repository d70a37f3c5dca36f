// One declaration of one property: which property it is, its value, and whether it is important.
//
// A property is made by the factory, judges the value of its declaration (validate), and is read only from then
// on. It writes its value to a style (applyToStyle) and reads itself back from one (valueFromStyle). Where something
// looks narrower than CSS 2.1 (no relative weights, no "inherit" for most properties, no em), it is the language.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "common/core/css/AST.h"
#include "common/core/css/PropertyID.h"
#include "common/core/css/ValidValues.h"
#include "common/core/css/Value.h"
#include "common/core/include/Shared.h"

namespace CSS {

class Style;

// New properties have a count of 0.
class Property : public SharedObject {
public:
    // Writes the value into the style. A value that validation would not have let through is a hard assertion, where
    // the class says so; without hard assertions the style is then left as it was. `style` must not be null.
    virtual void applyToStyle(Style* style) = 0;

    // What the style holds for this property: a new value with a count of 0, or null where the property has no effect
    // on styles. A number in the style that is no value of the property is a hard assertion in most classes; without
    // hard assertions, null.
    virtual Value* valueFromStyle(Style* style) = 0;

    virtual void print();  // cssText on standard output, without a line end

    // Takes the whole expression of a declaration: whether it is a value of this property. On success it is kept.
    virtual bool validate(AST* root);

    // Takes one term of an expression. `next`, which may be null, gets the node behind the term on success, else the
    // term itself; a term with arguments leaves it alone, but for weights, background colours and families. A null term
    // is no value.
    virtual bool validate(AST* term, AST** next);

    virtual std::string cssText();       // "color: #ff0000!important; ", with "???" for no value
    virtual bool isShorthandProperty();  // true for a ShorthandProperty alone

    // The value, which stays the property's; null if it is none of this kind.
    PrimitiveValue* primitiveValue() const;
    ValueList* valueList() const;
    std::string name() const;                     // by number: empty for an unknown property
    bool hasName(std::string_view wanted) const;  // whether that is the name
    void setValue(Value* newValue);               // takes a count; null is no value

    // The first node from `node` on that is no white space between terms, or null.
    static AST* skipSpaces(AST* node);

    // Whether the table of the property accepts a keyword or a kind of value. Raises std::out_of_range for what is no
    // property.
    static bool isValidValue(PropertyID property, ValueID value);

    // How many properties were made since the last parse began. Every parse begins with 0.
    static int32_t gOrderCounter;

    const PropertyID id;     // PropertyUnknown for a name that is none
    SharedPtr<Value> value;  // null until validation or a caller sets one
    bool important = false;  // written with "!important": the cascade lifts it (see StyleResolver.h)
    const int32_t order;     // the counter before this object was counted

protected:
    // Counts the new object: the next one has the next order.
    explicit Property(PropertyID anID) : id(anID), order(gOrderCounter++) {}
};

// A property that stands for several: declarations keep its parts, and not the shorthand itself.
class ShorthandProperty : public Property {
public:
    bool isShorthandProperty() override;
    virtual std::vector<SharedPtr<Property>> propertyList() = 0;  // the parts that validation has set, in their order

protected:
    using Property::Property;  // a shorthand counts like any other property
};

// A property of a name that is none. No value is valid for it.
class PropGeneric : public Property {
public:
    explicit PropGeneric(std::string aName);   // any text; name() is empty all the same
    void applyToStyle(Style* style) override;  // nothing
    Value* valueFromStyle(Style* style) override;

    const std::string genericName;  // as written
};

// makeFont and so on, for each row of Properties.def: a new property of the class named.
#define WQ_CSS_PROPERTY(name, number, Word) Property* make##Word();
#include "common/core/css/Properties.def"
#undef WQ_CSS_PROPERTY

}  // namespace CSS
