// The makers of the properties, for PropertyFactory.
#include "common/core/css/LonghandProperties.h"
#include "common/core/css/PropContent.h"
#include "common/core/css/ShorthandProperties.h"

namespace CSS {

#define WQ_CSS_PROPERTY(name, number, Word) \
    Property* make##Word() { return new Prop##Word; }
#include "common/core/css/Properties.def"
#undef WQ_CSS_PROPERTY

}  // namespace CSS
