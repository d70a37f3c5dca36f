// Tokens as text, a line for each: number, name, raw text.
#pragma once

#include <string>

#include "common/core/css/Scanner.h"

namespace test {

// The name of a token; a single character has the name "character".
inline const char* nameOfToken(int token) {
    static const char* const names[] = {"S",           "CDO",         "CDC",           "INCLUDES",   "DASHMATCH", "LBRACE",     "PLUS",
                                        "GREATER",     "COMMA",       "STRING",        "IDENT",      "HASH",      "IMPORT_SYM", "PAGE_SYM",
                                        "MEDIA_SYM",   "CHARSET_SYM", "IMPORTANT_SYM", "EMS",        "EXS",       "LENGTH",     "ANGLE",
                                        "TIME",        "FREQ",        "DIMEN",         "PERCENTAGE", "NUMBER",    "URI",        "FUNCTION",
                                        "PREFIXMATCH", "SUFFIXMATCH", "SUBSTRINGMATCH"};
    if (token == CSS::EndOfInput) return "end";
    return token < CSS::S ? "character" : names[token - CSS::S];
}

// On one line: line ends, tabs and form feeds are written as in C.
inline std::string onOneLine(const std::string& text) {
    std::string line;
    for (const char character : text) switch (character) {
            case '\n': line += "\\n"; break;
            case '\r': line += "\\r"; break;
            case '\t': line += "\\t"; break;
            case '\f': line += "\\f"; break;
            default: line += character;
        }
    return line;
}

// Up to the end of the text or its first NUL.
inline std::string dumpOfTokens(const std::string& text) {
    CSS::Scanner scanner;
    scanner.SetString(text);
    std::string dump;
    while (const int token = scanner.yylex()) {
        const std::string raw(scanner.YYText(), static_cast<size_t>(scanner.YYLeng()));
        dump += std::to_string(token) + " " + nameOfToken(token) + " " + onOneLine(raw) + "\n";
    }
    return dump;
}

}  // namespace test
