#include <iostream>

#include "dom/WQXMLDocument.h"

int main() {
    auto data = NSData::dataWithBytes("<book><p>One</p><p>Two &amp; three</p></book>");
    auto document = WQXMLDocument::newWithData_baseURL_arguments_error(data, nullptr, nullptr, nullptr);
    auto book = document->documentElement();
    book->appendChild(document->createElement(u"p"))->appendChild(WQXMLText::textWithString(u"Four"));
    book->insertChild_before(book->lastChild(), book->firstChild());  // moves it to the front
    for (Ref<WQXMLNode> node = book; node; node = node->next())
        if (node->nodeType() == 3) std::cout << wq::toUTF8(node->parentNode()->XPath()) << ": " << wq::toUTF8(node->nodeValue()) << "\n";
}
