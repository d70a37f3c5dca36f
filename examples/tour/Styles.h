// The style of every node of a document by a style sheet.
#pragma once

#include <string>

#include "dom/WQXMLDocument.h"

// Resolves each element and text of the document, parents handing their styles down; prints the computed texts of
// some nodes, and how much the styles share. `sheetPath` may be empty: then there are no rules. Throws CannotOpen
// for a sheet that cannot be read.
void resolveStyles(const Ref<WQXMLDocument>& document, const std::string& sheetPath);
