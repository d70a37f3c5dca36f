// A tree with a range over it, written as one text: r["a{b",p[<!--c-->,"d}e"]].
//
// Outside the quotes "{" and "}" are the start and the end among children, inside a text, a comment
// or a CDATA section they are points among its characters.
#pragma once

#include <cctype>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>

#include "dom/WQXMLRange.h"
#include "tests/dom/Support.h"

namespace test {

struct Point {
    Ref<WQXMLNode> container;
    uint64_t offset = 0;
};

// The tree below `node` in that notation, with the points of the range. A point that is not in there, or
// past the end of its container, follows as " {name:offset".
class MarkedText {
public:
    MarkedText(const Ref<WQXMLNode>& node, const Ref<WQXMLRange>& marks) : range(marks) {
        print(node);
        if (!startSeen) text += " {" + place(range->startContainer(), range->startOffset());
        if (!endSeen) text += " }" + place(range->endContainer(), range->endOffset());
    }
    std::string text;

private:
    static std::string place(const Ref<WQXMLNode>& container, uint64_t offset) {
        return wq::toUTF8(wq::printed(container->nodeName())) + ":" + std::to_string(offset);
    }
    bool startIsAt(const Ref<WQXMLNode>& node, uint64_t offset) {
        const bool here = range->startContainer() == node && range->startOffset() == offset;
        startSeen |= here;
        return here;
    }
    bool endIsAt(const Ref<WQXMLNode>& node, uint64_t offset) {
        const bool here = range->endContainer() == node && range->endOffset() == offset;
        endSeen |= here;
        return here;
    }
    void print(const Ref<WQXMLNode>& node) {
        switch (node->nodeType()) {
            case XML_ELEMENT_NODE: return printElement(node);
            case XML_COMMENT_NODE: return printCharacters(node, "<!--", "-->");
            case XML_CDATA_SECTION_NODE: return printCharacters(node, "<![CDATA[", "]]>");
            default: return printCharacters(node, "\"", "\"");
        }
    }
    void printCharacters(const Ref<WQXMLNode>& node, const char* opening, const char* closing) {
        const NSString content = wq::fromUTF8(node->xmlNode()->content);
        std::u16string characters;
        for (size_t i = 0; i <= content.length(); ++i) {
            if (startIsAt(node, i)) characters += u'{';
            if (endIsAt(node, i)) characters += u'}';
            if (i < content.length()) characters += content.view()[i];
        }
        text += opening + wq::toUTF8(characters) + closing;
    }
    void printElement(const Ref<WQXMLNode>& node) {
        text += wq::toUTF8(node->nodeName());
        const size_t opening = text.size();
        text += '[';
        uint64_t index = 0;
        for (Ref<WQXMLNode> child = node->firstChild(); child; child = child->nextSibling(), ++index) {
            const bool start = startIsAt(node, index), end = endIsAt(node, index);
            if (end && !start) text += '}';
            if (index) text += ',';
            if (start) text += end ? "{}" : "{";
            print(child);
        }
        if (startIsAt(node, index)) text += '{';
        if (endIsAt(node, index)) text += '}';
        if (text.size() == opening + 1)
            text.resize(opening);
        else
            text += ']';
    }

    Ref<WQXMLRange> range;
    bool startSeen = false, endSeen = false;
};

class MarkedTree {
public:
    explicit MarkedTree(std::string_view notation)
        : rest(notation), document(parse("<" + name() + "/>")), root(document->documentElement()) {
        addChildren(root);
        EXPECT_EQ(rest, "") << notation;
        range = over<WQXMLRange>();
    }

    // Another range over the points that the text told.
    template <class T> Ref<T> over() const {
        return WQXMLRange::newWithStartContainer_startOffset_endContainer_endOffset<T>(
            start.container, start.offset, end.container, end.offset);
    }
    // The same text for what there is now.
    std::string now() const { return MarkedText(root, range).text; }
    std::string now(const Ref<WQXMLRange>& other) const { return MarkedText(root, other).text; }

    Ref<WQXMLNode> at(std::initializer_list<uint64_t> path) const {
        Ref<WQXMLNode> node = root;
        for (const uint64_t index : path) node = node->childAtIndex(index);
        EXPECT_TRUE(node);
        return node;
    }
    Ref<WQXMLText> text(std::initializer_list<uint64_t> path = {0}) const { return wq::cast<WQXMLText>(at(path)); }

private:
    std::string_view rest;

public:
    Ref<WQXMLDocument> document;
    Ref<WQXMLElement> root;
    Point start, end;  // as the text told them
    Ref<WQXMLRange> range;

private:
    bool skip(std::string_view prefix) {
        if (!rest.starts_with(prefix)) return false;
        rest.remove_prefix(prefix.size());
        return true;
    }
    std::string upTo(std::string_view closing) {
        std::string found(rest.substr(0, rest.find(closing)));
        rest.remove_prefix(found.size() + closing.size());
        return found;
    }
    std::string name() {
        std::string found;
        for (; !rest.empty() && std::isalnum(static_cast<unsigned char>(rest[0])); rest.remove_prefix(1)) found += rest[0];
        return found;
    }
    void addChildren(const Ref<WQXMLNode>& parent) {
        if (!skip("[")) return;
        for (uint64_t index = 0; !rest.empty() && !skip("]");) {
            if (skip(",")) continue;
            if (skip("{"))
                start = {parent, index};
            else if (skip("}"))
                end = {parent, index};
            else
                addChild(parent), ++index;
        }
    }
    void addChild(const Ref<WQXMLNode>& parent) {
        if (skip("\""))
            return addCharacters(parent, upTo("\""), [&](const std::string& plain) -> Ref<WQXMLNode> {
                return document->createTextNode(wq::fromUTF8(plain));
            });
        if (skip("<!--")) return addMarkup(parent, "<!--", "-->");
        if (skip("<![CDATA[")) return addMarkup(parent, "<![CDATA[", "]]>");
        const std::string tag = name();
        if (tag.empty()) {
            ADD_FAILURE() << "not in the notation: " << rest;
            rest = {};
            return;
        }
        const auto element = document->createElement(wq::fromUTF8(tag));
        parent->appendChild(element);
        addChildren(element);
    }
    // A node that only the parser makes.
    void addMarkup(const Ref<WQXMLNode>& parent, const std::string& opening, const std::string& closing) {
        addCharacters(parent, upTo(closing), [&](const std::string& plain) -> Ref<WQXMLNode> {
            const auto donor = parse("<d>" + opening + plain + closing + "</d>");
            return donor->documentElement()->removeChild(donor->documentElement()->firstChild());
        });
    }
    void addCharacters(
        const Ref<WQXMLNode>& parent,
        const std::string& marked,
        const std::function<Ref<WQXMLNode>(const std::string&)>& make) {
        std::string plain;
        uint64_t startsAt = NSNotFound, endsAt = NSNotFound;
        for (const char byte : marked) {
            const uint64_t offset = wq::fromUTF8(plain).length();
            if (byte == '{')
                startsAt = offset;
            else if (byte == '}')
                endsAt = offset;
            else
                plain += byte;
        }
        const auto node = make(plain);
        parent->appendChild(node);
        if (startsAt != NSNotFound) start = {node, startsAt};
        if (endsAt != NSNotFound) end = {node, endsAt};
    }
};

// One edit: the tree before, what is done, and the tree afterwards.
struct Edit {
    const char* before;
    std::function<void(MarkedTree&)> work;
    const char* after;
};
inline void expectEdits(std::initializer_list<Edit> edits) {
    for (const Edit& edit : edits) {
        SCOPED_TRACE(edit.before);
        MarkedTree tree(edit.before);
        EXPECT_EQ(tree.now(), edit.before) << "the notation itself";
        edit.work(tree);
        EXPECT_EQ(tree.now(), edit.after);
    }
}
inline void expectEdit(const char* before, const std::function<void(MarkedTree&)>& work, const char* after) {
    expectEdits({{before, work, after}});
}

inline void expectPoints(
    const Ref<WQXMLRange>& range,
    const Ref<WQXMLNode>& startContainer,
    uint64_t startOffset,
    const Ref<WQXMLNode>& endContainer,
    uint64_t endOffset) {
    EXPECT_EQ(range->startContainer(), startContainer);
    EXPECT_EQ(range->startOffset(), startOffset);
    EXPECT_EQ(range->endContainer(), endContainer);
    EXPECT_EQ(range->endOffset(), endOffset);
}

// How many listeners a document has.
inline size_t listeners(const Ref<WQXMLDocument>& document) { return document->listeners() ? document->listeners()->size() : 0; }

// What `raised` answers for a failed assertion.
inline std::string asserted(std::string_view description) { return "NSInternalInconsistencyException: " + std::string(description); }

}  // namespace test
