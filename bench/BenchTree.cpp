// Parsing, visiting, freeing, editing and writing trees and streams: each beside libxml2's own calls for the same.
// Names are "work/bytes" for ours and "bareWork/bytes" for libxml2.
#include <libxml/parser.h>
#include <libxml/xmlreader.h>
#include <libxml/xmlwriter.h>
#include <malloc.h>

#include <map>

#include "bench/Bare.h"
#include "bench/Generator.h"
#include "bench/Timing.h"
#include "dom/WQXMLDocument.h"
#include "dom/WQXMLEventListener.h"
#include "dom/WQXMLReader.h"
#include "dom/WQXMLWriter.h"

namespace {

constexpr int64_t kMegabyte = 1'000'000;

const std::string& bytesOf(const benchmark::State& state) {
    static std::map<int64_t, std::string> all;
    std::string& bytes = all[state.range(0)];
    if (bytes.empty()) bytes = bench::document(static_cast<size_t>(state.range(0)));
    return bytes;
}

Ref<NSData> dataOf(const benchmark::State& state) { return NSData::dataWithBytes(bytesOf(state)); }

Ref<WQXMLDocument> parse(const Ref<NSData>& data) {
    return WQXMLDocument::newWithData_baseURL_arguments_error(data, nullptr, nullptr, nullptr);
}
xmlDocPtr bareParse(const std::string& bytes) {
    return xmlReadMemory(bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr, XML_PARSE_HUGE);
}
using BareDocument = std::unique_ptr<xmlDoc, void (*)(xmlDocPtr)>;

size_t visit(const Ref<WQXMLDocument>& document) {
    size_t nodes = 0;
    for (Ref<WQXMLNode> node = document->documentElement(); node; node = node->next()) ++nodes;
    return nodes;
}
size_t bareVisit(xmlDocPtr document) {
    size_t nodes = 0;
    for (xmlNodePtr node = xmlDocGetRootElement(document); node;) {
        ++nodes;
        if (node->type == XML_ELEMENT_NODE && node->children) {
            node = node->children;
            continue;
        }
        while (node && !node->next) node = node->parent;
        node = node ? node->next : nullptr;
        if (node && node->type == XML_DOCUMENT_NODE) node = nullptr;
    }
    return nodes;
}

// ---- Parsing and freeing

void parseAndVisit(benchmark::State& state) {
    const auto data = dataOf(state);
    bench::measure(state, [&] {
        const auto document = parse(data);
        benchmark::DoNotOptimize(visit(document));
        return document;
    });
}
void bareParseAndVisit(benchmark::State& state) {
    const Bare bare;
    const std::string& bytes = bytesOf(state);
    bench::measure(state, [&] {
        BareDocument document(bareParse(bytes), xmlFreeDoc);
        benchmark::DoNotOptimize(bareVisit(document.get()));
        return document;
    });
}

void freeDocument(benchmark::State& state) {
    const auto data = dataOf(state);
    bench::measure(
        state, [&] { return parse(data); },
        [](Ref<WQXMLDocument>& document) {
            document = nullptr;
            return 0;
        });
}
void bareFreeDocument(benchmark::State& state) {
    const Bare bare;
    const std::string& bytes = bytesOf(state);
    bench::measure(
        state, [&] { return bareParse(bytes); },
        [](xmlDocPtr document) {
            xmlFreeDoc(document);
            return 0;
        });
}

// ---- Memory, as a counter: the time says nothing

size_t allocated() {
    const auto info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

void memory(benchmark::State& state) {
    const auto data = dataOf(state);
    size_t used = 0, nodes = 0;
    for (auto _ : state) {
        const size_t before = allocated();
        const auto document = parse(data);
        used = allocated() - before;
        nodes = visit(document);
    }
    state.counters["bytes"] = static_cast<double>(used);
    state.counters["nodes"] = static_cast<double>(nodes);
}
void bareMemory(benchmark::State& state) {
    const Bare bare;
    const std::string& bytes = bytesOf(state);
    size_t used = 0;
    for (auto _ : state) {
        const size_t before = allocated();
        const BareDocument document(bareParse(bytes), xmlFreeDoc);
        used = allocated() - before;
    }
    state.counters["bytes"] = static_cast<double>(used);
}

// ---- Edits, one listener on the document

struct Counter : WQXMLEventListener {
    void handleEvent(const Ref<WQXMLEvent>&) override { ++count; }
    size_t count = 0;
};
constexpr int32_t kEveryEdit = 1 | 2 | 4 | 8;

struct Listened {
    Listened() {
        document->appendChild(document->createElement(u"book"));
        document->addListener_forEvent_useCapture(&counter, kEveryEdit, true);
    }
    ~Listened() { document->removeListener_forEvent_useCapture(&counter, kEveryEdit, true); }
    Counter counter;
    Ref<WQXMLDocument> document = WQXMLDocument::newDocument();
};

void smallElements(benchmark::State& state) {
    Listened listened;
    const Ref<WQXMLNode> root = listened.document->documentElement();
    const NSString name = u"e";
    for (auto _ : state) {
        for (int64_t i = 0; i < state.range(0); ++i) root->appendChild(listened.document->createElement(name));
        while (const auto last = root->lastChild()) root->removeChild(last);
    }
}
void bareSmallElements(benchmark::State& state) {
    const Bare bare;
    const BareDocument document(xmlNewDoc(BAD_CAST "1.0"), xmlFreeDoc);
    xmlNodePtr root = xmlNewNode(nullptr, BAD_CAST "book");
    xmlDocSetRootElement(document.get(), root);
    for (auto _ : state) {
        for (int64_t i = 0; i < state.range(0); ++i) xmlAddChild(root, xmlNewDocNode(document.get(), nullptr, BAD_CAST "e", nullptr));
        while (xmlNodePtr last = root->last) {
            xmlUnlinkNode(last);
            xmlFreeNode(last);
        }
    }
}

void attributes(benchmark::State& state) {
    Listened listened;
    const auto element = listened.document->documentElement();
    const NSString name = u"title", values[] = {u"The near bell", u"The far bell"};
    for (auto _ : state)
        for (int64_t i = 0; i < state.range(0); ++i) {
            element->setAttribute_value(name, values[i & 1]);
            benchmark::DoNotOptimize(element->getAttribute(name));
        }
}
void bareAttributes(benchmark::State& state) {
    const Bare bare;
    const BareDocument document(xmlNewDoc(BAD_CAST "1.0"), xmlFreeDoc);
    xmlNodePtr root = xmlNewNode(nullptr, BAD_CAST "book");
    xmlDocSetRootElement(document.get(), root);
    const xmlChar* values[] = {BAD_CAST "The near bell", BAD_CAST "The far bell"};
    for (auto _ : state)
        for (int64_t i = 0; i < state.range(0); ++i) {
            xmlSetProp(root, BAD_CAST "title", values[i & 1]);
            xmlChar* value = xmlGetProp(root, BAD_CAST "title");
            benchmark::DoNotOptimize(value);
            xmlFree(value);
        }
}

// ---- Writing and reading

void serialise(benchmark::State& state) {
    const auto document = parse(dataOf(state));
    bench::measure(state, [&] { return document->XMLData(); });
}
void bareSerialise(benchmark::State& state) {
    const Bare bare;
    const BareDocument document(bareParse(bytesOf(state)), xmlFreeDoc);
    bench::measure(state, [&] {
        xmlChar* bytes = nullptr;
        int length = 0;
        xmlDocDumpMemoryEnc(document.get(), &bytes, &length, "UTF-8");
        return std::unique_ptr<xmlChar, void (*)(void*)>(bytes, xmlFree);
    });
}

constexpr int kParagraphBytes = 100;
const NSString kVersion = u"1.0", kEncoding = u"UTF-8", kBook = u"book", kParagraph = u"p", kClass = u"class", kFirstClass = u"k1";
const NSString kSentence = u"The ferry is called by a bell. It hangs on a post at the top of the landing.";
constexpr const char* kBareSentence = "The ferry is called by a bell. It hangs on a post at the top of the landing.";

void streamOut(benchmark::State& state) {
    bench::measure(state, [&] {
        const auto writer = WQXMLWriter::newToMemory();
        writer->startDocumentWithVersion_encoding_standalone(kVersion, kEncoding, nullptr);
        writer->startElement(kBook);
        for (int64_t i = 0; i < state.range(0) / kParagraphBytes; ++i) {
            writer->startElement(kParagraph);
            writer->writeAttribute_content(kClass, kFirstClass);
            writer->writeString(kSentence);
            writer->endElement();
        }
        writer->endElement();
        writer->endDocument();
        writer->flush();
        return writer;
    });
}
void bareStreamOut(benchmark::State& state) {
    const Bare bare;
    bench::measure(state, [&] {
        std::unique_ptr<xmlBuffer, void (*)(xmlBufferPtr)> buffer(xmlBufferCreate(), xmlBufferFree);
        xmlTextWriterPtr writer = xmlNewTextWriterMemory(buffer.get(), 0);
        xmlTextWriterStartDocument(writer, "1.0", "UTF-8", nullptr);
        xmlTextWriterStartElement(writer, BAD_CAST "book");
        for (int64_t i = 0; i < state.range(0) / kParagraphBytes; ++i) {
            xmlTextWriterStartElement(writer, BAD_CAST "p");
            xmlTextWriterWriteAttribute(writer, BAD_CAST "class", BAD_CAST "k1");
            xmlTextWriterWriteString(writer, BAD_CAST kBareSentence);
            xmlTextWriterEndElement(writer);
        }
        xmlTextWriterEndDocument(writer);
        xmlFreeTextWriter(writer);
        return buffer;
    });
}

void streamIn(benchmark::State& state) {
    const auto data = dataOf(state);
    bench::measure(state, [&] {
        const auto reader = WQXMLReader::newWithData_baseURL_error(data, nullptr, nullptr);
        size_t nodes = 0;
        while (reader->read() == 1) ++nodes;
        return nodes;
    });
}
void bareStreamIn(benchmark::State& state) {
    const Bare bare;
    const std::string& bytes = bytesOf(state);
    bench::measure(state, [&] {
        xmlTextReaderPtr reader = xmlReaderForMemory(bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr, 0);
        size_t nodes = 0;
        while (xmlTextReaderRead(reader) == 1) ++nodes;
        xmlFreeTextReader(reader);
        return nodes;
    });
}

#define BY_SIZE(name) \
    BENCHMARK(name)->Arg(kMegabyte)->Arg(10 * kMegabyte)->Arg(50 * kMegabyte)->UseManualTime()->Unit(benchmark::kMillisecond)
#define AT_50_MB(name) BENCHMARK(name)->Arg(50 * kMegabyte)->UseManualTime()->Unit(benchmark::kMillisecond)
BY_SIZE(bareParseAndVisit);
BY_SIZE(parseAndVisit);
BY_SIZE(bareFreeDocument);
BY_SIZE(freeDocument);
BENCHMARK(bareMemory)->Arg(kMegabyte)->Arg(10 * kMegabyte)->Arg(50 * kMegabyte)->Iterations(1);
BENCHMARK(memory)->Arg(kMegabyte)->Arg(10 * kMegabyte)->Arg(50 * kMegabyte)->Iterations(1);
BENCHMARK(bareSmallElements)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(smallElements)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(bareAttributes)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(attributes)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
BY_SIZE(bareSerialise);
BY_SIZE(serialise);
AT_50_MB(bareStreamOut);
AT_50_MB(streamOut);
AT_50_MB(bareStreamIn);
AT_50_MB(streamIn);

}  // namespace

BENCHMARK_MAIN();
