// A document: owner of one libxml2 document and of everything in it, and of the choice of classes
// for its elements.
//
//     auto document = WQXMLDocument::newWithData_baseURL_arguments_error(data, nullptr, nullptr, nullptr);
//     for (Ref<WQXMLNode> node = document->documentElement(); node; node = node->next()) ...
//
// The document's own `firstChild`, `parentNode` and `ownerDocument` are null: start at
// documentElement(). Its `range` starts at 0, 0.
//
// Element classes. The arguments may hold a map of maps under DefaultElementClassesKey: namespace
// URI (or DefaultNamespaceKey for elements without one) to local name (or DefaultElementKey for
// every other name) to class. It is read when the document is made.
//
//     auto classes = NSDictionary::dictionary(
//         {{u"urn:my:book", NSDictionary::dictionary({{u"p", &wq::Class::of<Paragraph>()}})}});
//     auto arguments = NSDictionary::dictionary({{DefaultElementClassesKey, classes}});
//
// A class that is no WQXMLElement raises "NSInvalidArgumentException" then; an object of each class
// is made for that, and let go.
//
// External identifiers are looked up by libxml2 as it is set up: catalogs, files, network. An
// application forbids that with libxml2's own xmlSetExternalEntityLoader and a loader that answers an
// empty input. What only the DTD declares is then not there: an identifier is not found, and a named
// character raises. docs/process.md has a loader that lets the library's own XHTML type through.
//
//     xmlSetExternalEntityLoader([](const char*, const char*, xmlParserCtxtPtr parser) {
//         return xmlNewStringInputStream(parser, BAD_CAST "");
//     });
#pragma once

#include <map>
#include <memory>
#include <string>

#include "dom/WQXMLElement.h"
#include "dom/WQXMLText.h"
#include "platform/NSData.h"
#include "platform/NSDictionary.h"
#include "platform/NSError.h"
#include "platform/NSURL.h"

struct _xmlDoc;

namespace wq {
// One unlinked node that names a document and may outlive it; a ring, with its head in the document.
struct DetachedNode {
    _xmlNode* node = nullptr;
    DetachedNode* previous = this;
    DetachedNode* next = this;

    DetachedNode() = default;
    DetachedNode(_xmlNode* detached, DetachedNode& head) : node(detached), previous(&head), next(head.next) {
        previous->next = next->previous = this;
    }
    ~DetachedNode() { leave(); }
    void moveTo(DetachedNode& head) {
        leave();
        previous = &head;
        next = head.next;
        previous->next = next->previous = this;
    }
    DetachedNode(const DetachedNode&) = delete;
    DetachedNode& operator=(const DetachedNode&) = delete;

    static void* operator new(size_t size) { return allocateSmall(size); }
    static void operator delete(void* memory, size_t size) noexcept { freeSmall(memory, size); }

private:
    void leave() {
        previous->next = next;
        next->previous = previous;
    }
};
}  // namespace wq

// Keys of the `arguments` of the constructors.
inline constexpr const char16_t* WQXMLDocumentSkipWhitespaceKey = u"WQXMLDocumentSkipWhitespace";  // true: drop white space between tags
inline constexpr const char16_t* WQXMLDocumentParseAsHTMLKey = u"WQXMLDocumentParseAsHTML";        // its presence counts, also of false
inline constexpr const char16_t* WQXMLDocumentBaseURLKey = u"WQXMLDocumentBaseURL";                // for newWithArguments only
inline constexpr const char16_t* DefaultElementClassesKey = u"DefaultElementClasses";
// Keys of the map of element classes.
inline constexpr const char16_t* DefaultNamespaceKey = u"DefaultNamespace";
inline constexpr const char16_t* DefaultElementKey = u"DefaultElement";

// The namespace of the library's own elements, which the prefix "wq" means in every XPath query. Whoever
// builds the library says whose it is: -DWQ_ELEMENTS_HOST=HOST gives "http://HOST/elements/1.0".
extern const char16_t* const WQXMLElementsNamespace;

class WQXMLRange;
template <class T> class NilDocument;

class WQXMLDocument : public WQXMLNode {
public:
    // ---- Making one

    // Empty, XML 1.0.
    template <class T = WQXMLDocument> static Ref<T> newDocument() { return wq::make<T>(&T::init); }
    // Empty, with a class map and a base URL.
    template <class T = WQXMLDocument> static Ref<T> newWithArguments(const Ref<NSDictionary>& arguments) {
        return wq::make<T>(&T::initWithArguments, arguments);
    }
    // Reads the whole resource, which becomes the base URL, and parses it as below. The error is
    // cleared first; it is set, and the result null, if the resource cannot be read.
    template <class T = WQXMLDocument>
    static Ref<T> newWithContentsOfURL_arguments_error(const Ref<NSURL>& url, const Ref<NSDictionary>& arguments, Ref<NSError>* error) {
        return wq::make<T>(&T::initWithContentsOfURL_arguments_error, url, arguments, error);
    }
    // Parses XML, or HTML 4 with WQXMLDocumentParseAsHTMLKey. Raises "XML Exception" with libxml2's
    // message for the first thing that it reports, a warning included; xmlGetLastError() tells the
    // line. Null for no bytes, and for 2 GiB and more. The error is never written.
    template <class T = WQXMLDocument> static Ref<T> newWithData_baseURL_arguments_error(
        const Ref<NSData>& data,
        const Ref<NSURL>& baseURL,
        const Ref<NSDictionary>& arguments,
        Ref<NSError>* error) {
        return wq::make<T>(&T::initWithData_baseURL_arguments_error, data, baseURL, arguments, error);
    }

    // ---- Identity and root

    uint16_t nodeType() const override;         // 9, or 13 for HTML; 0x7fff without a document
    NSString baseURI() const;                   // null if none was given
    Ref<WQXMLElement> documentElement() const;  // null if there is none
    // Takes over the caller's reference, which becomes the tree's: std::move it. Frees the old
    // root, and fires nothing. Null and the present root change nothing.
    virtual void setDocumentElement(Ref<WQXMLElement>&& element);

    // ---- Making nodes, the caller's until they are inserted

    // Of the class that the class map names. The name is taken whole. Null for null.
    virtual Ref<WQXMLElement> createElement(const NSString& name);
    // The name is split at its first ':'; null without a local part. A null URI gives a namespace that
    // cannot be written: createElement is for elements without one. Asserts "Could not create new
    // namespace structure" for the prefix "xml"; null then.
    virtual Ref<WQXMLElement> createElement_namespaceURI(const NSString& qualifiedName, const NSString& uri);
    // Names no document until it is inserted. Asserts "Couldn't create text node" if
    // DefaultTextClass is no WQXMLText; null then.
    virtual Ref<WQXMLText> createTextNode(const NSString& string);

    // In name only: they assert "createComment: is unimplemented" and so on, the last one "This function
    // is unimplemented", and answer null.
    Ref<WQXMLNode> createComment(const NSString& text);
    Ref<WQXMLAttr> createAttribute(const NSString& name);
    Ref<WQXMLAttr> createAttribute_namespaceURI(const NSString& qualifiedName, const NSString& uri);
    Ref<WQXMLNode> importNode_deep(const Ref<WQXMLNode>& node, bool deep);

    // ---- Ranges

    // Collapsed at the beginning of the root element; both points unset without one.
    Ref<WQXMLRange> createRange();

    // ---- Finding nodes

    // What libxml2 keeps as identifiers: "xml:id", attributes that a DTD declares as ID, and in HTML "id",
    // and "name" of "a". An element that was removed is found for as long as it lives, one that
    // came from another document is not. One that was written with a reference is known by what the
    // markup says.
    Ref<WQXMLElement> getElementById(const NSString& identifier) const;

    // Every query from here on knows the prefix. A namespace has one prefix, the last one registered.
    // Where two namespaces have the same prefix, the greater URI, unit by unit, has it. Raises
    // "NSInvalidArgumentException" for a null namespace; a null prefix takes the registration back.
    virtual void registerXPathPrefix_forNamespace(const NSString& prefix, const NSString& uri);
    // The nodes in document order; none is an empty sequence. Null for an expression whose value is
    // no set of nodes, for null, and for a function of an unknown prefix. Nodes without a wrapper are
    // left out, so are namespaces. Raises "XML Exception" for an expression that is malformed, and for an
    // element or attribute of a prefix that nobody registered.
    std::optional<Sequence> nodesForXPath(const NSString& expression) const { return nodesForXPath_currentNode(expression, nullptr); }
    // Relative paths start at the current node; without one, and with a document, they find nothing.
    std::optional<Sequence> nodesForXPath_currentNode(const NSString& expression, const Ref<WQXMLNode>& currentNode) const;

    // In name only: both assert "This function is unimplemented" and answer null.
    std::optional<Sequence> getElementsByTagName(const NSString& name) const;
    std::optional<Sequence> getElementsByTagName_namespaceURI(const NSString& localName, const NSString& uri) const;

    // ---- Writing: null without a document

    // In the encoding that the document declares; if it declares none in UTF-8, with references for what
    // is beyond ASCII in texts and values. HTML is written as XML. Raises "XML Exception" for an encoding
    // that libxml2 does not know.
    Ref<NSData> XMLData() const;
    // Elements without text beside them stand on lines of their own, indented by two blanks.
    Ref<NSData> formattedXMLData() const;
    // Canonical XML 1.0 without comments. Raises "XML Exception" for a document that holds an entity
    // reference beside its texts, or the relative URI of a namespace.
    NSString canonicalRepresentation() const;
    // An XML declaration that says "utf-8" and "no", and the root element. Writes nothing if the writer
    // refuses the declaration. Asserts "Could not write document end tag". Flushes.
    void encodeWithWriter(const Ref<WQXMLWriter>& writer) const override;

    void printTree() const override;  // of the root element

    // In name only: asserts "copyWithZone: not implemented in WQXMLDocument", and answers null.
    Ref<WQXMLNode> copyWithZone() const override;

    // ---- A bag of values for the application

    NSValue valueForUndefinedKey(const NSString& key) const;  // null for a key never set
    // A null value removes the key. Raises "NSInvalidArgumentException" for a value under the null key. The
    // document keeps the value alive, so a value that holds the document keeps both for good.
    virtual void setValue_forUndefinedKey(const NSValue& value, const NSString& key);

    // ---- For subclasses

    virtual bool init();
    virtual bool initWithArguments(const Ref<NSDictionary>& arguments);
    virtual bool initWithContentsOfURL_arguments_error(const Ref<NSURL>& url, const Ref<NSDictionary>& arguments, Ref<NSError>* error);
    virtual bool initWithData_baseURL_arguments_error(
        const Ref<NSData>& data,
        const Ref<NSURL>& baseURL,
        const Ref<NSDictionary>& arguments,
        Ref<NSError>* error);
    // The class map of documents whose arguments give none; null here.
    virtual Ref<NSDictionary> defaultNodeClasses() const { return nullptr; }

    template <class T> using Nil = NilDocument<T>;

    // ---- For dom only

    bool initWithDocImpl(_xmlDoc* doc);  // takes the document over, without a class map
    _xmlDoc* xmlDoc() const noexcept { return my.docImpl; }
    void fixElementClass(_xmlNode* node);
    // Holds this document for as long as it lives, and then null.
    const std::shared_ptr<WQXMLDocument*>& whileAlive();
    // The head of the ring of unlinked nodes that name this document.
    wq::DetachedNode& detachedNodes() noexcept { return bookkeeping.detachedNodes; }

protected:
    _xmlNode* linkTarget() const noexcept override { return reinterpret_cast<_xmlNode*>(my.docImpl); }
    void teardown() override;

private:
    void takeClassMap(const Ref<NSDictionary>& arguments);
    const wq::Class* classForElement(_xmlNode* node) const;
    void setBaseURI(const Ref<NSURL>& url);

    struct {
        _xmlDoc* docImpl = nullptr;
        Ref<NSDictionary> elementClasses;
        Ref<NSDictionary> xpathPrefixes;
        Ref<NSDictionary> additionalKeys;
    } my;

    using ClassesByName = std::map<std::string, const wq::Class*, std::less<>>;
    struct {
        std::map<std::string, ClassesByName, std::less<>> classTable;  // elementClasses, with keys as libxml2 has them
        wq::DetachedNode detachedNodes;                                // the head of the list
        std::shared_ptr<WQXMLDocument*> whileAlive;
    } bookkeeping;
};

template <class T> class NilDocument : public NilNode<T> {
public:
    bool init() override { return false; }
    bool initWithArguments(const Ref<NSDictionary>&) override { return false; }
    bool initWithContentsOfURL_arguments_error(const Ref<NSURL>&, const Ref<NSDictionary>&, Ref<NSError>*) override { return false; }
    bool initWithData_baseURL_arguments_error(const Ref<NSData>&, const Ref<NSURL>&, const Ref<NSDictionary>&, Ref<NSError>*) override {
        return false;
    }
    void registerXPathPrefix_forNamespace(const NSString&, const NSString&) override {}
    void setValue_forUndefinedKey(const NSValue&, const NSString&) override {}
};
