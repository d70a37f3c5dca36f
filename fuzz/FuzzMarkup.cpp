// Markup of bytes from outside, put into an element of a document and taken out again; the first line
// is asked as an XPath expression, and its words as identifiers.
#include <libxml/parser.h>

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "dom/WQXMLAttr.h"
#include "dom/WQXMLDocument.h"
#include "platform/WQXMLException.h"

namespace {

void require(bool condition) {
    if (!condition) std::abort();
}

// Whether it went through; all that may be raised is what libxml2 reports.
template <class Work> bool succeeds(Work&& work) {
    try {
        work();
        return true;
    } catch (const WQXMLException& exception) {
        require(exception.name() == u"XML Exception");
        return false;
    }
}

// Every attribute gets its own value again, every text its white space collapsed.
void rewrite(const Ref<WQXMLElement>& top) {
    for (Ref<WQXMLNode> node = top; node; node = node->next()) {
        wq::cast<WQXMLText>(node)->normalizeContent();
        for (auto attribute = wq::cast<WQXMLElement>(node)->firstAttribute(); attribute; attribute = attribute->nextSibling()) {
            const auto named = wq::cast<WQXMLAttr>(attribute);
            const NSString value = named->value();
            named->setValue(value);
            require(named->value() == value || value.view().find_first_of(u"\u0001\u000b") != std::u16string_view::npos);
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const NSString line = wq::fromUTF8(bytes.substr(0, bytes.find('\n'))), markup = wq::fromUTF8(bytes);
    {
        const auto document = WQXMLDocument::newWithData_baseURL_arguments_error(
            NSData::dataWithBytes("<!DOCTYPE a [<!ATTLIST b id ID #IMPLIED><!ENTITY e 'x'>]><a xmlns:p='u:1'><b id='k&e;'>t</b></a>"),
            nullptr, nullptr, nullptr);
        const auto root = document->documentElement();
        const NSString before = root->innerXML();
        if (succeeds([&] { root->setInnerXML(markup); })) {
            require(static_cast<bool>(root->innerXML()));
            require(static_cast<bool>(root->outerXML()));
            rewrite(root);
        } else {
            require(root->innerXML() == before);
        }
        succeeds([&] { (void)document->nodesForXPath_currentNode(line, root); });
        succeeds([&] { (void)document->canonicalRepresentation(); });
        (void)document->getElementById(line)->XPath();
        require(document->XMLData()->length() > 0);
    }
#ifdef WQ_COUNT_OBJECTS
    require(wq::Object::numberOfLivingObjects() == 0);
#endif
    return 0;
}
