// What the tests of dom share.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <libxml/tree.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "dom/WQXMLDocument.h"
#include "dom/WQXMLEventListener.h"
#include "dom/WQXMLExceptionNames.h"
#include "dom/WQXMLMutationEvent.h"
#include "platform/Assertion.h"

namespace wq {
int64_t numberOfLivingNodes() noexcept;  // of libxml2's, with and without wrappers
}

namespace test {

using namespace wq::literals;

constexpr int32_t kEverything = 0x7fffffff;  // every event bit

inline Ref<NSData> data(std::string_view bytes) { return NSData::dataWithBytes(std::string(bytes)); }

inline Ref<WQXMLDocument> parse(std::string_view xml, const Ref<NSDictionary>& arguments = nullptr) {
    return WQXMLDocument::newWithData_baseURL_arguments_error(data(xml), nullptr, arguments, nullptr);
}

inline Ref<WQXMLDocument> parseHTML(std::string_view html) {
    return parse(html, NSDictionary::dictionary({{WQXMLDocumentParseAsHTMLKey, true}}));
}

// The first node of that name in document order; the document must have one.
inline Ref<WQXMLNode> find(const Ref<WQXMLDocument>& document, std::u16string_view name) {
    Ref<WQXMLNode> node = document->documentElement();
    while (node && node->nodeName().view() != name) node = node->next();
    EXPECT_TRUE(node) << wq::toUTF8(name);
    return node;
}

// The subtree as a short text: a[b,"text",<!>] where <!> is a node without a name.
inline std::string dump(const Ref<WQXMLNode>& node) {
    if (node->nodeType() == XML_TEXT_NODE) return '"' + wq::toUTF8(node->nodeValue()) + '"';
    if (!node->nodeName()) return "<!>";
    std::string text = wq::toUTF8(node->nodeName());
    if (!node->firstChild()) return text;
    text += '[';
    for (Ref<WQXMLNode> child = node->firstChild(); child; child = child->nextSibling())
        text += (child->previousSibling() ? "," : "") + dump(child);
    return text + ']';
}
inline std::string dump(const Ref<WQXMLDocument>& document) { return dump(Ref<WQXMLNode>(document->documentElement())); }

// What libxml2 itself writes for a node.
inline std::string serialised(const Ref<WQXMLNode>& node) {
    xmlBufferPtr buffer = xmlBufferCreate();
    xmlNodeDump(buffer, node->xmlNode()->doc, node->xmlNode(), 0, 0);
    std::string text(reinterpret_cast<const char*>(xmlBufferContent(buffer)));
    xmlBufferFree(buffer);
    return text;
}

// A folder of a test's own, gone with the scope.
struct Folder {
    Folder() { path = mkdtemp(pattern.data()); }
    ~Folder() { std::filesystem::remove_all(path); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    std::filesystem::path file(const char* name) const { return path / name; }
    std::filesystem::path file(const char* name, std::string_view content) const {
        std::ofstream(path / name, std::ios::binary) << content;
        return path / name;
    }
    std::string pattern = testing::TempDir() + "wq-XXXXXX";
    std::filesystem::path path;
};
inline Ref<NSURL> fileURL(const std::filesystem::path& path) { return NSURL::fileURLWithPath(wq::fromUTF8(path.string())); }

// Puts a value in a global for a scope.
template <class T> class Put {
public:
    Put(T& variable, T value) : place(variable), previous(variable) { place = value; }
    ~Put() { place = previous; }
    Put(const Put&) = delete;
    Put& operator=(const Put&) = delete;

private:
    T& place;
    T previous;
};

// Keeps the assertions that fail in its scope; the operation goes on.
class Assertions {
public:
    std::vector<std::string> descriptions;
    std::vector<std::string> files;
    std::vector<std::string> operations;

private:
    wq::AssertionScope scope{[this](const wq::AssertionFailure& failure) {
        descriptions.push_back(wq::toUTF8(failure.description));
        files.emplace_back(failure.file);
        operations.emplace_back(failure.operation);
    }};
};

// The name and the reason that `work` raises, with ": " between; "" if it raises nothing.
inline std::string raised(auto&& work) {
    try {
        work();
    } catch (const WQXMLException& exception) {
        return exception.what();
    }
    return "";
}

// Writes down what it hears: "event/phase target<-related".
class Log : public WQXMLEventListener {
public:
    explicit Log(std::string itsName = "") : name(std::move(itsName)) {}
    void handleEvent(const Ref<WQXMLEvent>& event) override {
        const auto mutation = wq::cast<WQXMLMutationEvent>(event);
        heard.push_back(
            name + std::to_string(event->eventID()) + "/" + std::to_string(event->phase()) + " " +
            wq::toUTF8(wq::printed(event->target()->nodeName())) + "<-" + wq::toUTF8(wq::printed(mutation->relatedNode()->nodeName())));
    }
    std::string name;
    std::vector<std::string> heard;
};

}  // namespace test

// GoogleTest prints a reference by what it refers to.
namespace wq {
template <class T> void PrintTo(const Ref<T>& reference, std::ostream* out) { *out << toUTF8(printed(reference->description())); }
}  // namespace wq
