// What an edit costs with 0 to 1,000 ranges on the document, beside libxml2's own calls for the same.
// An iteration is two edits; the line "BigO" gives the time that each range adds to it.
#include <benchmark/benchmark.h>

#include "bench/Bare.h"
#include "dom/WQXMLDocument.h"
#include "dom/WQXMLRange.h"

namespace {

constexpr int kParagraphs = 1000;
constexpr const char16_t* kSentence = u"The ferry is called by a bell. It hangs on a post at the top of the landing.";

// A document of paragraphs, and ranges that are spread over them.
struct Manuscript {
    explicit Manuscript(int64_t numberOfRanges) {
        document->appendChild(document->createElement(u"book"));
        for (int i = 0; i < kParagraphs; ++i)
            document->documentElement()->appendChild(document->createElement(u"p"))->appendChild(document->createTextNode(kSentence));
        const auto paragraphs = *document->documentElement()->childNodes();
        for (int64_t i = 0; i < numberOfRanges; ++i) {
            const auto text = paragraphs[static_cast<size_t>(i * 7 % kParagraphs)]->firstChild();
            ranges.push_back(WQXMLRange::newWithStartContainer_startOffset_endContainer_endOffset(text, 4, text, 9));
        }
        edited = wq::cast<WQXMLText>(paragraphs[kParagraphs / 2]->firstChild());
    }
    Ref<WQXMLDocument> document = WQXMLDocument::newDocument();
    std::vector<Ref<WQXMLRange>> ranges;
    Ref<WQXMLText> edited;
};

void typeAndDelete(benchmark::State& state) {
    Manuscript manuscript(state.range(0));
    for (auto _ : state) {
        manuscript.edited->insertString_atIndex(u"x", 10);
        manuscript.edited->deleteCharactersInRange({10, 1});
    }
    state.SetItemsProcessed(state.iterations() * 2);
    state.SetComplexityN(state.range(0) + 1);  // a fit needs numbers above 0
}

void insertAndRemove(benchmark::State& state) {
    Manuscript manuscript(state.range(0));
    const Ref<WQXMLNode> paragraph = manuscript.edited->parentNode();
    const Ref<WQXMLNode> node = manuscript.document->createElement(u"em");
    for (auto _ : state) {
        paragraph->appendChild(node);
        paragraph->removeChild(node);
    }
    state.SetItemsProcessed(state.iterations() * 2);
    state.SetComplexityN(state.range(0) + 1);  // a fit needs numbers above 0
}

#define WITH_RANGES(name) BENCHMARK(name)->Arg(0)->Arg(1)->Arg(10)->Arg(100)->Arg(1000)->Complexity(benchmark::oN)
WITH_RANGES(typeAndDelete);
WITH_RANGES(insertAndRemove);

// ---- libxml2 alone

void bareTypeAndDelete(benchmark::State& state) {
    const Bare bare;
    xmlNodePtr text = xmlNewText(BAD_CAST "The ferry is called by a bell. It hangs on a post at the top of the landing.");
    for (auto _ : state) {
        xmlNodeSetContent(text, BAD_CAST "The ferry xis called by a bell. It hangs on a post at the top of the landing.");
        xmlNodeSetContent(text, BAD_CAST "The ferry is called by a bell. It hangs on a post at the top of the landing.");
    }
    xmlFreeNode(text);
    state.SetItemsProcessed(state.iterations() * 2);
}

void bareInsertAndRemove(benchmark::State& state) {
    const Bare bare;
    xmlNodePtr paragraph = xmlNewNode(nullptr, BAD_CAST "p"), node = xmlNewNode(nullptr, BAD_CAST "em");
    for (auto _ : state) {
        xmlAddChild(paragraph, node);
        xmlUnlinkNode(node);
    }
    xmlFreeNode(node);
    xmlFreeNode(paragraph);
    state.SetItemsProcessed(state.iterations() * 2);
}

BENCHMARK(bareTypeAndDelete);
BENCHMARK(bareInsertAndRemove);

}  // namespace

BENCHMARK_MAIN();
