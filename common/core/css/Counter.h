// What a counter in generated content says.
#pragma once

#include <string>
#include <utility>

#include "common/core/include/Shared.h"

namespace CSS {

class Counter : public SharedObject {
public:
    // The texts are kept as they are; no list style is looked up.
    Counter(std::string anIdentifier, std::string aListStyle, std::string aSeparator)
        : identifier(std::move(anIdentifier)), listStyle(std::move(aListStyle)), separator(std::move(aSeparator)) {}

    const std::string identifier;  // which counter: "page" of counter(page)
    const std::string listStyle;   // "decimal" where the style sheet has none
    const std::string separator;   // empty where the style sheet has none
};

}  // namespace CSS
