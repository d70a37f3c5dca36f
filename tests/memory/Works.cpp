#include "tests/memory/Works.h"

#include <fmt/format.h>

#include <unordered_map>

#include "dom/WQXMLRange.h"
#include "dom/WQXMLReader.h"
#include "dom/WQXMLWriter.h"
#include "html/WQHTMLWriter.h"
#include "mac/Frameworks/WQCSS/WQCSSComputedStyleDeclaration.h"
#include "mac/Frameworks/WQCSS/WQCSSMutableStyleDeclaration.h"
#include "mac/Frameworks/WQCSS/WQCSSStyleResolver.h"
#include "platform/NSAttributeNames.h"
#include "platform/NSColor.h"
#include "platform/NSFontManager.h"
#include "platform/NSMutableAttributedString.h"
#include "platform/NSMutableParagraphStyle.h"
#include "platform/NSTextList.h"
#include "platform/WQXMLException.h"
#include "tests/dom/Support.h"

namespace test {

namespace {

constexpr const char* kNovel =
    "<!DOCTYPE n:novel [<!ENTITY city 'Lima'><!ATTLIST p no ID #IMPLIED>]>"
    "<n:novel xmlns:n='u:n' xml:lang='en'><!-- draft --><?pen blue?><p no='p1' n:by='A&amp;B'>To &city;, by <em>boat</em>.</p>"
    "<p no='p2' class='last' style='color: red'><![CDATA[1 < 2]]> caf\xC3\xA9</p></n:novel>";

template <class T> T need(T value) {
    if (!value) throw NothingThere();
    return value;
}
bool isRead(const Ref<WQXMLReader>& reader) {
    const int32_t result = reader->read();
    if (result == -1) throw NothingThere();
    return result == 1;
}
void wrote(int32_t result) {
    if (result == -1) throw NothingThere();
}

std::string utf8(const Ref<NSData>& data) { return std::string(data->view()); }
std::string utf8(const NSString& string) { return wq::toUTF8(string); }

std::string load() {
    const auto document = need(parse(kNovel));
    return dump(document) + utf8(need(document->getElementById(u"p2"))->getAttribute(u"class"));
}

std::string loadHTML() {
    const auto document = parseHTML("<title>A</title><p id=x>B<br>C &eacute; <b>D</b></p>");
    return dump(document) + utf8(need(document->getElementById(u"x"))->innerText());
}

std::string loadAFile() {
    static const Folder folder;
    static const auto path = folder.file("novel.xml", kNovel);
    Ref<NSError> error;
    const auto url = NSURL::fileURLWithPath(wq::fromUTF8(path.string()));
    const auto document = WQXMLDocument::newWithContentsOfURL_arguments_error(url, nullptr, &error);
    if (error) return fmt::format("{} {}", utf8(error->domain()), error->code());
    const auto paragraphs = *need(need(document)->nodesForXPath(u"//p"));
    return paragraphs.empty() ? "none" : utf8(paragraphs.back()->XPath());
}

struct Hearing : WQXMLEventListener {
    void handleEvent(const Ref<WQXMLEvent>& event) override {
        heard += fmt::format("{}{} ", event->eventID(), utf8(event->target()->nodeName()));
    }
    std::string heard;
};

std::string edit() {
    const auto document = need(parse("<r xmlns:q='u:q'><a k='1'>one two</a><b/></r>"));
    const auto root = document->documentElement();
    const auto a = wq::cast<WQXMLElement>(root->firstChild());
    const auto text = wq::cast<WQXMLText>(a->firstChild());
    const auto range = WQXMLRange::newWithStartContainer_startOffset_endContainer_endOffset(text, 2, text, 5);
    Hearing hearing;
    root->addListener_forEvent_useCapture(&hearing, kEverything, false);
    a->setAttribute_value(u"k", u"2");
    a->setAttribute_namespaceURI_value(u"q:l", u"u:q", u"3");
    a->setAttribute_namespaceURI_value(u"z:m", u"u:z", u"4");
    a->removeAttribute(u"k");
    text->insertString_atIndex(u"\u20AC", 0);
    const auto tail = text->splitAtIndex(4);
    const std::string offsets = fmt::format("{}-{}", range->startOffset(), range->endOffset());
    a->insertChild_before(document->createElement_namespaceURI(u"z:c", u"u:z"), tail);
    root->appendChild(a);
    root->lastChild()->appendChild(document->createTextNode(u"!"));
    const auto copy = root->firstChild()->copyNode(true);
    wq::cast<WQXMLElement>(copy)->setInnerXML(u"<x/>y");
    root->insertChild_atIndex(copy, 0);
    root->removeChild(root->childAtIndex(1));
    root->removeListener_forEvent_useCapture(&hearing, kEverything, false);
    return fmt::format("{} {} {}", utf8(root->outerXML()), offsets, hearing.heard);
}

std::string useRanges() {
    const auto document = need(parse("<r><a>one</a><b>two<c/>three</b><d>four</d></r>"));
    const auto range = document->createRange();
    range->setStart_offset(find(document, u"a")->firstChild(), 1);
    range->setEnd_offset(find(document, u"d")->firstChild(), 2);
    const NSString selected = range->toString();
    const auto copy = wq::cast<WQXMLRange>(range->copyWithZone());
    copy->setShouldMergeAfterDelete(true);
    copy->deleteContents();
    return fmt::format("{} {} {}", utf8(selected), dump(document), copy->isEqualToRange(range));
}

constexpr const char16_t* kSheet =
    u"@charset \"utf-8\"; /* small */ p { font-family: TeX Gyre Pagella, serif; font-size: 12pt; font-style: italic; margin: 3pt 2pt; "
    u"color: #123 }\n"
    u"p.last > em + em, *[class~=\"last\"] { text-align: center !important; content: counter(n, disc) \"x\" }";

struct Styled {
    explicit Styled(const Ref<WQXMLDocument>& document) {
        const auto resolver = WQCSSStyleResolver::newStyleResolver();
        resolver->processRulesFromStyleSheet(WQCSSStyleSheet::styleSheetWithString(kSheet));
        for (Ref<WQXMLNode> node = document->documentElement(); node; node = node->next())
            if (node->nodeType() == 1 || node->nodeType() == 3)
                styles[node.get()] = resolver->resolveStyle_parentStyle(node, styles[node->parentNode().get()]);
    }
    std::unordered_map<const WQXMLNode*, Ref<WQCSSStyle>> styles;
};

std::string style() {
    const auto document = need(parse(kNovel));
    Styled styled(document);
    std::string result;
    for (const char16_t* name : {u"p", u"em"}) {
        const auto declaration =
            WQCSSComputedStyleDeclaration::computedStyleDeclarationWithStyle(styled.styles.at(find(document, name).get()));
        result += utf8(declaration->propertyValue(u"font-size")) + ' ' + utf8(declaration->propertyValue(u"color")) + ' ';
    }
    return result;
}

std::string declare() {
    const auto declaration = WQCSSMutableStyleDeclaration::newStyleDeclaration();
    declaration->setCssText(u"margin: 1pt 2pt; font-family: \"A b\", serif");
    declaration->setProperty_value(u"color", u"#0af");
    declaration->removeProperty(u"margin-left");
    return utf8(declaration->cssText());
}

std::string writeHTML() {
    const auto document = need(parse(kNovel));
    Styled styled(document);
    const auto text = NSMutableAttributedString::newWithString(u"");
    for (Ref<WQXMLNode> node = document->documentElement(); node; node = node->next())
        if (node->nodeType() == 3)
            text->appendAttributedString(
                NSAttributedString::newWithString_attributes(node->nodeValue(), styled.styles.at(node.get())->attributes()));
    const auto writer = need(WQXMLWriter::newToMemory());
    wrote(writer->startElement(u"body"));
    WQHTMLWriter::newHTMLWriter()->encodeAttributedString_withWriter(text, writer);
    wrote(writer->endElement());
    wrote(writer->flush());
    return utf8(writer->XMLData());
}

void copyNode(const Ref<WQXMLReader>& reader, const Ref<WQXMLWriter>& writer) {
    switch (reader->nodeType()) {
        case 1: {
            const bool isEmpty = reader->isEmptyElement();
            wrote(writer->startElement_prefix_namespace(reader->localName(), reader->prefix(), reader->namespaceURI()));
            for (int32_t moved = reader->moveToFirstAttribute(); moved == 1; moved = reader->moveToNextAttribute())
                if (!reader->isNamespaceDecl()) wrote(writer->writeAttribute_content(reader->localName(), reader->value()));
            reader->moveToElement();
            if (isEmpty) wrote(writer->endElement());
            return;
        }
        case 3: wrote(writer->writeString(reader->value())); return;
        case 8: wrote(writer->writeComment(reader->value())); return;
        case 15: wrote(writer->endElement()); return;
        default: return;
    }
}

void copyTo(const Ref<WQXMLWriter>& writer) {
    const auto bytes = data("<r xmlns='u:r'><a k='1'>one</a><!--c--><q:b xmlns:q='u:q'/>&lt;</r>");
    const auto reader = need(WQXMLReader::newWithData_baseURL_error(bytes, nullptr, nullptr));
    while (isRead(reader)) copyNode(reader, writer);
    wrote(writer->flush());
}

std::string stream() {
    const auto toMemory = need(WQXMLWriter::newToMemory());
    copyTo(toMemory);
    const auto toDocument = need(WQXMLWriter::newToXMLDocument());
    copyTo(toDocument);
    toDocument->endDocument();
    const auto document = need(parse("<d/>"));
    const auto toElement = need(WQXMLWriter::newToElement(document->documentElement()));
    copyTo(toElement);
    return utf8(toMemory->XMLData()) + dump(toDocument->XMLDocument()) + dump(document);
}

std::string save() {
    const auto document = parse("<r xmlns:n='u:n' b='2' a='&lt;'><n:e>caf\xC3\xA9</n:e><!--c--></r>");
    const auto writer = need(WQXMLWriter::newToMemory());
    document->encodeWithWriter(writer);
    return utf8(need(document->XMLData())) + utf8(need(document->formattedXMLData())) + utf8(need(document->canonicalRepresentation())) +
           utf8(document->documentElement()->innerXML()) + utf8(writer->XMLData());
}

std::string useThePlatform() {
    const auto url = NSURL::URLWithString(u"http://[::1]/a%20b?q#f");
    const auto text = NSMutableAttributedString::newWithString(u"one\ntwo");
    text->addAttribute_value_range(NSUnderlineStyleAttributeName, 1.0, {2, 3});
    text->replaceCharactersInRange_withString({0, 1}, u"\U0001D11E");
    const NSString string = text->string().substringWithRange({0, 4});
    return utf8(string) + utf8(url->path()) + utf8(url->host());
}

// Nodes that change their document, and those that outlive one.
std::string move() {
    const auto from =
        need(parse("<!DOCTYPE r [<!ATTLIST e i ID #IMPLIED>]><p:r xmlns:p='u:p'><p:e i='x' xml:lang='de' p:k='1'>t</p:e><p:e/></p:r>"));
    const auto to = need(parse("<q/>"));
    Ref<WQXMLNode> first = from->documentElement()->firstChild(), second = from->documentElement()->lastChild();
    to->documentElement()->appendChild(first);
    from->documentElement()->removeChild(second);
    const auto free = from->createElement_namespaceURI(u"z:f", u"u:z");
    wq::cast<WQXMLElement>(free)->setAttribute_namespaceURI_value(u"xml:lang", u"http://www.w3.org/XML/1998/namespace", u"fr");
    second->appendChild(free);
    std::string result = utf8(to->documentElement()->innerXML());
    {
        const Ref<WQXMLDocument> last = need(parse("<d><n:a xmlns:n='u:n'><n:b/></n:a></d>"));
        first = last->documentElement()->firstChild();
        last->documentElement()->removeChild(first);
    }
    auto root = need(parse("<old/>"));
    root->setDocumentElement(wq::cast<WQXMLElement>(first));
    return result + utf8(second->namespaceURI()) + dump(root) + fmt::format("{}", free->depth());
}

struct Word : WQXMLElement {
    bool initWithXMLNode(xmlNodePtr node) override { return WQXMLElement::initWithXMLNode(node) && getAttribute(u"no") != u"refused"; }
};

// Classes of the application's own, and what is refused.
std::string refuse() {
    const auto names = NSDictionary::dictionary({{u"w", &wq::Class::of<Word>()}});
    const auto classes = NSDictionary::dictionary({{DefaultNamespaceKey, names}});
    const auto document =
        need(parse("<r><w no='1'/><w no='refused'/></r>", NSDictionary::dictionary({{DefaultElementClassesKey, classes}})));
    const auto root = document->documentElement();
    root->setInnerXML(u"<w/><n:w xmlns:n='u:n'/>");
    std::string result = wq::cast<Word>(root->firstChild()) ? "Word" : "no Word";
    document->registerXPathPrefix_forNamespace(u"n", u"u:n");
    result += fmt::format(" {}", need(document->nodesForXPath(u"//n:w"))->size());
    try {
        need(document->nodesForXPath(u"//["));
    } catch (const WQXMLException& exception) {
        result += ' ' + utf8(exception.name());
    }
    try {
        root->setInnerXML(u"<a>");
    } catch (const WQXMLException& exception) {
        result += ' ' + utf8(exception.name());
    }
    document->setValue_forUndefinedKey(1.0, u"page");
    root->mergeWithNode(root->firstChild());
    return result + ' ' + dump(document);
}

// A list, a link and some words, as HTML and as CSS.
std::string writeALook() {
    const auto paragraph = NSParagraphStyle::defaultParagraphStyle()->mutableCopy();
    paragraph->setAlignment(NSTextAlignmentCenter);
    paragraph->setTextLists({NSTextList::newWithMarkerFormat(u"{decimal}.")});
    const auto attributes = NSDictionary::dictionary(
        {{NSParagraphStyleAttributeName, paragraph},
         {NSFontAttributeName,
          NSFontManager::sharedFontManager()->fontWithFamily_traits_weight_size(u"TeX Gyre Pagella", NSItalicFontMask, 5, 12)},
         {NSForegroundColorAttributeName, NSColor::colorWithSRGBRed_green_blue_alpha(1, 0, 0, 1)},
         {NSLinkAttributeName, NSURL::URLWithString(u"http://example.org/")}});
    const auto text = NSMutableAttributedString::newWithString(u"");
    text->appendAttributedString(NSAttributedString::newWithString_attributes(u"\t1.\tone\n\t2.\ttwo", attributes));
    const auto writer = need(WQXMLWriter::newToMemory());
    wrote(writer->startElement(u"body"));
    WQHTMLWriter::newHTMLWriter()->encodeAttributedString_withWriter(text, writer);
    wrote(writer->endElement());
    wrote(writer->flush());
    return utf8(writer->XMLData()) + utf8(WQCSSMutableStyleDeclaration::styleDeclarationFromAttributes(attributes)->cssText());
}

// Files that are written and read again.
std::string useFiles() {
    static const Folder folder;
    const auto path = folder.file("written.xml");
    const auto url = NSURL::fileURLWithPath(wq::fromUTF8(path.string()));
    {
        const auto writer = need(WQXMLWriter::newWithURL(url));
        wrote(writer->startElement(u"r"));
        wrote(writer->writeElement_content(u"e", u"caf\u00E9"));
        wrote(writer->endElement());
        if (writer->flush() == -1) return "not written";
    }
    const auto reader = need(WQXMLReader::newWithURL_options_error(url, 0, nullptr));
    std::string result;
    while (isRead(reader)) result += utf8(reader->name()) + ' ';
    Ref<NSError> error;
    const NSString text = NSString::stringWithContentsOfURL_encoding_error(url, NSUTF8StringEncoding, &error);
    return result + (error ? fmt::format("{} {}", utf8(error->domain()), error->code()) : utf8(text));
}

}  // namespace

const Work kWorks[] = {
    {"Load", load, "n:novel[<!>,<!>,p[\"To \",<!>,\", by \",em[\"boat\"],\".\"],p[<!>,\" caf\xC3\xA9\"]]last"},
    {"LoadHTML", loadHTML, "html[head[title[\"A\"]],body[p[\"B\",br,\"C \xC3\xA9 \",b[\"D\"]]]]BC \xC3\xA9 D"},
    {"LoadAFile", loadAFile, "/n:novel[1]/p[2]", "libcurl 27"},
    {"Edit", edit,
     "<r xmlns:q=\"u:q\">\n  <b><x/>y</b>\n  <a xmlns:z=\"u:z\" q:l=\"3\" z:m=\"4\">\xE2\x82\xACone<z:c xmlns:z=\"u:z\"/> two!</a>\n</r>"
     " 3-2 1a 2#text 2#text 4#text 4z:c 8a 4a 4#text 4b 8b "},
    {"UseRanges", useRanges, "netwothreefo r[a[\"o\",\"ur\"]] true"},
    {"Style", style, "12px #112233 12px #112233 "},
    {"Declare", declare, "margin-top: 1pt; margin-bottom: 1pt; margin-right: 2pt; font-family: \"A b\", serif; color: #00aaff; ", nullptr,
     false},
    {"WriteHTML", writeHTML,
     "<body><p style=\"font-style: italic; color: #112233; \">To , by boat.<span style=\"color: #ff0000; \"> "
     "caf\xC3\xA9</span></p></body>"},
    {"Stream", stream,
     "<r xmlns=\"u:r\"><a k=\"1\" xmlns=\"u:r\">one</a><!--c--><q:b xmlns:q=\"u:q\"/>&lt;</r>"
     "r[a[\"one\"],<!>,q:b,\"<\"]d[r[a[\"one\"],<!>,q:b,\"<\"]]"},
    {"Save", save,
     "<?xml version=\"1.0\"?>\n<r xmlns:n=\"u:n\" b=\"2\" a=\"&lt;\"><n:e>caf&#xE9;</n:e><!--c--></r>\n"
     "<?xml version=\"1.0\"?>\n<r xmlns:n=\"u:n\" b=\"2\" a=\"&lt;\">\n  <n:e>caf&#xE9;</n:e>\n  <!--c-->\n</r>\n"
     "<r xmlns:n=\"u:n\" a=\"&lt;\" b=\"2\"><n:e>caf\xC3\xA9</n:e></r>"
     "<n:e xmlns:n=\"u:n\">caf\xC3\xA9</n:e><!--c-->"
     "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\"?>\n"
     "<r b=\"2\" a=\"&lt;\"><n:e xmlns:n=\"u:n\">caf\xC3\xA9</n:e></r>\n"},
    {"Move", move, "<p:e xmlns:p=\"u:p\" i=\"x\" xml:lang=\"de\" p:k=\"1\">t</p:e>u:pn:a[n:b]2"},
    {"Refuse", refuse, "Word 1 XML Exception XML Exception r[n:w]"},
    {"WriteALook", writeALook,
     "<body><ul style=\"text-align: center; font-style: italic; color: #ff0000; list-style-type: decimal; \">"
     "<li><a href=\"http://example.org/\">one</a></li><li><a href=\"http://example.org/\">two</a></li></ul></body>"
     "margin-left: 0px; margin-top: 0px; margin-bottom: 0px; text-indent: 0px; line-height: 0; text-align: center; "
     "font-family: 'TeX Gyre Pagella'; font-size: 12px; font-weight: normal; font-style: italic; text-decoration: none; color: #ff0000; "},
    {"UseFiles", useFiles, "r e #text e r <r><e>caf\xC3\xA9</e></r>", "r e #text e r libcurl 27"},
    {"UseThePlatform", useThePlatform, "\xF0\x9D\x84\x9Ene/a b::1", nullptr, false},
};

}  // namespace test
