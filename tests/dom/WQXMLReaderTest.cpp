// What a reader tells of each node, what it gives where there is nothing, and what it leaves alone.
#include "dom/WQXMLReader.h"

#include <filesystem>
#include <fstream>

#include "dom/WQLibXML.h"
#include "tests/dom/Support.h"
#include "tests/tree/Headers.h"

namespace {

using namespace test;
using testing::HasSubstr;
using testing::IsEmpty;

using Reader = Ref<WQXMLReader>;
using R = const Reader&;
using Numbers = std::vector<int32_t>;
using Truths = std::vector<bool>;
using Strings = std::vector<NSString>;

Reader reader(std::string_view xml, const NSString& base = nullptr) {
    return WQXMLReader::newWithData_baseURL_error(data(xml), NSURL::URLWithString(base), nullptr);
}

Reader readerOf(const std::filesystem::path& path) { return WQXMLReader::newWithURL_options_error(fileURL(path), 0, nullptr); }
Reader unopened() { return readerOf(testing::TempDir() + "/no/such/document.xml"); }

// Reads as far as the first node of that name.
Reader at(const char16_t* name, Reader reader) {
    while (reader->read() == 1)
        if (reader->name() == name) return reader;
    ADD_FAILURE() << "no such node";
    return reader;
}

// A line for each node up to the end: "depth type name" and "=value" if there is one. What `read`
// answers at last, if that is not 0, is a line as well.
std::vector<std::string> rest(R reader) {
    std::vector<std::string> lines;
    int32_t answer;
    while ((answer = reader->read()) == 1) {
        lines.push_back(
            std::to_string(reader->depth()) + " " + std::to_string(reader->nodeType()) + " " + wq::toUTF8(wq::printed(reader->name())));
        if (reader->value()) lines.back() += "=" + wq::toUTF8(reader->value());
    }
    if (answer != 0) lines.push_back(std::to_string(answer));
    return lines;
}
using Lines = std::vector<std::string>;

constexpr const char* kDocument =
    "<?xml version='1.0' encoding='UTF-8' standalone='yes'?>"
    "<!DOCTYPE a [<!ATTLIST b d CDATA 'dd'><!ENTITY e 'entity'>]>"
    "<!--c-->"
    "<?pi some data?>"
    "<a xmlns='u:a' xmlns:p='u:p' k='1' p:k='2' xml:lang='en' xml:base='http://h/x/'>"
    " "
    "<p:b q='\"&e;&lt;'/>"
    "text &amp; \xF0\x9F\x98\x80"
    "&e;"
    "<![CDATA[<&]]]]><![CDATA[>]]>"  // one section, for libxml2
    "<b xml:lang='de'></b>"
    "</a>"
    "<?end?>";

Reader document() { return reader(kDocument, u"http://h/doc.xml"); }

// What `query` answers at each node of the document above.
template <class T> std::vector<T> atEachNode(T (WQXMLReader::*query)() const) {
    std::vector<T> answers;
    const Reader each = document();
    while (each->read() == 1) answers.push_back((each.get()->*query)());
    return answers;
}
// And at each attribute of its root.
template <class T> std::vector<T> atEachAttribute(T (WQXMLReader::*query)() const) {
    std::vector<T> answers;
    const Reader each = document();
    while (each->read() == 1 && each->nodeType() != 1) continue;
    while (each->moveToNextAttribute() == 1) answers.push_back((each.get()->*query)());
    return answers;
}

// Every operation, and what it answers before the first `read`, behind the last node and after `close`.
template <class T> struct Operation {
    const char* name;
    T (*call)(R);
    T before, behind, closed;
};
#define OPERATION(name, arguments, ...)                                     \
    {                                                                       \
#name, [](R reader) { return reader->name arguments; }, __VA_ARGS__ \
    }
const Operation<int32_t> kNumbers[] = {
    OPERATION(read, (), 1, 0, -1),
    OPERATION(next, (), 1, 0, -1),
    OPERATION(nextSibling, (), -1, -1, -1),
    OPERATION(close, (), 0, 0, 0),
    OPERATION(nodeType, (), 0, 0, 0),
    OPERATION(depth, (), 0, 0, 0),
    OPERATION(attributeCount, (), 0, 0, 0),
    OPERATION(quoteChar, (), '"', '"', '"'),
    OPERATION(readState, (), 0, 3, 4),
    OPERATION(readAttributeValue, (), -1, -1, -1),
    OPERATION(moveToAttributeNo, (0), -1, -1, -1),
    OPERATION(moveToAttribute, (u"k"), -1, -1, -1),
    OPERATION(moveToAttribute_namespace, (u"k", u"u:p"), -1, -1, -1),
    OPERATION(moveToFirstAttribute, (), -1, -1, -1),
    OPERATION(moveToNextAttribute, (), -1, -1, -1),
    OPERATION(moveToElement, (), -1, -1, -1),
};
const Operation<bool> kTruths[] = {
    OPERATION(hasAttributes, (), false, false, false), OPERATION(hasValue, (), false, false, false),
    OPERATION(isDefault, (), false, false, false),     OPERATION(isEmptyElement, (), true, true, true),
    OPERATION(isNamespaceDecl, (), true, true, true),  OPERATION(isValid, (), false, false, false),
    OPERATION(standalone, (), true, false, true),
};
const NSString none;
const Operation<NSString> kStrings[] = {
    OPERATION(name, (), none, none, none),
    OPERATION(localName, (), none, none, none),
    OPERATION(prefix, (), none, none, none),
    OPERATION(namespaceURI, (), none, none, none),
    OPERATION(value, (), none, none, none),
    OPERATION(baseURI, (), none, none, none),
    OPERATION(xmlLang, (), none, none, none),
    OPERATION(encoding, (), none, u"UTF-8", none),
    OPERATION(xmlVersion, (), none, u"1.0", none),
    OPERATION(getAttributeNo, (0), none, none, none),
    OPERATION(getAttribute, (u"k"), none, none, none),
    OPERATION(getAttribute_namespace, (u"k", u"u:p"), none, none, none),
    OPERATION(lookupNamespace, (u"p"), none, none, none),
};

// Calls `work` with each operation of the three tables.
void withEachOperation(auto&& work) {
    const auto each = [&](const auto& table) {
        for (const auto& operation : table) {
            SCOPED_TRACE(operation.name);
            work(operation);
        }
    };
    each(kNumbers);
    each(kTruths);
    each(kStrings);
}

// What stands for an error among the answers of each kind.
int32_t error(int32_t) { return -1; }
bool error(bool) { return true; }
NSString error(const NSString&) { return nullptr; }

}  // namespace

// ---- The table: integers

TEST(WQXMLReaderTest, EachNodeHasItsType) {
    EXPECT_EQ(atEachNode(&WQXMLReader::nodeType), (Numbers{10, 8, 7, 1, 14, 1, 3, 5, 4, 1, 15, 15, 7}));
    EXPECT_EQ(atEachAttribute(&WQXMLReader::nodeType), (Numbers{2, 2, 2, 2, 2, 2}));
}

TEST(WQXMLReaderTest, TheRootHasDepthZeroAndAnAttributeIsOneDeeperThanItsElement) {
    EXPECT_EQ(atEachNode(&WQXMLReader::depth), (Numbers{0, 0, 0, 0, 1, 1, 1, 1, 1, 1, 1, 0, 0}));
    EXPECT_EQ(atEachAttribute(&WQXMLReader::depth), (Numbers{1, 1, 1, 1, 1, 1}));
}

TEST(WQXMLReaderTest, DeclarationsOfNamespacesAreCountedAsAttributesAndDefaultsAreNot) {
    EXPECT_EQ(atEachNode(&WQXMLReader::attributeCount), (Numbers{0, 0, 0, 6, 0, 1, 0, 0, 0, 1, 0, 0, 0}));
    EXPECT_EQ(atEachAttribute(&WQXMLReader::attributeCount), (Numbers{0, 0, 0, 0, 0, 0}));
}

TEST(WQXMLReaderTest, TheQuoteIsAlwaysADoubleOne) {
    EXPECT_EQ(atEachNode(&WQXMLReader::quoteChar), Numbers(13, '"'));
    EXPECT_EQ(atEachAttribute(&WQXMLReader::quoteChar), Numbers(6, '"'));
}

TEST(WQXMLReaderTest, TheStateIsAboutTheInputThatWasTakenIn) {
    const Reader small = reader("<a><b/></a>");
    EXPECT_EQ(small->readState(), 0);
    EXPECT_EQ(small->read(), 1);
    EXPECT_EQ(small->readState(), 3);
    const Reader large = reader("<a>" + std::string(100'000, 'x') + "<b/></a>");
    EXPECT_EQ(large->read(), 1);
    EXPECT_EQ(large->readState(), 1);
    EXPECT_EQ(large->close(), 0);
    EXPECT_EQ(large->readState(), 4);
}

TEST(WQXMLReaderTest, ReadGoesThroughTheWholeDocument) {
    EXPECT_EQ(
        rest(document()),
        (Lines{
            "0 10 a", "0 8 #comment=c", "0 7 pi=some data", "0 1 a", "1 14 #text= ", "1 1 p:b", "1 3 #text=text & \xF0\x9F\x98\x80",
            "1 5 e", "1 4 #cdata-section=<&]]>", "1 1 b", "1 15 b", "0 15 a", "0 7 end"}));
}

TEST(WQXMLReaderTest, BehindTheLastNodeReadAnswersZeroForGood) {
    const Reader all = reader("<a/>");
    EXPECT_EQ(all->read(), 1);
    for (int time = 0; time < 3; ++time) {
        EXPECT_EQ(all->read(), 0);
        EXPECT_EQ(all->next(), 0);
    }
}

TEST(WQXMLReaderTest, NextGoesOnBehindTheSubtree) {
    const Reader all = at(u"b", reader("<a><b><c><d/>text</c></b><e/></a>"));
    EXPECT_EQ(all->next(), 1);
    EXPECT_EQ(all->name(), u"e");
    EXPECT_EQ(all->next(), 1);
    EXPECT_EQ(all->nodeType(), 15);
    EXPECT_EQ(all->name(), u"a");
    EXPECT_EQ(all->next(), 0);
}

TEST(WQXMLReaderTest, NextAtTheRootGoesToTheEnd) {
    const Reader all = at(u"a", reader("<a><b/></a><?p?>"));
    EXPECT_EQ(all->next(), 1);
    EXPECT_EQ(all->name(), u"p");
    EXPECT_EQ(all->next(), 0);
}

TEST(WQXMLReaderTest, NextSiblingCannotAnswer) {
    const Reader all = at(u"b", reader("<a><b/><c/></a>"));
    EXPECT_EQ(all->nextSibling(), -1);
    EXPECT_EQ(all->name(), u"b");
    EXPECT_EQ(rest(all), (Lines{"1 1 c", "0 15 a"}));
}

TEST(WQXMLReaderTest, ClosingKeepsTheReader) {
    const Reader all = at(u"b", reader("<a><b k='1'/></a>"));
    EXPECT_EQ(all->close(), 0);
    EXPECT_EQ(all->readState(), 4);
    EXPECT_EQ(all->read(), -1);
    EXPECT_EQ(all->nodeType(), 0);
    EXPECT_FALSE(all->name());
    EXPECT_FALSE(all->getAttribute(u"k"));
    EXPECT_EQ(all->close(), 0);
}

// ---- The table: booleans

TEST(WQXMLReaderTest, ElementsWithAttributesHaveAttributesAtTheirEndAsWell) {
    EXPECT_EQ(
        atEachNode(&WQXMLReader::hasAttributes),
        (Truths{false, false, false, true, false, true, false, false, false, true, true, true, false}));
    EXPECT_TRUE(at(u"a", reader("<a xmlns:p='u:p'/>"))->hasAttributes());
    EXPECT_FALSE(at(u"a", reader("<a/>"))->hasAttributes());
}

TEST(WQXMLReaderTest, TextsCommentsInstructionsAndAttributesHaveAValue) {
    EXPECT_EQ(
        atEachNode(&WQXMLReader::hasValue), (Truths{false, true, true, false, true, false, true, false, true, false, false, false, true}));
    EXPECT_EQ(atEachAttribute(&WQXMLReader::hasValue), Truths(6, true));
}

TEST(WQXMLReaderTest, NothingIsADefault) {
    EXPECT_EQ(atEachNode(&WQXMLReader::isDefault), Truths(13, false));
    EXPECT_EQ(atEachAttribute(&WQXMLReader::isDefault), Truths(6, false));
}

TEST(WQXMLReaderTest, AnElementIsEmptyIfItHasOneTag) {
    EXPECT_EQ(
        atEachNode(&WQXMLReader::isEmptyElement),
        (Truths{false, false, false, false, false, true, false, false, false, false, false, false, false}));
}

TEST(WQXMLReaderTest, AnEmptyElementHasNoEnd) {
    EXPECT_EQ(rest(reader("<a><b/><b></b></a>")), (Lines{"0 1 a", "1 1 b", "1 1 b", "1 15 b", "0 15 a"}));
}

TEST(WQXMLReaderTest, DeclarationsOfNamespacesAreTold) {
    EXPECT_EQ(atEachNode(&WQXMLReader::isNamespaceDecl), Truths(13, false));
    EXPECT_EQ(atEachAttribute(&WQXMLReader::isNamespaceDecl), (Truths{true, true, false, false, false, false}));
}

TEST(WQXMLReaderTest, NothingIsValidated) {
    EXPECT_FALSE(at(u"a", reader("<!DOCTYPE a [<!ELEMENT a EMPTY>]><a/>"))->isValid());
    EXPECT_FALSE(at(u"a", reader("<!DOCTYPE a [<!ELEMENT a EMPTY>]><a>text</a>"))->isValid());
}

TEST(WQXMLReaderTest, StandaloneIsFalseOnlyWhereTheDocumentSaysNo) {
    struct {
        const char* xml;
        bool standalone;
    } const rows[] = {
        {"<?xml version='1.0' standalone='yes'?><a/>", true},
        {"<?xml version='1.0' standalone='no'?><a/>", false},
        {"<?xml version='1.0'?><a/>", true},
        {"<a/>", true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.xml);
        EXPECT_EQ(at(u"a", reader(row.xml))->standalone(), row.standalone);
    }
}

// ---- The table: strings

TEST(WQXMLReaderTest, NamesHaveTheirPrefix) {
    EXPECT_EQ(
        atEachNode(&WQXMLReader::name),
        (Strings{u"a", u"#comment", u"pi", u"a", u"#text", u"p:b", u"#text", u"e", u"#cdata-section", u"b", u"b", u"a", u"end"}));
    EXPECT_EQ(atEachAttribute(&WQXMLReader::name), (Strings{u"xmlns", u"xmlns:p", u"k", u"p:k", u"xml:lang", u"xml:base"}));
}

TEST(WQXMLReaderTest, LocalNamesHaveNoPrefix) {
    EXPECT_EQ(
        atEachNode(&WQXMLReader::localName),
        (Strings{u"a", u"#comment", u"pi", u"a", u"#text", u"b", u"#text", u"e", u"#cdata-section", u"b", u"b", u"a", u"end"}));
    EXPECT_EQ(atEachAttribute(&WQXMLReader::localName), (Strings{u"xmlns", u"p", u"k", u"k", u"lang", u"base"}));
}

TEST(WQXMLReaderTest, PrefixesAreNullWithoutOne) {
    Strings expected(13);
    expected[5] = u"p";
    EXPECT_EQ(atEachNode(&WQXMLReader::prefix), expected);
    EXPECT_EQ(atEachAttribute(&WQXMLReader::prefix), (Strings{nullptr, u"xmlns", nullptr, u"p", u"xml", u"xml"}));
}

TEST(WQXMLReaderTest, NamespacesAreTheirURIs) {
    Strings expected(13);
    expected[3] = expected[9] = expected[10] = expected[11] = u"u:a";
    expected[5] = u"u:p";
    EXPECT_EQ(atEachNode(&WQXMLReader::namespaceURI), expected);
    const NSString declarations = u"http://www.w3.org/2000/xmlns/", xml = u"http://www.w3.org/XML/1998/namespace";
    EXPECT_EQ(atEachAttribute(&WQXMLReader::namespaceURI), (Strings{declarations, declarations, nullptr, u"u:p", xml, xml}));
}

TEST(WQXMLReaderTest, WithoutACurrentValueTheValueIsNull) {
    EXPECT_EQ(
        atEachNode(&WQXMLReader::value), (Strings{
                                             nullptr, u"c", u"some data", nullptr, u" ", nullptr, u"text & \U0001F600", nullptr, u"<&]]>",
                                             nullptr, nullptr, nullptr, nullptr}));
    EXPECT_EQ(atEachAttribute(&WQXMLReader::value), (Strings{u"u:a", u"u:p", u"1", u"2", u"en", u"http://h/x/"}));
}

TEST(WQXMLReaderTest, ValuesAreTheTextThatTheMarkupMeans) {
    struct {
        const char* meaning;
        std::string xml;
        const char16_t* value;
    } const rows[] = {
        {"predefined entities", "<a>&amp;&lt;&gt;&quot;&apos;]]&gt;</a>", u"&<>\"']]>"},
        {"line ends become line feeds", "<a>x\r\ny\rz</a>", u"x\ny\nz"},
        {"white space by reference", "<a>x&#13;&#10;&#9;</a>", u"x\r\n\t"},
        {"controls of the second block", "<a>\xC2\x80\xC2\x9F</a>", u"\u0080\u009F"},
        {"characters beyond the first plane", "<a>&#x1F600;\xF0\x9D\x95\x8A</a>", u"\U0001F600\U0001D54A"},
        {"latin-1", "<?xml version='1.0' encoding='ISO-8859-1'?><a>\xE9</a>", u"\u00E9"},
        {"an empty CDATA section", "<a><![CDATA[]]></a>", u""},
        {"an empty comment", "<a><!----></a>", u""},
        {"an instruction without data", "<a><?p?></a>", nullptr},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.meaning);
        const Reader each = at(u"a", reader(row.xml));
        EXPECT_EQ(each->read(), 1);
        EXPECT_EQ(each->value(), row.value);
    }
}

TEST(WQXMLReaderTest, AnAttributeIsNormalised) {
    EXPECT_EQ(at(u"a", reader("<a k=' x\n\ty&#10;&quot;&lt; '/>"))->getAttribute(u"k"), u" x  y\n\"< ");
}

TEST(WQXMLReaderTest, TheBaseIsThatOfTheDocumentAndOfXMLBase) {
    const NSString outer = u"http://h/doc.xml", inner = u"http://h/x/";
    EXPECT_EQ(
        atEachNode(&WQXMLReader::baseURI),
        (Strings{outer, outer, outer, inner, inner, inner, inner, inner, inner, inner, inner, inner, outer}));
    EXPECT_EQ(atEachAttribute(&WQXMLReader::baseURI), Strings(6, inner));
    EXPECT_FALSE(at(u"a", reader("<a/>"))->baseURI());
}

TEST(WQXMLReaderTest, ARelativeXMLBaseIsResolved) {
    EXPECT_EQ(at(u"b", reader("<a xml:base='x/'><b xml:base='y/'/></a>", u"http://h/doc.xml"))->baseURI(), u"http://h/x/y/");
}

TEST(WQXMLReaderTest, TheLanguageIsInherited) {
    Strings expected(13, u"en");
    expected[0] = expected[1] = expected[2] = expected[12] = nullptr;
    expected[9] = expected[10] = u"de";
    EXPECT_EQ(atEachNode(&WQXMLReader::xmlLang), expected);
    EXPECT_EQ(atEachAttribute(&WQXMLReader::xmlLang), Strings(6, u"en"));
}

TEST(WQXMLReaderTest, EncodingAndVersionAreThoseOfTheDocument) {
    EXPECT_EQ(atEachNode(&WQXMLReader::encoding), Strings(13, u"UTF-8"));
    EXPECT_EQ(atEachNode(&WQXMLReader::xmlVersion), Strings(13, u"1.0"));
    EXPECT_EQ(at(u"a", reader("<?xml version='1.0' encoding='ISO-8859-1'?><a>\xE9</a>"))->encoding(), u"ISO-8859-1");
    const Reader silent = at(u"a", reader("<a/>"));
    EXPECT_FALSE(silent->encoding());
    EXPECT_EQ(silent->xmlVersion(), u"1.0");
}

TEST(WQXMLReaderTest, WideDocumentsAreRead) {
    std::string wide("\xFF\xFE", 2);
    for (const char character : std::string("<a>x</a>")) wide += {character, '\0'};
    EXPECT_EQ(rest(reader(wide)), (Lines{"0 1 a", "1 3 #text=x", "0 15 a"}));
}

// ---- The table: strings that libxml2 hands over

TEST(WQXMLReaderTest, AttributesAreFoundByTheirNumber) {
    const Reader root = at(u"p:b", document());
    EXPECT_EQ(root->getAttributeNo(0), u"\"entity<");
    EXPECT_FALSE(root->getAttributeNo(1));
    EXPECT_EQ(root->getAttributeNo(-1), u"\"entity<");
    const Reader declaring = at(u"a", reader("<a xmlns='u:a' xmlns:p='u:p' k='' p:k='2'/>"));
    Strings values;
    for (int32_t index = 0; index < 5; ++index) values.push_back(declaring->getAttributeNo(index));
    EXPECT_EQ(values, (Strings{u"u:a", u"u:p", u"", u"2", nullptr}));
}

TEST(WQXMLReaderTest, AttributesAreFoundByTheirQualifiedName) {
    const Reader root = at(u"a", reader("<a xmlns='u:a' xmlns:p='u:p' k='1' p:k='2' xml:lang='en'/>"));
    struct {
        NSString name, value;
    } const rows[] = {
        {u"k", u"1"},       {u"p:k", u"2"},        {u"xml:lang", u"en"}, {u"xmlns", u"u:a"}, {u"xmlns:p", u"u:p"},
        {u"q:k", nullptr},  {u"xmlns:q", nullptr}, {u"K", nullptr},      {u"lang", nullptr}, {u"", nullptr},
        {nullptr, nullptr}, {u"\xD800", nullptr},  {u"p:none", nullptr}, {u":k", nullptr},   {u"p:", nullptr},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(wq::toUTF8(wq::printed(row.name)));
        EXPECT_EQ(root->getAttribute(row.name), row.value);
    }
}

TEST(WQXMLReaderTest, AttributesAreFoundByTheirNamespace) {
    const Reader root = at(u"a", reader("<a xmlns='u:a' xmlns:p='u:p' k='1' p:k='2' xml:lang='en'/>"));
    const NSString declarations = u"http://www.w3.org/2000/xmlns/";
    struct {
        NSString name, uri, value;
    } const rows[] = {
        {u"k", nullptr, u"1"},
        {u"k", u"u:p", u"2"},
        {u"k", u"u:a", nullptr},
        {u"lang", u"http://www.w3.org/XML/1998/namespace", u"en"},
        {u"xmlns", declarations, u"u:a"},
        {u"p", declarations, u"u:p"},
        {u"q", declarations, nullptr},
        {nullptr, u"u:p", nullptr},
        {nullptr, nullptr, nullptr},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(wq::toUTF8(wq::printed(row.name)) + " " + wq::toUTF8(wq::printed(row.uri)));
        EXPECT_EQ(root->getAttribute_namespace(row.name, row.uri), row.value);
    }
}

TEST(WQXMLReaderTest, ADeclaredDefaultIsFoundByNameAndIsNoAttribute) {
    const Reader element = at(u"b", reader("<!DOCTYPE a [<!ATTLIST b d CDATA 'dd' e CDATA 'ee'>]><a><b e='1'/></a>"));
    EXPECT_EQ(element->getAttribute(u"d"), u"dd");
    EXPECT_EQ(element->getAttribute_namespace(u"d", nullptr), u"dd");
    EXPECT_EQ(element->getAttribute(u"e"), u"1");
    EXPECT_EQ(element->attributeCount(), 1);
    EXPECT_EQ(element->getAttributeNo(0), u"1");
    EXPECT_EQ(element->moveToAttribute(u"d"), 0);
    EXPECT_EQ(element->moveToFirstAttribute(), 1);
    EXPECT_EQ(element->name(), u"e");
    EXPECT_EQ(element->moveToNextAttribute(), 0);
}

TEST(WQXMLReaderTest, NamespacesAreLookedUpByTheirPrefix) {
    const Reader inner = at(u"b", reader("<a xmlns='u:a' xmlns:p='u:p' xmlns:q='u:q'><b xmlns:p='u:2'/></a>"));
    EXPECT_EQ(inner->lookupNamespace(nullptr), u"u:a");
    EXPECT_EQ(inner->lookupNamespace(u"p"), u"u:2");
    EXPECT_EQ(inner->lookupNamespace(u"q"), u"u:q");
    EXPECT_EQ(inner->lookupNamespace(u"xml"), u"http://www.w3.org/XML/1998/namespace");
    EXPECT_FALSE(inner->lookupNamespace(u"r"));
    EXPECT_FALSE(at(u"a", reader("<a/>"))->lookupNamespace(nullptr));
}

// ---- Moving among attributes

TEST(WQXMLReaderTest, MovingStandsOnAnAttribute) {
    const Reader root = at(u"a", reader("<a xmlns:p='u:p' k='1' p:k='2'/>"));
    struct {
        const char* how;
        int32_t (*move)(R);
        int32_t answer;
        const char16_t* name;
    } const rows[] = {
        {"No 0, the declaration", [](R r) { return r->moveToAttributeNo(0); }, 1, u"xmlns:p"},
        {"No 1", [](R r) { return r->moveToAttributeNo(1); }, 1, u"k"},
        {"No 2", [](R r) { return r->moveToAttributeNo(2); }, 1, u"p:k"},
        {"No 3", [](R r) { return r->moveToAttributeNo(3); }, 0, u"a"},
        {"No -1", [](R r) { return r->moveToAttributeNo(-1); }, 1, u"xmlns:p"},
        {"a name", [](R r) { return r->moveToAttribute(u"k"); }, 1, u"k"},
        {"a qualified name", [](R r) { return r->moveToAttribute(u"p:k"); }, 1, u"p:k"},
        {"the name of a declaration", [](R r) { return r->moveToAttribute(u"xmlns:p"); }, 1, u"xmlns:p"},
        {"no such declaration", [](R r) { return r->moveToAttribute(u"xmlns"); }, 0, u"a"},
        {"no such name", [](R r) { return r->moveToAttribute(u"none"); }, 0, u"a"},
        {"null", [](R r) { return r->moveToAttribute(nullptr); }, -1, u"a"},
        {"a namespace", [](R r) { return r->moveToAttribute_namespace(u"k", u"u:p"); }, 1, u"p:k"},
        {"the namespace of declarations", [](R r) { return r->moveToAttribute_namespace(u"p", u"http://www.w3.org/2000/xmlns/"); }, 1,
         u"xmlns:p"},
        {"another namespace", [](R r) { return r->moveToAttribute_namespace(u"k", u"u:none"); }, 0, u"a"},
        {"no namespace", [](R r) { return r->moveToAttribute_namespace(u"k", nullptr); }, -1, u"a"},
        {"no name", [](R r) { return r->moveToAttribute_namespace(nullptr, u"u:p"); }, -1, u"a"},
        {"the first", [](R r) { return r->moveToFirstAttribute(); }, 1, u"xmlns:p"},
        {"the next, from the element", [](R r) { return r->moveToNextAttribute(); }, 1, u"xmlns:p"},
        {"the element", [](R r) { return r->moveToElement(); }, 0, u"a"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.how);
        root->moveToElement();
        EXPECT_EQ(row.move(root), row.answer);
        EXPECT_EQ(root->name(), row.name);
    }
}

TEST(WQXMLReaderTest, BehindTheLastAttributeThereIsNoNextAndTheReaderStays) {
    const Reader root = at(u"a", reader("<a k='1' l='2'/>"));
    EXPECT_EQ(root->moveToAttribute(u"l"), 1);
    EXPECT_EQ(root->moveToNextAttribute(), 0);
    EXPECT_EQ(root->name(), u"l");
    EXPECT_EQ(root->moveToElement(), 1);
    EXPECT_EQ(root->name(), u"a");
}

TEST(WQXMLReaderTest, AnElementWithoutAttributesHasNoFirst) {
    const Reader root = at(u"a", reader("<a/>"));
    EXPECT_EQ(root->moveToFirstAttribute(), 0);
    EXPECT_EQ(root->moveToNextAttribute(), 0);
    EXPECT_EQ(root->name(), u"a");
}

TEST(WQXMLReaderTest, TheValueOfAnAttributeIsReadPieceByPiece) {
    const Reader element = at(u"p:b", document());
    EXPECT_EQ(element->moveToFirstAttribute(), 1);
    EXPECT_EQ(element->value(), u"\"entity<");
    EXPECT_EQ(element->readAttributeValue(), 1);
    EXPECT_EQ(element->nodeType(), 3);
    EXPECT_EQ(element->value(), u"\"");
    EXPECT_EQ(element->depth(), 3);
    EXPECT_EQ(element->readAttributeValue(), 1);
    EXPECT_EQ(element->nodeType(), 5);
    EXPECT_EQ(element->name(), u"e");
    EXPECT_FALSE(element->value());
    EXPECT_EQ(element->readAttributeValue(), 1);
    EXPECT_EQ(element->value(), u"<");
    EXPECT_EQ(element->readAttributeValue(), 0);
    EXPECT_EQ(element->moveToElement(), 1);
    EXPECT_EQ(element->name(), u"p:b");
}

TEST(WQXMLReaderTest, TheValueOfADeclarationIsOnePiece) {
    const Reader root = at(u"a", reader("<a xmlns='u:a'/>"));
    EXPECT_EQ(root->moveToFirstAttribute(), 1);
    EXPECT_EQ(root->readAttributeValue(), 1);
    EXPECT_EQ(root->nodeType(), 3);
    EXPECT_EQ(root->value(), u"u:a");
    EXPECT_EQ(root->readAttributeValue(), 0);
    EXPECT_EQ(root->moveToElement(), 1);
    EXPECT_EQ(root->read(), 0);
}

TEST(WQXMLReaderTest, ReadGoesOnFromAnAttribute) {
    const Reader element = at(u"p:b", document());
    EXPECT_EQ(element->moveToFirstAttribute(), 1);
    EXPECT_EQ(element->readAttributeValue(), 1);
    EXPECT_EQ(element->read(), 1);
    EXPECT_EQ(element->value(), u"text & \U0001F600");
}

TEST(WQXMLReaderTest, AStringOutlivesTheNodeAndTheReader) {
    Reader all = at(u"b", reader("<a><b k='value'/></a>"));
    const NSString name = all->name(), value = all->getAttribute(u"k");
    EXPECT_EQ(all->read(), 1);
    all = nullptr;
    EXPECT_EQ(name, u"b");
    EXPECT_EQ(value, u"value");
}

// ---- Where there is nothing

TEST(WQXMLReaderTest, EveryOperationStandsInTheTables) {
    std::set<std::string> operations = publicOperations(sourceFolder() / "dom/WQXMLReader.h");
    EXPECT_GT(operations.size(), 30u);
    operations.erase("WQXMLReader::initWithURL_options_error");
    operations.erase("WQXMLReader::initWithData_baseURL_error");
    withEachOperation([&](const auto& operation) { EXPECT_EQ(operations.erase(std::string("WQXMLReader::") + operation.name), 1u); });
    EXPECT_THAT(operations, IsEmpty());
}

TEST(WQXMLReaderTest, BeforeTheFirstReadThereIsNoNode) {
    withEachOperation([](const auto& operation) { EXPECT_EQ(operation.call(document()), operation.before); });
}

TEST(WQXMLReaderTest, BehindTheLastNodeThereIsNoNode) {
    withEachOperation([](const auto& operation) {
        const Reader ended = reader("<?xml version='1.0' encoding='UTF-8' standalone='no'?><a k='1'/>");
        while (ended->read() == 1) continue;
        EXPECT_EQ(operation.call(ended), operation.behind);
    });
}

TEST(WQXMLReaderTest, AClosedReaderHasNoNode) {
    withEachOperation([](const auto& operation) {
        const Reader closed = at(u"a", document());
        EXPECT_EQ(closed->close(), 0);
        EXPECT_EQ(operation.call(closed), operation.closed);
    });
}

TEST(WQXMLReaderTest, AnInputThatCannotBeOpenedGivesAReaderWhoseEveryAnswerIsAnError) {
    const Assertions assertions;
    const Ref<NSURL> refused[] = {fileURL(testing::TempDir() + "/no/such/document.xml"), NSURL::URLWithString(u"none:x"), nullptr};
    for (const Ref<NSURL>& each : refused) {
        SCOPED_TRACE(wq::toUTF8(wq::printed(each->absoluteString())));
        Reader nothing;
        EXPECT_EQ(raised([&] { nothing = WQXMLReader::newWithURL_options_error(each, 0, nullptr); }), "");
        ASSERT_TRUE(nothing);
        for (int time = 0; time < 2; ++time)
            withEachOperation([&](const auto& operation) {
                EXPECT_EQ(raised([&] { EXPECT_EQ(operation.call(nothing), error(operation.before)); }), "");
            });
    }
    EXPECT_THAT(assertions.descriptions, IsEmpty());
}

TEST(WQXMLReaderTest, NullDataGiveAReaderWhoseEveryAnswerIsAnError) {
    const Reader nothing = WQXMLReader::newWithData_baseURL_error(nullptr, NSURL::URLWithString(u"http://h/"), nullptr);
    ASSERT_TRUE(nothing);
    withEachOperation([&](const auto& operation) { EXPECT_EQ(operation.call(nothing), error(operation.before)); });
}

TEST(WQXMLReaderTest, NullAnswersZeroFalseAndNull) {
    const Assertions assertions;
    const Reader nothing;
    for (const auto& operation : kNumbers) EXPECT_EQ(operation.call(nothing), 0) << operation.name;
    for (const auto& operation : kTruths) EXPECT_FALSE(operation.call(nothing)) << operation.name;
    for (const auto& operation : kStrings) EXPECT_EQ(operation.call(nothing), none) << operation.name;
    EXPECT_FALSE(nothing->initWithData_baseURL_error(data("<a/>"), nullptr, nullptr));
    EXPECT_FALSE(nothing->initWithURL_options_error(nullptr, 0, nullptr));
    EXPECT_EQ(nothing->read(), 0);
    EXPECT_THAT(assertions.descriptions, IsEmpty());
}

// ---- Making one

TEST(WQXMLReaderTest, AFileIsReadByItsURL) {
    const Folder folder;
    const auto path = folder.file("a b'c.xml", "<a><b/></a>");
    const Reader all = readerOf(path);
    EXPECT_EQ(all->read(), 1);
    EXPECT_EQ(all->baseURI(), fileURL(path)->absoluteString());
    EXPECT_EQ(rest(all), (Lines{"1 1 b", "0 15 a"}));
}

TEST(WQXMLReaderTest, TheURLMayBeLetGoOf) {
    const Folder folder;
    auto source = fileURL(folder.file("a.xml", "<a>" + std::string(100'000, 'x') + "</a>"));
    const Reader all = WQXMLReader::newWithURL_options_error(source, 0, nullptr);
    const NSString base = source->absoluteString();
    source = nullptr;
    EXPECT_EQ(all->read(), 1);
    EXPECT_EQ(all->baseURI(), base);
    EXPECT_EQ(all->read(), 1);
    EXPECT_EQ(all->value().length(), 100'000u);
}

TEST(WQXMLReaderTest, OptionsHaveNoMeaning) {
    const Folder folder;
    const auto source = fileURL(folder.file("a.xml", "<!DOCTYPE a [<!ENTITY e 'x'>]><a> <b/>&e;<![CDATA[c]]></a>"));
    // Blanks left out, entities and defaults put in, CDATA as text, errors passed over: none of it.
    const Reader all = WQXMLReader::newWithURL_options_error(source, 1 | 2 | 8 | 256 | 16384, nullptr);
    EXPECT_EQ(rest(all), (Lines{"0 10 a", "0 1 a", "1 14 #text= ", "1 1 b", "1 5 e", "1 4 #cdata-section=c", "0 15 a"}));
}

TEST(WQXMLReaderTest, TheErrorIsNeverWritten) {
    const Folder folder;
    const Ref<NSError> before = NSError::errorWithDomain_code_description(u"d", 1, u"m");
    Ref<NSError> written = before;
    WQXMLReader::newWithURL_options_error(fileURL(folder.file("a.xml", "<a/>")), 0, &written);
    WQXMLReader::newWithURL_options_error(fileURL(folder.path / "none.xml"), 0, &written);
    WQXMLReader::newWithURL_options_error(nullptr, 0, &written);
    WQXMLReader::newWithData_baseURL_error(data("<a/>"), nullptr, &written);
    WQXMLReader::newWithData_baseURL_error(nullptr, nullptr, &written);
    const Reader broken = WQXMLReader::newWithData_baseURL_error(data("<a>"), nullptr, &written);
    EXPECT_NE(raised([&] { rest(broken); }), "");
    EXPECT_EQ(written, before);
}

TEST(WQXMLReaderTest, ASubclassMayRefuse) {
    struct Refusing : WQXMLReader {
        bool initWithData_baseURL_error(const Ref<NSData>&, const Ref<NSURL>&, Ref<NSError>*) override { return false; }
    };
    EXPECT_FALSE(WQXMLReader::newWithData_baseURL_error<Refusing>(data("<a/>"), nullptr, nullptr));
}

TEST(WQXMLReaderTest, AReaderThatNeverReadsGoes) {
    EXPECT_TRUE(document());
    EXPECT_TRUE(unopened());
    EXPECT_TRUE(reader(""));
}

// ---- The bytes

TEST(WQXMLReaderTest, BytesAreReadAfterTheCallerHasLetGoOfThem) {
    auto bytes = test::data("<a>" + std::string(100'000, 'x') + "<b>\xC3\xA9</b></a>");
    const Reader all = WQXMLReader::newWithData_baseURL_error(bytes, nullptr, nullptr);
    bytes = nullptr;
    EXPECT_EQ(all->read(), 1);
    EXPECT_EQ(all->read(), 1);
    EXPECT_EQ(rest(all), (Lines{"1 1 b", "2 3 #text=\xC3\xA9", "1 15 b", "0 15 a"}));
}

TEST(WQXMLReaderTest, BytesThatAreAppendedToAreReadAsTheyWere) {
    const auto bytes = test::data("<a>" + std::string(100'000, 'x'));
    bytes->append("<b/></a>");
    const Reader all = WQXMLReader::newWithData_baseURL_error(bytes, nullptr, nullptr);
    bytes->append("<c/>");
    EXPECT_EQ(all->read(), 1);
    bytes->append(std::string(1'000'000, 'y'));
    EXPECT_EQ(all->read(), 1);
    EXPECT_EQ(all->value().length(), 100'000u);
    EXPECT_EQ(rest(all), (Lines{"1 1 b", "0 15 a"}));
    EXPECT_EQ(bytes->length(), 1'100'015u);
}

TEST(WQXMLReaderTest, TwoReadersOfTheSameBytesDoNotMeet) {
    const auto bytes = data("<a><b/><c/></a>");
    const Reader one = WQXMLReader::newWithData_baseURL_error(bytes, nullptr, nullptr);
    Reader other = WQXMLReader::newWithData_baseURL_error(bytes, nullptr, nullptr);
    EXPECT_EQ(at(u"c", one)->name(), u"c");
    EXPECT_EQ(at(u"b", other)->name(), u"b");
    EXPECT_EQ(one->name(), u"c");
    other = nullptr;
    EXPECT_EQ(rest(one), (Lines{"0 15 a"}));
}

// ---- Errors

TEST(WQXMLReaderTest, AnErrorIsRaisedWhereverItStands) {
    struct {
        const char* place;
        std::string xml, reason;
    } const rows[] = {
        {"nothing at all", "", "Extra content at the end of the document\n"},
        {"blanks only", "  \n", "Extra content at the end of the document\n"},
        {"text before the root", "x<a/>", "Document is empty\n"},
        {"the XML declaration", "<?xml version='1.0' encoding='none'?><a/>", "Unsupported encoding none\n"},
        {"the document type", "<!DOCTYPE a [<!ENTITY>]><a/>", "Space required after '<!ENTITY'\n"},
        {"a start tag", "<a k='1' k='2'/>", "Attribute k redefined\n"},
        {"a prefix", "<a><p:b/></a>", "Namespace prefix p on b is not defined\n"},
        {"the prefix of an attribute", "<a p:k=''/>", "Namespace prefix p for k on a is not defined\n"},
        {"text", "<a>]]></a>", "Sequence ']]>' not allowed in content\n"},
        {"an entity", "<a>&e;</a>", "Entity 'e' not defined\n"},
        {"a character", "<a>\x01</a>", "PCDATA invalid Char value 1\n"},
        {"bytes that are no UTF-8", "<a>\xFF</a>", "Input is not proper UTF-8, indicate encoding !\nBytes: 0xFF 0x3C 0x2F 0x61\n"},
        {"a comment", "<a><!-- -- --></a>", "Double hyphen within comment"},
        {"an instruction", "<a><?xml ?></a>", "XML declaration allowed only at the start of the document\n"},
        {"an end tag", "<a><b></a>", "Opening and ending tag mismatch: b line 1 and a\n"},
        {"the end of the input", "<a><b>", "Extra content at the end of the document\n"},
        {"behind the root", "<a/>x", "Extra content at the end of the document\n"},
        {"a second root", "<a/><b/>", "Extra content at the end of the document\n"},
        {"a mere warning", "<a xmlns='foo'/>", "xmlns: URI foo is not absolute\n"},
        {"a percent sign", "<a xmlns='%zz'/>", "xmlns: '%zz' is not a valid URI\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.place);
        const Reader broken = reader(row.xml);
        ASSERT_TRUE(broken);
        EXPECT_THAT(raised([&] { rest(broken); }), testing::StartsWith("XML Exception: " + row.reason));
    }
}

TEST(WQXMLReaderTest, WhatStandsWellAheadOfAnErrorIsReadFirst) {
    const std::string much(10'000, 'x');
    const Reader broken = reader("<a><b/>" + much + "<c></a>");
    EXPECT_EQ(broken->read(), 1);
    EXPECT_EQ(broken->name(), u"a");
    EXPECT_EQ(broken->read(), 1);
    EXPECT_EQ(broken->name(), u"b");
    EXPECT_EQ(raised([&] { rest(broken); }), "XML Exception: Opening and ending tag mismatch: c line 1 and a\n");
}

TEST(WQXMLReaderTest, NextRaisesWhatItFindsInTheSubtree) {
    const Reader broken = at(u"b", reader("<a><b><c/>" + std::string(10'000, 'x') + "<d></b><e/></a>"));
    EXPECT_EQ(raised([&] { broken->next(); }), "XML Exception: Opening and ending tag mismatch: d line 1 and b\n");
    EXPECT_EQ(rest(broken), (Lines{"2 1 d", "-1"}));  // what libxml2 had made by then
}

TEST(WQXMLReaderTest, AFileWithAnErrorRaisesAsBytesDo) {
    const Folder folder;
    EXPECT_EQ(
        raised([&] { rest(readerOf(folder.file("a.xml", "<a>]]></a>"))); }), "XML Exception: Sequence ']]>' not allowed in content\n");
    EXPECT_EQ(raised([&] { rest(readerOf(folder.file("b.xml", ""))); }), "XML Exception: Extra content at the end of the document\n");
}

constexpr const char* kTruncated = "<a><b/>";

// With the error at the front, in the middle, at the end, and none but a warning.
constexpr const char* kBroken[] = {
    "", "<a p:k=''><b/></a>", "<a>&e;<b/></a>", "<a><b></a>", kTruncated, "<a/><b/>", "<a xmlns='foo'><b/></a>",
};

Reader raisedFrom(std::string_view xml) {
    const Reader broken = reader(xml);
    EXPECT_NE(raised([&] { rest(broken); }), "");
    return broken;
}

TEST(WQXMLReaderTest, AfterAnErrorReadAnswersMinusOne) {
    for (const std::string_view xml : kBroken) {
        SCOPED_TRACE(xml);
        if (xml == kTruncated) continue;
        const Reader broken = raisedFrom(xml);
        for (int time = 0; time < 3; ++time) EXPECT_EQ(raised([&] { EXPECT_EQ(broken->read(), -1); }), "");
    }
}

// libxml2's reader walks its leftovers in circles then.
TEST(WQXMLReaderTest, AfterATruncatedInputReadGoesThroughWhatWasThere) {
    const Reader broken = raisedFrom(kTruncated);
    EXPECT_EQ(broken->name(), u"b");
    EXPECT_EQ(rest(broken), (Lines{"0 15 a", "-1"}));
    EXPECT_EQ(broken->nodeType(), 9);
    EXPECT_EQ(broken->read(), 1);
    EXPECT_EQ(broken->name(), u"a");
}

TEST(WQXMLReaderTest, AfterAnErrorEveryOperationAnswersWithoutRaising) {
    for (const char* xml : kBroken) {
        SCOPED_TRACE(xml);
        withEachOperation([&](const auto& operation) {
            const Reader broken = raisedFrom(xml);
            EXPECT_EQ(raised([&] { operation.call(broken); }), "");
        });
    }
}

TEST(WQXMLReaderTest, AfterAnErrorTheReaderCanBeClosed) {
    for (const char* xml : kBroken) {
        SCOPED_TRACE(xml);
        const Reader broken = raisedFrom(xml);
        EXPECT_EQ(broken->close(), 0);
        EXPECT_EQ(broken->read(), -1);
        EXPECT_EQ(broken->readState(), 4);
        EXPECT_FALSE(broken->name());
    }
}

TEST(WQXMLReaderTest, OnlyTheFirstErrorIsRaised) {
    const std::string much(10'000, 'x');
    for (const std::string first : {"<b xmlns='foo'/>", "<b p:k=''/>", "&e;", "]]>"}) {
        SCOPED_TRACE(first);
        const Reader broken = raisedFrom("<a>" + first + much + "<c></a>" + much);
        EXPECT_EQ(
            raised([&] {
                while (broken->read() == 1) continue;
            }),
            "");
        EXPECT_EQ(broken->read(), -1);
    }
}

TEST(WQXMLReaderTest, WhatWasReadAheadOfAnErrorIsStillThere) {
    const Reader broken = at(u"b", reader("<a><b k='1'/>" + std::string(10'000, 'x') + "<c></a>"));
    EXPECT_NE(raised([&] { rest(broken); }), "");
    EXPECT_EQ(broken->nodeType(), 3);
    EXPECT_EQ(broken->value().length(), 10'000u);
}

TEST(WQXMLReaderTest, AReaderMayGoAfterAnErrorAndTheNextOneReads) {
    EXPECT_NE(raised([] { rest(reader("<a><b>")); }), "");
    EXPECT_EQ(rest(reader("<a/>")), (Lines{"0 1 a"}));
    EXPECT_EQ(dump(parse("<a><b/></a>")), "a[b]");
}

TEST(WQXMLReaderTest, AReaderThatGoesBeforeAnErrorIsSilent) {
    EXPECT_EQ(raised([] { at(u"b", reader("<a><b/>" + std::string(10'000, 'x') + "<c></a>")); }), "");
    EXPECT_EQ(
        raised([] {
            const Reader broken = at(u"b", reader("<a><b/>" + std::string(10'000, 'x') + "<c></a>"));
            EXPECT_EQ(broken->close(), 0);
        }),
        "");
}

TEST(WQXMLReaderTest, BytesThatContradictTheirEncodingRaiseWhenTheReaderIsMade) {
    const std::string likeUTF32(std::string("<\0\0\0", 4) + "\0\0\0a>\xFF\xFF\xFF\xFF</a>");
    EXPECT_THAT(raised([&] { reader(likeUTF32); }), testing::StartsWith("XML Exception: input conversion failed due to input error"));
    EXPECT_TRUE(gRegisterNode);
}

// Parsed documents look for it, and readers of files do not, whatever was parsed before.
TEST(WQXMLReaderTest, ADocumentTypeElsewhereIsNotReadForAFileNorForBytes) {
    const Folder folder;
    const char* xml = "<!DOCTYPE a SYSTEM 'missing.dtd'><a/>";
    const auto path = folder.file("a.xml", xml);
    for (int time = 0; time < 2; ++time) {
        EXPECT_EQ(rest(reader(xml, fileURL(path)->absoluteString())), (Lines{"0 10 a", "0 1 a"}));
        EXPECT_EQ(rest(readerOf(path)), (Lines{"0 10 a", "0 1 a"}));
        EXPECT_NE(raised([&] { WQXMLDocument::newWithContentsOfURL_arguments_error(fileURL(path), nullptr, nullptr); }), "");
    }
}

// ---- Wrappers

namespace {

// Counts the wrappers of elements that are made while one of these lives.
struct Counted : WQXMLElement {
    bool initWithXMLNode(_xmlNode* node) override {
        ++made;
        return WQXMLElement::initWithXMLNode(node);
    }
    static inline int made = 0;
};
class CountedElements {
public:
    CountedElements() : before(std::exchange(DefaultElementClass, &wq::Class::of<Counted>())) { Counted::made = 0; }
    ~CountedElements() { DefaultElementClass = before; }
    CountedElements(const CountedElements&) = delete;
    CountedElements& operator=(const CountedElements&) = delete;

private:
    const wq::Class* before;
};

class Registering {
public:
    explicit Registering(bool value) : before(setRegisterNode(value)) {}
    ~Registering() { setRegisterNode(before); }
    Registering(const Registering&) = delete;
    Registering& operator=(const Registering&) = delete;

private:
    bool before;
};

}  // namespace

TEST(WQXMLReaderTest, WhatAReaderReadsHasNoWrappers) {
    parse("<a/>");  // sets the classes
    const CountedElements elements;
    const Reader all = reader("<a k='1'><b/><c>t</c></a>");
    while (all->read() == 1) {
        while (all->moveToNextAttribute() == 1) all->readAttributeValue();
        all->getAttribute(u"k");
        all->lookupNamespace(u"p");
    }
    EXPECT_EQ(Counted::made, 0);
    EXPECT_EQ(dump(parse("<a><b/></a>")), "a[b]");
    EXPECT_EQ(Counted::made, 2);
}

TEST(WQXMLReaderTest, ADocumentParsedBetweenTwoReadsHasItsWrappers) {
    struct Paragraph : WQXMLElement {};
    const auto names = NSDictionary::dictionary({{u"p", &wq::Class::of<Paragraph>()}});
    const auto arguments = NSDictionary::dictionary({{DefaultElementClassesKey, NSDictionary::dictionary({{DefaultNamespaceKey, names}})}});
    std::vector<Ref<WQXMLDocument>> documents;
    const Reader all = reader("<a><b k='1'/>text<c/></a>");
    while (all->read() == 1) {
        documents.push_back(parse("<a><p k='1'>t</p><!--c--></a>", arguments));
        if (all->moveToFirstAttribute() == 1) documents.push_back(parse("<a><p k='1'>t</p><!--c--></a>", arguments));
    }
    EXPECT_EQ(documents.size(), 6u);
    for (const auto& each : documents) {
        EXPECT_EQ(dump(each), "a[p[\"t\"],<!>]");
        EXPECT_TRUE(wq::cast<Paragraph>(find(each, u"p")));
        EXPECT_EQ(wq::cast<WQXMLElement>(find(each, u"p"))->getAttribute(u"k"), u"1");
    }
}

TEST(WQXMLReaderTest, ADocumentThatWasJustParsedKeepsTheClassesOfItsElements) {
    struct Paragraph : WQXMLElement {};
    const auto names = NSDictionary::dictionary({{u"p", &wq::Class::of<Paragraph>()}});
    const auto arguments = NSDictionary::dictionary({{DefaultElementClassesKey, NSDictionary::dictionary({{DefaultNamespaceKey, names}})}});
    const auto document = parse("<a/>", arguments);
    document->documentElement()->appendChild(document->createElement(u"p"));
    const auto loose = document->createElement(u"p");
    rest(reader("<p><q/></p>"));
    EXPECT_TRUE(wq::cast<Paragraph>(loose));
    EXPECT_TRUE(wq::cast<Paragraph>(find(document, u"p")));
}

TEST(WQXMLReaderTest, TheRegistrationOfNodesIsAsItWasAfterEachOperation) {
    WQLibXMLInit();
    for (const bool value : {true, false}) {
        const Registering registering(value);
        withEachOperation([&](const auto& operation) {
            const Reader each = at(u"a", document());
            EXPECT_EQ(gRegisterNode, value);
            operation.call(each);
            EXPECT_EQ(gRegisterNode, value);
        });
        EXPECT_EQ(gRegisterNode, value);
        unopened()->read();
        EXPECT_EQ(gRegisterNode, value);
    }
}

TEST(WQXMLReaderTest, TheRegistrationOfNodesIsAsItWasAfterAnError) {
    for (const bool value : {true, false}) {
        const Registering registering(value);
        for (const char* xml : {"", "<a p:k=''/>", "<a>&e;</a>", "<a><b>", "<a/>x", "<a xmlns='foo'/>"}) {
            SCOPED_TRACE(xml);
            Reader broken = reader(xml);
            EXPECT_NE(raised([&] { rest(broken); }), "");
            EXPECT_EQ(gRegisterNode, value);
            broken = nullptr;
            EXPECT_EQ(gRegisterNode, value);
        }
        Reader broken = at(u"b", reader("<a><b>" + std::string(10'000, 'x') + "<c></b></a>"));
        EXPECT_NE(raised([&] { broken->next(); }), "");
        EXPECT_EQ(gRegisterNode, value);
    }
}

// ---- Size

TEST(WQXMLReaderTest, ALargeFileIsReadWithFewNodesAlive) {
    const Folder folder;
    constexpr int32_t records = 50'000;
    {
        std::ofstream file(folder.path / "large.xml", std::ios::binary);
        file << "<log>\n";
        const std::string text(950, 'x');
        for (int32_t number = 0; number < records; ++number)
            file << "<record n='" << number << "'><at>12:00</at>" << text << " &amp; more</record>\n";
        file << "</log>\n";
    }
    ASSERT_GT(std::filesystem::file_size(folder.path / "large.xml"), 50'000'000u);

    const int64_t before = wq::numberOfLivingNodes();
    int64_t most = 0;
    int32_t elements = 0, deepest = 0;
    NSString lastNumber;
    const Reader all = readerOf(folder.path / "large.xml");
    while (all->read() == 1) {
        most = std::max(most, wq::numberOfLivingNodes() - before);
        deepest = std::max(deepest, all->depth());
        if (all->nodeType() != 1) continue;
        ++elements;
        if (all->localName() == u"record") lastNumber = all->getAttribute(u"n");
    }
    EXPECT_EQ(elements, 1 + 2 * records);
    EXPECT_EQ(lastNumber, u"49999");
    EXPECT_EQ(deepest, 3);
    EXPECT_GT(most, 0);
    EXPECT_LT(most, 1000);
}
