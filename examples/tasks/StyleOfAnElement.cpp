// style-of-an-element: what an inspector shows for the element at the caret.
#include <fmt/format.h>

#include <vector>

#include "dom/WQXMLDocument.h"
#include "mac/Frameworks/WQCSS/WQCSSComputedStyleDeclaration.h"
#include "mac/Frameworks/WQCSS/WQCSSStyleResolver.h"
#include "platform/WQXMLException.h"

namespace {

constexpr const char* kLetter = "<letter><p>Dear Ada,</p><p class='note'>It was late <em>yesterday</em>, too.</p></letter>";

constexpr const char16_t* kSheet =
    u"letter { font-family: TeX Gyre Pagella; font-size: 11pt; color: #222222 }\n"
    u"p { display: block; margin: 6pt 0; text-align: justify }\n"
    u"p.note { font-size: 9pt; colour: grey }\n"
    u"em { font-style: italic }\n";

// [style]
Ref<WQCSSStyle> styleOf(const Ref<WQXMLNode>& node, const Ref<WQCSSStyleResolver>& resolver) {
    std::vector<Ref<WQXMLNode>> path = {node};
    while (wq::cast<WQXMLElement>(path.back()->parentNode())) path.push_back(path.back()->parentNode());
    Ref<WQCSSStyle> style;
    for (; !path.empty(); path.pop_back()) style = resolver->resolveStyle_parentStyle(path.back(), style);
    return style;
}
// [end]

// [fields]
void printFields(const Ref<WQCSSStyle>& style) {
    fmt::print("  {} at {} points", wq::toUTF8(style->fontFamily()), style->fontSize());
    if (style->fontStyle() == WQCSSFontStyleItalic) fmt::print(", italic");
    if (style->display() == WQCSSDisplayBlock) fmt::print(", a block");
    const _WQCSSLength above = style->marginTop();
    if (above.type == WQCSSLengthTypeAbsolute && above.value > 0) fmt::print(", {} points above", above.value);
    const Ref<NSColor> color = style->color();
    fmt::print(", colour {:.2f} {:.2f} {:.2f}\n", color->redComponent(), color->greenComponent(), color->blueComponent());
}
// [end]

// [differences]
void printDifferences(const Ref<WQCSSStyle>& style, const Ref<WQCSSStyle>& parent) {
    const auto computed = WQCSSComputedStyleDeclaration::computedStyleDeclarationWithStyle(style);
    const auto around = WQCSSComputedStyleDeclaration::computedStyleDeclarationWithStyle(parent);
    for (size_t i = 0; i < computed->length(); ++i) {
        const NSString name = computed->item(i), value = computed->propertyValue(name);
        if (value != around->propertyValue(name)) fmt::print("  {}: {}\n", wq::toUTF8(name), wq::toUTF8(value));
    }
}
// [end]

}  // namespace

int main() try {
    // [open]
    const auto data = NSData::dataWithBytes(kLetter);
    const auto document = WQXMLDocument::newWithData_baseURL_arguments_error(data, nullptr, nullptr, nullptr);
    const auto resolver = WQCSSStyleResolver::newStyleResolver();
    resolver->processRulesFromStyleSheet(WQCSSStyleSheet::styleSheetWithString(kSheet));
    // [end]
    // [caret]
    const auto found = document->nodesForXPath(u"//p[@class='note']/em");
    if (!found || found->empty()) return 1;
    const Ref<WQXMLNode> emphasis = found->front();
    const auto note = wq::cast<WQXMLElement>(emphasis->parentNode());
    for (const Ref<WQXMLNode>& node : {Ref<WQXMLNode>(note), emphasis, emphasis->firstChild()}) {
        fmt::print("{}\n", wq::toUTF8(node->XPath()));
        printFields(styleOf(node, resolver));
    }
    fmt::print("The note differs from the letter in:\n");
    printDifferences(styleOf(note, resolver), styleOf(note->parentNode(), resolver));
    // [end]
    // [again]
    note->removeAttribute(u"class");
    note->setAttribute_value(u"style", u"color: firebrick");
    fmt::print("No note, and red:\n");
    printFields(styleOf(emphasis, resolver));
    // [end]
    // [bad sheet]
#ifdef WQ_NO_HARD_ASSERTIONS
    const auto sheet = WQCSSStyleSheet::styleSheetWithString(u"p { color red }");
    if (!sheet) fmt::print("The new sheet has a syntax error: the old styles stay.\n");
    resolver->processRulesFromStyleSheet(sheet);  // null: nothing
#endif
    // [end]
} catch (const WQXMLException& exception) {
    fmt::print(stderr, "{}\n", exception.what());
    return 1;
}
