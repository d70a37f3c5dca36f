// Editing a document while a listener hears of it.
#pragma once

#include "dom/WQXMLDocument.h"

// Moves one chapter and removes another.
void moveAndRemove(const Ref<WQXMLDocument>& document);
// Sets attributes, splits and merges a text and an element, and puts new markup into a paragraph.
void rewrite(const Ref<WQXMLDocument>& document);
