// Bytes from outside as a style sheet for a small document. Its elements and texts are resolved from the root down; a
// second time, all say the same. The index of rules finds each rule that matches.
// Only in a build without hard assertions: a syntax error would end the process.
#include <libxml/parser.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "common/core/css/RuleIndex.h"
#include "common/core/css/StyleDeclaration.h"
#include "common/core/css/StyleResolver.h"

namespace {

const char kDocument[] =
    "<book class='first' lang='en-GB'>"
    "<p id='x' class='first last'>plain <b style='color: red; font: italic 9pt/1.5 a, b'>bold <i class='b' xml:lang='de'/></b></p>"
    "<ul style='list-style-type: square; x y'><li title='t'/>&amp;<!-- none --><li class='last' style='margin: 1pt 2% auto'/></ul>"
    "</book>";

using Document = std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)>;

void require(bool condition) {
    if (!condition) std::abort();
}

std::string textOf(const SharedPtr<CSS::Style>& style) {
    require(style.Get());
    return CSS::ComputedStyleDeclaration(style.Get()).cssText() + '\n';
}

// What the node and all that it holds say.
std::string resolved(const CSS::StyleResolver& resolver, xmlNode* node, const SharedPtr<CSS::Style>& parent) {
    if (node->type != XML_ELEMENT_NODE && node->type != XML_TEXT_NODE) return "";
    const auto style = resolver.ResolveStyle(node, parent);
    std::string text = textOf(style);
    if (node->type == XML_TEXT_NODE) require(style->GetDisplay() == WQCSSDisplayInline);
    for (xmlNode* child = node->children; child; child = child->next) text += resolved(resolver, child, style);
    return text;
}

// Asked of every rule, in this element and all below it.
void requireFound(const CSS::RuleIndex& index, const CSS::Stylesheet& sheet, xmlNode* element) {
    const std::vector<uint32_t> found = index.candidatesFor(element);
    for (uint32_t number = 0; number < sheet.styleRules.size(); ++number)
        for (const SharedPtr<CSS::Selector>& selector : sheet.styleRules[number]->selectors)
            if (selector->Match(element)) require(std::binary_search(found.begin(), found.end(), number));
    for (xmlNode* child = element->children; child; child = child->next)
        if (child->type == XML_ELEMENT_NODE) requireFound(index, sheet, child);
}

}  // namespace

// As tests/leaks.supp: fontconfig keeps its configuration.
extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig"; }

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const Document document(xmlReadMemory(kDocument, sizeof kDocument - 1, nullptr, nullptr, XML_PARSE_NONET), xmlFreeDoc);
    require(document != nullptr);
    CSS::StyleResolver resolver;
    const SharedPtr<CSS::Stylesheet> sheet = CSS::Stylesheet::CreateWithData({reinterpret_cast<const char*>(data), size});
    resolver.ProcessRules(sheet);
    const std::string text = resolved(resolver, xmlDocGetRootElement(document.get()), {});
    require(resolved(resolver, xmlDocGetRootElement(document.get()), {}) == text);
    if (!sheet) return 0;
    CSS::RuleIndex index;
    for (const auto& rule : sheet->styleRules) index.add(*rule);
    requireFound(index, *sheet, xmlDocGetRootElement(document.get()));
    return 0;
}
