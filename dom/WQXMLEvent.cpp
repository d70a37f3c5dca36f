#include "dom/WQXMLEvent.h"

Ref<WQXMLEvent> WQXMLEvent::newEvent() { return wq::make<WQXMLEvent>(&WQXMLEvent::init); }
