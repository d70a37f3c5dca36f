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
// application forbids that with xmlSetExternalEntityLoader and a loader that answers an empty
// input; one that answers null makes every document with an external DTD raise.
#pragma once

#include <map>
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
    ~DetachedNode() {
        previous->next = next;
        next->previous = previous;
    }
    DetachedNode(const DetachedNode&) = delete;
    DetachedNode& operator=(const DetachedNode&) = delete;
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
    // A document cannot be parsed out of a callback of another parse.
    template <class T = WQXMLDocument> static Ref<T> newWithData_baseURL_arguments_error(
        const Ref<NSData>& data,
        const Ref<NSURL>& baseURL,
        const Ref<NSDictionary>& arguments,
        Ref<NSError>* error) {
        return wq::make<T>(&T::initWithData_baseURL_arguments_error, data, baseURL, arguments, error);
    }

    // ---- Identity and root

    uint16_t nodeType() const override;  // 9, or 13 for HTML; 0x7fff without a document
    NSString baseURI() const;            // null if none was given
    Ref<WQXMLElement> documentElement() const;
    // Takes over the caller's reference, which becomes the tree's: std::move it. Frees the old
    // root, and fires nothing. Null and the present root change nothing.
    virtual void setDocumentElement(Ref<WQXMLElement>&& element);

    // ---- Making nodes, the caller's until they are inserted

    // Of the class that the class map names. The name is taken whole. Null for null.
    virtual Ref<WQXMLElement> createElement(const NSString& name);
    // The name is split at its first ':'; null without a local part. Asserts "Could not create new
    // namespace structure" for the prefix "xml"; null then.
    virtual Ref<WQXMLElement> createElement_namespaceURI(const NSString& qualifiedName, const NSString& uri);
    // Names no document until it is inserted. Asserts "Couldn't create text node" if
    // DefaultTextClass is no WQXMLText; null then.
    virtual Ref<WQXMLText> createTextNode(const NSString& string);

    void printTree() const override;  // of the root element

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
    } my;

    using ClassesByName = std::map<std::string, const wq::Class*, std::less<>>;
    struct {
        std::map<std::string, ClassesByName, std::less<>> classTable;  // elementClasses, with keys as libxml2 has them
        wq::DetachedNode detachedNodes;                                // the head of the list
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
};
