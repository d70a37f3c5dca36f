// How the tour names things.
#pragma once

#include <string>

#include "dom/WQXMLElement.h"

// On one line, cut behind that many UTF-16 units.
std::string shortened(const NSString& text, size_t units);
// "p#first-words", or the name alone without an "id".
std::string nameOf(const Ref<WQXMLNode>& node);
bool isElement(const Ref<WQXMLNode>& node);
