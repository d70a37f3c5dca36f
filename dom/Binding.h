// The binding of wrappers to libxml2 nodes, for the files of this folder.
//
// Here stand the guarded call, and every operation that frees, links, unlinks or moves nodes behind
// a wrapper. No other file calls those of libxml2 (xmlFreeNode, xmlUnlinkNode, xmlSetTreeDoc,
// xmlFreeProp and their kin) unless it says beside the call why that is safe.
#pragma once

#include <exception>
#include <memory>
#include <unordered_set>
#include <utility>
#include <vector>

#include <libxml/tree.h>
#include "dom/WQLibXML.h"
#include "dom/WQXMLNode.h"

class WQXMLDocument;
class WQXMLElement;

namespace wq {

struct DetachedNode;

// Runs the start-up and sets the default classes, once. Each operation through which a program can
// first come to libxml2 calls it.
void startLibrary();

inline WQXMLNode* wrapper(const void* node) noexcept {
    return node ? static_cast<WQXMLNode*>(static_cast<const xmlNode*>(node)->_private) : nullptr;
}
// The class of an object, for making another of it; T where no Class made the object.
template <class T> const Class& classOf(const T& object) {
    const Class* made = Class::of(object);
    return made ? *made : Class::of<T>();
}
inline Ref<WQXMLNode> wrapped(const void* node) noexcept { return Ref<WQXMLNode>(wrapper(node)); }

// A string as libxml2 takes it: UTF-8 with a NUL behind it, or a null pointer for null.
class Bytes {
public:
    explicit Bytes(const NSString& string) {
        if (!string) return;
        if (copyASCII(string, few, sizeof few)) {
            bytes = few;
        } else {
            text = toUTF8(string);
            bytes = text.c_str();
        }
    }
    Bytes(const Bytes&) = delete;
    Bytes& operator=(const Bytes&) = delete;
    operator const xmlChar*() const { return reinterpret_cast<const xmlChar*>(bytes); }
    const char* characters() const { return bytes; }

private:
    const char* bytes = nullptr;
    std::string text;
    char few[128];  // names and short texts need no memory of their own
};

// A string that libxml2 made for us; frees it.
NSString takeString(xmlChar* bytes);

// A document of nobody's, for what is read and thrown away.
struct FreeDocument {
    void operator()(xmlDocPtr doc) const;
};
using OwnDocument = std::unique_ptr<xmlDoc, FreeDocument>;

// An unlinked node of nobody's yet. What its hooks raise gives way to the failure that leads here.
struct FreeNode {
    void operator()(xmlNodePtr node) const;
};
using OwnNode = std::unique_ptr<xmlNode, FreeNode>;

// A namespace in no nsDef list. Null where libxml2 refuses: for the prefix "xml".
struct FreeNamespace {
    void operator()(xmlNsPtr ns) const { xmlFreeNs(ns); }
};
using OwnNamespace = std::unique_ptr<xmlNs, FreeNamespace>;
OwnNamespace newNamespace(const NSString& uri, const NSString& prefix);

// While one of these lives, failures inside libxml2 do not unwind through it: the error callback
// and the hooks keep the first one, and no code of the application runs from then on. `raise`,
// called when libxml2 has returned and what it gave is freed, raises what was kept.
class GuardedCall {
public:
    GuardedCall() noexcept : outer(std::exchange(current, this)) {}  // the report has no value yet
    ~GuardedCall() {
        if (current == this) current = outer;
        if (reported) xmlResetError(&report);
    }
    GuardedCall(const GuardedCall&) = delete;
    GuardedCall& operator=(const GuardedCall&) = delete;

    bool failed() const noexcept { return static_cast<bool>(first); }
    void keep(std::exception_ptr failure) noexcept {
        if (!first) first = std::move(failure);
    }
    // As above, with libxml2's own record: whatever else it reports, that is its last error when `raise` raises.
    void keep(std::exception_ptr failure, xmlError* error) noexcept;
    void raise();

    static GuardedCall* current;  // the innermost; null outside

private:
    std::exception_ptr first;
    bool reported = false;
    xmlError report;  // that goes with it; a copy, once there is one
    GuardedCall* outer;
};

// The result of `call`. If something failed in it, `clean` frees the result, and the failure is raised.
template <class Call, class Clean> auto guarded(Call&& call, Clean&& clean) {
    GuardedCall guard;
    auto result = call();
    if (guard.failed() && result) clean(result);
    guard.raise();
    return result;
}
template <class Call> void guarded(Call&& call) {
    GuardedCall guard;
    call();
    guard.raise();
}

// For callbacks that libxml2 calls: keeps what `work` raises if a guarded call runs; else it goes on.
void keepFailure(auto&& work) {
    try {
        work();
    } catch (...) {
        if (!GuardedCall::current) throw;
        GuardedCall::current->keep(std::current_exception());
    }
}

// What `use` makes of a copy that libxml2 makes, and that is freed behind it.
template <class Copy, class Use, class Free> NSString fromCopy(Copy&& copy, Use&& use, Free&& free) {
    GuardedCall guard;
    NSString result;
    auto copied = copy();
    keepFailure([&] { result = use(copied); });
    if (copied) free(copied);
    guard.raise();
    return result;
}

// Makes a parser build nothing more. It reads on to the end of its input: xmlStopParser would free
// that under attribute values that the callback of their element still reads.
void stopParser(void* context) noexcept;

// True in the start-element callbacks of a parser: an element's class is not settled before all
// its attributes are in place.
extern bool gInStartElement;

// While one of these lives, libxml2 builds nodes that are not to be edited before it is done: the class
// checks wait here until `settle`.
class WaitingChecks {
public:
    WaitingChecks() noexcept : outer(std::exchange(current, this)) {}
    ~WaitingChecks() { current = outer; }
    WaitingChecks(const WaitingChecks&) = delete;
    WaitingChecks& operator=(const WaitingChecks&) = delete;

    void takePending();  // the one that would be settled now
    void settle();       // all of them, when libxml2 has returned; may raise

    static WaitingChecks* current;  // the innermost; null outside

private:
    std::vector<Ref<WQXMLNode>> elements;
    WaitingChecks* outer;
};

// Keeps a node and its document alive while code of the application may run: overrides, listeners.
struct KeptAlive {
    explicit KeptAlive(const WQXMLNode* receiver);
    Ref<WQXMLNode> node;
    Ref<WQXMLDocument> document;
};

// New nodes get no wrappers while one of these lives. A check that still waits is settled first.
class WithoutRegistration {
public:
    WithoutRegistration() {
        checkNode();
        previous = setRegisterNode(false);
    }
    ~WithoutRegistration() { setRegisterNode(previous); }
    WithoutRegistration(const WithoutRegistration&) = delete;
    WithoutRegistration& operator=(const WithoutRegistration&) = delete;

private:
    bool previous;
};

// A new node that nobody but its wrapper under construction will know.
template <class Make> xmlNodePtr unregistered(Make&& make) {
    startLibrary();
    const WithoutRegistration scope;
    return guarded(make, xmlFreeNode);  // it has no wrapper
}

struct Binding {
    // ---- New nodes

    // Binds a wrapper under construction to the node made for it. False if the wrapper refuses;
    // the node is freed then, and also if it raises.
    static bool bindOwnNode(WQXMLNode* wrapper, xmlNodePtr node);
    static void bindDocument(WQXMLDocument* document, xmlDocPtr doc);
    // Null for a document of the application's own, whatever that keeps in `_private`: ours are told by
    // the field beside it, which is as unused as that of nodes.
    static WQXMLDocument* wrapperOf(xmlDocPtr doc);
    // The node, and all below it, name that document.
    static void nameDocument(xmlNodePtr node, xmlDocPtr doc);
    // Makes a wrapper of that class for a node. Null if it refuses. Not stored in the node yet.
    static WQXMLNode* makeWrapper(const Class* aClass, xmlNodePtr node);
    // Puts a new wrapper in the place of the present one, which dies for its node.
    static void replaceWrapper(xmlNodePtr node, WQXMLNode* replacement);
    // A wrapper leaves a node that goes on using its namespaces: they go to the wrapper that stays, or
    // to the element itself.
    static void leaveNamespaces(WQXMLNode* leaving, xmlNodePtr node, WQXMLNode* staying);
    // A namespace among those that were left to this element becomes its own one.
    static void ownBorrowed(WQXMLNode* element, xmlNsPtr ns);
    // A node that the hook has just wrapped becomes the caller's: its count, and the node with it.
    static Ref<WQXMLNode> adoptNewNode(xmlNodePtr node);

    // ---- Linking

    // Whether libxml2 can own the child there, and keep its lists sound.
    static bool canLink(xmlNodePtr child, xmlNodePtr parent, xmlNodePtr reference);
    // Ahead of the reference, wherever that is.
    static void linkAhead(WQXMLNode* child, xmlNodePtr reference);
    // As the last child, or the last attribute.
    static void linkLast(WQXMLNode* child, xmlNodePtr parent);
    static void linkUnlinkedLast(WQXMLNode* child, xmlNodePtr parent);
    // Unlinks it; the result is the count that the tree held, or a new one.
    static Ref<WQXMLNode> unlink(WQXMLNode* child);
    // Makes it the root of a document, and frees the one before. The caller's count becomes the tree's.
    static void linkAsRoot(Ref<WQXMLElement>&& element, xmlDocPtr doc);

    // ---- Counts and namespaces

    static bool holdsTreeReference(const WQXMLNode* wrapper) { return wrapper->flags & WQXMLNode::kTreeReference; }
    static void setHoldsTreeReference(WQXMLNode* wrapper, bool holds) {
        const unsigned others = wrapper->flags & ~unsigned{WQXMLNode::kTreeReference};
        wrapper->flags = static_cast<uint8_t>(holds ? others | WQXMLNode::kTreeReference : others);
    }
    static void takeTreeReference(WQXMLNode* wrapper);
    static void reconcileNamespaces(WQXMLNode* wrapper);
    static std::vector<xmlNsPtr>& borrowedNamespaces(WQXMLNode* wrapper);
    static std::vector<xmlNsPtr>& ownedNamespaces(WQXMLNode* element);  // those made for attributes
    static size_t numberOfOwnedNamespaces(const WQXMLNode* element);
    // Those that the wrapper keeps, in no nsDef list.
    template <class Visit> static void forEachNamespace(const WQXMLNode* wrapper, Visit&& visit);

    // ---- Content

    static void setContent(xmlNodePtr text, const xmlChar* content);
    static void setValue(xmlAttrPtr attribute, const NSString& value);
    // Copies of a list of nodes become the last children, with namespaces and classes settled. Raises
    // "Could not add children to element".
    static void appendCopies(WQXMLNode* parent, xmlNodePtr originals);

    // ---- Identifiers

    // An attribute leaves its document's table of identifiers, since it dies or changes.
    static void forgetIdentifier(xmlAttrPtr attribute);
    // Ahead of a new value: libxml2 looks for the old entry by the old value, and misses one that was
    // written with a reference. Afterwards it finds it.
    static void settleIdentifiers(xmlNodePtr element, const NSString& qualifiedName);

    // ---- The end, within a guarded call of the caller

    static void freeNode(WQXMLNode* wrapper);
    // A document is about to be freed: its unlinked nodes name none from here on.
    static void letDetachedNodesGo(xmlDocPtr doc);
    // A document type is about to be freed, or leaves its document.
    static void forgetDeclarations(xmlNodePtr dtd);

    // ---- Detached nodes: each unlinked node that has an owner is listed with the document that it
    // names, since it may outlive that.

    static void detach(xmlNodePtr node);
    static void listAsDetached(xmlNodePtr node, xmlDocPtr doc);  // the document that it is to name
    static void attach(xmlNodePtr node);                         // linked again, moved to another document, or dying
    static DetachedNode* recordOfDTD(const WQXMLNode* dtd);
    static void setRecordOfDTD(WQXMLNode* dtd, DetachedNode* record);
};

// How many libxml2 nodes live, documents among them. Counted in test builds only.
int64_t numberOfLivingNodes() noexcept;

}  // namespace wq
