#include "dom/WQXMLAttr.h"

#include <libxml/parser.h>

#include <functional>

#include "dom/WQLibXML.h"
#include "tests/dom/Support.h"

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const char16_t* kXMLNamespace = u"http://www.w3.org/XML/1998/namespace";

Ref<WQXMLElement> element(const Ref<WQXMLDocument>& document, std::u16string_view name) {
    return wq::cast<WQXMLElement>(find(document, name));
}

// The attribute of that name, prefix and all.
Ref<WQXMLAttr> attribute(const Ref<WQXMLElement>& owner, std::u16string_view name) {
    for (auto node = owner->firstAttribute(); node; node = node->nextSibling())
        if (node->nodeName().view() == name) return wq::cast<WQXMLAttr>(node);
    ADD_FAILURE() << wq::toUTF8(name);
    return nullptr;
}
Ref<WQXMLAttr> firstAttribute(const Ref<WQXMLElement>& owner) { return wq::cast<WQXMLAttr>(owner->firstAttribute()); }
Ref<WQXMLText> firstText(const Ref<WQXMLNode>& node) { return wq::cast<WQXMLText>(node->firstChild()); }

// The children of an attribute: a list that is linked in both directions, in its document.
void expectSound(const Ref<WQXMLAttr>& attr) {
    Ref<WQXMLNode> previous;
    for (auto child = attr->firstChild(); child; child = child->nextSibling()) {
        EXPECT_EQ(child->parentNode(), attr);
        EXPECT_EQ(child->previousSibling(), previous);
        EXPECT_EQ(child->ownerDocument(), attr->ownerDocument());
        previous = child;
    }
    EXPECT_EQ(attr->lastChild(), previous);
}

// The document as it is written, from its root on: what precedes may name a DTD.
std::string written(const Ref<WQXMLDocument>& document, std::string_view rootTag) {
    const std::string bytes(document->XMLData()->view());
    return bytes.substr(bytes.find(rootTag));
}

struct Value {
    std::u16string_view text;
    const char* written;  // between quotes, in a document without encoding
};
const std::vector<Value> kValues = {
    {u"", ""},
    {u" ", " "},
    {u"plain", "plain"},
    {u" two  words ", " two  words "},
    {u"a < b", "a &lt; b"},
    {u"a > b", "a &gt; b"},
    {u"a & b", "a &amp; b"},
    {u"&lt;", "&amp;lt;"},
    {u"&amp;amp;", "&amp;amp;amp;"},
    {u"&#65;", "&amp;#65;"},
    {u"&{x};", "&amp;{x};"},
    {u"&undeclared;", "&amp;undeclared;"},
    {u"it's \"quoted\"", "it's &quot;quoted&quot;"},
    {u"a\nb", "a&#10;b"},
    {u"a\tb", "a&#9;b"},
    {u"a\rb", "a&#13;b"},
    {u"a\r\nb", "a&#13;&#10;b"},
    {u"<!-- c -->", "&lt;!-- c --&gt;"},
    {u"<![CDATA[x]]>", "&lt;![CDATA[x]]&gt;"},
    {u"<?i?>", "&lt;?i?&gt;"},
    {u"\u00e9", "&#xE9;"},
    {u"\u4e2d\u6587", "&#x4E2D;&#x6587;"},
    {u"\U0001F600", "&#x1F600;"},
    {u"\u0085\u2028", "&#x85;&#x2028;"},
    {u"%@ %d", "%@ %d"},
};

struct Setting {
    const char* name;
    std::function<void(const Ref<WQXMLElement>&, const NSString&)> set;
};
const std::vector<Setting> kSettings = {
    {"setValue", [](const Ref<WQXMLElement>& owner, const NSString& value) { attribute(owner, u"title")->setValue(value); }},
    {"setAttribute_value", [](const Ref<WQXMLElement>& owner, const NSString& value) { owner->setAttribute_value(u"title", value); }},
    {"setAttribute_namespaceURI_value",
     [](const Ref<WQXMLElement>& owner, const NSString& value) { owner->setAttribute_namespaceURI_value(u"title", nullptr, value); }},
};

}  // namespace

// ---- Reading

TEST(WQXMLAttrTest, AnAttributeHasItsNameWithThePrefixItsValueAndItsOwner) {
    const auto document = parse("<a x='1' xmlns:p='u:p' p:y='2 &amp; 3'/>");
    const auto a = document->documentElement();
    const auto x = attribute(a, u"x"), y = attribute(a, u"p:y");
    EXPECT_EQ(x->name(), u"x");
    EXPECT_EQ(y->name(), u"p:y");
    EXPECT_EQ(x->value(), u"1");
    EXPECT_EQ(y->value(), u"2 & 3");
    EXPECT_EQ(y->localName(), u"y");
    EXPECT_EQ(y->namespaceURI(), u"u:p");
    EXPECT_EQ(x->ownerElement(), a);
    EXPECT_TRUE(x->specified());
    EXPECT_EQ(x->nodeType(), 2);
    EXPECT_FALSE(x->nodeValue());
}

TEST(WQXMLAttrTest, TheValueIsFoundByNameAndNamespace) {
    const auto document = parse("<a xmlns:p='u:p' xmlns:q='u:q' p:x='1' q:x='2' x='3' xml:lang='en' xml:x='4'/>");
    const auto a = document->documentElement();
    EXPECT_EQ(attribute(a, u"p:x")->value(), u"1");
    EXPECT_EQ(attribute(a, u"q:x")->value(), u"2");
    EXPECT_EQ(attribute(a, u"x")->value(), u"3");
    EXPECT_EQ(attribute(a, u"xml:lang")->value(), u"en");
    EXPECT_EQ(attribute(a, u"xml:x")->value(), u"4");
}

TEST(WQXMLAttrTest, ANameWithAColonAndNoNamespaceFindsItsValue) {
    const auto a = WQXMLElement::newWithName(u"a");
    a->setAttribute_value(u"p:x", u"1");
    a->setAttribute_namespaceURI_value(u"p:x", u"u:p", u"2");
    EXPECT_EQ(firstAttribute(a)->value(), u"1");
    EXPECT_EQ(wq::cast<WQXMLAttr>(a->firstAttribute()->nextSibling())->value(), u"2");
}

TEST(WQXMLAttrTest, TheValueResolvesReferences) {
    const auto document = parse("<!DOCTYPE a [<!ENTITY e 'x &#38;lt; y'>]><a k='1&e;2&#65;&amp;'/>");
    EXPECT_EQ(firstAttribute(document->documentElement())->value(), u"1x < y2A&");
}

TEST(WQXMLAttrTest, AnAttributeGivenByTheDocumentTypeIsSpecified) {
    WQXMLDocument::newDocument();  // starts the library
    const std::string bytes = "<!DOCTYPE a [<!ATTLIST a x CDATA 'default' y CDATA #IMPLIED>]><a y='1'/>";
    const auto document = wq::make<WQXMLDocument>(
        &WQXMLDocument::initWithDocImpl, xmlReadMemory(bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr, XML_PARSE_DTDATTR));
    const auto x = attribute(document->documentElement(), u"x");
    EXPECT_TRUE(x->specified());
    EXPECT_EQ(x->value(), u"default");
    EXPECT_TRUE(attribute(document->documentElement(), u"y")->specified());
}

TEST(WQXMLAttrTest, AnAttributeWithoutOwnerHasNoValue) {
    const auto document = parse("<a xmlns:p='u:p' p:x='1'/>");
    const auto a = document->documentElement();
    const auto x = firstAttribute(a);
    a->removeChild(x);
    EXPECT_FALSE(x->ownerElement());
    EXPECT_FALSE(x->value());
    EXPECT_EQ(x->name(), u"p:x");
    EXPECT_TRUE(x->specified());
    EXPECT_EQ(x->firstChild()->nodeValue(), u"1");
    a->appendChild(x);
    EXPECT_EQ(x->value(), u"1");
}

TEST(WQXMLAttrTest, AnAttributeHasNoCopy) {
    const auto document = parse("<a x='1'/>");
    const auto x = firstAttribute(document->documentElement());
    EXPECT_EQ(raised([&] { x->copy(); }), "NSInternalInconsistencyException: WQXMLNode copyWithZone called");
    Assertions assertions;
    EXPECT_FALSE(x->copy());
    EXPECT_FALSE(x->copyNode(true));
    EXPECT_THAT(assertions.descriptions, ElementsAre("WQXMLNode copyWithZone called", "WQXMLNode copyWithZone called"));
}

TEST(WQXMLAttrTest, ADeadAttributeAnswersNullAndTakesNoValue) {
    auto document = parse("<a x='1'/>");
    const auto x = firstAttribute(document->documentElement());
    document = nullptr;
    x->setValue(u"2");
    EXPECT_EQ(x->nodeType(), 0x7fff);
    EXPECT_FALSE(x->name());
    EXPECT_FALSE(x->value());
    EXPECT_FALSE(x->ownerElement());
}

// ---- Values in and out again

namespace {
class AttributeValues : public testing::TestWithParam<bool> {};  // whether in HTML
}  // namespace

TEST_P(AttributeValues, ComeOutAsTheyWentInEveryWay) {
    for (const Setting& setting : kSettings) {
        SCOPED_TRACE(setting.name);
        for (const Value& value : kValues) {
            SCOPED_TRACE(value.written);
            const auto document =
                GetParam() ? parseHTML("<html><body><p title='old'>t</p></body></html>") : parse("<r><p title='old'>t</p></r>");
            const auto p = element(document, u"p");
            const auto title = attribute(p, u"title");
            setting.set(p, NSString(value.text));
            EXPECT_EQ(firstAttribute(p), title);
            EXPECT_EQ(title->value(), NSString(value.text));
            EXPECT_EQ(p->getAttribute(u"title"), NSString(value.text));
            EXPECT_EQ(p->getAttribute_namespaceURI(u"title", nullptr), NSString(value.text));
            expectSound(title);
            const std::string expected = "<p title=\"" + std::string(value.written) + "\">t</p>";
            EXPECT_EQ(wq::toUTF8(p->outerXML()), expected);
            const std::string all = written(document, GetParam() ? "<html" : "<r");
            EXPECT_NE(all.find(expected), all.npos) << all;
            const auto again = parse(all);
            EXPECT_EQ(firstAttribute(element(again, u"p"))->value(), NSString(value.text));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(WQXMLAttrTest, AttributeValues, testing::Bool());

TEST(WQXMLAttrTest, AValueInANamespaceIsSetAndReadThere) {
    const auto document = parse("<r xmlns:p='u:p' xmlns:q='u:q'><a x='0' p:x='1' q:x='2'/></r>");
    const auto a = element(document, u"a");
    attribute(a, u"q:x")->setValue(u"<q>");
    attribute(a, u"p:x")->setValue(u"'p'");
    EXPECT_EQ(attribute(a, u"q:x")->value(), u"<q>");
    EXPECT_EQ(a->getAttribute_namespaceURI(u"x", u"u:q"), u"<q>");
    EXPECT_EQ(a->getAttribute_namespaceURI(u"x", u"u:p"), u"'p'");
    EXPECT_EQ(a->getAttribute_namespaceURI(u"x", nullptr), u"0");
    EXPECT_EQ(serialised(a), "<a x=\"0\" p:x=\"'p'\" q:x=\"&lt;q&gt;\"/>");
}

TEST(WQXMLAttrTest, HalfACharacterBecomesAReplacementCharacter) {
    for (const Setting& setting : kSettings) {
        SCOPED_TRACE(setting.name);
        const auto document = parse("<p title='old'/>");
        setting.set(document->documentElement(), u"a\xD83D");
        EXPECT_EQ(firstAttribute(document->documentElement())->value(), u"a\uFFFD");
    }
}

TEST(WQXMLAttrTest, ControlCharactersAreLostBySettingTheValueAndKeptByTheElement) {
    const NSString text = u"a\u0001b\u000Bc\u001Fd\u007Fe";
    const auto document = parse("<p title='old'/>");
    const auto p = document->documentElement();
    firstAttribute(p)->setValue(text);
    EXPECT_EQ(firstAttribute(p)->value(), u"abcd\u007Fe");
    p->setAttribute_value(u"title", text);
    EXPECT_EQ(firstAttribute(p)->value(), text);
}

// ---- Setting the value

TEST(WQXMLAttrTest, ANullValueLeavesTheAttributeWithoutOne) {
    const auto document = parse("<a x='1' y='2'/>");
    const auto a = document->documentElement();
    const auto x = firstAttribute(a);
    x->setValue(nullptr);
    EXPECT_EQ(firstAttribute(a), x);
    EXPECT_FALSE(x->firstChild());
    EXPECT_FALSE(x->lastChild());
    EXPECT_EQ(x->value(), u"");
    EXPECT_TRUE(a->hasAttribute(u"x"));
    EXPECT_EQ(serialised(a), "<a x=\"\" y=\"2\"/>");
    x->setValue(u"3");
    EXPECT_EQ(serialised(a), "<a x=\"3\" y=\"2\"/>");
}

TEST(WQXMLAttrTest, AnEmptyValueReadsAsTheEmptyString) {
    const auto document = parse("<a x='1'/>");
    const auto x = firstAttribute(document->documentElement());
    x->setValue(u"");
    EXPECT_EQ(x->value(), u"");
    EXPECT_EQ(serialised(document->documentElement()), "<a x=\"\"/>");
}

TEST(WQXMLAttrTest, AValueReplacesReferencesAndAll) {
    const auto document = parse("<!DOCTYPE a [<!ENTITY e 'x'>]><a k='1&e;2'/>");
    const auto k = firstAttribute(document->documentElement());
    ASSERT_EQ(k->numberOfChildren(), 3u);
    const auto old = *k->childNodes();
    k->setValue(u"&e;");
    EXPECT_EQ(k->value(), u"&e;");
    EXPECT_EQ(serialised(document->documentElement()), "<a k=\"&amp;e;\"/>");
    expectSound(k);
    for (const auto& child : old) EXPECT_EQ(child->nodeType(), 0x7fff);
}

TEST(WQXMLAttrTest, AValueIsSetOnAnElementWithoutDocument) {
    const auto a = WQXMLElement::newWithName(u"a");
    a->setAttribute_value(u"x", u"1");
    firstAttribute(a)->setValue(u"\u00e9 < &x;");
    EXPECT_EQ(firstAttribute(a)->value(), u"\u00e9 < &x;");
    expectSound(firstAttribute(a));
}

TEST(WQXMLAttrTest, AnOverrideSeesTheValue) {
    struct Shouting : WQXMLAttr {
        void setValue(const NSString& value) override { WQXMLAttr::setValue(value + u"!"); }
    };
    parse("<a/>");  // the first use sets the default classes
    const auto plain = DefaultAttrClass;
    DefaultAttrClass = &wq::Class::of<Shouting>();
    const auto document = parse("<a x='1'/>");
    DefaultAttrClass = plain;
    firstAttribute(document->documentElement())->setValue(u"2");
    EXPECT_EQ(document->documentElement()->getAttribute(u"x"), u"2!");
}

// ---- The text below an attribute

TEST(WQXMLAttrTest, TheOldTextDiesWhenTheValueIsReplacedAndTheAttributeStays) {
    for (const Setting& setting : kSettings) {
        SCOPED_TRACE(setting.name);
        const auto document = parse("<a title='old'/>");
        const auto a = document->documentElement();
        const auto title = firstAttribute(a);
        const auto text = firstText(title);
        setting.set(a, u"new");
        EXPECT_EQ(firstAttribute(a), title);
        EXPECT_EQ(text->nodeType(), 0x7fff);
        EXPECT_FALSE(text->string());
        EXPECT_FALSE(text->parentNode());
        text->setString(u"late");
        EXPECT_FALSE(text->splitAtIndex(0));
        EXPECT_EQ(title->value(), u"new");
        ASSERT_TRUE(firstText(title));
        EXPECT_NE(firstText(title), text);
        EXPECT_EQ(firstText(title)->string(), u"new");
        EXPECT_EQ(title->referenceCount(), 2);
        setting.set(a, u"newer");
        EXPECT_EQ(title->value(), u"newer");
    }
}

TEST(WQXMLAttrTest, TheOldTextDiesWithTheAttribute) {
    const auto document = parse("<a title='old'/>");
    const auto a = document->documentElement();
    const auto title = firstAttribute(a);
    const auto text = firstText(title);
    a->removeAttribute(u"title");
    EXPECT_EQ(title->nodeType(), 0x7fff);
    EXPECT_EQ(text->nodeType(), 0x7fff);
}

TEST(WQXMLAttrTest, AnEditOfTheTextChangesTheValueAndIsHeardByTheElement) {
    const auto document = parse("<r><a title='old'/></r>");
    const auto a = element(document, u"a");
    const auto title = firstAttribute(a);
    Log log;
    a->addListener_forEvent_useCapture(&log, kEverything, false);
    firstText(title)->setString(u"a < \"b\" &amp; \u00e9");
    EXPECT_EQ(title->value(), u"a < \"b\" &amp; \u00e9");
    EXPECT_EQ(a->getAttribute(u"title"), u"a < \"b\" &amp; \u00e9");
    EXPECT_EQ(serialised(a), "<a title=\"a &lt; &quot;b&quot; &amp;amp; &#xE9;\"/>");
    firstText(title)->deleteCharactersInRange({1, firstText(title)->length() - 1});
    firstText(title)->appendString(u"z");
    EXPECT_EQ(title->value(), u"az");
    EXPECT_THAT(log.heard, ElementsAre("2/3 #text<-(null)", "2/3 #text<-(null)", "2/3 #text<-(null)"));
}

TEST(WQXMLAttrTest, ATextThatIsAddedIsAPartOfTheValueUntilThatIsReplaced) {
    const auto document = parse("<a title='one'/>");
    const auto title = firstAttribute(document->documentElement());
    const auto text = document->createTextNode(u" two");
    title->appendChild(text);
    EXPECT_EQ(title->value(), u"one two");
    const auto first = title->removeChild(title->firstChild());
    EXPECT_EQ(title->value(), u" two");
    title->setValue(u"three");
    EXPECT_EQ(text->nodeType(), 0x7fff);
    EXPECT_EQ(first->nodeValue(), u"one");  // was out of the tree in time
    expectSound(title);
}

// ---- Identifiers

namespace {

constexpr const char* kDeclared = "<!DOCTYPE r [<!ENTITY e 'x'><!ATTLIST a i ID #IMPLIED>]>";

struct Identified {
    const char* kind;
    std::string document;
    bool html;
    const char16_t* attribute;
};
const std::vector<Identified> kIdentified = {
    {"xml_id", "<r><a xml:id='k'/><b/></r>", false, u"xml:id"},
    {"declared", kDeclared + std::string("<r><a i='k'/><b/></r>"), false, u"i"},
    {"html_id", "<html><body><a id='k'>t</a><b></b></body></html>", true, u"id"},
    {"html_name", "<html><body><a name='k'>t</a><b></b></body></html>", true, u"name"},
};

void PrintTo(const Identified& identified, std::ostream* out) { *out << identified.kind; }

class Identifiers : public testing::TestWithParam<Identified> {
protected:
    Ref<WQXMLDocument> document = GetParam().html ? parseHTML(GetParam().document) : parse(GetParam().document);
    Ref<WQXMLElement> a = element(document, u"a");
    Ref<WQXMLAttr> identifier = attribute(a, GetParam().attribute);
};

}  // namespace

TEST_P(Identifiers, FollowTheValue) {
    EXPECT_EQ(document->getElementById(u"k"), a);
    identifier->setValue(u"m");
    EXPECT_FALSE(document->getElementById(u"k"));
    EXPECT_EQ(document->getElementById(u"m"), a);
    identifier->setValue(u"m");
    EXPECT_EQ(document->getElementById(u"m"), a);
    identifier->setValue(u"\u00e9");
    EXPECT_FALSE(document->getElementById(u"m"));
    EXPECT_EQ(document->getElementById(u"\u00e9"), a);
}

TEST_P(Identifiers, AreGoneWithoutAValueAndComeBackWithOne) {
    for (const NSString& nothing : {NSString(), NSString(u"")}) {
        identifier->setValue(nothing);
        EXPECT_FALSE(document->getElementById(u"k"));
        EXPECT_FALSE(document->getElementById(u"m"));
        identifier->setValue(u"m");
        EXPECT_EQ(document->getElementById(u"m"), a);
    }
}

TEST_P(Identifiers, AreSetByTheElement) {
    const auto colon = a->firstAttribute()->prefix() ? kXMLNamespace : nullptr;
    a->setAttribute_namespaceURI_value(GetParam().attribute, colon, u"m");
    EXPECT_EQ(attribute(a, GetParam().attribute), identifier);
    EXPECT_FALSE(document->getElementById(u"k"));
    EXPECT_EQ(document->getElementById(u"m"), a);
    a->setAttribute_value(GetParam().attribute, u"n");
    EXPECT_FALSE(document->getElementById(u"m"));
    EXPECT_EQ(document->getElementById(u"n"), a);
}

TEST_P(Identifiers, FollowEditsOfTheText) {
    firstText(identifier)->setString(u"m");
    EXPECT_FALSE(document->getElementById(u"k"));
    EXPECT_EQ(document->getElementById(u"m"), a);
    firstText(identifier)->appendString(u"n");
    EXPECT_FALSE(document->getElementById(u"m"));
    EXPECT_EQ(document->getElementById(u"mn"), a);
    firstText(identifier)->insertString_atIndex(u"l", 0);
    EXPECT_EQ(document->getElementById(u"lmn"), a);
    firstText(identifier)->deleteCharactersInRange({0, 2});
    EXPECT_EQ(document->getElementById(u"n"), a);
    identifier->setValue(u"o");
    EXPECT_FALSE(document->getElementById(u"n"));
    EXPECT_EQ(document->getElementById(u"o"), a);
}

TEST_P(Identifiers, AreForgottenWithTheirAttribute) {
    identifier->setValue(u"m");
    identifier = nullptr;
    a->removeChild(a->firstAttribute());
    EXPECT_FALSE(a->hasAttributes());
    EXPECT_FALSE(document->getElementById(u"k"));
    EXPECT_FALSE(document->getElementById(u"m"));
}

TEST_P(Identifiers, AreForgottenWithTheirElement) {
    identifier->setValue(u"m");
    const auto parent = a->parentNode();
    parent->removeChild(a);
    a = nullptr;
    EXPECT_EQ(identifier->nodeType(), 0x7fff);
    EXPECT_FALSE(document->getElementById(u"k"));
    EXPECT_FALSE(document->getElementById(u"m"));
}

TEST_P(Identifiers, AreForgottenByTheDocumentThatTheyLeft) {
    const auto other = parse("<s/>");
    identifier->setValue(u"m");
    other->documentElement()->appendChild(a);
    EXPECT_FALSE(document->getElementById(u"k"));
    EXPECT_FALSE(document->getElementById(u"m"));
    EXPECT_FALSE(other->getElementById(u"m"));
    document = nullptr;
    EXPECT_EQ(identifier->value(), u"m");
    identifier->setValue(u"n");
    EXPECT_EQ(identifier->value(), u"n");
    EXPECT_FALSE(other->getElementById(u"m"));
    other->documentElement()->removeChild(a);
    a = nullptr;
    identifier = nullptr;
    EXPECT_FALSE(other->getElementById(u"n"));
}

TEST_P(Identifiers, MayBeSetOnceTheElementIsRemoved) {
    a->parentNode()->removeChild(a);
    identifier->setValue(u"m");
    EXPECT_EQ(identifier->value(), u"m");
    EXPECT_FALSE(document->getElementById(u"k"));
    document = nullptr;
    identifier->setValue(u"n");
    EXPECT_EQ(identifier->value(), u"n");
}

INSTANTIATE_TEST_SUITE_P(WQXMLAttrTest, Identifiers, testing::ValuesIn(kIdentified));

TEST(WQXMLAttrTest, OtherAttributesAreNoIdentifiers) {
    const auto document = parse("<r><a id='k' name='k' i='k'/></r>");
    firstAttribute(element(document, u"a"))->setValue(u"m");
    EXPECT_FALSE(document->getElementById(u"k"));
    EXPECT_FALSE(document->getElementById(u"m"));
}

TEST(WQXMLAttrTest, ANewIdentifierIsKnownAtOnce) {
    const auto document = parse(kDeclared + std::string("<r><a/><b/></r>"));
    const auto a = element(document, u"a"), b = element(document, u"b");
    a->setAttribute_value(u"i", u"k");
    b->setAttribute_namespaceURI_value(u"xml:id", kXMLNamespace, u"m");
    EXPECT_EQ(document->getElementById(u"k"), a);
    EXPECT_EQ(document->getElementById(u"m"), b);
    b->setAttribute_value(u"i", u"n");  // declared for the other
    EXPECT_FALSE(document->getElementById(u"n"));
}

TEST(WQXMLAttrTest, ATakenIdentifierStaysWithItsFirstElement) {
    for (const bool byElement : {false, true}) {
        SCOPED_TRACE(byElement);
        const auto document = parse("<r><a xml:id='k'/><b xml:id='m'/></r>");
        const auto a = element(document, u"a"), b = element(document, u"b");
        if (byElement)
            b->setAttribute_value(u"xml:id", u"k");
        else
            firstAttribute(b)->setValue(u"k");
        EXPECT_EQ(firstAttribute(b)->value(), u"k");
        EXPECT_EQ(document->getElementById(u"k"), a);
        EXPECT_FALSE(document->getElementById(u"m"));
        b->removeAttribute_namespaceURI(u"id", kXMLNamespace);
        EXPECT_EQ(document->getElementById(u"k"), a);
        a->removeAttribute_namespaceURI(u"id", kXMLNamespace);
        EXPECT_FALSE(document->getElementById(u"k"));
    }
}

TEST(WQXMLAttrTest, AnIdentifierWithAReferenceInItIsNotTouchedAfterItsDeath) {
    const std::vector<std::function<void(const Ref<WQXMLDocument>&, Ref<WQXMLElement>&)>> deaths = {
        [](const auto&, auto& a) { a->removeAttribute(u"i"); },
        [](const auto&, auto& a) { a->removeChild(a->firstAttribute()); },
        [](const auto&, auto& a) { firstAttribute(a)->setValue(u"m"), a->removeAttribute(u"i"); },
        [](const auto&, auto& a) { firstAttribute(a)->setValue(nullptr), a->removeAttribute(u"i"); },
        [](const auto&, auto& a) { firstText(a->firstAttribute())->setString(u"m"), a->removeAttribute(u"i"); },
        [](const auto&, auto& a) { a->firstAttribute()->removeChildren(), a->removeAttribute(u"i"); },
        [](const auto& document, auto& a) { document->documentElement()->setInnerXML(u"<n/>"), a = nullptr; },
        [](const auto& document, auto& a) { document->documentElement()->removeChild(a), a = nullptr; },
        [](const auto& document, auto& a) { document->setDocumentElement(document->createElement(u"n")), a = nullptr; },
        [](const auto&, auto& a) { parse("<s/>")->documentElement()->appendChild(a), a = nullptr; },
    };
    for (size_t death = 0; death < deaths.size(); ++death) {
        SCOPED_TRACE(death);
        const auto document = parse(kDeclared + std::string("<r><a i='k&e;'/></r>"));
        auto a = element(document, u"a");
        EXPECT_EQ(a->getAttribute(u"i"), u"kx");
        deaths[death](document, a);
        for (const char16_t* name : {u"k&e;", u"kx", u"k", u"&e;", u"x", u"m", u""}) EXPECT_FALSE(document->getElementById(name));
    }
}

TEST(WQXMLAttrTest, AnIdentifierWithAReferenceInItIsForgottenWhereTheElementSetsAnother) {
    for (const bool byNamespace : {false, true}) {
        SCOPED_TRACE(byNamespace);
        const auto document = parse(kDeclared + std::string("<r><a i='k&e;'/></r>"));
        const auto a = element(document, u"a");
        if (byNamespace)
            a->setAttribute_namespaceURI_value(u"i", nullptr, u"m");
        else
            a->setAttribute_value(u"i", u"m");
        EXPECT_EQ(document->getElementById(u"m"), a);
        for (const char16_t* name : {u"k&e;", u"kx", u"k"}) EXPECT_FALSE(document->getElementById(name));
        a->removeAttribute(u"i");
        for (const char16_t* name : {u"k&e;", u"kx", u"k", u"m"}) EXPECT_FALSE(document->getElementById(name));
    }
}

TEST(WQXMLAttrTest, AnEntityThatDiesBeforeTheAttributeThatNamesItDoesNoHarm) {
    const auto document = parse(kDeclared + std::string("<r><a i='k&e;' j='1&e;2'/></r>"));
    document->removeChild(document->documentElement()->previousSibling());  // the document type
    const auto a = element(document, u"a");
    EXPECT_EQ(a->getAttribute(u"j"), u"12");
    a->removeAttribute(u"i");
    for (const char16_t* name : {u"k&e;", u"kx", u"k"}) EXPECT_FALSE(document->getElementById(name));
}
