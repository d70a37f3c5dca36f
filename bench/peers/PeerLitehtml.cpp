// The same sheets and documents by litehtml, which reads selectors and leaves values as text until an element has them.
#include <litehtml.h>

#include <vector>

#include "bench/Generator.h"
#include "bench/Timing.h"

namespace {

constexpr size_t kDocument = 1'000'000;  // bytes

// Everything that litehtml asks of an application: nothing is drawn here.
class Container : public litehtml::document_container {
public:
    litehtml::uint_ptr create_font(const char*, int, int, litehtml::font_style, unsigned int, litehtml::font_metrics* metrics) override {
        metrics->height = 12;
        metrics->ascent = 9;
        metrics->descent = 3;
        metrics->x_height = 5;
        return ++fonts;
    }
    void delete_font(litehtml::uint_ptr) override {}
    int text_width(const char*, litehtml::uint_ptr) override { return 10; }
    void draw_text(litehtml::uint_ptr, const char*, litehtml::uint_ptr, litehtml::web_color, const litehtml::position&) override {}
    int pt_to_px(int points) const override { return points * 4 / 3; }
    int get_default_font_size() const override { return 16; }
    const char* get_default_font_name() const override { return "serif"; }
    void draw_list_marker(litehtml::uint_ptr, const litehtml::list_marker&) override {}
    void load_image(const char*, const char*, bool) override {}
    void get_image_size(const char*, const char*, litehtml::size&) override {}
    void draw_background(litehtml::uint_ptr, const litehtml::background_paint&) override {}
    void draw_borders(litehtml::uint_ptr, const litehtml::borders&, const litehtml::position&, bool) override {}
    void set_caption(const char*) override {}
    void set_base_url(const char*) override {}
    void link(const std::shared_ptr<litehtml::document>&, const litehtml::element::ptr&) override {}
    void on_anchor_click(const char*, const litehtml::element::ptr&) override {}
    void set_cursor(const char*) override {}
    void transform_text(std::string&, litehtml::text_transform) override {}
    void import_css(std::string&, const std::string&, std::string&) override {}
    void set_clip(const litehtml::position&, const litehtml::border_radiuses&, bool, bool) override {}
    void del_clip() override {}
    void get_client_rect(litehtml::position& client) const override { client = {0, 0, 800, 600}; }
    std::shared_ptr<litehtml::element> create_element(const char*, const litehtml::string_map&, const std::shared_ptr<litehtml::document>&)
        override {
        return nullptr;
    }
    void get_media_features(litehtml::media_features& media) const override {
        media = {};
        media.type = litehtml::media_type_screen;
    }
    void get_language(std::string& language, std::string& culture) const override { language = culture = ""; }

private:
    litehtml::uint_ptr fonts = 0;
};

void litehtmlParseSheet(benchmark::State& state) {
    const std::string text = bench::sheet(static_cast<uint32_t>(state.range(0)));
    Container container;
    litehtml::context context;
    const auto document = litehtml::document::createFromString("<html></html>", &container, &context);
    size_t selectors = 0;
    for (auto _ : state) {
        litehtml::css css;
        css.parse_stylesheet(text.c_str(), nullptr, document, nullptr);
        selectors = css.selectors().size();
    }
    state.counters["selectors"] = static_cast<double>(selectors);
}

// From a document without styles to one where every element has its own.
void litehtmlResolveEveryElement(benchmark::State& state) {
    const std::string text = bench::sheet(static_cast<uint32_t>(state.range(0))), html = bench::document(kDocument);
    Container container;
    litehtml::context context;
    const auto owner = litehtml::document::createFromString("<html></html>", &container, &context);
    litehtml::css css;
    css.parse_stylesheet(text.c_str(), nullptr, owner, nullptr);
    css.sort_selectors();
    bench::measure(
        state, [&] { return litehtml::document::createFromString(html.c_str(), &container, &context); },
        [&](litehtml::document::ptr& document) {
            document->root()->apply_stylesheet(css);
            document->root()->parse_styles(true);
            return 0;
        });
}

BENCHMARK(litehtmlParseSheet)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond);
BENCHMARK(litehtmlResolveEveryElement)->Arg(10)->Arg(100)->Arg(1000)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
