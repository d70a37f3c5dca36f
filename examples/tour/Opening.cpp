#include "examples/tour/Opening.h"

#include <fmt/format.h>
#include <libxml/xmlerror.h>

#include <algorithm>
#include <cctype>

#include "examples/tour/Section.h"
#include "examples/tour/Words.h"
#include "platform/WQXMLException.h"

namespace {

Ref<NSDictionary> argumentsFor(bool html) {
    auto sections = NSDictionary::dictionary();
    for (const char16_t* name : {u"part", u"chapter", u"section", u"article", u"div"})
        sections->setObject_forKey(&wq::Class::of<Section>(), name);
    auto classes = NSDictionary::dictionary({
        {u"urn:example:manuscript", sections},
        {u"http://www.w3.org/1999/xhtml", sections},
        {DefaultNamespaceKey, sections},
    });
    auto arguments = NSDictionary::dictionary({{DefaultElementClassesKey, classes}});
    if (html) arguments->setObject_forKey(true, WQXMLDocumentParseAsHTMLKey);
    return arguments;
}

// HTML begins with its DOCTYPE or its root, has no XML declaration, and does not call itself XHTML.
bool looksLikeHTML(std::string_view bytes) {
    std::string head(bytes.substr(0, 1024));
    std::transform(head.begin(), head.end(), head.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    if (head.find("<?xml") != std::string::npos || head.find("xhtml") != std::string::npos) return false;
    return head.find("<!doctype html") != std::string::npos || head.find("<html") != std::string::npos;
}

}  // namespace

Ref<WQXMLDocument> open(const std::string& path) {
    const Ref<NSURL> url = NSURL::fileURLWithPath(wq::fromUTF8(path));
    Ref<NSError> error;
    const Ref<NSData> data = NSData::dataWithContentsOfURL_error(url, &error);
    if (!data) throw CannotOpen{oneLine(error->localizedDescription())};  // which names the file
    try {
        auto document = WQXMLDocument::newWithData_baseURL_arguments_error(data, url, argumentsFor(looksLikeHTML(data->view())), nullptr);
        if (!document) throw CannotOpen{fmt::format("{}: the file is empty", path)};
        return document;
    } catch (const WQXMLException& exception) {
        const xmlError* last = xmlGetLastError();
        throw CannotOpen{fmt::format("{}:{}: {}", path, last ? last->line : 0, oneLine(exception.reason()))};
    }
}
