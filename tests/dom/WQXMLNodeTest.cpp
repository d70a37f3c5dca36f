// Navigation, edits, ancestors, paths, copies, print and the end of a node.
#include "dom/WQXMLNode.h"

#include <functional>
#include <optional>
#include <sstream>
#include <stdexcept>

#include "dom/WQLibXML.h"
#include "dom/WQXMLAttr.h"
#include "dom/WQXMLEventListenerData.h"
#include "platform/Log.h"
#include "tests/dom/Support.h"

using namespace test;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

const xmlChar* x(const char* text) { return reinterpret_cast<const xmlChar*>(text); }

Ref<WQXMLNode> wrapped(const void* node) {
    return node ? Ref<WQXMLNode>(static_cast<WQXMLNode*>(static_cast<const xmlNode*>(node)->_private)) : nullptr;
}

Ref<WQXMLElement> element(const Ref<WQXMLDocument>& document, std::u16string_view name) {
    return wq::cast<WQXMLElement>(find(document, name));
}
Ref<WQXMLNode> attribute(const Ref<WQXMLElement>& owner, std::u16string_view name) {
    Ref<WQXMLNode> each = owner->firstAttribute();
    while (each && each->nodeName().view() != name) each = each->nextSibling();
    EXPECT_TRUE(each) << wq::toUTF8(name);
    return each;
}
// "k=v l=w"
std::string attributes(const Ref<WQXMLElement>& owner) {
    std::string text;
    for (Ref<WQXMLNode> each = owner->firstAttribute(); each; each = each->nextSibling())
        text +=
            (text.empty() ? "" : " ") + wq::toUTF8(each->nodeName()) + "=" + wq::toUTF8(wq::printed(wq::cast<WQXMLAttr>(each)->value()));
    return text;
}

// Both directions of the links below a node, as libxml2 holds them, name the same tree.
void expectSound(xmlNodePtr parent) {
    xmlNodePtr previous = nullptr;
    for (xmlNodePtr each = parent->children; each; previous = each, each = each->next) {
        EXPECT_EQ(each->parent, parent);
        EXPECT_EQ(each->prev, previous);
        EXPECT_EQ(each->doc, parent->doc);
        if (each->type == XML_ELEMENT_NODE) expectSound(each);
    }
    EXPECT_EQ(parent->last, previous);
    if (parent->type != XML_ELEMENT_NODE) return;
    xmlAttrPtr before = nullptr;
    for (xmlAttrPtr each = parent->properties; each; before = each, each = each->next) {
        EXPECT_EQ(each->parent, parent);
        EXPECT_EQ(each->prev, before);
        EXPECT_EQ(each->doc, parent->doc);
    }
}
void expectSound(const Ref<WQXMLNode>& node) { expectSound(node->xmlNode()); }
void expectSound(const Ref<WQXMLDocument>& document) { expectSound(reinterpret_cast<xmlNodePtr>(document->xmlDoc())); }

// Calls a function with each event.
class Hears : public WQXMLEventListener {
public:
    using Work = std::function<void(const Ref<WQXMLMutationEvent>&)>;
    explicit Hears(Work toDo) : work(std::move(toDo)) {}
    void handleEvent(const Ref<WQXMLEvent>& event) override { work(wq::cast<WQXMLMutationEvent>(event)); }

private:
    Work work;
};

// Registers a listener for a scope, for events 4 and 8.
class Listening {
public:
    Listening(Ref<WQXMLNode> where, WQXMLEventListener* who, bool capturing) : node(std::move(where)), listener(who), capture(capturing) {
        node->addListener_forEvent_useCapture(listener, 4 | 8, capture);
    }
    ~Listening() { node->removeListener_forEvent_useCapture(listener, 4 | 8, capture); }
    Listening(const Listening&) = delete;
    Listening& operator=(const Listening&) = delete;

private:
    Ref<WQXMLNode> node;
    WQXMLEventListener* listener;
    bool capture;
};

// The lines of the process log while this lives.
class LogLines {
public:
    LogLines() : previous(wq::setLogSink([this](const NSString& line) { lines.push_back(wq::toUTF8(line)); })) {}
    ~LogLines() { wq::setLogSink(std::move(previous)); }
    LogLines(const LogLines&) = delete;
    LogLines& operator=(const LogLines&) = delete;
    std::vector<std::string> lines;

private:
    wq::LogSink previous;
};

std::string address(const WQXMLNode* node) {
    std::ostringstream text;
    text << static_cast<const void*>(node);
    return text.str();
}

std::vector<std::string> names(const std::vector<Ref<WQXMLNode>>& nodes) {
    std::vector<std::string> all;
    for (const auto& node : nodes) all.push_back(wq::toUTF8(wq::printed(node->nodeName())));
    return all;
}

// The plain node that stands first in `xml`'s root element.
Ref<WQXMLNode> first(const Ref<WQXMLDocument>& document) { return document->documentElement()->firstChild(); }

struct Paragraph : WQXMLElement {};

const char* const inconsistency = "NSInternalInconsistencyException: ";

}  // namespace

// ---- Qualified names

TEST(WQXMLNodeTest, AQualifiedNameIsSplitAtItsFirstColon) {
    struct {
        NSString name, prefix, localName;
    } const rows[] = {
        {u"a", nullptr, u"a"},  {u"a:b", u"a", u"b"},     {u"a:b:c", u"a", u"b:c"},    {u":x", nullptr, u"x"},
        {u"a:", u"a", nullptr}, {u":", nullptr, nullptr}, {u"::", nullptr, u":"},      {u":a:b", nullptr, u"a:b"},
        {u"a::b", u"a", u":b"}, {u"", nullptr, u""},      {nullptr, nullptr, nullptr},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(wq::toUTF8(wq::printed(row.name)));
        EXPECT_EQ(WQXMLNode::prefixForQName(row.name), row.prefix);
        EXPECT_EQ(WQXMLNode::localNameForQName(row.name), row.localName);
    }
}

TEST(WQXMLNodeTest, ANameWithALeadingColonHasNoPrefix) { EXPECT_EQ(WQXMLNode::prefixForQName(u":x"), nullptr); }

TEST(WQXMLNodeTest, ANameWithATrailingColonHasNoLocalName) { EXPECT_EQ(WQXMLNode::localNameForQName(u"a:"), nullptr); }

// ---- Making one

TEST(WQXMLNodeTest, InitialisationStoresTheNodeAndDoesNotTouchThePrivateField) {
    parse("<a/>");
    const bool previous = setRegisterNode(false);
    xmlNodePtr node = xmlNewComment(x("c"));
    setRegisterNode(previous);
    auto wrapper = wq::make<WQXMLNode>(&WQXMLNode::initWithXMLNode, node);
    ASSERT_TRUE(wrapper);
    EXPECT_EQ(wrapper->xmlNode(), node);
    EXPECT_EQ(node->_private, nullptr);
    EXPECT_EQ(wrapper->range(), (NSRange{NSNotFound, 0}));
    EXPECT_EQ(wrapper->ownedNs(), nullptr);
    EXPECT_EQ(wrapper->listeners(), nullptr);
    wrapper->setXMLNode(nullptr);
    xmlFreeNode(node);
}

TEST(WQXMLNodeTest, InitialisationSetsTheRangeToNotFound) {
    struct Early : WQXMLElement {
        bool initWithXMLNode(_xmlNode* node) override {
            setRange({1, 2});
            return WQXMLElement::initWithXMLNode(node);
        }
    };
    EXPECT_EQ(WQXMLElement::newWithName<Early>(u"e")->range(), (NSRange{NSNotFound, 0}));
}

TEST(WQXMLNodeTest, TheNotFoundIndexIsTheLargestSignedNumber) { EXPECT_EQ(NSNotFound, uint64_t{0x7fffffffffffffff}); }

TEST(WQXMLNodeTest, TheRangeStartsAtNotFoundAndIsPlainlyKept) {
    const auto d = parse("<a k='v'>t<!--c--></a>");
    const Ref<WQXMLNode> nodes[] = {d->documentElement(),
                                    d->documentElement()->firstAttribute(),
                                    d->documentElement()->firstChild(),
                                    d->documentElement()->lastChild(),
                                    d->createElement(u"e"),
                                    WQXMLElement::newWithName(u"e"),
                                    WQXMLText::newWithString(u"t"),
                                    d->documentElement()->copy()};
    for (const auto& node : nodes) {
        EXPECT_EQ(node->range(), (NSRange{0x7fffffffffffffff, 0}));
        node->setRange({3, 4});
        EXPECT_EQ(node->range(), (NSRange{3, 4}));
        node->setRange({0xffffffffffffffff, 0});
        EXPECT_EQ(node->range(), (NSRange{0xffffffffffffffff, 0}));
    }
}

TEST(WQXMLNodeTest, TheRangeOfADocumentStartsAtZero) {
    const auto d = parse("<a/>");
    EXPECT_EQ(d->range(), (NSRange{0, 0}));
    d->setRange({1, 2});
    EXPECT_EQ(d->range(), (NSRange{1, 2}));
}

TEST(WQXMLNodeTest, ARangeIsNotCopiedAndNotChangedByEdits) {
    const auto d = parse("<a>text<b/></a>");
    const auto a = d->documentElement();
    a->setRange({1, 1});
    EXPECT_EQ(a->copy()->range(), (NSRange{NSNotFound, 0}));
    a->removeChildren();
    EXPECT_EQ(a->range(), (NSRange{1, 1}));
}

// ---- Identity

TEST(WQXMLNodeTest, NamesTypesAndNamespacesOfEachKindOfNode) {
    const auto d = parse(
        "<!DOCTYPE p:a [<!ENTITY e 'x'>]>"
        "<p:a xmlns:p='u:1' k='v' p:l='w'><b xmlns='u:2'/>text<![CDATA[cdata]]><!--comment--><?target data?>&e;<c/></p:a>");
    const auto a = d->documentElement();
    struct {
        const char* what;
        Ref<WQXMLNode> node;
        uint16_t type;
        NSString name, prefix, localName, uri;
    } const rows[] = {
        {"element with prefix", a, 1, u"p:a", u"p", u"a", u"u:1"},
        {"attribute", attribute(a, u"k"), 2, u"k", nullptr, u"k", nullptr},
        {"attribute with prefix", attribute(a, u"p:l"), 2, u"p:l", u"p", u"l", u"u:1"},
        {"element with default namespace", a->childAtIndex(0), 1, u"b", nullptr, u"b", u"u:2"},
        {"CDATA section", a->childAtIndex(2), 4, nullptr, nullptr, nullptr, nullptr},
        {"comment", a->childAtIndex(3), 8, nullptr, nullptr, nullptr, nullptr},
        {"processing instruction", a->childAtIndex(4), 7, nullptr, nullptr, nullptr, nullptr},
        {"entity reference", a->childAtIndex(5), 5, nullptr, nullptr, nullptr, nullptr},
        {"element without namespace", a->childAtIndex(6), 1, u"c", nullptr, u"c", nullptr},
        {"document type", a->previousSibling(), 14, nullptr, nullptr, nullptr, nullptr},
        {"document", d, 9, nullptr, nullptr, nullptr, nullptr},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(row.node->nodeType(), row.type);
        EXPECT_EQ(row.node->nodeName(), row.name);
        EXPECT_EQ(row.node->prefix(), row.prefix);
        EXPECT_EQ(row.node->localName(), row.localName);
        EXPECT_EQ(row.node->namespaceURI(), row.uri);
        EXPECT_EQ(row.node->nodeValue(), nullptr);
        EXPECT_FALSE(row.node->attributes());
    }
    const auto text = a->childAtIndex(1);
    EXPECT_EQ(text->nodeType(), 3);
    EXPECT_EQ(text->prefix(), nullptr);
    EXPECT_EQ(text->localName(), nullptr);
    EXPECT_EQ(text->namespaceURI(), nullptr);
    EXPECT_FALSE(text->attributes());
}

TEST(WQXMLNodeTest, ACommentHasNoName) {
    const auto d = parse("<a><!--c--></a>");
    EXPECT_EQ(first(d)->nodeName(), nullptr);
}

TEST(WQXMLNodeTest, AnHTMLDocumentHasItsOwnType) { EXPECT_EQ(parseHTML("<html><body><p>x</p></body></html>")->nodeType(), 13); }

TEST(WQXMLNodeTest, ChildrenAndAttributesCountForElementsOnly) {
    const auto d = parse("<a k='v'><b/>t<!--c--></a>");
    const auto a = d->documentElement();
    struct {
        const char* what;
        Ref<WQXMLNode> node;
        bool children, attributes;
    } const rows[] = {
        {"full element", a, true, true},
        {"empty element", a->firstChild(), false, false},
        {"attribute with a text", a->firstAttribute(), false, false},
        {"text", a->childAtIndex(1), false, false},
        {"comment", a->childAtIndex(2), false, false},
        {"document", d, false, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(row.node->hasChildNodes(), row.children);
        EXPECT_EQ(row.node->hasAttributes(), row.attributes);
    }
}

// ---- Navigation

TEST(WQXMLNodeTest, NavigationFollowsTheLinks) {
    const auto d = parse("<a><b/>t<c/></a>");
    const auto a = d->documentElement();
    const auto b = find(d, u"b"), c = find(d, u"c"), t = b->nextSibling();
    EXPECT_EQ(a->firstChild(), b);
    EXPECT_EQ(a->lastChild(), c);
    EXPECT_EQ(b->parentNode(), a);
    EXPECT_EQ(b->previousSibling(), nullptr);
    EXPECT_EQ(t->nodeType(), 3);
    EXPECT_EQ(t->nextSibling(), c);
    EXPECT_EQ(t->previousSibling(), b);
    EXPECT_EQ(c->nextSibling(), nullptr);
    EXPECT_EQ(b->firstChild(), nullptr);
    EXPECT_EQ(b->lastChild(), nullptr);
}

TEST(WQXMLNodeTest, TheParentOfTheRootElementIsTheDocument) {
    const auto d = parse("<a/>");
    EXPECT_EQ(d->documentElement()->parentNode(), d);
    const auto html = parseHTML("<html><body><p>x</p></body></html>");
    EXPECT_EQ(html->documentElement()->parentNode(), html);
}

TEST(WQXMLNodeTest, ADocumentNavigatesNowhere) {
    const auto d = parse("<a><b/></a>");
    EXPECT_FALSE(d->parentNode());
    EXPECT_FALSE(d->firstChild());
    EXPECT_FALSE(d->lastChild());
    EXPECT_FALSE(d->previousSibling());
    EXPECT_FALSE(d->nextSibling());
    EXPECT_FALSE(d->next());
    EXPECT_FALSE(d->previous());
    EXPECT_FALSE(d->ownerDocument());
    EXPECT_FALSE(d->childAtIndex(0));
    EXPECT_EQ(d->numberOfChildren(), 0);
    EXPECT_THAT(*d->childNodes(), IsEmpty());
}

TEST(WQXMLNodeTest, AnAttributeIsBetweenItsOwnerItsSiblingsAndItsText) {
    const auto d = parse("<a k='v' l='w'/>");
    const auto a = d->documentElement();
    const auto k = attribute(a, u"k"), l = attribute(a, u"l");
    EXPECT_EQ(k->parentNode(), a);
    EXPECT_EQ(k->nextSibling(), l);
    EXPECT_EQ(l->previousSibling(), k);
    EXPECT_FALSE(k->previousSibling());
    EXPECT_FALSE(l->nextSibling());
    EXPECT_EQ(k->firstChild(), k->lastChild());
    EXPECT_EQ(k->firstChild()->nodeValue(), u"v");
    EXPECT_EQ(k->firstChild()->parentNode(), k);
    EXPECT_EQ(k->numberOfChildren(), 1);
    EXPECT_EQ(k->ownerDocument(), d);
}

TEST(WQXMLNodeTest, TheOwnerDocument) {
    const auto d = parse("<a k='v'>t</a>");
    EXPECT_EQ(d->documentElement()->ownerDocument(), d);
    EXPECT_EQ(d->documentElement()->firstAttribute()->ownerDocument(), d);
    EXPECT_EQ(first(d)->ownerDocument(), d);
    EXPECT_EQ(d->createElement(u"e")->ownerDocument(), d);
    EXPECT_FALSE(d->createTextNode(u"t")->ownerDocument());
    EXPECT_FALSE(d->ownerDocument());
    EXPECT_FALSE(WQXMLElement::newWithName(u"e")->ownerDocument());
    EXPECT_FALSE(WQXMLText::newWithString(u"t")->ownerDocument());
}

TEST(WQXMLNodeTest, ChildNodesIsANewSequenceInOrder) {
    const auto d = parse("<a><b/>t<!--c--><d><e/></d></a>");
    const auto a = d->documentElement();
    const auto before = *a->childNodes();
    EXPECT_THAT(names(before), ElementsAre("b", "#text", "(null)", "d"));
    a->removeChild(find(d, u"b"));
    EXPECT_EQ(before.size(), 4);
    EXPECT_THAT(names(*a->childNodes()), ElementsAre("#text", "(null)", "d"));
    EXPECT_THAT(*find(d, u"e")->childNodes(), IsEmpty());
}

TEST(WQXMLNodeTest, ChildrenByIndex) {
    const auto d = parse("<a><b/>t<c/></a>");
    const auto a = d->documentElement();
    const auto stranger = d->createElement(u"b");
    EXPECT_EQ(a->numberOfChildren(), 3);
    EXPECT_EQ(a->childAtIndex(0), find(d, u"b"));
    EXPECT_EQ(a->childAtIndex(1)->nodeType(), 3);
    EXPECT_EQ(a->childAtIndex(2), find(d, u"c"));
    EXPECT_EQ(a->indexOfChild(find(d, u"b")), 0);
    EXPECT_EQ(a->indexOfChild(find(d, u"c")), 2);
    EXPECT_EQ(find(d, u"b")->numberOfChildren(), 0);
}

TEST(WQXMLNodeTest, AChildPastTheEndIsNull) {
    const auto d = parse("<a><b/><c/></a>");
    for (const uint64_t index : {uint64_t{2}, uint64_t{3}, NSNotFound, UINT64_MAX}) EXPECT_FALSE(d->documentElement()->childAtIndex(index));
    EXPECT_FALSE(find(d, u"b")->childAtIndex(0));
}

TEST(WQXMLNodeTest, AStrangerHasTheNotFoundIndex) {
    const auto d = parse("<a><b><c/></b></a>");
    const auto a = d->documentElement();
    EXPECT_EQ(a->indexOfChild(find(d, u"c")), NSNotFound);
    EXPECT_EQ(a->indexOfChild(a), NSNotFound);
    EXPECT_EQ(a->indexOfChild(d->createElement(u"b")), NSNotFound);
    EXPECT_EQ(a->indexOfChild(nullptr), NSNotFound);
}

TEST(WQXMLNodeTest, NextWalksInDocumentOrder) {
    const auto d = parse("<!--0--><a k='v'><b><c/>t</b><!--1--><d/></a><!--2-->");
    std::vector<Ref<WQXMLNode>> walk;
    for (auto node = d->documentElement()->previousSibling(); node; node = node->next()) walk.push_back(node);
    EXPECT_THAT(names(walk), ElementsAre("(null)", "a", "b", "c", "#text", "(null)", "d", "(null)"));
}

TEST(WQXMLNodeTest, NextFromTheLastNodeOfADocumentIsNull) {
    const auto d = parse("<a><b><c/></b></a>");
    EXPECT_FALSE(find(d, u"c")->next());
}

TEST(WQXMLNodeTest, PreviousWalksBack) {
    const auto d = parse("<a><b><c/>t</b><!--1--><d/></a>");
    std::vector<Ref<WQXMLNode>> walk;
    for (auto node = find(d, u"d"); node; node = node->previous()) walk.push_back(node);
    ASSERT_EQ(walk.size(), 7);
    EXPECT_THAT(names(walk), ElementsAre("d", "(null)", "#text", "c", "b", "a", "(null)"));
    EXPECT_EQ(walk.back(), d);
}

TEST(WQXMLNodeTest, PreviousFromTheRootElementIsTheDocument) {
    const auto d = parse("<a><b/></a>");
    EXPECT_EQ(d->documentElement()->previous(), d);
}

TEST(WQXMLNodeTest, PreviousFromARootBehindADocumentTypeIsThat) {
    const auto d = parse("<!DOCTYPE a [<!ENTITY e 'x'>]><a/>");
    const auto type = d->documentElement()->previous();
    EXPECT_EQ(type->nodeType(), 14);
    EXPECT_EQ(type->previous(), d);
    EXPECT_FALSE(type->firstChild());
    EXPECT_EQ(type->next(), d->documentElement());
    EXPECT_EQ(parseHTML("<html><body><p>x</p></body></html>")->documentElement()->previous()->nodeType(), 14);
}

TEST(WQXMLNodeTest, WalkingFromAnAttributeStaysAmongAttributesAndTheirTexts) {
    const auto d = parse("<a k='v' l='w'><b/></a>");
    const auto a = d->documentElement();
    const auto k = attribute(a, u"k"), l = attribute(a, u"l");
    EXPECT_EQ(k->next(), k->firstChild());
    EXPECT_EQ(k->firstChild()->next(), l);
    EXPECT_FALSE(l->firstChild()->next());
    EXPECT_EQ(l->previous(), k->firstChild());
    EXPECT_EQ(k->previous(), a);
}

TEST(WQXMLNodeTest, AnEntityReferenceIsALeafAndIsWalkedOver) {
    const auto d = parse("<!DOCTYPE a [<!ENTITY e 'x<b/>y'>]><a>1&e;2</a>");
    const auto a = d->documentElement();
    const auto reference = a->childAtIndex(1);
    EXPECT_EQ(reference->nodeType(), 5);
    EXPECT_FALSE(reference->firstChild());
    EXPECT_FALSE(reference->lastChild());
    EXPECT_EQ(reference->numberOfChildren(), 0);
    EXPECT_FALSE(reference->childAtIndex(0));
    EXPECT_THAT(*reference->childNodes(), IsEmpty());
    EXPECT_EQ(a->numberOfChildren(), 3);
    EXPECT_EQ(a->firstChild()->next(), reference);
    EXPECT_EQ(reference->next(), a->lastChild());
    EXPECT_FALSE(a->lastChild()->next());
    EXPECT_EQ(a->lastChild()->previous(), reference);
    EXPECT_EQ(reference->previous(), a->firstChild());
}

TEST(WQXMLNodeTest, AnEntityReferenceCanBeRemovedAndPutBack) {
    auto d = parse("<!DOCTYPE a [<!ENTITY e 'x<b/>y'>]><a>1&e;2</a>");
    const auto a = d->documentElement();
    const auto reference = a->removeChild(a->childAtIndex(1));
    EXPECT_EQ(dump(d), "a[\"1\",\"2\"]");
    a->appendChild(reference);
    EXPECT_EQ(serialised(a), "<a>12&e;</a>");
    a->removeChild(reference);
    d = nullptr;
    EXPECT_EQ(reference->nodeType(), 5);
    EXPECT_FALSE(reference->firstChild());
    EXPECT_FALSE(reference->ownerDocument());
}

TEST(WQXMLNodeTest, ANodeWithoutWrapperEndsTheWalk) {
    const auto d = parse("<a><b/></a>");
    const bool previous = setRegisterNode(false);
    xmlNewChild(d->documentElement()->xmlNode(), nullptr, x("hidden"), nullptr);
    setRegisterNode(previous);
    d->documentElement()->appendChild(d->createElement(u"c"));
    EXPECT_FALSE(find(d, u"b")->nextSibling());
    EXPECT_EQ(d->documentElement()->lastChild()->nodeName(), u"c");
    EXPECT_FALSE(d->documentElement()->lastChild()->previousSibling());
}

// ---- Dead

TEST(WQXMLNodeTest, ADeadWrapperAnswersNullToAllNavigation) {
    auto d = parse("<a k='v'><b p:l='w' xmlns:p='u:1'>t<c/></b><!--c--></a>");
    const Ref<WQXMLNode> nodes[] = {find(d, u"b"),
                                    find(d, u"c"),
                                    find(d, u"b")->firstChild(),
                                    d->documentElement()->lastChild(),
                                    d->documentElement()->firstAttribute(),
                                    d->documentElement()};
    const auto alive = parse("<z/>");
    d = nullptr;
    for (const auto& node : nodes) {
        EXPECT_EQ(node->nodeType(), 0x7fff);
        EXPECT_EQ(node->xmlNode(), nullptr);
        EXPECT_EQ(node->localName(), nullptr);
        EXPECT_EQ(node->prefix(), nullptr);
        EXPECT_EQ(node->namespaceURI(), nullptr);
        EXPECT_FALSE(node->parentNode());
        EXPECT_FALSE(node->firstChild());
        EXPECT_FALSE(node->lastChild());
        EXPECT_FALSE(node->previousSibling());
        EXPECT_FALSE(node->nextSibling());
        EXPECT_FALSE(node->next());
        EXPECT_FALSE(node->previous());
        EXPECT_FALSE(node->ownerDocument());
        EXPECT_THAT(*node->childNodes(), IsEmpty());
        EXPECT_FALSE(node->hasChildNodes());
        EXPECT_FALSE(node->hasAttributes());
        EXPECT_FALSE(node->childAtIndex(0));
        EXPECT_EQ(node->indexOfChild(alive->documentElement()), NSNotFound);
        EXPECT_EQ(node->numberOfChildren(), 0);
        EXPECT_FALSE(node->isAncestorOfNode(alive->documentElement()));
        EXPECT_FALSE(node->isDescendantOfNode(alive->documentElement()));
        EXPECT_FALSE(node->commonAncestorWithNode(alive->documentElement()));
        EXPECT_FALSE(node->childAncestorOfNode(alive->documentElement()));
        EXPECT_EQ(node->depth(), 0);
        EXPECT_EQ(node->captureEvents(), 0);
        EXPECT_EQ(node->events(), 0);
    }
    for (const auto& node : nodes) EXPECT_EQ(node->nodeName(), wq::cast<WQXMLText>(node) ? NSString(u"#text") : NSString());
}

TEST(WQXMLNodeTest, EditsLeaveADeadWrapperAndItsPartnersAlone) {
    auto dying = parse("<a><b/></a>");
    const auto dead = find(dying, u"b");
    dying = nullptr;
    const auto d = parse("<r><s/></r>");
    const auto r = d->documentElement();
    const auto s = find(d, u"s");
    Log log;
    const Listening listening(d, &log, true);
    EXPECT_FALSE(dead->appendChild(s));
    EXPECT_FALSE(dead->insertChild_before(s, nullptr));
    EXPECT_FALSE(r->appendChild(dead));
    EXPECT_FALSE(r->insertChild_before(dead, s));
    EXPECT_FALSE(r->insertChild_before(s, dead));
    dead->insertChild_atIndex(s, 0);
    r->insertChild_atIndex(dead, 0);
    dead->removeChildren();
    dead->appendChildrenFromNode(r);
    r->appendChildrenFromNode(dead);
    dead->reconcileNamespace();
    EXPECT_EQ(dump(d), "r[s]");
    EXPECT_THAT(log.heard, IsEmpty());
    EXPECT_EQ(dead->referenceCount(), 1);
    EXPECT_EQ(s->referenceCount(), 2);
}

TEST(WQXMLNodeTest, RemovingADeadOrNullNodeChangesNothing) {
    auto dying = parse("<a><b/></a>");
    const auto dead = find(dying, u"b");
    dying = nullptr;
    const auto d = parse("<r><s/></r>");
    d->documentElement()->removeChild(dead);
    d->documentElement()->removeChild(nullptr);
    EXPECT_EQ(dump(d), "r[s]");
    EXPECT_EQ(dead->referenceCount(), 1);
}

TEST(WQXMLNodeTest, InsertingNullChangesNothing) {
    const auto d = parse("<r><s/></r>");
    EXPECT_FALSE(d->documentElement()->appendChild(nullptr));
    EXPECT_FALSE(d->documentElement()->insertChild_before(nullptr, find(d, u"s")));
    d->documentElement()->insertChild_atIndex(nullptr, 0);
    d->documentElement()->appendChildrenFromNode(nullptr);
    EXPECT_EQ(dump(d), "r[s]");
}

// ---- Insertion

TEST(WQXMLNodeTest, InsertingAnswersTheChildAndFiresTheInsertion) {
    const auto d = parse("<a><b/><c/></a>");
    const auto a = d->documentElement();
    const auto e = d->createElement(u"e"), f = d->createElement(u"f");
    Log log;
    const Listening listening(d, &log, true);
    EXPECT_EQ(a->insertChild_before(e, find(d, u"c")), e);
    EXPECT_EQ(a->insertChild_before(f, nullptr), f);
    EXPECT_EQ(dump(d), "a[b,e,c,f]");
    EXPECT_THAT(log.heard, ElementsAre("4/1 e<-a", "4/1 f<-a"));
    expectSound(d);
}

TEST(WQXMLNodeTest, InsertingAheadOfTheFirstChildMakesItTheHead) {
    const auto d = parse("<a><b/><c/></a>");
    const auto a = d->documentElement();
    const auto e = d->createElement(u"e");
    a->insertChild_before(e, a->firstChild());
    EXPECT_EQ(a->firstChild(), e);
    EXPECT_EQ(dump(d), "a[e,b,c]");
    expectSound(d);
}

TEST(WQXMLNodeTest, InsertingIntoAnEmptyElementMakesTheChildFirstAndLast) {
    const auto d = parse("<a/>");
    const auto e = d->createElement(u"e");
    d->documentElement()->appendChild(e);
    EXPECT_EQ(d->documentElement()->firstChild(), e);
    EXPECT_EQ(d->documentElement()->lastChild(), e);
    expectSound(d);
}

TEST(WQXMLNodeTest, InsertingANodeThatHasAParentFiresTheRemovalFirst) {
    const auto d = parse("<r><a><x/><b/><y/></a><c/></r>");
    const auto a = find(d, u"a"), c = find(d, u"c");
    std::vector<std::string> states;
    Hears hears([&](const Ref<WQXMLMutationEvent>& event) {
        states.push_back(
            std::to_string(event->eventID()) + " " + wq::toUTF8(event->target()->nodeName()) + "<-" +
            wq::toUTF8(event->relatedNode()->nodeName()) + " under " + wq::toUTF8(event->target()->parentNode()->nodeName()) + " " +
            dump(Ref<WQXMLNode>(d->documentElement())));
    });
    const Listening listening(d, &hears, true);
    c->appendChild(find(d, u"b"));
    EXPECT_THAT(states, ElementsAre("8 b<-a under a r[a[x,b,y],c]", "4 b<-c under c r[a[x,y],c[b]]"));
    EXPECT_EQ(dump(d), "r[a[x,y],c[b]]");
    expectSound(d);
}

TEST(WQXMLNodeTest, AMovedNodeSurvivesWithNoOtherHolder) {
    const auto d = parse("<r><a><b>t</b></a><c/></r>");
    find(d, u"c")->appendChild(find(d, u"a")->firstChild());
    EXPECT_EQ(dump(d), "r[a,c[b[\"t\"]]]");
    EXPECT_EQ(find(d, u"b")->referenceCount(), 2) << "the tree's and this one";
    find(d, u"c")->insertChild_before(find(d, u"b")->firstChild(), find(d, u"b"));
    EXPECT_EQ(dump(d), "r[a,c[\"t\",b]]");
}

TEST(WQXMLNodeTest, ANodeMovesWithinItsParent) {
    const auto d = parse("<a><b/><c/><d/></a>");
    const auto a = d->documentElement();
    a->appendChild(find(d, u"b"));
    EXPECT_EQ(dump(d), "a[c,d,b]");
    a->insertChild_before(find(d, u"b"), find(d, u"c"));
    EXPECT_EQ(dump(d), "a[b,c,d]");
    a->insertChild_before(find(d, u"b"), find(d, u"c"));
    EXPECT_EQ(dump(d), "a[b,c,d]");
    a->appendChild(find(d, u"d"));
    EXPECT_EQ(dump(d), "a[b,c,d]");
    expectSound(d);
}

TEST(WQXMLNodeTest, AReferenceUnderAnotherParentTakesTheNodeThere) {
    const auto d = parse("<r><a/><b><c/><d/></b></r>");
    const auto a = find(d, u"a");
    const auto e = d->createElement(u"e"), f = d->createElement(u"f");
    Log log;
    const Listening listening(d, &log, true);
    EXPECT_EQ(a->insertChild_before(e, find(d, u"d")), e);
    EXPECT_EQ(a->insertChild_before(f, find(d, u"c")), f);
    EXPECT_EQ(dump(d), "r[a,b[f,c,e,d]]");
    EXPECT_EQ(e->parentNode(), find(d, u"b"));
    EXPECT_THAT(log.heard, ElementsAre("4/1 e<-a", "4/1 f<-a"));
    expectSound(d);
}

TEST(WQXMLNodeTest, AReferenceInAnotherDocumentTakesTheNodeThere) {
    const auto d = parse("<a/>"), other = parse("<r><s/></r>");
    const auto e = d->createElement(u"e");
    e->appendChild(d->createTextNode(u"t"));
    e->setAttribute_value(u"k", u"v");
    d->documentElement()->insertChild_before(e, find(other, u"s"));
    EXPECT_EQ(dump(d), "a");
    EXPECT_EQ(dump(other), "r[e[\"t\"],s]");
    EXPECT_EQ(e->ownerDocument(), other);
    expectSound(other);
}

TEST(WQXMLNodeTest, ANodeInsertedBeforeItselfGoesAheadOfItsNextSibling) {
    const auto d = parse("<a><b/><c/><d/></a>");
    const auto a = d->documentElement();
    Log log;
    const Listening listening(d, &log, true);
    for (const char16_t* name : {u"b", u"c", u"d"}) {
        const auto child = find(d, name);
        EXPECT_EQ(a->insertChild_before(child, child), child);
        EXPECT_EQ(dump(d), "a[b,c,d]");
        EXPECT_EQ(child->referenceCount(), 2);
        expectSound(d);
    }
    EXPECT_THAT(log.heard, ElementsAre("8/1 b<-a", "4/1 b<-a", "8/1 c<-a", "4/1 c<-a", "8/1 d<-a", "4/1 d<-a"));
}

TEST(WQXMLNodeTest, ADetachedNodeInsertedBeforeItselfIsAppended) {
    const auto d = parse("<a><b/></a>");
    const auto e = d->createElement(u"e");
    EXPECT_EQ(d->documentElement()->insertChild_before(e, e), e);
    EXPECT_EQ(dump(d), "a[b,e]");
    expectSound(d);
}

TEST(WQXMLNodeTest, AnAttributeInsertedBeforeItselfKeepsItsPlace) {
    const auto d = parse("<a k='1' l='2'/>");
    const auto a = d->documentElement();
    for (const char16_t* name : {u"k", u"l"}) {
        const auto each = attribute(a, name);
        EXPECT_EQ(a->insertChild_before(each, each), each);
        EXPECT_EQ(attributes(a), "k=1 l=2");
        expectSound(d);
    }
}

TEST(WQXMLNodeTest, InsertingAtAnIndexGoesAheadOfTheChildThere) {
    struct {
        uint64_t index;
        const char* expected;
    } const rows[] = {
        {0, "a[e,b,c]"}, {1, "a[b,e,c]"}, {2, "a[b,c,e]"}, {3, "a[b,c,e]"}, {NSNotFound, "a[b,c,e]"}, {UINT64_MAX, "a[b,c,e]"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.index);
        const auto d = parse("<a><b/><c/></a>");
        d->documentElement()->insertChild_atIndex(d->createElement(u"e"), row.index);
        EXPECT_EQ(dump(d), row.expected);
        expectSound(d);
    }
}

TEST(WQXMLNodeTest, InsertingAtAnIndexAtOrBeyondTheCountAppends) {
    const auto d = parse("<a><b/></a>");
    d->documentElement()->insertChild_atIndex(d->createElement(u"e"), 1);
    d->documentElement()->insertChild_atIndex(d->createElement(u"f"), 100);
    EXPECT_EQ(dump(d), "a[b,e,f]");
}

TEST(WQXMLNodeTest, TheIndexCountsTheChildrenBeforeTheNodeLeavesThem) {
    const auto d = parse("<a><b/><c/><d/></a>");
    d->documentElement()->insertChild_atIndex(find(d, u"b"), 2);
    EXPECT_EQ(dump(d), "a[c,b,d]");
    d->documentElement()->insertChild_atIndex(find(d, u"d"), 2);
    EXPECT_EQ(dump(d), "a[c,b,d]");
}

TEST(WQXMLNodeTest, TextsSideBySideStayApart) {
    const auto d = parse("<a/>");
    const auto a = d->documentElement();
    a->appendChild(d->createTextNode(u"one"));
    a->appendChild(WQXMLText::newWithString(u"two"));
    a->insertChild_before(d->createTextNode(u"zero"), a->firstChild());
    EXPECT_EQ(dump(d), "a[\"zero\",\"one\",\"two\"]");
    expectSound(d);
}

TEST(WQXMLNodeTest, InsertingBringsTheWholeSubtreeIntoTheDocument) {
    const auto d = parse("<a/>");
    const auto e = WQXMLElement::newWithName(u"e"), f = WQXMLElement::newWithName(u"f");
    const auto t = WQXMLText::newWithString(u"t");
    f->setAttribute_value(u"k", u"v");
    e->appendChild(f);
    f->appendChild(t);
    EXPECT_FALSE(f->ownerDocument());
    d->documentElement()->appendChild(e);
    for (const Ref<WQXMLNode>& node :
         {Ref<WQXMLNode>(e), Ref<WQXMLNode>(f), Ref<WQXMLNode>(t), f->firstAttribute(), f->firstAttribute()->firstChild()})
        EXPECT_EQ(node->ownerDocument(), d);
    expectSound(d);
}

TEST(WQXMLNodeTest, AMoveToAnotherDocumentFiresTheRemovalThereFirst) {
    const auto d = parse("<a><b><c/></b></a>"), other = parse("<r/>");
    Log here("d "), there("other ");
    std::vector<std::string> heard;
    Hears hears([&](const Ref<WQXMLMutationEvent>& event) {
        heard.push_back(
            std::to_string(event->eventID()) + (event->target()->ownerDocument() == d ? " here " : " there ") + dump(d) + " " +
            dump(other));
    });
    const Listening one(d, &hears, true), two(other, &hears, true);
    other->documentElement()->appendChild(find(d, u"b"));
    EXPECT_THAT(heard, ElementsAre("8 here a[b[c]] r", "4 there a r[b[c]]"));
    EXPECT_EQ(find(other, u"c")->ownerDocument(), other);
    expectSound(other);
}

TEST(WQXMLNodeTest, ADocumentTakesTopLevelNodes) {
    const auto d = WQXMLDocument::newDocument();
    const auto root = d->createElement(u"a");
    Log log;
    const Listening listening(d, &log, true);
    EXPECT_EQ(d->appendChild(root), root);
    EXPECT_EQ(d->documentElement(), root);
    EXPECT_EQ(root->parentNode(), d);
    EXPECT_EQ(root->referenceCount(), 2);
    const auto comments = parse("<a><!--1--><!--2--></a>");
    d->insertChild_before(first(comments), root);
    d->appendChild(first(comments));
    EXPECT_EQ(root->previousSibling()->nodeType(), 8);
    EXPECT_EQ(root->nextSibling()->nodeType(), 8);
    EXPECT_EQ(root->nextSibling()->parentNode(), d);
    EXPECT_THAT(log.heard, ElementsAre("4/1 a<-(null)", "4/1 (null)<-(null)", "4/1 (null)<-(null)"));
    expectSound(d);
}

TEST(WQXMLNodeTest, TheRootCanBeRemovedAndPutBack) {
    const auto d = parse("<a><b/></a>");
    const auto root = d->removeChild(d->documentElement());
    EXPECT_FALSE(d->documentElement());
    EXPECT_FALSE(root->parentNode());
    EXPECT_EQ(root->ownerDocument(), d);
    d->appendChild(root);
    EXPECT_EQ(dump(d), "a[b]");
    expectSound(d);
}

TEST(WQXMLNodeTest, NoNameOfTheDOMIsRaisedByAnInsertion) {
    const auto d = parse("<a><b/></a>"), other = parse("<r/>");
    EXPECT_EQ(raised([&] { d->appendChild(other->createElement(u"second")); }), "") << "a second top-level element";
    EXPECT_EQ(raised([&] { d->documentElement()->appendChild(other->documentElement()); }), "") << "a foreign root";
    EXPECT_EQ(dump(d), "a[b,r]");
    EXPECT_EQ(d->documentElement()->nextSibling()->nodeName(), u"second");
    EXPECT_FALSE(other->documentElement());
}

TEST(WQXMLNodeTest, WhatLibxml2CouldNotOwnThereIsRefused) {
    const auto d = parse("<!DOCTYPE a [<!ENTITY e 'x'>]><a k='v' l='w'>t&e;<b/><!--c--></a>");
    const auto a = d->documentElement();
    const auto k = attribute(a, u"k"), l = attribute(a, u"l"), text = a->childAtIndex(0), reference = a->childAtIndex(1);
    const auto b = find(d, u"b"), comment = a->childAtIndex(3), type = a->previousSibling();
    const auto other = parse("<r/>");
    Log log;
    const Listening listening(d, &log, true);
    struct {
        const char* what;
        Ref<WQXMLNode> receiver, child, reference;
    } const rows[] = {
        {"attribute under a document", d, k, nullptr},
        {"attribute under a text", text, k, nullptr},
        {"attribute under a comment", comment, k, nullptr},
        {"attribute under an attribute", l, k, nullptr},
        {"element beside an attribute", a, b, k},
        {"text beside an attribute", a, text, k},
        {"element under an attribute", k, b, nullptr},
        {"text under an entity reference", reference, text, nullptr},
        {"document type under an element", a, type, nullptr},
        {"document type beside an element", a, type, b},
        {"document under an element", a, other, nullptr},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_FALSE(row.receiver->insertChild_before(row.child, row.reference));
        EXPECT_EQ(serialised(a), "<a k=\"v\" l=\"w\">t&e;<b/><!--c--></a>");
        EXPECT_EQ(a->previousSibling(), type);
    }
    EXPECT_THAT(log.heard, IsEmpty());
}

TEST(WQXMLNodeTest, ATextCanStandUnderAnAttribute) {
    const auto d = parse("<a k='v'/>");
    const auto k = d->documentElement()->firstAttribute();
    k->appendChild(d->createTextNode(u"w"));
    EXPECT_EQ(attributes(d->documentElement()), "k=vw");
    k->removeChild(k->firstChild());
    EXPECT_EQ(attributes(d->documentElement()), "k=w");
    expectSound(k);
}

TEST(WQXMLNodeTest, ALeafTakesNoChild) {
    const auto d = parse("<a><!--c--><?pi y?><![CDATA[x]]>t</a>");
    const auto a = d->documentElement();
    Log log;
    const Listening listening(d, &log, true);
    const auto leaves = *a->childNodes();
    for (const auto& leaf : leaves) {
        SCOPED_TRACE(leaf->nodeType());
        const auto e = d->createElement(u"e");
        log.heard.clear();
        EXPECT_FALSE(leaf->appendChild(e));
        EXPECT_FALSE(leaf->firstChild());
        EXPECT_FALSE(e->parentNode());
        EXPECT_THAT(log.heard, IsEmpty());
    }
}

TEST(WQXMLNodeTest, ADetachedReferenceLeavesTheTreeSound) {
    auto d = parse("<a><b/></a>");
    auto reference = d->createElement(u"reference");
    auto child = d->createElement(u"child");
    const auto result = d->documentElement()->insertChild_before(child, reference);
    EXPECT_EQ(dump(d), "a[b]");
    if (result) {
        EXPECT_EQ(child->nextSibling(), reference);
    }
    reference = nullptr;
    EXPECT_FALSE(child->nextSibling());
    EXPECT_EQ(child->nodeName(), u"child");
    d = nullptr;
    EXPECT_EQ(child->nodeName(), u"child");
}

TEST(WQXMLNodeTest, AListenerThatTakesTheReferenceAwayLeavesTheTreeSound) {
    const auto d = parse("<r><a><b/></a><c/></r>");
    const auto c = find(d, u"c");
    bool done = false;
    Ref<WQXMLNode> kept;
    Hears hears([&](const Ref<WQXMLMutationEvent>& event) {
        if (event->eventID() != 8 || std::exchange(done, true)) return;
        kept = c->parentNode()->removeChild(c);
    });
    {
        const Listening listening(d, &hears, true);
        const auto b = find(d, u"b");
        d->documentElement()->insertChild_before(b, c);
        EXPECT_EQ(b->nodeName(), u"b");
    }
    EXPECT_TRUE(done);
    EXPECT_FALSE(c->parentNode());
    expectSound(d);
}

TEST(WQXMLNodeTest, AListenerThatLetsTheDocumentGoLeavesTheEditSound) {
    for (const int32_t event : {4, 8}) {
        SCOPED_TRACE(event);
        auto d = parse("<r><a><b/></a><c/></r>");
        const auto b = find(d, u"b"), c = find(d, u"c");
        Hears hears([&](const Ref<WQXMLMutationEvent>& heard) {
            if (heard->eventID() == event) d = nullptr;
        });
        c->addListener_forEvent_useCapture(&hears, event, true);
        b->addListener_forEvent_useCapture(&hears, event, false);
        c->appendChild(b);
        EXPECT_FALSE(d);
        EXPECT_EQ(c->nodeType(), 0x7fff);
    }
    auto d = parse("<r><a><b/></a></r>");
    const auto a = find(d, u"a"), b = find(d, u"b");
    Hears hears([&](const Ref<WQXMLMutationEvent>&) { d = nullptr; });
    b->addListener_forEvent_useCapture(&hears, 8, false);
    EXPECT_EQ(a->removeChild(b), b);
    EXPECT_FALSE(d);
    a->removeChildren();
}

TEST(WQXMLNodeTest, AListenerThatRemovesTheInsertedNodeLeavesItToTheCaller) {
    const auto d = parse("<a/>");
    Hears hears([](const Ref<WQXMLMutationEvent>& event) {
        if (event->eventID() == 4) event->target()->parentNode()->removeChild(event->target());
    });
    const Listening listening(d, &hears, true);
    const auto e = d->documentElement()->appendChild(d->createElement(u"e"));
    EXPECT_EQ(e->referenceCount(), 1);
    EXPECT_EQ(e->nodeName(), u"e");
    EXPECT_FALSE(e->parentNode());
    EXPECT_EQ(dump(d), "a");
}

TEST(WQXMLNodeTest, AListenerThatMovesARemovedNodeElsewhereLosesItToTheRemoval) {
    const auto d = parse("<r><a><b/></a><c/></r>");
    const auto c = find(d, u"c"), b = find(d, u"b");
    bool done = false;
    Hears hears([&](const Ref<WQXMLMutationEvent>& event) {
        if (event->eventID() == 8 && !std::exchange(done, true)) c->appendChild(event->target());
    });
    const Listening listening(d, &hears, true);
    EXPECT_EQ(find(d, u"a")->removeChild(b), b);
    EXPECT_FALSE(b->parentNode());
    EXPECT_EQ(b->referenceCount(), 1);
    EXPECT_EQ(dump(d), "r[a,c]");
    expectSound(d);
}

TEST(WQXMLNodeTest, AListenerThatRemovesTheNodeItselfFirstDoesNoHarm) {
    const auto d = parse("<a><b/></a>");
    const auto b = find(d, u"b");
    bool done = false;
    Hears hears([&](const Ref<WQXMLMutationEvent>& event) {
        if (!std::exchange(done, true)) event->relatedNode()->removeChild(event->target());
    });
    const Listening listening(d, &hears, true);
    EXPECT_EQ(d->documentElement()->removeChild(b), b);
    EXPECT_EQ(b->referenceCount(), 1);
    EXPECT_EQ(dump(d), "a");
}

TEST(WQXMLNodeTest, ARaisingListenerOfTheRemovalLeavesTheTreeAsItWas) {
    const auto d = parse("<r><a><b/></a><c/></r>");
    const auto b = find(d, u"b");
    Hears hears([](const Ref<WQXMLMutationEvent>& event) {
        if (event->eventID() == 8) throw std::runtime_error("no");
    });
    const Listening listening(d, &hears, true);
    EXPECT_THROW(find(d, u"a")->removeChild(b), std::runtime_error);
    EXPECT_THROW(find(d, u"c")->appendChild(b), std::runtime_error);
    EXPECT_THROW(find(d, u"a")->removeChildren(), std::runtime_error);
    EXPECT_THROW(find(d, u"c")->appendChildrenFromNode(find(d, u"a")), std::runtime_error);
    EXPECT_EQ(dump(d), "r[a[b],c]");
    EXPECT_EQ(b->referenceCount(), 2);
    expectSound(d);
}

TEST(WQXMLNodeTest, ARaisingListenerOfTheInsertionLeavesTheChildLinked) {
    const auto d = parse("<r><a><b/></a><c/></r>");
    const auto b = find(d, u"b"), e = Ref<WQXMLNode>(d->createElement(u"e"));
    Hears hears([](const Ref<WQXMLMutationEvent>& event) {
        if (event->eventID() == 4) throw std::runtime_error("no");
    });
    const Listening listening(d, &hears, true);
    EXPECT_THROW(find(d, u"c")->appendChild(b), std::runtime_error);
    EXPECT_THROW(find(d, u"c")->appendChild(e), std::runtime_error);
    EXPECT_EQ(dump(d), "r[a,c[b,e]]");
    EXPECT_EQ(b->referenceCount(), 2);
    EXPECT_EQ(e->referenceCount(), 2);
    expectSound(d);
}

TEST(WQXMLNodeTest, AnEditInADetachedTreeReachesItsOwnTopOnly) {
    const auto d = parse("<a/>");
    const auto top = d->createElement(u"top");
    Log onDocument("d "), onTop("top ");
    const Listening one(d, &onDocument, true), two(top, &onTop, true);
    const auto e = top->appendChild(d->createElement(u"e"));
    e->appendChild(d->createElement(u"f"));
    top->removeChildren();
    EXPECT_THAT(onDocument.heard, IsEmpty());
    EXPECT_THAT(onTop.heard, ElementsAre("top 4/1 e<-top", "top 4/1 f<-e", "top 8/1 e<-top"));
}

// ---- Namespaces at insertion

TEST(WQXMLNodeTest, InsertionDeclaresTheNamespaceBeforeItTells) {
    const auto d = parse("<a/>");
    const auto e = d->createElement_namespaceURI(u"p:e", u"u:1");
    EXPECT_NE(e->ownedNs(), nullptr);
    std::string atEvent;
    Hears hears([&](const Ref<WQXMLMutationEvent>& event) { atEvent = serialised(event->target()); });
    const Listening listening(d, &hears, true);
    d->documentElement()->appendChild(e);
    EXPECT_EQ(atEvent, "<p:e xmlns:p=\"u:1\"/>");
    EXPECT_EQ(e->ownedNs(), nullptr);
    EXPECT_EQ(e->nodeName(), u"p:e");
    EXPECT_EQ(e->namespaceURI(), u"u:1");
}

TEST(WQXMLNodeTest, AnUnprefixedNamespaceIsDeclaredWithAMadeUpPrefix) {
    const auto d = parse("<a/>");
    const auto e = d->createElement_namespaceURI(u"e", u"u:u");
    d->documentElement()->appendChild(e);
    EXPECT_EQ(serialised(e), "<default:e xmlns:default=\"u:u\"/>");
    EXPECT_EQ(e->nodeName(), u"default:e");
    EXPECT_EQ(e->ownedNs(), nullptr);
}

TEST(WQXMLNodeTest, ADeclarationInScopeServesTheInsertedElement) {
    const auto d = parse("<a xmlns:p='u:1'/>");
    const auto e = d->createElement_namespaceURI(u"zz:e", u"u:1");
    d->documentElement()->appendChild(e);
    EXPECT_EQ(serialised(d->documentElement()), "<a xmlns:p=\"u:1\"><p:e/></a>");
    EXPECT_EQ(e->nodeName(), u"p:e");
    EXPECT_EQ(e->ownedNs(), nullptr);
}

TEST(WQXMLNodeTest, WithoutADocumentAnElementKeepsItsOwnNamespace) {
    const auto parent = WQXMLElement::newWithName(u"a");
    const auto e = WQXMLElement::newWithQualifiedName_namespaceURI(u"p:e", u"u:1");
    parent->appendChild(e);
    EXPECT_NE(e->ownedNs(), nullptr);
    e->reconcileNamespace();
    EXPECT_NE(e->ownedNs(), nullptr);
    EXPECT_EQ(e->nodeName(), u"p:e");
}

TEST(WQXMLNodeTest, OnlyTheInsertedNodesOwnNamespaceIsCleared) {
    const auto d = parse("<r/>");
    const auto parent = WQXMLElement::newWithQualifiedName_namespaceURI(u"p:a", u"u:1");
    const auto child = WQXMLElement::newWithQualifiedName_namespaceURI(u"q:b", u"u:2");
    parent->appendChild(child);
    d->documentElement()->appendChild(parent);
    EXPECT_EQ(parent->ownedNs(), nullptr);
    EXPECT_NE(child->ownedNs(), nullptr);
    EXPECT_EQ(child->nodeName(), u"q:b");
    EXPECT_EQ(child->namespaceURI(), u"u:2");
    EXPECT_EQ(serialised(parent), "<p:a xmlns:p=\"u:1\" xmlns:q=\"u:2\"><q:b/></p:a>");
}

TEST(WQXMLNodeTest, AnElementInAnHTMLDocumentKeepsItsOwnNamespace) {
    const auto d = parseHTML("<html><body><p>x</p></body></html>");
    const auto e = d->createElement_namespaceURI(u"p:e", u"u:1");
    find(d, u"body")->appendChild(e);
    EXPECT_NE(e->ownedNs(), nullptr);
    EXPECT_EQ(e->nodeName(), u"p:e");
}

TEST(WQXMLNodeTest, ReconcilingDeclaresTheNamespaceOfADetachedElementOfADocument) {
    const auto d = parse("<a/>");
    const auto e = d->createElement_namespaceURI(u"p:e", u"u:1");
    e->reconcileNamespace();
    EXPECT_EQ(e->ownedNs(), nullptr);
    EXPECT_EQ(serialised(e), "<p:e xmlns:p=\"u:1\"/>");
}

TEST(WQXMLNodeTest, ReconcilingClearsAnOwnedNamespaceThatNothingUses) {
    const auto d = parse("<a/>");
    const auto e = d->createElement(u"e");
    e->setOwnedNs(xmlNewNs(nullptr, x("u:1"), x("p")));
    e->reconcileNamespace();
    EXPECT_EQ(e->ownedNs(), nullptr);
}

TEST(WQXMLNodeTest, SettingTheOwnedNamespaceFreesTheOldOne) {
    const auto d = parse("<a/>");
    const auto e = d->createElement(u"e");
    xmlNsPtr one = xmlNewNs(nullptr, x("u:1"), x("p")), two = xmlNewNs(nullptr, x("u:2"), x("q"));
    EXPECT_EQ(e->ownedNs(), nullptr);
    e->setOwnedNs(one);
    EXPECT_EQ(e->ownedNs(), one);
    e->setOwnedNs(two);
    EXPECT_EQ(e->ownedNs(), two);
    e->setOwnedNs(nullptr);
    EXPECT_EQ(e->ownedNs(), nullptr);
    e->setOwnedNs(xmlNewNs(nullptr, x("u:3"), x("r")));  // freed with the element
}

// ---- Removal

TEST(WQXMLNodeTest, RemovalFiresWhileTheChildIsLinkedAtItsOldIndex) {
    const auto d = parse("<a><b/><c/><d/></a>");
    const auto a = d->documentElement();
    const auto c = find(d, u"c");
    uint64_t index = NSNotFound;
    std::string tree;
    Hears hears([&](const Ref<WQXMLMutationEvent>& event) {
        EXPECT_EQ(event->eventID(), 8);
        EXPECT_EQ(event->target(), c);
        EXPECT_EQ(event->relatedNode(), a);
        index = a->indexOfChild(event->target());
        tree = dump(d);
    });
    const Listening listening(d, &hears, true);
    EXPECT_EQ(a->removeChild(c), c);
    EXPECT_EQ(index, 1);
    EXPECT_EQ(tree, "a[b,c,d]");
    EXPECT_EQ(dump(d), "a[b,d]");
    EXPECT_FALSE(c->parentNode());
    EXPECT_FALSE(c->previousSibling());
    EXPECT_FALSE(c->nextSibling());
    EXPECT_EQ(c->ownerDocument(), d);
    EXPECT_EQ(c->referenceCount(), 1);
    expectSound(d);
}

TEST(WQXMLNodeTest, ARemovedNodeThatNobodyKeepsGoesWithItsSubtree) {
    const auto d = parse("<a><b k='v'><c>t</c></b><d/></a>");
    const int64_t before = wq::numberOfLivingNodes();
    d->documentElement()->removeChild(d->documentElement()->firstChild());
    EXPECT_EQ(wq::numberOfLivingNodes(), before - 5) << "b, k, its text, c, its text";
    EXPECT_EQ(dump(d), "a[d]");
}

TEST(WQXMLNodeTest, TheCallerReceivesTheRemovedNodeAlive) {
    const auto d = parse("<a><b>t</b></a>");
    EXPECT_EQ(dump(d->documentElement()->removeChild(d->documentElement()->firstChild())), "b[\"t\"]");
}

TEST(WQXMLNodeTest, RemovalDoesNotAskWhoseChildItIs) {
    const auto d = parse("<r><a><b/></a><c/></r>");
    const auto b = find(d, u"b");
    Log log;
    const Listening listening(d, &log, true);
    EXPECT_EQ(find(d, u"c")->removeChild(b), b);
    EXPECT_THAT(log.heard, ElementsAre("8/1 b<-c"));
    EXPECT_EQ(dump(d), "r[a,c]");
    EXPECT_EQ(b->referenceCount(), 1);
}

TEST(WQXMLNodeTest, RemovingADetachedNodeFiresAndChangesNothing) {
    const auto d = parse("<a/>");
    const auto e = d->createElement(u"e");
    Log log;
    {
        const Listening listening(e, &log, false);
        EXPECT_EQ(d->documentElement()->removeChild(e), e);
        EXPECT_EQ(d->documentElement()->removeChild(e), e);
    }
    EXPECT_THAT(log.heard, ElementsAre("8/2 e<-a", "8/2 e<-a"));
    EXPECT_EQ(e->referenceCount(), 1);
}

TEST(WQXMLNodeTest, RemovingAllChildrenRemovesEachFromTheFront) {
    const auto d = parse("<a><b/>t<c><d/></c></a>");
    Log log;
    const Listening listening(d, &log, true);
    d->documentElement()->removeChildren();
    EXPECT_THAT(log.heard, ElementsAre("8/1 b<-a", "8/1 #text<-a", "8/1 c<-a"));
    EXPECT_EQ(dump(d), "a");
    d->documentElement()->removeChildren();
    EXPECT_EQ(log.heard.size(), 3);
    expectSound(d);
}

TEST(WQXMLNodeTest, RemovingAllChildrenTakesThoseThatAListenerAdds) {
    const auto d = parse("<a><b/></a>");
    bool done = false;
    Hears hears([&](const Ref<WQXMLMutationEvent>& event) {
        if (event->eventID() == 8 && !std::exchange(done, true)) d->documentElement()->appendChild(d->createElement(u"late"));
    });
    const Listening listening(d, &hears, true);
    d->documentElement()->removeChildren();
    EXPECT_EQ(dump(d), "a");
}

TEST(WQXMLNodeTest, AppendingChildrenFromANodeMovesEachInOrder) {
    const auto d = parse("<r><a><b/>t<c/></a><z><y/></z></r>");
    Log log;
    const Listening listening(d, &log, true);
    find(d, u"z")->appendChildrenFromNode(find(d, u"a"));
    EXPECT_EQ(dump(d), "r[a,z[y,b,\"t\",c]]");
    EXPECT_THAT(log.heard, ElementsAre("8/1 b<-a", "4/1 b<-z", "8/1 #text<-a", "4/1 #text<-z", "8/1 c<-a", "4/1 c<-z"));
    EXPECT_EQ(find(d, u"b")->referenceCount(), 2);
    expectSound(d);
}

TEST(WQXMLNodeTest, AppendingChildrenTakesThoseThatAListenerAdds) {
    const auto d = parse("<r><a><b/></a><z/></r>");
    bool done = false;
    Hears hears([&](const Ref<WQXMLMutationEvent>& event) {
        if (event->eventID() == 4 && !std::exchange(done, true)) find(d, u"a")->appendChild(d->createElement(u"late"));
    });
    const Listening listening(d, &hears, true);
    find(d, u"z")->appendChildrenFromNode(find(d, u"a"));
    EXPECT_EQ(dump(d), "r[a,z[b,late]]");
}

TEST(WQXMLNodeTest, AppendingItsOwnChildrenChangesNothing) {
    const auto d = parse("<a><b/><c/></a>");
    Log log;
    const Listening listening(d, &log, true);
    d->documentElement()->appendChildrenFromNode(d->documentElement());
    EXPECT_EQ(dump(d), "a[b,c]");
    EXPECT_THAT(log.heard, IsEmpty());
}

TEST(WQXMLNodeTest, ANotificationAloneFiresOnTheChildAndNamesTheReceiver) {
    const auto d = parse("<a><b/></a>");
    Log log;
    const Listening listening(find(d, u"b"), &log, false);
    d->documentElement()->notifyDidInsertNode(find(d, u"b"));
    d->documentElement()->notifyWillRemoveNode(find(d, u"b"));
    EXPECT_THAT(log.heard, ElementsAre("4/2 b<-a", "8/2 b<-a"));
    EXPECT_EQ(dump(d), "a[b]");
}

// ---- Attributes as nodes

TEST(WQXMLNodeTest, AnAttributeCanBeRemovedAndInsertedElsewhere) {
    const auto d = parse("<r><a k='1' l='2'/><b m='3'/></r>");
    const auto a = element(d, u"a"), b = element(d, u"b");
    const auto k = attribute(a, u"k");
    Log log;
    const Listening listening(d, &log, true);
    EXPECT_EQ(a->removeChild(k), k);
    EXPECT_EQ(attributes(a), "l=2");
    EXPECT_FALSE(k->parentNode());
    EXPECT_EQ(k->referenceCount(), 1);
    EXPECT_EQ(b->appendChild(k), k);
    EXPECT_EQ(attributes(b), "m=3 k=1");
    EXPECT_EQ(k->referenceCount(), 2);
    EXPECT_EQ(a->insertChild_before(k, attribute(a, u"l")), k);
    EXPECT_EQ(attributes(a), "k=1 l=2");
    EXPECT_EQ(attributes(b), "m=3");
    EXPECT_EQ(a->firstAttribute(), k);
    EXPECT_THAT(log.heard, ElementsAre("8/1 k<-a", "4/1 k<-b", "8/1 k<-b", "4/1 k<-a"));
    expectSound(d);
}

TEST(WQXMLNodeTest, AnAttributeInsertedIntoAnElementWithoutOnesIsTheFirst) {
    const auto d = parse("<r><a k='1'/><b>t</b></r>");
    const auto b = element(d, u"b");
    b->appendChild(attribute(element(d, u"a"), u"k"));
    EXPECT_EQ(attributes(b), "k=1");
    EXPECT_EQ(dump(d), "r[a,b[\"t\"]]");
    expectSound(d);
}

TEST(WQXMLNodeTest, AnAttributeInsertedIntoTheMiddleLandsAheadOfItsReference) {
    const auto d = parse("<r><a k='1'/><b l='2' m='3'/></r>");
    const auto b = element(d, u"b");
    b->insertChild_before(attribute(element(d, u"a"), u"k"), attribute(b, u"m"));
    EXPECT_EQ(attributes(b), "l=2 k=1 m=3");
    expectSound(d);
}

TEST(WQXMLNodeTest, AnAttributeWhoseReferenceIsElsewhereLandsThere) {
    const auto d = parse("<r><a k='1'/><b l='2'/></r>");
    Log log;
    const auto k = attribute(element(d, u"a"), u"k");
    const Listening listening(d, &log, true);
    element(d, u"a")->insertChild_before(k, attribute(element(d, u"b"), u"l"));
    EXPECT_EQ(attributes(element(d, u"b")), "k=1 l=2");
    EXPECT_THAT(log.heard, ElementsAre("8/1 k<-a", "4/1 k<-a"));
}

TEST(WQXMLNodeTest, AnAttributeBesideAChildLandsOnTheParentOfThat) {
    const auto d = parse("<r><a k='new'/><b j='0' k='old'><c/></b></r>");
    const auto b = element(d, u"b");
    const auto held = attribute(b, u"k"), k = attribute(element(d, u"a"), u"k");
    EXPECT_EQ(b->insertChild_before(k, find(d, u"c")), k);
    EXPECT_EQ(attributes(b), "j=0 k=new");
    EXPECT_EQ(held->nodeType(), 0x7fff);
    EXPECT_EQ(dump(d), "r[a,b[c]]");
    expectSound(d);
}

TEST(WQXMLNodeTest, AnAttributeAppendedFreesTheOneOfTheSameName) {
    const auto d = parse("<r><a k='new'/><b j='0' k='old' l='2'/></r>");
    const auto b = element(d, u"b");
    const auto held = attribute(b, u"k"), heldText = held->firstChild();
    const auto k = attribute(element(d, u"a"), u"k");
    const int64_t before = wq::numberOfLivingNodes();
    Log log;
    const Listening listening(d, &log, true);
    EXPECT_EQ(b->appendChild(k), k);
    EXPECT_EQ(attributes(b), "j=0 l=2 k=new");
    EXPECT_EQ(held->nodeType(), 0x7fff);
    EXPECT_EQ(heldText->nodeType(), 0x7fff);
    EXPECT_EQ(held->referenceCount(), 1);
    EXPECT_EQ(wq::numberOfLivingNodes(), before - 2);
    EXPECT_THAT(log.heard, ElementsAre("8/1 k<-a", "4/1 k<-b")) << "nobody hears of the freed one";
    expectSound(d);
}

TEST(WQXMLNodeTest, AnAttributeInsertedBesideOthersFreesTheOneOfTheSameName) {
    const char* const xml = "<r><a k='new'/><b j='0' k='old' l='2'/></r>";
    struct {
        const char16_t* reference;
        const char* expected;
    } const rows[] = {{u"j", "k=new j=0 l=2"}, {u"l", "j=0 k=new l=2"}, {u"k", "j=0 k=new l=2"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.expected);
        const auto d = parse(xml);
        const auto b = element(d, u"b");
        const auto held = attribute(b, u"k");
        b->insertChild_before(attribute(element(d, u"a"), u"k"), attribute(b, row.reference));
        EXPECT_EQ(attributes(b), row.expected);
        EXPECT_EQ(held->nodeType(), 0x7fff);
        expectSound(d);
    }
}

TEST(WQXMLNodeTest, ASoleAttributeOfTheSameNameIsReplaced) {
    for (const bool beside : {false, true}) {
        SCOPED_TRACE(beside);
        const auto d = parse("<r><a k='new'/><b k='old'/></r>");
        const auto b = element(d, u"b");
        b->insertChild_before(attribute(element(d, u"a"), u"k"), beside ? b->firstAttribute() : nullptr);
        EXPECT_EQ(attributes(b), "k=new");
        expectSound(d);
    }
}

TEST(WQXMLNodeTest, AnAttributeInANamespaceFreesItsLikeInThatNamespaceOnly) {
    const auto d = parse("<r xmlns:p='u:1' xmlns:q='u:2'><a p:k='new'/><b k='0' q:k='2' p:k='old'/></r>");
    const auto b = element(d, u"b");
    b->appendChild(attribute(element(d, u"a"), u"p:k"));
    EXPECT_EQ(attributes(b), "k=0 q:k=2 p:k=new");
    expectSound(d);
}

TEST(WQXMLNodeTest, AnAttributeWithoutNamespaceFreesTheFirstOfItsNameInAny) {
    const auto d = parse("<r xmlns:p='u:1'><a k='new'/><b p:k='old' l='2'/></r>");
    const auto b = element(d, u"b");
    const auto held = attribute(b, u"p:k");
    b->appendChild(attribute(element(d, u"a"), u"k"));
    EXPECT_EQ(attributes(b), "l=2 k=new");
    EXPECT_EQ(held->nodeType(), 0x7fff);
    expectSound(d);
}

TEST(WQXMLNodeTest, ADefaultStatedByTheDocumentTypeIsNotFreed) {
    const auto d = parse("<!DOCTYPE r [<!ATTLIST b k CDATA 'default'>]><r><a k='new'/><b l='2'/></r>");
    const auto b = element(d, u"b");
    ASSERT_EQ(b->getAttribute(u"k"), u"default");
    const auto k = attribute(element(d, u"a"), u"k");
    b->appendChild(k);
    EXPECT_EQ(b->getAttribute(u"k"), u"new");
    b->removeChild(k);
    EXPECT_EQ(b->getAttribute(u"k"), u"default");
    b->insertChild_before(k, b->firstAttribute());
    EXPECT_EQ(b->getAttribute(u"k"), u"new");
    expectSound(d);
}

TEST(WQXMLNodeTest, AnAttributeAppendedToItsOwnElementMovesToTheEnd) {
    const auto d = parse("<a k='1' l='2'/>");
    const auto a = d->documentElement();
    a->appendChild(attribute(a, u"k"));
    EXPECT_EQ(attributes(a), "l=2 k=1");
    expectSound(d);
}

TEST(WQXMLNodeTest, AnAttributeMovesToAnotherDocumentWithItsNamespace) {
    auto d = parse("<a xmlns:p='u:1' p:k='v'/>");
    const auto other = parse("<r/>");
    const auto k = attribute(d->documentElement(), u"p:k");
    other->documentElement()->appendChild(k);
    d = nullptr;
    EXPECT_EQ(k->ownerDocument(), other);
    EXPECT_EQ(k->namespaceURI(), u"u:1");
    EXPECT_EQ(k->localName(), u"k");
    EXPECT_EQ(wq::cast<WQXMLAttr>(k)->value(), u"v");
    expectSound(other);
}

// ---- Attributes that identify

TEST(WQXMLNodeTest, AnIdentifierFollowsTheTextOfItsAttribute) {
    const auto d = parse("<r><a xml:id='i'/></r>");
    const auto id = element(d, u"a")->firstAttribute();
    const auto attr = reinterpret_cast<xmlAttrPtr>(id->xmlNode());
    EXPECT_EQ(xmlGetID(d->xmlDoc(), x("i")), attr);
    wq::cast<WQXMLText>(id->firstChild())->setString(u"j");
    EXPECT_EQ(xmlGetID(d->xmlDoc(), x("i")), nullptr);
    EXPECT_EQ(xmlGetID(d->xmlDoc(), x("j")), attr);
    wq::cast<WQXMLText>(id->firstChild())->appendString(u"k");
    EXPECT_EQ(xmlGetID(d->xmlDoc(), x("j")), nullptr);
    EXPECT_EQ(xmlGetID(d->xmlDoc(), x("jk")), attr);
}

TEST(WQXMLNodeTest, AnIdentifierFollowsTheChildrenOfItsAttribute) {
    const auto d = parse("<r><a xml:id='i'/></r>");
    const auto id = element(d, u"a")->firstAttribute();
    const auto attr = reinterpret_cast<xmlAttrPtr>(id->xmlNode());
    id->appendChild(d->createTextNode(u"j"));
    EXPECT_EQ(xmlGetID(d->xmlDoc(), x("i")), nullptr);
    EXPECT_EQ(xmlGetID(d->xmlDoc(), x("ij")), attr);
    id->removeChild(id->firstChild());
    EXPECT_EQ(xmlGetID(d->xmlDoc(), x("ij")), nullptr);
    EXPECT_EQ(xmlGetID(d->xmlDoc(), x("j")), attr);
}

TEST(WQXMLNodeTest, AnIdentifierWhoseTextIsGoneDoesNotDangle) {
    const auto d = parse("<r><a xml:id='i' k='v'/></r>");
    const auto a = element(d, u"a");
    const auto id = attribute(a, u"xml:id");
    id->removeChild(id->firstChild());
    EXPECT_EQ(xmlGetID(d->xmlDoc(), x("i")), nullptr);
    a->removeAttribute_namespaceURI(u"id", u"http://www.w3.org/XML/1998/namespace");
    EXPECT_EQ(id->nodeType(), 0x7fff);
    EXPECT_EQ(xmlGetID(d->xmlDoc(), x("i")), nullptr);
    EXPECT_EQ(xmlGetID(d->xmlDoc(), x("")), nullptr);
}

TEST(WQXMLNodeTest, AnIdentifierWhoseTextIsReplacedDoesNotDangle) {
    const auto d = parse("<r><a xml:id='i'/></r>");
    const auto a = element(d, u"a");
    auto id = a->firstAttribute();
    id->removeChildren();
    id->appendChild(d->createTextNode(u"j"));
    a->removeChild(id);
    id = nullptr;
    EXPECT_EQ(xmlGetID(d->xmlDoc(), x("i")), nullptr);
    EXPECT_EQ(xmlGetID(d->xmlDoc(), x("j")), nullptr);
}

TEST(WQXMLNodeTest, AReplacedIdentifierDoesNotDangle) {
    const auto d = parse("<r><a xml:id='i'/><b xml:id='j'/></r>");
    element(d, u"b")->appendChild(element(d, u"a")->firstAttribute());
    EXPECT_EQ(xmlGetID(d->xmlDoc(), x("j")), nullptr);
    EXPECT_EQ(attributes(element(d, u"b")), "xml:id=i");
}

TEST(WQXMLNodeTest, AnIdentifierThatMovedToAnotherDocumentIsForgottenByTheFirst) {
    auto d = parse("<r><a xml:id='i'/></r>");
    const auto other = parse("<s/>");
    other->documentElement()->appendChild(find(d, u"a"));
    EXPECT_EQ(xmlGetID(d->xmlDoc(), x("i")), nullptr);
    d = nullptr;
    EXPECT_EQ(serialised(other->documentElement()), "<s><a xml:id=\"i\"/></s>");
}

TEST(WQXMLNodeTest, ARemovedElementWithAnIdentifierOutlivesItsDocument) {
    auto d = parse("<r><a xml:id='i'/></r>");
    auto a = d->documentElement()->removeChild(find(d, u"a"));
    d = nullptr;
    EXPECT_EQ(wq::cast<WQXMLElement>(a)->getAttribute(u"id"), u"i");
    a = nullptr;
}

// ---- The document type as a node

TEST(WQXMLNodeTest, ADocumentTypeCanBeRemovedAndPutBack) {
    auto d = parse("<!DOCTYPE a [<!ENTITY e 'x'>]><a>&e;</a>");
    const auto type = d->removeChild(d->documentElement()->previousSibling());
    EXPECT_EQ(type->nodeType(), 14);
    EXPECT_EQ(d->xmlDoc()->intSubset, nullptr);
    EXPECT_FALSE(d->documentElement()->previousSibling());
    d->insertChild_before(type, d->documentElement());
    EXPECT_EQ(reinterpret_cast<xmlNodePtr>(d->xmlDoc()->intSubset), type->xmlNode());
    EXPECT_EQ(d->documentElement()->previousSibling(), type);
    EXPECT_EQ(type->referenceCount(), 2);
    expectSound(d);
    d = nullptr;
    EXPECT_EQ(type->nodeType(), 0x7fff);
}

TEST(WQXMLNodeTest, ADocumentTypeThatIsAppendedIsFreedWithTheDocument) {
    const auto d = parse("<!DOCTYPE a [<!ENTITY e 'x'>]><a/>");
    d->appendChild(d->removeChild(d->documentElement()->previousSibling()));
    EXPECT_EQ(d->documentElement()->nextSibling()->nodeType(), 14);
    expectSound(d);
}

TEST(WQXMLNodeTest, ARemovedDocumentTypeGoesWithItsWrapper) {
    const auto d = parse("<!DOCTYPE a [<!ELEMENT a ANY>]><a/>");
    const int64_t before = wq::numberOfLivingNodes();
    d->removeChild(d->documentElement()->previousSibling());
    EXPECT_LT(wq::numberOfLivingNodes(), before);
    EXPECT_EQ(d->xmlDoc()->intSubset, nullptr);
    EXPECT_EQ(dump(d), "a");
}

TEST(WQXMLNodeTest, ARemovedDocumentTypeOutlivesItsDocument) {
    auto d = parse("<!DOCTYPE a [<!ELEMENT a ANY><!ENTITY e 'x<b/>'>]><a>&e;</a>");
    const auto type = d->removeChild(d->documentElement()->previousSibling());
    d = nullptr;
    EXPECT_EQ(type->nodeType(), 14);
    EXPECT_FALSE(type->ownerDocument());
}

TEST(WQXMLNodeTest, ADocumentTypeCanMoveToAnotherDocument) {
    auto d = parse("<!DOCTYPE a [<!ELEMENT a ANY>]><a/>");
    const auto other = parse("<a/>");
    other->insertChild_before(d->removeChild(d->documentElement()->previousSibling()), other->documentElement());
    d = nullptr;
    EXPECT_EQ(other->documentElement()->previousSibling()->nodeType(), 14);
    EXPECT_EQ(other->documentElement()->previousSibling()->ownerDocument(), other);
}

TEST(WQXMLNodeTest, ASecondDocumentTypeGoesWithTheDocument) {
    const auto d = parse("<!DOCTYPE a [<!ELEMENT a ANY>]><a/>");
    auto other = parse("<!DOCTYPE a [<!ELEMENT a EMPTY>]><a/>");
    const auto type = d->removeChild(d->documentElement()->previousSibling());
    const auto inserted = other->insertChild_before(type, other->documentElement());
    other = nullptr;
    EXPECT_EQ(type->nodeType(), inserted ? 0x7fff : 14);
}

// ---- Namespaces of nodes that left

TEST(WQXMLNodeTest, ARemovedNodeKeepsANamespaceDeclaredByAFormerAncestor) {
    auto d = parse("<r xmlns:p='u:1'><m xmlns:q='u:2'><p:a p:k='v' q:l='w'><q:b/></p:a></m></r>");
    auto m = find(d, u"m");
    const auto a = wq::cast<WQXMLElement>(m->removeChild(m->firstChild()));
    const auto expectNames = [&] {
        EXPECT_EQ(a->nodeName(), u"p:a");
        EXPECT_EQ(a->namespaceURI(), u"u:1");
        EXPECT_EQ(a->firstAttribute()->nodeName(), u"p:k");
        EXPECT_EQ(a->firstAttribute()->namespaceURI(), u"u:1");
        EXPECT_EQ(a->firstAttribute()->nextSibling()->nodeName(), u"q:l");
        EXPECT_EQ(a->firstAttribute()->nextSibling()->namespaceURI(), u"u:2");
        EXPECT_EQ(a->firstChild()->nodeName(), u"q:b");
        EXPECT_EQ(a->firstChild()->namespaceURI(), u"u:2");
    };
    expectNames();
    d->documentElement()->removeChild(m);
    m = nullptr;  // frees the ancestor
    expectNames();
    d = nullptr;  // frees the document
    expectNames();
    const auto other = parse("<s/>");
    other->documentElement()->appendChild(a);
    expectNames();
    EXPECT_THAT(
        serialised(other->documentElement()), testing::AnyOf(
                                                  "<s><p:a xmlns:p=\"u:1\" xmlns:q=\"u:2\" p:k=\"v\" q:l=\"w\"><q:b/></p:a></s>",
                                                  "<s><p:a xmlns:q=\"u:2\" xmlns:p=\"u:1\" p:k=\"v\" q:l=\"w\"><q:b/></p:a></s>"));
}

TEST(WQXMLNodeTest, ARemovedNodePutBackIsWrittenAsBefore) {
    const auto d = parse("<r xmlns:p='u:1'><p:a p:k='v'><p:b/></p:a><c/></r>");
    const auto a = find(d, u"p:a");
    const auto before = serialised(d->documentElement());
    d->documentElement()->removeChild(a);
    EXPECT_EQ(serialised(a), "<p:a p:k=\"v\"><p:b/></p:a>");
    d->documentElement()->insertChild_before(a, find(d, u"c"));
    EXPECT_EQ(serialised(d->documentElement()), before);
    find(d, u"c")->appendChild(a);
    EXPECT_EQ(serialised(d->documentElement()), "<r xmlns:p=\"u:1\"><c><p:a p:k=\"v\"><p:b/></p:a></c></r>");
}

TEST(WQXMLNodeTest, ADescendantOfARemovedNodeCanLeaveItAndOutliveIt) {
    auto d = parse("<r xmlns:p='u:1'><a><p:b p:k='v'/></a></r>");
    auto a = d->documentElement()->removeChild(find(d, u"a"));
    const auto b = wq::cast<WQXMLElement>(a->removeChild(a->firstChild()));
    a = nullptr;
    d = nullptr;
    EXPECT_EQ(b->nodeName(), u"p:b");
    EXPECT_EQ(b->firstAttribute()->nodeName(), u"p:k");
}

TEST(WQXMLNodeTest, ARemovedAttributeKeepsItsNamespace) {
    auto d = parse("<r xmlns:p='u:1'><a p:k='v' xmlns:q='u:2' q:l='w'/></r>");
    auto a = element(d, u"a");
    const auto k = a->removeChild(attribute(a, u"p:k")), l = a->removeChild(attribute(a, u"q:l"));
    d->documentElement()->removeChild(a);
    a = nullptr;
    d = nullptr;
    EXPECT_EQ(k->nodeName(), u"p:k");
    EXPECT_EQ(k->namespaceURI(), u"u:1");
    EXPECT_EQ(l->nodeName(), u"q:l");
    EXPECT_EQ(l->namespaceURI(), u"u:2");
    const auto other = parse("<s/>");
    other->documentElement()->appendChild(k);
    EXPECT_EQ(k->namespaceURI(), u"u:1");
}

TEST(WQXMLNodeTest, AnAttributeSetWithANamespaceOutlivesItsElement) {
    auto d = parse("<a/>");
    auto e = d->createElement(u"e");
    e->setAttribute_namespaceURI_value(u"p:k", u"u:1", u"v");
    const auto k = e->removeChild(e->firstAttribute());
    e = nullptr;
    EXPECT_EQ(k->nodeName(), u"p:k");
    EXPECT_EQ(k->namespaceURI(), u"u:1");
    d = nullptr;
    EXPECT_EQ(k->nodeName(), u"p:k");
}

TEST(WQXMLNodeTest, ThePrefixXmlOutlivesItsDocument) {
    auto d = parse("<r><a xml:lang='en'/></r>");
    const auto a = wq::cast<WQXMLElement>(d->documentElement()->removeChild(find(d, u"a")));
    d = nullptr;
    EXPECT_EQ(a->firstAttribute()->nodeName(), u"xml:lang");
    EXPECT_EQ(a->firstAttribute()->prefix(), u"xml");
    EXPECT_EQ(a->firstAttribute()->namespaceURI(), u"http://www.w3.org/XML/1998/namespace");
    EXPECT_EQ(serialised(a), "<a xml:lang=\"en\"/>");
    auto other = parse("<s/>");
    other->documentElement()->appendChild(a);
    EXPECT_EQ(serialised(other->documentElement()), "<s><a xml:lang=\"en\"/></s>");
    other->documentElement()->removeChild(a);
    other = nullptr;
    EXPECT_EQ(a->firstAttribute()->nodeName(), u"xml:lang");
}

TEST(WQXMLNodeTest, AnAttributeWithThePrefixXmlOutlivesItsDocument) {
    auto d = parse("<r xml:lang='en'/>");
    const auto lang = d->documentElement()->removeChild(d->documentElement()->firstAttribute());
    d = nullptr;
    EXPECT_EQ(lang->nodeName(), u"xml:lang");
    const auto other = parse("<s/>");
    other->documentElement()->appendChild(lang);
    EXPECT_EQ(serialised(other->documentElement()), "<s xml:lang=\"en\"/>");
}

TEST(WQXMLNodeTest, AChildThatUsesTheUnattachedNamespaceOfItsParentOutlivesThat) {
    auto d = parse("<r/>");
    auto parent = d->createElement_namespaceURI(u"p:a", u"u:1");
    const auto child = d->createElement_namespaceURI(u"p:b", u"u:1");
    parent->appendChild(child);
    parent->removeChild(child);
    d->documentElement()->appendChild(parent);
    EXPECT_EQ(child->nodeName(), u"p:b");
    EXPECT_EQ(child->namespaceURI(), u"u:1");
    d->documentElement()->removeChild(parent);
    parent = nullptr;
    EXPECT_EQ(child->nodeName(), u"p:b");
    d->documentElement()->appendChild(child);
    EXPECT_EQ(serialised(d->documentElement()), "<r><p:b xmlns:p=\"u:1\"/></r>");
    d = nullptr;
    EXPECT_EQ(child->nodeType(), 0x7fff);
}

TEST(WQXMLNodeTest, ChildrenOfAnInsertedParentDoNotPointToItsFormerNamespace) {
    const auto d = parse("<r/>");
    const auto parent = d->createElement_namespaceURI(u"p:a", u"u:1");
    const auto child = d->createElement_namespaceURI(u"q:b", u"u:1");
    parent->appendChild(child);
    parent->setAttribute_namespaceURI_value(u"p:k", u"u:1", u"v");
    d->documentElement()->appendChild(parent);
    EXPECT_EQ(parent->nodeName(), u"p:a");
    EXPECT_EQ(child->namespaceURI(), u"u:1");
    EXPECT_EQ(parent->firstAttribute()->namespaceURI(), u"u:1");
    EXPECT_EQ(serialised(parent), "<p:a xmlns:p=\"u:1\" p:k=\"v\"><p:b/></p:a>");
}

TEST(WQXMLNodeTest, ANamespaceDeclaredOnTheRemovedNodeStaysItsOwn) {
    auto d = parse("<r><p:a xmlns:p='u:1'><p:b/></p:a></r>");
    const auto a = d->documentElement()->removeChild(find(d, u"p:a"));
    d = nullptr;
    EXPECT_EQ(serialised(a), "<p:a xmlns:p=\"u:1\"><p:b/></p:a>");
}

TEST(WQXMLNodeTest, NamespacesSurviveManyMovesBetweenDocuments) {
    auto node = [] {
        const auto d = parse("<r xmlns:p='u:1' xmlns='u:0'><p:a p:k='v' xml:lang='en'><b p:k='w'/></p:a></r>");
        return d->documentElement()->removeChild(find(d, u"p:a"));
    }();
    for (int i = 0; i < 20; ++i) {
        const auto d = parse(i % 2 ? "<s/>" : "<s xmlns:z='u:1'/>");
        d->documentElement()->appendChild(node);
        EXPECT_EQ(node->namespaceURI(), u"u:1");
        EXPECT_EQ(node->firstChild()->namespaceURI(), u"u:0");
        EXPECT_EQ(wq::cast<WQXMLElement>(node)->getAttribute_namespaceURI(u"k", u"u:1"), u"v");
        d->documentElement()->removeChild(node);
    }
    EXPECT_EQ(node->namespaceURI(), u"u:1");
}

// ---- Nodes that outlive their document

TEST(WQXMLNodeTest, DetachedNodesOutliveTheirDocument) {
    auto d = parse("<a><b><c k='v'>t</c></b><!--x--><?pi y?><![CDATA[z]]></a>");
    const auto a = d->documentElement();
    std::vector<Ref<WQXMLNode>> nodes = {d->createElement(u"e"), d->createElement_namespaceURI(u"p:e", u"u:1"), d->createTextNode(u"t")};
    while (a->firstChild()) nodes.push_back(a->removeChild(a->firstChild()));
    nodes.push_back(a->copyNode(true));
    const auto c = nodes[3]->firstChild();
    d = nullptr;
    EXPECT_EQ(a->nodeType(), 0x7fff);
    EXPECT_THAT(names(nodes), ElementsAre("e", "p:e", "#text", "b", "(null)", "(null)", "(null)", "a"));
    for (const auto& node : nodes) EXPECT_FALSE(node->ownerDocument());
    EXPECT_EQ(dump(nodes[3]), "b[c[\"t\"]]");
    EXPECT_FALSE(c->ownerDocument());
    const auto other = parse("<r/>");
    for (const auto& node : nodes) other->documentElement()->appendChild(node);
    EXPECT_EQ(dump(other), "r[e,p:e,\"t\",b[c[\"t\"]],<!>,<!>,<!>,a]");
    for (const auto& node : nodes) EXPECT_EQ(node->ownerDocument(), other);
    expectSound(other);
}

TEST(WQXMLNodeTest, ADetachedNodeCanBeEditedAfterItsDocument) {
    auto d = parse("<a><b>t</b></a>");
    const auto b = wq::cast<WQXMLElement>(d->documentElement()->removeChild(find(d, u"b")));
    d = nullptr;
    b->setAttribute_value(u"k", u"v");
    b->appendChild(WQXMLText::newWithString(u"u"));
    wq::cast<WQXMLText>(b->firstChild())->setString(u"s");
    EXPECT_EQ(serialised(b), "<b k=\"v\">su</b>");
}

TEST(WQXMLNodeTest, ANodeRemovedFromADetachedTreeOutlivesBoth) {
    auto d = parse("<a><b><c/></b></a>");
    auto b = d->documentElement()->removeChild(find(d, u"b"));
    auto c = b->removeChild(b->firstChild());
    d = nullptr;
    EXPECT_FALSE(c->ownerDocument());
    b = nullptr;
    EXPECT_EQ(c->nodeName(), u"c");
}

TEST(WQXMLNodeTest, ANodeMovedFromADetachedTreeToAnotherOutlivesTheDocument) {
    auto d = parse("<a/>");
    auto one = d->createElement(u"one"), two = d->createElement(u"two");
    const auto c = one->appendChild(d->createElement(u"c"));
    two->appendChild(c);
    one = nullptr;
    d = nullptr;
    EXPECT_EQ(dump(Ref<WQXMLNode>(two)), "two[c]");
    EXPECT_FALSE(c->ownerDocument());
    two = nullptr;
    EXPECT_EQ(c->nodeType(), 0x7fff);
}

// ---- Family for subclasses

TEST(WQXMLNodeTest, SplittingAndMergingAreLeftToSubclasses) {
    const auto d = parse("<a k='v'>t<!--c--><![CDATA[x]]><?pi y?></a>");
    const auto a = d->documentElement();
    const auto partner = d->createElement(u"e");
    const Ref<WQXMLNode> plain[] = {a->childAtIndex(1), a->childAtIndex(2), a->childAtIndex(3), a->firstAttribute(), d};
    const std::string raisedText = std::string(inconsistency) + "subclass responsibility";
    for (const auto& node : plain) {
        SCOPED_TRACE(node->nodeType());
        EXPECT_EQ(raised([&] { node->splitAtIndex(0); }), raisedText);
        EXPECT_EQ(raised([&] { node->splitAtIndex_intoNode(0, partner); }), raisedText);
        EXPECT_EQ(raised([&] { node->mergeWithNode(partner); }), raisedText);
        const Assertions failed;
        EXPECT_FALSE(node->splitAtIndex(0));
        EXPECT_FALSE(node->splitAtIndex_intoNode(0, partner));
        node->mergeWithNode(partner);
        EXPECT_THAT(failed.descriptions, ElementsAre("subclass responsibility", "subclass responsibility", "subclass responsibility"));
        EXPECT_THAT(failed.operations, ElementsAre("splitAtIndex", "splitAtIndex_intoNode", "mergeWithNode"));
        EXPECT_THAT(failed.files, ElementsAre("WQXMLNode", "WQXMLNode", "WQXMLNode"));
    }
    EXPECT_EQ(serialised(a), "<a k=\"v\">t<!--c--><![CDATA[x]]><?pi y?></a>");
    EXPECT_FALSE(partner->parentNode());
}

TEST(WQXMLNodeTest, ATextLeavesTwoOfThatFamilyToSubclasses) {
    const auto d = parse("<a>one</a>");
    const auto text = first(d), partner = Ref<WQXMLNode>(d->createTextNode(u"two"));
    const std::string raisedText = std::string(inconsistency) + "subclass responsibility";
    EXPECT_EQ(raised([&] { text->splitAtIndex_intoNode(1, partner); }), raisedText);
    EXPECT_EQ(raised([&] { text->mergeWithNode(partner); }), raisedText);
    const Assertions failed;
    EXPECT_FALSE(text->splitAtIndex_intoNode(1, partner));
    text->mergeWithNode(partner);
    EXPECT_THAT(failed.descriptions, ElementsAre("subclass responsibility", "subclass responsibility"));
    EXPECT_EQ(dump(d), "a[\"one\"]");
}

// ---- Copies

TEST(WQXMLNodeTest, PlainNodesHaveNoCopy) {
    const auto d = parse("<a k='v'><!--c--><![CDATA[x]]><?pi y?></a>");
    const auto a = d->documentElement();
    for (const Ref<WQXMLNode>& node : {a->childAtIndex(0), a->childAtIndex(1), a->childAtIndex(2), a->firstAttribute()}) {
        SCOPED_TRACE(node->nodeType());
        EXPECT_EQ(raised([&] { node->copyWithZone(); }), std::string(inconsistency) + "WQXMLNode copyWithZone called");
        EXPECT_NE(raised([&] { node->copy(); }), "");
        EXPECT_NE(raised([&] { node->copyNode(true); }), "");
        const Assertions failed;
        EXPECT_FALSE(node->copyWithZone());
        EXPECT_FALSE(node->copy());
        EXPECT_FALSE(node->copyNode(false));
        EXPECT_THAT(
            failed.descriptions,
            ElementsAre("WQXMLNode copyWithZone called", "WQXMLNode copyWithZone called", "WQXMLNode copyWithZone called"));
        EXPECT_THAT(failed.operations, ElementsAre("copyWithZone", "copyWithZone", "copyWithZone"));
        EXPECT_THAT(failed.files, ElementsAre("WQXMLNode", "WQXMLNode", "WQXMLNode"));
    }
}

TEST(WQXMLNodeTest, AShallowCopyHasNoChildren) {
    const auto d = parse("<a k='v'><b/>t</a>");
    const auto copy = d->documentElement()->copyNode(false);
    EXPECT_EQ(serialised(copy), "<a k=\"v\"/>");
    EXPECT_FALSE(copy->parentNode());
    EXPECT_EQ(copy->referenceCount(), 1);
}

TEST(WQXMLNodeTest, ADeepCopyHasCopiesOfAllDescendantsInOrder) {
    const auto d = parse("<a k='v'><b><c/>t</b>u<d/></a>");
    const auto a = d->documentElement();
    const auto copy = a->copyNode(true);
    EXPECT_EQ(serialised(copy), "<a k=\"v\"><b><c/>t</b>u<d/></a>");
    EXPECT_EQ(dump(d), "a[b[c,\"t\"],\"u\",d]");
    EXPECT_NE(copy->firstChild(), a->firstChild());
    EXPECT_EQ(copy->referenceCount(), 1);
    EXPECT_EQ(copy->firstChild()->referenceCount(), 2) << "the tree's and this one";
    expectSound(copy);
}

TEST(WQXMLNodeTest, TextsSideBySideStayApartInADeepCopy) {
    const auto d = parse("<a>one</a>");
    d->documentElement()->appendChild(d->createTextNode(u"two"));
    EXPECT_EQ(dump(d->documentElement()->copyNode(true)), "a[\"one\",\"two\"]");
}

TEST(WQXMLNodeTest, ADeepCopyIsOfTheSameClasses) {
    const auto a = WQXMLElement::newWithName(u"a");
    a->appendChild(WQXMLElement::newWithName<Paragraph>(u"p"))->appendChild(WQXMLText::newWithString(u"t"));
    const auto copy = a->copyNode(true);
    EXPECT_FALSE(wq::cast<Paragraph>(copy));
    EXPECT_TRUE(wq::cast<Paragraph>(copy->firstChild()));
    EXPECT_TRUE(wq::cast<WQXMLText>(copy->firstChild()->firstChild()));
}

TEST(WQXMLNodeTest, ADeepCopyOfATextIsACopyOfIt) {
    const auto d = parse("<a>text</a>");
    const auto copy = first(d)->copyNode(true);
    EXPECT_EQ(copy->nodeValue(), u"text");
    EXPECT_FALSE(copy->parentNode());
}

TEST(WQXMLNodeTest, ADeepCopyFailsAtAPlainNode) {
    const auto d = parse("<a><b><!--c--></b><d/></a>");
    const int64_t before = wq::numberOfLivingNodes();
    EXPECT_EQ(raised([&] { d->documentElement()->copyNode(true); }), std::string(inconsistency) + "WQXMLNode copyWithZone called");
    EXPECT_EQ(wq::numberOfLivingNodes(), before);
    const Assertions failed;
    EXPECT_EQ(dump(d->documentElement()->copyNode(true)), "a[b,d]");
    EXPECT_EQ(failed.descriptions.size(), 1);
}

// ---- Ancestors

TEST(WQXMLNodeTest, AncestorsAndDescendants) {
    const auto d = parse("<a><b k='v'><c/></b><e/></a>");
    const auto a = Ref<WQXMLNode>(d->documentElement());
    const auto b = find(d, u"b"), c = find(d, u"c"), e = find(d, u"e");
    const auto k = wq::cast<WQXMLElement>(b)->firstAttribute();
    struct {
        const char* what;
        Ref<WQXMLNode> above, below;
        bool expected;
    } const rows[] = {
        {"parent", b, c, true},
        {"grandparent", a, c, true},
        {"document", d, c, true},
        {"document of root", d, a, true},
        {"itself", b, b, false},
        {"child", c, b, false},
        {"sibling", b, e, false},
        {"owner element", b, k, true},
        {"owner's parent, of the attribute's text", a, k->firstChild(), true},
        {"null", b, nullptr, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(row.above->isAncestorOfNode(row.below), row.expected);
        EXPECT_EQ(row.below->isDescendantOfNode(row.above), row.expected);
    }
    EXPECT_FALSE(b->isDescendantOfNode(nullptr));
    EXPECT_FALSE(d->isDescendantOfNode(a));
}

TEST(WQXMLNodeTest, TheCommonAncestor) {
    const auto d = parse("<!--0--><a><b k='v'><c><f/></c></b><e/><g><h/></g></a>");
    const auto other = parse("<z/>");
    const auto a = Ref<WQXMLNode>(d->documentElement());
    const auto b = find(d, u"b"), c = find(d, u"c"), f = find(d, u"f"), e = find(d, u"e"), h = find(d, u"h");
    const auto k = wq::cast<WQXMLElement>(b)->firstAttribute();
    struct {
        const char* what;
        Ref<WQXMLNode> one, two, expected;
    } const rows[] = {
        {"siblings", b, e, a},
        {"parent and child", b, c, b},
        {"grandparent", a, f, a},
        {"unequal depths", f, e, a},
        {"cousins", c, h, a},
        {"unequal cousins", f, h, a},
        {"attribute and child", k, c, b},
        {"attribute's text and owner", k->firstChild(), b, b},
        {"top-level nodes", a->previousSibling(), a, d},
        {"top-level node and a deep one", a->previousSibling(), f, d},
        {"document and a node", d, f, d},
        {"other document", b, other->documentElement(), nullptr},
        {"null", b, nullptr, nullptr},
        {"detached", b, d->createElement(u"x"), nullptr},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(row.one->commonAncestorWithNode(row.two), row.expected);
        EXPECT_EQ(row.two->commonAncestorWithNode(row.one), row.expected);
    }
}

TEST(WQXMLNodeTest, TheCommonAncestorWithinADetachedTree) {
    const auto top = WQXMLElement::newWithName(u"top");
    const auto one = top->appendChild(WQXMLElement::newWithName(u"one")), two = top->appendChild(WQXMLText::newWithString(u"two"));
    EXPECT_EQ(one->commonAncestorWithNode(two), top);
    EXPECT_EQ(one->commonAncestorWithNode(top), top);
}

TEST(WQXMLNodeTest, TheCommonAncestorWithItselfAsserts) {
    const auto d = parse("<a><b/></a>");
    const auto b = find(d, u"b");
    EXPECT_EQ(raised([&] { b->commonAncestorWithNode(b); }), std::string(inconsistency) + "asking for common ancestor of self");
    const Assertions failed;
    EXPECT_EQ(b->commonAncestorWithNode(b), b);
    EXPECT_EQ(d->commonAncestorWithNode(d), d);
    EXPECT_THAT(failed.descriptions, ElementsAre("asking for common ancestor of self", "asking for common ancestor of self"));
    EXPECT_THAT(failed.operations, ElementsAre("commonAncestorWithNode", "commonAncestorWithNode"));
    EXPECT_THAT(failed.files, ElementsAre("WQXMLNode", "WQXMLNode"));
}

TEST(WQXMLNodeTest, TheAncestorAtADepth) {
    const auto d = parse("<a><b><c><e/></c></b></a>");
    const auto e = find(d, u"e");
    EXPECT_EQ(e->ancestorAtDepth(0)->nodeName(), u"a");
    EXPECT_EQ(e->ancestorAtDepth(1)->nodeName(), u"b");
    EXPECT_EQ(e->ancestorAtDepth(2)->nodeName(), u"c");
}

TEST(WQXMLNodeTest, ADepthThatIsNotAboveTheNodeAsserts) {
    const auto d = parse("<a><b><c/></b></a>");
    const auto b = find(d, u"b"), a = Ref<WQXMLNode>(d->documentElement());
    const std::string expected = std::string(inconsistency) + "ancestorAtDepth depth too shallow";
    EXPECT_EQ(raised([&] { b->ancestorAtDepth(1); }), expected);
    EXPECT_EQ(raised([&] { b->ancestorAtDepth(2); }), expected);
    EXPECT_EQ(raised([&] { a->ancestorAtDepth(0); }), expected);
    EXPECT_EQ(raised([&] { b->ancestorAtDepth(UINT64_MAX); }), expected);
    const Assertions failed;
    EXPECT_EQ(b->ancestorAtDepth(1), a);
    EXPECT_EQ(b->ancestorAtDepth(7), a);
    EXPECT_EQ(a->ancestorAtDepth(0), d);
    EXPECT_FALSE(d->ancestorAtDepth(0));
    EXPECT_EQ(failed.descriptions, std::vector<std::string>(4, "ancestorAtDepth depth too shallow"));
    EXPECT_EQ(failed.operations, std::vector<std::string>(4, "ancestorAtDepth"));
    EXPECT_EQ(failed.files, std::vector<std::string>(4, "WQXMLNode"));
}

TEST(WQXMLNodeTest, TheAncestorAtADepthOfADetachedTree) {
    const auto d = parse("<a/>");
    const auto top = d->createElement(u"top");
    const auto child = top->appendChild(d->createElement(u"child"));
    EXPECT_EQ(child->ancestorAtDepth(1), top) << "the top has depth 1, the child 2";
    EXPECT_FALSE(child->ancestorAtDepth(0));
    EXPECT_FALSE(top->ancestorAtDepth(0));
}

TEST(WQXMLNodeTest, TheChildThatHoldsANode) {
    const auto d = parse("<a><b k='v'><c><e/></c></b><f/></a>");
    const auto a = Ref<WQXMLNode>(d->documentElement());
    const auto b = find(d, u"b"), e = find(d, u"e"), f = find(d, u"f");
    const auto k = wq::cast<WQXMLElement>(b)->firstAttribute();
    EXPECT_EQ(a->childAncestorOfNode(e), b);
    EXPECT_EQ(a->childAncestorOfNode(b), b);
    EXPECT_EQ(b->childAncestorOfNode(e), find(d, u"c"));
    EXPECT_EQ(d->childAncestorOfNode(e), a);
    EXPECT_EQ(b->childAncestorOfNode(k->firstChild()), k);
    EXPECT_FALSE(f->childAncestorOfNode(e));
    EXPECT_FALSE(e->childAncestorOfNode(a));
    EXPECT_FALSE(a->childAncestorOfNode(d->createElement(u"x")));
    EXPECT_FALSE(a->childAncestorOfNode(nullptr));
}

TEST(WQXMLNodeTest, TheChildThatHoldsTheNodeItselfAsserts) {
    const auto d = parse("<a><b/></a>");
    const auto b = find(d, u"b");
    EXPECT_EQ(raised([&] { b->childAncestorOfNode(b); }), std::string(inconsistency) + "Requesting child ancestor of self");
    const Assertions failed;
    EXPECT_FALSE(b->childAncestorOfNode(b));
    EXPECT_THAT(failed.descriptions, ElementsAre("Requesting child ancestor of self"));
    EXPECT_THAT(failed.operations, ElementsAre("childAncestorOfNode"));
    EXPECT_THAT(failed.files, ElementsAre("WQXMLNode"));
}

TEST(WQXMLNodeTest, TheDepthInADocument) {
    const auto d = parse("<!--0--><a k='v'><b>t</b></a>");
    const auto a = d->documentElement();
    EXPECT_EQ(a->depth(), 0);
    EXPECT_EQ(a->previousSibling()->depth(), 0);
    EXPECT_EQ(a->firstAttribute()->depth(), 1);
    EXPECT_EQ(a->firstChild()->depth(), 1);
    EXPECT_EQ(a->firstChild()->firstChild()->depth(), 2);
    EXPECT_EQ(a->firstAttribute()->firstChild()->depth(), 2);
    EXPECT_EQ(parseHTML("<html><body><p>x</p></body></html>")->documentElement()->depth(), 0);
}

TEST(WQXMLNodeTest, TheDepthOfADocumentIsZeroWithoutAssertion) {
    const auto d = parse("<a/>");
    const Assertions failed;
    EXPECT_EQ(d->depth(), 0);
    EXPECT_THAT(failed.descriptions, IsEmpty());
}

TEST(WQXMLNodeTest, TheDepthInADetachedTreeOfADocumentIsOneMore) {
    const auto d = parse("<a><b><c/></b></a>");
    EXPECT_EQ(d->createElement(u"e")->depth(), 1);
    const auto b = d->documentElement()->removeChild(find(d, u"b"));
    EXPECT_EQ(b->depth(), 1);
    EXPECT_EQ(b->firstChild()->depth(), 2);
}

TEST(WQXMLNodeTest, TheDepthInADetachedTreeWithoutDocumentIsTheDistanceToItsTop) {
    const auto top = WQXMLElement::newWithName(u"top");
    const auto child = top->appendChild(WQXMLElement::newWithName(u"child"));
    const auto text = child->appendChild(WQXMLText::newWithString(u"t"));
    EXPECT_EQ(top->depth(), 0);
    EXPECT_EQ(child->depth(), 1);
    EXPECT_EQ(text->depth(), 2);
    EXPECT_EQ(WQXMLText::newWithString(u"t")->depth(), 0);
}

// ---- Paths

TEST(WQXMLNodeTest, PathsCountSiblingsOfTheSamePrefixAndName) {
    const auto d = parse(
        "<a xmlns:p='u:1' xmlns:q='u:1'>"
        "<b/><p:b/>t<b/><!--x--><q:b/><p:b><b/></p:b><?b y?><b k='1' p:l='2'/></a>");
    const auto a = d->documentElement();
    struct {
        Ref<WQXMLNode> node;
        const char16_t* path;
    } const rows[] = {
        {a, u"/a[1]"},
        {a->childAtIndex(0), u"/a[1]/b[1]"},
        {a->childAtIndex(1), u"/a[1]/p:b[1]"},
        {a->childAtIndex(2), u"/a[1]/(null)[1]"},
        {a->childAtIndex(3), u"/a[1]/b[2]"},
        {a->childAtIndex(4), u"/a[1]/(null)[1]"},
        {a->childAtIndex(5), u"/a[1]/q:b[1]"},
        {a->childAtIndex(6), u"/a[1]/p:b[2]"},
        {a->childAtIndex(6)->firstChild(), u"/a[1]/p:b[2]/b[1]"},
        {a->childAtIndex(7), u"/a[1]/(null)[1]"},
        {a->childAtIndex(8), u"/a[1]/b[3]"},
        {wq::cast<WQXMLElement>(a->childAtIndex(8))->firstAttribute(), u"/a[1]/b[3]/k[1]"},
        {wq::cast<WQXMLElement>(a->childAtIndex(8))->firstAttribute()->nextSibling(), u"/a[1]/b[3]/p:l[1]"},
        {wq::cast<WQXMLElement>(a->childAtIndex(8))->firstAttribute()->firstChild(), u"/a[1]/b[3]/k[1]/(null)[1]"},
        {d, u""},
    };
    for (const auto& row : rows) EXPECT_EQ(row.node->XPath(), row.path);
}

TEST(WQXMLNodeTest, ThePathOfTheSecondOfTwo) {
    const auto d = parse("<a><b/><b/></a>");
    EXPECT_EQ(d->documentElement()->lastChild()->XPath(), u"/a[1]/b[2]");
    const auto prefixed = parse("<p:a xmlns:p='u:1'><p:b/><p:b/></p:a>");
    EXPECT_EQ(prefixed->documentElement()->lastChild()->XPath(), u"/p:a[1]/p:b[2]");
}

TEST(WQXMLNodeTest, ThePathOfATextHasNoNameAndAlwaysTheFirstPosition) {
    const auto d = parse("<a>one<b/>two</a>");
    EXPECT_EQ(d->documentElement()->firstChild()->XPath(), u"/a[1]/(null)[1]");
    EXPECT_EQ(d->documentElement()->lastChild()->XPath(), u"/a[1]/(null)[1]");
}

TEST(WQXMLNodeTest, ThePathInADetachedTreeStartsAtItsTop) {
    const auto d = parse("<a><b><c/></b></a>");
    const auto b = d->documentElement()->removeChild(find(d, u"b"));
    EXPECT_EQ(b->firstChild()->XPath(), u"/b[1]/c[1]");
    EXPECT_EQ(WQXMLText::newWithString(u"t")->XPath(), u"/(null)[1]");
}

TEST(WQXMLNodeTest, ThePathInAnHTMLDocumentNamesTheDocument) {
    const auto d = parseHTML("<html><body><p>1</p><p>2</p></body></html>");
    EXPECT_EQ(find(d, u"body")->lastChild()->XPath(), u"/(null)[1]/html[1]/body[1]/p[2]");
}

TEST(WQXMLNodeTest, ThePathOfNullIsEmpty) { EXPECT_EQ(Ref<WQXMLNode>()->XPath(), u""); }

// ---- Print

TEST(WQXMLNodeTest, ThePrintedDescriptionHasNameAndAddress) {
    const auto d = parse("<p:a xmlns:p='u:1' k='v'><!--c--></p:a>");
    const auto a = d->documentElement();
    EXPECT_EQ(wq::toUTF8(a->printDescription()), "p:a - [" + address(a.get()) + "]");
    EXPECT_EQ(wq::toUTF8(first(d)->printDescription()), "(null) - [" + address(first(d).get()) + "]");
    EXPECT_EQ(wq::toUTF8(a->firstAttribute()->printDescription()), "k - [" + address(a->firstAttribute().get()) + "]");
}

TEST(WQXMLNodeTest, PrintingATreeLogsEachNodeIndentedByItsDepth) {
    const auto d = parse("<a k='v'><b><!--c--></b>text</a>");
    const auto a = d->documentElement();
    const auto b = find(d, u"b");
    const std::vector<std::string> expected = {
        "a - [" + address(a.get()) + "]",
        " b - [" + address(b.get()) + "]",
        "  (null) - [" + address(b->firstChild().get()) + "]",
        " #text - [" + address(a->lastChild().get()) + "] text",
    };
    {
        const LogLines log;
        a->printTree();
        EXPECT_EQ(log.lines, expected);
    }
    {
        const LogLines log;
        a->print();
        EXPECT_EQ(log.lines, expected);
    }
    {
        const LogLines log;
        b->printTree();
        EXPECT_THAT(log.lines, ElementsAre(expected[1], expected[2]));
    }
}

TEST(WQXMLNodeTest, PrintingADetachedTreeUsesItsDepths) {
    const auto d = parse("<a/>");
    const auto e = d->createElement(u"e");
    const LogLines log;
    e->printTree();
    EXPECT_THAT(log.lines, ElementsAre(" e - [" + address(e.get()) + "]"));
}

// ---- The end

TEST(WQXMLNodeTest, LettingGoOfALinkedNodeAssertsAndLeavesTheTreeWhole) {
    const auto d = parse("<a/>");
    auto e = d->createElement(u"e");
    xmlNodePtr node = e->xmlNode();
    xmlAddChild(d->documentElement()->xmlNode(), node);
    EXPECT_EQ(raised([&] { e.reset(); }), std::string(inconsistency) + "Freeing a node still held by the document");
    EXPECT_EQ(d->documentElement()->firstChild(), wrapped(node));
    EXPECT_EQ(dump(d), "a[e]");
    EXPECT_EQ(d->documentElement()->firstChild()->referenceCount(), 2) << "the tree's and this one";
    d->documentElement()->removeChildren();
    EXPECT_EQ(dump(d), "a");
}

TEST(WQXMLNodeTest, ALinkedNodeThatCouldNotBeLetGoDiesWithItsDocument) {
    auto d = parse("<a/>");
    auto e = d->createElement(u"e");
    xmlAddChild(d->documentElement()->xmlNode(), e->xmlNode());
    EXPECT_NE(raised([&] { e.reset(); }), "");
    const auto held = d->documentElement()->firstChild();
    d = nullptr;
    EXPECT_EQ(held->nodeType(), 0x7fff);
    EXPECT_EQ(held->referenceCount(), 1);
}

TEST(WQXMLNodeTest, LettingGoOfALinkedNodeFreesItWhereTheHandlerReturns) {
    const auto d = parse("<a><b/></a>");
    auto e = d->createElement(u"e");
    e->appendChild(d->createTextNode(u"t"));
    xmlAddChild(d->documentElement()->xmlNode(), e->xmlNode());
    const WQXMLNode* const expected = e.get();
    const int64_t before = wq::numberOfLivingNodes();
    int calls = 0;
    {
        const wq::AssertionScope scope([&](const wq::AssertionFailure& failure) {
            ++calls;
            EXPECT_EQ(failure.receiver, expected);
            EXPECT_EQ(failure.file, "WQXMLNode");
            EXPECT_EQ(failure.description, u"Freeing a node still held by the document");
            EXPECT_FALSE(failure.operation.empty());
            const auto* receiver = dynamic_cast<const WQXMLNode*>(failure.receiver);
            ASSERT_NE(receiver, nullptr);
            EXPECT_EQ(receiver->nodeName(), u"e") << "the wrapper is whole while the handler runs";
            EXPECT_EQ(receiver->parentNode(), d->documentElement());
            EXPECT_EQ(d->documentElement()->lastChild().get(), receiver) << "and can be held for a moment";
        });
        e.reset();
    }
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(dump(d), "a[b]");
    EXPECT_EQ(wq::numberOfLivingNodes(), before - 2);
    expectSound(d);
}

TEST(WQXMLNodeTest, AHandlerMayTakeTheLinkedNodeOutOfItsTree) {
    const auto d = parse("<a><b/></a>");
    auto e = d->createElement(u"e");
    xmlAddChild(d->documentElement()->xmlNode(), e->xmlNode());
    const int64_t before = wq::numberOfLivingNodes();
    int calls = 0;
    {
        const wq::AssertionScope scope([&](const wq::AssertionFailure&) {
            ++calls;
            d->documentElement()->removeChild(d->documentElement()->lastChild());
        });
        e.reset();
    }
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(dump(d), "a[b]");
    EXPECT_EQ(wq::numberOfLivingNodes(), before - 1);
}

TEST(WQXMLNodeTest, AHandlerMayLetTheDocumentGo) {
    auto d = parse("<a><b/></a>");
    auto e = d->createElement(u"e");
    xmlAddChild(d->documentElement()->xmlNode(), e->xmlNode());
    {
        const wq::AssertionScope scope([&](const wq::AssertionFailure&) { d = nullptr; });
        e.reset();
    }
    EXPECT_FALSE(d);
}

TEST(WQXMLNodeTest, AHandlerMayKeepTheLinkedNode) {
    const auto d = parse("<a/>");
    auto e = d->createElement(u"e");
    xmlAddChild(d->documentElement()->xmlNode(), e->xmlNode());
    Ref<WQXMLNode> kept;
    {
        const wq::AssertionScope scope([&](const wq::AssertionFailure&) { kept = d->documentElement()->lastChild(); });
        e.reset();
    }
    EXPECT_EQ(kept->nodeName(), u"e");
    EXPECT_EQ(kept->parentNode(), d->documentElement());
    EXPECT_EQ(kept->referenceCount(), 2);
}

TEST(WQXMLNodeTest, LettingGoOfALinkedAttributeOrTextAssertsAsWell) {
    const auto d = parse("<r><a k='v'/><b/></r>");
    const auto a = element(d, u"a");
    auto k = a->removeChild(a->firstAttribute());
    auto text = d->createTextNode(u"t");
    xmlAddChild(element(d, u"b")->xmlNode(), k->xmlNode());
    xmlAddChild(element(d, u"b")->xmlNode(), text->xmlNode());
    const Assertions failed;
    k.reset();
    text.reset();
    EXPECT_EQ(failed.descriptions, std::vector<std::string>(2, "Freeing a node still held by the document"));
    EXPECT_EQ(serialised(d->documentElement()), "<r><a/><b/></r>");
    expectSound(d);
}

TEST(WQXMLNodeTest, LettingGoOfALinkedNodeInADestructorEndsTheProcess) {
    EXPECT_DEATH(
        {
            const auto d = parse("<a/>");
            const auto e = d->createElement(u"e");
            xmlAddChild(d->documentElement()->xmlNode(), e->xmlNode());
        },
        "Freeing a node still held by the document");
}

TEST(WQXMLNodeTest, ADyingNodeFreesItsSubtreeOnce) {
    const auto d = parse("<a/>");
    const int64_t before = wq::numberOfLivingNodes();
    auto e = d->createElement(u"e");
    e->setAttribute_value(u"k", u"v");
    e->appendChild(d->createElement(u"f"))->appendChild(d->createTextNode(u"t"));
    EXPECT_EQ(wq::numberOfLivingNodes(), before + 5);
    e.reset();
    EXPECT_EQ(wq::numberOfLivingNodes(), before);
}

TEST(WQXMLNodeTest, ADyingNodeLetsGoOfItsListeners) {
    const auto d = parse("<a/>");
    auto e = d->createElement(u"e");
    Log log;
    e->addListener_forEvent_useCapture(&log, 4, true);
    const auto record = e->listeners()->front();
    EXPECT_EQ(record->referenceCount(), 2);
    e.reset();
    EXPECT_EQ(record->referenceCount(), 1);
}

TEST(WQXMLNodeTest, AnOwnedNamespaceGoesWithItsNode) {
    WQXMLElement::newWithQualifiedName_namespaceURI(u"p:e", u"u:1");
    const auto d = parse("<a/>");
    d->createElement_namespaceURI(u"p:e", u"u:1");
}

TEST(WQXMLNodeTest, AnObjectThatHoldsAnotherTreeLetsGoOfItAsItDies) {
    struct Holder : WQXMLElement {
        Ref<WQXMLNode> held;
    };
    auto d = parse("<a><b/></a>");
    auto holder = WQXMLElement::newWithName<Holder>(u"h");
    holder->held = d->documentElement()->removeChild(find(d, u"b"));
    d->documentElement()->appendChild(holder);
    const int64_t before = wq::numberOfLivingNodes();
    d->documentElement()->removeChild(holder);
    holder = nullptr;
    EXPECT_EQ(wq::numberOfLivingNodes(), before - 2);
    auto second = WQXMLElement::newWithName<Holder>(u"h");
    second->held = d->createElement(u"e");
    d->documentElement()->appendChild(second);
    second = nullptr;
    d = nullptr;
}

// ---- Deep trees

namespace {
constexpr int deep = 200000;

// A document whose root is the first of a chain of that many elements, linked by libxml2.
Ref<WQXMLDocument> deepDocument() {
    const auto d = WQXMLDocument::newDocument();
    auto parent = reinterpret_cast<xmlNodePtr>(d->xmlDoc());
    for (int i = 0; i < deep; ++i) parent = xmlAddChild(parent, xmlNewDocNode(d->xmlDoc(), nullptr, x("e"), nullptr));
    return d;
}
}  // namespace

TEST(WQXMLNodeTest, ADeepDocumentDies) {
    auto d = deepDocument();
    const auto root = d->documentElement();
    d = nullptr;
    EXPECT_EQ(root->nodeType(), 0x7fff);
}

TEST(WQXMLNodeTest, ADeepTreeOutlivesItsDocument) {
    auto d = deepDocument();
    auto root = d->removeChild(d->documentElement());
    d = nullptr;
    EXPECT_FALSE(root->ownerDocument());
    EXPECT_EQ(root->firstChild()->nodeName(), u"e");
    int count = 0;
    for (auto node = root; node; node = node->firstChild()) {
        ++count;
        if (node->xmlNode()->doc) FAIL() << "still names the document at depth " << count;
    }
    EXPECT_EQ(count, deep);
    root = nullptr;
}

TEST(WQXMLNodeTest, ADeepTreeWithNamespacesOutlivesItsDocument) {
    auto d = parse("<p:r xmlns:p='u:1'/>");
    xmlNodePtr parent = d->documentElement()->xmlNode();
    xmlNsPtr ns = parent->nsDef;
    for (int i = 0; i < deep; ++i) parent = xmlAddChild(parent, xmlNewDocNode(d->xmlDoc(), ns, x("e"), nullptr));
    const auto last = wrapped(parent);
    auto top = d->documentElement()->removeChild(d->documentElement()->firstChild());
    d = nullptr;
    EXPECT_EQ(top->nodeName(), u"p:e");
    EXPECT_EQ(last->nodeName(), u"p:e");
    top = nullptr;
    EXPECT_EQ(last->nodeType(), 0x7fff);
}

TEST(WQXMLNodeTest, ADeepTreeIsFreedWhereNobodyKeepsIt) {
    const auto d = deepDocument();
    d->removeChild(d->documentElement());
    EXPECT_FALSE(d->documentElement());
}

TEST(WQXMLNodeTest, ADeepTreeIsWalkedForwardAndBack) {
    const auto d = deepDocument();
    int forward = 0, back = 0;
    Ref<WQXMLNode> last;
    for (Ref<WQXMLNode> node = d->documentElement(); node; node = node->next()) {
        last = node;
        ++forward;
    }
    EXPECT_EQ(forward, deep);
    for (Ref<WQXMLNode> node = last; node; node = node->previous()) {
        last = node;
        ++back;
    }
    EXPECT_EQ(back, deep + 1) << "the document is the last";
    EXPECT_EQ(last, d);
    EXPECT_TRUE(d->isAncestorOfNode(d->documentElement()));
}

TEST(WQXMLNodeTest, TheDepthAndTheAncestorsOfADeepNode) {
    const auto d = deepDocument();
    xmlNodePtr node = d->xmlDoc()->children;
    while (node->children) node = node->children;
    EXPECT_EQ(wrapped(node)->depth(), deep - 1);
    EXPECT_TRUE(d->documentElement()->isAncestorOfNode(wrapped(node)));
    EXPECT_EQ(d->childAncestorOfNode(wrapped(node)), d->documentElement());
}

TEST(WQXMLNodeTest, ADeepTreeMovesToAnotherDocument) {
    auto d = deepDocument();
    const auto other = parse("<r/>");
    other->documentElement()->appendChild(d->documentElement());
    d = nullptr;
    EXPECT_EQ(other->documentElement()->firstChild()->ownerDocument(), other);
}

TEST(WQXMLNodeTest, APreviousAcrossADeepSiblingFindsItsLastDescendant) {
    const auto d = parse("<r/>");
    xmlNodePtr parent = d->documentElement()->xmlNode();
    for (int i = 0; i < deep; ++i) parent = xmlAddChild(parent, xmlNewDocNode(d->xmlDoc(), nullptr, x("e"), nullptr));
    const auto last = d->documentElement()->appendChild(d->createElement(u"last"));
    EXPECT_EQ(last->previous(), wrapped(parent));
    EXPECT_EQ(wrapped(parent)->next(), last);
}
