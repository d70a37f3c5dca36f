#include "common/core/css/RuleIndex.h"

#include <libxml/tree.h>

#include <algorithm>

#include "common/core/css/AttributeText.h"

namespace CSS {

namespace {

constexpr std::string_view wordSeparators = " \t";  // those of AttributeListSelector

// As xmlStrcasecmp, by which names compare in HTML: it takes '[' for the upper case of '{'.
char lowerCase(char byte) { return byte >= 'A' && byte <= '[' ? static_cast<char>(byte - 'A' + 'a') : byte; }

std::string lowerCase(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), [](char byte) { return lowerCase(byte); });
    return lower;
}

// The class that a part asks for before all else; null without one.
const std::string* firstClassOf(const TypeSelector& part) {
    const auto* condition = dynamic_cast<const AttributeListSelector*>(part.next);
    return condition && condition->isClass && condition->attributeName == "class" ? &condition->attributeValue : nullptr;
}

}  // namespace

void RuleIndex::add(const StyleRule& rule) {
    for (const SharedPtr<Selector>& selector : rule.selectors) {
        Numbers& bucket = bucketOf(*selector);
        if (bucket.empty() || bucket.back() != count) bucket.push_back(count);
    }
    ++count;
}

RuleIndex::Numbers& RuleIndex::bucketOf(const Selector& selector) {
    if (!selector.chainHead) return others;
    if (const std::string* name = firstClassOf(*selector.chainHead)) return byClass[*name];
    const std::string& name = selector.chainHead->name;
    return name == "*" ? others : byName[lowerCase(name)];
}

std::vector<uint32_t> RuleIndex::candidatesFor(const _xmlNode* node) const {
    Numbers candidates = others;
    const auto addFrom = [&](const Buckets& buckets, std::string_view key) {
        const auto bucket = buckets.find(key);
        if (bucket != buckets.end()) candidates.insert(candidates.end(), bucket->second.begin(), bucket->second.end());
    };
    if (node->name) addFrom(byName, lowerCase(reinterpret_cast<const char*>(node->name)));
    const AttributeText classes(const_cast<_xmlNode*>(node), "class");
    for (size_t start = 0; (start = classes.text.find_first_not_of(wordSeparators, start)) != std::string_view::npos;) {
        const size_t end = std::min(classes.text.find_first_of(wordSeparators, start), classes.text.size());
        addFrom(byClass, classes.text.substr(start, end - start));
        start = end;
    }
    std::sort(candidates.begin(), candidates.end());
    candidates.erase(std::unique(candidates.begin(), candidates.end()), candidates.end());
    return candidates;
}

}  // namespace CSS
