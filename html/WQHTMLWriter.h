// Styled text as HTML: paragraphs, lists, links and spans, written to an XML writer.
//
// Only body content: the document and whatever stands around is the caller's. All styling is in `style` attributes, each
// of which says what differs from the element around it; there is no class and no style sheet.
#pragma once

#include <array>
#include <vector>

#include "dom/WQXMLWriter.h"
#include "mac/Frameworks/WQCSS/WQCSSMutableStyleDeclaration.h"
#include "platform/NSAttributedString.h"
#include "platform/NSDictionary.h"
#include "platform/NSURL.h"

template <class T> class NilHTMLWriter;

// A writer can be used again; prefix, namespace and base stay. What a text, a writer or a link raises leaves it in the
// middle of its work: such a writer is not used again.
//
//   - A paragraph is a "p"; its attributes are those of its first character. Its terminator is not written.
//   - A run that differs from its paragraph is a "span"; a run with a link is an "a", with spans inside.
//   - A list is a "ul", also a numbered one, which "list-style-type" tells; its items are "li", without a style of
//     their own. A deeper list is a "ul" right among them. A marker that stands in the text between two tabs is not
//     written.
//   - The dynamic colour of text is written as black.
//
// Numbers are written with six digits, those from 999999.5 on and those below 0.0001 with an exponent, which the engine
// does not read. A list format with empty braces is an empty value of "list-style-type", a syntax error of the engine: it
// ends the process in the default build, and costs that list's style without hard assertions. So is the family of a font that is
// no name of CSS, as "3M", and one with a quote in it is cut. Attributes that a style made always say "line-height: 0".
class WQHTMLWriter : public wq::Object {
public:
    // A writer without prefix, namespace and base.
    template <class T = WQHTMLWriter> static Ref<T> newHTMLWriter() { return wq::make<T>(&T::init); }
    virtual bool init();

    // What links are made relative to; null writes them absolute.
    const Ref<NSURL>& baseURL() const { return my.baseURL; }
    virtual void setBaseURL(const Ref<NSURL>& url) { my.baseURL = url; }

    // Of all elements; a null namespace, as at first, is none.
    virtual void setPrefix(const NSString& prefix) { my.prefix = prefix; }
    virtual void setNamespaceURI(const NSString& uri) { my.namespaceURI = uri; }

    // Writes a text, below an element that has the base attributes. A link that is no URL is an assertion of the writer;
    // if that returns, what comes next in the link is written into its "href", which is still open.
    virtual void encodeAttributedString_withWriter_baseAttributes(
        const Ref<NSAttributedString>& string,
        const Ref<WQXMLWriter>& writer,
        const Ref<NSDictionary>& baseAttributes);

    // The same below an element in the user's font at 12 points and the default paragraph style.
    void encodeAttributedString_withWriter(const Ref<NSAttributedString>& string, const Ref<WQXMLWriter>& writer);

    template <class T> using Nil = NilHTMLWriter<T>;

protected:
    // ---- Steps, for subclasses. Each writes what begins at the location of its range, and answers the index behind that;
    // NSNotFound, if it did nothing. The list at a location is written from its first item on. One list object at two
    // depths of the same text cannot be written as one: its paragraphs come again, outside of it.

    virtual uint64_t encodeBlocksInRange(NSRange range);
    virtual uint64_t encodeParagraphInRange(NSRange range);
    virtual uint64_t encodeListInRange(NSRange range);
    virtual uint64_t encodeInlinesInRange(NSRange range);
    virtual uint64_t encodeLinkInRange(NSRange range);
    virtual uint64_t encodeSpanInRange(NSRange range);

    // What the steps write to; null behind an encoding. Until the next call, what attributes say is read once: a font or
    // paragraph style that changes is read anew behind it.
    void setWriter(const Ref<WQXMLWriter>& writer) {
        my.writer = writer;
        said.clear();
    }
    // Kept without a count, and not forgotten afterwards.
    void setSourceString(const NSAttributedString* string) { my.sourceString = string; }
    // With the prefix and the namespace of all elements.
    void startElement(const NSString& name);

    Ref<WQCSSMutableStyleDeclaration> parentStyle() const;  // of the element around; a new one at each call
    // Of the element around: the last one pushed. To pop answers it and takes it away; null if there is none.
    Ref<NSDictionary> parentAttributes() const;
    void pushParentAttributes(const Ref<NSDictionary>& attributes);
    Ref<NSDictionary> popParentAttributes();

    // The keyword in the braces of a list's marker format; null without braces.
    static NSString listStyleForList(const Ref<NSTextList>& list);

    // The settings, and what an encoding keeps on its way; a step changes it by the operations above.
    struct {
        Ref<WQXMLWriter> writer;  // during an encoding
        const NSAttributedString* sourceString = nullptr;
        std::vector<Ref<NSDictionary>> attributeStack;  // of the elements around, the innermost last
        NSString prefix;
        NSString namespaceURI;
        uint64_t listLevel = 0;  // how many lists are open
        Ref<NSURL> baseURL;
    } my;

private:
    // What attributes say about style, each compared by identity, and the declaration of that, which is not to be changed.
    struct Said {
        std::array<NSValue, 4> values;
        Ref<WQCSSMutableStyleDeclaration> style;
    };
    const Ref<WQCSSMutableStyleDeclaration>& styleSaidBy(const Ref<NSDictionary>& attributes) const;

    uint64_t encodeItemInRange(const Ref<NSTextList>& list, NSRange range);
    void writeStyle(const Ref<WQCSSMutableStyleDeclaration>& style);
    std::vector<Ref<NSTextList>> textListsAtIndex(uint64_t index) const;

    // The latest last: the runs of a text go back and forth between a few.
    mutable std::vector<Said> said;
};

template <class T> class NilHTMLWriter : public T {
public:
    bool init() override { return false; }
    void setBaseURL(const Ref<NSURL>&) override {}
    void setPrefix(const NSString&) override {}
    void setNamespaceURI(const NSString&) override {}
    void encodeAttributedString_withWriter_baseAttributes(const Ref<NSAttributedString>&, const Ref<WQXMLWriter>&, const Ref<NSDictionary>&)
        override {}
};
