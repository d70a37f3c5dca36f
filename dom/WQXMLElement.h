// An element, and the base of the application's own element classes.
//
//     struct Paragraph : WQXMLElement {
//         bool initWithXMLNode(_xmlNode* node) override;   // may look at name and attributes, and refuse
//     };
//
// Such a class enters by the class map of a document (dom/WQXMLDocument.h), or by a constructor
// below: WQXMLElement::newWithName<Paragraph>(u"p"). It needs a default constructor.
#pragma once

#include "dom/WQXMLNode.h"

class WQXMLAttr;

class WQXMLElement : public WQXMLNode {
public:
    // ---- Making one: without a document and without a parent, the caller's alone

    // The name is taken whole, with any colon. Asserts "nil parameter in initWithName"; null for
    // null. The class map of a document is not asked.
    template <class T = WQXMLElement> static Ref<T> newWithName(const NSString& name) { return wq::make<T>(&T::initWithName, name); }
    template <class T = WQXMLElement> static Ref<T> elementWithName(const NSString& name) { return newWithName<T>(name); }
    // The name is split at its first ':'. A null URI makes this newWithName. Asserts "Error
    // initializing WQXMLElement" for a name without a local part and for the prefix "xml"; null then.
    template <class T = WQXMLElement> static Ref<T> newWithQualifiedName_namespaceURI(const NSString& name, const NSString& uri) {
        return wq::make<T>(&T::initWithQualifiedName_namespaceURI, name, uri);
    }
    template <class T = WQXMLElement> static Ref<T> elementWithQualifiedName_namespaceURI(const NSString& name, const NSString& uri) {
        return newWithQualifiedName_namespaceURI<T>(name, uri);
    }

    // ---- Reading

    NSString tagName() const { return nodeName(); }  // with its prefix
    bool hasChildNodes() const override;
    bool hasAttributes() const override;
    Ref<WQXMLNode> firstAttribute() const;  // the next ones follow by nextSibling

    // Null if the attribute is absent, "" if it is empty. The first form finds an attribute of that
    // local name in any namespace; a default stated by a DTD counts as present.
    NSString getAttribute(const NSString& name) const;
    NSString getAttribute_namespaceURI(const NSString& localName, const NSString& uri) const;
    bool hasAttribute(const NSString& name) const;
    bool hasAttribute_namespaceURI(const NSString& localName, const NSString& uri) const;

    NSString innerText() const;  // of all descendants, in document order
    // The first child element of that name; both must be equal, so a null URI finds nothing.
    Ref<WQXMLElement> childElementWithLocalName_namespaceURI(const NSString& localName, const NSString& uri) const;

    // ---- Markup

    // What stands between the tags, and the whole element, as XML; "" without children. Both copy the
    // subtree first: encodeWithWriter is the fast way. Namespaces that come from further up are
    // declared in the copy. A prefix that nothing declares, see setAttribute_namespaceURI_value, is
    // lost. Null for a dead element.
    NSString innerXML() const;
    // `format` indents elements that have no text beside them.
    NSString outerXMLWithFormat(bool format) const;
    NSString outerXML() const { return outerXMLWithFormat(true); }
    // Start tag, attributes, children, end tag. Asserts "Could not write element start tag" and "Could
    // not write element end tag".
    void encodeWithWriter(const Ref<WQXMLWriter>& writer) const override;

    // ---- Edits

    // Puts what the markup says in the place of the children; several nodes and plain text will do. Each
    // prefix must be declared within it. Raises "XML Exception" for markup that is not well-formed, and
    // nothing has changed then. Fires 8 for each old child, and nothing for the new ones.
    // Empty markup changes nothing: see removeChildren. Null is the text "(null)".
    // Namespaces of the new children are declared on this element; one that has no prefix there gets one,
    // and a prefix that is taken changes. Of identifiers only "xml:id" is known to the document.
    // Where a listener lets the element die meanwhile, and where libxml2 cannot attach the children, it
    // raises "NSInternalInconsistencyException" with "Could not add children to element". What an
    // initWithXMLNode raises leaves the new children in place, and those behind it in their default class.
    virtual void setInnerXML(const NSString& markup);

    // Fires 1. A null value is stored as "". Null name: nothing. A prefix that is declared here or further
    // up puts the attribute into that namespace, and getAttribute does not find it by this name; one that
    // is not is a part of the name.
    virtual void setAttribute_value(const NSString& name, const NSString& value);
    // These three fire nothing.
    // An attribute of that name in no namespace, and no other; the name is not split.
    virtual void removeAttribute(const NSString& name);
    // Raises "WQXMLNamespaceException" for a name without a local part, and for a prefix without a URI; the
    // element is as it was then. Null name: nothing. The namespace is declared in the tree when the
    // element is next inserted or given inner XML: until then a document that is written whole has the
    // prefix without a declaration.
    virtual void setAttribute_namespaceURI_value(const NSString& qualifiedName, const NSString& uri, const NSString& value);
    // The name is a local name: it is not split. Null name: nothing.
    virtual void removeAttribute_namespaceURI(const NSString& localName, const NSString& uri);

    // Moves the children from `index` on into `node`, which is put just behind this element if that
    // has a parent. Fires 4 for the new node, then 8 and 4 for each child. Answers the node. Nothing moves
    // into the element itself.
    // Asserts "Invalid parameter not satisfying: [node isKindOfClass:[WQXMLElement class]]".
    Ref<WQXMLNode> splitAtIndex_intoNode(uint64_t index, const Ref<WQXMLNode>& node) override;
    Ref<WQXMLNode> splitAtIndex(uint64_t index) override;  // into a copy of this element
    // Moves all children of `node` to the end of this element and removes `node` from its parent.
    // Attributes stay behind. Asserts "Merging element with non-element", and goes on. The element
    // itself: nothing moves, and it is removed.
    void mergeWithNode(const Ref<WQXMLNode>& node) override;

    // Name, namespace, attributes and namespace declarations; names the same document. Raises
    // "WQXMLNamespaceException" where an attribute has a colon in its name and no namespace, as in HTML,
    // and asserts "Error initializing WQXMLElement" for the prefix "xml".
    Ref<WQXMLNode> copyWithZone() const override;

    // ---- In name only: each asserts "This function is unimplemented" and answers null

    std::optional<Sequence> getElementsByTagName(const NSString& name) const;
    std::optional<Sequence> getElementsByTagName_namespaceURI(const NSString& localName, const NSString& uri) const;
    Ref<WQXMLAttr> getAttributeNode(const NSString& name) const;
    Ref<WQXMLAttr> getAttributeNode_namespaceURI(const NSString& localName, const NSString& uri) const;
    Ref<WQXMLAttr> setAttributeNode(const Ref<WQXMLAttr>& attribute);
    Ref<WQXMLAttr> setAttributeNodeNS(const Ref<WQXMLAttr>& attribute);
    Ref<WQXMLAttr> removeAttributeNode(const Ref<WQXMLAttr>& attribute);

    // ---- For subclasses

    virtual bool initWithName(const NSString& name);
    virtual bool initWithQualifiedName_namespaceURI(const NSString& name, const NSString& uri);

    // ---- For dom only

    // Fires 1 on this element.
    void notifyAttrChanged_newValue_prevValue_relatedNode(
        const NSString& name,
        const NSString& newValue,
        NSString prevValue,
        const Ref<WQXMLNode>& relatedNode);
    size_t numberOfOwnedNamespaces() const;  // structures made for attributes, kept until this element dies
};
static_assert(sizeof(WQXMLElement) == 32);
