#include "examples/tour/Edits.h"

#include <fmt/format.h>
#include <libxml/tree.h>

#include <map>

#include "dom/WQXMLAttr.h"
#include "dom/WQXMLEventListener.h"
#include "dom/WQXMLMutationEvent.h"
#include "examples/tour/Section.h"
#include "examples/tour/Words.h"

namespace {

class Reporter : public WQXMLEventListener {
public:
    void handleEvent(const Ref<WQXMLEvent>& event) override {
        static const char* const phases[] = {"none", "capture", "target", "bubble"};
        const auto mutation = wq::cast<WQXMLMutationEvent>(event);
        fmt::print(
            "  event {} {:<8}  phase {} {}  target {}  related node {}\n", event->eventID(), event->eventID() == 4 ? "inserted" : "removed",
            event->phase(), phases[event->phase() & 3], nameOf(event->target()), nameOf(mutation->relatedNode()));
    }
};

// Siblings that can be moved about: the sections of the first parent that has two or more; in a
// document without such a parent, the child elements of one.
WQXMLNode::Sequence chaptersOf(const Ref<WQXMLDocument>& document) {
    for (bool sectionsOnly : {true, false})
        for (Ref<WQXMLNode> parent = document->documentElement(); parent; parent = parent->next()) {
            WQXMLNode::Sequence chapters;
            for (Ref<WQXMLNode> child = parent->firstChild(); child; child = child->nextSibling())
                if (sectionsOnly ? wq::cast<Section>(child) != nullptr : isElement(child)) chapters.push_back(child);
            if (chapters.size() >= 2) return chapters;
        }
    return {};
}

}  // namespace

void moveAndRemove(const Ref<WQXMLDocument>& document) {
    const auto chapters = chaptersOf(document);
    if (chapters.empty()) return fmt::print("\nNothing here has two elements side by side: there is nothing to move.\n");
    const Ref<WQXMLNode> parent = chapters[0]->parentNode();

    Reporter reporter;
    document->addListener_forEvent_useCapture(&reporter, 4 | 8, true);
    fmt::print("\n{} goes ahead of {}:\n", nameOf(chapters[1]), nameOf(chapters[0]));
    parent->insertChild_before(chapters[1], chapters[0]);
    if (chapters.size() > 2) {
        fmt::print("{} is removed:\n", nameOf(chapters.back()));
        parent->removeChild(chapters.back());
    }
    document->removeListener_forEvent_useCapture(&reporter, 4 | 8, true);
}

namespace {

// Counts what an edit fires.
class Counter : public WQXMLEventListener {
public:
    void handleEvent(const Ref<WQXMLEvent>& event) override { ++numbers[event->eventID()]; }

    // "2 inserted, 1 removed" since the last time.
    std::string account() {
        static const std::map<int32_t, const char*> words{{1, "attribute set"}, {2, "text changed"}, {4, "inserted"}, {8, "removed"}};
        std::string account;
        for (auto& [event, number] : numbers) account += fmt::format("{}{} {}", account.empty() ? "" : ", ", number, words.at(event));
        numbers.clear();
        return account.empty() ? "nothing" : account;
    }

private:
    std::map<int32_t, size_t> numbers;
};

constexpr int32_t kEveryEdit = 1 | 2 | 4 | 8;

// The first element of some length that holds text and nothing else; null without one.
Ref<WQXMLElement> paragraphOf(const Ref<WQXMLDocument>& document, uint64_t units) {
    for (Ref<WQXMLNode> node = document->documentElement(); node; node = node->next()) {
        const auto text = wq::cast<WQXMLText>(node->firstChild());
        if (text->length() >= units && !text->nextSibling()) return wq::cast<WQXMLElement>(node);
    }
    return nullptr;
}

// The attributes whose values are not plain text, but hold references to entities.
std::vector<Ref<WQXMLAttr>> attributesWithEntities(const Ref<WQXMLElement>& element) {
    std::vector<Ref<WQXMLAttr>> attributes;
    for (auto attribute = element->firstAttribute(); attribute; attribute = attribute->nextSibling())
        for (auto part = attribute->firstChild(); part; part = part->nextSibling())
            if (part->nodeType() == XML_ENTITY_REF_NODE) attributes.push_back(wq::cast<WQXMLAttr>(attribute));
    return attributes;
}

}  // namespace

void rewrite(const Ref<WQXMLDocument>& document) {
    Counter counter;
    document->addListener_forEvent_useCapture(&counter, kEveryEdit, true);
    auto tell = [&](const std::string& edit) { fmt::print("  {:<58} fires {}\n", edit, counter.account()); };
    fmt::print("\nRewriting:\n");

    const Ref<WQXMLElement> root = document->documentElement();
    root->setAttribute_value(u"revision", u"2");
    tell(fmt::format("{}: revision=\"2\"", nameOf(root)));
    for (auto& attribute : attributesWithEntities(root)) {
        attribute->setValue(attribute->value());
        tell(fmt::format("{}: {} spelled out", nameOf(root), wq::toUTF8(attribute->name())));
    }

    if (const auto paragraph = paragraphOf(document, 40)) {
        const auto text = wq::cast<WQXMLText>(paragraph->firstChild());
        const auto tail = wq::cast<WQXMLText>(text->splitAtIndex(20));
        tell(fmt::format("{}: text split at 20", nameOf(paragraph)));
        const auto behind = paragraph->splitAtIndex(1);
        tell(fmt::format("{}: element split at 1", nameOf(paragraph)));
        paragraph->mergeWithNode(behind);
        tell(fmt::format("{}: elements merged", nameOf(paragraph)));
        text->appendString(tail->string());
        paragraph->removeChild(tail);
        tell(fmt::format("{}: texts merged", nameOf(paragraph)));
        paragraph->setInnerXML(paragraph->innerXML() + u" <!--seen-->");
        tell(fmt::format("{}: new inner XML", nameOf(paragraph)));
    }
    document->removeListener_forEvent_useCapture(&counter, kEveryEdit, true);
}
