#include "html/WQHTMLWriter.h"

#include <csignal>
#include <functional>

#include "platform/NSAttributeNames.h"
#include "platform/NSColor.h"
#include "platform/NSFontManager.h"
#include "platform/NSMutableAttributedString.h"
#include "platform/NSMutableParagraphStyle.h"
#include "tests/common/core/css/Declarations.h"
#include "tests/dom/Support.h"

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// ---- Styled text: pieces of text and how each looks

using Lists = std::vector<Ref<NSTextList>>;

// How a piece looks; at first as the writer's own base attributes have it.
struct Look {
    Look bold() const { return with(&Look::traits, traits | NSBoldFontMask); }
    Look italic() const { return with(&Look::traits, traits | NSItalicFontMask); }
    Look family(NSString name) const { return with(&Look::fontFamily, std::move(name)); }
    Look size(double points) const { return with(&Look::fontSize, points); }
    Look underlined() const { return with(&Look::underline, NSValue(1.0)); }
    Look color(NSValue value) const { return with(&Look::foreground, std::move(value)); }
    Look rgb(double red, double green, double blue) const { return color(NSColor::colorWithSRGBRed_green_blue_alpha(red, green, blue, 1)); }
    Look red() const { return rgb(1, 0, 0); }
    Look textColor() const { return color(NSColor::textColor()); }
    Look link(NSValue address) const { return with(&Look::target, std::move(address)); }
    Look indented(double first, double others) const { return with(&Look::firstIndent, first).with(&Look::indent, others); }
    Look spaced(double before, double behind) const { return with(&Look::spaceBefore, before).with(&Look::spaceBehind, behind); }
    Look leading(double multiple) const { return with(&Look::lineHeight, multiple); }
    Look aligned(long value) const { return with(&Look::alignment, value); }
    Look in(Lists outermostFirst) const { return with(&Look::lists, std::move(outermostFirst)); }

    Ref<NSDictionary> attributes() const {
        const auto paragraph = NSParagraphStyle::defaultParagraphStyle()->mutableCopy();
        paragraph->setFirstLineHeadIndent(firstIndent);
        paragraph->setHeadIndent(indent);
        paragraph->setParagraphSpacingBefore(spaceBefore);
        paragraph->setParagraphSpacing(spaceBehind);
        paragraph->setLineHeightMultiple(lineHeight);
        paragraph->setAlignment(alignment);
        paragraph->setTextLists(lists);
        const auto font = NSFontManager::sharedFontManager()->fontWithFamily_traits_weight_size(fontFamily, traits, 5, fontSize);
        EXPECT_TRUE(font) << wq::toUTF8(fontFamily);
        return NSDictionary::dictionary(
            {{NSParagraphStyleAttributeName, paragraph},
             {NSFontAttributeName, font},
             {NSUnderlineStyleAttributeName, underline},
             {NSForegroundColorAttributeName, foreground},
             {NSLinkAttributeName, target}});
    }

private:
    template <class T> Look with(T Look::*field, T value) const {
        Look look = *this;
        look.*field = std::move(value);
        return look;
    }
    unsigned long traits = 0;
    NSString fontFamily = u"TeX Gyre Pagella";
    double fontSize = 12;
    NSValue underline, foreground, target;
    double firstIndent = 0, indent = 0, spaceBefore = 0, spaceBehind = 0, lineHeight = 0;
    long alignment = NSTextAlignmentNatural;
    Lists lists;
};
const Look plain{};

struct Piece {
    NSString text;
    Look look = {};
};
using Pieces = std::vector<Piece>;

Ref<NSMutableAttributedString> styled(const Pieces& pieces) {
    const auto text = NSMutableAttributedString::newWithString(u"");
    for (const Piece& piece : pieces)
        text->appendAttributedString(NSAttributedString::newWithString_attributes(piece.text, piece.look.attributes()));
    return text;
}

Ref<NSTextList> list(const NSString& format) { return NSTextList::textListWithMarkerFormat(format); }
Ref<NSURL> url(const NSString& text) { return NSURL::URLWithString(text); }
NSString unit(char16_t only) { return std::u16string(1, only); }

// ---- The HTML of a text

// An element of the caller's, and what is written into it.
Ref<WQXMLWriter> openBody() {
    const auto output = WQXMLWriter::newToMemory();
    output->startElement(u"body");
    return output;
}
std::string contentOfBody(const Ref<WQXMLWriter>& output) {
    output->fullEndElement();
    output->flush();
    const std::string text(output->XMLData()->view());
    EXPECT_TRUE(text.starts_with("<body>") && text.ends_with("</body>")) << text;
    return text.substr(6, text.size() - 13);
}

std::string html(const Ref<NSAttributedString>& text, const Ref<WQHTMLWriter>& writer = WQHTMLWriter::newHTMLWriter()) {
    const auto output = openBody();
    writer->encodeAttributedString_withWriter(text, output);
    return contentOfBody(output);
}
std::string html(const Pieces& pieces, const Ref<WQHTMLWriter>& writer = WQHTMLWriter::newHTMLWriter()) {
    return html(Ref<NSAttributedString>(styled(pieces)), writer);
}
std::string htmlBelow(const Ref<NSDictionary>& base, const Ref<NSAttributedString>& text) {
    const auto output = openBody();
    WQHTMLWriter::newHTMLWriter()->encodeAttributedString_withWriter_baseAttributes(text, output, base);
    return contentOfBody(output);
}
std::string htmlBelow(const Look& base, const Pieces& pieces) { return htmlBelow(base.attributes(), styled(pieces)); }

struct Row {
    const char* what;
    Pieces text;
    std::string html;
};
void expect(const std::vector<Row>& rows) {
    for (const Row& row : rows) EXPECT_EQ(html(row.text), row.html) << row.what;
}

// ---- Paragraphs

TEST(WQHTMLWriterTest, ParagraphsAreDividedByTheirTerminatorsWhichAreNotWritten) {
    expect({
        {"an empty text", {}, ""},
        {"one paragraph in the base attributes", {{u"One"}}, "<p>One</p>"},
        {"a final newline", {{u"One\n"}}, "<p>One</p>"},
        {"no final newline", {{u"One\nTwo"}}, "<p>One</p><p>Two</p>"},
        {"only a newline", {{u"\n"}}, "<p/>"},
        {"empty paragraphs", {{u"\n\nOne\n\n\n"}}, "<p/><p/><p>One</p><p/><p/>"},
        {"CR", {{u"One\rTwo\r"}}, "<p>One</p><p>Two</p>"},
        {"CR and LF", {{u"One\r\nTwo\r\n"}}, "<p>One</p><p>Two</p>"},
        {"LF and CR", {{u"One\n\rTwo"}}, "<p>One</p><p/><p>Two</p>"},
        {"the paragraph separator", {{u"One\u2029Two\u2029"}}, "<p>One</p><p>Two</p>"},
        {"the line separator, which divides nothing", {{u"One\u2028Two"}}, "<p>One\xE2\x80\xA8Two</p>"},
        {"CR and LF in pieces of their own", {{u"One"}, {u"\r", plain.red()}, {u"\n", plain.bold()}, {u"Two"}}, "<p>One</p><p>Two</p>"},
    });
}

TEST(WQHTMLWriterTest, TheAttributesOfAParagraphAreThoseOfItsFirstCharacter) {
    expect({
        {"the whole paragraph", {{u"One", plain.bold()}}, R"(<p style="font-weight: bold; ">One</p>)"},
        {"the first character alone",
         {{u"O", plain.bold()}, {u"ne"}},
         R"(<p style="font-weight: bold; ">O<span style="font-weight: normal; ">ne</span></p>)"},
        {"what follows the first", {{u"O"}, {u"ne", plain.bold()}}, R"(<p>O<span style="font-weight: bold; ">ne</span></p>)"},
        {"the terminator alone", {{u"One"}, {u"\n", plain.bold()}, {u"Two"}}, "<p>One</p><p>Two</p>"},
        {"an empty paragraph", {{u"One\n"}, {u"\n", plain.bold()}, {u"Two"}}, R"(<p>One</p><p style="font-weight: bold; "/><p>Two</p>)"},
        {"a run over two paragraphs",
         {{u"One\nTwo", plain.bold()}},
         R"(<p style="font-weight: bold; ">One</p><p style="font-weight: bold; ">Two</p>)"},
        {"a run that begins within a paragraph",
         {{u"O"}, {u"ne\nTwo", plain.bold()}},
         R"(<p>O<span style="font-weight: bold; ">ne</span></p><p style="font-weight: bold; ">Two</p>)"},
    });
}

TEST(WQHTMLWriterTest, AParagraphSaysWhatDiffersFromTheBase) {
    const std::pair<Look, std::string> rows[] = {
        {plain.indented(10, 10), "margin-left: 10px; "},
        {plain.indented(0, 10), "margin-left: 10px; text-indent: -10px; "},
        {plain.indented(10, 0), "text-indent: 10px; "},
        {plain.spaced(1.5, 0), "margin-top: 1.5px; "},
        {plain.spaced(0, 2), "margin-bottom: 2px; "},
        {plain.leading(1.25), "line-height: 1.25; "},
        {plain.aligned(NSTextAlignmentRight), "text-align: right; "},
        {plain.aligned(NSTextAlignmentCenter), "text-align: center; "},
        {plain.aligned(NSTextAlignmentJustified), "text-align: justify; "},
        {plain.family(u"DejaVu Sans"), "font-family: 'DejaVu Sans'; "},
        {plain.size(10.5), "font-size: 10.5px; "},
        {plain.bold(), "font-weight: bold; "},
        {plain.italic(), "font-style: italic; "},
        {plain.underlined(), "text-decoration: underline; "},
        {plain.red(), "color: #ff0000; "},
        {plain.rgb(0, 0, 0), "color: #000000; "},
    };
    for (const auto& [look, style] : rows) {
        EXPECT_EQ(html({{u"One", look}}), "<p style=\"" + style + "\">One</p>");
        EXPECT_EQ(html({{u"One"}, {u"Two", look}}), "<p>One<span style=\"" + style + "\">Two</span></p>");
        EXPECT_EQ(htmlBelow(look, {{u"One", look}}), "<p>One</p>");
    }
}

TEST(WQHTMLWriterTest, AStyleNamesItsPropertiesInTheirOrder) {
    const Look look = plain.red()
                          .underlined()
                          .italic()
                          .bold()
                          .size(9)
                          .family(u"TeX Gyre Heros")
                          .aligned(NSTextAlignmentCenter)
                          .leading(2)
                          .indented(5, 1)
                          .spaced(2, 3);
    expect({
        {"all of them",
         {{u"One", look}},
         R"(<p style="margin-left: 1px; margin-top: 2px; margin-bottom: 3px; text-indent: 4px; line-height: 2; text-align: center; )"
         R"(font-family: 'TeX Gyre Heros'; font-size: 9px; font-weight: bold; font-style: italic; text-decoration: underline; )"
         R"(color: #ff0000; ">One</p>)"},
        {"and back, but for the color, which plain text does not have",
         {{u"One", look}, {u"Two"}},
         R"(<p style="margin-left: 1px; margin-top: 2px; margin-bottom: 3px; text-indent: 4px; line-height: 2; text-align: center; )"
         R"(font-family: 'TeX Gyre Heros'; font-size: 9px; font-weight: bold; font-style: italic; text-decoration: underline; )"
         R"(color: #ff0000; ">One)"
         R"(<span style="margin-left: 0px; margin-top: 0px; margin-bottom: 0px; text-indent: 0px; line-height: 0; text-align: left; )"
         R"(font-family: 'TeX Gyre Pagella'; font-size: 12px; font-weight: normal; font-style: normal; text-decoration: none; )"
         R"(">Two</span></p>)"},
    });
}

TEST(WQHTMLWriterTest, ASpanSaysWhatDiffersFromItsParagraph) {
    expect({
        {"several runs",
         {{u"a"}, {u"b", plain.bold()}, {u"c", plain.italic()}, {u"d"}},
         R"(<p>a<span style="font-weight: bold; ">b</span><span style="font-style: italic; ">c</span>d</p>)"},
        {"a paragraph that has a part of it",
         {{u"a", plain.bold()}, {u"b", plain.bold().red()}},
         R"(<p style="font-weight: bold; ">a<span style="color: #ff0000; ">b</span></p>)"},
        {"not from the span before it",
         {{u"a"}, {u"b", plain.red()}, {u"c", plain.red().bold()}},
         R"(<p>a<span style="color: #ff0000; ">b</span><span style="font-weight: bold; color: #ff0000; ">c</span></p>)"},
        {"a run without a color in a paragraph that has one",
         {{u"a", plain.red()}, {u"b"}, {u"c", plain.red()}},
         R"(<p style="color: #ff0000; ">abc</p>)"},
        {"a paragraph does not differ from the one before it",
         {{u"a\n", plain.bold()}, {u"b"}},
         R"(<p style="font-weight: bold; ">a</p><p>b</p>)"},
        {"a run that differs in nothing that CSS tells", {{u"a"}, {u"b", plain.aligned(NSTextAlignmentLeft)}, {u"c"}}, "<p>abc</p>"},
    });
}

// ---- Characters

TEST(WQHTMLWriterTest, TextIsEscapedAndCleaned) {
    expect({
        {"markup", {{u"<b> & \"c\" 'd' ]]>"}}, "<p>&lt;b&gt; &amp; &quot;c&quot; 'd' ]]&gt;</p>"},
        {"a reference", {{u"&amp;&#1;"}}, "<p>&amp;amp;&amp;#1;</p>"},
        {"markup in a span", {{u"a"}, {u"</span>", plain.bold()}}, R"(<p>a<span style="font-weight: bold; ">&lt;/span&gt;</span></p>)"},
        {"markup in a link", {{u"</a>", plain.link(u"x:")}}, R"(<p><a href="x:">&lt;/a&gt;</a></p>)"},
        {"control characters", {{u"\1a\0b\vc\fd\x1F\x7F\x85"_ns}}, "<p>abcd</p>"},
        {"nothing but control characters", {{u"\1\2"}}, "<p></p>"},
        {"nothing but control characters in a span",
         {{u"a"}, {u"\1", plain.bold()}},
         R"(<p>a<span style="font-weight: bold; "></span></p>)"},
        {"white space", {{u" \ta  b\t "}}, "<p> \ta  b\t </p>"},
        {"accents", {{u"\u00E4\u20AC"}}, "<p>\xC3\xA4\xE2\x82\xAC</p>"},
        {"beyond the BMP", {{u"\U0001D11E"}}, "<p>\xF0\x9D\x84\x9E</p>"},
        {"beyond the BMP, around a span",
         {{u"\U0001D11E"}, {u"\U0001F600", plain.bold()}, {u"\U0001D11E"}},
         "<p>\xF0\x9D\x84\x9E<span style=\"font-weight: bold; \">\xF0\x9F\x98\x80</span>\xF0\x9D\x84\x9E</p>"},
        {"beyond the BMP, before a newline", {{u"\U0001D11E\n\U0001D11E"}}, "<p>\xF0\x9D\x84\x9E</p><p>\xF0\x9D\x84\x9E</p>"},
        {"lone surrogates", {{unit(0xD834) + u"z" + unit(0xDD1E)}}, "<p>\xEF\xBF\xBDz\xEF\xBF\xBD</p>"},
        {"a pair that is divided by a run",
         {{unit(0xD834)}, {unit(0xDD1E), plain.bold()}},
         "<p>\xEF\xBF\xBD<span style=\"font-weight: bold; \">\xEF\xBF\xBD</span></p>"},
    });
}

// ---- Links

TEST(WQHTMLWriterTest, ALinkIsAnElementAroundTextAndSpans) {
    const Look link = plain.link(u"http://localhost/");
    expect({
        {"a string", {{u"One", link}}, R"(<p><a href="http://localhost/">One</a></p>)"},
        {"a URL", {{u"One", plain.link(url(u"http://localhost/"))}}, R"(<p><a href="http://localhost/">One</a></p>)"},
        {"a relative string", {{u"One", plain.link(u"two.html#three")}}, R"(<p><a href="two.html#three">One</a></p>)"},
        {"an empty string", {{u"One", plain.link(u"")}}, R"(<p><a href="">One</a></p>)"},
        {"an address with markup", {{u"One", plain.link(u"x:?a=1&b='2'")}}, R"(<p><a href="x:?a=1&amp;b='2'">One</a></p>)"},
        {"between text", {{u"a"}, {u"b", link}, {u"c"}}, R"(<p>a<a href="http://localhost/">b</a>c</p>)"},
        {"in another font",
         {{u"a"}, {u"b", link.bold()}},
         R"(<p>a<a href="http://localhost/"><span style="font-weight: bold; ">b</span></a></p>)"},
        {"over several fonts",
         {{u"a"}, {u"b", link}, {u"c", link.bold()}, {u"d", link.red()}, {u"e", link}, {u"f"}},
         R"(<p>a<a href="http://localhost/">b<span style="font-weight: bold; ">c</span>)"
         R"(<span style="color: #ff0000; ">d</span>e</a>f</p>)"},
        {"compared with the paragraph, which begins with it",
         {{u"a", link.bold()}, {u"b", link}, {u"c", plain.bold()}},
         R"(<p style="font-weight: bold; "><a href="http://localhost/">a<span style="font-weight: normal; ">b</span></a>c</p>)"},
        {"two of them side by side",
         {{u"a", link}, {u"b", plain.link(u"http://localhost/b")}},
         R"(<p><a href="http://localhost/">a</a><a href="http://localhost/b">b</a></p>)"},
        {"the same twice",
         {{u"a", link}, {u"b"}, {u"c", link}},
         R"(<p><a href="http://localhost/">a</a>b<a href="http://localhost/">c</a></p>)"},
        {"equal URLs",
         {{u"a", plain.link(url(u"http://localhost/"))}, {u"b", plain.link(url(u"http://localhost/"))}},
         R"(<p><a href="http://localhost/">ab</a></p>)"},
        {"a URL beside its string",
         {{u"a", plain.link(url(u"http://localhost/"))}, {u"b", link}},
         R"(<p><a href="http://localhost/">a</a><a href="http://localhost/">b</a></p>)"},
        {"over two paragraphs",
         {{u"a"}, {u"b\nc", link}, {u"d"}},
         R"(<p>a<a href="http://localhost/">b</a></p><p><a href="http://localhost/">c</a>d</p>)"},
        {"on a terminator alone", {{u"a"}, {u"\n", link}, {u"b"}}, "<p>a</p><p>b</p>"},
        {"on an empty paragraph", {{u"\n", link}}, "<p/>"},
    });
}

TEST(WQHTMLWriterTest, LinksAreWrittenRelativeToTheBaseURL) {
    const struct {
        const char16_t* base;
        const char16_t* link;
        const char* address;
    } rows[] = {
        {nullptr, u"http://localhost/docs/a.html", "http://localhost/docs/a.html"},
        {u"http://localhost/docs/", u"http://localhost/docs/a.html", "a.html"},
        {u"http://localhost/docs/b.html", u"http://localhost/docs/a.html", "a.html"},
        {u"http://localhost/docs/b.html", u"http://localhost/pictures/a.png", "../pictures/a.png"},
        {u"http://localhost/docs/", u"http://localhost/docs/", ""},
        {u"http://localhost/docs/", u"https://localhost/docs/a.html", "https://localhost/docs/a.html"},
        {u"http://localhost/docs/", u"mailto:someone@localhost", "mailto:someone@localhost"},
        {u"http://localhost/docs/", u"#part", "#part"},
        {u"file:///docs/b.html", u"file://localhost/docs/a.html", "a.html"},
    };
    for (const auto& row : rows) {
        const auto writer = WQHTMLWriter::newHTMLWriter();
        writer->setBaseURL(url(row.base));
        const std::string expected = std::string("<p><a href=\"") + row.address + "\">One</a></p>";
        EXPECT_EQ(html({{u"One", plain.link(row.link)}}, writer), expected);
        EXPECT_EQ(html({{u"One", plain.link(url(row.link))}}, writer), expected);
    }
}

TEST(WQHTMLWriterTest, ALinkThatIsNoURLFailsTheAssertionOfTheOutput) {
    for (const char16_t* address : {u"no address", u"http://localhost/\u00E4", u"100%", u"a#b#c"})
        EXPECT_EQ(
            raised([&] {
                const auto output = WQXMLWriter::newToMemory();
                WQHTMLWriter::newHTMLWriter()->encodeAttributedString_withWriter(styled({{u"a", plain.link(address)}}), output);
            }),
            "NSInternalInconsistencyException: Invalid parameter not satisfying: content");
}

TEST(WQHTMLWriterTest, AfterAHandlerThatReturnsALinkThatIsNoURLIsWrittenOn) {
    const Assertions assertions;
    // libxml2 has the attribute still open: text goes into it, and an element closes it
    EXPECT_EQ(html({{u"a"}, {u"b", plain.link(u"no address")}, {u"c"}}), R"(<p>a<a href="b"/>c</p>)");
    EXPECT_EQ(
        html({{u"a"}, {u"b", plain.link(u"no address").bold()}, {u"c"}}),
        R"(<p>a<a href=""><span style="font-weight: bold; ">b</span></a>c</p>)");
    EXPECT_THAT(
        assertions.descriptions, ElementsAre("Invalid parameter not satisfying: content", "Invalid parameter not satisfying: content"));
    EXPECT_THAT(assertions.files, ElementsAre("WQXMLWriter", "WQXMLWriter"));
    EXPECT_THAT(assertions.operations, ElementsAre("writeAttribute_content", "writeAttribute_content"));
}

// ---- Colors

TEST(WQHTMLWriterTest, TheDynamicColorOfTextIsBlack) {
    expect({
        {"a paragraph", {{u"a", plain.textColor()}}, R"(<p style="color: #000000; ">a</p>)"},
        {"a run", {{u"a"}, {u"b", plain.textColor()}}, R"(<p>a<span style="color: #000000; ">b</span></p>)"},
        {"a run in a paragraph of another color",
         {{u"a", plain.red()}, {u"b", plain.textColor()}},
         R"(<p style="color: #ff0000; ">a<span style="color: #000000; ">b</span></p>)"},
        {"a run in a black paragraph", {{u"a", plain.rgb(0, 0, 0)}, {u"b", plain.textColor()}}, R"(<p style="color: #000000; ">ab</p>)"},
        {"a black run in a paragraph of that color",
         {{u"a", plain.textColor()}, {u"b", plain.rgb(0, 0, 0)}},
         R"(<p style="color: #000000; ">ab</p>)"},
        {"another color in a paragraph of that color",
         {{u"a", plain.textColor()}, {u"b", plain.red()}},
         R"(<p style="color: #000000; ">a<span style="color: #ff0000; ">b</span></p>)"},
        {"beside a black run, which is a run of its own",
         {{u"a", plain.red()}, {u"b", plain.textColor()}, {u"c", plain.rgb(0, 0, 0)}},
         R"(<p style="color: #ff0000; ">a<span style="color: #000000; ">b</span><span style="color: #000000; ">c</span></p>)"},
        {"what it became of the platform",
         {{u"a"}, {u"b", plain.color(NSColor::textColor()->colorUsingType(NSColorTypeComponentBased))}},
         R"(<p>a<span style="color: #000000; ">b</span></p>)"},
        {"with other attributes",
         {{u"a"}, {u"b", plain.textColor().bold().link(u"x:")}},
         R"(<p>a<a href="x:"><span style="font-weight: bold; color: #000000; ">b</span></a></p>)"},
    });
    for (const Look& base : {plain.textColor(), plain.rgb(0, 0, 0)})
        EXPECT_EQ(htmlBelow(base, {{u"a", plain.textColor()}, {u"b", plain.rgb(0, 0, 0)}}), "<p>ab</p>");
}

TEST(WQHTMLWriterTest, TheAttributesOfTheTextKeepTheirDynamicColor) {
    struct Sharing : NSAttributedString {
        Ref<NSDictionary> attributesAtIndex_effectiveRange(uint64_t index, NSRange* range) const override {
            NSAttributedString::attributesAtIndex_effectiveRange(index, range);
            return shared;
        }
        Ref<NSDictionary> shared = plain.textColor().attributes();
    };
    const auto text = NSAttributedString::newWithString<Sharing>(u"a");
    EXPECT_EQ(html(text), R"(<p style="color: #000000; ">a</p>)");
    EXPECT_TRUE(text->shared->objectForKey(NSForegroundColorAttributeName).object() == NSColor::textColor());
}

// ---- Lists

TEST(WQHTMLWriterTest, AListHoldsItemsAndFurtherLists) {
    const auto a = list(u"{disc}"), b = list(u"{disc}"), c = list(u"{disc}");
    const Look one = plain.in({a}), two = plain.in({a, b}), three = plain.in({a, b, c});
    expect({
        {"one item", {{u"1", one}}, "<ul><li>1</li></ul>"},
        {"items", {{u"1\n2\r\n3\u2029", one}}, "<ul><li>1</li><li>2</li><li>3</li></ul>"},
        {"empty items", {{u"\n\n1\n\n", one}}, "<ul><li/><li/><li>1</li><li/></ul>"},
        {"between paragraphs", {{u"0\n"}, {u"1\n", one}, {u"2"}}, "<p>0</p><ul><li>1</li></ul><p>2</p>"},
        {"two levels", {{u"1\n", one}, {u"2\n", two}}, "<ul><li>1</li><ul><li>2</li></ul></ul>"},
        {"an item behind a deeper list", {{u"1\n", one}, {u"2\n", two}, {u"3", one}}, "<ul><li>1</li><ul><li>2</li></ul><li>3</li></ul>"},
        {"three levels, down and up",
         {{u"1\n", one}, {u"2\n", two}, {u"3\n4\n", three}, {u"5\n", two}, {u"6\n", one}, {u"7"}},
         "<ul><li>1</li><ul><li>2</li><ul><li>3</li><li>4</li></ul><li>5</li></ul><li>6</li></ul><p>7</p>"},
        {"from the third level to none", {{u"1\n", three}, {u"2"}}, "<ul><ul><ul><li>1</li></ul></ul></ul><p>2</p>"},
        {"from the third level to the first", {{u"1\n", three}, {u"2", one}}, "<ul><ul><ul><li>1</li></ul></ul><li>2</li></ul>"},
        {"from the first level to the third", {{u"1\n", one}, {u"2", three}}, "<ul><li>1</li><ul><ul><li>2</li></ul></ul></ul>"},
        {"two lists at once", {{u"1", two}}, "<ul><ul><li>1</li></ul></ul>"},
        {"a deeper list twice", {{u"1\n", two}, {u"2\n", one}, {u"3\n", two}}, "<ul><ul><li>1</li></ul><li>2</li><ul><li>3</li></ul></ul>"},
        {"two deeper lists side by side", {{u"1\n", two}, {u"2\n", plain.in({a, c})}}, "<ul><ul><li>1</li></ul><ul><li>2</li></ul></ul>"},
        {"neighbours that look alike", {{u"1\n", one}, {u"2\n", plain.in({b})}}, "<ul><li>1</li></ul><ul><li>2</li></ul>"},
        {"one list around a paragraph", {{u"1\n", one}, {u"2\n"}, {u"3", one}}, "<ul><li>1</li></ul><p>2</p><ul><li>3</li></ul>"},
        {"lists of a paragraph are those of its first character", {{u"1", one}, {u"2"}, {u"\n3"}}, "<ul><li>12</li></ul><p>3</p>"},
        {"a list that begins within a paragraph", {{u"1"}, {u"2\n3", one}}, "<p>12</p><ul><li>3</li></ul>"},
        {"links and spans",
         {{u"a", one}, {u"b", one.bold()}, {u"c", one.link(u"x:")}, {u"d", one.link(u"x:").red()}, {u"\n", one.link(u"x:")}},
         R"(<ul><li>a<span style="font-weight: bold; ">b</span><a href="x:">c<span style="color: #ff0000; ">d</span></a></li></ul>)"},
    });
}

TEST(WQHTMLWriterTest, WhatAListThatStandsAtTwoDepthsCannotHoldIsWrittenAgainAsParagraphs) {
    const auto a = list(u"{disc}"), b = list(u"{disc}");
    expect({
        {"the second list, then the first",
         {{u"1\n", plain.in({a, b})}, {u"2", plain.in({b})}},
         "<ul><ul><li>1</li></ul></ul><p>1</p><ul><ul><li>1</li></ul></ul><p>2</p>"},
        {"the first list, then the second",
         {{u"1\n", plain.in({a})}, {u"2", plain.in({b, a})}},
         "<ul><li>1</li><ul/></ul><p>1</p><ul><ul/></ul><p>2</p>"},
    });
}

TEST(WQHTMLWriterTest, AListTellsTheKeywordOfItsFormat) {
    const std::pair<const char16_t*, std::string> rows[] = {
        {u"{disc}", ""},
        {u"({disc})", ""},
        {u"{decimal}", "decimal"},
        {u"{decimal}.", "decimal"},
        {u"({lower-alpha})", "lower-alpha"},
        {u"{upper-roman}", "upper-roman"},
        {u"{lower-hexadecimal}", "lower-hexadecimal"},
        {u"{square}{decimal}", "square"},
        {u"}{box}", "box"},
        {u"{circle", "circle"},
        {u"", ""},
        {u"-", ""},
        {u"decimal}", ""},
    };
    for (const auto& [format, keyword] : rows)
        EXPECT_EQ(
            html({{u"One", plain.in({list(format)})}}),
            keyword.empty() ? "<ul><li>One</li></ul>" : "<ul style=\"list-style-type: " + keyword + "; \"><li>One</li></ul>")
            << wq::toUTF8(format);
}

TEST(WQHTMLWriterTest, AKeywordThatCSSDoesNotKnowIsRefused) {
    EXPECT_EQ(
        printedBy([] {
            EXPECT_EQ(html({{u"One", plain.in({list(u"{none}")})}}), "<ul><li>One</li></ul>");
        }),
        "Warning: Unsupported property list-style-type or invalid value \"none\"\n");
}

TEST(WQHTMLWriterTest, EachListTellsItsOwnKeyword) {
    const auto outer = list(u"{decimal}"), inner = list(u"{decimal}"), innermost = list(u"{disc}");
    expect(
        {{"three levels",
          {{u"1\n", plain.in({outer})}, {u"2\n", plain.in({outer, inner})}, {u"3", plain.in({outer, inner, innermost})}},
          R"(<ul style="list-style-type: decimal; "><li>1</li><ul style="list-style-type: decimal; "><li>2</li>)"
          R"(<ul><li>3</li></ul></ul></ul>)"},
         {"at once", {{u"1", plain.in({innermost, outer})}}, R"(<ul><ul style="list-style-type: decimal; "><li>1</li></ul></ul>)"}});
}

#ifdef WQ_NO_HARD_ASSERTIONS

TEST(WQHTMLWriterTest, AnEmptyKeywordCostsTheStyleOfTheList) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(html({{u"One", plain.bold().in({list(u"{}")})}}), "<ul><li>One</li></ul>");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "CSS Parse Error before token ;\n");
}

#else

TEST(WQHTMLWriterDeathTest, AnEmptyKeywordIsASyntaxError) {
    EXPECT_EXIT(
        html({{u"One", plain.in({list(u"{}")})}}), testing::KilledBySignal(SIGABRT),
        "^Assertion failed: \\(0\\), function error, file common/core/css/Parser, line [0-9]+\\.\n");
}

#endif

TEST(WQHTMLWriterTest, AListHasNoMarginAndNoIndent) {
    const auto a = list(u"{disc}"), b = list(u"{decimal}");
    const Look one = plain.in({a}).indented(10, 30), two = plain.in({a, b}).indented(40, 40);
    const Look margined = plain.indented(5, 10);
    expect({
        {"whatever the paragraph says", {{u"1\n2", one}}, "<ul><li>1</li><li>2</li></ul>"},
        {"but within a list whose paragraph has them",
         {{u"1\n", one}, {u"2\n", two}},
         R"(<ul><li>1</li><ul style="list-style-type: decimal; margin-left: 0px; text-indent: 0px; "><li>2</li></ul></ul>)"},
        {"the indent only if it is not the same there",
         {{u"1\n", two}},
         R"(<ul><ul style="list-style-type: decimal; margin-left: 0px; "><li>1</li></ul></ul>)"},
        {"the other margins stay", {{u"1", one.spaced(6, 7)}}, R"(<ul style="margin-top: 6px; margin-bottom: 7px; "><li>1</li></ul>)"},
        {"spans compare with the list's paragraph, margins included",
         {{u"1\n", one}, {u"2", one.indented(10, 31)}},
         R"(<ul><li>1</li><li><span style="margin-left: 31px; text-indent: -21px; ">2</span></li></ul>)"},
    });
    EXPECT_EQ(htmlBelow(margined, {{u"1", one}}), R"(<ul style="margin-left: 0px; text-indent: 0px; "><li>1</li></ul>)");
    EXPECT_EQ(
        htmlBelow(margined.red(), {{u"1", plain.in({b}).bold()}}),
        R"(<ul style="font-weight: bold; list-style-type: decimal; margin-left: 0px; text-indent: 0px; "><li>1</li></ul>)");
}

TEST(WQHTMLWriterTest, TheAttributesOfAListAreThoseOfItsFirstCharacter) {
    const auto a = list(u"{decimal}"), b = list(u"{disc}");
    const Look one = plain.in({a}), two = plain.in({a, b});
    expect({
        {"items compare with the list",
         {{u"1\n", one.bold()}, {u"2\n", one}, {u"3", one.bold()}},
         R"(<ul style="font-weight: bold; list-style-type: decimal; "><li>1</li>)"
         R"(<li><span style="font-weight: normal; ">2</span></li><li>3</li></ul>)"},
        {"a deeper list compares with the one around it",
         {{u"1\n", one.bold().red()}, {u"2\n", two.bold().italic()}, {u"3\n", two.bold()}},
         R"(<ul style="font-weight: bold; color: #ff0000; list-style-type: decimal; "><li>1</li>)"
         R"(<ul style="font-style: italic; "><li>2</li><li><span style="font-style: normal; ">3</span></li></ul></ul>)"},
        {"not the deeper one behind it",
         {{u"1\n", one}, {u"2\n", two.bold()}, {u"3\n", one}},
         R"(<ul style="list-style-type: decimal; "><li>1</li><ul style="font-weight: bold; "><li>2</li></ul><li>3</li></ul>)"},
        {"lists that begin at once",
         {{u"1", two.bold()}},
         R"(<ul style="font-weight: bold; list-style-type: decimal; "><ul><li>1</li></ul></ul>)"},
        {"an item has no style, so that its paragraph's is said by spans",
         {{u"1\n", one}, {u"2", one.aligned(NSTextAlignmentCenter)}, {u"3", one.aligned(NSTextAlignmentCenter).bold()}},
         R"(<ul style="list-style-type: decimal; "><li>1</li><li><span style="text-align: center; ">2</span>)"
         R"(<span style="text-align: center; font-weight: bold; ">3</span></li></ul>)"},
        {"the paragraph behind it compares with the base",
         {{u"1\n", one.bold()}, {u"2", plain.bold()}},
         R"(<ul style="font-weight: bold; list-style-type: decimal; "><li>1</li></ul><p style="font-weight: bold; ">2</p>)"},
        {"black for the dynamic color",
         {{u"1", two.textColor()}},
         R"(<ul style="color: #000000; list-style-type: decimal; "><ul><li>1</li></ul></ul>)"},
    });
}

TEST(WQHTMLWriterTest, AMarkerBetweenTabsIsNotWritten) {
    const struct {
        const char* what;
        const char16_t* format;
        const char16_t* text;
        std::string items;
    } rows[] = {
        {"a sign", u"{disc}", u"\t\u2022\tOne", "<li>One</li>"},
        {"a number", u"{decimal}", u"\t1\tOne\n\t2\tTwo\n", "<li>One</li><li>Two</li>"},
        {"a number with a dot", u"{decimal}.", u"\t1.\tOne\n\t2.\tTwo", "<li>One</li><li>Two</li>"},
        {"no braces", u"-", u"\t-\tOne\n\t-\tTwo", "<li>One</li><li>Two</li>"},
        {"an empty format", u"", u"\t\tOne", "<li>One</li>"},
        {"beyond the BMP", u"\U0001D11E", u"\t\U0001D11E\tOne", "<li>One</li>"},
        {"none", u"{decimal}", u"One\nTwo", "<li>One</li><li>Two</li>"},
        {"in some items", u"{decimal}", u"One\n\t2\tTwo", "<li>One</li><li>Two</li>"},
        {"of another item", u"{decimal}", u"\t2\tOne\n\t1\tTwo", "<li>\t2\tOne</li><li>\t1\tTwo</li>"},
        {"without the first tab", u"{decimal}", u"1\tOne", "<li>1\tOne</li>"},
        {"without the second tab", u"{decimal}", u"\t1One", "<li>\t1One</li>"},
        {"with a blank more", u"{decimal}", u"\t1 \tOne", "<li>\t1 \tOne</li>"},
        {"with a dot more", u"{decimal}", u"\t1.\tOne", "<li>\t1.\tOne</li>"},
        {"with a tab more", u"{decimal}", u"\t\t1\tOne", "<li>\t\t1\tOne</li>"},
        {"in another case", u"{lower-alpha}", u"\tA\tOne", "<li>\tA\tOne</li>"},
        {"not at the start", u"{decimal}", u"One\t1\t", "<li>One\t1\t</li>"},
        {"only once", u"{decimal}", u"\t1\t\t1\tOne", "<li>\t1\tOne</li>"},
        {"and nothing else", u"{decimal}", u"\t1\t\n\t2\t\n", "<li/><li/>"},
        {"and nothing else, not even a newline", u"{decimal}", u"\t1\t", "<li/>"},
        {"cut at the end", u"{decimal}", u"\t1\t\n\t2", "<li/><li>\t2</li>"},
        {"cut by a newline", u"{decimal}", u"\t1\n\t2", "<li>\t1</li><li>\t2</li>"},
        {"with a newline in it, into the next paragraph", u"{decimal}\n", u"\t1\n\tOne\nTwo", "<li>One</li><li>Two</li>"},
    };
    for (const auto& row : rows) {
        const auto text = html({{row.text, plain.in({list(row.format)})}});
        const size_t start = text.find('>') + 1;  // whatever the style of the list
        EXPECT_EQ(text.substr(start, text.size() - start - 5), row.items) << row.what;
    }
}

TEST(WQHTMLWriterTest, MarkersGoByTheTextOfTheirList) {
    const auto numbers = list(u"{decimal}"), letters = list(u"{lower-alpha}"), broken = list(u"-\n");
    const Look one = plain.in({numbers}), two = plain.in({numbers, letters});
    expect({
        {"numbers go on behind a deeper list, which has its own",
         {{u"\t1\tOne\n", one}, {u"\ta\tTwo\n\tb\tThree\n", two}, {u"\t2\tFour\n", one}, {u"\ta\tFive", two}},
         R"(<ul style="list-style-type: decimal; "><li>One</li>)"
         R"(<ul style="list-style-type: lower-alpha; "><li>Two</li><li>Three</li></ul><li>Four</li>)"
         R"(<ul style="list-style-type: lower-alpha; "><li>Five</li></ul></ul>)"},
        {"the marker of the list around it is text",
         {{u"\t1\tOne", two}},
         "<ul style=\"list-style-type: decimal; \"><ul style=\"list-style-type: lower-alpha; \"><li>\t1\tOne</li></ul></ul>"},
        {"numbers begin again behind a paragraph",
         {{u"\t1\tOne\n", one}, {u"Two\n"}, {u"\t1\tThree", one}},
         R"(<ul style="list-style-type: decimal; "><li>One</li></ul><p>Two</p>)"
         R"(<ul style="list-style-type: decimal; "><li>Three</li></ul>)"},
        {"in a piece of its own, whatever its look",
         {{u"\t1\t", one.bold().link(u"x:")}, {u"One", one}},
         R"(<ul style="font-weight: bold; list-style-type: decimal; "><li><span style="font-weight: normal; ">One</span></li></ul>)"},
        {"in several pieces",
         {{u"\t", one}, {u"1", one.bold()}, {u"\tO", one.red()}, {u"ne", one}},
         R"(<ul style="list-style-type: decimal; "><li><span style="color: #ff0000; ">O</span>ne</li></ul>)"},
        {"one that reaches past the list is text", {{u"\t-\n", plain.in({broken})}, {u"\tOne"}}, "<ul><li>\t-</li></ul><p>\tOne</p>"},
        {"a paragraph keeps it", {{u"\t1\tOne"}}, "<p>\t1\tOne</p>"},
    });
}

// ---- Namespaces

Ref<NSAttributedString> withAllElements() {
    return styled({{u"a"}, {u"b", plain.bold()}, {u"c\n", plain.link(u"x:")}, {u"d", plain.in({list(u"{disc}")})}});
}

TEST(WQHTMLWriterTest, ANamespaceIsThatOfAllElements) {
    const struct {
        const char16_t* prefix;
        const char16_t* uri;
        std::string html;
    } rows[] = {
        {u"h", u"u:h",
         R"(<h:p xmlns:h="u:h">a<h:span style="font-weight: bold; ">b</h:span><h:a href="x:">c</h:a></h:p>)"
         R"(<h:ul xmlns:h="u:h"><h:li>d</h:li></h:ul>)"},
        {nullptr, u"u:h",
         R"(<p xmlns="u:h">a<span style="font-weight: bold; " xmlns="u:h">b</span><a href="x:" xmlns="u:h">c</a></p>)"
         R"(<ul xmlns="u:h"><li xmlns="u:h">d</li></ul>)"},
        {u"", u"u:h",
         R"(<p xmlns="u:h">a<span style="font-weight: bold; " xmlns="u:h">b</span><a href="x:" xmlns="u:h">c</a></p>)"
         R"(<ul xmlns="u:h"><li xmlns="u:h">d</li></ul>)"},
        {u"h", nullptr, R"(<p>a<span style="font-weight: bold; ">b</span><a href="x:">c</a></p><ul><li>d</li></ul>)"},
        {nullptr, nullptr, R"(<p>a<span style="font-weight: bold; ">b</span><a href="x:">c</a></p><ul><li>d</li></ul>)"},
    };
    for (const auto& row : rows) {
        const auto writer = WQHTMLWriter::newHTMLWriter();
        writer->setPrefix(row.prefix);
        writer->setNamespaceURI(row.uri);
        EXPECT_EQ(html(withAllElements(), writer), row.html);
    }
}

TEST(WQHTMLWriterTest, ANamespaceThatTheCallerHasDefinedIsNotDeclaredAgain) {
    const auto writer = WQHTMLWriter::newHTMLWriter();
    writer->setPrefix(u"h");
    writer->setNamespaceURI(u"u:h");
    const auto output = openBody();
    output->startElement_prefix_namespace(u"div", u"h", u"u:h");
    writer->encodeAttributedString_withWriter(withAllElements(), output);
    output->endElement();
    EXPECT_EQ(
        contentOfBody(output), R"(<h:div xmlns:h="u:h"><h:p>a<h:span style="font-weight: bold; ">b</h:span><h:a href="x:">c</h:a></h:p>)"
                               R"(<h:ul><h:li>d</h:li></h:ul></h:div>)");
}

TEST(WQHTMLWriterTest, TheNamespaceCanBeTakenAwayAgain) {
    const auto writer = WQHTMLWriter::newHTMLWriter();
    writer->setPrefix(u"h");
    writer->setNamespaceURI(u"u:h");
    EXPECT_EQ(html({{u"One"}}, writer), R"(<h:p xmlns:h="u:h">One</h:p>)");
    writer->setNamespaceURI(nullptr);
    EXPECT_EQ(html({{u"One"}}, writer), "<p>One</p>");
    writer->setNamespaceURI(u"u:i");
    EXPECT_EQ(html({{u"One"}}, writer), R"(<h:p xmlns:h="u:i">One</h:p>)");
}

// ---- Base attributes

TEST(WQHTMLWriterTest, TheBaseIsTheUsersFontAndTheDefaultParagraphStyle) {
    struct Told : WQHTMLWriter {
        void encodeAttributedString_withWriter_baseAttributes(
            const Ref<NSAttributedString>& text,
            const Ref<WQXMLWriter>& output,
            const Ref<NSDictionary>& base) override {
            told = base;
            WQHTMLWriter::encodeAttributedString_withWriter_baseAttributes(text, output, base);
        }
        Ref<NSDictionary> told;
    };
    const auto writer = WQHTMLWriter::newHTMLWriter<Told>();
    EXPECT_EQ(html({{u"One"}}, writer), "<p>One</p>");
    EXPECT_EQ(writer->told->count(), 2u);
    EXPECT_TRUE(writer->told->objectForKey(NSFontAttributeName).isEqual(NSFont::userFontOfSize(12)));
    EXPECT_TRUE(writer->told->objectForKey(NSParagraphStyleAttributeName).object() == NSParagraphStyle::defaultParagraphStyle());
}

TEST(WQHTMLWriterTest, TextWithoutAttributesIsSetInHelvetica) {
    const auto text = NSAttributedString::newWithString(u"One");
    EXPECT_EQ(html(text), R"(<p style="font-family: Helvetica; ">One</p>)");
    EXPECT_EQ(htmlBelow(NSDictionary::dictionary(), text), "<p>One</p>");
    EXPECT_EQ(htmlBelow(nullptr, text), "<p>One</p>");
}

TEST(WQHTMLWriterTest, NullBaseAttributesAreEmptyOnes) {
    EXPECT_EQ(
        htmlBelow(nullptr, styled({{u"One", plain.size(9)}, {u"Two"}})),
        R"(<p style="font-family: 'TeX Gyre Pagella'; font-size: 9px; ">One<span style="font-size: 12px; ">Two</span></p>)");
}

TEST(WQHTMLWriterTest, TheBaseIsWhatParagraphsCompareWith) {
    const Look base = plain.bold().red().indented(10, 10);
    EXPECT_EQ(
        htmlBelow(base, {{u"One\n"}, {u"Two\n", base}, {u"Three", base.italic()}}),
        R"(<p style="margin-left: 0px; font-weight: normal; ">One</p><p>Two</p><p style="font-style: italic; ">Three</p>)");
}

// ---- Looks that come again

TEST(WQHTMLWriterTest, MoreLooksThanAreKeptAtATimeComeAgainAsTheyWere) {
    Pieces pieces;
    std::string expected;
    for (int round = 0; round < 2; ++round)
        for (int points = 20; points < 45; ++points) {
            pieces.push_back({u"x\n", plain.size(points)});
            expected += "<p style=\"font-size: " + std::to_string(points) + "px; \">x</p>";
        }
    EXPECT_EQ(html(pieces), expected);
}

TEST(WQHTMLWriterTest, LooksThatDifferInOneValueAreToldApart) {
    const Look looks[] = {plain, plain.bold(), plain.red(), plain.underlined(), plain.aligned(NSTextAlignmentRight)};
    const std::string said[] = {"", "font-weight: bold; ", "color: #ff0000; ", "text-decoration: underline; ", "text-align: right; "};
    Pieces pieces;
    std::string expected;
    for (size_t i = 0; i < 20; ++i) {
        const size_t which = i * 3 % 5;
        pieces.push_back({u"x\n", looks[which]});
        expected += said[which].empty() ? "<p>x</p>" : "<p style=\"" + said[which] + "\">x</p>";
    }
    EXPECT_EQ(html(pieces), expected);
}

TEST(WQHTMLWriterTest, AParagraphStyleThatChangedBetweenTwoEncodingsIsReadAnew) {
    const auto paragraph = NSParagraphStyle::defaultParagraphStyle()->mutableCopy();
    const auto attributes =
        NSDictionary::dictionary({{NSParagraphStyleAttributeName, paragraph}, {NSFontAttributeName, NSFont::userFontOfSize(12)}});
    const Ref<NSAttributedString> text = NSAttributedString::newWithString_attributes(u"x", attributes);
    const auto writer = WQHTMLWriter::newHTMLWriter();
    EXPECT_EQ(html(text, writer), "<p>x</p>");
    paragraph->setAlignment(NSTextAlignmentRight);
    EXPECT_EQ(html(text, writer), R"(<p style="text-align: right; ">x</p>)");
}

// ---- The steps

// Shows its steps, and writes down each: "paragraph 0+4=4", with "-" for what was not found.
class Steps : public WQHTMLWriter {
public:
    uint64_t encodeBlocksInRange(NSRange range) override {
        return note("blocks", range, [&] { return WQHTMLWriter::encodeBlocksInRange(range); });
    }
    uint64_t encodeParagraphInRange(NSRange range) override {
        return note("paragraph", range, [&] { return WQHTMLWriter::encodeParagraphInRange(range); });
    }
    uint64_t encodeListInRange(NSRange range) override {
        return note("list", range, [&] { return WQHTMLWriter::encodeListInRange(range); });
    }
    uint64_t encodeInlinesInRange(NSRange range) override {
        return note("inlines", range, [&] { return WQHTMLWriter::encodeInlinesInRange(range); });
    }
    uint64_t encodeLinkInRange(NSRange range) override {
        return note("link", range, [&] { return WQHTMLWriter::encodeLinkInRange(range); });
    }
    uint64_t encodeSpanInRange(NSRange range) override {
        if (atSpan) atSpan();
        return note("span", range, [&] { return WQHTMLWriter::encodeSpanInRange(range); });
    }
    using WQHTMLWriter::listStyleForList;
    using WQHTMLWriter::my;
    using WQHTMLWriter::parentAttributes;
    using WQHTMLWriter::parentStyle;
    using WQHTMLWriter::popParentAttributes;
    using WQHTMLWriter::pushParentAttributes;
    using WQHTMLWriter::setSourceString;
    using WQHTMLWriter::setWriter;
    using WQHTMLWriter::startElement;

    std::vector<std::string> steps;
    std::function<void()> atSpan;

private:
    uint64_t note(const std::string& step, NSRange range, const std::function<uint64_t()>& work) {
        const size_t line = steps.size();
        steps.push_back(step + " " + std::to_string(range.location) + "+" + std::to_string(range.length));
        const uint64_t result = work();
        steps[line] += "=" + (result == NSNotFound ? "-" : std::to_string(result));
        return result;
    }
};
Ref<Steps> newSteps() { return WQHTMLWriter::newHTMLWriter<Steps>(); }

// A writer in the middle of its work, below an element in the base attributes.
struct Begun {
    explicit Begun(const Pieces& pieces) : text(styled(pieces)) {
        writer->setWriter(output);
        writer->setSourceString(text.get());
        writer->pushParentAttributes(plain.attributes());
    }
    Steps* operator->() const { return writer.get(); }
    std::string written() const { return contentOfBody(output); }

    Ref<NSMutableAttributedString> text;
    Ref<WQXMLWriter> output = openBody();
    Ref<Steps> writer = newSteps();
};

TEST(WQHTMLWriterStepsTest, BlocksPassTheirEndDownAsLength) {
    const Begun begun({{u"a\nb\nc"}});
    EXPECT_EQ(begun->encodeBlocksInRange({2, 3}), 5u);
    EXPECT_THAT(
        begun->steps, ElementsAre(
                          "blocks 2+3=5", "list 2+5=-", "paragraph 2+5=4", "inlines 2+1=3", "link 2+1=-", "span 2+1=3", "list 4+5=-",
                          "paragraph 4+5=5", "inlines 4+1=5", "link 4+1=-", "span 4+1=5"));
    EXPECT_EQ(begun.written(), "<p>b</p><p>c</p>");
}

TEST(WQHTMLWriterStepsTest, BlocksEndBehindTheLastOneThatTheyReach) {
    const Begun begun({{u"ab\ncd\nef"}});
    EXPECT_EQ(begun->encodeBlocksInRange({0, 4}), 6u);
    EXPECT_EQ(begun.written(), "<p>ab</p><p>cd</p>");
}

TEST(WQHTMLWriterStepsTest, AnEmptyRangeOfBlocksOrInlinesEndsWhereItBegins) {
    const Begun begun({{u"ab\ncd"}});
    EXPECT_EQ(begun->encodeBlocksInRange({0, 0}), 0u);
    EXPECT_EQ(begun->encodeBlocksInRange({5, 0}), 5u);
    EXPECT_EQ(begun->encodeInlinesInRange({1, 0}), 1u);
    EXPECT_THAT(begun->steps, ElementsAre("blocks 0+0=0", "blocks 5+0=5", "inlines 1+0=1"));
    EXPECT_EQ(begun.written(), "");
}

TEST(WQHTMLWriterStepsTest, AnEmptyTextIsAnEmptyRangeOfBlocks) {
    const auto writer = newSteps();
    EXPECT_EQ(html(Pieces{}, writer), "");
    EXPECT_THAT(writer->steps, ElementsAre("blocks 0+0=0"));
}

TEST(WQHTMLWriterStepsTest, AParagraphIsWrittenFromTheLocationOnWhateverTheLength) {
    const Begun begun({{u"a"}, {u"bc\r\n", plain.bold()}, {u"d"}});
    EXPECT_EQ(begun->encodeParagraphInRange({1, 0}), 5u);
    EXPECT_EQ(begun->encodeParagraphInRange({0, 6}), 5u);
    EXPECT_EQ(begun->encodeParagraphInRange({5, 1}), 6u);
    EXPECT_EQ(begun.written(), R"(<p style="font-weight: bold; ">bc</p><p>a<span style="font-weight: bold; ">bc</span></p><p>d</p>)");
}

TEST(WQHTMLWriterStepsTest, InlinesAskForALinkFirstAndPassOnWhatRemains) {
    const Look link = plain.link(u"x:");
    const Begun begun({{u"a"}, {u"b", link}, {u"c", link.bold()}, {u"d", link}, {u"ef", plain.red()}});
    EXPECT_EQ(begun->encodeInlinesInRange({0, 5}), 5u);
    EXPECT_THAT(
        begun->steps, ElementsAre(
                          "inlines 0+5=5", "link 0+5=-", "span 0+5=1", "link 1+4=4", "span 1+3=2", "span 2+2=3", "span 3+1=4", "link 4+1=-",
                          "span 4+1=5"));
    EXPECT_EQ(begun.written(), R"(a<a href="x:">b<span style="font-weight: bold; ">c</span>d</a><span style="color: #ff0000; ">e</span>)");
}

TEST(WQHTMLWriterStepsTest, LinksAndSpansAreCutToTheRange) {
    const Begun begun({{u"abcdef", plain.bold().link(u"x:")}});
    EXPECT_EQ(begun->encodeSpanInRange({1, 2}), 3u);
    EXPECT_EQ(begun->encodeLinkInRange({3, 2}), 5u);
    EXPECT_EQ(
        begun.written(), R"(<span style="font-weight: bold; ">bc</span><a href="x:"><span style="font-weight: bold; ">de</span></a>)");
}

TEST(WQHTMLWriterStepsTest, WithoutALinkAtItsStartARangeIsNoLink) {
    const Begun begun({{u"a"}, {u"b", plain.link(u"x:")}});
    EXPECT_EQ(begun->encodeLinkInRange({0, 2}), NSNotFound);
    EXPECT_THAT(begun->steps, ElementsAre("link 0+2=-"));
    EXPECT_EQ(begun.written(), "");
}

TEST(WQHTMLWriterStepsTest, AParagraphWithoutADeeperListIsNoList) {
    const auto a = list(u"{disc}"), b = list(u"{disc}");
    const Begun begun({{u"0\n"}, {u"1\n", plain.in({a})}, {u"2", plain.in({a, b})}});
    EXPECT_EQ(begun->encodeListInRange({0, 5}), NSNotFound);
    begun->my.listLevel = 1;
    EXPECT_EQ(begun->encodeListInRange({2, 3}), NSNotFound);
    EXPECT_EQ(begun->my.listLevel, 1u);
    begun->my.listLevel = 2;
    EXPECT_EQ(begun->encodeListInRange({4, 1}), NSNotFound);
    begun->my.listLevel = 3;
    EXPECT_EQ(begun->encodeListInRange({4, 1}), NSNotFound);
    EXPECT_EQ(begun->my.listLevel, 3u);
    EXPECT_EQ(begun->my.attributeStack.size(), 1u);
    EXPECT_EQ(begun.written(), "");
}

TEST(WQHTMLWriterStepsTest, WithoutAParagraphStyleThereIsNoList) {
    const Begun begun({});
    const auto text = NSAttributedString::newWithString(u"One");
    begun->setSourceString(text.get());
    EXPECT_EQ(begun->encodeListInRange({0, 3}), NSNotFound);
    EXPECT_EQ(begun.written(), "");
}

TEST(WQHTMLWriterStepsTest, TheLevelTellsWhichListBegins) {
    const auto a = list(u"{decimal}"), b = list(u"{square}");
    const Begun begun({{u"1\n", plain.in({a})}, {u"2\n", plain.in({a, b})}});
    begun->my.listLevel = 1;
    EXPECT_EQ(begun->encodeListInRange({2, 2}), 4u);
    EXPECT_EQ(begun->my.listLevel, 1u);
    EXPECT_EQ(begun.written(), R"(<ul style="list-style-type: square; "><li>2</li></ul>)");
}

TEST(WQHTMLWriterStepsTest, AListBeginsWithItsFirstItemButLooksAsTheOneItWasMetAt) {
    const auto a = list(u"{disc}");
    const Begun begun({{u"0\n"}, {u"1\n", plain.in({a})}, {u"2\n", plain.in({a}).bold()}, {u"3"}});
    EXPECT_EQ(begun->encodeListInRange({4, 0}), 6u);
    EXPECT_EQ(begun.written(), R"(<ul style="font-weight: bold; "><li><span style="font-weight: normal; ">1</span></li><li>2</li></ul>)");
}

TEST(WQHTMLWriterStepsTest, ADeeperListIsPassedWhatRemainsOfTheOuterOne) {
    const auto a = list(u"{disc}"), b = list(u"{disc}");
    const Begun begun({{u"\t\u2022\t1\n", plain.in({a})}, {u"2\n", plain.in({a, b})}, {u"3\n", plain.in({a})}, {u"4"}});
    EXPECT_EQ(begun->encodeListInRange({0, 0}), 9u);
    EXPECT_THAT(
        begun->steps, ElementsAre(
                          "list 0+0=9", "inlines 3+1=4", "link 3+1=-", "span 3+1=4", "list 5+4=7", "inlines 5+1=6", "link 5+1=-",
                          "span 5+1=6", "inlines 7+1=8", "link 7+1=-", "span 7+1=8"));
    EXPECT_EQ(begun.written(), "<ul><li>1</li><ul><li>2</li></ul><li>3</li></ul>");
}

TEST(WQHTMLWriterStepsTest, TheStyleOfAListStandsBetweenTheFirstBraces) {
    const std::pair<NSString, NSString> rows[] = {
        {u"{disc}", u"disc"},
        {u"({lower-alpha})", u"lower-alpha"},
        {u"{decimal}.", u"decimal"},
        {u"{circle", u"circle"},
        {u"-", nullptr},
        {u"", nullptr},
        {u"}", nullptr},
        {u"}{square}", u"square"},
        {u"{a}{b}", u"a"},
        {u"{a{b}", u"a{b"},
        {u"{}", u""},
        {u"{", u""},
    };
    for (const auto& [format, style] : rows) EXPECT_EQ(Steps::listStyleForList(list(format)), style) << wq::toUTF8(format);
    EXPECT_EQ(Steps::listStyleForList(nullptr), nullptr);
}

TEST(WQHTMLWriterStepsTest, ElementsStartInTheNamespaceIfThereIsOne) {
    const Begun begun({});
    begun->setPrefix(u"h");
    begun->startElement(u"a");
    begun->setNamespaceURI(u"u:h");
    begun->startElement(u"b");
    begun.output->endElement();
    begun.output->endElement();
    EXPECT_EQ(begun.written(), R"(<a><h:b xmlns:h="u:h"/></a>)");
}

TEST(WQHTMLWriterStepsTest, TheParentIsTheLastOnTheStack) {
    const auto writer = newSteps();
    EXPECT_THAT(writer->my.attributeStack, IsEmpty());
    const auto outer = plain.attributes(), inner = plain.bold().attributes();
    writer->pushParentAttributes(outer);
    writer->pushParentAttributes(inner);
    EXPECT_EQ(writer->my.attributeStack.size(), 2u);
    EXPECT_TRUE(writer->parentAttributes() == inner);
    EXPECT_EQ(writer->parentStyle()->propertyValue(u"font-weight"), u"bold");
    EXPECT_TRUE(writer->popParentAttributes() == inner);
    EXPECT_TRUE(writer->parentAttributes() == outer);
    EXPECT_EQ(writer->parentStyle()->propertyValue(u"font-weight"), u"normal");
    EXPECT_TRUE(writer->popParentAttributes() == outer);
    EXPECT_THAT(writer->my.attributeStack, IsEmpty());
}

TEST(WQHTMLWriterStepsTest, TheStyleOfTheParentIsMadeAnewEachTime) {
    const Begun begun({});
    const auto style = begun->parentStyle();
    EXPECT_FALSE(begun->parentStyle() == style);
    style->setProperty_value(u"color", u"red");
    EXPECT_EQ(begun->parentStyle()->propertyValue(u"color"), u"");
}

// ---- State

TEST(WQHTMLWriterStateTest, IsEmptyAtFirst) {
    const auto writer = newSteps();
    EXPECT_FALSE(writer->baseURL());
    EXPECT_FALSE(writer->my.writer);
    EXPECT_EQ(writer->my.sourceString, nullptr);
    EXPECT_THAT(writer->my.attributeStack, IsEmpty());
    EXPECT_EQ(writer->my.prefix, nullptr);
    EXPECT_EQ(writer->my.namespaceURI, nullptr);
    EXPECT_EQ(writer->my.listLevel, 0u);
}

TEST(WQHTMLWriterStateTest, ParagraphsAndListsAreOnTheStackButLinksAndSpansAreNot) {
    const auto a = list(u"{disc}"), b = list(u"{disc}");
    const auto writer = newSteps();
    std::vector<std::string> found;
    writer->atSpan = [&] {
        const auto parent = writer->parentStyle();
        found.push_back(
            std::to_string(writer->my.attributeStack.size()) + "/" + std::to_string(writer->my.listLevel) + " " +
            wq::toUTF8(parent->propertyValue(u"font-weight")));
    };
    html(
        {{u"a"},
         {u"b", plain.bold()},
         {u"c\n", plain.bold().link(u"x:")},
         {u"d\n", plain.in({a})},
         {u"e\n", plain.in({a, b}).bold()},
         {u"f\n", plain.in({a})},
         {u"g", plain.bold()}},
        writer);
    EXPECT_THAT(found, ElementsAre("2/0 normal", "2/0 normal", "2/0 normal", "2/1 normal", "3/2 bold", "2/1 normal", "2/0 bold"));
}

TEST(WQHTMLWriterStateTest, HoldsTheOutputForTheLengthOfAnEncodingAndTheTextNotAtAll) {
    const auto writer = newSteps();
    const auto output = openBody();
    const Ref<NSAttributedString> text = styled({{u"a"}});
    writer->atSpan = [&] {
        EXPECT_TRUE(writer->my.writer == output);
        EXPECT_EQ(writer->my.sourceString, text.get());
        EXPECT_EQ(text->referenceCount(), 1);
    };
    writer->encodeAttributedString_withWriter(text, output);
    EXPECT_EQ(writer->steps.size(), 6u);
    EXPECT_FALSE(writer->my.writer);
    EXPECT_EQ(output->referenceCount(), 1);
    EXPECT_EQ(writer->my.sourceString, text.get());
    EXPECT_THAT(writer->my.attributeStack, IsEmpty());
    EXPECT_EQ(writer->my.listLevel, 0u);
    EXPECT_EQ(contentOfBody(output), "<p>a</p>");
}

TEST(WQHTMLWriterStateTest, AnEncodingBeginsAtLevelZeroAndLeavesTheStackAsItWas) {
    const auto writer = newSteps();
    const auto below = plain.bold().attributes();
    writer->my.listLevel = 7;
    writer->pushParentAttributes(below);
    EXPECT_EQ(html({{u"1", plain.in({list(u"{disc}")})}}, writer), "<ul><li>1</li></ul>");
    EXPECT_EQ(writer->my.listLevel, 0u);
    EXPECT_EQ(writer->my.attributeStack.size(), 1u);
    EXPECT_TRUE(writer->parentAttributes() == below);
}

TEST(WQHTMLWriterStateTest, CanBeUsedAgainAndKeepsItsSettings) {
    const auto writer = newSteps();
    const auto base = url(u"http://localhost/");
    writer->setBaseURL(base);
    writer->setPrefix(u"h");
    writer->setNamespaceURI(u"u:h");
    const Pieces link{{u"One", plain.link(u"http://localhost/a")}};
    for (int round = 0; round < 2; ++round) EXPECT_EQ(html(link, writer), R"(<h:p xmlns:h="u:h"><h:a href="a">One</h:a></h:p>)");
    EXPECT_TRUE(writer->baseURL() == base);
    EXPECT_EQ(writer->my.prefix, u"h");
    EXPECT_EQ(writer->my.namespaceURI, u"u:h");
    writer->setBaseURL(nullptr);
    EXPECT_EQ(html(link, writer), R"(<h:p xmlns:h="u:h"><h:a href="http://localhost/a">One</h:a></h:p>)");
}

TEST(WQHTMLWriterStateTest, SeveralTextsCanGoToOneOutput) {
    const auto writer = newSteps();
    const auto output = openBody();
    const Look lists = plain.in({list(u"{disc}")});
    writer->encodeAttributedString_withWriter(styled({{u"1", lists}}), output);
    output->startElement(u"hr");
    output->endElement();
    writer->encodeAttributedString_withWriter_baseAttributes(styled({{u"2"}}), output, plain.bold().attributes());
    writer->encodeAttributedString_withWriter(styled({{u"3"}}), output);
    EXPECT_EQ(contentOfBody(output), R"(<ul><li>1</li></ul><hr/><p style="font-weight: normal; ">2</p><p>3</p>)");
}

TEST(WQHTMLWriterStateTest, ALinkThatRaisesLeavesTheWriterInTheMiddle) {
    const auto writer = newSteps();
    const auto output = openBody();
    const auto a = list(u"{disc}"), b = list(u"{disc}");
    EXPECT_EQ(
        raised([&] {
            writer->encodeAttributedString_withWriter(
                styled({{u"0\n"}, {u"1\n", plain.in({a})}, {u"2", plain.in({a, b}).link(u"no address")}}), output);
        }),
        "NSInternalInconsistencyException: Invalid parameter not satisfying: content");
    EXPECT_EQ(writer->my.attributeStack.size(), 3u);
    EXPECT_EQ(writer->my.listLevel, 2u);
    EXPECT_TRUE(writer->my.writer == output);
}

TEST(WQHTMLWriterStateTest, WhatAChangedTextRaisesIsPassedOn) {
    const auto writer = newSteps();
    const auto output = openBody();
    const auto text = styled({{u"a"}, {u"b", plain.bold()}});
    writer->atSpan = [&] { text->deleteCharactersInRange({0, text->length()}); };
    EXPECT_THAT(raised([&] { writer->encodeAttributedString_withWriter(text, output); }), testing::StartsWith("NSRangeException: "));
    EXPECT_EQ(writer->my.attributeStack.size(), 2u);
    EXPECT_TRUE(writer->my.writer == output);
}

// ---- Null

TEST(WQHTMLWriterNullTest, ANullTextIsAnEmptyOne) {
    const auto writer = newSteps();
    EXPECT_EQ(html(Ref<NSAttributedString>(), writer), "");
    EXPECT_THAT(writer->steps, ElementsAre("blocks 0+0=0"));
    EXPECT_FALSE(writer->my.writer);
    EXPECT_THAT(writer->my.attributeStack, IsEmpty());
}

TEST(WQHTMLWriterNullTest, WithoutAnOutputNothingIsWrittenNorAsserted) {
    const auto writer = newSteps();
    const auto text = styled({{u"a"}, {u"b\n", plain.link(u"no address")}, {u"c", plain.in({list(u"{disc}")})}});
    EXPECT_EQ(raised([&] { writer->encodeAttributedString_withWriter(text, nullptr); }), "");
    EXPECT_EQ(writer->steps.front(), "blocks 0+4=4");
    EXPECT_THAT(writer->my.attributeStack, IsEmpty());
    EXPECT_EQ(writer->my.listLevel, 0u);
}

TEST(WQHTMLWriterNullTest, ANullWriterTakesNothingAndWritesNothing) {
    const Ref<Steps> none;
    none->setPrefix(u"h");
    none->setNamespaceURI(u"u:h");
    none->setBaseURL(url(u"http://localhost/"));
    EXPECT_EQ(none->my.prefix, nullptr);
    EXPECT_EQ(none->my.namespaceURI, nullptr);
    EXPECT_FALSE(none->baseURL());
    EXPECT_EQ(html({{u"a"}}, none), "");
    const auto output = openBody();
    none->encodeAttributedString_withWriter_baseAttributes(styled({{u"a"}}), output, nullptr);
    EXPECT_EQ(contentOfBody(output), "");
    EXPECT_EQ(none->my.sourceString, nullptr);
    EXPECT_THAT(none->steps, IsEmpty());
}

}  // namespace

TEST(WQHTMLWriterStepsTest, TheParentsStyleIsTheCallersToChange) {
    Begun begun({{u"x"}, {u"y", plain.bold()}});
    begun->parentStyle()->setProperty_value(u"font-weight", u"bold");
    begun->parentStyle()->setCssText(u"");
    begun->encodeSpanInRange({0, 1});
    begun->encodeSpanInRange({1, 1});
    EXPECT_EQ(begun.written(), R"(x<span style="font-weight: bold; ">y</span>)");
}
