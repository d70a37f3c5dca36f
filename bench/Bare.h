// libxml2 without this library: its hooks are out while one of these lives.
#pragma once

#include <libxml/tree.h>
#include <libxml/xmlerror.h>

#include "dom/WQLibXML.h"

class Bare {
public:
    Bare() {
        WQLibXMLInit();  // else it would put the hooks in later
        xmlRegisterNodeDefault(nullptr);
        xmlDeregisterNodeDefault(nullptr);
        xmlSetStructuredErrorFunc(nullptr, nullptr);
    }
    ~Bare() {
        xmlRegisterNodeDefault(xmlRegisterNode);
        xmlDeregisterNodeDefault(xmlDeregisterNode);
        xmlSetStructuredErrorFunc(nullptr, wqStructuredErrorFunc);
    }
    Bare(const Bare&) = delete;
    Bare& operator=(const Bare&) = delete;
};
