// Counted objects, the reference that holds them, the class as a value, and the null object.
//
// Everything here belongs to one thread: counts are plain integers. This header knows no class
// above it. A class takes part by deriving from wq::Object; if an object without data would answer
// wrongly for null, it also names its null object (see Object::Nil).
#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <type_traits>
#include <typeinfo>
#include <utility>

#include "platform/NSString.h"
#include "platform/Slab.h"

// What the object layer stands on: counted objects, assertions, the log, and the crossings of strings to UTF-8.
namespace wq {

class Object;
template <class T> class Ref;

// A class as a value: what a map of element classes names, and what a copy is made of.
// There is one descriptor for each class, made by its first use and never destroyed; compare
// descriptors by address.
class Class {
public:
    template <class T> static const Class& of();  // that of T, which has a default constructor
    // The class that `object` was made with; null for an object that no Class made.
    static const Class* of(const Object& object);

    // A new object that is not yet initialised. Its count is 1 and belongs to the caller.
    Object* make() const;
    uint16_t number() const noexcept { return index; }  // from 1 up, in the order of first use

private:
    using Maker = Object* (*)();
    explicit Class(Maker newObject);
    Maker maker;
    uint16_t index;
};

// Base of every class of the object layer.
class Object {
public:
    Object() noexcept { objectIsBorn(); }
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    // Adds a count, to be given up by release or drop. A Ref does both by itself.
    void retain() noexcept { ++count; }

    // Gives one count up. The last one tears the object down, which may raise (see
    // dom/WQXMLNode.h); an object whose teardown raises may live on.
    void release() {
        if (--count == 0 && !(flags & kDying)) teardown();
    }

    // As release, for destructors: what teardown raises ends the process.
    void drop() noexcept { release(); }

    // True for the one object that stands behind every null Ref of a class.
    bool isNil() const noexcept { return flags & kNil; }
    int32_t referenceCount() const noexcept { return count; }  // for tests and debugging

    // "<ClassName: 0x...>". Null: null, which prints as "(null)".
    virtual NSString description() const;

    // Whether both stand for the same value. An object is the same as itself alone, unless its class
    // says otherwise. Null equals nothing.
    virtual bool isEqual(const Ref<Object>& other) const;

    static void* operator new(size_t size) { return allocateSmall(size); }                        // see platform/Slab.h
    static void operator delete(void* memory, size_t size) noexcept { freeSmall(memory, size); }  // likewise

    // The class of the null object. A class whose null object needs no override says nothing; one
    // that needs some has `template <class T> using Nil = NilThing<T>;`, inherited by subclasses.
    template <class T> using Nil = T;

protected:
    virtual ~Object() { objectDies(); }
    // What giving up the last count calls; it deletes the object, in overrides too. One that takes and gives up counts
    // on its way sets kDying first, so that it is not called again.
    virtual void teardown() { delete this; }

    // Bits from 16 up are free for derived classes.
    enum Flag : uint8_t { kNil = 1, kDying = 2 };
    int32_t count = 0;        // a new object belongs to nobody
    uint16_t classIndex = 0;  // of the Class that made it; 0 for none
    uint8_t flags = 0;        // bits of Flag

private:
    friend class Class;
    template <class T> friend T* nil();
    template <class T> friend T* immortal();

#ifdef WQ_COUNT_OBJECTS
    static inline int64_t living = 0;
    static void objectIsBorn() noexcept { ++living; }
    static void objectDies() noexcept { --living; }
    static void objectIsImmortal() noexcept { --living; }

public:
    // How many counted objects live, null and immortal ones left out. In test builds only.
    static int64_t numberOfLivingObjects() noexcept { return living; }
#else
    static void objectIsBorn() noexcept {}
    static void objectDies() noexcept {}
    static void objectIsImmortal() noexcept {}
#endif
};

// The null object of T: one instance, made by the first use and never destroyed. T must have a
// default constructor and must not be final.
template <class T> [[gnu::cold, gnu::noinline]] T* nil() {
    using Instance = typename T::template Nil<T>;
    static T* const instance = [] {
        alignas(Instance) static unsigned char storage[sizeof(Instance)];
        T* object = ::new (static_cast<void*>(storage)) Instance;
        object->flags |= Object::kNil;
        Object::objectIsImmortal();
        return object;
    }();
    return instance;
}

// A new object that lives as long as the process, for a static variable: one count of it is never
// given up, and it is left out of the number of living objects.
template <class T> T* immortal() {
    T* object = new T;
    object->retain();
    Object::objectIsImmortal();
    return object;
}

// A counted reference, one pointer wide. `->` on null reaches the null object of T, so a chain of
// queries needs no test on the way; `get`, `==` and a condition see null. The null object never
// gets into a Ref: a Ref made from its address is null.
template <class T> class Ref {
public:
    Ref() noexcept = default;
    Ref(std::nullptr_t) noexcept {}  // null
    // Takes a count of the target.
    explicit Ref(T* target) noexcept : object(target && !target->isNil() ? target : nullptr) {
        if (object) object->retain();
    }
    // Copies take a count. Moves take over that of `other`, which is null afterwards.
    Ref(const Ref& other) noexcept : object(other.object) {
        if (object) object->retain();
    }
    Ref(Ref&& other) noexcept : object(std::exchange(other.object, nullptr)) {}
    // From a reference to a derived class, in the same way.
    template <class U>
    requires std::is_convertible_v<U*, T*> Ref(const Ref<U>& other)
    noexcept : object(other.get()) {
        if (object) object->retain();
    }
    template <class U>
    requires std::is_convertible_v<U*, T*> Ref(Ref<U>&& other)
    noexcept : object(other.leak()) {}
    ~Ref() {
        if (object) object->drop();
    }
    // The old count is given up when this reference has the new object already.
    Ref& operator=(Ref other) noexcept {
        std::swap(object, other.object);
        return *this;
    }

    // Takes over a count that the caller holds.
    static Ref adopt(T* owned) noexcept {
        Ref result;
        result.object = owned;
        return result;
    }
    // Hands the count on to the caller, and is null afterwards.
    T* leak() noexcept { return std::exchange(object, nullptr); }
    // Lets go. The way to do it where teardown may raise.
    void reset() {
        if (T* old = leak()) old->release();
    }

    T* get() const noexcept { return object; }                    // not counted; null for null
    T* operator->() const { return object ? object : nil<T>(); }  // never null
    explicit operator bool() const noexcept { return object; }    // false for null alone
    // Whether both are the same object, or null; isEqual compares values.
    template <class U> bool operator==(const Ref<U>& other) const noexcept { return object == other.get(); }
    bool operator==(const Object* other) const noexcept { return object == other; }
    bool operator==(std::nullptr_t) const noexcept { return !object; }

private:
    T* object = nullptr;
};
static_assert(sizeof(Ref<Object>) == sizeof(void*));

// The object seen as one of a derived class; null if it is not of that class. Most are of that very class, which
// is seen without a search.
template <class T, class U> T* cast(U* object) noexcept {
    if constexpr (requires { static_cast<T*>(object); })
        if (object && &typeid(*object) == &typeid(T)) return static_cast<T*>(object);
    return dynamic_cast<T*>(object);
}
template <class T, class U> Ref<T> cast(const Ref<U>& object) { return Ref<T>(cast<T>(object.get())); }

// make<T>(&T::initWithName, name): a new object of class T, initialised; null if the initialiser
// answers false. With `made`, the class is taken at run time ("of the receiver's class"); it must be
// T or derived from it.
template <class T, class B, class... P, class... A> Ref<T> make(const Class& made, bool (B::*init)(P...), A&&... arguments) {
    auto result = Ref<T>::adopt(static_cast<T*>(made.make()));
    return (result.get()->*init)(std::forward<A>(arguments)...) ? result : nullptr;
}
template <class T, class B, class... P, class... A> Ref<T> make(bool (B::*init)(P...), A&&... arguments) {
    return make<T>(Class::of<T>(), init, std::forward<A>(arguments)...);
}

template <class T> const Class& Class::of() {
    static const Class instance([]() -> Object* { return new T; });
    return instance;
}

}  // namespace wq

using wq::Ref;
