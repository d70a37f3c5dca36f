// What the constructors and edits do when libxml2 gets no memory for a node or a namespace.
#include <libxml/parser.h>

#include "dom/WQLibXML.h"
#include "dom/WQXMLWriter.h"
#include "tests/dom/Support.h"

namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

// While one of these lives, libxml2 gets no memory of that size, and reports nothing: with the library's own
// callback the want of memory itself would be raised.
class WithoutMemoryFor {
public:
    explicit WithoutMemoryFor(size_t size) {
        refused = size;
        plain = xmlMalloc;
        xmlMalloc = refuse;
        xmlSetStructuredErrorFunc(nullptr, [](void*, xmlErrorPtr) {});
    }
    ~WithoutMemoryFor() {
        xmlMalloc = plain;
        xmlSetStructuredErrorFunc(nullptr, wqStructuredErrorFunc);
    }
    WithoutMemoryFor(const WithoutMemoryFor&) = delete;
    WithoutMemoryFor& operator=(const WithoutMemoryFor&) = delete;

private:
    static void* refuse(size_t size) { return size == refused ? nullptr : plain(size); }
    static inline size_t refused = 0;
    static inline xmlMallocFunc plain = nullptr;
};

struct WantOfMemoryTest : testing::Test {
    Ref<WQXMLDocument> document = parse("<a k='1'/>");
    Ref<WQXMLElement> root = document->documentElement();
    Assertions failed;
};

TEST_F(WantOfMemoryTest, ATextConstructorAssertsAndGivesNull) {
    const WithoutMemoryFor nodes(sizeof(xmlNode));
    EXPECT_FALSE(WQXMLText::textWithString(u"t"));
    EXPECT_THAT(failed.descriptions, ElementsAre("Could not create node"));
    EXPECT_TRUE(gRegisterNode);
}

TEST_F(WantOfMemoryTest, AnElementConstructorGivesNull) {
    const WithoutMemoryFor nodes(sizeof(xmlNode));
    EXPECT_FALSE(WQXMLElement::elementWithName(u"e"));
    EXPECT_THAT(failed.descriptions, IsEmpty());
    EXPECT_TRUE(gRegisterNode);
}

TEST_F(WantOfMemoryTest, AQualifiedElementConstructorAssertsAndGivesNullForWantOfANodeOrANamespace) {
    for (size_t size : {sizeof(xmlNode), sizeof(xmlNs)}) {
        const WithoutMemoryFor either(size);
        EXPECT_FALSE(WQXMLElement::elementWithQualifiedName_namespaceURI(u"p:e", u"u:1"));
    }
    EXPECT_THAT(failed.descriptions, ElementsAre("Error initializing WQXMLElement", "Error initializing WQXMLElement"));
}

TEST_F(WantOfMemoryTest, TheFactoriesGiveNull) {
    const WithoutMemoryFor nodes(sizeof(xmlNode));
    EXPECT_FALSE(document->createElement(u"e"));
    EXPECT_FALSE(document->createElement_namespaceURI(u"p:e", u"u:1"));
    EXPECT_FALSE(document->createTextNode(u"t"));
    EXPECT_THAT(failed.descriptions, IsEmpty());
}

TEST_F(WantOfMemoryTest, TheFactoryOfQualifiedElementsAssertsForWantOfANamespace) {
    const WithoutMemoryFor namespaces(sizeof(xmlNs));
    EXPECT_FALSE(document->createElement_namespaceURI(u"p:e", u"u:1"));
    EXPECT_THAT(failed.descriptions, ElementsAre("Could not create new namespace structure"));
}

TEST_F(WantOfMemoryTest, SettingAnAttributeStopsForWantOfANamespace) {
    const WithoutMemoryFor namespaces(sizeof(xmlNs));
    root->setAttribute_namespaceURI_value(u"p:x", u"u:1", u"v");
    EXPECT_FALSE(root->hasAttribute(u"x"));
    EXPECT_THAT(failed.descriptions, IsEmpty());
}

TEST_F(WantOfMemoryTest, RemovingAnAttributeGoesOnWithoutANamespace) {
    const WithoutMemoryFor namespaces(sizeof(xmlNs));
    root->removeAttribute_namespaceURI(u"k", u"u:1");
    EXPECT_THAT(failed.descriptions, ElementsAre("Internal Error: Could not create namespace for removeAttribute"));
    EXPECT_FALSE(root->hasAttribute(u"k"));
}

TEST_F(WantOfMemoryTest, CopyingIsNull) {
    const WithoutMemoryFor nodes(sizeof(xmlNode));
    EXPECT_FALSE(root->copy());
    EXPECT_FALSE(root->splitAtIndex(0));
    EXPECT_EQ(root->outerXML(), nullptr);
}

TEST_F(WantOfMemoryTest, AWriterToATreeIsNull) {
    const WithoutMemoryFor writers(sizeof(xmlDoc));
    EXPECT_FALSE(WQXMLWriter::newToXMLDocument());
}

TEST(WQLibXMLTest, AFailedAttachIsRaisedAsInconsistency) {
    class MemoryEnds : public WQXMLEventListener {
    public:
        void handleEvent(const Ref<WQXMLEvent>&) override { nodes.emplace(sizeof(xmlNode)); }
        std::optional<WithoutMemoryFor> nodes;
    } memoryEnds;
    const auto document = parse("<r><a/></r>");
    document->documentElement()->addListener_forEvent_useCapture(&memoryEnds, 8, true);
    EXPECT_EQ(
        raised([&] { document->documentElement()->setInnerXML(u"<n/>"); }),
        "NSInternalInconsistencyException: Could not add children to element");
    memoryEnds.nodes.reset();
    EXPECT_EQ(dump(document), "r");
}

}  // namespace
