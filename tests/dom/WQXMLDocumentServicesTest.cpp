// What a loaded document offers: identifiers, queries, three ways to write it, a bag of values.
#include <libxml/parser.h>
#include <libxml/valid.h>
#include <libxml/xmlerror.h>

#include <functional>

#include "dom/WQLibXML.h"
#include "dom/WQXMLAttr.h"
#include "dom/WQXMLDocument.h"
#include "tests/dom/Support.h"

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::StartsWith;

namespace {

const xmlChar* x(const char* text) { return reinterpret_cast<const xmlChar*>(text); }

Ref<WQXMLElement> element(const Ref<WQXMLDocument>& document, std::u16string_view name) {
    return wq::cast<WQXMLElement>(find(document, name));
}
Ref<WQXMLAttr> firstAttribute(const Ref<WQXMLElement>& owner) { return wq::cast<WQXMLAttr>(owner->firstAttribute()); }

// Takes an element out of its tree and lets go of it.
void discard(Ref<WQXMLElement>& element) {
    element->parentNode()->removeChild(element);
    element.reset();
}

std::string bytes(const Ref<NSData>& data) { return data ? std::string(data->view()) : "null"; }

// a, @x, "text", / for a document, and <8> and the like for nodes without a name.
std::string label(const Ref<WQXMLNode>& node) {
    switch (node->nodeType()) {
        case XML_ATTRIBUTE_NODE: return "@" + wq::toUTF8(node->nodeName());
        case XML_TEXT_NODE: return '"' + wq::toUTF8(node->nodeValue()) + '"';
        case XML_DOCUMENT_NODE:
        case XML_HTML_DOCUMENT_NODE: return "/";
        default: return node->nodeName() ? wq::toUTF8(node->nodeName()) : "<" + std::to_string(node->nodeType()) + ">";
    }
}

// The labels of what a query finds, with blanks between; "null" for null.
std::string query(const Ref<WQXMLDocument>& document, const NSString& expression, const Ref<WQXMLNode>& currentNode = nullptr) {
    const auto nodes = document->nodesForXPath_currentNode(expression, currentNode);
    if (!nodes) return "null";
    std::string text;
    for (const auto& node : *nodes) text += (text.empty() ? "" : " ") + label(node);
    return text;
}

// What `work` writes to the two streams of the process.
std::string printedBy(auto&& work) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    work();
    const std::string out = testing::internal::GetCapturedStdout();
    return out + testing::internal::GetCapturedStderr();
}

void channel(void*, const char*, ...) {}  // for libxml2's messages

// A document object that no libxml2 document stands behind.
struct Hollow : WQXMLDocument {
    bool init() override { return true; }
};

struct Raising : WQXMLElement {
    bool initWithXMLNode(_xmlNode*) override { throw WQXMLException(u"Refused", u"no such element"); }
};

constexpr const char* kTree = "<a><b x='1' y='2'>t<!--c--><![CDATA[d]]><c/></b><?pi q?><b z='3'/></a>";

}  // namespace

// ---- Identifiers

TEST(WQXMLDocumentTest, TheIdentifierOfAnUnknownElementIsNull) {
    const auto document = parse("<a><b xml:id='k'/></a>");
    for (const NSString& unknown : {u"nobody"_ns, u"K"_ns, u"k "_ns, u""_ns, NSString()}) EXPECT_FALSE(document->getElementById(unknown));
    EXPECT_FALSE(parse("<a/>")->getElementById(u"k"));
    EXPECT_FALSE(WQXMLDocument::newDocument()->getElementById(u"k"));
}

TEST(WQLibXMLTest, AnIdentifierIsFoundThroughTheTable) {
    const auto document = parse("<!DOCTYPE a [<!ATTLIST b id ID #IMPLIED>]><a><b id='k'/><c id='m'/></a>");
    const auto b = find(document, u"b");
    EXPECT_EQ(document->getElementById(u"k"), b);
    EXPECT_FALSE(document->getElementById(u"m"));

    xmlAddID(nullptr, document->xmlDoc(), x("m"), find(document, u"c")->xmlNode()->properties);
    EXPECT_EQ(document->getElementById(u"m"), find(document, u"c"));
    xmlRemoveID(document->xmlDoc(), b->xmlNode()->properties);
    EXPECT_FALSE(document->getElementById(u"k"));
}

TEST(WQXMLDocumentServicesTest, WhatTheParserTakesForAnIdentifierIsFound) {
    struct {
        const char* markup;
        NSString identifier;
        const char* found;  // null: nothing
        bool html = false;
    } const rows[] = {
        {"<a><b xml:id='k'/></a>", u"k", "b"},
        {"<a xml:id='k'><b/></a>", u"k", "a"},
        {"<a><p:b xmlns:p='u:1' xml:id='k'/></a>", u"k", "p:b"},
        {"<a><b xml:id='\xC3\xA9'/></a>", u"\u00E9", "b"},
        {"<!DOCTYPE a [<!ATTLIST b n ID #IMPLIED>]><a><b n='\xF0\x9F\x98\x80'/></a>", u"\U0001F600", "b"},
        {"<!DOCTYPE a [<!ATTLIST b n ID #IMPLIED>]><a><b n='k'/></a>", u"k", "b"},
        {"<!DOCTYPE a [<!ATTLIST b n ID #IMPLIED>]><a><c n='k'/></a>", u"k", nullptr},
        {"<!DOCTYPE a [<!ATTLIST b n IDREF #IMPLIED>]><a><b n='k'/></a>", u"k", nullptr},
        {"<!DOCTYPE a [<!ATTLIST b n CDATA #IMPLIED>]><a><b n='k'/></a>", u"k", nullptr},
        {"<a><b id='k'/></a>", u"k", nullptr},
        {"<p id='k'>t</p>", u"k", "p", true},
        {"<p><a name='k'>t</a></p>", u"k", "a", true},
        {"<p name='k'>t</p>", u"k", nullptr, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.markup);
        const auto document = row.html ? parseHTML(row.markup) : parse(row.markup);
        const auto found = document->getElementById(row.identifier);
        EXPECT_EQ(found ? label(found) : "", row.found ? row.found : "");
        EXPECT_EQ(found, found ? find(document, found->nodeName()) : nullptr);
    }
}

TEST(WQXMLDocumentServicesTest, AnIdentifierIsOfItsOwnDocumentAlone) {
    const auto first = parse("<a><b xml:id='k'/></a>"), second = parse("<a><b xml:id='k'/><c xml:id='m'/></a>");
    EXPECT_EQ(first->getElementById(u"k"), find(first, u"b"));
    EXPECT_EQ(second->getElementById(u"k"), find(second, u"b"));
    EXPECT_FALSE(first->getElementById(u"m"));
}

TEST(WQXMLDocumentServicesTest, AnElementWithoutWrapperIsNotFound) {
    const auto document = parse("<a/>");
    const bool registers = setRegisterNode(false);
    xmlNodePtr child = xmlNewChild(document->documentElement()->xmlNode(), nullptr, x("b"), nullptr);
    xmlAddID(nullptr, document->xmlDoc(), x("k"), xmlNewProp(child, x("id"), x("k")));
    setRegisterNode(registers);
    EXPECT_FALSE(document->getElementById(u"k"));
}

TEST(WQXMLDocumentServicesTest, ARemovedElementIsFoundForAsLongAsItLives) {
    const auto document = parse("<a><b xml:id='k'><c xml:id='m'/></b></a>");
    auto b = element(document, u"b");
    auto c = element(document, u"c");
    document->documentElement()->removeChild(b);
    EXPECT_EQ(document->getElementById(u"k"), b);
    EXPECT_EQ(document->getElementById(u"m"), c);
    b.reset();
    EXPECT_EQ(c->nodeType(), 0x7fff);
    EXPECT_FALSE(document->getElementById(u"k"));
    EXPECT_FALSE(document->getElementById(u"m"));
}

TEST(WQXMLDocumentServicesTest, ARemovedElementThatComesBackIsFound) {
    const auto document = parse("<a><b xml:id='k'/></a>");
    const auto b = document->documentElement()->removeChild(find(document, u"b"));
    document->documentElement()->appendChild(b);
    EXPECT_EQ(document->getElementById(u"k"), b);
}

TEST(WQXMLDocumentServicesTest, AnElementThatMovedToAnotherDocumentIsFoundInNeither) {
    auto first = parse("<a><b xml:id='k'/></a>");
    const auto second = parse("<z/>");
    auto b = element(first, u"b");
    second->documentElement()->appendChild(b);
    EXPECT_FALSE(first->getElementById(u"k"));
    EXPECT_FALSE(second->getElementById(u"k"));
    discard(b);
    EXPECT_FALSE(first->getElementById(u"k"));
    EXPECT_FALSE(second->getElementById(u"k"));
}

TEST(WQXMLDocumentServicesTest, AnIdentifierThatIsUnlinkedHasNoElement) {
    const auto document = parse("<a><b xml:id='k'/><c/></a>");
    const auto b = element(document, u"b"), c = element(document, u"c");
    auto attribute = b->removeChild(firstAttribute(b));
    EXPECT_FALSE(document->getElementById(u"k"));
    c->appendChild(attribute);
    EXPECT_EQ(document->getElementById(u"k"), c);
    c->removeChild(attribute);
    attribute.reset();
    EXPECT_FALSE(document->getElementById(u"k"));
}

TEST(WQXMLDocumentServicesTest, IdentifiersInNewMarkupAreFoundAndThoseOfTheOldAreNot) {
    const auto document = parse("<a><b xml:id='k'/></a>");
    document->documentElement()->setInnerXML(u"<c xml:id='m'/>");
    EXPECT_EQ(document->getElementById(u"m"), find(document, u"c"));
    EXPECT_FALSE(document->getElementById(u"k"));
}

// After each edit the element is known by its new value alone, and by nothing when it is gone.
TEST(WQXMLDocumentServicesTest, AnElementIsFoundByTheNewValueOfItsIdentifier) {
    using Edit = std::function<void(const Ref<WQXMLElement>&)>;
    const NSString identifiers[] = {u"k", u"l", u"m", u"m\n", u"mn", u"km", u"mk", u"m&e;"};
    const auto text = [](const Ref<WQXMLElement>& b) { return wq::cast<WQXMLText>(firstAttribute(b)->firstChild()); };
    struct {
        const char* name;
        Edit edit;
        NSString identifier;  // null: none
    } const rows[] = {
        {"setValue", [](auto& b) { firstAttribute(b)->setValue(u"m"); }, u"m"},
        {"setValue, the same", [](auto& b) { firstAttribute(b)->setValue(u"k"); }, u"k"},
        {"setValue, twice", [](auto& b) { firstAttribute(b)->setValue(u"l"), firstAttribute(b)->setValue(u"m"); }, u"m"},
        {"setValue, an ampersand", [](auto& b) { firstAttribute(b)->setValue(u"m&e;"); }, u"m&e;"},
        {"setValue, null", [](auto& b) { firstAttribute(b)->setValue(nullptr); }, nullptr},
        {"setAttribute:value:", [](auto& b) { b->setAttribute_value(u"id", u"m"); }, u"m"},
        {"setAttribute:namespaceURI:value:", [](auto& b) { b->setAttribute_namespaceURI_value(u"id", nullptr, u"m"); }, u"m"},
        {"removeAttribute:", [](auto& b) { b->removeAttribute(u"id"); }, nullptr},
        {"setString:", [&](auto& b) { text(b)->setString(u"m"); }, u"m"},
        {"appendString:", [&](auto& b) { text(b)->appendString(u"m"); }, u"km"},
        {"insertString:atIndex:", [&](auto& b) { text(b)->insertString_atIndex(u"m", 0); }, u"mk"},
        {"deleteCharactersInRange:",
         [&](auto& b) {
             text(b)->setString(u"mn"), text(b)->deleteCharactersInRange({1, 1});
         },
         u"m"},
        {"replaceCharactersInRange:withString:",
         [&](auto& b) {
             text(b)->replaceCharactersInRange_withString({0, 1}, u"m");
         },
         u"m"},
        {"normalizeContent", [&](auto& b) { text(b)->setString(u"m\n"), text(b)->normalizeContent(); }, u"m"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const auto document = parse("<!DOCTYPE a [<!ATTLIST b id ID #IMPLIED>]><a><b id='k'/></a>");
        auto b = element(document, u"b");
        row.edit(b);
        for (const NSString& each : identifiers)
            EXPECT_EQ(document->getElementById(each), row.identifier == each ? b : nullptr) << wq::toUTF8(each);
        discard(b);
        for (const NSString& each : identifiers) EXPECT_FALSE(document->getElementById(each)) << wq::toUTF8(each);
    }
}

TEST(WQXMLDocumentServicesTest, ThePrefixedIdentifierFollowsItsValueToo) {
    const auto document = parse("<a><b xml:id='k'/></a>");
    auto b = element(document, u"b");
    b->setAttribute_value(u"xml:id", u"m");
    EXPECT_FALSE(document->getElementById(u"k"));
    EXPECT_EQ(document->getElementById(u"m"), b);
    b->setAttribute_namespaceURI_value(u"xml:id", u"http://www.w3.org/XML/1998/namespace", u"n");
    EXPECT_FALSE(document->getElementById(u"m"));
    EXPECT_EQ(document->getElementById(u"n"), b);
    b->removeAttribute_namespaceURI(u"id", u"http://www.w3.org/XML/1998/namespace");
    EXPECT_FALSE(document->getElementById(u"n"));
}

TEST(WQXMLDocumentServicesTest, TheSecondOfTwoElementsWithOneIdentifierGoesWithoutHarm) {
    for (const bool firstGoesFirst : {true, false}) {
        const auto document = parse("<a><b xml:id='k'/><c xml:id='m'/></a>");
        auto b = element(document, u"b"), c = element(document, u"c");
        firstAttribute(c)->setValue(u"k");
        EXPECT_EQ(document->getElementById(u"k"), b);
        EXPECT_FALSE(document->getElementById(u"m"));
        discard(firstGoesFirst ? b : c);
        discard(firstGoesFirst ? c : b);
        EXPECT_FALSE(document->getElementById(u"k"));
    }
}

// The parser's key for "k&e;" and for "k&amp;m" is no spelling of the value.
TEST(WQXMLDocumentServicesTest, AnIdentifierWithAnEntityIsFoundByThePartsThatTheParserRead) {
    const auto document = parse("<!DOCTYPE a [<!ATTLIST b id ID #IMPLIED><!ENTITY e 'x'>]><a><b id='k&e;'/></a>");
    EXPECT_EQ(document->getElementById(u"k&e;"), find(document, u"b"));
    EXPECT_FALSE(document->getElementById(u"k"));
}

// However an identifier is spelt and however it is freed, no look-up reaches it afterwards.
TEST(WQXMLDocumentServicesTest, AFreedIdentifierIsNotFoundByAnySpelling) {
    const char* const values[] = {
        "k", " k ", "k&e;", "&e;", "&e;k&e;", "k&amp;m", "k&#38;m", "k&lt;m", "k  m", "&#9;k", "k&e; &e;",
    };
    const NSString spellings[] = {
        u"k",       u" k ",     u"k&e;", u"kx",          u"k&amp;e;", u"k&#38;e;", u"&e;",  u"x",   u"&e;k&e;", u"xkx",
        u"k&amp;m", u"k&#38;m", u"k&m",  u"k&#38;#38;m", u"k<m",      u"k&lt;m",   u"k  m", u"k m", u"\tk",     u"k&e; &e;",
        u"kx x",    u"m",       u"mx",   u"m&e;",        u"k&e;m",    u"kxm",      u" m ",  u"n",   u"",
    };
    struct Scene {
        Ref<WQXMLDocument> document, other;
        Ref<WQXMLElement> b, c;
    };
    struct {
        const char* name;
        std::function<void(Scene&)> free;
    } const ways[] = {
        {"the element goes", [](Scene& s) { discard(s.b); }},
        {"removeAttribute:", [](Scene& s) { s.b->removeAttribute(u"id"); }},
        {"the attribute goes as a node", [](Scene& s) { s.b->removeChild(firstAttribute(s.b)); }},
        {"moved away and freed there",
         [](Scene& s) {
             s.other->documentElement()->appendChild(s.b);
             discard(s.b);
         }},
        {"moved away, and the other document goes",
         [](Scene& s) {
             s.other->documentElement()->appendChild(s.b);
             s.other = nullptr;
         }},
        {"removed, moved away and freed there",
         [](Scene& s) {
             s.document->documentElement()->removeChild(s.b);
             s.other->documentElement()->appendChild(s.b);
             discard(s.b);
         }},
        {"the attribute moves away and is freed there",
         [](Scene& s) {
             s.other->documentElement()->appendChild(s.b->removeChild(firstAttribute(s.b)));
             s.other->documentElement()->removeAttribute(u"id");
         }},
        {"the attribute moves within the document and is freed",
         [](Scene& s) {
             s.c->appendChild(s.b->removeChild(firstAttribute(s.b)));
             discard(s.c);
         }},
        {"another attribute takes its place",
         [](Scene& s) {
             s.c->setAttribute_value(u"id", u"n");
             s.b->appendChild(s.c->removeChild(firstAttribute(s.c)));
         }},
        {"setValue:, then the element goes", [](Scene& s) { firstAttribute(s.b)->setValue(u" m "), discard(s.b); }},
        {"setAttribute:value:, then the element goes", [](Scene& s) { s.b->setAttribute_value(u"id", u" m "), discard(s.b); }},
        {"a text in the attribute is edited",
         [](Scene& s) {
             if (const auto text = wq::cast<WQXMLText>(firstAttribute(s.b)->firstChild())) text->setString(u"m");
             discard(s.b);
         }},
        {"a text is put into the attribute",
         [](Scene& s) {
             firstAttribute(s.b)->appendChild(s.document->createTextNode(u"m"));
             discard(s.b);
         }},
        {"the attribute is emptied",
         [](Scene& s) {
             firstAttribute(s.b)->removeChildren();
             discard(s.b);
         }},
        {"new markup", [](Scene& s) { s.b = nullptr, s.document->documentElement()->setInnerXML(u"<d/>"); }},
        {"a new root",
         [](Scene& s) {
             s.b = nullptr;
             s.document->setDocumentElement(s.document->createElement(u"d"));
         }},
    };
    for (const char* value : values) {
        for (const auto& way : ways) {
            SCOPED_TRACE(std::string(value) + ": " + way.name);
            const auto markup = std::string("<!DOCTYPE a [<!ATTLIST b id ID #IMPLIED><!ENTITY e 'x'>]><a><b id='") + value + "'/><c/></a>";
            Scene scene{parse(markup), parse("<z/>"), nullptr, nullptr};
            scene.b = element(scene.document, u"b");
            scene.c = element(scene.document, u"c");
            way.free(scene);
            for (const NSString& each : spellings) {
                EXPECT_FALSE(scene.document->getElementById(each)) << wq::toUTF8(each);
                EXPECT_EQ(query(scene.document, u"id('" + each + u"')"), "") << wq::toUTF8(each);
            }
        }
    }
}

// Where the parser knew an identifier by parts that are no value, its name is free for another.
TEST(WQXMLDocumentServicesTest, AnIdentifierThatIsForgottenCanBeTakenAgain) {
    const std::pair<const char*, NSString> rows[] = {
        {"k", u"k"}, {"k&e;", u"k&e;"}, {"k&e;", u"kx"}, {"k&amp;m", u"k&m"}, {"k&amp;m", u"k&#38;m"},
    };
    for (const auto& [value, identifier] : rows) {
        SCOPED_TRACE(value);
        const auto markup = std::string("<!DOCTYPE a [<!ATTLIST b id ID #IMPLIED><!ENTITY e 'x'>]><a><b id='") + value + "'/></a>";

        const auto document = parse(markup);
        auto b = element(document, u"b");
        discard(b);
        b = document->createElement(u"b");
        b->setAttribute_value(u"id", identifier);
        EXPECT_EQ(document->getElementById(identifier), b) << wq::toUTF8(identifier);

        const auto edited = parse(markup);
        firstAttribute(element(edited, u"b"))->setValue(u"m");
        EXPECT_EQ(edited->getElementById(u"m"), find(edited, u"b"));
        firstAttribute(element(edited, u"b"))->setValue(identifier);
        EXPECT_EQ(edited->getElementById(identifier), find(edited, u"b")) << wq::toUTF8(identifier);
    }
}

TEST(WQXMLDocumentServicesTest, AnElementThatMovedToAnotherDocumentStaysUnknownThereWhateverItsValue) {
    for (const char* value : {"k", "k&e;"}) {
        SCOPED_TRACE(value);
        const auto first = parse(std::string("<!DOCTYPE a [<!ATTLIST b id ID #IMPLIED><!ENTITY e 'x'>]><a><b id='") + value + "'/></a>");
        const auto second = parse("<z/>");
        const auto b = element(first, u"b");
        second->documentElement()->appendChild(b);
        firstAttribute(b)->setValue(u"m");
        EXPECT_FALSE(first->getElementById(u"m"));
        EXPECT_FALSE(second->getElementById(u"m"));
    }
}

TEST(WQXMLDocumentServicesTest, AFreedIdentifierOfAnHTMLPageIsNotFoundByAnySpelling) {
    const auto document = parseHTML("<div><p id='k&amp;m'>t</p><a name=' n '>u</a></div>");
    auto p = element(document, u"p"), a = element(document, u"a");
    discard(p);
    discard(a);
    for (const NSString& each : {u"k&m"_ns, u"k&amp;m"_ns, u"k&#38;m"_ns, u"k"_ns, u"n"_ns, u" n "_ns})
        EXPECT_FALSE(document->getElementById(each)) << wq::toUTF8(each);
}

TEST(WQXMLDocumentServicesTest, AnIdentifierOutlivesItsDocument) {
    auto document = parse("<a><b xml:id='k'/></a>");
    const auto b = document->getElementById(u"k");
    document->documentElement()->removeChild(b);
    document = nullptr;
    EXPECT_EQ(b->getAttribute(u"id"), u"k");
    firstAttribute(b)->setValue(u"m");
    EXPECT_EQ(b->getAttribute(u"id"), u"m");
}

// What an entity stood for may be lost with the document that declared it.
TEST(WQXMLDocumentServicesTest, AnIdentifierWithAnEntityOutlivesItsDocument) {
    for (const bool moved : {false, true}) {
        SCOPED_TRACE(moved);
        auto document = parse("<!DOCTYPE a [<!ATTLIST b id ID #IMPLIED><!ENTITY e 'x'>]><a><b id='k&e;'/></a>");
        const auto other = parse("<z/>");
        const auto b = document->getElementById(u"k&e;");
        document->documentElement()->removeChild(b);
        if (moved) other->documentElement()->appendChild(b);
        document = nullptr;
        EXPECT_THAT(wq::toUTF8(b->getAttribute(u"id")), StartsWith("k"));
        EXPECT_THAT(wq::toUTF8(firstAttribute(b)->value()), StartsWith("k"));
        b->setAttribute_value(u"id", u"m");
        EXPECT_EQ(b->getAttribute(u"id"), u"m");
    }
}

TEST(WQXMLDocumentServicesTest, AnIdentifierWithAnEntityOutlivesTheDocumentType) {
    const auto document = parse("<!DOCTYPE a [<!ATTLIST b id ID #IMPLIED><!ENTITY e 'x'>]><a><b id='k&e;'/></a>");
    auto b = element(document, u"b");
    document->removeChild(document->documentElement()->previousSibling());
    EXPECT_THAT(wq::toUTF8(b->getAttribute(u"id")), StartsWith("k"));
    EXPECT_THAT(wq::toUTF8(firstAttribute(b)->value()), StartsWith("k"));
    EXPECT_NE(document->canonicalRepresentation().view().find(u"<b id=\"k"), std::u16string_view::npos);
    discard(b);
    for (const NSString& each : {u"k"_ns, u"kx"_ns, u"k&e;"_ns}) EXPECT_FALSE(document->getElementById(each)) << wq::toUTF8(each);
}

// The same for an entity among children: nothing may reach the declaration that went.
TEST(WQXMLDocumentServicesTest, AnElementWithAnEntityReferenceOutlivesItsDocument) {
    for (const bool moved : {false, true}) {
        SCOPED_TRACE(moved);
        auto document = parse("<!DOCTYPE a [<!ENTITY e 'x'>]><a><b>&e;<c/></b></a>");
        const auto other = parse("<z/>");
        const auto b = element(document, u"b");
        document->documentElement()->removeChild(b);
        if (moved) other->documentElement()->appendChild(b);
        document = nullptr;
        EXPECT_EQ(dump(Ref<WQXMLNode>(b)), "b[<!>,c]");
        EXPECT_FALSE(b->firstChild()->firstChild());
        EXPECT_EQ(b->firstChild()->next()->nodeName(), u"c");
        EXPECT_EQ(b->innerText(), u"");
        EXPECT_EQ(query(other, u"descendant-or-self::*[string(.) != 'nobody']", b), "b c");
        EXPECT_EQ(b->innerXML(), u"&e;<c/>");
    }
}

// ---- Prefixes for queries

TEST(WQXMLDocumentServicesTest, TheNamespaceOfTheLibrarysElementsHasADeployersHost) {
    EXPECT_THAT(wq::toUTF8(WQXMLElementsNamespace), MatchesRegex("http://[^/]*\\.invalid/elements/1\\.0"));
}

TEST(WQXMLDocumentServicesTest, ThePrefixOfTheLibraryNeedsNoRegistration) {
    const auto document = parse("<a><w:b xmlns:w='" + wq::toUTF8(WQXMLElementsNamespace) + "'/><wq:c xmlns:wq='u:1'/></a>");
    EXPECT_EQ(query(document, u"//wq:*"), "w:b");
    EXPECT_EQ(query(WQXMLDocument::newDocument(), u"//wq:*"), "");
}

TEST(WQXMLDocumentServicesTest, ARegistrationForThePrefixOfTheLibraryWins) {
    const auto document = parse("<a><w:b xmlns:w='" + wq::toUTF8(WQXMLElementsNamespace) + "'/><wq:c xmlns:wq='u:1'/></a>");
    document->registerXPathPrefix_forNamespace(u"wq", u"u:1");
    EXPECT_EQ(query(document, u"//wq:*"), "wq:c");
}

TEST(WQXMLDocumentServicesTest, TheNamespaceOfTheLibraryMayHaveASecondPrefix) {
    const auto document = parse("<a><w:b xmlns:w='" + wq::toUTF8(WQXMLElementsNamespace) + "'/></a>");
    document->registerXPathPrefix_forNamespace(u"v", WQXMLElementsNamespace);
    EXPECT_EQ(query(document, u"//v:b | //wq:b"), "w:b");
}

TEST(WQXMLDocumentServicesTest, ARegisteredPrefixWorksFromTheNextQueryOn) {
    const auto document = parse("<a xmlns:p='u:1'><p:b p:x='1'/><b xmlns='u:1'/><b/></a>");
    EXPECT_EQ(raised([&] { query(document, u"//q:b"); }), "XML Exception: Undefined namespace prefix\n");
    document->registerXPathPrefix_forNamespace(u"q", u"u:1");
    EXPECT_EQ(query(document, u"//q:b"), "p:b b");
    EXPECT_EQ(query(document, u"//q:b"), "p:b b");
    EXPECT_EQ(query(document, u"//@q:x"), "@p:x");
    EXPECT_EQ(query(document, u"//b"), "b");
}

TEST(WQXMLDocumentServicesTest, PrefixesOfTheDocumentAreNotKnownByThemselves) {
    EXPECT_NE(raised([] { query(parse("<p:a xmlns:p='u:1'/>"), u"//p:a"); }), "");
}

TEST(WQXMLDocumentServicesTest, ThePrefixXmlNeedsNoRegistration) {
    EXPECT_EQ(query(parse("<a xml:lang='en'/>"), u"//@xml:lang"), "@xml:lang");
}

TEST(WQXMLDocumentServicesTest, ARegistrationIsOfItsOwnDocumentAlone) {
    const auto first = parse("<a xmlns='u:1'/>"), second = parse("<a xmlns='u:1'/>");
    first->registerXPathPrefix_forNamespace(u"p", u"u:1");
    EXPECT_EQ(query(first, u"//p:a"), "a");
    EXPECT_NE(raised([&] { query(second, u"//p:a"); }), "");
}

TEST(WQXMLDocumentServicesTest, TheSecondPrefixOfANamespaceReplacesTheFirst) {
    const auto document = parse("<a xmlns='u:1'/>");
    document->registerXPathPrefix_forNamespace(u"p", u"u:1");
    document->registerXPathPrefix_forNamespace(u"q", u"u:1");
    EXPECT_EQ(query(document, u"//q:a"), "a");
    EXPECT_EQ(raised([&] { query(document, u"//p:a"); }), "XML Exception: Undefined namespace prefix\n");
}

TEST(WQXMLDocumentServicesTest, OfTwoNamespacesWithOnePrefixTheGreaterURIHasIt) {
    for (const bool greaterFirst : {true, false}) {
        const auto document = parse("<a><b xmlns='u:1'/><c xmlns='u:2'/></a>");
        document->registerXPathPrefix_forNamespace(u"p", greaterFirst ? u"u:2" : u"u:1");
        document->registerXPathPrefix_forNamespace(u"p", greaterFirst ? u"u:1" : u"u:2");
        EXPECT_EQ(query(document, u"//p:*"), "c");
    }
}

// In UTF-16 a character beyond the BMP is less than U+FF21; in UTF-8 it is greater.
TEST(WQXMLDocumentServicesTest, TheGreaterURIIsToldUnitByUnit) {
    const auto document = parse("<a/>");
    document->documentElement()->appendChild(document->createElement_namespaceURI(u"q:b", u"u:\U0001F600"));
    document->documentElement()->appendChild(document->createElement_namespaceURI(u"q:c", u"u:\uFF21"));
    document->registerXPathPrefix_forNamespace(u"p", u"u:\U0001F600");
    document->registerXPathPrefix_forNamespace(u"p", u"u:\uFF21");
    ASSERT_EQ(document->nodesForXPath(u"//p:*")->size(), 1u);
    EXPECT_EQ(document->nodesForXPath(u"//p:*")->front()->localName(), u"c");
}

TEST(WQXMLDocumentServicesTest, ANullPrefixTakesTheRegistrationBack) {
    const auto document = parse("<a xmlns='u:1'/>");
    document->registerXPathPrefix_forNamespace(nullptr, u"u:1");
    document->registerXPathPrefix_forNamespace(u"p", u"u:1");
    document->registerXPathPrefix_forNamespace(nullptr, u"u:1");
    EXPECT_NE(raised([&] { query(document, u"//p:a"); }), "");
    document->registerXPathPrefix_forNamespace(u"p", u"u:1");
    EXPECT_EQ(query(document, u"//p:a"), "a");
}

TEST(WQXMLDocumentServicesTest, ANullNamespaceRaises) {
    const auto document = parse("<a/>");
    const auto isInvalid = StartsWith("NSInvalidArgumentException: ");
    EXPECT_THAT(raised([&] { document->registerXPathPrefix_forNamespace(u"p", nullptr); }), isInvalid);
    EXPECT_EQ(query(document, u"//a"), "a");
}

TEST(WQXMLDocumentServicesTest, AnEmptyPrefixOrNamespaceDisturbsNoQuery) {
    const auto document = parse("<a xmlns:p='u:1'><p:b/></a>");
    document->registerXPathPrefix_forNamespace(u"", u"u:1");
    document->registerXPathPrefix_forNamespace(u"e", u"");
    EXPECT_EQ(query(document, u"//a"), "a");
    EXPECT_EQ(query(document, u"//*[namespace-uri() = 'u:1']"), "p:b");
}

// ---- Queries

TEST(WQXMLDocumentServicesTest, AQueryFindsNodesOfEveryKindThatHasAWrapper) {
    struct {
        const char16_t* expression;
        const char* found;
    } const rows[] = {
        {u"/", "/"},
        {u"/a", "a"},
        {u"//b", "b b"},
        {u"//b[2]", "b"},
        {u"//@*", "@x @y @z"},
        {u"//@x", "@x"},
        {u"//@x/..", "b"},
        {u"//text()", "\"t\" <4>"},
        {u"//comment()", "<8>"},
        {u"//processing-instruction()", "<7>"},
        {u"//processing-instruction('pi')", "<7>"},
        {u"//node()", "a b \"t\" <8> <4> c <7> b"},
        {u"/a/node()", "b <7> b"},
        {u"/a/b[@x = 1 and @y > 1]", "b"},
        {u"//*[. = 'td']", "a b"},
        {u"/descendant-or-self::node()[not(parent::node())]", "/"},
        {u"//c/ancestor-or-self::node()", "/ a b c"},
        {u"//namespace::*", ""},
        {u"//namespace::* | //c", "c"},
        {u"//@*/namespace::*", ""},
        {u"//nobody", ""},
        {u"//@nobody", ""},
        {u"id('nobody')", ""},
        {u"//b[9]", ""},
    };
    const auto document = parse(kTree);
    for (const auto& row : rows) {
        SCOPED_TRACE(wq::toUTF8(row.expression));
        EXPECT_EQ(query(document, row.expression), row.found);
    }
}

TEST(WQXMLDocumentServicesTest, WhatAQueryFindsAreTheWrappersOfTheTree) {
    const auto document = parse(kTree);
    const auto b = element(document, u"b");
    EXPECT_THAT(*document->nodesForXPath(u"/"), ElementsAre(document));
    EXPECT_THAT(*document->nodesForXPath(u"/a/b[1] | /a/b[1]/@x"), ElementsAre(b, b->firstAttribute()));
    EXPECT_TRUE(wq::cast<WQXMLAttr>(document->nodesForXPath(u"//@x")->front()));
    EXPECT_TRUE(wq::cast<WQXMLText>(document->nodesForXPath(u"//text()")->front()));
}

TEST(WQXMLDocumentServicesTest, AQueryFindsElementsOfTheClassThatTheyHave) {
    struct Paragraph : WQXMLElement {};
    const auto classes = NSDictionary::dictionary({{DefaultNamespaceKey, NSDictionary::dictionary({{u"b", &wq::Class::of<Paragraph>()}})}});
    const auto document = parse(kTree, NSDictionary::dictionary({{DefaultElementClassesKey, classes}}));
    const auto found = document->nodesForXPath(u"//b");
    ASSERT_EQ(found->size(), 2u);
    for (const auto& node : *found) EXPECT_TRUE(wq::cast<Paragraph>(node));
}

TEST(WQXMLDocumentServicesTest, ResultsStandInDocumentOrderAndOnce) {
    const auto document = parse("<a><b><c/></b><d><e/><f/></d></a>");
    EXPECT_EQ(query(document, u"//f | //c | //b | //c | /"), "/ b c f");
    EXPECT_EQ(query(document, u"//f/preceding::*"), "b c e");
    EXPECT_EQ(query(document, u"//f/ancestor::*"), "a d");
    EXPECT_EQ(query(document, u"preceding-sibling::* | ..", find(document, u"f")), "d e");
}

TEST(WQXMLDocumentServicesTest, AValueThatIsNoSetOfNodesGivesNullAndNoMatchAnEmptySequence) {
    const auto document = parse(kTree);
    for (const char16_t* expression :
         {u"count(//b)", u"1", u"1 div 0", u"'text'", u"string(//b)", u"name(/a)", u"true()", u"//b = 't'", u"not(//b)", u"//@x + 1",
          u"''"})
        EXPECT_EQ(document->nodesForXPath(expression), std::nullopt) << wq::toUTF8(expression);
    ASSERT_NE(document->nodesForXPath(u"//nobody"), std::nullopt);
    EXPECT_THAT(*document->nodesForXPath(u"//nobody"), IsEmpty());
}

TEST(WQXMLDocumentServicesTest, AQueryOfAnEmptyDocumentFindsTheDocumentAlone) {
    const auto document = WQXMLDocument::newDocument();
    EXPECT_EQ(query(document, u"//a"), "");
    EXPECT_EQ(query(document, u"//node()"), "");
    EXPECT_EQ(query(document, u"/"), "/");
}

TEST(WQXMLDocumentServicesTest, AnHTMLPageIsQueriedByLowerCaseNames) {
    const auto document = parseHTML("<P CLASS='x'>a<br>b</P>");
    EXPECT_EQ(query(document, u"//p/@class | //p/node() | /"), "/ @class \"a\" br \"b\"");
    EXPECT_EQ(query(document, u"//P"), "");
}

TEST(WQXMLDocumentServicesTest, AnExpressionMayHoldAnyCharacter) {
    const auto document = parse("<a><b>\xF0\x9F\x98\x80</b><b>&amp;&lt;]]&gt;\"</b><\xC3\xA9 x=\"'\"/><b>\xEF\xBF\xBD</b></a>");
    EXPECT_EQ(query(document, u"//b[. = '\U0001F600']"), "b");
    EXPECT_EQ(query(document, u"//b[. = '\U0001F600']/text()"), "\"\U0001F600\"");
    EXPECT_EQ(query(document, u"//b[. = '&<]]>\"']"), "b");
    EXPECT_EQ(query(document, u"//\u00E9[@x = \"'\"]"), "\u00E9");
    EXPECT_EQ(query(document, u"\n//b\r\n[\t1 ]"), "b");
    const char16_t loneSurrogate[] = {u'/', u'/', u'b', u'[', u'.', u'=', u'\'', 0xD800, u'\'', u']', 0};
    EXPECT_EQ(query(document, loneSurrogate), "b");
}

TEST(WQXMLDocumentServicesTest, NodesWithoutWrapperAreLeftOut) {
    const auto document = parse("<a><b/></a>");
    const bool registers = setRegisterNode(false);
    xmlNewProp(xmlNewChild(document->documentElement()->xmlNode(), nullptr, x("b"), nullptr), x("y"), x("1"));
    setRegisterNode(registers);
    EXPECT_EQ(query(document, u"//b"), "b");
    EXPECT_EQ(query(document, u"//@y"), "");
    EXPECT_EQ(query(document, u"//b[@y]"), "");
}

TEST(WQXMLDocumentServicesTest, AnEntityReferenceIsNotLookedInto) {
    const auto document = parse("<!DOCTYPE a [<!ENTITY e '<b/>'>]><a>&e;<c/></a>");
    EXPECT_EQ(query(document, u"//node()"), "a c");
}

TEST(WQXMLDocumentServicesTest, ACommentWithinTheDocumentTypeIsFoundLikeAnyOther) {
    const auto document = parse("<!DOCTYPE a [<!--1--><!ELEMENT a ANY><?p q?><!ENTITY e 'x'>]><a><!--2--></a>");
    EXPECT_EQ(query(document, u"//comment()"), "<8> <8>");
    EXPECT_EQ(query(document, u"//node()"), "<8> <7> a <8>");
    EXPECT_EQ(query(document, u"/node()"), "a");
}

TEST(WQXMLDocumentServicesTest, AQuerySeesEdits) {
    const auto document = parse(kTree);
    document->documentElement()->removeChild(find(document, u"b"));
    document->documentElement()->appendChild(document->createElement(u"d"));
    document->documentElement()->setAttribute_value(u"n", u"1");
    EXPECT_EQ(query(document, u"//node() | //@*"), "a @n <7> b @z d");
}

TEST(WQXMLDocumentServicesTest, AnElementWithItsOwnNamespaceIsFoundBeforeAndAfterItsInsertion) {
    const auto document = parse("<a/>");
    document->registerXPathPrefix_forNamespace(u"q", u"u:1");
    const auto b = document->createElement_namespaceURI(u"p:b", u"u:1");
    EXPECT_EQ(query(document, u"self::q:b", b), "p:b");
    document->documentElement()->appendChild(b);
    EXPECT_EQ(query(document, u"//q:b"), "p:b");
}

TEST(WQXMLDocumentServicesTest, WhatAQueryFoundOutlivesTheDocument) {
    auto document = parse(kTree);
    auto found = document->nodesForXPath(u"//b | //@x | //text()");
    document = nullptr;
    for (const auto& node : *found) EXPECT_EQ(node->nodeType(), 0x7fff);
}

TEST(WQXMLDocumentServicesTest, TheDocumentItselfIsKeptAliveByWhatAQueryFound) {
    auto document = parse(kTree);
    const auto found = document->nodesForXPath(u"/");
    document = nullptr;
    EXPECT_EQ(wq::cast<WQXMLDocument>(found->front())->documentElement()->nodeName(), u"a");
}

TEST(WQXMLDocumentServicesTest, ANullExpressionGivesNull) {
    const auto document = parse(kTree);
    EXPECT_EQ(document->nodesForXPath(nullptr), std::nullopt);
    EXPECT_EQ(document->nodesForXPath_currentNode(nullptr, document->documentElement()), std::nullopt);
}

// ---- The current node

TEST(WQXMLDocumentServicesTest, WithoutACurrentNodeRelativePathsFindNothing) {
    const auto document = parse(kTree);
    for (const char16_t* expression : {u"a", u"b", u".", u"..", u"@x", u"*", u"text()", u".//b", u"ancestor::node()"}) {
        SCOPED_TRACE(wq::toUTF8(expression));
        EXPECT_EQ(query(document, expression), "");
        EXPECT_EQ(query(document, expression, document), "");
    }
    EXPECT_EQ(query(document, u"//b", document), "b b");
    EXPECT_EQ(query(document, u"string()"), "null");
    EXPECT_EQ(query(document, u"lang('en')"), "null");
}

TEST(WQXMLDocumentServicesTest, RelativePathsStartAtTheCurrentNode) {
    const auto document = parse(kTree);
    const auto b = element(document, u"b");
    struct {
        const char* name;
        Ref<WQXMLNode> currentNode;
        const char16_t* expression;
        const char* found;
    } const rows[] = {
        {"element", b, u".", "b"},
        {"element", b, u"c", "c"},
        {"element", b, u"b", ""},
        {"element", b, u"..", "a"},
        {"element", b, u"@*", "@x @y"},
        {"element", b, u"../../*", "a"},
        {"element", b, u"following-sibling::*", "b"},
        {"element", b, u"/a", "a"},
        {"element", b, u"//b", "b b"},
        {"element", b, u"namespace::*", ""},
        {"root", document->documentElement(), u"..", "/"},
        {"attribute", b->firstAttribute(), u".", "@x"},
        {"attribute", b->firstAttribute(), u"..", "b"},
        {"attribute", b->firstAttribute(), u"node()", ""},
        {"attribute", b->firstAttribute(), u"../@y", "@y"},
        {"attribute", b->firstAttribute(), u"ancestor::*", "a b"},
        {"attribute", b->firstAttribute(), u"self::node()[. = 1]", "@x"},
        {"text of an attribute", b->firstAttribute()->firstChild(), u"..", "@x"},
        {"text", b->firstChild(), u".", "\"t\""},
        {"text", b->firstChild(), u"following-sibling::c", "c"},
        {"text", b->firstChild(), u"..", "b"},
        {"comment", b->firstChild()->nextSibling(), u". | ..", "b <8>"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.name) + ": " + wq::toUTF8(row.expression));
        EXPECT_EQ(query(document, row.expression, row.currentNode), row.found);
    }
}

TEST(WQXMLDocumentServicesTest, ADeadCurrentNodeIsLikeNone) {
    const auto document = parse(kTree);
    const auto dead = parse("<a><b/></a>")->documentElement();
    ASSERT_EQ(dead->nodeType(), 0x7fff);
    EXPECT_EQ(query(document, u".", dead), "");
    EXPECT_EQ(query(document, u"b", dead), "");
    EXPECT_EQ(query(document, u"//b", dead), "b b");
}

TEST(WQXMLDocumentServicesTest, ACurrentNodeOfAnotherDocumentIsWhereRelativePathsStart) {
    const auto document = parse(kTree), other = parse("<y><z/></y>");
    EXPECT_EQ(query(document, u"z", other->documentElement()), "z");
    EXPECT_EQ(query(document, u"..", other->documentElement()), "/");
    EXPECT_EQ(query(document, u"/*", other->documentElement()), "a");
    EXPECT_THAT(*document->nodesForXPath_currentNode(u"/", other->documentElement()), ElementsAre(document));
    EXPECT_EQ(query(document, u"/*", other), "a");
    EXPECT_EQ(query(document, u"*", other), "");
}

TEST(WQXMLDocumentServicesTest, ADetachedCurrentNodeIsWhereRelativePathsStart) {
    const auto document = parse(kTree);
    const auto b = document->documentElement()->removeChild(find(document, u"b"));
    EXPECT_EQ(query(document, u"c | @x | .", b), "b @x c");
    EXPECT_EQ(query(document, u"ancestor-or-self::*", b->lastChild()), "b c");
    EXPECT_EQ(query(document, u"..", b), "/");  // libxml2 takes what has no parent for a child of the document
    EXPECT_EQ(query(document, u"/*", b), "a");
    EXPECT_EQ(query(document, u"//c", b), "");
}

TEST(WQXMLDocumentServicesTest, ACurrentNodeNeedsNoDocument) {
    const auto document = parse(kTree);
    const auto lonely = WQXMLElement::newWithName(u"m");
    lonely->appendChild(WQXMLElement::newWithName(u"n"));
    EXPECT_EQ(query(document, u". | n", lonely), "m n");
    EXPECT_EQ(query(document, u"namespace::*", lonely), "");
    EXPECT_EQ(query(document, u"/*", lonely), "a");
    EXPECT_EQ(query(document, u".", WQXMLText::newWithString(u"t")), "\"t\"");
}

// ---- Errors of queries

TEST(WQLibXMLTest, AnXPathErrorIsRaisedOutOfTheQuery) {
    const auto document = parse("<a/>");
    EXPECT_EQ(raised([&] { document->nodesForXPath(u"a["); }), "XML Exception: Invalid expression\n");
    EXPECT_EQ(
        raised([&] { document->nodesForXPath_currentNode(u"a[", document->documentElement()); }), "XML Exception: Invalid expression\n");
    EXPECT_EQ(query(document, u"//a"), "a");
}

TEST(WQXMLDocumentServicesTest, AnExpressionThatCannotBeEvaluatedRaisesAndPrintsNothing) {
    struct {
        const char16_t* expression;
        const char* reason;
    } const rows[] = {
        {u"", "Invalid expression\n"},
        {u" ", "Invalid expression\n"},
        {u"//", "Invalid expression\n"},
        {u"a[", "Invalid expression\n"},
        {u"//b]", "Invalid expression\n"},
        {u"a b", "Invalid expression\n"},
        {u"1 +", "Invalid expression\n"},
        {u"@", "Invalid expression\n"},
        {u"!", "Invalid expression\n"},
        {u"a:b:c", "Invalid expression\n"},
        {u"child::", "Invalid expression\n"},
        {u"nobody::a", "Invalid expression\n"},
        {u"\U0001F600", "Invalid expression\n"},
        {u"'text", "Unfinished literal\n"},
        {u"text(", "Missing closing curly brace\n"},
        {u"$v", "Undefined variable\n"},
        {u"/a/b[$v]", "Undefined variable\n"},
        {u"p:a", "Undefined namespace prefix\n"},
        {u"//b/p:*", "Undefined namespace prefix\n"},
        {u"//@p:x", "Undefined namespace prefix\n"},
        {u"nobody()", "Unregistered function\n"},
        {u"//b[nobody()]", "Unregistered function\n"},
        {u"wq:nobody()", "Unregistered function\n"},
        {u"count()", "Invalid number of arguments\n"},
        {u"count(1)", "Invalid type\n"},
        {u"//b | 1", "Invalid type\n"},
    };
    const auto document = parse(kTree);
    for (const auto& row : rows) {
        SCOPED_TRACE(wq::toUTF8(row.expression));
        std::string reason;
        EXPECT_EQ(printedBy([&] { reason = raised([&] { query(document, row.expression, document->documentElement()); }); }), "");
        EXPECT_EQ(reason, std::string("XML Exception: ") + row.reason);
        EXPECT_EQ(query(document, u"//b"), "b b");
    }
}

TEST(WQXMLDocumentServicesTest, AFunctionWithAnUnregisteredPrefixGivesNullAndPrintsNothing) {
    const auto document = parse(kTree);
    std::string answer;
    EXPECT_EQ(printedBy([&] { answer = query(document, u"p:f()"); }), "");
    EXPECT_EQ(answer, "null");
}

TEST(WQXMLDocumentServicesTest, AQueryLeavesTheApplicationsErrorChannelInPlace) {
    const auto document = parse(kTree);
    int context = 0;
    xmlSetGenericErrorFunc(&context, channel);
    raised([&] { query(document, u"nobody()"); });
    query(document, u"//b");
    EXPECT_EQ(xmlGenericError, xmlGenericErrorFunc(channel));
    EXPECT_EQ(xmlGenericErrorContext, &context);
    EXPECT_EQ(xmlStructuredError, xmlStructuredErrorFunc(wqStructuredErrorFunc));
    xmlSetGenericErrorFunc(nullptr, nullptr);
}

TEST(WQXMLDocumentServicesTest, AParenthesisThatIsNotClosedMayPass) { EXPECT_EQ(query(parse(kTree), u"string("), "null"); }

TEST(WQXMLDocumentServicesTest, ManyQueriesThatRaiseLeaveNothingBehind) {
    const auto document = parse(kTree);
    document->registerXPathPrefix_forNamespace(u"q", u"u:1");
    for (int i = 0; i < 100; ++i) EXPECT_NE(raised([&] { query(document, u"//b[count(//node()) > 0 and nobody(//@*)]"); }), "");
    EXPECT_EQ(query(document, u"//b"), "b b");
}

// An element that libxml2 made and nobody settled yet meets its class in the middle of an operation.
TEST(WQXMLDocumentServicesTest, AnOverrideThatRaisesMakesNoOperationLeak) {
    const auto classes = NSDictionary::dictionary({{DefaultNamespaceKey, NSDictionary::dictionary({{u"p", &wq::Class::of<Raising>()}})}});
    const std::function<void(const Ref<WQXMLDocument>&)> operations[] = {
        [](auto& document) { document->nodesForXPath(u"//p"); },
        [](auto& document) { document->nodesForXPath(u"//p[nobody()]"); },
        [](auto& document) { document->nodesForXPath(u"//namespace::* | //p | //@*"); },
        [](auto& document) { document->canonicalRepresentation(); },
        [](auto& document) { document->XMLData(); },
        [](auto& document) { document->formattedXMLData(); },
        [](auto& document) { document->getElementById(u"k"); },
    };
    for (const auto& operation : operations) {
        const auto document =
            parse("<a xmlns:n='u:1'><b x='1' xml:id='k'/></a>", NSDictionary::dictionary({{DefaultElementClassesKey, classes}}));
        xmlNodePtr pending = xmlNewDocNode(document->xmlDoc(), nullptr, x("p"), nullptr);
        xmlAddChild(document->documentElement()->xmlNode(), pending);
        raised([&] { operation(document); });
        raised([] { checkNode(); });
        EXPECT_EQ(query(document, u"//*"), "a b p");
    }
}

// ---- XMLData

TEST(WQXMLDocumentServicesTest, AnEmptyDocumentIsWrittenAsItsDeclaration) {
    EXPECT_EQ(bytes(WQXMLDocument::newDocument()->XMLData()), "<?xml version=\"1.0\"?>\n");
    EXPECT_EQ(bytes(WQXMLDocument::newDocument()->formattedXMLData()), "<?xml version=\"1.0\"?>\n");
}

TEST(WQXMLDocumentServicesTest, ADocumentWithoutAnythingBehindItIsNotWritten) {
    const auto hollow = WQXMLDocument::newDocument<Hollow>();
    ASSERT_TRUE(hollow);
    ASSERT_FALSE(hollow->xmlDoc());
    EXPECT_FALSE(hollow->XMLData());
    EXPECT_FALSE(hollow->formattedXMLData());
    EXPECT_FALSE(hollow->canonicalRepresentation());
    EXPECT_FALSE(hollow->getElementById(u"k"));
    EXPECT_EQ(hollow->nodesForXPath(u"/"), std::nullopt);
}

TEST(WQXMLDocumentServicesTest, ADocumentIsWrittenInTheEncodingThatItDeclares) {
    struct {
        const char* name;
        std::string xml, written;
    } const rows[] = {
        {"none", "<a x='\xC3\xA9\xF0\x9F\x98\x80'>\xC3\xA9\xF0\x9F\x98\x80</a>",
         "<?xml version=\"1.0\"?>\n<a x=\"&#xE9;&#x1F600;\">&#xE9;&#x1F600;</a>\n"},
        {"none, where references cannot stand", "<\xC3\xA9><!--\xC3\xA9--><?p \xC3\xA9?><![CDATA[\xC3\xA9]]></\xC3\xA9>",
         "<?xml version=\"1.0\"?>\n<\xC3\xA9><!--\xC3\xA9--><?p \xC3\xA9?><![CDATA[\xC3\xA9]]></\xC3\xA9>\n"},
        {"UTF-8", "<?xml version='1.0' encoding='UTF-8' standalone='yes'?><a>\xC3\xA9</a>",
         "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n<a>\xC3\xA9</a>\n"},
        {"ISO-8859-1", "<?xml version='1.0' encoding='ISO-8859-1'?><a x='\xE9&#x20AC;'>\xE9&#x20AC;<!--\xE9--></a>",
         "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<a x=\"\xE9&#8364;\">\xE9&#8364;<!--\xE9--></a>\n"},
        {"US-ASCII", "<?xml version='1.0' encoding='us-ascii'?><a>&#xE9;</a>",
         "<?xml version=\"1.0\" encoding=\"us-ascii\"?>\n<a>&#233;</a>\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(bytes(parse(row.xml)->XMLData()), row.written);
        EXPECT_EQ(bytes(parse(row.xml)->formattedXMLData()), row.written);
    }
}

TEST(WQXMLDocumentServicesTest, AnEncodingThatNobodyKnowsRaises) {
    const auto document = parse("<?xml version='1.0' encoding='UTF-8'?><a/>");
    xmlFree(const_cast<xmlChar*>(document->xmlDoc()->encoding));
    document->xmlDoc()->encoding = xmlStrdup(x("nobody"));
    EXPECT_THAT(raised([&] { document->XMLData(); }), StartsWith("XML Exception: "));
    EXPECT_THAT(raised([&] { document->formattedXMLData(); }), StartsWith("XML Exception: "));
    EXPECT_EQ(document->canonicalRepresentation(), u"<a></a>");
}

TEST(WQXMLDocumentServicesTest, UTF16IsWrittenWithItsByteOrderMark) {
    const auto littleEndian = [](std::string_view latin1) {
        std::string text = "\xFF\xFE";
        for (const char c : latin1) (text += c) += '\0';
        return text;
    };
    const auto document = parse(littleEndian("<?xml version='1.0' encoding='UTF-16'?><a>\xE9</a>"));
    EXPECT_EQ(document->documentElement()->innerText(), u"\u00E9");
    EXPECT_EQ(bytes(document->XMLData()), littleEndian("<?xml version=\"1.0\" encoding=\"UTF-16\"?>\n<a>\xE9</a>\n"));
}

TEST(WQXMLDocumentServicesTest, EverythingAtTheTopIsWritten) {
    EXPECT_EQ(
        bytes(parse("<!--1--><?p q?><!DOCTYPE a [<!ATTLIST b id ID #IMPLIED><!ENTITY e 'x'><!ELEMENT a ANY>]><!--2-->"
                    "<a><b id='k&e;'/>&e;<![CDATA[<x>]]><!--3--></a><?r s?><!--4-->")
                  ->XMLData()),
        "<?xml version=\"1.0\"?>\n"
        "<!--1-->\n"
        "<?p q?>\n"
        "<!DOCTYPE a [\n"
        "<!ATTLIST b id ID #IMPLIED>\n"
        "<!ENTITY e \"x\">\n"
        "<!ELEMENT a ANY>\n"
        "]>\n"
        "<!--2-->\n"
        "<a><b id=\"k&e;\"/>&e;<![CDATA[<x>]]><!--3--></a>\n"
        "<?r s?>\n"
        "<!--4-->\n");
}

TEST(WQXMLDocumentServicesTest, WhatWouldBeReadAsMarkupIsEscaped) {
    const auto document = parse("<a/>");
    document->documentElement()->setAttribute_value(u"x", u"&<>\"'\t\n\r");
    document->documentElement()->appendChild(document->createTextNode(u"&<]]>\"'\t\n\r"));
    EXPECT_EQ(
        bytes(document->XMLData()),
        "<?xml version=\"1.0\"?>\n<a x=\"&amp;&lt;&gt;&quot;'&#9;&#10;&#13;\">&amp;&lt;]]&gt;\"'\t\n&#xD;</a>\n");
}

TEST(WQXMLDocumentServicesTest, ALoneSurrogateIsWrittenAsTheReplacementCharacter) {
    const auto document = parse("<a/>");
    document->documentElement()->appendChild(document->createTextNode(std::u16string{0xDC00, u'b'}));
    EXPECT_EQ(bytes(document->XMLData()), "<?xml version=\"1.0\"?>\n<a>&#xFFFD;b</a>\n");
}

TEST(WQXMLDocumentServicesTest, EditsAreWritten) {
    const auto document = parse("<a><b/>t</a>");
    const auto root = document->documentElement();
    root->removeChild(find(document, u"b"));
    root->setAttribute_value(u"x", u"1");
    root->appendChild(document->createElement(u"c"));
    root->appendChild(document->createElement_namespaceURI(u"p:d", u"u:1"));
    root->appendChild(document->createElement_namespaceURI(u"e", u"u:2"));
    EXPECT_EQ(
        bytes(document->XMLData()),
        "<?xml version=\"1.0\"?>\n<a x=\"1\">t<c/><p:d xmlns:p=\"u:1\"/><default:e xmlns:default=\"u:2\"/></a>\n");
}

TEST(WQXMLDocumentServicesTest, ThePrefixOfANewAttributeIsDeclaredWhenItsElementIsNextInserted) {
    const auto document = parse("<a><b/></a>");
    const auto b = element(document, u"b");
    b->setAttribute_namespaceURI_value(u"q:z", u"u:1", u"1");
    EXPECT_EQ(bytes(document->XMLData()), "<?xml version=\"1.0\"?>\n<a><b q:z=\"1\"/></a>\n");
    document->documentElement()->appendChild(b);
    EXPECT_EQ(bytes(document->XMLData()), "<?xml version=\"1.0\"?>\n<a><b xmlns:q=\"u:1\" q:z=\"1\"/></a>\n");
}

TEST(WQXMLDocumentServicesTest, AnHTMLPageIsWrittenAsXML) {
    const auto document = parseHTML("<!DOCTYPE html><title>T</title><p id=i>a&nbsp;b<br>c<a name=n>d</a>");
    EXPECT_EQ(
        bytes(document->XMLData()),
        "<?xml version=\"1.0\" standalone=\"yes\"?>\n"
        "<!DOCTYPE html>\n"
        "<html><head><title>T</title></head><body><p id=\"i\">a&#xA0;b<br/>c<a name=\"n\">d</a></p></body></html>\n");
    EXPECT_EQ(
        bytes(document->formattedXMLData()),
        "<?xml version=\"1.0\" standalone=\"yes\"?>\n"
        "<!DOCTYPE html>\n"
        "<html>\n"
        "  <head>\n"
        "    <title>T</title>\n"
        "  </head>\n"
        "  <body>\n"
        "    <p id=\"i\">a&#xA0;b<br/>c<a name=\"n\">d</a></p>\n"
        "  </body>\n"
        "</html>\n");
}

TEST(WQXMLDocumentServicesTest, AnHTMLPageWithoutATypeIsWrittenWithTheTypeOfHTML4) {
    EXPECT_EQ(
        bytes(parseHTML("<p>a</p>")->XMLData()),
        "<?xml version=\"1.0\" standalone=\"yes\"?>\n"
        "<!DOCTYPE html PUBLIC \"-//W3C//DTD HTML 4.0 Transitional//EN\" \"http://www.w3.org/TR/REC-html40/loose.dtd\">\n"
        "<html><body><p>a</p></body></html>\n");
}

TEST(WQXMLDocumentServicesTest, WritingAnHTMLPageLeavesTheTreeAsItIs) {
    const auto document = parseHTML("<p>a<br>b</p>");
    const auto before = dump(document);
    document->XMLData();
    document->formattedXMLData();
    document->canonicalRepresentation();
    EXPECT_EQ(dump(document), before);
    EXPECT_EQ(before, "html[body[p[\"a\",br,\"b\"]]]");
}

TEST(WQXMLDocumentServicesTest, WhatWasWrittenStaysWhatItWas) {
    auto document = parse("<a/>");
    const auto data = document->XMLData(), formatted = document->formattedXMLData();
    document->documentElement()->setAttribute_value(u"x", u"1");
    document = nullptr;
    EXPECT_EQ(bytes(data), "<?xml version=\"1.0\"?>\n<a/>\n");
    EXPECT_EQ(bytes(formatted), "<?xml version=\"1.0\"?>\n<a/>\n");
}

TEST(WQXMLDocumentServicesTest, DetachedNodesAreNotWritten) {
    const auto document = parse("<a><b/></a>");
    const auto b = document->documentElement()->removeChild(find(document, u"b"));
    const auto c = document->createElement(u"c");
    EXPECT_EQ(bytes(document->XMLData()), "<?xml version=\"1.0\"?>\n<a/>\n");
}

// ---- formattedXMLData

TEST(WQXMLDocumentServicesTest, ElementsWithoutTextAmongTheirChildrenAreIndented) {
    const auto document = parse("<a><b><c/></b><d>t<e/></d><f> <g/></f><!--c--><h><![CDATA[t]]><i/></h></a>");
    EXPECT_EQ(
        bytes(document->formattedXMLData()),
        "<?xml version=\"1.0\"?>\n"
        "<a>\n"
        "  <b>\n"
        "    <c/>\n"
        "  </b>\n"
        "  <d>t<e/></d>\n"
        "  <f> <g/></f>\n"
        "  <!--c-->\n"
        "  <h><![CDATA[t]]><i/></h>\n"
        "</a>\n");
    EXPECT_EQ(
        bytes(document->XMLData()),
        "<?xml version=\"1.0\"?>\n<a><b><c/></b><d>t<e/></d><f> <g/></f><!--c--><h><![CDATA[t]]><i/></h></a>\n");
}

TEST(WQXMLDocumentServicesTest, SpaceToBePreservedIsIndentedAllTheSame) {
    EXPECT_EQ(
        bytes(parse("<a><b xml:space='preserve'><c/></b></a>")->formattedXMLData()),
        "<?xml version=\"1.0\"?>\n<a>\n  <b xml:space=\"preserve\">\n    <c/>\n  </b>\n</a>\n");
}

TEST(WQXMLDocumentServicesTest, FormattingLeavesTheIndentationOfLibxml2AsItWas) {
    const auto document = parse("<a><b/></a>");
    const int indents = xmlIndentTreeOutput;
    const char* const by = xmlTreeIndentString;
    const int indentsByDefault = xmlThrDefIndentTreeOutput(0);
    const char* const byDefault = xmlThrDefTreeIndentString("\t");
    xmlIndentTreeOutput = 0;
    xmlTreeIndentString = "--";

    EXPECT_TRUE(document->formattedXMLData());

    EXPECT_EQ(xmlIndentTreeOutput, 0);
    EXPECT_STREQ(xmlTreeIndentString, "--");
    EXPECT_EQ(xmlThrDefIndentTreeOutput(indentsByDefault), 0);
    EXPECT_STREQ(xmlThrDefTreeIndentString(byDefault), "\t");
    xmlIndentTreeOutput = indents;
    xmlTreeIndentString = by;
    EXPECT_EQ(bytes(document->formattedXMLData()), "<?xml version=\"1.0\"?>\n<a>\n  <b/>\n</a>\n");
}

// ---- canonicalRepresentation

TEST(WQXMLDocumentServicesTest, TheCanonicalFormFollowsItsRules) {
    struct {
        const char* rule;
        std::string xml;
        const char16_t* canonical;
    } const rows[] = {
        {"empty elements have two tags", "<a><b/><c></c></a>", u"<a><b></b><c></c></a>"},
        {"attributes go by URI, then by name", "<a z='1' b='2' p:a='3' q:a='4' xml:lang='en' xmlns:p='u:2' xmlns:q='u:1'/>",
         u"<a xmlns:p=\"u:2\" xmlns:q=\"u:1\" b=\"2\" z=\"1\" xml:lang=\"en\" q:a=\"4\" p:a=\"3\"></a>"},
        {"declarations go by prefix, ahead of attributes", "<a x='1' xmlns:q='u:1' xmlns='u:3' xmlns:p='u:2'/>",
         u"<a xmlns=\"u:3\" xmlns:p=\"u:2\" xmlns:q=\"u:1\" x=\"1\"></a>"},
        {"declarations that say nothing new are left out", "<p:a xmlns:p='u:1'><p:b xmlns:p='u:1'/><p:c xmlns:p='u:2'/></p:a>",
         u"<p:a xmlns:p=\"u:1\"><p:b></p:b><p:c xmlns:p=\"u:2\"></p:c></p:a>"},
        {"a namespace is taken back where there is one", "<a xmlns='u:1'><b xmlns=''/></a>", u"<a xmlns=\"u:1\"><b xmlns=\"\"></b></a>"},
        {"and nowhere else", "<a xmlns=''/>", u"<a></a>"},
        {"CDATA sections become text", "<a><![CDATA[<&>]]></a>", u"<a>&lt;&amp;&gt;</a>"},
        {"comments are left out", "<!--1--><a>b<!--2-->c</a><!--3-->", u"<a>bc</a>"},
        {"instructions stay, on lines of their own", "<?p  q ?><a><?r?></a><?s t?>", u"<?p q ?>\n<a><?r?></a>\n<?s t?>"},
        {"declaration and document type are left out",
         "<?xml version='1.0' encoding='ISO-8859-1' standalone='no'?>\n<!DOCTYPE a>\n<a>\xE9</a>\n", u"<a>\u00E9</a>"},
        {"text is escaped", "<a>&amp;&lt;&gt;\"'&#9;&#10;&#13;</a>", u"<a>&amp;&lt;&gt;\"'\t\n&#xD;</a>"},
        {"attributes are escaped", "<a x='&amp;&lt;&gt;&quot;&#39;&#9;&#10;&#13;'/>", u"<a x=\"&amp;&lt;>&quot;'&#x9;&#xA;&#xD;\"></a>"},
        {"characters stand for themselves", "<a>&#x1F600;&#xE9;</a>", u"<a>\U0001F600\u00E9</a>"},
        {"white space stays", "<a >\n <b\n x = '1' /> </a >", u"<a>\n <b x=\"1\"></b> </a>"},
        {"a default of the document type is no attribute", "<!DOCTYPE a [<!ATTLIST a x CDATA '1'>]><a/>", u"<a></a>"},
        {"an entity within an attribute is read", "<!DOCTYPE a [<!ENTITY e 'x'>]><a y='k&e;'/>", u"<a y=\"kx\"></a>"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.rule);
        EXPECT_EQ(parse(row.xml)->canonicalRepresentation(), row.canonical);
    }
}

TEST(WQXMLDocumentServicesTest, TheCanonicalFormOfAnEmptyDocumentIsEmpty) {
    EXPECT_EQ(WQXMLDocument::newDocument()->canonicalRepresentation(), u"");
}

TEST(WQXMLDocumentServicesTest, AnHTMLPageHasACanonicalForm) {
    EXPECT_EQ(
        parseHTML("<p class=x id=i>a<br>b")->canonicalRepresentation(),
        u"<html><body><p class=\"x\" id=\"i\">a<br></br>b</p></body></html>");
}

TEST(WQXMLDocumentServicesTest, TheCanonicalFormSeesEdits) {
    const auto document = parse("<a x='1'><b/></a>");
    const auto root = document->documentElement();
    root->setAttribute_value(u"b", u"\"");
    root->removeChild(root->firstChild());
    root->appendChild(document->createElement_namespaceURI(u"p:d", u"u:1"));
    EXPECT_EQ(document->canonicalRepresentation(), u"<a b=\"&quot;\" x=\"1\"><p:d xmlns:p=\"u:1\"></p:d></a>");
}

TEST(WQXMLDocumentServicesTest, AnEntityReferenceHasNoCanonicalForm) {
    const auto document = parse("<!DOCTYPE a [<!ENTITY e 'x'>]><a>&e;</a>");
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(
            raised([&] { document->canonicalRepresentation(); }),
            "XML Exception: Node XML_ENTITY_REF_NODE is invalid here : processing node\n");
    EXPECT_EQ(bytes(document->XMLData()), "<?xml version=\"1.0\"?>\n<!DOCTYPE a [\n<!ENTITY e \"x\">\n]>\n<a>&e;</a>\n");
}

TEST(WQXMLDocumentServicesTest, ARelativeNamespaceHasNoCanonicalForm) {
    const auto document = parse("<a xmlns:p='foo/bar'/>");
    EXPECT_THAT(raised([&] { document->canonicalRepresentation(); }), StartsWith("XML Exception: Relative namespace UR is invalid here"));

    const auto built = parse("<a/>");
    built->documentElement()->appendChild(built->createElement_namespaceURI(u"p:b", u"foo"));
    EXPECT_THAT(raised([&] { built->canonicalRepresentation(); }), StartsWith("XML Exception: Relative namespace UR is invalid here"));
}

TEST(WQXMLDocumentServicesTest, AFailedCanonicalFormPrintsNothing) {
    const auto document = parse("<!DOCTYPE a [<!ENTITY e 'x'>]><a>&e;</a>");
    EXPECT_EQ(printedBy([&] { raised([&] { document->canonicalRepresentation(); }); }), "");
}

// ---- In name only

namespace {

struct InNameOnly {
    const char* operation;
    std::function<bool(const Ref<WQXMLDocument>&)> answersNull;
    const char* description;
};

const std::vector<InNameOnly>& operationsInNameOnly() {
    static const std::vector<InNameOnly> operations = {
        {"createComment", [](auto& d) { return !d->createComment(u"c"); }, "createComment: is unimplemented"},
        {"createAttribute", [](auto& d) { return !d->createAttribute(u"x"); }, "createAttribute: is unimplemented"},
        {"createAttribute_namespaceURI", [](auto& d) { return !d->createAttribute_namespaceURI(u"p:x", u"u:1"); },
         "createAttribute:namespaceURI: is unimplemented"},
        {"getElementsByTagName", [](auto& d) { return !d->getElementsByTagName(u"a"); }, "This function is unimplemented"},
        {"getElementsByTagName_namespaceURI", [](auto& d) { return !d->getElementsByTagName_namespaceURI(u"a", u"u:1"); },
         "This function is unimplemented"},
        {"importNode_deep", [](auto& d) { return !d->importNode_deep(d->documentElement(), true); }, "This function is unimplemented"},
        {"copyWithZone", [](auto& d) { return !d->copyWithZone(); }, "copyWithZone: not implemented in WQXMLDocument"},
    };
    return operations;
}

}  // namespace

TEST(WQXMLDocumentServicesTest, AnOperationInNameOnlyFailsAnAssertionWithItsText) {
    const auto document = parse("<a/>");
    for (const auto& row : operationsInNameOnly()) {
        SCOPED_TRACE(row.operation);
        Assertions assertions;
        EXPECT_TRUE(row.answersNull(document));
        EXPECT_THAT(assertions.descriptions, ElementsAre(row.description));
        EXPECT_THAT(assertions.operations, ElementsAre(row.operation));
        EXPECT_THAT(assertions.files, ElementsAre("WQXMLDocument"));
    }
    EXPECT_EQ(bytes(document->XMLData()), "<?xml version=\"1.0\"?>\n<a/>\n");
}

TEST(WQXMLDocumentServicesTest, AnOperationInNameOnlyRaisesByDefault) {
    const auto document = parse("<a/>");
    for (const auto& row : operationsInNameOnly())
        EXPECT_EQ(raised([&] { row.answersNull(document); }), std::string("NSInternalInconsistencyException: ") + row.description);
}

TEST(WQLibXMLTest, AnOperationInNameOnlyFailsAndAnswersNull) {
    const auto document = parse("<a/>");
    EXPECT_EQ(
        raised([&] { document->documentElement()->getElementsByTagName(u"a"); }),
        "NSInternalInconsistencyException: This function is unimplemented");
    Assertions assertions;
    EXPECT_EQ(document->getElementsByTagName(u"a"), std::nullopt);
    EXPECT_EQ(document->documentElement()->getElementsByTagName(u"a"), std::nullopt);
    EXPECT_THAT(assertions.descriptions, ElementsAre("This function is unimplemented", "This function is unimplemented"));
}

TEST(WQXMLNodeTest, ACopyOfADocumentFailsItsOwnAssertion) {
    const auto document = parse("<a/>");
    const Ref<WQXMLNode> node = document;
    EXPECT_EQ(raised([&] { node->copy(); }), "NSInternalInconsistencyException: copyWithZone: not implemented in WQXMLDocument");
    Assertions assertions;
    EXPECT_FALSE(node->copy());
    EXPECT_FALSE(node->copyNode(false));
    EXPECT_FALSE(node->copyNode(true));
    EXPECT_THAT(assertions.descriptions, testing::Each("copyWithZone: not implemented in WQXMLDocument"));
    EXPECT_EQ(assertions.descriptions.size(), 3u);
}

// ---- The bag of values

TEST(WQXMLDocumentServicesTest, AKeyThatWasNeverSetHasTheNullValue) {
    const auto document = parse("<a/>");
    EXPECT_EQ(document->valueForUndefinedKey(u"k"), NSValue());
    EXPECT_EQ(document->valueForUndefinedKey(nullptr), NSValue());
    document->setValue_forUndefinedKey(true, u"k");
    EXPECT_EQ(document->valueForUndefinedKey(u"K"), NSValue());
    EXPECT_EQ(document->valueForUndefinedKey(u""), NSValue());
    EXPECT_EQ(document->valueForUndefinedKey(nullptr), NSValue());
}

TEST(WQXMLDocumentServicesTest, AValueOfEachKindIsKept) {
    const auto document = WQXMLDocument::newDocument();
    const auto object = WQXMLElement::newWithName(u"e");
    const std::pair<NSString, NSValue> rows[] = {
        {u"true", true},
        {u"false", false},
        {u"number", 2.5},
        {u"zero", 0.0},
        {u"string", u"\U0001F600&<\"]]>\r\n"},
        {u"empty", u""},
        {u"object", object},
        {u"class", &wq::Class::of<WQXMLElement>()},
        {u"", u"the empty key"},
        {u"\U0001F600", 1.0},
    };
    for (const auto& [key, value] : rows) document->setValue_forUndefinedKey(value, key);
    EXPECT_TRUE(document->valueForUndefinedKey(u"true").boolean());
    EXPECT_TRUE(document->valueForUndefinedKey(u"false"));
    EXPECT_FALSE(document->valueForUndefinedKey(u"false").boolean());
    EXPECT_EQ(document->valueForUndefinedKey(u"number").number(), 2.5);
    EXPECT_TRUE(document->valueForUndefinedKey(u"zero"));
    EXPECT_EQ(document->valueForUndefinedKey(u"string").string(), u"\U0001F600&<\"]]>\r\n");
    EXPECT_EQ(document->valueForUndefinedKey(u"empty").string(), u"");
    EXPECT_EQ(document->valueForUndefinedKey(u"object").object(), object);
    EXPECT_EQ(document->valueForUndefinedKey(u"class").classValue(), &wq::Class::of<WQXMLElement>());
    EXPECT_EQ(document->valueForUndefinedKey(u"").string(), u"the empty key");
    EXPECT_EQ(document->valueForUndefinedKey(u"\U0001F600").number(), 1.0);
}

TEST(WQXMLDocumentServicesTest, AValueIsReplacedAndRemovedByNull) {
    const auto document = parse("<a/>");
    document->setValue_forUndefinedKey(1.0, u"k");
    document->setValue_forUndefinedKey(u"two", u"k");
    document->setValue_forUndefinedKey(3.0, u"l");
    EXPECT_EQ(document->valueForUndefinedKey(u"k"), NSValue(u"two"));
    document->setValue_forUndefinedKey(nullptr, u"k");
    EXPECT_EQ(document->valueForUndefinedKey(u"k"), NSValue());
    EXPECT_EQ(document->valueForUndefinedKey(u"l"), NSValue(3.0));
    document->setValue_forUndefinedKey(nullptr, u"k");
    document->setValue_forUndefinedKey(nullptr, u"never");
    document->setValue_forUndefinedKey(4.0, u"k");
    EXPECT_EQ(document->valueForUndefinedKey(u"k"), NSValue(4.0));
}

TEST(WQXMLDocumentServicesTest, ANullKeyRaises) {
    const auto document = parse("<a/>");
    const auto isInvalid = StartsWith("NSInvalidArgumentException: ");
    EXPECT_THAT(raised([&] { document->setValue_forUndefinedKey(true, nullptr); }), isInvalid);
    document->setValue_forUndefinedKey(true, u"k");
    EXPECT_THAT(raised([&] { document->setValue_forUndefinedKey(false, nullptr); }), isInvalid);
    EXPECT_EQ(document->valueForUndefinedKey(u"k"), NSValue(true));
}

TEST(WQXMLDocumentServicesTest, EachDocumentHasABagOfItsOwn) {
    const auto first = parse("<a/>"), second = parse("<a/>");
    first->setValue_forUndefinedKey(1.0, u"k");
    EXPECT_EQ(second->valueForUndefinedKey(u"k"), NSValue());
}

TEST(WQXMLDocumentServicesTest, AnObjectIsHeldForAsLongAsItIsInTheBag) {
    auto document = parse("<a/>");
    const auto object = WQXMLElement::newWithName(u"e");
    document->setValue_forUndefinedKey(object, u"k");
    EXPECT_EQ(object->referenceCount(), 2);
    document->setValue_forUndefinedKey(1.0, u"k");
    EXPECT_EQ(object->referenceCount(), 1);
    document->setValue_forUndefinedKey(object, u"k");
    document->setValue_forUndefinedKey(nullptr, u"k");
    EXPECT_EQ(object->referenceCount(), 1);
    document->setValue_forUndefinedKey(object, u"k");
    document = nullptr;
    EXPECT_EQ(object->referenceCount(), 1);
}

// The bag goes after the tree: a wrapper in it is dead by then.
TEST(WQXMLDocumentServicesTest, ABagMayHoldNodesOfItsDocument) {
    auto document = parse("<a><b/></a>");
    document->setValue_forUndefinedKey(find(document, u"b"), u"linked");
    document->setValue_forUndefinedKey(document->createElement(u"c"), u"made");
    document->setValue_forUndefinedKey(document->documentElement()->removeChild(find(document, u"b")), u"removed");
    EXPECT_EQ(document->valueForUndefinedKey(u"removed").object<WQXMLElement>()->nodeName(), u"b");
    document = nullptr;
}

TEST(WQXMLDocumentServicesTest, TheBagIsNoPartOfTheTree) {
    const auto document = parse("<a/>");
    document->setValue_forUndefinedKey(u"v", u"k");
    EXPECT_EQ(bytes(document->XMLData()), "<?xml version=\"1.0\"?>\n<a/>\n");
    EXPECT_EQ(document->valueForUndefinedKey(u"nodeName"), NSValue());
}
