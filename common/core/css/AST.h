// The value of one declaration as a tree: terms and the operators between them.
#pragma once

#include <cstdint>
#include <string>

namespace CSS {

// The children of the root are term, operator, term and so on:
//
//   a term        its token's number    its token's text, with "-" in front if it has a sign
//   a colour      HASH                  the number sign and the digits
//   a function    FUNCTION              its name as typed, without parenthesis; its children are its arguments
//   an operator   ' ' (white space), '/' or COMMA; no text
//
// Texts are raw: strings have their quotes, addresses their "url(" and ")".
//
// A tree lives as long as its declaration is read. It may be as wide and as deep as memory allows.
class AST {
public:
    AST() = default;
    AST(const AST&) = delete;
    AST& operator=(const AST&) = delete;
    ~AST();  // with everything below, and all siblings behind

    // A new, empty node behind the last child.
    AST* AddChild();

    // The texts of the children and of what is below them, in order. A slash writes "/", white space " ", a comma
    // nothing, and a function no parentheses: "a, b" reads "ab", "counter(page)" reads "counterpage".
    std::string GetChildrenString() const;

    int32_t type = 0;  // as above; 0 at the root
    std::string text;  // as above: bytes of the source
    // Owned. AddChild makes them; whoever takes a child out takes out all of them.
    AST* child = nullptr;
    AST* next = nullptr;

private:
    AST* lastChild = nullptr;  // where AddChild goes on; there is none without a first child
};

}  // namespace CSS
