// Asking a document for nodes.
#pragma once

#include "dom/WQXMLDocument.h"

// XPath with registered prefixes, and a look-up of an identifier.
void query(const Ref<WQXMLDocument>& document);
