#include "examples/tour/Queries.h"

#include <fmt/format.h>
#include <libxml/tree.h>

#include <map>

#include "examples/tour/Words.h"

namespace {

// The most frequent element of each namespace: {URI, or null} to local name.
std::map<NSString, NSString> mostFrequentNames(const Ref<WQXMLDocument>& document) {
    std::map<NSString, std::map<NSString, size_t>> numbers;
    for (Ref<WQXMLNode> node = document->documentElement(); node; node = node->next())
        if (node->nodeType() == XML_ELEMENT_NODE) ++numbers[node->namespaceURI()][node->localName()];
    std::map<NSString, NSString> names;
    for (auto& [uri, counted] : numbers) {
        auto most = counted.begin();
        for (auto name = counted.begin(); name != counted.end(); ++name)
            if (name->second > most->second) most = name;
        names[uri] = most->first;
    }
    return names;
}

void printAnswer(const Ref<WQXMLDocument>& document, const NSString& expression) {
    const auto nodes = document->nodesForXPath(expression);
    fmt::print("  {:<44} {} nodes, the first {}\n", wq::toUTF8(expression), nodes->size(), wq::toUTF8(nodes->at(0)->XPath()));
}

// The first element that the table of identifiers knows.
void lookUp(const Ref<WQXMLDocument>& document) {
    for (Ref<WQXMLNode> node = document->documentElement(); node; node = node->next()) {
        const NSString identifier = wq::cast<WQXMLElement>(node)->getAttribute(u"id");
        if (const auto found = identifier ? document->getElementById(identifier) : nullptr)
            return fmt::print("  {:<44} {}\n", "identifier " + wq::toUTF8(identifier), wq::toUTF8(found->XPath()));
    }
    fmt::print("  no element has an identifier\n");
}

}  // namespace

void query(const Ref<WQXMLDocument>& document) {
    fmt::print("\nQueries:\n");
    char16_t letter = u'a';
    for (auto& [uri, name] : mostFrequentNames(document)) {
        NSString expression = u"//";
        if (uri) {
            const NSString prefix = std::u16string(1, letter++);
            document->registerXPathPrefix_forNamespace(prefix, uri);
            fmt::print("  {} means {}\n", wq::toUTF8(prefix), wq::toUTF8(uri));
            expression += prefix + u":";
        }
        printAnswer(document, expression + name);
        if (letter > u'z') break;
    }
    lookUp(document);
}
