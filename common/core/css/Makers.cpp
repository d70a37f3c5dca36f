// The makers of the properties, for PropertyFactory.
#include "common/core/css/LonghandProperties.h"
#include "common/core/css/PropContent.h"
#include "common/core/css/ShorthandProperties.h"

namespace CSS {

// NOLINTBEGIN(bugprone-macro-parentheses): functions, not expressions
#define WQ_CSS_PROPERTY(name, number, Word) \
    Property* make##Word() { return new Prop##Word; }
#include "common/core/css/Properties.def"
#undef WQ_CSS_PROPERTY
// NOLINTEND(bugprone-macro-parentheses)

}  // namespace CSS
