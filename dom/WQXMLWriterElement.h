// One open element of a writer: its local name and the namespaces that it defines.
#pragma once

#include <vector>

#include "platform/NSDictionary.h"

class WQXMLWriterElement : public wq::Object {
public:
    // An open element that defines `uri`, by a prefix or as the default namespace; nothing for a null URI.
    template <class T = WQXMLWriterElement>
    static Ref<T> newWithLocalName_prefix_namespaceURI(const NSString& name, const NSString& prefix, const NSString& uri) {
        return wq::make<T>(&T::initWithLocalName_prefix_namespaceURI, name, prefix, uri);
    }

    const NSString& name() const { return my.name; }  // the local name
    // One map for each definition: "namespace", and "prefix" if it has one.
    const std::vector<Ref<NSDictionary>>& nsDefs() const { return my.nsDefs; }

    virtual void define_namespaceURI(const NSString& prefix, const NSString& uri);  // null URI: nothing
    // Never true for a null prefix: a default namespace does not count as defined.
    bool isDefined_namespaceURI(const NSString& prefix, const NSString& uri) const;

    // ---- For subclasses

    virtual bool initWithLocalName_prefix_namespaceURI(const NSString& name, const NSString& prefix, const NSString& uri);

    template <class T> class NilWriterElement : public T {
    public:
        void define_namespaceURI(const NSString&, const NSString&) override {}
        bool initWithLocalName_prefix_namespaceURI(const NSString&, const NSString&, const NSString&) override { return false; }
    };
    template <class T> using Nil = NilWriterElement<T>;

private:
    struct {
        NSString name;
        std::vector<Ref<NSDictionary>> nsDefs;
    } my;
};
