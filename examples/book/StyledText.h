// From a styled tree to styled text: what a writing application hands to its text view, its typesetter and the HTML writer.
//
// The style sheet says what is a block, an inline or nothing (`display`); the application knows which elements are lists,
// items, links and headings, by their names.
#pragma once

#include <vector>

#include "examples/book/StyledTree.h"
#include "platform/NSMutableAttributedString.h"

struct StyledParagraph {
    Ref<NSMutableAttributedString> text;  // with its marker, if it begins an item, and its line feed
    uint64_t markerLength = 0;            // UTF-16 units, with the two tabs
    Ref<WQXMLElement> block;              // the nearest block around the words; without one the element read
    bool beginsPage = false;              // a page break is before it, or before a block that begins with it
    bool endsPage = false;
    int headingLevel = 0;  // from 1 on; 0 is no heading
};

// The paragraphs below an element.
//
//   - A block that holds text is a paragraph; blocks inside it divide it. Its spacing is its own margin above and below, or
//     that of a block around it which begins or ends with it, where that is larger; its indents add up the left and right
//     margins of all blocks around.
//   - A block with padding or borders is a text block of its paragraphs; its left and right margins are that one's then.
//   - An inline is a run with its own font and colour. An underline holds for all that is below, and an address as well.
//   - Below "list", "ul" and "ol" the items ("item", "li") have markers in front, by the list style type of the list, and in
//     the item's own font.
//   - White space is collapsed as in HTML: one blank between words, none at the ends of a paragraph. A "br" is a line
//     separator, U+2028. In "pre" and where "xml:space" says so it is kept: line feeds are line separators, tabs are blanks.
//   - A page break before or after a block is one before or after its first or last paragraph; one before a block without any
//     text passes to the next paragraph.
//   - "title" and "h1" to "h6" are headings; a title's level is its depth.
//
// `baseURL`, which may be null, completes the addresses of links. Characters that no URL has are escaped; an address that makes
// none even so is no link.
std::vector<StyledParagraph> styledParagraphs(const Ref<WQXMLElement>& top, const StyledTree& styles, const Ref<NSURL>& baseURL);

// The paragraphs as one text, as a text view has it.
Ref<NSMutableAttributedString> joined(const std::vector<StyledParagraph>& paragraphs);

// The same for a browser, which draws markers itself. To the text system each paragraph of a list is an item, also the second
// one of an item: the numbers of the bridge are the document's, and would not be known as markers there.
Ref<NSMutableAttributedString> joinedWithoutMarkers(const std::vector<StyledParagraph>& paragraphs);
