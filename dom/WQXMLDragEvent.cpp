#include "dom/WQXMLDragEvent.h"

Ref<WQXMLDragEvent> WQXMLDragEvent::dragEventWithTarget_type_info(const Ref<WQXMLNode>& target, int32_t type, NSDraggingInfo* info) {
    auto event = wq::make<WQXMLDragEvent>(&WQXMLDragEvent::init);
    event->setTarget(target);
    event->setEventID(type);
    event->setDraggingInfo(info);
    return event;
}
