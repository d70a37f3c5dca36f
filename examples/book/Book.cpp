#include "examples/book/Book.h"

#include <fmt/format.h>
#include <pango/pangocairo.h>

#include <algorithm>
#include <string_view>

#include "platform/NSAttributeNames.h"
#include "platform/NSFont.h"

namespace {

constexpr double kHeadSize = 9, kFolioSize = 9.5, kChapterNumberSize = 11.5;  // points
constexpr double kHeadRise = 24;                                              // of the head's baseline above the text
constexpr double kFolioDrop = 30;                                             // of the page number's below it
constexpr double kNumberRise = 30;                                            // of a chapter's number above the baseline of its title
constexpr double kNumberSpace = 45;                                           // that has to be above the title for that
constexpr double kMarkWidth = 1.5, kMarkDistance = 12;

struct Color {
    double red, green, blue;
};
constexpr Color kInk{0x1a / 255.0, 0x1a / 255.0, 0x1a / 255.0};
constexpr Color kGrey{0x55 / 255.0, 0x55 / 255.0, 0x55 / 255.0};
constexpr Color kDarkRed{0x6b / 255.0, 0x2b / 255.0, 0x1f / 255.0};

void use(cairo_t* cairo, const Color& color) { cairo_set_source_rgb(cairo, color.red, color.green, color.blue); }

double widthOf(const std::shared_ptr<PangoLayout>& layout) {
    int width = 0;
    pango_layout_get_size(layout.get(), &width, nullptr);
    return points(width);
}

void show(cairo_t* cairo, const std::shared_ptr<PangoLayout>& layout, double x, double baseline) {
    cairo_move_to(cairo, x, baseline);
    pango_cairo_show_layout_line(cairo, pango_layout_get_line_readonly(layout.get(), 0));
}

bool isChapterTitle(const StyledParagraph& paragraph) {
    return paragraph.headingLevel > 0 && paragraph.block->parentNode()->localName() == u"chapter";
}

// ---- Rows

bool hasFrame(const SetParagraph& paragraph, const Ref<NSTextBlock>& block) {
    return std::any_of(paragraph.frames.begin(), paragraph.frames.end(), [&](const SetFrame& frame) { return frame.block == block; });
}

// A frame begins with the first paragraph that has it, and ends with the last; the space is that of those which do.
double frameAbove(const std::vector<SetParagraph>& paragraphs, size_t index) {
    double space = 0;
    for (const SetFrame& frame : paragraphs[index].frames)
        if (index == 0 || !hasFrame(paragraphs[index - 1], frame.block)) space += frame.above;
    return space;
}
double frameBelow(const std::vector<SetParagraph>& paragraphs, size_t index) {
    double space = 0;
    for (const SetFrame& frame : paragraphs[index].frames)
        if (index + 1 == paragraphs.size() || !hasFrame(paragraphs[index + 1], frame.block)) space += frame.below;
    return space;
}

// Whether a page may begin with a line: no heading, and two lines of a paragraph, stay on each side.
bool mayBreakAbove(const std::vector<SetParagraph>& paragraphs, size_t index, size_t line) {
    const size_t count = paragraphs[index].lines.size();
    if (line > 0) return line != 1 && line != count - 1;
    if (index == 0) return true;
    const bool isBelowHeading = paragraphs[index - 1].source.headingLevel > 0;
    const bool isSecondBelowHeading = index > 1 && paragraphs[index - 1].lines.size() == 1 && paragraphs[index - 2].source.headingLevel > 0;
    return !isBelowHeading && !isSecondBelowHeading;
}

Row rowOf(const std::vector<SetParagraph>& paragraphs, size_t index, size_t line) {
    const SetParagraph& paragraph = paragraphs[index];
    Row row;
    row.height = paragraph.lineHeight;
    row.mayBreakAbove = mayBreakAbove(paragraphs, index, line);
    if (line + 1 == paragraph.lines.size()) row.frameBelow = frameBelow(paragraphs, index);
    if (line > 0) return row;
    row.frameAbove = frameAbove(paragraphs, index);
    row.mustBreakAbove = index > 0 && (paragraph.source.beginsPage || paragraphs[index - 1].source.endsPage);
    const bool isBelowAnother = index > 0 && !row.mustBreakAbove;
    row.spaceAbove = isBelowAnother ? std::max(paragraph.spaceAbove, paragraphs[index - 1].spaceBelow) : paragraph.spaceAbove;
    return row;
}

// The heading that a page goes by: the first of the two highest levels that was begun on it on purpose, or else that of the
// page before.
std::string headingOf(const Book& book, const BookPage& page, const std::string& before) {
    for (const PlacedLine& placed : page.lines) {
        const SetParagraph& paragraph = book.paragraphs[placed.paragraph];
        const int level = paragraph.source.headingLevel;
        if (placed.line == 0 && (level == 1 || level == 2) && paragraph.source.beginsPage) return wordsOf(paragraph.source);
    }
    return before;
}

void divide(Book& book) {
    std::vector<Row> rows;
    std::vector<PlacedLine> lines;
    for (size_t index = 0; index < book.paragraphs.size(); ++index)
        for (size_t line = 0; line < book.paragraphs[index].lines.size(); ++line) {
            rows.push_back(rowOf(book.paragraphs, index, line));
            lines.push_back({index, line, 0});
        }
    std::string heading;
    for (const PageOfRows& page : paginate(rows, book.format.textHeight())) {
        BookPage& result = book.pages.emplace_back();
        result.isBegunOnPurpose = page.isBegunOnPurpose;
        for (size_t i = 0; i < page.tops.size(); ++i) {
            result.lines.push_back(lines[page.first + i]);
            result.lines.back().top = page.tops[i];
        }
        heading = result.heading = headingOf(book, result, heading);
    }
}

NSString familyOf(const StyledParagraph& paragraph) {
    const auto font = paragraph.text->attribute_atIndex_effectiveRange(NSFontAttributeName, 0, nullptr).object<NSFont>();
    return font ? font->familyName() : NSFont::userFontOfSize(kHeadSize)->familyName();
}

}  // namespace

Book makeBook(
    const std::vector<StyledParagraph>& paragraphs,
    const Typesetter& typesetter,
    const PageFormat& format,
    const Progress& progress) {
    Book book;
    book.format = format;
    for (const StyledParagraph& paragraph : paragraphs) {
        if (book.title.empty() && paragraph.headingLevel > 0) book.title = wordsOf(paragraph);
        book.paragraphs.push_back(typesetter.set(paragraph));
        if (progress) progress(book.paragraphs.size(), paragraphs.size());
    }
    if (!paragraphs.empty()) book.family = wq::toUTF8(familyOf(paragraphs.front()));
    divide(book);
    return book;
}

size_t pageOf(const Book& book, const Ref<WQXMLNode>& block) {
    for (size_t page = 0; page < book.pages.size(); ++page)
        for (const PlacedLine& placed : book.pages[page].lines)
            if (book.paragraphs[placed.paragraph].source.block == block) return page;
    return book.pages.size();
}

size_t fullestLeftPage(const Book& book) {
    size_t fullest = 0, most = 0;
    for (size_t page = 1; page + 1 < book.pages.size(); page += 2) {
        const size_t lines = book.pages[page].lines.size() + book.pages[page + 1].lines.size();
        if (lines > most) fullest = page, most = lines;
    }
    return fullest;
}

// ---- Drawing

void PageDrawing::draw(cairo_t* cairo, size_t page) const {
    drawFrames(cairo, page);
    for (const PlacedLine& placed : book.pages[page].lines) {
        drawChapterNumber(cairo, leftOf(page), placed);
        drawLine(cairo, leftOf(page), placed);
    }
    drawHead(cairo, page);
}

void PageDrawing::drawLine(cairo_t* cairo, double left, const PlacedLine& placed) const {
    const SetParagraph& paragraph = book.paragraphs[placed.paragraph];
    const double baseline = book.format.head + placed.top + paragraph.baseline;
    use(cairo, kInk);
    if (paragraph.marker && placed.line == 0) show(cairo, paragraph.marker, left + paragraph.markerX, baseline);
    cairo_move_to(cairo, left + paragraph.lines[placed.line].x, baseline);
    pango_cairo_show_layout_line(cairo, paragraph.lines[placed.line].line);
}

// Each stretch of lines in a frame has its borders; those of a frame that goes on to another page are closed there.
void PageDrawing::drawFrames(cairo_t* cairo, size_t page) const {
    const auto& lines = book.pages[page].lines;
    for (size_t first = 0; first < lines.size(); ++first)
        for (const SetFrame& frame : book.paragraphs[lines[first].paragraph].frames) {
            if (first > 0 && hasFrame(book.paragraphs[lines[first - 1].paragraph], frame.block)) continue;
            size_t last = first;
            while (last + 1 < lines.size() && hasFrame(book.paragraphs[lines[last + 1].paragraph], frame.block)) ++last;
            const double top = book.format.head + lines[first].top - (lines[first].line == 0 ? frame.above : 0);
            const SetParagraph& closing = book.paragraphs[lines[last].paragraph];
            const bool isEnd = lines[last].line + 1 == closing.lines.size();
            const double bottom = book.format.head + lines[last].top + closing.lineHeight + (isEnd ? frame.below : 0);
            const double left = leftOf(page) + frame.left, right = leftOf(page) + frame.right;
            use(cairo, kDarkRed);
            cairo_rectangle(cairo, left, top, frame.borders[NSMinXEdge], bottom - top);
            cairo_rectangle(cairo, right - frame.borders[NSMaxXEdge], top, frame.borders[NSMaxXEdge], bottom - top);
            cairo_rectangle(cairo, left, top, right - left, frame.borders[NSMinYEdge]);
            cairo_rectangle(cairo, left, bottom - frame.borders[NSMaxYEdge], right - left, frame.borders[NSMaxYEdge]);
            cairo_fill(cairo);
        }
}

void PageDrawing::drawChapterNumber(cairo_t* cairo, double left, const PlacedLine& placed) const {
    const SetParagraph& paragraph = book.paragraphs[placed.paragraph];
    if (placed.line > 0 || !isChapterTitle(paragraph.source) || placed.top < kNumberSpace) return;
    const auto number = std::count_if(
        book.paragraphs.begin(), book.paragraphs.begin() + static_cast<std::ptrdiff_t>(placed.paragraph) + 1,
        [](const SetParagraph& each) { return isChapterTitle(each.source); });
    const auto line = typesetter.lineOf(std::to_string(number), book.family, kChapterNumberSize, true);
    use(cairo, kDarkRed);
    const double baseline = book.format.head + placed.top + paragraph.baseline - kNumberRise;
    show(cairo, line, left + (book.format.measure() - widthOf(line)) / 2, baseline);
}

// The title of the book on the left page and of the chapter on the right one, not above the beginning of one; numbers on
// all pages but a title page.
void PageDrawing::drawHead(cairo_t* cairo, size_t page) const {
    const PageFormat& format = book.format;
    const bool isTitlePage = page == 0 && book.pages.size() > 1 && book.pages[1].isBegunOnPurpose;
    if (isTitlePage) return;
    use(cairo, kGrey);
    const auto folio = typesetter.lineOf(std::to_string(page + 1), book.family, kFolioSize, false);
    show(cairo, folio, leftOf(page) + (format.measure() - widthOf(folio)) / 2, format.height - format.foot + kFolioDrop);

    const std::string& words = isRight(page) ? book.pages[page].heading : book.title;
    if (book.pages[page].isBegunOnPurpose || words.empty()) return;
    const auto head = typesetter.lineOf(words, book.family, kHeadSize, true);
    show(cairo, head, leftOf(page) + (isRight(page) ? format.measure() - widthOf(head) : 0), format.head - kHeadRise);
}

void PageDrawing::drawMarks(cairo_t* cairo, size_t page, const std::vector<Ref<WQXMLNode>>& blocks) const {
    const double x = isRight(page) ? leftOf(page) + book.format.measure() + kMarkDistance : leftOf(page) - kMarkDistance - kMarkWidth;
    use(cairo, kDarkRed);
    for (const PlacedLine& placed : book.pages[page].lines) {
        const SetParagraph& paragraph = book.paragraphs[placed.paragraph];
        if (std::find(blocks.begin(), blocks.end(), paragraph.source.block) == blocks.end()) continue;
        cairo_rectangle(cairo, x, book.format.head + placed.top, kMarkWidth, paragraph.lineHeight);
    }
    cairo_fill(cairo);
}

// ---- Links

namespace {

bool hasPairsOfParentheses(std::string_view text) {
    int open = 0;
    for (const char byte : text) {
        open += (byte == '(') - (byte == ')');
        if (open < 0) return false;
    }
    return open == 0;
}

// As the value of a tag's attribute, which stands in apostrophes, and of a string of a PDF, where parentheses come in pairs.
std::string quoted(const std::string& address) {
    const std::string_view escaped = hasPairsOfParentheses(address) ? "'\\" : "'\\()";
    std::string result;
    for (const char byte : address)
        if (escaped.find(byte) != std::string_view::npos)
            result += fmt::format("%{:02X}", byte);
        else
            result += byte;
    return result;
}

}  // namespace

// One rectangle for each line, and for each part of it that the direction of writing divides.
void PageDrawing::addLinks(cairo_t* cairo, size_t page) const {
    for (const PlacedLine& placed : book.pages[page].lines) {
        const SetParagraph& paragraph = book.paragraphs[placed.paragraph];
        PangoLayoutLine* line = paragraph.lines[placed.line].line;
        for (const SetLink& link : paragraph.links) {
            const int start = std::max(link.start, line->start_index), end = std::min(link.end, line->start_index + line->length);
            if (start >= end) continue;
            int* ranges = nullptr;
            int count = 0;
            pango_layout_line_get_x_ranges(line, start, end, &ranges, &count);
            for (int i = 0; i < count; ++i) {
                const std::string attributes = fmt::format(
                    "uri='{}' rect=[{} {} {} {}]", quoted(link.address), leftOf(page) + paragraph.left + points(ranges[2 * i]),
                    book.format.head + placed.top, points(ranges[2 * i + 1] - ranges[2 * i]), paragraph.lineHeight);
                cairo_tag_begin(cairo, CAIRO_TAG_LINK, attributes.c_str());
                cairo_tag_end(cairo, CAIRO_TAG_LINK);
            }
            g_free(ranges);
        }
    }
}
