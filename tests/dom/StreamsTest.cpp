// What is read event by event and written event by event is the same document.
#include <filesystem>

#include "dom/WQXMLReader.h"
#include "dom/WQXMLWriter.h"
#include "tests/dom/Support.h"
#include "tests/tree/Headers.h"

namespace {

using namespace test;

using Reader = Ref<WQXMLReader>;
using Writer = Ref<WQXMLWriter>;
using Step = void (*)(const Reader&, const Writer&);

constexpr const char* kMimeDatabase = "/usr/share/mime/packages/freedesktop.org.xml";  // shared-mime-info

void wrote(int32_t answer) { EXPECT_NE(answer, -1); }

// ---- Two ways to copy an element

// Names as they stand; declarations of namespaces are attributes like others.
void elementByName(const Reader& reader, const Writer& writer) { wrote(writer->startElement(reader->name())); }
void attributeByName(const Reader& reader, const Writer& writer) { wrote(writer->writeAttribute_content(reader->name(), reader->value())); }

// Local names and namespaces; the writer declares what it needs.
void elementByNamespace(const Reader& reader, const Writer& writer) {
    wrote(writer->startElement_prefix_namespace(reader->localName(), reader->prefix(), reader->namespaceURI()));
}
void attributeByNamespace(const Reader& reader, const Writer& writer) {
    if (reader->isNamespaceDecl()) return;
    wrote(writer->writeAttribute_prefix_namespace_content(reader->localName(), reader->prefix(), reader->namespaceURI(), reader->value()));
}

struct Way {
    const char* name;
    Step element, attribute;
};
constexpr Way kByName = {"by name", elementByName, attributeByName};
constexpr Way kByNamespace = {"by namespace", elementByNamespace, attributeByNamespace};

// ---- The copy

void copyElement(const Reader& reader, const Writer& writer, const Way& way) {
    const bool isEmpty = reader->isEmptyElement();  // an attribute has no answer
    way.element(reader, writer);
    while (reader->moveToNextAttribute() == 1) way.attribute(reader, writer);
    reader->moveToElement();
    if (isEmpty) wrote(writer->endElement());
}

void copyNode(const Reader& reader, const Writer& writer, const Way& way) {
    switch (reader->nodeType()) {
        case 1: return copyElement(reader, writer, way);
        case 3:
        case 14: wrote(writer->writeString(reader->value())); return;
        case 4: wrote(writer->writeCDATA(reader->value())); return;
        case 5: wrote(writer->writeRaw(u"&"_ns + reader->name() + u";")); return;
        case 7: wrote(writer->writePI_content(reader->name(), reader->value())); return;
        case 8: wrote(writer->writeComment(reader->value())); return;
        case 10: return;  // no reader tells what stands in a document type
        case 15: wrote(writer->endElement()); return;
        default: ADD_FAILURE() << "a node of type " << reader->nodeType();
    }
}

void copy(const Reader& reader, const Writer& writer, const Way& way) {
    wrote(writer->startDocumentWithVersion_encoding_standalone(u"1.0", u"utf-8", nullptr));
    while (reader->read() == 1) copyNode(reader, writer, way);
    EXPECT_EQ(reader->read(), 0);
    wrote(writer->endDocument());
    wrote(writer->flush());
}

Ref<NSData> copyOf(std::string_view xml, const Way& way) {
    const Writer writer = WQXMLWriter::newToMemory();
    copy(WQXMLReader::newWithData_baseURL_error(test::data(xml), nullptr, nullptr), writer, way);
    return writer->XMLData();
}
// Without the declaration in front and the line feed behind.
std::string written(std::string_view xml, const Way& way) {
    static constexpr std::string_view front = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    const auto bytes = copyOf(xml, way);
    EXPECT_EQ(bytes->view().substr(0, front.size()), front);
    return std::string(bytes->view().substr(front.size(), bytes->length() - front.size() - 1));
}

void expectSameDocument(std::string_view xml, const Way& way) {
    SCOPED_TRACE(way.name);
    const NSString before = parse(xml)->canonicalRepresentation();
    EXPECT_GT(before.length(), 0u);
    const NSString after = parse(copyOf(xml, way)->view())->canonicalRepresentation();
    EXPECT_TRUE(before == after) << (before.length() < 1000 ? wq::toUTF8(before) + "\n" + wq::toUTF8(after) : "two large documents");
}

// The sample without the one entity that it uses; what it declares stays.
std::string manuscript() {
    std::string xml = contentsOf(sourceFolder() / "examples/manuscript/manuscript.xml");
    const std::string_view reference = "&press;";
    const size_t place = xml.find(reference);
    EXPECT_NE(place, std::string::npos);
    return xml.replace(place, reference.size(), "The Landing Stage Press");
}

}  // namespace

// ---- The same document

TEST(StreamsTest, SmallDocumentsAreTheSameAfterwards) {
    for (const char* xml : {
             "<a/>",
             "<a></a>",
             "<a k='1' l='&lt;&amp;&quot;&apos;&gt;]]&gt;'/>",
             "<a>&lt;&amp;\"'&gt;]]&gt;</a>",
             "<a>x&#13;y&#10;z&#9;</a>",
             "<a k='x&#13;y&#10;z&#9;'/>",
             "<a> <b/>\n\t<c> </c> text <d/></a>",
             "<a><![CDATA[<&>]]><b><![CDATA[]]></b></a>",
             "<?p  q ?><!--c--><a><!--d--><?r?>e<?s t?></a><!--f--><?u?>",
             "<a>\xC3\xA9 \xF0\x9F\x98\x80</a>",
             "<a k='\xC3\xA9 \xF0\x9F\x98\x80'/>",
             "<?xml version='1.0' encoding='ISO-8859-1' standalone='yes'?><a>\xE9</a>",
             "<!DOCTYPE a [<!ATTLIST a k CDATA 'd'><!ENTITY e 'x'>]><a l='1'/>",
             "<a xml:lang='en' xml:space='preserve'><b xml:lang='de'/> </a>",
             "<a xmlns='u:1'><b><c xmlns='u:2'/></b></a>",
             "<a xmlns='u:1' k='1'><b k='2'/></a>",
             "<p:a xmlns:p='u:1'><p:b p:k='1' k='2'/></p:a>",
             "<a xmlns:p='u:1' p:k='1'><b p:k='2'><p:c/></b></a>",
             "<a xmlns='u:1' xmlns:p='u:1' p:k='1'><p:b/><c/></a>",
             "<p:a xmlns:p='u:1'><q:b xmlns:q='u:2'><p:c q:k='1'/></q:b></p:a>",
             "<p:a xmlns:p='u:1'><p:b xmlns:p='u:2'/><p:c/></p:a>",
         }) {
        SCOPED_TRACE(xml);
        expectSameDocument(xml, kByName);
        expectSameDocument(xml, kByNamespace);
    }
}

TEST(StreamsTest, TheManuscriptIsTheSameAfterwards) {
    expectSameDocument(manuscript(), kByName);
    expectSameDocument(manuscript(), kByNamespace);
}

TEST(StreamsTest, ALargeDocumentIsTheSameAfterwards) {
    const std::string xml = contentsOf(kMimeDatabase);
    ASSERT_GT(xml.size(), 100'000u);
    expectSameDocument(xml, kByName);
    expectSameDocument(xml, kByNamespace);
}

TEST(StreamsTest, ADocumentCanBeCopiedIntoADocument) {
    const Writer writer = WQXMLWriter::newToXMLDocument();
    copy(WQXMLReader::newWithData_baseURL_error(test::data(manuscript()), nullptr, nullptr), writer, kByName);
    EXPECT_TRUE(writer->XMLDocument()->canonicalRepresentation() == parse(manuscript())->canonicalRepresentation());
}

TEST(StreamsTest, ADocumentCanBeCopiedFromFileToFile) {
    std::string folder = testing::TempDir() + "wq-streams-XXXXXX";
    ASSERT_TRUE(mkdtemp(folder.data()));
    std::ofstream(folder + "/from.xml", std::ios::binary) << manuscript();
    const auto url = [&](const char* name) { return NSURL::fileURLWithPath(wq::fromUTF8(folder + name)); };
    copy(WQXMLReader::newWithURL_options_error(url("/from.xml"), 0, nullptr), WQXMLWriter::newWithURL(url("/to.xml")), kByNamespace);
    EXPECT_TRUE(parse(contentsOf(folder + "/to.xml"))->canonicalRepresentation() == parse(manuscript())->canonicalRepresentation());
    std::filesystem::remove_all(folder);
}

TEST(StreamsTest, EachKindOfNodeIsWrittenAsItWasRead) {
    const char* xml = "<?p q?><!--c--><a k=\"&lt;\"> <!--d-->e<?r?><b/><b></b><![CDATA[&]]>&amp;</a><!--f--><?s?>";
    for (const Way& way : {kByName, kByNamespace})
        EXPECT_EQ(written(xml, way), "<?p q?><!--c--><a k=\"&lt;\"> <!--d-->e<?r?><b/><b/><![CDATA[&]]>&amp;</a><!--f--><?s?>") << way.name;
}

TEST(StreamsTest, ACopyOfACopyIsTheSameBytes) {
    for (const Way& way : {kByName, kByNamespace}) {
        SCOPED_TRACE(way.name);
        const auto once = copyOf(manuscript(), way);
        EXPECT_TRUE(copyOf(once->view(), way)->view() == once->view());
    }
}

// ---- And those that are not

TEST(StreamsTest, APrefixThatIsReboundAndBoundBackKeepsTheInnerNamespace) {
    const char* xml = "<p:a xmlns:p='u:1'><p:b xmlns:p='u:2'><p:c xmlns:p='u:1'/></p:b></p:a>";
    EXPECT_EQ(written(xml, kByNamespace), "<p:a xmlns:p=\"u:1\"><p:b xmlns:p=\"u:2\"><p:c/></p:b></p:a>");
    EXPECT_EQ(find(parse(xml), u"p:c")->namespaceURI(), u"u:1");
    EXPECT_EQ(find(parse(written(xml, kByNamespace)), u"p:c")->namespaceURI(), u"u:2");
    expectSameDocument(xml, kByName);
}

TEST(StreamsTest, AReferenceInTextIsCopiedAndItsDeclarationIsLost) {
    const char* xml = "<!DOCTYPE a [<!ENTITY e 'x'>]><a>1&e;2</a>";
    for (const Way& way : {kByName, kByNamespace}) {
        SCOPED_TRACE(way.name);
        EXPECT_EQ(written(xml, way), "<a>1&e;2</a>");
        EXPECT_EQ(raised([&] { parse(written(xml, way)); }), "XML Exception: Entity 'e' not defined\n");
    }
    EXPECT_EQ(
        raised([&] { parse(xml)->canonicalRepresentation(); }),
        "XML Exception: Node XML_ENTITY_REF_NODE is invalid here : processing node\n");
}

TEST(StreamsTest, AReferenceInAnAttributeIsItsText) {
    const char* xml = "<!DOCTYPE a [<!ENTITY e 'x &amp; y'>]><a k='1&e;2'/>";
    for (const Way& way : {kByName, kByNamespace}) EXPECT_EQ(written(xml, way), "<a k=\"1x &amp; y2\"/>") << way.name;
}

// Two sections side by side are one for libxml2, and its writer does not split them again.
TEST(StreamsTest, ASectionThatHoldsTheEndOfASectionIsBroken) {
    const char* xml = "<a><![CDATA[1]]]]><![CDATA[>2]]></a>";
    EXPECT_EQ(parse(xml)->canonicalRepresentation(), u"<a>1]]&gt;2</a>");
    for (const Way& way : {kByName, kByNamespace}) {
        SCOPED_TRACE(way.name);
        EXPECT_EQ(written(xml, way), "<a><![CDATA[1]]>2]]></a>");
        EXPECT_EQ(raised([&] { parse(written(xml, way)); }), "XML Exception: Sequence ']]>' not allowed in content\n");
    }
}

TEST(StreamsTest, ControlCharactersThatXMLAllowsAreTakenOutOfTextAndNothingElse) {
    const char* xml = "<a k='\x7F\xC2\x85'>1\x7F\xC2\x80\xC2\x9F\xC2\xA0<![CDATA[\xC2\x85]]><!--\xC2\x85--><?p \xC2\x85?></a>";
    EXPECT_EQ(written(xml, kByName), "<a k=\"\x7F\xC2\x85\">1\xC2\xA0<![CDATA[\xC2\x85]]><!--\xC2\x85--><?p \xC2\x85?></a>");
}

TEST(StreamsTest, ADefaultNamespaceThatIsTakenBackStays) {
    const char* xml = "<a xmlns='u:1'><b xmlns=''/></a>";
    EXPECT_EQ(written(xml, kByNamespace), "<a xmlns=\"u:1\"><b/></a>");
    EXPECT_EQ(find(parse(xml), u"b")->namespaceURI(), nullptr);
    EXPECT_EQ(find(parse(written(xml, kByNamespace)), u"b")->namespaceURI(), u"u:1");
    expectSameDocument(xml, kByName);
}

TEST(StreamsTest, ADeclarationThatNothingUsesIsLeftOut) {
    const char* xml = "<a xmlns:p='u:1'><b p:k='1'/><c p:k='2'/></a>";
    EXPECT_EQ(written(xml, kByNamespace), "<a><b p:k=\"1\" xmlns:p=\"u:1\"/><c p:k=\"2\" xmlns:p=\"u:1\"/></a>");
    expectSameDocument(xml, kByName);
}

// Declarations handed on as attributes of the namespace that a reader gives them.
TEST(StreamsTest, ADefaultNamespaceWrittenAsAnAttributeWithItsNamespaceIsRefusedOrLost) {
    const Reader reader = WQXMLReader::newWithData_baseURL_error(test::data("<a xmlns='u:1'/>"), nullptr, nullptr);
    EXPECT_EQ(reader->read(), 1);
    EXPECT_EQ(reader->moveToFirstAttribute(), 1);
    const auto attribute = [&](const Writer& writer) {
        return writer->writeAttribute_prefix_namespace_content(
            reader->localName(), reader->prefix(), reader->namespaceURI(), reader->value());
    };

    const Writer declared = WQXMLWriter::newToMemory();
    declared->startElement_prefix_namespace(u"a", nullptr, u"u:1");
    EXPECT_EQ(attribute(declared), -1);
    declared->endElement();
    declared->flush();
    EXPECT_EQ(declared->XMLData()->view(), "<a xmlns=\"u:1\"/>");

    const Writer plain = WQXMLWriter::newToMemory();
    plain->startElement(u"a");
    EXPECT_NE(attribute(plain), -1);
    plain->endElement();
    plain->flush();
    EXPECT_EQ(plain->XMLData()->view(), "<a xmlns=\"u:1\" xmlns=\"http://www.w3.org/2000/xmlns/\"/>");
    EXPECT_EQ(raised([&] { parse(plain->XMLData()->view()); }), "XML Exception: reuse of the xmlns namespace name is forbidden\n");
}
