// Documents that the application makes by libxml2's own calls: their nodes have wrappers as well, and
// names in a dictionary that goes with the document.
#include <libxml/parser.h>

#include <memory>

#include "dom/WQXMLAttr.h"
#include "dom/WQXMLWriter.h"
#include "tests/dom/Support.h"

namespace {

using namespace test;

constexpr std::string_view kMarkup =
    "<!DOCTYPE a [<!ENTITY e 'x'><!ATTLIST b id ID #IMPLIED>]>"
    "<a xmlns:n='u:1'><b k='v' n:id='i'>some text that is rather long<c/><!--note--></b><d/></a>";

struct FreeDocument {
    void operator()(xmlDocPtr doc) const { xmlFreeDoc(doc); }
};
using Document = std::unique_ptr<xmlDoc, FreeDocument>;

class ApplicationDocuments : public testing::TestWithParam<int> {
protected:
    Document read() const {
        return Document(xmlReadMemory(kMarkup.data(), static_cast<int>(kMarkup.size()), nullptr, nullptr, GetParam()));
    }
    static Ref<WQXMLNode> root(const Document& doc) {
        return Ref<WQXMLNode>(static_cast<WQXMLNode*>(xmlDocGetRootElement(doc.get())->_private));
    }
    Ref<WQXMLDocument> ours = parse("<z/>");
    Document doc = read();
};

INSTANTIATE_TEST_SUITE_P(WithAndWithoutDictionary, ApplicationDocuments, testing::Values(0, XML_PARSE_NODICT));

constexpr const char* kElement = "<b xmlns:n=\"u:1\" k=\"v\" n:id=\"i\">some text that is rather long<c/><!--note--></b>";

TEST_P(ApplicationDocuments, ARemovedElementOutlivesIt) {
    auto removed = root(doc)->removeChild(root(doc)->firstChild());
    doc = nullptr;
    EXPECT_EQ(removed->nodeName(), u"b");
    EXPECT_EQ(wq::cast<WQXMLElement>(removed)->firstAttribute()->nextSibling()->namespaceURI(), u"u:1");
    EXPECT_EQ(removed->firstChild()->nodeValue(), u"some text that is rather long");
    ours->documentElement()->appendChild(removed);
    removed = nullptr;
    EXPECT_EQ(dump(ours), "z[b[\"some text that is rather long\",c,<!>]]");
}

TEST_P(ApplicationDocuments, ACopyOutlivesIt) {
    const auto copied = root(doc)->firstChild()->copyNode(false);
    doc = nullptr;
    EXPECT_EQ(copied->nodeName(), u"b");
    EXPECT_EQ(wq::cast<WQXMLElement>(copied)->getAttribute(u"k"), u"v");
}

TEST_P(ApplicationDocuments, ItsElementsMoveIntoOurs) {
    const auto moved = root(doc)->firstChild();
    ours->documentElement()->appendChild(moved);
    EXPECT_EQ(root(doc)->numberOfChildren(), 1u);
    doc = nullptr;
    EXPECT_EQ(serialised(moved), kElement);
    EXPECT_EQ(moved->ownerDocument(), ours);
}

TEST_P(ApplicationDocuments, OurElementsMoveInAndOutAgain) {
    const auto made = ours->createElement(u"made");
    root(doc)->appendChild(made);
    EXPECT_EQ(root(doc)->lastChild(), made);
    root(doc)->removeChild(made);
    const auto other = ours->createElement(u"other");
    root(doc)->appendChild(other);
    ours->documentElement()->appendChild(other);
    doc = nullptr;
    EXPECT_EQ(made->nodeName(), u"made");
    ours->documentElement()->appendChild(made);
    EXPECT_EQ(dump(ours), "z[other,made]");
}

TEST_P(ApplicationDocuments, LinkedNodesDieWithIt) {
    const auto linked = root(doc)->firstChild();
    doc = nullptr;
    EXPECT_EQ(linked->nodeType(), 0x7fff);
    EXPECT_FALSE(linked->nodeName());
}

TEST_P(ApplicationDocuments, ADocumentTypeMovesOnlyWithoutADictionary) {
    const auto type = root(doc)->previousSibling();
    ASSERT_EQ(type->nodeType(), XML_DTD_NODE);
    EXPECT_EQ(ours->insertChild_before(type, ours->documentElement()) == type, GetParam() == XML_PARSE_NODICT);
    doc = nullptr;
    EXPECT_EQ(type->nodeType(), GetParam() == XML_PARSE_NODICT ? XML_DTD_NODE : 0x7fff);
}

TEST_P(ApplicationDocuments, ADocumentTypeThatWasRemovedGoesWithItsDictionary) {
    const auto type = root(doc)->previousSibling();
    auto owner = wq::make<WQXMLDocument>(&WQXMLDocument::initWithDocImpl, doc.release());
    owner->removeChild(type);
    owner = nullptr;
    EXPECT_EQ(type->nodeType(), GetParam() == XML_PARSE_NODICT ? XML_DTD_NODE : 0x7fff);
}

TEST_P(ApplicationDocuments, OneThatADocumentTakesOverLetsItsNodesGo) {
    auto owner = wq::make<WQXMLDocument>(&WQXMLDocument::initWithDocImpl, doc.release());
    const auto removed = owner->documentElement()->removeChild(owner->documentElement()->firstChild());
    owner = nullptr;
    EXPECT_EQ(removed->nodeName(), u"b");
    EXPECT_EQ(removed->firstChild()->nodeValue(), u"some text that is rather long");
}

TEST_P(ApplicationDocuments, ItsRootBecomesOurs) {
    const auto taken = wq::cast<WQXMLElement>(root(doc));
    auto handed = taken;
    ours->setDocumentElement(std::move(handed));
    doc = nullptr;
    EXPECT_EQ(ours->documentElement(), taken);
    EXPECT_EQ(dump(ours), "a[b[\"some text that is rather long\",c,<!>],d]");
}

}  // namespace
