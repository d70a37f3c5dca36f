// Documents with an XHTML document type open without a network.
#include <libxml/parser.h>
#include <libxml/xmlIO.h>

#include <cstdlib>

#include "platform/NSBundle.h"
#include "tests/dom/Support.h"

using namespace test;

namespace {

// Each test body runs before the library is started: without the system's catalog, and with nothing but files.
class XHTMLTest : public testing::Test {
protected:
    void SetUp() override {
        setenv("XML_CATALOG_FILES", "", 1);
        NSBundle::setResourceFolders({(std::filesystem::path(WQ_SOURCE_FOLDER) / "resources").string()});
        xmlSetExternalEntityLoader(xmlNoNetExternalEntityLoader);
    }
};

const std::vector<std::string> kDocumentTypes{
    R"(html PUBLIC "-//W3C//DTD XHTML 1.0 Strict//EN" "http://www.w3.org/TR/xhtml1/DTD/xhtml1-strict.dtd")",
    R"(html PUBLIC "-//W3C//DTD XHTML 1.0 Transitional//EN" "http://www.w3.org/TR/xhtml1/DTD/xhtml1-transitional.dtd")",
    R"(html PUBLIC "-//W3C//DTD XHTML 1.0 Frameset//EN" "http://www.w3.org/TR/xhtml1/DTD/xhtml1-frameset.dtd")",
    R"(html PUBLIC "-//W3C//DTD XHTML 1.1//EN" "http://www.w3.org/TR/xhtml11/DTD/xhtml11.dtd")",
    R"(html PUBLIC "-//W3C//DTD XHTML 1.1//EN" "elsewhere.dtd")",
    R"(html SYSTEM "http://www.w3.org/TR/xhtml1/DTD/xhtml1-strict.dtd")",
    R"(html SYSTEM "http://www.w3.org/TR/xhtml1/DTD/xhtml1-transitional.dtd")",
    R"(html SYSTEM "http://www.w3.org/TR/xhtml1/DTD/xhtml1-frameset.dtd")",
    R"(html SYSTEM "http://www.w3.org/TR/xhtml11/DTD/xhtml11.dtd")",
    R"(html SYSTEM "about:legacy-compat")",
};

TEST_F(XHTMLTest, EveryDocumentTypeDeclaresIdentifiersAndNamedCharacters) {
    for (const std::string& type : kDocumentTypes) {
        SCOPED_TRACE(type);
        const auto document = parse(
            "<!DOCTYPE " + type +
            "><html xmlns='http://www.w3.org/1999/xhtml'><p id='x' title='&copy;'>caf&eacute;&nbsp;&hearts;</p></html>");
        const auto paragraph = document->getElementById(u"x");
        ASSERT_TRUE(paragraph);
        EXPECT_EQ(paragraph->getAttribute(u"title"), u"©");
        EXPECT_EQ(paragraph->innerText(), u"café\u00A0♥");
    }
}

TEST_F(XHTMLTest, TheSampleOfEachGroupOfCharactersHasItsCode) {
    const auto document = parse(
        "<!DOCTYPE html SYSTEM 'about:legacy-compat'><html><p>&nbsp;&iexcl;&yuml;&fnof;&Alpha;&omega;&thetasym;&bull;&weierp;&alefsym;"
        "&larr;&forall;&sdot;&lceil;&lang;&rang;&loz;&spades;&diams;&OElig;&Yuml;&circ;&tilde;&ensp;&zwnj;&rlm;&mdash;&euro;</p></html>");
    EXPECT_EQ(
        wq::cast<WQXMLElement>(document->documentElement())->innerText(), u"\u00A0¡ÿƒΑωϑ•℘ℵ←∀⋅⌈\u2329\u232A◊♠♦ŒŸˆ˜\u2002\u200C\u200F—€");
}

TEST_F(XHTMLTest, IdentifiersAreDeclaredForEveryElementThatABodyHolds) {
    for (const char* name : {"a", "blockquote", "div", "em", "h1", "h6", "img", "li", "ol", "pre", "span", "table", "td", "ul"}) {
        const std::string element = name;
        const auto document = parse("<!DOCTYPE html SYSTEM 'about:legacy-compat'><html><" + element + " id='here'/></html>");
        EXPECT_EQ(document->getElementById(u"here")->nodeName(), wq::fromUTF8(element));
    }
}

TEST_F(XHTMLTest, AnotherDocumentTypeIsLookedForWhereItSaysItIs) {
    EXPECT_THAT(raised([] { parse("<!DOCTYPE a SYSTEM 'http://www.example.org/a.dtd'><a/>"); }), testing::HasSubstr("XML Exception"));
}

}  // namespace
