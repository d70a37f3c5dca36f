#include "common/core/css/Selector.h"

#include <gtest/gtest.h>
#include <libxml/HTMLparser.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "tests/common/core/css/Sheets.h"

using namespace CSS;
using test::printedBy;

namespace {

// ---- Documents

using Document = std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)>;

Document xml(const std::string& text, int options = 0) {
    return {xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr, options), xmlFreeDoc};
}
Document html(const std::string& text) {
    const int options = HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING;
    return {htmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, "UTF-8", options), xmlFreeDoc};
}

const xmlChar* bytes(const char* text) { return reinterpret_cast<const xmlChar*>(text); }

std::string attribute(xmlNode* element, const char* name) {
    xmlChar* const value = xmlGetNoNsProp(element, bytes(name));
    if (!value) return "";
    std::string text(reinterpret_cast<const char*>(value));
    xmlFree(value);
    return text;
}

void addElements(xmlNode* node, std::vector<xmlNode*>& elements) {
    for (; node; node = node->next) {
        if (node->type != XML_ELEMENT_NODE) continue;
        elements.push_back(node);
        addElements(node->children, elements);
    }
}
std::vector<xmlNode*> elementsOf(const Document& document) {
    std::vector<xmlNode*> elements;
    addElements(xmlDocGetRootElement(document.get()), elements);
    return elements;
}
xmlNode* elementOf(const Document& document, const std::string& id) {
    for (xmlNode* element : elementsOf(document))
        if (attribute(element, "id") == id) return element;
    return nullptr;
}

// ---- Selectors

SharedPtr<Selector> selectorOf(const std::string& text) {
    const SharedPtr<Stylesheet> sheet = Parser().Parse(text + "{}");
    return sheet->styleRules.at(0)->selectors.at(0);
}

// The ids of the elements that match, in document order; an element without one is "?".
std::string matched(const Document& document, const Selector& selector) {
    std::vector<std::string> ids;
    for (xmlNode* element : elementsOf(document))
        if (selector.Match(element)) ids.push_back(attribute(element, "id").empty() ? "?" : attribute(element, "id"));
    return test::joined(ids, " ");
}

struct MatchRow {
    std::string document, selector, ids;
};
void expectMatches(const std::vector<MatchRow>& rows, bool isHtml = false) {
    for (const MatchRow& row : rows) {
        SCOPED_TRACE(row.selector + " in " + row.document);
        EXPECT_EQ(matched(isHtml ? html(row.document) : xml(row.document), *selectorOf(row.selector)), row.ids);
    }
}

std::string textOf(const SimpleSelector& selector) {
    std::string text;
    selector.AppendSelectorText(text);
    return text;
}
std::string printOf(const SimpleSelector& selector) {
    return printedBy([&] { selector.Print(); });
}

TypeSelector* part(const std::string& name, int combinator = 0) {
    auto* const made = new TypeSelector;
    made->name = name;
    made->combinator = static_cast<TypeSelector::Combinator>(combinator);
    return made;
}

// a COMBINATOR b, made by hand.
SharedPtr<Selector> pair(int combinator) {
    const SharedPtr<Selector> selector = new Selector;
    selector->Prepend(part("a"));
    selector->Prepend(part("b", combinator));
    return selector;
}

// A condition of a kind and name with a value.
template <class Kind> SharedPtr<Kind> conditionOf(const std::string& name, const std::string& value) {
    const SharedPtr<Kind> condition = new Kind(name);
    condition->attributeValue = value;
    return condition;
}

// Writes down its own end.
class Probe : public PseudoElement {
public:
    explicit Probe(int& aNumberOfDeaths) : PseudoElement(""), numberOfDeaths(aNumberOfDeaths) {}
    ~Probe() override { ++numberOfDeaths; }
    int& numberOfDeaths;
};

// Asking for the work's answer is a hard assertion; without hard assertions the answer is `mild`.
template <class Work, class Answer>
void expectRefused(Work&& work, const Answer& mild, const std::string& function, const std::string& expression = "0") {
#ifdef WQ_NO_HARD_ASSERTIONS
    static_cast<void>(function), static_cast<void>(expression);
    EXPECT_EQ(work(), mild);
#else
    static_cast<void>(mild);
    test::expectAssertion([&] { static_cast<void>(work()); }, expression, function, "Selector");
#endif
}

std::string repeated(const std::string& text, size_t times) {
    std::string all;
    for (size_t i = 0; i < times; ++i) all += text;
    return all;
}

}  // namespace

// ---- What selectors are

TEST(Selector, KindsHaveTheirCodes) {
    EXPECT_EQ(Selector().selectorType, 1);
    EXPECT_EQ(TypeSelector().selectorType, 2);
    EXPECT_EQ(PseudoElement("x").selectorType, 7);
    EXPECT_EQ(AttributeNameSelector("x").selectorType, 8);
    EXPECT_EQ(AttributeValueSelector("x").selectorType, 9);
    EXPECT_EQ(AttributeListSelector("x").selectorType, 10);
    EXPECT_EQ(AttributeHyphenSelector("x").selectorType, 11);
    EXPECT_EQ(AttributePrefixSelector("x").selectorType, 12);
    EXPECT_EQ(AttributeSuffixSelector("x").selectorType, 13);
    EXPECT_EQ(AttributeSubstringSelector("x").selectorType, 14);
    EXPECT_EQ(IDSelector("#x").selectorType, 15);
}

TEST(Selector, KindsAreSimpleSelectors) {
    static_assert(std::is_abstract_v<SimpleSelector> && std::is_abstract_v<AttributeSelector>);
    static_assert(std::is_base_of_v<SharedObject, SimpleSelector> && std::is_base_of_v<SimpleSelector, AttributeSelector>);
    static_assert(std::is_base_of_v<SimpleSelector, Selector> && std::is_base_of_v<SimpleSelector, TypeSelector>);
    static_assert(std::is_base_of_v<SimpleSelector, IDSelector> && std::is_base_of_v<SimpleSelector, PseudoElement>);
    static_assert(sizeof(TypeSelector::Combinator) == 4 && std::is_same_v<decltype(Selector().Specificity()), uint16_t>);
}

TEST(Selector, CombinatorsHaveTheirCodes) {
    EXPECT_EQ(TypeSelector::None, 0);
    EXPECT_EQ(TypeSelector::Descendant, 1);
    EXPECT_EQ(TypeSelector::Child, 2);
    EXPECT_EQ(TypeSelector::AdjacentSibling, 3);
    EXPECT_EQ(TypeSelector::GeneralSibling, 4);
}

TEST(Selector, IsUnlinkedAtFirst) {
    const Selector selector;
    const TypeSelector type;
    const AttributeListSelector list("x");
    EXPECT_EQ(selector.refCount, 0);
    EXPECT_EQ(selector.chainHead, nullptr);
    EXPECT_EQ(selector.next, nullptr);
    EXPECT_EQ(type.chainLeft, nullptr);
    EXPECT_EQ(type.next, nullptr);
    EXPECT_EQ(type.combinator, 0);
    EXPECT_EQ(list.attributeName, "x");
    EXPECT_EQ(list.attributeValue, "");
    EXPECT_FALSE(list.isClass);
    EXPECT_EQ(IDSelector("#x").name, "#x");
    EXPECT_EQ(PseudoElement("x").name, "x");
}

TEST(Selector, PrependedPartsHaveTheOlderOnesOnTheirLeft) {
    const SharedPtr<Selector> selector = new Selector;
    TypeSelector *const a = part("a"), *const b = part("b"), *const c = part("c");
    selector->Prepend(a);
    EXPECT_EQ(selector->chainHead, a);
    EXPECT_EQ(a->chainLeft, nullptr);
    selector->Prepend(b);
    selector->Prepend(c);
    EXPECT_EQ(selector->chainHead, c);
    EXPECT_EQ(c->chainLeft, b);
    EXPECT_EQ(b->chainLeft, a);
    EXPECT_EQ(a->chainLeft, nullptr);
}

TEST(Selector, AppendedConditionsComeLast) {
    TypeSelector type;
    auto *const x = new PseudoElement("x"), *const y = new PseudoElement("y"), *const z = new PseudoElement("z");
    type.Append(x);
    EXPECT_EQ(type.next, x);
    type.Append(y);
    type.Append(z);
    EXPECT_EQ(type.next, x);
    EXPECT_EQ(x->next, y);
    EXPECT_EQ(y->next, z);
    EXPECT_EQ(z->next, nullptr);
}

TEST(Selector, AppendGoesOnBehindWhatWasAppendedToACondition) {
    TypeSelector type;
    type.name = "a";
    auto* const x = new PseudoElement("x");
    type.Append(x);
    x->Append(new PseudoElement("y"));
    type.Append(new PseudoElement("z"));
    x->Append(new PseudoElement("w"));
    type.Append(new PseudoElement("v"));
    EXPECT_EQ(textOf(type), "a:x:y:z:w:v");
}

TEST(Selector, AppendTakesAWholeList) {
    TypeSelector type;
    type.name = "a";
    auto* const x = new PseudoElement("x");
    x->Append(new PseudoElement("y"));
    type.Append(x);
    type.Append(new PseudoElement("z"));
    EXPECT_EQ(textOf(type), "a:x:y:z");
}

TEST(Selector, DestroysItsPartsAndTheirConditions) {
    int numberOfDeaths = 0;
    {
        const SharedPtr<Selector> selector = pair(1);
        selector->chainHead->Append(new Probe(numberOfDeaths));
        selector->chainHead->Append(new Probe(numberOfDeaths));
        selector->chainHead->chainLeft->Append(new Probe(numberOfDeaths));
        selector->Append(new Probe(numberOfDeaths));
        EXPECT_EQ(numberOfDeaths, 0);
    }
    EXPECT_EQ(numberOfDeaths, 4);
}

TEST(Selector, APartDestroysWhatIsOnItsLeft) {
    int numberOfDeaths = 0;
    TypeSelector* const left = part("a");
    left->Append(new Probe(numberOfDeaths));
    TypeSelector* const right = part("b", 1);
    right->chainLeft = left;
    delete right;
    EXPECT_EQ(numberOfDeaths, 1);
}

// ---- Matching: names

TEST(SelectorMatch, AStarMatchesEveryElement) {
    expectMatches({
        {"<a id='1'><b id='2'/>x<c id='3'/></a>", "*", "1 2 3"},
        {"<a id='1'><x:b id='2' xmlns:x='u:x'/></a>", "*", "1 2"},
    });
    expectMatches({{"<p id='1'><b id='2'>x</b></p>", "*", "? ? 1 2"}}, true);
}

TEST(SelectorMatch, NamesCompareWithoutCaseInHtmlDocumentsOnly) {
    expectMatches({{"<P id='1'></P>", "P", "1"}, {"<P id='1'></P>", "p", "1"}, {"<P id='1'></P>", "pp", ""}}, true);
    expectMatches({
        {"<p id='1'><P id='2'/></p>", "P", "2"},
        {"<p id='1'><P id='2'/></p>", "p", "1"},
        {"<html xmlns='http://www.w3.org/1999/xhtml' id='1'/>", "HTML", ""},
    });
}

TEST(SelectorMatch, NamesOfAnElementWithoutDocumentCompareExactly) {
    const std::unique_ptr<xmlNode, decltype(&xmlFreeNode)> element(xmlNewNode(nullptr, bytes("p")), xmlFreeNode);
    EXPECT_TRUE(selectorOf("p")->Match(element.get()));
    EXPECT_TRUE(selectorOf("*")->Match(element.get()));
    EXPECT_FALSE(selectorOf("P")->Match(element.get()));
    EXPECT_FALSE(selectorOf("* p")->Match(element.get()));
    EXPECT_FALSE(selectorOf("* > p")->Match(element.get()));
    EXPECT_FALSE(selectorOf("* + p")->Match(element.get()));
}

TEST(SelectorMatch, TheLocalNameAloneCounts) {
    expectMatches({
        {"<x:p id='1' xmlns:x='u:x'><p id='2' xmlns='u:y'/><p id='3'/></x:p>", "p", "1 2 3"},
        {"<x:p id='1' xmlns:x='u:x'/>", "x", ""},
        {"<x:p id='1' xmlns:x='u:x'/>", "x\\:p", ""},
    });
}

TEST(SelectorMatch, NamesCompareByBytesAndEscapesStayEscapes) {
    expectMatches({
        {"<\xc3\xa9 id='1'/>", "\xc3\xa9", "1"},
        {"<\xc3\xa9 id='1'/>", "\xc3\x89", ""},
        {"<a id='1'/>", "\\61", ""},
    });
}

TEST(SelectorMatch, APartMatchesByItselfAlone) {
    const Document document = xml("<r><b id='1'/></r>");
    const auto selector = selectorOf("a > b");
    EXPECT_TRUE(selector->chainHead->Match(elementOf(document, "1")));
    EXPECT_FALSE(selector->Match(elementOf(document, "1")));
}

// ---- Matching: combinators

TEST(SelectorMatch, Descendants) {
    expectMatches({
        {"<a id='1'><b id='2'/><c id='3'><b id='4'/></c></a>", "a b", "2 4"},
        {"<a id='1'><b id='2'><b id='3'/></b></a>", "b b", "3"},
        {"<b id='1'><b id='2'/></b>", "a b", ""},
        {"<a id='1'><c id='2'><d id='3'/></c></a>", "a c d", "3"},
        {"<a id='1'><c id='2'><d id='3'/></c></a>", "c a d", ""},
        {"<a id='1' class='x'><a id='2'><b id='3'/></a></a>", "a.x b", "3"},
    });
}

TEST(SelectorMatch, Children) {
    expectMatches({
        {"<a id='1'><b id='2'/><c id='3'><b id='4'/></c></a>", "a > b", "2"},
        {"<a id='1'><b id='2'><c id='3'/></b></a>", "a > b > c", "3"},
        {"<a id='1'><b id='2'><c id='3'/></b></a>", "a > c", ""},
    });
}

TEST(SelectorMatch, AdjacentSiblings) {
    expectMatches({
        {"<r><a id='1'/><b id='2'/><b id='3'/></r>", "a + b", "2"},
        {"<r><b id='1'/><a id='2'/></r>", "a + b", ""},
        {"<r><a id='1'/>x<b id='2'/></r>", "a + b", "2"},
        {"<r><a id='1'/><!-- c --><?p?><![CDATA[x]]> <b id='2'/></r>", "a + b", "2"},
        {"<r><a id='1'/><c id='2'/><b id='3'/></r>", "a + b", ""},
        {"<r><a id='1'/><c id='2'/><b id='3'/></r>", "a + c + b", "3"},
        {"<r><a id='1'/><a id='2'><b id='3'/></a></r>", "a + b", ""},
        {"<r>x<!-- c --><b id='1'/></r>", "* + b", ""},
    });
}

TEST(SelectorMatch, TheRootHasNeitherAncestorsNorSiblings) {
    for (const char* selector : {"* b", "a b", "* > b", "* + b"}) {
        SCOPED_TRACE(selector);
        EXPECT_EQ(matched(xml("<!-- c --><?p?><b id='1'/>"), *selectorOf(selector)), "");
        EXPECT_EQ(matched(xml("<!DOCTYPE b [<!ELEMENT b ANY>]><b id='1'/>"), *selectorOf(selector)), "");
    }
}

TEST(SelectorMatch, AFragmentIsNoAncestor) {
    const Document document = xml("<a/>");
    xmlNode* const fragment = xmlNewDocFragment(document.get());
    xmlNode* const element = xmlNewDocNode(document.get(), nullptr, bytes("b"), nullptr);
    xmlAddChild(fragment, element);
    EXPECT_TRUE(selectorOf("b")->Match(element));
    EXPECT_FALSE(selectorOf("* b")->Match(element));
    EXPECT_FALSE(selectorOf("* > b")->Match(element));
    xmlFreeNode(fragment);
}

TEST(SelectorMatch, TheNearestAncestorIsTakenForGood) {
    expectMatches({
        {"<a id='1'><b id='2'><b id='3'><c id='4'/></b></b></a>", "a > b c", ""},
        {"<a id='1'><b id='2'><c id='3'/></b></a>", "a > b c", "3"},
        {"<r><a id='1'/><b id='2'><b id='3'><c id='4'/></b></b></r>", "a + b c", ""},
        {"<a id='1'><b id='2'><b id='3'><c id='4'/></b></b></a>", "a b c", "4"},
        {"<a id='1'><b id='2' class='x'><b id='3'><c id='4'/></b></b></a>", "a > b.x c", "4"},
    });
}

TEST(SelectorMatch, MixesCombinators) {
    const std::string document =
        "<a id='1'><b id='2'><c id='3'/><d id='4'/></b><b id='5'><e id='6'><c id='7'/><d id='8'/></e><d id='9'/></b></a>";
    expectMatches({
        {document, "a b > c + d", "4"},
        {document, "a c + d", "4 8"},
        {document, "b + b d", "8 9"},
        {document, "b + b > d", "9"},
        {document, "a > b + b > e > c", "7"},
        {document, "* * * *", "7 8"},
    });
}

TEST(SelectorMatch, GeneralSiblingsNeverMatch) {
    for (const char* document :
         {"<r><a/><b id='1'/></r>", "<r><a/><a/>x<b id='1'/></r>", "<r><a/><c/><b id='1'/></r>", "<r><b id='1'/></r>"})
        EXPECT_EQ(matched(xml(document), *pair(4)), "") << document;
}

TEST(SelectorMatch, APartOnTheLeftWithoutACombinatorNeverMatches) {
    const Document document = xml("<a><a/><b id='1'/></a>");
    for (const int combinator : {0, 5, -1}) {
        SCOPED_TRACE(combinator);
        EXPECT_EQ(matched(document, *pair(combinator)), "");
    }
    for (const int combinator : {1, 2, 3}) EXPECT_EQ(matched(document, *pair(combinator)), "1");
}

TEST(SelectorMatch, TheCombinatorOfTheLeftmostPartDoesNotCount) {
    const SharedPtr<Selector> selector = new Selector;
    selector->Prepend(part("a", 2));
    EXPECT_EQ(matched(xml("<a id='1'/>"), *selector), "1");
}

// ---- Matching: conditions

TEST(SelectorMatch, AllConditionsMustMatch) {
    expectMatches({
        {"<r><a id='1' class='x y' n='v'/><a id='2' class='x' n='v'/><b id='3' class='x y' n='v'/></r>", "a.x.y[n=v]", "1"},
        {"<r><a id='1' class='x'/><b id='2' class='x'/><b id='3'/></r>", ".x", "1 2"},
        {"<r id='1' class='x'><a id='2' class='y'/></r>", ".x > .y", "2"},
    });
}

// None of these reaches a condition that is not implemented.
TEST(SelectorMatch, ConditionsBehindTheFirstThatFailsAreNotTried) {
    for (const char* selector :
         {"b#x", "*.y#x", "*[y]#x", "*:hover#x", "#x b", "#x > b", ".y[n^=v]", "[n=w][n$=v]", "[n~=w][n*=v]", "[n|=w]#x", "#x > a.y"}) {
        SCOPED_TRACE(selector);
        EXPECT_EQ(matched(xml("<a id='x' n='v'/>"), *selectorOf(selector)), "");
    }
}

TEST(SelectorMatch, APseudoElementNeverMatches) {
    for (const char* selector : {"a:first", ":x", "a:lang(en)", "a.x:first-line"})
        EXPECT_EQ(matched(xml("<a id='x' class='x'/>"), *selectorOf(selector)), "") << selector;
}

TEST(SelectorMatchDeathTest, IdsAndPartsOfValuesAreNotImplemented) {
    const Document document = xml("<a id='x' n='v'/>");
    for (const char* text : {"#x", "a#y", "a[n]#x", "a[n^=v]", "a[n$=v]", "a[n*=v]", "[none^=v]", "a#x:hover"}) {
        SCOPED_TRACE(text);
        const auto selector = selectorOf(text);
        expectRefused([&] { return selector->Match(elementOf(document, "x")); }, false, "Match");
    }
}

TEST(SelectorMatchDeathTest, APartOnTheLeftThatIsNotImplementedIsReachedInItsTurn) {
    const Document document = xml("<a id='x'><b id='y'/></a>");
    const auto selector = selectorOf("a#x > b");
    EXPECT_FALSE(selector->Match(elementOf(document, "x")));
    expectRefused([&] { return selector->Match(elementOf(document, "y")); }, false, "Match");
}

TEST(SelectorMatchDeathTest, ASelectorWithoutPartsFails) {
    const Document document = xml("<a id='x'/>");
    expectRefused([&] { return Selector().Match(elementOf(document, "x")); }, false, "Match", "s");
}

// ---- Matching: the look-up of attributes

TEST(SelectorMatch, AnAttributeMayBeEmptyButNotMissing) {
    expectMatches({
        {"<r><a id='1' n=''/><a id='2' n='v'/><a id='3' m='v'/></r>", "[n]", "1 2"},
        {"<r><a id='1' n=''/><a id='2'/></r>", "[n~=v]", ""},
        {"<r id='1' xmlns='u:x'/>", "[xmlns]", ""},
    });
}

TEST(SelectorMatch, NamesAndValuesOfAttributesCompareExactly) {
    expectMatches({
        {"<r><a id='1' N='v'/><a id='2' n='V'/><a id='3' n='v'/></r>", "[n=v]", "3"},
        {"<r><a id='1' N='v'/><a id='2' n='V'/></r>", "[n]", "2"},
    });
    expectMatches(
        {
            {"<p id='1' class='x' TITLE='T'></p>", ".X", ""},
            {"<p id='1' class='x' TITLE='T'></p>", "[title=t]", ""},
            {"<p id='1' class='x' TITLE='T'></p>", "[title=T]", "1"},
            {"<p id='1' class='x' TITLE='T'></p>", "[TITLE=T]", ""},
            {"<p id='1' class='x' TITLE='T'></p>", "[TITLE]", ""},
        },
        true);
}

TEST(SelectorMatch, AnAttributeInANamespaceIsFoundByItsLocalName) {
    const std::string document = "<r xmlns:x='u:x'><a id='1' x:n='v-w'/><a id='2' xml:lang='en'/></r>";
    expectMatches({
        {document, "[n]", "1"},
        {document, "[n=v-w]", "1"},
        {document, "[n~=v-w]", "1"},
        {document, "[n|=v]", "1"},
        {document, "[lang=en]", "2"},
        {document, "[x\\:n]", ""},
    });
}

TEST(SelectorMatch, ADefaultOfTheDtdIsAnAttribute) {
    const std::string document = "<!DOCTYPE r [<!ATTLIST a n CDATA 'v-w'>]><r><a id='1'/><a id='2' n='other'/><b id='3'/></r>";
    expectMatches({
        {document, "[n]", "1 2"},
        {document, "[n=v-w]", "1"},
        {document, "[n~=v-w]", "1"},
        {document, "[n|=v]", "1"},
    });
}

TEST(SelectorMatch, ValuesWithEntityReferencesAreReadWhole) {
    const std::string document = "<!DOCTYPE r [<!ENTITY e 'b-c'>]><r><a id='1' n='a&e;d' m='x &e; y'/></r>";
    expectMatches({
        {document, "[n=ab-cd]", "1"},
        {document, "[n|=ab]", "1"},
        {document, "[m~=b-c]", "1"},
        {document, "[m~=y]", "1"},
    });
}

TEST(SelectorMatch, ValuesOfSeveralTextNodesAreReadWhole) {
    const Document document = xml("<r id='r' n='ab'/>");
    xmlAttr* const attr = xmlHasProp(elementOf(document, "r"), bytes("n"));
    xmlNode* const second = xmlNewDocText(document.get(), bytes("c-d"));
    second->parent = reinterpret_cast<xmlNode*>(attr);
    second->prev = attr->children;
    attr->children->next = second;
    attr->last = second;
    for (const char* selector : {"[n=abc-d]", "[n~=abc-d]", "[n|=abc]"})
        EXPECT_EQ(matched(document, *selectorOf(selector)), "r") << selector;
}

// ---- Matching: values, words, hyphens

TEST(SelectorMatch, AValueIsComparedWhole) {
    expectMatches({
        {"<r><a id='1' n='v'/><a id='2' n='vv'/><a id='3' n=' v'/><a id='4' n=''/><a id='5'/></r>", "[n=v]", "1"},
        {"<a id='1' n='v w'/>", "[n=v]", ""},
    });
}

TEST(SelectorMatch, AValueInQuotesMatchesQuotesOnly) {
    const std::string document = "<r><a id='1' n='v-w'/><a id='2' n='\"v-w\"'/><a id='3' n=\"'v-w'\"/><a id='4' n=''/></r>";
    expectMatches({
        {document, "[n=\"v-w\"]", "2"},
        {document, "[n='v-w']", "3"},
        {document, "[n~=\"v-w\"]", "2"},
        {document, "[n|=\"v\"]", ""},
        {document, "[n='']", ""},
    });
}

TEST(SelectorMatch, AnEmptyValueMatchesTheEmptyValue) {
    const Document document = xml("<r id='1' n=''/>");
    EXPECT_TRUE(conditionOf<AttributeValueSelector>("n", "")->Match(elementOf(document, "1")));
    EXPECT_FALSE(conditionOf<AttributeValueSelector>("m", "")->Match(elementOf(document, "1")));
}

TEST(SelectorMatch, WordsStandBetweenBlanksAndTabs) {
    const struct {
        const char *value, *word;
        bool matches;
    } rows[] = {
        {"x", "x", true},        {"x  y", "x", true},       {"x  y", "y", true},     {"x  y", "z", false},    {"  x  ", "x", true},
        {"x&#9;y", "y", true},   {"&#9; x&#9;", "x", true}, {"x&#10;y", "x", false}, {"x&#10;y", "y", false}, {"x&#10;y z", "z", true},
        {"x&#13;y", "y", false}, {"xy", "x", false},        {"yx", "x", false},      {"X", "x", false},       {"xx x", "x", true},
        {"", "x", false},        {"  ", "x", false},        {"&#9;", "x", false},    {"x,y", "x", false},     {"x\xc2\xa0y", "x", false},
        {"x y", "x y", false},   {"", "", false},           {"  ", "", false},       {"x  y", "", false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.value) + " has the word " + row.word);
        const Document document = xml(std::string("<a id='1' n='") + row.value + "'/>");
        EXPECT_EQ(conditionOf<AttributeListSelector>("n", row.word)->Match(elementOf(document, "1")), row.matches);
    }
    EXPECT_EQ(matched(xml("<a id='1' class='x&#10;y'/>"), *selectorOf("[class=x\\ y]")), "");
}

TEST(SelectorMatch, AClassMatchesAsAListDoes) {
    const std::string document =
        "<r><a id='1' class='x  y'/><a id='2' class='y'/><a id='3' class='xy'/><a id='4' class=''/><a id='5'/></r>";
    expectMatches({
        {document, ".x", "1"},
        {document, "[class~=x]", "1"},
        {document, ".y", "1 2"},
        {document, "[class~=y]", "1 2"},
        {document, ".y.x", "1"},
    });
}

TEST(SelectorMatch, AHyphenMustFollowTheValue) {
    const struct {
        const char *value, *start;
        bool matches;
    } rows[] = {
        {"en-US", "en", true},       {"en", "en", false},        {"en-", "en", true},     {"en-US-x", "en", true},
        {"en-US-x", "en-US", false}, {" &#9;en-US", "en", true}, {"en -US", "en", false}, {"&#10;en-US", "en", false},
        {"EN-US", "en", false},      {"english-x", "en", false}, {"e-n", "en", false},    {"fr en-US", "en", false},
        {"fr-en", "en", false},      {"", "en", false},          {"  ", "en", false},     {"-en", "en", false},
        {"-en", "", true},           {" -en", "", true},         {"en", "", false},       {"", "", false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.value) + " begins with " + row.start);
        const Document document = xml(std::string("<a id='1' n='") + row.value + "'/>");
        EXPECT_EQ(conditionOf<AttributeHyphenSelector>("n", row.start)->Match(elementOf(document, "1")), row.matches);
        EXPECT_FALSE(conditionOf<AttributeHyphenSelector>("m", row.start)->Match(elementOf(document, "1")));
    }
    expectMatches({{"<r><a id='1' lang='en'/><a id='2' lang='en-US'/></r>", "[lang|=en]", "2"}});
}

// ---- Specificity

TEST(SelectorSpecificity, AddsUpNamesConditionsAndPseudoElements) {
    const struct {
        const char* selector;
        int specificity;
    } rows[] = {
        {"*", 0},           {"a", 1},
        {"a.b", 33},        {"*.b", 32},
        {".b", 32},         {"a b", 2},
        {"a * b", 2},       {"a > b + c", 3},
        {"a:first", 2},     {":first", 1},
        {":lang(en)", 1},   {"#x", 1024},
        {"a#x.b[c]", 1089}, {"#x#y", 2048},
        {"[c]", 32},        {"[c=d]", 32},
        {"[c~=d]", 32},     {"[c|=d]", 32},
        {"[c^=d]", 32},     {"[c$=d]", 32},
        {"[c*=d]", 32},     {"a#x b.c:d > e", 1024 + 32 + 1 + 3},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.selector);
        EXPECT_EQ(selectorOf(row.selector)->Specificity(), row.specificity);
    }
}

TEST(SelectorSpecificity, SpillsOverAndWraps) {
    EXPECT_EQ(selectorOf("a" + repeated(" a", 31))->Specificity(), 32);
    EXPECT_EQ(selectorOf(repeated(".x", 32))->Specificity(), 1024);
    EXPECT_EQ(selectorOf(repeated("#x", 32))->Specificity(), 32768);
    EXPECT_EQ(selectorOf("a" + repeated("#x", 64))->Specificity(), 1);
}

TEST(SelectorSpecificity, OfAConditionHasThatOfThoseBehindIt) {
    const auto selector = selectorOf("a#x.b:c");
    const SimpleSelector* const id = selector->chainHead->next;
    EXPECT_EQ(selector->chainHead->Specificity(), 1058);
    EXPECT_EQ(id->Specificity(), 1057);
    EXPECT_EQ(id->next->Specificity(), 33);
    EXPECT_EQ(id->next->next->Specificity(), 1);
}

TEST(SelectorSpecificity, OfAPartHasThatOfThePartsOnItsLeft) {
    const auto selector = selectorOf("#x a.b > c");
    EXPECT_EQ(selector->chainHead->Specificity(), 1058);
    EXPECT_EQ(selector->chainHead->chainLeft->Specificity(), 1057);
    EXPECT_EQ(selector->chainHead->chainLeft->chainLeft->Specificity(), 1024);
}

TEST(SelectorSpecificityDeathTest, ASelectorWithoutPartsHasNone) {
    expectRefused([] { return Selector().Specificity(); }, 0, "Specificity", "chainHead");
}

TEST(SelectorSpecificity, OfAStyleAttributeIsBit15) { EXPECT_EQ(SimpleSelector::StyleAttributeSpecificity(), 32768); }

TEST(SelectorSpecificity, WithWeightsIsAnOrOfShiftedFields) {
    const struct {
        int a, b, c, d, specificity;
    } rows[] = {
        {0, 0, 0, 0, 0},     {1, 0, 0, 0, 32768}, {0, 1, 0, 0, 1024},
        {0, 0, 1, 0, 32},    {0, 0, 0, 1, 1},     {1, 2, 3, 4, 32768 + 2048 + 96 + 4},
        {0, 1, 32, 0, 1024}, {0, 0, 1, 33, 33},   {0, 32, 0, 0, 32768},
        {2, 0, 0, 0, 0},     {0, 64, 0, 5, 5},    {0, 0, 0, 65537, 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.a << " " << row.b << " " << row.c << " " << row.d);
        EXPECT_EQ(SimpleSelector::SpecificityWithWeights(row.a, row.b, row.c, row.d), row.specificity);
    }
}

// ---- Text

TEST(SelectorText, IsTheSourceForm) {
    const struct {
        const char *selector, *text;
    } rows[] = {
        {"a", "a"},
        {"A", "A"},
        {"*", "*"},
        {".x", "*.x"},
        {"a.x.y", "a.x.y"},
        {"a  b", "a b"},
        {"a > b", "a>b"},
        {"a + b", "a+b"},
        {"a b>c + d", "a b>c+d"},
        {".x > .y", "*.x>*.y"},
        {"a:first", "a:first"},
        {":First-Line", "*:First-Line"},
        {"a:lang(en).x", "a:.x"},
        {"[ x = y ]", "*[x=\"y\"]"},
        {"[x=\"y\"]", "*[x=\"\"y\"\"]"},
        {"[x='y z']", "*[x=\"'y z'\"]"},
        {"[x~=y]", "*[x~=\"y\"]"},
        {"[x~=\"y\"]", "*[x~=\"\"y\"\"]"},
        {"[class~=y]", "*[class~=\"y\"]"},
        {"a.x[y=z]:v[u~=t] b", "a.x[y=\"z\"]:v[u~=\"t\"] b"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.selector);
        EXPECT_EQ(textOf(*selectorOf(row.selector)), row.text);
    }
}

TEST(SelectorText, IsAppended) {
    std::string text = "x,";
    selectorOf("a b")->AppendSelectorText(text);
    EXPECT_EQ(text, "x,a b");
}

TEST(SelectorText, WritesEveryCombinator) {
    const std::vector<std::pair<int, std::string>> rows{{0, "ab"}, {1, "a b"}, {2, "a>b"}, {3, "a+b"}, {4, "a~b"}, {5, "ab"}};
    for (const auto& row : rows) EXPECT_EQ(textOf(*pair(row.first)), row.second);
}

TEST(SelectorText, OfAPartHasThePartsOnItsLeft) {
    const auto selector = selectorOf("a > b.x + c");
    EXPECT_EQ(textOf(*selector->chainHead), "a>b.x+c");
    EXPECT_EQ(textOf(*selector->chainHead->chainLeft), "a>b.x");
}

TEST(SelectorText, OfAConditionHasThoseBehindIt) { EXPECT_EQ(textOf(*selectorOf("a.x:y[z=w]")->chainHead->next), ".x:y[z=\"w\"]"); }

TEST(SelectorText, ADotIsWrittenForAClassWhateverTheAttribute) {
    const auto condition = conditionOf<AttributeListSelector>("n", "v");
    EXPECT_EQ(textOf(*condition), "[n~=\"v\"]");
    condition->isClass = true;
    EXPECT_EQ(textOf(*condition), ".v");
}

TEST(SelectorText, OfASelectorWithoutPartsIsEmpty) { EXPECT_EQ(textOf(Selector()), ""); }

TEST(SelectorTextDeathTest, SomeConditionsHaveNone) {
    for (const char* condition : {"#x", "[x]", "[x|=y]", "[x^=y]", "[x$=y]", "[x*=y]"}) {
        SCOPED_TRACE(condition);
        const auto selector = selectorOf(std::string("a.b") + condition);
        expectRefused([&] { return textOf(*selector); }, "a.b", "AppendSelectorText");
        expectRefused([&] { return textOf(*selector->chainHead->next->next); }, "", "AppendSelectorText");
    }
}

// ---- Print

TEST(SelectorPrint, PutsTheCombinatorBehindItsPart) {
    const struct {
        const char *selector, *text;
    } rows[] = {
        {"a", "a "},           {"*", "* "},
        {"a b", "a b "},       {"a > b", "a b>"},
        {"a + b", "a b+"},     {"a > b + c d", "a b>c+d "},
        {".x", "*.x "},        {"a.x:y[z~=w]", "a.x:y[z~=\"w\"] "},
        {"a:lang(en)", "a: "}, {"a.b > c:d", "a.b c:d>"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.selector);
        EXPECT_EQ(printOf(*selectorOf(row.selector)), row.text);
    }
}

TEST(SelectorPrint, WritesEveryCombinator) {
    const std::vector<std::pair<int, std::string>> rows{{0, "a b "}, {1, "a b "}, {2, "a b>"}, {3, "a b+"}, {4, "a b~"}};
    for (const auto& row : rows) EXPECT_EQ(printOf(*pair(row.first)), row.second);
}

TEST(SelectorPrint, StopsAtTheFirstConditionWithoutAFormForPrinting) {
    for (const char* condition : {"#x", "[x]", "[x=y]", "[x|=y]", "[x^=y]", "[x$=y]", "[x*=y]"}) {
        SCOPED_TRACE(condition);
        EXPECT_EQ(printOf(*selectorOf(std::string("a") + condition + ".b")), "a ");
        EXPECT_EQ(printOf(*selectorOf(std::string("a.b:c") + condition + ".d > e:f")), "a.b:c e:f>");
        EXPECT_EQ(printOf(*selectorOf(std::string("a") + condition + ".b")->chainHead->next), "");
    }
}

TEST(SelectorPrint, OfAConditionHasThoseBehindIt) {
    EXPECT_EQ(printOf(*selectorOf("a.x:y.z")->chainHead->next), ".x:y.z");
    EXPECT_EQ(printOf(*selectorOf("a:x.y")->chainHead->next), ":x.y");
    EXPECT_EQ(printOf(*selectorOf("a[x~=y].z")->chainHead->next), "[x~=\"y\"].z");
}

TEST(SelectorPrint, HasNoTroubleWithPercentSigns) {
    EXPECT_EQ(printOf(*selectorOf("[x~='%s%n']")), "*[x~=\"'%s%n'\"] ");
    EXPECT_EQ(printOf(*selectorOf("a.\\%s:\\%n")), "a.\\%s:\\%n ");
}

TEST(SelectorPrint, OfASelectorWithoutPartsIsNothing) { EXPECT_EQ(printOf(Selector()), ""); }

// ---- Long selectors

TEST(LongSelector, AChainOf200000Descendants) {
    const size_t length = 200'000;
    const auto selector = selectorOf("a" + repeated(" a", length - 1));
    EXPECT_EQ(selector->Specificity(), 200'000 % 65'536);
    EXPECT_TRUE(textOf(*selector) == "a" + repeated(" a", length - 1));
    EXPECT_TRUE(printOf(*selector) == repeated("a ", length));

    const Document document = xml("<a/>");
    xmlNode* deepest = xmlDocGetRootElement(document.get());
    for (size_t i = 1; i < length; ++i) deepest = xmlAddChild(deepest, xmlNewDocNode(document.get(), nullptr, bytes("a"), nullptr));
    EXPECT_TRUE(selector->Match(deepest));
    EXPECT_FALSE(selector->Match(deepest->parent));
}

TEST(LongSelector, AChainOf200000Siblings) {
    const size_t length = 200'000;
    const auto selector = selectorOf("a" + repeated("+a", length - 1));
    EXPECT_TRUE(textOf(*selector) == "a" + repeated("+a", length - 1));

    const Document document = xml("<r>" + repeated("<a/>", length) + "</r>");
    xmlNode* const last = xmlDocGetRootElement(document.get())->last;
    EXPECT_TRUE(selector->Match(last));
    EXPECT_FALSE(selector->Match(last->prev));
}

TEST(LongSelector, AListOf200000Conditions) {
    const size_t length = 200'000;
    const auto selector = selectorOf("a" + repeated(".x", length));
    EXPECT_EQ(selector->Specificity(), (length * 32 + 1) % 65'536);
    EXPECT_TRUE(textOf(*selector) == "a" + repeated(".x", length));
    EXPECT_TRUE(printOf(*selector) == "a" + repeated(".x", length) + " ");
    EXPECT_EQ(matched(xml("<r><a id='1' class='y x'/><a id='2'/></r>"), *selector), "1");
    EXPECT_EQ(matched(xml("<a id='1' n=''/>"), *selectorOf(repeated("[n]", length))), "1");
}

TEST(LongSelector, OneThatIsDestroyedByItsPart) {
    TypeSelector* head = part("a");
    for (int i = 0; i < 200'000; ++i) {
        TypeSelector* const left = head;
        head = part("a", 1);
        head->chainLeft = left;
    }
    delete head;
    auto* const condition = new PseudoElement("x");
    for (int i = 0; i < 200'000; ++i) condition->Append(new PseudoElement("x"));
    delete condition;
}
