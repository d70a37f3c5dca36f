// The styles of a document's nodes, kept by the application, which listens to edits and resolves again what they made
// stale, and nothing else.
#pragma once

#include <functional>
#include <unordered_map>
#include <vector>

#include "dom/WQXMLDocument.h"
#include "dom/WQXMLEventListener.h"
#include "examples/book/Steps.h"
#include "mac/Frameworks/WQCSS/WQCSSStyleResolver.h"

class StyledTree : public WQXMLEventListener {
public:
    // Listens to the document until it dies. What fires no event, as inner markup put into an empty element, it does not
    // hear of: such nodes have no style until the whole is resolved again. `dress` may add to the style of an element what no sheet can
    // say, as padding and borders.
    using Dress = std::function<void(const Ref<WQXMLElement>& element, const Ref<WQCSSStyle>& style)>;
    StyledTree(const Ref<WQXMLDocument>& document, const Ref<WQCSSStyleResolver>& resolver, Dress dress);
    ~StyledTree() override;
    StyledTree(const StyledTree&) = delete;
    StyledTree& operator=(const StyledTree&) = delete;

    // Both answer how many styles they made.
    size_t resolve(const Progress& progress = {});
    size_t resolveAgain();  // below the parents of what was edited since: sheets tell siblings by their neighbours

    // Null for a node that has none: a comment, or what is outside of the document.
    Ref<WQCSSStyle> styleOf(const Ref<WQXMLNode>& node) const;

    // How many there are, and how many fonts they share.
    size_t numberOfStyles() const { return styles.size(); }
    size_t numberOfFonts() const;

private:
    void handleEvent(const Ref<WQXMLEvent>& event) override;
    size_t resolveBelow(const Ref<WQXMLNode>& top, const Progress& progress);
    void forgetBelow(const Ref<WQXMLNode>& top);

    struct Styled {
        Ref<WQXMLNode> node;  // so that no other node takes its address
        Ref<WQCSSStyle> style;
    };
    const Ref<WQXMLDocument> document;
    const Ref<WQCSSStyleResolver> resolver;
    const Dress dress;
    std::unordered_map<const WQXMLNode*, Styled> styles;
    std::vector<Ref<WQXMLNode>> staleTops;
};
