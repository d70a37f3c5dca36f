// Paragraphs of styled text as lines, by Pango.
#pragma once

#include <pango/pango.h>

#include <memory>
#include <string>
#include <vector>

#include "examples/book/Hyphenator.h"
#include "examples/book/StyledText.h"
#include "platform/NSFont.h"
#include "platform/NSParagraphStyle.h"

// In points.
inline double points(int units) { return static_cast<double>(units) / PANGO_SCALE; }

// All lengths are in points; x counts from the left end of the measure, which is the width of a column of text.
struct SetLine {
    PangoLayoutLine* line;  // the layout's own
    double x;
};

struct SetLink {
    std::string address;
    int start, end;  // bytes of the layout's text
};

// A border with its padding, around paragraphs that follow each other.
struct SetFrame {
    Ref<NSTextBlock> block;
    double left, right;                // the outer edges of its border
    double above = 0, below = 0;       // border and padding
    double borders[4] = {0, 0, 0, 0};  // by NSRectEdge: left, top, right, bottom
};

struct SetParagraph {
    std::shared_ptr<PangoLayout> layout;
    std::shared_ptr<PangoLayout> ragged;  // the same not justified, for lines that a line separator ends; null without one
    std::vector<SetLine> lines;           // never empty
    double left = 0;                      // of the layout
    double lineHeight = 0;
    double baseline = 0;  // from the top of a line
    double spaceAbove = 0, spaceBelow = 0;
    std::shared_ptr<PangoLayout> marker;  // of a list item, on the first line; null without one
    double markerX = 0;
    std::vector<SetLink> links;
    std::vector<SetFrame> frames;  // outermost first
    StyledParagraph source;
};

// Left, right and the side of markers are those of text that runs from left to right.
class Typesetter {
public:
    // The width of a column, and the language of the text, as in "en-GB"; empty is unknown, and divides no words.
    Typesetter(double measure, const std::string& language);

    // Headings are not divided, nor are the first words of an element of the class "opening", which are in small capitals.
    SetParagraph set(const StyledParagraph& paragraph) const;

    // A line of its own, as in the head of a page; what does not fit into the column is cut off.
    std::shared_ptr<PangoLayout> lineOf(const std::string& text, const std::string& family, double size, bool isItalic) const;

private:
    double setInFrames(SetParagraph& result, const std::vector<Ref<NSTextBlock>>& blocks, double* right) const;
    void setMarker(SetParagraph& result, const NSString& text, const Ref<NSDictionary>& attributes, double left) const;
    void setLineHeight(SetParagraph& result, const Ref<NSParagraphStyle>& style, const Ref<NSFont>& font) const;
    std::shared_ptr<PangoLayout> newLayout() const;

    const double width;
    const Hyphenator hyphenator;
    std::shared_ptr<PangoFontMap> fontMap;
    std::shared_ptr<PangoContext> context;
};

// The words of a heading or a paragraph, without marker, terminator and line separators.
std::string wordsOf(const StyledParagraph& paragraph);
