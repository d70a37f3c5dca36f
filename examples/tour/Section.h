// The application's own element class: what a manuscript is divided into.
#pragma once

#include "dom/WQXMLElement.h"

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
