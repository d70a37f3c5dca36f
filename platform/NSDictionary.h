// A counted map from string to value, shared by everybody who holds it. Keys are in order.
//
//     auto arguments = NSDictionary::dictionary({{WQXMLDocumentParseAsHTMLKey, true}});
#pragma once

#include <initializer_list>
#include <map>
#include <utility>

#include "platform/NSValue.h"

class NSDictionary : public wq::Object {
public:
    // By key, unit by unit.
    using Entries = std::map<NSString, NSValue>;

    // Of two entries of one key the later one counts. Raises "NSInvalidArgumentException" for the null key.
    static Ref<NSDictionary> dictionary(std::initializer_list<std::pair<const NSString, NSValue>> entries = {});

    // Another dictionary of the same entries, whose values are shared. Null: null.
    Ref<NSDictionary> mutableCopy() const;

    // Null for an absent key, and for the null key.
    NSValue objectForKey(const NSString& key) const;
    // True also for a key that holds null, false or 0.
    bool containsKey(const NSString& key) const;
    size_t count() const { return entries.size(); }  // null values are counted

    // A null value is stored like any other. Raises "NSInvalidArgumentException" for the null key.
    // Null: nothing.
    void setObject_forKey(const NSValue& value, const NSString& key);
    void removeObjectForKey(const NSString& key);  // nothing for an absent key

    // The same keys, and values that are equal as NSValue::isEqual says. Null equals nothing.
    bool isEqual(const Ref<wq::Object>& other) const override;

    // The entries, for loops. To remove one makes its iterator invalid, and no other. Null: none.
    Entries::const_iterator begin() const { return entries.begin(); }
    Entries::const_iterator end() const { return entries.end(); }

private:
    Entries entries;
};
