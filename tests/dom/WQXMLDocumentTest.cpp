#include "dom/WQXMLDocument.h"

#include <libxml/HTMLparser.h>
#include <libxml/parser.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "dom/WQLibXML.h"
#include "dom/WQXMLAttr.h"
#include "platform/Log.h"
#include "tests/dom/Support.h"

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

struct Paragraph : WQXMLElement {};
struct SpecialParagraph : Paragraph {};
struct Heading : WQXMLElement {};
struct Other : WQXMLElement {};

// Counts the elements that it is asked to wrap.
struct Counting : WQXMLElement {
    bool initWithXMLNode(_xmlNode* node) override {
        ++calls;
        return WQXMLElement::initWithXMLNode(node);
    }
    static inline int calls = 0;
};

struct Refusing : WQXMLElement {
    bool initWithXMLNode(_xmlNode*) override {
        ++calls;
        return false;
    }
    static inline int calls = 0;
};

struct Raising : WQXMLElement {
    bool initWithXMLNode(_xmlNode*) override {
        ++calls;
        throw WQXMLException(u"Refused", u"no such element");
    }
    static inline int calls = 0;
};

// Writes down what it finds in the element that it is to wrap.
struct Observing : WQXMLElement {
    bool initWithXMLNode(_xmlNode* node) override {
        const bool bound = WQXMLElement::initWithXMLNode(node);
        std::string text = wq::toUTF8(wq::printed(nodeName())) + " {" + wq::toUTF8(wq::printed(namespaceURI())) + "}";
        for (auto attribute = firstAttribute(); attribute; attribute = attribute->nextSibling())
            text += " " + wq::toUTF8(attribute->nodeName()) + "=" + wq::toUTF8(wq::cast<WQXMLAttr>(attribute)->value());
        seen.push_back(text + (firstChild() ? ", with children" : ", without children"));
        documents.push_back(ownerDocument()->nodeType());
        return bound;
    }
    static void forget() {
        seen.clear();
        documents.clear();
    }
    static inline std::vector<std::string> seen;
    static inline std::vector<uint16_t> documents;  // the type that its document has then
};

template <class T> const wq::Class* classOf() { return &wq::Class::of<T>(); }
const wq::Class* classOf(const Ref<WQXMLNode>& node) { return node ? wq::Class::of(*node.get()) : nullptr; }

using Names = std::initializer_list<std::pair<const NSString, NSValue>>;

// A class map for elements without namespace.
Ref<NSDictionary> plainClasses(Names names) { return NSDictionary::dictionary({{DefaultNamespaceKey, NSDictionary::dictionary(names)}}); }
Ref<NSDictionary> arguments(const NSValue& classes) { return NSDictionary::dictionary({{DefaultElementClassesKey, classes}}); }
Ref<NSDictionary> plainArguments(Names names) { return arguments(plainClasses(names)); }

Ref<NSURL> url(const char16_t* text) { return NSURL::URLWithString(text); }

// Puts another default class in place for a scope.
struct DefaultClassScope {
    DefaultClassScope(const wq::Class*& variable, const wq::Class* aClass) : place(variable) {
        WQXMLDocument::newDocument();  // the first one sets the classes
        previous = std::exchange(place, aClass);
    }
    ~DefaultClassScope() { place = previous; }
    const wq::Class*& place;
    const wq::Class* previous;
};

// A file with that content, gone with the scope.
struct File {
    explicit File(std::string_view content, std::string_view name = "document.xml")
        : path(std::filesystem::path(testing::TempDir()) / ("wq" + std::to_string(getpid()) + std::string(name))) {
        std::ofstream(path, std::ios::binary) << content;
    }
    ~File() { std::filesystem::remove(path); }
    Ref<NSURL> url() const { return NSURL::fileURLWithPath(wq::fromUTF8(path.string())); }
    std::filesystem::path path;
};

Ref<NSError> someError() { return NSError::errorWithDomain_code_description(u"before", 1, u"set by somebody else"); }

}  // namespace

// ---- Keys

TEST(WQXMLDocumentTest, KeysHaveTheirTexts) {
    EXPECT_EQ(NSString(WQXMLDocumentSkipWhitespaceKey), u"WQXMLDocumentSkipWhitespace");
    EXPECT_EQ(NSString(WQXMLDocumentParseAsHTMLKey), u"WQXMLDocumentParseAsHTML");
    EXPECT_EQ(NSString(WQXMLDocumentBaseURLKey), u"WQXMLDocumentBaseURL");
    EXPECT_EQ(NSString(DefaultElementClassesKey), u"DefaultElementClasses");
    EXPECT_EQ(NSString(DefaultNamespaceKey), u"DefaultNamespace");
    EXPECT_EQ(NSString(DefaultElementKey), u"DefaultElement");
}

// ---- An empty document

TEST(WQXMLDocumentTest, ANewDocumentIsEmpty) {
    auto document = WQXMLDocument::newDocument();
    ASSERT_TRUE(document);
    EXPECT_EQ(document->nodeType(), 9);
    EXPECT_FALSE(document->documentElement());
    EXPECT_FALSE(document->baseURI());
    EXPECT_EQ(document->referenceCount(), 1);
    ASSERT_NE(document->xmlDoc(), nullptr);
    EXPECT_EQ(document->xmlDoc()->_private, document.get());
    EXPECT_STREQ(reinterpret_cast<const char*>(document->xmlDoc()->version), "1.0");
    EXPECT_EQ(document->xmlDoc()->children, nullptr);
}

TEST(WQXMLDocumentTest, ADocumentHasNoLinksOfItsOwn) {
    auto document = parse("<!--c--><a/>");
    EXPECT_EQ(document->xmlNode(), nullptr);
    EXPECT_FALSE(document->firstChild());
    EXPECT_FALSE(document->lastChild());
    EXPECT_FALSE(document->parentNode());
    EXPECT_FALSE(document->previousSibling());
    EXPECT_FALSE(document->nextSibling());
    EXPECT_FALSE(document->ownerDocument());
    EXPECT_FALSE(document->next());
    EXPECT_FALSE(document->previous());
    ASSERT_TRUE(document->childNodes());
    EXPECT_THAT(*document->childNodes(), IsEmpty());
    EXPECT_EQ(document->numberOfChildren(), 0u);
    EXPECT_FALSE(document->hasChildNodes());
    EXPECT_FALSE(document->hasAttributes());
    EXPECT_FALSE(document->nodeName());
    EXPECT_FALSE(document->nodeValue());
    EXPECT_EQ(document->depth(), 0u);
}

TEST(WQXMLDocumentTest, ADocumentIsTheParentAndTheOwnerOfItsRoot) {
    auto document = parse("<a><b/></a>");
    EXPECT_EQ(document->documentElement()->parentNode(), document);
    EXPECT_EQ(document->documentElement()->ownerDocument(), document);
    EXPECT_EQ(find(document, u"b")->ownerDocument(), document);
    EXPECT_TRUE(document->isAncestorOfNode(find(document, u"b")));
}

TEST(WQXMLDocumentTest, TheRangeOfADocumentStartsAtZero) {
    EXPECT_EQ(WQXMLDocument::newDocument()->range(), (NSRange{0, 0}));
    EXPECT_EQ(WQXMLDocument::newWithArguments(nullptr)->range(), (NSRange{0, 0}));
    auto document = parse("<a/>");
    EXPECT_EQ(document->range(), (NSRange{0, 0}));
    EXPECT_EQ(parseHTML("<p>")->range(), (NSRange{0, 0}));
    EXPECT_EQ(document->documentElement()->range(), (NSRange{NSNotFound, 0}));
    document->setRange({3, 4});
    EXPECT_EQ(document->range(), (NSRange{3, 4}));
}

TEST(WQXMLDocumentTest, AnExistingDocumentIsTakenOverWithoutAClassMap) {
    struct Book : WQXMLDocument {
        Ref<NSDictionary> defaultNodeClasses() const override { return plainClasses({{DefaultElementKey, classOf<Other>()}}); }
    };
    auto previous = WQXMLDocument::newDocument();  // the library has started
    xmlDocPtr doc = xmlNewDoc(BAD_CAST "1.0");
    xmlDocSetRootElement(doc, xmlNewNode(nullptr, BAD_CAST "a"));
    auto document = wq::make<Book>(&Book::initWithDocImpl, doc);
    ASSERT_TRUE(document);
    EXPECT_EQ(document->xmlDoc(), doc);
    EXPECT_EQ(doc->_private, document.get());
    EXPECT_EQ(document->nodeType(), 9);
    EXPECT_EQ(document->documentElement()->nodeName(), u"a");
    EXPECT_EQ(document->documentElement()->ownerDocument(), document);
    EXPECT_EQ(classOf(document->createElement(u"b")), classOf<WQXMLElement>());
}

// ---- Base URL

TEST(WQXMLDocumentTest, ADocumentMadeWithArgumentsTakesTheBaseURLFromThem) {
    auto document =
        WQXMLDocument::newWithArguments(NSDictionary::dictionary({{WQXMLDocumentBaseURLKey, url(u"http://example.com/a/b.xml?q#f")}}));
    ASSERT_TRUE(document);
    EXPECT_EQ(document->baseURI(), u"http://example.com/a/b.xml?q#f");
    EXPECT_EQ(document->nodeType(), 9);
    EXPECT_FALSE(document->documentElement());
}

TEST(WQXMLDocumentTest, WithoutABaseURLThereIsNoBaseURI) {
    EXPECT_FALSE(WQXMLDocument::newWithArguments(nullptr)->baseURI());
    EXPECT_FALSE(WQXMLDocument::newWithArguments(NSDictionary::dictionary())->baseURI());
    EXPECT_FALSE(WQXMLDocument::newWithArguments(NSDictionary::dictionary({{WQXMLDocumentBaseURLKey, nullptr}}))->baseURI());
    EXPECT_FALSE(parse("<a/>")->baseURI());
    EXPECT_FALSE(parseHTML("<p>")->baseURI());
}

TEST(WQXMLDocumentTest, AParsedDocumentTakesTheBaseURLFromItsArgumentAlone) {
    const auto inArguments = NSDictionary::dictionary({{WQXMLDocumentBaseURLKey, url(u"http://example.com/no")}});
    const auto inHTMLArguments =
        NSDictionary::dictionary({{WQXMLDocumentBaseURLKey, url(u"http://example.com/no")}, {WQXMLDocumentParseAsHTMLKey, true}});
    for (const auto& [bytes, given] : {std::pair("<a/>", inArguments), std::pair("<p>x", inHTMLArguments)}) {
        SCOPED_TRACE(bytes);
        auto with = WQXMLDocument::newWithData_baseURL_arguments_error(data(bytes), url(u"http://example.com/yes"), given, nullptr);
        EXPECT_EQ(with->baseURI(), u"http://example.com/yes");
        auto without = WQXMLDocument::newWithData_baseURL_arguments_error(data(bytes), nullptr, given, nullptr);
        EXPECT_FALSE(without->baseURI());
    }
}

TEST(WQXMLDocumentTest, ABaseURLOfAnotherTypeIsPassedOver) {
    for (const NSValue& value : {NSValue(u"http://example.com/"), NSValue(true), NSValue(data("http://example.com/"))})
        EXPECT_FALSE(WQXMLDocument::newWithArguments(NSDictionary::dictionary({{WQXMLDocumentBaseURLKey, value}}))->baseURI());
}

TEST(WQXMLDocumentTest, ARelativeBaseURLIsStoredAsItIs) {
    EXPECT_EQ(WQXMLDocument::newWithData_baseURL_arguments_error(data("<a/>"), url(u"../x.xml"), nullptr, nullptr)->baseURI(), u"../x.xml");
}

// ---- Parsing XML

TEST(WQXMLDocumentTest, XMLIsParsed) {
    auto document = parse("<?xml version='1.0' encoding='ISO-8859-1'?>\n<!--c--><a x='\xE9'>\xE9<b/></a>");
    ASSERT_TRUE(document);
    EXPECT_EQ(document->nodeType(), 9);
    EXPECT_EQ(document->xmlDoc()->_private, document.get());
    EXPECT_EQ(dump(document), "a[\"\xC3\xA9\",b]");
    EXPECT_EQ(document->documentElement()->getAttribute(u"x"), u"\u00e9");
    EXPECT_EQ(document->documentElement()->previousSibling()->nodeType(), 8);
}

TEST(WQXMLDocumentTest, BytesMayBeginWithAByteOrderMark) {
    EXPECT_EQ(dump(parse("\xEF\xBB\xBF<a>x</a>")), "a[\"x\"]");
    EXPECT_EQ(dump(parse(std::string_view("\xFF\xFE<\0a\0/\0>\0", 10))), "a");
}

TEST(WQXMLDocumentTest, WrappersOfAParsedDocumentBelongToItsTree) {
    auto document = parse("<a x='1'>t</a>");
    EXPECT_EQ(document->referenceCount(), 1);
    auto root = document->documentElement();
    EXPECT_EQ(root->referenceCount(), 2);
    EXPECT_EQ(root->firstChild()->referenceCount(), 2);
    EXPECT_EQ(root->firstAttribute()->referenceCount(), 2);
    EXPECT_EQ(root->firstChild(), root->firstChild());
}

TEST(WQXMLDocumentTest, NoBytesGiveNoDocument) {
    auto before = someError(), error = before;
    EXPECT_FALSE(WQXMLDocument::newWithData_baseURL_arguments_error(data(""), nullptr, nullptr, &error));
    EXPECT_FALSE(WQXMLDocument::newWithData_baseURL_arguments_error(nullptr, nullptr, nullptr, &error));
    EXPECT_FALSE(parseHTML(""));
    EXPECT_EQ(error, before);
}

TEST(WQXMLDocumentTest, TheErrorIsNeverWrittenByAParse) {
    auto before = someError(), error = before;
    EXPECT_TRUE(WQXMLDocument::newWithData_baseURL_arguments_error(data("<a/>"), nullptr, nullptr, &error));
    EXPECT_EQ(error, before);
    EXPECT_THAT(
        raised([&] { WQXMLDocument::newWithData_baseURL_arguments_error(data("<a"), nullptr, nullptr, &error); }),
        StartsWith("XML Exception: "));
    EXPECT_EQ(error, before);
    error = nullptr;
    EXPECT_THAT(
        raised([&] { WQXMLDocument::newWithData_baseURL_arguments_error(data("<a"), nullptr, nullptr, &error); }),
        StartsWith("XML Exception: "));
    EXPECT_FALSE(error);
}

TEST(WQXMLDocumentTest, EveryParseDetectsIdentifiers) {
    for (const bool html : {false, true}) {
        SCOPED_TRACE(html);
        xmlLoadExtDtdDefaultValue = 0;
        EXPECT_TRUE(html ? parseHTML("<p>") : parse("<a/>"));
        EXPECT_EQ(xmlLoadExtDtdDefaultValue, 2);
    }
}

TEST(WQXMLDocumentTest, IdentifiersOfAnInternalDTDAreKnown) {
    auto document = parse("<!DOCTYPE a [<!ATTLIST b i ID #IMPLIED>]><a><b i='k'/></a>");
    xmlAttrPtr attribute = xmlGetID(document->xmlDoc(), BAD_CAST "k");
    ASSERT_NE(attribute, nullptr);
    EXPECT_EQ(attribute->parent, find(document, u"b")->xmlNode());
}

TEST(WQXMLDocumentTest, IdentifiersOfAnExternalDTDAreKnownAndItsDefaultsAreNoAttributes) {
    File dtd("<!ATTLIST b i ID #IMPLIED x CDATA 'default'>", "external.dtd");
    auto document = parse("<!DOCTYPE a SYSTEM '" + wq::toUTF8(dtd.url()->absoluteString()) + "'><a><b i='k'/></a>");
    auto b = wq::cast<WQXMLElement>(find(document, u"b"));
    xmlAttrPtr attribute = xmlGetID(document->xmlDoc(), BAD_CAST "k");
    ASSERT_NE(attribute, nullptr);
    EXPECT_EQ(attribute->parent, b->xmlNode());
    EXPECT_FALSE(b->firstAttribute()->nextSibling());
}

// ---- White space

TEST(WQXMLDocumentTest, WhiteSpaceBetweenTagsIsSkippedOnDemand) {
    struct Row {
        const char* xml;
        const char* kept;
        const char* skipped;
    };
    for (const Row& row :
         {Row{"<a>\n <b/>\t<c/>\n</a>", "a[\"\n \",b,\"\t\",c,\"\n\"]", "a[b,c]"},
          Row{"<a><b> </b> </a>", "a[b[\" \"],\" \"]", "a[b[\" \"]]"},
          Row{"<a>x <b/> <c/></a>", "a[\"x \",b,\" \",c]", "a[\"x \",b,\" \",c]"},
          Row{"<a xml:space='preserve'> <b/> </a>", "a[\" \",b,\" \"]", "a[\" \",b,\" \"]"},
          Row{"<a> <!--c--> </a>", "a[\" \",<!>,\" \"]", "a[<!>]"},
          Row{"<!DOCTYPE a [<!ELEMENT a (b)><!ELEMENT b (#PCDATA|c)*><!ELEMENT c EMPTY>]><a> <b> <c/> </b> </a>",
              "a[\" \",b[\" \",c,\" \"],\" \"]", "a[b[\" \",c,\" \"]]"}}) {
        SCOPED_TRACE(row.xml);
        EXPECT_EQ(dump(parse(row.xml)), row.kept);
        EXPECT_EQ(dump(parse(row.xml, NSDictionary::dictionary())), row.kept);
        EXPECT_EQ(dump(parse(row.xml, NSDictionary::dictionary({{WQXMLDocumentSkipWhitespaceKey, false}}))), row.kept);
        EXPECT_EQ(dump(parse(row.xml, NSDictionary::dictionary({{WQXMLDocumentSkipWhitespaceKey, true}}))), row.skipped);
    }
}

TEST(WQXMLDocumentTest, InHTMLWhiteSpaceIsSkippedAnyway) {
    const char* html = "<html>\n<body>\n<ul> <li>a</li> </ul></body></html>";
    auto skipping = NSDictionary::dictionary({{WQXMLDocumentParseAsHTMLKey, true}, {WQXMLDocumentSkipWhitespaceKey, true}});
    EXPECT_EQ(dump(parse(html, skipping)), dump(parseHTML(html)));
}

// ---- Parsing HTML

TEST(WQXMLDocumentTest, HTMLIsParsed) {
    auto document = parseHTML("<p class=x>a<br>b");
    ASSERT_TRUE(document);
    EXPECT_EQ(document->nodeType(), 13);
    EXPECT_EQ(document->xmlDoc()->_private, document.get());
    EXPECT_EQ(dump(document), "html[body[p[\"a\",br,\"b\"]]]");
    EXPECT_EQ(find(document, u"p")->ownerDocument(), document);
    EXPECT_EQ(wq::cast<WQXMLElement>(find(document, u"p"))->getAttribute(u"class"), u"x");
}

TEST(WQXMLDocumentTest, ThePresenceOfTheHTMLKeyCountsWhateverItsValue) {
    for (const NSValue& value : {NSValue(true), NSValue(false), NSValue(nullptr), NSValue(0.0), NSValue(u"no")}) {
        auto document = parse("<p>a<p>b", NSDictionary::dictionary({{WQXMLDocumentParseAsHTMLKey, value}}));
        ASSERT_TRUE(document);
        EXPECT_EQ(document->nodeType(), 13);
        EXPECT_EQ(dump(document), "html[body[p[\"a\"],p[\"b\"]]]");
    }
}

TEST(WQXMLDocumentTest, TheHTMLKeySaysNothingToADocumentMadeEmpty) {
    EXPECT_EQ(WQXMLDocument::newWithArguments(NSDictionary::dictionary({{WQXMLDocumentParseAsHTMLKey, true}}))->nodeType(), 9);
}

// ---- From a URL

TEST(WQXMLDocumentTest, AResourceIsReadAndBecomesTheBaseURL) {
    File file("<a>\xC3\xA9</a>");
    Ref<NSError> error = someError();
    auto document = WQXMLDocument::newWithContentsOfURL_arguments_error(file.url(), nullptr, &error);
    ASSERT_TRUE(document);
    EXPECT_FALSE(error);
    EXPECT_EQ(dump(document), "a[\"\xC3\xA9\"]");
    EXPECT_EQ(document->baseURI(), file.url()->absoluteString());
    EXPECT_TRUE(WQXMLDocument::newWithContentsOfURL_arguments_error(file.url(), nullptr, nullptr));
}

TEST(WQXMLDocumentTest, ArgumentsReachTheParseOfAResource) {
    File file("<p>a");
    auto document = WQXMLDocument::newWithContentsOfURL_arguments_error(
        file.url(), NSDictionary::dictionary({{WQXMLDocumentParseAsHTMLKey, false}}), nullptr);
    ASSERT_TRUE(document);
    EXPECT_EQ(document->nodeType(), 13);
    EXPECT_EQ(document->baseURI(), file.url()->absoluteString());
}

TEST(WQXMLDocumentTest, AResourceThatCannotBeReadSetsTheErrorAndGivesNull) {
    const auto folder = NSURL::fileURLWithPath(wq::fromUTF8(testing::TempDir()));
    const auto missing = NSURL::fileURLWithPath(wq::fromUTF8(testing::TempDir() + "/no/such/document.xml"));
    for (const Ref<NSURL>& unreadable : {missing, folder, Ref<NSURL>()}) {
        SCOPED_TRACE(wq::toUTF8(wq::printed(unreadable->absoluteString())));
        const auto before = someError();
        Ref<NSError> error = before;
        EXPECT_FALSE(WQXMLDocument::newWithContentsOfURL_arguments_error(unreadable, nullptr, &error));
        EXPECT_TRUE(error);
        EXPECT_NE(error.get(), before.get());
        EXPECT_FALSE(WQXMLDocument::newWithContentsOfURL_arguments_error(unreadable, nullptr, nullptr));
    }
}

TEST(WQXMLDocumentTest, AnEmptyResourceGivesNullWithoutAnError) {
    File file("");
    Ref<NSError> error = someError();
    EXPECT_FALSE(WQXMLDocument::newWithContentsOfURL_arguments_error(file.url(), nullptr, &error));
    EXPECT_FALSE(error);
}

TEST(WQXMLDocumentTest, AMalformedResourceRaisesAndLeavesTheErrorCleared) {
    File file("<a>");
    Ref<NSError> error = someError();
    EXPECT_EQ(
        raised([&] { WQXMLDocument::newWithContentsOfURL_arguments_error(file.url(), nullptr, &error); }),
        "XML Exception: Premature end of data in tag a line 1\n");
    EXPECT_FALSE(error);
}

// ---- Malformed input

TEST(WQXMLDocumentTest, WhatLibxml2ReportsAboutXMLRaises) {
    struct Row {
        const char* xml;
        const char* reason;
    };
    for (const Row& row : {
             Row{"  ", "Start tag expected, '<' not found\n"},
             Row{"text", "Start tag expected, '<' not found\n"},
             Row{"<a", "Couldn't find end of Start Tag a line 1\n"},
             Row{"<a>", "Premature end of data in tag a line 1\n"},
             Row{"<a></a", "expected '>'\n"},
             Row{"<a><b></a>", "Opening and ending tag mismatch: b line 1 and a\n"},
             Row{"</a>", "StartTag: invalid element name\n"},
             Row{"<1/>", "StartTag: invalid element name\n"},
             Row{"<a/><b/>", "Extra content at the end of the document\n"},
             Row{"<a/>x", "Extra content at the end of the document\n"},
             Row{"<a x='1' x='2'/>", "Attribute x redefined\n"},
             Row{"<a x/>", "Specification mandates value for attribute x\n"},
             Row{"<a x=1/>", "AttValue: \" or ' expected\n"},
             Row{"<a x='1'y='2'/>", "attributes construct error\n"},
             Row{"<a x='<'/>", "Unescaped '<' not allowed in attributes values\n"},
             Row{"<a>&nope;</a>", "Entity 'nope' not defined\n"},
             Row{"<a>&amp</a>", "EntityRef: expecting ';'\n"},
             Row{"<a>&#0;</a>", "xmlParseCharRef: invalid xmlChar value 0\n"},
             Row{"<a>\x01</a>", "PCDATA invalid Char value 1\n"},
             Row{"<a>\xff</a>", "Input is not proper UTF-8, indicate encoding !\nBytes: 0xFF 0x3C 0x2F 0x61\n"},
             Row{"<a>]]></a>", "Sequence ']]>' not allowed in content\n"},
             Row{"<a><!-- </a>", "Comment not terminated\n"},
             Row{" <?xml version='1.0'?><a/>", "XML declaration allowed only at the start of the document\n"},
             Row{"<?xml version='1.0' encoding='nonsense'?><a/>", "Unsupported encoding nonsense\n"},
             Row{"<!DOCTYPE a [%pe;]><a/>", "PEReference: %pe; not found\n"},
             // Well-formed, and reported all the same:
             Row{"<p:a/>", "Namespace prefix p on a is not defined\n"},
             Row{"<a p:x='1'/>", "Namespace prefix p for x on a is not defined\n"},
             Row{"<a xmlns:p='' />", "xmlns:p: Empty XML namespace is not allowed\n"},
             Row{"<a xmlns='%zz'/>", "xmlns: '%zz' is not a valid URI\n"},
             Row{"<a:b:c xmlns:a='urn:a'/>", "Failed to parse QName 'a:b:'\n"},
             Row{"<:a/>", "Failed to parse QName ':a'\n"},
             Row{"<?a:b?><a/>", "colons are forbidden from PI names 'a:b'\n"},
             Row{"<a><b xml:id='i'/><c xml:id='i'/></a>", "ID i already defined\n"},
             Row{"<a xml:id='1'/>", "xml:id : attribute value 1 is not an NCName\n"},
             Row{"<!DOCTYPE a [<!ELEMENT a ANY><!ELEMENT a ANY>]><a/>", "Redefinition of element a\n"},
             Row{"<!DOCTYPE a [<!ENTITY lt 'x'>]><a/>", "xmlAddEntity: invalid redeclaration of predefined entity"},
             // Warnings:
             Row{"<a xmlns='foo'/>", "xmlns: URI foo is not absolute\n"},
             Row{"<?xml version='1.1'?><a/>", "Unsupported version '1.1'\n"},
             Row{"<?xml-foo?><a/>", "xmlParsePITarget: invalid name prefix 'xml'\n"},
             Row{"<a xml:space='other'/>", "Invalid value \"other\" for xml:space : \"default\" or \"preserve\" expected\n"},
             Row{"<!DOCTYPE a [<!ATTLIST a x CDATA #IMPLIED><!ATTLIST a x CDATA #IMPLIED>]><a/>",
                 "Attribute x of element a: already defined\n"},
             Row{"<!DOCTYPE a SYSTEM 'file:///no/such.dtd'><a/>", "failed to load external entity \"file:///no/such.dtd\"\n"},
         }) {
        SCOPED_TRACE(row.xml);
        EXPECT_EQ(raised([&] { parse(row.xml); }), std::string("XML Exception: ") + row.reason);
        EXPECT_EQ(gCheckNode, nullptr);
        EXPECT_EQ(dump(parse("<a><b/>t</a>")), "a[b,\"t\"]");
    }
}

TEST(WQXMLDocumentTest, WhatLibxml2PassesOverInXMLDoesNotRaise) {
    struct Row {
        const char* xml;
        const char* after;
    };
    for (const Row& row :
         {Row{"<a xmlns:p='foo/bar'/>", "a"}, Row{"<!DOCTYPE a [<!ATTLIST a r IDREF #IMPLIED>]><a r='nowhere'/>", "a"},
          Row{"<!DOCTYPE a [<!ENTITY e 'v'><!ENTITY e 'w'>]><a/>", "a"}, Row{"<a xml:lang='--'/>", "a"},
          Row{"<!DOCTYPE a [<!ENTITY e SYSTEM 'file:///no/such.xml'>]><a>&e;</a>", "a[<!>]"}}) {
        SCOPED_TRACE(row.xml);
        EXPECT_EQ(dump(parse(row.xml)), row.after);
    }
}

TEST(WQXMLDocumentTest, TooDeepXMLRaises) {
    std::string xml;
    for (int i = 0; i < 300; ++i) xml += "<a>";
    EXPECT_EQ(raised([&] { parse(xml); }), "XML Exception: Excessive depth in document: 256 use XML_PARSE_HUGE option\n");
    EXPECT_EQ(dump(parse("<a/>")), "a");
}

TEST(WQXMLDocumentTest, WhatLibxml2ReportsAboutHTMLRaises) {
    struct Row {
        const char* html;
        const char* reason;
    };
    for (const Row& row : {
             Row{" \n ", "Document is empty\n"},
             Row{"<nope>x</nope>", "Tag nope invalid\n"},
             Row{"<section>x</section>", "Tag section invalid\n"},
             Row{"<o:p>x</o:p>", "Tag o:p invalid\n"},
             Row{"<p>a</p></p>", "Unexpected end tag : p\n"},
             Row{"</br>", "Unexpected end tag : br\n"},
             Row{"<b><i>x</b></i>", "Opening and ending tag mismatch: b and i\n"},
             Row{"<body><body>", "htmlParseStartTag: misplaced <body> tag\n"},
             Row{"<html><html>", "htmlParseStartTag: misplaced <html> tag\n"},
             Row{"<p a='1' a='2'>", "Attribute a redefined\n"},
             Row{"<p id='x'></p><p id='x'></p>", "ID x already defined\n"},
             Row{"<a name='x'></a><a name='x'></a>", "ID x already defined\n"},
             Row{"<p>a & b</p>", "htmlParseEntityRef: no name\n"},
             Row{"<p>&nbsp x</p>", "htmlParseEntityRef: expecting ';'\n"},
             Row{"<a href='?a=1&b=2'>x</a>", "htmlParseEntityRef: expecting ';'\n"},
             Row{"<p>\x01</p>", "Invalid char in CDATA 0x1\n"},
             Row{"<p>&#0;</p>", "htmlParseCharRef: invalid xmlChar value 0\n"},
             Row{"<!DOCTYPE>", "htmlParseDocTypeDecl : no DOCTYPE name !\n"},
             Row{"<p =x>", "error parsing attribute name\n"},
             Row{"<p", "Couldn't find end of Start Tag p\n"},
         }) {
        SCOPED_TRACE(row.html);
        EXPECT_EQ(raised([&] { parseHTML(row.html); }), std::string("XML Exception: ") + row.reason);
        EXPECT_EQ(gCheckNode, nullptr);
        EXPECT_EQ(dump(parseHTML("<p>x")), "html[body[p[\"x\"]]]");
        EXPECT_EQ(dump(parse("<a/>")), "a");
    }
}

TEST(WQXMLDocumentTest, WhatLibxml2PassesOverInHTMLDoesNotRaise) {
    struct Row {
        const char* html;
        const char* after;
    };
    for (const Row& row :
         {Row{"<p>a<p>b", "html[body[p[\"a\"],p[\"b\"]]]"}, Row{"<!DOCTYPE html><p>x", "html[body[p[\"x\"]]]"},
          Row{"<p>\xe9", "html[body[p[\"\xC3\xA9\"]]]"}, Row{"<p>a < b", "html[body[p[\"a < b\"]]]"}, Row{"<p/>", "html[body[p]]"},
          Row{"x", "html[body[p[\"x\"]]]"}}) {
        SCOPED_TRACE(row.html);
        EXPECT_EQ(dump(parseHTML(row.html)), row.after);
    }
}

TEST(WQXMLDocumentTest, TheFirstReportIsTheOneThatRaises) {
    EXPECT_EQ(
        raised([] { parse("<a xml:space='other'><b></a>"); }),
        "XML Exception: Invalid value \"other\" for xml:space : \"default\" or \"preserve\" expected\n");
}

TEST(WQXMLDocumentTest, TheLastErrorTellsTheLine) {
    EXPECT_EQ(raised([] { parse("<a>\n<b>\n</a>"); }), "XML Exception: Opening and ending tag mismatch: b line 2 and a\n");
    ASSERT_NE(xmlGetLastError(), nullptr);
    EXPECT_EQ(xmlGetLastError()->line, 3);
}

// libxml2 reads on, and has more to report.
TEST(WQXMLDocumentTest, TheLastErrorIsTheOneThatRaisedWhateverFollowedIt) {
    EXPECT_EQ(
        raised([] { parse("<novel>\n  <chapter>\n</novel>\n\n\n"); }),
        "XML Exception: Opening and ending tag mismatch: chapter line 2 and novel\n");
    ASSERT_NE(xmlGetLastError(), nullptr);
    EXPECT_EQ(xmlGetLastError()->line, 3);
    EXPECT_STREQ(xmlGetLastError()->message, "Opening and ending tag mismatch: chapter line 2 and novel\n");
}

TEST(WQXMLDocumentTest, ManyFailedParsesLeaveNothingBehind) {
    for (int i = 0; i < 200; ++i) {
        EXPECT_NE(raised([] { parse("<a x='1'><b>text</b><c>&nope;</c></a>"); }), "");
        EXPECT_NE(raised([] { parseHTML("<p class=x>text<nope>"); }), "");
    }
    EXPECT_EQ(dump(parse("<a/>")), "a");
}

// ---- The class map

TEST(WQXMLDocumentTest, TheClassMapGoesByNamespaceAndLocalName) {
    auto given = arguments(NSDictionary::dictionary({
        {u"urn:one", NSDictionary::dictionary({{u"p", classOf<Paragraph>()}, {DefaultElementKey, classOf<Other>()}})},
        {u"urn:two", NSDictionary::dictionary({{u"p", classOf<Heading>()}})},
        {u"urn:all", NSDictionary::dictionary({{DefaultElementKey, classOf<SpecialParagraph>()}})},
        {DefaultNamespaceKey, NSDictionary::dictionary({{u"p", classOf<SpecialParagraph>()}, {DefaultElementKey, classOf<Heading>()}})},
    }));
    struct Row {
        const char16_t* uri;
        const char16_t* name;
        const wq::Class* expected;
    };
    for (const Row& row : {
             Row{u"urn:one", u"p", classOf<Paragraph>()},
             Row{u"urn:one", u"x:p", classOf<Paragraph>()},
             Row{u"urn:one", u"q", classOf<Other>()},
             Row{u"urn:one", u"P", classOf<Other>()},
             Row{u"urn:two", u"p", classOf<Heading>()},
             Row{u"urn:two", u"q", classOf<WQXMLElement>()},
             Row{u"urn:two", u"x:q", classOf<WQXMLElement>()},
             Row{u"urn:all", u"p", classOf<SpecialParagraph>()},
             Row{u"urn:all", u"x:anything", classOf<SpecialParagraph>()},
             Row{u"urn:none", u"p", classOf<WQXMLElement>()},
             Row{nullptr, u"p", classOf<SpecialParagraph>()},
             Row{nullptr, u"q", classOf<Heading>()},
         }) {
        const NSString uri = row.uri, name = row.name;
        SCOPED_TRACE(wq::toUTF8(wq::printed(uri)) + " " + wq::toUTF8(name));
        const NSString prefix = WQXMLNode::prefixForQName(name);
        std::string tag = wq::toUTF8(name);
        if (uri) tag += std::string(" xmlns") + (prefix ? ":" + wq::toUTF8(prefix) : "") + "='" + wq::toUTF8(uri) + "'";
        auto parsed = parse("<r xmlns='urn:r'><" + tag + (uri ? "" : " xmlns=''") + " a='1'>t</" + wq::toUTF8(name) + "></r>", given);
        EXPECT_EQ(classOf(parsed->documentElement()->firstChild()), row.expected);
        EXPECT_EQ(parsed->documentElement()->firstChild()->nodeName(), name);
        EXPECT_EQ(classOf(parsed->documentElement()), classOf<WQXMLElement>());

        auto made = WQXMLDocument::newWithArguments(given);
        auto element = uri ? made->createElement_namespaceURI(name, uri) : made->createElement(name);
        EXPECT_EQ(classOf(element), row.expected);
        EXPECT_EQ(element->nodeName(), name);
    }
}

TEST(WQXMLDocumentTest, WithoutAnEntryForElementsWithoutNamespaceTheyStayPlain) {
    auto given = arguments(NSDictionary::dictionary({{u"urn:one", NSDictionary::dictionary({{DefaultElementKey, classOf<Other>()}})}}));
    auto document = parse("<a xmlns:p='urn:one'><b/><p:b/></a>", given);
    EXPECT_EQ(classOf(document->documentElement()), classOf<WQXMLElement>());
    EXPECT_EQ(classOf(find(document, u"b")), classOf<WQXMLElement>());
    EXPECT_EQ(classOf(find(document, u"p:b")), classOf<Other>());
    EXPECT_EQ(classOf(document->createElement(u"b")), classOf<WQXMLElement>());
}

TEST(WQXMLDocumentTest, AnEntryWithADefaultElementOnlyServesEveryNameOfItsNamespace) {
    auto given = arguments(NSDictionary::dictionary({{u"urn:one", NSDictionary::dictionary({{DefaultElementKey, classOf<Other>()}})}}));
    auto document = parse("<a xmlns='urn:one'><b/><c><d/></c></a>", given);
    for (Ref<WQXMLNode> node = document->documentElement(); node; node = node->next()) EXPECT_EQ(classOf(node), classOf<Other>());
}

TEST(WQXMLDocumentTest, WithoutAClassMapEveryElementStaysPlain) {
    for (const Ref<NSDictionary>& given : {Ref<NSDictionary>(), NSDictionary::dictionary(), arguments(nullptr)}) {
        auto document = parse("<a><p/></a>", given);
        EXPECT_EQ(classOf(find(document, u"p")), classOf<WQXMLElement>());
        EXPECT_EQ(classOf(document->createElement(u"p")), classOf<WQXMLElement>());
    }
}

TEST(WQXMLDocumentTest, TheClassMapServesHTMLElementsAsElementsWithoutNamespace) {
    auto given = NSDictionary::dictionary(
        {{WQXMLDocumentParseAsHTMLKey, true}, {DefaultElementClassesKey, plainClasses({{u"p", classOf<Paragraph>()}})}});
    auto document = parse("<p class=x>a<p>b", given);
    EXPECT_EQ(classOf(find(document, u"p")), classOf<Paragraph>());
    EXPECT_EQ(classOf(find(document, u"p")->nextSibling()), classOf<Paragraph>());
    EXPECT_EQ(classOf(find(document, u"body")), classOf<WQXMLElement>());
    EXPECT_EQ(classOf(document->createElement(u"p")), classOf<Paragraph>());
}

TEST(WQXMLDocumentTest, TheLastElementOfADocumentHasItsClassToo) {
    EXPECT_EQ(classOf(parse("<p/>", plainArguments({{u"p", classOf<Paragraph>()}}))->documentElement()), classOf<Paragraph>());
    EXPECT_EQ(gCheckNode, nullptr);
}

TEST(WQXMLDocumentTest, OnlyTheDocumentsOwnMapCounts) {
    auto with = WQXMLDocument::newWithArguments(plainArguments({{u"p", classOf<Paragraph>()}}));
    auto without = WQXMLDocument::newDocument();
    EXPECT_EQ(classOf(without->createElement(u"p")), classOf<WQXMLElement>());
    EXPECT_EQ(classOf(with->createElement(u"p")), classOf<Paragraph>());
    without->setDocumentElement(with->createElement(u"p"));
    EXPECT_EQ(classOf(without->documentElement()), classOf<Paragraph>());
}

TEST(WQXMLDocumentTest, AnElementThatHasExactlyTheClassKeepsItsWrapper) {
    DefaultClassScope scope(DefaultElementClass, classOf<Counting>());
    auto given = plainArguments({{u"p", classOf<Counting>()}});
    auto document = WQXMLDocument::newWithArguments(given);
    Counting::calls = 0;
    EXPECT_EQ(classOf(parse("<p/>", given)->documentElement()), classOf<Counting>());
    EXPECT_EQ(Counting::calls, 1);
    EXPECT_EQ(classOf(document->createElement(u"p")), classOf<Counting>());
    EXPECT_EQ(Counting::calls, 2);
}

TEST(WQXMLDocumentTest, ASubclassDoesNotCountAsTheClass) {
    DefaultClassScope scope(DefaultElementClass, classOf<SpecialParagraph>());
    auto document = parse("<p><q/></p>", plainArguments({{u"p", classOf<Paragraph>()}}));
    EXPECT_EQ(classOf(document->documentElement()), classOf<Paragraph>());
    EXPECT_EQ(classOf(find(document, u"q")), classOf<SpecialParagraph>());
}

TEST(WQXMLDocumentTest, AnOverrideFindsNameNamespaceAndAttributesAndNoChildren) {
    Observing::forget();
    auto given = arguments(NSDictionary::dictionary(
        {{u"urn:x", NSDictionary::dictionary({{DefaultElementKey, classOf<Observing>()}})},
         {DefaultNamespaceKey, NSDictionary::dictionary({{u"o", classOf<Observing>()}})}}));
    auto document = parse("<r><x:o xmlns:x='urn:x' a='1 &amp; &#233;' x:b='' c='3'>text<i/></x:o><o><i/></o><o d='4'/></r>", given);
    EXPECT_THAT(
        Observing::seen,
        ElementsAre(
            "x:o {urn:x} a=1 & \xC3\xA9 x:b= c=3, without children", "o {(null)}, without children", "o {(null)} d=4, without children"));
    EXPECT_EQ(dump(document), "r[x:o[\"text\",i],o[i],o]");
}

TEST(WQXMLDocumentTest, AnOverrideFindsTheSameInHTML) {
    Observing::forget();
    auto given = NSDictionary::dictionary(
        {{WQXMLDocumentParseAsHTMLKey, true}, {DefaultElementClassesKey, plainClasses({{u"p", classOf<Observing>()}})}});
    parse("<p class=x title='a &amp; b'>text<b>y</b></p><p>z", given);
    EXPECT_THAT(Observing::seen, ElementsAre("p {(null)} class=x title=a & b, without children", "p {(null)}, without children"));
}

TEST(WQXMLDocumentTest, AnOverrideOfAFactoryElementFindsNameAndNamespace) {
    Observing::forget();
    auto document = WQXMLDocument::newWithArguments(arguments(NSDictionary::dictionary(
        {{u"urn:x", NSDictionary::dictionary({{u"o", classOf<Observing>()}})},
         {DefaultNamespaceKey, NSDictionary::dictionary({{u"o", classOf<Observing>()}})}})));
    document->createElement_namespaceURI(u"x:o", u"urn:x");
    document->createElement(u"o");
    EXPECT_THAT(Observing::seen, ElementsAre("x:o {urn:x}, without children", "o {(null)}, without children"));
    EXPECT_THAT(Observing::documents, ElementsAre(9, 9));
}

TEST(WQXMLDocumentTest, DuringAParseNodesReachTheDocumentThoughItHasNoTypeYet) {
    for (const bool html : {false, true}) {
        SCOPED_TRACE(html);
        Observing::forget();
        auto classes = plainClasses({{u"p", classOf<Observing>()}});
        auto given = html ? NSDictionary::dictionary({{WQXMLDocumentParseAsHTMLKey, true}, {DefaultElementClassesKey, classes}})
                          : arguments(classes);
        parse("<p>x</p>", given);
        EXPECT_THAT(Observing::documents, ElementsAre(0x7fff));
    }
}

TEST(WQXMLDocumentTest, AnOverrideThatRefusesLeavesTheOldWrapper) {
    Refusing::calls = 0;
    auto given = plainArguments({{u"p", classOf<Refusing>()}});
    auto document = parse("<a><p x='1'>t</p></a>", given);
    EXPECT_EQ(classOf(find(document, u"p")), classOf<WQXMLElement>());
    EXPECT_EQ(dump(document), "a[p[\"t\"]]");
    EXPECT_EQ(Refusing::calls, 1);
    auto element = document->createElement(u"p");
    EXPECT_EQ(classOf(element), classOf<WQXMLElement>());
    EXPECT_EQ(Refusing::calls, 2);
}

TEST(WQXMLDocumentTest, ADefaultClassThatRefusesLeavesElementsWithoutWrapper) {
    DefaultClassScope scope(DefaultElementClass, classOf<Refusing>());
    auto document = parse("<a><p/></a>", plainArguments({{DefaultElementKey, classOf<Paragraph>()}}));
    ASSERT_TRUE(document);
    EXPECT_FALSE(document->documentElement());
    EXPECT_FALSE(document->createElement(u"p"));
    EXPECT_FALSE(document->createElement_namespaceURI(u"x:p", u"urn:x"));
    EXPECT_EQ(gCheckNode, nullptr);
}

TEST(WQXMLDocumentTest, AnOverrideMayMakeNodesAndSetAttributes) {
    struct Busy : WQXMLElement {
        bool initWithXMLNode(_xmlNode* node) override {
            if (!WQXMLElement::initWithXMLNode(node)) return false;
            auto element = WQXMLElement::newWithName(u"helper");
            element->setAttribute_namespaceURI_value(u"p:x", u"urn:p", u"1");
            element->appendChild(WQXMLText::newWithString(u"t"));
            setAttribute_value(u"seen", u"yes");
            setAttribute_value(u"x", u"2");
            removeAttribute(u"y");
            return true;
        }
    };
    for (const bool html : {false, true}) {
        SCOPED_TRACE(html);
        auto classes = plainClasses({{u"p", classOf<Busy>()}});
        auto given = html ? NSDictionary::dictionary({{WQXMLDocumentParseAsHTMLKey, true}, {DefaultElementClassesKey, classes}})
                          : arguments(classes);
        auto document = parse("<div><p x='1' y='1'>a</p><p>b</p></div>", given);
        auto p = wq::cast<WQXMLElement>(find(document, u"p"));
        EXPECT_EQ(classOf(p), classOf<Busy>());
        EXPECT_EQ(p->getAttribute(u"seen"), u"yes");
        EXPECT_EQ(p->getAttribute(u"x"), u"2");
        EXPECT_FALSE(p->hasAttribute(u"y"));
        EXPECT_EQ(dump(p->parentNode()), "div[p[\"a\"],p[\"b\"]]");
        auto made = document->createElement(u"p");
        EXPECT_EQ(made->getAttribute(u"seen"), u"yes");
    }
}

TEST(WQXMLDocumentTest, AnOverrideThatSetAttributesMayRefuseAllTheSame) {
    struct Fickle : WQXMLElement {
        bool initWithXMLNode(_xmlNode* node) override {
            WQXMLElement::initWithXMLNode(node);
            setAttribute_namespaceURI_value(u"p:x", u"urn:p", u"1");
            return false;
        }
    };
    auto document = parse("<a><p/></a>", plainArguments({{u"p", classOf<Fickle>()}}));
    for (const Ref<WQXMLElement>& p : {wq::cast<WQXMLElement>(find(document, u"p")), document->createElement(u"p")}) {
        EXPECT_EQ(classOf(p), classOf<WQXMLElement>());
        EXPECT_EQ(p->firstAttribute()->nodeName(), u"p:x");
        EXPECT_EQ(p->getAttribute_namespaceURI(u"x", u"urn:p"), u"1");
    }
}

TEST(WQXMLDocumentTest, ANewWrapperInheritsNothingFromTheOldOne) {
    auto document = parse("<a><p>t</p></a>", plainArguments({{u"q", classOf<Paragraph>()}}));
    auto old = find(document, u"p");
    Log log;
    old->addListener_forEvent_useCapture(&log, kEverything, false);
    old->setRange({1, 2});
    xmlNodePtr node = old->xmlNode();
    xmlNodeSetName(node, BAD_CAST "q");
    document->fixElementClass(node);
    auto replacement = find(document, u"q");
    EXPECT_EQ(classOf(replacement), classOf<Paragraph>());
    EXPECT_EQ(replacement->xmlNode(), node);
    EXPECT_EQ(replacement->listeners(), nullptr);
    EXPECT_EQ(replacement->range(), (NSRange{NSNotFound, 0}));
    EXPECT_EQ(replacement->referenceCount(), 2);
    EXPECT_EQ(old->nodeType(), 0x7fff);
    EXPECT_EQ(old->referenceCount(), 1);
    EXPECT_FALSE(old->parentNode());
    EXPECT_EQ(dump(document), "a[q[\"t\"]]");
}

TEST(WQXMLDocumentTest, FixingTheClassOfAnythingElseDoesNothing) {
    auto document = parse("<a>t<p/></a>", plainArguments({{DefaultElementKey, classOf<Paragraph>()}}));
    auto text = document->documentElement()->firstChild(), p = find(document, u"p");
    document->fixElementClass(text->xmlNode());
    document->fixElementClass(p->xmlNode());
    EXPECT_EQ(document->documentElement()->firstChild(), text);
    EXPECT_EQ(document->documentElement()->lastChild(), p);
}

TEST(WQXMLDocumentTest, AClassThatIsNoElementRaises) {
    for (const wq::Class* wrong : {classOf<WQXMLNode>(), classOf<WQXMLText>(), classOf<WQXMLDocument>(), classOf<NSData>()})
        for (const char16_t* key : {u"p", DefaultElementKey}) {
            auto given = plainArguments({{key, wrong}});
            EXPECT_THAT(raised([&] { WQXMLDocument::newWithArguments(given); }), StartsWith("NSInvalidArgumentException: "));
            EXPECT_THAT(raised([&] { parse("<a/>", given); }), StartsWith("NSInvalidArgumentException: "));
            EXPECT_THAT(raised([&] { parse("<a", given); }), StartsWith("NSInvalidArgumentException: "));
        }
    EXPECT_EQ(dump(parse("<a/>")), "a");
}

TEST(WQXMLDocumentTest, WrongTypesInTheClassMapArePassedOver) {
    auto mixed = NSDictionary::dictionary({
        {u"urn:text", u"no map"},
        {u"urn:null", nullptr},
        {u"urn:object", data("no map")},
        {u"urn:class", classOf<Paragraph>()},
        {DefaultNamespaceKey,
         NSDictionary::dictionary(
             {{u"s", u"no class"}, {u"t", true}, {u"u", nullptr}, {u"v", NSDictionary::dictionary()}, {u"p", classOf<Paragraph>()}})},
    });
    auto document = parse(
        "<a xmlns:a='urn:text' xmlns:b='urn:null' xmlns:c='urn:object' "
        "xmlns:d='urn:class'><a:p/><b:p/><c:p/><d:p/><s/><t/><u/><v/><p/></a>",
        arguments(mixed));
    for (const char16_t* name : {u"a:p", u"b:p", u"c:p", u"d:p", u"s", u"t", u"u", u"v"}) {
        SCOPED_TRACE(wq::toUTF8(name));
        EXPECT_EQ(classOf(find(document, name)), classOf<WQXMLElement>());
    }
    EXPECT_EQ(classOf(find(document, u"p")), classOf<Paragraph>());
    for (const NSValue& noMap : {NSValue(u"text"), NSValue(true), NSValue(1.0), NSValue(data("x")), NSValue(classOf<Paragraph>())})
        EXPECT_EQ(classOf(find(parse("<p/>", arguments(noMap)), u"p")), classOf<WQXMLElement>());
}

TEST(WQXMLDocumentTest, TheClassMapIsReadWhenTheDocumentIsMade) {
    auto names = NSDictionary::dictionary({{u"p", classOf<Paragraph>()}});
    auto document = WQXMLDocument::newWithArguments(arguments(NSDictionary::dictionary({{DefaultNamespaceKey, names}})));
    names->setObject_forKey(classOf<Heading>(), u"p");
    EXPECT_EQ(classOf(document->createElement(u"p")), classOf<Paragraph>());
}

// ---- A subclass with classes of its own

namespace {
struct Book : WQXMLDocument {
    Ref<NSDictionary> defaultNodeClasses() const override {
        return plainClasses({{u"p", classOf<Paragraph>()}, {u"h", classOf<Heading>()}});
    }
};
}  // namespace

TEST(WQXMLDocumentTest, ADocumentHasNoDefaultNodeClasses) { EXPECT_FALSE(WQXMLDocument::newDocument()->defaultNodeClasses()); }

TEST(WQXMLDocumentTest, ASubclassGivesItsClassesWhereTheArgumentsGiveNone) {
    for (const Ref<NSDictionary>& given :
         {Ref<NSDictionary>(), NSDictionary::dictionary(), NSDictionary::dictionary({{WQXMLDocumentSkipWhitespaceKey, true}}),
          arguments(nullptr), arguments(u"no map")}) {
        auto parsed = WQXMLDocument::newWithData_baseURL_arguments_error<Book>(data("<a><p/><h/></a>"), nullptr, given, nullptr);
        EXPECT_EQ(classOf(find(parsed, u"p")), classOf<Paragraph>());
        EXPECT_EQ(classOf(find(parsed, u"h")), classOf<Heading>());
        EXPECT_EQ(classOf(find(parsed, u"a")), classOf<WQXMLElement>());
        EXPECT_EQ(classOf(WQXMLDocument::newWithArguments<Book>(given)->createElement(u"p")), classOf<Paragraph>());
    }
}

TEST(WQXMLDocumentTest, TheClassMapOfTheArgumentsReplacesTheSubclassesOwn) {
    auto given = plainArguments({{u"p", classOf<Other>()}});
    auto parsed = WQXMLDocument::newWithData_baseURL_arguments_error<Book>(data("<a><p/><h/></a>"), nullptr, given, nullptr);
    EXPECT_EQ(classOf(find(parsed, u"p")), classOf<Other>());
    EXPECT_EQ(classOf(find(parsed, u"h")), classOf<WQXMLElement>());
}

TEST(WQXMLDocumentTest, ADocumentMadeWithoutArgumentsHasNoClassMap) {
    EXPECT_EQ(classOf(WQXMLDocument::newDocument<Book>()->createElement(u"p")), classOf<WQXMLElement>());
}

TEST(WQXMLDocumentTest, ConstructorsMakeObjectsOfTheReceivingClass) {
    File file("<a/>");
    EXPECT_EQ(classOf(WQXMLDocument::newDocument<Book>()), classOf<Book>());
    EXPECT_EQ(classOf(WQXMLDocument::newWithArguments<Book>(nullptr)), classOf<Book>());
    EXPECT_EQ(classOf(WQXMLDocument::newWithContentsOfURL_arguments_error<Book>(file.url(), nullptr, nullptr)), classOf<Book>());
    auto parsed = WQXMLDocument::newWithData_baseURL_arguments_error<Book>(data("<a/>"), nullptr, nullptr, nullptr);
    EXPECT_EQ(classOf(parsed), classOf<Book>());
    EXPECT_EQ(classOf(parsed->documentElement()->ownerDocument()), classOf<Book>());
}

TEST(WQXMLDocumentTest, AResourceIsParsedByTheOverrideOfASubclass) {
    struct Shouting : WQXMLDocument {
        bool initWithData_baseURL_arguments_error(
            const Ref<NSData>&,
            const Ref<NSURL>& base,
            const Ref<NSDictionary>& given,
            Ref<NSError>* error) override {
            return WQXMLDocument::initWithData_baseURL_arguments_error(data("<A/>"), base, given, error);
        }
    };
    File file("<a/>");
    EXPECT_EQ(dump(Ref<WQXMLDocument>(WQXMLDocument::newWithContentsOfURL_arguments_error<Shouting>(file.url(), nullptr, nullptr))), "A");
}

// ---- Overrides that raise

TEST(WQXMLDocumentTest, AnOverrideThatRaisesLeavesTheParse) {
    for (const bool html : {false, true}) {
        SCOPED_TRACE(html);
        auto classes = plainClasses({{u"p", classOf<Raising>()}, {u"i", classOf<Counting>()}});
        auto given = html ? NSDictionary::dictionary({{WQXMLDocumentParseAsHTMLKey, true}, {DefaultElementClassesKey, classes}})
                          : arguments(classes);
        Raising::calls = Counting::calls = 0;
        EXPECT_EQ(raised([&] { parse("<div><i>a</i><p x='1'>b<i>c</i></p><p>d</p><i>e</i></div>", given); }), "Refused: no such element");
        EXPECT_EQ(Raising::calls, 1);
        EXPECT_EQ(Counting::calls, 1);  // the one ahead
        EXPECT_EQ(gCheckNode, nullptr);
        EXPECT_EQ(dump(parse("<a><i/></a>", arguments(plainClasses({{u"i", classOf<Counting>()}})))), "a[i]");
        EXPECT_EQ(Counting::calls, 2);
    }
}

TEST(WQXMLDocumentTest, AnOverrideOfTheDefaultClassThatRaisesLeavesTheParseToo) {
    {
        DefaultClassScope scope(DefaultElementClass, classOf<Raising>());
        for (const bool html : {false, true}) {
            SCOPED_TRACE(html);
            Raising::calls = 0;
            EXPECT_EQ(raised([&] { html ? parseHTML("<p>a<p>b") : parse("<a><b/><c/></a>"); }), "Refused: no such element");
            EXPECT_EQ(Raising::calls, 1);
        }
    }
    EXPECT_EQ(dump(parse("<a><b/></a>")), "a[b]");
}

TEST(WQXMLDocumentTest, AnOverrideThatRaisesInsideAnEntityLeavesTheParse) {
    auto classes = plainClasses({{u"p", classOf<Raising>()}, {u"i", classOf<Counting>()}});
    Raising::calls = Counting::calls = 0;
    EXPECT_EQ(
        raised([&] { parse("<!DOCTYPE a [<!ENTITY e '<p>x</p><i/><p/>'>]><a>&e;<i/><p/></a>", arguments(classes)); }),
        "Refused: no such element");
    EXPECT_EQ(Raising::calls, 1);
    EXPECT_EQ(Counting::calls, 0);
    EXPECT_EQ(gCheckNode, nullptr);
    EXPECT_EQ(dump(parse("<a/>")), "a");
}

TEST(WQXMLDocumentTest, AReportFromInsideAnEntityRaises) {
    auto classes = plainClasses({{u"i", classOf<Counting>()}});
    Counting::calls = 0;
    for (const char* xml :
         {"<!DOCTYPE a [<!ENTITY e '<p>'>]><a>&e;<i/></a>", "<!DOCTYPE a [<!ENTITY e '<b x=\"1\" x=\"2\"/>'>]><a>&e;<i/></a>",
          "<!DOCTYPE a [<!ENTITY e '&f;'><!ENTITY f '&e;'>]><a>&e;<i/></a>"}) {
        SCOPED_TRACE(xml);
        EXPECT_THAT(raised([&] { parse(xml, arguments(classes)); }), StartsWith("XML Exception: "));
        EXPECT_EQ(Counting::calls, 0);
        EXPECT_EQ(gCheckNode, nullptr);
    }
    EXPECT_EQ(dump(parse("<a/>")), "a");
}

TEST(WQXMLDocumentTest, AMalformedExternalDTDRaises) {
    File dtd("<!ELEMENT a", "malformed.dtd");
    auto classes = plainClasses({{DefaultElementKey, classOf<Counting>()}});
    Counting::calls = 0;
    EXPECT_THAT(
        raised([&] { parse("<!DOCTYPE a SYSTEM '" + wq::toUTF8(dtd.url()->absoluteString()) + "'><a><b/></a>", arguments(classes)); }),
        StartsWith("XML Exception: "));
    EXPECT_EQ(Counting::calls, 0);
    EXPECT_EQ(dump(parse("<a/>")), "a");
}

TEST(WQXMLDocumentTest, ElementsOfAnEntityHaveTheirClassesToo) {
    auto classes = plainClasses({{u"p", classOf<Counting>()}});
    Counting::calls = 0;
    auto document = parse("<!DOCTYPE a [<!ENTITY e '<p>x</p>'>]><a>&e;<p/>&e;</a>", arguments(classes));
    EXPECT_EQ(classOf(document->documentElement()->firstChild()->nextSibling()), classOf<Counting>());
    EXPECT_GE(Counting::calls, 2);
}

TEST(WQXMLDocumentTest, AnOverrideMayRaiseAnything) {
    struct Numbers : WQXMLElement {
        bool initWithXMLNode(_xmlNode*) override { throw 7; }
    };
    EXPECT_THROW(parse("<a><p/></a>", plainArguments({{u"p", classOf<Numbers>()}})), int);
    EXPECT_EQ(dump(parse("<a/>")), "a");
}

TEST(WQXMLDocumentTest, NoOverrideRunsAfterAReport) {
    auto classes = plainClasses({{u"p", classOf<Counting>()}});
    Counting::calls = 0;
    EXPECT_EQ(raised([&] { parse("<?xml version='1.1'?><a><p/></a>", arguments(classes)); }), "XML Exception: Unsupported version '1.1'\n");
    EXPECT_NE(raised([&] { parse("<a><b x='1' x='2'/><p/></a>", arguments(classes)); }), "");
    EXPECT_NE(raised([&] { parse("<a><p:p/><p/></a>", arguments(classes)); }), "");
    EXPECT_NE(
        raised([&] {
            parse("<nope/><p>x", NSDictionary::dictionary({{WQXMLDocumentParseAsHTMLKey, true}, {DefaultElementClassesKey, classes}}));
        }),
        "");
    EXPECT_EQ(Counting::calls, 0);
}

TEST(WQXMLDocumentTest, NodesTakenOutByAnOverrideOutliveAParseThatFails) {
    static Ref<WQXMLNode> kept;
    struct Taking : WQXMLElement {
        bool initWithXMLNode(_xmlNode* node) override {
            WQXMLElement::initWithXMLNode(node);
            kept = removeChild(firstAttribute());
            return true;
        }
    };
    for (const char* xml : {"<a xmlns:q='urn:q'><p q:x='1'/><b></a>", "<a xmlns:q='urn:q'><p q:x='1'/><b xml:space='other'/></a>"}) {
        SCOPED_TRACE(xml);
        EXPECT_THAT(raised([&] { parse(xml, plainArguments({{u"p", classOf<Taking>()}})); }), StartsWith("XML Exception: "));
        ASSERT_TRUE(kept);
        EXPECT_FALSE(kept->ownerDocument());
        EXPECT_EQ(kept->nodeName(), u"q:x");
        kept = nullptr;
    }
}

TEST(WQXMLDocumentTest, AConstructorThatRefusesAfterwardsFreesTheDocument) {
    struct Fickle : WQXMLDocument {
        bool init() override { return WQXMLDocument::init() && false; }
        bool initWithData_baseURL_arguments_error(
            const Ref<NSData>& bytes,
            const Ref<NSURL>& base,
            const Ref<NSDictionary>& given,
            Ref<NSError>* error) override {
            WQXMLDocument::initWithData_baseURL_arguments_error(bytes, base, given, error);
            return false;
        }
    };
    EXPECT_FALSE(WQXMLDocument::newDocument<Fickle>());
    EXPECT_FALSE(WQXMLDocument::newWithArguments<Fickle>(nullptr));
    EXPECT_FALSE(WQXMLDocument::newWithData_baseURL_arguments_error<Fickle>(data("<a>t</a>"), url(u"x"), nullptr, nullptr));
}

TEST(WQXMLDocumentTest, AnOverrideThatRaisesLeavesTheFactory) {
    auto document = WQXMLDocument::newWithArguments(arguments(NSDictionary::dictionary(
        {{DefaultNamespaceKey, NSDictionary::dictionary({{u"p", classOf<Raising>()}})},
         {u"urn:x", NSDictionary::dictionary({{u"p", classOf<Raising>()}})}})));
    EXPECT_EQ(raised([&] { document->createElement(u"p"); }), "Refused: no such element");
    EXPECT_EQ(raised([&] { document->createElement_namespaceURI(u"x:p", u"urn:x"); }), "Refused: no such element");
    EXPECT_EQ(gCheckNode, nullptr);
    EXPECT_EQ(document->createElement(u"q")->nodeName(), u"q");
}

// ---- The root

TEST(WQXMLDocumentTest, TheDocumentElementIsTheFirstElementOfTheDocument) {
    EXPECT_EQ(parse("<!--c--><?p i?><a/><!--d-->")->documentElement()->nodeName(), u"a");
    EXPECT_EQ(parse("<!DOCTYPE a [<!ELEMENT a ANY>]><a/>")->documentElement()->nodeName(), u"a");
}

TEST(WQXMLDocumentTest, SettingTheRootMovesTheCallersReferenceToTheTree) {
    auto document = WQXMLDocument::newDocument();
    auto element = document->createElement(u"a");
    WQXMLElement* raw = element.get();
    document->setDocumentElement(std::move(element));
    EXPECT_FALSE(element);
    EXPECT_EQ(raw->referenceCount(), 1);
    EXPECT_EQ(document->documentElement().get(), raw);
    EXPECT_EQ(document->documentElement()->parentNode(), document);
    EXPECT_EQ(document->documentElement()->ownerDocument(), document);
}

TEST(WQXMLDocumentTest, SettingTheRootLeavesOtherReferencesToTheirHolders) {
    auto document = WQXMLDocument::newDocument();
    auto element = document->createElement(u"a"), held = element;
    document->setDocumentElement(std::move(element));
    EXPECT_EQ(held->referenceCount(), 2);
    document = nullptr;
    EXPECT_EQ(held->referenceCount(), 1);
    EXPECT_EQ(held->nodeType(), 0x7fff);
}

TEST(WQXMLDocumentTest, SettingTheRootFreesTheOldOneAndItsWrappersDie) {
    auto document = parse("<a x='1'><b>t</b></a>");
    auto a = document->documentElement();
    Ref<WQXMLNode> b = a->firstChild(), t = b->firstChild(), x = a->firstAttribute();
    document->setDocumentElement(document->createElement(u"n"));
    EXPECT_EQ(dump(document), "n");
    for (const Ref<WQXMLNode>& dead : {Ref<WQXMLNode>(a), b, t, x}) {
        EXPECT_EQ(dead->nodeType(), 0x7fff);
        EXPECT_FALSE(dead->parentNode());
        EXPECT_FALSE(dead->ownerDocument());
    }
    EXPECT_EQ(a->referenceCount(), 1);
    EXPECT_EQ(b->referenceCount(), 1);
}

TEST(WQXMLDocumentTest, ANewRootTakesThePlaceOfTheOldOne) {
    auto document = parse("<!--before--><a/><!--after-->");
    document->setDocumentElement(document->createElement(u"n"));
    EXPECT_EQ(document->documentElement()->previousSibling()->nodeType(), 8);
    EXPECT_EQ(document->documentElement()->nextSibling()->nodeType(), 8);
    EXPECT_FALSE(document->documentElement()->nextSibling()->nextSibling());
}

TEST(WQXMLDocumentTest, ARootIsSetBesideACommentThatStandsAlone) {
    auto document = parse("<!--c--><a/>");
    document->removeChild(document->documentElement());
    document->setDocumentElement(document->createElement(u"n"));
    EXPECT_EQ(dump(document), "n");
    EXPECT_EQ(document->documentElement()->previousSibling()->nodeType(), 8);
}

TEST(WQXMLDocumentTest, AnElementWithoutDocumentCanBecomeTheRoot) {
    auto document = WQXMLDocument::newDocument();
    auto element = WQXMLElement::newWithQualifiedName_namespaceURI(u"p:a", u"urn:p");
    element->appendChild(WQXMLText::newWithString(u"t"));
    document->setDocumentElement(std::move(element));
    EXPECT_EQ(dump(document), "p:a[\"t\"]");
    EXPECT_EQ(document->documentElement()->firstChild()->ownerDocument(), document);
}

TEST(WQXMLDocumentTest, SettingTheRootReconcilesNoNamespace) {
    auto document = WQXMLDocument::newDocument();
    document->setDocumentElement(document->createElement_namespaceURI(u"p:a", u"urn:p"));
    EXPECT_NE(document->documentElement()->ownedNs(), nullptr);
    EXPECT_EQ(document->documentElement()->namespaceURI(), u"urn:p");
    EXPECT_EQ(serialised(document->documentElement()), "<p:a/>");
}

TEST(WQXMLDocumentTest, TheRootOfAnotherDocumentCanBecomeTheRoot) {
    auto from = parse("<f xmlns:p='urn:p'><p:a p:x='1'/></f>"), to = parse("<t/>");
    auto root = from->documentElement();
    to->setDocumentElement(Ref<WQXMLElement>(root));
    EXPECT_EQ(root->referenceCount(), 2);
    EXPECT_FALSE(from->documentElement());
    EXPECT_EQ(to->documentElement(), root);
    EXPECT_EQ(root->parentNode(), to);
    EXPECT_EQ(root->firstChild()->ownerDocument(), to);
    from = nullptr;
    EXPECT_EQ(serialised(root), "<f xmlns:p=\"urn:p\"><p:a p:x=\"1\"/></f>");
}

TEST(WQXMLDocumentTest, ADescendantOfAnotherDocumentKeepsItsNamespaceAsTheRoot) {
    auto from = parse("<f xmlns:p='urn:p'><p:a p:x='1'/></f>"), to = parse("<t/>");
    to->setDocumentElement(wq::cast<WQXMLElement>(find(from, u"p:a")));
    EXPECT_EQ(dump(from), "f");
    from = nullptr;
    auto root = to->documentElement();
    EXPECT_EQ(root->referenceCount(), 2);
    EXPECT_EQ(root->nodeName(), u"p:a");
    EXPECT_EQ(root->namespaceURI(), u"urn:p");
    EXPECT_EQ(root->getAttribute_namespaceURI(u"x", u"urn:p"), u"1");
}

TEST(WQXMLDocumentTest, ADescendantOfTheOldRootCanBecomeTheRoot) {
    auto document = parse("<a xmlns:p='urn:p'><p:b p:x='1'><c/></p:b><d/></a>");
    auto a = document->documentElement(), b = wq::cast<WQXMLElement>(find(document, u"p:b"));
    document->setDocumentElement(Ref<WQXMLElement>(b));
    EXPECT_EQ(document->documentElement(), b);
    EXPECT_EQ(dump(document), "p:b[c]");
    EXPECT_EQ(b->namespaceURI(), u"urn:p");
    EXPECT_EQ(b->getAttribute_namespaceURI(u"x", u"urn:p"), u"1");
    EXPECT_EQ(b->referenceCount(), 2);
    EXPECT_EQ(b->parentNode(), document);
    EXPECT_EQ(a->nodeType(), 0x7fff);
}

TEST(WQXMLDocumentTest, AnElementOfADetachedTreeCanBecomeTheRoot) {
    auto document = parse("<a/>");
    auto top = document->createElement(u"top");
    top->appendChild(document->createElement(u"b"));
    document->setDocumentElement(wq::cast<WQXMLElement>(top->firstChild()));
    EXPECT_EQ(dump(document), "b");
    EXPECT_EQ(dump(Ref<WQXMLNode>(top)), "top");
}

TEST(WQXMLDocumentTest, NullAndThePresentRootChangeNothing) {
    auto document = parse("<a><b/></a>");
    auto root = document->documentElement();
    document->setDocumentElement(nullptr);
    EXPECT_EQ(document->documentElement(), root);
    document->setDocumentElement(Ref<WQXMLElement>(root));
    EXPECT_EQ(document->documentElement(), root);
    EXPECT_EQ(root->referenceCount(), 2);
    EXPECT_EQ(dump(document), "a[b]");
    auto empty = WQXMLDocument::newDocument();
    empty->setDocumentElement(nullptr);
    EXPECT_FALSE(empty->documentElement());
}

TEST(WQXMLDocumentTest, ADeadElementDoesNotBecomeTheRoot) {
    auto dead = parse("<x/>")->documentElement();
    auto document = parse("<a/>");
    document->setDocumentElement(std::move(dead));
    EXPECT_EQ(dump(document), "a");
}

TEST(WQXMLDocumentTest, SettingTheRootFiresNothing) {
    auto document = parse("<a><b/></a>"), other = parse("<c/>");
    Log log;
    for (const bool capture : {true, false})
        for (const Ref<WQXMLNode>& node :
             {Ref<WQXMLNode>(document), Ref<WQXMLNode>(document->documentElement()), find(document, u"b"), Ref<WQXMLNode>(other),
              Ref<WQXMLNode>(other->documentElement())})
            node->addListener_forEvent_useCapture(&log, kEverything, capture);
    document->setDocumentElement(wq::cast<WQXMLElement>(find(document, u"b")));
    document->setDocumentElement(other->documentElement());
    document->setDocumentElement(nullptr);
    EXPECT_EQ(dump(document), "c");
    EXPECT_THAT(log.heard, IsEmpty());
}

// ---- Factories

TEST(WQXMLDocumentTest, AFactoryElementIsTheCallersAndNamesTheDocument) {
    auto document = parse("<a/>");
    auto element = document->createElement(u"p:b");
    ASSERT_TRUE(element);
    EXPECT_EQ(element->referenceCount(), 1);
    EXPECT_EQ(element->nodeType(), 1);
    EXPECT_EQ(element->localName(), u"p:b");  // taken whole
    EXPECT_FALSE(element->prefix());
    EXPECT_FALSE(element->namespaceURI());
    EXPECT_EQ(element->ownedNs(), nullptr);
    EXPECT_EQ(element->ownerDocument(), document);
    EXPECT_FALSE(element->parentNode());
    EXPECT_EQ(element->range(), (NSRange{NSNotFound, 0}));
    EXPECT_EQ(dump(document), "a");
    EXPECT_FALSE(document->createElement(nullptr));
}

TEST(WQXMLDocumentTest, AFactoryElementOwnsItsNamespaceUntilItIsInserted) {
    auto document = parse("<a/>");
    auto element = document->createElement_namespaceURI(u"p:b", u"urn:p");
    ASSERT_TRUE(element);
    EXPECT_EQ(element->referenceCount(), 1);
    EXPECT_EQ(element->nodeName(), u"p:b");
    EXPECT_EQ(element->localName(), u"b");
    EXPECT_EQ(element->prefix(), u"p");
    EXPECT_EQ(element->namespaceURI(), u"urn:p");
    EXPECT_EQ(element->ownedNs(), element->xmlNode()->ns);
    EXPECT_NE(element->ownedNs(), nullptr);
    EXPECT_EQ(element->ownerDocument(), document);
    EXPECT_FALSE(element->parentNode());
    document->documentElement()->appendChild(element);
    EXPECT_EQ(element->ownedNs(), nullptr);
    EXPECT_EQ(element->referenceCount(), 2);
    EXPECT_EQ(serialised(document->documentElement()), "<a><p:b xmlns:p=\"urn:p\"/></a>");
}

TEST(WQXMLDocumentTest, InAnHTMLDocumentAnElementKeepsItsNamespaceForGood) {
    auto document = parseHTML("<p>x");
    auto element = document->createElement_namespaceURI(u"p:b", u"urn:p");
    find(document, u"p")->appendChild(element);
    EXPECT_NE(element->ownedNs(), nullptr);
    EXPECT_EQ(element->namespaceURI(), u"urn:p");
}

TEST(WQXMLDocumentTest, AFactoryElementOfAConfiguredClassOwnsItsNamespaceToo) {
    auto document = WQXMLDocument::newWithArguments(
        arguments(NSDictionary::dictionary({{u"urn:p", NSDictionary::dictionary({{u"b", classOf<Paragraph>()}})}})));
    auto element = document->createElement_namespaceURI(u"p:b", u"urn:p");
    EXPECT_EQ(classOf(element), classOf<Paragraph>());
    EXPECT_EQ(element->ownedNs(), element->xmlNode()->ns);
    EXPECT_NE(element->ownedNs(), nullptr);
    EXPECT_EQ(element->referenceCount(), 1);
}

TEST(WQXMLDocumentTest, AFactorySplitsAQualifiedNameAtItsFirstColon) {
    struct Row {
        const char16_t* name;
        const char16_t* prefix;
        const char16_t* localName;
    };
    auto document = WQXMLDocument::newDocument();
    for (const Row& row : {Row{u"p:a", u"p", u"a"}, Row{u"a", nullptr, u"a"}, Row{u":x", nullptr, u"x"}, Row{u"a:b:c", u"a", u"b:c"}}) {
        SCOPED_TRACE(wq::toUTF8(row.name));
        auto element = document->createElement_namespaceURI(row.name, u"urn:x");
        ASSERT_TRUE(element);
        EXPECT_EQ(element->prefix(), NSString(row.prefix));
        EXPECT_EQ(element->localName(), row.localName);
        EXPECT_EQ(element->namespaceURI(), u"urn:x");
    }
    Assertions assertions;
    EXPECT_FALSE(document->createElement_namespaceURI(u"p:", u"urn:x"));
    EXPECT_FALSE(document->createElement_namespaceURI(u":", u"urn:x"));
    EXPECT_FALSE(document->createElement_namespaceURI(nullptr, u"urn:x"));
    EXPECT_THAT(assertions.descriptions, IsEmpty());
}

TEST(WQXMLDocumentTest, AFactoryElementWithTheReservedPrefixFailsAnAssertion) {
    constexpr const char16_t* xmlNamespace = u"http://www.w3.org/XML/1998/namespace";
    auto document = WQXMLDocument::newDocument();
    EXPECT_EQ(
        raised([&] { document->createElement_namespaceURI(u"xml:a", xmlNamespace); }),
        "NSInternalInconsistencyException: Could not create new namespace structure");
    Assertions assertions;
    EXPECT_FALSE(document->createElement_namespaceURI(u"xml:a", xmlNamespace));
    EXPECT_THAT(assertions.descriptions, ElementsAre("Could not create new namespace structure"));
    EXPECT_THAT(assertions.files, ElementsAre("WQXMLDocument"));
    EXPECT_EQ(gCheckNode, nullptr);
}

TEST(WQXMLDocumentTest, AFactoryTextNamesNoDocumentUntilItIsInserted) {
    auto document = parse("<a/>");
    auto text = document->createTextNode(u"a & b");
    ASSERT_TRUE(text);
    EXPECT_EQ(text->nodeType(), 3);
    EXPECT_EQ(text->string(), u"a & b");
    EXPECT_EQ(text->referenceCount(), 1);
    EXPECT_FALSE(text->ownerDocument());
    document->documentElement()->appendChild(text);
    EXPECT_EQ(text->ownerDocument(), document);
    EXPECT_EQ(text->referenceCount(), 2);
    EXPECT_EQ(document->createTextNode(u"")->string(), u"");
    EXPECT_FALSE(document->createTextNode(nullptr)->string());
}

TEST(WQXMLDocumentTest, AFactoryTextOfAnotherClassFailsAnAssertion) {
    DefaultClassScope scope(DefaultTextClass, classOf<WQXMLNode>());
    auto document = WQXMLDocument::newDocument();
    EXPECT_EQ(raised([&] { document->createTextNode(u"t"); }), "NSInternalInconsistencyException: Couldn't create text node");
    Assertions assertions;
    EXPECT_FALSE(document->createTextNode(u"t"));
    EXPECT_THAT(assertions.descriptions, ElementsAre("Couldn't create text node"));
    EXPECT_THAT(assertions.files, ElementsAre("WQXMLDocument"));
}

TEST(WQXMLDocumentTest, AFactoryTextMayBeOfASubclass) {
    struct Prose : WQXMLText {};
    DefaultClassScope scope(DefaultTextClass, classOf<Prose>());
    EXPECT_EQ(classOf(WQXMLDocument::newDocument()->createTextNode(u"t")), classOf<Prose>());
    EXPECT_EQ(classOf(parse("<a>t</a>")->documentElement()->firstChild()), classOf<Prose>());
}

TEST(WQXMLDocumentTest, FactoryNodesAreFreedWhenNobodyTakesThem) {
    auto document = WQXMLDocument::newDocument();
    document->createElement(u"a");
    document->createElement_namespaceURI(u"p:a", u"urn:p");
    document->createTextNode(u"t");
    EXPECT_EQ(document->detachedNodes().next, &document->detachedNodes());
}

// ---- Life and death

TEST(WQXMLDocumentTest, WrappersAreDeadAfterTheDeathOfTheirDocument) {
    auto document = parse("<a x='1'>t<!--c--><![CDATA[d]]><b/></a>");
    auto a = document->documentElement();
    std::vector<Ref<WQXMLNode>> held = {a, a->firstAttribute(), a->firstAttribute()->firstChild()};
    for (auto node = a->firstChild(); node; node = node->nextSibling()) held.push_back(node);
    ASSERT_EQ(held.size(), 7u);
    document = nullptr;
    for (const Ref<WQXMLNode>& node : held) {
        EXPECT_EQ(node->nodeType(), 0x7fff);
        EXPECT_EQ(node->xmlNode(), nullptr);
        EXPECT_FALSE(node->nodeValue());
        EXPECT_FALSE(node->localName());
        EXPECT_FALSE(node->prefix());
        EXPECT_FALSE(node->namespaceURI());
        EXPECT_FALSE(node->ownerDocument());
        EXPECT_FALSE(node->parentNode());
        EXPECT_FALSE(node->firstChild());
        EXPECT_FALSE(node->lastChild());
        EXPECT_FALSE(node->previousSibling());
        EXPECT_FALSE(node->nextSibling());
        EXPECT_FALSE(node->next());
        EXPECT_FALSE(node->previous());
    }
    EXPECT_FALSE(wq::cast<WQXMLAttr>(held[1])->value());
    EXPECT_FALSE(wq::cast<WQXMLAttr>(held[1])->ownerElement());
}

TEST(WQXMLDocumentTest, AHeldNodeDoesNotKeepItsDocumentAlive) {
    auto document = parse("<a/>");
    auto root = document->documentElement();
    EXPECT_EQ(document->referenceCount(), 1);
    document.reset();
    EXPECT_EQ(root->nodeType(), 0x7fff);
}

TEST(WQXMLDocumentTest, UnlinkedNodesOutliveTheirDocument) {
    auto document = parse("<a xmlns:p='urn:p' xml:lang='en'><p:b p:x='1' xml:lang='de'>t<p:c/></p:b></a>");
    auto removed = document->documentElement()->removeChild(find(document, u"p:b"));
    auto element = document->createElement_namespaceURI(u"q:e", u"urn:q");
    auto text = document->createTextNode(u"text");
    auto c = removed->lastChild();
    document = nullptr;
    EXPECT_FALSE(removed->ownerDocument());
    EXPECT_FALSE(element->ownerDocument());
    EXPECT_EQ(removed->nodeName(), u"p:b");
    EXPECT_EQ(removed->namespaceURI(), u"urn:p");
    EXPECT_EQ(wq::cast<WQXMLElement>(removed)->getAttribute_namespaceURI(u"x", u"urn:p"), u"1");
    EXPECT_EQ(dump(removed), "p:b[\"t\",p:c]");
    EXPECT_EQ(c->parentNode(), removed);
    EXPECT_EQ(c->namespaceURI(), u"urn:p");
    EXPECT_EQ(element->nodeName(), u"q:e");
    EXPECT_EQ(text->string(), u"text");

    auto other = parse("<r/>");
    for (const Ref<WQXMLNode>& node : {removed, Ref<WQXMLNode>(element), Ref<WQXMLNode>(text)}) other->documentElement()->appendChild(node);
    EXPECT_EQ(removed->ownerDocument(), other);
    EXPECT_EQ(
        serialised(other->documentElement()),
        "<r><p:b xmlns:p=\"urn:p\" p:x=\"1\" xml:lang=\"de\">t<p:c/></p:b><q:e xmlns:q=\"urn:q\"/>text</r>");
}

TEST(WQXMLDocumentTest, ADetachedTreeBuiltFromAFactoryOutlivesItsDocument) {
    auto document = WQXMLDocument::newDocument();
    auto top = document->createElement_namespaceURI(u"p:a", u"urn:p");
    top->appendChild(document->createElement_namespaceURI(u"p:b", u"urn:p"));
    top->firstChild()->appendChild(document->createTextNode(u"t"));
    document = nullptr;
    EXPECT_EQ(dump(Ref<WQXMLNode>(top)), "p:a[p:b[\"t\"]]");
    EXPECT_FALSE(top->firstChild()->firstChild()->ownerDocument());
    EXPECT_EQ(top->firstChild()->namespaceURI(), u"urn:p");
}

TEST(WQXMLDocumentTest, ARemovedNodeOutlivesTheRootThatDeclaredItsNamespace) {
    auto document = parse("<a xmlns:p='urn:p'><p:b p:x='1'/></a>");
    auto removed = document->documentElement()->removeChild(find(document, u"p:b"));
    document->setDocumentElement(document->createElement(u"n"));
    EXPECT_EQ(removed->namespaceURI(), u"urn:p");
    document->documentElement()->appendChild(removed);
    EXPECT_EQ(serialised(document->documentElement()), "<n><p:b xmlns:p=\"urn:p\" p:x=\"1\"/></n>");
}

TEST(WQXMLDocumentTest, ANodeOutlivesTheRootWhoseOwnNamespaceItShares) {
    for (const bool asRoot : {false, true}) {
        SCOPED_TRACE(asRoot);
        auto document = WQXMLDocument::newDocument();
        document->setDocumentElement(document->createElement_namespaceURI(u"p:a", u"urn:p"));
        auto b = document->createElement_namespaceURI(u"p:b", u"urn:p");
        document->documentElement()->appendChild(b);
        if (asRoot) {
            document->setDocumentElement(Ref<WQXMLElement>(b));
        } else {
            document->documentElement()->removeChild(b);
            document->setDocumentElement(document->createElement(u"n"));
        }
        EXPECT_EQ(b->namespaceURI(), u"urn:p");
        EXPECT_EQ(b->prefix(), u"p");
        document = nullptr;
        EXPECT_EQ(b->namespaceURI() == u"urn:p", !asRoot);
    }
}

TEST(WQXMLDocumentTest, AMovedNodeOutlivesTheDocumentThatItCameFrom) {
    auto from = parse("<f xmlns:p='urn:p'><p:a p:x='1'/></f>"), to = parse("<t/>");
    to->documentElement()->appendChild(find(from, u"p:a"));
    from = nullptr;
    EXPECT_EQ(serialised(to->documentElement()), "<t><p:a xmlns:p=\"urn:p\" p:x=\"1\"/></t>");
}

TEST(WQXMLDocumentTest, ADocumentDiesWithListenersOnItAndOnItsNodes) {
    Log log;
    {
        auto document = parse("<a><b/></a>");
        document->addListener_forEvent_useCapture(&log, kEverything, true);
        find(document, u"b")->addListener_forEvent_useCapture(&log, kEverything, false);
    }
    EXPECT_THAT(log.heard, IsEmpty());
}

// ---- Printing

TEST(WQXMLDocumentTest, PrintingADocumentPrintsTheTreeOfItsRoot) {
    std::vector<std::string> lines;
    wq::LogSink previous = wq::setLogSink([&](const NSString& message) { lines.push_back(wq::toUTF8(message)); });
    auto document = parse("<!--c--><a><b>t</b><c/></a>");
    document->printTree();
    const std::vector<std::string> printed = lines;
    lines.clear();
    document->print();
    wq::setLogSink(previous);
    const std::string address = " - \\[0x[0-9a-f]+\\]";
    EXPECT_THAT(
        printed, ElementsAre(
                     testing::MatchesRegex("a" + address), testing::MatchesRegex(" b" + address),
                     testing::MatchesRegex("  #text" + address + " t"), testing::MatchesRegex(" c" + address)));
    EXPECT_EQ(lines, printed);
}

TEST(WQXMLDocumentTest, PrintingAnEmptyDocumentPrintsNothing) {
    std::vector<NSString> lines;
    wq::LogSink previous = wq::setLogSink([&](const NSString& message) { lines.push_back(message); });
    WQXMLDocument::newDocument()->printTree();
    wq::setLogSink(previous);
    EXPECT_THAT(lines, IsEmpty());
}
