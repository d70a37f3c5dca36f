// attributes-and-html: styles become text attributes, those a styled text, and that HTML.
#include <fmt/format.h>

#include <unordered_map>

#include "dom/WQXMLDocument.h"
#include "html/WQHTMLWriter.h"
#include "mac/Frameworks/WQCSS/WQCSSStyleResolver.h"
#include "platform/NSAttributeNames.h"
#include "platform/NSMutableAttributedString.h"
#include "platform/NSParagraphStyle.h"
#include "platform/WQXMLException.h"

namespace {

constexpr const char* kLetter =
    "<letter><p>We meet at <em>noon</em>, by <a href='https://example.org/map#pier'>the pier</a>.</p>"
    "<p class='note'>Do not <a href='tide table'>miss the tide</a>.</p></letter>";
constexpr const char16_t* kSheet =
    u"letter { font-family: TeX Gyre Pagella; font-size: 12pt; line-height: 1.4; color: #222222 }\n"
    u"p { display: block; margin-bottom: 6pt }\n"
    u"p.note { font-size: 10pt; text-align: center }\n"
    u"em { font-style: italic }\n"
    u"a { color: #6b2b1f; text-decoration: underline }\n";

using Styles = std::unordered_map<const WQXMLNode*, Ref<WQCSSStyle>>;

// [attributes]
Ref<NSDictionary> attributesOf(const Ref<WQXMLNode>& words, const Styles& styles) {
    const auto attributes = styles.at(words.get())->attributes()->mutableCopy();
    for (auto element = wq::cast<WQXMLElement>(words->parentNode()); element; element = wq::cast<WQXMLElement>(element->parentNode())) {
        const Ref<WQCSSStyle> style = styles.at(element.get());
        if (style->textDecoration() == WQCSSTextDecorationUnderline) attributes->setObject_forKey(1.0, NSUnderlineStyleAttributeName);
        const auto url = NSURL::URLWithString(element->getAttribute(u"href"));
        if (url) attributes->setObject_forKey(url, NSLinkAttributeName);
        if (style->display() != WQCSSDisplayBlock) continue;
        attributes->setObject_forKey(style->attributes()->objectForKey(NSParagraphStyleAttributeName), NSParagraphStyleAttributeName);
        break;
    }
    return attributes;
}
// [end]

// [text]
Ref<NSMutableAttributedString> textOf(const Ref<WQXMLDocument>& document, const Ref<WQCSSStyleResolver>& resolver) {
    Styles styles;
    const auto text = NSMutableAttributedString::newWithString(u"");
    for (Ref<WQXMLNode> node = document->documentElement(); node; node = node->next()) {
        if (node->nodeType() != 1 && node->nodeType() != 3) continue;  // neither element nor text
        const auto style = resolver->resolveStyle_parentStyle(node, styles[node->parentNode().get()]);
        styles[node.get()] = style;
        if (style->display() == WQCSSDisplayBlock && text->length() > 0)
            text->replaceCharactersInRange_withString({text->length(), 0}, u"\n");
        if (node->nodeType() == 3)
            text->appendAttributedString(NSAttributedString::newWithString_attributes(node->nodeValue(), attributesOf(node, styles)));
    }
    return text;
}
// [end]

// [runs]
void printRuns(const Ref<NSAttributedString>& text) {
    NSRange run;
    for (uint64_t index = 0; index < text->length(); index = run.location + run.length) {
        const auto attributes = text->attributesAtIndex_effectiveRange(index, &run);
        const NSString words = text->string().substringWithRange(run);
        const NSString font = attributes->objectForKey(NSFontAttributeName).object<NSFont>()->description();
        const char* link = attributes->containsKey(NSLinkAttributeName) ? ", a link" : "";
        fmt::print("{:>3} {:?}, {}{}\n", index, wq::toUTF8(words), wq::toUTF8(font), link);
    }
}
// [end]

// [lines]
class LineWriter : public WQHTMLWriter {
    uint64_t encodeParagraphInRange(NSRange range) override {
        my.writer->writeString(u"\n");
        return WQHTMLWriter::encodeParagraphInRange(range);
    }
};
// [end]

// [html]
std::string htmlOf(const Ref<NSAttributedString>& text, const Ref<WQCSSStyle>& around) {
    const auto base = around->attributes()->mutableCopy();
    base->setObject_forKey(NSParagraphStyle::defaultParagraphStyle(), NSParagraphStyleAttributeName);
    const auto declaration = WQCSSMutableStyleDeclaration::styleDeclarationFromAttributes(base);
    declaration->setProperty_value(u"line-height", wq::fromUTF8(fmt::format("{}", around->lineHeight())));

    const auto writer = WQXMLWriter::newToMemory();
    writer->startElement(u"body");
    writer->writeAttribute_content(u"style", declaration->cssText());
    LineWriter::newHTMLWriter<LineWriter>()->encodeAttributedString_withWriter_baseAttributes(text, writer, base);
    writer->endElement();
    writer->flush();
    return std::string(writer->XMLData()->view());
}
// [end]

}  // namespace

int main() try {
    // [main]
    const auto data = NSData::dataWithBytes(kLetter);
    const auto document = WQXMLDocument::newWithData_baseURL_arguments_error(data, nullptr, nullptr, nullptr);
    const auto resolver = WQCSSStyleResolver::newStyleResolver();
    resolver->processRulesFromStyleSheet(WQCSSStyleSheet::styleSheetWithString(kSheet));
    const auto text = textOf(document, resolver);
    text->replaceCharactersInRange_withString({11, 4}, u"one");
    printRuns(text);
    fmt::print("{}\n", htmlOf(text, resolver->resolveStyle_parentStyle(document->documentElement(), nullptr)));
    // [end]
} catch (const WQXMLException& exception) {
    fmt::print(stderr, "{}\n", exception.what());
    return 1;
}
