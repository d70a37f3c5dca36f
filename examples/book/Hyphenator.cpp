#include "examples/book/Hyphenator.h"

#include <glib.h>
#include <hyphen.h>

#include <cstdlib>

#include "platform/NSString.h"

namespace {

constexpr const char* kEnglish = "/usr/share/hyphen/hyph_en_US.dic";
constexpr int kLeastAtEnds = 3;   // letters
constexpr size_t kLeastWord = 6;  // letters

// A letter of the Basic Multilingual Plane, so that letters and units are the same.
bool isLetter(char16_t unit) { return g_unichar_isalpha(unit); }

}  // namespace

Hyphenator::Hyphenator(std::string_view language) {
    if (language != "en" && language.substr(0, 3) != "en-") return;
    if (HyphenDict* loaded = hnj_hyphen_load(kEnglish)) dictionary.reset(loaded, hnj_hyphen_free);
}

std::vector<size_t> Hyphenator::breaksOf(std::u16string_view text) const {
    std::vector<size_t> breaks;
    if (!dictionary) return breaks;
    for (size_t start = 0; start < text.size(); ++start) {
        if (!isLetter(text[start])) continue;
        size_t end = start;
        while (end < text.size() && isLetter(text[end])) ++end;
        if (end - start >= kLeastWord) addBreaksOfWord(text, start, end, breaks);
        start = end;
    }
    return breaks;
}

void Hyphenator::addBreaksOfWord(std::u16string_view text, size_t start, size_t end, std::vector<size_t>& breaks) const {
    const std::string word = wq::toUTF8(NSString(text.substr(start, end - start)).lowercaseString());
    std::vector<char> marks(word.size() + 5);
    char** replacements = nullptr;
    int *positions = nullptr, *cuts = nullptr;
    const int failed = hnj_hyphen_hyphenate3(
        dictionary.get(), word.c_str(), static_cast<int>(word.size()), marks.data(), nullptr, &replacements, &positions, &cuts,
        kLeastAtEnds, kLeastAtEnds, kLeastAtEnds, kLeastAtEnds);
    std::free(replacements);  // English has none
    std::free(positions);
    std::free(cuts);
    if (failed) return;
    for (size_t letter = 0; letter + 1 < end - start; ++letter)
        if (marks[letter] & 1) breaks.push_back(start + letter + 1);
}
