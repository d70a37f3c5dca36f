#include "examples/book/EditingSession.h"

#include <fmt/format.h>
#include <libxml/tree.h>

#include "dom/WQXMLRange.h"

namespace {

constexpr uint64_t kLeast = 120;  // UTF-16 units
constexpr const char16_t* kSentence = u"It has been there longer than the hut. ";

Ref<WQXMLText> textOf(const Ref<WQXMLNode>& element) {
    const auto text = wq::cast<WQXMLText>(element->firstChild());
    return text->length() >= kLeast ? text : nullptr;
}

Ref<WQXMLNode> nextElement(const Ref<WQXMLNode>& node) {
    Ref<WQXMLNode> sibling = node->nextSibling();
    while (sibling && sibling->nodeType() != XML_ELEMENT_NODE) sibling = sibling->nextSibling();
    return sibling;
}

bool isBlank(char16_t unit) { return unit == u' ' || unit == u'\n'; }
bool endsSentence(char16_t unit) { return unit == u'.' || unit == u'!' || unit == u'?'; }

// Where the sentence begins that is the first behind an offset; the offset itself without one.
uint64_t sentenceBehind(const NSString& text, uint64_t offset) {
    const auto view = text.view();
    for (uint64_t i = offset; i + 2 < view.size(); ++i)
        if (endsSentence(view[i]) && isBlank(view[i + 1])) return i + 2;
    return offset;
}

// Where the last sentence of an element begins, in the last of its texts that holds such a place; half-way in the first text
// without one.
Ref<WQXMLRange> lastSentence(const Ref<WQXMLNode>& element) {
    for (Ref<WQXMLNode> child = element->lastChild(); child; child = child->previousSibling()) {
        const NSString text = wq::cast<WQXMLText>(child)->nodeValue();
        const auto view = text.view();
        for (uint64_t i = view.size(); i-- > 0;)
            if (i + 2 < view.size() && endsSentence(view[i]) && isBlank(view[i + 1]))
                return WQXMLRange::rangeWithContainer_offset(child, i + 2);
    }
    return WQXMLRange::rangeWithContainer_offset(element->firstChild(), textOf(element)->length() / 2);
}

}  // namespace

std::vector<Ref<WQXMLNode>> elementsToEdit(const Ref<WQXMLDocument>& document, const IsShown& isShown) {
    for (Ref<WQXMLNode> node = document->documentElement(); node; node = node->next()) {
        const auto following = nextElement(node);
        if (!textOf(node) || !textOf(following) || node->nodeName() != following->nodeName()) continue;
        if (!isShown || (isShown(node) && isShown(following))) return {node, following};
    }
    return {};
}

EditingSession edit(const Ref<WQXMLDocument>& document, const IsShown& isShown) {
    EditingSession session;
    session.beforehand = elementsToEdit(document, isShown);
    if (session.beforehand.empty()) return session;
    const Ref<WQXMLNode> first = session.beforehand[0];
    const Ref<WQXMLText> text = textOf(first), further = textOf(session.beforehand[1]);

    const auto caret = WQXMLRange::rangeWithContainer_offset(text, sentenceBehind(text->nodeValue(), 0));
    caret->insertString(kSentence);
    session.told.push_back(fmt::format("inserted a sentence of {} units", NSString(kSentence).length()));

    const auto selection = WQXMLRange::newWithStartContainer_startOffset_endContainer_endOffset(
        text, sentenceBehind(text->nodeValue(), text->length() / 2), further, sentenceBehind(further->nodeValue(), further->length() / 2));
    selection->setShouldMergeAfterDelete(true);
    const size_t length = selection->toString().length();
    selection->deleteContents();
    session.told.push_back(fmt::format("deleted {} units across two paragraphs, which became one", length));

    lastSentence(first)->splitBelowNode(first->parentNode());
    const auto second = wq::cast<WQXMLElement>(nextElement(first));
    second->removeAttribute(u"class");  // what the first one begins, it does not
    session.told.push_back("split the last sentence off");
    session.afterwards = {first, second};
    return session;
}
