#include "common/core/css/CSSColor.h"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "common/core/css/NameTables.h"

namespace CSS {

namespace {

constexpr uint32_t opaque = 0xFF000000;

// A component in its low eight bits; the upper ones fall away where it is put in its place.
uint32_t componentOfFraction(float fraction) {
    const double scaled = static_cast<double>(fraction) * 255.0;
    if (!(std::fabs(scaled) < 2147483648.0)) return 0;
    return static_cast<uint32_t>(static_cast<int32_t>(scaled));
}

// The six digits behind the number sign: as they stand, or each of three taken twice. Empty otherwise.
std::string digitsOfHash(const std::string& text) {
    if (text.size() == 7) return text.substr(1);
    if (text.size() != 4) return {};
    std::string digits;
    for (const char digit : text.substr(1)) digits.append(2, digit);
    return digits;
}

}  // namespace

const ColorName* LookupColor(const char* name, unsigned int length) { return findColorName(name, length); }

CSSColor::CSSColor(int rgb) : rgbaValue(opaque | static_cast<uint32_t>(rgb)) {}

CSSColor::CSSColor(float red, float green, float blue, float alpha)
    : rgbaValue(
          componentOfFraction(alpha) << 24 | (componentOfFraction(red) & 0xFF) << 16 | (componentOfFraction(green) & 0xFF) << 8 |
          (componentOfFraction(blue) & 0xFF)) {}

CSSColor::CSSColor(const std::string& text) {
    if (const ColorName* row = findColorName(text.data(), text.size())) {
        rgbaValue = opaque | row->rgb;
        return;
    }
    if (text.empty() || text.front() != '#') return;

    const std::string digits = digitsOfHash(text);
    char* end = nullptr;
    errno = 0;
    const long number = std::strtol(digits.c_str(), &end, 16);
    if (errno != 0 || end == digits.c_str()) return;
    rgbaValue = opaque | static_cast<uint32_t>(number);
}

std::string CSSColor::stringValue() const {
    char text[16];
    std::snprintf(text, sizeof text, "#%2.2x%2.2x%2.2x", rgbaValue >> 16 & 0xFF, rgbaValue >> 8 & 0xFF, rgbaValue & 0xFF);
    return text;
}

}  // namespace CSS
