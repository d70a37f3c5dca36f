// What an editor does to two paragraphs, through ranges.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "dom/WQXMLDocument.h"

struct EditingSession {
    std::vector<std::string> told;           // a line for each edit, in order
    std::vector<Ref<WQXMLNode>> beforehand;  // the elements whose words change
    std::vector<Ref<WQXMLNode>> afterwards;  // and those that have them in the end
};

using IsShown = std::function<bool(const Ref<WQXMLNode>& element)>;

// In the first two elements of one name, side by side, that are shown and begin with enough words: puts a sentence in, deletes from the
// middle of the first to the middle of the second, which merges them, and splits off the last sentence. Does nothing without such elements.
// Which they are is known without an edit as well: see elementsToEdit.
EditingSession edit(const Ref<WQXMLDocument>& document, const IsShown& isShown = {});

// The two elements; none if there are none.
std::vector<Ref<WQXMLNode>> elementsToEdit(const Ref<WQXMLDocument>& document, const IsShown& isShown = {});
