// What a document is made of, on some lines.
#pragma once

#include "dom/WQXMLDocument.h"

void printOutline(const Ref<WQXMLDocument>& document);
