// Who keeps whom alive, under random edits.
#include <rapidcheck.h>

#include <optional>

#include "dom/WQXMLAttr.h"
#include "tests/dom/Support.h"

namespace {

using namespace test;

// A small world of two documents, some detached nodes, and wrappers that a program holds.
class World {
public:
    World() {
        documents[0] = parse(
            "<!DOCTYPE a [<!ATTLIST c id ID #IMPLIED><!ENTITY e 'x'>]>"
            "<a xmlns:p='u:1' p:x='1'><p:b y='2' p:y='3'><c id='k&e;'/>t</p:b><d xml:lang='en' xml:id='k'/></a>");
        documents[1] = parse("<a xmlns='u:2'><b/>&#x1D54A;<q:c xmlns:q='u:3' q:z='1'><!-- c --><e/></q:c></a>");
        for (auto& document : documents)
            for (Ref<WQXMLNode> node = document->documentElement(); node; node = node->next()) held.push_back(node);
        documents[0]->addListener_forEvent_useCapture(&listener, 1 | 2 | 4 | 8, true);
    }

    void step() {
        const auto a = any(), b = any();
        switch (below(19)) {
            case 0:
            case 1:
                if (fits(b, a)) a->appendChild(b);
                break;
            case 2:
                if (fits(b, a->parentNode())) a->parentNode()->insertChild_before(b, a);
                break;
            case 3: a->parentNode()->removeChild(a); break;
            case 4:
                held.push_back(documents[below(2)]->createElement_namespaceURI(below(2) ? u"n:e" : u"p:e", below(2) ? u"u:9" : u"u:1"));
                break;
            case 5: held.push_back(documents[below(2)]->createTextNode(u"text")); break;
            case 6: held.erase(held.begin() + static_cast<long>(below(held.size()))); break;
            case 7: element(a)->setAttribute_namespaceURI_value(u"p:x", u"u:1", u"v"); break;
            case 8: element(a)->setAttribute_value(u"x", u"w"); break;
            case 9: held.push_back(element(a)->firstAttribute()); break;
            case 10: held.push_back(element(a)->copy()); break;
            case 11: wq::cast<WQXMLText>(a)->replaceCharactersInRange_withString({0, 1}, u"\xD835\xDD4A"); break;
            case 12:
                if (below(30) == 0) documents[1] = parse("<k xmlns:p='u:1'><p:l/></k>");
                if (below(10) == 0) documents[1]->setDocumentElement(documents[1]->createElement(u"root"));
                break;
            case 13: element(a)->setInnerXML(u"<!--c--> t <p:x xmlns:p='u:1' p:y='1' xml:id='i'> &amp; <c/></p:x>"); break;
            case 14: wq::cast<WQXMLAttr>(a)->setValue(below(2) ? u"k" : u"<&>"); break;
            case 15: (void)element(a)->innerXML(), (void)element(a)->outerXML(); break;
            case 16: wq::cast<WQXMLText>(a)->normalizeContent(); break;
            case 17: hold(*documents[below(2)]->nodesForXPath_currentNode(below(2) ? u"//@* | //namespace::*" : u"./node()", a)); break;
            case 18:
                RC_ASSERT(documents[below(2)]->XMLData()->length() > 0u);
                for (const char16_t* identifier : {u"k", u"kx", u"k&e;", u"i", u"<&>"})
                    held.push_back(documents[below(2)]->getElementById(identifier));
                break;
            default: break;
        }
        std::erase(held, nullptr);
    }

    // Links agree in both directions, every node is bound to its wrapper, and names can be read.
    void check() const {
        for (const auto& document : documents) checkBelow(document->documentElement());
        for (const auto& node : held) {
            (void)node->nodeName();
            (void)node->namespaceURI();
            if (node->xmlNode() && !node->parentNode()) checkBelow(node);
        }
    }

    Ref<WQXMLDocument> documents[2];
    WQXMLNode::Sequence held;

private:
    struct Listener : WQXMLEventListener {
        void handleEvent(const Ref<WQXMLEvent>& event) override { (void)event->target()->XPath(); }
    } listener;

    void hold(const WQXMLNode::Sequence& nodes) {
        for (size_t i = 0; i < std::min<size_t>(nodes.size(), 3); ++i) held.push_back(nodes[i]);
    }
    static size_t below(size_t limit) { return *rc::gen::inRange<size_t>(0, limit); }
    Ref<WQXMLNode> any() const { return held.empty() ? documents[0]->documentElement() : held[below(held.size())]; }
    static Ref<WQXMLElement> element(const Ref<WQXMLNode>& node) { return wq::cast<WQXMLElement>(node); }
    // A node below itself is the one insertion that is neither made nor refused.
    static bool fits(const Ref<WQXMLNode>& child, const Ref<WQXMLNode>& parent) {
        return parent && child != parent && !child->isAncestorOfNode(parent);
    }

    static void checkBelow(const Ref<WQXMLNode>& top) {
        for (Ref<WQXMLNode> node = top; node; node = node->next()) {
            RC_ASSERT((node->xmlNode()->_private == static_cast<void*>(node.get())));
            (void)node->nodeName();
            if (node->firstChild()) RC_ASSERT((node->firstChild()->parentNode() == node));
            if (node->lastChild()) RC_ASSERT(!node->lastChild()->nextSibling());
            if (node->nextSibling()) RC_ASSERT((node->nextSibling()->previousSibling() == node));
            RC_ASSERT((node->ownerDocument() == top->ownerDocument()));
            for (Ref<WQXMLNode> attribute = element(node)->firstAttribute(); attribute; attribute = attribute->nextSibling()) {
                RC_ASSERT((attribute->parentNode() == node));
                (void)attribute->namespaceURI();
            }
        }
    }
};

void editAtRandom() {
    World world;
    for (int step = 0; step < 60; ++step) {
        world.step();
        world.check();
    }
}

TEST(OwnershipPropertyTest, RandomEditsOverTwoDocumentsLeaveEverythingSound) {
    EXPECT_TRUE(rc::check([] { editAtRandom(); }));
}

TEST(OwnershipPropertyTest, WrappersDieInAnyOrderAgainstTheirDocuments) {
    EXPECT_TRUE(rc::check([] {
        std::optional<World> world(std::in_place);
        for (int step = 0; step < 30; ++step) world->step();
        WQXMLNode::Sequence survivors = world->held;
        world.reset();
        for (auto& node : survivors) {
            (void)node->nodeName();
            (void)node->XPath();
            RC_ASSERT(!node->ownerDocument());
        }
        while (!survivors.empty()) survivors.erase(survivors.begin() + static_cast<long>(*rc::gen::inRange<size_t>(0, survivors.size())));
    }));
}

}  // namespace
