// Rows of lines as pages.
#pragma once

#include <cstddef>
#include <vector>

// A line and what it says of the break above it; lengths in points.
struct Row {
    double height = 0;
    double spaceAbove = 0;        // is dropped at the head of a page, unless the page was begun on purpose
    double frameAbove = 0;        // is kept there: padding and borders
    double frameBelow = 0;        // and below the line
    bool mayBreakAbove = true;    // a page may begin here
    bool mustBreakAbove = false;  // begins a page on purpose
};

struct PageOfRows {
    size_t first = 0;          // row
    std::vector<double> tops;  // of its rows, from the head of the page
    bool isBegunOnPurpose = false;
};

// Every row on one page, in order. A page is filled until a row does not fit, and ends above the last row on it, or
// that one, which may begin a page; where none may, above the row that does not fit. A row higher than a page
// has one to itself.
std::vector<PageOfRows> paginate(const std::vector<Row>& rows, double pageHeight);
