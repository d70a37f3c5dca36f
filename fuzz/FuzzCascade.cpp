// Bytes from outside as a style sheet for a small document. Its elements and texts are resolved from the root down; a
// second time, all say the same.
// Only in a build without hard assertions: a syntax error would end the process.
#include <libxml/parser.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

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

}  // namespace

// As tests/leaks.supp: fontconfig keeps its configuration.
extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig"; }

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const Document document(xmlReadMemory(kDocument, sizeof kDocument - 1, nullptr, nullptr, XML_PARSE_NONET), xmlFreeDoc);
    require(document != nullptr);
    CSS::StyleResolver resolver;
    resolver.ProcessRules(SharedPtr<CSS::Stylesheet>(CSS::Stylesheet::CreateWithData({reinterpret_cast<const char*>(data), size})));
    const std::string text = resolved(resolver, xmlDocGetRootElement(document.get()), {});
    require(resolved(resolver, xmlDocGetRootElement(document.get()), {}) == text);
    return 0;
}
