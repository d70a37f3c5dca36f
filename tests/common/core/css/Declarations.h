// Declarations as text: what a list of declarations became, a line for each property, and what was printed meanwhile.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "common/core/css/LonghandProperties.h"
#include "common/core/css/Parser.h"

namespace test {

// A number with its unit code, as in "12pt (9)"; "bold", "'text'", "#ff0000", "counter(a, decimal, )", "[a, b]".
inline std::string dumpOfValue(CSS::Value* value) {
    if (!value) return "no value";
    if (value->isValueList()) {
        std::string list;
        for (const auto& each : static_cast<CSS::ValueList*>(value)->values) list += (list.empty() ? "" : ", ") + dumpOfValue(each.Get());
        return "[" + list + "]";
    }
    const auto* primitive = static_cast<CSS::PrimitiveValue*>(value);
    if (const auto counter = primitive->counterValue())
        return "counter(" + counter->identifier + ", " + counter->listStyle + ", " + counter->separator + ")";
    const std::string code = " (" + std::to_string(primitive->primitiveType) + ")";
    if (primitive->primitiveType == CSS::CSS_STRING) return "'" + primitive->stringValue() + "'";
    if (primitive->primitiveType == CSS::CSS_IDENT || primitive->primitiveType == CSS::CSS_RGBCOLOR) return primitive->cssText();
    return primitive->cssText() + code;
}

// "0 color: #ff0000 !", with the order number in front and "!" for what is important.
inline std::string dumpOfDeclaration(CSS::StyleDeclaration& declaration) {
    std::string dump;
    for (size_t i = 0; i < declaration.length(); ++i) {
        const auto property = declaration.propertyAtIndex(i);
        dump += std::to_string(property->order) + " " + property->name() + ": " + dumpOfValue(property->value.Get()) +
                (property->important ? " !" : "") + "\n";
    }
    return dump;
}

// What the work prints on standard output.
template <class Work> std::string printedBy(Work&& work) {
    testing::internal::CaptureStdout();
    work();
    std::fflush(stdout);
    return testing::internal::GetCapturedStdout();
}

// The properties of a text, then the warnings.
inline std::string readDeclarations(const std::string& text) {
    CSS::MutableStyleDeclaration declaration;
    bool succeeded = false;
    const std::string warnings = printedBy([&] { succeeded = CSS::Parser().ParseStyleDeclaration(text, &declaration); });
    return dumpOfDeclaration(declaration) + warnings + (succeeded ? "" : "failed\n");
}

}  // namespace test
