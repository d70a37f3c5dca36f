// The start-up seen from a running process, the hooks, the pending class check, guarded calls, and
// who holds whom.
#include "dom/WQLibXML.h"

#include <libxml/HTMLtree.h>
#include <libxml/parser.h>
#include <libxml/xmlwriter.h>

#include <functional>
#include <stdexcept>

#include "dom/WQXMLAttr.h"
#include "tests/dom/Support.h"

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const xmlChar* x(const char* text) { return reinterpret_cast<const xmlChar*>(text); }

WQXMLNode* wrapper(const void* node) { return static_cast<WQXMLNode*>(static_cast<const xmlNode*>(node)->_private); }
Ref<WQXMLNode> wrapped(const void* node) { return Ref<WQXMLNode>(wrapper(node)); }

template <class T> bool isExactly(const WQXMLNode* node) { return node && wq::Class::of(*node) == &wq::Class::of<T>(); }
template <class T> bool isExactly(const Ref<WQXMLNode>& node) { return isExactly<T>(node.get()); }

template <class T> Put<const wq::Class*> putClass(const wq::Class*& place) { return Put<const wq::Class*>(place, &wq::Class::of<T>()); }

class RegistrationOff {
public:
    RegistrationOff() : previous(setRegisterNode(false)) {}
    ~RegistrationOff() { setRegisterNode(previous); }
    RegistrationOff(const RegistrationOff&) = delete;
    RegistrationOff& operator=(const RegistrationOff&) = delete;

private:
    bool previous;
};

// While one lives, what the deregistration hook left in `_private` of each node is kept.
class WatchedDeregistration {
public:
    WatchedDeregistration() {
        left.clear();
        xmlDeregisterNodeDefault([](xmlNodePtr node) {
            xmlDeregisterNode(node);
            left.push_back(reinterpret_cast<uintptr_t>(node->_private));
        });
    }
    ~WatchedDeregistration() { xmlDeregisterNodeDefault(xmlDeregisterNode); }
    WatchedDeregistration(const WatchedDeregistration&) = delete;
    WatchedDeregistration& operator=(const WatchedDeregistration&) = delete;
    static inline std::vector<uintptr_t> left;
};

struct Paragraph : WQXMLElement {};
struct Section : WQXMLElement {};

xmlDocPtr otherDocument = nullptr;  // which an override makes nodes with

// Writes down what initWithXMLNode finds.
struct Watching : WQXMLElement {
    static inline std::vector<std::string> seen;
    bool initWithXMLNode(_xmlNode* node) override {
        if (!WQXMLElement::initWithXMLNode(node)) return false;
        std::string line = wq::toUTF8(wq::printed(nodeName()));
        for (Ref<WQXMLNode> attribute = firstAttribute(); attribute; attribute = attribute->nextSibling())
            line += " " + wq::toUTF8(attribute->nodeName()) + "=" + wq::toUTF8(wq::printed(wq::cast<WQXMLAttr>(attribute)->value()));
        if (namespaceURI()) line += " {" + wq::toUTF8(namespaceURI()) + "}";
        line += hasChildNodes() ? " full" : " empty";
        seen.push_back(line);
        return true;
    }
};

template <class Base> struct RefusesEarly : Base {
    static inline int calls = 0;
    bool initWithXMLNode(_xmlNode*) override { return ++calls, false; }
};
template <class Base> struct RefusesLate : Base {
    static inline int calls = 0;
    bool initWithXMLNode(_xmlNode* node) override {
        ++calls;
        Base::initWithXMLNode(node);
        return false;
    }
};
template <class Base> struct RaisesEarly : Base {
    static inline int calls = 0;
    bool initWithXMLNode(_xmlNode*) override { throw WQXMLException(u"Refusal", wq::fromUTF8(std::to_string(++calls))); }
};
template <class Base> struct RaisesLate : Base {
    static inline int calls = 0;
    bool initWithXMLNode(_xmlNode* node) override {
        Base::initWithXMLNode(node);
        throw WQXMLException(u"Refusal", wq::fromUTF8(std::to_string(++calls)));
    }
};
struct RaisesStandard : WQXMLElement {
    bool initWithXMLNode(_xmlNode*) override { throw std::runtime_error("not one of ours"); }
};

// Arguments with one class for every element without a namespace.
template <class T> Ref<NSDictionary> everyElementIs() {
    const auto byName = NSDictionary::dictionary({{DefaultElementKey, &wq::Class::of<T>()}});
    return NSDictionary::dictionary({{DefaultElementClassesKey, NSDictionary::dictionary({{DefaultNamespaceKey, byName}})}});
}
// Arguments with one class for the elements of that name.
template <class T> Ref<NSDictionary> elementsNamed(const char16_t* name) {
    const auto byName = NSDictionary::dictionary({{name, &wq::Class::of<T>()}});
    return NSDictionary::dictionary({{DefaultElementClassesKey, NSDictionary::dictionary({{DefaultNamespaceKey, byName}})}});
}

std::string reasonFor(const char* message) {
    xmlError error{};
    std::string copy(message);
    error.message = copy.data();
    try {
        wqStructuredErrorFunc(nullptr, &error);
    } catch (const WQXMLException& exception) {
        EXPECT_EQ(exception.name(), u"XML Exception");
        return wq::toUTF8(exception.reason());
    }
    ADD_FAILURE() << "nothing was raised";
    return "";
}

}  // namespace

// ---- Names

TEST(WQLibXMLTest, TheFifteenExceptionNamesReadLikeTheirIdentifiers) {
    const std::pair<const char16_t*, const char16_t*> rows[] = {
        {WQXMLIndexSizeException, u"WQXMLIndexSizeException"},
        {WQXMLDOMStringSizeException, u"WQXMLDOMStringSizeException"},
        {WQXMLHierarchyRequestException, u"WQXMLHierarchyRequestException"},
        {WQXMLWrongDocumentException, u"WQXMLWrongDocumentException"},
        {WQXMLInvalidCharacterException, u"WQXMLInvalidCharacterException"},
        {WQXMLNoDataAllowedException, u"WQXMLNoDataAllowedException"},
        {WQXMLNoModificationAllowedException, u"WQXMLNoModificationAllowedException"},
        {WQXMLNotFoundException, u"WQXMLNotFoundException"},
        {WQXMLNotSupportedException, u"WQXMLNotSupportedException"},
        {WQXMLInUseAttributeException, u"WQXMLInUseAttributeException"},
        {WQXMLInvalidStateException, u"WQXMLInvalidStateException"},
        {WQXMLSyntaxException, u"WQXMLSyntaxException"},
        {WQXMLInvalidModificationException, u"WQXMLInvalidModificationException"},
        {WQXMLNamespaceException, u"WQXMLNamespaceException"},
        {WQXMLInvalidAccessException, u"WQXMLInvalidAccessException"},
    };
    for (const auto& [constant, text] : rows) EXPECT_EQ(NSString(constant), text);
}

TEST(WQLibXMLTest, AnAssertionFailsUnderTheNameOfAnInconsistency) {
    const auto d = parse("<a><!--c--></a>");
    const auto comment = d->documentElement()->firstChild();
    try {
        comment->splitAtIndex(0);
        ADD_FAILURE() << "nothing was raised";
    } catch (const WQXMLException& exception) {
        EXPECT_EQ(exception.name(), u"NSInternalInconsistencyException");
        EXPECT_EQ(exception.reason(), u"subclass responsibility");
    }
}

TEST(WQLibXMLTest, AnAssertionHandlerHearsOperationReceiverFileLineAndDescription) {
    const auto d = parse("<a><!--c--></a>");
    const auto comment = d->documentElement()->firstChild();
    int calls = 0;
    const wq::AssertionScope scope([&](const wq::AssertionFailure& failure) {
        ++calls;
        EXPECT_EQ(failure.operation, "splitAtIndex");
        EXPECT_EQ(failure.receiver, comment.get());
        EXPECT_EQ(failure.file, "WQXMLNode");
        EXPECT_GT(failure.line, 0);
        EXPECT_EQ(failure.description, u"subclass responsibility");
    });
    EXPECT_FALSE(comment->splitAtIndex(0));
    EXPECT_EQ(calls, 1);
}

TEST(WQLibXMLTest, AfterAReturningHandlerTheOperationGoesOn) {
    const auto d = parse("<a><b/></a>");
    const auto b = find(d, u"b");
    const Assertions failed;
    EXPECT_EQ(b->commonAncestorWithNode(b), b);
    EXPECT_THAT(failed.descriptions, ElementsAre("asking for common ancestor of self"));
    EXPECT_THAT(failed.operations, ElementsAre("commonAncestorWithNode"));
    EXPECT_THAT(failed.files, ElementsAre("WQXMLNode"));
}

// ---- Start-up in a process that runs already

TEST(WQLibXMLTest, StartingTwiceChangesNothingTheSecondTime) {
    const auto d = parse("<a/>");
    const xmlRegisterNodeFunc ours = xmlRegisterNodeDefault(nullptr);
    const xmlDeregisterNodeFunc oursToo = xmlDeregisterNodeDefault(nullptr);
    const xmlStructuredErrorFunc oursAsWell = xmlStructuredError;
    xmlSetStructuredErrorFunc(nullptr, nullptr);
    EXPECT_EQ(ours, xmlRegisterNode);
    EXPECT_EQ(oursToo, xmlDeregisterNode);
    EXPECT_EQ(oursAsWell, wqStructuredErrorFunc);

    WQLibXMLInit();
    EXPECT_EQ(xmlStructuredError, nullptr);
    EXPECT_EQ(xmlDeregisterNodeDefault(oursToo), nullptr);
    EXPECT_EQ(xmlRegisterNodeDefault(ours), nullptr);
    xmlSetStructuredErrorFunc(nullptr, oursAsWell);
    EXPECT_EQ(dump(parse("<a><b/></a>")), "a[b]");
}

TEST(WQLibXMLTest, AnotherDocumentDoesNotResetTheDefaultClasses) {
    parse("<a/>");
    const auto put = putClass<Paragraph>(DefaultElementClass);
    EXPECT_TRUE(isExactly<Paragraph>(parse("<a/>")->documentElement()));
    EXPECT_TRUE(isExactly<Paragraph>(WQXMLDocument::newDocument()->createElement(u"a")));
}

TEST(WQLibXMLTest, TheScanCallbackDoesNothing) {
    char payload[] = "payload";
    printIDHashEntry(payload, nullptr, x("name"));
    printIDHashEntry(nullptr, nullptr, nullptr);
    EXPECT_STREQ(payload, "payload");
}

// ---- Which class

TEST(WQLibXMLTest, TheDefaultClassesAreTheFourOfTheLibrary) {
    parse("<a/>");
    EXPECT_EQ(DefaultElementClass, &wq::Class::of<WQXMLElement>());
    EXPECT_EQ(DefaultAttrClass, &wq::Class::of<WQXMLAttr>());
    EXPECT_EQ(DefaultTextClass, &wq::Class::of<WQXMLText>());
    EXPECT_EQ(DefaultNodeClass, &wq::Class::of<WQXMLNode>());
}

TEST(WQLibXMLTest, TheParserWrapsEachNodeByItsType) {
    const auto d = parse("<!DOCTYPE a [<!ENTITY e 'x'>]><a k='v'>text<![CDATA[cdata]]><!--comment--><?target data?>&e;<b/></a>");
    const auto a = d->documentElement();
    EXPECT_TRUE(isExactly<WQXMLElement>(Ref<WQXMLNode>(a)));
    EXPECT_TRUE(isExactly<WQXMLAttr>(a->firstAttribute()));
    EXPECT_TRUE(isExactly<WQXMLText>(a->firstAttribute()->firstChild()));
    const std::tuple<uint64_t, int, bool, const char*> rows[] = {
        {0, 3, isExactly<WQXMLText>(a->childAtIndex(0)), "text"},
        {1, 4, isExactly<WQXMLNode>(a->childAtIndex(1)), "CDATA section"},
        {2, 8, isExactly<WQXMLNode>(a->childAtIndex(2)), "comment"},
        {3, 7, isExactly<WQXMLNode>(a->childAtIndex(3)), "processing instruction"},
        {4, 5, isExactly<WQXMLNode>(a->childAtIndex(4)), "entity reference"},
        {5, 1, isExactly<WQXMLElement>(a->childAtIndex(5)), "element"},
    };
    for (const auto& [index, type, asExpected, what] : rows) {
        SCOPED_TRACE(what);
        EXPECT_EQ(a->childAtIndex(index)->nodeType(), type);
        EXPECT_TRUE(asExpected);
    }
    EXPECT_EQ(a->previousSibling()->nodeType(), 14);
    EXPECT_TRUE(isExactly<WQXMLNode>(a->previousSibling()));
}

TEST(WQLibXMLTest, ACDATASectionAndACommentAreNoCharacterData) {
    const auto d = parse("<a><![CDATA[c]]><!--c--></a>");
    EXPECT_FALSE(wq::cast<WQXMLCharacterData>(d->documentElement()->firstChild()));
    EXPECT_FALSE(wq::cast<WQXMLCharacterData>(d->documentElement()->lastChild()));
}

TEST(WQLibXMLTest, EachDefaultClassServesItsOwnTypes) {
    struct Attribute : WQXMLAttr {};
    struct Text : WQXMLText {};
    struct Other : WQXMLNode {};
    parse("<a/>");
    const auto putElement = putClass<Paragraph>(DefaultElementClass);
    const auto putAttribute = putClass<Attribute>(DefaultAttrClass);
    const auto putText = putClass<Text>(DefaultTextClass);
    const auto putOther = putClass<Other>(DefaultNodeClass);
    const auto d = parse("<a k='v'>text<![CDATA[cdata]]><!--comment--><?target data?></a>");
    const auto a = d->documentElement();
    EXPECT_TRUE(isExactly<Paragraph>(a));
    EXPECT_TRUE(isExactly<Attribute>(a->firstAttribute()));
    EXPECT_TRUE(isExactly<Text>(a->firstAttribute()->firstChild()));
    EXPECT_TRUE(isExactly<Text>(a->childAtIndex(0)));
    EXPECT_TRUE(isExactly<Other>(a->childAtIndex(1)));
    EXPECT_TRUE(isExactly<Other>(a->childAtIndex(2)));
    EXPECT_TRUE(isExactly<Other>(a->childAtIndex(3)));
}

TEST(WQLibXMLTest, ADocumentGetsNoWrapperFromTheHook) {
    parse("<a/>");
    xmlDocPtr plain = xmlNewDoc(x("1.0"));
    xmlDocPtr html = htmlNewDocNoDtD(nullptr, nullptr);
    EXPECT_EQ(plain->_private, nullptr);
    EXPECT_EQ(html->_private, nullptr);
    xmlFreeDoc(plain);
    xmlFreeDoc(html);
}

TEST(WQLibXMLTest, ThePrivateFieldOfADyingDocumentIsLeftAlone) {
    parse("<a/>");
    const WatchedDeregistration watched;
    for (xmlDocPtr doc : {xmlNewDoc(x("1.0")), htmlNewDocNoDtD(nullptr, nullptr)}) {
        doc->_private = reinterpret_cast<void*>(uintptr_t{0x40});
        xmlFreeDoc(doc);
    }
    EXPECT_THAT(WatchedDeregistration::left, ElementsAre(uintptr_t{0x40}, uintptr_t{0x40}));
}

// ---- Wrappers and their absence

TEST(WQLibXMLTest, WrapperAndNodePointAtEachOther) {
    const auto d = parse("<a x='1'>t</a>");
    const auto a = d->documentElement();
    for (const Ref<WQXMLNode>& node : {Ref<WQXMLNode>(a), a->firstChild(), a->firstAttribute()})
        EXPECT_EQ(wrapper(node->xmlNode()), node.get());
    EXPECT_EQ(d->xmlDoc()->_private, d.get());
    EXPECT_EQ(d->xmlNode(), nullptr);
}

TEST(WQLibXMLTest, SettingTheFlagAnswersThePreviousValue) {
    EXPECT_TRUE(gRegisterNode);
    EXPECT_TRUE(setRegisterNode(false));
    EXPECT_FALSE(gRegisterNode);
    EXPECT_FALSE(setRegisterNode(false));
    EXPECT_FALSE(setRegisterNode(true));
    EXPECT_TRUE(setRegisterNode(true));
    EXPECT_TRUE(gRegisterNode);
}

TEST(WQLibXMLTest, NodesMadeWhileTheFlagIsOffHaveNoWrapper) {
    parse("<a/>");
    xmlNodePtr element, text;
    {
        const RegistrationOff off;
        element = xmlNewNode(nullptr, x("e"));
        text = xmlNewText(x("t"));
        xmlAddChild(element, text);
        xmlSetProp(element, x("k"), x("v"));
    }
    EXPECT_EQ(element->_private, nullptr);
    EXPECT_EQ(text->_private, nullptr);
    EXPECT_EQ(element->properties->_private, nullptr);
    EXPECT_EQ(gCheckNode, nullptr);
    xmlFreeNode(element);
}

TEST(WQLibXMLTest, ADocumentParsedWhileTheFlagIsOffAnswersNull) {
    const RegistrationOff off;
    const auto d = parse("<a><b/></a>");
    ASSERT_TRUE(d);
    EXPECT_NE(d->xmlDoc()->children, nullptr);
    EXPECT_FALSE(d->documentElement());
}

TEST(WQLibXMLTest, ConstructorsRestoreTheFlagThatTheyFound) {
    for (const bool value : {true, false}) {
        SCOPED_TRACE(value);
        const bool previous = setRegisterNode(value);
        const auto element = WQXMLElement::newWithName(u"a");
        EXPECT_EQ(gRegisterNode, value);
        const auto qualified = WQXMLElement::newWithQualifiedName_namespaceURI(u"p:a", u"u:1");
        EXPECT_EQ(gRegisterNode, value);
        const auto text = WQXMLText::newWithString(u"t");
        EXPECT_EQ(gRegisterNode, value);
        setRegisterNode(previous);
        for (const Ref<WQXMLNode>& node : {Ref<WQXMLNode>(element), Ref<WQXMLNode>(qualified), Ref<WQXMLNode>(text)})
            EXPECT_EQ(wrapper(node->xmlNode()), node.get());
    }
}

TEST(WQLibXMLTest, WhatIsAddedToAConstructedElementIsRegisteredAsUsual) {
    const auto e = WQXMLElement::newWithName(u"e");
    e->setAttribute_value(u"k", u"v");
    EXPECT_TRUE(isExactly<WQXMLAttr>(e->firstAttribute()));
    EXPECT_TRUE(isExactly<WQXMLText>(e->firstAttribute()->firstChild()));
    xmlNodePtr child = xmlNewChild(e->xmlNode(), nullptr, x("c"), x("t"));
    EXPECT_TRUE(isExactly<WQXMLElement>(wrapper(child)));
    EXPECT_TRUE(isExactly<WQXMLText>(wrapper(child->children)));
}

TEST(WQLibXMLTest, AClassThatRefusesLeavesTheNodeWithoutWrapper) {
    parse("<a/>");
    {
        const auto put = putClass<RefusesEarly<WQXMLNode>>(DefaultNodeClass);
        const auto d = parse("<a><!--c--><b/></a>");
        EXPECT_EQ(d->documentElement()->xmlNode()->children->_private, nullptr);
        EXPECT_FALSE(d->documentElement()->firstChild());
        EXPECT_EQ(d->documentElement()->lastChild()->nodeName(), u"b");
    }
    {
        const auto put = putClass<RefusesLate<WQXMLNode>>(DefaultNodeClass);
        const auto d = parse("<a><!--c--><b/></a>");
        EXPECT_EQ(d->documentElement()->xmlNode()->children->_private, nullptr);
        EXPECT_EQ(d->documentElement()->lastChild()->nodeName(), u"b");
    }
    {
        const auto put = putClass<RefusesLate<WQXMLElement>>(DefaultElementClass);
        const auto d = parse("<a><b/></a>");
        EXPECT_FALSE(d->documentElement());
    }
}

TEST(WQLibXMLTest, EverythingThatLibxml2MakesByItselfGetsAWrapperOfItsNode) {
    const auto d = parse("<a k='v'>t<!--c--></a>");
    const auto counts = [](xmlNodePtr node) {
        std::vector<int> all;
        for (xmlNodePtr each : {node, reinterpret_cast<xmlNodePtr>(node->properties), node->children, node->children->next})
            all.push_back(wrapper(each) ? wrapper(each)->referenceCount() : -1);
        return all;
    };
    EXPECT_THAT(counts(d->xmlDoc()->children), ElementsAre(1, 1, 1, 1));

    xmlNodePtr copy = xmlDocCopyNode(d->xmlDoc()->children, d->xmlDoc(), 1);
    EXPECT_THAT(counts(copy), ElementsAre(1, 1, 1, 1));
    const Ref<WQXMLNode> held = wrapped(copy);
    xmlFreeNode(copy);
    EXPECT_EQ(held->nodeType(), 0x7fff);
    EXPECT_EQ(held->referenceCount(), 1);

    xmlNodePtr list = xmlDocCopyNodeList(nullptr, d->xmlDoc()->children);
    EXPECT_THAT(counts(list), ElementsAre(1, 1, 1, 1));
    xmlFreeNodeList(list);

    xmlDocPtr written = nullptr;
    xmlTextWriterPtr writer = xmlNewTextWriterDoc(&written, 0);
    xmlTextWriterStartDocument(writer, nullptr, nullptr, nullptr);
    xmlTextWriterStartElement(writer, x("a"));
    xmlTextWriterWriteAttribute(writer, x("k"), x("v"));
    xmlTextWriterWriteString(writer, x("t"));
    xmlTextWriterWriteComment(writer, x("c"));
    xmlTextWriterEndDocument(writer);
    xmlFreeTextWriter(writer);
    EXPECT_THAT(counts(written->children), ElementsAre(1, 1, 1, 1));
    xmlFreeDoc(written);
}

TEST(WQLibXMLTest, AFactoryResultIsHeldByTheCallerAlone) {
    const auto d = parse("<a/>");
    const Ref<WQXMLNode> results[] = {d->createElement(u"e"), d->createElement_namespaceURI(u"p:e", u"u:1"), d->createTextNode(u"t")};
    for (const auto& node : results) EXPECT_EQ(node->referenceCount(), 1);
    for (const auto& node : results) {
        d->documentElement()->appendChild(node);
        EXPECT_EQ(node->referenceCount(), 2) << "the caller's and the tree's";
        d->documentElement()->removeChild(node);
        EXPECT_EQ(node->referenceCount(), 1);
    }
}

TEST(WQLibXMLTest, AConstructedNodeIsHeldByTheCallerAlone) {
    const auto parent = WQXMLElement::newWithName(u"a");
    const Ref<WQXMLNode> results[] = {
        WQXMLElement::newWithName(u"e"), WQXMLElement::newWithQualifiedName_namespaceURI(u"p:e", u"u:1"), WQXMLText::newWithString(u"t")};
    for (const auto& node : results) {
        EXPECT_EQ(node->referenceCount(), 1);
        parent->appendChild(node);
        EXPECT_EQ(node->referenceCount(), 2);
    }
}

TEST(WQLibXMLTest, AConstructedNodeDroppedUnlinkedFreesItsNodeOnce) {
    const int64_t before = wq::numberOfLivingNodes();
    auto element = WQXMLElement::newWithName(u"a");
    auto qualified = WQXMLElement::newWithQualifiedName_namespaceURI(u"p:a", u"u:1");
    auto text = WQXMLText::newWithString(u"t");
    EXPECT_EQ(wq::numberOfLivingNodes(), before + 3);
    element = nullptr;
    qualified = nullptr;
    text = nullptr;
    EXPECT_EQ(wq::numberOfLivingNodes(), before);
}

TEST(WQLibXMLTest, AFactoryResultDroppedUnlinkedFreesItsNodeOnce) {
    const auto d = parse("<a/>");
    const int64_t before = wq::numberOfLivingNodes();
    d->createElement(u"e");
    d->createElement_namespaceURI(u"p:e", u"u:1");
    d->createTextNode(u"t");
    EXPECT_EQ(wq::numberOfLivingNodes(), before);
}

TEST(WQLibXMLTest, FreeingADocumentLeavesAHeldWrapperDead) {
    auto d = parse("<a k='v'><b>t</b></a>");
    const auto b = find(d, u"b");
    const auto text = b->firstChild();
    const auto attribute = d->documentElement()->firstAttribute();
    d = nullptr;
    for (const Ref<WQXMLNode>& node : {b, text, attribute}) {
        EXPECT_EQ(node->referenceCount(), 1 + 1) << "this loop holds one";
        EXPECT_EQ(node->xmlNode(), nullptr);
        EXPECT_EQ(node->nodeType(), 0x7fff);
        EXPECT_FALSE(node->parentNode());
    }
}

TEST(WQLibXMLTest, NothingRebindsADeadWrapper) {
    auto d = parse("<a><b/></a>");
    const auto b = find(d, u"b");
    d = parse("<a><b/></a>");
    EXPECT_EQ(b->xmlNode(), nullptr);
    EXPECT_NE(find(d, u"b"), b);
    d->documentElement()->appendChild(b);
    EXPECT_EQ(b->xmlNode(), nullptr);
    EXPECT_EQ(dump(d), "a[b]");
}

TEST(WQLibXMLTest, DroppingADetachedTreeKillsTheHeldWrappersWithinIt) {
    const auto d = parse("<a><b><c k='v'>t</c></b></a>");
    const auto c = find(d, u"c");
    const auto text = c->firstChild();
    const auto attribute = wq::cast<WQXMLElement>(c)->firstAttribute();
    d->documentElement()->removeChild(find(d, u"b"));
    EXPECT_EQ(c->nodeType(), 0x7fff);
    EXPECT_EQ(text->nodeType(), 0x7fff);
    EXPECT_EQ(attribute->nodeType(), 0x7fff);
    EXPECT_EQ(c->referenceCount(), 1);
}

// ---- The deregistration hook

TEST(WQLibXMLTest, ThePrivateValue0x22IsLeftAlone) {
    parse("<a/>");
    xmlNodePtr node;
    {
        const RegistrationOff off;
        node = xmlNewNode(nullptr, x("e"));
    }
    node->_private = reinterpret_cast<void*>(uintptr_t{0x22});
    const WatchedDeregistration watched;
    xmlFreeNode(node);
    EXPECT_THAT(WatchedDeregistration::left, ElementsAre(uintptr_t{0x22}));
}

TEST(WQLibXMLTest, DeregistrationGivesUpTheCountOfTheNode) {
    parse("<a/>");
    xmlNodePtr node = xmlNewComment(x("c"));
    const Ref<WQXMLNode> held = wrapped(node);
    EXPECT_EQ(held->referenceCount(), 2);
    xmlFreeNode(node);
    EXPECT_EQ(held->referenceCount(), 1);
    EXPECT_EQ(held->xmlNode(), nullptr);
}

TEST(WQLibXMLTest, DeregistrationSetsTheNodeOfTheWrapperToNull) {
    struct Other : WQXMLNode {
        void setXMLNode(_xmlNode* node) noexcept override {
            nulls += node == nullptr;
            countThen = referenceCount();
            WQXMLNode::setXMLNode(node);
        }
        int nulls = 0, countThen = 0;
    };
    parse("<a/>");
    const auto put = putClass<Other>(DefaultNodeClass);
    xmlNodePtr node = xmlNewComment(x("c"));
    const auto held = wq::cast<Other>(wrapped(node));
    ASSERT_TRUE(held);
    xmlFreeNode(node);
    EXPECT_EQ(held->nulls, 1);
    EXPECT_EQ(held->countThen, 2) << "the count goes after the link";
}

// ---- The pending class check

TEST(WQLibXMLTest, ANewElementIsPendingUntilTheCheck) {
    const auto d = parse("<a/>", everyElementIs<Paragraph>());
    EXPECT_EQ(gCheckNode, nullptr);
    xmlNodePtr node = xmlNewDocNode(d->xmlDoc(), nullptr, x("p"), nullptr);
    EXPECT_EQ(gCheckNode, node);
    EXPECT_TRUE(isExactly<WQXMLElement>(wrapper(node)));
    checkNode();
    EXPECT_EQ(gCheckNode, nullptr);
    EXPECT_TRUE(isExactly<Paragraph>(wrapper(node)));
    EXPECT_EQ(wrapper(node)->referenceCount(), 1);
    xmlFreeNode(node);
}

TEST(WQLibXMLTest, OnlyElementsBecomePending) {
    parse("<a/>");
    for (xmlNodePtr node : {xmlNewText(x("t")), xmlNewComment(x("c")), xmlNewPI(x("t"), x("d"))}) {
        EXPECT_EQ(gCheckNode, nullptr);
        xmlFreeNode(node);
    }
}

TEST(WQLibXMLTest, AnElementWithoutDocumentOrWithAForeignOneIsNoLongerPendingAfterTheCheck) {
    parse("<a/>");
    xmlDocPtr foreign = xmlNewDoc(x("1.0"));
    for (xmlNodePtr node : {xmlNewNode(nullptr, x("p")), xmlNewDocNode(foreign, nullptr, x("p"), nullptr)}) {
        checkNode();
        EXPECT_EQ(gCheckNode, nullptr);
        EXPECT_TRUE(isExactly<WQXMLElement>(wrapper(node)));
        xmlFreeNode(node);
    }
    xmlFreeDoc(foreign);
    checkNode();
    EXPECT_EQ(gCheckNode, nullptr);
}

TEST(WQLibXMLTest, TheNextElementSettlesTheEarlierOneAndIsPendingThen) {
    const auto d = parse("<a/>", everyElementIs<Paragraph>());
    xmlNodePtr first = xmlNewDocNode(d->xmlDoc(), nullptr, x("p"), nullptr);
    xmlNodePtr second = xmlNewDocNode(d->xmlDoc(), nullptr, x("q"), nullptr);
    EXPECT_TRUE(isExactly<Paragraph>(wrapper(first)));
    EXPECT_TRUE(isExactly<WQXMLElement>(wrapper(second)));
    EXPECT_EQ(gCheckNode, second);
    xmlFreeNode(second);
    xmlFreeNode(first);
    EXPECT_EQ(gCheckNode, nullptr);
}

TEST(WQLibXMLTest, EveryRegistrationSettles) {
    const auto d = parse("<a/>", everyElementIs<Paragraph>());
    xmlDocPtr other = nullptr;
    const std::pair<const char*, std::function<xmlNodePtr()>> rows[] = {
        {"text", [] { return xmlNewText(x("t")); }},
        {"comment", [] { return xmlNewComment(x("c")); }},
        {"document", [&] { return reinterpret_cast<xmlNodePtr>(other = xmlNewDoc(x("1.0"))); }},
    };
    for (const auto& [what, make] : rows) {
        SCOPED_TRACE(what);
        xmlNodePtr pending = xmlNewDocNode(d->xmlDoc(), nullptr, x("p"), nullptr);
        xmlNodePtr made = make();
        EXPECT_TRUE(isExactly<Paragraph>(wrapper(pending)));
        EXPECT_EQ(gCheckNode, nullptr);
        xmlFreeNode(pending);
        if (reinterpret_cast<xmlDocPtr>(made) == other)
            xmlFreeDoc(other);
        else
            xmlFreeNode(made);
    }
}

TEST(WQLibXMLTest, ARegistrationSettlesWhateverTheFlagSays) {
    const auto d = parse("<a/>", everyElementIs<Paragraph>());
    xmlNodePtr pending = xmlNewDocNode(d->xmlDoc(), nullptr, x("p"), nullptr);
    const RegistrationOff off;
    xmlNodePtr text = xmlNewText(x("t"));
    EXPECT_TRUE(isExactly<Paragraph>(wrapper(pending)));
    EXPECT_EQ(gCheckNode, nullptr);
    EXPECT_EQ(text->_private, nullptr);
    xmlFreeNode(text);
    xmlFreeNode(pending);
}

TEST(WQLibXMLTest, EveryDeregistrationSettles) {
    const auto d = parse("<a/>", everyElementIs<Paragraph>());
    {
        SCOPED_TRACE("of another node");
        xmlNodePtr text = xmlNewText(x("t"));
        xmlNodePtr pending = xmlNewDocNode(d->xmlDoc(), nullptr, x("p"), nullptr);
        xmlFreeNode(text);
        EXPECT_EQ(gCheckNode, nullptr);
        EXPECT_TRUE(isExactly<Paragraph>(wrapper(pending)));
        xmlFreeNode(pending);
    }
    {
        SCOPED_TRACE("of a document");
        xmlDocPtr other = xmlNewDoc(x("1.0"));
        xmlNodePtr pending = xmlNewDocNode(d->xmlDoc(), nullptr, x("p"), nullptr);
        xmlFreeDoc(other);
        EXPECT_EQ(gCheckNode, nullptr);
        EXPECT_TRUE(isExactly<Paragraph>(wrapper(pending)));
        xmlFreeNode(pending);
    }
}

TEST(WQLibXMLTest, APendingElementThatIsFreedIsSettledFirstAndNeverPointedAtAfterwards) {
    Watching::seen.clear();
    const auto d = parse("<a/>", elementsNamed<Watching>(u"p"));
    xmlNodePtr pending = xmlNewDocNode(d->xmlDoc(), nullptr, x("p"), nullptr);
    xmlFreeNode(pending);
    EXPECT_EQ(gCheckNode, nullptr);
    EXPECT_THAT(Watching::seen, ElementsAre("p empty"));
}

TEST(WQLibXMLTest, APendingElementOfADyingDocumentIsSettledByThat) {
    auto d = parse("<a/>", everyElementIs<Paragraph>());
    xmlAddChild(d->xmlDoc()->children, xmlNewDocNode(d->xmlDoc(), nullptr, x("p"), nullptr));
    ASSERT_NE(gCheckNode, nullptr);
    d = nullptr;
    EXPECT_EQ(gCheckNode, nullptr);
}

TEST(WQLibXMLTest, AConstructedElementIsNeverPending) {
    const auto d = parse("<a/>", everyElementIs<Paragraph>());
    const auto e = WQXMLElement::newWithName(u"p");
    const auto f = WQXMLElement::newWithQualifiedName_namespaceURI(u"q:p", u"u:1");
    EXPECT_EQ(gCheckNode, nullptr);
    d->documentElement()->appendChild(e);
    d->documentElement()->appendChild(f);
    checkNode();
    parse("<a/>");
    EXPECT_TRUE(isExactly<WQXMLElement>(Ref<WQXMLNode>(e)));
    EXPECT_TRUE(isExactly<WQXMLElement>(Ref<WQXMLNode>(f)));
}

TEST(WQLibXMLTest, AConstructorSettlesAnEarlierElement) {
    const auto d = parse("<a/>", everyElementIs<Paragraph>());
    xmlNodePtr pending = xmlNewDocNode(d->xmlDoc(), nullptr, x("p"), nullptr);
    const auto e = WQXMLElement::newWithName(u"e");
    EXPECT_TRUE(isExactly<Paragraph>(wrapper(pending)));
    EXPECT_EQ(gCheckNode, nullptr);
    xmlFreeNode(pending);
}

TEST(WQLibXMLTest, AFactoryLeavesNothingPending) {
    const auto byName = NSDictionary::dictionary({{u"p", &wq::Class::of<Paragraph>()}});
    const auto byNamespace = NSDictionary::dictionary({{u"p", &wq::Class::of<Section>()}});
    const auto d = WQXMLDocument::newWithArguments(NSDictionary::dictionary(
        {{DefaultElementClassesKey, NSDictionary::dictionary({{DefaultNamespaceKey, byName}, {u"u:1", byNamespace}})}}));
    const Ref<WQXMLNode> plain = d->createElement(u"p");
    EXPECT_EQ(gCheckNode, nullptr);
    EXPECT_TRUE(isExactly<Paragraph>(plain));
    EXPECT_EQ(plain->referenceCount(), 1);
    const Ref<WQXMLNode> qualified = d->createElement_namespaceURI(u"q:p", u"u:1");
    EXPECT_EQ(gCheckNode, nullptr);
    EXPECT_TRUE(isExactly<Section>(qualified));
    EXPECT_EQ(qualified->referenceCount(), 1);
}

TEST(WQLibXMLTest, AFactoryLeavesAnEarlierPendingElementSettled) {
    const auto d = parse("<a/>", everyElementIs<Paragraph>());
    xmlNodePtr pending = xmlNewDocNode(d->xmlDoc(), nullptr, x("p"), nullptr);
    const auto e = d->createElement(u"e");
    EXPECT_TRUE(isExactly<Paragraph>(wrapper(pending)));
    xmlFreeNode(pending);
}

TEST(WQLibXMLTest, TheEndOfAParseLeavesNothingPending) {
    parse("<a><b/><c x='1'/></a>");
    EXPECT_EQ(gCheckNode, nullptr);
    parseHTML("<html><body><p>x</p></body></html>");
    EXPECT_EQ(gCheckNode, nullptr);
}

TEST(WQLibXMLTest, AnElementIsSettledWithAllItsAttributesAndNoChildren) {
    Watching::seen.clear();
    const auto d = parse("<a k='1' l='a&amp;b' m=''><b/>t<c p:n='2' xmlns:p='u:1'><b z='9'>t</b></c></a>", everyElementIs<Watching>());
    EXPECT_THAT(Watching::seen, ElementsAre("a k=1 l=a&b m= empty", "b empty", "c p:n=2 empty", "b z=9 empty"));
    EXPECT_EQ(dump(d), "a[b,\"t\",c[b[\"t\"]]]");
}

TEST(WQLibXMLTest, AnElementWithEntityReferencesInItsAttributesIsSettledWithAllOfThem) {
    Watching::seen.clear();
    parse("<!DOCTYPE a [<!ENTITY e 'x'>]><a k='1&e;2' l='&e;' m='3'/>", everyElementIs<Watching>());
    EXPECT_THAT(Watching::seen, ElementsAre("a k=1x2 l=x m=3 empty"));
}

TEST(WQLibXMLTest, AnElementWithIdentifiersAndLongValuesIsSettledWithAllAttributes) {
    Watching::seen.clear();
    const std::string value(5000, 'v');
    parse("<!DOCTYPE a [<!ATTLIST a i ID #IMPLIED n NMTOKEN 'd'>]><a i=' j ' xml:id='k' l='" + value + "'/>", everyElementIs<Watching>());
    EXPECT_THAT(Watching::seen, ElementsAre("a i=j xml:id=k l=" + value + " empty"));
}

TEST(WQLibXMLTest, AnElementIsSettledWithItsNamespace) {
    Watching::seen.clear();
    const auto byName = NSDictionary::dictionary({{u"b", &wq::Class::of<Watching>()}});
    const auto arguments = NSDictionary::dictionary({{DefaultElementClassesKey, NSDictionary::dictionary({{u"u:1", byName}})}});
    const auto d = parse("<a xmlns:p='u:1'><b/><p:b p:k='1' k='2'/><p:c/></a>", arguments);
    EXPECT_THAT(Watching::seen, ElementsAre("p:b p:k=1 k=2 {u:1} empty"));
    Watching::seen.clear();
    d->createElement_namespaceURI(u"q:b", u"u:1");
    EXPECT_THAT(Watching::seen, ElementsAre("q:b {u:1} empty"));
}

TEST(WQLibXMLTest, AnHTMLElementIsSettledWithAllItsAttributes) {
    Watching::seen.clear();
    const auto byName = NSDictionary::dictionary({{u"p", &wq::Class::of<Watching>()}});
    const auto classes = NSDictionary::dictionary({{DefaultNamespaceKey, byName}});
    parse(
        "<html><body><p class='c' title='t'>x</p></body></html>",
        NSDictionary::dictionary({{WQXMLDocumentParseAsHTMLKey, true}, {DefaultElementClassesKey, classes}}));
    EXPECT_THAT(Watching::seen, ElementsAre("p class=c title=t empty"));
}

TEST(WQLibXMLTest, ARefusalWhileSettlingLeavesTheElementItsWrapper) {
    {
        const auto d = parse("<a><b k='v'>t</b></a>", elementsNamed<RefusesEarly<WQXMLElement>>(u"b"));
        EXPECT_TRUE(isExactly<WQXMLElement>(find(d, u"b")));
        EXPECT_EQ(find(d, u"b")->referenceCount(), 2);
    }
    {
        RefusesLate<WQXMLElement>::calls = 0;
        const auto d = parse("<a><b k='v'>t</b></a>", elementsNamed<RefusesLate<WQXMLElement>>(u"b"));
        EXPECT_EQ(RefusesLate<WQXMLElement>::calls, 1);
        const auto b = find(d, u"b");
        EXPECT_TRUE(isExactly<WQXMLElement>(b));
        EXPECT_EQ(wrapper(b->xmlNode()), b.get());
        EXPECT_EQ(dump(d), "a[b[\"t\"]]");
    }
}

TEST(WQLibXMLTest, AnElementMadeWhileAnotherIsBeingSettledIsSettledInItsTurn) {
    struct Nesting : WQXMLElement {
        bool initWithXMLNode(_xmlNode* node) override {
            if (!WQXMLElement::initWithXMLNode(node)) return false;
            inner = WQXMLElement::newWithName(u"inner");
            inner->setAttribute_value(u"k", u"v");
            made = wq::cast<WQXMLDocument>(wrapped(otherDocument))->createElement(u"p");
            made->setAttribute_value(u"k", u"v");
            made->appendChild(wq::cast<WQXMLDocument>(wrapped(otherDocument))->createElement(u"q"));
            return true;
        }
        Ref<WQXMLElement> inner, made;
    };
    const auto other = WQXMLDocument::newWithArguments(elementsNamed<Paragraph>(u"p"));
    const Put<xmlDocPtr> put(otherDocument, other->xmlDoc());
    const auto byName = NSDictionary::dictionary({{u"n", &wq::Class::of<Nesting>()}, {u"p", &wq::Class::of<Section>()}});
    const auto arguments =
        NSDictionary::dictionary({{DefaultElementClassesKey, NSDictionary::dictionary({{DefaultNamespaceKey, byName}})}});
    const auto d = parse("<a><n k='1' l='2'/><p/></a>", arguments);
    const auto n = wq::cast<Nesting>(find(d, u"n"));
    ASSERT_TRUE(n);
    EXPECT_TRUE(isExactly<Paragraph>(Ref<WQXMLNode>(n->made)));
    EXPECT_EQ(serialised(n->made), "<p k=\"v\"><q/></p>");
    EXPECT_EQ(n->getAttribute(u"l"), u"2");
    EXPECT_EQ(n->inner->getAttribute(u"k"), u"v");
    EXPECT_TRUE(isExactly<Section>(find(d, u"p")));
    EXPECT_EQ(gCheckNode, nullptr);
}

// ---- Errors of libxml2

TEST(WQLibXMLTest, AnErrorIsRaisedWithItsMessageLineEndIncluded) {
    EXPECT_EQ(reasonFor("Document is empty\n"), "Document is empty\n");
    EXPECT_EQ(reasonFor("no line end"), "no line end");
    EXPECT_EQ(reasonFor(""), "");
    EXPECT_EQ(reasonFor("caf\xc3\xa9 \xf0\x9f\x98\x80"), "caf\xc3\xa9 \xf0\x9f\x98\x80");
}

TEST(WQLibXMLTest, PercentSignsInAMessageAreReadAsDirectivesWithoutArguments) {
    const std::pair<const char*, const char*> rows[] = {
        {"100%% sure\n", "100% sure\n"},
        {"%@", "(null)"},
        {"a %@ b %@ c", "a (null) b (null) c"},
        {"%%@", "%@"},
        {"%%%@", "%(null)"},
        {"%%%%", "%%"},
        {"%d of %s", "%d of %s"},
        {"'%zz'", "'%zz'"},
        {"%20n", "%20n"},
        {"at the end %", "at the end %"},
    };
    for (const auto& [message, reason] : rows) EXPECT_EQ(reasonFor(message), reason) << message;
}

TEST(WQLibXMLTest, OutsideTheLibraryTheExceptionPassesThroughLibxml2) {
    parse("<a/>");
    EXPECT_EQ(
        raised([] { xmlTextWriterStartDocument(nullptr, nullptr, nullptr, nullptr); }),
        "XML Exception: xmlTextWriterStartDocument : invalid writer!\n");
}

TEST(WQLibXMLTest, AParseErrorIsRaisedOutOfTheParsingCall) {
    const std::pair<const char*, const char*> rows[] = {
        {"<a><b></a>", "Opening and ending tag mismatch: b line 1 and a\n"},
        {"<a>", "Premature end of data in tag a line 1\n"},
        {"text", "Start tag expected, '<' not found\n"},
        {"<a x='1' x='2'/>", "Attribute x redefined\n"},
        {"<p:a/>", "Namespace prefix p on a is not defined\n"},
        {"<a>&n;</a>", "Entity 'n' not defined\n"},
        {"<a/><b/>", "Extra content at the end of the document\n"},
        {"<a><b xml:id='i'/><c xml:id='i'/></a>", "ID i already defined\n"},
        {"<a xmlns='foo'/>", "xmlns: URI foo is not absolute\n"},
        {"<a xmlns='%zz'/>", "xmlns: '%zz' is not a valid URI\n"},
        {"<a xmlns='%@'/>", "xmlns: '(null)' is not a valid URI\n"},
        {"<a xmlns='%%'/>", "xmlns: '%' is not a valid URI\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.first);
        EXPECT_EQ(raised([&] { parse(row.first); }), std::string("XML Exception: ") + row.second);
        EXPECT_EQ(gCheckNode, nullptr);
        EXPECT_TRUE(gRegisterNode);
        EXPECT_EQ(dump(parse("<a><b/></a>")), "a[b]") << "the next parse";
    }
}

TEST(WQLibXMLTest, AnHTMLErrorIsRaisedOutOfTheParsingCall) {
    EXPECT_EQ(raised([] { parseHTML("<html><body><section>x</section></body></html>"); }), "XML Exception: Tag section invalid\n");
    EXPECT_EQ(gCheckNode, nullptr);
    EXPECT_EQ(dump(parseHTML("<html><body><p>x</p></body></html>")), "html[body[p[\"x\"]]]");
}

TEST(WQLibXMLTest, TheFirstOfSeveralErrorsIsTheOneRaised) {
    EXPECT_EQ(raised([] { parse("<a xmlns='foo'><b></c></a>"); }), "XML Exception: xmlns: URI foo is not absolute\n");
    EXPECT_EQ(raised([] { parse("<a><b></c>&n;</a>"); }), "XML Exception: Opening and ending tag mismatch: b line 1 and c\n");
    EXPECT_EQ(
        raised([] { parseHTML("<html><body><section>x</section></em><p>&zz;</p></body></html>"); }),
        "XML Exception: Tag section invalid\n");
}

TEST(WQLibXMLTest, NoOverrideRunsOnceAnErrorIsKept) {
    Watching::seen.clear();
    EXPECT_NE(raised([] { parse("<a><b k='1'/><c xmlns='foo'><d/></c><e/></a>", everyElementIs<Watching>()); }), "");
    EXPECT_THAT(Watching::seen, ElementsAre("a empty", "b k=1 empty"));
}

TEST(WQLibXMLTest, AParseErrorLeavesTheErrorArgumentAlone) {
    const auto mine = NSError::errorWithDomain_code_description(u"mine", 1, u"mine");
    Ref<NSError> error = mine;
    EXPECT_NE(raised([&] { WQXMLDocument::newWithData_baseURL_arguments_error(data("<a>"), nullptr, nullptr, &error); }), "");
    EXPECT_EQ(error, mine);
}

TEST(WQLibXMLTest, AnErrorWithinTheDocumentTypeIsRaisedAsWell) {
    EXPECT_NE(raised([] { parse("<!DOCTYPE a [<!ENTITY % p '<!ELEMENT a'> %p; ]><a/>"); }), "");
    EXPECT_NE(raised([] { parse("<!DOCTYPE a [<!ELEMENT a EMPTY><!ELEMENT a ANY>]><a/>"); }), "");
    EXPECT_EQ(dump(parse("<a/>")), "a");
}

// ---- Overrides that raise

TEST(WQLibXMLTest, AnOverrideThatRaisesInAParseRaisesOutOfTheParsingCall) {
    RaisesEarly<WQXMLElement>::calls = RaisesLate<WQXMLElement>::calls = 0;
    EXPECT_EQ(raised([] { parse("<a><b k='v'/><b/><b/></a>", elementsNamed<RaisesEarly<WQXMLElement>>(u"b")); }), "Refusal: 1");
    EXPECT_EQ(RaisesEarly<WQXMLElement>::calls, 1) << "the first one is kept, and no more code of the application runs";
    EXPECT_EQ(raised([] { parse("<a><b k='v'/><b/><b/></a>", elementsNamed<RaisesLate<WQXMLElement>>(u"b")); }), "Refusal: 1");
    EXPECT_EQ(RaisesLate<WQXMLElement>::calls, 1);
    EXPECT_EQ(gCheckNode, nullptr);
    EXPECT_EQ(dump(parse("<a><b/></a>")), "a[b]");
}

TEST(WQLibXMLTest, AnOverrideThatRaisesInAnHTMLParseRaisesOutOfTheParsingCall) {
    RaisesLate<WQXMLElement>::calls = 0;
    const auto byName = NSDictionary::dictionary({{u"p", &wq::Class::of<RaisesLate<WQXMLElement>>()}});
    const auto arguments = NSDictionary::dictionary(
        {{WQXMLDocumentParseAsHTMLKey, true}, {DefaultElementClassesKey, NSDictionary::dictionary({{DefaultNamespaceKey, byName}})}});
    EXPECT_EQ(raised([&] { parse("<html><body><p>1</p><p>2</p></body></html>", arguments); }), "Refusal: 1");
    EXPECT_EQ(RaisesLate<WQXMLElement>::calls, 1);
    EXPECT_EQ(gCheckNode, nullptr);
}

TEST(WQLibXMLTest, TheFirstOfAnErrorAndAnExceptionIsTheOneRaised) {
    RaisesEarly<WQXMLElement>::calls = 0;
    EXPECT_EQ(raised([] { parse("<a><b/></c>", elementsNamed<RaisesEarly<WQXMLElement>>(u"b")); }), "Refusal: 1");
    EXPECT_EQ(
        raised([] { parse("<a xmlns:q='u:1' q:x='1' xmlns='foo'><b/></a>", elementsNamed<RaisesEarly<WQXMLElement>>(u"b")); }),
        "XML Exception: xmlns: URI foo is not absolute\n");
}

TEST(WQLibXMLTest, AnyExceptionOfAnOverrideReachesTheCaller) {
    EXPECT_THROW(parse("<a><b/></a>", elementsNamed<RaisesStandard>(u"b")), std::runtime_error);
    const auto d = WQXMLDocument::newWithArguments(elementsNamed<RaisesStandard>(u"b"));
    EXPECT_THROW(d->createElement(u"b"), std::runtime_error);
    EXPECT_EQ(gCheckNode, nullptr);
}

TEST(WQLibXMLTest, ADefaultClassThatRaisesInAParseRaisesOutOfTheParsingCall) {
    RaisesEarly<WQXMLElement>::calls = RaisesLate<WQXMLText>::calls = RaisesLate<WQXMLAttr>::calls = RaisesLate<WQXMLNode>::calls = 0;
    parse("<a/>");
    const char* xml = "<a k='v' l='w'>t<!--c--><b/>t<!--c--></a>";
    {
        const auto put = putClass<RaisesEarly<WQXMLElement>>(DefaultElementClass);
        EXPECT_EQ(raised([&] { parse(xml); }), "Refusal: 1");
    }
    {
        const auto put = putClass<RaisesLate<WQXMLText>>(DefaultTextClass);
        EXPECT_EQ(raised([&] { parse(xml); }), "Refusal: 1");
    }
    {
        const auto put = putClass<RaisesLate<WQXMLAttr>>(DefaultAttrClass);
        EXPECT_EQ(raised([&] { parse(xml); }), "Refusal: 1");
    }
    {
        const auto put = putClass<RaisesLate<WQXMLNode>>(DefaultNodeClass);
        EXPECT_EQ(raised([&] { parse(xml); }), "Refusal: 1");
    }
    EXPECT_EQ(dump(parse("<a><b/></a>")), "a[b]");
}

TEST(WQLibXMLTest, AnOverrideThatRaisesInAFactoryRaisesOutOfTheFactory) {
    RaisesEarly<WQXMLElement>::calls = RaisesLate<WQXMLElement>::calls = 0;
    const auto early = NSDictionary::dictionary({{DefaultElementKey, &wq::Class::of<RaisesEarly<WQXMLElement>>()}});
    const auto late = NSDictionary::dictionary({{DefaultElementKey, &wq::Class::of<RaisesLate<WQXMLElement>>()}});
    const auto d = WQXMLDocument::newWithArguments(
        NSDictionary::dictionary({{DefaultElementClassesKey, NSDictionary::dictionary({{DefaultNamespaceKey, early}, {u"u:1", late}})}}));
    const int64_t before = wq::numberOfLivingNodes();
    EXPECT_EQ(raised([&] { d->createElement(u"a"); }), "Refusal: 1");
    EXPECT_EQ(raised([&] { d->createElement(u"a"); }), "Refusal: 2");
    EXPECT_EQ(raised([&] { d->createElement_namespaceURI(u"p:a", u"u:1"); }), "Refusal: 1");
    EXPECT_EQ(gCheckNode, nullptr);
    EXPECT_EQ(wq::numberOfLivingNodes(), before);
}

TEST(WQLibXMLTest, ATextClassThatRaisesRaisesOutOfTheFactory) {
    const auto d = parse("<a/>");
    RaisesEarly<WQXMLText>::calls = RaisesLate<WQXMLText>::calls = 0;
    const int64_t before = wq::numberOfLivingNodes();
    {
        const auto put = putClass<RaisesEarly<WQXMLText>>(DefaultTextClass);
        EXPECT_EQ(raised([&] { d->createTextNode(u"t"); }), "Refusal: 1");
    }
    {
        const auto put = putClass<RaisesLate<WQXMLText>>(DefaultTextClass);
        EXPECT_EQ(raised([&] { d->createTextNode(u"t"); }), "Refusal: 1");
    }
    EXPECT_EQ(wq::numberOfLivingNodes(), before);
}

TEST(WQLibXMLTest, AnOverrideThatRaisesInAConstructorFreesTheNode) {
    RaisesEarly<WQXMLElement>::calls = RaisesLate<WQXMLElement>::calls = RaisesEarly<WQXMLText>::calls = RaisesLate<WQXMLText>::calls = 0;
    const int64_t before = wq::numberOfLivingNodes();
    EXPECT_EQ(raised([] { WQXMLElement::newWithName<RaisesEarly<WQXMLElement>>(u"a"); }), "Refusal: 1");
    EXPECT_EQ(raised([] { WQXMLElement::newWithName<RaisesLate<WQXMLElement>>(u"a"); }), "Refusal: 1");
    EXPECT_EQ(raised([] { WQXMLElement::newWithQualifiedName_namespaceURI<RaisesEarly<WQXMLElement>>(u"p:a", u"u:1"); }), "Refusal: 2");
    EXPECT_EQ(raised([] { WQXMLElement::newWithQualifiedName_namespaceURI<RaisesLate<WQXMLElement>>(u"p:a", u"u:1"); }), "Refusal: 2");
    EXPECT_EQ(raised([] { WQXMLText::newWithString<RaisesEarly<WQXMLText>>(u"t"); }), "Refusal: 1");
    EXPECT_EQ(raised([] { WQXMLText::newWithString<RaisesLate<WQXMLText>>(u"t"); }), "Refusal: 1");
    EXPECT_EQ(wq::numberOfLivingNodes(), before);
    EXPECT_TRUE(gRegisterNode);
}

TEST(WQLibXMLTest, ARefusalInAConstructorYieldsNullAndFreesTheNode) {
    const Assertions failed;
    const int64_t before = wq::numberOfLivingNodes();
    EXPECT_FALSE(WQXMLElement::newWithName<RefusesEarly<WQXMLElement>>(u"a"));
    EXPECT_FALSE(WQXMLElement::newWithName<RefusesLate<WQXMLElement>>(u"a"));
    EXPECT_FALSE(WQXMLElement::newWithQualifiedName_namespaceURI<RefusesEarly<WQXMLElement>>(u"p:a", u"u:1"));
    EXPECT_FALSE(WQXMLElement::newWithQualifiedName_namespaceURI<RefusesLate<WQXMLElement>>(u"p:a", u"u:1"));
    EXPECT_FALSE(WQXMLText::newWithString<RefusesEarly<WQXMLText>>(u"t"));
    EXPECT_FALSE(WQXMLText::newWithString<RefusesLate<WQXMLText>>(u"t"));
    EXPECT_EQ(wq::numberOfLivingNodes(), before);
    EXPECT_TRUE(gRegisterNode);
}

TEST(WQLibXMLTest, AnOverrideThatRaisesWhenAnAttributeIsMadeRaisesOutOfTheEdit) {
    const auto d = parse("<a k='v'/>");
    const auto a = d->documentElement();
    RaisesLate<WQXMLAttr>::calls = RaisesLate<WQXMLText>::calls = 0;
    {
        const auto put = putClass<RaisesLate<WQXMLAttr>>(DefaultAttrClass);
        EXPECT_EQ(raised([&] { a->setAttribute_value(u"l", u"w"); }), "Refusal: 1");
    }
    {
        const auto put = putClass<RaisesLate<WQXMLText>>(DefaultTextClass);
        EXPECT_EQ(raised([&] { a->setAttribute_value(u"m", u"w"); }), "Refusal: 1");
    }
    EXPECT_EQ(a->getAttribute(u"k"), u"v");
}

// ---- Linked, unlinked and freed by libxml2 itself

TEST(WQLibXMLTest, ANodeUnlinkedAndFreedByLibxml2Dies) {
    const auto d = parse("<a><b>t</b><c/></a>");
    const auto b = find(d, u"b");
    xmlNodePtr node = b->xmlNode();
    xmlUnlinkNode(node);
    EXPECT_FALSE(b->parentNode());
    EXPECT_EQ(b->referenceCount(), 2);
    xmlFreeNode(node);
    EXPECT_EQ(b->nodeType(), 0x7fff);
    EXPECT_EQ(b->referenceCount(), 1);
    EXPECT_EQ(dump(d), "a[c]");
}

TEST(WQLibXMLTest, ANodeUnlinkedByLibxml2CanBeInsertedAgain) {
    const auto d = parse("<a><b>t</b><c/></a>");
    const auto b = find(d, u"b");
    xmlUnlinkNode(b->xmlNode());
    d->documentElement()->appendChild(b);
    EXPECT_EQ(b->referenceCount(), 2) << "one count of the tree, not two";
    EXPECT_EQ(dump(d), "a[c,b[\"t\"]]");
}

TEST(WQLibXMLTest, ANodeLinkedByLibxml2DiesWithTheDocument) {
    auto d = parse("<a/>");
    const auto e = d->createElement(u"e");
    const auto f = WQXMLElement::newWithName(u"f");
    xmlAddChild(d->documentElement()->xmlNode(), e->xmlNode());
    xmlAddChild(d->documentElement()->xmlNode(), f->xmlNode());
    EXPECT_EQ(dump(d), "a[e,f]");
    d = nullptr;
    EXPECT_EQ(e->nodeType(), 0x7fff);
    EXPECT_EQ(f->nodeType(), 0x7fff);
    EXPECT_EQ(e->referenceCount(), 1);
}

TEST(WQLibXMLTest, ANodeLinkedByLibxml2CanBeRemoved) {
    auto d = parse("<a/>");
    const auto e = d->createElement(u"e");
    xmlAddChild(d->documentElement()->xmlNode(), e->xmlNode());
    EXPECT_EQ(d->documentElement()->removeChild(e), e);
    EXPECT_EQ(e->referenceCount(), 1);
    d = nullptr;
    EXPECT_EQ(e->nodeName(), u"e");
    EXPECT_FALSE(e->ownerDocument());
}

TEST(WQLibXMLTest, ANodeLinkedByLibxml2CanBeMoved) {
    const auto d = parse("<a><b/></a>");
    auto e = d->createElement(u"e");
    xmlAddChild(d->documentElement()->xmlNode(), e->xmlNode());
    find(d, u"b")->appendChild(e);
    EXPECT_EQ(e->referenceCount(), 2);
    e = nullptr;
    EXPECT_EQ(dump(d), "a[b[e]]");
}

TEST(WQLibXMLTest, ATextMergedAwayByLibxml2Dies) {
    const auto d = parse("<a>one</a>");
    const auto text = d->createTextNode(u"two");
    xmlAddChild(d->documentElement()->xmlNode(), text->xmlNode());
    EXPECT_EQ(text->nodeType(), 0x7fff);
    EXPECT_EQ(text->referenceCount(), 1);
    EXPECT_EQ(dump(d), "a[\"onetwo\"]");
}

TEST(WQLibXMLTest, AFactoryResultFreedByLibxml2Dies) {
    const auto d = parse("<a/>");
    const auto e = d->createElement(u"e");
    xmlFreeNode(e->xmlNode());
    EXPECT_EQ(e->nodeType(), 0x7fff);
    EXPECT_EQ(e->referenceCount(), 1);
}

TEST(WQLibXMLTest, ANodeThatLibxml2MadeCanBeInserted) {
    const auto d = parse("<a/>");
    xmlNodePtr node = xmlNewDocNode(d->xmlDoc(), nullptr, x("n"), x("t"));
    d->documentElement()->appendChild(wrapped(node));
    EXPECT_EQ(wrapper(node)->referenceCount(), 1);
    EXPECT_EQ(dump(d), "a[n[\"t\"]]");
}

TEST(WQLibXMLTest, AChildOfANodeWithoutWrapperLeavesItWhenItIsInserted) {
    const auto d = parse("<a/>");
    xmlNodePtr parent;
    {
        const RegistrationOff off;
        parent = xmlNewDocNode(d->xmlDoc(), nullptr, x("n"), nullptr);
    }
    const auto e = d->createElement(u"e");
    xmlAddChild(parent, e->xmlNode());
    d->documentElement()->appendChild(e);
    EXPECT_EQ(parent->children, nullptr);
    EXPECT_EQ(e->parentNode(), d->documentElement());
    xmlFreeNode(parent);
    EXPECT_EQ(dump(d), "a[e]");
}

TEST(WQLibXMLTest, ANodeThatLibxml2LinkedInAnotherDocumentStaysWithThatWhenItsFirstOneGoes) {
    auto d = parse("<a/>");
    const auto other = parse("<r/>");
    auto e = d->createElement(u"e");
    xmlAddChild(other->documentElement()->xmlNode(), e->xmlNode());
    d = nullptr;
    EXPECT_EQ(e->ownerDocument(), other);
    EXPECT_NE(raised([&] { e.reset(); }), "");  // the tree has no count of its own before that
    EXPECT_EQ(dump(other), "r[e]");
}

TEST(WQLibXMLTest, ANodeThatLibxml2LinkedInAnotherDocumentDiesWithThat) {
    const auto d = parse("<a/>");
    auto other = parse("<r/>");
    const auto e = d->createElement(u"e");
    xmlAddChild(other->documentElement()->xmlNode(), e->xmlNode());
    other = nullptr;
    EXPECT_EQ(e->nodeType(), 0x7fff);
}

TEST(WQLibXMLTest, ANodeThatLibxml2LinkedInAnotherDocumentCanBeRemovedAndOutliveBoth) {
    auto d = parse("<a/>");
    auto other = parse("<r/>");
    auto e = d->createElement(u"e");
    const auto f = other->createElement(u"f");
    xmlAddChild(other->documentElement()->xmlNode(), e->xmlNode());
    other->documentElement()->removeChild(e);
    other = nullptr;
    EXPECT_FALSE(e->ownerDocument());
    EXPECT_FALSE(f->ownerDocument());
    e = nullptr;
    d = nullptr;
    EXPECT_EQ(f->nodeName(), u"f");
}

TEST(WQLibXMLTest, ANodeThatLibxml2TookOutOfItsDocumentCanGoBeforeThat) {
    auto d = parse("<a/>");
    auto e = d->createElement(u"e");
    xmlSetTreeDoc(e->xmlNode(), nullptr);
    e = nullptr;
    d = nullptr;
}

TEST(WQLibXMLTest, ANodeThatLibxml2LinkedIsFreedOnceWithItsFormerDocument) {
    auto d = parse("<a/>");
    const auto f = d->createElement(u"f");  // goes after its parent
    const auto e = d->createElement(u"e");
    xmlAddChild(e->xmlNode(), f->xmlNode());
    d = nullptr;
    EXPECT_EQ(f->parentNode(), e);
    EXPECT_FALSE(f->ownerDocument());
}

TEST(WQLibXMLTest, APendingElementThatIsRemovedIsFreedWithItsDocument) {
    auto d = parse("<a/>", everyElementIs<Paragraph>());
    xmlNodePtr node = xmlNewDocNode(d->xmlDoc(), nullptr, x("p"), nullptr);
    d->documentElement()->appendChild(wrapped(node));
    const auto removed = d->documentElement()->removeChild(wrapped(node));
    checkNode();
    EXPECT_EQ(removed->nodeType(), 0x7fff) << "another wrapper has taken its place";
    EXPECT_TRUE(isExactly<Paragraph>(wrapper(node)));
    d = nullptr;
}

TEST(WQLibXMLTest, APendingElementThatIsInsertedGetsItsClassInTheTree) {
    const auto d = parse("<a/>", everyElementIs<Paragraph>());
    xmlNodePtr node = xmlNewDocNode(d->xmlDoc(), nullptr, x("p"), nullptr);
    d->documentElement()->appendChild(wrapped(node));
    checkNode();
    EXPECT_TRUE(isExactly<Paragraph>(d->documentElement()->firstChild()));
    EXPECT_EQ(wrapper(node)->referenceCount(), 1);
}
