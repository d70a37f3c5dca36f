#include "dom/WQXMLMutationEvent.h"

#include <libxml/parser.h>

#include <functional>
#include <memory>

#include "tests/dom/Support.h"

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// Runs on every event below a node, the node itself included.
class Watch final : public WQXMLEventListener {
public:
    Watch(const Ref<WQXMLNode>& top, std::function<void(const Ref<WQXMLMutationEvent>&)> action) : node(top), act(std::move(action)) {
        node->addListener_forEvent_useCapture(this, kEverything, true);
        node->addListener_forEvent_useCapture(this, kEverything, false);
    }
    ~Watch() {
        node->removeListener_forEvent_useCapture(this, kEverything, true);
        node->removeListener_forEvent_useCapture(this, kEverything, false);
    }
    void handleEvent(const Ref<WQXMLEvent>& event) override {
        if (event->phase() == 3) return;  // heard while capturing
        ++calls;
        const auto mutation = wq::cast<WQXMLMutationEvent>(event);
        ASSERT_TRUE(mutation);
        EXPECT_TRUE(event->canBubble());
        EXPECT_FALSE(event->canCancel());
        act(mutation);
    }
    int calls = 0;

private:
    Ref<WQXMLNode> node;
    std::function<void(const Ref<WQXMLMutationEvent>&)> act;
};

// A document with names for its nodes, and the list of what was heard: "event target<-related".
struct Scene {
    explicit Scene(std::string_view xml)
        : document(parse(xml)), watch(document, [this](const Ref<WQXMLMutationEvent>& event) {
              heard.push_back(
                  std::to_string(event->eventID()) + " " + dump(event->target()) + "<-" +
                  wq::toUTF8(wq::printed(event->relatedNode()->nodeName())));
          }) {}
    Ref<WQXMLNode> operator[](std::u16string_view name) const { return find(document, name); }
    Ref<WQXMLElement> element(std::u16string_view name) const { return wq::cast<WQXMLElement>(find(document, name)); }
    Ref<WQXMLText> text() const { return wq::cast<WQXMLText>(document->documentElement()->firstChild()); }

    Ref<WQXMLDocument> document;
    std::vector<std::string> heard;
    Watch watch;
};

std::string print(const NSString& string) { return wq::toUTF8(wq::printed(string)); }
std::string print(NSRange range) { return std::to_string(range.location) + "," + std::to_string(range.length); }

}  // namespace

// ---- Factories and fields

TEST(WQXMLMutationEventTest, ANewMutationEventIsEmpty) {
    auto event = WQXMLMutationEvent::newEvent();
    ASSERT_TRUE(event);
    EXPECT_FALSE(event->target());
    EXPECT_EQ(event->eventID(), 0);
    EXPECT_EQ(event->phase(), 0);
    EXPECT_FALSE(event->stopPropagation());
    EXPECT_FALSE(event->preventDefault());
    EXPECT_FALSE(event->canBubble());
    EXPECT_FALSE(event->canCancel());
    EXPECT_FALSE(event->relatedNode());
    EXPECT_FALSE(event->prevValue());
    EXPECT_FALSE(event->newValue());
    EXPECT_FALSE(event->attrName());
    EXPECT_EQ(event->attrChange(), 0);
    EXPECT_EQ(event->range(), (NSRange{0, 0}));
    EXPECT_FALSE(event->string());
}

TEST(WQXMLMutationEventTest, FactoriesSetTheIdentifierAndBubbleAndCannotBeCancelled) {
    auto target = WQXMLElement::newWithName(u"target"), related = WQXMLElement::newWithName(u"related");
    struct Row {
        const char* name;
        Ref<WQXMLMutationEvent> event;
        int32_t eventID;
        Ref<WQXMLNode> relatedNode;
    };
    for (const Row& row :
         {Row{"attribute modified",
              WQXMLMutationEvent::attrModifiedEventWithTarget_attrName_attrChange_prevValue_newValue_relatedNode(
                  target, u"name", 2, u"before", u"after", related),
              1, related},
          Row{"node inserted", WQXMLMutationEvent::nodeInsertedEventWithTarget_relatedNode(target, related), 4, related},
          Row{"node removed", WQXMLMutationEvent::nodeRemovedEventWithTarget_relatedNode(target, related), 8, related},
          Row{"subtree modified", WQXMLMutationEvent::subtreeModifiedEventWithTarget(target), 16, nullptr}}) {
        SCOPED_TRACE(row.name);
        ASSERT_TRUE(row.event);
        EXPECT_EQ(row.event->target(), target);
        EXPECT_EQ(row.event->eventID(), row.eventID);
        EXPECT_EQ(row.event->relatedNode(), row.relatedNode);
        EXPECT_EQ(row.event->phase(), 0);
        EXPECT_TRUE(row.event->canBubble());
        EXPECT_FALSE(row.event->canCancel());
        EXPECT_FALSE(row.event->stopPropagation());
        EXPECT_FALSE(row.event->preventDefault());
        EXPECT_EQ(row.event->range(), (NSRange{0, 0}));
        EXPECT_FALSE(row.event->string());
        if (row.eventID == 1) continue;
        EXPECT_FALSE(row.event->attrName());
        EXPECT_EQ(row.event->attrChange(), 0);
        EXPECT_FALSE(row.event->prevValue());
        EXPECT_FALSE(row.event->newValue());
    }
}

TEST(WQXMLMutationEventTest, TheAttributeFactoryStoresWhatItIsGiven) {
    auto event = WQXMLMutationEvent::attrModifiedEventWithTarget_attrName_attrChange_prevValue_newValue_relatedNode(
        nullptr, u"p:name", 7, nullptr, u"", nullptr);
    EXPECT_FALSE(event->target());
    EXPECT_EQ(event->attrName(), u"p:name");
    EXPECT_EQ(event->attrChange(), 7);
    EXPECT_FALSE(event->prevValue());
    EXPECT_EQ(event->newValue(), u"");
    EXPECT_FALSE(event->relatedNode());
}

TEST(WQXMLMutationEventTest, EveryFieldHasASetter) {
    auto event = WQXMLMutationEvent::newEvent();
    auto node = WQXMLElement::newWithName(u"a"), other = WQXMLElement::newWithName(u"b");
    event->setRelatedNode(node);
    event->setPrevValue(u"before");
    event->setNewValue(u"after");
    event->setAttrName(u"name");
    event->setAttrChange(-1);
    event->setRange({3, 4});
    event->setString(u"text");
    EXPECT_EQ(event->relatedNode(), node);
    EXPECT_EQ(event->prevValue(), u"before");
    EXPECT_EQ(event->newValue(), u"after");
    EXPECT_EQ(event->attrName(), u"name");
    EXPECT_EQ(event->attrChange(), -1);
    EXPECT_EQ(event->range(), (NSRange{3, 4}));
    EXPECT_EQ(event->string(), u"text");
    event->setRelatedNode(other);
    event->setPrevValue(nullptr);
    event->setNewValue(nullptr);
    event->setAttrName(nullptr);
    event->setString(nullptr);
    EXPECT_EQ(event->relatedNode(), other);
    EXPECT_FALSE(event->prevValue());
    EXPECT_FALSE(event->newValue());
    EXPECT_FALSE(event->attrName());
    EXPECT_FALSE(event->string());
}

TEST(WQXMLMutationEventTest, AnEventKeepsItsRelatedNodeAliveAndLetsGoOfIt) {
    auto node = WQXMLElement::newWithName(u"a");
    auto event = WQXMLMutationEvent::newEvent();
    event->setRelatedNode(node);
    EXPECT_EQ(node->referenceCount(), 2);
    event->setRelatedNode(node);
    EXPECT_EQ(node->referenceCount(), 2);
    event->setRelatedNode(event->relatedNode());
    EXPECT_EQ(node->referenceCount(), 2);
    event->setRelatedNode(nullptr);
    EXPECT_EQ(node->referenceCount(), 1);
    event->setRelatedNode(node);
    event = nullptr;
    EXPECT_EQ(node->referenceCount(), 1);
}

TEST(WQXMLMutationEventTest, EventsOfEditsGoWhenTheEditIsOver) {
    Scene scene("<a><b/></a>");
    Ref<WQXMLNode> b = scene[u"b"];
    scene[u"a"]->appendChild(b);
    EXPECT_EQ(b->referenceCount(), 2);
    EXPECT_EQ(scene[u"a"]->referenceCount(), 2);  // the tree's and the temporary one
}

// ---- Insertion

TEST(WQXMLMutationEventTest, AnInsertionIsHeardWithTheChildLinkedAndItsNamespaceReconciled) {
    auto document = parse("<a><b/></a>");
    Ref<WQXMLNode> root = document->documentElement(), b = root->firstChild();
    Ref<WQXMLNode> child = document->createElement_namespaceURI(u"p:x", u"urn:p");
    EXPECT_NE(child->ownedNs(), nullptr);
    Watch watch(document, [&](const Ref<WQXMLMutationEvent>& event) {
        EXPECT_EQ(event->eventID(), 4);
        EXPECT_EQ(event->phase(), 1);
        EXPECT_EQ(event->target(), child);
        EXPECT_EQ(event->relatedNode(), root);
        EXPECT_FALSE(event->prevValue());
        EXPECT_FALSE(event->newValue());
        EXPECT_EQ(child->parentNode(), root);
        EXPECT_EQ(child->nextSibling(), b);
        EXPECT_EQ(b->previousSibling(), child);
        EXPECT_EQ(root->indexOfChild(child), 0u);
        EXPECT_EQ(child->ownedNs(), nullptr);
        EXPECT_EQ(serialised(root), "<a><p:x xmlns:p=\"urn:p\"/><b/></a>");
    });
    EXPECT_EQ(root->insertChild_before(child, b), child);
    EXPECT_EQ(watch.calls, 1);
}

TEST(WQXMLMutationEventTest, InsertionsOfAllKindsFireOneEventOnTheChildThatNamesTheReceiver) {
    struct Row {
        const char* operation;
        std::function<void(const Ref<WQXMLNode>& receiver, const Ref<WQXMLNode>& child)> insert;
        const char* after;
    };
    const std::vector<Row> rows = {
        {"insertChild_before",
         [](const Ref<WQXMLNode>& receiver, const Ref<WQXMLNode>& child) { receiver->insertChild_before(child, receiver->lastChild()); },
         "a[b,x,c]"},
        {"insertChild_before null",
         [](const Ref<WQXMLNode>& receiver, const Ref<WQXMLNode>& child) { receiver->insertChild_before(child, nullptr); }, "a[b,c,x]"},
        {"insertChild_atIndex",
         [](const Ref<WQXMLNode>& receiver, const Ref<WQXMLNode>& child) { receiver->insertChild_atIndex(child, 0); }, "a[x,b,c]"},
        {"insertChild_atIndex past the end",
         [](const Ref<WQXMLNode>& receiver, const Ref<WQXMLNode>& child) { receiver->insertChild_atIndex(child, 9); }, "a[b,c,x]"},
        {"appendChild", [](const Ref<WQXMLNode>& receiver, const Ref<WQXMLNode>& child) { receiver->appendChild(child); }, "a[b,c,x]"},
        {"appendChildrenFromNode",
         [](const Ref<WQXMLNode>& receiver, const Ref<WQXMLNode>& child) {
             auto holder = WQXMLElement::newWithName(u"holder");
             holder->appendChild(child);
             receiver->appendChildrenFromNode(holder);
         },
         "a[b,c,x]"},
        {"mergeWithNode",
         [](const Ref<WQXMLNode>& receiver, const Ref<WQXMLNode>& child) {
             auto holder = WQXMLElement::newWithName(u"holder");
             holder->appendChild(child);
             receiver->mergeWithNode(holder);
         },
         "a[b,c,x]"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.operation);
        Scene scene("<a><b/><c/></a>");
        row.insert(scene.document->documentElement(), WQXMLElement::newWithName(u"x"));
        EXPECT_EQ(dump(scene.document), row.after);
        EXPECT_THAT(scene.heard, ElementsAre("4 x<-a"));
    }
}

TEST(WQXMLMutationEventTest, AnInsertionIntoTheDocumentNamesTheDocument) {
    auto document = WQXMLDocument::newDocument();
    auto child = document->createElement(u"a");
    Watch watch(document, [&](const Ref<WQXMLMutationEvent>& event) {
        EXPECT_EQ(event->eventID(), 4);
        EXPECT_EQ(event->target(), child);
        EXPECT_EQ(event->relatedNode(), document);
        EXPECT_EQ(document->documentElement(), child);
    });
    document->appendChild(child);
    EXPECT_EQ(watch.calls, 1);
}

TEST(WQXMLMutationEventTest, AnInsertionBesideAReferenceElsewhereStillNamesTheReceiver) {
    Scene scene("<a><b/><c><d/></c></a>");
    scene[u"b"]->insertChild_before(WQXMLElement::newWithName(u"x"), scene[u"d"]);
    EXPECT_EQ(dump(scene.document), "a[b,c[x,d]]");
    EXPECT_THAT(scene.heard, ElementsAre("4 x<-b"));
}

TEST(WQXMLMutationEventTest, InsertingANodeThatHasAParentFiresTheRemovalFirst) {
    Scene scene("<a><b><x/></b><c/></a>");
    scene[u"c"]->appendChild(scene[u"x"]);
    EXPECT_EQ(dump(scene.document), "a[b,c[x]]");
    EXPECT_THAT(scene.heard, ElementsAre("8 x<-b", "4 x<-c"));
}

TEST(WQXMLMutationEventTest, AMoveIsAWholeRemovalAndThenAnInsertion) {
    auto document = parse("<a><b><w/><x/></b><c/></a>");
    Ref<WQXMLNode> b = find(document, u"b"), c = find(document, u"c"), x = find(document, u"x");
    std::vector<std::string> states;
    Watch watch(document, [&](const Ref<WQXMLMutationEvent>& event) {
        states.push_back(std::to_string(event->eventID()) + " " + dump(document));
        EXPECT_EQ(event->target(), x);
        EXPECT_EQ(x->parentNode(), event->relatedNode());
    });
    c->appendChild(x);
    EXPECT_THAT(states, ElementsAre("8 a[b[w,x],c]", "4 a[b[w],c[x]]"));
}

TEST(WQXMLMutationEventTest, AMoveWithinOneParentFiresBothEvents) {
    Scene scene("<a><b/><c/></a>");
    scene[u"a"]->appendChild(scene[u"b"]);
    scene[u"a"]->appendChild(scene[u"b"]);  // is the last one already
    EXPECT_EQ(dump(scene.document), "a[c,b]");
    EXPECT_THAT(scene.heard, ElementsAre("8 b<-a", "4 b<-a", "8 b<-a", "4 b<-a"));
}

TEST(WQXMLMutationEventTest, AMoveIsHeardInBothDocuments) {
    Scene from("<a><x/></a>"), to("<b/>");
    to[u"b"]->appendChild(from[u"x"]);
    EXPECT_THAT(from.heard, ElementsAre("8 x<-a"));
    EXPECT_THAT(to.heard, ElementsAre("4 x<-b"));
}

TEST(WQXMLMutationEventTest, MovingAllChildrenFiresForEachInOrder) {
    Scene scene("<a><b><x/>t<y/></b><c/></a>");
    scene[u"c"]->appendChildrenFromNode(scene[u"b"]);
    EXPECT_EQ(dump(scene.document), "a[b,c[x,\"t\",y]]");
    EXPECT_THAT(scene.heard, ElementsAre("8 x<-b", "4 x<-c", "8 \"t\"<-b", "4 \"t\"<-c", "8 y<-b", "4 y<-c"));
}

TEST(WQXMLMutationEventTest, AnInsertedSubtreeFiresForItsTopAlone) {
    Scene scene("<a/>");
    auto top = WQXMLElement::newWithName(u"x");
    top->appendChild(WQXMLElement::newWithName(u"y"));
    scene[u"a"]->appendChild(top);
    EXPECT_THAT(scene.heard, ElementsAre("4 x[y]<-a"));
}

// ---- Removal

TEST(WQXMLMutationEventTest, ARemovalIsHeardWhileTheChildIsLinkedAtItsOldIndex) {
    auto document = parse("<a><b/><c/><d/></a>");
    Ref<WQXMLNode> root = document->documentElement(), c = find(document, u"c");
    Watch watch(document, [&](const Ref<WQXMLMutationEvent>& event) {
        EXPECT_EQ(event->eventID(), 8);
        EXPECT_EQ(event->target(), c);
        EXPECT_EQ(event->relatedNode(), root);
        EXPECT_FALSE(event->prevValue());
        EXPECT_FALSE(event->newValue());
        EXPECT_EQ(c->parentNode(), root);
        EXPECT_EQ(event->relatedNode()->indexOfChild(c), 1u);
        EXPECT_EQ(dump(document), "a[b,c,d]");
    });
    EXPECT_EQ(root->removeChild(c), c);
    EXPECT_EQ(watch.calls, 1);
    EXPECT_EQ(dump(document), "a[b,d]");
    EXPECT_FALSE(c->parentNode());
}

TEST(WQXMLMutationEventTest, RemovingAllChildrenFiresFromTheFirstOn) {
    Scene scene("<a><b/>t<c><d/></c></a>");
    scene[u"a"]->removeChildren();
    EXPECT_EQ(dump(scene.document), "a");
    EXPECT_THAT(scene.heard, ElementsAre("8 b<-a", "8 \"t\"<-a", "8 c[d]<-a"));
}

TEST(WQXMLMutationEventTest, ARemovalNamesTheReceiverAlsoIfItIsNotTheParent) {
    Scene scene("<a><b/><c><x/></c></a>");
    scene[u"b"]->removeChild(scene[u"x"]);
    EXPECT_EQ(dump(scene.document), "a[b,c]");
    EXPECT_THAT(scene.heard, ElementsAre("8 x<-b"));
}

TEST(WQXMLMutationEventTest, RemovingTheRootFromTheDocumentNamesTheDocument) {
    auto document = parse("<a/>");
    Ref<WQXMLNode> root = document->documentElement();
    Watch watch(document, [&](const Ref<WQXMLMutationEvent>& event) {
        EXPECT_EQ(event->eventID(), 8);
        EXPECT_EQ(event->target(), root);
        EXPECT_EQ(event->relatedNode(), document);
    });
    document->removeChild(root);
    EXPECT_EQ(watch.calls, 1);
    EXPECT_FALSE(document->documentElement());
}

TEST(WQXMLMutationEventTest, AListenerOnTheRemovedNodeHearsItsRemoval) {
    auto document = parse("<a><b/></a>");
    Ref<WQXMLNode> b = find(document, u"b");
    Log log;
    b->addListener_forEvent_useCapture(&log, 12, false);
    document->documentElement()->removeChild(b);
    document->documentElement()->appendChild(b);
    EXPECT_THAT(log.heard, ElementsAre("8/2 b<-a", "4/2 b<-a"));
}

// ---- Character data

TEST(WQXMLMutationEventTest, EditsOfTextFireOneEventWithTheRangeAndTheReplacement) {
    struct Row {
        const char* operation;
        std::function<void(const Ref<WQXMLText>&)> edit;
        const char* after;
        const char* range;
        const char* string;
    };
    const std::vector<Row> rows = {
        {"setString", [](const Ref<WQXMLText>& text) { text->setString(u"new"); }, "new", "0,5", "new"},
        {"setString empty", [](const Ref<WQXMLText>& text) { text->setString(u""); }, "", "0,5", ""},
        {"setString same", [](const Ref<WQXMLText>& text) { text->setString(u"hello"); }, "hello", "0,5", "hello"},
        {"appendString", [](const Ref<WQXMLText>& text) { text->appendString(u"!?"); }, "hello!?", "5,0", "!?"},
        {"appendString empty", [](const Ref<WQXMLText>& text) { text->appendString(u""); }, "hello", "5,0", ""},
        {"insertString_atIndex", [](const Ref<WQXMLText>& text) { text->insertString_atIndex(u"XY", 2); }, "heXYllo", "2,0", "XY"},
        {"insertString_atIndex start", [](const Ref<WQXMLText>& text) { text->insertString_atIndex(u"X", 0); }, "Xhello", "0,0", "X"},
        {"insertString_atIndex end", [](const Ref<WQXMLText>& text) { text->insertString_atIndex(u"X", 5); }, "helloX", "5,0", "X"},
        {"deleteCharactersInRange",
         [](const Ref<WQXMLText>& text) {
             text->deleteCharactersInRange({1, 3});
         },
         "ho", "1,3", ""},
        {"replaceCharactersInRange_withString",
         [](const Ref<WQXMLText>& text) {
             text->replaceCharactersInRange_withString({1, 2}, u"u\U0001F600");
         },
         "hu\xF0\x9F\x98\x80lo", "1,2", "u\xF0\x9F\x98\x80"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.operation);
        auto document = parse("<a>hello</a>");
        auto text = wq::cast<WQXMLText>(document->documentElement()->firstChild());
        Watch watch(document, [&](const Ref<WQXMLMutationEvent>& event) {
            EXPECT_EQ(event->eventID(), 2);
            EXPECT_EQ(event->phase(), 1);
            EXPECT_EQ(event->target(), text);
            EXPECT_EQ(print(text->string()), row.after);
            EXPECT_EQ(print(event->range()), row.range);
            EXPECT_EQ(print(event->string()), row.string);
            EXPECT_EQ(event->prevValue(), u"hello");
            EXPECT_FALSE(event->newValue());
            EXPECT_FALSE(event->relatedNode());
            EXPECT_FALSE(event->attrName());
            EXPECT_EQ(event->attrChange(), 0);
        });
        row.edit(text);
        EXPECT_EQ(watch.calls, 1);
        EXPECT_EQ(print(text->string()), row.after);
    }
}

TEST(WQXMLMutationEventTest, RangesOfTextEventsCountUTF16Units) {
    auto document = parse("<a>\xF0\x9F\x98\x80\xC3\xA9</a>");  // three units
    Watch watch(document, [&](const Ref<WQXMLMutationEvent>& event) { EXPECT_EQ(event->range(), (NSRange{3, 0})); });
    wq::cast<WQXMLText>(document->documentElement()->firstChild())->appendString(u"x");
    EXPECT_EQ(watch.calls, 1);
}

TEST(WQXMLMutationEventTest, AnEditOfATextWithoutContentHasANullPreviousValue) {
    struct Row {
        const char* operation;
        std::function<void(const Ref<WQXMLText>&)> edit;
        const char* range;
    };
    const std::vector<Row> rows = {
        {"insertString_atIndex", [](const Ref<WQXMLText>& text) { text->insertString_atIndex(u"new", 7); }, "7,0"},
        {"appendString", [](const Ref<WQXMLText>& text) { text->appendString(u"new"); }, "0,0"},
        {"setString", [](const Ref<WQXMLText>& text) { text->setString(u"new"); }, "0,0"},
        {"replaceCharactersInRange_withString",
         [](const Ref<WQXMLText>& text) {
             text->replaceCharactersInRange_withString({3, 9}, u"new");
         },
         "3,9"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.operation);
        auto text = WQXMLText::text();
        Watch watch(text, [&](const Ref<WQXMLMutationEvent>& event) {
            EXPECT_EQ(event->eventID(), 2);
            EXPECT_EQ(event->phase(), 2);
            EXPECT_FALSE(event->prevValue());
            EXPECT_EQ(print(event->range()), row.range);
            EXPECT_EQ(event->string(), u"new");
            EXPECT_EQ(text->string(), u"new");
        });
        row.edit(text);
        EXPECT_EQ(watch.calls, 1);
    }
}

TEST(WQXMLMutationEventTest, ATextEditWithABadRangeFiresNothing) {
    Scene scene("<a>hello</a>");
    EXPECT_THAT(raised([&] { scene.text()->deleteCharactersInRange({4, 2}); }), testing::StartsWith("NSRangeException: "));
    EXPECT_THAT(scene.heard, IsEmpty());
    EXPECT_EQ(dump(scene.document), "a[\"hello\"]");
}

TEST(WQXMLMutationEventTest, SplittingATextFiresForTheShortenedTextAndThenForTheNewOne) {
    auto document = parse("<a>hello<b/></a>");
    auto text = wq::cast<WQXMLText>(document->documentElement()->firstChild());
    std::vector<std::string> states;
    Watch watch(document, [&](const Ref<WQXMLMutationEvent>& event) {
        states.push_back(
            std::to_string(event->eventID()) + " " + dump(event->target()) + "<-" + print(event->relatedNode()->nodeName()) + " " +
            print(event->range()) + " " + print(event->string()) + " " + dump(document));
    });
    text->splitAtIndex(2);
    EXPECT_THAT(states, ElementsAre("2 \"he\"<-(null) 2,3  a[\"he\",b]", "4 \"llo\"<-a 0,0 (null) a[\"he\",\"llo\",b]"));
}

// ---- Attributes

TEST(WQXMLMutationEventTest, SettingANewAttributeTellsThatItDidNotExist) {
    auto document = parse("<a><b/></a>");
    auto b = wq::cast<WQXMLElement>(find(document, u"b"));
    Watch watch(document, [&](const Ref<WQXMLMutationEvent>& event) {
        EXPECT_EQ(event->eventID(), 1);
        EXPECT_EQ(event->target(), b);
        EXPECT_EQ(event->attrName(), u"x");
        EXPECT_EQ(event->attrChange(), 1);
        EXPECT_FALSE(event->prevValue());
        EXPECT_EQ(event->newValue(), u"1");
        ASSERT_TRUE(event->relatedNode());
        EXPECT_EQ(event->relatedNode(), b->firstAttribute());
        EXPECT_EQ(event->relatedNode()->nodeType(), 2);
        EXPECT_EQ(b->getAttribute(u"x"), u"1");
        EXPECT_EQ(event->range(), (NSRange{0, 0}));
        EXPECT_FALSE(event->string());
    });
    b->setAttribute_value(u"x", u"1");
    EXPECT_EQ(watch.calls, 1);
}

TEST(WQXMLMutationEventTest, SettingAnExistingAttributeTellsThatItExisted) {
    auto document = parse("<a y='0' x='1'/>");
    auto a = document->documentElement();
    Ref<WQXMLNode> x = a->firstAttribute()->nextSibling();
    Watch watch(document, [&](const Ref<WQXMLMutationEvent>& event) {
        EXPECT_EQ(event->attrName(), u"x");
        EXPECT_EQ(event->attrChange(), 2);
        EXPECT_EQ(event->prevValue(), u"1");
        EXPECT_EQ(event->newValue(), u"2");
        EXPECT_EQ(event->relatedNode(), x);
        EXPECT_EQ(a->getAttribute(u"x"), u"2");
    });
    a->setAttribute_value(u"x", u"2");
    EXPECT_EQ(watch.calls, 1);
}

TEST(WQXMLMutationEventTest, SettingAnAttributeTwiceFiresOneThenTwo) {
    auto element = WQXMLElement::newWithName(u"a");
    std::vector<std::string> heard;
    Watch watch(element, [&](const Ref<WQXMLMutationEvent>& event) {
        heard.push_back(std::to_string(event->attrChange()) + " " + print(event->prevValue()) + " " + print(event->newValue()));
        EXPECT_EQ(event->relatedNode(), element->firstAttribute());
    });
    element->setAttribute_value(u"x", u"same");
    element->setAttribute_value(u"x", u"same");
    element->setAttribute_value(u"x", u"");
    element->setAttribute_value(u"x", u"v");
    EXPECT_THAT(heard, ElementsAre("1 (null) same", "2 same same", "2 same ", "2  v"));
}

TEST(WQXMLMutationEventTest, TheNameOfAnAttributeStandsInTheEventAsGiven) {
    auto document = parse("<a xmlns:p='urn:p'/>");
    auto a = document->documentElement();
    std::vector<std::string> heard;
    Watch watch(document, [&](const Ref<WQXMLMutationEvent>& event) {
        heard.push_back(print(event->attrName()) + " " + std::to_string(event->attrChange()));
    });
    a->setAttribute_value(u"p:x", u"1");
    a->setAttribute_value(u"p:x", u"2");  // getAttribute does not find a prefixed name whose prefix is declared
    a->setAttribute_value(u"q:x", u"1");
    a->setAttribute_value(u"q:x", u"2");
    EXPECT_THAT(heard, ElementsAre("p:x 1", "p:x 1", "q:x 1", "q:x 2"));
}

// ---- Larger edits

TEST(WQXMLMutationEventTest, SplittingAnElementFiresForTheNewNodeAndThenForEachMovedChild) {
    Scene scene("<r><a>t<b/><c/></a></r>");
    auto into = WQXMLElement::newWithName(u"e");
    scene[u"a"]->splitAtIndex_intoNode(1, into);
    EXPECT_EQ(dump(scene.document), "r[a[\"t\"],e[b,c]]");
    EXPECT_THAT(scene.heard, ElementsAre("4 e<-r", "8 b<-a", "4 b<-e", "8 c<-a", "4 c<-e"));
}

TEST(WQXMLMutationEventTest, SplittingAnElementIntoACopyFiresLikewise) {
    Scene scene("<r><a x='1'><b/></a></r>");
    scene[u"a"]->splitAtIndex(0);
    EXPECT_EQ(dump(scene.document), "r[a,a[b]]");
    EXPECT_THAT(scene.heard, ElementsAre("4 a<-r", "8 b<-a", "4 b<-a"));
}

TEST(WQXMLMutationEventTest, SplittingADetachedElementFiresForTheMovedChildrenAlone) {
    auto receiver = WQXMLElement::newWithName(u"a"), into = WQXMLElement::newWithName(u"e");
    receiver->appendChild(WQXMLElement::newWithName(u"b"));
    Log left, right;
    receiver->addListener_forEvent_useCapture(&left, kEverything, true);
    receiver->addListener_forEvent_useCapture(&left, kEverything, false);
    into->addListener_forEvent_useCapture(&right, kEverything, true);
    into->addListener_forEvent_useCapture(&right, 4, false);
    receiver->splitAtIndex_intoNode(0, into);
    EXPECT_THAT(left.heard, ElementsAre("8/1 b<-a", "8/3 b<-a"));
    EXPECT_THAT(right.heard, ElementsAre("4/1 b<-e", "4/3 b<-e"));
}

TEST(WQXMLMutationEventTest, MergingFiresForEachMovedChildAndThenForTheRemovedElement) {
    Scene scene("<r><a>t</a><e><b/><c/></e></r>");
    scene[u"a"]->mergeWithNode(scene[u"e"]);
    EXPECT_EQ(dump(scene.document), "r[a[\"t\",b,c]]");
    EXPECT_THAT(scene.heard, ElementsAre("8 b<-e", "4 b<-a", "8 c<-e", "4 c<-a", "8 e<-r"));
}

// ---- Silence

TEST(WQXMLMutationEventTest, TheseEditsFireNothing) {
    struct Row {
        const char* operation;
        std::function<void(const Ref<WQXMLDocument>&)> edit;
        const char* after;  // the root
    };
    const std::vector<Row> rows = {
        {"setAttribute_namespaceURI_value new",
         [](const Ref<WQXMLDocument>& document) { document->documentElement()->setAttribute_namespaceURI_value(u"y", nullptr, u"2"); },
         "<a xmlns:p=\"urn:p\" x=\"1\" p:z=\"3\" y=\"2\"><b/>t</a>"},
        {"setAttribute_namespaceURI_value existing",
         [](const Ref<WQXMLDocument>& document) { document->documentElement()->setAttribute_namespaceURI_value(u"p:z", u"urn:p", u"4"); },
         "<a xmlns:p=\"urn:p\" x=\"1\" p:z=\"4\"><b/>t</a>"},
        {"removeAttribute", [](const Ref<WQXMLDocument>& document) { document->documentElement()->removeAttribute(u"x"); },
         "<a xmlns:p=\"urn:p\" p:z=\"3\"><b/>t</a>"},
        {"removeAttribute_namespaceURI",
         [](const Ref<WQXMLDocument>& document) { document->documentElement()->removeAttribute_namespaceURI(u"z", u"urn:p"); },
         "<a xmlns:p=\"urn:p\" x=\"1\"><b/>t</a>"},
        {"setDocumentElement", [](const Ref<WQXMLDocument>& document) { document->setDocumentElement(document->createElement(u"n")); },
         "<n/>"},
        {"copies", [](const Ref<WQXMLDocument>& document) { document->documentElement()->copyNode(true); },
         "<a xmlns:p=\"urn:p\" x=\"1\" p:z=\"3\"><b/>t</a>"},
        {"setRange",
         [](const Ref<WQXMLDocument>& document) {
             document->documentElement()->setRange({1, 1});
         },
         "<a xmlns:p=\"urn:p\" x=\"1\" p:z=\"3\"><b/>t</a>"},
        {"xmlSetProp",
         [](const Ref<WQXMLDocument>& document) { xmlSetProp(document->documentElement()->xmlNode(), BAD_CAST "x", BAD_CAST "9"); },
         "<a xmlns:p=\"urn:p\" x=\"9\" p:z=\"3\"><b/>t</a>"},
        {"xmlNewChild",
         [](const Ref<WQXMLDocument>& document) { xmlNewChild(document->documentElement()->xmlNode(), nullptr, BAD_CAST "c", nullptr); },
         "<a xmlns:p=\"urn:p\" x=\"1\" p:z=\"3\"><b/>t<c/></a>"},
        {"xmlNodeSetContent",
         [](const Ref<WQXMLDocument>& document) { xmlNodeSetContent(document->documentElement()->lastChild()->xmlNode(), BAD_CAST "u"); },
         "<a xmlns:p=\"urn:p\" x=\"1\" p:z=\"3\"><b/>u</a>"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.operation);
        auto document = parse("<a xmlns:p='urn:p' x='1' p:z='3'><b/>t</a>");
        Ref<WQXMLNode> root = document->documentElement();
        Watch watch(document, [](const Ref<WQXMLMutationEvent>&) {}), watchRoot(root, [](const Ref<WQXMLMutationEvent>&) {}),
            watchChild(root->firstChild(), [](const Ref<WQXMLMutationEvent>&) {});
        row.edit(document);
        EXPECT_EQ(watch.calls + watchRoot.calls + watchChild.calls, 0);
        EXPECT_EQ(serialised(document->documentElement()), row.after);
    }
}

TEST(WQXMLMutationEventTest, ParsingFiresNothing) {
    struct Book : WQXMLDocument {
        bool initWithData_baseURL_arguments_error(
            const Ref<NSData>& data,
            const Ref<NSURL>& url,
            const Ref<NSDictionary>& arguments,
            Ref<NSError>* error) override {
            addListener_forEvent_useCapture(&log, kEverything, true);
            addListener_forEvent_useCapture(&log, kEverything, false);
            return WQXMLDocument::initWithData_baseURL_arguments_error(data, url, arguments, error);
        }
        Log log;
    };
    auto book = WQXMLDocument::newWithData_baseURL_arguments_error<Book>(data("<a x='1'><b>t</b></a>"), nullptr, nullptr, nullptr);
    ASSERT_TRUE(book);
    EXPECT_THAT(book->log.heard, IsEmpty());
    book->documentElement()->appendChild(book->createElement(u"c"));
    EXPECT_THAT(book->log.heard, ElementsAre("4/1 c<-a", "4/3 c<-a"));
}

TEST(WQXMLMutationEventTest, NoEditFiresSubtreeModified) {
    auto document = parse("<a><b/>t</a>");
    auto root = document->documentElement();
    Log log;
    for (const bool capture : {true, false}) document->addListener_forEvent_useCapture(&log, 16, capture);
    root->appendChild(root->firstChild());
    wq::cast<WQXMLText>(root->firstChild())->appendString(u"x");
    root->setAttribute_value(u"x", u"1");
    root->removeChildren();
    EXPECT_THAT(log.heard, IsEmpty());
    root->dispatchEvent(WQXMLMutationEvent::subtreeModifiedEventWithTarget(root));
    EXPECT_THAT(log.heard, ElementsAre("16/1 a<-(null)", "16/3 a<-(null)"));
}
