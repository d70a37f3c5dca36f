// Reads XML node by node, forwards only, without a tree: for documents of any size.
//
//     auto reader = WQXMLReader::newWithURL_options_error(url, 0, nullptr);
//     while (reader->read() == 1)
//         if (reader->nodeType() == 1) std::cout << wq::toUTF8(reader->name()) << "\n";
//
// The reader stands on a node, and its queries are about that: libxml2's xmlTextReader under this
// library's names, without changes. Node types are those of that interface: 1 element, 2 attribute,
// 3 text, 4 CDATA section, 5 entity reference, 7 instruction, 8 comment, 10 document type, 14 text
// that is white space only, 15 end of element.
//
// Numbers are libxml2's, and -1 is an error. A yes-or-no answer is true for an error as well: where
// it matters, ask `nodeType` first. An input that cannot be opened gives a reader all the same, whose
// numbers are -1, whose yes-or-no answers are true and whose strings are null. Null answers 0, false
// and null.
// Raises "XML Exception" with libxml2's message for the first thing that it reports in `read` and the
// other operations that go on in the input; and when it is made, for bytes that contradict their
// encoding. Once it has raised, the rest of the input is lost: nodes
// that were read ahead may still come, then -1, and nothing is raised again.
// External DTDs are not read.
#pragma once

#include <cstdint>
#include <memory>

#include "platform/NSData.h"
#include "platform/NSError.h"
#include "platform/NSURL.h"

struct _xmlTextReader;

class WQXMLReader : public wq::Object {
public:
    // ---- Making one

    // `options` has no meaning, and `error` is never written, in both.
    template <class T = WQXMLReader> static Ref<T> newWithURL_options_error(const Ref<NSURL>& url, int32_t options, Ref<NSError>* error) {
        return wq::make<T>(&T::initWithURL_options_error, url, options, error);
    }
    // Reads the bytes as they are now, without a copy. They may have been let go of by then.
    template <class T = WQXMLReader>
    static Ref<T> newWithData_baseURL_error(const Ref<NSData>& data, const Ref<NSURL>& baseURL, Ref<NSError>* error) {
        return wq::make<T>(&T::initWithData_baseURL_error, data, baseURL, error);
    }

    // ---- Going on

    int32_t read();  // to the next node: 1, or 0 at the end
    int32_t next();  // to the next node behind the subtree
    // -1: only a document that was parsed before could answer.
    int32_t nextSibling();
    int32_t close();  // the input; the reader stays

    // ---- The node that the reader stands on; strings are null where it has no such thing

    int32_t nodeType() const;  // 0 before the first `read`
    int32_t depth() const;     // 0 for the root element and what stands beside it
    NSString name() const;     // with its prefix; "#text" and the like for nodes without a name
    NSString localName() const;
    NSString prefix() const;
    NSString namespaceURI() const;
    NSString value() const;        // null for an element
    bool hasValue() const;         // whether its kind of node has one
    bool isEmptyElement() const;   // written as "<a/>"
    bool isDefault() const;        // false: defaults that a DTD states are no attributes here
    bool isNamespaceDecl() const;  // of an attribute: whether it declares a namespace
    NSString baseURI() const;
    NSString xmlLang() const;  // what "xml:lang" says here

    // ---- The attributes of the element

    bool hasAttributes() const;                                  // declarations of namespaces are counted here as well
    int32_t attributeCount() const;                              // declarations of namespaces are counted
    NSString getAttributeNo(int32_t index) const;                // the value; null behind the last
    NSString getAttribute(const NSString& qualifiedName) const;  // or the default that the DTD states
    // Null for an attribute that is not there.
    NSString getAttribute_namespace(const NSString& localName, const NSString& uri) const;
    // The URI of a prefix; a null prefix asks for the default namespace.
    NSString lookupNamespace(const NSString& prefix) const;
    // These stand on an attribute: 1, or 0 if there is none.
    int32_t moveToAttributeNo(int32_t index);
    int32_t moveToAttribute(const NSString& qualifiedName);
    int32_t moveToAttribute_namespace(const NSString& localName, const NSString& uri);
    int32_t moveToFirstAttribute();
    int32_t moveToNextAttribute();
    int32_t moveToElement();       // back to the element
    int32_t readAttributeValue();  // to the next text or entity reference of the value
    int32_t quoteChar() const;     // always that of '"'

    // ---- The document

    int32_t readState() const;    // a small input is at its end, 3, from the first `read` on
    NSString encoding() const;    // null where none is named or found
    NSString xmlVersion() const;  // as declared
    bool standalone() const;      // true as well where the document does not say
    bool isValid() const;         // false: nothing is validated

    // ---- For subclasses

    virtual bool initWithURL_options_error(const Ref<NSURL>& url, int32_t options, Ref<NSError>* error);
    virtual bool initWithData_baseURL_error(const Ref<NSData>& data, const Ref<NSURL>& baseURL, Ref<NSError>* error);

    template <class T> class NilReader : public T {
    public:
        bool initWithURL_options_error(const Ref<NSURL>&, int32_t, Ref<NSError>*) override { return false; }
        bool initWithData_baseURL_error(const Ref<NSData>&, const Ref<NSURL>&, Ref<NSError>*) override { return false; }
    };
    template <class T> using Nil = NilReader<T>;

protected:
    void teardown() override;

private:
    template <class... P, class... A> int32_t integer(int (*function)(_xmlTextReader*, P...), A&&... arguments) const;
    bool boolean(int (*function)(_xmlTextReader*)) const;
    NSString string(const unsigned char* (*function)(_xmlTextReader*)) const;
    template <class... P, class... A> NSString freedString(unsigned char* (*function)(_xmlTextReader*, P...), A&&... arguments) const;

    struct {
        _xmlTextReader* _reader = nullptr;
        Ref<NSURL> _url;
        Ref<NSData> _data;
    } my;
    std::shared_ptr<const wq::ByteBuffer> bytes;  // those of _data, whatever is appended to it
};
