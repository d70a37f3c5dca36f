// What a browser makes of the HTML: it is asked for the computed style of every text, and that is compared with the
// text's attributes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fmt/format.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include "examples/book/HtmlPage.h"
#include "examples/book/StyledText.h"
#include "examples/shared/Opening.h"
#include "html/WQHTMLWriter.h"
#include "platform/NSAttributeNames.h"
#include "platform/NSColor.h"
#include "platform/NSFontManager.h"
#include "platform/NSMutableParagraphStyle.h"

namespace {

namespace fs = std::filesystem;

// What cannot agree, and is not compared:
//   - margins, indent and alignment of list items: an indent of a list is no margin there, and the marker is the browser's;
//   - line heights: the text system has them as bounds of a line, which the HTML does not say;
//   - underlines: an underline of a paragraph shows below its spans, though their own value is "none";
//   - "natural" alignment, which goes out as left.

// ---- The browser

std::string browser() {
    for (const char* name : {"chromium-headless-shell", "chromium"})
        for (const char* folder : {"/usr/bin/", "/usr/local/bin/"})
            if (fs::exists(std::string(folder) + name)) return std::string(folder) + name;
    return "";
}

fs::path scratchFolder() {
    std::string name = testing::TempDir() + "wq-browser-XXXXXX";
    return mkdtemp(name.data());
}

// The document that the browser has after the page's scripts have run.
std::string documentOf(const std::string& page) {
    const fs::path folder = scratchFolder();
    std::ofstream(folder / "page.html", std::ios::binary) << page;
    const std::string command = fmt::format(
        "env -u LD_PRELOAD {} --headless --disable-gpu --no-sandbox --user-data-dir={} --dump-dom file://{} 2>{}", browser(),
        (folder / "profile").string(), (folder / "page.html").string(), (folder / "log").string());
    FILE* pipe = popen(command.c_str(), "r");
    std::string output;
    char buffer[65536];
    while (const size_t read = std::fread(buffer, 1, sizeof buffer, pipe)) output.append(buffer, read);
    pclose(pipe);
    fs::remove_all(folder);
    return output;
}

// A line for each text: the text as a URL has it, and what is computed, between tabs.
constexpr const char* kScript = R"(<script>
const lines = [];
const walker = document.createTreeWalker(document.querySelector('main'), NodeFilter.SHOW_TEXT);
while (walker.nextNode()) {
  const text = walker.currentNode, element = text.parentElement, block = element.closest('p, li');
  const style = getComputedStyle(element), own = element.computedStyleMap(), around = block.computedStyleMap();
  lines.push([encodeURIComponent(text.data), block.tagName, style.fontFamily, own.get('font-size').value, style.fontWeight,
    style.fontStyle, style.color, getComputedStyle(block).textAlign, around.get('margin-left').value, around.get('margin-top').value,
    around.get('margin-bottom').value, around.get('text-indent').value, encodeURIComponent(element.closest('a')?.getAttribute('href') ?? '-'),
    style.listStyleType].join('\t'));
}
const output = document.createElement('pre');
output.id = 'computed';
output.textContent = lines.join('\n');
document.body.append(output);
</script>)";

struct Computed {
    std::string text;  // UTF-8
    std::string block, family, weight, style, color, align, href, marker;
    float size = 0, left = 0, above = 0, below = 0, indent = 0;
};

std::string decoded(const std::string& text) {
    std::string bytes;
    for (size_t i = 0; i < text.size(); ++i)
        if (text[i] == '%') {
            bytes += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            bytes += text[i];
        }
    return bytes;
}

std::string without(std::string text, char unwanted) {
    std::erase(text, unwanted);
    return text;
}

std::vector<Computed> computedOf(std::string page) {
    page.insert(page.rfind("</body>"), kScript);
    const std::string document = documentOf(page);
    const std::string opening = "<pre id=\"computed\">";
    const size_t start = document.find(opening);
    EXPECT_NE(start, std::string::npos) << document.substr(0, 2000);
    if (start == std::string::npos) return {};
    const size_t from = start + opening.size();
    std::istringstream lines(document.substr(from, document.find("</pre>", from) - from));
    std::vector<Computed> all;
    for (std::string line; std::getline(lines, line);) {
        std::vector<std::string> fields;
        std::istringstream parts(line);
        for (std::string part; std::getline(parts, part, '\t');) fields.push_back(part);
        EXPECT_EQ(fields.size(), 14u) << line;
        const auto number = [&](size_t i) { return std::strtof(fields[i].c_str(), nullptr); };
        all.push_back(
            {decoded(fields[0]), fields[1], without(fields[2], '"'), fields[4], fields[5], fields[6], fields[7], decoded(fields[12]),
             fields[13], number(3), number(8), number(9), number(10), number(11)});
    }
    return all;
}

// ---- What the text says

std::string colorOf(const Ref<NSDictionary>& attributes) {
    const auto color =
        attributes->objectForKey(NSForegroundColorAttributeName).object<NSColor>()->colorUsingType(NSColorTypeComponentBased);
    const auto byte = [](double component) { return static_cast<int>(component * 255); };  // the rest is cut off
    return fmt::format("rgb({}, {}, {})", byte(color->redComponent()), byte(color->greenComponent()), byte(color->blueComponent()));
}

// Six digits, as the numbers of a style are written.
float written(double number) { return std::strtof(fmt::format("{:.6g}", static_cast<float>(number)).c_str(), nullptr); }

std::string alignmentOf(const Ref<NSParagraphStyle>& style) {
    static const char* const names[] = {"left", "right", "center", "justify", "left"};
    return names[style->alignment()];
}

// A value that nobody states is "start".
std::string stated(const std::string& alignment) { return alignment == "start" ? "left" : alignment; }

void compare(const Ref<NSAttributedString>& text, uint64_t index, const Computed& computed) {
    const auto attributes = text->attributesAtIndex_effectiveRange(index, nullptr);
    const auto font = attributes->objectForKey(NSFontAttributeName).object<NSFont>();
    const uint32_t traits = font->fontDescriptor()->symbolicTraits();
    EXPECT_EQ(computed.family, wq::toUTF8(font->familyName()));
    EXPECT_FLOAT_EQ(computed.size, written(font->pointSize()));
    EXPECT_EQ(computed.weight, traits & NSFontBoldTrait ? "700" : "400");
    EXPECT_EQ(computed.style, traits & NSFontItalicTrait ? "italic" : "normal");
    EXPECT_EQ(computed.color, colorOf(attributes));
    const auto link = attributes->objectForKey(NSLinkAttributeName).object<NSURL>();
    EXPECT_EQ(computed.href, link ? wq::toUTF8(link->absoluteString()) : "-");
    if (computed.block != "P") return;
    const auto style = attributes->objectForKey(NSParagraphStyleAttributeName).object<NSParagraphStyle>();
    EXPECT_EQ(stated(computed.align), alignmentOf(style));
    EXPECT_FLOAT_EQ(computed.left, written(style->headIndent()));
    EXPECT_FLOAT_EQ(computed.above, written(style->paragraphSpacingBefore()));
    EXPECT_FLOAT_EQ(computed.below, written(style->paragraphSpacing()));
    EXPECT_FLOAT_EQ(computed.indent, written(style->firstLineHeadIndent() - style->headIndent()));
}

// Goes along the text with what the browser has of it; in lists it skips the markers, and everywhere the line ends.
void compareAll(const Ref<NSAttributedString>& text, const std::vector<Computed>& all) {
    const std::u16string_view units = text->string();
    uint64_t index = 0;
    for (const Computed& computed : all) {
        const NSString found = wq::fromUTF8(computed.text);
        SCOPED_TRACE(computed.text);
        while (index < units.size() && units[index] == u'\n') ++index;
        if (computed.block == "LI" && index < units.size() && units[index] == u'\t') index = units.find(u'\t', index + 1) + 1;
        ASSERT_EQ(wq::toUTF8(units.substr(index, found.length())), computed.text);
        for (uint64_t i = index; i < index + found.length(); ++i) {
            compare(text, i, computed);
            if (testing::Test::HasFailure()) return;
        }
        index += found.length();
    }
    EXPECT_EQ(wq::toUTF8(units.substr(index)).find_first_not_of('\n'), std::string::npos) << "text is missing behind " << index;
}

Ref<WQCSSStyle> plainStyle() {
    const auto sheet = WQCSSStyleSheet::styleSheetWithString(u"body { font-family: TeX Gyre Termes; font-size: 12px; color: #000000 }");
    const auto resolver = WQCSSStyleResolver::newStyleResolver();
    resolver->processRulesFromStyleSheet(sheet);
    return resolver->resolveStyle_parentStyle(WQXMLElement::elementWithName(u"body"), nullptr);
}

class BrowserTest : public testing::Test {
protected:
    void SetUp() override {
        if (!browser().empty()) return;
        ASSERT_FALSE(std::getenv("WQ_NEEDS_BROWSER")) << "no browser is installed";
        GTEST_SKIP() << "no browser is installed";
    }
};

// ---- The sample manuscript

TEST_F(BrowserTest, ComputesTheAttributesOfEveryTextOfTheSample) {
    const fs::path folder = fs::path(WQ_SOURCE_FOLDER) / "examples/manuscript";
    const auto document = openDocument((folder / "manuscript.xml").string(), nullptr);
    const auto resolver = WQCSSStyleResolver::newStyleResolver();
    resolver->processRulesFromStyleSheet(openSheet((folder / "manuscript.css").string()));
    StyledTree tree(document, resolver, [](const auto&, const auto&) {});
    tree.resolve();
    const auto root = wq::cast<WQXMLElement>(document->documentElement());
    const auto text = joined(styledParagraphs(root, tree, nullptr));
    const auto all = computedOf(htmlPage(text, u"Sample", tree.styleOf(root), nullptr));
    EXPECT_GT(all.size(), 100u);
    compareAll(text, all);
}

// ---- Any text

class Chance {
public:
    uint32_t below(uint32_t count) { return static_cast<uint32_t>(generator() % count); }
    bool oneIn(uint32_t count) { return below(count) == 0; }
    template <class T> T of(const std::vector<T>& choices) { return choices[below(static_cast<uint32_t>(choices.size()))]; }

private:
    std::mt19937 generator{20261};
};

Ref<NSDictionary> anyAttributes(Chance& chance, const Ref<NSParagraphStyle>& style) {
    const auto font = NSFontManager::sharedFontManager()->fontWithFamily_traits_weight_size(
        chance.of<NSString>({u"TeX Gyre Termes", u"TeX Gyre Pagella", u"TeX Gyre Heros", u"DejaVu Sans"}),
        (chance.oneIn(3) ? NSBoldFontMask : NSUnboldFontMask) | (chance.oneIn(3) ? NSItalicFontMask : NSUnitalicFontMask), 5,
        chance.of<double>({7, 12, 14.173229, 100.5}));
    const auto shade = [&] { return chance.of<double>({0, 0.2, 0.5, 1}); };
    const auto attributes = NSDictionary::dictionary(
        {{NSFontAttributeName, font},
         {NSParagraphStyleAttributeName, style},
         {NSForegroundColorAttributeName,
          chance.oneIn(4) ? NSColor::textColor() : NSColor::colorWithSRGBRed_green_blue_alpha(shade(), shade(), shade(), 1)}});
    if (chance.oneIn(5)) attributes->setObject_forKey(NSURL::URLWithString(u"http://example.org/a'b?c=d&e"), NSLinkAttributeName);
    return attributes;
}

Ref<NSParagraphStyle> anyParagraphStyle(Chance& chance) {
    const auto style = NSParagraphStyle::defaultParagraphStyle()->mutableCopy();
    style->setAlignment(chance.of<long>(
        {NSTextAlignmentLeft, NSTextAlignmentRight, NSTextAlignmentCenter, NSTextAlignmentJustified, NSTextAlignmentNatural}));
    const auto length = [&] { return chance.of<double>({0, 0, 12, 14.173229, 123.456789}); };
    style->setHeadIndent(length());
    style->setFirstLineHeadIndent(length());
    style->setParagraphSpacing(length());
    style->setParagraphSpacingBefore(length());
    return style;
}

TEST_F(BrowserTest, ComputesTheAttributesOfTextOfEveryKind) {
    Chance chance;
    const auto text = NSMutableAttributedString::newWithString(u"");
    for (int paragraph = 0; paragraph < 80; ++paragraph) {
        const auto style = anyParagraphStyle(chance);
        for (uint32_t runs = 1 + chance.below(4); runs > 0; --runs) {
            const NSString words = chance.of<NSString>({u"plain", u"<b>&amp;", u"“quoted” 'and'", u"𝕊 and 😀", u"a b", u"-->"});
            text->appendAttributedString(NSAttributedString::newWithString_attributes(words, anyAttributes(chance, style)));
        }
        text->appendAttributedString(NSAttributedString::newWithString_attributes(u"\n", anyAttributes(chance, style)));
    }
    const auto all = computedOf(htmlPage(text, u"Any", plainStyle(), nullptr));
    EXPECT_GT(all.size(), 100u);
    compareAll(text, all);
}

TEST_F(BrowserTest, DrawsTheMarkersOfEveryKindOfListItself) {
    const auto text = NSMutableAttributedString::newWithString(u"");
    const std::vector<NSString> keywords{
        u"box",
        u"check",
        u"circle",
        u"diamond",
        u"disc",
        u"hyphen",
        u"square",
        u"lower-hexadecimal",
        u"upper-hexadecimal",
        u"octal",
        u"lower-alpha",
        u"lower-latin",
        u"upper-alpha",
        u"upper-latin",
        u"lower-roman",
        u"upper-roman",
        u"decimal"};
    Chance chance;
    for (const NSString& keyword : keywords) {
        const auto list = NSTextList::textListWithMarkerFormat(u"{" + keyword + u"}");
        const auto style = NSParagraphStyle::defaultParagraphStyle()->mutableCopy();
        style->setTextLists({list});
        const NSString item = u"\t" + list->markerForItemNumber(1) + u"\t" + keyword + u"\n";
        text->appendAttributedString(NSAttributedString::newWithString_attributes(item, anyAttributes(chance, style)));
    }
    const auto all = computedOf(htmlPage(text, u"Lists", plainStyle(), nullptr));
    ASSERT_EQ(all.size(), keywords.size());
    compareAll(text, all);
    for (size_t i = 0; i < keywords.size(); ++i) EXPECT_EQ(all[i].marker, wq::toUTF8(keywords[i]));
}

TEST_F(BrowserTest, FindsAValueThatDiffers) {
    const auto text = NSAttributedString::newWithString_attributes(u"x", plainStyle()->attributes());
    std::string page = htmlPage(text, u"One", plainStyle(), nullptr);
    const auto right = computedOf(page);
    ASSERT_EQ(right.size(), 1u);
    EXPECT_EQ(right[0].weight, "400");
    page.replace(page.find("<p"), 2, "<p style=\"font-weight:bold\"");
    EXPECT_EQ(computedOf(page).at(0).weight, "700");
}

}  // namespace
