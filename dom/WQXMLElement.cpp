#include "dom/WQXMLElement.h"

#include "dom/Binding.h"
#include "dom/WQXMLAttr.h"
#include "dom/WQXMLDocument.h"
#include "dom/WQXMLExceptionNames.h"
#include "dom/WQXMLMutationEvent.h"
#include "platform/Assertion.h"

using wq::Binding;
using wq::Bytes;

// ---- Making one

namespace {

// The object under construction is the wrapper, so the hook makes none.
xmlNodePtr newUnregisteredElement(const NSString& name) {
    wq::startLibrary();
    const Bytes bytes(name);
    const bool previous = setRegisterNode(false);
    wq::GuardedCall guard;
    xmlNodePtr node = xmlNewNode(nullptr, bytes);
    setRegisterNode(previous);
    if (guard.failed()) xmlFreeNode(node);  // it has no wrapper
    guard.raise();
    return node;
}

}  // namespace

bool WQXMLElement::initWithName(const NSString& name) {
    WQ_ASSERT(name, u"nil parameter in initWithName");
    return Binding::bindOwnNode(this, newUnregisteredElement(name));
}

bool WQXMLElement::initWithQualifiedName_namespaceURI(const NSString& name, const NSString& uri) {
    if (!uri) return initWithName(name);
    const NSString local = localNameForQName(name), prefix = prefixForQName(name);
    wq::OwnNamespace ns = local ? wq::newNamespace(uri, prefix) : nullptr;
    xmlNodePtr node = ns ? newUnregisteredElement(local) : nullptr;
    if (!node) {
        WQ_ASSERT(false, u"Error initializing WQXMLElement");
        return false;
    }
    xmlSetNs(node, ns.get());
    if (!Binding::bindOwnNode(this, node)) return false;
    setOwnedNs(ns.release());
    return true;
}

// ---- Reading

bool WQXMLElement::hasChildNodes() const { return xmlNode() && xmlNode()->children; }
bool WQXMLElement::hasAttributes() const { return xmlNode() && xmlNode()->properties; }
Ref<WQXMLNode> WQXMLElement::firstAttribute() const { return wq::wrapped(xmlNode() ? xmlNode()->properties : nullptr); }

NSString WQXMLElement::getAttribute(const NSString& name) const { return wq::takeString(xmlGetProp(xmlNode(), Bytes(name))); }

NSString WQXMLElement::getAttribute_namespaceURI(const NSString& localName, const NSString& uri) const {
    return wq::takeString(xmlGetNsProp(xmlNode(), Bytes(localName), Bytes(uri)));
}

bool WQXMLElement::hasAttribute(const NSString& name) const { return xmlHasProp(xmlNode(), Bytes(name)) != nullptr; }

bool WQXMLElement::hasAttribute_namespaceURI(const NSString& localName, const NSString& uri) const {
    return static_cast<bool>(getAttribute_namespaceURI(localName, uri));
}

NSString WQXMLElement::innerText() const { return wq::takeString(xmlNodeGetContent(xmlNode())); }

Ref<WQXMLElement> WQXMLElement::childElementWithLocalName_namespaceURI(const NSString& localName, const NSString& uri) const {
    if (!localName || !uri) return nullptr;
    for (Ref<WQXMLNode> child = firstChild(); child; child = child->nextSibling())
        if (child->nodeType() == XML_ELEMENT_NODE && child->localName() == localName && child->namespaceURI() == uri)
            return wq::cast<WQXMLElement>(child);
    return nullptr;
}

// ---- Attributes

void WQXMLElement::setAttribute_value(const NSString& name, const NSString& value) {
    if (!xmlNode() || !name) return;
    const Ref<WQXMLNode> receiver = self();
    const Ref<WQXMLDocument> document = ownerDocument();
    const NSString previous = getAttribute(name);
    xmlAttrPtr attribute = nullptr;
    wq::guarded([&] { attribute = xmlSetProp(xmlNode(), Bytes(name), Bytes(value)); });  // old value texts go by the hook
    notifyAttrChanged_newValue_prevValue_relatedNode(name, value, previous, wq::wrapped(attribute));
}

void WQXMLElement::removeAttribute(const NSString& name) {
    if (!xmlNode()) return;
    const Ref<WQXMLNode> receiver = self();
    const Ref<WQXMLDocument> document = ownerDocument();
    wq::guarded([&] { xmlUnsetProp(xmlNode(), Bytes(name)); });  // its wrapper goes by the hook
}

void WQXMLElement::setAttribute_namespaceURI_value(const NSString& qualifiedName, const NSString& uri, const NSString& value) {
    if (!xmlNode() || !qualifiedName) return;
    const Ref<WQXMLNode> receiver = self();
    const Ref<WQXMLDocument> document = ownerDocument();
    const NSString local = localNameForQName(qualifiedName), prefix = prefixForQName(qualifiedName);
    if (!local || (!uri && prefix))
        throw WQXMLException(WQXMLNamespaceException, u"Mismatch between qualified name and namespace parameters.");

    xmlNsPtr ns = uri ? xmlSearchNs(xmlNode()->doc, xmlNode(), Bytes(prefix)) : nullptr;
    if (uri && !(ns && xmlStrEqual(ns->href, Bytes(uri)))) {
        wq::OwnNamespace made = wq::newNamespace(uri, prefix);
        if (!made) return;
        ns = made.get();
        Binding::ownedNamespaces(this).push_back(made.release());
    }
    wq::guarded([&] { xmlSetNsProp(xmlNode(), ns, Bytes(local), Bytes(value)); });  // old value texts go by the hook
}

void WQXMLElement::removeAttribute_namespaceURI(const NSString& localName, const NSString& uri) {
    if (!xmlNode() || !localName) return;
    const Ref<WQXMLNode> receiver = self();
    const Ref<WQXMLDocument> document = ownerDocument();
    wq::OwnNamespace ns = uri ? wq::newNamespace(uri, nullptr) : nullptr;
    WQ_ASSERT(!uri || ns, u"Internal Error: Could not create namespace for removeAttribute");
    wq::guarded([&] { xmlUnsetNsProp(xmlNode(), ns.get(), Bytes(localName)); });  // its wrapper goes by the hook
}

void WQXMLElement::notifyAttrChanged_newValue_prevValue_relatedNode(
    const NSString& name,
    const NSString& newValue,
    const NSString& prevValue,
    const Ref<WQXMLNode>& relatedNode) {
    if (!anyoneListens()) return;
    const int32_t attrChange = prevValue ? 2 : 1;
    dispatchEvent(WQXMLMutationEvent::attrModifiedEventWithTarget_attrName_attrChange_prevValue_newValue_relatedNode(
        self(), name, attrChange, prevValue, newValue, relatedNode));
}

size_t WQXMLElement::numberOfOwnedNamespaces() const { return Binding::numberOfOwnedNamespaces(this); }

// ---- Split, merge, copy

Ref<WQXMLNode> WQXMLElement::splitAtIndex_intoNode(uint64_t index, const Ref<WQXMLNode>& into) {
    const Ref<WQXMLNode> receiver = self(), node = into;
    WQ_ASSERT(wq::cast<WQXMLElement>(node), u"Invalid parameter not satisfying: [node isKindOfClass:[WQXMLElement class]]");
    Ref<WQXMLNode> child = childAtIndex(index);
    if (!node) return nullptr;
    if (Ref<WQXMLNode> parent = parentNode()) parent->insertChild_before(node, nextSibling());
    while (child) {
        const Ref<WQXMLNode> following = child->nextSibling();
        if (!node->appendChild(child)) break;  // which takes it from here first
        child = following;
    }
    return node;
}

Ref<WQXMLNode> WQXMLElement::splitAtIndex(uint64_t index) { return xmlNode() ? splitAtIndex_intoNode(index, copy()) : nullptr; }

void WQXMLElement::mergeWithNode(const Ref<WQXMLNode>& merged) {
    const Ref<WQXMLNode> receiver = self(), node = merged;
    WQ_ASSERT(node->nodeType() == XML_ELEMENT_NODE, u"Merging element with non-element");
    if (!xmlNode()) return;
    if (node != this)
        while (Ref<WQXMLNode> child = node->firstChild())
            if (!insertChild_before(child, nullptr)) break;
    if (Ref<WQXMLNode> parent = node->parentNode()) parent->removeChild(node);
}

Ref<WQXMLNode> WQXMLElement::copyWithZone() const {
    if (!xmlNode()) return nullptr;
    const auto copied =
        wq::make<WQXMLElement>(wq::classOf(*this), &WQXMLElement::initWithQualifiedName_namespaceURI, nodeName(), namespaceURI());
    if (!copied) return nullptr;
    Binding::nameDocument(copied->xmlNode(), xmlNode()->doc);
    Binding::detach(copied->xmlNode());
    for (Ref<WQXMLNode> attribute = firstAttribute(); attribute; attribute = attribute->nextSibling())
        copied->setAttribute_namespaceURI_value(attribute->nodeName(), attribute->namespaceURI(), wq::cast<WQXMLAttr>(attribute)->value());
    xmlNsPtr* declarations = &copied->xmlNode()->nsDef;
    while (*declarations) declarations = &(*declarations)->next;  // libxml2 may have declared "xml" there
    *declarations = xmlCopyNamespaceList(xmlNode()->nsDef);
    return copied;
}
