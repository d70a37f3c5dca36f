#include "dom/WQXMLMutationEvent.h"

namespace {
Ref<WQXMLMutationEvent> mutation(int32_t eventID, const Ref<WQXMLNode>& target, const Ref<WQXMLNode>& relatedNode) {
    auto event = WQXMLMutationEvent::newEvent();
    event->setTarget(target);
    event->setEventID(eventID);
    event->setCanBubble(true);
    event->setRelatedNode(relatedNode);
    return event;
}
}  // namespace

Ref<WQXMLMutationEvent> WQXMLMutationEvent::newEvent() { return wq::make<WQXMLMutationEvent>(&WQXMLMutationEvent::init); }

Ref<WQXMLMutationEvent> WQXMLMutationEvent::attrModifiedEventWithTarget_attrName_attrChange_prevValue_newValue_relatedNode(
    const Ref<WQXMLNode>& target,
    NSString attrName,
    int32_t attrChange,
    NSString prevValue,
    NSString newValue,
    const Ref<WQXMLNode>& relatedNode) {
    auto event = mutation(1, target, relatedNode);
    event->setAttrName(std::move(attrName));
    event->setAttrChange(attrChange);
    event->setPrevValue(std::move(prevValue));
    event->setNewValue(std::move(newValue));
    return event;
}

Ref<WQXMLMutationEvent> WQXMLMutationEvent::nodeInsertedEventWithTarget_relatedNode(
    const Ref<WQXMLNode>& target,
    const Ref<WQXMLNode>& relatedNode) {
    return mutation(4, target, relatedNode);
}

Ref<WQXMLMutationEvent> WQXMLMutationEvent::nodeRemovedEventWithTarget_relatedNode(
    const Ref<WQXMLNode>& target,
    const Ref<WQXMLNode>& relatedNode) {
    return mutation(8, target, relatedNode);
}

Ref<WQXMLMutationEvent> WQXMLMutationEvent::subtreeModifiedEventWithTarget(const Ref<WQXMLNode>& target) {
    return mutation(16, target, nullptr);
}
