#include "dom/WQXMLAttr.h"

#include "dom/Binding.h"

NSString WQXMLAttr::value() const {
    if (!xmlNode()) return nullptr;
    const xmlNs* ns = xmlNode()->ns;
    return wq::takeString(xmlGetNsProp(xmlNode()->parent, xmlNode()->name, ns ? ns->href : nullptr));
}

Ref<WQXMLElement> WQXMLAttr::ownerElement() const { return wq::cast<WQXMLElement>(parentNode()); }
