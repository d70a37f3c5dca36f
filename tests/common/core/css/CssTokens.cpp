// css-tokens FILE prints the tokens of a style sheet, a line for each: number, name, raw text.
#include <cstdio>
#include <fstream>
#include <iterator>

#include "tests/common/core/css/Tokens.h"

int main(int count, char** arguments) {
    if (count != 2) {
        std::fputs("usage: css-tokens FILE\n", stderr);
        return 2;
    }
    std::ifstream file(arguments[1], std::ios::binary);
    if (!file) {
        std::fprintf(stderr, "css-tokens: cannot read %s\n", arguments[1]);
        return 1;
    }
    std::fputs(test::dumpOfTokens({std::istreambuf_iterator<char>(file), {}}).c_str(), stdout);
}
