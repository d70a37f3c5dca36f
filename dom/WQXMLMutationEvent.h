// What an edit of the tree did.
#pragma once

#include "dom/WQXMLEvent.h"

template <class T> class NilMutationEvent;

class WQXMLMutationEvent : public WQXMLEvent {
public:
    // All bubble and none can be cancelled. Dispatch overwrites their target.
    static Ref<WQXMLMutationEvent> attrModifiedEventWithTarget_attrName_attrChange_prevValue_newValue_relatedNode(
        const Ref<WQXMLNode>& target,
        NSString attrName,
        int32_t attrChange,
        NSString prevValue,
        NSString newValue,
        const Ref<WQXMLNode>& relatedNode);
    static Ref<WQXMLMutationEvent> nodeInsertedEventWithTarget_relatedNode(const Ref<WQXMLNode>& target, const Ref<WQXMLNode>& relatedNode);
    static Ref<WQXMLMutationEvent> nodeRemovedEventWithTarget_relatedNode(const Ref<WQXMLNode>& target, const Ref<WQXMLNode>& relatedNode);
    // For applications: no edit fires it.
    static Ref<WQXMLMutationEvent> subtreeModifiedEventWithTarget(const Ref<WQXMLNode>& target);
    // No kind, no target: all is to be set.
    static Ref<WQXMLMutationEvent> newEvent();

    // Events 4 and 8: the parent whose operation was called. Event 1: the attribute's wrapper.
    const Ref<WQXMLNode>& relatedNode() const { return my.relatedNode; }
    virtual void setRelatedNode(const Ref<WQXMLNode>& node) { my.relatedNode = node; }
    // Events 1 and 2: the value before; null if there was none.
    const NSString& prevValue() const { return my.prevValue; }
    virtual void setPrevValue(NSString value) { my.prevValue = std::move(value); }
    // Event 1: the value after. Null in event 2.
    const NSString& newValue() const { return my.newValue; }
    virtual void setNewValue(NSString value) { my.newValue = std::move(value); }
    // Event 1: the name that setAttribute_value was given.
    const NSString& attrName() const { return my.attrName; }
    virtual void setAttrName(NSString name) { my.attrName = std::move(name); }
    // 1: the attribute is new. 2: it existed. These are not the DOM's numbers.
    int32_t attrChange() const { return my.attrChange; }
    virtual void setAttrChange(int32_t change) { my.attrChange = change; }
    // Event 2: the range of the old text, in UTF-16 units, and what replaced it.
    NSRange range() const { return my.range; }
    virtual void setRange(NSRange range) { my.range = range; }
    const NSString& string() const { return my.string; }
    virtual void setString(NSString string) { my.string = std::move(string); }

    template <class T> using Nil = NilMutationEvent<T>;

private:
    struct {
        Ref<WQXMLNode> relatedNode;
        NSString prevValue;
        NSString newValue;
        NSString attrName;
        int32_t attrChange = 0;
        NSRange range;
        NSString string;
    } my;
};

template <class T> class NilMutationEvent : public NilEvent<T> {
public:
    void setRelatedNode(const Ref<WQXMLNode>&) override {}
    void setPrevValue(NSString) override {}
    void setNewValue(NSString) override {}
    void setAttrName(NSString) override {}
    void setAttrChange(int32_t) override {}
    void setRange(NSRange) override {}
    void setString(NSString) override {}
};
