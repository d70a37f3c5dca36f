// What few wrappers need, kept beside them so that the others stay small. For the files of this
// folder.
#pragma once

#include <libxml/tree.h>

#include <optional>
#include <vector>

#include "dom/WQXMLEventListenerData.h"
#include "dom/WQXMLNode.h"

namespace wq {
struct DetachedNode;
}

struct WQXMLNode::Rare {
    xmlNsPtr ownedNs = nullptr;             // made for the node's own name, in no nsDef list
    std::vector<xmlNsPtr> ownedNamespaces;  // made for attributes of an element
    std::vector<xmlNsPtr> borrowed;         // copies that nodes of an unlinked subtree point to
    std::optional<std::vector<Ref<WQXMLEventListenerData>>> listeners;
    std::optional<NSRange> range;
    wq::DetachedNode* detached = nullptr;  // the record of an unlinked DTD

    Rare() = default;
    Rare(const Rare&) = delete;
    Rare& operator=(const Rare&) = delete;
    ~Rare() {
        forEach([](xmlNsPtr ns) { xmlFreeNs(ns); });
    }

    template <class Visit> void forEach(Visit&& visit) const {
        if (ownedNs) visit(ownedNs);
        for (xmlNsPtr ns : ownedNamespaces) visit(ns);
        for (xmlNsPtr ns : borrowed) visit(ns);
    }
};
