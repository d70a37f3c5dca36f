// Properties by name.
#pragma once

#include <string>

#include "common/core/css/Property.h"

namespace CSS {

class PropertyFactory {
public:
    virtual ~PropertyFactory() = default;

    // A new property with a count of 0. Names compare exactly; for one that is none, a PropGeneric.
    static Property* MakeProperty(const std::string& name);
    static Property* MakeUnknownProperty(const std::string& name);

    static const char* NameForID(PropertyID property);  // null for PropertyUnknown and what is none

    static unsigned int PropertyListLength();                // 25
    static std::string PropertyAtIndex(unsigned int index);  // in the order of computed styles; empty behind the last
};

}  // namespace CSS
