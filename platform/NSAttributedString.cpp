#include "platform/NSAttributedString.h"

#include <algorithm>

#include "platform/NSAttributeNames.h"
#include "platform/NSParagraphStyle.h"
#include "platform/WQXMLException.h"

namespace {

void set(NSRange* target, NSRange range) {
    if (target) *target = range;
}

uint64_t endOf(NSRange range) { return range.location + range.length; }

NSRange rangeBetween(uint64_t start, uint64_t end) { return {start, end - start}; }

NSRange cut(NSRange range, NSRange limit) {
    return rangeBetween(std::max(range.location, limit.location), std::min(endOf(range), endOf(limit)));
}

void checkIndex_inRange(uint64_t index, NSRange limit) {
    if (index >= limit.location && index < endOf(limit)) return;
    throw WQXMLException(u"NSRangeException", u"The index is outside of the range that limits the search");
}

bool contains(const std::vector<Ref<NSTextList>>& lists, const Ref<NSTextList>& list) {
    return list && std::find(lists.begin(), lists.end(), list) != lists.end();
}

}  // namespace

// ---- Runs

// A copy without null values.
Ref<NSDictionary> NSAttributedString::ownAttributes(const Ref<NSDictionary>& attributes) {
    auto own = NSDictionary::dictionary();
    for (const auto& [name, value] : *attributes.operator->())
        if (value) own->setObject_forKey(value, name);
    return own;
}

NSAttributedString::Runs::const_iterator NSAttributedString::runAtIndex(uint64_t index) const {
    my.string.checkRange({index, 1});
    return std::upper_bound(my.runs.begin(), my.runs.end(), index, [](uint64_t at, const Run& run) { return at < run.location; }) - 1;
}

NSRange NSAttributedString::rangeOfRun(Runs::const_iterator run) const {
    return rangeBetween(run->location, run + 1 == my.runs.end() ? length() : (run + 1)->location);
}

// What is like the last run goes on with it.
void NSAttributedString::appendRun(uint64_t location, const Ref<NSDictionary>& attributes) {
    if (my.runs.empty() || !my.runs.back().attributes->isEqual(attributes)) my.runs.push_back({location, attributes});
}

bool NSAttributedString::initWithString_attributes(const NSString& text, const Ref<NSDictionary>& attributes) {
    my.string = text;
    my.lastItem = {};
    if (length() > 0) appendRun(0, ownAttributes(attributes));
    return static_cast<bool>(text);
}

// ---- Attributes

Ref<NSDictionary> NSAttributedString::attributesAtIndex_effectiveRange(uint64_t index, NSRange* range) const {
    const auto run = runAtIndex(index);
    set(range, rangeOfRun(run));
    return run->attributes->mutableCopy();
}

Ref<NSDictionary> NSAttributedString::attributesAtIndex_longestEffectiveRange_inRange(uint64_t index, NSRange* range, NSRange limit) const {
    const auto run = runAtIndex(index);
    my.string.checkRange(limit);
    checkIndex_inRange(index, limit);
    set(range, cut(rangeOfRun(run), limit));
    return run->attributes->mutableCopy();
}

NSValue NSAttributedString::attribute_atIndex_effectiveRange(const NSString& name, uint64_t index, NSRange* range) const {
    const auto run = runAtIndex(index);
    set(range, rangeOfRun(run));
    return run->attributes->objectForKey(name);
}

NSValue NSAttributedString::attribute_atIndex_longestEffectiveRange_inRange(
    const NSString& name,
    uint64_t index,
    NSRange* range,
    NSRange limit) const {
    auto first = runAtIndex(index), last = first;
    my.string.checkRange(limit);
    checkIndex_inRange(index, limit);

    const NSValue value = first->attributes->objectForKey(name);
    const auto isSame = [&](const Run& run) { return run.attributes->objectForKey(name).isEqual(value); };
    while (first->location > limit.location && isSame(*(first - 1))) --first;
    while (endOf(rangeOfRun(last)) < endOf(limit) && isSame(*(last + 1))) ++last;
    set(range, cut(rangeBetween(first->location, endOf(rangeOfRun(last))), limit));
    return value;
}

// ---- Lists

NSRange NSAttributedString::paragraphAtIndex(uint64_t index) const {
    uint64_t start = 0, end = 0;
    my.string.getParagraphStart_end_contentsEnd_forRange(&start, &end, nullptr, {index, 0});
    return rangeBetween(start, end);
}

// The run keeps the style that keeps them.
const std::vector<Ref<NSTextList>>& NSAttributedString::textListsAtIndex(uint64_t index) const {
    return runAtIndex(index)->attributes->objectForKey(NSParagraphStyleAttributeName).object<NSParagraphStyle>()->textLists();
}

NSRange NSAttributedString::rangeOfTextList_atIndex(const Ref<NSTextList>& list, uint64_t index) const {
    my.string.checkRange({index, 1});
    const NSRange paragraph = paragraphAtIndex(index);
    if (!contains(textListsAtIndex(paragraph.location), list)) return {NSNotFound, 0};

    uint64_t start = paragraph.location, end = endOf(paragraph);
    while (start > 0) {
        const uint64_t previous = paragraphAtIndex(start - 1).location;
        if (!contains(textListsAtIndex(previous), list)) break;
        start = previous;
    }
    while (end < length() && contains(textListsAtIndex(end), list)) end = endOf(paragraphAtIndex(end));
    return rangeBetween(start, end);
}

long NSAttributedString::itemNumberInTextList_atIndex(const Ref<NSTextList>& list, uint64_t index) const {
    NumberedItem& item = my.lastItem;
    const bool isBehindLast = list && item.list == list.get() && item.start <= index && index < endOf(item.listRange);
    if (!isBehindLast) {
        const NSRange range = rangeOfTextList_atIndex(list, index);
        if (range.location == NSNotFound) return 0;
        item = {list.get(), range, range.location, textListsAtIndex(range.location).back() == list};
    }
    for (uint64_t next = endOf(paragraphAtIndex(item.start)); next <= index; next = endOf(paragraphAtIndex(next))) {
        item.start = next;
        if (textListsAtIndex(next).back() == list) ++item.number;
    }
    return item.number;
}

// ---- The whole

Ref<NSAttributedString> NSAttributedString::attributedSubstringFromRange(NSRange range) const {
    auto part = newWithString(u"");
    part->my.string = my.string.substringWithRange(range);
    if (range.length == 0) return part;
    for (auto run = runAtIndex(range.location); run != my.runs.end() && run->location < endOf(range); ++run)
        part->appendRun(std::max(run->location, range.location) - range.location, run->attributes);
    return part;
}

bool NSAttributedString::isEqual(const Ref<wq::Object>& other) const {
    const auto text = wq::cast<NSAttributedString>(other);
    return text && my.string == text->my.string &&
           std::equal(my.runs.begin(), my.runs.end(), text->my.runs.begin(), text->my.runs.end(), [](const Run& mine, const Run& its) {
               return mine.location == its.location && mine.attributes->isEqual(its.attributes);
           });
}
