// Bytes from outside as a style sheet's tokens. What stands between two tokens is comments and nothing else,
// and the tokens go up to the first NUL.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "common/core/css/Scanner.h"

namespace {

void require(bool condition) {
    if (!condition) std::abort();
}

std::string_view withoutComments(std::string_view text) {
    while (text.substr(0, 2) == "/*") {
        const size_t end = text.find("*/", 2);
        if (end == std::string_view::npos) break;  // a slash and a star
        text.remove_prefix(end + 2);
    }
    return text;
}

void requireFitting(int token, std::string_view text) {
    const auto first = static_cast<unsigned char>(text.front());
    if (token < CSS::S) require(text.size() == 1 && token == first);
    if (token == CSS::HASH) require(first == '#' && text.size() > 1);
    if (token == CSS::FUNCTION) require(text.back() == '(');
    if (token == CSS::URI) require(text.size() > 4 && text.back() == ')');
    if (token == CSS::STRING) require(text.size() > 1 && first == static_cast<unsigned char>(text.back()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    CSS::Scanner scanner;
    scanner.SetString(std::string(rest));
    while (const int token = scanner.yylex()) {
        require(token > 0 && token <= CSS::SUBSTRINGMATCH && (token < 128 || token >= CSS::S));
        const std::string_view text(scanner.YYText(), static_cast<size_t>(scanner.YYLeng()));
        rest = withoutComments(rest);
        require(!text.empty() && rest.substr(0, text.size()) == text);
        requireFitting(token, text);
        rest.remove_prefix(text.size());
    }
    rest = withoutComments(rest);
    require(rest.empty() || rest.front() == '\0');
    return 0;
}
