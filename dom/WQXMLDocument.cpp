#include "dom/WQXMLDocument.h"

#include <libxml/HTMLparser.h>
#include <libxml/SAX2.h>
#include <libxml/c14n.h>
#include <libxml/parser.h>
#include <libxml/valid.h>
#include <libxml/xpath.h>
#include <libxml/xpathInternals.h>

#include <climits>
#include <cstring>

#include "dom/Binding.h"
#include "dom/WQXMLAttr.h"
#include "dom/WQXMLRange.h"
#include "dom/WQXMLWriter.h"
#include "platform/Assertion.h"

using wq::Binding;
using wq::Bytes;

const char16_t* const WQXMLElementsNamespace = u"http://" WQ_ELEMENTS_HOST u"/elements/1.0";

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
endElementSAXFunc oldEndElement;
endElementNsSAX2Func oldEndElementNs;
startDocumentSAXFunc oldStartDocument;
endDocumentSAXFunc oldEndDocument;

// The parser remembers how long the text is that it would go on with; an initWithXMLNode may have put
// another text in its place. Without the memory it looks.
void forgetText(void* context) { static_cast<xmlParserCtxtPtr>(context)->nodemem = 0; }

void settleOrStop(void* context) {
    if (wq::GuardedCall::current->failed())
        gCheckNode = nullptr;
    else
        wq::keepFailure(checkNode);
    if (wq::GuardedCall::current->failed()) wq::stopParser(context);
    forgetText(context);
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

void mySAX2EndElement(void* context, const xmlChar* name) {
    oldEndElement(context, name);
    forgetText(context);
}

void mySAX2EndElementNs(void* context, const xmlChar* localName, const xmlChar* prefix, const xmlChar* uri) {
    oldEndElementNs(context, localName, prefix, uri);
    forgetText(context);
}

void mySAX2EndDocument(void* context) {
    oldEndDocument(context);
    settleOrStop(context);
}

void putOurCallbacks(xmlSAXHandler& sax, bool skipWhitespace) {
    oldStartElement = std::exchange(sax.startElement, mySAX2StartElement);
    oldEndElement = std::exchange(sax.endElement, mySAX2EndElement);
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
    oldEndElementNs = std::exchange(sax.endElementNs, mySAX2EndElementNs);
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
    const auto kept = data->snapshot();  // whatever an element class does with the data
    const std::string_view bytes = kept ? kept->view() : std::string_view();
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
    if (bookkeeping.whileAlive) *bookkeeping.whileAlive = nullptr;
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
    xmlNodePtr node = wq::guarded([&] { return xmlNewNode(nullptr, bytes); }, xmlFreeNode);  // nobody else knows it
    if (!node) return nullptr;
    Binding::nameDocument(node, my.docImpl);
    return adoptElement(node);
}

Ref<WQXMLElement> WQXMLDocument::createElement_namespaceURI(const NSString& qualifiedName, const NSString& uri) {
    if (!my.docImpl) return nullptr;
    const NSString local = localNameForQName(qualifiedName), prefix = prefixForQName(qualifiedName);
    if (!local) return nullptr;
    const Bytes bytes(local);
    wq::OwnNode node(wq::guarded([&] { return xmlNewNode(nullptr, bytes); }, xmlFreeNode));  // nobody else knows it
    if (!node) return nullptr;
    wq::OwnNamespace ns = wq::newNamespace(uri, prefix);
    if (!ns) {
        freeUnlinkedNode(node.release());
        WQ_ASSERT(false, u"Could not create new namespace structure");
        return nullptr;
    }
    xmlSetNs(node.get(), ns.get());  // ahead of the check: the class depends on it
    xmlNs* given = ns.get();
    if (WQXMLNode* first = wq::wrapper(node.get())) {  // the check may raise
        first->setOwnedNs(ns.get());
        static_cast<void>(ns.release());  // it has an owner
    }
    Binding::nameDocument(node.get(), my.docImpl);
    Ref<WQXMLElement> element = adoptElement(node.release());
    if (element) Binding::ownBorrowed(element.get(), given);
    return element;
}

Ref<WQXMLText> WQXMLDocument::createTextNode(const NSString& string) {
    if (!my.docImpl) return nullptr;
    const Bytes bytes(string);
    xmlNodePtr node = wq::guarded([&] { return xmlNewText(bytes); }, xmlFreeNode);  // nobody else knows it
    if (!node) return nullptr;
    if (!dynamic_cast<WQXMLText*>(wq::wrapper(node))) {
        freeUnlinkedNode(node);
        WQ_ASSERT(false, u"Couldn't create text node");
        return nullptr;
    }
    return wq::cast<WQXMLText>(Binding::adoptNewNode(node));
}

// ---- Ranges

Ref<WQXMLRange> WQXMLDocument::createRange() { return my.docImpl ? WQXMLRange::rangeWithContainer_offset(documentElement(), 0) : nullptr; }

const std::shared_ptr<WQXMLDocument*>& WQXMLDocument::whileAlive() {
    if (!bookkeeping.whileAlive) bookkeeping.whileAlive = std::make_shared<WQXMLDocument*>(this);
    return bookkeeping.whileAlive;
}

// ---- Finding nodes

Ref<WQXMLElement> WQXMLDocument::getElementById(const NSString& identifier) const {
    if (!my.docImpl) return nullptr;
    const xmlAttr* attribute = xmlGetID(my.docImpl, Bytes(identifier));
    if (!attribute || attribute->type != XML_ATTRIBUTE_NODE) return nullptr;  // an entry that was forgotten
    return wq::cast<WQXMLElement>(wq::wrapped(attribute->parent));
}

void WQXMLDocument::registerXPathPrefix_forNamespace(const NSString& prefix, const NSString& uri) {
    if (!my.xpathPrefixes) my.xpathPrefixes = NSDictionary::dictionary();
    my.xpathPrefixes->setObject_forKey(prefix, uri);
}

namespace {

struct FreeContext {
    void operator()(xmlXPathContextPtr context) const { xmlXPathFreeContext(context); }
};
struct FreeResult {
    void operator()(xmlXPathObjectPtr result) const { xmlXPathFreeObject(result); }
};

// Besides reporting it as an error, libxml2 prints the name of a function that it does not know.
class WithoutPrinting {
public:
    WithoutPrinting() : function(xmlGenericError), context(xmlGenericErrorContext) { xmlSetGenericErrorFunc(nullptr, printNothing); }
    ~WithoutPrinting() { xmlSetGenericErrorFunc(context, function); }
    WithoutPrinting(const WithoutPrinting&) = delete;
    WithoutPrinting& operator=(const WithoutPrinting&) = delete;

private:
    static void printNothing(void*, const char*, ...) {}
    xmlGenericErrorFunc function;
    void* context;
};

WQXMLNode::Sequence wrappersOf(const xmlNodeSet* nodes) {
    WQXMLNode::Sequence sequence;
    for (int i = 0; nodes && i < nodes->nodeNr; ++i) {
        const xmlNode* node = nodes->nodeTab[i];
        if (node->type == XML_NAMESPACE_DECL) continue;  // has other fields than a node
        if (auto wrapper = wq::wrapped(node)) sequence.push_back(wrapper);
    }
    return sequence;
}

}  // namespace

std::optional<WQXMLNode::Sequence> WQXMLDocument::nodesForXPath_currentNode(const NSString& expression, const Ref<WQXMLNode>& currentNode)
    const {
    if (!my.docImpl || !expression) return std::nullopt;
    wq::GuardedCall guard;
    const WithoutPrinting silence;
    const std::unique_ptr<xmlXPathContext, FreeContext> context(xmlXPathNewContext(my.docImpl));
    if (!context) return std::nullopt;
    xmlXPathRegisterNs(context.get(), BAD_CAST "wq", Bytes(WQXMLElementsNamespace));
    if (my.xpathPrefixes)
        for (auto& [uri, prefix] : *my.xpathPrefixes.get()) xmlXPathRegisterNs(context.get(), Bytes(prefix.string()), Bytes(uri));
    if (currentNode) context->node = currentNode->xmlNode();

    const std::unique_ptr<xmlXPathObject, FreeResult> result(xmlXPathEvalExpression(Bytes(expression), context.get()));
    guard.raise();
    if (!result || result->type != XPATH_NODESET) return std::nullopt;
    return wrappersOf(result->nodesetval);
}

// ---- Writing

namespace {

Ref<NSData> dumped(xmlDocPtr doc, bool format) {
    xmlChar* bytes = nullptr;
    int length = 0;
    wq::GuardedCall guard;
    xmlDocDumpFormatMemoryEnc(doc, &bytes, &length, nullptr, format);
    const std::unique_ptr<xmlChar, decltype(xmlFree)> owned(bytes, xmlFree);
    guard.raise();
    return bytes ? NSData::dataWithBytes({reinterpret_cast<const char*>(bytes), static_cast<size_t>(length)}) : nullptr;
}

// libxml2's indentation, for threads that start meanwhile; this one has its own, two blanks as well.
class TwoBlanks {
public:
    TwoBlanks() : indents(xmlThrDefIndentTreeOutput(1)), indentation(xmlThrDefTreeIndentString("  ")) {}
    ~TwoBlanks() {
        xmlThrDefIndentTreeOutput(indents);
        xmlThrDefTreeIndentString(indentation);
    }
    TwoBlanks(const TwoBlanks&) = delete;
    TwoBlanks& operator=(const TwoBlanks&) = delete;

private:
    int indents;
    const char* indentation;
};

}  // namespace

Ref<NSData> WQXMLDocument::XMLData() const { return my.docImpl ? dumped(my.docImpl, false) : nullptr; }

Ref<NSData> WQXMLDocument::formattedXMLData() const {
    if (!my.docImpl) return nullptr;
    const TwoBlanks indentation;
    return dumped(my.docImpl, true);
}

NSString WQXMLDocument::canonicalRepresentation() const {
    if (!my.docImpl) return nullptr;
    xmlChar* text = nullptr;
    wq::GuardedCall guard;
    xmlC14NDocDumpMemory(my.docImpl, nullptr, XML_C14N_1_0, nullptr, 0, &text);
    const NSString canonical = wq::takeString(text);
    guard.raise();
    return canonical;
}

namespace {
// Those without a wrapper are left out.
WQXMLNode::Sequence topLevel(xmlDocPtr doc) {
    WQXMLNode::Sequence nodes;
    for (xmlNodePtr node = doc->children; node; node = node->next)
        if (auto bound = wq::wrapped(node)) nodes.push_back(bound);
    return nodes;
}
}  // namespace

void WQXMLDocument::encodeWithWriter(const Ref<WQXMLWriter>& writer) const {
    if (!my.docImpl) return;
    if (writer->startDocumentWithVersion_encoding_standalone(u"1.0", u"utf-8", u"no") == -1) return;
    for (const Ref<WQXMLNode>& node : topLevel(my.docImpl)) node->encodeWithWriter(writer);
    const int32_t ended = writer->endDocument();
    WQ_ASSERT(ended != -1, u"Could not write document end tag");
    writer->flush();
}

void WQXMLDocument::printTree() const { documentElement()->printTree(); }

// ---- A bag of values

NSValue WQXMLDocument::valueForUndefinedKey(const NSString& key) const { return my.additionalKeys->objectForKey(key); }

void WQXMLDocument::setValue_forUndefinedKey(const NSValue& value, const NSString& key) {
    if (!value) return my.additionalKeys->removeObjectForKey(key);
    if (!my.additionalKeys) my.additionalKeys = NSDictionary::dictionary();
    my.additionalKeys->setObject_forKey(value, key);
}

// ---- In name only

Ref<WQXMLNode> WQXMLDocument::createComment(const NSString&) {
    WQ_ASSERT(false, u"createComment: is unimplemented");
    return nullptr;
}

Ref<WQXMLAttr> WQXMLDocument::createAttribute(const NSString&) {
    WQ_ASSERT(false, u"createAttribute: is unimplemented");
    return nullptr;
}

Ref<WQXMLAttr> WQXMLDocument::createAttribute_namespaceURI(const NSString&, const NSString&) {
    WQ_ASSERT(false, u"createAttribute:namespaceURI: is unimplemented");
    return nullptr;
}

Ref<WQXMLNode> WQXMLDocument::importNode_deep(const Ref<WQXMLNode>&, bool) {
    WQ_ASSERT(false, u"This function is unimplemented");
    return nullptr;
}

std::optional<WQXMLNode::Sequence> WQXMLDocument::getElementsByTagName(const NSString&) const {
    WQ_ASSERT(false, u"This function is unimplemented");
    return std::nullopt;
}

std::optional<WQXMLNode::Sequence> WQXMLDocument::getElementsByTagName_namespaceURI(const NSString&, const NSString&) const {
    WQ_ASSERT(false, u"This function is unimplemented");
    return std::nullopt;
}

Ref<WQXMLNode> WQXMLDocument::copyWithZone() const {
    WQ_ASSERT(false, u"copyWithZone: not implemented in WQXMLDocument");
    return nullptr;
}

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
