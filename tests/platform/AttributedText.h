// What the tests of texts with attributes share.
#pragma once

#include <string>

#include "platform/NSAttributedString.h"

namespace test {

inline std::string printed(const Ref<NSDictionary>& attributes) {
    std::string line;
    for (const auto& [name, value] : *attributes.get())
        line += (line.empty() ? "" : " ") + wq::toUTF8(name) + "=" + wq::toUTF8(value.string() ? value.string() : u"?");
    return line;
}

// Each run: its text, and its attributes in brackets; values that are no strings as "?".
inline std::string runsOf(const Ref<NSAttributedString>& text) {
    std::string runs;
    NSRange run;
    for (uint64_t index = 0; index < text->length(); index = run.location + run.length) {
        const auto attributes = text->attributesAtIndex_effectiveRange(index, &run);
        runs += wq::toUTF8(text->string().substringWithRange(run)) + "[" + printed(attributes) + "]";
    }
    return runs;
}

// One attribute, as a dictionary.
inline Ref<NSDictionary> with(const NSString& name, const NSValue& value) { return NSDictionary::dictionary({{name, value}}); }

}  // namespace test
