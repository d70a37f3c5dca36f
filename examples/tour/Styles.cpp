#include "examples/tour/Styles.h"

#include <fmt/format.h>

#include <filesystem>
#include <set>
#include <unordered_map>
#include <vector>

#include "common/core/css/StyleResolver.h"
#include "examples/tour/Words.h"

namespace {

using StylePointer = SharedPtr<CSS::Style>;

constexpr size_t kMostTexts = 8;

SharedPtr<CSS::Stylesheet> readSheet(const std::string& path) {
    if (!std::filesystem::is_regular_file(path)) throw CannotStyle{fmt::format("{}: no style sheet there", path)};
    const SharedPtr<CSS::Stylesheet> sheet = CSS::Stylesheet::CreateWithFile(path);
    if (!sheet) throw CannotStyle{fmt::format("{}: not a style sheet", path)};
    return sheet;
}

bool isText(const Ref<WQXMLNode>& node) { return node->nodeType() == 3; }

// What the styles of a tree share.
struct Sharing {
    size_t styles = 0;
    std::set<const CSS::Font*> fonts;
    std::set<const CSS::BoxDimensions*> boxes;

    void add(const CSS::Style& style) {
        ++styles;
        fonts.insert(style.font.Get());
        boxes.insert(style.dimensions.Get());
    }
};

// A computed text; below a parent, of the properties that differ from the parent's.
std::string textOf(const StylePointer& style, const StylePointer& parent) {
    CSS::ComputedStyleDeclaration computed(style.Get());
    CSS::ComputedStyleDeclaration above(parent.Get());
    std::string text;
    for (size_t i = 0; i < computed.length(); ++i) {
        const std::string name = computed.item(i), value = computed.propertyValue(name);
        if (!value.empty() && (!parent || value != above.propertyValue(name))) text += name + ":" + value + "; ";
    }
    if (text.empty()) return "as its parent";
    text.pop_back();
    return text;
}

}  // namespace

void resolveStyles(const Ref<WQXMLDocument>& document, const std::string& sheetPath) {
    const SharedPtr<CSS::StyleResolver> resolver = new CSS::StyleResolver;
    if (!sheetPath.empty()) resolver->ProcessRules(readSheet(sheetPath));

    fmt::print(
        "\nStyles{}:\n", sheetPath.empty() ? ", without a style sheet" : " by " + std::filesystem::path(sheetPath).filename().string());
    std::unordered_map<const WQXMLNode*, StylePointer> styles;
    std::set<NSString> toldNames;
    Sharing sharing;
    size_t nodes = 0;
    for (Ref<WQXMLNode> node = document->documentElement(); node; node = node->next()) {
        ++nodes;
        if (!isElement(node) && !isText(node)) continue;
        const auto above = styles.find(node->parentNode().get());
        const StylePointer parent = above == styles.end() ? StylePointer() : above->second;
        const StylePointer style = resolver->ResolveStyle(node->xmlNode(), parent);
        sharing.add(*style);
        styles.emplace(node.get(), style);
        if (isElement(node) && toldNames.size() < kMostTexts && toldNames.insert(node->localName()).second)
            fmt::print("  {}\n      {}\n", wq::toUTF8(node->XPath()), textOf(style, parent));
    }
    fmt::print(
        "  {} rules, {} nodes, {} styles with {} fonts and {} box records\n", resolver->processedRules.size(), nodes, sharing.styles,
        sharing.fonts.size(), sharing.boxes.size());
}
