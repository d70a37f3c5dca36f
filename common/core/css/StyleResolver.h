// The cascade: from rules, the style attribute and the parent's style to the style of one node.
//
// The caller walks the tree and hands each parent's style down; nothing is remembered between two nodes. Media,
// pages and imports have no effect. There is no sheet by default, and none can be taken out again.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "common/core/css/RuleIndex.h"
#include "common/core/css/Style.h"
#include "common/core/css/Stylesheet.h"
#include "common/core/include/Shared.h"

struct _xmlNode;

namespace CSS {

// A property with its key in the cascade.
class SortedProperty : public SharedObject {
public:
    // `specificity` is that of the selector, or of a style attribute (see Selector.h).
    SortedProperty(const SharedPtr<Property>& aProperty, Stylesheet::Origin origin, unsigned short specificity);

    // Whether it gives way to one that comes later for the same property: by key, then by order, both as unsigned numbers.
    bool isBeatenBy(const SortedProperty& added) const;

    void Print() const;  // "color: red; sortPriority: 0x30001 order: 2" and a line end, on standard output

    SharedPtr<Property> property;  // never null
    uint32_t sortPriority;         // the level of origin and importance above, the specificity in the low 16 bits
    int32_t order;                 // the property's
};

// The winners so far: at most one for each property.
class SortedPropertyList {
public:
    virtual ~SortedPropertyList() = default;

    // Of two for one property the greater key wins; of equal keys, the greater order; of equal orders, the one that
    // is there.
    void AddSortedProp(const SharedPtr<SortedProperty>& added);
    void AddProp(const SharedPtr<Property>& added, Stylesheet::Origin origin, unsigned short specificity);

    // Of several properties of one name, the first one counts: wanted, and unlike CSS 2.1.
    void AddPropsFromStyle(StyleDeclaration* declaration, Stylesheet::Origin origin, unsigned short specificity);

    std::vector<SharedPtr<SortedProperty>> properties;  // in the order of application, which has no meaning
};

// A rule that a resolver has taken in.
class ProcessedRule : public SharedObject {
public:
    // The rule is shared with its sheet; the origin is that of the sheet at the time.
    ProcessedRule(const SharedPtr<StyleRule>& aRule, Stylesheet::Origin anOrigin) : rule(aRule), origin(anOrigin) {}

    SharedPtr<StyleRule> rule;  // never null
    Stylesheet::Origin origin;  // weighs more than specificity and order do
};

class StyleResolver : public SharedObject {
public:
    StyleResolver() = default;
    // `aMedium` is kept, and makes no difference.
    explicit StyleResolver(const std::string& aMedium) : medium(aMedium) {}

    // Keeps the sheet, and does no more: its rules come in by ProcessRules.
    void AddStylesheet(const SharedPtr<Stylesheet>& sheet);

    // Takes in the style rules of a sheet, behind those that are there. Null is nothing.
    void ProcessRules(const SharedPtr<Stylesheet>& sheet);

    // A new style with default fields and the user's text font.
    static SharedPtr<Style> DefaultStyle();

    // The style of an element, or of a text, which takes all from its parent and is inline; a new one at each call.
    // A null parent is the default style, and then a text goes through the rules as well, by the name "text".
    //
    // In a group of selectors the first that matches gives the specificity, not the highest. Across sheets, properties
    // of equal keys compare by their places in their own sheets.
    //
    // Any other node, or null, is a hard assertion; without hard assertions its style is what it inherits. A bad style
    // attribute costs a warning, or is a syntax error (see Parser), which costs all of the attribute.
    SharedPtr<Style> ResolveStyle(_xmlNode* node, const SharedPtr<Style>& parent) const;

    std::string medium = "Print";                    // read by nothing
    std::vector<SharedPtr<Stylesheet>> stylesheets;  // those of AddStylesheet; read by nothing
    std::vector<SharedPtr<Selector>> selectors;      // stays empty
    // In the order in which they came. ProcessRules alone adds to them, and the selectors of a rule that is here stay as
    // they are: an index of them is kept.
    std::vector<SharedPtr<ProcessedRule>> processedRules;

private:
    void addMatchingRules(_xmlNode* node, SortedPropertyList& list) const;

    mutable RuleIndex index;  // of processedRules
};

}  // namespace CSS
