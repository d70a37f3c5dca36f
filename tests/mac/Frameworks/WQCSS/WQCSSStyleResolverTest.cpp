#include "mac/Frameworks/WQCSS/WQCSSStyleResolver.h"

#include <csignal>

#include "tests/dom/Support.h"

using namespace test;

namespace {

Ref<WQCSSStyleResolver> resolver(const NSString& sheet) {
    const auto made = WQCSSStyleResolver::newStyleResolver();
    made->processRulesFromStyleSheet(WQCSSStyleSheet::styleSheetWithString(sheet));
    return made;
}

uint32_t colorOf(const Ref<WQCSSStyle>& style) { return style->cssStyle()->GetColor().rgbaValue; }

TEST(WQCSSStyleResolverTest, IsWithoutRulesAtFirst) {
    const auto made = WQCSSStyleResolver::newStyleResolver();
    EXPECT_EQ(made->cssStyleResolver()->processedRules.size(), 0u);
    EXPECT_EQ(made->cssStyleResolver()->refCount, 1);
    EXPECT_NE(made->cssStyleResolver(), WQCSSStyleResolver::newStyleResolver()->cssStyleResolver());
}

TEST(WQCSSStyleResolverTest, SharesAResolverOfTheEngine) {
    const SharedPtr<CSS::StyleResolver> shared = new CSS::StyleResolver("Screen");
    auto made = WQCSSStyleResolver::newWithCSSStyleResolver(shared.Get());
    EXPECT_EQ(made->cssStyleResolver(), shared.Get());
    EXPECT_EQ(shared->refCount, 2);

    made->processRulesFromStyleSheet(WQCSSStyleSheet::styleSheetWithString(u"a { color: red }"));
    EXPECT_EQ(shared->processedRules.size(), 1u);
    shared->ProcessRules(CSS::Stylesheet::CreateWithData("a { font-size: 20px }"));
    const auto style = made->resolveStyle_parentStyle(parse("<a/>")->documentElement(), nullptr);
    EXPECT_EQ(colorOf(style), 0xFFFF0000);
    EXPECT_EQ(style->fontSize(), 20);

    made = nullptr;
    EXPECT_EQ(shared->refCount, 1);
}

TEST(WQCSSStyleResolverTest, TheDefaultStyleIsNewEachTime) {
    const auto made = resolver(u"* { color: red }");
    const auto one = made->defaultStyle(), other = made->defaultStyle();
    EXPECT_NE(one.get(), other.get());
    EXPECT_NE(one->cssStyle(), other->cssStyle());
    EXPECT_EQ(one->cssStyle()->refCount, 1);
    one->setFontSize(20);
    EXPECT_EQ(other->fontSize(), 12);
    EXPECT_EQ(colorOf(other), 0xFF000000);
}

TEST(WQCSSStyleResolverTest, TheDefaultStyleSpeaksOfTheUsersFont) {
    const auto style = WQCSSStyleResolver::newStyleResolver()->defaultStyle();
    EXPECT_EQ(style->fontFamily(), u"TeX Gyre Pagella");
    EXPECT_EQ(style->fontSize(), 12);
    EXPECT_EQ(style->display(), WQCSSDisplayInline);
}

TEST(WQCSSStyleResolverTest, ResolvesAnElementByRulesAndItsAttribute) {
    const auto made = resolver(u"a { color: red; font-size: 20px } b { color: blue }");
    const auto small = parse("<a style='font-size: 30px; font-family: \xF0\x9D\x84\x9E'/>");
    const auto style = made->resolveStyle_parentStyle(small->documentElement(), nullptr);
    EXPECT_EQ(colorOf(style), 0xFFFF0000);
    EXPECT_EQ(style->fontSize(), 30);
    EXPECT_EQ(style->fontFamily(), u"\U0001D11E");
    EXPECT_EQ(style->cssStyle()->refCount, 1);
}

TEST(WQCSSStyleResolverTest, InheritsFromTheParentStyle) {
    const auto made = resolver(u"a b { font-style: italic }");
    const auto small = parse("<a>t<b/></a>");
    const auto parent = made->defaultStyle();
    parent->setTextAlign(WQCSSTextAlignRight);
    parent->setDisplay(WQCSSDisplayBlock);
    const auto child = made->resolveStyle_parentStyle(small->documentElement()->lastChild(), parent);
    EXPECT_EQ(child->textAlign(), WQCSSTextAlignRight);
    EXPECT_EQ(child->fontStyle(), WQCSSFontStyleItalic);
    EXPECT_EQ(child->display(), WQCSSDisplayInline);
    EXPECT_EQ(parent->fontStyle(), WQCSSFontStyleNormal);

    const auto text = made->resolveStyle_parentStyle(small->documentElement()->firstChild(), parent);
    EXPECT_EQ(text->textAlign(), WQCSSTextAlignRight);
    EXPECT_EQ(text->display(), WQCSSDisplayInline);
}

TEST(WQCSSStyleResolverTest, AParentStyleAroundNoneIsNoParent) {
    const auto made = WQCSSStyleResolver::newStyleResolver();
    const auto style = made->resolveStyle_parentStyle(parse("<a/>")->documentElement(), WQCSSStyle::newWithCSSStyle(nullptr));
    EXPECT_EQ(style->fontFamily(), u"TeX Gyre Pagella");
}

TEST(WQCSSStyleResolverTest, ResolvesAnewEachTime) {
    const auto made = resolver(u"a { color: red }");
    const auto small = parse("<a/>");
    const auto root = small->documentElement();
    const auto one = made->resolveStyle_parentStyle(root, nullptr);
    root->setAttribute_value(u"style", u"color: blue");
    const auto other = made->resolveStyle_parentStyle(root, nullptr);
    EXPECT_NE(one->cssStyle(), other->cssStyle());
    EXPECT_EQ(colorOf(one), 0xFFFF0000);
    EXPECT_EQ(colorOf(other), 0xFF0000FF);
}

TEST(WQCSSStyleResolverTest, AStyleOutlivesResolverSheetAndDocument) {
    auto made = resolver(u"a { color: red; font-family: x }");
    auto small = parse("<a/>");
    const auto style = made->resolveStyle_parentStyle(small->documentElement(), nullptr);
    small = nullptr;
    made = nullptr;
    EXPECT_EQ(colorOf(style), 0xFFFF0000);
    EXPECT_EQ(style->fontFamily(), u"x");
}

TEST(WQCSSStyleResolverTest, RulesOutliveTheirSheetAndAddUp) {
    const auto made = WQCSSStyleResolver::newStyleResolver();
    for (const NSString& text : {u"a { color: red }"_ns, u"a { width: 1px } b { }"_ns})
        made->processRulesFromStyleSheet(WQCSSStyleSheet::styleSheetWithString(text));
    EXPECT_EQ(made->cssStyleResolver()->processedRules.size(), 3u);
    const auto style = made->resolveStyle_parentStyle(parse("<a/>")->documentElement(), nullptr);
    EXPECT_EQ(colorOf(style), 0xFFFF0000);
    EXPECT_EQ(style->width(), (_WQCSSLength{1, 1}));
}

TEST(WQCSSStyleResolverTest, NoSheetIsNothing) {
    const auto made = WQCSSStyleResolver::newStyleResolver();
    made->processRulesFromStyleSheet(nullptr);
    made->processRulesFromStyleSheet(WQCSSStyleSheet::newWithCSSStyleSheet(nullptr));
    EXPECT_EQ(made->cssStyleResolver()->processedRules.size(), 0u);
}

TEST(WQCSSStyleResolverTest, AroundNoneItAnswersAsNullDoes) {
    const auto none = WQCSSStyleResolver::newWithCSSStyleResolver(nullptr);
    ASSERT_TRUE(none);
    EXPECT_EQ(none->cssStyleResolver(), nullptr);
    EXPECT_FALSE(none->defaultStyle());
    EXPECT_FALSE(none->resolveStyle_parentStyle(parse("<a/>")->documentElement(), nullptr));
    EXPECT_FALSE(none->resolveStyle_parentStyle(nullptr, nullptr));
    none->processRulesFromStyleSheet(WQCSSStyleSheet::styleSheetWithString(u"a { }"));
}

// ---- Nodes that have no style

// A wrapper without a node behind it: one that has outlived its document.
Ref<WQXMLNode> dead() {
    const Ref<WQXMLNode> root = parse("<a/>")->documentElement();
    EXPECT_EQ(root->xmlNode(), nullptr);
    return root;
}

std::vector<Ref<WQXMLNode>> without(const Ref<WQXMLDocument>& small) {
    return {
        nullptr, dead(), small, small->documentElement()->firstChild(), wq::cast<WQXMLElement>(small->documentElement())->firstAttribute()};
}

#ifdef WQ_NO_HARD_ASSERTIONS

TEST(WQCSSStyleResolverTest, OtherNodesHaveTheStyleThatTheyInherit) {
    const auto made = resolver(u"* { color: red }");
    const auto small = parse("<a x=''><!-- --></a>");
    const auto parent = made->defaultStyle();
    parent->setFontSize(20);
    for (const auto& node : without(small)) EXPECT_EQ(made->resolveStyle_parentStyle(node, parent)->fontSize(), 20);
}

#else

TEST(WQCSSStyleResolverDeathTest, OtherNodesAreAHardAssertion) {
    const auto made = resolver(u"* { color: red }");
    const auto small = parse("<a x=''><!-- --></a>");
    for (const auto& node : without(small))
        EXPECT_EXIT(
            made->resolveStyle_parentStyle(node, nullptr), testing::KilledBySignal(SIGABRT),
            "function ResolveStyle, file common/core/css/StyleResolver, line [0-9]+\\.\n");
}

#endif

}  // namespace
