#include "common/core/css/Stylesheet.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <type_traits>

#include "tests/common/core/css/Sheets.h"

using namespace std::string_literals;
using CSS::Stylesheet;
using test::dumpOfSheet;
using test::printedBy;

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool sanitized = true;
#elif defined(__has_feature)
constexpr bool sanitized = __has_feature(address_sanitizer);
#else
constexpr bool sanitized = false;
#endif

// A folder of a test's own, gone with the scope.
struct Folder {
    Folder() { path = mkdtemp(pattern.data()); }
    ~Folder() { std::filesystem::remove_all(path); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    std::string file(const std::string& content, const char* name = "sheet.css") const {
        std::ofstream(path / name, std::ios::binary) << content;
        return path / name;
    }
    std::string pattern = testing::TempDir() + "wq-XXXXXX";
    std::filesystem::path path;
};

SharedPtr<Stylesheet> sheetOf(const std::string& text) { return Stylesheet::CreateWithData(text); }

// The sheet of a file, or "null".
std::string readFile(const std::string& path) {
    const SharedPtr<Stylesheet> sheet = Stylesheet::CreateWithFile(path);
    return sheet ? dumpOfSheet(*sheet) : "null";
}
std::string readFileOf(const std::string& content) { return readFile(Folder().file(content)); }

std::string printed(const Stylesheet& sheet) {
    return printedBy([&] { sheet.Print(); });
}

// How many descriptors of the file are open.
int numberOfOpen(const std::string& path) {
    int number = 0;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd"))
        if (std::filesystem::read_symlink(entry.path(), error) == path) ++number;
    return number;
}

}  // namespace

TEST(Stylesheet, IsAnEmptySheetOfAnAuthorAtFirst) {
    static_assert(std::is_base_of_v<SharedObject, Stylesheet> && sizeof(Stylesheet::Origin) == 4);
    const Stylesheet sheet;
    EXPECT_EQ(sheet.refCount, 0);
    EXPECT_TRUE(sheet.styleRules.empty());
    EXPECT_TRUE(sheet.mediaRules.empty());
    EXPECT_TRUE(sheet.pageRules.empty());
    EXPECT_TRUE(sheet.importRules.empty());
    EXPECT_TRUE(sheet.properties.empty());
    EXPECT_EQ(sheet.origin, Stylesheet::Author);
}

TEST(Stylesheet, NumbersItsOrigins) {
    EXPECT_EQ(Stylesheet::UserAgent, 0);
    EXPECT_EQ(Stylesheet::User, 1);
    EXPECT_EQ(Stylesheet::Author, 2);
}

TEST(Stylesheet, KeepsRulesByKindInTheirOrder) {
    EXPECT_EQ(
        dumpOfSheet(*sheetOf("a{} @page{color:red} b{} @media m /**/{c{}} d{} @page{} @media n /**/{}")),
        "media (m) {\nrule 0 c\n}\nmedia (n) {\n}\npage \n0 color: #ff0000\npage \nrule 0 a\nrule 0 b\nrule 0 d\n");
}

TEST(Stylesheet, RulesWithinMediaAreNoStyleRules) {
    const auto sheet = sheetOf("@media m /**/{ a { color: red } }");
    EXPECT_TRUE(sheet->styleRules.empty());
    ASSERT_EQ(sheet->mediaRules.size(), 1U);
    EXPECT_EQ(sheet->mediaRules[0]->rules.size(), 1U);
}

TEST(Stylesheet, HasNoPropertiesOfItsOwn) { EXPECT_TRUE(sheetOf("@page { color: red } a { color: red }")->properties.empty()); }

TEST(Stylesheet, RulesOutliveIt) {
    SharedPtr<Stylesheet> sheet = sheetOf("@media m /**/{ a { color: red } } b { color: red }");
    const auto media = sheet->mediaRules[0];
    const auto rule = sheet->styleRules[0];
    sheet = SharedPtr<Stylesheet>();
    EXPECT_EQ(test::dumpOfRule(*media->rules[0]), "rule 0 a\n0 color: #ff0000\n");
    EXPECT_EQ(test::dumpOfRule(*rule), "rule 0 b\n1 color: #ff0000\n");
}

// ---- Print

TEST(Stylesheet, PrintsItsStyleRulesOnly) {
    EXPECT_EQ(
        printed(*sheetOf("@import 'x'; a { color: red } @media m /**/{ c { color: red } } @page { color: red } b { }")),
        "a  { \n\tcolor: #ff0000; \n}\nb  { \n}\n");
}

TEST(Stylesheet, WithAnImportOnlyPrintsNothing) { EXPECT_EQ(printed(*sheetOf("@import 'x';")), ""); }

// ---- CreateWithData

TEST(CreateWithData, MakesASheetThatNobodyHolds) {
    const auto sheet = Stylesheet::CreateWithData("a { }");
    EXPECT_EQ(sheet->refCount, 0);
    EXPECT_EQ(sheet->origin, 2);
    EXPECT_EQ(dumpOfSheet(*sheet), "rule 0 a\n");
    delete sheet;
}

TEST(CreateWithData, OfAnEmptyTextMakesAnEmptySheet) {
    const auto sheet = sheetOf("");
    ASSERT_TRUE(sheet);
    EXPECT_EQ(dumpOfSheet(*sheet), "");
}

TEST(CreateWithData, ReadsUpToTheFirstNul) { EXPECT_EQ(dumpOfSheet(*sheetOf("a { }\0 b { }"s)), "rule 0 a\n"); }

TEST(CreateWithData, LeavesTheTextAlone) {
    const std::string text = "@charset 'x'; a { color: red }";
    const std::string copy = text;
    sheetOf(text);
    EXPECT_EQ(text, copy);
}

TEST(CreateWithData, DoesNotFollowImports) {
    const Folder folder;
    const std::string path = folder.file("a { color: red }");
    EXPECT_EQ(dumpOfSheet(*sheetOf("@import '" + path + "'; b { }")), "import '" + path + "' ()\nrule 0 b\n");
    EXPECT_EQ(numberOfOpen(path), 0);
}

TEST(CreateWithDataDeathTest, ASyntaxErrorMakesNoSheet) {
#ifdef WQ_NO_HARD_ASSERTIONS
    testing::internal::CaptureStderr();
    EXPECT_EQ(Stylesheet::CreateWithData("a { } b ~ c { }"), nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "CSS Parse Error before token ~\n");
#else
    test::expectAssertion([] { Stylesheet::CreateWithData("a { } b ~ c { }"); }, "0", "error", "Parser");
#endif
}

// ---- CreateWithFile

TEST(CreateWithFile, MakesASheetThatNobodyHolds) {
    const Folder folder;
    const auto sheet = Stylesheet::CreateWithFile(folder.file("a { color: red }"));
    ASSERT_TRUE(sheet);
    EXPECT_EQ(sheet->refCount, 0);
    EXPECT_EQ(sheet->origin, 2);
    EXPECT_EQ(dumpOfSheet(*sheet), "rule 0 a\n0 color: #ff0000\n");
    delete sheet;
}

TEST(CreateWithFile, OfAFileThatCannotBeOpenedIsNullAndTellsNothing) {
    const Folder folder;
    testing::internal::CaptureStderr();
    const std::string out = printedBy([&] {
        EXPECT_EQ(Stylesheet::CreateWithFile(folder.path / "missing.css"), nullptr);
        EXPECT_EQ(Stylesheet::CreateWithFile(folder.path / "no" / "folder.css"), nullptr);
        EXPECT_EQ(Stylesheet::CreateWithFile(""), nullptr);
    });
    EXPECT_EQ(out + testing::internal::GetCapturedStderr(), "");
}

TEST(CreateWithFile, OfAnEmptyFileMakesAnEmptySheet) {
    const Folder folder;
    const SharedPtr<Stylesheet> sheet = Stylesheet::CreateWithFile(folder.file(""));
    ASSERT_TRUE(sheet);
    EXPECT_TRUE(sheet->styleRules.empty());
    EXPECT_TRUE(sheet->mediaRules.empty());
    EXPECT_TRUE(sheet->pageRules.empty());
    EXPECT_TRUE(sheet->importRules.empty());
    EXPECT_EQ(sheet->origin, 2);
}

TEST(CreateWithFile, ReadsUpToTheFirstNul) {
    EXPECT_EQ(readFileOf("a { } b { }\0 c { }"s), "rule 0 a\nrule 0 b\n");
    EXPECT_EQ(readFileOf("\0a { }"s), "");
}

TEST(CreateWithFile, TakesTheBytesAsTheyAre) {
    EXPECT_EQ(readFileOf("@charset 'x';\r\n\xe9.\xc3\xa9\r\n{\r\n}\r\n"), "rule 0 \xe9 class[class ~= \xc3\xa9]\n");
    EXPECT_EQ(
        readFileOf("\xef\xbb\xbf"
                   "a { }"),
        "rule 0 \xef\xbb\xbf"
        "a\n");
    EXPECT_EQ(readFileOf("a { } \x1a b { }"), "rule 0 a\n");
}

TEST(CreateWithFile, ReadsWholeFiles) {
    const std::string content = std::string(1'000'000, ' ') + "a { } /*" + std::string(1'000'000, '*') + "*/ b { }";
    EXPECT_EQ(readFileOf(content), "rule 0 a\nrule 0 b\n");
}

TEST(CreateWithFile, DoesNotFollowImports) {
    const Folder folder;
    const std::string imported = folder.file("a { }", "imported.css");
    EXPECT_EQ(readFile(folder.file("@import 'imported.css'; b { }")), "import 'imported.css' ()\nrule 0 b\n");
    EXPECT_EQ(numberOfOpen(imported), 0);
}

TEST(CreateWithFile, LeavesTheFileOpen) {
    const Folder folder;
    const std::string path = std::filesystem::canonical(folder.file("a { }"));
    EXPECT_EQ(numberOfOpen(path), 0);
    EXPECT_EQ(readFile(path), "rule 0 a\n");
    EXPECT_EQ(numberOfOpen(path), 1);
    EXPECT_EQ(readFile(path), "rule 0 a\n");
    EXPECT_EQ(numberOfOpen(path), 2);
}

TEST(CreateWithFile, OfAFolderIsNull) { EXPECT_EQ(Stylesheet::CreateWithFile(Folder().path), nullptr); }

TEST(CreateWithFile, OfAPipeIsNull) {
    const Folder folder;
    const std::string path = folder.path / "pipe";
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    const int end = open(path.c_str(), O_RDWR);
    ASSERT_GE(end, 0);
    EXPECT_EQ(write(end, "a { }", 5), 5);
    EXPECT_EQ(Stylesheet::CreateWithFile(path), nullptr);
    close(end);
}

TEST(CreateWithFile, OfAFileTooLargeForMemoryIsNull) {
    if (sanitized) GTEST_SKIP() << "the sanitizer ends the process instead";
    const Folder folder;
    const std::string path = folder.file("a { }");
    std::error_code error;
    std::filesystem::resize_file(path, uintmax_t{1} << 40, error);  // takes no room
    if (error) GTEST_SKIP() << "no such large files here";
    rlimit previous;
    ASSERT_EQ(getrlimit(RLIMIT_AS, &previous), 0);
    rlimit limit = previous;
    limit.rlim_cur = rlim_t{1} << 38;
    ASSERT_EQ(setrlimit(RLIMIT_AS, &limit), 0);
    EXPECT_EQ(Stylesheet::CreateWithFile(path), nullptr);
    ASSERT_EQ(setrlimit(RLIMIT_AS, &previous), 0);
}

TEST(CreateWithFileDeathTest, ASyntaxErrorMakesNoSheet) {
    const Folder folder;
    const std::string path = folder.file("a { } b ~ c { }");
#ifdef WQ_NO_HARD_ASSERTIONS
    testing::internal::CaptureStderr();
    EXPECT_EQ(Stylesheet::CreateWithFile(path), nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "CSS Parse Error before token ~\n");
#else
    test::expectAssertion([&] { Stylesheet::CreateWithFile(path); }, "0", "error", "Parser");
#endif
}
