#include "examples/tour/Outline.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <typeinfo>

#include "dom/WQXMLAttr.h"
#include "examples/tour/Section.h"
#include "examples/tour/Words.h"

namespace {

constexpr size_t kMostLines = 40;

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

}  // namespace

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
