// Paragraphs written as HTML, read as XML, and resolved from the root down: they are set as they were. Lists are not here:
// their indents are not meant to come back.
#include <rapidcheck.h>

#include <cmath>
#include <csignal>

#include "html/WQHTMLWriter.h"
#include "mac/Frameworks/WQCSS/WQCSSStyleResolver.h"
#include "platform/NSAttributeNames.h"
#include "platform/NSColor.h"
#include "platform/NSFontManager.h"
#include "platform/NSMutableAttributedString.h"
#include "platform/NSMutableParagraphStyle.h"
#include "tests/dom/Support.h"

using namespace test;
using testing::HasSubstr;

namespace {

// ---- What is written

struct Look {
    Ref<NSFont> font;
    Ref<NSColor> color;  // null: none
    bool isUnderlined = false;
    NSString link;  // null: none
};
struct Run {
    std::u16string text;
    Look look;
};
struct Paragraph {
    Ref<NSParagraphStyle> style;  // of all runs; null: none
    std::vector<Run> runs;
    Run terminator;
};

Ref<NSDictionary> attributesOf(const Ref<NSParagraphStyle>& style, const Look& look) {
    const auto attributes = NSDictionary::dictionary({{NSFontAttributeName, look.font}});
    if (style) attributes->setObject_forKey(style, NSParagraphStyleAttributeName);
    if (look.color) attributes->setObject_forKey(look.color, NSForegroundColorAttributeName);
    if (look.isUnderlined) attributes->setObject_forKey(1.0, NSUnderlineStyleAttributeName);
    if (look.link) attributes->setObject_forKey(look.link, NSLinkAttributeName);
    return attributes;
}

Ref<NSAttributedString> textOf(const std::vector<Paragraph>& paragraphs) {
    auto text = NSMutableAttributedString::newWithString(u"");
    const auto append = [&](const Paragraph& paragraph, const Run& run) {
        text->appendAttributedString(NSAttributedString::newWithString_attributes(run.text, attributesOf(paragraph.style, run.look)));
    };
    for (const Paragraph& paragraph : paragraphs) {
        for (const Run& run : paragraph.runs) append(paragraph, run);
        append(paragraph, paragraph.terminator);
    }
    return text;
}

std::string writtenBody(const Ref<NSAttributedString>& text) {
    const auto writer = WQXMLWriter::newToMemory();
    writer->startElement(u"body");
    WQHTMLWriter::newHTMLWriter()->encodeAttributedString_withWriter(text, writer);
    writer->endElement();
    writer->flush();
    return std::string(writer->XMLData()->view());
}

// ---- What comes back

struct Setting {
    Ref<WQCSSStyle> style;
    bool isUnderlined = false;
    NSString link;
};
struct Character : Setting {
    char16_t unit = 0;
};
struct Block : Setting {
    std::vector<Character> characters;
};

// The user's font and the default paragraph style. A bare 0 is no line height.
const char16_t* const kBase =
    u"body { margin-left: 0px; margin-top: 0px; margin-bottom: 0px; text-indent: 0px; line-height: 0.0; text-align: left; "
    u"font-family: 'TeX Gyre Pagella'; font-size: 12px; font-weight: normal; font-style: normal; text-decoration: none }";

// The paragraphs of a body. What an element does not say is the enclosing element's: the style hands down what CSS
// inherits, and an underline is handed down here. Margins are asked of the "p" alone, below a body that has none.
class Reading {
public:
    explicit Reading(const std::string& xml) : document(parse(xml)) {
        resolver->processRulesFromStyleSheet(WQCSSStyleSheet::styleSheetWithString(kBase));
        const auto body = document->documentElement();
        const Setting outer{resolver->resolveStyle_parentStyle(body, nullptr), false, nullptr};
        for (auto child = body->firstChild(); child; child = child->nextSibling()) {
            if (child->nodeName() != u"p") throw std::runtime_error("not a paragraph: " + dump(child));
            blocks.push_back({settingOf(child, outer), {}});
            readInlines(child, blocks.back());
        }
    }

    std::vector<Block> blocks;

private:
    Setting settingOf(const Ref<WQXMLNode>& node, const Setting& outer) const {
        Setting setting{resolver->resolveStyle_parentStyle(node, outer.style), outer.isUnderlined, outer.link};
        if (const auto element = wq::cast<WQXMLElement>(node)) {
            const auto declaration = WQCSSMutableStyleDeclaration::newStyleDeclaration();
            declaration->setCssText(element->getAttribute(u"style"));
            if (declaration->propertyCSSValue(u"text-decoration"))
                setting.isUnderlined = setting.style->textDecoration() == WQCSSTextDecorationUnderline;
            if (element->nodeName() == u"a") setting.link = element->getAttribute(u"href");
        }
        return setting;
    }

    void readInlines(const Ref<WQXMLNode>& parent, const Setting& outer) {
        for (auto child = parent->firstChild(); child; child = child->nextSibling()) {
            const Setting setting = settingOf(child, outer);
            readInlines(child, setting);
            if (child->nodeType() != XML_TEXT_NODE) continue;
            const NSString text = child->nodeValue();
            for (const char16_t unit : text.view()) blocks.back().characters.push_back({setting, unit});
        }
    }

    Ref<WQXMLDocument> document;
    Ref<WQCSSStyleResolver> resolver = WQCSSStyleResolver::newStyleResolver();
};

Reading readAgain(const std::vector<Paragraph>& paragraphs) { return Reading(writtenBody(textOf(paragraphs))); }

Ref<NSParagraphStyle> paragraphOf(const Setting& setting) {
    return setting.style->attributes()->objectForKey(NSParagraphStyleAttributeName).object<NSParagraphStyle>();
}
Ref<NSFont> fontOf(const Setting& setting) { return setting.style->attributes()->objectForKey(NSFontAttributeName).object<NSFont>(); }
Ref<NSColor> colorOf(const Setting& setting) {
    return setting.style->attributes()->objectForKey(NSForegroundColorAttributeName).object<NSColor>();
}

// ---- The property

uint64_t below(uint64_t limit) { return *rc::gen::resize(rc::kNominalSize, rc::gen::inRange<uint64_t>(0, limit)); }
bool oneIn(uint64_t times) { return below(times) == times - 1; }
template <class T, size_t N> T anyOf(const T (&choices)[N]) { return choices[below(N)]; }

// No length lies between 0 and a ten-thousandth, nor does the difference of two, and none reaches a million: see
// NumbersWithAnExponentAreNotReadAgain.
double anyLength() {
    constexpr double odd[] = {0, 7, 12, 14.173229, 28.346457, 100.5, 1.0 / 3, -2.5, 1234.5678, 99999.95};
    return oneIn(3) ? static_cast<double>(below(1000000)) / 1000 : anyOf(odd);
}

// In a face that the family has: the traits are those that were found.
Ref<NSFont> anyFont() {
    constexpr const char16_t* families[] = {u"TeX Gyre Pagella", u"TeX Gyre Heros", u"DejaVu Sans", u"Wanderer", u"WANDERER"};
    constexpr double sizes[] = {12, 7, 12.000001, 14.173229, 100.5, 10.333333, 0.5, 1638.4};
    return NSFontManager::sharedFontManager()->fontWithFamily_traits_weight_size(anyOf(families), below(4), 5, anyOf(sizes));
}

Ref<NSColor> anyColor() {
    constexpr double components[] = {0, 1, 0.5, 1.0 / 3, 1 / 255.0, 254.999 / 255};
    switch (below(3)) {
        case 0: return NSColor::textColor();
        case 1: return NSColor::colorWithSRGBRed_green_blue_alpha(anyOf(components), anyOf(components), anyOf(components), 0.5);
        default: return NSColor::colorWithDeviceRed_green_blue_alpha(static_cast<double>(below(256)) / 255, 0, anyOf(components), 1);
    }
}

Look anyLook(bool needsColor) {
    constexpr const char16_t* links[] = {nullptr, u"http://example.com/?a=1&b='2'", u"#x"};
    return {anyFont(), needsColor || oneIn(2) ? anyColor() : nullptr, oneIn(3), anyOf(links)};
}

std::u16string anyText() {
    constexpr const char16_t* characters[] = {u"x", u" ", u"<",      u">",      u"&",      u"\"", u"'",
                                              u"]", u"[", u"\u00e4", u"\u2028", u"\u00a0", u"\t", u"\U0001D11E"};
    std::u16string text;
    for (uint64_t count = 1 + below(4); count > 0; --count) text += anyOf(characters);
    return text;
}

Ref<NSParagraphStyle> anyParagraphStyle() {
    if (oneIn(4)) return nullptr;
    const auto style = NSParagraphStyle::defaultParagraphStyle()->mutableCopy();
    if (oneIn(2)) style->setAlignment(static_cast<long>(below(5)));
    if (oneIn(2)) style->setParagraphSpacingBefore(anyLength());
    if (oneIn(2)) style->setParagraphSpacing(anyLength());
    if (oneIn(2)) style->setHeadIndent(anyLength());
    if (oneIn(2)) style->setFirstLineHeadIndent(anyLength());
    if (oneIn(3)) style->setLineHeightMultiple(1.5);
    return style;
}

// Where the first character has a colour all have one: see ARunWithoutAColourHasThatOfItsParagraph.
Paragraph anyParagraph(const char16_t* terminator) {
    Paragraph paragraph{anyParagraphStyle(), {}, {terminator, anyLook(false)}};
    for (uint64_t count = below(6); count > 0; --count) {
        const bool needsColor = !paragraph.runs.empty() && paragraph.runs[0].look.color;
        paragraph.runs.push_back({anyText(), anyLook(needsColor)});
    }
    return paragraph;
}

std::vector<Paragraph> anyParagraphs() {
    constexpr const char16_t* terminators[] = {u"\n", u"\r\n", u"\r", u"\u2029"};
    const char16_t* const terminator = anyOf(terminators);
    std::vector<Paragraph> paragraphs;
    for (uint64_t count = 1 + below(6); count > 0; --count) paragraphs.push_back(anyParagraph(terminator));
    if (!paragraphs.back().runs.empty() && oneIn(2)) paragraphs.back().terminator.text.clear();
    return paragraphs;
}

// Numbers are written in single precision with six decimals, and again with six digits: half a unit in the sixth decimal,
// half a unit in the sixth digit, and a little for the roundings to single precision.
void expectNumber(double back, double given) { RC_ASSERT(std::abs(back - given) <= 5e-7 + 5.5e-6 * std::abs(given)); }

// Components are cut to eight bits; what is read is in single precision.
void expectComponent(double back, double given) {
    RC_ASSERT(back <= given + 1e-7);
    RC_ASSERT(given - back <= 1 / 255.0 + 1e-7);
}

void expectColor(const Ref<NSColor>& back, const Ref<NSColor>& given) {
    const auto color = (given ? given : NSColor::textColor())->colorUsingType(NSColorTypeComponentBased);  // black, if it is dynamic
    expectComponent(back->redComponent(), color->redComponent());
    expectComponent(back->greenComponent(), color->greenComponent());
    expectComponent(back->blueComponent(), color->blueComponent());
    RC_ASSERT(back->alphaComponent() == 1);
}

// A family is read with its quotes, and no font has such a name: see AFamilyWithABlankComesBackInQuotesAndFindsNoFont.
NSString withoutQuotes(const NSString& family) {
    return family.view().starts_with(u'\'') ? family.substringWithRange({1, family.length() - 2}) : family;
}

void expectFont(const Setting& back, const Ref<NSFont>& given) {
    back.style->setFontFamily(withoutQuotes(back.style->fontFamily()));
    const auto font = fontOf(back);
    RC_ASSERT(font->familyName() == given->familyName());
    RC_ASSERT(font->fontDescriptor()->symbolicTraits() == given->fontDescriptor()->symbolicTraits());
    expectNumber(font->pointSize(), given->pointSize());
}

// What blocks and characters have in common.
void expectSetting(const Setting& back, const Ref<NSParagraphStyle>& style, const Look& look) {
    expectFont(back, look.font);
    expectColor(colorOf(back), look.color);
    RC_ASSERT(back.isUnderlined == look.isUnderlined);
    const auto paragraph = paragraphOf(back);
    const bool isNatural = !style || style->alignment() == NSTextAlignmentNatural;
    RC_ASSERT(paragraph->alignment() == (isNatural ? NSTextAlignmentLeft : style->alignment()));
    expectNumber(paragraph->firstLineHeadIndent(), style->firstLineHeadIndent() - style->headIndent());
}

void expectParagraph(const Block& back, const Paragraph& given) {
    const Look& first = given.runs.empty() ? given.terminator.look : given.runs[0].look;
    expectSetting(back, given.style, first);
    const auto paragraph = paragraphOf(back);
    expectNumber(paragraph->paragraphSpacingBefore(), given.style->paragraphSpacingBefore());
    expectNumber(paragraph->paragraphSpacing(), given.style->paragraphSpacing());
    RC_ASSERT(back.style->marginLeft().type == WQCSSLengthTypeAbsolute);
    expectNumber(back.style->marginLeft().value, given.style->headIndent());

    auto character = back.characters.begin();
    for (const Run& run : given.runs)
        for (const char16_t unit : run.text) {
            RC_ASSERT((character != back.characters.end()));
            RC_ASSERT(character->unit == unit);
            RC_ASSERT((character->link == run.look.link));
            expectSetting(*character++, given.style, run.look);
        }
    RC_ASSERT((character == back.characters.end()));
}

TEST(HTMLRoundTripPropertyTest, ParagraphsComeBackAsTheyWereSet) {
    EXPECT_TRUE(rc::check([] {
        const auto given = anyParagraphs();
        const auto xml = writtenBody(textOf(given));
        RC_LOG() << xml;
        const Reading back(xml);
        RC_ASSERT(back.blocks.size() == given.size());
        for (size_t index = 0; index < given.size(); ++index) expectParagraph(back.blocks[index], given[index]);
    }));
}

// ---- What does not come back, or not quite

Ref<NSMutableParagraphStyle> newParagraphStyle() { return NSParagraphStyle::defaultParagraphStyle()->mutableCopy(); }
Look lookIn(const char16_t* family, double size = 12, unsigned long traits = 0) {
    return {NSFontManager::sharedFontManager()->fontWithFamily_traits_weight_size(family, traits, 5, size), nullptr, false, nullptr};
}
Look colored(double red, double green, double blue) {
    Look look = lookIn(u"TeX Gyre Pagella");
    look.color = NSColor::colorWithSRGBRed_green_blue_alpha(red, green, blue, 1);
    return look;
}

// A multiple is of the size that each run has.
TEST(HTMLRoundTripTest, ALineHeightMultipleComesBackAsAnExactHeight) {
    const auto style = newParagraphStyle();
    style->setLineHeightMultiple(1.5);
    const auto back = readAgain({{style, {{u"a", lookIn(u"TeX Gyre Heros", 20)}, {u"b", lookIn(u"TeX Gyre Heros", 10)}}, {}}});
    ASSERT_EQ(back.blocks.size(), 1u);
    ASSERT_EQ(back.blocks[0].characters.size(), 2u);
    const std::pair<Setting, double> rows[] = {
        {back.blocks[0], 30}, {back.blocks[0].characters[0], 30}, {back.blocks[0].characters[1], 15}};
    for (const auto& [setting, height] : rows) {
        EXPECT_EQ(setting.style->lineHeight(), 1.5f);
        EXPECT_EQ(paragraphOf(setting)->lineHeightMultiple(), 0);
        EXPECT_EQ(paragraphOf(setting)->minimumLineHeight(), height);
        EXPECT_EQ(paragraphOf(setting)->maximumLineHeight(), height);
    }
}

TEST(HTMLRoundTripTest, WithoutALineHeightMultipleTheHeightIsZero) {
    const auto back = readAgain({{nullptr, {{u"a", lookIn(u"TeX Gyre Heros", 20)}}, {}}});
    EXPECT_EQ(back.blocks.at(0).style->lineHeight(), 0);
    EXPECT_EQ(paragraphOf(back.blocks[0])->minimumLineHeight(), 0);
    EXPECT_EQ(paragraphOf(back.blocks[0])->maximumLineHeight(), 0);
}

TEST(HTMLRoundTripTest, AFamilyWithABlankComesBackInQuotesAndFindsNoFont) {
    const auto back = readAgain({{nullptr, {{u"a", lookIn(u"TeX Gyre Heros", 20, NSBoldFontMask)}}, {}}});
    const auto& style = back.blocks.at(0).characters.at(0).style;
    EXPECT_EQ(style->fontFamily(), u"'TeX Gyre Heros'");
    EXPECT_FALSE(style->attributes()->containsKey(NSFontAttributeName));
    EXPECT_EQ(style->font()->description(), u"TeX Gyre Pagella 20");  // the user's
}

TEST(HTMLRoundTripTest, AFamilyWithoutABlankFindsItsFont) {
    const auto back = readAgain({{nullptr, {{u"a", lookIn(u"WANDERER", 20)}}, {}}});
    const auto& character = back.blocks.at(0).characters.at(0);
    EXPECT_EQ(character.style->fontFamily(), u"WANDERER");
    EXPECT_EQ(fontOf(character)->description(), u"WANDERER 20 bold");
}

TEST(HTMLRoundTripTest, ARunWithoutAColourHasThatOfItsParagraph) {
    const auto back = readAgain({{nullptr, {{u"a", colored(1, 0, 0)}, {u"b", lookIn(u"TeX Gyre Pagella")}}, {}}});
    EXPECT_EQ(colorOf(back.blocks.at(0).characters.at(1))->redComponent(), 1);
}

TEST(HTMLRoundTripTest, AComponentIsCutToEightBits) {
    const auto back = readAgain({{nullptr, {{u"a", colored(0.5, 1.0 / 3, 1)}}, {}}});
    const auto color = colorOf(back.blocks.at(0));
    EXPECT_EQ(color->redComponent(), 127 / 255.0f);
    EXPECT_EQ(color->greenComponent(), 85 / 255.0f);
    EXPECT_EQ(color->blueComponent(), 1);
}

TEST(HTMLRoundTripTest, NumbersComeBackWithSixDigits) {
    const std::pair<double, float> rows[] = {{14.173229, 14.1732f}, {12.000001, 12}, {1234.5678, 1234.57f}, {99999.95, 100000}};
    for (const auto& [given, back] : rows) {
        const auto style = newParagraphStyle();
        style->setParagraphSpacing(given);
        style->setHeadIndent(given);
        const auto reading = readAgain({{style, {{u"a", lookIn(u"DejaVu Sans", given)}}, {}}});
        const auto& block = reading.blocks.at(0);
        EXPECT_EQ(block.style->fontSize(), back);
        EXPECT_EQ(block.style->marginLeft().value, back);
        EXPECT_EQ(block.style->textIndent().value, -back);
        EXPECT_EQ(paragraphOf(block)->paragraphSpacing(), back);
    }
}

// One paragraph, each character with a style of its own.
Ref<NSAttributedString> textInStyles(const std::vector<Ref<NSParagraphStyle>>& styles) {
    const auto text = NSMutableAttributedString::newWithString(u"");
    for (const auto& style : styles)
        text->appendAttributedString(NSAttributedString::newWithString_attributes(u"x", attributesOf(style, lookIn(u"TeX Gyre Pagella"))));
    return text;
}

// The paragraph is set as its first character; a run's own spacing has no element to be of.
TEST(HTMLRoundTripTest, OneParagraphHasOneStyle) {
    const auto first = newParagraphStyle(), second = newParagraphStyle();
    first->setAlignment(NSTextAlignmentRight);
    first->setParagraphSpacing(7);
    second->setAlignment(NSTextAlignmentCenter);
    second->setParagraphSpacing(9);
    const Reading back(writtenBody(textInStyles({first, second})));
    ASSERT_EQ(back.blocks.size(), 1u);
    EXPECT_EQ(paragraphOf(back.blocks[0])->alignment(), NSTextAlignmentRight);
    EXPECT_EQ(paragraphOf(back.blocks[0])->paragraphSpacing(), 7);
    EXPECT_EQ(paragraphOf(back.blocks[0].characters.at(0))->alignment(), NSTextAlignmentRight);
    EXPECT_EQ(paragraphOf(back.blocks[0].characters.at(1))->alignment(), NSTextAlignmentCenter);
}

// It cannot happen between a paragraph and the body, which have a multiple of 0 in common.
TEST(HTMLRoundTripTest, ARunWithoutALineHeightMultipleHasThatOfItsParagraph) {
    const auto style = newParagraphStyle();
    style->setLineHeightMultiple(1.5);
    const auto xml = writtenBody(textInStyles({style, nullptr}));
    EXPECT_EQ(xml, "<body><p style=\"line-height: 1.5; \">x<span style=\"line-height: 0; \">x</span></p></body>");
    testing::internal::CaptureStdout();
    const Reading back(xml);
    EXPECT_THAT(testing::internal::GetCapturedStdout(), HasSubstr("invalid value \"0\""));
    EXPECT_EQ(back.blocks.at(0).characters.at(1).style->lineHeight(), 1.5f);
}

// CSS knows no exponent. What has one is written, and is a syntax error where it is read.
TEST(HTMLRoundTripTest, NumbersWithAnExponentAreNotReadAgain) {
    const std::pair<double, std::string> rows[] = {{1000000, "1e+06px"}, {0.00001, "1e-05px"}};
    for (const auto& [given, number] : rows) {
        const auto style = newParagraphStyle();
        style->setParagraphSpacing(given);
        const auto xml = writtenBody(textOf({{style, {{u"a", lookIn(u"TeX Gyre Pagella")}}, {}}}));
        EXPECT_EQ(xml, "<body><p style=\"margin-bottom: " + number + "; \">a</p></body>");
#ifdef WQ_NO_HARD_ASSERTIONS
        EXPECT_EQ(Reading(xml).blocks.at(0).style->marginBottom().value, 0);
#else
        EXPECT_EXIT(Reading{xml}, testing::KilledBySignal(SIGABRT), "");
#endif
    }
}

}  // namespace
