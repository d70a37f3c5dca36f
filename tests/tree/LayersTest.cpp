// The house: who may include whom, and words that each floor keeps to itself.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <vector>

#include "tests/tree/Headers.h"

namespace {

using test::contentsOf;
using test::sourceFolder;

// Each folder, and those of the tree that it may include besides itself.
const std::map<std::string, std::vector<std::string>> floors{
    {"common/core/include", {}},
    {"platform", {}},
    {"common/core/css", {"common/core/include"}},
    {"dom", {"platform"}},
    {"common/core/osx", {"common/core/css", "common/core/include", "platform"}},
    {"mac/Frameworks/WQCSS", {"dom", "common/core/css", "common/core/osx", "common/core/include", "platform"}},
    {"html", {"mac/Frameworks/WQCSS", "dom", "common/core/css", "common/core/osx", "common/core/include", "platform"}},
};

// What only `platform` knows, and what its headers do not name either.
const std::vector<std::string> platformLibraries{"fontconfig/", "curl/", "unicode/", "uriparser/", "pango/", "cairo/"};

std::vector<std::filesystem::path> sourcesOf(const std::string& folder) {
    std::vector<std::filesystem::path> sources;
    if (!std::filesystem::exists(sourceFolder() / folder)) return sources;
    for (const auto& file : std::filesystem::directory_iterator(sourceFolder() / folder))
        if (file.path().extension() == ".h" || file.path().extension() == ".cpp") sources.push_back(file.path());
    return sources;
}

// The names between quotes or angles behind #include.
std::vector<std::string> includesOf(const std::string& text) {
    std::vector<std::string> includes;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        if (line.rfind("#include ", 0) == 0) includes.push_back(line.substr(10, line.find_first_of("\">", 10) - 10));
    return includes;
}

std::string folderOf(const std::string& include) { return include.substr(0, include.rfind('/')); }

// The includes of a source that its floor does not allow.
std::vector<std::string> forbiddenIncludes(const std::string& floor, bool isHeader, const std::string& text) {
    std::vector<std::string> forbidden;
    const auto& allowed = floors.at(floor);
    for (const std::string& include : includesOf(text)) {
        const std::string folder = folderOf(include);
        if (floors.count(folder) && folder != floor && std::find(allowed.begin(), allowed.end(), folder) == allowed.end())
            forbidden.push_back(include);
        for (const std::string& library : platformLibraries)
            if (include.rfind(library, 0) == 0 && (floor != "platform" || isHeader)) forbidden.push_back(include);
    }
    return forbidden;
}

TEST(LayersTest, NoFileIncludesUpward) {
    size_t read = 0;
    for (const auto& [floor, allowed] : floors)
        for (const auto& file : sourcesOf(floor)) {
            ++read;
            EXPECT_THAT(forbiddenIncludes(floor, file.extension() == ".h", contentsOf(file)), testing::IsEmpty()) << file;
        }
    EXPECT_GT(read, 30u);
}

TEST(LayersTest, TheCheckFindsAnUpwardInclude) {
    EXPECT_THAT(forbiddenIncludes("platform", true, "#include \"dom/WQXMLNode.h\"\n"), testing::ElementsAre("dom/WQXMLNode.h"));
    EXPECT_THAT(
        forbiddenIncludes("dom", false, "#include \"common/core/css/Parser.h\"\n"), testing::ElementsAre("common/core/css/Parser.h"));
    EXPECT_THAT(forbiddenIncludes("platform", true, "#include <unicode/ustring.h>\n"), testing::ElementsAre("unicode/ustring.h"));
    EXPECT_THAT(forbiddenIncludes("platform", false, "#include <unicode/ustring.h>\n"), testing::IsEmpty());
    EXPECT_THAT(forbiddenIncludes("dom", true, "#include \"platform/Object.h\"\n"), testing::IsEmpty());
}

TEST(LayersTest, IncludesOfTheTreeAreWrittenFromItsRoot) {
    for (const auto& [floor, allowed] : floors)
        for (const auto& file : sourcesOf(floor)) {
            std::istringstream lines(contentsOf(file));
            for (std::string line; std::getline(lines, line);) {
                if (line.rfind("#include \"", 0) != 0) continue;
                EXPECT_TRUE(std::filesystem::exists(sourceFolder() / includesOf(line).at(0))) << file << ": " << line;
            }
        }
}

// One file of dom frees and moves nodes behind wrappers; any other says beside the call why it is safe.
TEST(LayersTest, NodesAreFreedInOnePlaceOrWithAReason) {
    static const std::regex call(
        R"(\b(xmlFree(Node|NodeList|Prop|PropList|Doc|Dtd|Ns)|xmlUnlinkNode|xmlSetTreeDoc|xmlSetProp|xmlSetNsProp|)"
        R"(xmlUnsetProp|xmlUnsetNsProp|xmlNodeSetContent|xmlAddChild(List)?|xmlDocSetRootElement|xmlReplaceNode)\()");
    for (const auto& file : sourcesOf("dom")) {
        if (file.stem() == "Binding" || file.stem() == "Rare") continue;
        std::istringstream lines(contentsOf(file));
        for (std::string line; std::getline(lines, line);) {
            if (!std::regex_search(line, call)) continue;
            EXPECT_NE(line.find("//"), std::string::npos) << file << ": " << line;
        }
    }
}

// Headers that are for the files of their own folder, as the installation knows them, and what they share with no application.
bool isPrivate(const std::string& header) {
    static const std::string install = contentsOf(sourceFolder() / "cmake/Install.cmake");
    return header == "dom/Rare.h" || install.find(" " + header) != std::string::npos;
}

TEST(LayersTest, OneHeaderIncludesAllThatAnApplicationUses) {
    const auto included = includesOf(contentsOf(sourceFolder() / "wq/wq.h"));
    size_t expected = 0;
    for (const char* floor : {"dom", "html", "mac/Frameworks/WQCSS", "platform"})
        for (const auto& file : sourcesOf(floor)) {
            const std::string header = std::string(floor) + "/" + file.filename().string();
            if (file.extension() != ".h" || isPrivate(header)) continue;
            ++expected;
            EXPECT_THAT(included, testing::Contains(header));
        }
    EXPECT_EQ(included.size(), expected);
}

TEST(LayersTest, EveryHeaderBeginsWithWhatItIsAndGuardsItself) {
    for (const auto& [floor, allowed] : floors)
        for (const auto& file : sourcesOf(floor)) {
            if (file.extension() != ".h") continue;
            const std::string text = contentsOf(file);
            EXPECT_EQ(text.rfind("// ", 0), 0u) << file;
            EXPECT_NE(text.find("#pragma once"), std::string::npos) << file;
        }
}

}  // namespace
