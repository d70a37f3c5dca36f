#include "examples/tour/Writing.h"

#include <fmt/format.h>

#include <algorithm>
#include <functional>

#include "dom/WQXMLReader.h"
#include "dom/WQXMLWriter.h"
#include "examples/shared/Opening.h"
#include "examples/tour/Words.h"
#include "platform/WQXMLException.h"

namespace {

void printSize(const char* way, std::string_view bytes) {
    fmt::print("  {:<24} {:>9} bytes {:>7} lines\n", way, bytes.size(), std::count(bytes.begin(), bytes.end(), '\n'));
}

// Some documents have no such form, and libxml2 says why.
void attempt(const char* way, const std::function<void()>& work) {
    try {
        work();
    } catch (const WQXMLException& exception) {
        fmt::print("  {:<24} {}\n", way, oneLine(exception.reason()));
    }
}

struct Account {
    size_t elements = 0, attributes = 0, texts = 0;
    int32_t deepest = 0;
};

// Node by node, without a tree.
Account read(const Ref<NSData>& data) {
    Account account;
    const auto reader = WQXMLReader::newWithData_baseURL_error(data, nullptr, nullptr);
    while (reader->read() == 1) {
        account.deepest = std::max(account.deepest, reader->depth());
        if (reader->nodeType() == 1) ++account.elements, account.attributes += static_cast<size_t>(reader->attributeCount());
        if (reader->nodeType() == 3) ++account.texts;
    }
    return account;
}

}  // namespace

void write(const Ref<WQXMLDocument>& document) {
    fmt::print("\nWritten:\n");
    attempt("XMLData", [&] { printSize("XMLData", document->XMLData()->view()); });
    attempt("formattedXMLData", [&] { printSize("formattedXMLData", document->formattedXMLData()->view()); });
    attempt("canonicalRepresentation", [&] { printSize("canonicalRepresentation", wq::toUTF8(document->canonicalRepresentation())); });

    attempt("encodeWithWriter", [&] {
        const auto writer = WQXMLWriter::newToMemory();
        document->encodeWithWriter(writer);
        printSize("encodeWithWriter", writer->XMLData()->view());
        const Account account = read(writer->XMLData());
        fmt::print(
            "  and read again: {} elements, {} attributes, {} texts, at most {} deep\n", account.elements, account.attributes,
            account.texts, account.deepest);
    });
}
