// Application code that runs in the middle of the library's work: initWithXMLNode of element classes, and
// listeners.
#include <functional>

#include "dom/WQLibXML.h"
#include "dom/WQXMLAttr.h"
#include "dom/WQXMLWriter.h"
#include "tests/dom/Support.h"

namespace {

using namespace test;

Ref<NSDictionary> classOf(const wq::Class* aClass) {
    const auto names = NSDictionary::dictionary({{u"p", aClass}});
    return NSDictionary::dictionary({{DefaultElementClassesKey, NSDictionary::dictionary({{DefaultNamespaceKey, names}})}});
}

template <class T> Ref<WQXMLDocument> parseWith(const std::string& xml) { return parse(xml, classOf(&wq::Class::of<T>())); }

struct AddsText : WQXMLElement {
    bool initWithXMLNode(_xmlNode* node) override {
        WQXMLElement::initWithXMLNode(node);
        appendChild(WQXMLText::newWithString(u"ab"));
        return true;
    }
};

struct AddsTextBehindItself : WQXMLElement {
    bool initWithXMLNode(_xmlNode* node) override {
        WQXMLElement::initWithXMLNode(node);
        parentNode()->appendChild(WQXMLText::newWithString(u"ab"));
        return true;
    }
};

struct SetsMarkup : WQXMLElement {
    bool initWithXMLNode(_xmlNode* node) override {
        WQXMLElement::initWithXMLNode(node);
        setInnerXML(u"<i>z</i>tail");
        return true;
    }
};

struct SetsAttribute : WQXMLElement {
    bool initWithXMLNode(_xmlNode* node) override {
        WQXMLElement::initWithXMLNode(node);
        setAttribute_value(u"k", u"v");
        return true;
    }
};

// ---- While a document is parsed. Long texts stand ahead, whose lengths the parser remembers.

const std::string kLong(9000, 'x');

TEST(EditsInCallbacksTest, TheParserGoesOnWithATextThatAnElementPutsIntoItself) {
    const auto document = parseWith<AddsText>("<a>" + kLong + "<p>hello</p></a>");
    EXPECT_EQ(serialised(document->documentElement()->lastChild()), "<p>abhello</p>");
    EXPECT_EQ(document->documentElement()->innerText().length(), 9007u);
}

TEST(EditsInCallbacksTest, TheHTMLParserGoesOnWithATextThatAnElementPutsIntoItself) {
    auto arguments = classOf(&wq::Class::of<AddsText>());
    arguments->setObject_forKey(true, WQXMLDocumentParseAsHTMLKey);
    const auto document = parse("<html><body>" + kLong + "<p>hello</p>end</body></html>", arguments);
    EXPECT_EQ(serialised(find(document, u"p")), "<p>abhello</p>");
    EXPECT_EQ(document->documentElement()->innerText().length(), 9010u);
}

TEST(EditsInCallbacksTest, TheParserGoesOnWithATextThatAnElementPutsBehindItself) {
    const auto document = parseWith<AddsTextBehindItself>("<a>" + kLong + "<p/>more</a>");
    EXPECT_EQ(document->documentElement()->lastChild()->nodeValue(), u"abmore");
}

TEST(EditsInCallbacksTest, TheParserGoesOnBehindMarkupThatAnElementGivesItself) {
    const auto document = parseWith<SetsMarkup>("<a>" + kLong + "<p>y</p></a>");
    EXPECT_EQ(serialised(document->documentElement()->lastChild()), "<p><i>z</i>taily</p>");
}

TEST(EditsInCallbacksTest, AnotherDocumentCanBeParsedInTheMiddle) {
    struct ParsesAnother : WQXMLElement {
        bool initWithXMLNode(_xmlNode* node) override {
            WQXMLElement::initWithXMLNode(node);
            setAttribute_value(u"k", wq::fromUTF8(dump(parse("<x><y/>t</x>")) + dump(parseHTML("<p>x</p>"))));
            return true;
        }
    };
    const auto document = parseWith<ParsesAnother>("<a><p/>x<p>y</p></a>");
    EXPECT_EQ(
        document->documentElement()->outerXML(),
        u"<a><p k=\"x[y,&quot;t&quot;]html[body[p[&quot;x&quot;]]]\"/>x<p k=\"x[y,&quot;t&quot;]html[body[p[&quot;x&quot;]]]\">y</p></a>");
}

TEST(EditsInCallbacksTest, ADocumentMakesNoNodesWhileItIsParsed) {
    struct AsksItsDocument : WQXMLElement {
        bool initWithXMLNode(_xmlNode* node) override {
            WQXMLElement::initWithXMLNode(node);
            EXPECT_TRUE(ownerDocument());
            EXPECT_FALSE(ownerDocument()->createElement(u"q"));
            EXPECT_FALSE(ownerDocument()->createTextNode(u"q"));
            EXPECT_FALSE(ownerDocument()->documentElement());
            EXPECT_EQ(ownerDocument()->nodeType(), 0x7fff);
            return true;
        }
    };
    EXPECT_EQ(dump(parseWith<AsksItsDocument>("<a><p/></a>")), "a[p]");
}

// ---- While markup is put into an element

TEST(EditsInCallbacksTest, ANewChildThatSetsAnAttributeKeepsAllOfThem) {
    const auto document = parseWith<SetsAttribute>("<a/>");
    document->documentElement()->setInnerXML(u"<q><p z='1' k='0'>x</p></q><p y='2'/>");
    EXPECT_EQ(serialised(document->documentElement()), "<a><q><p z=\"1\" k=\"v\">x</p></q><p y=\"2\" k=\"v\"/></a>");
}

TEST(EditsInCallbacksTest, ANewChildThatAddsATextKeepsItsOwn) {
    const auto document = parseWith<AddsText>("<a/>");
    document->documentElement()->setInnerXML(u"<q><p>x<b/></p></q>");
    EXPECT_EQ(serialised(document->documentElement()), "<a><q><p>x<b/>ab</p></q></a>");
}

TEST(EditsInCallbacksTest, ANewChildCanTakeAnotherAway) {
    struct RemovesTheNext : WQXMLElement {
        bool initWithXMLNode(_xmlNode* node) override {
            WQXMLElement::initWithXMLNode(node);
            parentNode()->removeChild(nextSibling());
            return true;
        }
    };
    const auto document = parseWith<RemovesTheNext>("<a/>");
    document->documentElement()->setInnerXML(u"<p n='1'/><p n='2'/><p n='3'/>");
    EXPECT_EQ(serialised(document->documentElement()), "<a><p n=\"1\"/><p n=\"3\"/></a>");
}

TEST(EditsInCallbacksTest, AnElementThatIsLetGoOfWhileItIsWrittenLivesUntilThen) {
    static Ref<WQXMLElement> last;
    struct LetsGo : WQXMLElement {
        bool initWithXMLNode(_xmlNode* node) override {
            last = nullptr;
            return WQXMLElement::initWithXMLNode(node);
        }
    };
    for (bool inner : {false, true}) {
        const auto document = parse("<a><b><c/><c/></b></a>");
        last = wq::cast<WQXMLElement>(document->documentElement()->removeChild(document->documentElement()->firstChild()));
        const Put<const wq::Class*> scope(DefaultElementClass, &wq::Class::of<LetsGo>());
        EXPECT_EQ(inner ? last->innerXML() : last->outerXML(), inner ? u"<c/><c/>" : u"<b>\n  <c/>\n  <c/>\n</b>");
        EXPECT_FALSE(last);
    }
}

// ---- Nodes that are made while a check waits

TEST(EditsInCallbacksTest, AWaitingCheckIsSettledBeforeANodeIsMadeWithoutTheHook) {
    static bool registered;
    struct Looks : WQXMLElement {
        bool initWithXMLNode(_xmlNode* node) override {
            registered = gRegisterNode;
            return WQXMLElement::initWithXMLNode(node);
        }
    };
    registered = false;
    const auto document = parseWith<Looks>("<a/>");
    xmlNodePtr node = xmlNewDocNode(document->xmlDoc(), nullptr, BAD_CAST "p", nullptr);
    const auto text = WQXMLText::newWithString(u"t");
    EXPECT_TRUE(registered);
    EXPECT_EQ(gCheckNode, nullptr);
    xmlFreeNode(node);
}

// ---- Fragments that a program holds on to

class Then : public WQXMLEventListener {
public:
    explicit Then(std::function<void()> itsWork) : work(std::move(itsWork)) {}
    void handleEvent(const Ref<WQXMLEvent>&) override { work(); }

private:
    std::function<void()> work;
};

TEST(EditsInCallbacksTest, ANodeThatIsTakenOutOfTheFragmentOutlivesIt) {
    static WQXMLNode::Sequence seen;
    struct Keeps : WQXMLElement {
        bool initWithXMLNode(_xmlNode* node) override {
            seen.push_back(self());
            return WQXMLElement::initWithXMLNode(node);
        }
    };
    const auto document = parse("<a><old/></a>");
    Ref<WQXMLNode> taken, text;
    Then steal([&] {
        for (const auto& node : seen)
            if (node->nodeName() == u"inner" && !taken) taken = node->parentNode()->removeChild(node);
        text = taken->removeChild(taken->firstChild());
    });
    document->documentElement()->addListener_forEvent_useCapture(&steal, 8, false);
    {
        const Put<const wq::Class*> scope(DefaultElementClass, &wq::Class::of<Keeps>());
        document->documentElement()->setInnerXML(u"<b><inner k='v'>some text that is rather long</inner>x</b>");
        document->documentElement()->removeListener_forEvent_useCapture(&steal, 8, false);
    }
    seen.clear();
    EXPECT_EQ(dump(document), "a[b[\"x\"]]");
    EXPECT_EQ(taken->nodeName(), u"inner");
    EXPECT_EQ(wq::cast<WQXMLElement>(taken)->getAttribute(u"k"), u"v");
    EXPECT_EQ(text->nodeValue(), u"some text that is rather long");
    document->documentElement()->appendChild(taken);
    EXPECT_EQ(dump(document), "a[b[\"x\"],inner]");
}

// ---- Writing below an element whose children have a class

TEST(EditsInCallbacksTest, AWrittenElementThatSetsAnAttributeHasItOnce) {
    const auto document = parseWith<SetsAttribute>("<a/>");
    const auto writer = WQXMLWriter::newToElement(document->documentElement());
    writer->startElement(u"p");
    writer->writeAttribute_content(u"z", u"1");
    writer->writeAttribute_content(u"k", u"0");
    writer->endElement();
    writer->flush();
    EXPECT_EQ(serialised(document->documentElement()), "<a><p z=\"1\" k=\"v\"/></a>");
}

TEST(EditsInCallbacksTest, TheWriterGoesOnWithATextThatAnElementPutsIntoItself) {
    const auto document = parseWith<AddsText>("<a/>");
    const auto writer = WQXMLWriter::newToElement(document->documentElement());
    writer->startElement(u"x");
    writer->writeString(std::u16string(5000, u'x'));
    writer->startElement(u"p");
    writer->writeString(u"hello");
    writer->flush();
    writer->writeString(u" again");
    writer->endElement();
    writer->endElement();
    writer->flush();
    EXPECT_EQ(wq::cast<WQXMLElement>(find(document, u"p"))->innerText().length(), 13u);
    EXPECT_EQ(find(document, u"x")->numberOfChildren(), 2u);
}

}  // namespace
