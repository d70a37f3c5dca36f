// The resolver agrees with a cascade that is as simple as can be: collect all candidates, sort them, pick the first of each
// name. It works on a model of documents and sheets, from which the texts for the engine are written.
#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <rapidcheck.h>

#include <algorithm>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "common/core/css/StyleResolver.h"
#include "tests/common/core/css/Declarations.h"

namespace {

using CSS::Style;
using CSS::Stylesheet;
using std::string;
using std::vector;

// Of the whole range in small cases too; shrinking turns "one in" into no.
size_t below(size_t limit) { return *rc::gen::resize(rc::kNominalSize, rc::gen::inRange<size_t>(0, limit)); }
bool oneIn(size_t times) { return below(times) == times - 1; }
template <class T, size_t N> const T& anyOf(const T (&choices)[N]) { return choices[below(N)]; }

// ---- Declarations

struct Choice {
    const char* name;
    const char* value;
    const char* computed;  // null: refused
};
const Choice kChoices[] = {
    {"color", "red", "#ff0000"},     {"color", "blue", "#0000ff"},    {"color", "lime", "#00ff00"}, {"color", "nonsense", nullptr},
    {"foo", "bar", nullptr},         {"width", "1px", "1px"},         {"width", "10%", "10%"},      {"margin-left", "2px", "2px"},
    {"margin-left", "auto", "auto"}, {"margin", "3px", "3px"},        {"margin", "4px", "4px"},     {"font-size", "13px", "13px"},
    {"font-size", "14px", "14px"},   {"font-weight", "bold", "bold"}, {"line-height", "2", "2"},    {"text-align", "right", "right"},
};

struct Declaration {
    Choice choice;
    bool important;
};
using Block = vector<Declaration>;

Block anyBlock() {
    Block block;
    for (size_t count = below(5); count > 0; --count) block.push_back({anyOf(kChoices), oneIn(4)});
    return block;
}

string textOf(const Block& block) {
    string text;
    for (const Declaration& each : block)
        text += string(each.choice.name) + ": " + each.choice.value + (each.important ? " !important; " : "; ");
    return text;
}

// What stays of a declaration, with its place among all properties that were made.
struct Kept {
    string name, computed;
    bool important;
    int order;
};

vector<Kept> keptOf(const Block& block, int& order) {
    vector<Kept> kept;
    for (const Declaration& each : block) {
        const string name = each.choice.name;
        const int own = order++;
        if (!each.choice.computed) continue;
        if (name != "margin")
            kept.push_back({name, each.choice.computed, each.important, own});
        else
            for (const char* side : {"top", "left", "bottom", "right"})
                kept.push_back({name + "-" + side, each.choice.computed, false, order++});
    }
    return kept;
}

// ---- Documents

const char* const kNames[] = {"a", "b"};
const char* const kClasses[] = {"x", "y"};

struct Node {
    enum Kind { Element, Text, Comment } kind = Element;
    string name;
    std::set<string> classes;
    bool hasStyle = false;
    Block style;
    const Node* parent = nullptr;
    vector<std::unique_ptr<Node>> children;

    const Node* previousElement() const {
        const Node* previous = nullptr;
        if (!parent) return nullptr;
        for (const auto& sibling : parent->children) {
            if (sibling.get() == this) break;
            if (sibling->kind == Element) previous = sibling.get();
        }
        return previous;
    }
};

std::unique_ptr<Node> anyTree(const Node* parent, int depth) {
    auto node = std::make_unique<Node>();
    node->parent = parent;
    node->name = anyOf(kNames);
    for (const char* each : kClasses) {
        if (oneIn(3)) node->classes.insert(each);
    }
    node->hasStyle = oneIn(3);
    if (node->hasStyle) node->style = anyBlock();
    for (size_t count = depth > 0 ? below(4) : 0; count > 0; --count) {
        auto child = anyTree(node.get(), depth - 1);
        const bool behindText = !node->children.empty() && node->children.back()->kind == Node::Text;  // two texts would become one
        const size_t kind = below(6);
        if (kind == 0 || (kind == 1 && behindText)) child->kind = Node::Comment;
        if (kind == 1 && !behindText) child->kind = Node::Text;
        if (child->kind != Node::Element) {
            child->name = "text";
            child->classes.clear();
            child->hasStyle = false;
            child->style.clear();
            child->children.clear();
        }
        node->children.push_back(std::move(child));
    }
    return node;
}

string markupOf(const Node& node) {
    if (node.kind == Node::Text) return "t";
    if (node.kind == Node::Comment) return "<!--c-->";
    string text = "<" + node.name + " class='";
    for (const auto& each : node.classes) text += each + " ";
    text += "'";
    if (node.hasStyle) text += " style='" + textOf(node.style) + "'";
    text += ">";
    for (const auto& child : node.children) text += markupOf(*child);
    return text + "</" + node.name + ">";
}

// ---- Selectors and sheets

struct Part {
    char combinator;  // to the part on the left
    string name;
    vector<string> conditions;  // ".x" or ":before"
};
using Selector = vector<Part>;  // from left to right

Selector anySelector() {
    Selector selector;
    for (size_t count = 1 + (oneIn(3) ? below(3) : 0); count > 0; --count) {
        Part part{" >+"[below(3)], oneIn(3) ? "*" : oneIn(10) ? "text" : anyOf(kNames), {}};
        while (oneIn(5)) part.conditions.push_back(oneIn(6) ? ":before" : string(".") + anyOf(kClasses));
        selector.push_back(part);
    }
    return selector;
}

string textOf(const Selector& selector) {
    string text;
    for (const Part& part : selector) {
        if (&part != &selector.front()) text += string(" ") + part.combinator + " ";
        text += part.name;
        for (const auto& each : part.conditions) text += each;
    }
    return text;
}

int specificityOf(const Selector& selector) {
    int sum = 0;
    for (const Part& part : selector) {
        if (part.name != "*") sum += 1;
        for (const auto& each : part.conditions) sum += each[0] == '.' ? 32 : 1;
    }
    return sum;
}

bool fits(const Node& node, const Part& part) {
    return (part.name == "*" || part.name == node.name) &&
           std::all_of(part.conditions.begin(), part.conditions.end(), [&](const string& condition) {
               return condition[0] == '.' && node.classes.count(condition.substr(1)) == 1;
           });
}

// The nearest ancestor that fits is taken for good.
bool matches(const Node& subject, const Selector& selector) {
    if (!fits(subject, selector.back())) return false;
    const Node* node = &subject;
    for (size_t i = selector.size() - 1; i > 0; --i) {
        const Part& left = selector[i - 1];
        const char combinator = selector[i].combinator;
        node = combinator == '+' ? node->previousElement() : node->parent;
        while (combinator == ' ' && node && !fits(*node, left)) node = node->parent;
        if (!node || !fits(*node, left)) return false;
    }
    return true;
}

struct Rule {
    vector<Selector> selectors;
    Block block;
    bool isInMedia;
};
struct Sheet {
    vector<Rule> rules;
    int origin;
};

Sheet variantOf(Sheet sheet) {
    for (Rule& rule : sheet.rules) {
        if (oneIn(6)) rule.isInMedia = !rule.isInMedia;
        for (Declaration& each : rule.block) {
            if (oneIn(2)) each.choice = anyOf(kChoices);
        }
    }
    return sheet;
}

vector<Sheet> anySheets() {
    vector<Sheet> sheets(below(5));
    for (Sheet& sheet : sheets) {
        sheet.origin = oneIn(2) ? static_cast<int>(below(4)) : 2;
        for (size_t count = below(6); count > 0; --count) {
            Rule rule{{anySelector()}, anyBlock(), oneIn(8)};
            while (oneIn(4)) rule.selectors.push_back(anySelector());
            sheet.rules.push_back(rule);
        }
    }
    // The same sheet once more, or one much like it: keys and places are equal then.
    if (!sheets.empty() && oneIn(2)) sheets.push_back(oneIn(4) ? sheets.front() : variantOf(sheets.front()));
    return sheets;
}

string textOf(const Sheet& sheet) {
    string text;
    for (const Rule& rule : sheet.rules) {
        string selectors;
        for (const auto& each : rule.selectors) selectors += (selectors.empty() ? "" : ", ") + textOf(each);
        const string all = selectors + " { " + textOf(rule.block) + "}";
        text += rule.isInMedia ? "@media print /**/{ " + all + " }\n" : all + "\n";
    }
    return text;
}

// ---- The simple cascade

using Computed = std::map<string, string>;

const Computed kInherited = {{"color", "#000000"}, {"font-size", "12px"},  {"font-style", "normal"}, {"font-weight", "normal"},
                             {"line-height", "1"}, {"text-align", "left"}, {"text-indent", "0px"}};
const Computed kFresh =
    {{"margin-bottom", "0px"}, {"margin-left", "0px"}, {"margin-right", "0px"}, {"margin-top", "0px"}, {"width", "auto"}};

int levelOf(int origin, bool important) {
    switch (origin) {
        case 0: return 1;
        case 1: return important ? 5 : 2;
        case 2: return important ? 4 : 3;
        default: return 0;
    }
}

struct Candidate {
    Kept kept;
    int level, specificity;
    auto rank() const { return std::tuple(level, specificity, kept.order); }
};

vector<Candidate> candidatesFor(const Node& node, const vector<Sheet>& sheets) {
    vector<Candidate> candidates;
    const auto add = [&](const Kept& kept, int origin, int specificity) {
        candidates.push_back({kept, levelOf(origin, kept.important), specificity});
    };
    for (const Sheet& sheet : sheets) {
        int order = 0;
        for (const Rule& rule : sheet.rules) {
            const vector<Kept> block = keptOf(rule.block, order);  // rules for media count as well
            const auto matching =
                std::find_if(rule.selectors.begin(), rule.selectors.end(), [&](const Selector& each) { return matches(node, each); });
            if (rule.isInMedia || matching == rule.selectors.end()) continue;
            std::set<string> names;
            for (const Kept& each : block) {
                if (names.insert(each.name).second) add(each, sheet.origin, specificityOf(*matching));  // the first of a name
            }
        }
    }
    int order = 0;
    for (const Kept& each : keptOf(node.style, order)) add(each, 2, 0x8000);
    return candidates;
}

Computed simpleStyle(const Node& node, const Computed* parent, const vector<Sheet>& sheets) {
    Computed style = kFresh;
    for (const auto& entry : kInherited) style[entry.first] = parent ? parent->at(entry.first) : entry.second;
    if (parent && node.kind == Node::Text) return style;
    auto candidates = candidatesFor(node, sheets);
    std::stable_sort(candidates.begin(), candidates.end(), [](auto& left, auto& right) { return left.rank() > right.rank(); });
    std::set<string> names;
    for (const Candidate& each : candidates) {
        if (names.insert(each.kept.name).second) style[each.kept.name] = each.kept.computed;
    }
    return style;
}

// ---- Both, side by side

struct Pair {
    string node;
    Computed expected, actual;
};

Computed computedOf(const SharedPtr<Style>& style) {
    CSS::ComputedStyleDeclaration declaration(style.Get());
    Computed computed;
    for (const auto* group : {&kInherited, &kFresh}) {
        for (const auto& entry : *group) computed[entry.first] = declaration.propertyValue(entry.first);
    }
    return computed;
}

class Comparison {
public:
    explicit Comparison(const vector<Sheet>& someSheets) : sheets(someSheets) {
        for (const Sheet& each : sheets) {
            SharedPtr<Stylesheet> parsed(Stylesheet::CreateWithData(textOf(each)));
            parsed->origin = static_cast<Stylesheet::Origin>(each.origin);
            resolver.ProcessRules(parsed);
        }
    }

    // Every node below with the style of its parent, and without one.
    void compare(const Node& node, xmlNode* real, const Computed* expectedParent, const SharedPtr<Style>& actualParent) {
        if (node.kind == Node::Comment) return;
        const Computed expected = simpleStyle(node, expectedParent, sheets);
        const auto actual = resolver.ResolveStyle(real, actualParent);
        pairs.push_back({markupOf(node), expected, computedOf(actual)});
        pairs.push_back({markupOf(node) + " alone", simpleStyle(node, nullptr, sheets), computedOf(resolver.ResolveStyle(real, nullptr))});
        xmlNode* child = real->children;
        for (const auto& each : node.children) {
            compare(*each, child, &expected, actual);
            child = child->next;
        }
    }

    const vector<Sheet>& sheets;
    CSS::StyleResolver resolver;
    vector<Pair> pairs;
};

TEST(CascadePropertyTest, TheResolverAgreesWithASimpleCascade) {
    EXPECT_TRUE(rc::check([] {
        const auto tree = anyTree(nullptr, 3);
        const auto sheets = anySheets();
        const string markup = markupOf(*tree);
        RC_LOG() << markup << "\n";
        for (const Sheet& each : sheets) RC_LOG() << "origin " << each.origin << "\n" << textOf(each);

        const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> document(
            xmlReadMemory(markup.data(), static_cast<int>(markup.size()), nullptr, nullptr, XML_PARSE_NONET), xmlFreeDoc);
        RC_ASSERT(document);
        vector<Pair> pairs;
        (void)test::printedBy([&] {  // warnings
            Comparison comparison(sheets);
            comparison.compare(*tree, document->children, nullptr, nullptr);
            pairs = comparison.pairs;
        });
        for (const Pair& each : pairs) {
            RC_LOG() << "at " << each.node << "\n";
            RC_ASSERT(each.actual == each.expected);
        }
    }));
}

}  // namespace
