#include "examples/book/Typesetter.h"

#include <pango/pangocairo.h>

#include <algorithm>
#include <cmath>

#include "platform/NSAttributeNames.h"
#include "platform/NSColor.h"
#include "platform/NSFont.h"
#include "platform/NSParagraphStyle.h"
#include "platform/NSURL.h"

namespace {

constexpr double kUserSize = 12;         // of text without a font
constexpr double kSignSize = 0.72;       // of a list's sign, by the size of its text
constexpr double kMarkerDistance = 13;   // of a marker's left end from the text
constexpr double kMarkerGap = 3;         // that is always left between them
constexpr size_t kOpeningWords = 4;      // in small capitals
constexpr double kOpeningSpacing = 0.6;  // between their letters
constexpr std::string_view kLineSeparator = "\u2028";
constexpr const char* kSoftHyphen = "\u00AD";
constexpr const char* kFeatures = "onum=1, kern=1, liga=1";
constexpr const char* kOpeningFeatures = "onum=1, kern=1, liga=1, smcp=1";

template <class T> std::shared_ptr<T> owned(T* object) { return {object, g_object_unref}; }

int units(double points) { return static_cast<int>(std::lround(points * PANGO_SCALE)); }

Ref<NSFont> fontOf(const Ref<NSDictionary>& attributes) {
    const auto font = attributes->objectForKey(NSFontAttributeName).object<NSFont>();
    return font ? font : NSFont::userFontOfSize(kUserSize);
}

// By the traits of the face that was found, so that Pango makes up neither a slant nor a weight.
std::shared_ptr<PangoFontDescription> descriptionOf(const Ref<NSFont>& font, double scale = 1) {
    std::shared_ptr<PangoFontDescription> description(pango_font_description_new(), pango_font_description_free);
    const uint32_t traits = font->fontDescriptor()->symbolicTraits();
    pango_font_description_set_family(description.get(), wq::toUTF8(font->familyName()).c_str());
    pango_font_description_set_style(description.get(), traits & NSFontItalicTrait ? PANGO_STYLE_ITALIC : PANGO_STYLE_NORMAL);
    pango_font_description_set_weight(description.get(), traits & NSFontBoldTrait ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
    pango_font_description_set_absolute_size(description.get(), font->pointSize() * scale * PANGO_SCALE);
    return description;
}

PangoAttribute* colorAttribute(const Ref<NSColor>& color) {
    const auto plain = color->colorUsingType(NSColorTypeComponentBased);
    const auto sixteenBits = [](double component) { return static_cast<guint16>(std::lround(component * 0xFFFF)); };
    return pango_attr_foreground_new(
        sixteenBits(plain->redComponent()), sixteenBits(plain->greenComponent()), sixteenBits(plain->blueComponent()));
}

// Where the words of a paragraph lie in its text: behind the marker, ahead of the terminator.
NSRange wordsRangeOf(const StyledParagraph& paragraph) {
    const uint64_t start = paragraph.markerLength;
    uint64_t end = 0;
    paragraph.text->string().getParagraphStart_end_contentsEnd_forRange(nullptr, nullptr, &end, {start, 0});
    return {start, end - start};
}

// How much of an opening paragraph stands in small capitals: some words, but none behind a mark of punctuation.
size_t openingLength(std::u16string_view text) {
    size_t words = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        if (std::u16string_view(u",.;:!?—").find(text[i]) != std::u16string_view::npos) return i;
        if (text[i] == u' ' && ++words == kOpeningWords) return i;
    }
    return text.size();
}

// ---- The text of a layout

// UTF-8 with soft hyphens, and its attributes.
class LayoutText {
public:
    LayoutText() : attributes(pango_attr_list_new(), pango_attr_list_unref) {}

    void append(std::u16string_view words, const std::vector<size_t>& breaks, const Ref<NSDictionary>& given) {
        const size_t start = bytes.size();
        appendHyphenated(words, breaks);
        beginFont(start, descriptionOf(fontOf(given)));
        if (const auto color = given->objectForKey(NSForegroundColorAttributeName).object<NSColor>())
            insert(colorAttribute(color), start, bytes.size());
        if (given->objectForKey(NSUnderlineStyleAttributeName))
            insert(pango_attr_underline_new(PANGO_UNDERLINE_SINGLE), start, bytes.size());
        if (const NSValue link = given->objectForKey(NSLinkAttributeName)) addLink(link, start);
    }

    void insert(PangoAttribute* attribute, size_t start, size_t end) {
        attribute->start_index = static_cast<guint>(start);
        attribute->end_index = static_cast<guint>(end);
        pango_attr_list_insert(attributes.get(), attribute);
    }

    void layOut(PangoLayout* layout) {
        for (size_t i = 0; i < fonts.size(); ++i)
            insert(
                pango_attr_font_desc_new(fonts[i].description.get()), fonts[i].start,
                i + 1 < fonts.size() ? fonts[i + 1].start : bytes.size());
        pango_layout_set_text(layout, bytes.data(), static_cast<int>(bytes.size()));
        pango_layout_set_attributes(layout, attributes.get());
    }

    size_t length() const { return bytes.size(); }
    std::vector<SetLink> links;

private:
    // `breaks` count from the start of the words.
    void appendHyphenated(std::u16string_view words, const std::vector<size_t>& breaks) {
        size_t from = 0;
        for (const size_t each : breaks) {
            bytes += wq::toUTF8(words.substr(from, each - from)) + kSoftHyphen;
            from = each;
        }
        bytes += wq::toUTF8(words.substr(from));
    }

    // A justified line that ends where a run ends behind a blank comes out short by that blank: so the blank goes with
    // the run that follows.
    void beginFont(size_t start, std::shared_ptr<PangoFontDescription> description) {
        const bool isBehindBlank = start > 0 && bytes[start - 1] == ' ';
        fonts.push_back({isBehindBlank ? start - 1 : start, std::move(description)});
    }

    void addLink(const NSValue& link, size_t start) {
        const NSString address = link.string() ? link.string() : link.object<NSURL>()->absoluteString();
        const std::string text = wq::toUTF8(address);
        const int from = static_cast<int>(start), to = static_cast<int>(bytes.size());
        if (!links.empty() && links.back().end == from && links.back().address == text)
            links.back().end = to;
        else
            links.push_back({text, from, to});
    }

    struct FontRun {
        size_t start;
        std::shared_ptr<PangoFontDescription> description;
    };
    std::string bytes;
    std::vector<FontRun> fonts;
    std::shared_ptr<PangoAttrList> attributes;
};

// Those of the breaks that lie in a range, from its start on.
std::vector<size_t> breaksIn(const std::vector<size_t>& breaks, size_t start, size_t end) {
    std::vector<size_t> inside;
    for (const size_t each : breaks)
        if (each > start && each < end) inside.push_back(each - start);
    return inside;
}

bool isOpening(const StyledParagraph& paragraph) { return paragraph.block->getAttribute(u"class") == u"opening"; }

// The words of a paragraph; letters that are spaced out are not hyphenated.
LayoutText layoutTextOf(const StyledParagraph& paragraph, const Hyphenator& hyphenator) {
    const NSRange words = wordsRangeOf(paragraph);
    const std::u16string_view text = paragraph.text->string().view().substr(words.location, words.length);
    const size_t opening = isOpening(paragraph) ? openingLength(text) : 0;
    std::vector<size_t> breaks = paragraph.headingLevel > 0 ? std::vector<size_t>() : hyphenator.breaksOf(text);
    breaks.erase(std::remove_if(breaks.begin(), breaks.end(), [&](size_t each) { return each <= opening; }), breaks.end());

    LayoutText result;
    size_t openingBytes = wq::toUTF8(text.substr(0, opening)).size();
    for (size_t start = 0, end = 0; start < text.size(); start = end) {
        NSRange run;
        const auto attributes = paragraph.text->attributesAtIndex_longestEffectiveRange_inRange(words.location + start, &run, words);
        end = run.location + run.length - words.location;
        result.append(text.substr(start, end - start), breaksIn(breaks, start, end), attributes);
    }
    result.insert(pango_attr_font_features_new(kFeatures), openingBytes, result.length());
    if (openingBytes > 0) {
        result.insert(pango_attr_font_features_new(kOpeningFeatures), 0, openingBytes);
        result.insert(pango_attr_letter_spacing_new(units(kOpeningSpacing)), 0, openingBytes);
    }
    return result;
}

void align(PangoLayout* layout, long alignment) {
    pango_layout_set_justify(layout, alignment == NSTextAlignmentJustified);
    if (alignment == NSTextAlignmentCenter) pango_layout_set_alignment(layout, PANGO_ALIGN_CENTER);
    if (alignment == NSTextAlignmentRight) pango_layout_set_alignment(layout, PANGO_ALIGN_RIGHT);
}

// The glyphs of the blanks in a line.
std::vector<PangoGlyphInfo*> blanksOf(PangoLayoutLine* line) {
    const char* text = pango_layout_get_text(line->layout);
    std::vector<PangoGlyphInfo*> blanks;
    for (GSList* each = line->runs; each; each = each->next) {
        const auto* run = static_cast<PangoGlyphItem*>(each->data);
        for (int i = 0; i < run->glyphs->num_glyphs; ++i)
            if (text[run->item->offset + run->glyphs->log_clusters[i]] == ' ') blanks.push_back(&run->glyphs->glyphs[i]);
    }
    return blanks;
}

// Pango can forget the width of the hyphen when it justifies a line: its blanks give that back.
void narrow(PangoLayoutLine* line, int excess) {
    const auto blanks = blanksOf(line);
    for (PangoGlyphInfo* blank : blanks) blank->geometry.width -= excess / static_cast<int>(blanks.size());
}

std::vector<SetLine> linesOf(PangoLayout* layout, double left) {
    std::vector<SetLine> lines;
    const std::unique_ptr<PangoLayoutIter, void (*)(PangoLayoutIter*)> each(pango_layout_get_iter(layout), pango_layout_iter_free);
    do {
        PangoRectangle logical;
        pango_layout_iter_get_line_extents(each.get(), nullptr, &logical);
        PangoLayoutLine* line = pango_layout_iter_get_line(each.get());
        const int excess = logical.x + logical.width - pango_layout_get_width(layout);
        if (pango_layout_get_justify(layout) && excess > 0) narrow(line, excess);
        lines.push_back({line, left + points(logical.x)});
    } while (pango_layout_iter_next_line(each.get()));
    return lines;
}

// A line that a separator ends is not stretched: it is taken from a layout that breaks alike.
void raggedAtSeparators(SetParagraph& paragraph) {
    const std::string_view text = pango_layout_get_text(paragraph.layout.get());
    if (!pango_layout_get_justify(paragraph.layout.get()) || text.find(kLineSeparator) == std::string_view::npos) return;
    paragraph.ragged = owned(pango_layout_copy(paragraph.layout.get()));
    pango_layout_set_justify(paragraph.ragged.get(), FALSE);
    const std::vector<SetLine> lines = linesOf(paragraph.ragged.get(), paragraph.left);
    for (size_t i = 0; i < lines.size(); ++i) {
        const auto start = static_cast<size_t>(lines[i].line->start_index), length = static_cast<size_t>(lines[i].line->length);
        if (text.substr(start, length).ends_with(kLineSeparator)) paragraph.lines[i] = lines[i];
    }
}

// In points, of a measure.
double widthOf(const Ref<NSTextBlock>& block, long layer, unsigned edge, double measure) {
    const double width = block->widthForLayer_edge(layer, edge);
    return block->widthValueTypeForLayer_edge(layer, edge) == NSTextBlockPercentageValueType ? width / 100 * measure : width;
}

}  // namespace

std::string wordsOf(const StyledParagraph& paragraph) {
    const NSRange words = wordsRangeOf(paragraph);
    std::u16string text(paragraph.text->string().view().substr(words.location, words.length));
    std::replace(text.begin(), text.end(), u'\u2028', u' ');
    return wq::toUTF8(text);
}

// Glyphs stand where their widths put them, at every resolution: pictures are the same everywhere.
Typesetter::Typesetter(double measure, const std::string& language)
    : width(measure), hyphenator(language), fontMap(owned(pango_cairo_font_map_new_for_font_type(CAIRO_FONT_TYPE_FT))) {
    pango_cairo_font_map_set_resolution(PANGO_CAIRO_FONT_MAP(fontMap.get()), 72);
    context = owned(pango_font_map_create_context(fontMap.get()));
    const std::unique_ptr<cairo_font_options_t, void (*)(cairo_font_options_t*)> options(
        cairo_font_options_create(), cairo_font_options_destroy);
    cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
    pango_cairo_context_set_font_options(context.get(), options.get());
    pango_context_set_round_glyph_positions(context.get(), FALSE);
    pango_context_set_language(context.get(), pango_language_from_string(language.empty() ? "en" : language.c_str()));
}

std::shared_ptr<PangoLayout> Typesetter::newLayout() const { return owned(pango_layout_new(context.get())); }

SetParagraph Typesetter::set(const StyledParagraph& paragraph) const {
    SetParagraph result;
    result.source = paragraph;
    const uint64_t first = wordsRangeOf(paragraph).location;
    const auto attributes = paragraph.text->attributesAtIndex_effectiveRange(first, nullptr);
    const auto style = attributes->objectForKey(NSParagraphStyleAttributeName).object<NSParagraphStyle>();
    double right = -style->tailIndent();
    // Pango hangs the first line of a negative indent out to where the others would be.
    const double indent = style->firstLineHeadIndent() - style->headIndent();
    const double left = result.left = style->headIndent() + std::min(0.0, indent) + setInFrames(result, style->textBlocks(), &right);

    LayoutText text = layoutTextOf(paragraph, hyphenator);
    result.layout = newLayout();
    text.layOut(result.layout.get());
    result.links = std::move(text.links);
    pango_layout_set_width(result.layout.get(), units(std::max(1.0, width - left - right)));
    pango_layout_set_wrap(result.layout.get(), PANGO_WRAP_WORD_CHAR);
    pango_layout_set_indent(result.layout.get(), units(indent));
    align(result.layout.get(), style->alignment());

    result.lines = linesOf(result.layout.get(), left);
    raggedAtSeparators(result);
    result.spaceAbove = style->paragraphSpacingBefore();
    result.spaceBelow = style->paragraphSpacing();
    setLineHeight(result, style, fontOf(attributes));
    if (paragraph.markerLength > 0) {
        const NSString marker = paragraph.text->string().substringWithRange({1, paragraph.markerLength - 2});
        setMarker(result, marker, paragraph.text->attributesAtIndex_effectiveRange(0, nullptr), left);
    }
    return result;
}

// Frames lie within the margins of the paragraph. What they take away at the left, and at the right.
double Typesetter::setInFrames(SetParagraph& result, const std::vector<Ref<NSTextBlock>>& blocks, double* right) const {
    double left = 0;
    for (const auto& block : blocks) {
        SetFrame frame;
        frame.block = block;
        left += widthOf(block, NSTextBlockMargin, NSMinXEdge, width);
        *right += widthOf(block, NSTextBlockMargin, NSMaxXEdge, width);
        frame.left = left;
        frame.right = width - *right;
        for (unsigned edge = NSMinXEdge; edge <= NSMaxYEdge; ++edge) frame.borders[edge] = widthOf(block, NSTextBlockBorder, edge, width);
        left += frame.borders[NSMinXEdge] + widthOf(block, NSTextBlockPadding, NSMinXEdge, width);
        *right += frame.borders[NSMaxXEdge] + widthOf(block, NSTextBlockPadding, NSMaxXEdge, width);
        frame.above = frame.borders[NSMinYEdge] + widthOf(block, NSTextBlockPadding, NSMinYEdge, width);
        frame.below = frame.borders[NSMaxYEdge] + widthOf(block, NSTextBlockPadding, NSMaxYEdge, width);
        result.frames.push_back(frame);
    }
    return left;
}

// Lines are exactly as high as the style has it, whatever stands in them; what is left goes half above and half below.
void Typesetter::setLineHeight(SetParagraph& result, const Ref<NSParagraphStyle>& style, const Ref<NSFont>& font) const {
    const std::unique_ptr<PangoFontMetrics, void (*)(PangoFontMetrics*)> metrics(
        pango_context_get_metrics(context.get(), descriptionOf(font).get(), pango_context_get_language(context.get())),
        pango_font_metrics_unref);
    const double ascent = points(pango_font_metrics_get_ascent(metrics.get()));
    const double descent = points(pango_font_metrics_get_descent(metrics.get()));
    result.lineHeight = style->maximumLineHeight() > 0 ? style->maximumLineHeight() : ascent + descent;
    result.baseline = (result.lineHeight + ascent - descent) / 2;
}

// Signs are smaller than digits and letters.
void Typesetter::setMarker(SetParagraph& result, const NSString& text, const Ref<NSDictionary>& attributes, double left) const {
    const bool isSign = text.length() == 1 && text.view()[0] > 0x7F;
    result.marker = newLayout();
    LayoutText marker;
    marker.append(text, {}, attributes);
    if (isSign) marker.insert(pango_attr_scale_new(kSignSize), 0, marker.length());
    marker.insert(pango_attr_font_features_new(kFeatures), 0, marker.length());
    marker.layOut(result.marker.get());
    int markerWidth = 0;
    pango_layout_get_size(result.marker.get(), &markerWidth, nullptr);
    result.markerX = std::min(left - kMarkerDistance, left - kMarkerGap - points(markerWidth));
}

std::shared_ptr<PangoLayout> Typesetter::lineOf(const std::string& text, const std::string& family, double size, bool isItalic) const {
    const std::unique_ptr<PangoFontDescription, void (*)(PangoFontDescription*)> description(
        pango_font_description_new(), pango_font_description_free);
    pango_font_description_set_family(description.get(), family.c_str());
    pango_font_description_set_style(description.get(), isItalic ? PANGO_STYLE_ITALIC : PANGO_STYLE_NORMAL);
    pango_font_description_set_absolute_size(description.get(), size * PANGO_SCALE);
    const auto layout = newLayout();
    pango_layout_set_font_description(layout.get(), description.get());
    const std::unique_ptr<PangoAttrList, void (*)(PangoAttrList*)> features(pango_attr_list_new(), pango_attr_list_unref);
    pango_attr_list_insert(features.get(), pango_attr_font_features_new(kFeatures));
    pango_layout_set_attributes(layout.get(), features.get());
    pango_layout_set_text(layout.get(), text.c_str(), -1);
    pango_layout_set_width(layout.get(), units(width));
    pango_layout_set_ellipsize(layout.get(), PANGO_ELLIPSIZE_END);
    return layout;
}
