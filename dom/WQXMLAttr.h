// An attribute. Its value stands in text children of its own; `nodeValue` is null.
#pragma once

#include "dom/WQXMLElement.h"

class WQXMLAttr : public WQXMLNode {
public:
    NSString name() const { return nodeName(); }  // with its prefix
    NSString value() const;                       // null without an owner element
    // The text as it reads, entities and all. Null leaves the attribute without a value, which reads
    // back as "". Control characters but for TAB, LF and CR are lost. An identifier is known by its
    // new value from here on. The text children go, and new ones come. Fires nothing.
    virtual void setValue(const NSString& value);
    Ref<WQXMLElement> ownerElement() const;          // the parent node: null for an attribute that is on no element
    virtual bool specified() const { return true; }  // also if a DTD gave it. Null: false

    // Asserts "Could not encode text node".
    void encodeWithWriter(const Ref<WQXMLWriter>& writer) const override;

    template <class T> class NilAttr : public NilNode<T> {
    public:
        bool specified() const override { return false; }
    };
    template <class T> using Nil = NilAttr<T>;
};
