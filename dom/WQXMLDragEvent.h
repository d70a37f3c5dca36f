// An event of a drag session. The application makes and dispatches it; no edit does.
#pragma once

#include "dom/WQXMLEvent.h"

class NSDraggingInfo;
template <class T> class NilDragEvent;

class WQXMLDragEvent : public WQXMLEvent {
public:
    // `type` is an event bit of the caller's choice. Does not bubble and cannot be cancelled.
    static Ref<WQXMLDragEvent> dragEventWithTarget_type_info(const Ref<WQXMLNode>& target, int32_t type, NSDraggingInfo* info);

    // Not kept alive.
    NSDraggingInfo* draggingInfo() const { return my.draggingInfo; }
    virtual void setDraggingInfo(NSDraggingInfo* info) { my.draggingInfo = info; }

    template <class T> using Nil = NilDragEvent<T>;

private:
    struct {
        NSDraggingInfo* draggingInfo = nullptr;
    } my;
};

template <class T> class NilDragEvent : public NilEvent<T> {
public:
    void setDraggingInfo(NSDraggingInfo*) override {}
};
