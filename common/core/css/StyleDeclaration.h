// Blocks of properties, in the shape of CSSStyleDeclaration in DOM Level 2 Style.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "common/core/css/Property.h"
#include "common/core/css/Style.h"
#include "common/core/css/Value.h"
#include "common/core/include/Shared.h"

namespace CSS {

class MutableStyleDeclaration;
class Rule;

class StyleDeclaration : public SharedObject {
public:
    // The value of the first property of the name, or null. A computed value is new, with a count of 0.
    virtual Value* propertyCSSValue(const std::string& name) = 0;
    virtual std::string propertyValue(const std::string& name);  // its text; empty for null

    // Not supported: priorities can be written and not read. A hard assertion; without hard assertions, empty.
    virtual std::string propertyPriority(const std::string& name);

    virtual std::string cssText() = 0;                  // the properties, each with "; " behind it
    virtual size_t length() = 0;                        // how many properties
    virtual std::string item(unsigned long index) = 0;  // the name of one

    // Not supported: a declaration does not know its rule. A hard assertion; without hard assertions, null.
    virtual Rule* parentRule();

    // The first property of a name, and the one at an index; subclasses say what answers for those that are not there.
    virtual SharedPtr<Property> property(const std::string& name) = 0;
    virtual SharedPtr<Property> propertyAtIndex(unsigned long index) = 0;

    // Takes out of `other` what this declaration says in the same words, so that what differs stays. Null is nothing.
    // For each property that says the same, the first one of its name goes, as removeProperty has it: where a name
    // occurs twice, that may be the one that differs.
    void removeDuplicatePropertiesFromStyle(MutableStyleDeclaration* other);
};

// The properties of a rule or of a style attribute, in the order of their addition. There are no shorthands among
// them, but there may be several of one name; of those, the first one answers.
class MutableStyleDeclaration : public StyleDeclaration {
public:
    Value* propertyCSSValue(const std::string& name) override;  // stays the property's
    std::string cssText() override;                             // the texts of all, joined
    size_t length() override;
    std::string item(unsigned long index) override;                     // raises std::out_of_range behind the last
    SharedPtr<Property> property(const std::string& name) override;     // null if there is none
    SharedPtr<Property> propertyAtIndex(unsigned long index) override;  // raises as item does

    // Removes the first property of the name, and parses a new one from text, which comes last; a refused value leaves
    // none. The priority "important" does not make it important: the word is put directly behind the value, which it
    // usually spoils; other priorities are ignored. After a syntax error (see Parser) the declaration is empty.
    virtual void setProperty(const std::string& name, const std::string& newValue, const std::string& priority);

    // Removes the first property of the name, and adds nothing.
    virtual void setProperty(const std::string& name, Value* newValue, const std::string& priority);

    // Replaces all by the declarations of a text. After a syntax error (see Parser) the declaration is empty.
    virtual void setCssText(const std::string& text);

    // Removes the first property of the name, and answers the text of its value; empty if there is none.
    virtual std::string removeProperty(const std::string& name);

    // Takes a count of it. Of a shorthand the parts are added, which are not important, and it is let go.
    virtual void addProperty(Property* added);

    std::vector<SharedPtr<Property>> properties;  // in the order of their addition; none is null
};

// What a resolved style says, property by property. It holds none: each question makes one anew.
class ComputedStyleDeclaration : public StyleDeclaration {
public:
    // Takes a count of the style, which must not be null.
    explicit ComputedStyleDeclaration(Style* aStyle) : style(aStyle) {}

    // New, with a count of 0; null for shorthands, for properties without effect on styles and for unknown names.
    Value* propertyCSSValue(const std::string& name) override;

    // "color:#000000; font-size:12px; ", without those that have no value.
    std::string cssText() override;
    size_t length() override;                                           // 25: all properties
    std::string item(unsigned long index) override;                     // empty behind the last; the index is cut to 32 bits
    SharedPtr<Property> property(const std::string& name) override;     // new, without value
    SharedPtr<Property> propertyAtIndex(unsigned long index) override;  // as property(item(index))

    SharedPtr<Style> style;  // a change to it shows in the next answer
};

}  // namespace CSS
