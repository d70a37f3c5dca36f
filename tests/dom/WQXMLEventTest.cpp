#include "dom/WQXMLEvent.h"

#include <functional>

#include "dom/WQXMLEventListenerData.h"
#include "tests/dom/Support.h"

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr int32_t kInserted = 4, kRemoved = 8, kSubtree = 16;

// Does what it is told when it hears something.
struct Doing final : WQXMLEventListener {
    explicit Doing(std::function<void(const Ref<WQXMLEvent>&)> action) : act(std::move(action)) {}
    void handleEvent(const Ref<WQXMLEvent>& event) override { act(event); }
    std::function<void(const Ref<WQXMLEvent>&)> act;
};

// Listeners that write into one list, each under its own name, with the phase.
struct Chorus {
    WQXMLEventListener* voice(const std::string& name, std::function<void(const Ref<WQXMLEvent>&)> action = {}) {
        voices.push_back(std::make_unique<Doing>([this, name, action](const Ref<WQXMLEvent>& event) {
            heard.push_back(name + " " + std::to_string(event->phase()));
            if (action) action(event);
        }));
        return voices.back().get();
    }
    void listen(
        const Ref<WQXMLNode>& node,
        const std::string& name,
        bool capture,
        std::function<void(const Ref<WQXMLEvent>&)> action = {}) {
        node->addListener_forEvent_useCapture(voice(name, std::move(action)), kSubtree, capture);
    }
    std::vector<std::unique_ptr<Doing>> voices;
    std::vector<std::string> heard;
};

// A document root[a[b[t]]] with its nodes at hand.
struct Tree {
    Ref<WQXMLDocument> document = parse("<root><a><b><t/></b></a></root>");
    Ref<WQXMLNode> root = document->documentElement(), a = find(document, u"a"), b = find(document, u"b"), t = find(document, u"t");
};

Ref<WQXMLEvent> subtreeModified() { return WQXMLMutationEvent::subtreeModifiedEventWithTarget(nullptr); }

void stop(const Ref<WQXMLEvent>& event) { event->setStopPropagation(true); }

[[noreturn]] void throwing(const Ref<WQXMLEvent>&) { throw WQXMLException(u"Stop", u"here"); }

}  // namespace

// ---- The event itself

TEST(WQXMLEventTest, ANewEventIsEmpty) {
    auto event = WQXMLEvent::newEvent();
    ASSERT_TRUE(event);
    EXPECT_FALSE(event->target());
    EXPECT_EQ(event->eventID(), 0);
    EXPECT_EQ(event->phase(), 0);
    EXPECT_FALSE(event->stopPropagation());
    EXPECT_FALSE(event->preventDefault());
    EXPECT_FALSE(event->canBubble());
    EXPECT_FALSE(event->canCancel());
}

TEST(WQXMLEventTest, EveryFieldHasASetter) {
    auto document = parse("<a/>");
    Ref<WQXMLNode> root = document->documentElement();
    auto event = WQXMLEvent::newEvent();
    event->setTarget(root);
    event->setEventID(-5);
    event->setPhase(3);
    event->setStopPropagation(true);
    event->setPreventDefault(true);
    event->setCanBubble(true);
    event->setCanCancel(true);
    EXPECT_EQ(event->target(), root);
    EXPECT_EQ(event->eventID(), -5);
    EXPECT_EQ(event->phase(), 3);
    EXPECT_TRUE(event->stopPropagation());
    EXPECT_TRUE(event->preventDefault());
    EXPECT_TRUE(event->canBubble());
    EXPECT_TRUE(event->canCancel());
    event->setTarget(nullptr);
    event->setStopPropagation(false);
    event->setPreventDefault(false);
    event->setCanBubble(false);
    event->setCanCancel(false);
    EXPECT_FALSE(event->target());
    EXPECT_FALSE(event->stopPropagation());
    EXPECT_FALSE(event->preventDefault());
    EXPECT_FALSE(event->canBubble());
    EXPECT_FALSE(event->canCancel());
}

TEST(WQXMLEventTest, AnEventKeepsItsTargetAliveAndLetsGoOfIt) {
    auto element = WQXMLElement::newWithName(u"a");
    auto event = WQXMLEvent::newEvent();
    event->setTarget(element);
    EXPECT_EQ(element->referenceCount(), 2);
    event->setTarget(element);
    EXPECT_EQ(element->referenceCount(), 2);
    event = nullptr;
    EXPECT_EQ(element->referenceCount(), 1);
}

// ---- Records of listeners

TEST(WQXMLEventTest, ANodeHasNoListenersUntilTheFirstIsAdded) {
    auto element = WQXMLElement::newWithName(u"a");
    Log log;
    EXPECT_EQ(element->listeners(), nullptr);
    EXPECT_EQ(element->captureEvents(), 0u);
    EXPECT_EQ(element->events(), 0u);
    element->addListener_forEvent_useCapture(&log, kInserted, false);
    ASSERT_NE(element->listeners(), nullptr);
    ASSERT_EQ(element->listeners()->size(), 1u);
    EXPECT_EQ(element->listeners()->front()->listener(), &log);
    EXPECT_EQ(element->listeners()->front()->data(), nullptr);
}

TEST(WQXMLEventTest, AListenerForTwoEventsInTwoMasksSharesOneRecord) {
    auto element = WQXMLElement::newWithName(u"a");
    Log log;
    element->addListener_forEvent_useCapture(&log, kInserted, true);
    element->addListener_forEvent_useCapture(&log, kRemoved, false);
    ASSERT_EQ(element->listeners()->size(), 1u);
    EXPECT_EQ(element->listeners()->front()->captureEvents(), 4u);
    EXPECT_EQ(element->listeners()->front()->events(), 8u);
}

TEST(WQXMLEventTest, RecordsAreFoundByIdentityAndKeepTheirPlace) {
    auto element = WQXMLElement::newWithName(u"a");
    Log first("same"), second("same");
    element->addListener_forEvent_useCapture(&first, kInserted, false);
    element->addListener_forEvent_useCapture(&second, kInserted, false);
    element->addListener_forEvent_useCapture(&first, kRemoved, false);
    ASSERT_EQ(element->listeners()->size(), 2u);
    EXPECT_EQ((*element->listeners())[0]->listener(), &first);
    EXPECT_EQ((*element->listeners())[0]->events(), 12u);
    EXPECT_EQ((*element->listeners())[1]->listener(), &second);
    EXPECT_EQ((*element->listeners())[1]->events(), 4u);
}

TEST(WQXMLEventTest, ANodesMasksAreThoseOfItsRecordsTogether) {
    auto document = parse("<a><b/></a>");
    Ref<WQXMLNode> root = document->documentElement();
    Log first, second;
    root->addListener_forEvent_useCapture(&first, 1, true);
    root->addListener_forEvent_useCapture(&first, 2, false);
    root->addListener_forEvent_useCapture(&second, 5, true);
    root->addListener_forEvent_useCapture(&second, 16, false);
    EXPECT_EQ(root->captureEvents(), 5u);
    EXPECT_EQ(root->events(), 18u);
    EXPECT_EQ(find(document, u"b")->captureEvents(), 0u);
    EXPECT_EQ(document->captureEvents(), 0u);
    EXPECT_EQ(document->events(), 0u);
    root->removeListener_forEvent_useCapture(&second, 4, true);
    EXPECT_EQ(root->captureEvents(), 1u);
}

TEST(WQXMLEventTest, RemovingOneEventOfTwoLeavesTheRecord) {
    auto element = WQXMLElement::newWithName(u"a");
    Log log;
    element->addListener_forEvent_useCapture(&log, kInserted, false);
    element->addListener_forEvent_useCapture(&log, kRemoved, false);
    element->removeListener_forEvent_useCapture(&log, kInserted, false);
    ASSERT_EQ(element->listeners()->size(), 1u);
    EXPECT_EQ(element->events(), 8u);
}

TEST(WQXMLEventTest, RemovingTheLastEventDropsTheRecord) {
    auto element = WQXMLElement::newWithName(u"a");
    Log log, other;
    element->addListener_forEvent_useCapture(&log, kInserted, false);
    element->addListener_forEvent_useCapture(&other, kInserted, false);
    element->removeListener_forEvent_useCapture(&log, kInserted, false);
    ASSERT_EQ(element->listeners()->size(), 1u);
    EXPECT_EQ(element->listeners()->front()->listener(), &other);
}

TEST(WQXMLEventTest, RemovingFromTheOtherMaskLeavesTheRecord) {
    auto element = WQXMLElement::newWithName(u"a");
    Log log;
    element->addListener_forEvent_useCapture(&log, kInserted, true);
    element->removeListener_forEvent_useCapture(&log, kInserted, false);
    ASSERT_EQ(element->listeners()->size(), 1u);
    EXPECT_EQ(element->captureEvents(), 4u);
}

TEST(WQXMLEventTest, RemovingAListenerNeverAddedWhereOthersWereChangesNothing) {
    auto element = WQXMLElement::newWithName(u"a");
    Log log, stranger;
    element->addListener_forEvent_useCapture(&log, kInserted, false);
    Assertions assertions;
    element->removeListener_forEvent_useCapture(&stranger, kInserted, false);
    EXPECT_THAT(assertions.descriptions, IsEmpty());
    ASSERT_EQ(element->listeners()->size(), 1u);
    EXPECT_EQ(element->events(), 4u);
}

TEST(WQXMLEventTest, RemovingBeforeAnyListenerWasAddedFailsAnAssertion) {
    auto element = WQXMLElement::newWithName(u"a");
    Log log;
    EXPECT_EQ(
        raised([&] { element->removeListener_forEvent_useCapture(&log, kInserted, false); }),
        "NSInternalInconsistencyException: removeListener called before listener added");
    Assertions assertions;
    element->removeListener_forEvent_useCapture(&log, kInserted, false);
    EXPECT_THAT(assertions.descriptions, ElementsAre("removeListener called before listener added"));
    EXPECT_THAT(assertions.files, ElementsAre("WQXMLNode"));
    EXPECT_THAT(assertions.operations, ElementsAre("removeListener_forEvent_useCapture"));
    EXPECT_EQ(element->listeners(), nullptr);
}

TEST(WQXMLEventTest, RemovingAgainAfterTheLastListenerWentFailsNothing) {
    auto element = WQXMLElement::newWithName(u"a");
    Log log;
    element->addListener_forEvent_useCapture(&log, kInserted, false);
    element->removeListener_forEvent_useCapture(&log, kInserted, false);
    Assertions assertions;
    element->removeListener_forEvent_useCapture(&log, kInserted, false);
    EXPECT_THAT(assertions.descriptions, IsEmpty());
    ASSERT_NE(element->listeners(), nullptr);
    EXPECT_TRUE(element->listeners()->empty());
}

TEST(WQXMLEventTest, AListenerThatWasRemovedHearsNothingMore) {
    Tree tree;
    Log log;
    tree.document->addListener_forEvent_useCapture(&log, 12, true);
    tree.t->appendChild(WQXMLElement::newWithName(u"x"));
    tree.document->removeListener_forEvent_useCapture(&log, 12, true);
    tree.t->appendChild(WQXMLElement::newWithName(u"y"));
    EXPECT_THAT(log.heard, ElementsAre("4/1 x<-t"));
}

TEST(WQXMLEventTest, OneCallCanRegisterForSeveralEvents) {
    Tree tree;
    Log log;
    tree.document->addListener_forEvent_useCapture(&log, kInserted | kRemoved, true);
    tree.root->appendChild(tree.t);
    EXPECT_THAT(log.heard, ElementsAre("8/1 t<-b", "4/1 t<-root"));
}

TEST(WQXMLEventTest, EveryKindOfNodeHasListeners) {
    auto document = parse("<a x='1'>t<!--c--><![CDATA[d]]></a>");
    auto root = document->documentElement();
    for (const Ref<WQXMLNode>& node :
         {Ref<WQXMLNode>(document), Ref<WQXMLNode>(root), root->firstAttribute(), root->firstChild(), root->firstChild()->nextSibling(),
          root->lastChild()}) {
        SCOPED_TRACE(node->nodeType());
        Chorus chorus;
        chorus.listen(node, "target", false);
        node->dispatchEvent(subtreeModified());
        EXPECT_THAT(chorus.heard, ElementsAre("target 2"));
        node->removeListener_forEvent_useCapture(chorus.voices[0].get(), kSubtree, false);
    }
}

// ---- Dispatch

TEST(WQXMLEventTest, CaptureAndBubbleBothRunFromTheTopDown) {
    Tree tree;
    Chorus chorus;
    chorus.listen(tree.t, "t", false);
    chorus.listen(tree.t, "capturing t", true);
    for (const bool capture : {false, true}) {
        const std::string how = capture ? "capturing " : "";
        chorus.listen(tree.b, how + "b", capture);
        chorus.listen(tree.root, how + "root", capture);
        chorus.listen(tree.a, how + "a", capture);
        chorus.listen(tree.document, how + "document", capture);
    }
    tree.t->dispatchEvent(subtreeModified());
    EXPECT_THAT(
        chorus.heard,
        ElementsAre(
            "capturing document 1", "capturing root 1", "capturing a 1", "capturing b 1", "t 2", "document 3", "root 3", "a 3", "b 3"));
}

TEST(WQXMLEventTest, ManyAncestorsThatListenAreAllCalledFromTheTop) {
    const auto document = parse("<n><n><n><n><n><n><n/></n></n></n></n></n></n>");
    Chorus chorus;
    std::vector<std::string> capturing, bubbling;
    Ref<WQXMLNode> node = document->documentElement();
    for (int depth = 1; depth <= 6; ++depth, node = node->firstChild()) {
        chorus.listen(node, "c" + std::to_string(depth), true);
        chorus.listen(node, "b" + std::to_string(depth), false);
        capturing.push_back("c" + std::to_string(depth) + " 1");
        bubbling.push_back("b" + std::to_string(depth) + " 3");
    }
    node->dispatchEvent(subtreeModified());
    capturing.insert(capturing.end(), bubbling.begin(), bubbling.end());
    EXPECT_EQ(chorus.heard, capturing);
}

TEST(WQXMLEventTest, AnEventWithinAnEventLeavesTheOuterOneOnItsWay) {
    Tree tree;
    Chorus chorus;
    bool isInner = false;
    chorus.listen(tree.root, "root", true, [&](const Ref<WQXMLEvent>&) {
        if (!std::exchange(isInner, true)) tree.b->dispatchEvent(subtreeModified());
    });
    chorus.listen(tree.a, "a", true);
    chorus.listen(tree.t, "t", false);
    tree.t->dispatchEvent(subtreeModified());
    EXPECT_THAT(chorus.heard, ElementsAre("root 1", "root 1", "a 1", "a 1", "t 2"));
}

TEST(WQXMLEventTest, BubbleListenersOnRootAndTwoNodesBelowRunInThatOrder) {
    Tree tree;
    Chorus chorus;
    chorus.listen(tree.b, "b", false);
    chorus.listen(tree.a, "a", false);
    chorus.listen(tree.root, "root", false);
    tree.t->dispatchEvent(subtreeModified());
    EXPECT_THAT(chorus.heard, ElementsAre("root 3", "a 3", "b 3"));
}

TEST(WQXMLEventTest, CaptureListenersOnTheTargetAreNeverCalled) {
    Tree tree;
    Chorus chorus;
    chorus.listen(tree.t, "t", true);
    tree.t->dispatchEvent(subtreeModified());
    EXPECT_THAT(chorus.heard, IsEmpty());
}

TEST(WQXMLEventTest, ADocumentsCaptureListenerDoesNotHearAnEventOnTheDocument) {
    Tree tree;
    Chorus chorus;
    chorus.listen(tree.document, "capturing", true);
    chorus.listen(tree.document, "document", false);
    auto event = subtreeModified();
    tree.document->dispatchEvent(event);
    EXPECT_THAT(chorus.heard, ElementsAre("document 2"));
    EXPECT_EQ(event->target(), tree.document);
    EXPECT_EQ(event->phase(), 3);
}

TEST(WQXMLEventTest, AListenerInBothMasksOfAnAncestorHearsTwiceAndAtTheTargetOnce) {
    Tree tree;
    Chorus chorus;
    WQXMLEventListener* both = chorus.voice("both");
    for (const Ref<WQXMLNode>& node : {tree.b, tree.t})
        for (const bool capture : {true, false}) node->addListener_forEvent_useCapture(both, kSubtree, capture);
    tree.t->dispatchEvent(subtreeModified());
    EXPECT_THAT(chorus.heard, ElementsAre("both 1", "both 2", "both 3"));
}

TEST(WQXMLEventTest, ListenersOfOneNodeAreCalledInTheOrderOfTheirRecords) {
    Tree tree;
    Chorus chorus;
    chorus.listen(tree.t, "first", false);
    chorus.listen(tree.t, "second", false);
    chorus.listen(tree.t, "third", false);
    tree.t->addListener_forEvent_useCapture(chorus.voices[0].get(), kInserted, false);  // keeps its place
    tree.t->dispatchEvent(subtreeModified());
    EXPECT_THAT(chorus.heard, ElementsAre("first 2", "second 2", "third 2"));
}

TEST(WQXMLEventTest, DispatchSetsTheTargetWhateverTheFactoryWasGiven) {
    Tree tree;
    auto event = WQXMLMutationEvent::subtreeModifiedEventWithTarget(tree.a);
    EXPECT_EQ(event->target(), tree.a);
    tree.t->dispatchEvent(event);
    EXPECT_EQ(event->target(), tree.t);
}

TEST(WQXMLEventTest, ListenersHearEventsThatShareABitWithTheirMask) {
    struct Row {
        int32_t mask, eventID;
        bool heard;
    };
    for (const Row& row :
         {Row{4, 4, true}, Row{4, 8, false}, Row{12, 8, true}, Row{4, 12, true}, Row{3, 12, false}, Row{0, 4, false}, Row{4, 0, false},
          Row{-1, 0, false}, Row{-1, 1, true}, Row{1, -1, true}, Row{INT32_MIN, INT32_MIN, true}, Row{INT32_MIN, INT32_MAX, false},
          Row{INT32_MAX, INT32_MIN, false}, Row{1 << 30, 1 << 30, true}, Row{1 << 30, 1 << 29, false}}) {
        SCOPED_TRACE(testing::Message() << "mask " << row.mask << ", event " << row.eventID);
        Tree tree;
        int calls = 0;
        Doing capturing([&](const Ref<WQXMLEvent>&) { ++calls; }), atTarget(capturing.act), bubbling(capturing.act);
        tree.a->addListener_forEvent_useCapture(&capturing, row.mask, true);
        tree.t->addListener_forEvent_useCapture(&atTarget, row.mask, false);
        tree.b->addListener_forEvent_useCapture(&bubbling, row.mask, false);
        auto event = WQXMLEvent::newEvent();
        event->setEventID(row.eventID);
        event->setCanBubble(true);
        tree.t->dispatchEvent(event);
        EXPECT_EQ(calls, row.heard ? 3 : 0);
    }
}

TEST(WQXMLEventTest, OnANodeOnTheWayOnlyThoseListenersAreCalledThatHearTheEvent) {
    Tree tree;
    Chorus chorus;
    chorus.listen(tree.a, "a", true);
    tree.a->addListener_forEvent_useCapture(chorus.voice("other event"), kInserted, true);
    tree.a->addListener_forEvent_useCapture(chorus.voice("other mask"), kSubtree, false);
    auto event = subtreeModified();
    event->setCanBubble(false);
    tree.t->dispatchEvent(event);
    EXPECT_THAT(chorus.heard, ElementsAre("a 1"));
}

TEST(WQXMLEventTest, WithoutBubblingAncestorsAreNotCalledThoughTheTargetIs) {
    Tree tree;
    Chorus chorus;
    chorus.listen(tree.document, "capturing document", true);
    chorus.listen(tree.t, "t", false);
    chorus.listen(tree.b, "b", false);
    auto event = subtreeModified();
    event->setCanBubble(false);
    tree.t->dispatchEvent(event);
    EXPECT_THAT(chorus.heard, ElementsAre("capturing document 1", "t 2"));
    EXPECT_EQ(event->phase(), 2);
}

TEST(WQXMLEventTest, AListenerDecidesDuringTheDispatchWhetherTheEventBubbles) {
    Tree tree;
    Chorus chorus;
    chorus.listen(tree.document, "capturing document", true, [](const Ref<WQXMLEvent>& event) { event->setCanBubble(true); });
    chorus.listen(tree.b, "b", false);
    auto event = subtreeModified();
    event->setCanBubble(false);
    tree.t->dispatchEvent(event);
    EXPECT_THAT(chorus.heard, ElementsAre("capturing document 1", "b 3"));
}

TEST(WQXMLEventTest, ThePhaseKeepsItsLastValue) {
    struct Row {
        bool canBubble, stopped;
        int32_t phase;
    };
    for (const Row& row : {Row{true, false, 3}, Row{false, false, 2}, Row{true, true, 2}, Row{false, true, 2}}) {
        SCOPED_TRACE(testing::Message() << row.canBubble << row.stopped);
        Tree tree;
        auto event = subtreeModified();
        EXPECT_EQ(event->phase(), 0);
        event->setCanBubble(row.canBubble);
        event->setStopPropagation(row.stopped);
        tree.t->dispatchEvent(event);
        EXPECT_EQ(event->phase(), row.phase);
    }
}

TEST(WQXMLEventTest, ANullListenerHearsNothing) {
    Tree tree;
    Chorus chorus;
    tree.t->addListener_forEvent_useCapture(nullptr, kSubtree, false);
    tree.a->addListener_forEvent_useCapture(nullptr, kSubtree, true);
    chorus.listen(tree.t, "t", false);
    EXPECT_FALSE(tree.t->dispatchEvent(subtreeModified()));
    EXPECT_THAT(chorus.heard, ElementsAre("t 2"));
}

// ---- Stopping

TEST(WQXMLEventTest, ACaptureListenerOnTheDocumentHearsInsertionsAtAnyDepthAndCanStopThem) {
    Tree tree;
    Chorus chorus;
    int32_t lastPhase = 0;
    Ref<WQXMLEvent> heard;
    Doing watch([&](const Ref<WQXMLEvent>& event) {
        heard = event;
        stop(event);
    });
    tree.document->addListener_forEvent_useCapture(&watch, kInserted, true);
    auto child = WQXMLElement::newWithName(u"x");
    tree.a->addListener_forEvent_useCapture(chorus.voice("a"), kInserted, true);
    child->addListener_forEvent_useCapture(chorus.voice("x"), kInserted, false);
    tree.b->addListener_forEvent_useCapture(chorus.voice("b"), kInserted, false);
    tree.t->appendChild(child);
    ASSERT_TRUE(heard);
    lastPhase = heard->phase();
    EXPECT_EQ(heard->target(), child);
    EXPECT_THAT(chorus.heard, IsEmpty());
    EXPECT_EQ(lastPhase, 2);
}

TEST(WQXMLEventTest, StoppingDoesNotStopTheOthersOnTheSameNode) {
    Tree tree;
    Chorus chorus;
    chorus.listen(tree.root, "stopping", true, stop);
    chorus.listen(tree.root, "beside", true);
    chorus.listen(tree.a, "below", true);
    chorus.listen(tree.t, "target", false);
    chorus.listen(tree.a, "bubbling", false);
    auto event = subtreeModified();
    tree.t->dispatchEvent(event);
    EXPECT_THAT(chorus.heard, ElementsAre("stopping 1", "beside 1"));
    EXPECT_EQ(event->phase(), 2);
}

TEST(WQXMLEventTest, StoppingAtTheTargetKeepsTheEventFromBubbling) {
    Tree tree;
    Chorus chorus;
    chorus.listen(tree.t, "stopping", false, stop);
    chorus.listen(tree.t, "beside", false);
    chorus.listen(tree.a, "bubbling", false);
    auto event = subtreeModified();
    tree.t->dispatchEvent(event);
    EXPECT_THAT(chorus.heard, ElementsAre("stopping 2", "beside 2"));
    EXPECT_EQ(event->phase(), 2);
}

TEST(WQXMLEventTest, StoppingWhileBubblingSparesTheNodesBelow) {
    Tree tree;
    Chorus chorus;
    chorus.listen(tree.root, "root", false);
    chorus.listen(tree.a, "stopping", false, stop);
    chorus.listen(tree.a, "beside", false);
    chorus.listen(tree.b, "b", false);
    auto event = subtreeModified();
    tree.t->dispatchEvent(event);
    EXPECT_THAT(chorus.heard, ElementsAre("root 3", "stopping 3", "beside 3"));
    EXPECT_EQ(event->phase(), 3);
}

TEST(WQXMLEventTest, AnotherListenerOnTheSameNodeCanLetTheEventGoOn) {
    Tree tree;
    Chorus chorus;
    chorus.listen(tree.root, "stopping", true, stop);
    chorus.listen(tree.root, "resuming", true, [](const Ref<WQXMLEvent>& event) { event->setStopPropagation(false); });
    chorus.listen(tree.t, "t", false);
    tree.t->dispatchEvent(subtreeModified());
    EXPECT_THAT(chorus.heard, ElementsAre("stopping 1", "resuming 1", "t 2"));
}

TEST(WQXMLEventTest, AnEventStoppedBeforehandReachesNobody) {
    Tree tree;
    Chorus chorus;
    chorus.listen(tree.document, "document", true);
    chorus.listen(tree.t, "t", false);
    chorus.listen(tree.b, "b", false);
    auto event = subtreeModified();
    event->setStopPropagation(true);
    EXPECT_FALSE(tree.t->dispatchEvent(event));
    EXPECT_THAT(chorus.heard, IsEmpty());
    EXPECT_EQ(event->target(), tree.t);
}

// ---- The answer

TEST(WQXMLEventTest, DispatchTellsWhetherAListenerPreventedTheDefault) {
    Tree tree;
    EXPECT_FALSE(tree.t->dispatchEvent(subtreeModified()));
    Doing refuse([](const Ref<WQXMLEvent>& event) { event->setPreventDefault(true); });
    tree.document->addListener_forEvent_useCapture(&refuse, kSubtree, true);
    auto event = subtreeModified();
    EXPECT_FALSE(event->canCancel());
    EXPECT_TRUE(tree.t->dispatchEvent(event));
    EXPECT_TRUE(event->preventDefault());
    event = subtreeModified();
    event->setCanCancel(true);
    EXPECT_TRUE(tree.t->dispatchEvent(event));
}

TEST(WQXMLEventTest, PreventingDoesNotStopTheEvent) {
    Tree tree;
    Chorus chorus;
    chorus.listen(tree.root, "root", true, [](const Ref<WQXMLEvent>& event) { event->setPreventDefault(true); });
    chorus.listen(tree.t, "t", false);
    chorus.listen(tree.a, "a", false);
    EXPECT_TRUE(tree.t->dispatchEvent(subtreeModified()));
    EXPECT_THAT(chorus.heard, ElementsAre("root 1", "t 2", "a 3"));
}

TEST(WQXMLEventTest, EditsIgnoreThatTheirDefaultIsPrevented) {
    auto document = parse("<a><b/>t</a>");
    Doing refuse([](const Ref<WQXMLEvent>& event) { event->setPreventDefault(true); });
    document->addListener_forEvent_useCapture(&refuse, kEverything, true);
    auto root = document->documentElement();
    root->appendChild(WQXMLElement::newWithName(u"c"));
    root->removeChild(root->firstChild());
    wq::cast<WQXMLText>(root->firstChild())->setString(u"u");
    EXPECT_EQ(dump(document), "a[\"u\",c]");
}

TEST(WQXMLEventTest, DispatchingNothingAnswersFalse) {
    Tree tree;
    Chorus chorus;
    chorus.listen(tree.document, "document", true);
    EXPECT_FALSE(tree.t->dispatchEvent(nullptr));
    EXPECT_THAT(chorus.heard, IsEmpty());
}

// ---- The way up

TEST(WQXMLEventTest, AMutationInADetachedSubtreeReachesNoListenerOfTheDocument) {
    Tree tree;
    auto detached = tree.root->removeChild(tree.a);
    Log onDocument, onTop;
    tree.document->addListener_forEvent_useCapture(&onDocument, kEverything, true);
    detached->addListener_forEvent_useCapture(&onTop, kEverything, true);
    tree.t->appendChild(WQXMLElement::newWithName(u"x"));
    EXPECT_THAT(onDocument.heard, IsEmpty());
    EXPECT_THAT(onTop.heard, ElementsAre("4/1 x<-t"));
}

TEST(WQXMLEventTest, AnEventOnAnAttributeRunsThroughItsElement) {
    auto document = parse("<a><b x='1'/></a>");
    auto element = wq::cast<WQXMLElement>(find(document, u"b"));
    Chorus chorus;
    chorus.listen(document, "document", true);
    chorus.listen(element, "b", true);
    chorus.listen(element->firstAttribute(), "x", false);
    element->firstAttribute()->dispatchEvent(subtreeModified());
    EXPECT_THAT(chorus.heard, ElementsAre("document 1", "b 1", "x 2"));
}

TEST(WQXMLEventTest, EventsInAnHTMLDocumentReachTheDocument) {
    auto document = parseHTML("<p>x</p>");
    Chorus chorus;
    chorus.listen(document, "document", true);
    find(document, u"p")->dispatchEvent(subtreeModified());
    EXPECT_THAT(chorus.heard, ElementsAre("document 1"));
}

// ---- What stays fixed and what is live

TEST(WQXMLEventTest, ANodeThatBeginsToListenDuringTheDispatchIsNotVisited) {
    Tree tree;
    Chorus chorus;
    WQXMLEventListener* late = chorus.voice("late");
    chorus.listen(tree.document, "document", true, [&](const Ref<WQXMLEvent>&) {
        tree.a->addListener_forEvent_useCapture(late, kSubtree, true);
        tree.b->addListener_forEvent_useCapture(late, kSubtree, false);
    });
    tree.t->dispatchEvent(subtreeModified());
    EXPECT_THAT(chorus.heard, ElementsAre("document 1"));
}

TEST(WQXMLEventTest, AListenerAddedToANodeStillAheadIsCalled) {
    Tree tree;
    Chorus chorus;
    WQXMLEventListener* late = chorus.voice("late");
    chorus.listen(tree.a, "a", true);
    chorus.listen(tree.b, "b", false);
    chorus.listen(tree.document, "document", true, [&](const Ref<WQXMLEvent>&) {
        tree.a->addListener_forEvent_useCapture(late, kSubtree, true);
        tree.b->addListener_forEvent_useCapture(late, kSubtree, false);
    });
    tree.t->dispatchEvent(subtreeModified());
    EXPECT_THAT(chorus.heard, ElementsAre("document 1", "a 1", "late 1", "b 3", "late 3"));
}

TEST(WQXMLEventTest, AListenerRemovedFromANodeStillAheadIsNotCalled) {
    Tree tree;
    Chorus chorus;
    WQXMLEventListener* leaving = chorus.voice("leaving");
    tree.a->addListener_forEvent_useCapture(leaving, kSubtree, true);
    tree.b->addListener_forEvent_useCapture(leaving, kSubtree, false);
    chorus.listen(tree.b, "b", false);
    chorus.listen(tree.document, "document", true, [&](const Ref<WQXMLEvent>&) {
        tree.a->removeListener_forEvent_useCapture(leaving, kSubtree, true);
        tree.b->removeListener_forEvent_useCapture(leaving, kSubtree, false);
    });
    tree.t->dispatchEvent(subtreeModified());
    EXPECT_THAT(chorus.heard, ElementsAre("document 1", "b 3"));
}

TEST(WQXMLEventTest, AListenerAddedToTheTargetWhileCapturingIsCalled) {
    Tree tree;
    Chorus chorus;
    WQXMLEventListener* late = chorus.voice("late");
    chorus.listen(
        tree.document, "document", true, [&](const Ref<WQXMLEvent>&) { tree.t->addListener_forEvent_useCapture(late, kSubtree, false); });
    tree.t->dispatchEvent(subtreeModified());
    EXPECT_THAT(chorus.heard, ElementsAre("document 1", "late 2"));
}

TEST(WQXMLEventTest, TheWayIsThatOfTheStartAlsoIfTheTargetMoves) {
    Tree tree;
    Chorus chorus;
    chorus.listen(tree.document, "document", true, [&](const Ref<WQXMLEvent>&) { tree.root->appendChild(tree.t); });
    chorus.listen(tree.a, "capturing a", true);
    chorus.listen(tree.b, "b", false);
    tree.t->dispatchEvent(subtreeModified());
    EXPECT_THAT(chorus.heard, ElementsAre("document 1", "capturing a 1", "b 3"));
    EXPECT_EQ(dump(tree.document), "root[a[b],t]");
}

TEST(WQXMLEventTest, NodesOnTheWayMayBeDroppedByAListener) {
    auto document = parse("<root><a><b><t/></b></a></root>");
    Chorus chorus;
    chorus.listen(find(document, u"b"), "b", true);
    chorus.listen(find(document, u"b"), "bubbling b", false);
    chorus.listen(document, "document", true, [&](const Ref<WQXMLEvent>&) { document->documentElement()->removeChildren(); });
    auto event = subtreeModified();
    find(document, u"t")->dispatchEvent(event);
    EXPECT_EQ(dump(document), "root");
    ASSERT_FALSE(chorus.heard.empty());
    EXPECT_EQ(chorus.heard.front(), "document 1");
    EXPECT_EQ(event->phase(), 3);
}

TEST(WQXMLEventTest, TheDocumentMayDieDuringADispatch) {
    auto document = parse("<root><a/></root>");
    Ref<WQXMLNode> a = find(document, u"a");
    Chorus chorus;
    chorus.listen(document->documentElement(), "root", true, [&](const Ref<WQXMLEvent>&) { document = nullptr; });
    a->dispatchEvent(subtreeModified());
    EXPECT_THAT(chorus.heard, ElementsAre("root 1"));
}

TEST(WQXMLEventTest, AListenerMayRemoveItselfWithoutHarm) {
    Tree tree;
    for (const bool capture : {true, false}) {
        Chorus chorus;
        const Ref<WQXMLNode>& node = capture ? tree.a : tree.t;
        chorus.listen(node, "leaving", capture, [&](const Ref<WQXMLEvent>&) {
            node->removeListener_forEvent_useCapture(chorus.voices[0].get(), kSubtree, capture);
        });
        tree.t->dispatchEvent(subtreeModified());
        EXPECT_THAT(chorus.heard, ElementsAre(capture ? "leaving 1" : "leaving 2"));
        EXPECT_TRUE(node->listeners()->empty());
    }
}

TEST(WQXMLEventTest, AListenerMayAddAndRemoveManyOnItsOwnNodeWithoutHarm) {
    Tree tree;
    std::vector<std::unique_ptr<Log>> crowd;
    for (int i = 0; i < 200; ++i) crowd.push_back(std::make_unique<Log>());
    Doing busy([&](const Ref<WQXMLEvent>&) {
        for (auto& log : crowd) tree.a->addListener_forEvent_useCapture(log.get(), kSubtree, true);
        for (auto& log : crowd) tree.a->removeListener_forEvent_useCapture(log.get(), kSubtree, true);
    });
    Log last;
    tree.a->addListener_forEvent_useCapture(&busy, kSubtree, true);
    tree.a->addListener_forEvent_useCapture(&last, kSubtree, true);
    tree.t->dispatchEvent(subtreeModified());
    EXPECT_EQ(tree.a->listeners()->size(), 2u);
    last.heard.clear();
    tree.t->dispatchEvent(subtreeModified());
    EXPECT_EQ(last.heard.size(), 1u);
}

TEST(WQXMLEventTest, AListenerThatMutatesTheTreeStartsANestedDispatch) {
    auto document = parse("<root><a/></root>");
    std::vector<std::string> heard;
    Doing nesting([&](const Ref<WQXMLEvent>& event) {
        const std::string name = wq::toUTF8(event->target()->nodeName());
        heard.push_back("begin " + name);
        if (name == "x") event->target()->appendChild(WQXMLElement::newWithName(u"y"));
        EXPECT_EQ(event->phase(), 1);
        heard.push_back("end " + name);
    });
    document->addListener_forEvent_useCapture(&nesting, kInserted, true);
    Log after;
    document->documentElement()->addListener_forEvent_useCapture(&after, kInserted, false);
    find(document, u"a")->appendChild(WQXMLElement::newWithName(u"x"));
    EXPECT_THAT(heard, ElementsAre("begin x", "begin y", "end y", "end x"));
    EXPECT_THAT(after.heard, ElementsAre("4/3 y<-x", "4/3 x<-a"));
    EXPECT_EQ(dump(document), "root[a[x[y]]]");
}

// ---- Listeners that raise

TEST(WQXMLEventTest, WhatAListenerRaisesLeavesTheDispatch) {
    Tree tree;
    Chorus chorus;
    chorus.listen(tree.root, "root", true, throwing);
    chorus.listen(tree.a, "a", true);
    chorus.listen(tree.t, "t", false);
    auto event = subtreeModified();
    EXPECT_EQ(raised([&] { tree.t->dispatchEvent(event); }), "Stop: here");
    EXPECT_THAT(chorus.heard, ElementsAre("root 1"));
    EXPECT_EQ(event->phase(), 1);
    tree.root->removeListener_forEvent_useCapture(chorus.voices[0].get(), kSubtree, true);
    EXPECT_FALSE(tree.t->dispatchEvent(subtreeModified()));
    EXPECT_THAT(chorus.heard, ElementsAre("root 1", "a 1", "t 2"));
}

TEST(WQXMLEventTest, ExceptionsOfAnyTypePassThrough) {
    Tree tree;
    Doing numbers([](const Ref<WQXMLEvent>&) { throw 7; });
    tree.t->addListener_forEvent_useCapture(&numbers, kSubtree, false);
    EXPECT_THROW(tree.t->dispatchEvent(subtreeModified()), int);
}

TEST(WQXMLEventTest, RaisingOutOfARemovalLeavesTheTreeUnchanged) {
    auto document = parse("<root><a/><b>t</b><c/></root>");
    Ref<WQXMLNode> root = document->documentElement(), b = find(document, u"b");
    Doing raising(throwing);
    document->addListener_forEvent_useCapture(&raising, kRemoved, true);
    const int32_t count = b->referenceCount();
    EXPECT_EQ(raised([&] { root->removeChild(b); }), "Stop: here");
    EXPECT_EQ(dump(document), "root[a,b[\"t\"],c]");
    EXPECT_EQ(b->parentNode(), root);
    EXPECT_EQ(root->indexOfChild(b), 1u);
    EXPECT_EQ(b->referenceCount(), count);
    EXPECT_EQ(raised([&] { root->removeChildren(); }), "Stop: here");
    EXPECT_EQ(dump(document), "root[a,b[\"t\"],c]");
    document->removeListener_forEvent_useCapture(&raising, kRemoved, true);
    root->removeChild(b);
    EXPECT_EQ(dump(document), "root[a,c]");
}

TEST(WQXMLEventTest, RaisingOutOfTheRemovalOfAMoveLeavesTheTreeUnchanged) {
    auto document = parse("<root><a><x/></a><b/></root>");
    Ref<WQXMLNode> b = find(document, u"b"), x = find(document, u"x");
    Log insertions;
    Doing raising(throwing);
    document->addListener_forEvent_useCapture(&raising, kRemoved, true);
    document->addListener_forEvent_useCapture(&insertions, kInserted, true);
    const int32_t count = x->referenceCount();
    EXPECT_EQ(raised([&] { b->appendChild(x); }), "Stop: here");
    EXPECT_EQ(raised([&] { b->appendChildrenFromNode(find(document, u"a")); }), "Stop: here");
    EXPECT_EQ(dump(document), "root[a[x],b]");
    EXPECT_EQ(x->referenceCount(), count);
    EXPECT_THAT(insertions.heard, IsEmpty());
}

TEST(WQXMLEventTest, RaisingOutOfAnInsertionLeavesTheChildLinked) {
    auto document = parse("<root><a/></root>");
    Doing raising(throwing);
    document->addListener_forEvent_useCapture(&raising, kInserted, true);
    auto child = WQXMLElement::newWithName(u"x");
    EXPECT_EQ(raised([&] { find(document, u"a")->appendChild(child); }), "Stop: here");
    EXPECT_EQ(dump(document), "root[a[x]]");
    EXPECT_EQ(child->referenceCount(), 2);
    child = nullptr;
    EXPECT_EQ(dump(document), "root[a[x]]");
    EXPECT_EQ(raised([&] { document->documentElement()->appendChild(WQXMLText::newWithString(u"only the tree has it")); }), "Stop: here");
    EXPECT_EQ(dump(document), "root[a[x],\"only the tree has it\"]");
}

TEST(WQXMLEventTest, RaisingOutOfAnEditOfTextOrAttributeLeavesTheNewValue) {
    auto document = parse("<a x='1'>text</a>");
    auto root = document->documentElement();
    Doing raising(throwing);
    document->addListener_forEvent_useCapture(&raising, 3, true);
    EXPECT_EQ(raised([&] { root->setAttribute_value(u"x", u"2"); }), "Stop: here");
    EXPECT_EQ(root->getAttribute(u"x"), u"2");
    EXPECT_EQ(raised([&] { wq::cast<WQXMLText>(root->firstChild())->appendString(u"!"); }), "Stop: here");
    EXPECT_EQ(root->innerText(), u"text!");
}

TEST(WQXMLEventTest, RaisingInTheMiddleOfALargerEditKeepsWhatIsDone) {
    auto document = parse("<root><a><x/><y/><z/></a><b/></root>");
    Doing raising([](const Ref<WQXMLEvent>& event) {
        if (event->target()->nodeName() == u"y") throwing(event);
    });
    document->addListener_forEvent_useCapture(&raising, kInserted, true);
    EXPECT_EQ(raised([&] { find(document, u"b")->appendChildrenFromNode(find(document, u"a")); }), "Stop: here");
    EXPECT_EQ(dump(document), "root[a[z],b[x,y]]");
}

TEST(WQXMLEventTest, RaisingOutOfTheSplitOfATextDropsTheNewText) {
    auto document = parse("<a>hello</a>");
    auto text = wq::cast<WQXMLText>(document->documentElement()->firstChild());
    Doing raising(throwing);
    text->addListener_forEvent_useCapture(&raising, 2, false);
    EXPECT_EQ(raised([&] { text->splitAtIndex(2); }), "Stop: here");
    EXPECT_EQ(dump(document), "a[\"he\"]");
}

// ---- Listeners that edit what is being edited

TEST(WQXMLEventTest, AListenerMayRemoveTheNodeThatIsBeingRemoved) {
    auto document = parse("<root><a/><b/></root>");
    Ref<WQXMLNode> root = document->documentElement(), a = find(document, u"a");
    int calls = 0;
    Doing removing([&](const Ref<WQXMLEvent>& event) {
        if (++calls == 1) root->removeChild(event->target());
    });
    document->addListener_forEvent_useCapture(&removing, kRemoved, true);
    EXPECT_EQ(root->removeChild(a), a);
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(dump(document), "root[b]");
    EXPECT_EQ(a->referenceCount(), 1);
    calls = 0;
    root->removeChild(root->firstChild());  // held by the tree alone
    EXPECT_EQ(dump(document), "root");
}

TEST(WQXMLEventTest, ANodeThatAListenerMovesAwayIsRemovedFromThere) {
    auto document = parse("<root><a/><b/></root>");
    Ref<WQXMLNode> root = document->documentElement(), a = find(document, u"a"), b = find(document, u"b");
    int calls = 0;
    Doing moving([&](const Ref<WQXMLEvent>&) {
        if (++calls == 1) b->appendChild(a);
    });
    document->addListener_forEvent_useCapture(&moving, kRemoved, true);
    root->removeChild(a);
    EXPECT_EQ(dump(document), "root[b]");
    EXPECT_FALSE(a->parentNode());
    EXPECT_EQ(a->referenceCount(), 1);
}

TEST(WQXMLEventTest, AListenerMayRemoveTheInsertedNode) {
    auto document = parse("<root/>");
    Ref<WQXMLNode> root = document->documentElement();
    Doing removing([&](const Ref<WQXMLEvent>& event) { root->removeChild(event->target()); });
    document->addListener_forEvent_useCapture(&removing, kInserted, true);
    auto child = root->appendChild(WQXMLElement::newWithName(u"x"));
    ASSERT_TRUE(child);
    EXPECT_EQ(child->nodeName(), u"x");
    EXPECT_FALSE(child->parentNode());
    EXPECT_EQ(child->referenceCount(), 1);
    EXPECT_EQ(dump(document), "root");
}

TEST(WQXMLEventTest, TheDocumentMayDieInAnyEdit) {
    struct Row {
        const char* edit;
        int32_t event;
        std::function<void(const Ref<WQXMLDocument>&)> run;
    };
    // No reference but the one that the listener drops keeps the document.
    const std::vector<Row> rows = {
        {"insertion into the document", kInserted, [](const Ref<WQXMLDocument>& d) { d->appendChild(WQXMLElement::newWithName(u"x")); }},
        {"removal from the document", kRemoved, [](const Ref<WQXMLDocument>& d) { d->removeChild(d->documentElement()); }},
        {"insertion", kInserted, [](const Ref<WQXMLDocument>& d) { d->documentElement()->appendChild(WQXMLElement::newWithName(u"x")); }},
        {"move, removal", kRemoved, [](const Ref<WQXMLDocument>& d) { d->documentElement()->appendChild(find(d, u"a")); }},
        {"move, insertion", kInserted, [](const Ref<WQXMLDocument>& d) { d->documentElement()->appendChild(find(d, u"a")); }},
        {"move ahead of another", kRemoved,
         [](const Ref<WQXMLDocument>& d) { d->documentElement()->insertChild_before(find(d, u"b"), find(d, u"a")); }},
        {"removal", kRemoved, [](const Ref<WQXMLDocument>& d) { d->documentElement()->removeChild(find(d, u"a")); }},
        {"removal of all", kRemoved, [](const Ref<WQXMLDocument>& d) { d->documentElement()->removeChildren(); }},
        {"attribute", 1, [](const Ref<WQXMLDocument>& d) { d->documentElement()->setAttribute_value(u"x", u"1"); }},
        {"text", 2, [](const Ref<WQXMLDocument>& d) { wq::cast<WQXMLText>(find(d, u"a")->firstChild())->appendString(u"x"); }},
        {"split of a text, edit", 2, [](const Ref<WQXMLDocument>& d) { find(d, u"a")->firstChild()->splitAtIndex(1); }},
        {"split of a text, insertion", kInserted, [](const Ref<WQXMLDocument>& d) { find(d, u"a")->firstChild()->splitAtIndex(1); }},
        {"split, insertion", kInserted, [](const Ref<WQXMLDocument>& d) { find(d, u"a")->splitAtIndex(0); }},
        {"split, removal", kRemoved, [](const Ref<WQXMLDocument>& d) { find(d, u"a")->splitAtIndex(0); }},
        {"merge, removal", kRemoved, [](const Ref<WQXMLDocument>& d) { find(d, u"a")->mergeWithNode(find(d, u"b")); }},
        {"merge, insertion", kInserted, [](const Ref<WQXMLDocument>& d) { find(d, u"a")->mergeWithNode(find(d, u"b")); }},
        {"move of all children", kRemoved, [](const Ref<WQXMLDocument>& d) { find(d, u"a")->appendChildrenFromNode(find(d, u"b")); }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.edit);
        auto document = parse("<root><a>text<c/></a><b><d/><e/></b></root>");
        int calls = 0;
        Doing dropping([&](const Ref<WQXMLEvent>&) {
            ++calls;
            document = nullptr;
        });
        document->addListener_forEvent_useCapture(&dropping, row.event, true);
        row.run(document);
        EXPECT_EQ(calls, 1);
        EXPECT_FALSE(document);
    }
}

TEST(WQXMLEventTest, TheReferenceOfAnInsertionMayBeMovedByAListener) {
    auto document = parse("<root><a/><b/><c/></root>");
    Ref<WQXMLNode> root = document->documentElement(), a = find(document, u"a"), b = find(document, u"b"), c = find(document, u"c");
    int calls = 0;
    Doing moving([&](const Ref<WQXMLEvent>&) {
        if (++calls == 1) a->appendChild(c);
    });
    document->addListener_forEvent_useCapture(&moving, kRemoved, true);
    root->insertChild_before(b, c);  // lands beside its reference, wherever that is
    EXPECT_EQ(dump(document), "root[a[b,c]]");
}

TEST(WQXMLEventTest, TheSiblingsOfASplitMayBeRemovedByAListener) {
    auto document = parse("<root><a><b/><c/><d/></a></root>");
    Ref<WQXMLNode> a = find(document, u"a"), c = find(document, u"c");
    int calls = 0;
    Doing removing([&](const Ref<WQXMLEvent>&) {
        if (++calls == 1) a->removeChild(c);
    });
    document->addListener_forEvent_useCapture(&removing, kRemoved, true);
    auto rest = a->splitAtIndex(0);
    EXPECT_EQ(rest->firstChild()->nodeName(), u"b");
    EXPECT_EQ(document->documentElement()->firstChild(), a);
}

TEST(WQXMLEventTest, ATextMayBeRemovedByAListenerOfItsSplit) {
    auto document = parse("<root>hello<b/></root>");
    Ref<WQXMLNode> text = document->documentElement()->firstChild();
    Doing removing([&](const Ref<WQXMLEvent>&) { document->documentElement()->removeChild(text); });
    document->addListener_forEvent_useCapture(&removing, 2, true);
    text->splitAtIndex(2);
    EXPECT_EQ(text->nodeValue(), u"he");
    EXPECT_FALSE(text->parentNode());
}

TEST(WQXMLEventTest, AListenerMayParseOtherDocuments) {
    auto document = parse("<root/>");
    std::vector<std::string> results;
    Doing parsing([&](const Ref<WQXMLEvent>&) {
        results.push_back(dump(parse("<a><b/></a>")));
        results.push_back(raised([] { parse("<a>"); }));
        results.push_back(dump(parseHTML("<p>x")));
    });
    document->addListener_forEvent_useCapture(&parsing, 7, true);
    document->documentElement()->appendChild(document->createElement_namespaceURI(u"p:x", u"urn:p"));
    document->documentElement()->setAttribute_value(u"x", u"1");
    EXPECT_EQ(results.size(), 6u);
    for (size_t i = 0; i < results.size(); i += 3) {
        EXPECT_EQ(results[i], "a[b]");
        EXPECT_EQ(results[i + 1], "XML Exception: Premature end of data in tag a line 1\n");
        EXPECT_EQ(results[i + 2], "html[body[p[\"x\"]]]");
    }
    EXPECT_EQ(dump(document), "root[p:x]");
}

TEST(WQXMLEventTest, AListenerThatBeginsToListenDuringTheRemovalOfAMoveHearsTheInsertion) {
    Tree tree;
    Log late;
    Doing adding([&](const Ref<WQXMLEvent>&) { tree.root->addListener_forEvent_useCapture(&late, kInserted, true); });
    tree.a->addListener_forEvent_useCapture(&adding, kRemoved, true);
    tree.root->appendChild(tree.t);
    EXPECT_THAT(late.heard, ElementsAre("4/1 t<-root"));
}

TEST(WQXMLEventTest, AListenerMayDropTheLastReferenceToTheTargetOfItsDispatch) {
    auto element = WQXMLElement::newWithName(u"a");
    int calls = 0;
    Doing dropping([&](const Ref<WQXMLEvent>& event) {
        ++calls;
        event->setTarget(nullptr);
        element = nullptr;
    });
    element->addListener_forEvent_useCapture(&dropping, kSubtree, false);
    element->dispatchEvent(subtreeModified());
    EXPECT_EQ(calls, 1);
}
