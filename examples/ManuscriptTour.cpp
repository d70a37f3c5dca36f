// manuscript-tour FILE: opens a document, prints its outline, moves one chapter and removes another
// while a listener prints every event that it hears, and prints the outline again.
//
// XML and XHTML are read as XML; HTML, told by how it begins, is read by the HTML 4 parser.
// Exit code 1, and one line on standard error, for a file that cannot be read.
#include <fmt/format.h>
#include <libxml/xmlerror.h>
#include <libxml/xmlversion.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <typeinfo>

#include "dom/WQXMLAttr.h"
#include "dom/WQXMLDocument.h"
#include "dom/WQXMLEventListener.h"
#include "dom/WQXMLMutationEvent.h"
#include "platform/WQXMLException.h"

namespace {

// ---- The application's own element class

class Section : public WQXMLElement {
public:
    // The text of the first child that is a heading; null without one.
    NSString heading() const {
        static const char16_t* const headings[] = {u"title", u"h1", u"h2", u"h3", u"h4", u"h5", u"h6"};
        for (Ref<WQXMLNode> child = firstChild(); child; child = child->nextSibling())
            for (const char16_t* name : headings)
                if (child->localName() == name) return wq::cast<WQXMLElement>(child)->innerText();
        return nullptr;
    }
};

Ref<NSDictionary> argumentsFor(bool html) {
    auto sections = NSDictionary::dictionary();
    for (const char16_t* name : {u"part", u"chapter", u"section", u"article", u"div"})
        sections->setObject_forKey(&wq::Class::of<Section>(), name);
    auto classes = NSDictionary::dictionary({
        {u"urn:example:manuscript", sections},
        {u"http://www.w3.org/1999/xhtml", sections},
        {DefaultNamespaceKey, sections},
    });
    auto arguments = NSDictionary::dictionary({{DefaultElementClassesKey, classes}});
    if (html) arguments->setObject_forKey(true, WQXMLDocumentParseAsHTMLKey);
    return arguments;
}

// ---- Opening

struct CannotOpen {
    std::string line;
};

std::string oneLine(const NSString& text) {
    std::string line = wq::toUTF8(text);
    while (!line.empty() && std::isspace(static_cast<unsigned char>(line.back()))) line.pop_back();
    std::replace(line.begin(), line.end(), '\n', ' ');
    return line;
}

// HTML begins with its DOCTYPE or its root, has no XML declaration, and does not call itself XHTML.
bool looksLikeHTML(std::string_view bytes) {
    std::string head(bytes.substr(0, 1024));
    std::transform(head.begin(), head.end(), head.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    if (head.find("<?xml") != std::string::npos || head.find("xhtml") != std::string::npos) return false;
    return head.find("<!doctype html") != std::string::npos || head.find("<html") != std::string::npos;
}

Ref<WQXMLDocument> open(const std::string& path) {
    const Ref<NSURL> url = NSURL::fileURLWithPath(wq::fromUTF8(path));
    Ref<NSError> error;
    const Ref<NSData> data = NSData::dataWithContentsOfURL_error(url, &error);
    if (!data) throw CannotOpen{oneLine(error->localizedDescription())};  // which names the file
    try {
        auto document = WQXMLDocument::newWithData_baseURL_arguments_error(data, url, argumentsFor(looksLikeHTML(data->view())), nullptr);
        if (!document) throw CannotOpen{fmt::format("{}: the file is empty", path)};
        return document;
    } catch (const WQXMLException& exception) {
        const xmlError* last = xmlGetLastError();
        throw CannotOpen{fmt::format("{}:{}: {}", path, last ? last->line : 0, oneLine(exception.reason()))};
    }
}

// ---- The outline

constexpr size_t kMostLines = 40;

std::string shortened(const NSString& text, size_t units) {
    std::u16string words;
    for (char16_t unit : text.view()) {
        const bool blank = unit == u' ' || unit == u'\n' || unit == u'\t';
        if (!blank)
            words += unit;
        else if (!words.empty() && words.back() != u' ')
            words += u' ';
    }
    if (words.size() > units) words = words.substr(0, units) + u"…";
    return wq::toUTF8(words);
}

bool isElement(const Ref<WQXMLNode>& node) { return node->nodeType() == XML_ELEMENT_NODE; }

// The sections; in a document that has none, the root and its children.
WQXMLNode::Sequence outlineOf(const Ref<WQXMLDocument>& document) {
    WQXMLNode::Sequence sections;
    for (Ref<WQXMLNode> node = document->documentElement(); node; node = node->next())
        if (wq::cast<Section>(node)) sections.push_back(node);
    if (!sections.empty()) return sections;
    for (Ref<WQXMLNode> node = document->documentElement(); node; node = node->next())
        if (isElement(node) && node->depth() <= 1) sections.push_back(node);
    return sections;
}

const char* className(const Ref<WQXMLNode>& node) {
    const WQXMLNode& bound = *node.get();
    if (typeid(bound) == typeid(Section)) return "Section";
    if (typeid(bound) == typeid(WQXMLElement)) return "WQXMLElement";
    if (typeid(bound) == typeid(WQXMLText)) return "WQXMLText";
    if (typeid(bound) == typeid(WQXMLAttr)) return "WQXMLAttr";
    return "WQXMLNode";
}

void printOutline(const Ref<WQXMLDocument>& document) {
    const auto sections = outlineOf(document);
    for (size_t i = 0; i < std::min(sections.size(), kMostLines); ++i) {
        const Ref<WQXMLNode>& section = sections[i];
        fmt::print(
            "  {:<44} depth {}  {}\n", wq::toUTF8(section->XPath()), section->depth(),
            shortened(wq::cast<Section>(section)->heading(), 40));
    }
    if (sections.size() > kMostLines) fmt::print("  and {} more\n", sections.size() - kMostLines);

    std::map<std::string, size_t> numbers;
    for (Ref<WQXMLNode> node = document->documentElement(); node; node = node->next()) {
        ++numbers[className(node)];
        for (auto attribute = wq::cast<WQXMLElement>(node)->firstAttribute(); attribute; attribute = attribute->nextSibling())
            ++numbers[className(attribute)];
    }
    fmt::print("  nodes by class:");
    for (auto& [name, number] : numbers) fmt::print("  {} {}", name, number);
    fmt::print("\n");
}

// ---- The edits

std::string nameOf(const Ref<WQXMLNode>& node) {
    const NSString identifier = wq::cast<WQXMLElement>(node)->getAttribute(u"id");
    const std::string name = node->nodeName() ? wq::toUTF8(node->nodeName()) : fmt::format("(node of type {})", node->nodeType());
    return identifier ? name + "#" + wq::toUTF8(identifier) : name;
}

class Reporter : public WQXMLEventListener {
public:
    void handleEvent(const Ref<WQXMLEvent>& event) override {
        static const char* const phases[] = {"none", "capture", "target", "bubble"};
        const auto mutation = wq::cast<WQXMLMutationEvent>(event);
        fmt::print(
            "  event {} {:<8}  phase {} {}  target {}  related node {}\n", event->eventID(), event->eventID() == 4 ? "inserted" : "removed",
            event->phase(), phases[event->phase() & 3], nameOf(event->target()), nameOf(mutation->relatedNode()));
    }
};

// Siblings that can be moved about: the sections of the first parent that has two or more; in a
// document without such a parent, the child elements of one.
WQXMLNode::Sequence chaptersOf(const Ref<WQXMLDocument>& document) {
    for (bool sectionsOnly : {true, false})
        for (Ref<WQXMLNode> parent = document->documentElement(); parent; parent = parent->next()) {
            WQXMLNode::Sequence chapters;
            for (Ref<WQXMLNode> child = parent->firstChild(); child; child = child->nextSibling())
                if (sectionsOnly ? wq::cast<Section>(child) != nullptr : isElement(child)) chapters.push_back(child);
            if (chapters.size() >= 2) return chapters;
        }
    return {};
}

void moveAndRemove(const Ref<WQXMLDocument>& document) {
    const auto chapters = chaptersOf(document);
    if (chapters.empty()) return fmt::print("\nNothing here has two elements side by side: there is nothing to move.\n");
    const Ref<WQXMLNode> parent = chapters[0]->parentNode();

    Reporter reporter;
    document->addListener_forEvent_useCapture(&reporter, 4 | 8, true);
    fmt::print("\n{} goes ahead of {}:\n", nameOf(chapters[1]), nameOf(chapters[0]));
    parent->insertChild_before(chapters[1], chapters[0]);
    if (chapters.size() > 2) {
        fmt::print("{} is removed:\n", nameOf(chapters.back()));
        parent->removeChild(chapters.back());
    }
    document->removeListener_forEvent_useCapture(&reporter, 4 | 8, true);
}

void tour(const std::string& path) {
    const Ref<WQXMLDocument> document = open(path);
    fmt::print("{}\n", path);
    printOutline(document);
    moveAndRemove(document);
    fmt::print("\nThe outline now:\n");
    printOutline(document);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        fmt::print(stderr, "usage: manuscript-tour FILE...\n");
        return 2;
    }
    try {
        for (int i = 1; i < argc; ++i) tour(argv[i]);
        return 0;
    } catch (const CannotOpen& failure) {
        fmt::print(stderr, "{}\n", failure.line);
        return 1;
    }
}
