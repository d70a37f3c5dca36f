// The driver css-tokens, and the scanner on a style sheet that people use.
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <sstream>

#include "common/core/css/Scanner.h"

namespace {

const std::string sheets = WQ_SOURCE_FOLDER "/tests/common/core/css/sheets/";

std::string contentsOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

struct Outcome {
    std::string output;  // of both channels
    int status = 0;
};

Outcome runOn(const std::string& arguments) {
    Outcome run;
    FILE* pipe = popen((WQ_CSS_TOKENS " " + arguments + " 2>&1").c_str(), "r");
    std::array<char, 4096> piece;
    while (const size_t count = fread(piece.data(), 1, piece.size(), pipe)) run.output.append(piece.data(), count);
    run.status = WEXITSTATUS(pclose(pipe));
    return run;
}

TEST(CssTokens, PrintsNumberNameAndRawTextOfEachToken) {
    const std::string path = testing::TempDir() + "tokens-" + std::to_string(getpid()) + ".css";
    std::ofstream(path) << "P.x >\n a[b~='c'] /* d */ {\n\tFont: 12PX/1.5 \"E\", url( f.png ) ! Important }";
    const Outcome run = runOn(path);
    std::remove(path.c_str());
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(
        run.output,
        "267 IDENT P\n"
        "46 character .\n"
        "267 IDENT x\n"
        "264 GREATER  >\n"
        "257 S \\n \n"
        "267 IDENT a\n"
        "91 character [\n"
        "267 IDENT b\n"
        "260 INCLUDES ~=\n"
        "266 STRING 'c'\n"
        "93 character ]\n"
        "257 S  \n"
        "262 LBRACE  {\n"
        "257 S \\n\\t\n"
        "267 IDENT Font\n"
        "58 character :\n"
        "257 S  \n"
        "276 LENGTH 12PX\n"
        "47 character /\n"
        "282 NUMBER 1.5\n"
        "257 S  \n"
        "266 STRING \"E\"\n"
        "265 COMMA ,\n"
        "257 S  \n"
        "283 URI url( f.png )\n"
        "257 S  \n"
        "273 IMPORTANT_SYM ! Important\n"
        "257 S  \n"
        "125 character }\n");
}

TEST(CssTokens, SaysWhatItCannotRead) {
    const Outcome missing = runOn("/no/such/sheet.css");
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.output, "css-tokens: cannot read /no/such/sheet.css\n");
    EXPECT_EQ(runOn("").status, 2);
}

TEST(CssTokens, ReadsARealSheetFromItsFirstRule) {
    const Outcome run = runOn(sheets + "html4css1.css");
    const std::string start =
        "257 S \\n\\n\n"  // between the first two comments
        "257 S \\n\n"
        "46 character .\n"
        "267 IDENT borderless\n"
        "265 COMMA ,\n"
        "257 S  \n"
        "267 IDENT table\n"
        "46 character .\n"
        "267 IDENT borderless\n"
        "257 S  \n"
        "267 IDENT td\n"
        "265 COMMA ,\n"
        "257 S  \n"
        "267 IDENT table\n"
        "46 character .\n"
        "267 IDENT borderless\n"
        "257 S  \n"
        "267 IDENT th\n"
        "262 LBRACE  {\n"
        "257 S \\n  \n"
        "267 IDENT border\n"
        "58 character :\n"
        "257 S  \n"
        "282 NUMBER 0\n"
        "257 S  \n"
        "125 character }\n";
    EXPECT_EQ(run.output.substr(0, start.size()), start);
    EXPECT_EQ(run.output.find("280 DIMEN"), std::string::npos);
}

TEST(CssTokens, TheTokensOfARealSheetAreItsTextWithoutComments) {
    std::string text = contentsOf(sheets + "html4css1.css");
    CSS::Scanner scanner;
    scanner.SetString(text);
    std::string joined;
    while (scanner.yylex()) joined.append(scanner.YYText(), static_cast<size_t>(scanner.YYLeng()));

    for (size_t start; (start = text.find("/*")) != std::string::npos;) text.erase(start, text.find("*/", start) + 2 - start);
    EXPECT_GT(text.size(), 4000u);
    EXPECT_EQ(joined, text);
}

}  // namespace
