// A list of values, for the application.
#pragma once

#include "mac/Frameworks/WQCSS/WQCSSValue.h"

template <class T> class NilValueList;

// Around a value of another kind it is as around none.
class WQCSSValueList : public WQCSSValue {
public:
    // Without members.
    template <class T = WQCSSValueList> static Ref<T> newValueList() { return wq::make<T>(&T::init); }
    virtual bool init();  // around a new, empty list

    size_t length() const;                     // 0 around a value that is no list
    Ref<WQCSSValue> item(size_t index) const;  // a new object around the member; null behind the last

    template <class T> using Nil = NilValueList<T>;

private:
    CSS::ValueList* list() const;
};

template <class T> class NilValueList : public NilCSSValue<T> {
public:
    bool init() override { return false; }
};
