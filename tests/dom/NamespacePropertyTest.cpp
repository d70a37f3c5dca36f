// Trees that are built, written and read again keep their names and namespaces.
#include <rapidcheck.h>

#include "dom/WQXMLAttr.h"
#include "tests/dom/Support.h"

namespace {

using namespace test;

size_t below(size_t limit) { return *rc::gen::inRange<size_t>(0, limit); }

// What was asked for: local names, namespaces and values.
struct Attribute {
    NSString localName, uri, value;
};
struct Element {
    Ref<WQXMLElement> node;
    NSString localName, uri;
    std::vector<Attribute> attributes;
};

// How a tree comes about. Where inner elements were put together first, a prefix must mean one
// namespace only: libxml2 looks for a declaration further up and does not see one that hides it.
enum class Order { downwards, any };

// Elements with attributes, made with and without a document, and every namespace under several prefixes.
class Builder {
public:
    explicit Builder(Order itsOrder) : order(itsOrder) { elements.push_back({document->documentElement(), u"r", nullptr, {}}); }

    void build() {
        for (size_t count = 1 + below(8); count > 0; --count) {
            elements.push_back(makeElement());
            if (order == Order::downwards || below(3)) insert(elements.back(), elements[below(elements.size() - 1)]);
        }
        for (const Element& element : elements)
            if (!element.node->parentNode()) insert(element, elements.front());
    }

    Ref<WQXMLDocument> document = parse("<r/>");
    std::vector<Element> elements;  // the root first

private:
    struct Name {
        NSString qualified, local, uri;
    };
    Name anyName() const {
        static constexpr const char16_t *kPrefixes[] = {u"p", u"q", u"ns"}, *kLocals[] = {u"a", u"b"}, *kURIs[] = {u"u:1", u"u:2", u"u:1"};
        const NSString local = kLocals[below(2)];
        if (below(4) == 0) return {local, local, nullptr};
        const size_t prefix = below(3), uri = order == Order::downwards ? below(2) : prefix;
        return {NSString(kPrefixes[prefix]) + u":" + local, local, kURIs[uri]};
    }

    Ref<WQXMLElement> newElement(const Name& name) {
        if (below(2)) return WQXMLElement::newWithQualifiedName_namespaceURI(name.qualified, name.uri);
        return name.uri ? document->createElement_namespaceURI(name.qualified, name.uri) : document->createElement(name.qualified);
    }

    Element makeElement() {
        const Name name = anyName();
        Element made{newElement(name), name.local, name.uri, {}};
        for (size_t count = below(4); count > 0; --count) {
            const Name attribute = anyName();
            const NSString value = count % 2 ? u"<v> & \"w\"" : u"\u00e9\n";
            made.node->setAttribute_namespaceURI_value(attribute.qualified, attribute.uri, value);
            std::erase_if(
                made.attributes, [&](const Attribute& old) { return old.localName == attribute.local && old.uri == attribute.uri; });
            made.attributes.push_back({attribute.local, attribute.uri, value});
        }
        return made;
    }

    Order order;
    static void insert(const Element& child, const Element& parent) {
        const auto children = *parent.node->childNodes();
        parent.node->insertChild_before(child.node, children.empty() || below(2) ? nullptr : children[below(children.size())]);
    }
};

// Each element in document order: its names and its attributes.
std::vector<std::string> names(const Ref<WQXMLDocument>& document) {
    std::vector<std::string> result;
    for (Ref<WQXMLNode> node = document->documentElement(); node; node = node->next()) {
        std::string line = wq::toUTF8(node->nodeName()) + " {" + wq::toUTF8(wq::printed(node->namespaceURI())) + "}";
        std::vector<std::string> attributes;
        for (Ref<WQXMLNode> a = wq::cast<WQXMLElement>(node)->firstAttribute(); a; a = a->nextSibling())
            attributes.push_back(
                " " + wq::toUTF8(a->nodeName()) + " {" + wq::toUTF8(wq::printed(a->namespaceURI())) +
                "}=" + wq::toUTF8(wq::printed(wq::cast<WQXMLAttr>(a)->value())));
        for (const std::string& attribute : attributes) line += attribute;
        result.push_back(line);
    }
    return result;
}

// The element that stands where `node` stands in another document.
Ref<WQXMLElement> counterpart(const Ref<WQXMLNode>& node, const Ref<WQXMLDocument>& other) {
    if (node->parentNode() == node->ownerDocument()) return other->documentElement();
    const auto parent = counterpart(node->parentNode(), other);
    return wq::cast<WQXMLElement>(parent->childAtIndex(node->parentNode()->indexOfChild(node)));
}

void expectNames(const Element& wanted, const Ref<WQXMLElement>& node) {
    RC_ASSERT(node->localName() == wanted.localName);
    RC_ASSERT(node->namespaceURI() == wanted.uri);
    size_t count = 0;
    for (Ref<WQXMLNode> attribute = node->firstAttribute(); attribute; attribute = attribute->nextSibling()) ++count;
    RC_ASSERT(count == wanted.attributes.size());
    for (const Attribute& attribute : wanted.attributes)
        RC_ASSERT(node->getAttribute_namespaceURI(attribute.localName, attribute.uri) == attribute.value);
}

void readAgain(Order order) {
    EXPECT_TRUE(rc::check([order] {
        Builder builder(order);
        builder.build();
        const std::string written(builder.document->XMLData()->view());
        RC_LOG() << written;
        const auto again = parse(written);
        RC_ASSERT(names(again) == names(builder.document));
        for (const Element& element : builder.elements) {
            expectNames(element, element.node);
            expectNames(element, counterpart(element.node, again));
        }
    }));
}

TEST(NamespacePropertyTest, WhatIsBuiltFromTheTopWithAnyPrefixesIsReadAgainWithTheSameNames) { readAgain(Order::downwards); }

TEST(NamespacePropertyTest, WhatIsBuiltInAnyOrderIsReadAgainWithTheSameNames) { readAgain(Order::any); }

}  // namespace
