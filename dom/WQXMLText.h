// A text.
#pragma once

#include "dom/WQXMLCharacterData.h"

class WQXMLText : public WQXMLCharacterData {
public:
    // ---- Making one: without a document and without a parent, the caller's alone

    template <class T = WQXMLText> static Ref<T> newWithString(const NSString& string) { return wq::make<T>(&T::initWithString, string); }
    template <class T = WQXMLText> static Ref<T> textWithString(const NSString& string) { return newWithString<T>(string); }
    template <class T = WQXMLText> static Ref<T> text() { return wq::make<T>(&T::init); }  // without content

    NSString nodeName() const override { return u"#text"; }  // Null: null
    NSString nodeValue() const override { return string(); }
    bool normalized() const noexcept { return flags & kNormalized; }

    // Moves the text from `index` on into a new text of the same class behind this one. Fires 2 for
    // the shortened text, then 4. Answers the new text; null, and nothing changes, for an index
    // past the end and for a text without a parent.
    Ref<WQXMLNode> splitAtIndex(uint64_t index) override;

    // Names no document.
    Ref<WQXMLNode> copyWithZone() const override;

    // ---- For subclasses

    virtual bool init() { return initWithString(nullptr); }
    // Asserts "Could not create node"; false then.
    virtual bool initWithString(const NSString& string);
};
static_assert(sizeof(WQXMLText) == 32);
