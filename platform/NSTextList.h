// The list that paragraphs are items of. A list does not change; it is told from its neighbour by its address alone.
#pragma once

#include "platform/Object.h"

template <class T> class NilTextList;

class NSTextList : public wq::Object {
public:
    // A format is a text around one keyword in braces: "{disc}", "({lower-alpha})". Null for the null format.
    template <class T = NSTextList> static Ref<T> newWithMarkerFormat(const NSString& format) {
        return wq::make<T>(&T::initWithMarkerFormat, format);
    }
    template <class T = NSTextList> static Ref<T> textListWithMarkerFormat(const NSString& format) {
        return newWithMarkerFormat<T>(format);
    }

    // As it was given.
    const NSString& markerFormat() const { return my.markerFormat; }

    // The format with the marker of that number in place of the first keyword and its braces; without
    // any braces the format itself. An unknown keyword stands for itself, and a brace that is not
    // closed reaches to the end. Null: null.
    //
    //     disc circle square box check diamond hyphen     a sign, the same for every number
    //     decimal octal lower- upper-hexadecimal          digits, behind a minus sign below 0
    //     lower- upper-alpha, lower- upper-latin          a to z, aa, ab; decimal below 1
    //     lower- upper-roman                              decimal below 1 and beyond 3999
    NSString markerForItemNumber(long number) const;

    // ---- For subclasses

    virtual bool initWithMarkerFormat(const NSString& format);
    template <class T> using Nil = NilTextList<T>;

private:
    struct {
        NSString markerFormat;
    } my;
};

template <class T> class NilTextList : public T {
public:
    bool initWithMarkerFormat(const NSString&) override { return false; }
};
