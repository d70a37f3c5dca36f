#include "examples/book/StyledTree.h"

#include <libxml/tree.h>

#include <algorithm>
#include <set>

#include "dom/WQXMLMutationEvent.h"

namespace {

constexpr int32_t kAttributeModified = 1;
constexpr int32_t kInserted = 4;
constexpr int32_t kRemoved = 8;

// The node that follows all that is below this one; null at the end of the document.
Ref<WQXMLNode> nextBehind(Ref<WQXMLNode> node) {
    while (node && !node->nextSibling()) node = node->parentNode();
    return node->nextSibling();
}

// A node and all below it, in document order.
template <class Visit> void walk(const Ref<WQXMLNode>& top, Visit visit) {
    const auto end = nextBehind(top);
    for (Ref<WQXMLNode> node = top; node && node != end; node = node->next()) visit(node);
}

bool hasStyle(const Ref<WQXMLNode>& node) { return node->nodeType() == XML_ELEMENT_NODE || node->nodeType() == XML_TEXT_NODE; }

}  // namespace

StyledTree::StyledTree(const Ref<WQXMLDocument>& aDocument, const Ref<WQCSSStyleResolver>& aResolver, Dress aDress)
    : document(aDocument), resolver(aResolver), dress(std::move(aDress)) {
    document->addListener_forEvent_useCapture(this, kAttributeModified | kInserted | kRemoved, true);
}

StyledTree::~StyledTree() { document->removeListener_forEvent_useCapture(this, kAttributeModified | kInserted | kRemoved, true); }

Ref<WQCSSStyle> StyledTree::styleOf(const Ref<WQXMLNode>& node) const {
    const auto found = styles.find(node.get());
    return found == styles.end() ? nullptr : found->second.style;
}

size_t StyledTree::numberOfFonts() const {
    std::set<const CSS::Font*> fonts;
    for (const auto& [node, styled] : styles) fonts.insert(styled.style->cssStyle()->font.Get());
    return fonts.size();
}

// ---- Resolving

size_t StyledTree::resolve(const Progress& progress) {
    styles.clear();
    staleTops.clear();
    return resolveBelow(document->documentElement(), progress);
}

size_t StyledTree::resolveAgain() {
    const auto tops = std::move(staleTops);
    staleTops.clear();
    size_t made = 0;
    for (const auto& top : tops) {
        const bool isBelowAnother =
            std::any_of(tops.begin(), tops.end(), [&](const Ref<WQXMLNode>& other) { return other->isAncestorOfNode(top); });
        const bool isInDocument = top == document->documentElement() || document->documentElement()->isAncestorOfNode(top);
        if (isBelowAnother || !isInDocument) continue;
        forgetBelow(top);
        made += resolveBelow(top, {});
    }
    return made;
}

// Parents come first, and hand their styles down.
size_t StyledTree::resolveBelow(const Ref<WQXMLNode>& top, const Progress& progress) {
    size_t all = 0, done = 0, made = 0;
    if (progress) walk(top, [&](const Ref<WQXMLNode>&) { ++all; });
    walk(top, [&](const Ref<WQXMLNode>& node) {
        if (progress) progress(++done, all);
        if (!hasStyle(node)) return;
        const auto style = resolver->resolveStyle_parentStyle(node, styleOf(node->parentNode()));
        if (const auto element = wq::cast<WQXMLElement>(node)) dress(element, style);
        styles[node.get()] = {node, style};
        ++made;
    });
    return made;
}

void StyledTree::forgetBelow(const Ref<WQXMLNode>& top) {
    walk(top, [&](const Ref<WQXMLNode>& node) { styles.erase(node.get()); });
}

// ---- Edits

// An attribute is told to its element, and a node that comes or goes to its parent.
void StyledTree::handleEvent(const Ref<WQXMLEvent>& event) {
    const auto mutation = wq::cast<WQXMLMutationEvent>(event);
    if (event->eventID() == kRemoved) forgetBelow(event->target());
    const auto parent = event->eventID() == kAttributeModified ? event->target()->parentNode() : mutation->relatedNode();
    const auto top = parent->nodeType() == XML_ELEMENT_NODE ? parent : document->documentElement();
    if (std::find(staleTops.begin(), staleTops.end(), top) == staleTops.end()) staleTops.push_back(top);
}
