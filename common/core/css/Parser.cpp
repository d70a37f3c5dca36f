#include "common/core/css/Parser.h"

#include <cstdio>
#include <vector>

#include "common/core/css/PropertyFactory.h"
#include "common/core/css/Token.h"

namespace CSS {

namespace {

// Whether a token goes on with an expression. A plus does, and is then refused as a term; no scanner gives it, though.
bool continuesExpression(int token) {
    switch (token) {
        case COMMA:
        case STRING:
        case IDENT:
        case HASH:
        case EMS:
        case EXS:
        case LENGTH:
        case ANGLE:
        case TIME:
        case FREQ:
        case PERCENTAGE:
        case NUMBER:
        case URI:
        case FUNCTION:
        case '+':
        case '-':
        case '/': return true;
        default: return false;
    }
}

bool isPlainTerm(int token) {
    switch (token) {
        case NUMBER:
        case PERCENTAGE:
        case LENGTH:
        case EMS:
        case EXS:
        case ANGLE:
        case TIME:
        case FREQ:
        case STRING:
        case IDENT:
        case URI: return true;
        default: return false;
    }
}

void printError(const ParseError& error) {
    std::fprintf(stderr, "%s\n", error.what());
    std::fflush(stderr);
}

}  // namespace

// ---- Entries

void Parser::begin(const std::string& text) {
    Property::gOrderCounter = 0;
    scanner.SetString(text);
    advance();
}

bool Parser::ParseStyleDeclaration(const std::string& text, MutableStyleDeclaration* declarations) try {
    begin(text);
    declaration(declarations);
    while (currentToken == ';') {
        advance();
        matchZOM(S);
        declaration(declarations);
    }
    return true;
} catch (const ParseError& error) {
    printError(error);
    return false;
}

// ---- Tokens

void Parser::advance() { currentToken = scanner.yylex(); }

// One token, which must be there; its raw text is appended to `text`, if that is given.
void Parser::match(int token, std::string* text) {
    if (currentToken != token) error();
    if (text) text->append(scanner.YYText(), static_cast<size_t>(scanner.YYLeng()));
    advance();
}

// Any number of one token.
void Parser::matchZOM(int token) {
    while (currentToken == token) advance();
}

// The end of the input has no text, and that of a NUL ends before it.
void Parser::error() {
    const ParseError parseError(std::string("CSS Parse Error before token ") + scanner.YYText());
    WQ_HARD_ASSERT("common/core/css/Parser", "error", 0);
    throw parseError;
}

// ---- Declarations

// IDENT S* ":" S* expr [IMPORTANT_SYM S*]; or nothing, as in an empty block and behind a last semicolon.
void Parser::declaration(MutableStyleDeclaration* declarations) {
    if (currentToken != IDENT) return;
    std::string name;
    property(&name);
    match(':');
    matchZOM(S);
    AST root;
    expr(&root);
    const bool isImportant = currentToken == IMPORTANT_SYM;
    if (isImportant) prio();

    const SharedPtr<Property> made = PropertyFactory::MakeProperty(name);
    made->important = isImportant;
    if (made->validate(&root))
        declarations->addProperty(made.Get());
    else
        std::printf("Warning: Unsupported property %s or invalid value \"%s\"\n", name.c_str(), root.GetChildrenString().c_str());
}

void Parser::property(std::string* name) {
    match(IDENT, name);
    matchZOM(S);
}

void Parser::prio() {
    match(IMPORTANT_SYM);
    matchZOM(S);
}

// term [operator term]*, with the arguments of functions in the same form below their nodes. The functions around the
// present list stand in `enclosing`, and not on the stack, so that they may be nested to any depth.
void Parser::expr(AST* parent) {
    std::vector<AST*> enclosing;
    for (;;) {
        AST* node = parent->AddChild();
        term(node);
        if (node->type == FUNCTION) {  // its arguments first
            enclosing.push_back(parent);
            parent = node;
            continue;
        }
        while (!continuesExpression(currentToken)) {
            if (enclosing.empty()) return;
            match(')');
            matchZOM(S);
            parent = enclosing.back();
            enclosing.pop_back();
        }
        css_operator(parent->AddChild());
    }
}

// What is neither comma nor slash stands for the white space between two terms, and is left to the term.
void Parser::css_operator(AST* node) {
    node->type = currentToken == COMMA || currentToken == '/' ? currentToken : ' ';
    if (node->type == ' ') return;
    advance();
    matchZOM(S);
}

void Parser::term(AST* node) {
    const bool isSigned = currentToken == '-';
    if (isSigned) advance();
    if (isPlainTerm(currentToken)) {
        node->type = currentToken;
        if (isSigned) node->text = "-";
        match(currentToken, &node->text);
        matchZOM(S);
    } else if (currentToken == FUNCTION) {
        function(node);  // without the sign
    } else if (currentToken == HASH) {
        hexcolor(node);  // likewise
    } else {
        error();
    }
}

// The name and its parenthesis; expr reads what follows.
void Parser::function(AST* node) {
    node->type = FUNCTION;
    match(FUNCTION, &node->text);
    node->text.pop_back();
    matchZOM(S);
}

void Parser::hexcolor(AST* node) {
    node->type = HASH;
    match(HASH, &node->text);
    matchZOM(S);
}

}  // namespace CSS
