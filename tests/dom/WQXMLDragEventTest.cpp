#include "dom/WQXMLDragEvent.h"

#include "platform/NSDraggingInfo.h"
#include "tests/dom/Support.h"

using namespace test;

namespace {

constexpr int32_t kDrop = 1 << 20;

struct Session : NSDraggingInfo {};

// Writes down the phase and the drag session of what it hears.
struct DropTarget : WQXMLEventListener {
    void handleEvent(const Ref<WQXMLEvent>& event) override {
        phases.push_back(event->phase());
        sessions.push_back(wq::cast<WQXMLDragEvent>(event)->draggingInfo());
    }
    std::vector<int32_t> phases;
    std::vector<NSDraggingInfo*> sessions;
};

}  // namespace

TEST(WQXMLDragEventTest, TheFactoryTakesTheCallersTypeAndNeitherBubblesNorCancels) {
    Session session;
    auto document = parse("<a/>");
    Ref<WQXMLNode> root = document->documentElement();
    auto event = WQXMLDragEvent::dragEventWithTarget_type_info(root, kDrop, &session);
    ASSERT_TRUE(event);
    EXPECT_EQ(event->target(), root);
    EXPECT_EQ(event->eventID(), kDrop);
    EXPECT_EQ(event->draggingInfo(), &session);
    EXPECT_EQ(event->phase(), 0);
    EXPECT_FALSE(event->stopPropagation());
    EXPECT_FALSE(event->preventDefault());
    EXPECT_FALSE(event->canBubble());
    EXPECT_FALSE(event->canCancel());
}

TEST(WQXMLDragEventTest, AnyTypeIsStoredAsItIs) {
    for (const int32_t type : {0, 1, 4, 32, 1 << 30, INT32_MIN, -1, INT32_MAX}) {
        SCOPED_TRACE(type);
        EXPECT_EQ(WQXMLDragEvent::dragEventWithTarget_type_info(nullptr, type, nullptr)->eventID(), type);
    }
}

TEST(WQXMLDragEventTest, TheDraggingInfoCanBeReplaced) {
    Session first, second;
    auto event = WQXMLDragEvent::dragEventWithTarget_type_info(nullptr, kDrop, &first);
    event->setDraggingInfo(&second);
    EXPECT_EQ(event->draggingInfo(), &second);
    event->setDraggingInfo(nullptr);
    EXPECT_EQ(event->draggingInfo(), nullptr);
}

TEST(WQXMLDragEventTest, ADragEventMadeByHandStartsEmpty) {
    auto event = wq::make<WQXMLDragEvent>(&WQXMLDragEvent::init);
    EXPECT_EQ(event->draggingInfo(), nullptr);
    EXPECT_EQ(event->eventID(), 0);
    EXPECT_FALSE(event->target());
    EXPECT_FALSE(event->canBubble());
    EXPECT_FALSE(event->canCancel());
}

TEST(WQXMLDragEventTest, ADragIsHeardWhileCapturingAndAtTheTargetAndDoesNotBubble) {
    Session session;
    auto document = parse("<a><b/></a>");
    Ref<WQXMLNode> target = find(document, u"b");
    DropTarget capturing, atTarget, bubbling;
    document->addListener_forEvent_useCapture(&capturing, kDrop, true);
    target->addListener_forEvent_useCapture(&atTarget, kDrop, false);
    document->documentElement()->addListener_forEvent_useCapture(&bubbling, kDrop, false);
    auto event = WQXMLDragEvent::dragEventWithTarget_type_info(target, kDrop, &session);
    EXPECT_FALSE(target->dispatchEvent(event));
    EXPECT_THAT(capturing.phases, testing::ElementsAre(1));
    EXPECT_THAT(atTarget.phases, testing::ElementsAre(2));
    EXPECT_THAT(atTarget.sessions, testing::ElementsAre(&session));
    EXPECT_THAT(bubbling.phases, testing::IsEmpty());
    EXPECT_EQ(event->phase(), 2);
}

TEST(WQXMLDragEventTest, ADragThatIsToldToBubbleDoes) {
    auto document = parse("<a><b/></a>");
    DropTarget bubbling;
    document->documentElement()->addListener_forEvent_useCapture(&bubbling, kDrop, false);
    auto event = WQXMLDragEvent::dragEventWithTarget_type_info(nullptr, kDrop, nullptr);
    event->setCanBubble(true);
    find(document, u"b")->dispatchEvent(event);
    EXPECT_THAT(bubbling.phases, testing::ElementsAre(3));
}

TEST(WQXMLDragEventTest, AListenerOfAnotherTypeHearsNoDrag) {
    auto document = parse("<a/>");
    Ref<WQXMLNode> root = document->documentElement();
    DropTarget other;
    root->addListener_forEvent_useCapture(&other, 31 | (kDrop << 1), false);
    root->dispatchEvent(WQXMLDragEvent::dragEventWithTarget_type_info(root, kDrop, nullptr));
    EXPECT_THAT(other.phases, testing::IsEmpty());
}

TEST(WQXMLDragEventTest, TheTopmostBitServesAsAType) {
    auto document = parse("<a><b/></a>");
    Ref<WQXMLNode> target = find(document, u"b");
    DropTarget capturing, atTarget, other;
    document->addListener_forEvent_useCapture(&capturing, INT32_MIN, true);
    target->addListener_forEvent_useCapture(&atTarget, INT32_MIN, false);
    target->addListener_forEvent_useCapture(&other, INT32_MAX, false);
    target->dispatchEvent(WQXMLDragEvent::dragEventWithTarget_type_info(target, INT32_MIN, nullptr));
    EXPECT_THAT(capturing.phases, testing::ElementsAre(1));
    EXPECT_THAT(atTarget.phases, testing::ElementsAre(2));
    EXPECT_THAT(other.phases, testing::IsEmpty());
}

TEST(WQXMLDragEventTest, ADragTellsWhetherAListenerPreventedTheDefault) {
    struct Refuse : WQXMLEventListener {
        void handleEvent(const Ref<WQXMLEvent>& event) override { event->setPreventDefault(true); }
    } refuse;
    auto document = parse("<a/>");
    Ref<WQXMLNode> root = document->documentElement();
    root->addListener_forEvent_useCapture(&refuse, kDrop, false);
    EXPECT_TRUE(root->dispatchEvent(WQXMLDragEvent::dragEventWithTarget_type_info(root, kDrop, nullptr)));
}
