// The wrapper of one libxml2 node, and the base of every class of the tree.
//
// There is no second tree: a wrapper reads libxml2's links and answers with the wrappers that it
// finds there. It is bound to its node for the node's whole life and outlives it if somebody holds
// it: then it is dead. Dead wrappers and null answer every query with null, 0 or false, and every
// edit leaves them alone; where the two differ, the operation says so.
// All work belongs to one thread, the one that used the first document.
// Strings, offsets and lengths count UTF-16 units. "Fires n" names an event of dom/WQXMLEvent.h.
// docs/lifetime.md tells who keeps whom alive.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/NSRange.h"
#include "platform/NSString.h"
#include "platform/Object.h"

struct _xmlNode;
struct _xmlNs;
class WQXMLDocument;
class WQXMLEvent;
class WQXMLEventListener;
class WQXMLEventListenerData;
class WQXMLWriter;
template <class T> class NilNode;
namespace wq {
struct Binding;
}

class WQXMLNode : public wq::Object {
public:
    // A list made for the caller, which keeps its nodes alive; edits of the tree do not change it.
    using Sequence = std::vector<Ref<WQXMLNode>>;

    // ---- Qualified names ----

    // The text behind the first ':', or the name itself if it has none. Null if nothing follows the
    // ':', and for null.
    static NSString localNameForQName(const NSString& name);
    // The text ahead of the first ':'. Null if there is none or nothing is ahead of it.
    static NSString prefixForQName(const NSString& name);

    // ---- Identity ----

    // libxml2's number: 1 element, 2 attribute, 3 text, 4 CDATA section, 8 comment, 9 document,
    // 13 HTML document. Dead: 0x7fff. Null: 0.
    virtual uint16_t nodeType() const;
    // "prefix:local", or the local name without a prefix; so null for comments and the like.
    virtual NSString nodeName() const;
    virtual NSString nodeValue() const;  // null in this class
    // These three are for elements and attributes; null for every other node.
    NSString localName() const;
    NSString prefix() const;
    NSString namespaceURI() const;

    // ---- Navigation: null where there is no link ----

    Ref<WQXMLNode> parentNode() const;  // the root element's is the document
    Ref<WQXMLNode> firstChild() const;  // a document answers null: see documentElement
    Ref<WQXMLNode> lastChild() const;
    Ref<WQXMLNode> previousSibling() const;
    Ref<WQXMLNode> nextSibling() const;
    Ref<WQXMLNode> next() const;               // successor in document order
    Ref<WQXMLNode> previous() const;           // last descendant of the previous sibling, else the parent
    Ref<WQXMLDocument> ownerDocument() const;  // null for a document

    // The children in order, a new sequence; empty for a dead node. Null for null. Give it a name
    // before a loop: `for (auto& child : *node->childNodes())` walks a sequence that is gone.
    virtual std::optional<Sequence> childNodes() const;
    virtual bool hasChildNodes() const;  // false but for elements
    virtual bool hasAttributes() const;  // false but for elements
    // Always null, in every class: see WQXMLElement::firstAttribute.
    std::optional<Sequence> attributes() const { return std::nullopt; }
    // These three walk. indexOfChild answers NSNotFound for a stranger, and 0 on null.
    Ref<WQXMLNode> childAtIndex(uint64_t index) const;
    virtual uint64_t indexOfChild(const Ref<WQXMLNode>& child) const;
    uint64_t numberOfChildren() const;

    // ---- Ancestors ----

    bool isAncestorOfNode(const Ref<WQXMLNode>& node) const;    // false for the node itself
    bool isDescendantOfNode(const Ref<WQXMLNode>& node) const;  // false for the node itself
    // Null if there is none. Asserts "asking for common ancestor of self", and then answers the
    // node itself.
    Ref<WQXMLNode> commonAncestorWithNode(const Ref<WQXMLNode>& node) const;
    // The nearest ancestor whose depth is not greater. Asserts "ancestorAtDepth depth too shallow"
    // for a node that is not deeper than that itself, and then answers its parent.
    Ref<WQXMLNode> ancestorAtDepth(uint64_t depth) const;
    // The child of this node that is or contains `node`; null for a stranger. Asserts "Requesting
    // child ancestor of self".
    Ref<WQXMLNode> childAncestorOfNode(const Ref<WQXMLNode>& node) const;
    // Steps up to the child of the document: 0 for the root element, and for a document. In a
    // detached tree that names a document, one more than the distance to its top.
    uint64_t depth() const;
    // "/a[1]/p:b[2]": each step is counted among siblings of the same prefix and local name. The
    // step of a node without a name reads "(null)[1]"; the same stands at the head of every path
    // in an HTML document. Null: the empty path.
    NSString XPath() const;

    // ---- Edits ----
    // Each keeps its arguments alive while it runs, since listeners run within it. A listener that
    // raises leaves the edit: out of event 8 with the tree unchanged, out of event 4 with the
    // child linked.

    // Puts `child` ahead of `reference`, or at the end if that is null; takes it from its old parent
    // first, which fires 8 there, then fires 4. Answers the child.
    // `reference` may stand under another parent: the child lands beside it, and the event still
    // names this node. `child` as its own reference means its next sibling.
    // An attribute lands in the attribute list, and a same-named attribute there is freed.
    // Answers null and changes nothing if one of them is dead or null, or if libxml2 could not own
    // the child there: an attribute anywhere but on an element, another node among attributes, a
    // DTD anywhere but in a document, an element below an attribute, and anything below a text, a
    // comment or another node that has no children in libxml2.
    // Adjacent texts stay separate. A node put below itself is not refused: the call does not return.
    virtual Ref<WQXMLNode> insertChild_before(const Ref<WQXMLNode>& child, const Ref<WQXMLNode>& reference);
    void insertChild_atIndex(const Ref<WQXMLNode>& child, uint64_t index);  // past the end: appends
    Ref<WQXMLNode> appendChild(const Ref<WQXMLNode>& child);
    // Fires 8 while the child is linked, then unlinks it, wherever it is linked. The result is all
    // that keeps it alive unless the caller holds it.
    virtual Ref<WQXMLNode> removeChild(const Ref<WQXMLNode>& child);
    void removeChildren();  // one by one, the first one first, each firing 8
    // Moves all children of the other node, each firing 8 and 4. Nothing for the node itself.
    virtual void appendChildrenFromNode(const Ref<WQXMLNode>& node);

    // For subclasses to supply: each asserts "subclass responsibility" here, and answers null.
    virtual Ref<WQXMLNode> splitAtIndex_intoNode(uint64_t index, const Ref<WQXMLNode>& node);
    virtual Ref<WQXMLNode> splitAtIndex(uint64_t index);
    virtual void mergeWithNode(const Ref<WQXMLNode>& node);

    // ---- Copies: without a parent, the caller's alone ----

    // Without children, an object of the receiver's class. Asserts "WQXMLNode copyWithZone called"
    // here, and answers null: comments, CDATA sections and attributes have no copy.
    virtual Ref<WQXMLNode> copyWithZone() const;
    Ref<WQXMLNode> copy() const { return copyWithZone(); }
    // With copies of all descendants if `deep`.
    Ref<WQXMLNode> copyNode(bool deep) const;

    // ---- Writing ----

    // Writes the node and all below it. Nothing in this class: comments, CDATA sections, instructions
    // and document types are lost. Asserts what each class says where the writer answers -1, and goes
    // on; a null writer takes everything in silence.
    virtual void encodeWithWriter(const Ref<WQXMLWriter>& writer) const;

    // ---- A range kept for the caller; nothing here uses it ----

    // Location NSNotFound and length 0 until set. 0 and 0 for a document, and for null.
    NSRange range() const;
    virtual void setRange(NSRange range);

    // ---- Print, to the process log ----

    virtual NSString printDescription() const;  // "name - [0x...]"; null prints as "(null)". Null: null
    virtual void printTree() const;             // a line for each node of the subtree, indented by depth
    void print() const;

    // ---- Events ----

    // `event` is one or more event bits. A listener has one record on a node, for all it hears
    // there. It is not kept alive: it must be removed before it dies.
    virtual void addListener_forEvent_useCapture(WQXMLEventListener* listener, int32_t event, bool capture);
    // Asserts "removeListener called before listener added" if no listener was ever added here.
    void removeListener_forEvent_useCapture(WQXMLEventListener* listener, int32_t event, bool capture);
    const std::vector<Ref<WQXMLEventListenerData>>* listeners() const;  // null until the first is added
    // What the records of this node hear, or-ed together.
    uint64_t captureEvents() const;
    uint64_t events() const;
    // Runs the capture, target and bubble phases; true if a listener set preventDefault.
    // Not for overriding: edits make no event where nobody on the way up listens.
    virtual bool dispatchEvent(const Ref<WQXMLEvent>& event);

    // ---- For subclasses ----

    // Binds this object to a node that libxml2 has made. An override that answers false refuses:
    // the node then keeps the wrapper that it has, or none. The node is not to be freed or moved
    // here. A parsed element finds its name, namespace and attributes, and no children; one that came by
    // setInnerXML or a writer its children as well. It may be edited here then. Not so in a default class
    // (dom/WQLibXML.h), which is asked while libxml2 still builds the node. While a document is parsed it
    // makes no nodes: its factories answer null. An object is initialised once.
    virtual bool initWithXMLNode(_xmlNode* node);

    template <class T> using Nil = NilNode<T>;

    // ---- For dom and the facade only ----

    _xmlNode* xmlNode() const noexcept { return my.impl; }
    virtual void setXMLNode(_xmlNode* node) noexcept { my.impl = node; }
    _xmlNs* ownedNs() const noexcept;
    virtual void setOwnedNs(_xmlNs* ns);  // frees the one that it replaces
    void reconcileNamespace();
    void notifyDidInsertNode(const Ref<WQXMLNode>& child);   // fires 4 on it, naming this node
    void notifyWillRemoveNode(const Ref<WQXMLNode>& child);  // fires 8 on it, naming this node

protected:
    // This object as a reference; null for the null object.
    Ref<WQXMLNode> self() const noexcept { return Ref(const_cast<WQXMLNode*>(this)); }
    // What children are linked under: the node, or a document's own structure.
    virtual _xmlNode* linkTarget() const noexcept { return my.impl; }
    bool anyoneListens() const;  // here or further up

    ~WQXMLNode() override {
        if (my.rare) deleteRare();
    }
    void teardown() override;

    enum : uint8_t {
        kTreeReference = 16,  // the node holds one count
        kNormalized = 32,     // a text's `normalized`
        kInitialised = 64,    // initWithXMLNode has run
    };

private:
    friend struct wq::Binding;

    // What few nodes need, made on first use, so that a wrapper stays at 32 bytes.
    struct Rare;
    Rare& makeRare();
    void deleteRare() noexcept;
    void teardownWithNode();

    // Invariants: my.impl->_private is this while my.impl is not null. An unlinked node without
    // kTreeReference is owned by this wrapper and listed as detached in its document.
    struct {
        _xmlNode* impl = nullptr;
        Rare* rare = nullptr;
    } my;
};
static_assert(sizeof(WQXMLNode) == 32);

// What null answers where a dead wrapper answers otherwise, and the setters that would change the
// one instance. Everything else needs no word: it finds no node, and null never asserts.
// An application class with fields and setters of its own overrides them in a Nil of its own.
template <class T> class NilNode : public T {
public:
    uint16_t nodeType() const override { return 0; }
    NSString nodeName() const override { return nullptr; }
    std::optional<WQXMLNode::Sequence> childNodes() const override { return std::nullopt; }
    uint64_t indexOfChild(const Ref<WQXMLNode>&) const override { return 0; }
    void setRange(NSRange) override {}
    NSString printDescription() const override { return nullptr; }
    void printTree() const override {}
    void addListener_forEvent_useCapture(WQXMLEventListener*, int32_t, bool) override {}
    bool dispatchEvent(const Ref<WQXMLEvent>&) override { return false; }
    bool initWithXMLNode(_xmlNode*) override { return false; }
    void setXMLNode(_xmlNode*) noexcept override {}
    void setOwnedNs(_xmlNs*) override {}
};
