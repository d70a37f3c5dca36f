#include "dom/WQXMLEventListenerData.h"

#include "tests/dom/Support.h"

using namespace test;

TEST(WQXMLEventListenerDataTest, ANewRecordHoldsItsListenerAndHearsNothing) {
    Log listener;
    auto record = WQXMLEventListenerData::newWithListener(&listener);
    ASSERT_TRUE(record);
    EXPECT_EQ(record->listener(), &listener);
    EXPECT_EQ(record->data(), nullptr);
    EXPECT_EQ(record->captureEvents(), 0u);
    EXPECT_EQ(record->events(), 0u);
    EXPECT_TRUE(record->isEmpty());
}

TEST(WQXMLEventListenerDataTest, ARecordMayBeMadeWithoutAListener) {
    auto record = WQXMLEventListenerData::newWithListener(nullptr);
    ASSERT_TRUE(record);
    EXPECT_EQ(record->listener(), nullptr);
    EXPECT_TRUE(record->isEmpty());
}

TEST(WQXMLEventListenerDataTest, EveryFieldHasASetter) {
    Log first, second;
    int bag = 0;
    auto record = WQXMLEventListenerData::newWithListener(&first);
    record->setListener(&second);
    record->setData(&bag);
    record->setCaptureEvents(0x8000000000000001);
    record->setEvents(0x4000000000000002);
    EXPECT_EQ(record->listener(), &second);
    EXPECT_EQ(record->data(), &bag);
    EXPECT_EQ(record->captureEvents(), 0x8000000000000001u);
    EXPECT_EQ(record->events(), 0x4000000000000002u);
    record->setData(nullptr);
    EXPECT_EQ(record->data(), nullptr);
}

TEST(WQXMLEventListenerDataTest, AddEventSetsBitsInTheMaskThatTheFlagNames) {
    auto record = WQXMLEventListenerData::newWithListener(nullptr);
    record->addEvent_useCapture(4, true);
    EXPECT_EQ(record->captureEvents(), 4u);
    EXPECT_EQ(record->events(), 0u);
    record->addEvent_useCapture(8, false);
    EXPECT_EQ(record->captureEvents(), 4u);
    EXPECT_EQ(record->events(), 8u);
    record->addEvent_useCapture(3, true);
    EXPECT_EQ(record->captureEvents(), 7u);
    record->addEvent_useCapture(8, false);
    EXPECT_EQ(record->events(), 8u);
}

TEST(WQXMLEventListenerDataTest, RemoveEventClearsBitsInTheMaskThatTheFlagNames) {
    auto record = WQXMLEventListenerData::newWithListener(nullptr);
    record->setCaptureEvents(14);
    record->setEvents(14);
    record->removeEvent_useCapture(4, true);
    EXPECT_EQ(record->captureEvents(), 10u);
    EXPECT_EQ(record->events(), 14u);
    record->removeEvent_useCapture(10, false);
    EXPECT_EQ(record->captureEvents(), 10u);
    EXPECT_EQ(record->events(), 4u);
    record->removeEvent_useCapture(16, false);
    EXPECT_EQ(record->events(), 4u);
}

TEST(WQXMLEventListenerDataTest, ARecordIsEmptyWhenBothMasksAre) {
    struct Row {
        uint64_t captureEvents, events;
        bool empty;
    };
    for (const Row& row :
         {Row{0, 0, true}, Row{1, 0, false}, Row{0, 1, false}, Row{4, 8, false}, Row{0x8000000000000000, 0, false},
          Row{0, 0x100000000, false}}) {
        SCOPED_TRACE(testing::Message() << row.captureEvents << " " << row.events);
        auto record = WQXMLEventListenerData::newWithListener(nullptr);
        record->setCaptureEvents(row.captureEvents);
        record->setEvents(row.events);
        EXPECT_EQ(record->isEmpty(), row.empty);
    }
}

TEST(WQXMLEventListenerDataTest, TheHighestBitCanBeAddedAndRemoved) {
    auto record = WQXMLEventListenerData::newWithListener(nullptr);
    for (const bool capture : {true, false}) {
        SCOPED_TRACE(capture);
        record->addEvent_useCapture(INT32_MIN, capture);
        EXPECT_NE((capture ? record->captureEvents() : record->events()) & 0x80000000u, 0u);
        EXPECT_EQ((capture ? record->captureEvents() : record->events()) & 0x7fffffffu, 0u);
        EXPECT_FALSE(record->isEmpty());
        record->removeEvent_useCapture(INT32_MIN, capture);
        EXPECT_TRUE(record->isEmpty());
    }
}

TEST(WQXMLEventListenerDataTest, AllBitsCanBeAddedAndRemovedAtOnce) {
    auto record = WQXMLEventListenerData::newWithListener(nullptr);
    record->addEvent_useCapture(-1, false);
    EXPECT_EQ(record->events() & 0xffffffffu, 0xffffffffu);
    record->removeEvent_useCapture(-1, false);
    EXPECT_TRUE(record->isEmpty());
}
