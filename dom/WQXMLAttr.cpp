#include "dom/WQXMLAttr.h"

#include "dom/Binding.h"
#include "dom/WQXMLDocument.h"
#include "dom/WQXMLWriter.h"
#include "platform/Assertion.h"

NSString WQXMLAttr::value() const {
    if (!xmlNode()) return nullptr;
    const xmlNs* ns = xmlNode()->ns;
    return wq::takeString(xmlGetNsProp(xmlNode()->parent, xmlNode()->name, ns ? ns->href : nullptr));
}

void WQXMLAttr::setValue(const NSString& value) {
    if (!xmlNode()) return;
    const wq::KeptAlive kept(this);
    wq::Binding::setValue(reinterpret_cast<xmlAttrPtr>(xmlNode()), value);
}

Ref<WQXMLElement> WQXMLAttr::ownerElement() const { return wq::cast<WQXMLElement>(parentNode()); }

void WQXMLAttr::encodeWithWriter(const Ref<WQXMLWriter>& writer) const {
    if (!xmlNode()) return;
    const int32_t result = writer->writeAttribute_prefix_namespace_content(localName(), prefix(), namespaceURI(), value());
    WQ_ASSERT(result != -1, u"Could not encode text node");  // the words of a text: wanted
}
