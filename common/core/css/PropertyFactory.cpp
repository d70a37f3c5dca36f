#include "common/core/css/PropertyFactory.h"

#include <array>
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

// By number; null in front of the first.
constexpr auto names = [] {
    std::array<const char*, std::size(rows) + 1> all{};
    for (const Row& row : rows) all[static_cast<size_t>(row.property)] = row.name;
    return all;
}();

}  // namespace

Property* PropertyFactory::MakeProperty(const std::string& name) {
    const PropertyName* found = findPropertyName(name.data(), name.size());
    return found ? rows[found->row].make() : MakeUnknownProperty(name);
}

Property* PropertyFactory::MakeUnknownProperty(const std::string& name) { return new PropGeneric(name); }

const char* PropertyFactory::NameForID(PropertyID property) {
    return property > 0 && static_cast<size_t>(property) < names.size() ? names[static_cast<size_t>(property)] : nullptr;
}

unsigned int PropertyFactory::PropertyListLength() { return std::size(rows); }

std::string PropertyFactory::PropertyAtIndex(unsigned int index) { return index < std::size(rows) ? rows[index].name : ""; }

}  // namespace CSS
