// Ranges that live through edits.
#pragma once

#include "dom/WQXMLDocument.h"

// A selection over two paragraphs, a bookmark in a text that is split, and a range that does not listen;
// edits through them, and what they say before and after.
void select(const Ref<WQXMLDocument>& document);
