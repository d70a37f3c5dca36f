#include "dom/WQXMLWriter.h"

#include <libxml/xmlwriter.h>

#include <algorithm>
#include <climits>

#include "dom/Binding.h"
#include "dom/WQXMLDocument.h"
#include "platform/Assertion.h"

using wq::Bytes;

// ---- Making one

namespace {

// A failure inside leaves nothing to work with.
template <class Open> xmlTextWriterPtr opened(Open&& open) {
    wq::startLibrary();
    wq::GuardedCall guard;
    return open();
}

int textWriterWriteCallback(void* context, const char* bytes, int length) {
    int written = -1;
    wq::keepFailure([&] {
        static_cast<NSData*>(context)->append({bytes, static_cast<size_t>(length)});
        written = length;
    });
    return written;
}

int textWriterCloseCallback(void*) { return 0; }

// libxml2 keeps it to itself; it is the context of the output, the first field of a writer.
xmlParserCtxtPtr parserBehind(xmlTextWriterPtr writer) {
    return static_cast<xmlParserCtxtPtr>((*reinterpret_cast<xmlOutputBufferPtr*>(writer))->context);
}

}  // namespace

bool WQXMLWriter::initWithURL(const Ref<NSURL>& url) {
    my.elements.emplace();
    const Bytes text(url->absoluteString());
    my.writer = opened([&] { return xmlNewTextWriterFilename(text.characters(), 0); });
    return true;
}

bool WQXMLWriter::initToMemory() {
    my.elements.emplace();
    my.mutableData = NSData::dataWithBytes({});
    my.writer = opened([&]() -> xmlTextWriterPtr {
        xmlOutputBufferPtr output =
            xmlOutputBufferCreateIO(textWriterWriteCallback, textWriterCloseCallback, my.mutableData.get(), nullptr);
        xmlTextWriterPtr made = output ? xmlNewTextWriter(output) : nullptr;
        if (output && !made) xmlOutputBufferClose(output);
        return made;
    });
    return my.writer;
}

bool WQXMLWriter::initToXMLDocument() {
    my.elements.emplace();
    xmlDocPtr doc = nullptr;
    my.writer = opened([&] { return xmlNewTextWriterDoc(&doc, 0); });
    if (!my.writer) return false;
    try {
        my.xmlDocument = wq::make<WQXMLDocument>(&WQXMLDocument::initWithDocImpl, doc);
    } catch (...) {
        wq::GuardedCall guard;
        xmlFreeTextWriter(std::exchange(my.writer, nullptr));
        xmlFreeDoc(doc);  // which nobody else knows, behind the writer to it
        throw;
    }
    bookkeeping.parser = parserBehind(my.writer);
    return true;
}

bool WQXMLWriter::initToElement(const Ref<WQXMLElement>& element) {
    bookkeeping.document = element->ownerDocument();
    bookkeeping.element = element;
    if (!bookkeeping.document) return false;
    my.writer = opened([&] { return xmlNewTextWriterTree(bookkeeping.document->xmlDoc(), element->xmlNode(), 0); });
    if (!my.writer) return false;
    bookkeeping.parser = parserBehind(my.writer);
    noteOpenNodes();
    return true;
}

// ---- The end

// What fails in the last flush is lost: nobody is there to be told.
void WQXMLWriter::teardown() {
    flags |= kDying;
    if (my.writer) {
        if (!treeIsWhole()) letGoOfTree();
        wq::GuardedCall guard;
        wq::WaitingChecks waiting;
        xmlTextWriterFlush(my.writer);
        xmlFreeTextWriter(my.writer);  // a parser behind it reads its last
        if (!guard.failed()) wq::keepFailure([&] { waiting.settle(); });
    }
    delete this;
}

Ref<WQXMLDocument> WQXMLWriter::XMLDocument() const { return my.xmlDocument; }
Ref<NSData> WQXMLWriter::XMLData() const { return my.mutableData; }

// ---- The one way into libxml2

// Libxml2 reports some misuse as an error and answers -1 to the rest; here all of it is -1. The classes of
// what it puts into a tree are settled when it has returned.
template <class... P, class... A> int32_t WQXMLWriter::write(int (*function)(_xmlTextWriter*, P...), A&&... arguments) {
    if (!my.writer) return isNil() ? 0 : -1;
    wq::GuardedCall guard;
    if (!bookkeeping.parser) {  // no tree
        const int result = function(my.writer, std::forward<A>(arguments)...);
        return guard.failed() ? -1 : result;
    }
    if (!treeIsWhole()) return -1;
    wq::WaitingChecks waiting;
    const int result = function(my.writer, std::forward<A>(arguments)...);
    if (!guard.failed()) wq::keepFailure([&] { waiting.settle(); });
    noteOpenNodes();
    return guard.failed() ? -1 : result;
}

// ---- The parser behind a tree

bool WQXMLWriter::treeIsWhole() const {
    for (const Ref<WQXMLNode>& node : bookkeeping.openNodes)
        if (!node->xmlNode()) return false;
    return true;
}

void WQXMLWriter::noteOpenNodes() {
    xmlParserCtxtPtr parser = bookkeeping.parser;
    if (!parser) return;
    parser->nodemem = 0;  // it is not to go on with a text that may have been edited meanwhile
    const auto& before = bookkeeping.openNodes;
    if (before.size() == static_cast<size_t>(parser->nodeNr) + 1 && before.back()->xmlNode() == parser->node) return;
    WQXMLNode::Sequence openNodes;  // those of before go when these are held
    for (int i = 0; i < parser->nodeNr; ++i)
        if (auto open = wq::wrapped(parser->nodeTab[i])) openNodes.push_back(open);
    if (auto top = wq::wrapped(parser->node)) openNodes.push_back(top);
    bookkeeping.openNodes.swap(openNodes);
}

// What is still to be written reaches no node.
void WQXMLWriter::letGoOfTree() {
    wq::stopParser(bookkeeping.parser);
    bookkeeping.parser->node = nullptr;
    bookkeeping.parser->nodeNr = 0;
}

// ---- Documents, comments, instructions, sections, document types

int32_t WQXMLWriter::startDocumentWithVersion_encoding_standalone(
    const NSString& version,
    const NSString& encoding,
    const NSString& standalone) {
    return write(xmlTextWriterStartDocument, Bytes(version).characters(), Bytes(encoding).characters(), Bytes(standalone).characters());
}

int32_t WQXMLWriter::endDocument() { return write(xmlTextWriterEndDocument); }

int32_t WQXMLWriter::startComment() { return write(xmlTextWriterStartComment); }
int32_t WQXMLWriter::endComment() { return write(xmlTextWriterEndComment); }
int32_t WQXMLWriter::writeComment(const NSString& comment) { return write(xmlTextWriterWriteComment, Bytes(comment)); }

int32_t WQXMLWriter::startPI(const NSString& target) { return write(xmlTextWriterStartPI, Bytes(target)); }
int32_t WQXMLWriter::endPI() { return write(xmlTextWriterEndPI); }
int32_t WQXMLWriter::writePI_content(const NSString& target, const NSString& content) {
    return write(xmlTextWriterWritePI, Bytes(target), Bytes(content));
}

int32_t WQXMLWriter::startCDATA() { return write(xmlTextWriterStartCDATA); }
int32_t WQXMLWriter::endCDATA() { return write(xmlTextWriterEndCDATA); }
int32_t WQXMLWriter::writeCDATA(const NSString& content) { return write(xmlTextWriterWriteCDATA, Bytes(content)); }

int32_t WQXMLWriter::startDTD_pubid_sysid(const NSString& name, const NSString& publicIdentifier, const NSString& systemIdentifier) {
    return write(xmlTextWriterStartDTD, Bytes(name), Bytes(publicIdentifier), Bytes(systemIdentifier));
}
int32_t WQXMLWriter::endDTD() { return write(xmlTextWriterEndDTD); }
int32_t WQXMLWriter::writeDTD_pubid_sysid_subset(
    const NSString& name,
    const NSString& publicIdentifier,
    const NSString& systemIdentifier,
    const NSString& subset) {
    return write(xmlTextWriterWriteDTD, Bytes(name), Bytes(publicIdentifier), Bytes(systemIdentifier), Bytes(subset));
}

// ---- Elements

namespace {
NSString qualifiedName(const NSString& prefix, const NSString& localName) { return prefix + u":" + wq::printed(localName); }
}  // namespace

void WQXMLWriter::push(const NSString& localName, const NSString& prefix, const NSString& uri) {
    if (my.elements) my.elements->push_back(WQXMLWriterElement::newWithLocalName_prefix_namespaceURI(localName, prefix, uri));
}

int32_t WQXMLWriter::startElement(const NSString& name) {
    push(name, nullptr, nullptr);
    return write(xmlTextWriterStartElement, Bytes(name));
}

int32_t WQXMLWriter::startElement_prefix_namespace(const NSString& localName, const NSString& given, const NSString& uri) {
    const NSString prefix = given.length() ? given : nullptr;
    const int32_t result = isDefined_namespaceURI(prefix, uri)
                               ? write(xmlTextWriterStartElement, Bytes(qualifiedName(prefix, localName)))
                               : write(xmlTextWriterStartElementNS, Bytes(prefix), Bytes(localName), Bytes(uri));
    push(localName, prefix, uri);
    return result;
}

int32_t WQXMLWriter::endElement() {
    if (my.elements && !my.elements->empty()) my.elements->pop_back();
    return write(xmlTextWriterEndElement);
}

// The record stays, so that what it defines counts as defined for later siblings: wanted.
int32_t WQXMLWriter::fullEndElement() { return write(xmlTextWriterFullEndElement); }

int32_t WQXMLWriter::writeElement_content(const NSString& name, const NSString& content) {
    return write(xmlTextWriterWriteElement, Bytes(name), Bytes(content));
}

int32_t WQXMLWriter::writeElement_prefix_namespace_content(
    const NSString& localName,
    const NSString& prefix,
    const NSString& uri,
    const NSString& content) {
    return write(xmlTextWriterWriteElementNS, Bytes(prefix), Bytes(localName), Bytes(uri), Bytes(content));
}

// ---- Content

int32_t WQXMLWriter::writeRaw(const NSString& markup) { return write(xmlTextWriterWriteRaw, Bytes(markup)); }
int32_t WQXMLWriter::writeString(const NSString& string) { return write(xmlTextWriterWriteString, Bytes(cleanString(string))); }

int32_t WQXMLWriter::writeBytes(int (*function)(xmlTextWriterPtr, const char*, int, int), const Ref<NSData>& data) {
    const auto kept = data->snapshot();  // it may be the buffer that is written to
    const std::string_view bytes = kept ? kept->view() : std::string_view();
    if (bytes.size() > INT_MAX) return write(function, nullptr, 0, 0);
    return write(function, bytes.data(), 0, static_cast<int>(bytes.size()));
}

int32_t WQXMLWriter::writeBase64(const Ref<NSData>& data) { return writeBytes(xmlTextWriterWriteBase64, data); }
int32_t WQXMLWriter::writeBinHex(const Ref<NSData>& data) { return writeBytes(xmlTextWriterWriteBinHex, data); }

// ---- Attributes

int32_t WQXMLWriter::startAttribute(const NSString& name) { return write(xmlTextWriterStartAttribute, Bytes(name)); }

int32_t WQXMLWriter::startAttribute_prefix_namespace(const NSString& localName, const NSString& prefix, const NSString& uri) {
    if (isDefined_namespaceURI(prefix, uri)) return startAttribute(qualifiedName(prefix, localName));
    return write(xmlTextWriterStartAttributeNS, Bytes(prefix), Bytes(localName), Bytes(uri));
}

int32_t WQXMLWriter::endAttribute() { return write(xmlTextWriterEndAttribute); }

int32_t WQXMLWriter::writeAttribute_content(const NSString& name, const NSString& content) {
    WQ_ASSERT(content, u"Invalid parameter not satisfying: content");
    return write(xmlTextWriterWriteAttribute, Bytes(name), Bytes(content));
}

int32_t WQXMLWriter::writeAttribute_prefix_namespace_content(
    const NSString& localName,
    const NSString& prefix,
    const NSString& uri,
    const NSString& content) {
    if (isDefined_namespaceURI(prefix, uri))
        return write(xmlTextWriterWriteAttribute, Bytes(qualifiedName(prefix, localName)), Bytes(content));
    return write(xmlTextWriterWriteAttributeNS, Bytes(prefix), Bytes(localName), Bytes(uri), Bytes(content));
}

// ---- Layout, and the end

int32_t WQXMLWriter::setIndent(bool indent) { return write(xmlTextWriterSetIndent, indent); }
int32_t WQXMLWriter::setIndentString(const NSString& string) { return write(xmlTextWriterSetIndentString, Bytes(string)); }
int32_t WQXMLWriter::flush() { return write(xmlTextWriterFlush); }

// ---- What is open

bool WQXMLWriter::isDefined_namespaceURI(const NSString& prefix, const NSString& uri) const {
    if (!my.elements) return false;
    return std::any_of(my.elements->rbegin(), my.elements->rend(), [&](const Ref<WQXMLWriterElement>& element) {
        return element->isDefined_namespaceURI(prefix, uri);
    });
}

// ---- Characters that XML cannot hold

const NSCharacterSet& WQXMLWriter::illegalXMLCharacterSet() {
    static const NSCharacterSet illegals = NSCharacterSet::controlCharacterSet().setWithoutCharacters(u"\t\n\r");
    return illegals;
}

namespace {
// True for almost all texts, and found out without a look at the set: without a branch, for many units at a time.
bool holdsNoControlCharacter(std::u16string_view units) {
    char16_t found = 0;
    for (const char16_t unit : units) {
        const char16_t isBlank = (unit == u'\t') | (unit == u'\n') | (unit == u'\r');
        const char16_t isLow = unit < 0x20, isHigh = static_cast<char16_t>(unit - 0x7F) <= 0x9F - 0x7F;
        found = static_cast<char16_t>(found | (isLow & ~isBlank) | isHigh);
    }
    return !found;
}
}  // namespace

NSString WQXMLWriter::cleanString(NSString string) {
    if (holdsNoControlCharacter(string)) return string;
    const auto& illegals = illegalXMLCharacterSet();
    uint64_t illegal = illegals.indexOfMember(string);
    if (illegal == NSNotFound) return string;

    std::u16string clean;
    uint64_t from = 0;
    for (; illegal != NSNotFound; from = illegal + 1, illegal = illegals.indexOfMember(string, from))
        clean += string.view().substr(from, illegal - from);
    clean += string.view().substr(from);
    return clean;
}
