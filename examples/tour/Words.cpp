#include "examples/tour/Words.h"

#include <fmt/format.h>
#include <libxml/tree.h>

#include <algorithm>
#include <cctype>

std::string shortened(const NSString& text, size_t units) {
    std::u16string words;
    for (char16_t unit : text.view()) {
        const bool blank = unit == u' ' || unit == u'\n' || unit == u'\t';
        if (!blank)
            words += unit;
        else if (!words.empty() && words.back() != u' ')
            words += u' ';
    }
    if (words.size() > units) words = words.substr(0, units) + u"…";
    return wq::toUTF8(words);
}

std::string nameOf(const Ref<WQXMLNode>& node) {
    const NSString identifier = wq::cast<WQXMLElement>(node)->getAttribute(u"id");
    const std::string name = node->nodeName() ? wq::toUTF8(node->nodeName()) : fmt::format("(node of type {})", node->nodeType());
    return identifier ? name + "#" + wq::toUTF8(identifier) : name;
}

bool isElement(const Ref<WQXMLNode>& node) { return node->nodeType() == XML_ELEMENT_NODE; }
