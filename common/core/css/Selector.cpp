#include "common/core/css/Selector.h"

#include <libxml/tree.h>
#include <libxml/xmlstring.h>

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <utility>
#include <vector>

#include "common/core/css/AttributeText.h"

namespace CSS {

namespace {

constexpr std::string_view wordSeparators = " \t";

void write(const std::string& text) { std::fwrite(text.data(), 1, text.size(), stdout); }

const char* textOfCombinator(TypeSelector::Combinator combinator) {
    switch (combinator) {
        case TypeSelector::Descendant: return " ";
        case TypeSelector::Child: return ">";
        case TypeSelector::AdjacentSibling: return "+";
        case TypeSelector::GeneralSibling: return "~";
        default: return "";
    }
}

// The parts from left to right, this one last.
std::vector<const TypeSelector*> chainOf(const TypeSelector* head) {
    std::vector<const TypeSelector*> parts;
    for (; head; head = head->chainLeft) parts.push_back(head);
    return {parts.rbegin(), parts.rend()};
}

bool isElement(const xmlNode* node) { return node && node->type == XML_ELEMENT_NODE; }

// What a part of these selectors cannot do yet.
bool notImplemented(const char* function) {
    WQ_HARD_ASSERT("common/core/css/Selector", function, 0);
    static_cast<void>(function);
    return false;
}

}  // namespace

// ---- SimpleSelector

// Each condition is destroyed when nothing is left behind it.
SimpleSelector::~SimpleSelector() {
    while (next) {
        SimpleSelector* condition = next;
        next = std::exchange(condition->next, nullptr);
        delete condition;
    }
}

void SimpleSelector::Print() const {}

void SimpleSelector::AppendSelectorText(std::string&) const { notImplemented("AppendSelectorText"); }

void SimpleSelector::Append(SimpleSelector* condition) {
    SimpleSelector* end = last ? last : this;
    while (end->next) end = end->next;
    end->next = last = condition;
}

uint16_t SimpleSelector::StyleAttributeSpecificity() { return 32768; }

uint16_t SimpleSelector::SpecificityWithWeights(int a, int b, int c, int d) {
    const auto bits = [](int weight, int place) { return static_cast<uint32_t>(weight) << place; };
    return static_cast<uint16_t>(bits(a, 15) | bits(b, 10) | bits(c, 5) | bits(d, 0));
}

// ---- Selector

Selector::~Selector() { delete chainHead; }

void Selector::Prepend(TypeSelector* part) {
    part->chainLeft = chainHead;
    chainHead = part;
}

bool Selector::Match(_xmlNode* node) const {
    const TypeSelector* s = chainHead;
    WQ_HARD_ASSERT("common/core/css/Selector", "Match", s);
    if (!s || !s->Match(node)) return false;
    while (s->chainLeft) {
        const TypeSelector::Combinator combinator = s->combinator;
        s = s->chainLeft;
        switch (combinator) {
            case TypeSelector::Descendant:
                do node = node->parent;
                while (isElement(node) && !s->Match(node));
                if (!isElement(node)) return false;
                break;
            case TypeSelector::Child:
                node = node->parent;
                if (!isElement(node) || !s->Match(node)) return false;
                break;
            case TypeSelector::AdjacentSibling:
                do node = node->prev;
                while (node && !isElement(node));
                if (!node || !s->Match(node)) return false;
                break;
            default: return false;
        }
    }
    return true;
}

uint16_t Selector::Specificity() const {
    WQ_HARD_ASSERT("common/core/css/Selector", "Specificity", chainHead);
    return chainHead ? chainHead->Specificity() : 0;
}

void Selector::Print() const {
    if (chainHead) chainHead->Print();
}

void Selector::AppendSelectorText(std::string& text) const {
    if (chainHead) chainHead->AppendSelectorText(text);
}

// ---- TypeSelector

// As for conditions: a part loses what is on its left before it is destroyed.
TypeSelector::~TypeSelector() {
    while (chainLeft) {
        TypeSelector* part = chainLeft;
        chainLeft = std::exchange(part->chainLeft, nullptr);
        delete part;
    }
}

bool TypeSelector::Match(_xmlNode* node) const {
    if (name != "*") {
        const auto* wanted = reinterpret_cast<const xmlChar*>(name.c_str());
        const bool isHTML = node->doc && node->doc->type == XML_HTML_DOCUMENT_NODE;
        if (isHTML ? xmlStrcasecmp(node->name, wanted) != 0 : !xmlStrEqual(node->name, wanted)) return false;
    }
    for (const SimpleSelector* condition = next; condition; condition = condition->next)
        if (!condition->Match(node)) return false;
    return true;
}

uint16_t TypeSelector::Specificity() const {
    uint16_t sum = 0;
    for (const TypeSelector* part = this; part; part = part->chainLeft) {
        const int conditions = part->next ? part->next->Specificity() : 0;
        sum = static_cast<uint16_t>(sum + conditions + (part->name == "*" ? 0 : 1));
    }
    return sum;
}

void TypeSelector::Print() const {
    for (const TypeSelector* part : chainOf(this)) {
        write(part->name);
        if (part->next) part->next->Print();
        const std::string written = textOfCombinator(part->combinator);
        write(written.empty() ? " " : written);
    }
}

void TypeSelector::AppendSelectorText(std::string& text) const {
    for (const TypeSelector* part : chainOf(this)) {
        text += textOfCombinator(part->combinator);
        text += part->name;
        if (part->next) part->next->AppendSelectorText(text);
    }
}

// ---- Conditions

uint16_t Condition::Specificity() const {
    uint16_t sum = 0;
    for (const SimpleSelector* condition = this; condition; condition = condition->next)
        sum = static_cast<uint16_t>(sum + static_cast<const Condition*>(condition)->ownSpecificity);
    return sum;
}

void Condition::AppendSelectorText(std::string& text) const {
    for (const SimpleSelector* condition = this; condition; condition = condition->next)
        static_cast<const Condition*>(condition)->appendOwnText(text);
}

void Condition::printOwnTexts() const {
    for (const SimpleSelector* condition = this; condition; condition = condition->next) {
        const auto* printed = static_cast<const Condition*>(condition);
        if (!printed->isPrintable()) return;
        std::string text;
        printed->appendOwnText(text);
        write(text);
    }
}

void Condition::appendOwnText(std::string& text) const { SimpleSelector::AppendSelectorText(text); }

IDSelector::IDSelector(std::string aName) : Condition(15, 1024), name(std::move(aName)) {}
bool IDSelector::Match(_xmlNode*) const { return notImplemented("Match"); }

PseudoElement::PseudoElement(std::string aName) : Condition(7, 1), name(std::move(aName)) {}
bool PseudoElement::Match(_xmlNode*) const { return false; }
void PseudoElement::Print() const { printOwnTexts(); }
void PseudoElement::appendOwnText(std::string& text) const { text += ":" + name; }

bool AttributeNameSelector::Match(_xmlNode* node) const { return AttributeText(node, attributeName.c_str()).exists; }

bool AttributeValueSelector::Match(_xmlNode* node) const {
    const AttributeText value(node, attributeName.c_str());
    return value.exists && value.text == attributeValue;
}
void AttributeValueSelector::appendOwnText(std::string& text) const { text += "[" + attributeName + "=\"" + attributeValue + "\"]"; }

bool AttributeListSelector::Match(_xmlNode* node) const {
    const AttributeText value(node, attributeName.c_str());
    for (size_t start = 0; (start = value.text.find_first_not_of(wordSeparators, start)) != std::string_view::npos;) {
        const size_t end = std::min(value.text.find_first_of(wordSeparators, start), value.text.size());
        if (value.text.substr(start, end - start) == attributeValue) return true;
        start = end;
    }
    return false;
}
void AttributeListSelector::Print() const { printOwnTexts(); }
void AttributeListSelector::appendOwnText(std::string& text) const {
    text += isClass ? "." + attributeValue : "[" + attributeName + "~=\"" + attributeValue + "\"]";
}

bool AttributeHyphenSelector::Match(_xmlNode* node) const {
    const AttributeText value(node, attributeName.c_str());
    const size_t start = std::min(value.text.find_first_not_of(wordSeparators), value.text.size());
    const size_t hyphen = value.text.find('-', start);
    return hyphen != std::string_view::npos && value.text.substr(start, hyphen - start) == attributeValue;
}

bool AttributePrefixSelector::Match(_xmlNode*) const { return notImplemented("Match"); }
bool AttributeSuffixSelector::Match(_xmlNode*) const { return notImplemented("Match"); }
bool AttributeSubstringSelector::Match(_xmlNode*) const { return notImplemented("Match"); }

}  // namespace CSS
