// The record of one listener on one node.
#pragma once

#include <cstdint>

#include "platform/Object.h"

class WQXMLEventListener;
template <class T> class NilEventListenerData;

class WQXMLEventListenerData : public wq::Object {
public:
    // A record that hears nothing yet.
    static Ref<WQXMLEventListenerData> newWithListener(WQXMLEventListener* listener);
    virtual bool initWithListener(WQXMLEventListener* listener);

    // Not kept alive: a listener is removed before it dies.
    WQXMLEventListener* listener() const { return my.listener; }
    virtual void setListener(WQXMLEventListener* listener) { my.listener = listener; }
    // The caller's own; the library only stores it.
    void* data() const { return my.data; }
    virtual void setData(void* data) { my.data = data; }
    // Masks of event bits: heard while capturing, and at the target and while bubbling.
    uint64_t captureEvents() const { return my.captureEvents; }
    virtual void setCaptureEvents(uint64_t mask) { my.captureEvents = mask; }
    uint64_t events() const { return my.events; }
    virtual void setEvents(uint64_t mask) { my.events = mask; }

    // Put bits into one of the masks, and take them out: with `capture` the one for capturing.
    void addEvent_useCapture(int32_t event, bool capture);
    void removeEvent_useCapture(int32_t event, bool capture);
    bool isEmpty() const;  // hears nothing. Null: false

    template <class T> using Nil = NilEventListenerData<T>;

private:
    struct {
        WQXMLEventListener* listener = nullptr;
        void* data = nullptr;
        uint64_t captureEvents = 0;
        uint64_t events = 0;
    } my;
};

template <class T> class NilEventListenerData : public T {
public:
    bool initWithListener(WQXMLEventListener*) override { return false; }
    void setListener(WQXMLEventListener*) override {}
    void setData(void*) override {}
    void setCaptureEvents(uint64_t) override {}
    void setEvents(uint64_t) override {}
};
