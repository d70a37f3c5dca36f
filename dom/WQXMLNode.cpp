#include "dom/WQXMLNode.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

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

WQXMLNode::Rare& WQXMLNode::makeRare() { return my.rare ? *my.rare : *(my.rare = new Rare); }
void WQXMLNode::deleteRare() noexcept { delete my.rare; }

// ---- The end of a wrapper

// Most wrappers end here: their document has freed their nodes.
void WQXMLNode::teardown() {
    if (my.impl) return teardownWithNode();
    flags |= kDying;  // references made from here on do not come back here
    delete this;
}

// The last count of a linked node goes: only a node that was linked by libxml2 itself can get here.
// While the handler runs the tree has the count that it lacked, and one more keeps the wrapper whole,
// so that a handler that raises leaves everything sound. After one that returns the node goes all the
// same, unless the handler has taken it out of its tree or taken a reference.
void WQXMLNode::teardownWithNode() {
    if (my.impl->parent) {
        Binding::takeTreeReference(this);
        Ref<WQXMLNode> kept(this);
        WQ_ASSERT(false, u"Freeing a node still held by the document");
        if (count > 2 || !Binding::holdsTreeReference(this)) return kept.reset();
        Binding::setHoldsTreeReference(this, false);
        kept.leak();
        count = 0;
    }
    flags |= kDying;
    if (!my.impl) return delete this;  // gone while the handler ran
    wq::GuardedCall guard;
    Binding::freeNode(this);
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

namespace {
// For walks within which nothing is let go.
const WQXMLNode* parentOf(const WQXMLNode* node) { return wrapper(node->xmlNode() ? node->xmlNode()->parent : nullptr); }
}  // namespace

bool WQXMLNode::isAncestorOfNode(const Ref<WQXMLNode>& node) const {
    for (const WQXMLNode* ancestor = node.get(); ancestor && (ancestor = parentOf(ancestor));)
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

// What a record hears in a phase: its captureEvents or its events.
template <auto mask> bool hears(const WQXMLEventListenerData& record, const WQXMLEvent& event) {
    return (record.*mask)() & static_cast<uint64_t>(event.eventID());
}

template <auto mask> bool anyHears(const std::vector<Ref<WQXMLEventListenerData>>& records, const WQXMLEvent& event) {
    for (const auto& record : records)
        if (hears<mask>(*record.get(), event)) return true;
    return false;
}

// The records are walked as they stand, since a listener may add and remove on this node.
template <auto mask> void callListeners(const std::vector<Ref<WQXMLEventListenerData>>& records, const Ref<WQXMLEvent>& event) {
    for (size_t i = 0; i < records.size(); ++i) {
        const WQXMLEventListenerData& record = *records[i].get();
        if (record.listener() && hears<mask>(record, *event.operator->())) record.listener()->handleEvent(event);
    }
}

// An ancestor with listeners that hear the event while capturing, or while bubbling.
struct HearingAncestor {
    Ref<WQXMLNode> node;
    bool whileCapturing = false;
    bool whileBubbling = false;
};

// The nearest one first. The first few take no memory of their own.
class HearingAncestors {
public:
    void add(HearingAncestor ancestor) {
        if (count < few.size())
            few[count] = std::move(ancestor);
        else
            more.push_back(std::move(ancestor));
        ++count;
    }
    size_t size() const { return count; }
    const HearingAncestor& operator[](size_t index) const { return index < few.size() ? few[index] : more[index - few.size()]; }

private:
    std::array<HearingAncestor, 3> few;
    std::vector<HearingAncestor> more;
    size_t count = 0;
};

// The top of the tree is called first.
template <auto mask> void callAncestors(const HearingAncestors& ancestors, bool HearingAncestor::*phase, const Ref<WQXMLEvent>& event) {
    for (size_t i = ancestors.size(); i-- > 0 && !event->stopPropagation();)
        if (ancestors[i].*phase) callListeners<mask>(*ancestors[i].node->listeners(), event);
}

constexpr auto kCaptured = &WQXMLEventListenerData::captureEvents;
constexpr auto kHeard = &WQXMLEventListenerData::events;

}  // namespace

bool WQXMLNode::dispatchEvent(const Ref<WQXMLEvent>& dispatched) {
    const Ref<WQXMLEvent> kept = dispatched;
    WQXMLEvent& event = *kept.operator->();

    // 1. Whatever target it was made with.
    const Ref<WQXMLNode> target = self();
    event.setTarget(target);

    // 2. Who hears it is fixed here.
    HearingAncestors ancestors;
    for (const WQXMLNode* node = parentOf(this); node; node = parentOf(node)) {
        const auto* records = node->listeners();
        if (!records) continue;
        const bool captured = anyHears<kCaptured>(*records, event), heard = anyHears<kHeard>(*records, event);
        if (captured || heard) ancestors.add({node->self(), captured, heard});
    }

    // 3. Capture.
    event.setPhase(1);
    callAncestors<kCaptured>(ancestors, &HearingAncestor::whileCapturing, kept);

    // 4. At the target, whose capture listeners are never called.
    event.setPhase(2);
    const auto* records = listeners();
    if (records && anyHears<kHeard>(*records, event) && !event.stopPropagation()) callListeners<kHeard>(*records, kept);

    // 5. Bubbling, which runs from the top as well: wanted.
    if (event.canBubble() && !event.stopPropagation()) {
        event.setPhase(3);
        callAncestors<kHeard>(ancestors, &HearingAncestor::whileBubbling, kept);
    }

    // 6.
    return event.preventDefault();
}

// Without a listener on the way up nobody could see an event: none is made.
bool WQXMLNode::anyoneListens() const {
    for (const WQXMLNode* node = this; node; node = parentOf(node))
        if (node->my.rare && node->my.rare->listeners) return true;
    return false;
}

void WQXMLNode::notifyDidInsertNode(const Ref<WQXMLNode>& child) {
    if (child->anyoneListens()) child->dispatchEvent(WQXMLMutationEvent::nodeInsertedEventWithTarget_relatedNode(child, self()));
}

void WQXMLNode::notifyWillRemoveNode(const Ref<WQXMLNode>& child) {
    if (child->anyoneListens()) child->dispatchEvent(WQXMLMutationEvent::nodeRemovedEventWithTarget_relatedNode(child, self()));
}
