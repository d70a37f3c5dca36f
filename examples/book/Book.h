// A manuscript set as pages, and how they are drawn.
#pragma once

#include <cairo.h>

#include <string>
#include <vector>

#include "examples/book/Pages.h"
#include "examples/book/Typesetter.h"

// Of one page, in points. Odd pages stand on the right, so their inner margin is the left one.
struct PageFormat {
    double width = 396, height = 612;
    double inner = 58, outer = 48, head = 66, foot = 66;
    double measure() const { return width - inner - outer; }
    double textHeight() const { return height - head - foot; }
};

struct PlacedLine {
    size_t paragraph;
    size_t line;  // of the paragraph
    double top;   // from the head of the text
};

struct BookPage {
    std::vector<PlacedLine> lines;
    bool isBegunOnPurpose = false;
    std::string heading;  // what a right page is titled with: of the two highest levels, the last that a page was begun with
};

struct Book {
    PageFormat format;
    std::string title;   // the first heading
    std::string family;  // of what the book adds: page numbers and titles in the head
    std::vector<SetParagraph> paragraphs;
    std::vector<BookPage> pages;  // page 1 is pages[0]
};

// Sets every paragraph and divides them into pages. A heading stays with two lines of what follows, and a paragraph is not
// divided behind its first line nor ahead of its last. The larger of two spaces that meet counts.
Book makeBook(
    const std::vector<StyledParagraph>& paragraphs,
    const Typesetter& typesetter,
    const PageFormat& format,
    const Progress& progress);

// The page that the paragraph of an element begins on; the number of pages where there is none.
size_t pageOf(const Book& book, const Ref<WQXMLNode>& block);

// The left one of the two facing pages that have most lines; 0 where no pages face each other.
size_t fullestLeftPage(const Book& book);

// Draws a page with its upper left corner at the origin. With `typesetter` for what the book adds.
class PageDrawing {
public:
    PageDrawing(const Book& aBook, const Typesetter& aTypesetter) : book(aBook), typesetter(aTypesetter) {}

    void draw(cairo_t* cairo, size_t page) const;
    // Bars in the outer margin, beside the lines of these elements' paragraphs.
    void drawMarks(cairo_t* cairo, size_t page, const std::vector<Ref<WQXMLNode>>& blocks) const;
    // The links of a page as a PDF has them.
    void addLinks(cairo_t* cairo, size_t page) const;

    // Where the text begins from the left edge.
    double leftOf(size_t page) const { return isRight(page) ? book.format.inner : book.format.outer; }

private:
    static bool isRight(size_t page) { return page % 2 == 0; }
    void drawLine(cairo_t* cairo, double left, const PlacedLine& placed) const;
    void drawFrames(cairo_t* cairo, size_t page) const;
    void drawHead(cairo_t* cairo, size_t page) const;
    void drawChapterNumber(cairo_t* cairo, double left, const PlacedLine& placed) const;

    const Book& book;
    const Typesetter& typesetter;
};
