// The counted objects of the CSS engine and the pointer that holds them.
//
// Counts are plain integers: objects of the engine belong to one thread at a time. There is no weak
// form and no separate control block.
#pragma once

#include <cstdint>

#include "common/core/include/HardAssertion.h"

// A new object has a count of 0 and belongs to nobody until the first SharedPtr takes it. One that
// no SharedPtr ever holds, on the stack or as a member, keeps 0 and is destroyed directly.
class SharedObject {
public:
    SharedObject() = default;
    SharedObject(const SharedObject&) : refCount(0) {}              // a copy is a new object
    SharedObject& operator=(const SharedObject&) { return *this; }  // both keep their counts
    virtual ~SharedObject() { WQ_HARD_ASSERT_ALWAYS("common/core/include/Shared", "~SharedObject", refCount == 0); }

    int32_t refCount = 0;  // how many SharedPtr values point here
};

// One count of an object, or null. Whoever gives up the last one deletes the object.
template <class T> class SharedPtr {
public:
    SharedPtr() = default;
    // Takes a count, unless it is null.
    SharedPtr(T* target) : pointer(target) { retain(); }
    SharedPtr(const SharedPtr& other) : pointer(other.pointer) { retain(); }
    ~SharedPtr() { release(); }

    // The old object goes before the new one is counted, and `other` is read after that: destroying
    // the old object may change what `other` holds.
    SharedPtr& operator=(const SharedPtr& other) {
        if (pointer == other.pointer) return *this;
        release();
        pointer = other.pointer;
        retain();
        return *this;
    }

    // The object, not counted; null for null. Unlike a Ref, a null pointer must not be followed.
    T* Get() const { return pointer; }
    T* operator->() const { return pointer; }
    T& operator*() const { return *pointer; }
    explicit operator bool() const { return pointer != nullptr; }

private:
    void retain() {
        if (pointer) ++pointer->refCount;
    }
    void release() {
        if (pointer && --pointer->refCount == 0) delete pointer;
    }
    T* pointer = nullptr;
};
static_assert(sizeof(SharedPtr<SharedObject>) == sizeof(void*));
