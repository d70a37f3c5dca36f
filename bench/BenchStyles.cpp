// Style sheets read, and every element of a document resolved, by the number of rules.
#include <malloc.h>

#include <map>
#include <unordered_map>

#include "bench/Generator.h"
#include "bench/Timing.h"
#include "dom/WQXMLDocument.h"
#include "mac/Frameworks/WQCSS/WQCSSStyleResolver.h"

namespace {

constexpr size_t kDocument = 1'000'000;  // bytes

Ref<WQXMLDocument> manuscript() {
    return WQXMLDocument::newWithData_baseURL_arguments_error(NSData::dataWithBytes(bench::document(kDocument)), nullptr, nullptr, nullptr);
}

NSString sheetOf(const benchmark::State& state) { return wq::fromUTF8(bench::sheet(static_cast<uint32_t>(state.range(0)))); }

void parseSheet(benchmark::State& state) {
    const NSString text = sheetOf(state);
    for (auto _ : state) benchmark::DoNotOptimize(WQCSSStyleSheet::styleSheetWithString(text));
}

// The styles of all elements and texts, parents first, as an application keeps them.
using Styles = std::unordered_map<const WQXMLNode*, Ref<WQCSSStyle>>;

Styles resolveAll(const Ref<WQXMLDocument>& document, const Ref<WQCSSStyleResolver>& resolver) {
    Styles styles;
    for (Ref<WQXMLNode> node = document->documentElement(); node; node = node->next()) {
        if (node->nodeType() != 1) continue;
        const auto parent = styles.find(node->parentNode().get());
        styles[node.get()] = resolver->resolveStyle_parentStyle(node, parent == styles.end() ? nullptr : parent->second);
    }
    return styles;
}

Ref<WQCSSStyleResolver> resolverOf(const benchmark::State& state) {
    const auto resolver = WQCSSStyleResolver::newStyleResolver();
    resolver->processRulesFromStyleSheet(WQCSSStyleSheet::styleSheetWithString(sheetOf(state)));
    return resolver;
}

void resolveEveryElement(benchmark::State& state) {
    const auto document = manuscript();
    const auto resolver = resolverOf(state);
    size_t elements = 0;
    bench::measure(state, [&] {
        Styles styles = resolveAll(document, resolver);
        elements = styles.size();
        return styles;
    });
    state.counters["elements"] = static_cast<double>(elements);
}

// What the styles of all elements take, and how many fonts and boxes they share.
void memoryOfStyles(benchmark::State& state) {
    const auto document = manuscript();
    const auto resolver = resolverOf(state);
    for (auto _ : state) {
        const size_t before = mallinfo2().uordblks + mallinfo2().hblkhd;
        const Styles styles = resolveAll(document, resolver);
        const size_t used = mallinfo2().uordblks + mallinfo2().hblkhd - before;
        std::unordered_map<const void*, int> fonts, boxes;
        for (const auto& [node, style] : styles) ++fonts[style->cssStyle()->font.Get()], ++boxes[style->cssStyle()->dimensions.Get()];
        state.counters["bytes"] = static_cast<double>(used);
        state.counters["styles"] = static_cast<double>(styles.size());
        state.counters["fonts"] = static_cast<double>(fonts.size());
        state.counters["boxes"] = static_cast<double>(boxes.size());
    }
}

BENCHMARK(parseSheet)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond);
BENCHMARK(resolveEveryElement)->Arg(10)->Arg(100)->Arg(1000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(memoryOfStyles)->Arg(10)->Arg(100)->Arg(1000)->Iterations(1);

}  // namespace

BENCHMARK_MAIN();
