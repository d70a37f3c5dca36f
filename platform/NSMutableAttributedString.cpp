#include "platform/NSMutableAttributedString.h"

#include <algorithm>

#include "platform/WQXMLException.h"

namespace {

void checkName(const NSString& name) {
    if (!name) throw WQXMLException(u"NSInvalidArgumentException", u"An attribute has a name");
}

}  // namespace

// ---- Runs

// Which run begins there, after the one around the index has been cut in two; at the end, how many there are.
size_t NSMutableAttributedString::startRunAtIndex(uint64_t index) {
    if (index == length()) return my.runs.size();
    auto run = runAtIndex(index);
    if (run->location < index) run = my.runs.insert(run + 1, {index, Ref<NSDictionary>(run->attributes)});
    return static_cast<size_t>(run - my.runs.begin());
}

// Joins those from `first` up to `last`, and each of the two with its neighbour outside.
void NSMutableAttributedString::joinRuns(size_t first, size_t last) {
    const auto at = [&](size_t index) { return my.runs.begin() + static_cast<long>(index); };
    const auto end = at(std::min(last + 1, my.runs.size()));
    const auto isSame = [](const Run& one, const Run& other) { return one.attributes->isEqual(other.attributes); };
    my.runs.erase(std::unique(at(first > 0 ? first - 1 : 0), end, isSame), end);
}

template <class Change> void NSMutableAttributedString::changeAttributesInRange(NSRange range, Change change) {
    my.string.checkRange(range);
    if (range.length == 0) return;
    my.lastItem = {};
    const size_t first = startRunAtIndex(range.location), last = startRunAtIndex(range.location + range.length);
    for (size_t index = first; index < last; ++index) my.runs[index].attributes = change(my.runs[index].attributes);
    joinRuns(first, last);
}

// ---- Edits

void NSMutableAttributedString::appendAttributedString(const Ref<NSAttributedString>& other) {
    my.lastItem = {};
    const uint64_t end = length();
    const size_t runs = other->my.runs.size();  // the other may be this one, and grow
    my.string += other->my.string;
    for (size_t index = 0; index < runs; ++index) {
        const Run run = other->my.runs[index];
        appendRun(end + run.location, run.attributes);
    }
}

void NSMutableAttributedString::replaceCharactersInRange_withString(NSRange range, const NSString& string) {
    my.string.checkRange(range);
    my.lastItem = {};
    const uint64_t inserted = string.length();
    Ref<NSDictionary> attributes;
    if (length() > 0)
        attributes = runAtIndex(range.length > 0 || range.location == 0 ? range.location : range.location - 1)->attributes;
    else
        attributes = NSDictionary::dictionary();

    const size_t first = startRunAtIndex(range.location), last = startRunAtIndex(range.location + range.length);
    const auto at = [&](size_t index) { return my.runs.begin() + static_cast<long>(index); };
    for (auto run = at(last); run != my.runs.end(); ++run) run->location = run->location - range.length + inserted;
    my.runs.erase(at(first), at(last));
    if (inserted > 0) my.runs.insert(at(first), {range.location, attributes});
    joinRuns(first, first + (inserted > 0 ? 1 : 0));

    if (range.location == length())
        my.string += string;
    else
        my.string = my.string.stringByReplacingCharactersInRange_withString(range, string);
}

void NSMutableAttributedString::setAttributes_range(const Ref<NSDictionary>& attributes, NSRange range) {
    const auto own = ownAttributes(attributes);
    changeAttributesInRange(range, [&](const Ref<NSDictionary>&) { return own; });
}

void NSMutableAttributedString::addAttribute_value_range(const NSString& name, const NSValue& value, NSRange range) {
    if (!value) return removeAttribute_range(name, range);
    checkName(name);
    changeAttributesInRange(range, [&](const Ref<NSDictionary>& attributes) {
        auto changed = attributes->mutableCopy();
        changed->setObject_forKey(value, name);
        return changed;
    });
}

void NSMutableAttributedString::removeAttribute_range(const NSString& name, NSRange range) {
    checkName(name);
    changeAttributesInRange(range, [&](const Ref<NSDictionary>& attributes) {
        auto changed = attributes->mutableCopy();
        changed->removeObjectForKey(name);
        return changed;
    });
}
