#include "dom/WQXMLNode.h"

#include <fmt/format.h>

#include <algorithm>

#include "dom/Binding.h"
#include "dom/Rare.h"
#include "dom/WQXMLDocument.h"
#include "dom/WQXMLEventListener.h"
#include "dom/WQXMLMutationEvent.h"
#include "platform/Assertion.h"
#include "platform/Log.h"

using wq::Binding;
using wq::wrapped;
using wq::wrapper;

// ---- Storage: blocks of wrappers, one free list for each size. Under a sanitizer each wrapper
// stands alone, so that a use after its end is found.

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kSlab = false;
#elif defined(__has_feature)
constexpr bool kSlab = !__has_feature(address_sanitizer);
#else
constexpr bool kSlab = true;
#endif
constexpr size_t kUnit = 16, kLargest = 64, kBlock = size_t{64} * 1024;

struct FreeCell {
    FreeCell* next;
};
thread_local FreeCell* gFree[kLargest / kUnit + 1];

size_t roundedUp(size_t size) { return (size + kUnit - 1) / kUnit * kUnit; }

void* carve(size_t size) {
    auto* block = static_cast<char*>(::operator new(kBlock));
    FreeCell*& head = gFree[size / kUnit];
    for (size_t at = (kBlock / size - 1) * size; at; at -= size) head = new (block + at) FreeCell{head};
    return block;
}

}  // namespace

void* WQXMLNode::operator new(size_t size) {
    size = roundedUp(size);
    if (!kSlab || size > kLargest) return ::operator new(size);
    FreeCell*& head = gFree[size / kUnit];
    return head ? std::exchange(head, head->next) : carve(size);
}

void WQXMLNode::operator delete(void* memory, size_t size) noexcept {
    size = roundedUp(size);
    if (!kSlab || size > kLargest) return ::operator delete(memory);
    FreeCell*& head = gFree[size / kUnit];
    head = new (memory) FreeCell{head};
}

WQXMLNode::Rare& WQXMLNode::makeRare() { return my.rare ? *my.rare : *(my.rare = new Rare); }
WQXMLNode::~WQXMLNode() { delete my.rare; }

// ---- The end of a wrapper

// The last count of a linked node goes: only a node that was linked by libxml2 itself can get here.
// While the handler runs the tree has the count that it lacked, and one more keeps the wrapper whole,
// so that a handler that raises leaves everything sound. After one that returns the node goes all the
// same, unless the handler has taken it out of its tree or taken a reference.
void WQXMLNode::teardown() {
    if (my.impl && my.impl->parent) {
        Binding::takeTreeReference(this);
        Ref<WQXMLNode> kept(this);
        WQ_ASSERT(false, u"Freeing a node still held by the document");
        if (count > 2 || !Binding::holdsTreeReference(this)) return kept.reset();
        Binding::setHoldsTreeReference(this, false);
        kept.leak();
        count = 0;
    }
    flags |= kDying;  // references made from here on do not come back here
    wq::GuardedCall guard;
    if (my.impl) Binding::freeNode(this);
    delete this;
    guard.raise();
}

// ---- Qualified names

NSString WQXMLNode::localNameForQName(const NSString& name) {
    const size_t colon = name.view().find(u':');
    if (colon == std::u16string_view::npos) return name;
    if (colon + 1 == name.length()) return nullptr;
    return name.view().substr(colon + 1);
}

NSString WQXMLNode::prefixForQName(const NSString& name) {
    const size_t colon = name.view().find(u':');
    if (colon == std::u16string_view::npos || colon == 0) return nullptr;
    return name.view().substr(0, colon);
}

// ---- Identity

namespace {
bool isNamed(xmlNodePtr node) { return node && (node->type == XML_ELEMENT_NODE || node->type == XML_ATTRIBUTE_NODE); }
}  // namespace

uint16_t WQXMLNode::nodeType() const { return my.impl ? static_cast<uint16_t>(my.impl->type) : 0x7fff; }

NSString WQXMLNode::nodeName() const {
    const NSString ahead = prefix();
    return ahead ? ahead + u":" + wq::printed(localName()) : localName();
}

NSString WQXMLNode::nodeValue() const { return nullptr; }
NSString WQXMLNode::localName() const { return isNamed(my.impl) ? wq::fromUTF8(my.impl->name) : nullptr; }
NSString WQXMLNode::prefix() const { return isNamed(my.impl) && my.impl->ns ? wq::fromUTF8(my.impl->ns->prefix) : nullptr; }
NSString WQXMLNode::namespaceURI() const { return isNamed(my.impl) && my.impl->ns ? wq::fromUTF8(my.impl->ns->href) : nullptr; }

// ---- Navigation

Ref<WQXMLNode> WQXMLNode::parentNode() const { return wrapped(my.impl ? my.impl->parent : nullptr); }
Ref<WQXMLNode> WQXMLNode::firstChild() const { return wrapped(my.impl ? my.impl->children : nullptr); }
Ref<WQXMLNode> WQXMLNode::lastChild() const { return wrapped(my.impl ? my.impl->last : nullptr); }
Ref<WQXMLNode> WQXMLNode::previousSibling() const { return wrapped(my.impl ? my.impl->prev : nullptr); }
Ref<WQXMLNode> WQXMLNode::nextSibling() const { return wrapped(my.impl ? my.impl->next : nullptr); }

Ref<WQXMLDocument> WQXMLNode::ownerDocument() const { return Ref<WQXMLDocument>(Binding::wrapperOf(my.impl ? my.impl->doc : nullptr)); }

Ref<WQXMLNode> WQXMLNode::next() const {
    if (!my.impl) return nullptr;
    if (WQXMLNode* child = wrapper(my.impl->children)) return Ref(child);
    for (xmlNodePtr node = my.impl; wrapper(node); node = node->parent)
        if (WQXMLNode* sibling = wrapper(node->next)) return Ref(sibling);
    return nullptr;
}

Ref<WQXMLNode> WQXMLNode::previous() const {
    Ref<WQXMLNode> node = previousSibling();
    if (!node) return parentNode();
    while (Ref<WQXMLNode> last = node->lastChild()) node = last;
    return node;
}

namespace {
// The children as libxml2 nodes, for loops that need no references. Declarations have no wrapper
// and end a walk, as they do for the navigators.
xmlNodePtr withWrapper(xmlNodePtr node) { return wrapper(node) ? node : nullptr; }
xmlNodePtr firstChildOf(xmlNodePtr node) { return node ? withWrapper(node->children) : nullptr; }
}  // namespace

std::optional<WQXMLNode::Sequence> WQXMLNode::childNodes() const {
    Sequence nodes;
    for (xmlNodePtr node = firstChildOf(my.impl); node; node = withWrapper(node->next)) nodes.push_back(wrapped(node));
    return nodes;
}

bool WQXMLNode::hasChildNodes() const { return false; }
bool WQXMLNode::hasAttributes() const { return false; }

Ref<WQXMLNode> WQXMLNode::childAtIndex(uint64_t index) const {
    xmlNodePtr node = firstChildOf(my.impl);
    while (node && index--) node = withWrapper(node->next);
    return wrapped(node);
}

uint64_t WQXMLNode::indexOfChild(const Ref<WQXMLNode>& child) const {
    uint64_t index = 0;
    for (xmlNodePtr node = firstChildOf(my.impl); node; node = withWrapper(node->next), ++index)
        if (child == wrapper(node)) return index;
    return NSNotFound;
}

uint64_t WQXMLNode::numberOfChildren() const {
    uint64_t number = 0;
    for (xmlNodePtr node = firstChildOf(my.impl); node; node = withWrapper(node->next)) ++number;
    return number;
}

// ---- Ancestors

bool WQXMLNode::isAncestorOfNode(const Ref<WQXMLNode>& node) const {
    for (Ref<WQXMLNode> ancestor = node->parentNode(); ancestor; ancestor = ancestor->parentNode())
        if (ancestor == this) return true;
    return false;
}

bool WQXMLNode::isDescendantOfNode(const Ref<WQXMLNode>& node) const { return node->isAncestorOfNode(self()); }

Ref<WQXMLNode> WQXMLNode::commonAncestorWithNode(const Ref<WQXMLNode>& node) const {
    WQ_ASSERT(node != this, u"asking for common ancestor of self");
    Ref<WQXMLNode> a = self(), b = node;
    while (a && b) {
        if (a == b) return b;
        if (node->isDescendantOfNode(a)) return a;
        if (isDescendantOfNode(b)) return b;
        a = a->parentNode();
        b = b->parentNode();
    }
    return nullptr;
}

Ref<WQXMLNode> WQXMLNode::ancestorAtDepth(uint64_t depth) const {
    WQ_ASSERT(this->depth() > depth, u"ancestorAtDepth depth too shallow");
    Ref<WQXMLNode> ancestor = self();
    do {
        ancestor = ancestor->parentNode();
    } while (ancestor->depth() > depth);
    return ancestor;
}

Ref<WQXMLNode> WQXMLNode::childAncestorOfNode(const Ref<WQXMLNode>& node) const {
    WQ_ASSERT(node != this, u"Requesting child ancestor of self");
    Ref<WQXMLNode> child = node;
    while (child && child->parentNode() != this) child = child->parentNode();
    return child;
}

// A detached tree that names a document has a missing node above its top, whose parent and
// document are both null and so compare equal: that costs one step more, and is wanted.
uint64_t WQXMLNode::depth() const {
    WQ_ASSERT(ownerDocument() != this, u"Can't call depth on document");
    uint64_t depth = 0;
    for (Ref<WQXMLNode> node = self(); node->parentNode() != node->ownerDocument(); node = node->parentNode()) ++depth;
    return depth;
}

namespace {
// Counted from 1 among siblings of the same name. A null name equals nothing.
uint64_t positionAmongNamesakes(const Ref<WQXMLNode>& node) {
    const NSString name = node->localName(), prefix = node->prefix();
    uint64_t position = 1;
    if (!name) return position;
    for (Ref<WQXMLNode> sibling = node->previousSibling(); sibling; sibling = sibling->previousSibling())
        if (sibling->localName() == name && sibling->prefix() == prefix) ++position;
    return position;
}
}  // namespace

NSString WQXMLNode::XPath() const {
    std::vector<std::string> steps;  // the last one first
    for (Ref<WQXMLNode> node = self(); node && node->nodeType() != XML_DOCUMENT_NODE; node = node->parentNode()) {
        const std::string ahead = node->prefix() ? wq::toUTF8(node->prefix()) + ":" : "";
        steps.push_back(fmt::format("/{}{}[{}]", ahead, wq::toUTF8(wq::printed(node->localName())), positionAmongNamesakes(node)));
    }
    return wq::fromUTF8(fmt::format("{}", fmt::join(steps.rbegin(), steps.rend(), "")));
}

// ---- Edits

Ref<WQXMLNode> WQXMLNode::insertChild_before(const Ref<WQXMLNode>& child, const Ref<WQXMLNode>& reference) {
    const Ref<WQXMLNode> receiver = self(), inserted = child, before = reference == child ? child->nextSibling() : reference;
    // A listener may undo what made the insertion possible, so this is asked twice.
    auto canInsert = [&] {
        if (!linkTarget() || !inserted->my.impl || (before && !before->my.impl)) return false;
        return Binding::canLink(inserted->my.impl, linkTarget(), before->my.impl);
    };
    if (!canInsert()) return nullptr;

    // 1-2. The old parent lets go first; its listeners see the child still in place.
    if (Ref<WQXMLNode> parent = inserted->parentNode()) parent->removeChild(inserted);
    if (!canInsert()) return nullptr;

    // 3-4. The child lands beside the reference, wherever that stands, and gets the tree's count.
    if (before)
        Binding::linkAhead(inserted.get(), before->my.impl);
    else
        Binding::linkLast(inserted.get(), linkTarget());

    // 5-6.
    inserted->reconcileNamespace();
    notifyDidInsertNode(inserted);
    return inserted;
}

void WQXMLNode::insertChild_atIndex(const Ref<WQXMLNode>& child, uint64_t index) { insertChild_before(child, childAtIndex(index)); }
Ref<WQXMLNode> WQXMLNode::appendChild(const Ref<WQXMLNode>& child) { return insertChild_before(child, nullptr); }

Ref<WQXMLNode> WQXMLNode::removeChild(const Ref<WQXMLNode>& child) {
    const Ref<WQXMLNode> receiver = self(), removed = child;
    if (!linkTarget() || !removed->my.impl) return nullptr;
    notifyWillRemoveNode(removed);
    if (!removed->my.impl) return removed;  // a listener let its document go
    return Binding::unlink(removed.get());
}

void WQXMLNode::removeChildren() {
    const Ref<WQXMLNode> receiver = self();
    while (Ref<WQXMLNode> child = firstChild()) removeChild(child);
}

void WQXMLNode::appendChildrenFromNode(const Ref<WQXMLNode>& node) {
    const Ref<WQXMLNode> receiver = self(), source = node;
    if (!linkTarget() || source == this) return;
    while (Ref<WQXMLNode> child = source->firstChild())
        if (!appendChild(child)) return;  // which takes it from there first
}

Ref<WQXMLNode> WQXMLNode::splitAtIndex_intoNode(uint64_t, const Ref<WQXMLNode>&) {
    WQ_ASSERT(false, u"subclass responsibility");
    return nullptr;
}

Ref<WQXMLNode> WQXMLNode::splitAtIndex(uint64_t) {
    WQ_ASSERT(false, u"subclass responsibility");
    return nullptr;
}

void WQXMLNode::mergeWithNode(const Ref<WQXMLNode>&) { WQ_ASSERT(false, u"subclass responsibility"); }

// ---- Copies

Ref<WQXMLNode> WQXMLNode::copyWithZone() const {
    WQ_ASSERT(false, u"WQXMLNode copyWithZone called");
    return nullptr;
}

Ref<WQXMLNode> WQXMLNode::copyNode(bool deep) const {
    Ref<WQXMLNode> copied = copy();
    if (deep)
        for (Ref<WQXMLNode> child = firstChild(); child; child = child->nextSibling()) copied->appendChild(child->copyNode(true));
    return copied;
}

// ---- Writing

void WQXMLNode::encodeWithWriter(const Ref<WQXMLWriter>&) const {}

// ---- Range

NSRange WQXMLNode::range() const {
    if (my.rare && my.rare->range) return *my.rare->range;
    return flags & kInitialised ? NSRange{NSNotFound, 0} : NSRange{};
}

void WQXMLNode::setRange(NSRange range) { makeRare().range = range; }

// ---- Print

NSString WQXMLNode::printDescription() const {
    return wq::printed(nodeName()) + u" - [" + wq::fromUTF8(fmt::format("{}", fmt::ptr(this))) + u"]";
}

void WQXMLNode::printTree() const {
    wq::log(NSString(std::u16string(depth(), u' ')) + printDescription());
    uint64_t index = 0;
    while (Ref<WQXMLNode> child = childAtIndex(index++)) child->printTree();
}

void WQXMLNode::print() const { printTree(); }

// ---- Binding

bool WQXMLNode::initWithXMLNode(xmlNodePtr node) {
    my.impl = node;
    if (my.rare) my.rare->range.reset();
    flags |= kInitialised;
    return true;
}

xmlNsPtr WQXMLNode::ownedNs() const noexcept { return my.rare ? my.rare->ownedNs : nullptr; }

void WQXMLNode::setOwnedNs(xmlNsPtr ns) {
    if (ns == ownedNs()) return;
    xmlFreeNs(std::exchange(makeRare().ownedNs, ns));  // the caller knows that nothing points to it
}

void WQXMLNode::reconcileNamespace() { Binding::reconcileNamespaces(this); }

// ---- Listeners

namespace {
template <class Records> auto findRecord(Records& records, const WQXMLEventListener* listener) {
    return std::find_if(records.begin(), records.end(), [&](auto& record) { return record->listener() == listener; });
}
}  // namespace

const std::vector<Ref<WQXMLEventListenerData>>* WQXMLNode::listeners() const {
    return my.rare && my.rare->listeners ? &*my.rare->listeners : nullptr;
}

void WQXMLNode::addListener_forEvent_useCapture(WQXMLEventListener* listener, int32_t event, bool capture) {
    auto& records = makeRare().listeners;
    if (!records) records.emplace();
    auto record = findRecord(*records, listener);
    if (record == records->end()) record = records->insert(record, WQXMLEventListenerData::newWithListener(listener));
    (*record)->addEvent_useCapture(event, capture);
}

void WQXMLNode::removeListener_forEvent_useCapture(WQXMLEventListener* listener, int32_t event, bool capture) {
    WQ_ASSERT(listeners(), u"removeListener called before listener added");
    if (!listeners()) return;
    auto& records = *my.rare->listeners;
    auto record = findRecord(records, listener);
    if (record == records.end()) return;
    (*record)->removeEvent_useCapture(event, capture);
    if ((*record)->isEmpty()) records.erase(record);
}

uint64_t WQXMLNode::captureEvents() const {
    uint64_t mask = 0;
    if (listeners())
        for (auto& record : *listeners()) mask |= record->captureEvents();
    return mask;
}

uint64_t WQXMLNode::events() const {
    uint64_t mask = 0;
    if (listeners())
        for (auto& record : *listeners()) mask |= record->events();
    return mask;
}

// ---- Dispatch

namespace {

using Mask = uint64_t (WQXMLEventListenerData::*)() const;

uint64_t bitsOf(const Ref<WQXMLEvent>& event) { return static_cast<uint64_t>(event->eventID()); }

// The records are walked as they stand, since a listener may add and remove on this node.
void callListeners(const Ref<WQXMLNode>& node, const Ref<WQXMLEvent>& event, Mask mask) {
    for (size_t i = 0; node->listeners() && i < node->listeners()->size(); ++i) {
        const Ref<WQXMLEventListenerData> record = (*node->listeners())[i];
        if (record->listener() && ((record.get()->*mask)() & bitsOf(event))) record->listener()->handleEvent(event);
    }
}

// `nodes` holds the nearest ancestor first, and the top of the tree is called first.
void callAncestors(const WQXMLNode::Sequence& nodes, const Ref<WQXMLEvent>& event, Mask mask) {
    for (auto node = nodes.rbegin(); node != nodes.rend() && !event->stopPropagation(); ++node) callListeners(*node, event, mask);
}

}  // namespace

bool WQXMLNode::dispatchEvent(const Ref<WQXMLEvent>& dispatched) {
    const Ref<WQXMLEvent> event = dispatched;

    // 1. Whatever target it was made with.
    const Ref<WQXMLNode> target = self();
    event->setTarget(target);

    // 2. Who hears it is fixed here.
    Sequence capturing, bubbling;
    for (Ref<WQXMLNode> node = parentNode(); node; node = node->parentNode()) {
        if (!node->listeners()) continue;
        if (node->captureEvents() & bitsOf(event)) capturing.push_back(node);
        if (node->events() & bitsOf(event)) bubbling.push_back(node);
    }

    // 3. Capture.
    event->setPhase(1);
    callAncestors(capturing, event, &WQXMLEventListenerData::captureEvents);

    // 4. At the target, whose capture listeners are never called.
    event->setPhase(2);
    if ((events() & bitsOf(event)) && !event->stopPropagation()) callListeners(target, event, &WQXMLEventListenerData::events);

    // 5. Bubbling, which runs from the top as well: wanted.
    if (event->canBubble() && !event->stopPropagation()) {
        event->setPhase(3);
        callAncestors(bubbling, event, &WQXMLEventListenerData::events);
    }

    // 6.
    return event->preventDefault();
}

// Without a listener on the way up nobody could see an event: none is made.
bool WQXMLNode::anyoneListens() const {
    for (const WQXMLNode* node = this; node; node = wrapper(node->my.impl ? node->my.impl->parent : nullptr))
        if (node->my.rare && node->my.rare->listeners) return true;
    return false;
}

void WQXMLNode::notifyDidInsertNode(const Ref<WQXMLNode>& child) {
    if (child->anyoneListens()) child->dispatchEvent(WQXMLMutationEvent::nodeInsertedEventWithTarget_relatedNode(child, self()));
}

void WQXMLNode::notifyWillRemoveNode(const Ref<WQXMLNode>& child) {
    if (child->anyoneListens()) child->dispatchEvent(WQXMLMutationEvent::nodeRemovedEventWithTarget_relatedNode(child, self()));
}
