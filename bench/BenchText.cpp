// Edits of a long text, beside the same by libxml2 and a string; and styled text as HTML.
#include <libxml/tree.h>

#include "bench/Bare.h"
#include "bench/Generator.h"
#include "bench/Timing.h"
#include "dom/WQXMLDocument.h"
#include "dom/WQXMLRange.h"
#include "html/WQHTMLWriter.h"
#include "platform/NSAttributeNames.h"
#include "platform/NSColor.h"
#include "platform/NSFontManager.h"
#include "platform/NSMutableAttributedString.h"
#include "platform/NSParagraphStyle.h"

namespace {

constexpr size_t kTextLength = 1000;  // UTF-16 units

std::u16string longText() {
    bench::Sequence sequence;
    return std::u16string(wq::fromUTF8(bench::words(sequence, 300)).view().substr(0, kTextLength));
}

// An edit replaces ten characters by ten others.
void editText(benchmark::State& state) {
    const auto document = WQXMLDocument::newDocument();
    document->appendChild(document->createElement(u"p"))->appendChild(document->createTextNode(longText()));
    const auto text = wq::cast<WQXMLText>(document->documentElement()->firstChild());
    std::vector<Ref<WQXMLRange>> ranges;
    for (int64_t i = 0; i < state.range(0); ++i)
        ranges.push_back(WQXMLRange::newWithStartContainer_startOffset_endContainer_endOffset(text, 600, text, 700));
    for (auto _ : state) text->replaceCharactersInRange_withString({500, 10}, u"0123456789");
    state.SetComplexityN(state.range(0) + 1);
}

void bareEditText(benchmark::State& state) {
    const Bare bare;
    xmlNodePtr text = xmlNewText(BAD_CAST wq::toUTF8(longText()).c_str());
    for (auto _ : state) {
        xmlChar* bytes = xmlNodeGetContent(text);
        std::u16string units(wq::fromUTF8(bytes).view());
        xmlFree(bytes);
        units.replace(500, 10, u"0123456789");
        xmlNodeSetContent(text, BAD_CAST wq::toUTF8(units).c_str());
    }
    xmlFreeNode(text);
}

// Paragraphs of four runs, two of which differ from the paragraph.
Ref<NSAttributedString> styledText(int64_t runs) {
    const auto font = [](unsigned long traits) {
        return NSFontManager::sharedFontManager()->fontWithFamily_traits_weight_size(u"TeX Gyre Pagella", traits, 5, 12);
    };
    const auto plain = NSDictionary::dictionary(
        {{NSFontAttributeName, font(0)}, {NSParagraphStyleAttributeName, NSParagraphStyle::defaultParagraphStyle()}});
    const auto bold = plain->mutableCopy(), red = plain->mutableCopy();
    bold->setObject_forKey(font(NSBoldFontMask), NSFontAttributeName);
    red->setObject_forKey(NSColor::colorWithSRGBRed_green_blue_alpha(1, 0, 0, 1), NSForegroundColorAttributeName);
    const auto text = NSMutableAttributedString::newWithString(u"");
    const auto add = [&](const char16_t* words, const Ref<NSDictionary>& attributes) {
        text->appendAttributedString(NSAttributedString::newWithString_attributes(words, attributes));
    };
    for (int64_t i = 0; i < runs / 4; ++i) {
        add(u"The near bell says ", plain);
        add(u"a little less ", bold);
        add(u"than it means; ", plain);
        add(u"the far bell\n", red);
    }
    return text;
}

void textToHTML(benchmark::State& state) {
    const auto text = styledText(state.range(0));
    const auto htmlWriter = WQHTMLWriter::newHTMLWriter();
    for (auto _ : state) {
        const auto writer = WQXMLWriter::newToMemory();
        writer->startElement(u"body");
        htmlWriter->encodeAttributedString_withWriter(text, writer);
        writer->endElement();
        writer->flush();
        benchmark::DoNotOptimize(writer->XMLData());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(bareEditText);
BENCHMARK(editText)->Arg(0)->Arg(1)->Arg(10)->Arg(100)->Arg(1000)->Complexity(benchmark::oN);
BENCHMARK(textToHTML)->Arg(4000)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
