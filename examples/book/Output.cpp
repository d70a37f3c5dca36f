#include "examples/book/Output.h"

#include <cairo-pdf.h>
#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <memory>

namespace {

namespace fs = std::filesystem;

constexpr double kDotsPerPoint = 144 / 72.0;
constexpr double kTableMargin = 24;  // points around and between pages that lie side by side

using Surface = std::unique_ptr<cairo_surface_t, void (*)(cairo_surface_t*)>;
using Cairo = std::unique_ptr<cairo_t, void (*)(cairo_t*)>;

Cairo drawingOn(const Surface& surface) { return Cairo(cairo_create(surface.get()), cairo_destroy); }

void check(cairo_status_t status, const fs::path& path) {
    if (status != CAIRO_STATUS_SUCCESS) throw CannotWrite{fmt::format("{}: {}", path.string(), cairo_status_to_string(status))};
}

// White, and so many points wide and high.
Surface newPicture(double width, double height) {
    const auto dots = [](double points) { return static_cast<int>(points * kDotsPerPoint); };
    Surface surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, dots(width), dots(height)), cairo_surface_destroy);
    const Cairo cairo = drawingOn(surface);
    cairo_set_source_rgb(cairo.get(), 1, 1, 1);
    cairo_paint(cairo.get());
    return surface;
}

Cairo drawingInPointsOn(const Surface& surface) {
    Cairo cairo = drawingOn(surface);
    cairo_scale(cairo.get(), kDotsPerPoint, kDotsPerPoint);
    return cairo;
}

// One entry for each heading, below the last one of a higher level.
void addOutline(const Book& book, const PageDrawing& drawing, cairo_surface_t* surface) {
    std::vector<std::pair<int, int>> open;  // level and entry
    for (size_t page = 0; page < book.pages.size(); ++page)
        for (const PlacedLine& placed : book.pages[page].lines) {
            const StyledParagraph& paragraph = book.paragraphs[placed.paragraph].source;
            if (placed.line > 0 || paragraph.headingLevel == 0) continue;
            while (!open.empty() && open.back().first >= paragraph.headingLevel) open.pop_back();
            const std::string place = fmt::format("page={} pos=[{} {}]", page + 1, drawing.leftOf(page), book.format.head + placed.top);
            const int entry = cairo_pdf_surface_add_outline(
                surface, open.empty() ? CAIRO_PDF_OUTLINE_ROOT : open.back().second, wordsOf(paragraph).c_str(), place.c_str(),
                open.empty() ? CAIRO_PDF_OUTLINE_FLAG_OPEN : static_cast<cairo_pdf_outline_flags_t>(0));
            open.emplace_back(paragraph.headingLevel, entry);
        }
}

}  // namespace

void writePDF(const Book& book, const Typesetter& typesetter, const fs::path& path, const Progress& progress) {
    const Surface surface(cairo_pdf_surface_create(path.c_str(), book.format.width, book.format.height), cairo_surface_destroy);
    // The same book makes the same file.
    cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_CREATE_DATE, "2000-01-01T00:00:00Z");
    cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_TITLE, book.title.c_str());
    const Cairo cairo = drawingOn(surface);
    const PageDrawing drawing(book, typesetter);
    for (size_t page = 0; page < book.pages.size(); ++page) {
        drawing.draw(cairo.get(), page);
        drawing.addLinks(cairo.get(), page);
        cairo_show_page(cairo.get());
        if (progress) progress(page + 1, book.pages.size());
    }
    addOutline(book, drawing, surface.get());
    check(cairo_status(cairo.get()), path);
    cairo_surface_finish(surface.get());
    check(cairo_surface_status(surface.get()), path);
}

void writePictures(const Book& book, const Typesetter& typesetter, const fs::path& folder, const Progress& progress) {
    fs::create_directories(folder);
    const PageDrawing drawing(book, typesetter);
    for (size_t page = 0; page < book.pages.size(); ++page) {
        const Surface surface = newPicture(book.format.width, book.format.height);
        drawing.draw(drawingInPointsOn(surface).get(), page);
        const fs::path path = folder / fmt::format("page-{:02}.png", page + 1);
        check(cairo_surface_write_to_png(surface.get(), path.c_str()), path);
        if (progress) progress(page + 1, book.pages.size());
    }
}

void writeTwoPages(const PageToShow& left, const PageToShow& right, const Typesetter& typesetter, const fs::path& path) {
    const PageFormat& format = left.book.format;
    const double width = 2 * format.width + 3 * kTableMargin, height = format.height + 2 * kTableMargin;
    const Surface surface = newPicture(width, height);
    const Cairo cairo = drawingInPointsOn(surface);
    cairo_set_source_rgb(cairo.get(), 0.89, 0.89, 0.88);
    cairo_paint(cairo.get());
    double x = kTableMargin;
    for (const PageToShow* each : {&left, &right}) {
        cairo_save(cairo.get());
        cairo_translate(cairo.get(), x, kTableMargin);
        for (int step = 3; step > 0; --step) {  // a thin shadow
            cairo_set_source_rgba(cairo.get(), 0, 0, 0, 0.05);
            cairo_rectangle(cairo.get(), -0.5 * step, 0.7 * step, format.width + step, format.height);
            cairo_fill(cairo.get());
        }
        cairo_set_source_rgb(cairo.get(), 1, 1, 1);
        cairo_rectangle(cairo.get(), 0, 0, format.width, format.height);
        cairo_fill(cairo.get());
        const PageDrawing drawing(each->book, typesetter);
        drawing.draw(cairo.get(), each->page);
        drawing.drawMarks(cairo.get(), each->page, each->marked);
        cairo_restore(cairo.get());
        x += format.width + kTableMargin;
    }
    check(cairo_surface_write_to_png(surface.get(), path.c_str()), path);
}

void writeBytes(std::string_view bytes, const fs::path& path) {
    std::ofstream file(path, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file) throw CannotWrite{fmt::format("{}: {}", path.string(), std::strerror(errno))};
}

// ---- The folder

OutputFolder::OutputFolder(const fs::path& aFolder) : folder(aFolder.has_filename() ? aFolder : aFolder.parent_path()) {
    std::error_code ignored;  // what is wrong there, the next call tells
    if (folder.has_parent_path()) fs::create_directories(folder.parent_path(), ignored);
    std::string name = fs::path(folder).concat("-XXXXXX").string();
    if (!mkdtemp(name.data())) throw CannotWrite{fmt::format("{}: {}", folder.string(), std::strerror(errno))};
    unfinished = name;
}

OutputFolder::~OutputFolder() {
    std::error_code ignored;
    fs::remove_all(unfinished, ignored);
}

std::string OutputFolder::asPublished(std::string line) const {
    const size_t place = line.find(unfinished.string());
    return place == std::string::npos ? line : line.replace(place, unfinished.string().size(), folder.string());
}

namespace {

bool isPage(const fs::path& path) {
    const std::string name = path.filename().string();
    return name.starts_with("page-") && path.extension() == ".png";
}

void replacePages(const fs::path& made, const fs::path& place) {
    fs::create_directories(place);
    std::vector<fs::path> older;
    for (const auto& entry : fs::directory_iterator(place))
        if (isPage(entry.path())) older.push_back(entry.path());
    for (const fs::path& path : older) fs::remove(path);
    for (const auto& entry : fs::directory_iterator(made)) fs::rename(entry.path(), place / entry.path().filename());
}

}  // namespace

void OutputFolder::publish(const std::vector<std::string>& names) {
    try {
        fs::create_directories(folder);
        for (const auto& entry : fs::directory_iterator(unfinished)) {
            const fs::path place = folder / entry.path().filename();
            if (fs::exists(place) && fs::is_directory(place) != entry.is_directory())
                throw CannotWrite{fmt::format("{}: something else stands in its place", place.string())};
        }
        for (const std::string& name : names)
            if (!fs::exists(unfinished / name)) fs::remove(folder / name);
        for (const auto& entry : fs::directory_iterator(unfinished)) {
            const fs::path place = folder / entry.path().filename();
            entry.is_directory() ? replacePages(entry.path(), place) : fs::rename(entry.path(), place);
        }
    } catch (const fs::filesystem_error& error) {
        throw CannotWrite{fmt::format("{}: {}", error.path1().string(), error.code().message())};
    }
}
