// What each class of node writes to a writer.
#include <stdexcept>

#include "dom/WQLibXML.h"
#include "dom/WQXMLAttr.h"
#include "dom/WQXMLWriter.h"
#include "tests/dom/Support.h"

namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

// What arrives in memory.
std::string written(const Ref<WQXMLNode>& node) {
    const auto writer = WQXMLWriter::newToMemory();
    node->encodeWithWriter(writer);
    writer->flush();
    return std::string(writer->XMLData()->view());
}
std::string written(std::string_view xml) {
    const auto document = parse(xml);
    return written(document->documentElement());
}

// Its destination cannot be opened: it answers -1 to everything.
Ref<WQXMLWriter> closed() {
    return WQXMLWriter::newWithURL(NSURL::fileURLWithPath(wq::fromUTF8(testing::TempDir() + "/no/such/document.xml")));
}

template <class T> const wq::Class* classOf() { return &wq::Class::of<T>(); }
const wq::Class* classOf(const Ref<WQXMLNode>& node) { return wq::Class::of(*node.get()); }

Ref<NSDictionary> classesFor(const NSString& name, const wq::Class* aClass) {
    return NSDictionary::dictionary({{DefaultNamespaceKey, NSDictionary::dictionary({{name, aClass}})}});
}
Ref<NSDictionary> argumentsFor(const NSString& name, const wq::Class* aClass) {
    return NSDictionary::dictionary({{DefaultElementClassesKey, classesFor(name, aClass)}});
}

const char* const kHead = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\"?>\n";

// ---- Elements

struct Markup {
    const char *read, *written;
};

TEST(WritingNodesTest, AnElementIsWrittenWithItsAttributesAndChildren) {
    for (const Markup& row : {
             Markup{"<a/>", "<a/>"},
             Markup{"<a></a>", "<a/>"},
             Markup{"<a>text</a>", "<a>text</a>"},
             Markup{"<a k='1' l='2'/>", "<a k=\"1\" l=\"2\"/>"},
             Markup{"<a l='2' k=''/>", "<a l=\"2\" k=\"\"/>"},
             Markup{"<a>1<b k='v'>2<c/></b>3<d/></a>", "<a>1<b k=\"v\">2<c/></b>3<d/></a>"},
             Markup{"<a>&lt;b&gt; &amp; \" '</a>", "<a>&lt;b&gt; &amp; &quot; '</a>"},
             Markup{"<a>]]&gt;</a>", "<a>]]&gt;</a>"},
             Markup{"<a>\t\n&#13;</a>", "<a>\t\n&#13;</a>"},
             Markup{"<a k='&lt;&gt;&amp;&quot;&apos;&#9;&#10;&#13;'/>", "<a k=\"&lt;&gt;&amp;&quot;'&#9;&#10;&#13;\"/>"},
             Markup{"<a k='\xC3\xA9'>\xC3\xA9\xF0\x9F\x98\x80</a>", "<a k=\"&#xE9;\">\xC3\xA9\xF0\x9F\x98\x80</a>"},
         })
        EXPECT_EQ(written(row.read), row.written);
}

TEST(WritingNodesTest, NamespacesAreWrittenWhereNamesNeedThem) {
    for (const Markup& row : {
             Markup{"<p:a xmlns:p='u:1'><p:b/></p:a>", "<p:a xmlns:p=\"u:1\"><p:b/></p:a>"},
             Markup{"<p:a xmlns:p='u:1'><p:b xmlns:p='u:2'/></p:a>", "<p:a xmlns:p=\"u:1\"><p:b xmlns:p=\"u:2\"/></p:a>"},
             Markup{"<p:a xmlns:p='u:1' p:k='v'/>", "<p:a p:k=\"v\" xmlns:p=\"u:1\"/>"},
             // a default namespace is declared again and again
             Markup{"<a xmlns='u:1'><b/></a>", "<a xmlns=\"u:1\"><b xmlns=\"u:1\"/></a>"},
             Markup{"<a xmlns='u:1' k='v'/>", "<a k=\"v\" xmlns=\"u:1\"/>"},
             // a declaration that no name uses is lost, one that is used further in moves there
             Markup{"<a xmlns:p='u:1'/>", "<a/>"},
             Markup{"<a xmlns:p='u:1'><p:b/><p:c/></a>", "<a><p:b xmlns:p=\"u:1\"/><p:c xmlns:p=\"u:1\"/></a>"},
             // what an attribute declares is not known further in
             Markup{"<a xmlns:p='u:1' p:k='v'><p:b/></a>", "<a p:k=\"v\" xmlns:p=\"u:1\"><p:b xmlns:p=\"u:1\"/></a>"},
             Markup{"<a xml:lang='en'/>", "<a xml:lang=\"en\" xmlns:xml=\"http://www.w3.org/XML/1998/namespace\"/>"},
         })
        EXPECT_EQ(written(row.read), row.written);
}

TEST(WritingNodesTest, AnElementDropsSectionsInstructionsAndEntities) {
    EXPECT_EQ(written("<!DOCTYPE a [<!ENTITY e 'x'>]><a>1<![CDATA[2]]>3<?t 4?>5&e;6</a>"), "<a>1356</a>");
}

TEST(WritingNodesTest, DefaultsOfADTDAreNotWritten) { EXPECT_EQ(written("<!DOCTYPE a [<!ATTLIST a k CDATA 'v'>]><a/>"), "<a/>"); }

TEST(WritingNodesTest, AnElementWithinADocumentDeclaresWhatStandsFurtherOut) {
    const auto document = parse("<a xmlns='u:0' xmlns:p='u:1'><p:b><c/></p:b></a>");
    EXPECT_EQ(written(find(document, u"p:b")), "<p:b xmlns:p=\"u:1\"><c xmlns=\"u:0\"/></p:b>");
}

TEST(WritingNodesTest, AnElementWithoutADocumentIsWritten) {
    const auto outer = WQXMLElement::newWithQualifiedName_namespaceURI(u"p:a", u"u:1");
    outer->setAttribute_namespaceURI_value(u"q:k", u"u:2", u"v");
    outer->appendChild(WQXMLElement::elementWithName(u"q:b"));
    outer->appendChild(WQXMLText::textWithString(u"1 < 2"));
    EXPECT_EQ(written(outer), "<p:a q:k=\"v\" xmlns:q=\"u:2\" xmlns:p=\"u:1\"><q:b/>1 &lt; 2</p:a>");
}

TEST(WritingNodesTest, WritingLeavesTheTreeAlone) {
    const auto document = parse("<p:a xmlns:p='u:1'>1<!--c--><b/></p:a>");
    const auto root = document->documentElement();
    Log log;
    root->addListener_forEvent_useCapture(&log, 0x7fffffff, true);
    EXPECT_EQ(written(root), written(root));
    EXPECT_EQ(serialised(root), "<p:a xmlns:p=\"u:1\">1<!--c--><b/></p:a>");
    EXPECT_THAT(log.heard, IsEmpty());
    root->removeListener_forEvent_useCapture(&log, 0x7fffffff, true);
}

TEST(WritingNodesTest, AnElementMayBeDeep) {
    constexpr int depth = 2000;
    Ref<WQXMLElement> top = WQXMLElement::elementWithName(u"a");
    std::string expected = "<a/>";
    for (int level = 1; level < depth; ++level) {
        const auto outer = WQXMLElement::elementWithName(u"a");
        outer->appendChild(top);
        top = outer;
        expected = "<a>" + expected + "</a>";
    }
    EXPECT_TRUE(written(top) == expected);
}

TEST(WritingNodesTest, ElementsOfOneWriterKnowOneAnother) {
    const auto document = parse("<r xmlns:p='u:1'><p:a/><p:b/></r>");
    const auto writer = WQXMLWriter::newToMemory();
    writer->startElement_prefix_namespace(u"outer", u"p", u"u:1");
    for (const char16_t* name : {u"p:b", u"p:a"}) find(document, name)->encodeWithWriter(writer);
    writer->endElement();
    writer->flush();
    EXPECT_EQ(writer->XMLData()->view(), "<p:outer xmlns:p=\"u:1\"><p:b/><p:a/></p:outer>");
}

// ---- Texts

TEST(WritingNodesTest, ATextIsWrittenWithoutWhatXMLCannotHold) {
    const auto element = WQXMLElement::elementWithName(u"a");
    element->appendChild(WQXMLText::textWithString(u"\1\t<\2\x7F\n\x85>"));
    EXPECT_EQ(written(element), "<a>\t&lt;\n&gt;</a>");
}

TEST(WritingNodesTest, ATextOnItsOwnIsNotEscaped) { EXPECT_EQ(written(WQXMLText::textWithString(u"<&")), "<&"); }

TEST(WritingNodesTest, ATextWithoutContentDoesNotReachTheWriter) {
    const Assertions assertions;
    const auto element = WQXMLElement::elementWithName(u"a");
    const auto text = WQXMLText::text();
    element->appendChild(text);
    EXPECT_EQ(written(element), "<a/>");
    text->encodeWithWriter(closed());
    EXPECT_THAT(assertions.descriptions, IsEmpty());
}

TEST(WritingNodesTest, AnEmptyTextReachesTheWriter) {
    const auto element = WQXMLElement::elementWithName(u"a");
    element->appendChild(WQXMLText::textWithString(u""));
    EXPECT_EQ(written(element), "<a></a>");
}

TEST(WritingNodesTest, AdjacentTextsAreWrittenOneAfterTheOther) {
    const auto element = WQXMLElement::elementWithName(u"a");
    for (const char16_t* string : {u"1", u"", u"2"}) element->appendChild(WQXMLText::textWithString(string));
    EXPECT_EQ(written(element), "<a>12</a>");
}

TEST(WritingNodesTest, ATextMayBeLong) {
    const std::u16string text(1 << 20, u'x');
    EXPECT_TRUE(written(WQXMLText::textWithString(text)) == std::string(1 << 20, 'x'));
}

TEST(WritingNodesTest, ADeadTextWritesNothing) {
    const Assertions assertions;
    auto document = parse("<a>text</a>");
    const auto text = document->documentElement()->firstChild();
    document = nullptr;
    EXPECT_EQ(written(text), "");
    EXPECT_THAT(assertions.descriptions, IsEmpty());
}

// ---- Attributes

TEST(WritingNodesTest, AnAttributeIsWrittenIntoTheElementThatIsOpen) {
    const auto document = parse("<a xmlns:p='u:1' p:k='&lt;&amp;' l=''/>");
    const auto first = document->documentElement()->firstAttribute();
    const auto writer = WQXMLWriter::newToMemory();
    writer->startElement(u"e");
    first->nextSibling()->encodeWithWriter(writer);
    first->encodeWithWriter(writer);
    writer->endElement();
    writer->flush();
    EXPECT_EQ(writer->XMLData()->view(), "<e l=\"\" p:k=\"&lt;&amp;\" xmlns:p=\"u:1\"/>");
}

TEST(WritingNodesTest, AnAttributeKeepsItsControlCharacters) {
    const auto element = WQXMLElement::elementWithName(u"a");
    element->setAttribute_value(
        u"k",
        u"1\1"
        u"2");
    EXPECT_EQ(
        written(element),
        "<a k=\"1\1"
        "2\"/>");
}

TEST(WritingNodesTest, AnAttributeThatAnotherNamespaceWithoutPrefixDisturbsIsLost) {
    const Assertions assertions;
    const auto element = WQXMLElement::newWithQualifiedName_namespaceURI(u"a", u"u:1");
    element->setAttribute_namespaceURI_value(u"k", u"u:2", u"v");
    EXPECT_EQ(written(element), "<a xmlns=\"u:1\"/>");
    EXPECT_THAT(assertions.descriptions, ElementsAre("Could not encode text node"));
}

// ---- Documents

TEST(WritingNodesTest, ADocumentIsWrittenWithADeclarationAndALineEnd) {
    EXPECT_EQ(written(parse("<a k='\xC3\xA9'>\xC3\xA9</a>")), kHead + std::string("<a k=\"\xC3\xA9\">\xC3\xA9</a>\n"));
    EXPECT_EQ(
        written(parse("<?xml version='1.0' encoding='iso-8859-1' standalone='yes'?><a>\xE9</a>")),
        kHead + std::string("<a>\xC3\xA9</a>\n"));
}

TEST(WritingNodesTest, ADocumentDropsItsTypeItsCommentsAndItsInstructions) {
    EXPECT_EQ(written(parse("<?s?><!DOCTYPE a [<!ELEMENT a ANY>]><!--c--><a/><!--d--><?t?>")), kHead + std::string("<a/>\n"));
}

TEST(WritingNodesTest, ADocumentWritesAllElementsAtItsTop) {
    const auto document = parse("<a k='v'>1<b/></a>");
    document->documentElement()->splitAtIndex(1);
    EXPECT_EQ(written(document), kHead + std::string("<a k=\"v\">1</a><a k=\"v\"><b/></a>\n"));
}

TEST(WritingNodesTest, AnEmptyDocumentIsWritten) { EXPECT_EQ(written(WQXMLDocument::newDocument()), kHead + std::string("\n")); }

TEST(WritingNodesTest, AnHTMLDocumentIsWrittenAsXML) {
    EXPECT_EQ(
        written(parseHTML("<!DOCTYPE html><title>t</title><p class=c>1<br>2")),
        kHead + std::string("<html><head><title>t</title></head><body><p class=\"c\">1<br/>2</p></body></html>\n"));
}

TEST(WritingNodesTest, ADocumentFlushes) {
    const auto writer = WQXMLWriter::newToMemory();
    parse("<a/>")->encodeWithWriter(writer);
    EXPECT_EQ(writer->XMLData()->view(), kHead + std::string("<a/>\n"));
}

TEST(WritingNodesTest, ADocumentStopsInSilenceWhereItsDeclarationIsRefused) {
    const Assertions assertions;
    const auto document = parse("<a/>");
    document->encodeWithWriter(closed());
    const auto writer = WQXMLWriter::newToMemory();
    writer->startElement(u"r");
    document->encodeWithWriter(writer);
    EXPECT_EQ(writer->XMLData()->view(), "");  // not even a flush
    writer->endElement();
    writer->flush();
    EXPECT_EQ(writer->XMLData()->view(), "<r/>");
    EXPECT_THAT(assertions.descriptions, IsEmpty());
}

TEST(WritingNodesTest, WhatIsWrittenReadsBack) {
    const auto document =
        parse("<p:a xmlns:p='u:1' xmlns='u:2' k='&lt;&#10;&quot;'>1 &amp; 2<b p:l='\xC3\xA9'><p:c xmlns:p='u:3'/></b>&#13;]]&gt;</p:a>");
    const auto again = parse(written(document));
    const auto root = again->documentElement();
    EXPECT_EQ(dump(again), "p:a[\"1 & 2\",b[p:c],\"\r]]>\"]");
    EXPECT_EQ(root->namespaceURI(), u"u:1");
    EXPECT_EQ(root->getAttribute(u"k"), u"<\n\"");
    const auto b = wq::cast<WQXMLElement>(find(again, u"b"));
    EXPECT_EQ(b->namespaceURI(), u"u:2");
    EXPECT_EQ(b->getAttribute_namespaceURI(u"l", u"u:1"), u"\u00E9");
    EXPECT_EQ(b->firstChild()->namespaceURI(), u"u:3");
}

TEST(WritingNodesTest, ADocumentIsWrittenIntoANewDocument) {
    auto document = parse("<p:a xmlns:p='u:1' k='v'>1<p:b>2</p:b><!--c--></p:a>");
    auto writer = WQXMLWriter::newToXMLDocument();
    document->encodeWithWriter(writer);
    const auto copy = writer->XMLDocument();
    document = nullptr;
    writer = nullptr;
    EXPECT_EQ(dump(copy), "p:a[\"1\",p:b[\"2\"]]");
    EXPECT_EQ(find(copy, u"p:b")->namespaceURI(), u"u:1");
}

TEST(WritingNodesTest, AnElementIsWrittenBelowAnElementOfAnotherDocument) {
    auto source = parse("<p:a xmlns:p='u:1' k='v'>1<p:b/></p:a>");
    const auto target = parse("<r><x/></r>");
    auto writer = WQXMLWriter::newToElement(target->documentElement());
    source->documentElement()->encodeWithWriter(writer);
    writer->flush();
    writer = nullptr;
    source = nullptr;
    EXPECT_EQ(dump(target), "r[x,p:a[\"1\",p:b]]");
    EXPECT_EQ(find(target, u"p:b")->namespaceURI(), u"u:1");
    EXPECT_EQ(find(target, u"p:b")->ownerDocument(), target);
}

// ---- Plain nodes

TEST(WQXMLNodeTest, APlainNodeWritesNothing) {
    const Assertions assertions;
    const auto document = parse("<!DOCTYPE a [<!ENTITY e 'x'>]><a><!--c--><![CDATA[d]]><?t p?>&e;</a>");
    const auto root = document->documentElement();
    EXPECT_EQ(root->numberOfChildren(), 4u);
    for (Ref<WQXMLNode> each = root->firstChild(); each; each = each->nextSibling()) {
        SCOPED_TRACE(each->nodeType());
        EXPECT_EQ(written(each), "");
        each->encodeWithWriter(closed());
    }
    const auto type = root->previousSibling();
    EXPECT_EQ(type->nodeType(), XML_DTD_NODE);
    EXPECT_EQ(written(type), "");
    EXPECT_THAT(assertions.descriptions, IsEmpty());
}

TEST(WQXMLNodeTest, WritingAnElementDropsAComment) { EXPECT_EQ(written("<a>1<!--c-->2<b><!--d--></b></a>"), "<a>12<b/></a>"); }

// ---- Failures

TEST(WritingNodesTest, FailuresAreAssertedOneByOneAndTheRestIsTried) {
    const auto document = parse("<a k='v'>text<b/><!--c--></a>");
    const Assertions assertions;
    document->documentElement()->encodeWithWriter(closed());
    EXPECT_THAT(
        assertions.descriptions, ElementsAre(
                                     "Could not write element start tag",
                                     "Could not encode text node",  // the attribute
                                     "Could not encode text node",
                                     "Could not write element start tag",  // b
                                     "Could not write element end tag", "Could not write element end tag"));
    EXPECT_THAT(assertions.files, ElementsAre("WQXMLElement", "WQXMLAttr", "WQXMLText", "WQXMLElement", "WQXMLElement", "WQXMLElement"));
    EXPECT_THAT(assertions.operations, testing::Each("encodeWithWriter"));
}

TEST(WritingNodesTest, ByDefaultTheFirstFailureRaises) {
    const auto document = parse("<a k='v'>text</a>");
    const auto root = document->documentElement();
    EXPECT_EQ(raised([&] { root->encodeWithWriter(closed()); }), "NSInternalInconsistencyException: Could not write element start tag");
    EXPECT_EQ(
        raised([&] { root->firstChild()->encodeWithWriter(closed()); }), "NSInternalInconsistencyException: Could not encode text node");
    EXPECT_EQ(
        raised([&] { root->firstAttribute()->encodeWithWriter(closed()); }),
        "NSInternalInconsistencyException: Could not encode text node");
}

TEST(WritingNodesTest, AfterAStartTagThatFailsTheRestIsWritten) {
    const Assertions assertions;
    const auto document = parse("<a>1<b/>2</a>");
    const auto writer = WQXMLWriter::newToMemory();
    writer->startPI(u"t");  // no element starts within
    document->documentElement()->encodeWithWriter(writer);
    writer->endPI();
    writer->flush();
    EXPECT_EQ(writer->XMLData()->view(), "<?t 12?>");
    EXPECT_TRUE(writer->elements()->empty());
    EXPECT_THAT(
        assertions.descriptions, ElementsAre(
                                     "Could not write element start tag", "Could not write element start tag",
                                     "Could not write element end tag", "Could not write element end tag"));
}

TEST(WritingNodesTest, AnEndTagThatFailsIsAsserted) {
    struct Closing : WQXMLElement {
        void encodeWithWriter(const Ref<WQXMLWriter>& writer) const override { writer->endElement(); }
    };
    const auto document = parse("<a><b/></a>", argumentsFor(u"b", classOf<Closing>()));
    const auto root = document->documentElement();
    EXPECT_EQ(raised([&] { written(root); }), "NSInternalInconsistencyException: Could not write element end tag");
    const Assertions assertions;
    EXPECT_EQ(written(root), "<a/>");
    EXPECT_THAT(assertions.descriptions, ElementsAre("Could not write element end tag"));
    EXPECT_THAT(assertions.files, ElementsAre("WQXMLElement"));
}

TEST(WritingNodesTest, AnAttributeWithoutAnElementHasNoValueToWrite) {
    const auto document = parse("<a k='v'/>");
    const auto root = document->documentElement();
    const auto attribute = root->removeChild(root->firstAttribute());
    const auto writer = WQXMLWriter::newToMemory();
    writer->startElement(u"e");
    EXPECT_EQ(raised([&] { attribute->encodeWithWriter(writer); }), "NSInternalInconsistencyException: Could not encode text node");
}

TEST(WritingNodesTest, TheEndOfADocumentThatFailsIsAsserted) {
    struct Broken : WQXMLElement {
        void encodeWithWriter(const Ref<WQXMLWriter>& writer) const override { writer->writeRaw(u"<undeclared:a/>"); }
    };
    const auto document = parse("<a/>", argumentsFor(u"a", classOf<Broken>()));
    EXPECT_EQ(
        raised([&] { document->encodeWithWriter(WQXMLWriter::newToXMLDocument()); }),
        "NSInternalInconsistencyException: Could not write document end tag");
    const Assertions assertions;
    document->encodeWithWriter(WQXMLWriter::newToXMLDocument());
    EXPECT_THAT(assertions.descriptions, ElementsAre("Could not write document end tag"));
    EXPECT_THAT(assertions.files, ElementsAre("WQXMLDocument"));
    EXPECT_THAT(assertions.operations, ElementsAre("encodeWithWriter"));
}

TEST(WritingNodesTest, ANullWriterTakesEverythingInSilence) {
    const Assertions assertions;
    const auto document = parse("<a k='v'>text<b/><!--c--></a>");
    const auto root = document->documentElement();
    document->encodeWithWriter(nullptr);
    root->encodeWithWriter(nullptr);
    root->firstAttribute()->encodeWithWriter(nullptr);
    for (Ref<WQXMLNode> each = root->firstChild(); each; each = each->nextSibling()) each->encodeWithWriter(nullptr);
    EXPECT_THAT(assertions.descriptions, IsEmpty());
    EXPECT_EQ(dump(document), "a[\"text\",b,<!>]");
}

TEST(WritingNodesTest, NullWritesNothing) {
    const Assertions assertions;
    EXPECT_EQ(written(Ref<WQXMLNode>()), "");
    EXPECT_EQ(written(Ref<WQXMLElement>()), "");
    EXPECT_EQ(written(Ref<WQXMLText>()), "");
    EXPECT_EQ(written(Ref<WQXMLAttr>()), "");
    EXPECT_EQ(written(Ref<WQXMLDocument>()), "");
    Ref<WQXMLElement>()->encodeWithWriter(closed());
    EXPECT_THAT(assertions.descriptions, IsEmpty());
}

// ---- Classes of the application

TEST(WritingNodesTest, AnApplicationDecidesWhatItsElementsWrite) {
    struct Secret : WQXMLElement {
        void encodeWithWriter(const Ref<WQXMLWriter>& writer) const override { writer->writeElement_content(u"gap", nullptr); }
    };
    const auto classes = argumentsFor(u"s", classOf<Secret>());
    EXPECT_EQ(written(parse("<a>1<s k='v'>2</s>3<b><s/></b></a>", classes)), kHead + std::string("<a>1<gap/>3<b><gap/></b></a>\n"));
    EXPECT_EQ(written(parse("<s>1</s>", classes)), kHead + std::string("<gap/>\n"));
}

TEST(WritingNodesTest, AnApplicationMayAddToWhatIsWritten) {
    struct Framed : WQXMLElement {
        void encodeWithWriter(const Ref<WQXMLWriter>& writer) const override {
            writer->writeComment(u"[");
            WQXMLElement::encodeWithWriter(writer);
            writer->writeComment(u"]");
        }
    };
    const auto document = parse("<a>1<f k='v'>2<f/></f>3</a>", argumentsFor(u"f", classOf<Framed>()));
    EXPECT_EQ(written(document->documentElement()), "<a>1<!--[--><f k=\"v\">2<!--[--><f/><!--]--></f><!--]-->3</a>");
}

TEST(WritingNodesTest, AnApplicationDecidesWhatItsTextsWrite) {
    struct Section : WQXMLText {
        void encodeWithWriter(const Ref<WQXMLWriter>& writer) const override { writer->writeCDATA(string()); }
    };
    const auto element = WQXMLElement::elementWithName(u"a");
    element->appendChild(WQXMLText::textWithString<Section>(u"<&"));
    EXPECT_EQ(written(element), "<a><![CDATA[<&]]></a>");
}

TEST(WritingNodesTest, WhatAnApplicationRaisesLeavesTheWriterUsable) {
    struct Raising : WQXMLElement {
        void encodeWithWriter(const Ref<WQXMLWriter>&) const override { throw std::runtime_error("stop"); }
    };
    const auto document = parse("<a><b/><c/></a>", argumentsFor(u"b", classOf<Raising>()));
    const auto writer = WQXMLWriter::newToMemory();
    EXPECT_THROW(document->documentElement()->encodeWithWriter(writer), std::runtime_error);
    EXPECT_NE(writer->endElement(), -1);
    EXPECT_EQ(writer->flush(), 4);
    EXPECT_EQ(writer->XMLData()->view(), "<a/>");
}

TEST(WQXMLDocumentTest, TheDefaultClassesOfADocumentFromTheWriterAreNotAsked) {
    struct Other : WQXMLElement {};
    struct Book : WQXMLDocument {
        Ref<NSDictionary> defaultNodeClasses() const override { return classesFor(u"a", classOf<Other>()); }
    };
    const auto writer = WQXMLWriter::newToXMLDocument();
    parse("<a><a/></a>", argumentsFor(u"a", classOf<Other>()))->encodeWithWriter(writer);
    const auto document = writer->XMLDocument();
    EXPECT_EQ(classOf(document), classOf<WQXMLDocument>());
    EXPECT_EQ(classOf(document->documentElement()), classOf<WQXMLElement>());
    EXPECT_EQ(classOf(document->documentElement()->firstChild()), classOf<WQXMLElement>());
    EXPECT_EQ(classOf(document->createElement(u"a")), classOf<WQXMLElement>());

    // taken over in the same way by a document that has some
    const auto book = wq::make<Book>(&Book::initWithDocImpl, xmlCopyDoc(document->xmlDoc(), 1));
    EXPECT_EQ(classOf(book->documentElement()), classOf<WQXMLElement>());
    EXPECT_EQ(classOf(book->createElement(u"a")), classOf<WQXMLElement>());
}

TEST(WritingNodesTest, ATopLevelNodeWithoutAWrapperIsPassedOver) {
    parse("<a/>");  // the first use sets the default classes
    const Put<const wq::Class*> none(DefaultNodeClass, nullptr);
    const auto document = parse("<!--c--><a>text</a>");
    const auto writer = WQXMLWriter::newToMemory();
    document->encodeWithWriter(writer);
    EXPECT_EQ(writer->XMLData()->view(), "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\"?>\n<a>text</a>\n");
}

}  // namespace
