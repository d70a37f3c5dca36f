// Selectors: whether a rule applies to an element, and how specific it is.
//
// They match raw libxml2 nodes by local names; namespaces play no part. A selector is built once, by the parser, and not
// changed afterwards. Chains and lists of any length are walked in loops.
//
// IDs and the attribute operators "^=", "$=" and "*=" are read, and count in specificity, but matching one is a hard
// assertion; without hard assertions it fails. So is asking for the text of one of them, of "|=" and of a mere
// attribute name; without hard assertions they add none.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "common/core/include/Shared.h"

struct _xmlNode;

namespace CSS {

// A part of a selector. It owns what it points at.
class SimpleSelector : public SharedObject {
public:
    SimpleSelector(const SimpleSelector&) = delete;
    SimpleSelector& operator=(const SimpleSelector&) = delete;
    ~SimpleSelector() override;

    // Whether the part applies to a node, which must not be null.
    virtual bool Match(_xmlNode* node) const = 0;

    // For a condition, with that of all conditions behind it. Sums wrap at 16 bits and spill from one field into the
    // next: see SpecificityWithWeights.
    virtual uint16_t Specificity() const = 0;

    virtual void Print() const;                                // on standard output, for debugging, without a line end
    virtual void AppendSelectorText(std::string& text) const;  // the source form, with all conditions behind it

    // Puts a Condition (see below) at the end of the list that this part begins; takes it over.
    void Append(SimpleSelector* condition);

    // That of a style attribute: bit 15 alone.
    static uint16_t StyleAttributeSpecificity();

    // The layout: `a` style attributes from bit 15 up, `b` IDs from bit 10, `c` attributes and classes from bit 5, `d`
    // elements and pseudo-elements from bit 0.
    static uint16_t SpecificityWithWeights(int a, int b, int c, int d);

    const int32_t selectorType;      // the number of its class, 1 to 15; the engine does not read it
    SimpleSelector* next = nullptr;  // the next condition

protected:
    // `type` is a number of the class's own.
    explicit SimpleSelector(int32_t type) : selectorType(type) {}

private:
    SimpleSelector* last = nullptr;  // where Append goes on
};

// An element name with its conditions, and the part on its left.
class TypeSelector : public SimpleSelector {
public:
    // How an element stands to the one that the part on the left matches; None where there is no such part.
    enum Combinator : int32_t { None = 0, Descendant = 1, Child = 2, AdjacentSibling = 3, GeneralSibling = 4 };

    TypeSelector() : SimpleSelector(2) {}
    ~TypeSelector() override;

    // Name and conditions of this part alone. Names compare without case in HTML documents; in others, and without a
    // document, exactly.
    bool Match(_xmlNode* node) const override;
    uint16_t Specificity() const override;                      // with the parts on its left
    void Print() const override;                                // the combinators stand behind their parts
    void AppendSelectorText(std::string& text) const override;  // "a>b.c"; "*" where no name was written

    TypeSelector* chainLeft = nullptr;  // owned; null in the leftmost part
    Combinator combinator = None;       // to the part on the left
    std::string name;                   // as typed, or "*"
};

// A complete selector: a chain of parts, the rightmost one at its head.
class Selector : public SimpleSelector {
public:
    Selector() : SimpleSelector(1) {}
    ~Selector() override;

    // Walks the chain leftward without going back: the nearest ancestor that matches a part is taken for good.
    // "~" never matches. A selector without parts is a hard assertion here and in Specificity; without hard
    // assertions it fails, and has 0.
    bool Match(_xmlNode* node) const override;
    uint16_t Specificity() const override;
    void Print() const override;
    void AppendSelectorText(std::string& text) const override;

    // Makes a part the new head, with the old one on its left; takes it over.
    void Prepend(TypeSelector* part);

    TypeSelector* chainHead = nullptr;  // the rightmost part; owned
};

// ---- Conditions

// What stands behind an element name: an ID, a class, an attribute or a pseudo-element.
class Condition : public SimpleSelector {
public:
    uint16_t Specificity() const override;
    void AppendSelectorText(std::string& text) const override;

protected:
    // `anOwnSpecificity` is that without the conditions behind, laid out as in SpecificityWithWeights.
    Condition(int32_t type, uint16_t anOwnSpecificity) : SimpleSelector(type), ownSpecificity(anOwnSpecificity) {}
    // Adds the source form of this condition alone. Where it is not overridden it is a hard assertion, and adds
    // nothing.
    virtual void appendOwnText(std::string& text) const;

    // Writes the text of this condition and of those behind it, up to one that has no form for printing.
    void printOwnTexts() const;
    virtual bool isPrintable() const { return false; }  // whether it has a form for printing

private:
    const uint16_t ownSpecificity;
};

// "#name".
class IDSelector : public Condition {
public:
    explicit IDSelector(std::string aName);     // with its number sign
    bool Match(_xmlNode* node) const override;  // not supported: a hard assertion

    std::string name;  // with its number sign
};

// Whatever follows a colon. It never matches.
class PseudoElement : public Condition {
public:
    explicit PseudoElement(std::string aName);  // without the colon
    bool Match(_xmlNode* node) const override;  // false
    void Print() const override;

    std::string name;  // empty for the function form

protected:
    void appendOwnText(std::string& text) const override;
    bool isPrintable() const override { return true; }
};

// Attributes are looked up by local name, in a namespace or not, and with the defaults of the DTD. Values compare exactly,
// in HTML as well; they are the raw text of the token: one in quotes has them, and so matches no plain value.
class AttributeSelector : public Condition {
public:
    // The maker of a selector sets its value; "[name]" has none.
    std::string attributeName, attributeValue;

protected:
    // `aName` is a local name.
    AttributeSelector(int32_t type, std::string aName) : Condition(type, 32), attributeName(std::move(aName)) {}
};

// "[name]".
class AttributeNameSelector : public AttributeSelector {
public:
    // `aName` is a local name.
    explicit AttributeNameSelector(std::string aName) : AttributeSelector(8, std::move(aName)) {}
    bool Match(_xmlNode* node) const override;  // has it
};

// "[name=value]".
class AttributeValueSelector : public AttributeSelector {
public:
    // `aName` is a local name.
    explicit AttributeValueSelector(std::string aName) : AttributeSelector(9, std::move(aName)) {}
    bool Match(_xmlNode* node) const override;  // equals

protected:
    void appendOwnText(std::string& text) const override;
};

// "[name~=value]", and ".value" for the attribute "class".
class AttributeListSelector : public AttributeSelector {
public:
    // `aName` is a local name.
    explicit AttributeListSelector(std::string aName) : AttributeSelector(10, std::move(aName)) {}
    bool Match(_xmlNode* node) const override;  // one of the words between blanks and tabs, not line ends, equals
    void Print() const override;

    bool isClass = false;  // written with "."

protected:
    void appendOwnText(std::string& text) const override;
    bool isPrintable() const override { return true; }
};

// "[name|=value]".
class AttributeHyphenSelector : public AttributeSelector {
public:
    // `aName` is a local name.
    explicit AttributeHyphenSelector(std::string aName) : AttributeSelector(11, std::move(aName)) {}
    bool Match(_xmlNode* node) const override;  // what stands before the first hyphen equals; "en" does not match "en"
};

// "[name^=value]".
class AttributePrefixSelector : public AttributeSelector {
public:
    // `aName` is a local name.
    explicit AttributePrefixSelector(std::string aName) : AttributeSelector(12, std::move(aName)) {}
    bool Match(_xmlNode* node) const override;  // not supported: a hard assertion
};

// "[name$=value]".
class AttributeSuffixSelector : public AttributeSelector {
public:
    // `aName` is a local name.
    explicit AttributeSuffixSelector(std::string aName) : AttributeSelector(13, std::move(aName)) {}
    bool Match(_xmlNode* node) const override;  // not supported: a hard assertion
};

// "[name*=value]".
class AttributeSubstringSelector : public AttributeSelector {
public:
    // `aName` is a local name.
    explicit AttributeSubstringSelector(std::string aName) : AttributeSelector(14, std::move(aName)) {}
    bool Match(_xmlNode* node) const override;  // not supported: a hard assertion
};

}  // namespace CSS
