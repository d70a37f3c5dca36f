// The code of docs/process.md: each block of it stands in this file, and does what the page says.
#include <libxml/globals.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/xmlerror.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "dom/WQLibXML.h"
#include "dom/WQXMLDocument.h"
#include "mac/Frameworks/WQCSS/WQCSSStyleResolver.h"
#include "platform/NSBundle.h"
#include "tests/dom/Support.h"
#include "tests/tree/Headers.h"

using namespace test;

namespace {

class PlainLibXML {
public:
    PlainLibXML() : function(xmlStructuredError), context(xmlStructuredErrorContext) {
        checkNode();
        registers = setRegisterNode(false);
        xmlSetStructuredErrorFunc(nullptr, nullptr);
    }
    ~PlainLibXML() {
        xmlSetStructuredErrorFunc(context, function);
        setRegisterNode(registers);
    }
    PlainLibXML(const PlainLibXML&) = delete;
    PlainLibXML& operator=(const PlainLibXML&) = delete;

private:
    bool registers = true;
    xmlStructuredErrorFunc function;
    void* context;
};

bool canBeUsed(const NSString& css, const Ref<WQXMLDocument>& document) {
    std::fflush(nullptr);  // or the child might write it again
    const pid_t child = fork();
    if (child == -1) return false;
    if (child == 0) {
        auto sheet = WQCSSStyleSheet::styleSheetWithString(css);
        auto resolver = WQCSSStyleResolver::newStyleResolver();
        resolver->processRulesFromStyleSheet(sheet);
        for (Ref<WQXMLNode> node = document->documentElement(); node; node = node->next())
            if (node->nodeType() == 1) resolver->resolveStyle_parentStyle(node, nullptr);
        _exit(0);
    }
    int status = 0;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

void nothing(void*, const char*, ...) {}

TEST(ProcessPageTest, InAPlainScopeErrorsAreNotRaisedAndNodesHaveNoWrapper) {
    WQLibXMLInit();
    {
        const PlainLibXML plain;
        xmlSetGenericErrorFunc(nullptr, nothing);
        EXPECT_EQ(xmlReadMemory("<a>", 3, nullptr, nullptr, 0), nullptr);
        initGenericErrorDefaultFunc(nullptr);
        xmlDocPtr document = xmlReadMemory("<a/>", 4, nullptr, nullptr, 0);
        EXPECT_EQ(xmlDocGetRootElement(document)->_private, nullptr);
        xmlFreeDoc(document);
    }
    EXPECT_THAT(raised([] { parse("<a>"); }), testing::HasSubstr("XML Exception"));
    EXPECT_EQ(parse("<a/>")->documentElement()->nodeName(), u"a");
}

void makeUseAndFreeNodes() {
    xmlNodePtr node = xmlNewNode(nullptr, BAD_CAST "own");
    node->_private = node;
    xmlFreeNode(node);
}

TEST(ProcessPageTest, WithoutTheHooksPrivateIsFree) {
    WQLibXMLInit();
    xmlRegisterNodeFunc made = xmlRegisterNodeDefault(nullptr);
    xmlDeregisterNodeFunc gone = xmlDeregisterNodeDefault(nullptr);
    makeUseAndFreeNodes();  // of its own, and with what it likes in `_private`
    xmlRegisterNodeDefault(made);
    xmlDeregisterNodeDefault(gone);
    EXPECT_EQ(parse("<a/>")->documentElement()->nodeName(), u"a");
}

TEST(ProcessPageTest, AChildTriesASheet) {
    const auto document = parse("<a id='x' b='y'/>");
    EXPECT_TRUE(canBeUsed(u"a { color: red }", document));
#ifndef WQ_NO_HARD_ASSERTIONS
    EXPECT_FALSE(canBeUsed(u"a { color red }", document));
    EXPECT_FALSE(canBeUsed(u"a { margin: inherit }", document));
#endif
}

constexpr const char* kOwn = "<!DOCTYPE a SYSTEM '/nonexistent/a.dtd'><a>x</a>";
constexpr const char* kXHTML =
    "<!DOCTYPE html PUBLIC '-//W3C//DTD XHTML 1.0 Strict//EN' 'http://www.w3.org/TR/xhtml1/DTD/xhtml1-strict.dtd'>"
    "<html><p id='x'>&eacute;</p></html>";

TEST(ProcessPageTest, OneCallForbidsWhatLiesOutsideTheDocument) {
    EXPECT_THAT(raised([] { parse(kOwn); }), testing::HasSubstr("XML Exception"));
    xmlSetExternalEntityLoader(
        [](const char*, const char*, xmlParserCtxtPtr parser) { return xmlNewStringInputStream(parser, BAD_CAST ""); });
    EXPECT_EQ(parse(kOwn)->documentElement()->nodeName(), u"a");
    EXPECT_THAT(raised([] { parse(kXHTML); }), testing::HasSubstr("eacute"));
}

TEST(ProcessPageTest, AnotherLetsTheLibrarysOwnTypeThrough) {
    setenv("XML_CATALOG_FILES", "", 1);
    xmlSetExternalEntityLoader([](const char*, const char* identifier, xmlParserCtxtPtr parser) {
        const bool isXHTML = identifier && std::strncmp(identifier, "-//W3C//DTD XHTML ", 18) == 0;
        const NSString path = isXHTML ? NSBundle::pathForResource_ofType(u"xhtml", u"dtd") : NSString();
        return path ? xmlNewInputFromFile(parser, wq::toUTF8(path).c_str()) : xmlNewStringInputStream(parser, BAD_CAST "");
    });
    EXPECT_EQ(parse(kXHTML)->getElementById(u"x")->innerText(), u"é");
    EXPECT_EQ(parse(kOwn)->documentElement()->nodeName(), u"a");
}

TEST(ProcessPageTest, ResourcesAreLookedForWhereTheApplicationSays) {
    NSBundle::setResourceFolders({"/opt/app/share"});
    EXPECT_FALSE(NSBundle::pathForResource_ofType(u"catalog", u"xml"));
}

// ---- The page

// Without any white space.
std::string squeezed(std::string text) {
    std::erase_if(text, [](unsigned char byte) { return std::isspace(byte); });
    return text;
}

// What a block says, without the lines that include something.
std::vector<std::string> codeOf(const std::string& page) {
    std::vector<std::string> blocks;
    for (size_t start = page.find("```cpp\n"); start != std::string::npos; start = page.find("```cpp\n", start)) {
        start += 7;
        std::istringstream lines(page.substr(start, page.find("```", start) - start));
        std::string block;
        for (std::string line; std::getline(lines, line);)
            if (!line.starts_with("#include")) block += line + "\n";
        blocks.push_back(squeezed(block));
    }
    return blocks;
}

TEST(ProcessPageTest, EveryBlockOfThePageStandsHere) {
    const auto blocks = codeOf(contentsOf(sourceFolder() / "docs/process.md"));
    const std::string here = squeezed(contentsOf(sourceFolder() / "tests/startup/ProcessPageTest.cpp"));
    EXPECT_EQ(blocks.size(), 6u);
    for (const std::string& block : blocks) EXPECT_NE(here.find(block), std::string::npos) << block;
}

}  // namespace
