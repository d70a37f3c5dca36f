#include "common/core/css/Rule.h"

#include <cstdio>

namespace CSS {

StyleRule::StyleRule() : declaration(new MutableStyleDeclaration) {}

std::string StyleRule::GetSelectorText() const {
    std::string text;
    const char* separator = "";
    for (const SharedPtr<Selector>& selector : selectors) {
        text += separator;
        selector->AppendSelectorText(text);
        separator = ",";
    }
    return text;
}

void StyleRule::Print() const {
    const char* separator = "";
    for (const SharedPtr<Selector>& selector : selectors) {
        std::fputs(separator, stdout);
        selector->Print();
        separator = ",";
    }
    std::fputs(" { \n", stdout);
    for (size_t i = 0; i < declaration->length(); ++i) {
        std::fputs("\t", stdout);
        declaration->property(declaration->item(i))->print();
        std::fputs("\n", stdout);
    }
    std::fputs("}\n", stdout);
}

PageRule::PageRule() : declaration(new MutableStyleDeclaration) {}
void PageRule::Print() const {}

void MediaRule::Print() const {}

void ImportRule::Print() const {}

}  // namespace CSS
