// An event on its way along the ancestors of a node.
//
// Edits of the tree fire these, named by their bit:
//     1  attribute modified       after    WQXMLMutationEvent
//     2  characters modified      after    WQXMLMutationEvent
//     4  node inserted            after    WQXMLMutationEvent
//     8  node removed             before   WQXMLMutationEvent
//    16  subtree modified         fired by applications only
// Drag events have bits of the application's choice (WQXMLDragEvent).
//
// Dispatch differs from the DOM's: the bubble phase runs from the top of the tree down, like the
// capture phase; capture listeners on the target itself are never called; the result of
// dispatchEvent is true where a listener asked to prevent the default. Edits ignore that result.
#pragma once

#include <cstdint>

#include "dom/WQXMLNode.h"

template <class T> class NilEvent;

class WQXMLEvent : public wq::Object {
public:
    // No bit, no target, and without the bubble phase.
    static Ref<WQXMLEvent> newEvent();

    // The node that the event is dispatched on; dispatch sets it.
    const Ref<WQXMLNode>& target() const { return my.target; }
    virtual void setTarget(const Ref<WQXMLNode>& target) { my.target = target; }
    // Its bit, one of those above or of the application's choice.
    int32_t eventID() const { return my.eventID; }
    virtual void setEventID(int32_t eventID) { my.eventID = eventID; }
    // 0 before dispatch, 1 capture, 2 at the target, 3 bubbling; keeps its last value.
    int32_t phase() const { return my.phase; }
    virtual void setPhase(int32_t phase) { my.phase = phase; }
    // Set by a listener: no further node hears the event. The others on its own node still do.
    bool stopPropagation() const { return my.stopPropagation; }
    virtual void setStopPropagation(bool stop) { my.stopPropagation = stop; }
    // Set by a listener: what dispatchEvent answers, also where canCancel is false.
    bool preventDefault() const { return my.preventDefault; }
    virtual void setPreventDefault(bool prevent) { my.preventDefault = prevent; }
    bool canBubble() const { return my.canBubble; }  // whether the bubble phase runs
    virtual void setCanBubble(bool can) { my.canBubble = can; }
    bool canCancel() const { return my.canCancel; }  // stored only
    virtual void setCanCancel(bool can) { my.canCancel = can; }

    // For subclasses.
    virtual bool init() { return true; }
    template <class T> using Nil = NilEvent<T>;

private:
    struct {
        Ref<WQXMLNode> target;
        int32_t eventID = 0;
        int32_t phase = 0;
        bool stopPropagation = false;
        bool preventDefault = false;
        bool canBubble = false;
        bool canCancel = false;
    } my;
};

template <class T> class NilEvent : public T {
public:
    void setTarget(const Ref<WQXMLNode>&) override {}
    void setEventID(int32_t) override {}
    void setPhase(int32_t) override {}
    void setStopPropagation(bool) override {}
    void setPreventDefault(bool) override {}
    void setCanBubble(bool) override {}
    void setCanCancel(bool) override {}
    bool init() override { return false; }
};
