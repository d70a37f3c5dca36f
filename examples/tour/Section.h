// The application's own element class: what a manuscript is divided into.
#pragma once

#include "dom/WQXMLDocument.h"

class Section : public WQXMLElement {
public:
    // The text of the first child that is a heading; null without one.
    NSString heading() const {
        static const char16_t* const headings[] = {u"title", u"h1", u"h2", u"h3", u"h4", u"h5", u"h6"};
        for (Ref<WQXMLNode> child = firstChild(); child; child = child->nextSibling())
            for (const char16_t* name : headings)
                if (child->localName() == name) return wq::cast<WQXMLElement>(child)->innerText();
        return nullptr;
    }
};

// The class map that gives chapters and the like this class, in the namespaces that a manuscript may be in.
inline Ref<NSDictionary> sectionClasses() {
    const auto sections = NSDictionary::dictionary();
    for (const char16_t* name : {u"part", u"chapter", u"section", u"article", u"div"})
        sections->setObject_forKey(&wq::Class::of<Section>(), name);
    return NSDictionary::dictionary(
        {{u"urn:example:manuscript", sections}, {u"http://www.w3.org/1999/xhtml", sections}, {DefaultNamespaceKey, sections}});
}
