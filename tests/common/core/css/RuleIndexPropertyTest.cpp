// The index of rules against trying every rule: it finds every rule that matches, and those that it does not find fail
// without looking at what ends the process.
#include <gtest/gtest.h>
#include <libxml/HTMLparser.h>
#include <libxml/parser.h>
#include <rapidcheck.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "common/core/css/Parser.h"
#include "common/core/css/RuleIndex.h"

namespace {

using std::string;

size_t below(size_t limit) { return *rc::gen::resize(rc::kNominalSize, rc::gen::inRange<size_t>(0, limit)); }
template <size_t N> string anyOf(const char* const (&choices)[N]) { return choices[below(N)]; }

// Behind a class, an ID is compared only with elements of that class: none has it.
string anyPart() {
    static const char* const names[] = {"", "*", "a", "b", "B", "div"};
    static const char* const conditions[] = {"", ".x", ".y", ".X", ".x.y", "[k]", "[k=v]", "[k].x", ":first", ".none#id"};
    const string part = anyOf(names) + anyOf(conditions);
    return part.empty() ? "*" : part;
}
string anySelector() {
    static const char* const combinators[] = {" ", " > ", " + "};
    string selector = anyPart();
    for (size_t more = below(3); more > 0; --more) selector += anyOf(combinators) + anyPart();
    return selector;
}
string anySheet() {
    string sheet;
    for (size_t rules = below(12); rules > 0; --rules)
        sheet += anySelector() + (below(3) == 0 ? ", " + anySelector() : "") + " { color: red }\n";
    return sheet;
}
string anyElement(size_t depth) {
    static const char* const names[] = {"a", "b", "B", "div"};
    static const char* const attributes[] = {"", " class='x'", " class='y x'", " class='X\ty'", " k='v'", " k='' class=' x '"};
    const string name = anyOf(names);
    string content;
    for (size_t children = depth > 0 ? below(4) : 0; children > 0; --children) content += anyElement(depth - 1);
    return "<" + name + anyOf(attributes) + ">" + content + "</" + name + ">";
}

using Document = std::unique_ptr<xmlDoc, void (*)(xmlDoc*)>;

Document parsed(const string& markup, bool html) {
    const int size = static_cast<int>(markup.size());
    xmlDoc* document = html ? htmlReadMemory(markup.data(), size, nullptr, nullptr, HTML_PARSE_NOERROR)
                            : xmlReadMemory(markup.data(), size, nullptr, nullptr, 0);
    return {document, xmlFreeDoc};
}

void collect(xmlNode* node, std::vector<xmlNode*>& elements) {
    for (; node; node = node->next) {
        if (node->type != XML_ELEMENT_NODE) continue;
        elements.push_back(node);
        collect(node->children, elements);
    }
}

bool matches(const CSS::StyleRule& rule, xmlNode* element) {
    return std::any_of(rule.selectors.begin(), rule.selectors.end(), [&](const auto& selector) { return selector->Match(element); });
}

TEST(RuleIndexPropertyTest, FindsEveryRuleThatMatches) {
    EXPECT_TRUE(rc::check([] {
        const SharedPtr<CSS::Stylesheet> sheet = CSS::Parser().Parse(anySheet());
        CSS::RuleIndex index;
        for (const auto& rule : sheet->styleRules) index.add(*rule.Get());
        const Document document = parsed(anyElement(3), below(2) == 0);
        std::vector<xmlNode*> elements;
        collect(xmlDocGetRootElement(document.get()), elements);
        for (xmlNode* element : elements) {
            const auto candidates = index.candidatesFor(element);
            RC_ASSERT(std::is_sorted(candidates.begin(), candidates.end()));
            for (uint32_t number = 0; number < sheet->styleRules.size(); ++number) {
                const bool isMatch = matches(*sheet->styleRules[number].Get(), element);
                if (isMatch) RC_ASSERT(std::binary_search(candidates.begin(), candidates.end(), number));
            }
        }
    }));
}

}  // namespace
