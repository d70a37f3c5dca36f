#include "common/core/css/StyleResolver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <libxml/HTMLparser.h>
#include <libxml/parser.h>

#include <csignal>
#include <cstdio>
#include <iterator>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "tests/common/core/css/Declarations.h"

using CSS::ComputedStyleDeclaration;
using CSS::MutableStyleDeclaration;
using CSS::Property;
using CSS::SortedProperty;
using CSS::SortedPropertyList;
using CSS::Style;
using CSS::StyleResolver;
using CSS::StyleRule;
using CSS::Stylesheet;
using test::printedBy;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

static_assert(std::has_virtual_destructor_v<SortedPropertyList>);

namespace {

// ---- Documents

struct FreeDocument {
    void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
};
using Document = std::unique_ptr<xmlDoc, FreeDocument>;

Document xml(const std::string& text) {
    return Document(xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr, XML_PARSE_NONET));
}
Document html(const std::string& text) {
    return Document(htmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr, HTML_PARSE_NOERROR | HTML_PARSE_NONET));
}
const xmlChar* bytes(const char* text) { return reinterpret_cast<const xmlChar*>(text); }

// The first node of the kind, and of the name if one is given, in the order of the document.
xmlNode* find(xmlNode* node, xmlElementType type, const char* name = nullptr) {
    for (; node; node = node->next) {
        if (node->type == type && (!name || xmlStrEqual(node->name, bytes(name)))) return node;
        if (node->type != XML_ELEMENT_NODE) continue;
        if (xmlNode* found = find(node->children, type, name)) return found;
    }
    return nullptr;
}
xmlNode* element(const Document& document, const char* name) { return find(document->children, XML_ELEMENT_NODE, name); }
xmlNode* textIn(const Document& document) { return find(document->children, XML_TEXT_NODE); }

// ---- Sheets and styles

SharedPtr<Stylesheet> sheet(const std::string& text, int origin = Stylesheet::Author) {
    SharedPtr<Stylesheet> made(Stylesheet::CreateWithData(text));
    made->origin = static_cast<Stylesheet::Origin>(origin);
    return made;
}

// A resolver of these sheets, an author's.
struct Resolver : StyleResolver {
    explicit Resolver(const std::vector<std::string>& sheets = {}) {
        for (const auto& text : sheets) ProcessRules(sheet(text));
    }
};

// As the caller does it: from the root down.
SharedPtr<Style> styleOf(const StyleResolver& resolver, xmlNode* node) {
    xmlNode* const parent = node->parent;
    const bool hasParent = parent && parent->type == XML_ELEMENT_NODE;
    return resolver.ResolveStyle(node, hasParent ? styleOf(resolver, parent) : SharedPtr<Style>());
}

const std::string kDefault =
    "color:#000000; font-size:12px; font-style:normal; font-family:TeX Gyre Pagella; vertical-align:middle; list-style-type:disc; "
    "display:block; line-height:1; margin-top:0px; margin-left:0px; margin-right:0px; margin-bottom:0px; width:auto; "
    "page-break-after:auto; page-break-before:auto; font-weight:normal; text-indent:0px; text-decoration:none; text-align:left; ";

std::string computed(const SharedPtr<Style>& style) { return ComputedStyleDeclaration(style.Get()).cssText(); }

// The computed text without what a default style says as well.
std::string said(const SharedPtr<Style>& style) {
    std::string text = computed(style), rest;
    for (size_t end; (end = text.find("; ")) != std::string::npos; text.erase(0, end + 2)) {
        const std::string entry = text.substr(0, end + 2);
        if (kDefault.find(entry) == std::string::npos) rest += entry;
    }
    return rest;
}

struct Row {
    std::string document;
    std::vector<std::string> sheets;
    const char* node;
    const char* said;
};

void expectRows(const std::vector<Row>& rows, Document (*parse)(const std::string&) = xml) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.document.substr(0, 200) + " " + testing::PrintToString(row.sheets).substr(0, 200));
        const Document document = parse(row.document);
        ASSERT_NE(document, nullptr);
        xmlNode* const node = element(document, row.node);
        ASSERT_NE(node, nullptr);
        EXPECT_EQ(said(styleOf(Resolver(row.sheets), node)), row.said);
    }
}

// Margins of 2 on all sides, and of 3 on the left.
const char* const kAll2 = "margin-top:2px; margin-left:2px; margin-right:2px; margin-bottom:2px; ";
const char* const kLeft3 = "margin-top:2px; margin-left:3px; margin-right:2px; margin-bottom:2px; ";

std::string repeated(const std::string& text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i) all += text;
    return all;
}

// ---- Properties with keys

SharedPtr<Property> propertyOf(const std::string& declaration) {
    MutableStyleDeclaration parsed;
    CSS::Parser().ParseStyleDeclaration(declaration, &parsed);
    return parsed.propertyAtIndex(0);
}

SharedPtr<SortedProperty> sorted(const std::string& declaration, uint32_t sortPriority, int32_t order) {
    SharedPtr<SortedProperty> made(new SortedProperty(propertyOf(declaration), Stylesheet::Author, 0));
    made->sortPriority = sortPriority;
    made->order = order;
    return made;
}

// "color: #ff0000; 30001/2", a line for each.
std::string dump(const SortedPropertyList& list) {
    std::string text;
    for (const auto& each : list.properties) {
        char key[40];
        snprintf(key, sizeof key, "%x/%d\n", each->sortPriority, each->order);
        text += each->property->cssText() + key;
    }
    return text;
}

// A list that the entries were added to, in their order.
struct Added : SortedPropertyList {
    Added(std::initializer_list<SharedPtr<SortedProperty>> entries) {
        for (const auto& each : entries) AddSortedProp(each);
    }
};

}  // namespace

// ---- SortedProperty

TEST(SortedProperty, ItsKeyIsTheLevelAboveTheSpecificity) {
    const struct {
        int origin;
        bool important;
        unsigned short specificity;
        uint32_t key;
    } rows[] = {
        {0, false, 0, 0x10000},
        {0, true, 0, 0x10000},
        {1, false, 0, 0x20000},
        {1, true, 0, 0x50000},
        {2, false, 0, 0x30000},
        {2, true, 0, 0x40000},
        {3, false, 0, 0},
        {3, true, 0, 0},
        {-1, false, 7, 7},
        {-1, true, 7, 7},
        {2, false, 0x0021, 0x30021},
        {2, true, 0x0021, 0x40021},
        {2, false, 0x8000, 0x38000},
        {2, true, 0x8000, 0x48000},
        {0, false, 0xFFFF, 0x1FFFF},
        {0, true, 0xFFFF, 0x1FFFF},
        {1, false, 0xFFFF, 0x2FFFF},
        {1, true, 0xFFFF, 0x5FFFF},
        {2, false, 0xFFFF, 0x3FFFF},
        {2, true, 0xFFFF, 0x4FFFF},
        {0x10000, false, 0xFFFF, 0xFFFF},
        {100, true, 0xFFFF, 0xFFFF},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.origin << (row.important ? " important " : " ") << row.specificity);
        const auto color = propertyOf(row.important ? "color: red !important" : "color: red");
        const SortedProperty entry(color, static_cast<Stylesheet::Origin>(row.origin), row.specificity);
        EXPECT_EQ(entry.sortPriority, row.key);
    }
}

TEST(SortedProperty, HoldsThePropertyAndCopiesItsOrder) {
    Property::gOrderCounter = 42;
    const SharedPtr<Property> color(new CSS::PropColor);
    const SortedProperty entry(color, Stylesheet::Author, 1);
    EXPECT_EQ(entry.property.Get(), color.Get());
    EXPECT_EQ(color->refCount, 2);
    EXPECT_EQ(entry.order, 42);
}

TEST(SortedProperty, ItsKeyIsBuiltOnce) {
    const auto color = propertyOf("color: red");
    const SortedProperty entry(color, Stylesheet::Author, 1);
    color->important = true;
    EXPECT_EQ(entry.sortPriority, 0x30001u);
}

TEST(SortedProperty, IsPrintedWithItsKeyAndItsOrder) {
    const SortedProperty normal(propertyOf("color: red"), Stylesheet::Author, 0x21);
    EXPECT_EQ(printedBy([&] { normal.Print(); }), "color: #ff0000; sortPriority: 0x30021 order: 0\n");
    const auto important = sorted("width: 2px !important", 0xabcdef01, -7);
    EXPECT_EQ(printedBy([&] { important->Print(); }), "width: 2px!important; sortPriority: 0xabcdef01 order: -7\n");
    const auto zero = sorted("width: 2px", 0, 3);
    EXPECT_EQ(printedBy([&] { zero->Print(); }), "width: 2px; sortPriority: 0x0 order: 3\n");
}

TEST(SortedProperty, IsPrintedByThePropertysOwnOperation) {
    struct Loud : CSS::PropColor {
        void print() override { std::printf("LOUD "); }
    };
    Property::gOrderCounter = 3;
    const SortedProperty entry(SharedPtr<Property>(new Loud), Stylesheet::User, 2);
    EXPECT_EQ(printedBy([&] { entry.Print(); }), "LOUD sortPriority: 0x20002 order: 3\n");
}

// ---- SortedPropertyList

TEST(SortedPropertyList, IsEmptyAtFirst) { EXPECT_THAT(SortedPropertyList().properties, IsEmpty()); }

TEST(SortedPropertyList, DifferentPropertiesStandSideBySide) {
    EXPECT_EQ(
        dump(Added{sorted("color: red", 9, 9), sorted("width: 1px", 1, 1), sorted("text-indent: 1px", 5, 5)}),
        "color: #ff0000; 9/9\nwidth: 1px; 1/1\ntext-indent: 1px; 5/5\n");
}

TEST(SortedPropertyList, TheGreaterKeyComesInAtTheEnd) {
    EXPECT_EQ(
        dump(Added{sorted("color: red", 1, 9), sorted("width: 1px", 1, 1), sorted("color: blue", 2, 0)}),
        "width: 1px; 1/1\ncolor: #0000ff; 2/0\n");
}

TEST(SortedPropertyList, TheLesserKeyIsDropped) {
    EXPECT_EQ(
        dump(Added{sorted("color: red", 2, 0), sorted("width: 1px", 1, 1), sorted("color: blue", 1, 9)}),
        "color: #ff0000; 2/0\nwidth: 1px; 1/1\n");
}

TEST(SortedPropertyList, AtEqualKeysTheGreaterOrderComesInAtTheEnd) {
    EXPECT_EQ(
        dump(Added{sorted("color: red", 1, 4), sorted("width: 1px", 1, 1), sorted("color: blue", 1, 5)}),
        "width: 1px; 1/1\ncolor: #0000ff; 1/5\n");
}

TEST(SortedPropertyList, AtEqualKeysTheLesserOrderIsDropped) {
    EXPECT_EQ(
        dump(Added{sorted("color: red", 1, 5), sorted("width: 1px", 1, 1), sorted("color: blue", 1, 4)}),
        "color: #ff0000; 1/5\nwidth: 1px; 1/1\n");
}

TEST(SortedPropertyList, AtEqualOrdersTheEntryStays) {
    EXPECT_EQ(
        dump(Added{sorted("color: red", 1, 5), sorted("width: 1px", 1, 1), sorted("color: blue", 1, 5)}),
        "color: #ff0000; 1/5\nwidth: 1px; 1/1\n");
}

TEST(SortedPropertyList, KeysCompareUnsigned) {
    EXPECT_EQ(dump(Added{sorted("color: red", 0x7fffffff, 0), sorted("color: blue", 0x80000000, 0)}), "color: #0000ff; 80000000/0\n");
    EXPECT_EQ(dump(Added{sorted("color: red", 0x80000000, 0), sorted("color: blue", 0x7fffffff, 0)}), "color: #ff0000; 80000000/0\n");
}

TEST(SortedPropertyList, OrdersCompareUnsigned) {
    EXPECT_EQ(dump(Added{sorted("color: red", 1, 5), sorted("color: blue", 1, -1)}), "color: #0000ff; 1/-1\n");
    EXPECT_EQ(dump(Added{sorted("color: red", 1, -1), sorted("color: blue", 1, 5)}), "color: #ff0000; 1/-1\n");
    EXPECT_EQ(dump(Added{sorted("color: red", 1, -2), sorted("color: blue", 1, -1)}), "color: #0000ff; 1/-1\n");
}

TEST(SortedPropertyList, KeepsTheVeryEntriesAndLetsLosersGo) {
    const auto loser = sorted("color: red", 1, 0), winner = sorted("color: blue", 2, 0), late = sorted("color: lime", 1, 0);
    {
        const Added list{loser, winner, late};
        EXPECT_EQ(list.properties.at(0).Get(), winner.Get());
        EXPECT_EQ(winner->refCount, 2);
    }
    for (const auto& each : {loser, winner, late}) EXPECT_EQ(each->refCount, 2);  // here and in the list of this loop
}

TEST(SortedPropertyList, PropertiesOfUnknownNamesCountAsOne) {
    const auto unknown = [](const char* name, uint32_t key) {
        SharedPtr<SortedProperty> made(new SortedProperty(SharedPtr<Property>(new CSS::PropGeneric(name)), Stylesheet::Author, 0));
        made->sortPriority = key;
        return made;
    };
    const auto stronger = unknown("bar", 2);
    const Added list{unknown("foo", 1), stronger};
    ASSERT_EQ(list.properties.size(), 1u);
    EXPECT_EQ(list.properties[0].Get(), stronger.Get());
}

TEST(SortedPropertyList, AddPropMakesAnEntryWithItsKey) {
    SortedPropertyList list;
    const auto color = propertyOf("color: red !important");
    list.AddProp(color, Stylesheet::User, 3);
    EXPECT_EQ(dump(list), "color: #ff0000!important; 50003/0\n");
    EXPECT_EQ(list.properties[0]->property.Get(), color.Get());
}

TEST(SortedPropertyList, AddPropSetsTheEntryAgainstTheOthers) {
    SortedPropertyList list;
    list.AddProp(propertyOf("color: red"), Stylesheet::Author, 3);
    list.AddProp(propertyOf("color: blue"), Stylesheet::Author, 2);
    EXPECT_EQ(dump(list), "color: #ff0000; 30003/0\n");
    list.AddProp(propertyOf("color: lime"), Stylesheet::Author, 4);
    EXPECT_EQ(dump(list), "color: #00ff00; 30004/0\n");
}

TEST(SortedPropertyList, AddPropsFromStyleAddsAllPropertiesOfADeclaration) {
    SortedPropertyList list;
    MutableStyleDeclaration declaration;
    declaration.setCssText("width: 1px; color: red !important; margin: 2px");
    list.AddPropsFromStyle(&declaration, Stylesheet::Author, 0x21);
    EXPECT_EQ(
        dump(list),
        "width: 1px; 30021/0\ncolor: #ff0000!important; 40021/1\n"
        "margin-top: 2px; 30021/3\nmargin-left: 2px; 30021/4\nmargin-bottom: 2px; 30021/5\nmargin-right: 2px; 30021/6\n");
    EXPECT_EQ(list.properties[0]->property.Get(), declaration.propertyAtIndex(0).Get());
}

TEST(SortedPropertyList, AddPropsFromStyleTakesTheFirstOfAName) {
    const struct {
        const char* text;
        const char* entries;
    } rows[] = {
        {"color: red; color: blue", "color: #ff0000; 30000/0\n"},
        {"color: red; width: 1px; color: blue; color: lime", "color: #ff0000; 30000/0\nwidth: 1px; 30000/1\n"},
        {"color: red; color: blue !important", "color: #ff0000; 30000/0\n"},
        {"color: red !important; color: blue", "color: #ff0000!important; 40000/0\n"},
        {"", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        SortedPropertyList list;
        MutableStyleDeclaration declaration;
        declaration.setCssText(row.text);
        list.AddPropsFromStyle(&declaration, Stylesheet::Author, 0);
        EXPECT_EQ(dump(list), row.entries);
    }
}

TEST(SortedPropertyList, AddPropsFromStyleAsksAnyDeclarationForNamesAndThenForProperties) {
    struct Logging : MutableStyleDeclaration {
        std::string item(unsigned long index) override {
            log.push_back("item " + std::to_string(index));
            return index ? "width" : "color";
        }
        SharedPtr<Property> property(const std::string& name) override {
            log.push_back("property " + name);
            return propertyOf(name == "color" ? "color: red" : "width: 5px");
        }
        size_t length() override { return 2; }
        std::vector<std::string> log;
    };
    Logging declaration;
    SortedPropertyList list;
    list.AddPropsFromStyle(&declaration, Stylesheet::Author, 0);
    EXPECT_EQ(dump(list), "color: #ff0000; 30000/0\nwidth: 5px; 30000/0\n");
    EXPECT_THAT(declaration.log, ElementsAre("item 0", "property color", "item 1", "property width"));
}

TEST(SortedPropertyList, AddPropsFromStyleOfAComputedDeclarationAddsEachProperty) {
    SortedPropertyList list;
    ComputedStyleDeclaration declaration(StyleResolver::DefaultStyle().Get());
    list.AddPropsFromStyle(&declaration, Stylesheet::Author, 0);
    EXPECT_EQ(list.properties.size(), 25u);
}

TEST(SortedPropertyList, ItsPropertiesOutliveTheirDeclaration) {
    SortedPropertyList list;
    {
        MutableStyleDeclaration declaration;
        declaration.setCssText("color: red");
        list.AddPropsFromStyle(&declaration, Stylesheet::Author, 0);
    }
    EXPECT_EQ(dump(list), "color: #ff0000; 30000/0\n");
}

// ---- The resolver and its rules

TEST(StyleResolver, ItsMediumIsPrint) {
    const StyleResolver resolver;
    EXPECT_EQ(resolver.medium, "Print");
    EXPECT_THAT(resolver.stylesheets, IsEmpty());
    EXPECT_THAT(resolver.selectors, IsEmpty());
    EXPECT_THAT(resolver.processedRules, IsEmpty());
}

TEST(StyleResolver, TakesAnotherMedium) {
    const StyleResolver resolver("screen");
    EXPECT_EQ(resolver.medium, "screen");
    EXPECT_THAT(resolver.processedRules, IsEmpty());
    EXPECT_EQ(StyleResolver("").medium, "");
}

TEST(StyleResolver, AnAddedStylesheetHasNoEffect) {
    StyleResolver resolver;
    const auto added = sheet("a { color: red }");
    resolver.AddStylesheet(added);
    resolver.AddStylesheet(SharedPtr<Stylesheet>());
    ASSERT_EQ(resolver.stylesheets.size(), 2u);
    EXPECT_EQ(resolver.stylesheets[0].Get(), added.Get());
    EXPECT_EQ(resolver.stylesheets[1].Get(), nullptr);
    EXPECT_THAT(resolver.processedRules, IsEmpty());
    const auto document = xml("<a/>");
    EXPECT_EQ(said(styleOf(resolver, document->children)), "");
}

TEST(StyleResolver, TakesInTheRulesOfASheetInTheirOrder) {
    StyleResolver resolver;
    const auto first = sheet("a { } b { }"), second = sheet("c { }", Stylesheet::User);
    resolver.ProcessRules(first);
    resolver.ProcessRules(second);
    ASSERT_EQ(resolver.processedRules.size(), 3u);
    EXPECT_EQ(resolver.processedRules[0]->rule.Get(), first->styleRules[0].Get());
    EXPECT_EQ(resolver.processedRules[1]->rule.Get(), first->styleRules[1].Get());
    EXPECT_EQ(resolver.processedRules[2]->rule.Get(), second->styleRules[0].Get());
    EXPECT_EQ(resolver.processedRules[1]->origin, Stylesheet::Author);
    EXPECT_EQ(resolver.processedRules[2]->origin, Stylesheet::User);
    EXPECT_THAT(resolver.stylesheets, IsEmpty());
    EXPECT_THAT(resolver.selectors, IsEmpty());
}

TEST(StyleResolver, TakesNothingFromNoSheetAndFromAnEmptyOne) {
    Resolver resolver({"a { color: red }"});
    resolver.ProcessRules(SharedPtr<Stylesheet>());
    resolver.ProcessRules(sheet(""));
    EXPECT_EQ(resolver.processedRules.size(), 1u);
}

TEST(StyleResolver, OnlyDirectStyleRulesAreTakenIn) {
    const auto mixed = sheet("@import \"x\" print ; @media print /**/{ a { color: red } } @page { margin: 3px } a { width: 1px }");
    ASSERT_EQ(mixed->importRules.size() + mixed->mediaRules.size() + mixed->pageRules.size(), 3u);
    for (const char* medium : {"Print", "print", "screen"}) {
        StyleResolver resolver(medium);
        resolver.ProcessRules(mixed);
        EXPECT_EQ(resolver.processedRules.size(), 1u);
        const auto document = xml("<a/>");
        EXPECT_EQ(said(styleOf(resolver, document->children)), "width:1px; ") << medium;
    }
}

TEST(StyleResolver, TheOriginOfARuleIsThatOfItsSheetWhenItWasTakenIn) {
    StyleResolver resolver;
    const auto changing = sheet("a { color: red }", Stylesheet::User);
    resolver.ProcessRules(changing);
    changing->origin = Stylesheet::Author;
    EXPECT_EQ(resolver.processedRules[0]->origin, Stylesheet::User);
    resolver.ProcessRules(sheet("a { color: blue }"));
    const auto document = xml("<a/>");
    EXPECT_EQ(said(styleOf(resolver, document->children)), "color:#0000ff; ");
}

TEST(StyleResolver, RulesThatASheetGetsLaterAreNotSeen) {
    StyleResolver resolver;
    const auto growing = sheet("a { color: red }");
    resolver.ProcessRules(growing);
    growing->styleRules.push_back(sheet("a { width: 1px }")->styleRules[0]);
    const auto document = xml("<a/>");
    EXPECT_EQ(said(styleOf(resolver, document->children)), "color:#ff0000; ");
}

TEST(StyleResolver, AChangedDeclarationOfARuleIsSeenAtTheNextCall) {
    StyleResolver resolver;
    const auto changing = sheet("a { color: red }");
    resolver.ProcessRules(changing);
    const auto document = xml("<a/>");
    const auto before = styleOf(resolver, document->children);
    changing->styleRules[0]->declaration->setCssText("width: 1px");
    EXPECT_EQ(said(styleOf(resolver, document->children)), "width:1px; ");
    EXPECT_EQ(said(before), "color:#ff0000; ");
}

TEST(StyleResolver, ASheetThatIsTakenInTwiceChangesNoOutcome) {
    StyleResolver resolver;
    const auto twice = sheet("a { color: red; color: blue } a { width: 1px }"), other = sheet("b { } a { width: 2px }");
    for (const auto& each : {twice, other, twice}) resolver.ProcessRules(each);
    EXPECT_EQ(resolver.processedRules.size(), 6u);
    const auto document = xml("<a/>");
    EXPECT_EQ(said(styleOf(resolver, document->children)), "color:#ff0000; width:1px; ");
}

// ---- The default style

TEST(StyleResolver, ADefaultStyleHasDefaultFieldsAndTheUsersFont) {
    const auto style = StyleResolver::DefaultStyle();
    EXPECT_EQ(computed(style), kDefault);
    EXPECT_EQ(style->GetDisplay(), WQCSSDisplayInline);
    EXPECT_EQ(style->GetPosition(), 0u);
    EXPECT_EQ(style->GetHeight(), (_WQCSSLength{0, WQCSSLengthTypeAuto}));
    EXPECT_EQ(style->refCount, 1);
    EXPECT_EQ(style->font->refCount, 1);
}

TEST(StyleResolver, EveryDefaultStyleIsNew) {
    const auto first = StyleResolver::DefaultStyle(), second = StyleResolver::DefaultStyle();
    EXPECT_NE(first.Get(), second.Get());
    EXPECT_NE(first->font.Get(), second->font.Get());
}

TEST(StyleResolver, WithoutRulesAndParentAnElementHasTheDefaultStyle) {
    const auto document = xml("<a/>");
    const auto style = StyleResolver().ResolveStyle(document->children, nullptr);
    EXPECT_EQ(computed(style), kDefault);
    EXPECT_EQ(style->GetDisplay(), WQCSSDisplayInline);
    EXPECT_EQ(style->refCount, 1);
    EXPECT_EQ(style->font->refCount, 1);  // the default style itself is gone
}

// ---- The cascade

TEST(StyleResolver, RulesApplyToTheElementsTheyMatch) {
    expectRows({
        {"<a/>", {}, "a", ""},
        {"<a/>", {"a { }"}, "a", ""},
        {"<a/>", {"b { color: red }"}, "a", ""},
        {"<a/>", {"* { color: red }"}, "a", "color:#ff0000; "},
        {"<a><b/></a>", {"a b { width: 1px } b a { width: 2px }"}, "b", "width:1px; "},
        {"<a class='x y'/>", {".x { color: red } .y { width: 1px } .z { text-indent: 1px }"}, "a", "color:#ff0000; width:1px; "},
        {"<a/>", {"a:first { color: red } a:before(x) { width: 1px }"}, "a", ""},  // whatever follows a colon never matches
        {"<n:a xmlns:n='u'/>", {"a { color: red }"}, "a", "color:#ff0000; "},
        {"<A/>", {"a { color: red }"}, "A", ""},
    });
    expectRows({{"<p>t</p>", {"P { color: red }"}, "p", "color:#ff0000; "}}, html);
}

TEST(StyleResolver, TheGreaterSpecificityWins) {
    expectRows({
        {"<a class='x'/>", {".x { color: red } a { color: blue }"}, "a", "color:#ff0000; "},
        {"<a class='x'/>", {"a { color: blue } .x { color: red }"}, "a", "color:#ff0000; "},
        {"<a/>", {"a { color: red } * { color: blue }"}, "a", "color:#ff0000; "},
        {"<a><b/></a>", {"a b { color: red } b { color: blue }"}, "b", "color:#ff0000; "},
        {"<a class='x'/>", {"a { color: red; width: 1px } .x { color: blue }"}, "a", "color:#0000ff; width:1px; "},
        {"<a class='x'/>",
         {".x { color: red }", "* { width: 5px; text-indent: 5px; color: blue }"},
         "a",
         "color:#ff0000; width:5px; text-indent:5px; "},
    });
}

TEST(StyleResolver, OfEqualSpecificitiesInOneSheetTheLaterWins) {
    expectRows({
        {"<a/>", {"a { color: red } a { color: blue }"}, "a", "color:#0000ff; "},
        {"<a class='x y'/>", {".x { color: red } .y { color: blue }"}, "a", "color:#0000ff; "},
        {"<a class='x y'/>", {".y { color: red } .x { color: blue }"}, "a", "color:#0000ff; "},
    });
}

TEST(StyleResolver, AcrossSheetsThePlacesInTheirSheetsDecide) {
    expectRows({
        {"<a/>",
         {"a { width: 1px; text-indent: 2px; color: red }", "a { color: blue }"},
         "a",
         "color:#ff0000; width:1px; text-indent:2px; "},
        {"<a/>",
         {"a { color: blue }", "a { width: 1px; text-indent: 2px; color: red }"},
         "a",
         "color:#ff0000; width:1px; text-indent:2px; "},
        {"<a/>", {"a { color: red }", "a { color: blue }"}, "a", "color:#ff0000; "},  // equal places: the earlier one stays
        {"<a/>", {"b { width: 1px } a { color: red }", "a { color: blue }"}, "a", "color:#ff0000; "},
        // A margin counts as five.
        {"<a/>",
         {"b { margin: 1px } a { color: red }", "b { width: 1px; color: lime; text-indent: 1px } a { color: blue }"},
         "a",
         "color:#ff0000; "},
    });
}

TEST(StyleResolver, RefusedDeclarationsCountForThePlace) {
    const std::string printed = printedBy([] {
        expectRows(
            {{"<a/>",
              {"a { foo: bar; color: nonsense } a { color: red }", "a { width: 1px; color: blue }"},
              "a",
              "color:#ff0000; width:1px; "}});
    });
    EXPECT_THAT(printed, HasSubstr("Warning: Unsupported property foo or invalid value \"bar\"\n"));
    EXPECT_THAT(printed, HasSubstr("Warning: Unsupported property color or invalid value \"nonsense\"\n"));
}

TEST(StyleResolver, InARuleTheFirstOfANameWinsAndInAStyleAttributeTheLast) {
    expectRows({
        {"<p/>", {"p { color: red; color: blue }"}, "p", "color:#ff0000; "},
        {"<p style='color: red; color: blue'/>", {}, "p", "color:#0000ff; "},
        {"<p/>", {"p { color: red; color: blue !important }"}, "p", "color:#ff0000; "},
        {"<p class='x'/>", {"p { color: red; color: blue !important } .x { color: lime }"}, "p", "color:#00ff00; "},
        {"<p class='x'/>", {"p { color: red !important; color: blue } .x { color: lime }"}, "p", "color:#ff0000; "},
        {"<p style='color: red !important; color: blue'/>", {}, "p", "color:#ff0000; "},
        {"<p/>", {"p { margin: 2pt; margin-left: 3pt }"}, "p", kAll2},
        {"<p style='margin: 2pt; margin-left: 3pt'/>", {}, "p", kLeft3},
    });
}

TEST(StyleResolver, TheFirstSelectorThatMatchesGivesTheSpecificity) {
    expectRows({
        {"<h1 class='x'/>", {"h1, .x { color: red } h1 { color: blue }"}, "h1", "color:#0000ff; "},
        {"<h1 class='x'/>", {".x, h1 { color: red } h1 { color: blue }"}, "h1", "color:#ff0000; "},
        {"<h1 class='x'/>", {"h2, .x, h1 { color: red } h1 { color: blue }"}, "h1", "color:#ff0000; "},
        {"<h1/>", {".x, h1 { color: red } * { color: blue }"}, "h1", "color:#ff0000; "},
    });
}

TEST(StyleResolver, AStyleAttributeBeatsRulesBelowItsSpecificity) {
    const std::string styled = "<a class='x' style='color: red'/>", classes = repeated(".x", 1023), before = "b { width: 1px } ";
    expectRows({
        {styled, {"a { color: blue }"}, "a", "color:#ff0000; "},
        {styled, {before + classes + " { color: blue }"}, "a", "color:#ff0000; "},        // 0x7fe0
        {styled, {before + "a" + classes + " { color: blue }"}, "a", "color:#ff0000; "},  // 0x7fe1
        {styled, {classes + ".x { color: blue }"}, "a", "color:#0000ff; "},               // 0x8000, equal places: what is there
        {styled, {before + classes + ".x { color: blue }"}, "a", "color:#0000ff; "},      // 0x8000, the greater place
        {styled, {"a" + classes + ".x { color: blue }"}, "a", "color:#0000ff; "},         // 0x8001
        {styled, {before + classes + ".x" + classes + ".x { color: blue }"}, "a", "color:#ff0000; "},  // 0x10000 is 0
    });
}

TEST(StyleResolver, ImportanceBeatsEverySpecificity) {
    const std::string classes = repeated(".x", 1023);
    expectRows({
        {"<a class='x'/>", {"* { color: red !important } " + classes + " { color: blue }"}, "a", "color:#ff0000; "},
        {"<a class='x'/>", {classes + " { color: blue } * { color: red !important }"}, "a", "color:#ff0000; "},
        {"<a style='color: blue'/>", {"* { color: red !important }"}, "a", "color:#ff0000; "},
        {"<a class='x' style='color: red !important'/>", {classes + " { color: blue !important }"}, "a", "color:#ff0000; "},
        {"<a class='x' style='color: red !important'/>", {classes + " { color: blue }"}, "a", "color:#ff0000; "},
        {"<a class='x'/>", {".x { color: red !important } a { color: blue !important }"}, "a", "color:#ff0000; "},
        {"<a/>", {"a { color: red !important } a { color: blue !important }"}, "a", "color:#0000ff; "},
        {"<a/>", {"a { color: red !important } a { color: blue; width: 1px }"}, "a", "color:#ff0000; width:1px; "},
    });
}

TEST(StyleResolver, OriginsAndImportanceMakeLevels) {
    const struct {
        int origin;
        const char* declaration;
    } levels[] = {
        {3, " !important }"}, {0, " }"}, {1, " }"}, {2, " }"}, {2, " !important }"}, {1, " !important }"},
    };
    const auto document = xml("<a class='x'/>");
    for (size_t lower = 0; lower < std::size(levels); ++lower) {
        for (size_t higher = lower + 1; higher < std::size(levels); ++higher) {
            SCOPED_TRACE(testing::Message() << "level " << lower << " against " << higher);
            const auto loser = sheet(std::string("b { width: 1px } a.x { color: blue") + levels[lower].declaration, levels[lower].origin);
            const auto winner = sheet(std::string("* { color: red") + levels[higher].declaration, levels[higher].origin);
            StyleResolver forth, back;
            for (const auto& each : {loser, winner}) forth.ProcessRules(each);
            for (const auto& each : {winner, loser}) back.ProcessRules(each);
            EXPECT_EQ(said(styleOf(forth, document->children)), "color:#ff0000; ");
            EXPECT_EQ(said(styleOf(back, document->children)), "color:#ff0000; ");
        }
    }
}

TEST(StyleResolver, ImportanceLiftsNothingOfAUserAgent) {
    const auto document = xml("<a/>");
    StyleResolver resolver;
    resolver.ProcessRules(sheet("a { color: red !important } a { color: blue }", Stylesheet::UserAgent));
    EXPECT_EQ(said(styleOf(resolver, document->children)), "color:#0000ff; ");
}

TEST(StyleResolver, AUsersImportanceBeatsAStyleAttributes) {
    const auto document = xml("<a style='color: blue !important'/>");
    StyleResolver resolver;
    resolver.ProcessRules(sheet("* { color: red !important }", Stylesheet::User));
    EXPECT_EQ(said(styleOf(resolver, document->children)), "color:#ff0000; ");
}

TEST(StyleResolver, ShorthandsTakePartByTheirLonghands) {
    expectRows({
        {"<a/>", {"a { margin: 2pt } a { margin-left: 3pt }"}, "a", kLeft3},
        {"<a/>", {"a { margin-left: 3pt } a { margin: 2pt }"}, "a", kAll2},
        {"<a class='x'/>", {".x { margin-left: 3pt } a { margin: 2pt }"}, "a", kLeft3},
        {"<a/>", {"a { font: italic 9pt Foo } a { font-size: 8pt }"}, "a", "font-size:8px; font-style:italic; font-family:Foo; "},
        {"<a/>",
         {"a { font-weight: bold; font-size: 8pt } a { font: italic 9pt Foo }"},
         "a",
         "font-size:9px; font-style:italic; font-family:Foo; font-weight:bold; "},
    });
}

TEST(StyleResolver, AnImportantShorthandIsNoStronger) {
    expectRows({
        {"<a/>", {"a { margin: 2pt !important } a { margin-left: 3pt }"}, "a", kLeft3},
        {"<a class='x'/>", {"a { font: 9pt Foo !important } .x { font-size: 8pt }"}, "a", "font-size:8px; font-family:Foo; "},
        {"<a style='margin: 2pt !important'/>", {"a { margin-left: 3pt !important }"}, "a", kLeft3},
    });
}

TEST(StyleResolver, AWinnerWithoutEffectStillWins) {
    expectRows({
        {"<a class='x'/>", {"a { font-weight: bold } .x { font-weight: 700 }"}, "a", ""},
        {"<a/>", {"a { background-color: red; content: 'x'; position: static; font-variant: small-caps }"}, "a", ""},
    });
}

TEST(StyleResolver, ADisplayReachesTheStyle) {
    const auto document = xml("<a style='display: none'><b/></a>");
    const Resolver resolver({"b { display: block }"});
    EXPECT_EQ(styleOf(resolver, element(document, "a"))->GetDisplay(), WQCSSDisplayNone);
    EXPECT_EQ(styleOf(resolver, element(document, "b"))->GetDisplay(), WQCSSDisplayBlock);
}

// ---- Inheritance

TEST(StyleResolver, AnElementInheritsSomePropertiesAndStartsAnewWithOthers) {
    const char* const all =
        "a { color: red; text-align: center; list-style-type: octal; text-indent: 3px; line-height: 2; font: italic bold 9pt Foo; "
        "margin: 1px; width: 5px; vertical-align: top; text-decoration: underline; page-break-after: always; page-break-before: always }";
    const char* const inherited =
        "color:#ff0000; font-size:9px; font-style:italic; font-family:Foo; list-style-type:octal; line-height:2; font-weight:bold; "
        "text-indent:3px; text-align:center; ";
    expectRows({{"<a><b/></a>", {all}, "b", inherited}, {"<a><b><c/></b></a>", {all}, "c", inherited}});
    const auto document = xml("<a><b/></a>");
    EXPECT_EQ(styleOf(Resolver({"a { display: block }"}), element(document, "b"))->GetDisplay(), WQCSSDisplayInline);
}

TEST(StyleResolver, RulesAreAppliedOverWhatIsInherited) {
    expectRows({
        {"<a><b/></a>", {"a { color: red; text-indent: 1px } b { color: blue }"}, "b", "color:#0000ff; text-indent:1px; "},
        {"<a style='color: red !important'><b/></a>", {"* { color: blue }"}, "b", "color:#0000ff; "},
        {"<a style='color: red; font-size: 9px'><b style='font-size: 8px'/></a>", {}, "b", "color:#ff0000; font-size:8px; "},
    });
}

TEST(StyleResolver, AChildSharesTheFontUntilItSaysAnother) {
    const auto document = xml("<a style='font-size: 9px'><b style='font-size: 9px'/><c style='font-size: 8px'/></a>");
    const StyleResolver resolver;
    const auto parent = styleOf(resolver, element(document, "a"));
    const auto same = resolver.ResolveStyle(element(document, "b"), parent), other = resolver.ResolveStyle(element(document, "c"), parent);
    EXPECT_EQ(same->font.Get(), parent->font.Get());
    EXPECT_NE(other->font.Get(), parent->font.Get());
    EXPECT_EQ(other->GetFontSize(), 8);
    EXPECT_EQ(parent->GetFontSize(), 9);
}

TEST(StyleResolver, AStyleKeepsNoCountOfItsParent) {
    const auto document = xml("<a><b/></a>");
    const StyleResolver resolver;
    auto parent = styleOf(resolver, element(document, "a"));
    const auto child = resolver.ResolveStyle(element(document, "b"), parent);
    EXPECT_EQ(parent->refCount, 1);
    parent = nullptr;
    EXPECT_EQ(computed(child), kDefault);
}

TEST(StyleResolver, TheParentNeedNotBeTheStyleOfTheParentNode) {
    const auto document = xml("<a style='color: red'><b/></a>");
    const auto parent = StyleResolver::DefaultStyle();
    parent->SetColor(CSS::CSSColor(std::string("lime")));
    EXPECT_EQ(said(StyleResolver().ResolveStyle(element(document, "b"), parent)), "color:#00ff00; ");
    EXPECT_EQ(said(StyleResolver().ResolveStyle(element(document, "b"), nullptr)), "");
}

TEST(StyleResolver, EveryCallGivesANewStyle) {
    const auto document = xml("<a class='x' style='color: red'>t</a>");
    const Resolver resolver({".x { width: 2px }"});
    const auto parent = StyleResolver::DefaultStyle();
    for (xmlNode* node : {document->children, document->children->children}) {
        const auto first = resolver.ResolveStyle(node, parent), second = resolver.ResolveStyle(node, parent);
        EXPECT_NE(first.Get(), second.Get());
        EXPECT_EQ(computed(first), computed(second));
        EXPECT_NE(first.Get(), parent.Get());
    }
    EXPECT_EQ(computed(parent), kDefault);
}

TEST(StyleResolver, AChangedAttributeIsSeenAtTheNextCall) {
    const auto document = xml("<a class='x'/>");
    const Resolver resolver({".x { width: 2px } .y { width: 3px }"});
    const auto first = styleOf(resolver, document->children);
    xmlSetProp(document->children, bytes("class"), bytes("y"));
    xmlSetProp(document->children, bytes("style"), bytes("color: red"));
    const auto second = styleOf(resolver, document->children);
    xmlUnsetProp(document->children, bytes("style"));
    EXPECT_EQ(said(styleOf(resolver, document->children)), "width:3px; ");
    EXPECT_EQ(said(second), "color:#ff0000; width:3px; ");
    EXPECT_EQ(said(first), "width:2px; ");
}

// ---- The style attribute

TEST(StyleResolver, ReadsTheStyleAttribute) {
    expectRows({
        {"<a style='color: red'/>", {}, "a", "color:#ff0000; "},
        {"<a style='color: red; width: 2px;'/>", {}, "a", "color:#ff0000; width:2px; "},
        {"<a style='margin: 1px 2px'/>", {}, "a", "margin-top:1px; margin-left:2px; margin-right:2px; margin-bottom:1px; "},
        {"<a style=''/>", {}, "a", ""},
        {"<a style=' color: red'/>", {}, "a", ""},                              // what begins with white space declares nothing
        {"<a style='color: red; } width: 2px'/>", {}, "a", "color:#ff0000; "},  // what is no declaration ends the list
        {"<a style='color: red;\n width:\n2px'/>", {}, "a", "color:#ff0000; width:2px; "},
        {"<a style='color: red;&#10;width:&#13;2px'/>", {}, "a", "color:#ff0000; width:2px; "},
        {"<a style='\ncolor: red'/>", {}, "a", ""},
        {"<a STYLE='color: red'/>", {}, "a", ""},
        {"<a xmlns:n='u' n:style='color: red'/>", {}, "a", "color:#ff0000; "},
        {"<a xmlns:n='u' n:style='color: red' style='width: 1px'/>", {}, "a", "color:#ff0000; "},  // the first of the name
        {"<!DOCTYPE a [<!ENTITY e 'color: red'>]><a style='&e;; width: 2px'/>", {}, "a", "color:#ff0000; width:2px; "},
        {"<!DOCTYPE a [<!ATTLIST a style CDATA 'color: red'>]><a/>", {}, "a", "color:#ff0000; "},
        {"<a><b style='color: red'/></a>", {}, "a", ""},
    });
    expectRows({{"<p STYLE='color: red'>t</p>", {}, "p", "color:#ff0000; "}}, html);
}

TEST(StyleResolver, ReadsADefaultOfTheDocumentType) {
    const auto document =
        xml("<!DOCTYPE a [<!ATTLIST b style CDATA 'color: red'><!ATTLIST b class CDATA 'x'><!ATTLIST b k CDATA #IMPLIED>]><a/>");
    xmlNode* const made = xmlNewChild(document->children->next, nullptr, bytes("b"), nullptr);
    ASSERT_EQ(made->properties, nullptr);
    EXPECT_EQ(
        said(styleOf(Resolver({".x { width: 1px } [style] { text-indent: 1px } [k] { line-height: 2 }"}), made)),
        "color:#ff0000; width:1px; text-indent:1px; ");
}

TEST(StyleResolver, ConditionsFindAttributesByTheirLocalNames) {
    expectRows({
        {"<a xmlns:n='u' n:class='x'/>", {".x { width: 1px }"}, "a", "width:1px; "},
        {"<a class='x\ny'/>", {".x { width: 1px } .y { color: red }"}, "a", "color:#ff0000; width:1px; "},  // a blank by now
        {"<a class='x&#10;y'/>", {".x { width: 1px } .y { color: red }"}, "a", ""},
    });
}

TEST(StyleResolver, ABadValueCostsItsPropertyAndAWarning) {
    const auto document = xml("<a style='color: nonsense; width: 2px; foo: bar'/>");
    std::string result;
    const std::string printed = printedBy([&] { result = said(styleOf(Resolver({"a { color: red }"}), document->children)); });
    EXPECT_EQ(result, "color:#ff0000; width:2px; ");
    EXPECT_EQ(
        printed,
        "Warning: Unsupported property color or invalid value \"nonsense\"\n"
        "Warning: Unsupported property foo or invalid value \"bar\"\n");
}

TEST(StyleResolver, AStyleAttributeBeginsToCountPropertiesAnew) {
    const auto document = xml("<a><b style='color: red'/><c style='margin: 1px'/><d style=''/>t</a>");
    const Resolver resolver({"* { color: blue }"});
    const auto parent = StyleResolver::DefaultStyle();
    const auto counted = [&](xmlNode* node) {
        Property::gOrderCounter = 100;
        (void)resolver.ResolveStyle(node, parent);
        return Property::gOrderCounter;
    };
    EXPECT_EQ(counted(element(document, "a")), 100);
    EXPECT_EQ(counted(element(document, "b")), 1);
    EXPECT_EQ(counted(element(document, "c")), 5);
    EXPECT_EQ(counted(element(document, "d")), 0);
    EXPECT_EQ(counted(textIn(document)), 100);
}

// ---- Texts

TEST(StyleResolver, ATextTakesAllFromItsParentAndIsInline) {
    const auto document = xml("<a style='color: red; font-size: 9px; margin: 3px; display: block'>t</a>");
    const Resolver resolver({"* { width: 7px; color: blue; display: none } text { color: lime }"});
    const auto parent = resolver.ResolveStyle(document->children, nullptr);
    ASSERT_EQ(
        said(parent), "color:#ff0000; font-size:9px; margin-top:3px; margin-left:3px; margin-right:3px; margin-bottom:3px; width:7px; ");
    const auto style = resolver.ResolveStyle(textIn(document), parent);
    EXPECT_EQ(said(style), "color:#ff0000; font-size:9px; ");
    EXPECT_EQ(style->GetDisplay(), WQCSSDisplayInline);
    EXPECT_EQ(style->font.Get(), parent->font.Get());
    EXPECT_EQ(style->refCount, 1);
}

TEST(StyleResolver, NoRuleIsTriedForATextWithAParent) {
    const auto document = xml("<a>t</a>");
    // Matching the ID would be a hard assertion.
    EXPECT_EQ(said(Resolver({"#x { color: red }"}).ResolveStyle(textIn(document), StyleResolver::DefaultStyle())), "");
}

TEST(StyleResolver, ATextWithoutAParentGoesThroughTheRules) {
    const struct {
        const char* sheet;
        const char* said;
    } rows[] = {
        {"text { color: red }", "color:#ff0000; "},
        {"* { color: red }", "color:#ff0000; "},
        {"text { color: red } * { color: blue }", "color:#ff0000; "},
        {"a text { color: red }", "color:#ff0000; "},
        {"a > * { color: red }", "color:#ff0000; "},
        {"b + text { color: red }", "color:#ff0000; "},
        {"TEXT { color: red }", ""},
        {"a { color: red }", ""},  // the node above it gives it nothing
        {".x { color: red }", ""},
        {"[class] { color: red }", ""},
    };
    const auto document = xml("<a class='x' style='width: 2px'><b/>t</a>");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.sheet);
        const auto style = Resolver({row.sheet}).ResolveStyle(textIn(document), nullptr);
        EXPECT_EQ(said(style), row.said);
        EXPECT_EQ(style->GetDisplay(), WQCSSDisplayInline);
    }
    const auto page = html("<p>t</p>");
    EXPECT_EQ(said(Resolver({"TEXT { color: red }"}).ResolveStyle(textIn(page), nullptr)), "color:#ff0000; ");
}

TEST(StyleResolver, ATextWithoutAParentCanBeShownAsABlock) {
    const auto document = xml("<a>t</a>");
    EXPECT_EQ(Resolver({"text { display: block }"}).ResolveStyle(textIn(document), nullptr)->GetDisplay(), WQCSSDisplayBlock);
}

// ---- Step by step

namespace {

// A selector that answers as it is told, and writes down when it is asked.
struct Told : CSS::Selector {
    Told(std::vector<std::string>& aLog, std::string aName, bool anAnswer, uint16_t aSpecificity)
        : log(aLog), name(std::move(aName)), answer(anAnswer), specificity(aSpecificity) {}
    bool Match(xmlNode*) const override {
        log.push_back("match " + name);
        return answer;
    }
    uint16_t Specificity() const override { return specificity; }

    std::vector<std::string>& log;
    std::string name;
    bool answer;
    uint16_t specificity;
};

// Writes down when it is applied.
struct LoggingWidth : CSS::PropWidth {
    LoggingWidth(std::vector<std::string>& aLog, std::string aName) : log(aLog), name(std::move(aName)) {}
    void applyToStyle(Style*) override { log.push_back("apply " + name); }

    std::vector<std::string>& log;
    std::string name;
};

SharedPtr<StyleRule> rule(std::initializer_list<CSS::Selector*> selectors, Property* property) {
    SharedPtr<StyleRule> made(new StyleRule);
    for (CSS::Selector* each : selectors) made->selectors.push_back(each);
    made->declaration->addProperty(property);
    return made;
}

SharedPtr<Stylesheet> sheetOf(std::initializer_list<SharedPtr<StyleRule>> rules) {
    SharedPtr<Stylesheet> made(new Stylesheet);
    made->styleRules = rules;
    return made;
}

}  // namespace

TEST(StyleResolver, TriesRulesAndSelectorsInTheirOrderUpToTheFirstMatchOfEachRule) {
    std::vector<std::string> log;
    StyleResolver resolver;
    resolver.ProcessRules(sheetOf(
        {rule({new Told(log, "1a", false, 9), new Told(log, "1b", true, 2), new Told(log, "1c", true, 9)}, new LoggingWidth(log, "1")),
         rule({new Told(log, "2a", false, 9)}, new LoggingWidth(log, "2")),
         rule({new Told(log, "3a", true, 3), new Told(log, "3b", true, 0)}, new LoggingWidth(log, "3")),
         rule({new Told(log, "4a", true, 1)}, new LoggingWidth(log, "4"))}));
    const auto document = xml("<a/>");
    (void)resolver.ResolveStyle(document->children, nullptr);
    EXPECT_THAT(log, ElementsAre("match 1a", "match 1b", "match 2a", "match 3a", "match 4a", "apply 3"));
}

TEST(StyleResolver, PropertiesAreAppliedOnceAllRulesWereTried) {
    std::vector<std::string> log;
    StyleResolver resolver;
    resolver.ProcessRules(sheetOf({rule({new Told(log, "1", true, 1)}, new LoggingWidth(log, "1"))}));
    resolver.ProcessRules(sheetOf({rule({new Told(log, "2", true, 0)}, new CSS::PropTextIndent)}));
    const auto document = xml("<a style='line-height: 2'/>");
    EXPECT_EQ(said(resolver.ResolveStyle(document->children, nullptr)), "line-height:2; ");
    EXPECT_THAT(log, ElementsAre("match 1", "match 2", "apply 1"));
}

TEST(StyleResolver, ARuleWithoutSelectorsContributesNothing) {
    std::vector<std::string> log;
    StyleResolver resolver;
    resolver.ProcessRules(sheetOf({rule({}, new LoggingWidth(log, "1"))}));
    EXPECT_EQ(resolver.processedRules.size(), 1u);
    const auto document = xml("<a/>");
    EXPECT_EQ(computed(resolver.ResolveStyle(document->children, nullptr)), kDefault);
    EXPECT_THAT(log, IsEmpty());
}

TEST(StyleResolver, ASpecificityOf0xFFFFStaysBelowTheNextLevel) {
    std::vector<std::string> log;
    StyleResolver resolver;
    const auto users = sheetOf({rule({new Told(log, "1", true, 0xFFFF)}, new LoggingWidth(log, "the user's"))});
    users->origin = Stylesheet::User;
    resolver.ProcessRules(users);
    resolver.ProcessRules(sheetOf({rule({new Told(log, "2", true, 0)}, new LoggingWidth(log, "the author's"))}));
    const auto document = xml("<a/>");
    (void)resolver.ResolveStyle(document->children, nullptr);
    EXPECT_THAT(log, ElementsAre("match 1", "match 2", "apply the author's"));
}

TEST(StyleResolver, ALaterSelectorIsNotTriedBehindAMatch) {
    const auto document = xml("<p/>");
    // Matching the ID would be a hard assertion.
    EXPECT_EQ(said(styleOf(Resolver({"p, #x { color: red }"}), document->children)), "color:#ff0000; ");
    EXPECT_EQ(said(styleOf(Resolver({"b#x { color: red }"}), document->children)), "");
}

// ---- Failures

namespace {

// Nodes that have no style, and their kinds.
const char* const kOthers = "<!DOCTYPE a [<!ENTITY e 'x'>]><a style='width: 2px' k='v'><!--c--><?p d?><![CDATA[s]]>&e;</a>";

struct Other {
    const char* kind;
    xmlNode* node;
};

std::vector<Other> others(const Document& document) {
    xmlNode* const root = element(document, "a");
    return {
        {"comment", find(root->children, XML_COMMENT_NODE)},
        {"processing instruction", find(root->children, XML_PI_NODE)},
        {"CDATA section", find(root->children, XML_CDATA_SECTION_NODE)},
        {"entity reference", find(root->children, XML_ENTITY_REF_NODE)},
        {"attribute", reinterpret_cast<xmlNode*>(root->properties)},
        {"document type", reinterpret_cast<xmlNode*>(document->intSubset)},
        {"document", reinterpret_cast<xmlNode*>(document.get())},
        {"null", nullptr},
    };
}

}  // namespace

#ifdef WQ_NO_HARD_ASSERTIONS

TEST(StyleResolver, AnyOtherNodeInheritsAndTriesNoRule) {
    const auto document = xml(kOthers);
    const Resolver resolver({"* { color: blue } comment { width: 1px }"});
    const auto parent = StyleResolver::DefaultStyle();
    parent->SetColor(CSS::CSSColor(std::string("red")));
    parent->SetDisplay(WQCSSDisplayBlock);
    for (const Other& other : others(document)) {
        SCOPED_TRACE(other.kind);
        const auto style = resolver.ResolveStyle(other.node, parent);
        EXPECT_EQ(said(style), "color:#ff0000; ");
        EXPECT_EQ(style->GetDisplay(), WQCSSDisplayInline);
        EXPECT_EQ(style->font.Get(), parent->font.Get());
        EXPECT_EQ(computed(resolver.ResolveStyle(other.node, nullptr)), kDefault);
    }
}

TEST(StyleResolver, AnIDMatchesNothing) {
    const auto document = xml("<p id='x'/>");
    EXPECT_EQ(said(styleOf(Resolver({"#x, p { color: red } p#x { width: 1px }"}), document->children)), "color:#ff0000; ");
}

TEST(StyleResolver, ASyntaxErrorCostsAllOfTheStyleAttribute) {
    const auto document = xml("<a style='width: 2px; color:+1'/>");
    testing::internal::CaptureStderr();
    const auto style = styleOf(Resolver({"a { color: red }"}), document->children);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "CSS Parse Error before token +\n");
    EXPECT_EQ(said(style), "color:#ff0000; ");
}

TEST(StyleResolver, AnInheritedMarginLeavesTheStyleAlone) {
    const auto document = xml("<a/>");
    EXPECT_EQ(said(styleOf(Resolver({"a { margin-top: inherit; color: red }"}), document->children)), "color:#ff0000; ");
}

#else

TEST(StyleResolverDeathTest, AnyOtherNodeEndsTheProcess) {
    const auto document = xml(kOthers);
    for (const Other& other : others(document)) {
        SCOPED_TRACE(other.kind);
        for (const auto& parent : {SharedPtr<Style>(), StyleResolver::DefaultStyle()})
            EXPECT_EXIT(
                (void)StyleResolver().ResolveStyle(other.node, parent), testing::KilledBySignal(SIGABRT),
                "^Assertion failed: \\(node->type == XML_ELEMENT_NODE \\|\\| node->type == XML_TEXT_NODE\\), function ResolveStyle, "
                "file common/core/css/StyleResolver, line [0-9]+\\.\n");
    }
}

TEST(StyleResolverDeathTest, MatchingAnIDEndsTheProcess) {
    const auto document = xml("<p id='x'/>");
    EXPECT_EXIT(
        (void)styleOf(Resolver({"#x, p { color: red }"}), document->children), testing::KilledBySignal(SIGABRT),
        "^Assertion failed: \\(0\\), function Match, file common/core/css/Selector, line [0-9]+\\.\n");
}

TEST(StyleResolverDeathTest, ASyntaxErrorInAStyleAttributeEndsTheProcess) {
    const auto document = xml("<a style='width: 2px; color:+1'/>");
    EXPECT_EXIT(
        (void)styleOf(Resolver(), document->children), testing::KilledBySignal(SIGABRT),
        "^Assertion failed: \\(0\\), function error, file common/core/css/Parser, line [0-9]+\\.\n");
}

TEST(StyleResolverDeathTest, AnInheritedMarginEndsTheProcess) {
    const auto document = xml("<a/>");
    EXPECT_EXIT(
        (void)styleOf(Resolver({"a { margin-top: inherit }"}), document->children), testing::KilledBySignal(SIGABRT),
        "^Assertion failed: \\(0\\), function lengthValueForStyle, file common/core/css/Value, line [0-9]+\\.\n");
}

TEST(StyleResolver, AnInheritedMarginThatLosesIsNotApplied) {
    const auto document = xml("<a/>");
    EXPECT_EQ(said(styleOf(Resolver({"a { margin-top: inherit } a { margin-top: 1px }"}), document->children)), "margin-top:1px; ");
}

#endif
