#include "common/core/css/Parser.h"

#include <cstdio>
#include <memory>
#include <utility>
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

bool beginsSelector(int token) {
    switch (token) {
        case IDENT:
        case HASH:
        case '*':
        case '.':
        case ':':
        case '[': return true;
        default: return false;
    }
}

bool isAttributeOperator(int token) {
    switch (token) {
        case '=':
        case INCLUDES:
        case DASHMATCH:
        case PREFIXMATCH:
        case SUFFIXMATCH:
        case SUBSTRINGMATCH: return true;
        default: return false;
    }
}

// The condition for an operator; without one, for the mere presence of the attribute.
AttributeSelector* newAttributeSelector(int token, const std::string& name) {
    switch (token) {
        case '=': return new AttributeValueSelector(name);
        case INCLUDES: return new AttributeListSelector(name);
        case DASHMATCH: return new AttributeHyphenSelector(name);
        case PREFIXMATCH: return new AttributePrefixSelector(name);
        case SUFFIXMATCH: return new AttributeSuffixSelector(name);
        case SUBSTRINGMATCH: return new AttributeSubstringSelector(name);
        default: return new AttributeNameSelector(name);
    }
}

// A new object at the end of a list, in which it stays whatever becomes of the rest of the text.
template <class T> T* appendNew(std::vector<SharedPtr<T>>& list) {
    list.push_back(new T);
    return list.back().Get();
}

void printError(const ParseError& error) {
    std::fprintf(stderr, "%s\n", error.what());
    std::fflush(stderr);
}

}  // namespace

// ---- Entries

void Parser::begin(const std::string& text) {
    Property::gOrderCounter = 0;
    scanner->SetString(text);
    advance();
}

Stylesheet* Parser::Parse(const std::string& text) try {
    begin(text);
    auto sheet = std::make_unique<Stylesheet>();
    stylesheet(sheet.get());
    return sheet.release();
} catch (const ParseError& error) {
    printError(error);
    return nullptr;
}

bool Parser::ParseStyleDeclaration(const std::string& text, MutableStyleDeclaration* declarations) try {
    begin(text);
    declaration(declarations);
    while (currentToken == ';') {
        skip(';');
        declaration(declarations);
    }
    return true;
} catch (const ParseError& error) {
    printError(error);
    return false;
}

// ---- Tokens

void Parser::advance() { currentToken = scanner->yylex(); }

// One token, which must be there; its raw text is appended to `text`, if that is given.
void Parser::match(int token, std::string* text) {
    if (currentToken != token) error();
    if (text) text->append(scanner->YYText(), static_cast<size_t>(scanner->YYLeng()));
    advance();
}

// Any number of one token.
void Parser::matchZOM(int token) {
    while (currentToken == token) advance();
}

void Parser::matchComment() {
    while (currentToken == S || currentToken == CDO || currentToken == CDC) advance();
}

// One token, which must be there, and the white space behind it.
void Parser::skip(int token) {
    match(token);
    matchZOM(S);
}

// The end of the input has no text, and that of a NUL ends before it.
void Parser::error() {
    const std::string message = std::string("CSS Parse Error before token ") + scanner->YYText();
    WQ_HARD_ASSERT("common/core/css/Parser", "error", 0);
    throw ParseError(message);
}

// ---- Sheets

void Parser::stylesheet(Stylesheet* sheet) {
    if (currentToken == CHARSET_SYM) charset();
    matchComment();
    while (currentToken == IMPORT_SYM) {
        import(sheet->importRules);
        matchComment();
    }
    for (;;) {
        if (currentToken == S || currentToken == CDO || currentToken == CDC)
            matchComment();
        else if (beginsSelector(currentToken))
            ruleset(sheet->styleRules);
        else if (currentToken == MEDIA_SYM)
            media(sheet->mediaRules);
        else if (currentToken == PAGE_SYM)
            page(sheet->pageRules);
        else
            return;  // the end, and what begins no rule
    }
}

void Parser::charset() {
    skip(CHARSET_SYM);
    skip(STRING);
    match(';');
}

// IMPORT_SYM S* [URI | STRING] S* [medium [COMMA S* medium]*] ";" S*
void Parser::import(std::vector<SharedPtr<ImportRule>>& rules) {
    ImportRule* rule = appendNew(rules);
    skip(IMPORT_SYM);
    if (currentToken == URI || currentToken == STRING) match(currentToken, &rule->href);
    matchZOM(S);
    if (currentToken == IDENT) {
        medium(&rule->media.emplace_back());
        while (currentToken == COMMA) {
            skip(COMMA);
            medium(&rule->media.emplace_back());
        }
    }
    skip(';');
}

// Wanted: one S must stand behind the name. A brace or a comma takes the white space in front of it for itself.
void Parser::medium(std::string* name) {
    match(IDENT, name);
    match(S);
}

// MEDIA_SYM S* medium LBRACE S* ruleset* "}" S*
void Parser::media(std::vector<SharedPtr<MediaRule>>& rules) {
    MediaRule* rule = appendNew(rules);
    skip(MEDIA_SYM);
    medium(&rule->media.emplace_back());
    skip(LBRACE);  // wanted: no second medium
    while (beginsSelector(currentToken)) ruleset(rule->rules);
    skip('}');
}

// PAGE_SYM S* [":" IDENT] LBRACE S* declarations
void Parser::page(std::vector<SharedPtr<PageRule>>& rules) {
    PageRule* rule = appendNew(rules);
    skip(PAGE_SYM);
    if (currentToken == ':') pseudo_page();
    skip(LBRACE);
    declarationBlock(rule->declaration.Get());
}

// The name is dropped.
void Parser::pseudo_page() {
    match(':');
    match(IDENT);
}

// selector [COMMA S* selector]* LBRACE S* declarations
void Parser::ruleset(std::vector<SharedPtr<StyleRule>>& rules) {
    StyleRule* rule = appendNew(rules);
    selector(rule->selectors);
    while (currentToken != LBRACE) {
        skip(COMMA);
        selector(rule->selectors);
    }
    skip(LBRACE);
    declarationBlock(rule->declaration.Get());
}

// declaration [";" S* declaration]* "}" S*
void Parser::declarationBlock(MutableStyleDeclaration* declarations) {
    declaration(declarations);
    while (currentToken != '}') {
        skip(';');
        declaration(declarations);
    }
    skip('}');
}

// ---- Selectors

void Parser::selector(std::vector<SharedPtr<Selector>>& selectors) {
    Selector* chain = appendNew(selectors);
    simple_selector(chain, TypeSelector::None);
    while (currentToken == S || currentToken == PLUS || currentToken == GREATER) simple_selector(chain, combinator());
}

// "~" is not reached: a selector does not go on for it.
TypeSelector::Combinator Parser::combinator() {
    const int token = currentToken;
    advance();
    matchZOM(S);
    switch (token) {
        case S: return TypeSelector::Descendant;
        case GREATER: return TypeSelector::Child;
        case PLUS: return TypeSelector::AdjacentSibling;
        case '~': return TypeSelector::GeneralSibling;
        default: error();
    }
}

void Parser::simple_selector(Selector* selector, TypeSelector::Combinator combinator) {
    auto* part = new TypeSelector;
    part->combinator = combinator;
    selector->Prepend(part);
    if (currentToken == IDENT || currentToken == '*')
        element_name(part);
    else if (beginsSelector(currentToken))
        part->name = "*";
    else
        error();
    conditions(part);
}

// In any number and order; another token ends the part.
void Parser::conditions(TypeSelector* part) {
    for (;;) {
        switch (currentToken) {
            case HASH: {
                std::string name;
                match(HASH, &name);
                part->Append(new IDSelector(name));
                break;
            }
            case '.': css_class(part); break;
            case '[': attrib(part); break;
            case ':': pseudo(part); break;
            default: return;
        }
    }
}

void Parser::element_name(TypeSelector* part) {
    if (currentToken == '*')
        match('*', &part->name);
    else
        match(IDENT, &part->name);
}

// "." IDENT
void Parser::css_class(TypeSelector* part) {
    std::string value;
    match('.');
    match(IDENT, &value);
    auto* condition = new AttributeListSelector("class");
    condition->attributeValue = std::move(value);
    condition->isClass = true;
    part->Append(condition);
}

// "[" S* IDENT S* [operator S* [IDENT | STRING] S*] "]"
void Parser::attrib(TypeSelector* part) {
    std::string name, value;
    skip('[');
    match(IDENT, &name);
    matchZOM(S);
    int attributeOperator = EndOfInput;
    if (isAttributeOperator(currentToken)) {
        attributeOperator = currentToken;
        skip(currentToken);
        match(currentToken == STRING ? STRING : IDENT, &value);
        matchZOM(S);
    }
    match(']');
    AttributeSelector* condition = newAttributeSelector(attributeOperator, name);
    condition->attributeValue = std::move(value);
    part->Append(condition);
}

// ":" IDENT, or ":" FUNCTION S* IDENT ")", of which both names are dropped.
void Parser::pseudo(TypeSelector* part) {
    std::string name;
    match(':');
    if (currentToken == FUNCTION) {
        skip(FUNCTION);
        match(IDENT);
        match(')');
    } else {
        match(IDENT, &name);
    }
    part->Append(new PseudoElement(name));
}

// ---- Declarations

// IDENT S* ":" S* expr [IMPORTANT_SYM S*]; or nothing, as in an empty block and behind a last semicolon.
void Parser::declaration(MutableStyleDeclaration* declarations) {
    if (currentToken != IDENT) return;
    std::string name;
    property(&name);
    skip(':');
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

void Parser::prio() { skip(IMPORTANT_SYM); }

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
            skip(')');
            parent = enclosing.back();
            enclosing.pop_back();
        }
        css_operator(parent->AddChild());
    }
}

// What is neither comma nor slash stands for the white space between two terms, and is left to the term.
void Parser::css_operator(AST* node) {
    node->type = currentToken == COMMA || currentToken == '/' ? currentToken : ' ';
    if (node->type != ' ') skip(currentToken);
}

void Parser::term(AST* node) {
    const bool isSigned = currentToken == '-';
    if (isSigned) advance();
    if (isPlainTerm(currentToken)) {
        node->type = currentToken;
        if (isSigned) node->text += '-';
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
