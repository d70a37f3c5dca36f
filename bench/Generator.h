// Documents and style sheets for measurements: the same arguments make the same bytes.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>

namespace bench {

// Numbers that look like chance and are the same everywhere.
class Sequence {
public:
    uint32_t below(uint32_t count) {
        state = state * 6364136223846793005u + 1442695040888963407u;
        return static_cast<uint32_t>(state >> 33) % count;
    }

private:
    uint64_t state = 20261121;
};

inline std::string words(Sequence& sequence, uint32_t count) {
    static const char* const all[] = {"river", "bell", "near",  "far",  "landing", "caf\u00e9",       "rope",  "and", "the",
                                      "a",     "of",   "water", "boat", "who",     "\u201cyes\u201d", "winter"};
    std::string text;
    for (uint32_t i = 0; i < count; ++i) text += (i ? " " : "") + std::string(all[sequence.below(16)]);
    return text;
}

// A book of at least so many bytes: chapters, sections and paragraphs, with inlines, attributes and some characters beyond ASCII.
inline std::string document(size_t bytes) {
    Sequence sequence;
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<book xml:lang=\"en\">\n";
    xml.reserve(bytes + 4096);
    for (int chapter = 1; xml.size() < bytes; ++chapter) {
        xml += "<chapter id=\"c" + std::to_string(chapter) + "\"><title>" + words(sequence, 4) + "</title>\n";
        for (int section = 1; section <= 4; ++section) {
            xml += "<section class=\"s" + std::to_string(sequence.below(20)) + "\"><title>" + words(sequence, 3) + "</title>\n";
            for (int paragraph = 0; paragraph < 12; ++paragraph) {
                xml += "<p class=\"k" + std::to_string(sequence.below(50)) + "\">" + words(sequence, 20);
                xml += " <em>" + words(sequence, 2) + "</em> " + words(sequence, 30);
                if (sequence.below(4) == 0) xml += " <a href=\"#c" + std::to_string(chapter) + "\">" + words(sequence, 2) + "</a>";
                xml += "</p>\n";
            }
            xml += "</section>\n";
        }
        xml += "</chapter>\n";
    }
    return xml + "</book>\n";
}

// So many rules with four declarations each, as a sheet of a manuscript grows: the first two for each name, by name and by
// descendant, all others by classes. Of those a longer sheet has more, and a document of `document` uses 50 of them.
inline std::string sheet(uint32_t rules) {
    static const char* const names[] = {"p", "section", "em", "title", "a", "chapter", "book", "list", "item", "quote"};
    static const char* const colors[] = {"red", "navy", "#1a1a1a", "#203040"};
    constexpr uint32_t kNames = 10, kClasses = 50;
    Sequence sequence;
    auto anyName = [&] { return std::string(names[sequence.below(kNames)]); };
    auto anyClass = [&] { return ".k" + std::to_string(sequence.below(std::max(rules, kClasses))); };
    std::string text;
    for (uint32_t i = 0; i < rules; ++i) {
        if (i < kNames)
            text += names[i];
        else if (i < 2 * kNames)
            text += anyName() + " " + names[i - kNames];
        else if (i % 3 == 0)
            text += anyClass();
        else if (i % 3 == 1)
            text += "p" + anyClass();
        else
            text += anyName() + " > p" + anyClass();
        text += " { color: " + std::string(colors[sequence.below(4)]) + "; margin-left: " + std::to_string(sequence.below(40)) +
                "pt; font-size: " + std::to_string(8 + sequence.below(12)) + "pt; text-align: " + (sequence.below(2) ? "left" : "justify") +
                " }\n";
    }
    return text;
}

}  // namespace bench
