#include "dom/WQXMLDocument.h"

#include <libxml/HTMLparser.h>
#include <libxml/SAX2.h>
#include <libxml/parser.h>

#include <climits>
#include <cstring>

#include "dom/Binding.h"
#include "platform/Assertion.h"

using wq::Binding;
using wq::Bytes;

// ---- Making one

bool WQXMLDocument::init() {
    wq::startLibrary();
    return initWithDocImpl(xmlNewDoc(BAD_CAST "1.0"));
}

bool WQXMLDocument::initWithDocImpl(xmlDocPtr doc) {
    wq::startLibrary();
    my.docImpl = doc;
    if (doc) Binding::bindDocument(this, doc);
    return doc;
}

bool WQXMLDocument::initWithArguments(const Ref<NSDictionary>& arguments) {
    if (!init()) return false;
    takeClassMap(arguments);
    if (auto url = arguments->objectForKey(WQXMLDocumentBaseURLKey).object<NSURL>()) setBaseURI(url);
    return true;
}

bool WQXMLDocument::initWithContentsOfURL_arguments_error(const Ref<NSURL>& url, const Ref<NSDictionary>& arguments, Ref<NSError>* error) {
    if (error) *error = nullptr;
    Ref<NSError> failure;
    const Ref<NSData> data = NSData::dataWithContentsOfURL_error(url, &failure);
    if (error) *error = failure;
    if (!data || failure) return false;
    return initWithData_baseURL_arguments_error(data, url, arguments, error);
}

namespace {
// Elements are wrapped by elements: an object made for trial tells.
const wq::Class* checked(const wq::Class* aClass) {
    if (wq::cast<WQXMLElement>(Ref<wq::Object>::adopt(aClass->make()))) return aClass;
    throw WQXMLException(u"NSInvalidArgumentException", u"A class in the map of element classes is no WQXMLElement");
}
}  // namespace

void WQXMLDocument::takeClassMap(const Ref<NSDictionary>& arguments) {
    my.elementClasses = arguments->objectForKey(DefaultElementClassesKey).object<NSDictionary>();
    if (!my.elementClasses) my.elementClasses = defaultNodeClasses();
    if (!my.elementClasses) return;
    for (auto& [uri, value] : *my.elementClasses.get()) {
        const auto names = value.object<NSDictionary>();
        if (!names) continue;
        ClassesByName& classes = bookkeeping.classTable[wq::toUTF8(uri)];
        for (auto& [name, named] : *names.get())
            if (const wq::Class* aClass = named.classValue()) classes[wq::toUTF8(name)] = checked(aClass);
    }
}

void WQXMLDocument::setBaseURI(const Ref<NSURL>& url) {
    xmlFree(const_cast<xmlChar*>(my.docImpl->URL));
    my.docImpl->URL = xmlStrdup(Bytes(url->absoluteString()));
}

// ---- Parsing

namespace {

// libxml2's own callbacks, behind ours. Process-wide: two parses cannot overlap.
startElementSAXFunc oldStartElement;
startElementNsSAX2Func oldStartElementNs;
startDocumentSAXFunc oldStartDocument;
endDocumentSAXFunc oldEndDocument;

void settleOrStop(void* context) {
    if (wq::GuardedCall::current->failed())
        gCheckNode = nullptr;
    else
        wq::keepFailure(checkNode);
    if (wq::GuardedCall::current->failed()) wq::stopParser(context);
}

// The document wrapper can be reached from every node from here on.
void mySAX2StartDocument(void* context) {
    oldStartDocument(context);
    auto* parser = static_cast<xmlParserCtxtPtr>(context);
    if (parser->myDoc) Binding::bindDocument(static_cast<WQXMLDocument*>(parser->_private), parser->myDoc);
}

void mySAX2StartElement(void* context, const xmlChar* name, const xmlChar** attributes) {
    const bool previous = std::exchange(wq::gInStartElement, true);
    oldStartElement(context, name, attributes);
    wq::gInStartElement = previous;
    settleOrStop(context);
}

void mySAX2StartElementNs(
    void* context,
    const xmlChar* localName,
    const xmlChar* prefix,
    const xmlChar* uri,
    int numberOfNamespaces,
    const xmlChar** namespaces,
    int numberOfAttributes,
    int numberOfDefaulted,
    const xmlChar** attributes) {
    const bool previous = std::exchange(wq::gInStartElement, true);
    oldStartElementNs(context, localName, prefix, uri, numberOfNamespaces, namespaces, numberOfAttributes, numberOfDefaulted, attributes);
    wq::gInStartElement = previous;
    settleOrStop(context);
}

void mySAX2EndDocument(void* context) {
    oldEndDocument(context);
    settleOrStop(context);
}

void putOurCallbacks(xmlSAXHandler& sax, bool skipWhitespace) {
    oldStartElement = std::exchange(sax.startElement, mySAX2StartElement);
    oldStartDocument = std::exchange(sax.startDocument, mySAX2StartDocument);
    oldEndDocument = std::exchange(sax.endDocument, mySAX2EndDocument);
    if (skipWhitespace) sax.ignorableWhitespace = xmlSAX2IgnorableWhitespace;
}

xmlDocPtr parseHTML(std::string_view bytes, bool skipWhitespace, void* wrapper) {
    xmlSAXHandler sax;
    std::memset(&sax, 0, sizeof sax);  // libxml2 fills in a part of it
    xmlSAX2InitHtmlDefaultSAXHandler(&sax);
    sax.setDocumentLocator = nullptr;
    putOurCallbacks(sax, skipWhitespace);

    htmlParserCtxtPtr context = htmlCreateMemoryParserCtxt(bytes.data(), static_cast<int>(bytes.size()));
    if (!context) return nullptr;
    xmlSAXHandlerPtr previous = std::exchange(context->sax, &sax);
    context->_private = wrapper;
    htmlParseDocument(context);
    xmlDocPtr doc = std::exchange(context->myDoc, nullptr);  // well-formed or not
    context->sax = previous;
    context->userData = nullptr;
    htmlFreeParserCtxt(context);
    return doc;
}

xmlDocPtr parseXML(std::string_view bytes, bool skipWhitespace, void* wrapper) {
    xmlSAXHandler sax;
    std::memset(&sax, 0, sizeof sax);  // libxml2 fills in a part of it
    xmlSAXVersion(&sax, 2);
    putOurCallbacks(sax, skipWhitespace);
    oldStartElementNs = std::exchange(sax.startElementNs, mySAX2StartElementNs);
    return xmlSAXParseMemoryWithData(&sax, bytes.data(), static_cast<int>(bytes.size()), 0, wrapper);
}

}  // namespace

bool WQXMLDocument::initWithData_baseURL_arguments_error(
    const Ref<NSData>& data,
    const Ref<NSURL>& baseURL,
    const Ref<NSDictionary>& arguments,
    Ref<NSError>*) {
    wq::startLibrary();
    takeClassMap(arguments);
    const std::string_view bytes = data->view();
    if (bytes.size() > INT_MAX) return false;

    xmlLoadExtDtdDefaultValue = XML_DETECT_IDS;  // the last parse may have been somebody else's
    const auto parse = arguments->containsKey(WQXMLDocumentParseAsHTMLKey) ? parseHTML : parseXML;
    const bool skipWhitespace = arguments->objectForKey(WQXMLDocumentSkipWhitespaceKey).boolean();
    xmlDocPtr parsed = wq::guarded([&] { return parse(bytes, skipWhitespace, this); }, xmlFreeDoc);

    if (!initWithDocImpl(parsed)) return false;
    setBaseURI(baseURL);
    return true;
}

// ---- The end

void WQXMLDocument::teardown() {
    flags |= kDying;
    wq::GuardedCall guard;
    if (my.docImpl) xmlFreeDoc(std::exchange(my.docImpl, nullptr));  // its nodes' wrappers go by the hook
    delete this;
    guard.raise();
}

// ---- Identity and root

uint16_t WQXMLDocument::nodeType() const { return my.docImpl ? static_cast<uint16_t>(my.docImpl->type) : 0x7fff; }
NSString WQXMLDocument::baseURI() const { return my.docImpl ? wq::fromUTF8(my.docImpl->URL) : nullptr; }

Ref<WQXMLElement> WQXMLDocument::documentElement() const {
    return wq::cast<WQXMLElement>(wq::wrapped(my.docImpl ? xmlDocGetRootElement(my.docImpl) : nullptr));
}

void WQXMLDocument::setDocumentElement(Ref<WQXMLElement>&& element) {
    if (!my.docImpl || !element->xmlNode() || element == documentElement()) return;
    const Ref<WQXMLNode> receiver = self();
    Binding::linkAsRoot(std::move(element), my.docImpl);
}

// ---- Making nodes

namespace {

void freeUnlinkedNode(xmlNodePtr node) {
    wq::guarded([&] { xmlFreeNode(node); });  // never linked; its wrapper goes by the hook
}

// A new element that names its document: settles its class, and makes it the caller's.
Ref<WQXMLElement> adoptElement(xmlNodePtr node) {
    if (!wq::wrapper(node)) {
        freeUnlinkedNode(node);
        return nullptr;
    }
    Ref<WQXMLNode> element = Binding::adoptNewNode(node);  // ahead of the check, which may raise
    checkNode();
    if (element != wq::wrapper(node)) element = Binding::adoptNewNode(node);
    return wq::cast<WQXMLElement>(element);
}

}  // namespace

Ref<WQXMLElement> WQXMLDocument::createElement(const NSString& name) {
    if (!my.docImpl) return nullptr;
    const Bytes bytes(name);
    xmlNodePtr node = wq::guarded([&] { return xmlNewNode(nullptr, bytes); }, xmlFreeNode);
    if (!node) return nullptr;
    Binding::nameDocument(node, my.docImpl);
    return adoptElement(node);
}

Ref<WQXMLElement> WQXMLDocument::createElement_namespaceURI(const NSString& qualifiedName, const NSString& uri) {
    if (!my.docImpl) return nullptr;
    const NSString local = localNameForQName(qualifiedName), prefix = prefixForQName(qualifiedName);
    if (!local) return nullptr;
    const Bytes bytes(local);
    xmlNodePtr node = wq::guarded([&] { return xmlNewNode(nullptr, bytes); }, xmlFreeNode);
    if (!node) return nullptr;
    wq::OwnNamespace ns = wq::newNamespace(uri, prefix);
    if (!ns) {
        freeUnlinkedNode(node);
        WQ_ASSERT(false, u"Could not create new namespace structure");
        return nullptr;
    }
    xmlSetNs(node, ns.get());  // ahead of the check: the class depends on it
    xmlNs* given = ns.get();
    if (WQXMLNode* first = wq::wrapper(node)) first->setOwnedNs(ns.release());  // the check may raise
    Binding::nameDocument(node, my.docImpl);
    Ref<WQXMLElement> element = adoptElement(node);
    if (element) Binding::ownBorrowed(element.get(), given);
    return element;
}

Ref<WQXMLText> WQXMLDocument::createTextNode(const NSString& string) {
    if (!my.docImpl) return nullptr;
    const Bytes bytes(string);
    xmlNodePtr node = wq::guarded([&] { return xmlNewText(bytes); }, xmlFreeNode);
    if (!node) return nullptr;
    if (!dynamic_cast<WQXMLText*>(wq::wrapper(node))) {
        freeUnlinkedNode(node);
        WQ_ASSERT(false, u"Couldn't create text node");
        return nullptr;
    }
    return wq::cast<WQXMLText>(Binding::adoptNewNode(node));
}

void WQXMLDocument::printTree() const { documentElement()->printTree(); }

// ---- The class of an element

// The one place where it is chosen, for parsed elements and for those of the factories.
void WQXMLDocument::fixElementClass(xmlNodePtr node) {
    WQXMLNode* present = wq::wrapper(node);
    if (node->type != XML_ELEMENT_NODE || !my.elementClasses || !present) return;
    const wq::Class* found = classForElement(node);
    if (!found || wq::Class::of(*present) == found) return;
    if (WQXMLNode* made = Binding::makeWrapper(found, node)) Binding::replaceWrapper(node, made);
}

const wq::Class* WQXMLDocument::classForElement(xmlNodePtr node) const {
    auto text = [](const xmlChar* bytes) { return std::string_view(reinterpret_cast<const char*>(bytes)); };
    static const std::string noNamespace = wq::toUTF8(DefaultNamespaceKey), everyOther = wq::toUTF8(DefaultElementKey);
    if (node->ns && !node->ns->href) return nullptr;
    const auto names = bookkeeping.classTable.find(node->ns ? text(node->ns->href) : noNamespace);
    if (names == bookkeeping.classTable.end()) return nullptr;
    auto found = names->second.find(text(node->name));
    if (found == names->second.end()) found = names->second.find(everyOther);
    return found == names->second.end() ? nullptr : found->second;
}
