#include "dom/Binding.h"

#include <libxml/globals.h>
#include <libxml/valid.h>

#include <memory>
#include <new>
#include <unordered_map>
#include <unordered_set>

#include "dom/Rare.h"
#include "dom/WQXMLDocument.h"
#include "dom/WQXMLElement.h"
#include "platform/WQXMLException.h"

namespace wq {

GuardedCall* GuardedCall::current = nullptr;
WaitingChecks* WaitingChecks::current = nullptr;
bool gInStartElement = false;

KeptAlive::KeptAlive(const WQXMLNode* receiver) : node(const_cast<WQXMLNode*>(receiver)), document(receiver->ownerDocument()) {}

void WaitingChecks::takePending() {
    if (xmlNodePtr node = std::exchange(gCheckNode, nullptr)) elements.push_back(wrapped(node));
}

void WaitingChecks::settle() {
    takePending();
    current = outer;
    for (const Ref<WQXMLNode>& element : std::exchange(elements, {})) {
        gCheckNode = element->xmlNode();  // null if an earlier one let it go
        checkNode();
    }
}

void GuardedCall::keep(std::exception_ptr failure, xmlError* error) noexcept {
    if (!first) {
        report = {};
        reported = xmlCopyError(error, &report) == 0;
    }
    keep(std::move(failure));
}

void GuardedCall::raise() {
    current = outer;
    if (reported) xmlCopyError(&report, &xmlLastError);
    if (first) std::rethrow_exception(std::exchange(first, nullptr));
}

NSString takeString(xmlChar* bytes) {
    const std::unique_ptr<xmlChar, decltype(xmlFree)> owned(bytes, xmlFree);
    return fromUTF8(bytes);
}

OwnNamespace newNamespace(const NSString& uri, const NSString& prefix) {
    return OwnNamespace(xmlNewNs(nullptr, Bytes(uri), Bytes(prefix)));
}

void FreeDocument::operator()(xmlDocPtr doc) const {
    GuardedCall guard;  // nothing of the application is asked about such a document
    xmlFreeDoc(doc);
}

namespace {

bool isOwnText(const xmlChar* text, xmlDocPtr doc) { return text && !(doc && doc->dict && xmlDictOwns(doc->dict, text)); }

void freeIdentifier(void* entry, const xmlChar*) {
    auto* identifier = static_cast<xmlIDPtr>(entry);
    for (const xmlChar* text : {identifier->value, identifier->name})
        if (isOwnText(text, identifier->doc)) xmlFree(const_cast<xmlChar*>(text));
    xmlFree(identifier);
}

struct IdentifierSearch {
    xmlAttrPtr attribute;
    const xmlChar* key;  // of the entry, and as long there
};

void findIdentifier(void* entry, void* search, const xmlChar* key) {
    auto* wanted = static_cast<IdentifierSearch*>(search);
    if (static_cast<xmlIDPtr>(entry)->attr == wanted->attribute) wanted->key = key;
}

}  // namespace

// libxml2 finds the entry by the attribute's value, and misses it where that was written with a reference.
void Binding::forgetIdentifier(xmlAttrPtr attribute) {
    if (attribute->atype != XML_ATTRIBUTE_ID || !attribute->doc) return;
    if (xmlRemoveID(attribute->doc, attribute) == 0) return;
    attribute->atype = static_cast<xmlAttributeType>(0);
    auto* table = static_cast<xmlHashTablePtr>(attribute->doc->ids);
    IdentifierSearch search{attribute, nullptr};
    xmlHashScan(table, findIdentifier, &search);
    if (search.key) xmlHashRemoveEntry(table, search.key, freeIdentifier);
}

namespace {

WQXMLDocument* documentOf(xmlNodePtr node) { return Binding::wrapperOf(node->doc); }

// A document knows its DTDs by other links as well.
bool isLinked(xmlNodePtr node) { return node->parent || node->prev || node->next || node->type == XML_DTD_NODE; }

// Calls `visit` for the root and all below it, in document order, without recursion. The children
// of an entity reference belong to the declaration.
template <class Visit> void forEachNode(xmlNodePtr root, Visit&& visit) {
    for (xmlNodePtr node = root; node;) {
        visit(node);
        if (node->children && node->type != XML_ENTITY_REF_NODE) {
            node = node->children;
            continue;
        }
        while (node != root && !node->next) node = node->parent;
        node = node == root ? nullptr : node->next;
    }
}

template <class Visit> void forEachAttribute(xmlNodePtr element, Visit&& visit) {
    if (element->type != XML_ELEMENT_NODE) return;
    for (xmlAttrPtr attribute = element->properties; attribute; attribute = attribute->next) visit(attribute);
}

xmlAttrPtr asAttribute(xmlNodePtr node) { return node->type == XML_ATTRIBUTE_NODE ? reinterpret_cast<xmlAttrPtr>(node) : nullptr; }

// The table of identifiers is keyed by value, so an identifier leaves it before its value changes
// and enters it again afterwards; else libxml2 would forget to take the attribute out when it dies.
class IdentifierUpdate {
public:
    explicit IdentifierUpdate(xmlNodePtr parentOfValue) {
        xmlAttrPtr parent = parentOfValue ? asAttribute(parentOfValue) : nullptr;
        if (!parent || parent->atype != XML_ATTRIBUTE_ID || !parent->doc) return;
        attribute = parent;
        Binding::forgetIdentifier(attribute);
    }
    ~IdentifierUpdate() {
        if (!attribute) return;
        GuardedCall guard;                    // without memory it is not found
        attribute->atype = XML_ATTRIBUTE_ID;  // also while it has no value
        if (xmlChar* value = xmlNodeListGetString(attribute->doc, attribute->children, 1)) {
            xmlAddID(nullptr, attribute->doc, value, attribute);
            xmlFree(value);
        }
    }
    IdentifierUpdate(const IdentifierUpdate&) = delete;
    IdentifierUpdate& operator=(const IdentifierUpdate&) = delete;

private:
    xmlAttrPtr attribute = nullptr;
};

}  // namespace

void Binding::settleIdentifiers(xmlNodePtr element, const NSString& qualifiedName) {
    forEachAttribute(element, [&](xmlAttrPtr attribute) {
        if (attribute->atype != XML_ATTRIBUTE_ID) return;
        const NSString name = fromUTF8(attribute->name);
        if (name == qualifiedName || name == WQXMLNode::localNameForQName(qualifiedName))
            IdentifierUpdate(reinterpret_cast<xmlNodePtr>(attribute));
    });
}

// ---- New nodes

namespace {
// Lets a wrapper that was offered a node go without it.
struct Unbind {
    xmlNodePtr node;
    void operator()(WQXMLNode* made) const {
        try {
            Binding::leaveNamespaces(made, node, wrapper(node));
        } catch (const std::bad_alloc&) {
            Binding::leaveNamespaces(made, node, nullptr);  // needs none
        }
        made->setXMLNode(nullptr);
        made->release();
    }
};
}  // namespace

void FreeNode::operator()(xmlNodePtr node) const {
    GuardedCall guard;
    xmlFreeNode(node);
}

bool Binding::bindOwnNode(WQXMLNode* wrapper, xmlNodePtr node) {
    if (!node) return false;
    OwnNode owned(node);
    try {
        if (!wrapper->initWithXMLNode(node)) {
            wrapper->my.impl = nullptr;
            return false;
        }
    } catch (...) {
        wrapper->my.impl = nullptr;
        throw;
    }
    owned.release()->_private = wrapper;
    return true;
}

WQXMLDocument* Binding::wrapperOf(xmlDocPtr doc) {
    return doc && doc->psvi && doc->psvi == doc->_private ? static_cast<WQXMLDocument*>(doc->_private) : nullptr;
}

void Binding::bindDocument(WQXMLDocument* document, xmlDocPtr doc) { doc->_private = doc->psvi = document; }

namespace {
// Asked of the first object of each class.
bool isWrapper(const Object& object, const Class& aClass) {
    enum : char { kUnknown, kNo, kYes };
    static auto& known = *new std::vector<char>;  // never destroyed
    if (known.size() <= aClass.number()) known.resize(aClass.number() + size_t{1}, kUnknown);
    char& answer = known[aClass.number()];
    if (answer == kUnknown) answer = dynamic_cast<const WQXMLNode*>(&object) ? kYes : kNo;
    return answer == kYes;
}
}  // namespace

WQXMLNode* Binding::makeWrapper(const Class* aClass, xmlNodePtr node) {
    if (!aClass) return nullptr;
    auto object = Ref<Object>::adopt(aClass->make());
    if (!isWrapper(*object.get(), *aClass)) return nullptr;
    std::unique_ptr<WQXMLNode, Unbind> made(static_cast<WQXMLNode*>(object.leak()), Unbind{node});
    return made->initWithXMLNode(node) ? made.release() : nullptr;
}

void Binding::replaceWrapper(xmlNodePtr node, WQXMLNode* replacement) {
    WQXMLNode* present = wrapper(node);
    leaveNamespaces(present, node, replacement);
    setHoldsTreeReference(replacement, true);
    node->_private = replacement;
    present->setXMLNode(nullptr);
    if (!holdsTreeReference(present)) return;
    setHoldsTreeReference(present, false);
    present->release();
}

void Binding::leaveNamespaces(WQXMLNode* leaving, xmlNodePtr node, WQXMLNode* staying) {
    WQXMLNode::Rare* rare = leaving->my.rare;
    if (!rare) return;
    if (staying) {
        size_t number = 0;
        rare->forEach([&](xmlNsPtr) { ++number; });
        auto& borrowed = borrowedNamespaces(staying);
        borrowed.reserve(borrowed.size() + number);  // what needs memory comes first
        rare->forEach([&](xmlNsPtr ns) { borrowed.push_back(ns); });
    } else if (node->type == XML_ELEMENT_NODE) {
        rare->forEach([&](xmlNsPtr ns) { ns->next = std::exchange(node->nsDef, ns); });
    } else {
        rare->forEach([](xmlNsPtr ns) { xmlFreeNs(ns); });  // only elements are given any
    }
    rare->ownedNs = nullptr;
    rare->ownedNamespaces.clear();
    rare->borrowed.clear();
}

void Binding::ownBorrowed(WQXMLNode* element, xmlNsPtr ns) {
    if (element->ownedNs() == ns) return;
    std::erase(borrowedNamespaces(element), ns);
    element->setOwnedNs(ns);
}

Ref<WQXMLNode> Binding::adoptNewNode(xmlNodePtr node) {
    WQXMLNode* made = wrapper(node);
    try {
        detach(node);
    } catch (...) {
        FreeNode()(node);
        throw;
    }
    setHoldsTreeReference(made, false);
    return Ref<WQXMLNode>::adopt(made);
}

// ---- Counts

void Binding::takeTreeReference(WQXMLNode* wrapper) {
    if (holdsTreeReference(wrapper)) return;
    attach(wrapper->my.impl);
    setHoldsTreeReference(wrapper, true);
    wrapper->retain();
}

// ---- Detached nodes: an unlinked node may outlive the document that it names

namespace {
// A field of the node that only libxml2's schema validation uses holds its record. A DTD has no such
// field: its wrapper keeps the record.
DetachedNode* recordOf(xmlNodePtr node) {
    if (xmlAttrPtr attribute = asAttribute(node)) return static_cast<DetachedNode*>(attribute->psvi);
    return node->type == XML_DTD_NODE ? Binding::recordOfDTD(wrapper(node)) : static_cast<DetachedNode*>(node->psvi);
}

void setRecord(xmlNodePtr node, DetachedNode* record) {
    if (xmlAttrPtr attribute = asAttribute(node))
        attribute->psvi = record;
    else if (node->type == XML_DTD_NODE)
        Binding::setRecordOfDTD(wrapper(node), record);
    else
        node->psvi = record;
}
}  // namespace

DetachedNode* Binding::recordOfDTD(const WQXMLNode* dtd) { return dtd->my.rare ? dtd->my.rare->detached : nullptr; }
void Binding::setRecordOfDTD(WQXMLNode* dtd, DetachedNode* record) { dtd->makeRare().detached = record; }

namespace {
// The lists of documents that have no wrapper: the application's own, made by libxml2's calls.
std::unordered_map<xmlDocPtr, std::unique_ptr<DetachedNode>> gListsOfOthers;

DetachedNode& listOf(xmlDocPtr doc) {
    if (WQXMLDocument* document = Binding::wrapperOf(doc)) return document->detachedNodes();
    auto& list = gListsOfOthers[doc];
    if (!list) list = std::make_unique<DetachedNode>();
    return *list;
}
}  // namespace

void Binding::detach(xmlNodePtr node) { listAsDetached(node, node->doc); }

void Binding::listAsDetached(xmlNodePtr node, xmlDocPtr doc) {
    if (!doc) return attach(node);
    DetachedNode& list = listOf(doc);
    if (DetachedNode* record = recordOf(node)) return record->moveTo(list);
    auto record = std::make_unique<DetachedNode>(node, list);
    setRecord(node, record.get());
    static_cast<void>(record.release());  // the node has it
}

void Binding::attach(xmlNodePtr node) {
    DetachedNode* record = recordOf(node);
    if (!record) return;
    setRecord(node, nullptr);
    delete record;
}

// ---- Namespaces

std::vector<xmlNsPtr>& Binding::borrowedNamespaces(WQXMLNode* wrapper) { return wrapper->makeRare().borrowed; }
std::vector<xmlNsPtr>& Binding::ownedNamespaces(WQXMLNode* element) { return element->makeRare().ownedNamespaces; }
size_t Binding::numberOfOwnedNamespaces(const WQXMLNode* element) {
    return element->my.rare ? element->my.rare->ownedNamespaces.size() : 0;
}

template <class Visit> void Binding::forEachNamespace(const WQXMLNode* wrapper, Visit&& visit) {
    if (wrapper->my.rare) wrapper->my.rare->forEach(visit);
}

namespace {

// A copy that no tree holds. xmlNewNs itself refuses the prefix "xml".
OwnNamespace copyNamespace(xmlNsPtr ns) {
    OwnNamespace copy(xmlNewNs(nullptr, ns->href, nullptr));
    if (copy && ns->prefix) copy->prefix = xmlStrdup(ns->prefix);
    if (!copy || (ns->prefix && !copy->prefix)) throw std::bad_alloc();
    return copy;
}

// Gives a subtree that leaves its tree namespaces of its own: those that belong to a former
// ancestor, or to the document, are replaced by copies that the root's wrapper keeps.
class Localiser {
public:
    explicit Localiser(xmlNodePtr subtree) : root(subtree) {}

    void run() {
        if (xmlAttrPtr attribute = asAttribute(root)) return localise(attribute->ns);
        forEachNode(root, [this](xmlNodePtr node) {
            if (node->type != XML_ELEMENT_NODE) return;
            noteOwn(node);
            localise(node->ns);
            forEachAttribute(node, [this](xmlAttrPtr attribute) { localise(attribute->ns); });
        });
    }

private:
    // Parents come first, so whatever a node may point to within the subtree is known by then.
    void noteOwn(xmlNodePtr element) {
        for (xmlNsPtr ns = element->nsDef; ns; ns = ns->next) own.insert(ns);
        if (WQXMLNode* bound = wrapper(element)) Binding::forEachNamespace(bound, [this](xmlNsPtr ns) { own.insert(ns); });
    }

    void localise(xmlNsPtr& ns) {
        if (!ns || own.count(ns)) return;
        if (ns != lastForeign) {
            lastForeign = ns;
            xmlNsPtr& copy = copies[ns];
            if (!copy) copy = borrow(ns);
            lastCopy = copy;
        }
        ns = lastCopy;
    }

    xmlNsPtr borrow(xmlNsPtr ns) {
        auto& borrowed = Binding::borrowedNamespaces(wrapper(root));
        for (xmlNsPtr known : borrowed)
            if (xmlStrEqual(known->href, ns->href) && xmlStrEqual(known->prefix, ns->prefix)) return known;
        OwnNamespace copy = copyNamespace(ns);
        borrowed.push_back(copy.get());
        return copy.release();
    }

    xmlNodePtr root;
    std::unordered_set<xmlNsPtr> own;
    std::unordered_map<xmlNsPtr, xmlNsPtr> copies;
    xmlNsPtr lastForeign = nullptr, lastCopy = nullptr;
};

// A node alone that has no namespace and no attribute points to none.
bool needsNoNamespace(xmlNodePtr node) {
    return node->type != XML_ATTRIBUTE_NODE && !node->children && (node->type != XML_ELEMENT_NODE || (!node->ns && !node->properties));
}

void localise(xmlNodePtr root) {
    if (wrapper(root) && !needsNoNamespace(root)) Localiser(root).run();
}

bool declares(xmlNodePtr node, xmlNsPtr wanted) {
    bool found = false;
    if (node->type == XML_ELEMENT_NODE)
        for (xmlNsPtr ns = node->nsDef; ns; ns = ns->next) found |= ns == wanted;
    if (const WQXMLNode* bound = wrapper(node)) Binding::forEachNamespace(bound, [&](xmlNsPtr ns) { found |= ns == wanted; });
    return found;
}

// Where a name has a namespace that is not its subtree's, that is taken from it. Needs no memory; true if there was one.
bool forgetForeignNamespaces(xmlNodePtr root) {
    bool forgot = false;
    auto check = [&](xmlNodePtr element, xmlNsPtr& ns) {
        if (!ns) return;
        for (xmlNodePtr above = element; above; above = above == root ? nullptr : above->parent)
            if (declares(above, ns)) return;
        ns = nullptr;
        forgot = true;
    };
    if (xmlAttrPtr attribute = asAttribute(root)) {
        check(root, attribute->ns);
        return forgot;
    }
    forEachNode(root, [&](xmlNodePtr node) {
        if (node->type == XML_ELEMENT_NODE) check(node, node->ns);
        forEachAttribute(node, [&](xmlAttrPtr attribute) { check(node, attribute->ns); });
    });
    return forgot;
}

// For a subtree whose document goes, memory or not: raises where a namespace is lost.
void localiseOrForget(xmlNodePtr root) {
    try {
        localise(root);
    } catch (const std::bad_alloc&) {
        if (forgetForeignNamespaces(root)) throw;
    }
}

std::unordered_set<xmlNsPtr> namespacesInUse(xmlNodePtr root) {
    std::unordered_set<xmlNsPtr> used;
    forEachNode(root, [&](xmlNodePtr node) {
        if (node->type == XML_ELEMENT_NODE) used.insert(node->ns);
        forEachAttribute(node, [&](xmlAttrPtr attribute) { used.insert(attribute->ns); });
    });
    return used;
}

}  // namespace

void Binding::reconcileNamespaces(WQXMLNode* wrapper) {
    xmlNodePtr node = wrapper->my.impl;
    if (!node || !node->doc || node->type != XML_ELEMENT_NODE) return;
    WQXMLNode::Rare* rare = wrapper->my.rare;
    const bool ownsSome = rare && (rare->ownedNs || !rare->borrowed.empty());
    if (!ownsSome && !node->ns && !node->properties && !node->children) return;  // nothing to reconcile
    if (xmlReconciliateNs(node->doc, node) == -1 || !ownsSome) return;

    // What a descendant found by its search upwards stays for as long as it is in use.
    if (rare->ownedNs) rare->borrowed.push_back(rare->ownedNs);
    rare->ownedNs = nullptr;
    const auto used = namespacesInUse(node);
    std::erase_if(rare->borrowed, [&](xmlNsPtr ns) {
        if (used.count(ns)) return false;
        xmlFreeNs(ns);
        return true;
    });
}

// ---- Linking

namespace {

// An entity reference points to its declaration, and into it.
void forgetDeclaration(xmlNodePtr node) {
    if (node->type != XML_ENTITY_REF_NODE) return;
    node->children = node->last = nullptr;
    node->content = nullptr;
}

// A document that was read with a dictionary keeps names and short texts of its nodes there.
template <class Text> void takeOut(Text*& text, xmlDictPtr dictionary) {
    if (text && xmlDictOwns(dictionary, text)) text = xmlStrdup(text);
}

bool holdsContent(xmlNodePtr node) {
    return node->type == XML_TEXT_NODE || node->type == XML_CDATA_SECTION_NODE || node->type == XML_COMMENT_NODE ||
           node->type == XML_PI_NODE;
}

template <class Node> void takeStringsOut(Node* node, xmlDocPtr doc) {
    if (!doc || !doc->dict) return;
    takeOut(node->name, doc->dict);
    if constexpr (std::is_same_v<Node, xmlNode>)
        if (holdsContent(node)) takeOut(node->content, doc->dict);
}

// What xmlSetTreeDoc does, without its recursion, for trees of any depth: identifiers leave the old
// document's table, and entity references let go of its declarations.
void setDocument(xmlNodePtr root, xmlDocPtr doc) {
    if (root->doc == doc) return;
    auto move = [doc](xmlAttrPtr attribute) {
        Binding::forgetIdentifier(attribute);
        takeStringsOut(attribute, attribute->doc);
        attribute->doc = doc;
        for (xmlNodePtr value = attribute->children; value; value = value->next) {
            forgetDeclaration(value);
            takeStringsOut(value, value->doc);
            value->doc = doc;
        }
    };
    if (xmlAttrPtr attribute = asAttribute(root)) return move(attribute);
    forEachNode(root, [&](xmlNodePtr node) {
        forEachAttribute(node, move);
        forgetDeclaration(node);
        takeStringsOut(node, node->doc);
        node->doc = doc;
    });
}

}  // namespace

void Binding::nameDocument(xmlNodePtr node, xmlDocPtr doc) { setDocument(node, doc); }

// Entity references point to declarations, which go with their DTD.
void Binding::forgetDeclarations(xmlNodePtr dtd) {
    auto forget = [dtd](xmlNodePtr node) {
        if (node->type == XML_ENTITY_REF_NODE && node->children && node->children->parent == dtd) forgetDeclaration(node);
    };
    auto forgetBelow = [&](xmlNodePtr root) {
        forEachNode(root, [&](xmlNodePtr node) {
            forget(node);
            forEachAttribute(node, [&](xmlAttrPtr attribute) {
                for (xmlNodePtr value = attribute->children; value; value = value->next) forget(value);
            });
        });
    };
    if (!dtd->doc) return;
    forgetBelow(reinterpret_cast<xmlNodePtr>(dtd->doc));
    WQXMLDocument* document = documentOf(dtd);
    if (!document) return;
    const DetachedNode& list = document->detachedNodes();
    for (const DetachedNode* record = list.next; record != &list; record = record->next) forgetBelow(record->node);
}

namespace {

void unlinkFromLists(xmlNodePtr node) {
    if (node->type == XML_DTD_NODE) Binding::forgetDeclarations(node);
    IdentifierUpdate update(node->parent);
    xmlUnlinkNode(node);
}

// What needs memory comes ahead of the first change, so that the want of it leaves a node where it was. Namespaces of its
// own do no harm there.
void prepareToMove(xmlNodePtr node, xmlDocPtr doc) {
    if (isLinked(node) || node->doc != doc) localise(node);
}

// The attribute that a new one replaces. libxml2 may answer with a declaration of the DTD instead.
xmlAttrPtr sameNamed(xmlNodePtr element, xmlAttrPtr attribute) {
    xmlAttrPtr found = attribute->ns ? xmlHasNsProp(element, attribute->name, attribute->ns->href) : xmlHasProp(element, attribute->name);
    return found && found != attribute && found->type == XML_ATTRIBUTE_NODE ? found : nullptr;
}

// Unlinked first, so that the attribute list keeps no freed entry.
void freeAttribute(xmlAttrPtr attribute) {
    xmlUnlinkNode(reinterpret_cast<xmlNodePtr>(attribute));
    guarded([&] { xmlFreeProp(attribute); });
}

xmlNodePtr lastAttribute(xmlNodePtr element) {
    auto* node = reinterpret_cast<xmlNodePtr>(element->properties);
    while (node && node->next) node = node->next;
    return node;
}

// By hand: xmlAddChild would merge adjacent texts and free the child.
void linkBetween(xmlNodePtr child, xmlNodePtr parent, xmlNodePtr previous, xmlNodePtr next) {
    IdentifierUpdate update(parent);
    child->parent = parent;
    child->prev = previous;
    child->next = next;
    if (previous) previous->next = child;
    if (next) next->prev = child;
    if (!parent) return;
    if (xmlAttrPtr attribute = asAttribute(child)) {
        if (!previous) parent->properties = attribute;
        return;
    }
    if (!previous) parent->children = child;
    if (!next) parent->last = child;
    if (child->type == XML_DTD_NODE && !parent->doc->intSubset) parent->doc->intSubset = reinterpret_cast<xmlDtdPtr>(child);
}

bool isDocumentNode(xmlNodePtr node) { return node->type == XML_DOCUMENT_NODE || node->type == XML_HTML_DOCUMENT_NODE; }

// Its declarations cannot take their strings out.
bool isDTDWithDictionary(xmlNodePtr node) { return node->type == XML_DTD_NODE && node->doc && node->doc->dict; }

bool hasOtherDTD(xmlNodePtr document, xmlNodePtr dtd) {
    const auto* present = reinterpret_cast<xmlNodePtr>(reinterpret_cast<xmlDocPtr>(document)->intSubset);
    return present && present != dtd;
}

}  // namespace

bool Binding::canLink(xmlNodePtr child, xmlNodePtr parent, xmlNodePtr reference) {
    if (reference) {
        parent = reference->parent;
        if (asAttribute(reference) && !asAttribute(child)) return false;
    }
    if (!parent) return child->type != XML_ATTRIBUTE_NODE && child->type != XML_DTD_NODE;
    if (asAttribute(child)) return parent->type == XML_ELEMENT_NODE;
    if (child->type == XML_DTD_NODE)
        return isDocumentNode(parent) && !hasOtherDTD(parent, child) && (child->doc == parent->doc || !isDTDWithDictionary(child));
    if (asAttribute(parent)) return child->type != XML_ELEMENT_NODE;
    return parent->type == XML_ELEMENT_NODE || isDocumentNode(parent);
}

void Binding::linkAhead(WQXMLNode* child, xmlNodePtr reference) {
    xmlNodePtr node = child->my.impl, parent = reference->parent;
    prepareToMove(node, reference->doc);
    const bool staysDetached = !parent && !holdsTreeReference(child);  // beside a node without parent: the caller's still
    if (staysDetached) listAsDetached(node, reference->doc);
    if (isLinked(node)) unlinkFromLists(node);
    if (xmlAttrPtr attribute = asAttribute(node)) {
        if (!asAttribute(reference)) return linkUnlinkedLast(child, parent);
        if (xmlAttrPtr same = sameNamed(parent, attribute)) {
            if (reinterpret_cast<xmlNodePtr>(same) == reference) reference = reference->next;
            freeAttribute(same);
        }
        if (!reference) return linkUnlinkedLast(child, parent);
    }
    setDocument(node, reference->doc);
    linkBetween(node, parent, reference->prev, reference);
    if (!staysDetached) attach(node);
    if (parent) takeTreeReference(child);
}

void Binding::linkLast(WQXMLNode* child, xmlNodePtr parent) {
    xmlNodePtr node = child->my.impl;
    if (node->parent == parent) return takeTreeReference(child);  // nothing to link
    prepareToMove(node, parent->doc);
    if (isLinked(node)) unlinkFromLists(node);
    linkUnlinkedLast(child, parent);
}

void Binding::linkUnlinkedLast(WQXMLNode* child, xmlNodePtr parent) {
    xmlNodePtr node = child->my.impl;
    xmlAttrPtr attribute = asAttribute(node);
    if (attribute)
        if (xmlAttrPtr same = sameNamed(parent, attribute)) freeAttribute(same);
    setDocument(node, parent->doc);
    linkBetween(node, parent, attribute ? lastAttribute(parent) : parent->last, nullptr);
    attach(node);
    takeTreeReference(child);
}

Ref<WQXMLNode> Binding::unlink(WQXMLNode* child) {
    xmlNodePtr node = child->my.impl;
    localise(node);
    detach(node);
    unlinkFromLists(node);
    if (!holdsTreeReference(child)) return Ref<WQXMLNode>(child);
    setHoldsTreeReference(child, false);
    return Ref<WQXMLNode>::adopt(child);
}

void Binding::linkAsRoot(Ref<WQXMLElement>&& element, xmlDocPtr doc) {
    xmlNodePtr node = element->xmlNode();
    prepareToMove(node, doc);
    if (isLinked(node)) unlinkFromLists(node);
    setDocument(node, doc);
    attach(node);
    xmlNodePtr old = xmlDocSetRootElement(doc, node);
    WQXMLElement* root = element.leak();
    if (holdsTreeReference(root))
        root->release();  // it stood in a tree: that reference goes on
    else
        setHoldsTreeReference(root, true);
    if (old) guarded([&] { xmlFreeNode(old); });  // unlinked by the call above; its wrappers go by the hook
}

// ---- Content

void Binding::setContent(xmlNodePtr text, const xmlChar* content) {
    // The copy comes first: libxml2 itself would free the old content ahead of it.
    std::unique_ptr<xmlChar, decltype(xmlFree)> copy(guarded([&] { return xmlStrdup(content); }, xmlFree), xmlFree);
    if (content && !copy) throw std::bad_alloc();
    IdentifierUpdate update(text->parent);
    xmlNodeSetContent(text, nullptr);
    text->content = copy.release();  // taken as it stands
}

void Binding::setValue(xmlAttrPtr attribute, const NSString& value) {
    const Bytes bytes(value);
    IdentifierUpdate update(reinterpret_cast<xmlNodePtr>(attribute));
    guarded([&] {
        xmlNodePtr old = std::exchange(attribute->children, nullptr);
        attribute->last = nullptr;
        if (old) xmlFreeNodeList(old);  // its wrappers go by the hook
        if (!value) return;
        xmlChar* encoded = xmlEncodeEntitiesReentrant(attribute->doc, bytes);
        attribute->children = xmlStringGetNodeList(attribute->doc, encoded);
        for (xmlNodePtr text = attribute->children; text; text = text->next) {
            text->parent = reinterpret_cast<xmlNodePtr>(attribute);
            attribute->last = text;
        }
        xmlFree(encoded);
    });
}

void Binding::appendCopies(WQXMLNode* parent, xmlNodePtr originals) {
    WaitingChecks waiting;  // a copy is not to be edited before it is whole
    xmlNodePtr node = parent->my.impl, added = nullptr;
    xmlDocPtr doc = node ? node->doc : nullptr;
    xmlNodePtr copies = guarded([&] { return xmlDocCopyNodeList(doc, originals); }, xmlFreeNodeList);
    if (node) guarded([&] { added = xmlAddChildList(node, copies); });
    if (added) {
        reconcileNamespaces(parent);
        return waiting.settle();
    }
    if (copies) guarded([&] { xmlFreeNodeList(copies); });
    throw WQXMLException(NSInternalInconsistencyException, u"Could not add children to element");
}

// ---- The end

void Binding::freeNode(WQXMLNode* wrapper) {
    xmlNodePtr node = wrapper->my.impl;
    unlinkFromLists(node);
    attach(node);
    node->_private = nullptr;
    wrapper->my.impl = nullptr;
    const Ref<WQXMLDocument> kept(documentOf(node));  // a wrapper below may hold the last count of it
    xmlFreeNode(node);
}

void Binding::letDetachedNodesGo(xmlDocPtr doc) {
    WQXMLDocument* document = Binding::wrapperOf(doc);
    const auto other = gListsOfOthers.find(doc);
    if (!document && other == gListsOfOthers.end()) return;
    const DetachedNode& list = document ? document->detachedNodes() : *other->second;
    if (document) doc->_private = doc->psvi = nullptr;
    while (list.next != &list) {
        xmlNodePtr root = list.next->node;
        attach(root);
        if (root->doc != doc || root->parent) continue;  // libxml2 itself has linked it
        WQXMLNode* bound = wrapper(root);
        if (isDTDWithDictionary(root)) {
            xmlFreeNode(root);
            continue;
        }
        keepFailure([&] { localiseOrForget(root); });
        setDocument(root, nullptr);
        if (bound && holdsTreeReference(bound)) xmlFreeNode(root);  // nobody but the node holds the wrapper
    }
    gListsOfOthers.erase(doc);
}

}  // namespace wq
