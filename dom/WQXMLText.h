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
    bool normalized() const noexcept { return flags & kNormalized; }  // normalizeContent has run
    // Blanks, tabs and line ends, or nothing at all. False for a dead text.
    bool isWhitespace() const;

    // Moves the text from `index` on into a new text of the same class behind this one. Fires 2 for
    // the shortened text, then 4. Answers the new text; null, and nothing changes, for an index
    // past the end and for a text without a parent.
    Ref<WQXMLNode> splitAtIndex(uint64_t index) override;

    // Collapses white space in place, once: later calls do nothing, even after an edit. Line feed, form
    // feed and carriage return vanish, and words that only they divide are joined: wanted. Each run of
    // blanks and tabs becomes one blank. At the start white space goes altogether if the text has no
    // previous sibling, or is nothing else. Where "xml:space" preserves it, the text stays. Fires nothing.
    void normalizeContent();

    // Names no document, and is not `normalized`.
    Ref<WQXMLNode> copyWithZone() const override;

    // Escaped if an element is open in the writer. Asserts "Could not encode text node".
    void encodeWithWriter(const Ref<WQXMLWriter>& writer) const override;

    // ---- For subclasses

    virtual bool init() { return initWithString(nullptr); }
    // Asserts "Could not create node"; false then.
    virtual bool initWithString(const NSString& string);
};
static_assert(sizeof(WQXMLText) == 32);
