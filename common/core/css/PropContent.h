// "content": strings and counters. Kept in declarations, without effect on styles.
#pragma once

#include "common/core/css/Property.h"

namespace CSS {

// The value is a list of strings, without their quotes, and counters. Quote keywords, addresses, attr() and "none" are
// refused.
class PropContent : public Property {
public:
    PropContent() : Property(PropertyContent) {}
    void applyToStyle(Style* style) override;
    Value* valueFromStyle(Style* style) override;
    using Property::validate;
    bool validate(AST* root) override;

    // The counter of a function node, counter(identifier[, list style]) or counters(identifier[, list style[,
    // separator]]), new and with a count of 0; null for anything else. Only words are read, so that a separator in
    // quotes is lost, and the second word of counters() is its list style.
    Counter* parseCounter(AST* function);
};

}  // namespace CSS
