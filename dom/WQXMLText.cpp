#include "dom/WQXMLText.h"

#include "dom/Binding.h"
#include "platform/Assertion.h"

using wq::Binding;
using wq::Bytes;

bool WQXMLText::initWithString(const NSString& string) {
    wq::startLibrary();
    const Bytes bytes(string);
    const bool previous = setRegisterNode(false);
    wq::GuardedCall guard;
    xmlNodePtr node = xmlNewText(bytes);
    setRegisterNode(previous);
    if (guard.failed()) xmlFreeNode(node);  // it has no wrapper
    guard.raise();
    WQ_ASSERT(node, u"Could not create node");
    return Binding::bindOwnNode(this, node);
}

Ref<WQXMLNode> WQXMLText::splitAtIndex(uint64_t index) {
    const Ref<WQXMLNode> receiver = self();
    const uint64_t length = this->length();
    if (index > length) return nullptr;
    const Ref<WQXMLNode> parent = parentNode();
    if (!parent) return nullptr;
    const NSRange behind{index, length - index};
    const auto tail = wq::make<WQXMLText>(wq::classOf(*this), &WQXMLText::initWithString, substringWithRange(behind));
    if (!tail) return nullptr;
    deleteCharactersInRange(behind);
    parent->insertChild_before(tail, nextSibling());
    return tail;
}

Ref<WQXMLNode> WQXMLText::copyWithZone() const {
    if (!xmlNode()) return nullptr;
    const auto copied = wq::make<WQXMLText>(wq::classOf(*this), &WQXMLText::init);
    copied->setString(string());
    return copied;
}
