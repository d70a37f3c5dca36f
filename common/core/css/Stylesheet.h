// The rules of one style sheet, by kind; the order between the kinds is not kept.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "common/core/css/Rule.h"
#include "common/core/include/Shared.h"

namespace CSS {

class Stylesheet : public SharedObject {
public:
    // Whose rules they are, which the cascade weighs first (see StyleResolver.h).
    enum Origin : int32_t { UserAgent = 0, User = 1, Author = 2 };

    // A new sheet with a count of 0, parsed from a file, up to its first NUL; null if it cannot be opened, is a folder,
    // a pipe or too large for memory, or where the text has a syntax error (see Parser). The bytes are taken as they
    // are, without conversion. A file that was opened stays open as long as the process lives.
    static Stylesheet* CreateWithFile(const std::string& path);

    // The same from text.
    static Stylesheet* CreateWithData(const std::string& text);

    void Print() const;  // the style rules, on standard output, for debugging

    // Each in the order of the text; none is null. Style rules alone have an effect.
    std::vector<SharedPtr<StyleRule>> styleRules;
    std::vector<SharedPtr<MediaRule>> mediaRules;
    std::vector<SharedPtr<PageRule>> pageRules;
    std::vector<SharedPtr<ImportRule>> importRules;
    std::vector<SharedPtr<Property>> properties;  // stays empty
    Origin origin = Author;                       // nothing makes any other sheets
};

}  // namespace CSS
