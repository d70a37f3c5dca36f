// The smallest user of the installed library: parses a document and prints its root.
#include <cstdio>

#include "dom/WQXMLDocument.h"

int main() {
    const auto document = WQXMLDocument::newWithData_baseURL_arguments_error(NSData::dataWithBytes("<a/>"), nullptr, nullptr, nullptr);
    const NSString name = document->documentElement()->nodeName();
    std::printf("%s\n", wq::toUTF8(name).c_str());
    return name == u"a" ? 0 : 1;
}
