// A text and the attributes of its characters (platform/NSAttributeNames.h). It does not change; the mutable one does.
//
// Attributes hold for runs of characters. Runs with equal attributes that touch are one run, where
// values are compared as NSValue::isEqual does: numbers, strings, colours, fonts, paragraph styles, URLs
// and dictionaries by what they say, other objects by identity. So a run is as long as it can be. The dictionary of
// a run is the text's own, but its values are shared: an object that is changed after it was given makes
// that untrue. A null value is the same as none. All indices and lengths count UTF-16 units.
#pragma once

#include <vector>

#include "platform/NSDictionary.h"
#include "platform/NSTextList.h"

template <class T> class NilAttributedString;

// Operations with an index raise "NSRangeException" for one that is not below the length, and null pointers
// to a range are passed over. Null never raises: it answers null and 0, and sets ranges to {0, 0}.
class NSAttributedString : public wq::Object {
public:
    // The attributes hold for the whole text, as they are now; null is none. Null for a null text.
    template <class T = NSAttributedString>
    static Ref<T> newWithString_attributes(const NSString& text, const Ref<NSDictionary>& attributes) {
        return wq::make<T>(&T::initWithString_attributes, text, attributes);
    }
    template <class T = NSAttributedString>
    static Ref<T> attributedStringWithString_attributes(const NSString& text, const Ref<NSDictionary>& attributes) {
        return newWithString_attributes<T>(text, attributes);
    }
    template <class T = NSAttributedString> static Ref<T> newWithString(const NSString& text) {
        return wq::make<T>(&T::initWithString, text);
    }

    const NSString& string() const { return my.string; }  // the text without attributes
    size_t length() const { return my.string.length(); }  // UTF-16 units

    // The attributes at an index, and the run over which all of them hold. The dictionary is a copy, empty
    // where there are no attributes.
    virtual Ref<NSDictionary> attributesAtIndex_effectiveRange(uint64_t index, NSRange* range) const;
    // As above, the run cut to `limit`. Raises "NSRangeException" also for a limit that reaches past the
    // end, and for an index outside of it.
    virtual Ref<NSDictionary> attributesAtIndex_longestEffectiveRange_inRange(uint64_t index, NSRange* range, NSRange limit) const;

    // One attribute, null where it is absent, and the run, over which the other attributes hold as well.
    virtual NSValue attribute_atIndex_effectiveRange(const NSString& name, uint64_t index, NSRange* range) const;
    // One attribute, and the longest range within `limit` over which it is equal, or absent. Raises as above.
    virtual NSValue attribute_atIndex_longestEffectiveRange_inRange(const NSString& name, uint64_t index, NSRange* range, NSRange limit)
        const;

    // The paragraphs around an index that are in that very list, or in one inside it. A paragraph is in the
    // lists of its first character's style. {NSNotFound, 0} if the paragraph at the index is not in the list.
    virtual NSRange rangeOfTextList_atIndex(const Ref<NSTextList>& list, uint64_t index) const;
    // Which item of the list the index is in, from 1 on. An item is a paragraph whose innermost list this is;
    // paragraphs of lists inside it belong to the item before them. 0 if there is none, and outside of the list.
    virtual long itemNumberInTextList_atIndex(const Ref<NSTextList>& list, uint64_t index) const;

    // A part, with its attributes. Raises "NSRangeException" for a range that reaches past the end.
    virtual Ref<NSAttributedString> attributedSubstringFromRange(NSRange range) const;

    // The same text, and equal attributes for each character. Whether a text can change makes no
    // difference. Null equals nothing.
    bool isEqual(const Ref<wq::Object>& other) const override;

    // ---- For subclasses

    virtual bool initWithString(const NSString& text) { return initWithString_attributes(text, nullptr); }
    virtual bool initWithString_attributes(const NSString& text, const Ref<NSDictionary>& attributes);
    template <class T> using Nil = NilAttributedString<T>;

private:
    friend class NSMutableAttributedString;

    // From its location up to the next run, or to the end. Its dictionary never changes.
    struct Run {
        uint64_t location = 0;
        Ref<NSDictionary> attributes;
    };
    using Runs = std::vector<Run>;  // by location; the first begins at 0, none is empty

    static Ref<NSDictionary> ownAttributes(const Ref<NSDictionary>& attributes);
    Runs::const_iterator runAtIndex(uint64_t index) const;
    NSRange rangeOfRun(Runs::const_iterator run) const;
    void appendRun(uint64_t location, const Ref<NSDictionary>& attributes);
    NSRange paragraphAtIndex(uint64_t index) const;
    const std::vector<Ref<NSTextList>>& textListsAtIndex(uint64_t index) const;

    // The paragraph that was asked for its number last, for whoever asks for one after the other.
    struct NumberedItem {
        const NSTextList* list = nullptr;
        NSRange listRange;
        uint64_t start = 0;
        long number = 0;  // with that of the paragraph itself
    };

    struct {
        NSString string;
        Runs runs;
        mutable NumberedItem lastItem;  // forgotten by every change
    } my;
};

template <class T> class NilAttributedString : public T {
public:
    Ref<NSDictionary> attributesAtIndex_effectiveRange(uint64_t, NSRange* range) const override { return nothing(range); }
    Ref<NSDictionary> attributesAtIndex_longestEffectiveRange_inRange(uint64_t, NSRange* range, NSRange) const override {
        return nothing(range);
    }
    NSValue attribute_atIndex_effectiveRange(const NSString&, uint64_t, NSRange* range) const override { return nothing(range); }
    NSValue attribute_atIndex_longestEffectiveRange_inRange(const NSString&, uint64_t, NSRange* range, NSRange) const override {
        return nothing(range);
    }
    NSRange rangeOfTextList_atIndex(const Ref<NSTextList>&, uint64_t) const override { return {}; }
    long itemNumberInTextList_atIndex(const Ref<NSTextList>&, uint64_t) const override { return 0; }
    Ref<NSAttributedString> attributedSubstringFromRange(NSRange) const override { return nullptr; }
    bool initWithString(const NSString&) override { return false; }
    bool initWithString_attributes(const NSString&, const Ref<NSDictionary>&) override { return false; }

private:
    static std::nullptr_t nothing(NSRange* range) {
        if (range) *range = {};
        return nullptr;
    }
};
