// Inner and outer XML, read and set.
#include <libxml/parser.h>
#include <libxml/xmlerror.h>

#include <functional>

#include "dom/WQLibXML.h"
#include "dom/WQXMLAttr.h"
#include "tests/dom/Support.h"

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

constexpr int32_t kRemoved = 8;
constexpr const char* kFailedAttach = "NSInternalInconsistencyException: Could not add children to element";
constexpr const char16_t* kXMLNamespace = u"http://www.w3.org/XML/1998/namespace";

// Does what it is told when it hears something.
struct Doing final : WQXMLEventListener {
    explicit Doing(std::function<void(const Ref<WQXMLEvent>&)> action) : act(std::move(action)) {}
    void handleEvent(const Ref<WQXMLEvent>& event) override { act(event); }
    std::function<void(const Ref<WQXMLEvent>&)> act;
};

struct Paragraph : WQXMLElement {};
struct Emphasis : WQXMLElement {};

struct Refusing : WQXMLElement {
    static inline int calls = 0;
    bool initWithXMLNode(_xmlNode*) override { return ++calls, false; }
};

struct Raising : WQXMLElement {
    bool initWithXMLNode(_xmlNode*) override { throw WQXMLException(u"Refusal", u"no"); }
};

// Writes down every local name and namespace that it is made for.
struct Watching : WQXMLElement {
    static inline std::vector<std::string> names;
    bool initWithXMLNode(_xmlNode* node) override {
        if (!WQXMLElement::initWithXMLNode(node)) return false;
        names.push_back(wq::toUTF8(localName()) + " {" + wq::toUTF8(wq::printed(namespaceURI())) + "}");
        return true;
    }
};

template <class T> bool isExactly(const Ref<WQXMLNode>& node) { return node && wq::Class::of(*node.get()) == &wq::Class::of<T>(); }

// Arguments whose class map names a class for the elements of that name and namespace.
Ref<NSDictionary> classes(const NSString& uri, const NSString& name, const wq::Class* made) {
    const auto byName = NSDictionary::dictionary({{name, made}});
    return NSDictionary::dictionary({{DefaultElementClassesKey, NSDictionary::dictionary({{uri, byName}})}});
}
template <class T> Ref<NSDictionary> elementsNamed(const char16_t* name) { return classes(DefaultNamespaceKey, name, &wq::Class::of<T>()); }

Ref<WQXMLElement> element(const Ref<WQXMLDocument>& document, std::u16string_view name) {
    return wq::cast<WQXMLElement>(find(document, name));
}

std::string innerXML(const Ref<WQXMLElement>& node) { return wq::toUTF8(wq::printed(node->innerXML())); }
std::string outerXML(const Ref<WQXMLElement>& node) { return wq::toUTF8(wq::printed(node->outerXML())); }

// What the root says after it was given that markup.
std::string innerXMLAfter(const NSString& markup, std::string_view before = "<r>old</r>") {
    const auto document = parse(before);
    document->documentElement()->setInnerXML(markup);
    return innerXML(document->documentElement());
}

std::vector<int> typesOfChildren(const Ref<WQXMLNode>& node) {
    std::vector<int> types;
    for (auto child = node->firstChild(); child; child = child->nextSibling()) types.push_back(child->nodeType());
    return types;
}

// The links below a node agree in both directions, and every node has its wrapper and its document.
void expectSound(const Ref<WQXMLNode>& top) {
    for (Ref<WQXMLNode> node = top; node; node = node->next()) {
        EXPECT_EQ(node->xmlNode()->_private, static_cast<void*>(node.get()));
        EXPECT_EQ(node->ownerDocument(), top->ownerDocument());
        if (node->firstChild()) {
            EXPECT_EQ(node->firstChild()->parentNode(), node);
        }
        if (node->lastChild()) {
            EXPECT_FALSE(node->lastChild()->nextSibling());
        }
        if (node->nextSibling()) {
            EXPECT_EQ(node->nextSibling()->previousSibling(), node);
        }
    }
}

}  // namespace

// ---- Inner XML

TEST(MarkupTest, TheInnerXMLIsWhatStandsBetweenTheTags) {
    struct Row {
        const char* document;
        const char* inner;
    };
    for (const Row& row : {
             Row{"<r x='no'/>", ""},
             Row{"<r>text</r>", "text"},
             Row{"<r><a/></r>", "<a/>"},
             Row{"<r><a></a></r>", "<a/>"},
             Row{"<r>one<a x='1' y=\"2\">two<b/></a>three<c/></r>", "one<a x=\"1\" y=\"2\">two<b/></a>three<c/>"},
             Row{"<r> \n <a/>\t</r>", " \n <a/>\t"},
             Row{"<r>a &amp; b &lt; c &gt; d \" '</r>", "a &amp; b &lt; c &gt; d \" '"},
             Row{"<r>&#13;&#9;|\r\n|</r>", "&#13;\t|\n|"},
             Row{"<r>\xC3\xA9 &#x1F600;</r>", "\xC3\xA9 \xF0\x9F\x98\x80"},
             Row{"<r>]]&gt;</r>", "]]&gt;"},
             Row{"<r><!-- c & d --></r>", "<!-- c & d -->"},
             Row{"<r><![CDATA[a < b & c]]></r>", "<![CDATA[a < b & c]]>"},
             Row{"<r><?target data ?></r>", "<?target data ?>"},
             Row{"<!DOCTYPE r [<!ENTITY e 'x'>]><r>1&e;2</r>", "1&e;2"},
             Row{"<r><a x='&lt;&amp;&quot;&apos;&#10;&#9;&#13;'/></r>", "<a x=\"&lt;&amp;&quot;'&#10;&#9;&#13;\"/>"},
             Row{"<r><a x='\xC3\xA9'/></r>", "<a x=\"&#xE9;\"/>"},  // attributes, not texts
             Row{"<r><a xml:lang='en' xml:space='preserve'> </a></r>", "<a xml:lang=\"en\" xml:space=\"preserve\"> </a>"},
         }) {
        SCOPED_TRACE(row.document);
        const auto document = parse(row.document);
        EXPECT_EQ(innerXML(document->documentElement()), row.inner);
    }
}

TEST(MarkupTest, TheInnerXMLOfAnEmptyElementIsTheEmptyString) {
    EXPECT_EQ(WQXMLElement::newWithName(u"a")->innerXML(), u"");
    const auto document = parse("<a x='1'/>");
    EXPECT_EQ(document->documentElement()->innerXML(), u"");
}

TEST(MarkupTest, TheInnerXMLIsNotIndented) {
    const auto document = parse("<r><a><b/><c/></a><d/></r>");
    EXPECT_EQ(innerXML(document->documentElement()), "<a><b/><c/></a><d/>");
}

TEST(MarkupTest, TextsSideBySideAreWrittenInARow) {
    const auto document = parse("<r>one</r>");
    const auto root = document->documentElement();
    root->appendChild(document->createTextNode(u" two"));
    root->appendChild(WQXMLText::newWithString(u" & three"));
    root->appendChild(WQXMLText::text());
    EXPECT_EQ(innerXML(root), "one two &amp; three");
    EXPECT_EQ(root->numberOfChildren(), 4u);
}

TEST(MarkupTest, TheInnerXMLOfAnElementWithoutDocumentIsThatOfItsChildren) {
    const auto a = WQXMLElement::newWithName(u"a");
    a->appendChild(WQXMLText::newWithString(u"x < y"));
    a->appendChild(WQXMLElement::newWithName(u"b"));
    EXPECT_EQ(innerXML(a), "x &lt; y<b/>");
}

// ---- Outer XML

TEST(MarkupTest, TheOuterXMLIsTheWholeElement) {
    const auto document = parse("<r><a x='1'>t &amp; u<b/></a>z</r>");
    EXPECT_EQ(outerXML(element(document, u"a")), "<a x=\"1\">t &amp; u<b/></a>");
    EXPECT_EQ(outerXML(element(document, u"b")), "<b/>");
    EXPECT_EQ(outerXML(WQXMLElement::newWithName(u"e")), "<e/>");
}

TEST(MarkupTest, TheFormatIndentsElementsWithoutTextBesideThem) {
    const auto document = parse("<r><a><b/><c>t<d><e/></d></c></a><f/></r>");
    const auto root = document->documentElement();
    const char* const indented = "<r>\n  <a>\n    <b/>\n    <c>t<d><e/></d></c>\n  </a>\n  <f/>\n</r>";
    EXPECT_EQ(wq::toUTF8(root->outerXMLWithFormat(true)), indented);
    EXPECT_EQ(wq::toUTF8(root->outerXML()), indented);
    EXPECT_EQ(wq::toUTF8(root->outerXMLWithFormat(false)), "<r><a><b/><c>t<d><e/></d></c></a><f/></r>");
    EXPECT_EQ(dump(document), "r[a[b,c[\"t\",d[e]]],f]");
}

TEST(MarkupTest, WhiteSpaceThatIsThereSuppressesTheIndentation) {
    const auto document = parse("<r> <a><b/></a></r>");
    EXPECT_EQ(outerXML(document->documentElement()), "<r> <a><b/></a></r>");
}

// ---- Namespaces in both

TEST(MarkupTest, NamespacesFromFurtherUpAreDeclaredInTheMarkup) {
    const auto document = parse("<r xmlns='u:d' xmlns:p='u:p' xmlns:q='u:q'><p:a q:x='1'><b/></p:a><c/></r>");
    const auto root = document->documentElement();
    EXPECT_EQ(innerXML(root), "<p:a xmlns:p=\"u:p\" xmlns:q=\"u:q\" xmlns=\"u:d\" q:x=\"1\"><b/></p:a><c xmlns=\"u:d\"/>");
    EXPECT_EQ(
        wq::toUTF8(element(document, u"p:a")->outerXMLWithFormat(false)),
        "<p:a xmlns:p=\"u:p\" xmlns:q=\"u:q\" xmlns=\"u:d\" q:x=\"1\"><b/></p:a>");
    EXPECT_EQ(innerXML(element(document, u"p:a")), "<b xmlns=\"u:d\"/>");
    // The tree itself has no more declarations than before.
    EXPECT_EQ(serialised(root), "<r xmlns=\"u:d\" xmlns:p=\"u:p\" xmlns:q=\"u:q\"><p:a q:x=\"1\"><b/></p:a><c/></r>");
}

TEST(MarkupTest, ADetachedElementOfADocumentDeclaresItsNamespaceFirst) {
    for (const bool inner : {false, true}) {
        SCOPED_TRACE(inner);
        const auto document = parse("<r/>");
        const auto made = document->createElement_namespaceURI(u"p:e", u"u:p");
        EXPECT_EQ(serialised(made), "<p:e/>");
        EXPECT_EQ(inner ? innerXML(made) : outerXML(made), inner ? "" : "<p:e xmlns:p=\"u:p\"/>");
        EXPECT_EQ(made->ownedNs(), nullptr);
        EXPECT_EQ(serialised(made), "<p:e xmlns:p=\"u:p\"/>");
        EXPECT_EQ(made->namespaceURI(), u"u:p");
    }
}

TEST(MarkupTest, ADetachedElementWithoutDocumentKeepsItsOwnNamespace) {
    const auto made = WQXMLElement::newWithQualifiedName_namespaceURI(u"p:e", u"u:p");
    EXPECT_EQ(outerXML(made), "<p:e xmlns:p=\"u:p\"/>");
    EXPECT_NE(made->ownedNs(), nullptr);
    EXPECT_EQ(made->namespaceURI(), u"u:p");
}

TEST(MarkupTest, APrefixThatNothingDeclaresIsLostFromAnAttribute) {
    const auto document = parse("<r><a/></r>");
    const auto a = element(document, u"a");
    a->setAttribute_namespaceURI_value(u"q:z", u"u:q", u"1");
    EXPECT_EQ(outerXML(a), "<a z=\"1\"/>");
    EXPECT_EQ(innerXML(document->documentElement()), "<a z=\"1\"/>");
    EXPECT_EQ(serialised(a), "<a q:z=\"1\"/>");
    EXPECT_EQ(a->getAttribute_namespaceURI(u"z", u"u:q"), u"1");
}

// ---- HTML

TEST(MarkupTest, HTMLIsWrittenAsXML) {
    const auto document = parseHTML("<html><body><p id=x>a &amp; b<br>c</p><script>a < b</script></body></html>");
    const auto body = element(document, u"body");
    EXPECT_EQ(innerXML(body), "<p id=\"x\">a &amp; b<br/>c</p><script><![CDATA[a < b]]></script>");
    EXPECT_EQ(outerXML(element(document, u"p")), "<p id=\"x\">a &amp; b<br/>c</p>");
}

// ---- Dead, and what reading leaves behind

TEST(MarkupTest, ADeadElementHasNoMarkupAndTakesNone) {
    auto document = parse("<r><a/></r>");
    const auto root = document->documentElement();
    document = nullptr;
    EXPECT_FALSE(root->innerXML());
    EXPECT_FALSE(root->outerXML());
    EXPECT_FALSE(root->outerXMLWithFormat(false));
    EXPECT_EQ(raised([&] { root->setInnerXML(u"<b/>"); }), "");
    EXPECT_EQ(raised([&] { root->setInnerXML(u""); }), "");
    EXPECT_FALSE(root->innerXML());
}

TEST(MarkupTest, ReadingMarkupChangesNothingAndFiresNothing) {
    const auto document = parse("<r xmlns:p='u:p'><p:a x='1'>t</p:a></r>");
    Log log;
    document->addListener_forEvent_useCapture(&log, kEverything, true);
    const auto a = find(document, u"p:a");
    (void)document->documentElement()->innerXML();
    (void)document->documentElement()->outerXML();
    EXPECT_THAT(log.heard, IsEmpty());
    EXPECT_EQ(serialised(document->documentElement()), "<r xmlns:p=\"u:p\"><p:a x=\"1\">t</p:a></r>");
    EXPECT_EQ(find(document, u"p:a"), a);
    EXPECT_EQ(a->referenceCount(), 2);
}

TEST(WQLibXMLTest, CopiesMadeToSerialiseHaveWrappersAndGo) {
    const auto document = parse("<r><a x='1'>t<b/></a><c/></r>");
    const auto root = document->documentElement();
    const Put<const wq::Class*> watched(DefaultElementClass, &wq::Class::of<Watching>());
    const int64_t before = wq::numberOfLivingNodes();
    Watching::names.clear();
    (void)root->innerXML();
    EXPECT_THAT(Watching::names, testing::UnorderedElementsAre("a {(null)}", "b {(null)}", "c {(null)}"));
    Watching::names.clear();
    (void)root->outerXML();
    EXPECT_THAT(Watching::names, testing::UnorderedElementsAre("r {(null)}", "a {(null)}", "b {(null)}", "c {(null)}"));
    EXPECT_EQ(wq::numberOfLivingNodes(), before);
    EXPECT_EQ(dump(document), "r[a[\"t\",b],c]");
}

TEST(MarkupTest, CopiesMadeToSerialiseAreNotAskedForTheClassMap) {
    const auto document = parse("<r><a/><b/></r>", elementsNamed<Watching>(u"a"));
    Watching::names.clear();
    (void)document->documentElement()->innerXML();
    (void)document->documentElement()->outerXML();
    EXPECT_THAT(Watching::names, IsEmpty());
}

TEST(MarkupTest, AnInitialiserThatRaisesForACopyRaisesOutOfTheReading) {
    const auto document = parse("<r><a>t<b/></a><c/></r>");
    const auto root = document->documentElement();
    {
        const Put<const wq::Class*> raising(DefaultElementClass, &wq::Class::of<Raising>());
        EXPECT_EQ(raised([&] { (void)root->innerXML(); }), "Refusal: no");
        EXPECT_EQ(raised([&] { (void)root->outerXML(); }), "Refusal: no");
    }
    EXPECT_EQ(innerXML(root), "<a>t<b/></a><c/>");
}

TEST(MarkupTest, CopiesWithoutWrappersAreWrittenAsWell) {
    const auto document = parse("<r><a>t<b/></a><c/></r>");
    const Put<const wq::Class*> refusing(DefaultElementClass, &wq::Class::of<Refusing>());
    EXPECT_EQ(innerXML(document->documentElement()), "<a>t<b/></a><c/>");
    EXPECT_EQ(wq::toUTF8(document->documentElement()->outerXMLWithFormat(false)), "<r><a>t<b/></a><c/></r>");
}

// ---- Setting inner XML

TEST(MarkupTest, NewMarkupTakesThePlaceOfTheChildren) {
    const auto document = parse("<r x='1'><a/>t<b/></r>");
    document->documentElement()->setInnerXML(u"<c y='2'>u<d/></c>v");
    EXPECT_EQ(serialised(document->documentElement()), "<r x=\"1\"><c y=\"2\">u<d/></c>v</r>");
    EXPECT_EQ(dump(document), "r[c[\"u\",d],\"v\"]");
    expectSound(document->documentElement());
}

TEST(MarkupTest, MarkupOfManyKindsIsRead) {
    struct Row {
        const char16_t* markup;
        const char* inner;
        std::vector<int> types;
    };
    const std::vector<Row> rows = {
        {u"plain text", "plain text", {3}},
        {u" ", " ", {3}},
        {u"<a/>", "<a/>", {1}},
        {u"<a/><a/>", "<a/><a/>", {1, 1}},
        {u"one<a/>two<b>three</b>", "one<a/>two<b>three</b>", {3, 1, 3, 1}},
        {u"<!-- c -->", "<!-- c -->", {8}},
        {u"<!---->", "<!---->", {8}},
        {u"<![CDATA[a < b ]] &amp;]]>", "<![CDATA[a < b ]] &amp;]]>", {4}},
        {u"a<![CDATA[b]]>c", "a<![CDATA[b]]>c", {3, 4, 3}},
        {u"<?target data?>", "<?target data?>", {7}},
        {u"<?target?>", "<?target?>", {7}},
        {u"&lt;&gt;&amp;&quot;&apos;", "&lt;&gt;&amp;\"'", {3}},
        {u"&#65;&#x1F600;", "A\xF0\x9F\x98\x80", {3}},
        {u"a > b \" '", "a &gt; b \" '", {3}},
        {u"a\r\nb\rc\n", "a\nb\nc\n", {3}},
        {u"&#13;", "&#13;", {3}},
        {u"\u00e9\u4e2d\U0001F600", "\xC3\xA9\xE4\xB8\xAD\xF0\x9F\x98\x80", {3}},
        {u"\xD83D", "\xEF\xBF\xBD", {3}},  // half a character
        {u"%@ %d", "%@ %d", {3}},
        {u"<WQXMLFragment>x</WQXMLFragment>", "<WQXMLFragment>x</WQXMLFragment>", {1}},
        {u"<a x='&lt;&quot;&#10;'/>", "<a x=\"&lt;&quot;&#10;\"/>", {1}},
        {u"<p:a xmlns:p='u:p' p:x='1'/>", "<p:a xmlns:p=\"u:p\" p:x=\"1\"/>", {1}},
        {u"<a xml:lang='en'/>", "<a xml:lang=\"en\"/>", {1}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(wq::toUTF8(row.markup));
        const auto document = parse("<r><old/>text</r>");
        const auto root = document->documentElement();
        root->setInnerXML(row.markup);
        EXPECT_EQ(innerXML(root), row.inner);
        EXPECT_EQ(typesOfChildren(root), row.types);
        expectSound(root);
    }
}

TEST(MarkupTest, PlainTextGivesOneTextAndTheInnerXMLGivesItBack) {
    const auto document = parse("<r><a/><b/></r>");
    const auto root = document->documentElement();
    root->setInnerXML(u"some plain text");
    EXPECT_EQ(root->numberOfChildren(), 1u);
    EXPECT_TRUE(isExactly<WQXMLText>(root->firstChild()));
    EXPECT_EQ(root->firstChild()->nodeValue(), u"some plain text");
    EXPECT_EQ(root->innerXML(), u"some plain text");
}

TEST(MarkupTest, CommentsCDATAAndInstructionsArePlainNodes) {
    const auto document = parse("<r/>");
    document->documentElement()->setInnerXML(u"<!--c--><![CDATA[d]]><?i j?>");
    const auto children = *document->documentElement()->childNodes();
    ASSERT_EQ(children.size(), 3u);
    for (const auto& child : children) EXPECT_TRUE(isExactly<WQXMLNode>(child));
}

TEST(MarkupTest, EmptyMarkupLeavesTheChildren) {
    const auto document = parse("<r><a/>t</r>");
    Log log;
    document->addListener_forEvent_useCapture(&log, kEverything, true);
    const auto a = find(document, u"a");
    document->documentElement()->setInnerXML(u"");
    EXPECT_EQ(dump(document), "r[a,\"t\"]");
    EXPECT_EQ(document->documentElement()->firstChild(), a);
    EXPECT_THAT(log.heard, IsEmpty());
}

TEST(MarkupTest, NullIsTheTextOfNull) { EXPECT_EQ(innerXMLAfter(nullptr), "(null)"); }

TEST(MarkupTest, MarkupThatIsNotWellFormedRaisesAndChangesNothing) {
    const std::vector<NSString> rows = {
        u"<a>",
        u"</a>",
        u"<a></b>",
        u"<a><b></a></b>",
        u"<",
        u"a < b",
        u"a & b",
        u"&amp",
        u"&;",
        u"&nbsp;",
        u"&unknown;",
        u"&#0;",
        u"&#x1;",
        u"&#xD800;",
        u"&#x110000;",
        u"]]>",
        u"<a x/>",
        u"<a x=1/>",
        u"<a x='1/>",
        u"<a x='<'/>",
        u"<a x='&'/>",
        u"<a x='1' x='2'/>",
        u"<a x='1'y='2'/>",
        u"<1/>",
        u"< a/>",
        u"<a",
        u"<!-- a",
        u"<!-- a -- b -->",
        u"<!--->",
        u"<![CDATA[ a",
        u"<![cdata[a]]>",
        u"<?a",
        u"<?xml version='1.0'?><a/>",
        u"<!DOCTYPE a><a/>",
        u"<!ENTITY e 'x'>",
        u"<p:a/>",
        u"<a p:x='1'/>",
        u"<a:b:c xmlns:a='u:a'/>",
        u"<p:a xmlns:p=''/>",
        u"<a xmlns='relative'/>",
        u"<a xml:id='1'/>",
        u"<a xml:id='i'/><b xml:id='i'/>",
        u"\u0001",
        u"a\0b"_ns,
        u"\uFFFE",
        // Out of the element that stands around the markup:
        u"</WQXMLFragment>",
        u"</WQXMLFragment><WQXMLFragment>",
        u"<a/></WQXMLFragment><b/>",
        u"</WQXMLFragment><!--",
        u"</WQXMLFragment><?i ",
        u"</WQXMLFragment> ",
    };
    for (const NSString& markup : rows) {
        SCOPED_TRACE(wq::toUTF8(markup));
        const auto document = parse("<r xmlns:q='u:q'><a x='1'/>t<q:b/></r>");
        const auto root = document->documentElement();
        const auto a = find(document, u"a");
        Log log;
        document->addListener_forEvent_useCapture(&log, kEverything, true);
        EXPECT_THAT(raised([&] { root->setInnerXML(markup); }), StartsWith("XML Exception: "));
        EXPECT_EQ(serialised(root), "<r xmlns:q=\"u:q\"><a x=\"1\"/>t<q:b/></r>");
        EXPECT_EQ(root->firstChild(), a);
        EXPECT_THAT(log.heard, IsEmpty());
    }
}

TEST(MarkupTest, TheExceptionForMarkupHasTheMessageOfTheParser) {
    const auto document = parse("<r/>");
    const auto root = document->documentElement();
    EXPECT_EQ(raised([&] { root->setInnerXML(u"<p:a/>"); }), "XML Exception: Namespace prefix p on a is not defined\n");
    EXPECT_EQ(raised([&] { root->setInnerXML(u"&nbsp;"); }), "XML Exception: Entity 'nbsp' not defined\n");
    EXPECT_EQ(raised([&] { root->setInnerXML(u"</WQXMLFragment>"); }), "XML Exception: Extra content at the end of the document\n");
    EXPECT_EQ(raised([&] { root->setInnerXML(u"<a>"); }), "XML Exception: Opening and ending tag mismatch: a line 1 and WQXMLFragment\n");
}

TEST(MarkupTest, ManyFailuresLeaveNothingBehindAndTheNextMarkupIsRead) {
    const auto document = parse("<r/>");
    const auto root = document->documentElement();
    for (int i = 0; i < 50; ++i) EXPECT_NE(raised([&] { root->setInnerXML(u"<a><b x='1'>t</b><!--c--><p:d/></a>"); }), "");
    root->setInnerXML(u"<e/>");
    EXPECT_EQ(dump(document), "r[e]");
}

TEST(MarkupTest, PrefixesMustBeDeclaredWithinTheMarkup) {
    const auto document = parse("<r xmlns:p='u:p' xmlns='u:d'><p:a/></r>");
    const auto root = document->documentElement();
    EXPECT_EQ(raised([&] { root->setInnerXML(u"<p:b/>"); }), "XML Exception: Namespace prefix p on b is not defined\n");
    EXPECT_EQ(dump(document), "r[p:a]");
    root->setInnerXML(u"<p:b xmlns:p='u:p' p:x='1'/>");
    EXPECT_EQ(root->firstChild()->namespaceURI(), u"u:p");
    EXPECT_EQ(wq::cast<WQXMLElement>(root->firstChild())->getAttribute_namespaceURI(u"x", u"u:p"), u"1");
    EXPECT_EQ(root->firstChild()->nodeName(), u"p:b");
}

TEST(MarkupTest, EntitiesOfTheDocumentAreNotKnownInTheMarkup) {
    const auto document = parse("<!DOCTYPE r [<!ENTITY e 'x'>]><r>&e;</r>");
    const auto root = document->documentElement();
    EXPECT_EQ(innerXML(root), "&e;");
    EXPECT_EQ(raised([&] { root->setInnerXML(u"&e;"); }), "XML Exception: Entity 'e' not defined\n");
    EXPECT_EQ(innerXML(root), "&e;");
    root->setInnerXML(u"&lt;");
    EXPECT_EQ(innerXML(root), "&lt;");
}

TEST(MarkupTest, NewChildrenWithoutNamespaceHaveNoneBelowADefaultOne) {
    const auto document = parse("<r xmlns='u:d'/>");
    document->documentElement()->setInnerXML(u"<a/>");
    EXPECT_FALSE(document->documentElement()->firstChild()->namespaceURI());
}

// Wanted: libxml2 gives each namespace one declaration on the element, with a prefix that is free there.
TEST(MarkupTest, TheNamespacesOfTheMarkupAreDeclaredOnTheElementAsWell) {
    struct Row {
        const char* before;
        const char16_t* markup;
        const char* after;
    };
    for (const Row& row : {
             Row{"<r/>", u"<p:a xmlns:p='u:p'/>", "<r xmlns:p=\"u:p\"><p:a xmlns:p=\"u:p\"/></r>"},
             Row{"<r xmlns:q='u:p'/>", u"<p:a xmlns:p='u:p'/>", "<r xmlns:q=\"u:p\"><q:a xmlns:p=\"u:p\"/></r>"},
             Row{"<r xmlns:p='u:1'/>", u"<p:a xmlns:p='u:2'><p:b/></p:a>",
                 "<r xmlns:p=\"u:1\" xmlns:p1=\"u:2\"><p1:a xmlns:p=\"u:2\"><p1:b/></p1:a></r>"},
             Row{"<r/>", u"<a xmlns='u:d'><b/></a><c/>",
                 "<r xmlns:default=\"u:d\"><default:a xmlns=\"u:d\"><default:b/></default:a><c/></r>"},
         }) {
        SCOPED_TRACE(wq::toUTF8(row.markup));
        const auto document = parse(row.before);
        document->documentElement()->setInnerXML(row.markup);
        EXPECT_EQ(serialised(document->documentElement()), row.after);
    }
}

TEST(MarkupTest, TheNamespacesOfTheMarkupAreThoseThatItSays) {
    const auto document = parse("<r xmlns:p='u:1'/>");
    const auto root = document->documentElement();
    root->setInnerXML(u"<p:a xmlns:p='u:2' p:x='1'><b xmlns='u:3'/><p:c/></p:a><d/>");
    const auto a = wq::cast<WQXMLElement>(root->firstChild());
    EXPECT_EQ(a->namespaceURI(), u"u:2");
    EXPECT_EQ(a->getAttribute_namespaceURI(u"x", u"u:2"), u"1");
    EXPECT_EQ(a->firstChild()->namespaceURI(), u"u:3");
    EXPECT_EQ(a->lastChild()->namespaceURI(), u"u:2");
    EXPECT_FALSE(root->lastChild()->namespaceURI());
}

TEST(MarkupTest, SettingMarkupDeclaresWhatAttributesOfTheElementBrought) {
    const auto document = parse("<r><a/></r>");
    const auto a = element(document, u"a");
    a->setAttribute_namespaceURI_value(u"q:z", u"u:q", u"1");
    EXPECT_EQ(serialised(a), "<a q:z=\"1\"/>");
    a->setInnerXML(u"t");
    EXPECT_EQ(serialised(a), "<a xmlns:q=\"u:q\" q:z=\"1\">t</a>");
}

TEST(MarkupTest, NewChildrenOutliveTheDocumentOnceRemoved) {
    auto document = parse("<r/>");
    const auto root = document->documentElement();
    root->setInnerXML(u"<p:a xmlns:p='u:p' p:x='1' xml:lang='en'><p:b>t</p:b></p:a>");
    const auto a = wq::cast<WQXMLElement>(root->removeChild(root->firstChild()));
    const auto b = a->removeChild(a->firstChild());
    document = nullptr;
    EXPECT_EQ(a->nodeName(), u"p:a");
    EXPECT_EQ(a->getAttribute_namespaceURI(u"x", u"u:p"), u"1");
    EXPECT_EQ(a->getAttribute_namespaceURI(u"lang", kXMLNamespace), u"en");
    EXPECT_EQ(b->namespaceURI(), u"u:p");
    EXPECT_EQ(dump(b), "p:b[\"t\"]");
}

// ---- Identifiers in markup

TEST(MarkupTest, IdentifiersInTheMarkupAreKnown) {
    const auto document = parse("<r><a/></r>");
    element(document, u"a")->setInnerXML(u"<b xml:id='i'><c xml:id='j'/></b>");
    EXPECT_EQ(document->getElementById(u"i"), find(document, u"b"));
    EXPECT_EQ(document->getElementById(u"j"), find(document, u"c"));
    element(document, u"a")->setInnerXML(u"<d/>");
    EXPECT_FALSE(document->getElementById(u"i"));
    EXPECT_FALSE(document->getElementById(u"j"));
}

TEST(MarkupTest, AnIdentifierPassesFromTheOldChildToTheNewOne) {
    const auto document = parse("<r><a xml:id='i'/></r>");
    document->documentElement()->setInnerXML(u"<b xml:id='i'/>");
    EXPECT_EQ(document->getElementById(u"i"), find(document, u"b"));
}

TEST(MarkupTest, AnIdentifierThatStandsElsewhereStaysThere) {
    const auto document = parse("<r><a xml:id='i'/><b/></r>");
    element(document, u"b")->setInnerXML(u"<c xml:id='i'/>");
    EXPECT_EQ(document->getElementById(u"i"), find(document, u"a"));
    EXPECT_EQ(dump(document), "r[a,b[c]]");
    element(document, u"b")->removeChildren();
    EXPECT_EQ(document->getElementById(u"i"), find(document, u"a"));
}

// ---- The old children

TEST(MarkupTest, OldChildrenThatAreHeldLiveOn) {
    auto document = parse("<r xmlns:p='u:p'><p:a p:x='1'><b/></p:a>text<!--c--></r>");
    const auto root = document->documentElement();
    const auto old = *root->childNodes();
    const auto b = find(document, u"b");
    root->setInnerXML(u"<n/>");
    ASSERT_EQ(old.size(), 3u);
    for (const auto& child : old) {
        EXPECT_FALSE(child->parentNode());
        EXPECT_FALSE(child->nextSibling());
        EXPECT_EQ(child->ownerDocument(), document);
        EXPECT_EQ(child->referenceCount(), 1);
    }
    EXPECT_EQ(dump(old[0]), "p:a[b]");
    EXPECT_EQ(old[0]->firstChild(), b);
    EXPECT_EQ(old[1]->nodeValue(), u"text");
    root->appendChild(old[1]);
    EXPECT_EQ(dump(document), "r[n,\"text\"]");
    document = nullptr;
    EXPECT_EQ(old[0]->namespaceURI(), u"u:p");
    EXPECT_EQ(wq::cast<WQXMLElement>(old[0])->getAttribute_namespaceURI(u"x", u"u:p"), u"1");
    EXPECT_EQ(old[1]->nodeType(), 0x7fff);
    EXPECT_EQ(old[2]->nodeType(), 8);
}

TEST(MarkupTest, OldDescendantsWhoseParentIsNotHeldDie) {
    const auto document = parse("<r><a><b/></a></r>");
    const auto b = find(document, u"b");
    document->documentElement()->setInnerXML(u"<n/>");
    EXPECT_EQ(b->nodeType(), 0x7fff);
    EXPECT_FALSE(b->parentNode());
}

TEST(MarkupTest, AnElementMayBeGivenItsOwnMarkup) {
    const auto document = parse("<r><a x='1'>t<b/></a><!--c--></r>");
    const auto root = document->documentElement();
    root->setInnerXML(root->innerXML());
    EXPECT_EQ(serialised(root), "<r><a x=\"1\">t<b/></a><!--c--></r>");
}

// ---- Where the element stands

TEST(MarkupTest, AnElementWithoutDocumentTakesMarkup) {
    const auto a = WQXMLElement::newWithName(u"a");
    a->appendChild(WQXMLElement::newWithName(u"old"));
    a->setInnerXML(u"t<p:b xmlns:p='u:p' p:x='1' xml:lang='en'><c/></p:b><!--d-->");
    EXPECT_EQ(dump(Ref<WQXMLNode>(a)), "a[\"t\",p:b[c],<!>]");
    EXPECT_EQ(innerXML(a), "t<p:b xmlns:p=\"u:p\" p:x=\"1\" xml:lang=\"en\"><c/></p:b><!--d-->");
    expectSound(a);
    const auto document = parse("<r/>");
    document->documentElement()->appendChild(a);
    EXPECT_EQ(dump(document), "r[a[\"t\",p:b[c],<!>]]");
    EXPECT_EQ(find(document, u"c")->ownerDocument(), document);
}

TEST(MarkupTest, ADetachedElementOfADocumentTakesMarkupAndOutlivesIt) {
    auto document = parse("<r/>");
    const auto a = document->createElement_namespaceURI(u"p:a", u"u:p");
    a->setInnerXML(u"<p:b xmlns:p='u:p'>t</p:b>");
    const auto b = a->firstChild();
    EXPECT_EQ(b->ownerDocument(), document);
    document = nullptr;
    EXPECT_FALSE(b->ownerDocument());
    EXPECT_EQ(dump(Ref<WQXMLNode>(a)), "p:a[p:b[\"t\"]]");
    EXPECT_EQ(b->namespaceURI(), u"u:p");
}

TEST(MarkupTest, AnElementOfAnHTMLDocumentTakesXML) {
    const auto document = parseHTML("<html><body><p>old</p></body></html>");
    const auto body = element(document, u"body");
    EXPECT_NE(raised([&] { body->setInnerXML(u"a<br>b"); }), "");
    EXPECT_EQ(dump(Ref<WQXMLNode>(body)), "body[p[\"old\"]]");
    body->setInnerXML(u"a<br/>b<section>c</section>");  // names that HTML 4 does not have pass
    EXPECT_EQ(dump(Ref<WQXMLNode>(body)), "body[\"a\",br,\"b\",section[\"c\"]]");
    EXPECT_EQ(innerXML(body), "a<br/>b<section>c</section>");
    expectSound(body);
    EXPECT_EQ(body->firstChild()->ownerDocument(), document);
}

TEST(MarkupTest, NewMarkupMayStandBelowASubclassAndIsSetThroughItsOverride) {
    struct Counting : WQXMLElement {
        void setInnerXML(const NSString& markup) override {
            ++calls;
            WQXMLElement::setInnerXML(markup);
        }
        int calls = 0;
    };
    const auto made = WQXMLElement::newWithName<Counting>(u"a");
    wq::cast<WQXMLElement>(made)->setInnerXML(u"t");
    EXPECT_EQ(made->calls, 1);
    EXPECT_EQ(innerXML(made), "t");
}

// ---- Classes of the new children

TEST(MarkupTest, TheNewChildrenAreOfTheClassesOfTheDocument) {
    const auto byName = NSDictionary::dictionary({{u"p", &wq::Class::of<Paragraph>()}});
    const auto byOther = NSDictionary::dictionary({{DefaultElementKey, &wq::Class::of<Emphasis>()}});
    const auto map = NSDictionary::dictionary({{DefaultNamespaceKey, byName}, {u"u:e", byOther}});
    const auto document = parse("<r/>", NSDictionary::dictionary({{DefaultElementClassesKey, map}}));
    const auto root = document->documentElement();
    root->setInnerXML(u"<p x='1'><q/><p>t</p><e:a xmlns:e='u:e' e:y='2'/></p><q/><b xmlns='u:e'/><p/>");
    const auto children = *root->childNodes();
    ASSERT_EQ(children.size(), 4u);
    EXPECT_TRUE(isExactly<Paragraph>(children[0]));
    EXPECT_TRUE(isExactly<WQXMLElement>(children[1]));
    EXPECT_TRUE(isExactly<Emphasis>(children[2]));
    EXPECT_TRUE(isExactly<Paragraph>(children[3]));  // the last one too
    const auto inner = *children[0]->childNodes();
    ASSERT_EQ(inner.size(), 3u);
    EXPECT_TRUE(isExactly<WQXMLElement>(inner[0]));
    EXPECT_TRUE(isExactly<Paragraph>(inner[1]));
    EXPECT_TRUE(isExactly<Emphasis>(inner[2]));
    EXPECT_EQ(wq::cast<WQXMLElement>(children[0])->getAttribute(u"x"), u"1");
    expectSound(root);
    EXPECT_EQ(gCheckNode, nullptr);
}

TEST(MarkupTest, TheClassesOfAnotherDocumentAreNotAsked) {
    const auto other = parse("<p/>", elementsNamed<Paragraph>(u"p"));
    const auto document = parse("<r/>");
    document->documentElement()->setInnerXML(u"<p/>");
    EXPECT_TRUE(isExactly<WQXMLElement>(document->documentElement()->firstChild()));
    const auto alone = WQXMLElement::newWithName(u"a");
    alone->setInnerXML(u"<p/>");
    EXPECT_TRUE(isExactly<WQXMLElement>(alone->firstChild()));
}

TEST(MarkupTest, AnInitialiserRunsOnceForEachNewElementAndFindsNameAndNamespace) {
    const auto document = parse("<r/>", classes(u"u:p", DefaultElementKey, &wq::Class::of<Watching>()));
    Watching::names.clear();
    document->documentElement()->setInnerXML(u"<p:a xmlns:p='u:p'><p:b x='1'/></p:a><q/><c xmlns='u:p'/>");
    EXPECT_THAT(Watching::names, testing::UnorderedElementsAre("a {u:p}", "b {u:p}", "c {u:p}"));
}

TEST(MarkupTest, AnInitialiserThatRefusesLeavesThePlainWrapper) {
    const auto document = parse("<r/>", elementsNamed<Refusing>(u"p"));
    Refusing::calls = 0;
    document->documentElement()->setInnerXML(u"<p><p/></p><q/><p/>");
    EXPECT_EQ(Refusing::calls, 3);
    EXPECT_EQ(dump(document), "r[p[p],q,p]");
    EXPECT_TRUE(isExactly<WQXMLElement>(document->documentElement()->firstChild()));
    expectSound(document->documentElement());
}

TEST(MarkupTest, AnInitialiserThatRaisesRaisesOutOfTheEdit) {
    for (const char16_t* markup : {u"<p/>", u"<p/><q/>", u"<q/><p/>", u"<q><p x='1'>t</p></q>", u"<q/><a><p/></a>t"}) {
        SCOPED_TRACE(wq::toUTF8(markup));
        const auto document = parse("<r><old/></r>", elementsNamed<Raising>(u"p"));
        const auto root = document->documentElement();
        EXPECT_EQ(raised([&] { root->setInnerXML(markup); }), "Refusal: no");
        EXPECT_EQ(gCheckNode, nullptr);
        expectSound(root);
        EXPECT_EQ(raised([&] { root->setInnerXML(u"<q/>"); }), "");
        EXPECT_EQ(dump(document), "r[q]");
    }
}

TEST(MarkupTest, ADefaultClassThatRaisesRaisesBeforeAnyChildIsTouched) {
    const auto document = parse("<r><old/></r>");
    const Put<const wq::Class*> raising(DefaultElementClass, &wq::Class::of<Raising>());
    EXPECT_EQ(raised([&] { document->documentElement()->setInnerXML(u"<p/>"); }), "Refusal: no");
    EXPECT_EQ(dump(document), "r[old]");
}

TEST(MarkupTest, ANewChildMayHaveNoWrapper) {
    const auto document = parse("<r><old/></r>");
    const auto root = document->documentElement();
    {
        const Put<const wq::Class*> refusing(DefaultElementClass, &wq::Class::of<Refusing>());
        root->setInnerXML(u"<p>t</p>");
    }
    EXPECT_EQ(serialised(root), "<r><p>t</p></r>");
    EXPECT_FALSE(root->firstChild());
}

// ---- Events

TEST(WQXMLNodeTest, RemovingTheOldChildrenForNewMarkupFiresEachRemoval) {
    const auto document = parse("<r><a/><b/><c/></r>");
    const auto root = document->documentElement();
    std::vector<std::string> heard;
    Doing listener([&](const Ref<WQXMLEvent>& event) {
        const auto removal = wq::cast<WQXMLMutationEvent>(event);
        EXPECT_EQ(removal->relatedNode(), root);
        EXPECT_EQ(removal->target()->parentNode(), root);
        EXPECT_EQ(root->indexOfChild(removal->target()), 0u);
        heard.push_back(std::to_string(event->eventID()) + " " + dump(removal->target()) + " of " + dump(document));
    });
    document->addListener_forEvent_useCapture(&listener, kEverything, true);
    root->setInnerXML(u"<n/>");
    EXPECT_THAT(heard, ElementsAre("8 a of r[a,b,c]", "8 b of r[b,c]", "8 c of r[c]"));
}

TEST(WQXMLEventTest, TheChildrenOfNewMarkupFireNothingAndTheOldOnesFireTheirRemoval) {
    const auto document = parse("<r><a><b/></a>t<!--c--></r>");
    Log log;
    document->addListener_forEvent_useCapture(&log, kEverything, true);
    document->documentElement()->setInnerXML(u"<n x='1'>u<m/></n>v");
    EXPECT_THAT(log.heard, ElementsAre("8/1 a<-r", "8/1 #text<-r", "8/1 (null)<-r"));
    EXPECT_EQ(dump(document), "r[n[\"u\",m],\"v\"]");
    log.heard.clear();
    document->documentElement()->removeChildren();
    document->documentElement()->setInnerXML(u"<o/>");
    EXPECT_THAT(log.heard, ElementsAre("8/1 n<-r", "8/1 #text<-r"));
}

TEST(WQXMLEventTest, SettingTheValueOfAnAttributeFiresNothing) {
    const auto document = parse("<r><a x='1'/></r>");
    const auto a = element(document, u"a");
    const auto x = wq::cast<WQXMLAttr>(a->firstAttribute());
    Log log;
    document->addListener_forEvent_useCapture(&log, kEverything, true);
    for (const Ref<WQXMLNode>& node : {Ref<WQXMLNode>(a), Ref<WQXMLNode>(x), x->firstChild()})
        node->addListener_forEvent_useCapture(&log, kEverything, false);
    x->setValue(u"2 & < 3");
    x->setValue(nullptr);
    x->setValue(u"");
    EXPECT_THAT(log.heard, IsEmpty());
}

TEST(WQXMLEventTest, NormalizingATextFiresNothing) {
    const auto document = parse("<r>  a \n b  </r>");
    const auto text = wq::cast<WQXMLText>(document->documentElement()->firstChild());
    Log log;
    document->addListener_forEvent_useCapture(&log, kEverything, true);
    text->addListener_forEvent_useCapture(&log, kEverything, false);
    text->normalizeContent();
    EXPECT_EQ(text->string(), u"a b ");
    EXPECT_THAT(log.heard, IsEmpty());
}

// ---- Listeners that interfere

TEST(MarkupTest, AListenerThatRaisesKeepsTheChildrenFromItsOwnOn) {
    const auto document = parse("<r><a/><b/><c/></r>");
    const auto root = document->documentElement();
    for (const auto& [name, after] :
         std::vector<std::pair<const char16_t*, const char*>>{{u"a", "r[a,b,c]"}, {u"b", "r[b,c]"}, {u"c", "r[c]"}}) {
        SCOPED_TRACE(after);
        Doing raising([&, wanted = NSString(name)](const Ref<WQXMLEvent>& event) {
            if (event->target()->nodeName() == wanted) throw WQXMLException(u"Stop", u"here");
        });
        root->addListener_forEvent_useCapture(&raising, kRemoved, true);
        EXPECT_EQ(raised([&] { root->setInnerXML(u"<n/>"); }), "Stop: here");
        root->removeListener_forEvent_useCapture(&raising, kRemoved, true);
        EXPECT_EQ(dump(document), after);
        expectSound(root);
    }
    root->setInnerXML(u"<n/>");
    EXPECT_EQ(dump(document), "r[n]");
}

TEST(MarkupTest, NodesThatAListenerAddsWhileTheOldOnesGoAreRemovedToo) {
    for (const bool text : {false, true}) {
        SCOPED_TRACE(text);
        const auto document = parse("<r><a/><b/></r>");
        const auto root = document->documentElement();
        std::vector<std::string> heard;
        Doing adding([&](const Ref<WQXMLEvent>& event) {
            heard.push_back(dump(event->target()));
            if (heard.size() > 2) return;
            if (text)
                root->appendChild(document->createTextNode(u"added"));
            else
                root->appendChild(document->createElement(u"added"));
        });
        root->addListener_forEvent_useCapture(&adding, kRemoved, true);
        root->setInnerXML(u"new<n/>");
        const char* const added = text ? "\"added\"" : "added";
        EXPECT_THAT(heard, ElementsAre("a", "b", added, added));
        EXPECT_EQ(dump(document), "r[\"new\",n]");
        expectSound(root);
    }
}

TEST(MarkupTest, AListenerThatTakesTheOtherChildrenAwayLeavesTheEditSound) {
    const auto document = parse("<r><a/><b/><c/></r>");
    const auto root = document->documentElement();
    const auto b = find(document, u"b");
    std::vector<std::string> heard;
    Doing removing([&](const Ref<WQXMLEvent>& event) {
        heard.push_back(dump(event->target()));
        if (heard.size() == 1) root->removeChild(b);
    });
    root->addListener_forEvent_useCapture(&removing, kRemoved, true);
    root->setInnerXML(u"<n/>");
    EXPECT_THAT(heard, ElementsAre("a", "b", "c"));
    EXPECT_EQ(dump(document), "r[n]");
    EXPECT_FALSE(b->parentNode());
}

TEST(MarkupTest, AListenerMayMoveTheElementToAnotherDocument) {
    auto document = parse("<r><e><a/><b/></e></r>");
    const auto other = parse("<s/>", elementsNamed<Paragraph>(u"p"));
    const auto e = element(document, u"e");
    int calls = 0;
    Doing moving([&](const Ref<WQXMLEvent>& event) {
        if (event->target()->nodeName() == u"a" && ++calls == 1) other->documentElement()->appendChild(e);
    });
    e->addListener_forEvent_useCapture(&moving, kRemoved, true);
    e->setInnerXML(u"<p xml:id='i'>t</p>");
    e->removeListener_forEvent_useCapture(&moving, kRemoved, true);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(dump(document), "r");
    EXPECT_EQ(dump(other), "s[e[p[\"t\"]]]");
    EXPECT_TRUE(isExactly<Paragraph>(e->firstChild()));
    EXPECT_EQ(other->getElementById(u"i"), e->firstChild());
    expectSound(other->documentElement());
    document = nullptr;
    EXPECT_EQ(outerXML(e), "<e>\n  <p xml:id=\"i\">t</p>\n</e>");
}

TEST(MarkupTest, AListenerMayRemoveTheElement) {
    auto document = parse("<r><e><a/><b/></e></r>");
    const auto e = element(document, u"e");
    Doing removing([&](const Ref<WQXMLEvent>& event) {
        if (event->target()->nodeName() == u"a") document->documentElement()->removeChild(e);
    });
    e->addListener_forEvent_useCapture(&removing, kRemoved, true);
    e->setInnerXML(u"<n>t</n>");
    EXPECT_FALSE(e->parentNode());
    EXPECT_EQ(dump(Ref<WQXMLNode>(e)), "e[n[\"t\"]]");
    document = nullptr;
    EXPECT_EQ(dump(Ref<WQXMLNode>(e)), "e[n[\"t\"]]");
}

TEST(MarkupTest, AListenerThatLetsTheDocumentGoMakesTheAttachFail) {
    auto document = parse("<r><a/><b/></r>");
    const auto root = document->documentElement();
    int calls = 0;
    Doing dropping([&](const Ref<WQXMLEvent>&) {
        ++calls;
        document = nullptr;
    });
    root->addListener_forEvent_useCapture(&dropping, kRemoved, true);
    EXPECT_EQ(raised([&] { root->setInnerXML(u"<n>t</n>"); }), kFailedAttach);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(root->nodeType(), 0x7fff);
    EXPECT_FALSE(root->firstChild());
}

TEST(MarkupTest, AListenerMayLetTheDocumentOfADetachedElementGo) {
    auto document = parse("<r/>");
    const auto e = document->createElement(u"e");
    e->setInnerXML(u"<a/><b/>");
    Doing dropping([&](const Ref<WQXMLEvent>&) { document = nullptr; });
    e->addListener_forEvent_useCapture(&dropping, kRemoved, true);
    e->setInnerXML(u"<n>t</n>");
    EXPECT_EQ(dump(Ref<WQXMLNode>(e)), "e[n[\"t\"]]");
    EXPECT_FALSE(e->ownerDocument());
    EXPECT_FALSE(e->firstChild()->ownerDocument());
}

TEST(MarkupTest, AListenerMaySetOtherMarkupInItsTurn) {
    const auto document = parse("<r><a/><b/></r>");
    const auto root = document->documentElement();
    int calls = 0;
    Doing setting([&](const Ref<WQXMLEvent>&) {
        if (++calls == 1) root->setInnerXML(u"<inner/>");
    });
    root->addListener_forEvent_useCapture(&setting, kRemoved, true);
    root->setInnerXML(u"<outer/>");
    EXPECT_EQ(dump(document), "r[outer]");
    expectSound(root);
}
