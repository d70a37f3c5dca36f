#include "platform/NSDictionary.h"

#include <algorithm>

#include "platform/WQXMLException.h"

Ref<NSDictionary> NSDictionary::dictionary(std::initializer_list<std::pair<const NSString, NSValue>> entries) {
    auto made = Ref<NSDictionary>(new NSDictionary);
    for (const auto& [key, value] : entries) made->setObject_forKey(value, key);
    return made;
}

Ref<NSDictionary> NSDictionary::mutableCopy() const {
    if (isNil()) return nullptr;
    auto made = dictionary();
    made->entries = entries;
    return made;
}

NSValue NSDictionary::objectForKey(const NSString& key) const {
    auto entry = entries.find(key);
    return entry == entries.end() ? NSValue() : entry->second;
}

bool NSDictionary::containsKey(const NSString& key) const { return entries.count(key) != 0; }

void NSDictionary::setObject_forKey(const NSValue& value, const NSString& key) {
    if (isNil()) return;
    if (!key) throw WQXMLException(u"NSInvalidArgumentException", u"A dictionary has no null key");
    entries[key] = value;
}

void NSDictionary::removeObjectForKey(const NSString& key) { entries.erase(key); }

bool NSDictionary::isEqual(const Ref<wq::Object>& other) const {
    const auto dictionary = wq::cast<NSDictionary>(other);
    if (isNil() || !dictionary || count() != dictionary->count()) return false;
    return dictionary == this || std::equal(begin(), end(), dictionary->begin(), [](const auto& mine, const auto& its) {
               return mine.first == its.first && mine.second.isEqual(its.second);
           });
}
