#include "examples/book/HtmlPage.h"

#include <fmt/format.h>

#include "html/WQHTMLWriter.h"
#include "platform/NSAttributeNames.h"
#include "platform/NSParagraphStyle.h"

namespace {

// What the writer counts on: elements bring nothing of their own, and take the rest from the one around.
constexpr const char16_t* kBaseSheet =
    u"\nbody, p, ul, li, a { margin: 0; padding: 0; color: inherit; text-decoration: none }\n"
    u"ul { list-style-position: inside }\n"
    u"html { background: #fdfdfb }\n"
    u"main { display: block; max-width: 34em; margin: 3em auto; padding: 0 1.5em }\n";

// The attributes of the body: font and colour, and a paragraph style that says nothing.
Ref<NSDictionary> baseAttributesOf(const Ref<WQCSSStyle>& style) {
    const auto base = NSDictionary::dictionary({{NSParagraphStyleAttributeName, NSParagraphStyle::defaultParagraphStyle()}});
    for (const char16_t* name : {NSFontAttributeName, NSForegroundColorAttributeName})
        if (const NSValue value = style->attributes()->objectForKey(name)) base->setObject_forKey(value, name);
    return base;
}

// Line heights, which the writer does not write, are those of the style.
NSString bodyStyle(const Ref<NSDictionary>& base, const Ref<WQCSSStyle>& style) {
    const auto declaration = WQCSSMutableStyleDeclaration::styleDeclarationFromAttributes(base);
    if (style->lineHeight() > 0) declaration->setProperty_value(u"line-height", wq::fromUTF8(fmt::format("{}", style->lineHeight())));
    return declaration->cssText();
}

}  // namespace

std::string htmlPage(const Ref<NSAttributedString>& text, const NSString& title, const Ref<WQCSSStyle>& style, const Ref<NSURL>& baseURL) {
    const auto writer = WQXMLWriter::newToMemory();
    const auto base = baseAttributesOf(style);
    writer->writeDTD_pubid_sysid_subset(u"html", nullptr, nullptr, nullptr);
    writer->startElement(u"html");
    writer->startElement(u"head");
    writer->startElement(u"meta");
    writer->writeAttribute_content(u"charset", u"utf-8");
    writer->endElement();
    writer->writeElement_content(u"title", title.length() > 0 ? title : u"Untitled");
    writer->writeElement_content(u"style", kBaseSheet);
    writer->endElement();
    writer->startElement(u"body");
    writer->writeAttribute_content(u"style", bodyStyle(base, style));
    writer->startElement(u"main");

    const auto htmlWriter = WQHTMLWriter::newHTMLWriter();
    htmlWriter->setBaseURL(baseURL);
    htmlWriter->encodeAttributedString_withWriter_baseAttributes(text, writer, base);

    writer->endElement();
    writer->endElement();
    writer->endElement();
    writer->flush();
    return std::string(writer->XMLData()->view());
}
