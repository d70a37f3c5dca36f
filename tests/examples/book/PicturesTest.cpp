// Pages as they look, beside pictures that were looked at.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cairo.h>
#include <fmt/format.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>

namespace {

namespace fs = std::filesystem;

constexpr int kCell = 24;            // dots; a page is compared in squares of that size
constexpr int kTolerance = 64;       // of 255, for the grey of a single dot
constexpr double kTolerated = 0.03;  // of the dots in a square
constexpr double kDotsPerPoint = 144 / 72.0;

class Picture {
public:
    explicit Picture(const fs::path& path) : surface(cairo_image_surface_create_from_png(path.c_str()), cairo_surface_destroy) {}
    bool isThere() const { return cairo_surface_status(surface.get()) == CAIRO_STATUS_SUCCESS; }
    int width() const { return cairo_image_surface_get_width(surface.get()); }
    int height() const { return cairo_image_surface_get_height(surface.get()); }
    // The largest difference of the three colours at a dot.
    int difference(const Picture& other, int x, int y) const {
        int largest = 0;
        for (int color = 0; color < 3; ++color) largest = std::max(largest, std::abs(at(x, y)[color] - other.at(x, y)[color]));
        return largest;
    }
    void paint(int left, int top, int size, unsigned char red, unsigned char green, unsigned char blue) {
        for (int y = top; y < top + size; ++y)
            for (int x = left; x < left + size; ++x) {
                unsigned char* dot = const_cast<unsigned char*>(at(x, y));
                dot[0] = blue, dot[1] = green, dot[2] = red;
            }
    }

private:
    const unsigned char* at(int x, int y) const {
        return cairo_image_surface_get_data(surface.get()) + y * cairo_image_surface_get_stride(surface.get()) + 4 * x;
    }
    std::unique_ptr<cairo_surface_t, void (*)(cairo_surface_t*)> surface;
};

// Where two pictures differ, in points from the upper left corner; empty if they do not.
std::string regionThatDiffers(const Picture& one, const Picture& other) {
    if (!one.isThere() || !other.isThere()) return "a picture is missing";
    if (one.width() != other.width() || one.height() != other.height())
        return fmt::format("{} x {} dots beside {} x {}", one.width(), one.height(), other.width(), other.height());
    int left = one.width(), top = one.height(), right = 0, bottom = 0;
    for (int y = 0; y < one.height(); y += kCell)
        for (int x = 0; x < one.width(); x += kCell) {
            const int endX = std::min(x + kCell, one.width()), endY = std::min(y + kCell, one.height());
            int differing = 0;
            for (int v = y; v < endY; ++v)
                for (int u = x; u < endX; ++u) differing += one.difference(other, u, v) > kTolerance;
            if (differing <= kTolerated * (endX - x) * (endY - y)) continue;
            left = std::min(left, x), top = std::min(top, y), right = std::max(right, endX), bottom = std::max(bottom, endY);
        }
    if (right == 0) return "";
    return fmt::format(
        "from {}, {} to {}, {} points", left / kDotsPerPoint, top / kDotsPerPoint, right / kDotsPerPoint, bottom / kDotsPerPoint);
}

fs::path reference(const std::string& name) { return fs::path(WQ_SOURCE_FOLDER) / "tests/examples/pictures" / name; }

// A folder that stays, so that its pictures can be looked at, and can become the references.
fs::path typesetSample() {
    const fs::path folder = fs::current_path() / "pictures";
    const fs::path sample = fs::path(WQ_SOURCE_FOLDER) / "examples/manuscript";
    const std::string command = fmt::format(
        "'{}' '{}' '{}' '{}' >/dev/null 2>&1", WQ_TYPESET_MANUSCRIPT, (sample / "manuscript.xml").string(),
        (sample / "manuscript.css").string(), folder.string());
    EXPECT_EQ(WEXITSTATUS(std::system(command.c_str())), 0);
    return folder;
}

TEST(PicturesTest, PagesOfTheSampleLookAsTheyDid) {
    const fs::path made = typesetSample();
    for (const auto& [picture, kept] :
         {std::pair("manuscript-pages/page-04.png", "page-04.png"), std::pair("manuscript-pages/page-10.png", "page-10.png"),
          std::pair("manuscript-edit.png", "manuscript-edit.png"), std::pair("manuscript-spread.png", "../../../docs/pages.png")})
        EXPECT_EQ(regionThatDiffers(Picture(made / picture), Picture(reference(kept))), "")
            << (made / picture).string() << " beside " << reference(kept).string();
}

TEST(PicturesTest, AChangeIsToldWithItsRegion) {
    const Picture kept(reference("page-04.png"));
    Picture changed(reference("page-04.png"));
    ASSERT_TRUE(kept.isThere());
    EXPECT_EQ(regionThatDiffers(changed, kept), "");
    changed.paint(kCell * 10, kCell * 3, 30, 255, 0, 0);
    EXPECT_EQ(regionThatDiffers(changed, kept), "from 120, 36 to 144, 60 points");
    EXPECT_EQ(regionThatDiffers(Picture(reference("manuscript-edit.png")), kept), "1728 x 1320 dots beside 792 x 1224");
    EXPECT_EQ(regionThatDiffers(Picture("/nonexistent.png"), kept), "a picture is missing");
}

TEST(PicturesTest, AShadeMoreOrLessIsNoChange) {
    const Picture kept(reference("page-04.png"));
    Picture changed(reference("page-04.png"));
    changed.paint(0, 0, kCell, 255 - kTolerance, 255, 255);
    EXPECT_EQ(regionThatDiffers(changed, kept), "");
    changed.paint(0, 0, kCell, 255 - kTolerance - 1, 255, 255);
    EXPECT_EQ(regionThatDiffers(changed, kept), "from 0, 0 to 12, 12 points");
}

}  // namespace
