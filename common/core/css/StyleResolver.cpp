#include "common/core/css/StyleResolver.h"

#include <libxml/tree.h>

#include <cstdio>

#include "common/core/css/AttributeText.h"

namespace CSS {

namespace {

// User agent, user, author, important author, important user. What is important to the user agent is not lifted.
uint32_t levelOf(Stylesheet::Origin origin, bool isImportant) {
    switch (origin) {
        case Stylesheet::UserAgent: return 1;
        case Stylesheet::User: return isImportant ? 5 : 2;
        case Stylesheet::Author: return isImportant ? 4 : 3;
        default: return 0;
    }
}

// By index: of two like declarations, the later one wins here.
void addStyleAttribute(_xmlNode* node, SortedPropertyList& list) {
    const AttributeText attribute(node, "style");
    if (!attribute.exists) return;
    const SharedPtr<MutableStyleDeclaration> declaration = new MutableStyleDeclaration;
    declaration->setCssText(std::string(attribute.text));
    for (size_t i = 0; i < declaration->length(); ++i)
        list.AddProp(declaration->propertyAtIndex(i), Stylesheet::Author, SimpleSelector::StyleAttributeSpecificity());
}

}  // namespace

// ---- SortedProperty

SortedProperty::SortedProperty(const SharedPtr<Property>& aProperty, Stylesheet::Origin origin, unsigned short specificity)
    : property(aProperty), sortPriority(levelOf(origin, aProperty->important) << 16 | specificity), order(aProperty->order) {}

void SortedProperty::Print() const {
    property->print();
    std::printf("sortPriority: 0x%x ", sortPriority);
    std::printf("order: %d\n", order);
}

bool SortedProperty::isBeatenBy(const SortedProperty& added) const {
    if (sortPriority != added.sortPriority) return sortPriority < added.sortPriority;
    return static_cast<uint32_t>(order) < static_cast<uint32_t>(added.order);
}

// ---- SortedPropertyList

void SortedPropertyList::AddSortedProp(const SharedPtr<SortedProperty>& added) {
    bool hasLost = false;
    for (auto entry = properties.begin(); entry != properties.end(); ++entry) {
        if ((*entry)->property->id != added->property->id) continue;
        if ((*entry)->isBeatenBy(*added)) {
            properties.erase(entry);
            properties.push_back(added);
            return;
        }
        hasLost = true;
    }
    if (!hasLost) properties.push_back(added);
}

void SortedPropertyList::AddProp(const SharedPtr<Property>& added, Stylesheet::Origin origin, unsigned short specificity) {
    AddSortedProp(new SortedProperty(added, origin, specificity));
}

void SortedPropertyList::AddPropsFromStyle(StyleDeclaration* declaration, Stylesheet::Origin origin, unsigned short specificity) {
    for (size_t i = 0; i < declaration->length(); ++i) AddProp(declaration->property(declaration->item(i)), origin, specificity);
}

// ---- StyleResolver

void StyleResolver::AddStylesheet(const SharedPtr<Stylesheet>& sheet) { stylesheets.push_back(sheet); }

void StyleResolver::ProcessRules(const SharedPtr<Stylesheet>& sheet) {
    if (!sheet) return;
    for (const SharedPtr<StyleRule>& rule : sheet->styleRules) processedRules.push_back(new ProcessedRule(rule, sheet->origin));
}

SharedPtr<Style> StyleResolver::DefaultStyle() {
    const SharedPtr<Style> style = CreateStyle();
    style->SetFont(CreateCSSFont());
    return style;
}

// As if every rule were tried, in order.
void StyleResolver::addMatchingRules(_xmlNode* node, SortedPropertyList& list) const {
    if (index.size() > processedRules.size()) index.clear();
    while (index.size() < processedRules.size()) index.add(*processedRules[index.size()]->rule.Get());
    for (const uint32_t number : index.candidatesFor(node)) {
        const ProcessedRule& processed = *processedRules[number].Get();
        for (const SharedPtr<Selector>& selector : processed.rule->selectors) {
            if (!selector->Match(node)) continue;
            list.AddPropsFromStyle(processed.rule->declaration.Get(), processed.origin, selector->Specificity());
            break;  // wanted: the first that matches
        }
    }
}

SharedPtr<Style> StyleResolver::ResolveStyle(_xmlNode* aNode, const SharedPtr<Style>& parent) const {
    _xmlNode noNode{};
    _xmlNode* node = aNode ? aNode : &noNode;
    WQ_HARD_ASSERT("common/core/css/StyleResolver", "ResolveStyle", node->type == XML_ELEMENT_NODE || node->type == XML_TEXT_NODE);

    const SharedPtr<Style> style = CreateStyle();
    if (parent) {
        style->InheritPropertiesFrom(parent.Get());
        if (node->type == XML_TEXT_NODE) {
            style->SetDisplay(WQCSSDisplayInline);
            return style;
        }
    } else {
        style->InheritPropertiesFrom(DefaultStyle().Get());
    }
    if (node->type != XML_ELEMENT_NODE && node->type != XML_TEXT_NODE) return style;

    SortedPropertyList list;
    addMatchingRules(node, list);
    addStyleAttribute(node, list);
    for (const SharedPtr<SortedProperty>& winner : list.properties) winner->property->applyToStyle(style.Get());
    return style;
}

}  // namespace CSS
