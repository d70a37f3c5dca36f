// A document of bytes from outside: parsed, walked both ways, edited, written and parsed again.
// The first byte chooses HTML (1) and the dropping of white space (2).
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/tree.h>

#include <cstdint>
#include <cstdlib>
#include <string>

#include "dom/WQXMLDocument.h"
#include "platform/WQXMLException.h"

namespace {

void require(bool condition) {
    if (!condition) std::abort();
}

// Nothing outside the input is read.
xmlParserInputPtr emptyInput(const char*, const char*, xmlParserCtxtPtr context) { return xmlNewStringInputStream(context, BAD_CAST ""); }

Ref<WQXMLDocument> parse(std::string bytes, const Ref<NSDictionary>& arguments) {
    try {
        return WQXMLDocument::newWithData_baseURL_arguments_error(NSData::dataWithBytes(std::move(bytes)), nullptr, arguments, nullptr);
    } catch (const WQXMLException& exception) {
        require(exception.name() == u"XML Exception");
        return nullptr;
    }
}

size_t walk(const Ref<WQXMLDocument>& document) {
    size_t nodes = 0, backwards = 1;
    Ref<WQXMLNode> last;
    for (Ref<WQXMLNode> node = document->documentElement(); node; node = node->next(), ++nodes) {
        require(node->ownerDocument() == document);
        (void)node->nodeName();
        (void)node->nodeValue();
        last = node;
    }
    for (; last && last != document->documentElement(); last = last->previous()) ++backwards;
    require(!last || backwards == nodes);
    return nodes;
}

std::string written(const Ref<WQXMLDocument>& document) {
    xmlChar* bytes = nullptr;
    int size = 0;
    xmlDocDumpMemory(document->xmlDoc(), &bytes, &size);
    std::string text(reinterpret_cast<char*>(bytes), static_cast<size_t>(size));
    xmlFree(bytes);
    return text;
}

// The last child of the root goes to its front, and the first grandchild away.
void edit(const Ref<WQXMLDocument>& document) {
    const Ref<WQXMLNode> root = document->documentElement();
    root->insertChild_before(root->lastChild(), root->firstChild());
    const Ref<WQXMLNode> removed = root->firstChild()->removeChild(root->firstChild()->firstChild());
    (void)removed->nodeName();
    (void)removed->namespaceURI();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    (void)WQXMLDocument::newDocument();
    xmlSetExternalEntityLoader(emptyInput);
    auto arguments = NSDictionary::dictionary();
    if (data[0] & 1) arguments->setObject_forKey(true, WQXMLDocumentParseAsHTMLKey);
    if (data[0] & 2) arguments->setObject_forKey(true, WQXMLDocumentSkipWhitespaceKey);

    if (auto document = parse(std::string(reinterpret_cast<const char*>(data) + 1, size - 1), arguments)) {
        const size_t nodes = walk(document);
        if (document->nodeType() == XML_DOCUMENT_NODE)
            if (auto again = parse(written(document), nullptr)) require(walk(again) <= nodes || (data[0] & 2));
        edit(document);
        walk(document);
    }
#ifdef WQ_COUNT_OBJECTS
    arguments.reset();
    require(wq::Object::numberOfLivingObjects() == 0);
#endif
    return 0;
}
