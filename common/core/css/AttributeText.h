// The value of an attribute as xmlGetProp gives it, read in place where its node allows.
#pragma once

#include <libxml/tree.h>

#include <memory>
#include <string_view>

namespace CSS {

class AttributeText {
public:
    // By local name, in a namespace or not, and with the defaults of the DTD.
    AttributeText(xmlNode* node, const char* name) {
        const auto* bytes = reinterpret_cast<const xmlChar*>(name);
        const xmlAttr* attribute = xmlHasProp(node, bytes);
        exists = attribute != nullptr;
        if (!exists) return;
        const xmlNode* only = attribute->type == XML_ATTRIBUTE_NODE ? attribute->children : nullptr;
        const bool isPlain = only && !only->next && only->type == XML_TEXT_NODE;
        if (!isPlain) copy.reset(xmlGetProp(node, bytes));
        text = viewOf(isPlain ? only->content : copy.get());
    }

    bool exists = false;
    std::string_view text;  // empty for an absent attribute

private:
    struct Free {
        void operator()(xmlChar* string) const { xmlFree(string); }
    };
    static std::string_view viewOf(const xmlChar* string) { return string ? reinterpret_cast<const char*>(string) : std::string_view(); }

    std::unique_ptr<xmlChar, Free> copy;
};

}  // namespace CSS
