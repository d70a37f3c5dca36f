// What the documents promise.
#include <gtest/gtest.h>

#include <sstream>
#include <vector>

#include "tests/tree/Headers.h"

namespace {

using test::contentsOf;
using test::sourceFolder;

TEST(ReadmeTest, ItsFirstProgramIsTheOneThatIsBuilt) {
    const std::string readme = contentsOf(sourceFolder() / "README.md");
    EXPECT_NE(readme.find("```cpp\n" + contentsOf(sourceFolder() / "examples/FirstProgram.cpp") + "```"), std::string::npos);
}

TEST(ReadmeTest, TheFilesThatTheDocumentsNameExist) {
    static const std::regex name(R"(`((?:[\w.]+/)*[\w.]+\.(?:h|cpp|css|md|txt)|tests/PENDING)`)");
    size_t named = 0;
    std::vector<std::filesystem::path> documents{"README.md", "CONTRIBUTING.md"};
    for (const auto& file : std::filesystem::directory_iterator(sourceFolder() / "docs"))
        if (file.path().extension() == ".md") documents.push_back("docs" / file.path().filename());
    for (const auto& document : documents) {
        const std::string text = contentsOf(sourceFolder() / document);
        for (std::sregex_iterator match(text.begin(), text.end(), name), end; match != end; ++match, ++named) {
            if ((*match)[1].str().rfind("...", 0) == 0) continue;
            EXPECT_TRUE(std::filesystem::exists(sourceFolder() / (*match)[1].str())) << document << ": " << (*match)[1];
        }
    }
    EXPECT_GT(named, 8u);
}

TEST(ReadmeTest, ThePendingTestsAreNamedOnceAndDoNotExistYet) {
    std::istringstream lines(contentsOf(sourceFolder() / "tests/PENDING"));
    std::set<std::string> names;
    std::string allTests;
    for (const auto& file : std::filesystem::recursive_directory_iterator(sourceFolder() / "tests"))
        if (file.path().extension() == ".cpp") allTests += contentsOf(file.path());
    for (std::string line; std::getline(lines, line);) {
        if (line.empty() || line[0] == '#') continue;
        EXPECT_TRUE(names.insert(line).second) << line;
        const size_t dot = line.find('.');
        ASSERT_NE(dot, std::string::npos) << line;
        EXPECT_EQ(allTests.find("TEST(" + line.substr(0, dot) + ", " + line.substr(dot + 1) + ")"), std::string::npos) << line << " exists";
    }
}

}  // namespace
