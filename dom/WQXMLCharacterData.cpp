#include "dom/WQXMLCharacterData.h"

#include "dom/Binding.h"
#include "dom/WQXMLMutationEvent.h"

NSString WQXMLCharacterData::string() const { return xmlNode() ? wq::fromUTF8(xmlNode()->content) : nullptr; }
uint64_t WQXMLCharacterData::length() const { return string().length(); }
NSString WQXMLCharacterData::substringWithRange(NSRange range) const { return string().substringWithRange(range); }

void WQXMLCharacterData::setString(const NSString& string) { replaceCharactersInRange_withString({0, length()}, string); }
void WQXMLCharacterData::appendString(const NSString& string) { replaceCharactersInRange_withString({length(), 0}, string); }
void WQXMLCharacterData::insertString_atIndex(const NSString& string, uint64_t index) {
    replaceCharactersInRange_withString({index, 0}, string);
}
void WQXMLCharacterData::deleteCharactersInRange(NSRange range) { replaceCharactersInRange_withString(range, u""); }

void WQXMLCharacterData::replaceCharactersInRange_withString(NSRange range, const NSString& string) {
    if (!xmlNode()) return;
    const Ref<WQXMLNode> receiver = self();
    NSString old = this->string();
    const NSString edited = old ? old.stringByReplacingCharactersInRange_withString(range, string) : string;
    wq::Binding::setContent(xmlNode(), wq::Bytes(edited));
    notifyDidReplaceCharactersInRange_withString_oldString(range, string, std::move(old));
}

NSString WQXMLCharacterData::printDescription() const { return WQXMLNode::printDescription() + u" " + wq::printed(string()); }

void WQXMLCharacterData::notifyDidReplaceCharactersInRange_withString_oldString(NSRange range, const NSString& string, NSString oldString) {
    if (!anyoneListens()) return;
    auto event = WQXMLMutationEvent::newEvent();
    event->setEventID(2);
    event->setCanBubble(true);
    event->setPrevValue(std::move(oldString));
    event->setRange(range);
    event->setString(string);
    dispatchEvent(event);
}
