// A long editing session: a million random operations on a document of 5 MB, with ranges that come and go, listeners that
// raise, and every 10,000 operations a save and the styles of all elements. Prints what memory it holds; ends with 1 if that
// has grown since the first 20,000 operations, with 2 if what is saved is not what the tree says.
//
//     soak [OPERATIONS [BYTES]]
//
// What it does depends on the two numbers alone. Edits keep the document as long as it is: what one gains another loses.
#include <malloc.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <unordered_map>

#include "bench/Generator.h"
#include "dom/WQXMLDocument.h"
#include "dom/WQXMLEventListener.h"
#include "dom/WQXMLRange.h"
#include "mac/Frameworks/WQCSS/WQCSSStyleResolver.h"
#include "platform/WQXMLException.h"

namespace {

constexpr uint64_t kBetweenSaves = 10'000, kWarmUp = 20'000;
constexpr size_t kRanges = 300;
constexpr double kNoise = 1.03;

size_t heldBytes() {
    const auto info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

struct Raising final : WQXMLEventListener {
    void handleEvent(const Ref<WQXMLEvent>&) override { throw WQXMLException(u"Refused", u"by a listener"); }
};

class Session {
public:
    explicit Session(size_t bytes) : document(parse(bench::document(bytes))) {}

    void operate() {
        try {
            switch (sequence.below(12)) {
                case 0: return addRange();
                case 1: return dropRange();
                case 2: return setAttribute();
                case 3: return addOrRemoveParagraph();
                case 4: return splitAndMerge();
                case 5: return deleteARange();
                case 6: return refuseAnEdit();
                case 7: return moveParagraph();
                default: return editText();
            }
        } catch (const WQXMLException& exception) {
            if (exception.name() != u"Refused") throw;
        }
    }

    // Whether what is saved, read again, says the same.
    bool save() {
        const std::string saved(document->XMLData()->view());
        return !saved.empty() && parse(saved)->XMLData()->view() == saved;
    }

    size_t resolve() {
        const auto resolver = WQCSSStyleResolver::newStyleResolver();
        resolver->processRulesFromStyleSheet(WQCSSStyleSheet::styleSheetWithString(wq::fromUTF8(bench::sheet(100))));
        std::unordered_map<const WQXMLNode*, Ref<WQCSSStyle>> styles;
        for (Ref<WQXMLNode> node = document->documentElement(); node; node = node->next()) {
            if (node->nodeType() != 1) continue;
            const auto parent = styles.find(node->parentNode().get());
            styles[node.get()] = resolver->resolveStyle_parentStyle(node, parent == styles.end() ? nullptr : parent->second);
        }
        return styles.size();
    }

    void dropRanges() { ranges.clear(); }

private:
    static Ref<WQXMLDocument> parse(std::string bytes) {
        return WQXMLDocument::newWithData_baseURL_arguments_error(NSData::dataWithBytes(std::move(bytes)), nullptr, nullptr, nullptr);
    }

    Ref<WQXMLNode> child(const Ref<WQXMLNode>& parent) {
        const auto count = static_cast<uint32_t>(parent->numberOfChildren());
        return count ? parent->childAtIndex(sequence.below(count)) : nullptr;
    }
    // An element of that name among the children of one; null if none of a few tries is one.
    Ref<WQXMLNode> childNamed(const Ref<WQXMLNode>& parent, const char16_t* name) {
        for (int tries = 0; tries < 8; ++tries)
            if (auto found = child(parent); found->localName() == name) return found;
        return nullptr;
    }
    Ref<WQXMLNode> section() { return childNamed(childNamed(document->documentElement(), u"chapter"), u"section"); }
    Ref<WQXMLNode> paragraph() { return childNamed(section(), u"p"); }
    Ref<WQXMLText> text() { return wq::cast<WQXMLText>(child(paragraph())); }
    uint64_t offset(const Ref<WQXMLText>& text) { return sequence.below(static_cast<uint32_t>(text->length()) + 1); }
    NSString words() { return wq::fromUTF8(bench::words(sequence, 3)); }

    // As much goes as comes, over all texts.
    void editText() {
        const auto edited = text();
        if (!edited) return;
        const uint64_t at = offset(edited), deleted = std::min<uint64_t>(edited->length() - at, 15);
        if (surplus > 0) {
            edited->deleteCharactersInRange({at, deleted});
            surplus -= static_cast<int64_t>(deleted);
        } else {
            const NSString inserted = words();
            edited->insertString_atIndex(inserted, at);
            surplus += static_cast<int64_t>(inserted.length());
        }
    }
    // One attribute changes, another comes and goes.
    void setAttribute() {
        const auto element = wq::cast<WQXMLElement>(paragraph());
        element->setAttribute_value(u"class", u"k" + NSString(std::u16string(1, static_cast<char16_t>(u'0' + sequence.below(10)))));
        element->setAttribute_value(u"style", u"color: red");
        element->setAttribute_value(u"style", u"margin-left: 3pt");
        element->removeAttribute(u"style");
    }
    // As many go as come.
    void addOrRemoveParagraph() {
        const auto where = section(), model = paragraph();
        if (!where || !model) return;
        if (added > 0) {
            model->parentNode()->removeChild(model);
            --added;
        } else {
            where->insertChild_before(model->copyNode(true), child(where));
            ++added;
        }
    }
    void splitAndMerge() {
        const auto split = text();
        if (!split || split->length() < 2) return;
        const auto tail = wq::cast<WQXMLText>(split->splitAtIndex(split->length() / 2));
        split->appendString(tail->string());
        tail->parentNode()->removeChild(tail);
    }
    void moveParagraph() {
        const auto moved = paragraph(), where = section();
        if (moved && where) where->appendChild(moved);
    }
    void addRange() {
        const auto from = text();
        if (!from) return;
        const uint64_t at = offset(from);
        if (ranges.size() == kRanges) dropRange();
        ranges.push_back(WQXMLRange::newWithStartContainer_startOffset_endContainer_endOffset(from, at, from, from->length()));
    }
    void dropRange() {
        if (!ranges.empty()) ranges.erase(ranges.begin() + sequence.below(static_cast<uint32_t>(ranges.size())));
    }
    void deleteARange() {
        const auto within = text();
        if (!within || within->length() < 20) return;
        WQXMLRange::newWithStartContainer_startOffset_endContainer_endOffset(within, 5, within, 9)->deleteContents();
        surplus -= 4;
    }
    void refuseAnEdit() {
        const auto where = paragraph();
        if (!where) return;
        Raising listener;
        where->addListener_forEvent_useCapture(&listener, 1 | 2 | 4 | 8, true);
        try {
            where->appendChild(document->createTextNode(u"x"));
        } catch (const WQXMLException&) {
            where->removeListener_forEvent_useCapture(&listener, 1 | 2 | 4 | 8, true);
            where->removeChild(where->lastChild());  // raised behind the insertion
            throw;
        }
        where->removeListener_forEvent_useCapture(&listener, 1 | 2 | 4 | 8, true);
    }

    Ref<WQXMLDocument> document;
    std::vector<Ref<WQXMLRange>> ranges;
    bench::Sequence sequence;
    int added = 0;        // paragraphs
    int64_t surplus = 0;  // UTF-16 units
};

}  // namespace

// As tests/leaks.supp: fontconfig keeps its configuration.
extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig"; }

int main(int count, char** arguments) {
    const uint64_t operations = count > 1 ? std::strtoull(arguments[1], nullptr, 10) : 1'000'000;
    const size_t bytes = count > 2 ? std::strtoull(arguments[2], nullptr, 10) : 5'000'000;
    Session session(bytes);
    size_t early = 0, held = 0;
    for (uint64_t done = 1; done <= operations; ++done) {
        session.operate();
        if (done % kBetweenSaves) continue;
        if (!session.save()) {
            std::printf("after %llu operations: what was saved differs\n", static_cast<unsigned long long>(done));
            return 2;
        }
        const size_t styles = session.resolve();
        held = heldBytes();
        if (done == kWarmUp) early = held;
        std::printf("%llu operations: %zu bytes held, %zu elements\n", static_cast<unsigned long long>(done), held, styles);
        std::fflush(stdout);
    }
    if (early && static_cast<double>(held) > static_cast<double>(early) * kNoise) {
        std::printf("grew from %zu to %zu bytes\n", early, held);
        return 1;
    }
    return 0;
}
