// The smallest user of the installed library: parses a document and prints its root, and reads a token.
#include <cstdio>

#include "common/core/css/Scanner.h"
#include "dom/WQXMLDocument.h"

int main() {
    const auto document = WQXMLDocument::newWithData_baseURL_arguments_error(NSData::dataWithBytes("<a/>"), nullptr, nullptr, nullptr);
    const NSString name = document->documentElement()->nodeName();
    std::printf("%s\n", wq::toUTF8(name).c_str());
    CSS::Scanner scanner;
    scanner.SetString("a { }");
    return name == u"a" && scanner.yylex() == CSS::IDENT ? 0 : 1;
}
