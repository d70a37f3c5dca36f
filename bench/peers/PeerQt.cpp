// The same documents by Qt's QDomDocument, and the same styled text by QTextDocument::toHtml.
#include <malloc.h>

#include <QDomDocument>
#include <QFont>
#include <QGuiApplication>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <memory>

#include "bench/Generator.h"
#include "bench/Timing.h"

namespace {

QByteArray bytesOf(const benchmark::State& state) {
    return QByteArray::fromStdString(bench::document(static_cast<size_t>(state.range(0))));
}

std::unique_ptr<QDomDocument> parse(const QByteArray& bytes) {
    auto document = std::make_unique<QDomDocument>();
    document->setContent(bytes);
    return document;
}

size_t visit(const QDomNode& node) {
    size_t nodes = 1;
    for (QDomNode child = node.firstChild(); !child.isNull(); child = child.nextSibling()) nodes += visit(child);
    return nodes;
}

void qtParseAndVisit(benchmark::State& state) {
    const QByteArray bytes = bytesOf(state);
    bench::measure(state, [&] {
        auto document = parse(bytes);
        benchmark::DoNotOptimize(visit(document->documentElement()));
        return document;
    });
}

void qtFreeDocument(benchmark::State& state) {
    const QByteArray bytes = bytesOf(state);
    bench::measure(
        state, [&] { return parse(bytes); },
        [](std::unique_ptr<QDomDocument>& document) {
            document.reset();
            return 0;
        });
}

void qtMemory(benchmark::State& state) {
    const QByteArray bytes = bytesOf(state);
    auto allocated = [] { return mallinfo2().uordblks + mallinfo2().hblkhd; };
    size_t used = 0;
    for (auto _ : state) {
        const size_t before = allocated();
        const auto document = parse(bytes);
        used = allocated() - before;
    }
    state.counters["bytes"] = static_cast<double>(used);
}

void qtSmallElements(benchmark::State& state) {
    QDomDocument document;
    QDomElement root = document.createElement("book");
    document.appendChild(root);
    for (auto _ : state) {
        for (int64_t i = 0; i < state.range(0); ++i) root.appendChild(document.createElement("e"));
        while (root.hasChildNodes()) root.removeChild(root.lastChild());
    }
}

void qtAttributes(benchmark::State& state) {
    QDomDocument document;
    QDomElement element = document.createElement("book");
    const QString name = "title", values[] = {"The near bell", "The far bell"};
    for (auto _ : state)
        for (int64_t i = 0; i < state.range(0); ++i) {
            element.setAttribute(name, values[i & 1]);
            benchmark::DoNotOptimize(element.attribute(name));
        }
}

// Paragraphs of four runs, two of which differ from the paragraph.
void qtTextToHTML(benchmark::State& state) {
    QTextDocument document;
    QTextCursor cursor(&document);
    QTextCharFormat plain;
    plain.setFontFamilies({"TeX Gyre Pagella"});
    plain.setFontPointSize(12);
    QTextCharFormat bold = plain, red = plain;
    bold.setFontWeight(QFont::Bold);
    red.setForeground(Qt::red);
    for (int64_t i = 0; i < state.range(0) / 4; ++i) {
        cursor.insertText("The near bell says ", plain);
        cursor.insertText("a little less ", bold);
        cursor.insertText("than it means; ", plain);
        cursor.insertText("the far bell", red);
        cursor.insertBlock();
    }
    for (auto _ : state) benchmark::DoNotOptimize(document.toHtml());
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(qtParseAndVisit)->Arg(1'000'000)->Arg(10'000'000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(qtFreeDocument)->Arg(1'000'000)->Arg(10'000'000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(qtMemory)->Arg(1'000'000)->Arg(10'000'000)->Iterations(1);
BENCHMARK(qtSmallElements)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(qtAttributes)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(qtTextToHTML)->Arg(4000)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
