#include "dom/WQXMLElement.h"

#include <libxml/parser.h>

#include <climits>

#include "dom/Binding.h"
#include "dom/WQXMLAttr.h"
#include "dom/WQXMLDocument.h"
#include "dom/WQXMLExceptionNames.h"
#include "dom/WQXMLMutationEvent.h"
#include "dom/WQXMLWriter.h"
#include "platform/Assertion.h"

using wq::Binding;
using wq::Bytes;

// ---- Making one

namespace {

// The object under construction is the wrapper, so the hook makes none.
xmlNodePtr newUnregisteredElement(const NSString& name) {
    const Bytes bytes(name);
    return wq::unregistered([&] { return xmlNewNode(nullptr, bytes); });
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
    setOwnedNs(ns.get());
    static_cast<void>(ns.release());  // it has an owner
    return true;
}

// ---- Reading

bool WQXMLElement::hasChildNodes() const { return xmlNode() && xmlNode()->children; }
bool WQXMLElement::hasAttributes() const { return xmlNode() && xmlNode()->properties; }
Ref<WQXMLNode> WQXMLElement::firstAttribute() const { return wq::wrapped(xmlNode() ? xmlNode()->properties : nullptr); }

namespace {
// As xmlGetProp has it, without its copy where the value is one text.
NSString attributeOf(xmlNodePtr element, const Bytes& name) {
    const xmlAttr* attribute = xmlHasProp(element, name);
    if (!attribute) return nullptr;
    const xmlNode* text = attribute->type == XML_ATTRIBUTE_NODE ? attribute->children : nullptr;
    if (text && !text->next && text->type == XML_TEXT_NODE) return wq::fromUTF8(text->content);
    return wq::takeString(xmlGetProp(element, name));
}
}  // namespace

NSString WQXMLElement::getAttribute(const NSString& name) const { return attributeOf(xmlNode(), Bytes(name)); }

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

// ---- Markup

namespace {
// What libxml2 writes for a node and those behind it, if `all`; null where it fails.
NSString markupOf(xmlNodePtr node, bool all, bool format) {
    const std::unique_ptr<xmlOutputBuffer, decltype(&xmlOutputBufferClose)> output(xmlAllocOutputBuffer(nullptr), &xmlOutputBufferClose);
    if (!output) return nullptr;
    for (; node; node = all ? node->next : nullptr) xmlNodeDumpOutput(output.get(), nullptr, node, 0, format, nullptr);
    return output->error
               ? NSString()
               : wq::fromUTF8(
                     {reinterpret_cast<const char*>(xmlOutputBufferGetContent(output.get())), xmlOutputBufferGetSize(output.get())});
}
}  // namespace

NSString WQXMLElement::innerXML() const {
    if (!xmlNode()) return nullptr;
    const wq::KeptAlive kept(this);
    if (ownedNs()) self()->reconcileNamespace();
    auto copy = [this] { return xmlDocCopyNodeList(nullptr, xmlNode()->children); };
    auto dump = [](xmlNodePtr copies) { return markupOf(copies, true, false); };
    return wq::fromCopy(copy, dump, xmlFreeNodeList);  // nobody else knows the copies
}

NSString WQXMLElement::outerXMLWithFormat(bool format) const {
    if (!xmlNode()) return nullptr;
    const wq::KeptAlive kept(this);
    if (ownedNs()) self()->reconcileNamespace();
    auto copy = [this] { return xmlDocCopyNode(xmlNode(), nullptr, 1); };
    auto dump = [format](xmlNodePtr node) { return node ? markupOf(node, false, format) : nullptr; };
    return wq::fromCopy(copy, dump, xmlFreeNode);  // nobody else knows the copy
}

namespace {
// Null where there is nothing to read and nothing to report.
wq::OwnDocument readFragment(std::string_view text) {
    wq::startLibrary();
    if (text.size() > INT_MAX) return nullptr;
    auto read = [&] { return xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr, 0); };
    return wq::OwnDocument(wq::guarded(read, xmlFreeDoc));
}
}  // namespace

void WQXMLElement::setInnerXML(const NSString& markup) {
    if (!xmlNode()) return;
    const Ref<WQXMLNode> receiver = self();

    // 1-2. Nothing is touched before the markup is known to be well-formed.
    const std::string text = "<WQXMLFragment>" + wq::toUTF8(wq::printed(markup)) + "</WQXMLFragment>";
    const wq::OwnDocument fragment = readFragment(text);
    const _xmlNode* root = fragment ? xmlDocGetRootElement(fragment.get()) : nullptr;

    // 3. Empty markup leaves the children: wanted.
    if (!root || !root->children) return;

    // 4-6. A listener may move this element, or let its document go.
    removeChildren();
    const wq::KeptAlive kept(this);
    Binding::appendCopies(this, root->children);
}

void WQXMLElement::encodeWithWriter(const Ref<WQXMLWriter>& writer) const {
    if (!xmlNode()) return;
    const wq::KeptAlive kept(this);
    const int32_t started = writer->startElement_prefix_namespace(localName(), prefix(), namespaceURI());
    WQ_ASSERT(started != -1, u"Could not write element start tag");
    for (Ref<WQXMLNode> attribute = firstAttribute(); attribute; attribute = attribute->nextSibling()) attribute->encodeWithWriter(writer);
    for (Ref<WQXMLNode> child = firstChild(); child; child = child->nextSibling()) child->encodeWithWriter(writer);
    const int32_t ended = writer->endElement();
    WQ_ASSERT(ended != -1, u"Could not write element end tag");
}

// ---- Attributes

void WQXMLElement::setAttribute_value(const NSString& name, const NSString& value) {
    if (!xmlNode() || !name) return;
    const wq::KeptAlive kept(this);
    const Bytes bytes(name);
    NSString previous = attributeOf(xmlNode(), bytes);
    xmlAttrPtr attribute = nullptr;
    Binding::settleIdentifiers(xmlNode(), name);
    wq::guarded([&] { attribute = xmlSetProp(xmlNode(), bytes, Bytes(value)); });  // old value texts go by the hook
    notifyAttrChanged_newValue_prevValue_relatedNode(name, value, std::move(previous), wq::wrapped(attribute));
}

void WQXMLElement::removeAttribute(const NSString& name) {
    if (!xmlNode()) return;
    const wq::KeptAlive kept(this);
    wq::guarded([&] { xmlUnsetProp(xmlNode(), Bytes(name)); });  // its wrapper goes by the hook
}

void WQXMLElement::setAttribute_namespaceURI_value(const NSString& qualifiedName, const NSString& uri, const NSString& value) {
    if (!xmlNode() || !qualifiedName) return;
    const wq::KeptAlive kept(this);
    const NSString local = localNameForQName(qualifiedName), prefix = prefixForQName(qualifiedName);
    if (!local || (!uri && prefix))
        throw WQXMLException(WQXMLNamespaceException, u"Mismatch between qualified name and namespace parameters.");

    xmlNsPtr ns = uri ? xmlSearchNs(xmlNode()->doc, xmlNode(), Bytes(prefix)) : nullptr;
    if (uri && !(ns && xmlStrEqual(ns->href, Bytes(uri)))) {
        wq::OwnNamespace made = wq::newNamespace(uri, prefix);
        if (!made) return;
        ns = made.get();
        Binding::ownedNamespaces(this).push_back(ns);
        static_cast<void>(made.release());  // it has an owner
    }
    Binding::settleIdentifiers(xmlNode(), local);
    wq::guarded([&] { xmlSetNsProp(xmlNode(), ns, Bytes(local), Bytes(value)); });  // old value texts go by the hook
}

void WQXMLElement::removeAttribute_namespaceURI(const NSString& localName, const NSString& uri) {
    if (!xmlNode() || !localName) return;
    const wq::KeptAlive kept(this);
    wq::OwnNamespace ns = uri ? wq::newNamespace(uri, nullptr) : nullptr;
    WQ_ASSERT(!uri || ns, u"Internal Error: Could not create namespace for removeAttribute");
    wq::guarded([&] { xmlUnsetNsProp(xmlNode(), ns.get(), Bytes(localName)); });  // its wrapper goes by the hook
}

void WQXMLElement::notifyAttrChanged_newValue_prevValue_relatedNode(
    const NSString& name,
    const NSString& newValue,
    NSString prevValue,
    const Ref<WQXMLNode>& relatedNode) {
    if (!anyoneListens()) return;
    const int32_t attrChange = prevValue ? 2 : 1;
    dispatchEvent(WQXMLMutationEvent::attrModifiedEventWithTarget_attrName_attrChange_prevValue_newValue_relatedNode(
        self(), name, attrChange, std::move(prevValue), newValue, relatedNode));
}

size_t WQXMLElement::numberOfOwnedNamespaces() const { return Binding::numberOfOwnedNamespaces(this); }

// ---- Split, merge, copy

Ref<WQXMLNode> WQXMLElement::splitAtIndex_intoNode(uint64_t index, const Ref<WQXMLNode>& into) {
    const Ref<WQXMLNode> receiver = self(), node = into;
    WQ_ASSERT(wq::cast<WQXMLElement>(node), u"Invalid parameter not satisfying: [node isKindOfClass:[WQXMLElement class]]");
    Ref<WQXMLNode> child = childAtIndex(index);
    if (!node) return nullptr;
    if (child == node) child = child->nextSibling();  // it goes ahead of the others
    if (Ref<WQXMLNode> parent = parentNode()) parent->insertChild_before(node, nextSibling());
    while (child && node != this) {
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
    const wq::KeptAlive kept(this);
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

// ---- In name only

namespace {
constexpr const char16_t* kUnimplemented = u"This function is unimplemented";
}  // namespace

std::optional<WQXMLNode::Sequence> WQXMLElement::getElementsByTagName(const NSString&) const {
    WQ_ASSERT(false, kUnimplemented);
    return std::nullopt;
}

std::optional<WQXMLNode::Sequence> WQXMLElement::getElementsByTagName_namespaceURI(const NSString&, const NSString&) const {
    WQ_ASSERT(false, kUnimplemented);
    return std::nullopt;
}

Ref<WQXMLAttr> WQXMLElement::getAttributeNode(const NSString&) const {
    WQ_ASSERT(false, kUnimplemented);
    return nullptr;
}

Ref<WQXMLAttr> WQXMLElement::getAttributeNode_namespaceURI(const NSString&, const NSString&) const {
    WQ_ASSERT(false, kUnimplemented);
    return nullptr;
}

Ref<WQXMLAttr> WQXMLElement::setAttributeNode(const Ref<WQXMLAttr>&) {
    WQ_ASSERT(false, kUnimplemented);
    return nullptr;
}

Ref<WQXMLAttr> WQXMLElement::setAttributeNodeNS(const Ref<WQXMLAttr>&) {
    WQ_ASSERT(false, kUnimplemented);
    return nullptr;
}

Ref<WQXMLAttr> WQXMLElement::removeAttributeNode(const Ref<WQXMLAttr>&) {
    WQ_ASSERT(false, kUnimplemented);
    return nullptr;
}
