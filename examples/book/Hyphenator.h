// Where words may be divided, by libhyphen.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

struct _HyphenDict;

// A language without a dictionary divides no word.
class Hyphenator {
public:
    // As in "en" or "en-GB"; English is the one language whose dictionary is looked for.
    explicit Hyphenator(std::string_view language);

    // Behind which UTF-16 units a hyphen may stand, in order: in words of six letters and more, three letters from
    // either end.
    std::vector<size_t> breaksOf(std::u16string_view text) const;

private:
    void addBreaksOfWord(std::u16string_view text, size_t start, size_t end, std::vector<size_t>& breaks) const;
    std::shared_ptr<_HyphenDict> dictionary;
};
