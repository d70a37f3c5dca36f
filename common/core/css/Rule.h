// The rules of a style sheet: plain containers, which the parser fills.
#pragma once

#include <string>
#include <vector>

#include "common/core/css/Selector.h"
#include "common/core/css/StyleDeclaration.h"
#include "common/core/include/Shared.h"

namespace CSS {

class Rule : public SharedObject {
public:
    virtual void Print() const = 0;  // on standard output, for debugging
};

// Declarations, and the selectors of the elements that they hold for.
class StyleRule : public Rule {
public:
    StyleRule();

    // "a,b c". A selector that has no text is a hard assertion (see Selector.h).
    std::string GetSelectorText() const;

    // Looks its properties up by name, so that of two of one name the first is printed twice.
    void Print() const override;

    std::vector<SharedPtr<Selector>> selectors;      // in their order
    SharedPtr<MutableStyleDeclaration> declaration;  // never null
};

// Declarations for pages, without effect on any style.
class PageRule : public Rule {
public:
    PageRule();
    void Print() const override;  // nothing

    SharedPtr<MutableStyleDeclaration> declaration;  // never null
    std::string pseudoPage;                          // stays empty: the name that was read is dropped
};

// Media are not evaluated: the rules within have no effect on any style.
class MediaRule : public Rule {
public:
    void Print() const override;  // nothing

    std::vector<std::string> media;           // names, as typed
    std::vector<SharedPtr<StyleRule>> rules;  // in their order
};

// Imports are not followed.
class ImportRule : public Rule {
public:
    void Print() const override;  // nothing

    std::string href;                // raw: with its quotes, or with "url(" and ")"; may be empty
    std::vector<std::string> media;  // names, as typed; none for all media
};

}  // namespace CSS
