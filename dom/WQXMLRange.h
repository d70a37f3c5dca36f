// A selection that keeps its meaning while the tree changes under it: two points, each a node and an
// offset into it. The W3C's range, with differences that its operations name.
//
//     auto selection = document->createRange();
//     selection->setStart_offset(paragraph->firstChild(), 3);
//     selection->setEnd_offset(next->firstChild(), 5);
//     selection->deleteContents();
//
// An offset counts UTF-16 units in a text, comment or CDATA section, and children in every other node.
// Offsets are not checked: one past the end is stored as given.
//
// Once both points are set, the range listens to its document, and every edit that fires an event
// moves its points:
//   - Text replaced in a container: a point inside the replaced text, or right behind it, goes to its
//     beginning; one further on moves along; one at its beginning or ahead of it stays. So a point
//     stays in front of what is inserted at it.
//   - A child inserted ahead of a point's index, or removed there: the point moves along. A point at
//     exactly that index stays.
//   - A node removed with the point inside it: the point goes to where the node stood.
//   - A text split: a point inside the tail goes on into the new text, but mirrored, to the distance
//     that it had from the tail's end. One at the very end stays behind with the old text.
// A range registers on the document that its start container names when it becomes whole, and nowhere
// else until a point is set to null. It may outlive that document. Edits that fire nothing are not
// heard of. A range on a text that has no document yet counts as listening and hears nothing.
//
// The invariant: both points lie in one document, and the start is not behind the end.
#pragma once

#include <memory>

#include "dom/WQXMLEventListener.h"
#include "dom/WQXMLNode.h"

template <class T> class NilRange;

class WQXMLRange : public wq::Object, public WQXMLEventListener {
public:
    // ---- Making one

    // Both points unset.
    template <class T = WQXMLRange> static Ref<T> range() { return wq::make<T>(&T::init); }
    // Selects the node. Null if that has no parent, or is the root element.
    template <class T = WQXMLRange> static Ref<T> rangeWithNode(const Ref<WQXMLNode>& node) { return newWithNode<T>(node); }
    template <class T = WQXMLRange> static Ref<T> newWithNode(const Ref<WQXMLNode>& node) { return wq::make<T>(&T::initWithNode, node); }
    // Collapsed.
    template <class T = WQXMLRange> static Ref<T> rangeWithContainer_offset(const Ref<WQXMLNode>& container, uint64_t offset) {
        return newWithContainer_offset<T>(container, offset);
    }
    template <class T = WQXMLRange> static Ref<T> newWithContainer_offset(const Ref<WQXMLNode>& container, uint64_t offset) {
        return wq::make<T>(&T::initWithContainer_offset, container, offset);
    }
    // From one point to another, set in this order, with what setStart_offset and setEnd_offset do and assert.
    template <class T = WQXMLRange> static Ref<T> newWithStartContainer_startOffset_endContainer_endOffset(
        const Ref<WQXMLNode>& startContainer,
        uint64_t startOffset,
        const Ref<WQXMLNode>& endContainer,
        uint64_t endOffset) {
        return wq::make<T>(
            &T::initWithStartContainer_startOffset_endContainer_endOffset, startContainer, startOffset, endContainer, endOffset);
    }

    // An object of the receiver's class with the same points, flagged alike; it always listens.
    virtual Ref<WQXMLRange> copyWithZone() const;
    Ref<WQXMLRange> copyRange() const { return copyWithZone(); }

    // ---- The points: a container and an offset in it, in UTF-16 units or children (see lengthOfContainer)

    const Ref<WQXMLNode>& startContainer() const { return my.startContainer; }  // null until set
    uint64_t startOffset() const { return my.startOffset; }
    const Ref<WQXMLNode>& endContainer() const { return my.endContainer; }  // null until set
    uint64_t endOffset() const { return my.endOffset; }

    // Whichever point is set last wins: the other one goes there too if the order asks for it. Null
    // leaves the other point as it stands, and the range listens no more.
    // Both assert "Range endpoints must be in the same document"; the point is stored by then.
    virtual void setStart_offset(const Ref<WQXMLNode>& container, uint64_t offset);
    virtual void setEnd_offset(const Ref<WQXMLNode>& container, uint64_t offset);

    // At the node's place in its parent. They assert "Can't modify a detached WQXMLRange", and "Can't set
    // start before a node not in a tree" and so on, with nothing changed; then they go on, and a node
    // without a parent gives the point (null, 0) or (null, 1).
    void setStartBefore(const Ref<WQXMLNode>& node);
    void setStartAfter(const Ref<WQXMLNode>& node);
    void setEndBefore(const Ref<WQXMLNode>& node);
    void setEndAfter(const Ref<WQXMLNode>& node);

    void collapseToStart();                               // by setEnd_offset
    void collapseToEnd();                                 // by setStart_offset
    void selectNode(const Ref<WQXMLNode>& node);          // setStartBefore, setEndAfter
    void selectNodeContents(const Ref<WQXMLNode>& node);  // from 0 to its length

    // ---- Flags. Setting one has no other effect.

    // Of no consequence but for the four setters that assert it. A copy has it too.
    bool isDetached() const { return my.detached; }
    virtual void setIsDetached(bool detached) { my.detached = detached; }
    // What deleteContents ends with.
    bool shouldMergeAfterDelete() const { return my.shouldMergeAfterDelete; }
    virtual void setShouldMergeAfterDelete(bool merge) { my.shouldMergeAfterDelete = merge; }
    // True at first. False, set before the points, keeps the range from listening for good. Null: false
    virtual bool shouldAddListeners() const { return my.shouldAddListeners; }
    virtual void setShouldAddListeners(bool listen) { my.shouldAddListeners = listen; }

    // ---- Comparison: walks up and counts children at each call

    // -1, 0 or 1: the first point lies before, at or after the second. Asserts "containerA is nil in
    // comparison", "containerB is nil in comparison" and "Nodes have no common ancestor!"; 1 then.
    static int64_t compareContainerA_offsetA_toContainerB_offsetB(
        const Ref<WQXMLNode>& a,
        uint64_t offsetA,
        const Ref<WQXMLNode>& b,
        uint64_t offsetB);
    // The receiver's point comes first. 0: start and start; 1: start and the other's end; 2: end and
    // end; 3: end and the other's start. Not the DOM's order. Asserts "Invalid comparison constant"; 0 then.
    virtual int64_t compareToRange_how(const Ref<WQXMLRange>& other, int32_t how) const;
    virtual bool isEqualToRange(const Ref<WQXMLRange>& other) const;  // the same containers and offsets
    // Ranges that only touch do not intersect. What they share goes into `intersection`, unless that
    // is null.
    bool intersectsRange_intersection(const Ref<WQXMLRange>& other, const Ref<WQXMLRange>& intersection) const;
    // Whether the range overlaps the node in any way; and whether the overlap is not the whole node,
    // which is true as well where there is none. Asserts "containerB is nil in comparison" for a node
    // without a parent and for the root element.
    virtual bool selectsNode_isPartialSelection(const Ref<WQXMLNode>& node, bool* isPartial) const;

    virtual bool collapsed() const;                  // both points alike, also unset. Null: false
    Ref<WQXMLNode> commonAncestorContainer() const;  // the lowest that is or holds both containers; may be null
    // Positions in a node: UTF-16 units of a text, comment or CDATA section, else children.
    virtual uint64_t lengthOfContainer(const Ref<WQXMLNode>& node) const;
    // "WQXMLRange 0x... (<WQXMLText: 0x...> [3] - <WQXMLText: 0x...> [5]": the parenthesis stays open.
    NSString description() const override;

    // ---- The content. These edit the tree, and rely on the range hearing of it.

    // Removes what is selected, joins two texts that have come to stand side by side, and ends with
    // mergeAfterDelete or collapseAfterDelete. A comment or CDATA section goes as a whole or not at all.
    // Asserts "Internal error"; and where the range is flagged, after the deletion, what selectNode asserts.
    void deleteContents();
    // These and the deletion raise "NSRangeException" for an offset past the end of a text.
    // The text of the selected texts, with nothing between them.
    virtual NSString toString() const;
    // At the start point, wherever the end is. A text into a text: its string is inserted, and it stays
    // without a parent. Anything else into a text splits that. A comment or CDATA section takes nothing.
    void insertNode(const Ref<WQXMLNode>& node);
    // Asserts "insertString - start point not a text node".
    void insertString(const NSString& string);
    // Splits every node from the point up to that ancestor, which then has two children side by side
    // there. Asserts "Range must be collapsed to split" and "Node must be an ancestor of the range point".
    void splitBelowNode(const Ref<WQXMLNode>& ancestor);

    // ---- The steps of these

    // Removes what is selected in and below the node, without joining or merging anything.
    virtual void removeSelectedComponentsOfNode(const Ref<WQXMLNode>& node);
    // Collapses to where the selection was: behind the branch that held the start, or ahead of the one
    // that holds the end. Asserts "Internal error".
    void collapseAfterDelete();
    // Fuses what the deletion left on both sides, level by level, into the left one.
    void mergeAfterDelete();
    // Adds the selected text in and below the node.
    virtual void appendContentFromNode_toString(const Ref<WQXMLNode>& node, NSString& string) const;

    // ---- Listening

    bool isListening() const { return my.isListening; }  // stays true when the document dies
    // Hears events 2, 4 and 8 of the start container's document, while they are captured, to keep its points in place.
    // Nothing without shouldAddListeners. Setting a point does it, once both are set.
    virtual void addListeners();
    void removeListeners();  // the points stay, and go stale with the next edit
    void handleEvent(const Ref<WQXMLEvent>& event) override;

    // ---- For subclasses

    virtual bool init() { return true; }
    virtual bool initWithNode(const Ref<WQXMLNode>& node);
    virtual bool initWithContainer_offset(const Ref<WQXMLNode>& container, uint64_t offset);
    virtual bool initWithStartContainer_startOffset_endContainer_endOffset(
        const Ref<WQXMLNode>& startContainer,
        uint64_t startOffset,
        const Ref<WQXMLNode>& endContainer,
        uint64_t endOffset);

    template <class T> using Nil = NilRange<T>;

protected:
    void teardown() override;

private:
    Ref<WQXMLRange> self() const { return Ref<WQXMLRange>(const_cast<WQXMLRange*>(this)); }
    void textChanged(const WQXMLNode* target, NSRange replaced, uint64_t newLength);
    void nodeInserted(const Ref<WQXMLNode>& target, const Ref<WQXMLNode>& relatedNode);
    void nodeWillGo(const Ref<WQXMLNode>& target, const Ref<WQXMLNode>& relatedNode);
    void removeSelectedChildren(const Ref<WQXMLNode>& parent);
    void removeSelectedText(const Ref<WQXMLNode>& text);

    struct {
        Ref<WQXMLNode> startContainer;
        uint64_t startOffset = 0;
        Ref<WQXMLNode> endContainer;
        uint64_t endOffset = 0;
        int32_t lastEventID = 0;
        const WQXMLNode* lastEventTarget = nullptr;  // compared only
        uint64_t lastEventStartClip = 0;
        uint64_t lastEventEndClip = 0;
        bool detached : 1 = false;
        bool isListening : 1 = false;
        bool shouldMergeAfterDelete : 1 = false;
        bool shouldAddListeners : 1 = true;
    } my;
    // Where it is registered, for as long as that lives: the container may have moved on.
    std::shared_ptr<WQXMLDocument*> registeredOn;
};

template <class T> class NilRange : public T {
public:
    Ref<WQXMLRange> copyWithZone() const override { return nullptr; }
    void setStart_offset(const Ref<WQXMLNode>&, uint64_t) override {}
    void setEnd_offset(const Ref<WQXMLNode>&, uint64_t) override {}
    void setIsDetached(bool) override {}
    void setShouldMergeAfterDelete(bool) override {}
    bool shouldAddListeners() const override { return false; }
    void setShouldAddListeners(bool) override {}
    int64_t compareToRange_how(const Ref<WQXMLRange>&, int32_t) const override { return 0; }
    bool isEqualToRange(const Ref<WQXMLRange>&) const override { return false; }
    bool selectsNode_isPartialSelection(const Ref<WQXMLNode>&, bool*) const override { return false; }
    bool collapsed() const override { return false; }
    uint64_t lengthOfContainer(const Ref<WQXMLNode>&) const override { return 0; }
    NSString description() const override { return nullptr; }
    NSString toString() const override { return nullptr; }
    void removeSelectedComponentsOfNode(const Ref<WQXMLNode>&) override {}
    void appendContentFromNode_toString(const Ref<WQXMLNode>&, NSString&) const override {}
    void addListeners() override {}
    void handleEvent(const Ref<WQXMLEvent>&) override {}
    bool initWithNode(const Ref<WQXMLNode>&) override { return false; }
    bool initWithContainer_offset(const Ref<WQXMLNode>&, uint64_t) override { return false; }
    bool initWithStartContainer_startOffset_endContainer_endOffset(const Ref<WQXMLNode>&, uint64_t, const Ref<WQXMLNode>&, uint64_t)
        override {
        return false;
    }
    bool init() override { return false; }
};
