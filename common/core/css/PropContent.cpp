#include "common/core/css/PropContent.h"

#include "common/core/css/Token.h"

namespace CSS {

namespace {

// Without its first and last character.
std::string withoutQuotes(const std::string& text) { return text.size() < 2 ? std::string() : text.substr(1, text.size() - 2); }

std::vector<std::string> wordsOf(const AST& function) {
    std::vector<std::string> words;
    for (const AST* argument = function.child; argument; argument = argument->next)
        if (argument->type == IDENT) words.push_back(argument->text);
    return words;
}

}  // namespace

void PropContent::applyToStyle(Style*) {}
Value* PropContent::valueFromStyle(Style*) { return nullptr; }

bool PropContent::validate(AST* root) {
    const SharedPtr<ValueList> list = new ValueList;
    for (AST* node = root->child; node; node = node->next) {
        if (node->type == ' ') continue;
        if (node->type == STRING) {
            list->append(new PrimitiveValue(withoutQuotes(node->text), CSS_STRING));
        } else if (node->type == FUNCTION) {
            const SharedPtr<Counter> counter = parseCounter(node);
            if (!counter) return false;
            list->append(new PrimitiveValue(counter.Get()));
        } else {
            return false;
        }
    }
    if (list->values.empty()) return false;
    value = list.Get();
    return true;
}

Counter* PropContent::parseCounter(AST* function) {
    if (function->type != FUNCTION) return nullptr;
    const std::vector<std::string> words = wordsOf(*function);
    const bool isCounters = function->text == "counters";
    const size_t most = isCounters ? 3 : 2;
    if (!isCounters && function->text != "counter") return nullptr;
    if (words.empty() || words.size() > most) return nullptr;
    return new Counter(words[0], words.size() > 1 ? words[1] : "decimal", words.size() > 2 ? words[2] : "");
}

}  // namespace CSS
