// An attribute. Its value stands in text children of its own; `nodeValue` is null.
#pragma once

#include "dom/WQXMLElement.h"

class WQXMLAttr : public WQXMLNode {
public:
    NSString name() const { return nodeName(); }  // with its prefix
    NSString value() const;                       // null without an owner element
    Ref<WQXMLElement> ownerElement() const;
    virtual bool specified() const { return true; }  // also if a DTD gave it. Null: false

    template <class T> class NilAttr : public NilNode<T> {
    public:
        bool specified() const override { return false; }
    };
    template <class T> using Nil = NilAttr<T>;
};
