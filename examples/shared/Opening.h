// Opening what a user names on the command line.
#pragma once

#include <string>

#include "dom/WQXMLDocument.h"
#include "mac/Frameworks/WQCSS/WQCSSStyleSheet.h"

// One line for the user: file, line where there is one, reason.
struct CannotOpen {
    std::string line;
};

// XML and XHTML are read as XML; HTML, told by its document type, by the HTML 4 parser, which has to read it without a
// report. What has the root "html" and nothing ahead of it is HTML if it is no XML. HTML that names no encoding is taken
// for UTF-8 if it can be. `elementClasses` is the class map of WQXMLDocument's arguments; null is none. Throws CannotOpen.
Ref<WQXMLDocument> openDocument(const std::string& path, const Ref<NSDictionary>& elementClasses);

// Throws CannotOpen; a syntax error ends the process where hard assertions are on.
Ref<WQCSSStyleSheet> openSheet(const std::string& path);

// A text without line ends, as a message is printed.
std::string oneLine(const NSString& text);
