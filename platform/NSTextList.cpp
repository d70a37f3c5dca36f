#include "platform/NSTextList.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

namespace {

std::string decimal(long number) { return fmt::to_string(number); }

// From a to z, and on with aa, ab: no letter stands for zero.
std::string alphabetic(long number) {
    if (number < 1) return decimal(number);
    std::string letters;
    for (; number > 0; number = (number - 1) / 26) letters += static_cast<char>('a' + (number - 1) % 26);
    return {letters.rbegin(), letters.rend()};
}

std::string roman(long number) {
    if (number < 1 || number > 3999) return decimal(number);
    constexpr std::pair<long, const char*> digits[] = {{1000, "m"}, {900, "cm"}, {500, "d"}, {400, "cd"}, {100, "c"}, {90, "xc"}, {50, "l"},
                                                       {40, "xl"},  {10, "x"},   {9, "ix"},  {5, "v"},    {4, "iv"},  {1, "i"}};
    std::string letters;
    for (const auto& [value, digit] : digits)
        for (; number >= value; number -= value) letters += digit;
    return letters;
}

std::string upper(std::string marker) {
    for (char& letter : marker)
        if (letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - 'a' + 'A');
    return marker;
}

struct Kind {
    std::u16string_view keyword;
    std::string (*marker)(long number);
};

constexpr Kind kinds[] = {
    {u"box", [](long) -> std::string { return "\u25A1"; }},
    {u"check", [](long) -> std::string { return "\u2713"; }},
    {u"circle", [](long) -> std::string { return "\u25E6"; }},
    {u"diamond", [](long) -> std::string { return "\u25C6"; }},
    {u"disc", [](long) -> std::string { return "\u2022"; }},
    {u"hyphen", [](long) -> std::string { return "\u2043"; }},
    {u"square", [](long) -> std::string { return "\u25AA"; }},
    {u"decimal", decimal},
    {u"octal", [](long number) { return fmt::format("{:o}", number); }},
    {u"lower-hexadecimal", [](long number) { return fmt::format("{:x}", number); }},
    {u"upper-hexadecimal", [](long number) { return fmt::format("{:X}", number); }},
    {u"lower-alpha", alphabetic},
    {u"lower-latin", alphabetic},
    {u"upper-alpha", [](long number) { return upper(alphabetic(number)); }},
    {u"upper-latin", [](long number) { return upper(alphabetic(number)); }},
    {u"lower-roman", roman},
    {u"upper-roman", [](long number) { return upper(roman(number)); }},
};

}  // namespace

bool NSTextList::initWithMarkerFormat(const NSString& format) {
    my.markerFormat = format;
    return static_cast<bool>(format);
}

NSString NSTextList::markerForItemNumber(long number) const {
    const std::u16string_view format = my.markerFormat;
    const size_t open = format.find(u'{');
    if (open == format.npos) return my.markerFormat;
    const size_t close = std::min(format.find(u'}', open), format.size());
    const auto keyword = format.substr(open + 1, close - open - 1);
    const auto* kind = std::find_if(std::begin(kinds), std::end(kinds), [&](const Kind& each) { return each.keyword == keyword; });

    const NSString marker = kind == std::end(kinds) ? NSString(keyword) : wq::fromUTF8(kind->marker(number));
    return my.markerFormat.stringByReplacingCharactersInRange_withString({open, std::min(close + 1, format.size()) - open}, marker);
}
