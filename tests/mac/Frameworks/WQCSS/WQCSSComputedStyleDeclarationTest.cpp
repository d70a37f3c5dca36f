#include "mac/Frameworks/WQCSS/WQCSSComputedStyleDeclaration.h"

#include <limits>

#include "mac/Frameworks/WQCSS/WQCSSMutableStyleDeclaration.h"
#include "mac/Frameworks/WQCSS/WQCSSStyleResolver.h"
#include "tests/dom/Support.h"

using namespace test;

namespace {

Ref<WQCSSStyle> defaultStyle() { return WQCSSStyleResolver::newStyleResolver()->defaultStyle(); }

Ref<WQCSSComputedStyleDeclaration> computed(const Ref<WQCSSStyle>& style) {
    return WQCSSComputedStyleDeclaration::computedStyleDeclarationWithStyle(style);
}

TEST(WQCSSComputedStyleDeclarationTest, SaysWhatItsStyleSays) {
    const auto style = defaultStyle();
    style->setFontFamily(u"\U0001D11E");
    style->setMarginTop({1.5f, WQCSSLengthTypeAbsolute});
    EXPECT_EQ(
        computed(style)->cssText(),
        u"color:#000000; font-size:12px; font-style:normal; font-family:\U0001D11E; vertical-align:middle; list-style-type:disc; "
        u"display:block; line-height:1; margin-top:1.5px; margin-left:0px; margin-right:0px; margin-bottom:0px; width:auto; "
        u"page-break-after:auto; page-break-before:auto; font-weight:normal; text-indent:0px; text-decoration:none; text-align:left; ");
}

TEST(WQCSSComputedStyleDeclarationTest, SeesLaterChangesOfTheStyle) {
    const auto style = defaultStyle();
    const auto declaration = computed(style);
    style->setFontSize(20);
    EXPECT_EQ(declaration->propertyValue(u"font-size"), u"20px");
    style->cssStyle()->SetFontSize(21);
    EXPECT_EQ(declaration->propertyValue(u"font-size"), u"21px");
}

TEST(WQCSSComputedStyleDeclarationTest, HoldsACountOnTheStyleOfTheEngine) {
    auto style = defaultStyle();
    CSS::Style* const engine = style->cssStyle();
    EXPECT_EQ(engine->refCount, 1);
    const auto declaration = computed(style);
    EXPECT_EQ(engine->refCount, 2);
    style = nullptr;
    EXPECT_EQ(engine->refCount, 1);
    EXPECT_EQ(declaration->propertyValue(u"display"), u"block");
}

TEST(WQCSSComputedStyleDeclarationTest, HoldsADeclarationOfItsOwn) {
    const auto style = defaultStyle();
    const auto one = computed(style), other = WQCSSComputedStyleDeclaration::newWithStyle(style);
    EXPECT_NE(one->cssStyleDeclaration(), other->cssStyleDeclaration());
    EXPECT_EQ(one->cssStyleDeclaration()->refCount, 1);
    const auto* engine = dynamic_cast<CSS::ComputedStyleDeclaration*>(other->cssStyleDeclaration());
    ASSERT_TRUE(engine);
    EXPECT_EQ(engine->style.Get(), style->cssStyle());
}

TEST(WQCSSComputedStyleDeclarationTest, ANullStyleGivesNull) {
    EXPECT_FALSE(computed(nullptr));
    EXPECT_FALSE(WQCSSComputedStyleDeclaration::newWithStyle(nullptr));
}

TEST(WQCSSComputedStyleDeclarationTest, AStyleAroundNoneGivesNull) { EXPECT_FALSE(computed(WQCSSStyle::newWithCSSStyle(nullptr))); }

TEST(WQCSSComputedStyleDeclarationTest, HasTwentyFiveProperties) {
    const auto declaration = computed(defaultStyle());
    EXPECT_EQ(declaration->length(), 25u);
    EXPECT_EQ(declaration->item(0), u"font");
    EXPECT_EQ(declaration->item(24), u"text-align");
}

TEST(WQCSSComputedStyleDeclarationTest, AnIndexBehindTheLastGivesTheEmptyText) {
    const auto declaration = computed(defaultStyle());
    for (const size_t index : {size_t(25), size_t(1000), std::numeric_limits<size_t>::max()})
        EXPECT_EQ(declaration->item(index), u"") << index;
    EXPECT_EQ(declaration->item(size_t(1) << 32), u"font");  // cut to 32 bits
}

TEST(WQCSSComputedStyleDeclarationTest, AShorthandHasNoValue) {
    const auto declaration = computed(defaultStyle());
    for (const NSString& name : {u"font"_ns, u"margin"_ns, u"position"_ns, u"none"_ns, NSString()}) {
        EXPECT_EQ(declaration->propertyValue(name), u"");
        EXPECT_FALSE(declaration->propertyCSSValue(name));
    }
}

TEST(WQCSSComputedStyleDeclarationTest, AValueIsItsHoldersAlone) {
    const auto declaration = computed(defaultStyle());
    const auto one = declaration->propertyCSSValue(u"color"), other = declaration->propertyCSSValue(u"color");
    EXPECT_NE(one->cssValue(), other->cssValue());
    EXPECT_EQ(one->cssValue()->refCount, 1);
    EXPECT_EQ(one->cssText(), u"#000000");
}

TEST(WQCSSComputedStyleDeclarationTest, ThinsByComputedValues) {
    const auto child = WQCSSMutableStyleDeclaration::newStyleDeclaration();
    child->setCssText(u"font-size: 12px; margin-top: 1px; color: black; font-size: 12pt");
    computed(defaultStyle())->removeDuplicatePropertiesFromStyle(child);
    EXPECT_EQ(child->cssText(), u"margin-top: 1px; font-size: 12pt; ");
}

class Marked : public WQCSSComputedStyleDeclaration {};

TEST(WQCSSComputedStyleDeclarationTest, AnApplicationsClassIsMadeTheSameWay) {
    const Ref<Marked> made = WQCSSComputedStyleDeclaration::computedStyleDeclarationWithStyle<Marked>(defaultStyle());
    EXPECT_EQ(made->length(), 25u);
    EXPECT_FALSE(WQCSSComputedStyleDeclaration::computedStyleDeclarationWithStyle<Marked>(nullptr));
}

}  // namespace
