// A user of the installed library, in one program: exit code 0 if what it needs of it is there.
#include <wq/wq.h>

#include <cstdio>
#include <cstring>

namespace {

class Paragraph : public WQXMLElement {};

int failures = 0;

void expect(bool isTrue, const char* what) {
    if (isTrue) return;
    std::printf("  failed: %s\n", what);
    ++failures;
}

Ref<WQXMLDocument> parse(const char* xml, const Ref<NSDictionary>& arguments = nullptr) {
    return WQXMLDocument::newWithData_baseURL_arguments_error(NSData::dataWithBytes(xml), nullptr, arguments, nullptr);
}

// Classes, and the one null object of each, are the same here and in the library.
void useTheTree() {
    const auto classes = NSDictionary::dictionary({{u"p", &wq::Class::of<Paragraph>()}});
    const auto arguments =
        NSDictionary::dictionary({{DefaultElementClassesKey, NSDictionary::dictionary({{DefaultNamespaceKey, classes}})}});
    const auto document = parse("<a><p/></a>", arguments);
    expect(wq::cast<Paragraph>(document->documentElement()->firstChild()) != nullptr, "a class of the application's");
    const Ref<WQXMLElement> null;
    expect(!null->nodeName() && !document->documentElement()->appendChild(null), "null");
    expect(!Ref<WQXMLElement>(null.operator->()), "the null object");
}

void catchAnException() {
    try {
        parse("<a>");
        expect(false, "an exception");
    } catch (const WQXMLException& exception) {
        expect(exception.name() == u"XML Exception", "its name");
    }
}

// The catalog and the document type that are installed with the library.
void openXHTML() {
    const auto document = parse(
        "<!DOCTYPE html PUBLIC '-//W3C//DTD XHTML 1.0 Strict//EN' 'http://www.w3.org/TR/xhtml1/DTD/xhtml1-strict.dtd'>"
        "<html xmlns='http://www.w3.org/1999/xhtml'><p id='x'>&eacute;</p></html>");
    expect(document->getElementById(u"x")->innerText() == u"é", "an XHTML document without a network");
}

void resolveAStyle() {
    const auto resolver = WQCSSStyleResolver::newStyleResolver();
    resolver->processRulesFromStyleSheet(WQCSSStyleSheet::styleSheetWithString(u"p { font-weight: bold }"));
    const auto style = resolver->resolveStyle_parentStyle(parse("<p/>")->documentElement(), nullptr);
    expect(style->fontWeight() == WQCSSFontWeightBold && style->attributes()->count() == 3, "a style and its attributes");
}

void writeHTML() {
    const auto writer = WQXMLWriter::newToMemory();
    WQHTMLWriter::newHTMLWriter()->encodeAttributedString_withWriter(NSAttributedString::newWithString(u"x"), writer);
    writer->flush();
    expect(writer->XMLData()->view().starts_with("<p"), "HTML");
}

}  // namespace

int main() {
    useTheTree();
    catchAnException();
    openXHTML();
    resolveAStyle();
    writeHTML();
    std::printf("%s\n", failures ? "something is missing" : "everything is there");
    return failures;
}
