// Writing a document in every way, and reading what was written.
#pragma once

#include "dom/WQXMLDocument.h"

void write(const Ref<WQXMLDocument>& document);
