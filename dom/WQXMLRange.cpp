#include "dom/WQXMLRange.h"

#include <fmt/format.h>
#include <libxml/tree.h>

#include "dom/WQXMLDocument.h"
#include "dom/WQXMLMutationEvent.h"
#include "platform/Assertion.h"

// ---- Making one

bool WQXMLRange::initWithNode(const Ref<WQXMLNode>& node) {
    const Ref<WQXMLNode> parent = node->parentNode();
    const uint64_t index = parent->indexOfChild(node);
    if (!parent || index == NSNotFound) return false;
    return initWithStartContainer_startOffset_endContainer_endOffset(parent, index, parent, index + 1);
}

bool WQXMLRange::initWithContainer_offset(const Ref<WQXMLNode>& container, uint64_t offset) {
    return initWithStartContainer_startOffset_endContainer_endOffset(container, offset, container, offset);
}

bool WQXMLRange::initWithStartContainer_startOffset_endContainer_endOffset(
    const Ref<WQXMLNode>& startContainer,
    uint64_t startOffset,
    const Ref<WQXMLNode>& endContainer,
    uint64_t endOffset) {
    if (!init()) return false;
    setStart_offset(startContainer, startOffset);
    setEnd_offset(endContainer, endOffset);
    return true;
}

Ref<WQXMLRange> WQXMLRange::copyWithZone() const {
    const wq::Class* made = wq::Class::of(*this);
    const auto copied = wq::make<WQXMLRange>(made ? *made : wq::Class::of<WQXMLRange>(), &WQXMLRange::init);
    copied->setStart_offset(my.startContainer, my.startOffset);
    copied->setEnd_offset(my.endContainer, my.endOffset);
    copied->setIsDetached(my.detached);
    copied->setShouldMergeAfterDelete(my.shouldMergeAfterDelete);
    return copied;
}

void WQXMLRange::teardown() {
    flags |= kDying;  // references made from here on do not come back here
    removeListeners();
    delete this;
}

// ---- The points

void WQXMLRange::setStart_offset(const Ref<WQXMLNode>& given, uint64_t offset) {
    const Ref<WQXMLNode> container = given;
    if (!container) removeListeners();
    my.startContainer = container;
    my.startOffset = offset;
    if (!container || !my.endContainer) return;  // not whole yet
    WQ_ASSERT(container->ownerDocument() == my.endContainer->ownerDocument(), u"Range endpoints must be in the same document");
    if (compareToRange_how(self(), 1) == 1) setEnd_offset(container, offset);
    addListeners();
}

void WQXMLRange::setEnd_offset(const Ref<WQXMLNode>& given, uint64_t offset) {
    const Ref<WQXMLNode> container = given;
    if (!container) removeListeners();
    my.endContainer = container;
    my.endOffset = offset;
    if (!container || !my.startContainer) return;  // not whole yet
    WQ_ASSERT(container->ownerDocument() == my.startContainer->ownerDocument(), u"Range endpoints must be in the same document");
    if (compareToRange_how(self(), 1) == 1) setStart_offset(container, offset);
    addListeners();
}

void WQXMLRange::setStartBefore(const Ref<WQXMLNode>& node) {
    const Ref<WQXMLNode> parent = node->parentNode();
    WQ_ASSERT(!my.detached, u"Can't modify a detached WQXMLRange");
    WQ_ASSERT(parent, u"Can't set start before a node not in a tree");
    setStart_offset(parent, parent->indexOfChild(node));
}

void WQXMLRange::setStartAfter(const Ref<WQXMLNode>& node) {
    const Ref<WQXMLNode> parent = node->parentNode();
    WQ_ASSERT(!my.detached, u"Can't modify a detached WQXMLRange");
    WQ_ASSERT(parent, u"Can't set start after a node not in a tree");
    setStart_offset(parent, parent->indexOfChild(node) + 1);
}

void WQXMLRange::setEndBefore(const Ref<WQXMLNode>& node) {
    const Ref<WQXMLNode> parent = node->parentNode();
    WQ_ASSERT(!my.detached, u"Can't modify a detached WQXMLRange");
    WQ_ASSERT(parent, u"Can't set end before a node not in a tree");
    setEnd_offset(parent, parent->indexOfChild(node));
}

void WQXMLRange::setEndAfter(const Ref<WQXMLNode>& node) {
    const Ref<WQXMLNode> parent = node->parentNode();
    WQ_ASSERT(!my.detached, u"Can't modify a detached WQXMLRange");
    WQ_ASSERT(parent, u"Can't set end after a node not in a tree");
    setEnd_offset(parent, parent->indexOfChild(node) + 1);
}

void WQXMLRange::collapseToStart() { setEnd_offset(my.startContainer, my.startOffset); }
void WQXMLRange::collapseToEnd() { setStart_offset(my.endContainer, my.endOffset); }

void WQXMLRange::selectNode(const Ref<WQXMLNode>& node) {
    setStartBefore(node);
    setEndAfter(node);
}

void WQXMLRange::selectNodeContents(const Ref<WQXMLNode>& node) {
    setStart_offset(node, 0);
    setEnd_offset(node, lengthOfContainer(node));
}

// ---- Comparison

int64_t WQXMLRange::compareContainerA_offsetA_toContainerB_offsetB(
    const Ref<WQXMLNode>& a,
    uint64_t offsetA,
    const Ref<WQXMLNode>& b,
    uint64_t offsetB) {
    // 1.
    auto check = [](bool holds, int line, const char16_t* description) {
        if (!holds) wq::fail({"compareContainerA_offsetA_toContainerB_offsetB", nullptr, wq::fileName(__FILE__), line, description});
    };
    check(static_cast<bool>(a), __LINE__, u"containerA is nil in comparison");
    check(static_cast<bool>(b), __LINE__, u"containerB is nil in comparison");

    // 2. In one node.
    if (a == b) return offsetA < offsetB ? -1 : offsetA > offsetB;

    // 3-4. One inside the other: a point inside a child is behind the one just ahead of that child.
    if (const auto child = a->childAncestorOfNode(b)) return a->indexOfChild(child) < offsetA ? 1 : -1;
    if (const auto child = b->childAncestorOfNode(a)) return b->indexOfChild(child) >= offsetB ? 1 : -1;

    // 5. In two branches.
    const auto common = a ? a->commonAncestorWithNode(b) : nullptr;
    check(static_cast<bool>(common), __LINE__, u"Nodes have no common ancestor!");
    return common->indexOfChild(common->childAncestorOfNode(a)) >= common->indexOfChild(common->childAncestorOfNode(b)) ? 1 : -1;
}

int64_t WQXMLRange::compareToRange_how(const Ref<WQXMLRange>& other, int32_t how) const {
    WQ_ASSERT(how >= 0 && how <= 3, u"Invalid comparison constant");
    if (how < 0 || how > 3) return 0;
    const bool ourStart = how == 0 || how == 1, theirStart = how == 0 || how == 3;
    return compareContainerA_offsetA_toContainerB_offsetB(
        ourStart ? my.startContainer : my.endContainer, ourStart ? my.startOffset : my.endOffset,
        theirStart ? other->startContainer() : other->endContainer(), theirStart ? other->startOffset() : other->endOffset());
}

bool WQXMLRange::isEqualToRange(const Ref<WQXMLRange>& other) const {
    return my.startContainer == other->startContainer() && my.startOffset == other->startOffset() &&
           my.endContainer == other->endContainer() && my.endOffset == other->endOffset();
}

bool WQXMLRange::intersectsRange_intersection(const Ref<WQXMLRange>& other, const Ref<WQXMLRange>& intersection) const {
    if (compareToRange_how(other, 3) != 1 || compareToRange_how(other, 1) != -1) return false;
    if (!intersection) return true;
    const Ref<WQXMLRange> receiver = self();
    const Ref<WQXMLRange> later = compareToRange_how(other, 0) == 1 ? receiver : other;
    intersection->setStart_offset(later->startContainer(), later->startOffset());
    const Ref<WQXMLRange> earlier = compareToRange_how(other, 2) == -1 ? receiver : other;
    intersection->setEnd_offset(earlier->endContainer(), earlier->endOffset());
    return true;
}

bool WQXMLRange::selectsNode_isPartialSelection(const Ref<WQXMLNode>& node, bool* isPartial) const {
    const auto whole = rangeWithNode(node);
    if (!isPartial) return intersectsRange_intersection(whole, nullptr);
    const auto selected = range();
    const bool selects = intersectsRange_intersection(whole, selected);
    *isPartial = !selected->isEqualToRange(whole);
    return selects;
}

bool WQXMLRange::collapsed() const { return my.startContainer == my.endContainer && my.startOffset == my.endOffset; }

Ref<WQXMLNode> WQXMLRange::commonAncestorContainer() const {
    if (my.startContainer == my.endContainer) return my.startContainer;
    return my.startContainer->commonAncestorWithNode(my.endContainer);
}

uint64_t WQXMLRange::lengthOfContainer(const Ref<WQXMLNode>& node) const {
    switch (node->nodeType()) {
        case XML_TEXT_NODE:
        case XML_CDATA_SECTION_NODE:
        case XML_COMMENT_NODE: return wq::fromUTF8(node->xmlNode()->content).length();
        default: return node->numberOfChildren();
    }
}

NSString WQXMLRange::description() const {
    auto printed = [](const Ref<WQXMLNode>& node) { return wq::toUTF8(wq::printed(node->description())); };
    return wq::fromUTF8(fmt::format(
        "WQXMLRange {} ({} [{}] - {} [{}]", fmt::ptr(this), printed(my.startContainer), my.startOffset, printed(my.endContainer),
        my.endOffset));
}

// ---- Listening

namespace {
constexpr int32_t kText = 2, kInserted = 4, kRemoved = 8;
}  // namespace

void WQXMLRange::addListeners() {
    if (!my.shouldAddListeners || my.isListening) return;
    const Ref<WQXMLDocument> document = my.startContainer->ownerDocument();
    if (document) registeredOn = document->whileAlive();
    my.isListening = true;
    if (!document) return;
    try {
        for (int32_t event : {kInserted, kRemoved, kText}) document->addListener_forEvent_useCapture(this, event, true);
    } catch (const std::bad_alloc&) {
        if (!document->listeners()) my.isListening = false;  // nothing is there to be removed
        throw;
    }
}

void WQXMLRange::removeListeners() {
    if (!my.isListening) return;
    my.isListening = false;
    const auto place = std::exchange(registeredOn, nullptr);
    if (!place || !*place) return;  // it had no document, or that is gone
    for (int32_t event : {kInserted, kRemoved, kText}) (*place)->removeListener_forEvent_useCapture(this, event, true);
}

namespace {

// Where an offset goes when text is replaced. The clip is what of that text lay behind it.
void follow(uint64_t& offset, uint64_t& clip, NSRange replaced, uint64_t newLength) {
    const uint64_t end = replaced.location + replaced.length;
    if (offset <= replaced.location) return;
    if (offset <= end) {
        clip = end - offset;
        offset = replaced.location;
    } else {
        offset += newLength - replaced.length;
    }
}

bool isInside(const Ref<WQXMLNode>& node, const Ref<WQXMLNode>& container) {
    return node == container || node->isAncestorOfNode(container);
}

}  // namespace

inline void WQXMLRange::textChanged(const WQXMLNode* target, NSRange replaced, uint64_t newLength) {
    my.lastEventStartClip = my.lastEventEndClip = 0;
    if (my.startContainer == target) follow(my.startOffset, my.lastEventStartClip, replaced, newLength);
    if (my.endContainer == target) follow(my.endOffset, my.lastEventEndClip, replaced, newLength);
}

void WQXMLRange::handleEvent(const Ref<WQXMLEvent>& event) {
    const WQXMLEvent& received = *event.operator->();
    const auto* mutation = wq::cast<const WQXMLMutationEvent>(&received);
    if (!mutation) mutation = wq::nil<WQXMLMutationEvent>();
    const int32_t eventID = received.eventID();
    const WQXMLNode* target = received.target().get();
    switch (eventID) {
        case kText: textChanged(target, mutation->range(), mutation->string().length()); break;
        case kInserted: nodeInserted(received.target(), mutation->relatedNode()); break;
        case kRemoved: nodeWillGo(received.target(), mutation->relatedNode()); break;
        default: break;
    }
    my.lastEventID = eventID;
    my.lastEventTarget = target;
}

// A text that is split loses its tail, and gets a sibling right behind it that holds the tail: what was
// clipped by the first goes on into the second. The offset there is the distance from the tail's end, and
// the start takes that of the end: both wanted.
void WQXMLRange::nodeInserted(const Ref<WQXMLNode>& target, const Ref<WQXMLNode>& relatedNode) {
    const Ref<WQXMLNode> child = target, parent = relatedNode;  // also if an override changes the event
    const bool afterTextChange = my.lastEventID == kText && child->previousSibling() == my.lastEventTarget;

    if (afterTextChange && my.startContainer == my.lastEventTarget && my.lastEventStartClip != 0)
        setStart_offset(child, my.lastEventEndClip);
    else if (my.startContainer == parent && parent->indexOfChild(child) < my.startOffset)
        ++my.startOffset;

    if (afterTextChange && my.endContainer == my.lastEventTarget && my.lastEventEndClip != 0)
        setEnd_offset(child, my.lastEventEndClip);
    else if (my.endContainer == parent && parent->indexOfChild(child) < my.endOffset)
        ++my.endOffset;
}

void WQXMLRange::nodeWillGo(const Ref<WQXMLNode>& target, const Ref<WQXMLNode>& relatedNode) {
    const Ref<WQXMLNode> child = target, parent = relatedNode;  // also if an override changes the event
    if (my.startContainer == parent && parent->indexOfChild(child) < my.startOffset)
        --my.startOffset;
    else if (isInside(child, my.startContainer))
        setStart_offset(parent, parent->indexOfChild(child));

    if (my.endContainer == parent && parent->indexOfChild(child) < my.endOffset)
        --my.endOffset;
    else if (isInside(child, my.endContainer))
        setEnd_offset(parent, parent->indexOfChild(child));
}

// ---- Deletion

void WQXMLRange::deleteContents() {
    const Ref<WQXMLRange> kept = self();

    // 1.
    removeSelectedComponentsOfNode(commonAncestorContainer());

    // 2. Two texts side by side become one.
    const Ref<WQXMLNode> start = my.startContainer, end = my.endContainer;
    if (start->nextSibling() == end && start->nodeType() == XML_TEXT_NODE && end->nodeType() == XML_TEXT_NODE) {
        wq::cast<WQXMLText>(start)->appendString(wq::cast<WQXMLText>(end)->string());
        start->parentNode()->removeChild(end);
    }

    // 3.
    if (my.shouldMergeAfterDelete)
        mergeAfterDelete();
    else
        collapseAfterDelete();
}

void WQXMLRange::removeSelectedComponentsOfNode(const Ref<WQXMLNode>& given) {
    const Ref<WQXMLNode> node = given;
    if (node->nodeType() == XML_ELEMENT_NODE) return removeSelectedChildren(node);
    WQ_ASSERT(node->nodeType() == XML_TEXT_NODE, u"Internal error");
    removeSelectedText(node);
}

void WQXMLRange::removeSelectedChildren(const Ref<WQXMLNode>& parent) {
    Ref<WQXMLNode> child;
    if (parent == my.startContainer) {
        child = parent->childAtIndex(my.startOffset);
    } else if (child = parent->childAncestorOfNode(my.startContainer); !child) {
        WQ_ASSERT(isInside(parent, my.endContainer), u"Internal error");
        child = parent->firstChild();
    }
    bool isPartial = false;
    while (child && selectsNode_isPartialSelection(child, &isPartial)) {
        const Ref<WQXMLNode> following = child->nextSibling();
        if (isPartial)
            removeSelectedComponentsOfNode(child);
        else
            parent->removeChild(child);
        child = following;
    }
}

void WQXMLRange::removeSelectedText(const Ref<WQXMLNode>& node) {
    const bool startsHere = node == my.startContainer, endsHere = node == my.endContainer;
    if (!startsHere && !endsHere) {
        node->parentNode()->removeChild(node);
        return;
    }
    const auto text = wq::cast<WQXMLText>(node);
    const uint64_t from = startsHere ? my.startOffset : 0;
    const uint64_t to = endsHere ? my.endOffset : text->length();
    text->deleteCharactersInRange({from, to - from});
}

namespace {
// The topmost node from `node` up to below the ancestor that does not hold `other`.
Ref<WQXMLNode> branchWithout(const Ref<WQXMLNode>& other, const Ref<WQXMLNode>& node, const Ref<WQXMLNode>& ancestor) {
    Ref<WQXMLNode> branch;
    for (Ref<WQXMLNode> step = node; step && step != ancestor; step = step->parentNode())
        if (!isInside(step, other)) branch = step;
    return branch;
}

Ref<WQXMLNode> elementOf(const Ref<WQXMLNode>& container) {
    return container->nodeType() == XML_TEXT_NODE ? container->parentNode() : container;
}
}  // namespace

void WQXMLRange::collapseAfterDelete() {
    if (collapsed()) return;
    const Ref<WQXMLNode> ancestor = commonAncestorContainer();
    WQ_ASSERT(my.startContainer != my.endContainer, u"Internal error");

    // 3. Right behind the branch that held the start.
    if (const auto branch = branchWithout(my.endContainer, my.startContainer, ancestor)) {
        selectNode(branch);
        return collapseToEnd();
    }
    // 4-5. Right ahead of the branch that holds the end.
    if (my.endContainer != ancestor)
        if (const auto branch = branchWithout(my.startContainer, my.endContainer, ancestor)) selectNode(branch);
    collapseToStart();
}

void WQXMLRange::mergeAfterDelete() {
    // 1-2.
    if (my.startContainer == my.endContainer) return;
    const Ref<WQXMLNode> ancestor = commonAncestorContainer();
    Ref<WQXMLNode> left = elementOf(my.startContainer), right = elementOf(my.endContainer);

    // 3. Both on one level.
    const uint64_t depthOfLeft = left->depth(), depthOfRight = right->depth();
    if (depthOfLeft > depthOfRight) left = left->ancestorAtDepth(depthOfRight);
    if (depthOfRight > depthOfLeft) right = right->ancestorAtDepth(depthOfLeft);

    // 4-5. Level by level, up to below the common ancestor.
    while (left && left != ancestor) {
        const Ref<WQXMLNode> parentOfLeft = left->parentNode(), parentOfRight = right->parentNode();
        left->appendChildrenFromNode(right);
        parentOfRight->removeChild(right);
        left = parentOfLeft;
        right = parentOfRight;
    }
}

// ---- Insertion

void WQXMLRange::insertNode(const Ref<WQXMLNode>& given) {
    const Ref<WQXMLNode> node = given, container = my.startContainer;
    const uint64_t offset = my.startOffset;
    if (container->nodeType() != XML_TEXT_NODE) {
        container->insertChild_before(node, container->childAtIndex(offset));
    } else if (node->nodeType() == XML_TEXT_NODE) {
        wq::cast<WQXMLText>(container)->insertString_atIndex(wq::cast<WQXMLText>(node)->string(), offset);
    } else {
        const Ref<WQXMLNode> parent = container->parentNode();
        const Ref<WQXMLNode> tail = container->splitAtIndex(offset);
        parent->insertChild_before(node, tail);
    }
}

void WQXMLRange::insertString(const NSString& string) {
    const Ref<WQXMLNode> container = my.startContainer;
    WQ_ASSERT(container->nodeType() == XML_TEXT_NODE, u"insertString - start point not a text node");
    wq::cast<WQXMLText>(container)->insertString_atIndex(string, my.startOffset);
}

// ---- Text

NSString WQXMLRange::toString() const {
    NSString text = u"";
    appendContentFromNode_toString(commonAncestorContainer(), text);
    return text;
}

void WQXMLRange::appendContentFromNode_toString(const Ref<WQXMLNode>& node, NSString& string) const {
    if (node->nodeType() == XML_TEXT_NODE) {
        const auto text = wq::cast<WQXMLText>(node);
        const uint64_t from = node == my.startContainer ? my.startOffset : 0;
        const uint64_t to = node == my.endContainer ? my.endOffset : text->length();
        string += text->substringWithRange({from, to - from});
        return;
    }
    Ref<WQXMLNode> child;
    if (node == my.startContainer)
        child = node->childAtIndex(my.startOffset);
    else if (child = node->childAncestorOfNode(my.startContainer); !child)
        child = node->firstChild();
    for (; child && selectsNode_isPartialSelection(child, nullptr); child = child->nextSibling())
        appendContentFromNode_toString(child, string);
}

// ---- Split

void WQXMLRange::splitBelowNode(const Ref<WQXMLNode>& given) {
    const Ref<WQXMLNode> ancestor = given;
    WQ_ASSERT(collapsed(), u"Range must be collapsed to split");
    WQ_ASSERT(ancestor->isAncestorOfNode(my.startContainer), u"Node must be an ancestor of the range point");
    Ref<WQXMLNode> node = my.startContainer;
    uint64_t offset = my.startOffset;
    while (node != ancestor) {
        const Ref<WQXMLNode> parent = node->parentNode();
        if (!parent) return;  // it was no ancestor
        offset = parent->indexOfChild(node->splitAtIndex(offset));
        node = parent;
    }
}
