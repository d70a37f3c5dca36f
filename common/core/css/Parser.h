// The parser of style sheets and of lists of declarations: by recursive descent, with one token of lookahead.
//
// The language is CSS 2.1 in its shape, with exact limits and without error recovery:
//  - A syntax error is a hard assertion: it ends the process. Without hard assertions it raises ParseError inside the
//    parser, whose entries print its message on standard error and say that they failed.
//  - A property or value that is none costs that declaration, with a warning on standard output, and nothing else.
//
// A parser serves one text; it lives on the stack of one call. Only one parser reads at a time, since every parse begins
// to count properties anew (Property::gOrderCounter).
#pragma once

#include <exception>
#include <string>
#include <utility>

#include "common/core/css/AST.h"
#include "common/core/css/Scanner.h"
#include "common/core/css/StyleDeclaration.h"
#include "common/core/css/Stylesheet.h"

namespace CSS {

// A syntax error on its way out of the parser; nobody else sees it. There is none where hard assertions are.
class ParseError : public std::exception {
public:
    // The message is what the parser prints.
    explicit ParseError(std::string aMessage) : message(std::move(aMessage)) {}
    const char* what() const noexcept override { return message.c_str(); }  // the message

private:
    std::string message;  // "CSS Parse Error before token " and the token
};

class Parser {
public:
    // A new sheet with a count of 0, all its rules an author's; null where the text has a syntax error.
    //
    // What begins no rule ends the sheet in silence, and so does an import behind the first rule. The name of a medium
    // must have one run of white space behind it, and a brace, a comma or a plus takes the white space in front of it
    // for itself: "@media print /**/{" is a rule, "@media print {" is an error, and "@import 'x' print ;" needs its
    // blank. A rule for media names exactly one medium.
    Stylesheet* Parse(const std::string& text);

    // Adds the declarations of a text, as that of a style attribute, to a declaration, which must not be null. Whether
    // there was no syntax error.
    //
    // What is no declaration ends the list in silence: a text that begins with white space declares nothing.
    // Functions in values may be nested as deep as memory allows.
    bool ParseStyleDeclaration(const std::string& text, MutableStyleDeclaration* declarations);

private:
    void begin(const std::string& text);

    void advance();
    void match(int token, std::string* text = nullptr);
    void matchZOM(int token);
    void matchComment();
    void skip(int token);
    [[noreturn]] void error();

    void stylesheet(Stylesheet* sheet);
    void charset();
    void import(std::vector<SharedPtr<ImportRule>>& rules);
    void medium(std::string* name);
    void media(std::vector<SharedPtr<MediaRule>>& rules);
    void page(std::vector<SharedPtr<PageRule>>& rules);
    void pseudo_page();
    void ruleset(std::vector<SharedPtr<StyleRule>>& rules);
    void declarationBlock(MutableStyleDeclaration* declarations);

    void selector(std::vector<SharedPtr<Selector>>& selectors);
    TypeSelector::Combinator combinator();
    void simple_selector(Selector* selector, TypeSelector::Combinator combinator);
    void conditions(TypeSelector* part);
    void element_name(TypeSelector* part);
    void css_class(TypeSelector* part);
    void attrib(TypeSelector* part);
    void pseudo(TypeSelector* part);

    void declaration(MutableStyleDeclaration* declarations);
    void property(std::string* name);
    void prio();
    void expr(AST* parent);
    void css_operator(AST* node);
    void term(AST* node);
    void function(AST* node);
    void hexcolor(AST* node);

    BorrowedScanner scanner = borrowScanner();
    int currentToken = EndOfInput;  // the lookahead
};

}  // namespace CSS
