#include "examples/tour/Selections.h"

#include <fmt/format.h>
#include <libxml/tree.h>

#include "dom/WQXMLRange.h"
#include "examples/tour/Words.h"

namespace {

constexpr uint64_t kLeast = 24;  // UTF-16 units

Ref<WQXMLText> textOf(const Ref<WQXMLNode>& element) {
    const auto text = wq::cast<WQXMLText>(element->firstChild());
    return text->length() >= kLeast ? text : nullptr;
}

Ref<WQXMLNode> nextElement(const Ref<WQXMLNode>& node) {
    Ref<WQXMLNode> sibling = node->nextSibling();
    while (sibling && !isElement(sibling)) sibling = sibling->nextSibling();
    return sibling;
}

// The first element that begins with a text of some length and whose next one does as well.
Ref<WQXMLNode> firstOfTwoParagraphs(const Ref<WQXMLDocument>& document) {
    for (Ref<WQXMLNode> node = document->documentElement(); node; node = node->next())
        if (isElement(node) && textOf(node) && textOf(nextElement(node))) return node;
    return nullptr;
}

struct Named {
    const char* name;
    Ref<WQXMLRange> range;
};

void print(const char* when, const std::vector<Named>& ranges) {
    fmt::print("  {}\n", when);
    for (auto& [name, range] : ranges)
        fmt::print("    {:<10} {}\n{:15}“{}”\n", name, wq::toUTF8(range->description()), "", shortened(range->toString(), 60));
}

}  // namespace

void select(const Ref<WQXMLDocument>& document) {
    fmt::print("\nRanges:\n");
    const Ref<WQXMLNode> paragraph = firstOfTwoParagraphs(document);
    if (!paragraph) return fmt::print("  no two paragraphs stand side by side\n");
    const Ref<WQXMLText> text = textOf(paragraph), further = textOf(nextElement(paragraph));

    const auto selection = WQXMLRange::newWithStartContainer_startOffset_endContainer_endOffset(text, 20, further, 12);
    selection->setShouldMergeAfterDelete(true);
    const auto bookmark = WQXMLRange::rangeWithContainer_offset(text, 6);
    const auto deaf = WQXMLRange::range();
    deaf->setShouldAddListeners(false);
    deaf->setStart_offset(text, 0);
    deaf->setEnd_offset(text, 4);
    const std::vector<Named> ranges{{"selection", selection}, {"bookmark", bookmark}, {"deaf", deaf}};
    print("at first", ranges);

    text->splitAtIndex(4);
    print("the text split at 4: a point in its tail is mirrored there", ranges);
    bookmark->insertString(u"[here]");
    print("“[here]” inserted at the bookmark, which stays in front of it", ranges);
    selection->deleteContents();
    print("the selection deleted, and its paragraphs merged", ranges);
}
