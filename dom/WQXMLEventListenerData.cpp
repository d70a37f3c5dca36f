#include "dom/WQXMLEventListenerData.h"

Ref<WQXMLEventListenerData> WQXMLEventListenerData::newWithListener(WQXMLEventListener* listener) {
    return wq::make<WQXMLEventListenerData>(&WQXMLEventListenerData::initWithListener, listener);
}

bool WQXMLEventListenerData::initWithListener(WQXMLEventListener* listener) {
    my.listener = listener;
    return true;
}

void WQXMLEventListenerData::addEvent_useCapture(int32_t event, bool capture) {
    const auto bits = static_cast<uint64_t>(event);
    capture ? setCaptureEvents(my.captureEvents | bits) : setEvents(my.events | bits);
}

void WQXMLEventListenerData::removeEvent_useCapture(int32_t event, bool capture) {
    const auto bits = static_cast<uint64_t>(event);
    capture ? setCaptureEvents(my.captureEvents & ~bits) : setEvents(my.events & ~bits);
}

bool WQXMLEventListenerData::isEmpty() const { return !isNil() && my.captureEvents == 0 && my.events == 0; }
