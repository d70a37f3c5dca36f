#include "common/core/css/AST.h"

#include <utility>
#include <vector>

namespace CSS {

namespace {

// The last of a list of siblings that has at least one.
AST* lastOf(AST* node) {
    while (node->next) node = node->next;
    return node;
}

}  // namespace

AST* AST::AddChild() {
    AST* added = new AST;
    if (child)
        lastOf(lastChild ? lastChild : child)->next = added;
    else
        child = added;
    lastChild = added;
    return added;
}

// Nodes are destroyed when they have lost child and sibling, so no destructor calls another one for long: the
// children of each node are put in front of those that wait.
AST::~AST() {
    AST* waiting = std::exchange(next, nullptr);
    for (AST* node = this; node;) {
        if (AST* children = std::exchange(node->child, nullptr)) {
            lastOf(children)->next = waiting;
            waiting = children;
        }
        if (node != this) delete node;
        node = waiting;
        if (node) waiting = std::exchange(node->next, nullptr);
    }
}

std::string AST::GetChildrenString() const {
    std::string result;
    std::vector<const AST*> open;  // where to go on, from the outside in
    for (const AST* node = child; node || !open.empty();) {
        if (!node) {
            node = open.back();
            open.pop_back();
            continue;
        }
        const AST* below = nullptr;
        if (node->type == '/')
            result += '/';
        else if (node->type == ' ')
            result += ' ';
        else {
            result += node->text;
            below = node->child;
        }
        if (below && node->next) open.push_back(node->next);
        node = below ? below : node->next;
    }
    return result;
}

}  // namespace CSS
