// Bytes from outside as a style sheet. What was parsed is whole, and the text of selectors parses again to the same
// text and the same specificities. Left out of the second are
//   "[" and ":"   string values print with two sets of quotes, and functions lose their arguments
//   escapes by number in front of a blank, which they take for themselves
// and of the specificities, conditions that have no text, as IDs.
// Only in a build without hard assertions: a syntax error would end the process.
#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "common/core/css/Parser.h"

namespace {

void require(bool condition) {
    if (!condition) std::abort();
}

// ---- What was parsed is whole

void requireWhole(const CSS::Selector& selector) {
    const CSS::TypeSelector* part = selector.chainHead;
    require(part);
    for (; part; part = part->chainLeft) {
        require(!part->name.empty());
        require(
            part->chainLeft ? part->combinator >= CSS::TypeSelector::Descendant && part->combinator <= CSS::TypeSelector::AdjacentSibling
                            : part->combinator == CSS::TypeSelector::None);
    }
}

void requireWhole(const SharedPtr<CSS::MutableStyleDeclaration>& declaration) {
    require(declaration.Get());
    for (const auto& property : declaration->properties) require(property->value && !property->isShorthandProperty());
}

void requireWhole(const CSS::StyleRule& rule) {
    require(!rule.selectors.empty());
    for (const auto& selector : rule.selectors) requireWhole(*selector);
    requireWhole(rule.declaration);
}

void requireWhole(const CSS::Stylesheet& sheet) {
    require(sheet.origin == CSS::Stylesheet::Author && sheet.properties.empty());
    for (const auto& rule : sheet.styleRules) requireWhole(*rule);
    for (const auto& rule : sheet.pageRules) requireWhole(rule->declaration);
    for (const auto& rule : sheet.mediaRules) {
        require(rule->media.size() == 1 && !rule->media[0].empty());
        for (const auto& each : rule->rules) requireWhole(*each);
    }
}

// ---- Selectors parse again

bool takesABlank(const std::string& text, size_t backslash) {
    size_t digits = 0;
    while (digits < 6 && isxdigit(static_cast<unsigned char>(text[backslash + 1 + digits]))) ++digits;
    return digits && text[backslash + 1 + digits] == ' ';
}

bool survives(const std::string& text) {
    if (text.find_first_of("[:") != std::string::npos) return false;
    for (size_t i = 0; i < text.size(); ++i)
        if (text[i] == '\\' && takesABlank(text, i)) return false;
    return true;
}

bool hasClassesOnly(const CSS::Selector& selector) {
    for (const CSS::TypeSelector* part = selector.chainHead; part; part = part->chainLeft)
        for (const CSS::SimpleSelector* condition = part->next; condition; condition = condition->next) {
            const auto* list = dynamic_cast<const CSS::AttributeListSelector*>(condition);
            if (!list || !list->isClass) return false;
        }
    return true;
}

void requireTheSameAgain(const CSS::StyleRule& rule) {
    const std::string text = rule.GetSelectorText();
    if (!survives(text + " { }")) return;
    const SharedPtr<CSS::Stylesheet> again(CSS::Stylesheet::CreateWithData(text + " { }"));
    require(again && again->styleRules.size() == 1);
    const auto& selectors = again->styleRules[0]->selectors;
    require(again->styleRules[0]->GetSelectorText() == text && selectors.size() == rule.selectors.size());
    for (size_t i = 0; i < selectors.size(); ++i)
        if (hasClassesOnly(*rule.selectors[i])) require(selectors[i]->Specificity() == rule.selectors[i]->Specificity());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const SharedPtr<CSS::Stylesheet> sheet(CSS::Stylesheet::CreateWithData({reinterpret_cast<const char*>(data), size}));
    if (!sheet) return 0;
    requireWhole(*sheet);
    for (const auto& rule : sheet->styleRules) requireTheSameAgain(*rule);
    return 0;
}
