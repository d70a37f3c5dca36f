// The numbers of the tokens that style sheets are made of.
#pragma once

namespace CSS {

// From 1 to 127 a token is a single character, by its code. The numbers never change.
enum Token : int {
    EndOfInput = 0,
    S = 257,  // white space
    CDO = 258,
    CDC = 259,
    INCLUDES = 260,
    DASHMATCH = 261,
    LBRACE = 262,
    PLUS = 263,
    GREATER = 264,
    COMMA = 265,
    STRING = 266,
    IDENT = 267,
    HASH = 268,
    IMPORT_SYM = 269,
    PAGE_SYM = 270,
    MEDIA_SYM = 271,
    CHARSET_SYM = 272,
    IMPORTANT_SYM = 273,
    EMS = 274,
    EXS = 275,
    LENGTH = 276,
    ANGLE = 277,
    TIME = 278,
    FREQ = 279,
    DIMEN = 280,
    PERCENTAGE = 281,
    NUMBER = 282,
    URI = 283,
    FUNCTION = 284,
    PREFIXMATCH = 285,
    SUFFIXMATCH = 286,
    SUBSTRINGMATCH = 287,
};

}  // namespace CSS
