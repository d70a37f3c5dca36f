// A text with attributes to be changed.
#pragma once

#include "platform/NSAttributedString.h"

template <class T> class NilMutableAttributedString;

// What is handed in is taken as it is now. Ranges that reach past the end raise "NSRangeException", and
// the null name of an attribute raises "NSInvalidArgumentException"; nothing changes then. An empty range has
// no attributes to change. Null takes nothing.
class NSMutableAttributedString : public NSAttributedString {
public:
    // As NSAttributedString has them; the text that they make is of this class.
    template <class T = NSMutableAttributedString>
    static Ref<T> newWithString_attributes(const NSString& text, const Ref<NSDictionary>& attributes) {
        return NSAttributedString::newWithString_attributes<T>(text, attributes);
    }
    template <class T = NSMutableAttributedString>
    static Ref<T> attributedStringWithString_attributes(const NSString& text, const Ref<NSDictionary>& attributes) {
        return newWithString_attributes<T>(text, attributes);
    }
    template <class T = NSMutableAttributedString> static Ref<T> newWithString(const NSString& text) {
        return NSAttributedString::newWithString<T>(text);
    }

    // The other text may be this one. Null appends nothing.
    virtual void appendAttributedString(const Ref<NSAttributedString>& other);

    // The new text takes the attributes of the first character that it replaces. Where it replaces none,
    // those of the character before it, at the start those of the first one, and in an empty text none.
    // Null is read as the empty text.
    virtual void replaceCharactersInRange_withString(NSRange range, const NSString& string);
    virtual void deleteCharactersInRange(NSRange range) { replaceCharactersInRange_withString(range, u""); }

    // These attributes and no others; null is none.
    virtual void setAttributes_range(const Ref<NSDictionary>& attributes, NSRange range);
    // Replaces a value of that name; a null value removes it.
    virtual void addAttribute_value_range(const NSString& name, const NSValue& value, NSRange range);
    virtual void removeAttribute_range(const NSString& name, NSRange range);

    template <class T> using Nil = NilMutableAttributedString<T>;

private:
    size_t startRunAtIndex(uint64_t index);
    void joinRuns(size_t first, size_t last);
    template <class Change> void changeAttributesInRange(NSRange range, Change change);
};

template <class T> class NilMutableAttributedString : public NilAttributedString<T> {
public:
    void appendAttributedString(const Ref<NSAttributedString>&) override {}
    void replaceCharactersInRange_withString(NSRange, const NSString&) override {}
    void deleteCharactersInRange(NSRange) override {}
    void setAttributes_range(const Ref<NSDictionary>&, NSRange) override {}
    void addAttribute_value_range(const NSString&, const NSValue&, NSRange) override {}
    void removeAttribute_range(const NSString&, NSRange) override {}
};
