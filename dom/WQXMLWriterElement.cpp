#include "dom/WQXMLWriterElement.h"

#include <algorithm>

namespace {
constexpr const char16_t* kNamespace = u"namespace";
constexpr const char16_t* kPrefix = u"prefix";
}  // namespace

bool WQXMLWriterElement::initWithLocalName_prefix_namespaceURI(const NSString& name, const NSString& prefix, const NSString& uri) {
    my.name = name;
    my.nsDefs.clear();
    define_namespaceURI(prefix, uri);
    return true;
}

void WQXMLWriterElement::define_namespaceURI(const NSString& prefix, const NSString& uri) {
    if (!uri) return;
    auto definition = NSDictionary::dictionary({{kNamespace, uri}});
    if (prefix) definition->setObject_forKey(prefix, kPrefix);
    my.nsDefs.push_back(definition);
}

bool WQXMLWriterElement::isDefined_namespaceURI(const NSString& prefix, const NSString& uri) const {
    if (!prefix) return false;
    return std::any_of(my.nsDefs.begin(), my.nsDefs.end(), [&](const Ref<NSDictionary>& definition) {
        return definition->objectForKey(kPrefix).string() == prefix && definition->objectForKey(kNamespace).string() == uri;
    });
}
