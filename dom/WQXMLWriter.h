// Writes XML piece by piece: to a file, into memory, into a new document, or below an element.
//
//     auto writer = WQXMLWriter::newToMemory();
//     writer->startDocumentWithVersion_encoding_standalone(u"1.0", u"utf-8", nullptr);
//     writer->startElement_prefix_namespace(u"note", u"n", u"urn:example:notes");
//     writer->writeString(u"Fish & chips");
//     writer->endElement();
//     writer->endDocument();
//     writer->flush();
//     std::cout << writer->XMLData()->view();
//
// Each operation answers libxml2's number, 0 or a count of bytes, and -1 on error, for want of memory as well;
// nothing raises but for the one assertion of writeAttribute_content, and where a long argument itself needs
// memory. A writer whose destination could not be opened answers -1 to everything, and null answers 0.
// Balance of start and end operations is the caller's affair: libxml2 checks little of it, a
// missing end stays missing, and what it accepts may be XML that no parser takes. It accepts a second
// declaration, and after a -1 for null content the element, attribute or comment is open.
//
// Strings go out as UTF-8 and end at a NUL. Only writeString takes out what XML cannot hold; every
// other operation passes control characters on. White space is written as it stands but for CR, which
// becomes "&#13;", and LF and TAB in attributes, which become references as well.
//
// Namespaces. An element started with a prefix and a namespace declares them unless an element that
// is open has the same pair. That an element between them gave the prefix another namespace is not
// seen. A namespace without a prefix is declared again at each such element. Attributes declare what
// no open element has, and what they declare is not known further in; libxml2 prints declarations
// behind the attributes.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "dom/WQXMLDocument.h"
#include "dom/WQXMLWriterElement.h"
#include "platform/NSCharacterSet.h"
#include "platform/NSData.h"
#include "platform/NSURL.h"

struct _xmlParserCtxt;
struct _xmlTextWriter;

class WQXMLWriter : public wq::Object {
public:
    // ---- Making one

    // A file. One that cannot be opened gives a writer all the same, which answers -1.
    template <class T = WQXMLWriter> static Ref<T> newWithURL(const Ref<NSURL>& url) { return wq::make<T>(&T::initWithURL, url); }
    // A buffer, which XMLData answers.
    template <class T = WQXMLWriter> static Ref<T> newToMemory() { return wq::make<T>(&T::initToMemory); }
    // A new document. It fills as the buffer does: it is complete after `flush`. A parser reads
    // behind the buffer, so `flush` is -1 for what is not well-formed, or more than 256 elements deep.
    template <class T = WQXMLWriter> static Ref<T> newToXMLDocument() { return wq::make<T>(&T::initToXMLDocument); }
    // Below an element that has a document: one child element and no more, since a parser reads what
    // is written as a document. Null for an element without a document.
    // In both trees an open element that is taken away is written on. Where the element itself dies, the
    // writer answers -1 from then on. What an initWithXMLNode raises becomes a -1. A declaration sets the
    // encoding of the element's document if it has none, and a document type replaces the one that it has.
    template <class T = WQXMLWriter> static Ref<T> newToElement(const Ref<WQXMLElement>& element) {
        return wq::make<T>(&T::initToElement, element);
    }

    Ref<WQXMLDocument> XMLDocument() const;  // of newToXMLDocument, else null; it may outlive the writer
    Ref<NSData> XMLData() const;             // of newToMemory, else null: the live buffer, complete after `flush`

    // ---- Documents, comments, instructions, sections, document types: what is started is
    // filled by the operations under Content and ended by the caller; the others write a whole one

    int32_t startDocumentWithVersion_encoding_standalone(const NSString& version, const NSString& encoding, const NSString& standalone);
    int32_t endDocument();  // closes what is open, and adds a line feed
    int32_t startComment();
    int32_t endComment();
    int32_t writeComment(const NSString& comment);
    int32_t startPI(const NSString& target);
    int32_t endPI();
    int32_t writePI_content(const NSString& target, const NSString& content);
    int32_t startCDATA();
    int32_t endCDATA();
    int32_t writeCDATA(const NSString& content);
    int32_t startDTD_pubid_sysid(const NSString& name, const NSString& publicIdentifier, const NSString& systemIdentifier);
    int32_t endDTD();
    int32_t writeDTD_pubid_sysid_subset(
        const NSString& name,
        const NSString& publicIdentifier,
        const NSString& systemIdentifier,
        const NSString& subset);

    // ---- Elements

    // `name` is written whole, with any colon, and declares nothing.
    int32_t startElement(const NSString& name);
    // An empty prefix counts as none.
    int32_t startElement_prefix_namespace(const NSString& localName, const NSString& prefix, const NSString& uri);
    // As "<a/>" if it is empty. What its namespaces defined is forgotten.
    int32_t endElement();
    // Writes an end tag also for an empty element. The element's namespaces stay defined for what follows.
    int32_t fullEndElement();
    // A whole element; with null content an empty one. What is open is not looked at.
    int32_t writeElement_content(const NSString& name, const NSString& content);
    // -1 for null content.
    int32_t writeElement_prefix_namespace_content(
        const NSString& localName,
        const NSString& prefix,
        const NSString& uri,
        const NSString& content);

    // ---- Content

    int32_t writeRaw(const NSString& markup);  // as it stands
    // Without control characters but for TAB, LF and CR; and escaped, if an element or attribute is open.
    int32_t writeString(const NSString& string);
    int32_t writeBase64(const Ref<NSData>& data);  // in lines of 72 characters, divided by CR and LF
    int32_t writeBinHex(const Ref<NSData>& data);  // two digits for each byte

    // ---- Attributes of the element that was just started

    // `name` is written whole, with any colon, and declares nothing.
    int32_t startAttribute(const NSString& name);
    // An empty prefix is a prefix here, and what comes out is not well-formed.
    int32_t startAttribute_prefix_namespace(const NSString& localName, const NSString& prefix, const NSString& uri);
    // Starting an element or another attribute ends it as well, and so does the end of the element.
    int32_t endAttribute();
    // Asserts "Invalid parameter not satisfying: content", and then answers -1 with the attribute left open.
    int32_t writeAttribute_content(const NSString& name, const NSString& content);
    int32_t writeAttribute_prefix_namespace_content(
        const NSString& localName,
        const NSString& prefix,
        const NSString& uri,
        const NSString& content);

    // ---- Layout, and the end

    int32_t setIndent(bool indent);                   // a line for each element; off at first
    int32_t setIndentString(const NSString& string);  // of one level
    // Hands on all that was written so far. A file is complete only when the writer is gone: the C
    // library keeps a part of it until then. The last error of a writer that dies is lost.
    int32_t flush();

    // ---- What is open

    // Whether an open element has defined that pair; never for a null prefix.
    bool isDefined_namespaceURI(const NSString& prefix, const NSString& uri) const;
    // The open elements, the innermost last. Null below an element: nothing is remembered there.
    const std::optional<std::vector<Ref<WQXMLWriterElement>>>& elements() const { return my.elements; }

    // ---- Characters that XML cannot hold

    static const NSCharacterSet& illegalXMLCharacterSet();  // controls, without TAB, LF and CR
    static NSString cleanString(NSString string);           // without those; null for null

    // ---- For subclasses

    virtual bool initWithURL(const Ref<NSURL>& url);
    virtual bool initToMemory();
    virtual bool initToXMLDocument();
    virtual bool initToElement(const Ref<WQXMLElement>& element);

    template <class T> class NilWriter : public T {
    public:
        bool initWithURL(const Ref<NSURL>&) override { return false; }
        bool initToMemory() override { return false; }
        bool initToXMLDocument() override { return false; }
        bool initToElement(const Ref<WQXMLElement>&) override { return false; }
    };
    template <class T> using Nil = NilWriter<T>;

protected:
    void teardown() override;

private:
    template <class... P, class... A> int32_t write(int (*function)(_xmlTextWriter*, P...), A&&... arguments);
    int32_t writeBytes(int (*function)(_xmlTextWriter*, const char*, int, int), const Ref<NSData>& data);
    void push(const NSString& localName, const NSString& prefix, const NSString& uri);

    struct {
        _xmlTextWriter* writer = nullptr;
        Ref<NSData> mutableData;
        Ref<WQXMLDocument> xmlDocument;
        std::optional<std::vector<Ref<WQXMLWriterElement>>> elements;
    } my;
    // The parser behind a tree points to nodes that are open, and to the element above them.
    bool treeIsWhole() const;
    void noteOpenNodes();
    void letGoOfTree();
    struct {
        _xmlParserCtxt* parser = nullptr;
        WQXMLNode::Sequence openNodes;
        Ref<WQXMLDocument> document;  // of newToElement
        Ref<WQXMLElement> element;
    } bookkeeping;
};
