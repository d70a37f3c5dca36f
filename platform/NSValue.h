// One value of a dictionary: null, a boolean, a number, a string, a counted object, or a class.
#pragma once

#include <type_traits>
#include <variant>

#include "platform/NSString.h"
#include "platform/Object.h"

class NSValue {
    using Value = std::variant<std::monostate, bool, double, NSString, Ref<wq::Object>, const wq::Class*>;

public:
    NSValue() = default;  // null
    // The kind that is given; a null pointer, null string or null reference makes the null value.
    NSValue(std::nullptr_t) {}
    template <class B>
    requires std::is_same_v<B, bool> NSValue(B boolean) : value(boolean) {}  // no pointer becomes a boolean
    NSValue(double number) : value(number) {}
    NSValue(NSString string) {
        if (string) value = std::move(string);
    }
    NSValue(const char16_t* literal) : NSValue(NSString(literal)) {}
    template <class T> NSValue(const Ref<T>& object) {
        if (object) value = Ref<wq::Object>(object);
    }
    NSValue(const wq::Class* aClass) : value(aClass ? Value(aClass) : Value()) {}

    explicit operator bool() const noexcept { return value.index() != 0; }  // "is not null", also for false and 0

    // Each answers false, 0 or null if the value is of another kind.
    bool boolean() const { return get<bool>(); }
    double number() const { return get<double>(); }
    NSString string() const { return get<NSString>(); }
    template <class T = wq::Object> Ref<T> object() const { return wq::cast<T>(get<Ref<wq::Object>>()); }
    const wq::Class* classValue() const { return get<const wq::Class*>(); }

    bool operator==(const NSValue&) const = default;  // objects by identity
    // As ==, but objects as their classes compare them.
    bool isEqual(const NSValue& other) const {
        const auto object = get<Ref<wq::Object>>();
        return object ? object->isEqual(other.get<Ref<wq::Object>>()) : *this == other;
    }

private:
    template <class T> T get() const {
        const T* held = std::get_if<T>(&value);
        return held ? *held : T();
    }
    Value value;
};
