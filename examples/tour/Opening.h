// Opening a document of any of the three kinds.
#pragma once

#include <string>

#include "dom/WQXMLDocument.h"

struct CannotOpen {
    std::string line;  // file, line and reason
};

// XML and XHTML are read as XML; HTML, told by how it begins, by the HTML 4 parser. Throws CannotOpen.
Ref<WQXMLDocument> open(const std::string& path);
