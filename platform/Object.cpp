#include "platform/Object.h"

#include <cxxabi.h>
#include <fmt/format.h>

#include <cstdlib>
#include <memory>
#include <typeinfo>
#include <vector>

#include "platform/WQXMLException.h"

namespace wq {

namespace {
// Index 0 stands for objects that no Class made.
std::vector<const Class*>& classes() {
    static auto* const all = new std::vector<const Class*>{nullptr};  // never destroyed
    return *all;
}

std::string demangled(const std::type_info& type) {
    int status = 0;
    std::unique_ptr<char, decltype(&std::free)> name(abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), &std::free);
    return status == 0 ? name.get() : type.name();
}
}  // namespace

Class::Class(Maker newObject) : maker(newObject), index(static_cast<uint16_t>(classes().size())) {
    if (classes().size() > UINT16_MAX) throw WQXMLException(NSInternalInconsistencyException, u"More than 65,535 classes");
    classes().push_back(this);
}

const Class* Class::of(const Object& object) { return classes()[object.classIndex]; }

Object* Class::make() const {
    Object* object = maker();
    object->classIndex = index;
    object->count = 1;
    return object;
}

NSString Object::description() const {
    if (isNil()) return nullptr;
    return fromUTF8(fmt::format("<{}: {}>", demangled(typeid(*this)), fmt::ptr(this)));
}

bool Object::isEqual(const Ref<Object>& other) const { return other == this; }

}  // namespace wq
