// The same documents by libxml++, which wraps the same nodes when they are asked for.
#include <libxml++/libxml++.h>
#include <malloc.h>

#include <memory>

#include "bench/Generator.h"
#include "bench/Timing.h"

namespace {

std::string bytesOf(const benchmark::State& state) { return bench::document(static_cast<size_t>(state.range(0))); }

std::unique_ptr<xmlpp::DomParser> parse(const std::string& bytes) {
    auto parser = std::make_unique<xmlpp::DomParser>();
    parser->parse_memory(bytes);
    return parser;
}

size_t visit(const xmlpp::Node* node) {
    size_t nodes = 1;
    for (const xmlpp::Node* child : node->get_children()) nodes += visit(child);
    return nodes;
}

void libxmlppParseAndVisit(benchmark::State& state) {
    const std::string bytes = bytesOf(state);
    bench::measure(state, [&] {
        auto parser = parse(bytes);
        benchmark::DoNotOptimize(visit(parser->get_document()->get_root_node()));
        return parser;
    });
}

void libxmlppFreeDocument(benchmark::State& state) {
    const std::string bytes = bytesOf(state);
    bench::measure(
        state,
        [&] {
            auto parser = parse(bytes);
            visit(parser->get_document()->get_root_node());
            return parser;
        },
        [](std::unique_ptr<xmlpp::DomParser>& parser) {
            parser.reset();
            return 0;
        });
}

void libxmlppMemory(benchmark::State& state) {
    const std::string bytes = bytesOf(state);
    auto allocated = [] { return mallinfo2().uordblks + mallinfo2().hblkhd; };
    size_t used = 0;
    for (auto _ : state) {
        const size_t before = allocated();
        const auto parser = parse(bytes);
        visit(parser->get_document()->get_root_node());
        used = allocated() - before;
    }
    state.counters["bytes"] = static_cast<double>(used);
}

void libxmlppSmallElements(benchmark::State& state) {
    xmlpp::Document document;
    xmlpp::Element* root = document.create_root_node("book");
    std::vector<xmlpp::Element*> made;
    for (auto _ : state) {
        made.clear();
        for (int64_t i = 0; i < state.range(0); ++i) made.push_back(root->add_child("e"));
        for (auto element = made.rbegin(); element != made.rend(); ++element) root->remove_child(*element);
    }
}

void libxmlppAttributes(benchmark::State& state) {
    xmlpp::Document document;
    xmlpp::Element* element = document.create_root_node("book");
    const Glib::ustring name = "title", values[] = {"The near bell", "The far bell"};
    for (auto _ : state)
        for (int64_t i = 0; i < state.range(0); ++i) {
            element->set_attribute(name, values[i & 1]);
            benchmark::DoNotOptimize(element->get_attribute_value(name));
        }
}

BENCHMARK(libxmlppParseAndVisit)->Arg(1'000'000)->Arg(10'000'000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(libxmlppFreeDocument)->Arg(1'000'000)->Arg(10'000'000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(libxmlppMemory)->Arg(1'000'000)->Arg(10'000'000)->Iterations(1);
BENCHMARK(libxmlppSmallElements)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(libxmlppAttributes)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
