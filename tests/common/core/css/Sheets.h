// Style sheets as text: rules by kind, the parts of their selectors, and their declarations.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <string>
#include <typeinfo>
#include <vector>

#include "tests/common/core/css/Declarations.h"

namespace test {

inline std::string joined(const std::vector<std::string>& texts, const std::string& separator) {
    std::string all;
    for (size_t i = 0; i < texts.size(); ++i) all += (i ? separator : "") + texts[i];
    return all;
}

// "id(#x)", "pseudo(first)", "[x]", "[x ~= y]"; "class[class ~= y]" for what is written with a dot.
inline std::string dumpOfCondition(const CSS::SimpleSelector& condition) {
    if (const auto* id = dynamic_cast<const CSS::IDSelector*>(&condition)) return "id(" + id->name + ")";
    if (const auto* pseudo = dynamic_cast<const CSS::PseudoElement*>(&condition)) return "pseudo(" + pseudo->name + ")";
    struct Operator {
        const std::type_info& type;
        const char* text;
    };
    static const Operator operators[] = {
        {typeid(CSS::AttributeNameSelector), ""},          {typeid(CSS::AttributeValueSelector), " = "},
        {typeid(CSS::AttributeListSelector), " ~= "},      {typeid(CSS::AttributeHyphenSelector), " |= "},
        {typeid(CSS::AttributePrefixSelector), " ^= "},    {typeid(CSS::AttributeSuffixSelector), " $= "},
        {typeid(CSS::AttributeSubstringSelector), " *= "},
    };
    const auto& attribute = dynamic_cast<const CSS::AttributeSelector&>(condition);
    const auto* list = dynamic_cast<const CSS::AttributeListSelector*>(&condition);
    for (const Operator& each : operators)
        if (each.type == typeid(condition))
            return (list && list->isClass ? "class[" : "[") + attribute.attributeName + each.text + attribute.attributeValue + "]";
    return "unknown";
}

// "0 a | 2 b[x]": the parts from left to right, the code of its combinator in front of each.
inline std::string dumpOfSelector(const CSS::Selector& selector) {
    std::vector<std::string> parts;
    for (const CSS::TypeSelector* part = selector.chainHead; part; part = part->chainLeft) {
        std::string text = std::to_string(part->combinator) + " " + part->name;
        for (const CSS::SimpleSelector* condition = part->next; condition; condition = condition->next)
            text += " " + dumpOfCondition(*condition);
        parts.push_back(text);
    }
    std::reverse(parts.begin(), parts.end());
    return joined(parts, " | ");
}

// "rule 0 a, 0 b", and a line for each property.
inline std::string dumpOfRule(const CSS::StyleRule& rule) {
    std::vector<std::string> selectors;
    for (const auto& selector : rule.selectors) selectors.push_back(dumpOfSelector(*selector));
    return "rule " + joined(selectors, ", ") + "\n" + dumpOfDeclaration(*rule.declaration);
}

// "import "x" (print, screen)", "media (print)" with rules in braces, "page", and the style rules.
inline std::string dumpOfSheet(const CSS::Stylesheet& sheet) {
    std::string dump;
    for (const auto& import : sheet.importRules) dump += "import " + import->href + " (" + joined(import->media, ", ") + ")\n";
    for (const auto& media : sheet.mediaRules) {
        dump += "media (" + joined(media->media, ", ") + ") {\n";
        for (const auto& rule : media->rules) dump += dumpOfRule(*rule);
        dump += "}\n";
    }
    for (const auto& page : sheet.pageRules) dump += "page " + page->pseudoPage + "\n" + dumpOfDeclaration(*page->declaration);
    for (const auto& rule : sheet.styleRules) dump += dumpOfRule(*rule);
    return dump;
}

// The sheet of a text, then the warnings.
inline std::string readSheet(const std::string& text) {
    SharedPtr<CSS::Stylesheet> sheet;
    const std::string printed = printedBy([&] { sheet = SharedPtr<CSS::Stylesheet>(CSS::Parser().Parse(text)); });
    return (sheet ? dumpOfSheet(*sheet) : "null\n") + printed;
}

#ifndef WQ_NO_HARD_ASSERTIONS
// The work prints `printed` and then fails a hard assertion. It runs in a child that is split off on the spot.
template <class Work> void expectAssertion(
    Work&& work,
    const std::string& expression,
    const std::string& function,
    const std::string& file,
    const std::string& printed = "") {
    GTEST_FLAG_SET(death_test_style, "fast");
    std::fflush(stdout);
    EXPECT_EXIT(
        {
            dup2(STDERR_FILENO, STDOUT_FILENO);
            std::setvbuf(stdout, nullptr, _IONBF, 0);
            work();
        },
        testing::KilledBySignal(SIGABRT),
        testing::StartsWith(
            printed + "Assertion failed: (" + expression + "), function " + function + ", file common/core/css/" + file + ", line "));
}
#endif

// The text has a syntax error in front of the token, behind the warnings.
inline void expectSyntaxErrorInSheet(const std::string& text, const std::string& token, const std::string& warnings = "") {
    SCOPED_TRACE(text);
#ifdef WQ_NO_HARD_ASSERTIONS
    testing::internal::CaptureStderr();
    const std::string read = readSheet(text);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "CSS Parse Error before token " + token + "\n");
    EXPECT_EQ(read, "null\n" + warnings);
#else
    static_cast<void>(token);
    expectAssertion([&] { CSS::Parser().Parse(text); }, "0", "error", "Parser", warnings);
#endif
}

}  // namespace test
