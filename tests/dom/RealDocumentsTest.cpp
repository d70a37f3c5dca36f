// Documents that nobody here wrote, from Debian packages: our walk against one over the bare tree.
#include <libxml/HTMLparser.h>
#include <libxml/xmlerror.h>

#include <algorithm>
#include <filesystem>

#include "dom/WQLibXML.h"
#include "dom/WQXMLAttr.h"
#include "tests/dom/Support.h"

namespace {

using namespace test;

constexpr const char* kMimeDatabase = "/usr/share/mime/packages/freedesktop.org.xml";  // shared-mime-info
constexpr const char* kPages = "/usr/share/doc/m4";                                    // m4-doc
constexpr const char* kRulesWithoutDTD = "/usr/share/X11/xkb/rules/evdev.xml";         // xkb-data

Ref<WQXMLDocument> open(const std::string& path, const Ref<NSDictionary>& arguments = nullptr) {
    Ref<NSError> error;
    auto document = WQXMLDocument::newWithContentsOfURL_arguments_error(NSURL::fileURLWithPath(wq::fromUTF8(path)), arguments, &error);
    EXPECT_FALSE(error) << path;
    return document;
}

// ---- The bare side: libxml2's fields and nothing else

const char* chars(const xmlChar* text) { return reinterpret_cast<const char*>(text); }

bool isNamed(xmlNodePtr node) { return node->type == XML_ELEMENT_NODE || node->type == XML_ATTRIBUTE_NODE; }
bool isDocument(xmlNodePtr node) { return node->type == XML_DOCUMENT_NODE || node->type == XML_HTML_DOCUMENT_NODE; }
bool isVisible(xmlNodePtr node) { return node->type != XML_ENTITY_DECL; }

// In document order; the children of an entity reference are those of its declaration.
xmlNodePtr bareNext(xmlNodePtr node) {
    if (node->children && isVisible(node->children)) return node->children;
    for (; !isDocument(node); node = node->parent)
        if (node->next) return node->next;
    return nullptr;
}

xmlNodePtr barePrevious(xmlNodePtr node) {
    if (!node->prev) return node->parent;
    node = node->prev;
    while (node->last && isVisible(node->last)) node = node->last;
    return node;
}

std::string bareName(xmlNodePtr node) {
    if (node->type == XML_TEXT_NODE) return "#text";
    if (!isNamed(node)) return "(null)";
    const std::string prefix = node->ns && node->ns->prefix ? std::string(chars(node->ns->prefix)) + ":" : "";
    return prefix + chars(node->name);
}

std::string bareStep(xmlNodePtr node) {
    if (!isNamed(node)) return "/(null)[1]";
    int position = 1;
    for (xmlNodePtr sibling = node->prev; sibling; sibling = sibling->prev)
        if (isNamed(sibling) && bareName(sibling) == bareName(node)) ++position;
    return "/" + bareName(node) + "[" + std::to_string(position) + "]";
}

std::string barePath(xmlNodePtr node) {
    std::string path;
    for (; node && node->type != XML_DOCUMENT_NODE; node = node->parent) path = (isDocument(node) ? "/(null)[1]" : bareStep(node)) + path;
    return path;
}

// ---- The comparison

void expectSameNode(const Ref<WQXMLNode>& ours, xmlNodePtr bare, bool withPath) {
    ASSERT_EQ(ours->xmlNode(), bare);
    EXPECT_EQ(ours->nodeType(), bare->type);
    EXPECT_EQ(wq::toUTF8(wq::printed(ours->nodeName())), bareName(bare));
    EXPECT_EQ(ours->namespaceURI(), wq::fromUTF8(isNamed(bare) && bare->ns ? bare->ns->href : nullptr));
    EXPECT_EQ(ours->nodeValue(), wq::fromUTF8(bare->type == XML_TEXT_NODE ? bare->content : nullptr));
    EXPECT_EQ(withPath ? wq::toUTF8(ours->XPath()) : "", withPath ? barePath(bare) : "");
}

void expectSameAttributes(const Ref<WQXMLElement>& element) {
    Ref<WQXMLNode> ours = element->firstAttribute();
    for (xmlAttrPtr bare = element->xmlNode()->properties; bare; bare = bare->next, ours = ours->nextSibling()) {
        expectSameNode(ours, reinterpret_cast<xmlNodePtr>(bare), false);
        xmlChar* value = xmlGetNsProp(bare->parent, bare->name, bare->ns ? bare->ns->href : nullptr);
        EXPECT_EQ(wq::cast<WQXMLAttr>(ours)->value(), wq::fromUTF8(value));
        xmlFree(value);
    }
    EXPECT_FALSE(ours);
}

// Every node forwards and backwards; a path is quadratic in siblings, so only each tenth is compared.
size_t expectSameWalk(const Ref<WQXMLDocument>& document) {
    size_t nodes = 0;
    Ref<WQXMLNode> ours = document->documentElement(), last;
    for (xmlNodePtr bare = ours->xmlNode(); bare; bare = bareNext(bare), ours = ours->next()) {
        expectSameNode(ours, bare, nodes % 10 == 0);
        if (testing::Test::HasFailure()) return nodes;
        if (ours->nodeType() == XML_ELEMENT_NODE) expectSameAttributes(wq::cast<WQXMLElement>(ours));
        last = ours;
        ++nodes;
    }
    EXPECT_FALSE(ours);
    size_t backwards = 0;
    for (xmlNodePtr bare = last->xmlNode(); bare != document->documentElement()->xmlNode(); bare = barePrevious(bare)) {
        EXPECT_EQ(last->xmlNode(), bare);
        if (testing::Test::HasFailure()) return nodes;
        last = last->previous();
        ++backwards;
    }
    EXPECT_EQ(backwards, nodes - 1);
    return nodes;
}

size_t gReports;
void countReport(void*, xmlErrorPtr) { ++gReports; }

// Whether the bare parser has nothing to say about a page.
bool readsWithoutReport(std::string_view html) {
    xmlSetStructuredErrorFunc(nullptr, countReport);
    const bool registers = setRegisterNode(false);
    gReports = 0;
    xmlDocPtr doc = htmlReadMemory(html.data(), static_cast<int>(html.size()), nullptr, nullptr, 0);
    const bool clean = doc && gReports == 0;
    xmlFreeDoc(doc);
    setRegisterNode(registers);
    xmlSetStructuredErrorFunc(nullptr, wqStructuredErrorFunc);
    return clean;
}

TEST(RealDocumentsTest, TheMimeDatabaseIsWalkedNodeForNode) {
    const auto document = open(kMimeDatabase);
    ASSERT_TRUE(document);
    EXPECT_EQ(document->documentElement()->nodeName(), u"mime-info");
    EXPECT_GT(expectSameWalk(document), 100000u);
}

TEST(RealDocumentsTest, PagesThatTheParserReadsWithoutAReportAreWalkedNodeForNode) {
    const auto html = NSDictionary::dictionary({{WQXMLDocumentParseAsHTMLKey, true}});
    ASSERT_TRUE(WQXMLDocument::newDocument());  // the hooks are in place
    size_t clean = 0;
    for (const auto& file : std::filesystem::directory_iterator(kPages)) {
        if (file.path().extension() != ".html") continue;
        const auto data = NSData::dataWithContentsOfURL_error(NSURL::fileURLWithPath(wq::fromUTF8(file.path().string())), nullptr);
        if (!readsWithoutReport(data->view())) continue;
        SCOPED_TRACE(file.path());
        ++clean;
        const auto document = open(file.path(), html);
        ASSERT_TRUE(document);
        EXPECT_EQ(document->nodeType(), 13);
        expectSameWalk(document);
    }
    EXPECT_GT(clean, 10u);
}

TEST(RealDocumentsTest, ADocumentWhoseDTDIsMissingRaises) {
    EXPECT_THAT(raised([] { open(kRulesWithoutDTD); }), testing::StartsWith("XML Exception: failed to load external entity"));
    EXPECT_TRUE(parse("<a/>"));
}

TEST(RealDocumentsTest, TheSampleManuscriptIsWalkedNodeForNode) {
    const auto document = open(WQ_SOURCE_FOLDER "/examples/manuscript/manuscript.xml");
    ASSERT_TRUE(document);
    EXPECT_GT(expectSameWalk(document), 400u);
    EXPECT_EQ(document->documentElement()->getAttribute(u"publisher"), u"The Landing Stage Press, 1st edition");
}

// What the sample promises to hold.
TEST(RealDocumentsTest, TheSampleManuscriptHoldsTextBeyondTheBasicPlaneACommentAndACDATASection) {
    const auto document = open(WQ_SOURCE_FOLDER "/examples/manuscript/manuscript.xml");
    size_t comments = 0, sections = 0, remarks = 0, entityReferences = 0;
    for (Ref<WQXMLNode> node = document->documentElement(); node; node = node->next()) {
        comments += node->nodeType() == XML_COMMENT_NODE;
        sections += node->nodeType() == XML_CDATA_SECTION_NODE;
        remarks += node->nodeName() == u"note:remark";
        entityReferences += node->nodeType() == XML_ENTITY_REF_NODE;
    }
    EXPECT_GE(comments, 1u);
    EXPECT_GE(sections, 1u);
    EXPECT_GE(remarks, 1u);
    EXPECT_EQ(entityReferences, 0u);
    const NSString text = document->documentElement()->innerText();
    EXPECT_NE(text.view().find(u"\U0001D54A"), std::u16string_view::npos);
    EXPECT_NE(text.view().find(u"\U0001F600"), std::u16string_view::npos);
}

}  // namespace
