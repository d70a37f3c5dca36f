// The record of one open element.
#include "dom/WQXMLWriterElement.h"

#include "tests/dom/Support.h"

namespace {

using namespace test;

Ref<WQXMLWriterElement> record(const NSString& prefix, const NSString& uri) {
    return WQXMLWriterElement::newWithLocalName_prefix_namespaceURI(u"a", prefix, uri);
}

TEST(WQXMLWriterElementTest, ItHoldsItsNameAndWhatItDefines) {
    const auto one = record(u"p", u"u:1");
    EXPECT_EQ(one->name(), u"a");
    ASSERT_EQ(one->nsDefs().size(), 1u);
    EXPECT_EQ(one->nsDefs()[0]->count(), 2u);
    EXPECT_EQ(one->nsDefs()[0]->objectForKey(u"prefix").string(), u"p");
    EXPECT_EQ(one->nsDefs()[0]->objectForKey(u"namespace").string(), u"u:1");
}

TEST(WQXMLWriterElementTest, WithoutAPrefixTheMapHasTheNamespaceAlone) {
    const auto one = record(nullptr, u"u:1");
    ASSERT_EQ(one->nsDefs().size(), 1u);
    EXPECT_EQ(one->nsDefs()[0]->count(), 1u);
    EXPECT_FALSE(one->nsDefs()[0]->containsKey(u"prefix"));
    EXPECT_EQ(one->nsDefs()[0]->objectForKey(u"namespace").string(), u"u:1");
}

TEST(WQXMLWriterElementTest, WithoutANamespaceNothingIsDefined) {
    EXPECT_TRUE(record(nullptr, nullptr)->nsDefs().empty());
    EXPECT_TRUE(record(u"p", nullptr)->nsDefs().empty());
}

TEST(WQXMLWriterElementTest, TheNameMayBeNull) {
    EXPECT_EQ(WQXMLWriterElement::newWithLocalName_prefix_namespaceURI(nullptr, u"p", u"u:1")->name(), nullptr);
}

TEST(WQXMLWriterElementTest, DefinitionsAddUpInOrderAlsoEqualOnes) {
    const auto one = record(u"p", u"u:1");
    one->define_namespaceURI(u"q", u"u:2");
    one->define_namespaceURI(u"r", nullptr);
    one->define_namespaceURI(nullptr, u"u:3");
    one->define_namespaceURI(u"p", u"u:1");
    std::vector<std::string> all;
    for (const auto& map : one->nsDefs())
        all.push_back(
            wq::toUTF8(wq::printed(map->objectForKey(u"prefix").string())) + "=" + wq::toUTF8(map->objectForKey(u"namespace").string()));
    EXPECT_THAT(all, testing::ElementsAre("p=u:1", "q=u:2", "(null)=u:3", "p=u:1"));
}

TEST(WQXMLWriterElementTest, APairIsDefinedIfBothAreEqual) {
    const auto one = record(u"p", u"u:1");
    one->define_namespaceURI(nullptr, u"u:2");
    one->define_namespaceURI(u"q", u"u:3");
    one->define_namespaceURI(u"e", u"");
    struct Row {
        const char16_t *prefix, *uri;
        bool defined;
    };
    for (const Row& row : {
             Row{u"p", u"u:1", true},
             Row{u"q", u"u:3", true},
             Row{u"e", u"", true},
             Row{u"p", u"u:2", false},
             Row{u"p", u"u:3", false},
             Row{u"q", u"u:1", false},
             Row{u"P", u"u:1", false},
             Row{u"p", u"U:1", false},
             Row{u"p", u"u:11", false},
             Row{u"p", nullptr, false},
             Row{u"p", u"", false},
             Row{u"e", nullptr, false},
             Row{nullptr, u"u:2", false},  // a default namespace never counts
             Row{nullptr, u"u:1", false},
             Row{nullptr, nullptr, false},
             Row{u"", u"u:2", false},
             Row{u"", u"u:1", false},
         }) {
        SCOPED_TRACE(wq::toUTF8(wq::printed(row.prefix)) + " " + wq::toUTF8(wq::printed(row.uri)));
        EXPECT_EQ(one->isDefined_namespaceURI(row.prefix, row.uri), row.defined);
    }
}

TEST(WQXMLWriterElementTest, APrefixMayBeDefinedTwice) {
    const auto one = record(u"p", u"u:1");
    one->define_namespaceURI(u"p", u"u:2");
    EXPECT_TRUE(one->isDefined_namespaceURI(u"p", u"u:1"));
    EXPECT_TRUE(one->isDefined_namespaceURI(u"p", u"u:2"));
}

TEST(WQXMLWriterElementTest, ASubclassMayRefuse) {
    struct Refusing : WQXMLWriterElement {
        bool initWithLocalName_prefix_namespaceURI(const NSString&, const NSString&, const NSString&) override { return false; }
    };
    EXPECT_FALSE(WQXMLWriterElement::newWithLocalName_prefix_namespaceURI<Refusing>(u"a", u"p", u"u:1"));
}

TEST(WQXMLWriterElementTest, NullDefinesNothing) {
    const Ref<WQXMLWriterElement> none;
    none->define_namespaceURI(u"p", u"u:1");
    EXPECT_FALSE(none->isDefined_namespaceURI(u"p", u"u:1"));
    EXPECT_TRUE(none->nsDefs().empty());
    EXPECT_EQ(none->name(), nullptr);
}

}  // namespace
