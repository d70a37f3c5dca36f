// The scanner of style sheets: text to tokens, with the rules of Scanner.l.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include <common/core/css/ScannerBase.h>

#include "common/core/css/Token.h"

namespace CSS {

// One scanner reads one text at a time. There are no errors: what no rule recognises is a token of one character.
//
// Letters are recognised in both cases, and the text of a token is raw: quotes, units, escapes and case as typed.
// White space in front of a left brace, a plus, a greater-than sign or a comma belongs to that token.
// Bytes from 0x80 up are letters. A NUL byte gives token 0, like the end of the text; the next call
// goes on behind it. Memory that is refused is std::bad_alloc, also for every call until the next text is set.
class Scanner : public wqCSSFlexLexer {
public:
    Scanner();

    // Copies the text that yylex is to read, from its start; what was not read of the one before is forgotten.
    void SetString(const std::string& text);

    // The number of the next token; its text is YYText(), YYLeng() bytes long, until the next call. At the end
    // of the text, 0, and again 0.
    int yylex() override;

protected:
    int LexerInput(char* buffer, int maxSize) override;       // the next bytes of the text; 0 at its end
    void LexerOutput(const char* text, int length) override;  // to standard output; no rule leaves anything for it
    void LexerError(const char* message) override;            // to standard output; the process goes on

private:
    int scan();  // what flex makes of the rules

    bool hasBuffer = true;  // false once memory for it was refused
    std::string inputString;
    size_t inputPosition = 0;
    friend struct KeepScanner;
};

// Scanners are kept for the next text, since making one takes longer than reading a short declaration.
struct KeepScanner {
    void operator()(Scanner* scanner) const noexcept;
};
using BorrowedScanner = std::unique_ptr<Scanner, KeepScanner>;
BorrowedScanner borrowScanner();  // whoever borrows one while another reads gets a new one

}  // namespace CSS
