// Which rules an element can match, told by its name and its classes, so that the others need not be tried.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "common/core/css/Rule.h"

struct _xmlNode;

namespace CSS {

// A rule is found by the rightmost part of each of its selectors: by the class that is the first of its conditions, or else
// by its element name. Matching looks at these before all else, so what is not found would fail at once, without a warning
// or an assertion; and what is found need not match.
class RuleIndex {
public:
    // Rules have numbers from 0 on, in the order in which they are added. A rule's selectors are not changed afterwards.
    void add(const StyleRule& rule);
    size_t size() const { return count; }
    void clear() { *this = RuleIndex(); }

    // The numbers of the rules that can match a node, which must not be null; each once, in order.
    std::vector<uint32_t> candidatesFor(const _xmlNode* node) const;

private:
    struct Hash {
        using is_transparent = void;
        size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
    };
    using Numbers = std::vector<uint32_t>;
    using Buckets = std::unordered_map<std::string, Numbers, Hash, std::equal_to<>>;

    Numbers& bucketOf(const Selector& selector);

    Buckets byClass, byName;  // names in lower case, as they compare in HTML
    Numbers others;           // that can match any element
    uint32_t count = 0;
};

}  // namespace CSS
