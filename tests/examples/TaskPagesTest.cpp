// The task pages show what the task programs are and print.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <sstream>
#include <vector>

#include "tests/tree/Headers.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// ---- Programs, divided into regions by comment lines

using Texts = std::map<std::string, std::string>;  // by name

Texts regionsOf(const std::string& program) {
    static const std::regex marker(R"(\s*// \[(.+)\])");
    Texts regions;
    std::string* open = nullptr;
    std::istringstream lines(program);
    for (std::string line; std::getline(lines, line);) {
        std::smatch match;
        if (!std::regex_match(line, match, marker)) {
            if (open) *open += line + "\n";
        } else if (match[1] == "end") {
            open = nullptr;
        } else {
            EXPECT_FALSE(regions.contains(match[1])) << "two regions named " << match[1];
            open = &regions[match[1]];
        }
    }
    EXPECT_EQ(open, nullptr) << "a region has no end";
    return regions;
}

// ---- Pages, whose blocks stand each behind a comment

struct Block {
    std::string label;  // what the comment says; empty without one
    bool isCode = false;
    std::string text;
};

std::vector<Block> blocksOf(const std::string& page) {
    static const std::regex comment("<!-- (.+) -->"), fence("```(cpp)?");
    std::vector<Block> blocks;
    std::string label;
    bool isOpen = false;
    std::istringstream lines(page);
    for (std::string line; std::getline(lines, line);) {
        std::smatch match;
        if (isOpen && line != "```")
            blocks.back().text += line + "\n";
        else if (isOpen)
            isOpen = false;
        else if (std::regex_match(line, match, fence))
            blocks.push_back({label, match[1].matched, ""}), isOpen = true;
        label = !isOpen && std::regex_match(line, match, comment) ? match[1].str() : "";
    }
    EXPECT_FALSE(isOpen) << "a block has no end";
    return blocks;
}

struct Program {
    std::string file;
    std::string text;
    std::string output;
};

// What a page says wrong about its program, a line each. What the build without hard assertions prints besides stands in a block
// of its own.
std::vector<std::string> complaints(const std::string& page, const Program& program, bool hasHardAssertions) {
    std::vector<std::string> found;
    Texts unquoted = regionsOf(program.text);
    const Texts regions = unquoted;
    std::string shown;
    bool showsOutput = false;
    for (const Block& block : blocksOf(page)) {
        const std::string prefix = program.file + ": ";
        if (block.isCode) {
            const std::string name = block.label.starts_with(prefix) ? block.label.substr(prefix.size()) : "";
            const auto region = regions.find(name);
            if (region == regions.end())
                found.push_back("a block that is no region: " + block.label);
            else if (region->second != block.text)
                found.push_back("not as in the program: " + name);
            unquoted.erase(name);
        } else if (block.label == "output of " + program.file) {
            showsOutput = true;
            shown = block.text + shown;
        } else if (block.label == "further output of " + program.file + " without hard assertions") {
            if (!hasHardAssertions) shown += block.text;
        } else {
            found.push_back("a block that is no output: " + block.label);
        }
    }
    for (const auto& [name, text] : unquoted) found.push_back("not quoted: " + name);
    if (!showsOutput) found.push_back("no output");
    if (showsOutput && shown != program.output) found.push_back("the program prints:\n" + program.output);
    return found;
}

// ---- The pages

#ifdef WQ_NO_HARD_ASSERTIONS
constexpr bool kHasHardAssertions = false;
#else
constexpr bool kHasHardAssertions = true;
#endif

// Standard output alone: what the engine says of a bad sheet stands on standard error.
std::string outputOf(const std::string& executable) {
    FILE* pipe = popen(executable.c_str(), "r");
    std::string output;
    char buffer[4096];
    while (size_t read = std::fread(buffer, 1, sizeof buffer, pipe)) output.append(buffer, read);
    EXPECT_EQ(WEXITSTATUS(pclose(pipe)), 0);
    return output;
}

std::vector<std::string> complaintsAbout(const std::string& page, const std::string& file, const std::string& executable) {
    const Program program = {file, test::contentsOf(test::sourceFolder() / file), outputOf(executable)};
    return complaints(test::contentsOf(test::sourceFolder() / page), program, kHasHardAssertions);
}

TEST(TaskPagesTest, LoadEditSaveIsAsTheProgramIsAndPrints) {
    EXPECT_THAT(complaintsAbout("docs/load-edit-save.md", "examples/tasks/LoadEditSave.cpp", WQ_LOAD_EDIT_SAVE), IsEmpty());
}

TEST(TaskPagesTest, StyleOfAnElementIsAsTheProgramIsAndPrints) {
    EXPECT_THAT(complaintsAbout("docs/style-of-an-element.md", "examples/tasks/StyleOfAnElement.cpp", WQ_STYLE_OF_AN_ELEMENT), IsEmpty());
}

TEST(TaskPagesTest, AttributesAndHTMLIsAsTheProgramIsAndPrints) {
    EXPECT_THAT(complaintsAbout("docs/attributes-and-html.md", "examples/tasks/AttributesAndHTML.cpp", WQ_ATTRIBUTES_AND_HTML), IsEmpty());
}

TEST(TaskPagesTest, LoadEditSaveLeavesItsFilesInTheFolderThatItIsGiven) {
    std::string folder = testing::TempDir() + "wq-task-XXXXXX";
    ASSERT_NE(mkdtemp(folder.data()), nullptr);
    const std::string output = outputOf(WQ_LOAD_EDIT_SAVE " " + folder);
    EXPECT_THAT(output, HasSubstr("5 changes\n" + test::contentsOf(folder + "/novel.xml")));
    EXPECT_TRUE(std::filesystem::exists(folder + "/broken.xml"));
    EXPECT_FALSE(std::filesystem::exists(folder + "/novel.xml.unfinished"));
    std::filesystem::remove_all(folder);
}

// ---- The check itself

const std::string kFile = "examples/tasks/Sample.cpp";
const Program kSample = {kFile, "// [one]\nint a;\n\nint b;\n// [end]\nint c;\n    // [two]\n    f();\n    // [end]\n", "1\n2\n"};
const std::string kPage =
    "# Sample\n\n<!-- examples/tasks/Sample.cpp: one -->\n```cpp\nint a;\n\nint b;\n```\n\nText.\n\n"
    "<!-- examples/tasks/Sample.cpp: two -->\n```cpp\n    f();\n```\n\n<!-- output of examples/tasks/Sample.cpp -->\n```\n1\n2\n```\n";

std::string replaced(std::string text, const std::string& old, const std::string& with) {
    const size_t at = text.find(old);
    EXPECT_NE(at, std::string::npos) << old;
    return at == std::string::npos ? text : text.replace(at, old.size(), with);
}

TEST(TaskPagesTest, APageThatQuotesAllOfItsProgramIsInOrder) { EXPECT_THAT(complaints(kPage, kSample, true), IsEmpty()); }

TEST(TaskPagesTest, AChangedLineOfAPageOrOfAProgramIsFound) {
    EXPECT_THAT(complaints(replaced(kPage, "int b;", "int d;"), kSample, true), ElementsAre("not as in the program: one"));
    EXPECT_THAT(complaints(replaced(kPage, "    f();", "f();"), kSample, true), ElementsAre("not as in the program: two"));
    EXPECT_THAT(complaints(replaced(kPage, "int a;\n\n", "int a;\n"), kSample, true), ElementsAre("not as in the program: one"));
    Program changed = kSample;
    changed.text = replaced(changed.text, "int a;", "int a = 1;");
    EXPECT_THAT(complaints(kPage, changed, true), ElementsAre("not as in the program: one"));
}

TEST(TaskPagesTest, ARegionThatNoPageQuotesIsFound) {
    Program longer = kSample;
    longer.text += "// [three]\nint e;\n// [end]\n";
    EXPECT_THAT(complaints(kPage, longer, true), ElementsAre("not quoted: three"));
}

TEST(TaskPagesTest, ABlockOfNoRegionAndOneWithoutACommentAreFound) {
    EXPECT_THAT(
        complaints(replaced(kPage, "cpp: one", "cpp: once"), kSample, true),
        ElementsAre("a block that is no region: examples/tasks/Sample.cpp: once", "not quoted: one"));
    EXPECT_THAT(complaints(kPage + "\n```cpp\nint z;\n```\n", kSample, true), ElementsAre("a block that is no region: "));
    EXPECT_THAT(complaints(kPage + "\n```\nz\n```\n", kSample, true), ElementsAre("a block that is no output: "));
}

TEST(TaskPagesTest, AnotherOutputAndAMissingOneAreFound) {
    EXPECT_THAT(complaints(replaced(kPage, "2\n```", "3\n```"), kSample, true), ElementsAre("the program prints:\n1\n2\n"));
    EXPECT_THAT(
        complaints(replaced(kPage, "<!-- output of examples/tasks/Sample.cpp -->\n```\n1\n2\n```\n", ""), kSample, true),
        ElementsAre("no output"));
}

TEST(TaskPagesTest, FurtherOutputCountsWithoutHardAssertionsAlone) {
    const std::string page = kPage + "\n<!-- further output of examples/tasks/Sample.cpp without hard assertions -->\n```\n3\n```\n";
    EXPECT_THAT(complaints(page, kSample, true), IsEmpty());
    EXPECT_THAT(complaints(page, kSample, false), ElementsAre("the program prints:\n1\n2\n"));
    EXPECT_THAT(complaints(page, {kFile, kSample.text, "1\n2\n3\n"}, false), IsEmpty());
}

TEST(TaskPagesTest, TheFilesThatThePagesNameExist) {
    static const std::regex name(R"(`((?:[\w.-]+/)+[\w.-]+\.(?:h|cpp|css|md))`)");
    for (const char* page : {"docs/load-edit-save.md", "docs/style-of-an-element.md", "docs/attributes-and-html.md"}) {
        const std::string text = test::contentsOf(test::sourceFolder() / page);
        size_t named = 0;
        for (std::sregex_iterator match(text.begin(), text.end(), name), end; match != end; ++match, ++named)
            EXPECT_TRUE(std::filesystem::exists(test::sourceFolder() / (*match)[1].str())) << page << ": " << (*match)[1];
        EXPECT_GT(named, 4u) << page;
    }
}

}  // namespace
