#include "examples/book/Pages.h"

namespace {

constexpr double kRounding = 0.01;  // points by which sums of line heights may miss the page

// The row that the next page begins with: `overflow` does not fit, `first` began this page.
size_t breakBetween(const std::vector<Row>& rows, size_t first, size_t overflow) {
    for (size_t row = overflow; row > first; --row)
        if (rows[row].mayBreakAbove) return row;
    return overflow;
}

}  // namespace

std::vector<PageOfRows> paginate(const std::vector<Row>& rows, double pageHeight) {
    std::vector<PageOfRows> pages;
    size_t first = 0;
    while (first < rows.size()) {
        PageOfRows page{first, {}, first == 0 || rows[first].mustBreakAbove};
        double bottom = 0;
        size_t row = first;
        for (; row < rows.size(); ++row) {
            const bool isHead = row == first;
            if (rows[row].mustBreakAbove && !isHead) break;
            const double space = isHead && !page.isBegunOnPurpose ? 0 : rows[row].spaceAbove;
            const double top = bottom + space + rows[row].frameAbove;
            const double newBottom = top + rows[row].height + rows[row].frameBelow;
            if (newBottom > pageHeight + kRounding && !isHead) {
                row = breakBetween(rows, first, row);
                break;
            }
            page.tops.push_back(top);
            bottom = newBottom;
        }
        page.tops.resize(row - first);
        pages.push_back(page);
        first = row;
    }
    return pages;
}
