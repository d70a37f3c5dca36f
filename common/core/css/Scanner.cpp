#include "common/core/css/Scanner.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <new>
#include <utility>

namespace CSS {

Scanner::Scanner() : wqCSSFlexLexer(nullptr, nullptr) {
    static char noText[] = "";
    yytext = noText;  // flex sets neither before the first token
    yyleng = 0;
}

void Scanner::SetString(const std::string& text) {
    inputString = text;
    inputPosition = 0;
    hasBuffer = false;
    yyrestart(nullptr);
    hasBuffer = true;
}

// flex says that a buffer has grown before it has the memory, so one that could not grow is not to be used again.
int Scanner::yylex() try {
    if (!hasBuffer) throw std::bad_alloc();
    return scan();
} catch (const std::bad_alloc&) {
    if (std::exchange(hasBuffer, false)) yypop_buffer_state();
    throw;
}

int Scanner::LexerInput(char* buffer, int maxSize) {
    const size_t count = std::min(static_cast<size_t>(maxSize), inputString.size() - inputPosition);
    std::memcpy(buffer, inputString.data() + inputPosition, count);
    inputPosition += count;
    return static_cast<int>(count);
}

void Scanner::LexerOutput(const char* text, int length) { std::fwrite(text, 1, static_cast<size_t>(length), stdout); }

void Scanner::LexerError(const char* message) { std::fputs(message, stdout); }

// ---- The one that is kept

namespace {
constexpr size_t kLongText = 65536;  // bytes; a scanner's buffer grows with its longest token

std::unique_ptr<Scanner>& spare() {
    static auto* const scanner = new std::unique_ptr<Scanner>;  // never destroyed
    return *scanner;
}
}  // namespace

void KeepScanner::operator()(Scanner* scanner) const noexcept {
    std::unique_ptr<Scanner> kept(scanner);
    if (scanner->inputString.size() < kLongText) spare() = std::move(kept);
}

BorrowedScanner borrowScanner() { return BorrowedScanner(spare() ? spare().release() : new Scanner); }

}  // namespace CSS
