// The public operations of the object layer, read from its headers.
#pragma once

#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <string>

namespace test {

inline std::filesystem::path sourceFolder() { return WQ_SOURCE_FOLDER; }

inline std::string contentsOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// "WQXMLNode::parentNode", ... for each operation on an object that stands in a public section and
// not behind a heading "For dom". Class operations, constructors and operators are left out: the
// test is about what can be called on null.
inline std::set<std::string> publicOperations(const std::filesystem::path& header) {
    static const std::regex classLine(R"(^class (?:\[\[\w+\]\] )?(\w+) (?::|\{).*)");
    static const std::regex sectionLine(R"(^(public|protected|private):.*)");
    static const std::regex operationLine(
        R"(^    (?!static|template|using|friend|return|explicit|enum|~)(?:virtual )?[\w:<>,&* ]+?[ &*](\w+)\(.*)");
    std::set<std::string> operations;
    std::string className, line;
    bool isPublic = false, isForDom = false;
    std::ifstream file(header);
    while (std::getline(file, line)) {
        std::smatch match;
        if (std::regex_match(line, match, classLine))
            className = match[1], isPublic = false, isForDom = false;
        else if (std::regex_match(line, match, sectionLine))
            isPublic = match[1] == "public", isForDom = false;
        else if (line.find("// ---- ") != std::string::npos)
            isForDom = line.find("For dom") != std::string::npos;
        else if (line.rfind("};", 0) == 0)
            className.clear();
        else if (!className.empty() && isPublic && !isForDom && std::regex_match(line, match, operationLine))
            operations.insert(className + "::" + match[1].str());
    }
    return operations;
}

}  // namespace test
