// Bytes from outside as a list of declarations. What was accepted prints, and parses again to the same text, but for:
//   content          its strings lose their quotes
//   line-height: 0   which is none, though 0.0 is one and prints so
//   infinities, and numbers that print with an exponent, which style sheets do not have
// Only in a build without hard assertions: a syntax error would end the process.
#include <cstdint>
#include <cstdlib>

#include "common/core/css/Parser.h"

namespace {

void require(bool condition) {
    if (!condition) std::abort();
}

// Whether the text of a number is what a style sheet can say.
bool isPlainNumber(CSS::Value* value) {
    if (!value->isPrimitiveValue()) return true;
    const auto* primitive = static_cast<CSS::PrimitiveValue*>(value);
    if (primitive->primitiveType > CSS::CSS_KHZ) return true;
    return primitive->cssText().find_first_of("inf") == std::string::npos && primitive->cssText().find("e+") == std::string::npos &&
           primitive->cssText().find("e-") == std::string::npos;
}

bool survives(const CSS::Property& property) {
    if (property.id == CSS::PropertyContent) return false;
    if (property.id == CSS::PropertyLineHeight && property.value->cssText() == "0") return false;
    return isPlainNumber(property.value.Get());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    CSS::MutableStyleDeclaration declaration;
    declaration.setCssText(std::string(reinterpret_cast<const char*>(data), size));
    for (const auto& property : declaration.properties) {
        require(property->value && !property->isShorthandProperty());
        if (!survives(*property)) continue;
        property->important = false;  // printed, too, but then the text of the value is not all there is
        const std::string text = property->cssText();
        CSS::MutableStyleDeclaration again;
        again.setCssText(text);
        require(again.cssText() == text);
    }
    return 0;
}
