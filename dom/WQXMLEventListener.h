// What hears events. Not counted and not an Object: whatever the application likes can listen.
#pragma once

#include "platform/Object.h"

class WQXMLEvent;

class WQXMLEventListener {
public:
    // Runs inside the edit that fired the event. What it raises leaves that edit. One that removes itself makes the next
    // record of that node be passed over.
    virtual void handleEvent(const Ref<WQXMLEvent>& event) = 0;

protected:
    virtual ~WQXMLEventListener() = default;
};
