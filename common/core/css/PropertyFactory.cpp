#include "common/core/css/PropertyFactory.h"

#include <iterator>

#include "common/core/css/NameTables.h"

namespace CSS {

namespace {

struct Row {
    const char* name;
    PropertyID property;
    Property* (*make)();
};

constexpr Row rows[] = {
#define WQ_CSS_PROPERTY(name, number, Word) {name, Property##Word, make##Word},
#include "common/core/css/Properties.def"
#undef WQ_CSS_PROPERTY
};

}  // namespace

Property* PropertyFactory::MakeProperty(const std::string& name) {
    const PropertyName* found = findPropertyName(name.data(), name.size());
    return found ? rows[found->row].make() : MakeUnknownProperty(name);
}

Property* PropertyFactory::MakeUnknownProperty(const std::string& name) { return new PropGeneric(name); }

const char* PropertyFactory::NameForID(PropertyID property) {
    for (const Row& row : rows)
        if (row.property == property) return row.name;
    return nullptr;
}

unsigned int PropertyFactory::PropertyListLength() { return std::size(rows); }

std::string PropertyFactory::PropertyAtIndex(unsigned int index) { return index < std::size(rows) ? rows[index].name : ""; }

}  // namespace CSS
