#include "common/core/css/Scanner.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/core/css/Token.h"

using namespace CSS;
using namespace std::string_literals;

namespace {

// A token and its text. A character alone stands for its own token.
struct Lexeme {
    Lexeme(int aToken, std::string aText) : token(aToken), text(std::move(aText)) {}
    Lexeme(char character) : token(character), text(1, character) {}
    bool operator==(const Lexeme&) const = default;
    friend std::ostream& operator<<(std::ostream& out, const Lexeme& lexeme) {
        return out << lexeme.token << " " << testing::PrintToString(lexeme.text.substr(0, 100));
    }
    int token;
    std::string text;
};
using Lexemes = std::vector<Lexeme>;

// The next token, and whether it is one: none comes with a 0.
Lexeme next(Scanner& scanner) {
    const int token = scanner.yylex();
    return {token, token ? std::string(scanner.YYText(), static_cast<size_t>(scanner.YYLeng())) : ""};
}

// All tokens up to the first 0.
Lexemes rest(Scanner& scanner) {
    Lexemes lexemes;
    for (Lexeme lexeme = next(scanner); lexeme.token; lexeme = next(scanner)) lexemes.push_back(lexeme);
    return lexemes;
}

Lexemes scan(const std::string& text) {
    Scanner scanner;
    scanner.SetString(text);
    return rest(scanner);
}

struct Row {
    std::string text;
    Lexemes lexemes;
};

void check(const std::vector<Row>& rows) {
    for (const Row& row : rows) EXPECT_EQ(scan(row.text), row.lexemes) << "scanning " << testing::PrintToString(row.text);
}

std::string repeated(std::string_view text, size_t count) {
    std::string result;
    result.reserve(text.size() * count);
    for (size_t i = 0; i < count; ++i) result += text;
    return result;
}

// Opens the ways in and out that the generated scanner uses.
class OpenScanner : public Scanner {
public:
    using Scanner::LexerError;
    using Scanner::LexerInput;
    using Scanner::LexerOutput;
};

}  // namespace

TEST(Token, TheNumbersAreFixed) {
    const std::vector<int> named{S,        CDO,         CDC,         INCLUDES,      DASHMATCH, LBRACE,    PLUS,        GREATER,       COMMA,
                                 STRING,   IDENT,       HASH,        IMPORT_SYM,    PAGE_SYM,  MEDIA_SYM, CHARSET_SYM, IMPORTANT_SYM, EMS,
                                 EXS,      LENGTH,      ANGLE,       TIME,          FREQ,      DIMEN,     PERCENTAGE,  NUMBER,        URI,
                                 FUNCTION, PREFIXMATCH, SUFFIXMATCH, SUBSTRINGMATCH};
    const std::vector<int> numbers{257, 258, 259, 260, 261, 262, 263, 264, 265, 266, 267, 268, 269, 270, 271, 272,
                                   273, 274, 275, 276, 277, 278, 279, 280, 281, 282, 283, 284, 285, 286, 287};
    EXPECT_EQ(named, numbers);
    EXPECT_EQ(EndOfInput, 0);
}

// One row for each way to write a token: the shortest text first, then those that are easily taken for something else.

TEST(ScannerRules, WhiteSpace) {
    check(
        {{" ", {{S, " "}}},
         {"\t", {{S, "\t"}}},
         {"\r", {{S, "\r"}}},
         {"\n", {{S, "\n"}}},
         {"\f", {{S, "\f"}}},
         {" \t\r\n\f \r\n", {{S, " \t\r\n\f \r\n"}}},
         {" \v ", {{S, " "}, '\v', {S, " "}}},
         {" )", {{S, " "}, ')'}}});
}

TEST(ScannerRules, Comments) {
    check(
        {{"/**/", {}},
         {"/***/", {}},
         {"/****/", {}},
         {"/*/*/", {}},
         {"/* * / ** \n \" */x", {{IDENT, "x"}}},
         {"/*a*/b*/", {{IDENT, "b"}, '*', '/'}},
         {"/*a*//*b*/", {}},
         {"a/**/b", {{IDENT, "a"}, {IDENT, "b"}}},
         {"/*\0\x80\xff*/x"s, {{IDENT, "x"}}},
         {"/ **/", {'/', {S, " "}, '*', '*', '/'}},
         {"\"/*\"*/", {{STRING, "\"/*\""}, '*', '/'}}});
}

TEST(ScannerRules, CommentDelimitersOfMarkup) {
    check(
        {{"<!--", {{CDO, "<!--"}}},
         {"<!-a", {'<', '!', '-', {IDENT, "a"}}},
         {"<!--a", {{CDO, "<!--"}, {IDENT, "a"}}},
         {"< !--", {'<', {S, " "}, '!', '-', '-'}},
         {"<!-->", {{CDO, "<!--"}, {GREATER, ">"}}},
         {"-->", {{CDC, "-->"}}},
         {"--->", {'-', {CDC, "-->"}}},
         {"->", {'-', {GREATER, ">"}}},
         {"-- >", {'-', '-', {GREATER, " >"}}},
         {"a-->", {{IDENT, "a--"}, {GREATER, ">"}}},
         {"1-->", {{NUMBER, "1"}, {CDC, "-->"}}},
         {"#-->", {{HASH, "#--"}, {GREATER, ">"}}}});
}

TEST(ScannerRules, AttributeOperators) {
    check(
        {{"~=", {{INCLUDES, "~="}}},
         {"~ =", {'~', {S, " "}, '='}},
         {"~~=", {'~', {INCLUDES, "~="}}},
         {"|=", {{DASHMATCH, "|="}}},
         {"|==", {{DASHMATCH, "|="}, '='}},
         {"|", {'|'}},
         {"^=", {{PREFIXMATCH, "^="}}},
         {"^ =", {'^', {S, " "}, '='}},
         {"$=", {{SUFFIXMATCH, "$="}}},
         {"$$=", {'$', {SUFFIXMATCH, "$="}}},
         {"*=", {{SUBSTRINGMATCH, "*="}}},
         {"**==", {'*', {SUBSTRINGMATCH, "*="}, '='}},
         {" ~=", {{S, " "}, {INCLUDES, "~="}}}});
}

TEST(ScannerRules, MarksThatTakeTheWhiteSpaceInFrontOfThem) {
    check(
        {{"{", {{LBRACE, "{"}}},
         {" \t\r\n\f{", {{LBRACE, " \t\r\n\f{"}}},
         {"{ {", {{LBRACE, "{"}, {LBRACE, " {"}}},
         {"+", {{PLUS, "+"}}},
         {" \t\r\n\f+ ", {{PLUS, " \t\r\n\f+"}, {S, " "}}},
         {"+5", {{PLUS, "+"}, {NUMBER, "5"}}},
         {">", {{GREATER, ">"}}},
         {" \t\r\n\f>=", {{GREATER, " \t\r\n\f>"}, '='}},
         {",", {{COMMA, ","}}},
         {" \t\r\n\f, a", {{COMMA, " \t\r\n\f,"}, {S, " "}, {IDENT, "a"}}},
         {" }", {{S, " "}, '}'}}});
}

TEST(ScannerRules, StringsInDoubleQuotes) {
    check(
        {{"\"\"", {{STRING, "\"\""}}},
         {"\"\t !#$%&'()*+~\x80\xff\"", {{STRING, "\"\t !#$%&'()*+~\x80\xff\""}}},
         {"\"it's\"", {{STRING, "\"it's\""}}},
         {"\"a\\\nb\\\r\nc\\\rd\\\fe\"", {{STRING, "\"a\\\nb\\\r\nc\\\rd\\\fe\""}}},
         {"\"\\22 \"", {{STRING, "\"\\22 \""}}},
         {"\"\\41\nb\"", {{STRING, "\"\\41\nb\""}}},
         {"\"\\\t\"", {{STRING, "\"\\\t\""}}},
         {"\"\"\"\"", {{STRING, "\"\""}, {STRING, "\"\""}}},
         {"\"a\nb\"", {'"', {IDENT, "a"}, {S, "\n"}, {IDENT, "b"}, '"'}},
         {"\"\x7f\"", {'"', '\x7f', '"'}},
         {"\"\x01\"", {'"', '\x01', '"'}},
         {"\"\v\"", {'"', '\v', '"'}}});
}

TEST(ScannerRules, StringsInSingleQuotes) {
    check(
        {{"''", {{STRING, "''"}}},
         {"'\t !#$%&\"()*+~\x80\xff'", {{STRING, "'\t !#$%&\"()*+~\x80\xff'"}}},
         {"'\"'", {{STRING, "'\"'"}}},
         {"'a\\\nb\\\r\nc\\\rd\\\fe'", {{STRING, "'a\\\nb\\\r\nc\\\rd\\\fe'"}}},
         {"'a\nb'", {'\'', {IDENT, "a"}, {S, "\n"}, {IDENT, "b"}, '\''}},
         {"'\"", {'\'', '"'}}});
}

TEST(ScannerRules, ABackslashInFrontOfTheLastQuoteDoesNotKeepAStringOpen) {
    check(
        {{"\"a\\\"", {{STRING, "\"a\\\""}}},
         {"'a\\'", {{STRING, "'a\\'"}}},
         {"\"\\\"", {{STRING, "\"\\\""}}},
         {"\"a\\\";\n\"", {{STRING, "\"a\\\""}, ';', {S, "\n"}, '"'}}});
}

TEST(ScannerRules, ALaterQuoteThatMakesALongerStringWins) {
    check(
        {{"\"a\\\"b\"", {{STRING, "\"a\\\"b\""}}},
         {"'a\\'b'", {{STRING, "'a\\'b'"}}},
         {"\"a\\\"; b: \"c", {{STRING, "\"a\\\"; b: \""}, {IDENT, "c"}}},
         {"\"\\\"\\\"\\\"\"", {{STRING, "\"\\\"\\\"\\\"\""}}},
         {"\"a\\\\\"", {{STRING, "\"a\\\\\""}}},
         // An escaped backslash ends the string as well as a backslash and an escaped quote go on with it.
         {"\"a\\\\\"b\"", {{STRING, "\"a\\\\\"b\""}}}});
}

TEST(ScannerRules, Identifiers) {
    check(
        {{"a", {{IDENT, "a"}}},
         {"_", {{IDENT, "_"}}},
         {"Z-a_09-", {{IDENT, "Z-a_09-"}}},
         {"a--b", {{IDENT, "a--b"}}},
         {"a.b", {{IDENT, "a"}, '.', {IDENT, "b"}}},
         {"-a", {'-', {IDENT, "a"}}},
         {"a\x7f", {{IDENT, "a"}, '\x7f'}},
         {"a*", {{IDENT, "a"}, '*'}},
         {"a/", {{IDENT, "a"}, '/'}},
         {"a:", {{IDENT, "a"}, ':'}},
         {"a@", {{IDENT, "a"}, '@'}},
         {"a[", {{IDENT, "a"}, '['}},
         {"a^", {{IDENT, "a"}, '^'}},
         {"a`", {{IDENT, "a"}, '`'}}});
}

TEST(ScannerRules, EscapesInIdentifiers) {
    check(
        {{"\\g", {{IDENT, "\\g"}}},
         {"\\-a", {{IDENT, "\\-a"}}},
         {"\\{", {{IDENT, "\\{"}}},
         {"\\ ", {{IDENT, "\\ "}}},
         {"\\\\", {{IDENT, "\\\\"}}},
         {"\\~", {{IDENT, "\\~"}}},
         {"\\\x80\\\xff", {{IDENT, "\\\x80\\\xff"}}},
         {"\\1", {{IDENT, "\\1"}}},
         {"\\41 b", {{IDENT, "\\41 b"}}},
         {"\\4A\tb", {{IDENT, "\\4A\tb"}}},
         {"a\\41 ", {{IDENT, "a\\41 "}}},
         {"\\41  {", {{IDENT, "\\41 "}, {LBRACE, " {"}}},
         {"\\41\r\nb", {{IDENT, "\\41\r"}, {S, "\n"}, {IDENT, "b"}}},
         {"\\41\fb\\42\nc", {{IDENT, "\\41\fb\\42\nc"}}},
         {"\\123456 7", {{IDENT, "\\123456 7"}}},
         {"\\1234567 8", {{IDENT, "\\1234567"}, {S, " "}, {NUMBER, "8"}}},
         {"\\g {", {{IDENT, "\\g"}, {LBRACE, " {"}}}});
}

TEST(ScannerRules, Hashes) {
    check(
        {{"#a", {{HASH, "#a"}}},
         {"#0", {{HASH, "#0"}}},
         {"#_\xe4\\.-", {{HASH, "#_\xe4\\.-"}}},
         {"#fff.5", {{HASH, "#fff"}, {NUMBER, ".5"}}},
         {"##a", {'#', {HASH, "#a"}}},
         {"# a", {'#', {S, " "}, {IDENT, "a"}}},
         {"#", {'#'}}});
}

TEST(ScannerRules, AtKeywords) {
    check(
        {{"@import", {{IMPORT_SYM, "@import"}}},
         {"@imports", {{IMPORT_SYM, "@import"}, {IDENT, "s"}}},
         {"@IMPort", {{IMPORT_SYM, "@IMPort"}}},
         {"@ import", {'@', {S, " "}, {IDENT, "import"}}},
         {"@\\69mport", {'@', {IDENT, "\\69mport"}}},
         {"@page", {{PAGE_SYM, "@page"}}},
         {"@PAGE:first", {{PAGE_SYM, "@PAGE"}, ':', {IDENT, "first"}}},
         {"@pag", {'@', {IDENT, "pag"}}},
         {"@media", {{MEDIA_SYM, "@media"}}},
         {"@Media-x", {{MEDIA_SYM, "@Media"}, '-', {IDENT, "x"}}},
         {"@media(", {{MEDIA_SYM, "@media"}, '('}},
         {"@charset", {{CHARSET_SYM, "@charset"}}},
         {"@CharSet'a'", {{CHARSET_SYM, "@CharSet"}, {STRING, "'a'"}}},
         {"@charse t", {'@', {IDENT, "charse"}, {S, " "}, {IDENT, "t"}}},
         {"@", {'@'}},
         {"@@media", {'@', {MEDIA_SYM, "@media"}}}});
}

TEST(ScannerRules, Importance) {
    check(
        {{"!important", {{IMPORTANT_SYM, "!important"}}},
         {"! \t\r\n\fIMPORTANT", {{IMPORTANT_SYM, "! \t\r\n\fIMPORTANT"}}},
         {"!importantly", {{IMPORTANT_SYM, "!important"}, {IDENT, "ly"}}},
         {"! importan", {'!', {S, " "}, {IDENT, "importan"}}},
         {" !important", {{S, " "}, {IMPORTANT_SYM, "!important"}}},
         {"!!important", {'!', {IMPORTANT_SYM, "!important"}}}});
}

TEST(ScannerRules, NumbersWithUnits) {
    struct Unit {
        std::string text, inOtherCase;
        int token;
    };
    const std::vector<Unit> units{
        {"em", "EM", EMS},       {"ex", "eX", EXS},    {"px", "PX", LENGTH}, {"cm", "Cm", LENGTH},  {"mm", "mM", LENGTH},
        {"in", "IN", LENGTH},    {"pt", "PT", LENGTH}, {"pc", "Pc", LENGTH}, {"deg", "DEG", ANGLE}, {"rad", "Rad", ANGLE},
        {"grad", "gRAD", ANGLE}, {"ms", "MS", TIME},   {"s", "S", TIME},     {"hz", "Hz", FREQ},    {"khz", "kHz", FREQ},
    };
    for (const Unit& unit : units) {
        SCOPED_TRACE(unit.text);
        check(
            {{"1" + unit.text, {{unit.token, "1" + unit.text}}},
             {"00.50" + unit.inOtherCase, {{unit.token, "00.50" + unit.inOtherCase}}},
             {".5" + unit.text + "+", {{unit.token, ".5" + unit.text}, {PLUS, "+"}}},
             {"1" + unit.text + "x", {{DIMEN, "1" + unit.text + "x"}}},
             {"1" + unit.text + "-", {{DIMEN, "1" + unit.text + "-"}}},
             {"1" + unit.text + "0", {{DIMEN, "1" + unit.text + "0"}}},
             {"1" + unit.text + "(", {{unit.token, "1" + unit.text}, '('}},
             {"1 " + unit.text, {{NUMBER, "1"}, {S, " "}, {IDENT, unit.text}}},
             {"1." + unit.text, {{NUMBER, "1"}, '.', {IDENT, unit.text}}}});
    }
}

TEST(ScannerRules, NumbersWithOtherUnits) {
    check(
        {{"1a", {{DIMEN, "1a"}}},
         {"1_", {{DIMEN, "1_"}}},
         {"1\x80", {{DIMEN, "1\x80"}}},
         {"1p", {{DIMEN, "1p"}}},
         {"1e3", {{DIMEN, "1e3"}}},
         {"1.5e-3", {{DIMEN, "1.5e-3"}}},
         {"1\\70x", {{DIMEN, "1\\70x"}}},
         {"1px-x", {{DIMEN, "1px-x"}}},
         {"1-x", {{NUMBER, "1"}, '-', {IDENT, "x"}}},
         {"0x1F", {{DIMEN, "0x1F"}}}});
}

TEST(ScannerRules, Percentages) {
    check(
        {{"1%", {{PERCENTAGE, "1%"}}},
         {"0.5%%", {{PERCENTAGE, "0.5%"}, '%'}},
         {"1.%", {{NUMBER, "1"}, '.', '%'}},
         {"1px%", {{LENGTH, "1px"}, '%'}}});
}

TEST(ScannerRules, Numbers) {
    check(
        {{"1", {{NUMBER, "1"}}},
         {"0123456789", {{NUMBER, "0123456789"}}},
         {"1.5.5", {{NUMBER, "1.5"}, {NUMBER, ".5"}}},
         {"1..5", {{NUMBER, "1"}, '.', {NUMBER, ".5"}}},
         {"+1.50", {{PLUS, "+"}, {NUMBER, "1.50"}}},
         {"1-2", {{NUMBER, "1"}, '-', {NUMBER, "2"}}},
         {".", {'.'}}});
}

TEST(ScannerRules, AddressesInQuotes) {
    check(
        {{"url(\"\")", {{URI, "url(\"\")"}}},
         {"url('')", {{URI, "url('')"}}},
         {"URL( \t\r\n\f'a b)' \t\r\n\f)", {{URI, "URL( \t\r\n\f'a b)' \t\r\n\f)"}}},
         {"url(\"a\\\")\")", {{URI, "url(\"a\\\")\")"}}},
         {"url(\"a\\\")", {{URI, "url(\"a\\\")"}}},
         {"url('a'b)", {{FUNCTION, "url("}, {STRING, "'a'"}, {IDENT, "b"}, ')'}},
         {"url('a' 'b')", {{FUNCTION, "url("}, {STRING, "'a'"}, {S, " "}, {STRING, "'b'"}, ')'}}});
}

TEST(ScannerRules, AddressesWithoutQuotes) {
    check(
        {{"url()", {{URI, "url()"}}},
         {"url( )", {{URI, "url( )"}}},
         {"uRL( \t\r\n\fa \t\r\n\f)", {{URI, "uRL( \t\r\n\fa \t\r\n\f)"}}},
         {"url(http://a.b/c?d=e&f,g;h#i@j[k]{l}~)", {{URI, "url(http://a.b/c?d=e&f,g;h#i@j[k]{l}~)"}}},
         {"url(/*a*/)", {{URI, "url(/*a*/)"}}},
         {"url(<!--)", {{URI, "url(<!--)"}}},
         {"url(!#$%&*+\x80\xff)", {{URI, "url(!#$%&*+\x80\xff)"}}},
         {"url(a\\ b)", {{URI, "url(a\\ b)"}}},
         {"url(a\\41\nb)", {{URI, "url(a\\41\nb)"}}},
         {"url(\\'\\\"\\()", {{URI, "url(\\'\\\"\\()"}}},
         {"url(a'b)", {{FUNCTION, "url("}, {IDENT, "a"}, '\'', {IDENT, "b"}, ')'}},
         {"url(a(b)", {{FUNCTION, "url("}, {FUNCTION, "a("}, {IDENT, "b"}, ')'}},
         {"url(\x7f)", {{FUNCTION, "url("}, '\x7f', ')'}},
         {"url(a", {{FUNCTION, "url("}, {IDENT, "a"}}},
         {"url (a)", {{IDENT, "url"}, {S, " "}, '(', {IDENT, "a"}, ')'}},
         {"xurl(a)", {{FUNCTION, "xurl("}, {IDENT, "a"}, ')'}},
         {"-url(a)", {'-', {URI, "url(a)"}}},
         {"u\\72l(a)", {{FUNCTION, "u\\72l("}, {IDENT, "a"}, ')'}}});
}

TEST(ScannerRules, ABackslashInFrontOfTheLastParenthesisDoesNotKeepAnAddressOpen) {
    check({{"url(\\)", {{URI, "url(\\)"}}}, {"url(a\\)", {{URI, "url(a\\)"}}}, {"url(a\\);", {{URI, "url(a\\)"}, ';'}}});
}

TEST(ScannerRules, ALaterParenthesisThatMakesALongerAddressWins) {
    check(
        {{"url(a\\)b)", {{URI, "url(a\\)b)"}}},
         {"url(\\))", {{URI, "url(\\))"}}},
         {"url(a\\);b: url(", {{URI, "url(a\\)"}, ';', {IDENT, "b"}, ':', {S, " "}, {FUNCTION, "url("}}}});
}

TEST(ScannerRules, Functions) {
    check(
        {{"a(", {{FUNCTION, "a("}}},
         {"A-b_1(2)", {{FUNCTION, "A-b_1("}, {NUMBER, "2"}, ')'}},
         {"\\41 (", {{FUNCTION, "\\41 ("}}},
         {"\\((", {{FUNCTION, "\\(("}}},
         {"-a(", {'-', {FUNCTION, "a("}}},
         {"1a(", {{DIMEN, "1a"}, '('}},
         {"#a(", {{HASH, "#a"}, '('}}});
}

TEST(ScannerRules, AnyOtherCharacterIsItsOwnToken) {
    check(
        {{";", {';'}}, {"}()[]:.=/*%&?^|~$`", {'}', '(', ')', '[', ']', ':', '.', '=', '/', '*', '%', '&', '?', '^', '|', '~', '$', '`'}}});
}

TEST(Scanner, EverySingleByteIsATokenOfItsOwnRange) {
    for (int byte = 1; byte < 256; ++byte) {
        SCOPED_TRACE(byte);
        int expected = byte;
        if (byte >= 0x80 || (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || byte == '_') expected = 267;
        if (byte >= '0' && byte <= '9') expected = 282;
        if (byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n' || byte == '\f') expected = 257;
        if (byte == '{') expected = 262;
        if (byte == '+') expected = 263;
        if (byte == '>') expected = 264;
        if (byte == ',') expected = 265;
        const std::string text(1, static_cast<char>(byte));
        EXPECT_EQ(scan(text), (Lexemes{{expected, text}}));
    }
}

TEST(Scanner, WhiteSpaceInFrontOfABraceIsNoTokenOfItsOwn) {
    check({{"a {", {{IDENT, "a"}, {LBRACE, " {"}}}, {"a b", {{IDENT, "a"}, {S, " "}, {IDENT, "b"}}}});
}

TEST(Scanner, ACommentEndsTheWhiteSpaceThatCouldHaveJoinedABrace) {
    check({{"a  /* c */  {", {{IDENT, "a"}, {S, "  "}, {LBRACE, "  {"}}}});
}

TEST(Scanner, ANumberHasNoSignAndNoExponent) {
    check({{"1e3", {{DIMEN, "1e3"}}}, {"1.", {{NUMBER, "1"}, '.'}}, {".5", {{NUMBER, ".5"}}}, {"-5", {'-', {NUMBER, "5"}}}});
}

TEST(Scanner, AUnitKeepsItsCase) { check({{"12PX", {{LENGTH, "12PX"}}}}); }

TEST(Scanner, APercentSignStandsRightBehindItsNumber) {
    check({{"12%", {{PERCENTAGE, "12%"}}}, {"12 %", {{NUMBER, "12"}, {S, " "}, '%'}}});
}

TEST(Scanner, WhiteSpaceMayOnlySurroundAnAddress) {
    check(
        {{"url( a.png )", {{URI, "url( a.png )"}}},
         {"url(\"a.png\")", {{URI, "url(\"a.png\")"}}},
         {"url(a b)", {{FUNCTION, "url("}, {IDENT, "a"}, {S, " "}, {IDENT, "b"}, ')'}}});
}

TEST(Scanner, AHashMayConsistOfDigitsOrHyphensAlone) { check({{"#123", {{HASH, "#123"}}}, {"#-", {{HASH, "#-"}}}}); }

TEST(Scanner, AFunctionHasItsParenthesisRightBehindItsName) {
    check({{"color(", {{FUNCTION, "color("}}}, {"color (", {{IDENT, "color"}, {S, " "}, '('}}});
}

TEST(Scanner, AnUnknownAtKeywordIsASignAndAnIdentifier) { check({{"@font-face", {'@', {IDENT, "font-face"}}}}); }

TEST(Scanner, ImportanceTakesWhiteSpaceButNoComment) {
    check(
        {{"!  important", {{IMPORTANT_SYM, "!  important"}}},
         {"!/* */important", {'!', {IDENT, "important"}}},
         {"! /* */ important", {'!', {S, " "}, {S, " "}, {IDENT, "important"}}}});
}

TEST(Scanner, CommentDelimitersOfMarkupAreTokensAnywhere) {
    check(
        {{"a<!--b", {{IDENT, "a"}, {CDO, "<!--"}, {IDENT, "b"}}},
         {"a: 1 -->;", {{IDENT, "a"}, ':', {S, " "}, {NUMBER, "1"}, {S, " "}, {CDC, "-->"}, ';'}}});
}

TEST(Scanner, BytesFrom0x80UpAreLettersWhateverTheirEncoding) {
    std::string letters;
    for (int byte = 0x80; byte < 0x100; ++byte) letters += static_cast<char>(byte);
    check({{letters, {{IDENT, letters}}}, {"a" + letters + "(", {{FUNCTION, "a" + letters + "("}}}, {"#\xc3", {{HASH, "#\xc3"}}}});
}

TEST(Scanner, AllIsRecognisedInBothCases) {
    check(
        {{"URL(A)", {{URI, "URL(A)"}}},
         {"@MEDIA", {{MEDIA_SYM, "@MEDIA"}}},
         {"! IMPORTANT", {{IMPORTANT_SYM, "! IMPORTANT"}}},
         {"12PX", {{LENGTH, "12PX"}}},
         {"\\ABCDEF A", {{IDENT, "\\ABCDEF A"}}}});
}

TEST(Scanner, AnUnterminatedStringIsItsQuoteAndWhatFollows) {
    check(
        {{"\"a b", {'"', {IDENT, "a"}, {S, " "}, {IDENT, "b"}}},
         {"'a\"b\"", {'\'', {IDENT, "a"}, {STRING, "\"b\""}}},
         {"\"", {'"'}},
         {"\"\\", {'"', '\\'}}});
}

TEST(Scanner, AnUnterminatedCommentIsASlashAndAStarAndWhatFollows) {
    check({{"/*", {'/', '*'}}, {"/*/", {'/', '*', '/'}}, {"/* a *", {'/', '*', {S, " "}, {IDENT, "a"}, {S, " "}, '*'}}});
}

TEST(Scanner, ABackslashThatBeginsNoEscapeIsACharacter) {
    check(
        {{"\\", {'\\'}},
         {"\\\n", {'\\', {S, "\n"}}},
         {"\\\t", {'\\', {S, "\t"}}},
         {"a\\\nb", {{IDENT, "a"}, '\\', {S, "\n"}, {IDENT, "b"}}},
         {"\\\x7f", {'\\', '\x7f'}},
         {"#\\\n", {'#', '\\', {S, "\n"}}},
         {"1\\", {{NUMBER, "1"}, '\\'}}});
}

TEST(Scanner, ANulByteIsToken0AndTheTextGoesOnBehindIt) {
    Scanner scanner;
    scanner.SetString("a\0b \0\0{"s);
    EXPECT_EQ(next(scanner), Lexeme(IDENT, "a"));
    EXPECT_EQ(scanner.yylex(), 0);
    EXPECT_EQ(next(scanner), Lexeme(IDENT, "b"));
    EXPECT_EQ(next(scanner), Lexeme(S, " "));
    EXPECT_EQ(scanner.yylex(), 0);
    EXPECT_EQ(scanner.yylex(), 0);
    EXPECT_EQ(next(scanner), Lexeme(LBRACE, "{"));
    EXPECT_EQ(scanner.yylex(), 0);
}

TEST(Scanner, ANulByteBelongsToNoStringNameOrAddress) {
    check({{"\"\0\""s, {'"'}}, {"'\\\0'"s, {'\'', '\\'}}, {"url(\0)"s, {{FUNCTION, "url("}}}, {"#\0"s, {'#'}}, {"\0"s, {}}});
}

TEST(Scanner, BehindTheEndOfTheTextThereIsAlways0) {
    for (const char* text : {"", "a", " ", "/* */", "\"", "/*"}) {
        SCOPED_TRACE(text);
        Scanner scanner;
        scanner.SetString(text);
        while (scanner.yylex()) continue;
        for (int i = 0; i < 5; ++i) EXPECT_EQ(scanner.yylex(), 0);
    }
}

TEST(Scanner, WithoutATextIsAtTheEnd) {
    Scanner scanner;
    EXPECT_EQ(scanner.yylex(), 0);
    EXPECT_EQ(scanner.yylex(), 0);
}

TEST(Scanner, KeepsACopyOfTheText) {
    Scanner scanner;
    {
        std::string text = "first second";
        scanner.SetString(text);
        text.assign(text.size(), 'x');
    }
    EXPECT_EQ(next(scanner), Lexeme(IDENT, "first"));
    EXPECT_EQ(next(scanner), Lexeme(S, " "));
    EXPECT_EQ(next(scanner), Lexeme(IDENT, "second"));
}

TEST(Scanner, ReadsTheTextThatItWasGivenLast) {
    Scanner scanner;
    scanner.SetString("a");
    scanner.SetString("b");
    EXPECT_EQ(next(scanner), Lexeme(IDENT, "b"));
    EXPECT_EQ(scanner.yylex(), 0);
}

TEST(Scanner, TwoScannersDoNotMindEachOther) {
    Scanner first, second;
    first.SetString("a {");
    second.SetString("1px)");
    EXPECT_EQ(next(first), Lexeme(IDENT, "a"));
    EXPECT_EQ(next(second), Lexeme(LENGTH, "1px"));
    EXPECT_EQ(next(first), Lexeme(LBRACE, " {"));
    EXPECT_EQ(next(second), Lexeme(')'));
}

TEST(Scanner, InputIsCopiedPieceByPiece) {
    OpenScanner scanner;
    scanner.SetString("ab\0cd"s);
    char buffer[4] = {'x', 'x', 'x', 'x'};
    EXPECT_EQ(scanner.LexerInput(buffer, 3), 3);
    EXPECT_EQ(std::string(buffer, 4), "ab\0x"s);
    EXPECT_EQ(scanner.LexerInput(buffer, 0), 0);
    EXPECT_EQ(scanner.LexerInput(buffer, 3), 2);
    EXPECT_EQ(std::string(buffer, 4), "cd\0x"s);
    EXPECT_EQ(scanner.LexerInput(buffer, 3), 0);
    EXPECT_EQ(scanner.LexerInput(buffer, 3), 0);
    scanner.SetString("e");
    EXPECT_EQ(scanner.LexerInput(buffer, 4), 1);
    EXPECT_EQ(buffer[0], 'e');
}

TEST(Scanner, OutputGoesToStandardOutput) {
    OpenScanner scanner;
    testing::internal::CaptureStdout();
    scanner.LexerOutput("a%s\0bcd", 5);
    scanner.LexerOutput("", 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "a%s\0b"s);
}

TEST(Scanner, AnErrorGoesToStandardOutputWithoutLineEndAndTheProcessGoesOn) {
    OpenScanner scanner;
    testing::internal::CaptureStdout();
    scanner.LexerError("some 100%s message");
    scanner.LexerError(", another");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "some 100%s message, another");
}

TEST(Scanner, WritesNothingInUse) {
    testing::internal::CaptureStdout();
    std::string bytes;
    for (int byte = 1; byte < 256; ++byte) bytes += static_cast<char>(byte);
    EXPECT_FALSE(scan(bytes + "\"\\ /*" + bytes).empty());
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(Scanner, TokensMayLieAcrossTheEdgesOfTheBuffer) {
    const std::string text = "a /* c */ {1.5px url( \"b\\\"c\" )!  important\\41 @charset'\\\n'-->";
    const Lexemes lexemes{
        {IDENT, "a"},
        {S, " "},
        {LBRACE, " {"},
        {LENGTH, "1.5px"},
        {S, " "},
        {URI, "url( \"b\\\"c\" )"},
        {IMPORTANT_SYM, "!  important"},
        {IDENT, "\\41 "},
        {CHARSET_SYM, "@charset"},
        {STRING, "'\\\n'"},
        {CDC, "-->"}};
    for (const size_t edge : {8192u, 16384u}) {
        for (size_t padding = edge - text.size() - 1; padding <= edge + 1; ++padding) {
            SCOPED_TRACE(padding);
            ASSERT_EQ(scan("/*" + std::string(padding - 4, '*') + "*/" + text), lexemes);
            Scanner scanner;
            scanner.SetString(std::string(padding, ';') + text);
            for (size_t i = 0; i < padding; ++i) {
                if (scanner.yylex() != ';') FAIL() << "token " << i;
            }
            ASSERT_EQ(rest(scanner), lexemes);
        }
    }
}

TEST(Scanner, LongTokensKeepTheirText) {
    const std::string letters(1 << 20, 'a'), blanks(100'000, ' '), digits(100'000, '1');
    const std::vector<Row> rows{
        {letters + " b", {{IDENT, letters}, {S, " "}, {IDENT, "b"}}},
        {"/*" + repeated("* / ", 25'000) + "*/b", {{IDENT, "b"}}},
        {blanks + "b", {{S, blanks}, {IDENT, "b"}}},
        {blanks + "{", {{LBRACE, blanks + "{"}}},
        {digits + "." + digits + "px", {{LENGTH, digits + "." + digits + "px"}}},
        {"'" + repeated("\\\r\n", 50'000) + "'b", {{STRING, "'" + repeated("\\\r\n", 50'000) + "'"}, {IDENT, "b"}}},
        {"url(" + blanks + digits + blanks + ")", {{URI, "url(" + blanks + digits + blanks + ")"}}},
        {"!" + blanks + "important", {{IMPORTANT_SYM, "!" + blanks + "important"}}},
        {"#" + letters, {{HASH, "#" + letters}}},
    };
    for (size_t i = 0; i < rows.size(); ++i) EXPECT_TRUE(scan(rows[i].text) == rows[i].lexemes) << "row " << i;
}

TEST(Scanner, WhatLooksLikeALongTokenIsGivenBack) {
    const std::string letters(100'000, 'a'), blanks(100'000, ' ');
    const std::vector<Row> rows{
        {"/*" + letters, {'/', '*', {IDENT, letters}}},
        {"\"" + letters, {'"', {IDENT, letters}}},
        {"url(" + letters, {{FUNCTION, "url("}, {IDENT, letters}}},
        {"url(" + blanks + "a b)", {{FUNCTION, "url("}, {S, blanks}, {IDENT, "a"}, {S, " "}, {IDENT, "b"}, ')'}},
        {"!" + blanks + "import", {'!', {S, blanks}, {IDENT, "import"}}},
    };
    for (size_t i = 0; i < rows.size(); ++i) EXPECT_TRUE(scan(rows[i].text) == rows[i].lexemes) << "row " << i;
}

// ---- One scanner after another text

TEST(ScannerTest, ANewTextBeginsAnewWhereverTheOldOneWasLeft) {
    Scanner scanner;
    scanner.SetString("alpha beta gamma");
    EXPECT_EQ(next(scanner), Lexeme(IDENT, "alpha"));
    scanner.SetString("12px");
    EXPECT_EQ(rest(scanner), (Lexemes{{LENGTH, "12px"}}));
    scanner.SetString("");
    EXPECT_EQ(rest(scanner), Lexemes());
    scanner.SetString("delta");
    EXPECT_EQ(rest(scanner), (Lexemes{{IDENT, "delta"}}));
}

TEST(ScannerTest, ANewTextBeginsAnewInsideATokenAndBehindANUL) {
    Scanner scanner;
    scanner.SetString("\"never ended");
    EXPECT_EQ(next(scanner), Lexeme('"'));
    scanner.SetString("a\0b"s);
    EXPECT_EQ(next(scanner), Lexeme(IDENT, "a"));
    EXPECT_EQ(next(scanner).token, 0);
    scanner.SetString("c");
    EXPECT_EQ(rest(scanner), (Lexemes{{IDENT, "c"}}));
}

TEST(ScannerTest, ANewTextBeginsAnewBehindALongToken) {
    Scanner scanner;
    const std::string name(200000, 'x');
    scanner.SetString(name + " y");
    EXPECT_EQ(next(scanner), Lexeme(IDENT, name));
    scanner.SetString("z");
    EXPECT_EQ(rest(scanner), (Lexemes{{IDENT, "z"}}));
}

TEST(ScannerTest, TwoThatAreBorrowedAtATimeReadTheirOwnTexts) {
    const BorrowedScanner first = borrowScanner();
    first->SetString("a b");
    EXPECT_EQ(next(*first), Lexeme(IDENT, "a"));
    const BorrowedScanner second = borrowScanner();
    EXPECT_NE(first, second);
    second->SetString("c d");
    EXPECT_EQ(next(*second), Lexeme(IDENT, "c"));
    EXPECT_EQ(rest(*first), (Lexemes{{S, " "}, {IDENT, "b"}}));
    EXPECT_EQ(rest(*second), (Lexemes{{S, " "}, {IDENT, "d"}}));
}

TEST(ScannerTest, OneThatWasGivenBackServesTheNext) {
    BorrowedScanner one = borrowScanner();
    const Scanner* const first = one.get();
    one.reset();
    const BorrowedScanner second = borrowScanner();
    EXPECT_EQ(second.get(), first);
    second->SetString("e");
    EXPECT_EQ(rest(*second), (Lexemes{{IDENT, "e"}}));
}
