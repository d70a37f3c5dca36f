#include "examples/tour/Styles.h"

#include <fmt/format.h>

#include <filesystem>
#include <set>
#include <unordered_map>
#include <vector>

#include "examples/shared/Opening.h"
#include "examples/tour/Words.h"
#include "mac/Frameworks/WQCSS/WQCSSComputedStyleDeclaration.h"
#include "mac/Frameworks/WQCSS/WQCSSStyleResolver.h"

namespace {

constexpr size_t kMostTexts = 8;

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
std::string textOf(const Ref<WQCSSStyle>& style, const Ref<WQCSSStyle>& parent) {
    const auto computed = WQCSSComputedStyleDeclaration::computedStyleDeclarationWithStyle(style);
    const auto above = WQCSSComputedStyleDeclaration::computedStyleDeclarationWithStyle(parent);
    std::string text;
    for (size_t i = 0; i < computed->length(); ++i) {
        const NSString name = computed->item(i), value = computed->propertyValue(name);
        if (value.length() > 0 && value != above->propertyValue(name)) text += wq::toUTF8(name + u":" + value + u"; ");
    }
    if (text.empty()) return "as its parent";
    text.pop_back();
    return text;
}

}  // namespace

void resolveStyles(const Ref<WQXMLDocument>& document, const std::string& sheetPath) {
    const auto resolver = WQCSSStyleResolver::newStyleResolver();
    if (!sheetPath.empty()) resolver->processRulesFromStyleSheet(openSheet(sheetPath));

    fmt::print(
        "\nStyles{}:\n", sheetPath.empty() ? ", without a style sheet" : " by " + std::filesystem::path(sheetPath).filename().string());
    std::unordered_map<const WQXMLNode*, Ref<WQCSSStyle>> styles;
    std::set<NSString> toldNames;
    Sharing sharing;
    size_t nodes = 0;
    for (Ref<WQXMLNode> node = document->documentElement(); node; node = node->next()) {
        ++nodes;
        if (!isElement(node) && !isText(node)) continue;
        const auto above = styles.find(node->parentNode().get());
        const Ref<WQCSSStyle> parent = above == styles.end() ? nullptr : above->second;
        const auto style = resolver->resolveStyle_parentStyle(node, parent);
        sharing.add(*style->cssStyle());
        styles.emplace(node.get(), style);
        if (isElement(node) && toldNames.size() < kMostTexts && toldNames.insert(node->localName()).second)
            fmt::print("  {}\n      {}\n", wq::toUTF8(node->XPath()), textOf(style, parent));
    }
    fmt::print(
        "  {} rules, {} nodes, {} styles with {} fonts and {} box records\n", resolver->cssStyleResolver()->processedRules.size(), nodes,
        sharing.styles, sharing.fonts.size(), sharing.boxes.size());
}
