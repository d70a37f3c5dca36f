// XML of bytes from outside, read node by node and written event for event into memory, into a new
// document and below an element.
#include <libxml/parser.h>

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "dom/WQXMLDocument.h"
#include "dom/WQXMLReader.h"
#include "dom/WQXMLWriter.h"
#include "platform/WQXMLException.h"

namespace {

void require(bool condition) {
    if (!condition) std::abort();
}

void copyElement(const Ref<WQXMLReader>& reader, const Ref<WQXMLWriter>& writer) {
    const bool isEmpty = reader->isEmptyElement();
    writer->startElement_prefix_namespace(reader->localName(), reader->prefix(), reader->namespaceURI());
    for (int32_t moved = reader->moveToFirstAttribute(); moved == 1; moved = reader->moveToNextAttribute())
        if (!reader->isNamespaceDecl())
            writer->writeAttribute_prefix_namespace_content(
                reader->localName(), reader->prefix(), reader->namespaceURI(), reader->value() ? reader->value() : u"");
    reader->moveToElement();
    if (isEmpty) writer->endElement();
}

void copyNode(const Ref<WQXMLReader>& reader, const Ref<WQXMLWriter>& writer) {
    switch (reader->nodeType()) {
        case 1: return copyElement(reader, writer);
        case 3:
        case 14: writer->writeString(reader->value()); break;
        case 4: writer->writeCDATA(reader->value()); break;
        case 7: writer->writePI_content(reader->name(), reader->value()); break;
        case 8: writer->writeComment(reader->value()); break;
        case 15: writer->endElement(); break;
        default: break;
    }
}

void copy(const Ref<NSData>& data, const Ref<WQXMLWriter>& writer) {
    try {
        const auto reader = WQXMLReader::newWithData_baseURL_error(data, nullptr, nullptr);
        for (int nodes = 0; nodes < 10000 && reader->read() == 1; ++nodes) copyNode(reader, writer);
    } catch (const WQXMLException& exception) {
        require(exception.name() == u"XML Exception");
    }
    writer->endDocument();
    writer->flush();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    {
        const auto bytes = NSData::dataWithBytes(std::string(reinterpret_cast<const char*>(data), size));
        copy(bytes, WQXMLWriter::newToMemory());

        const auto toDocument = WQXMLWriter::newToXMLDocument();
        copy(bytes, toDocument);
        const auto written = toDocument->XMLDocument();
        for (Ref<WQXMLNode> node = written->documentElement(); node; node = node->next()) (void)node->XPath();

        const auto document = WQXMLDocument::newDocument();
        document->appendChild(document->createElement(u"a"));
        copy(bytes, WQXMLWriter::newToElement(document->documentElement()));
        for (Ref<WQXMLNode> node = document->documentElement(); node; node = node->next()) (void)node->XPath();
    }
#ifdef WQ_COUNT_OBJECTS
    require(wq::Object::numberOfLivingObjects() == 0);
#endif
    return 0;
}
