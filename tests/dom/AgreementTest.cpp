// Whole documents, written, queried and looked up: our answers against those of the bare library,
// which reads the same bytes with registration off, and of the program `xmllint`.
#include <libxml/HTMLparser.h>
#include <libxml/c14n.h>
#include <libxml/parser.h>
#include <libxml/valid.h>
#include <libxml/xpath.h>
#include <libxml/xpathInternals.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "dom/WQLibXML.h"
#include "dom/WQXMLAttr.h"
#include "tests/dom/Support.h"

namespace {

using namespace test;

constexpr const char* kMimeDatabase = "/usr/share/mime/packages/freedesktop.org.xml";  // shared-mime-info
constexpr const char* kMimeNamespace = "http://www.freedesktop.org/standards/shared-mime-info";
constexpr const char* kManuscript = WQ_SOURCE_FOLDER "/examples/manuscript/manuscript.xml";
constexpr const char* kManuscriptNamespace = "urn:example:manuscript";
constexpr const char* kPages = "/usr/share/doc/m4";  // m4-doc

const xmlChar* x(const char* text) { return reinterpret_cast<const xmlChar*>(text); }

std::string contents(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << path;
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

// The text without anything from `begin` to the next `end`, both included.
std::string without(std::string text, std::string_view begin, std::string_view end) {
    for (size_t from = text.find(begin); from != std::string::npos; from = text.find(begin, from))
        text.erase(from, text.find(end, from) + end.size() - from);
    return text;
}

std::string bytes(const Ref<NSData>& data) { return std::string(data->view()); }

// ---- The bare side

size_t gReports;
void countReport(void*, xmlErrorPtr) { ++gReports; }

// While it lives libxml2 makes no wrappers and tells us of no error.
class Bare {
public:
    Bare() {
        gReports = 0;
        xmlSetStructuredErrorFunc(nullptr, countReport);
    }
    ~Bare() {
        xmlSetStructuredErrorFunc(nullptr, wqStructuredErrorFunc);
        setRegisterNode(registers);
    }
    Bare(const Bare&) = delete;
    Bare& operator=(const Bare&) = delete;

private:
    bool registers = setRegisterNode(false);
};

// The bare document of the same bytes, and what libxml2 itself says of it.
class BareDocument {
public:
    BareDocument(const std::string& text, bool html) {
        Bare bare;
        const auto length = static_cast<int>(text.size());
        doc = html ? htmlReadMemory(text.data(), length, nullptr, nullptr, 0) : xmlReadMemory(text.data(), length, nullptr, nullptr, 0);
        clean = doc && gReports == 0;
        EXPECT_FALSE(doc && xmlDocGetRootElement(doc)->_private);
    }
    ~BareDocument() {
        Bare bare;
        xmlFreeDoc(doc);
    }
    BareDocument(const BareDocument&) = delete;
    BareDocument& operator=(const BareDocument&) = delete;

    bool isClean() const { return clean; }

    std::string written(bool format) const {
        xmlChar* memory = nullptr;
        int length = 0;
        xmlDocDumpFormatMemoryEnc(doc, &memory, &length, nullptr, format);
        return taken(memory, length);
    }
    std::string canonical() const {
        xmlChar* memory = nullptr;
        const int length = xmlC14NDocDumpMemory(doc, nullptr, XML_C14N_1_0, nullptr, 0, &memory);
        return taken(memory, length);
    }
    // Where a query leads; "null" for what is no set of nodes.
    std::vector<std::string> paths(const std::string& expression, const char* prefix, const char* uri) const;
    std::string pathOfIdentifier(const xmlChar* identifier) const;

private:
    static std::string taken(xmlChar* memory, int length) {
        std::string text(reinterpret_cast<const char*>(memory), static_cast<size_t>(length));
        xmlFree(memory);
        return text;
    }
    xmlDocPtr doc;
    bool clean;
};

// The path of a node; a comment within the document type has none.
std::string path(const xmlNode* node) {
    if (!node) return "null";
    if (node->parent && node->parent->type == XML_DTD_NODE) return reinterpret_cast<const char*>(node->content);
    xmlChar* memory = xmlGetNodePath(node);
    std::string text(reinterpret_cast<const char*>(memory));
    xmlFree(memory);
    return text;
}

std::vector<std::string> BareDocument::paths(const std::string& expression, const char* prefix, const char* uri) const {
    xmlXPathContextPtr context = xmlXPathNewContext(doc);
    if (prefix) xmlXPathRegisterNs(context, x(prefix), x(uri));
    xmlXPathObjectPtr result = xmlXPathEvalExpression(x(expression.c_str()), context);
    std::vector<std::string> all;
    if (result->type != XPATH_NODESET) all.emplace_back("null");
    for (int i = 0; result->nodesetval && i < result->nodesetval->nodeNr; ++i)
        if (result->nodesetval->nodeTab[i]->type != XML_NAMESPACE_DECL) all.push_back(path(result->nodesetval->nodeTab[i]));
    xmlXPathFreeObject(result);
    xmlXPathFreeContext(context);
    return all;
}

std::string BareDocument::pathOfIdentifier(const xmlChar* identifier) const {
    xmlAttrPtr attribute = xmlGetID(doc, identifier);
    return path(attribute ? attribute->parent : nullptr);
}

// ---- Our side

std::vector<std::string> paths(const Ref<WQXMLDocument>& document, const std::string& expression) {
    const auto nodes = document->nodesForXPath(wq::fromUTF8(expression));
    if (!nodes) return {"null"};
    std::vector<std::string> all;
    for (const auto& node : *nodes) all.push_back(node == document ? "/" : path(node->xmlNode()));
    return all;
}

// A page or a document that both sides have read.
struct Both {
    explicit Both(const std::string& text, bool html = false) : ours(html ? parseHTML(text) : parse(text)), bare(text, html) {}
    Ref<WQXMLDocument> ours;
    BareDocument bare;
};

void expectSameWriting(const Both& both) {
    EXPECT_TRUE(bytes(both.ours->XMLData()) == both.bare.written(false));
    EXPECT_TRUE(bytes(both.ours->formattedXMLData()) == both.bare.written(true));
    EXPECT_TRUE(wq::toUTF8(both.ours->canonicalRepresentation()) == both.bare.canonical());
}

// Each attribute value of the document, as an identifier. Returns how many of them are one.
size_t expectSameIdentifiers(const Both& both) {
    size_t found = 0;
    const auto attributes = both.ours->nodesForXPath(u"//@*");
    for (const auto& attribute : *attributes) {
        const NSString value = wq::cast<WQXMLAttr>(attribute)->value();
        const auto element = both.ours->getElementById(value);
        EXPECT_EQ(path(element->xmlNode()), both.bare.pathOfIdentifier(x(wq::toUTF8(value).c_str()))) << wq::toUTF8(value);
        if (testing::Test::HasFailure()) break;
        if (element) ++found;
    }
    return found;
}

// Returns how many nodes they found, all in all.
size_t expectSameAnswers(const Both& both, const std::vector<std::string>& expressions, const char* prefix, const char* uri) {
    if (prefix) both.ours->registerXPathPrefix_forNamespace(wq::fromUTF8(prefix), wq::fromUTF8(uri));
    size_t found = 0;
    for (const auto& expression : expressions) {
        SCOPED_TRACE(expression);
        const auto answer = paths(both.ours, expression);
        EXPECT_EQ(answer, both.bare.paths(expression, prefix, uri));
        found += answer.size();
    }
    return found;
}

// Calls `work` with each page that the bare parser reads without a report.
void forEachCleanPage(auto&& work) {
    ASSERT_TRUE(WQXMLDocument::newDocument());  // the hooks are in place
    size_t clean = 0;
    for (const auto& file : std::filesystem::directory_iterator(kPages)) {
        if (file.path().extension() != ".html") continue;
        const std::string text = contents(file.path());
        if (!BareDocument(text, true).isClean()) continue;
        SCOPED_TRACE(file.path());
        ++clean;
        work(Both(text, true));
        if (testing::Test::HasFailure()) return;
    }
    EXPECT_GT(clean, 10u);
}

// ---- The program

// What `xmllint` prints for a text, with those options; they may hold apostrophes, and no other quotes.
std::string xmllint(const std::string& options, const std::string& text) {
    const auto file = std::filesystem::path(testing::TempDir()) / ("wq" + std::to_string(getpid()) + "agreement.xml");
    std::ofstream(file, std::ios::binary) << text;
    std::string printed;
    FILE* pipe = popen(("xmllint --nonet " + options + " " + file.string()).c_str(), "r");
    char block[4096];
    while (const size_t length = fread(block, 1, sizeof block, pipe)) printed.append(block, length);
    EXPECT_EQ(pclose(pipe), 0) << options;
    std::filesystem::remove(file);
    return printed;
}

// Found nodes as the program prints them: each in markup, on a line of its own.
std::string printedLikeTheProgram(const Ref<WQXMLDocument>& document, const std::string& expression) {
    const auto nodes = document->nodesForXPath(wq::fromUTF8(expression));
    std::string text;
    for (const auto& node : *nodes) text += serialised(node) + "\n";
    return text;
}

// The program writes comments into the canonical form, and defaults of the document type.
std::string withoutComments(const std::string& text) { return without(text, "<!--", "-->"); }
std::string withoutDocumentType(const std::string& text) { return without(text, "<!DOCTYPE", "]>"); }

// ---- The tests

TEST(AgreementTest, TheMimeDatabaseIsWrittenAsTheBareLibraryWritesIt) { expectSameWriting(Both(contents(kMimeDatabase))); }

TEST(AgreementTest, TheManuscriptIsWrittenAsTheBareLibraryWritesIt) { expectSameWriting(Both(contents(kManuscript))); }

TEST(AgreementTest, PagesAreWrittenAsTheBareLibraryWritesThem) { forEachCleanPage(expectSameWriting); }

TEST(AgreementTest, WhatTheParserReadsFromOurWritingIsTheSameDocument) {
    for (const char* file : {kMimeDatabase, kManuscript}) {
        SCOPED_TRACE(file);
        const auto document = parse(contents(file));
        const auto again = parse(bytes(document->XMLData()));
        EXPECT_TRUE(again->canonicalRepresentation() == document->canonicalRepresentation());
        EXPECT_TRUE(bytes(again->XMLData()) == bytes(document->XMLData()));
    }
}

TEST(AgreementTest, XMLDataIsWhatTheProgramPrints) {
    for (const char* file : {kMimeDatabase, kManuscript}) {
        SCOPED_TRACE(file);
        EXPECT_TRUE(bytes(parse(contents(file))->XMLData()) == xmllint("", contents(file)));
    }
}

TEST(AgreementTest, FormattedXMLDataIsWhatTheProgramPrintsOfADocumentWithoutWhiteSpaceBetweenTags) {
    const auto skipping = NSDictionary::dictionary({{WQXMLDocumentSkipWhitespaceKey, true}});
    for (const char* file : {kMimeDatabase, kManuscript}) {
        SCOPED_TRACE(file);
        EXPECT_TRUE(bytes(parse(contents(file), skipping)->formattedXMLData()) == xmllint("--format", contents(file)));
    }
}

TEST(AgreementTest, TheCanonicalFormIsWhatTheProgramPrints) {
    const std::string manuscript = withoutComments(contents(kManuscript));
    EXPECT_TRUE(wq::toUTF8(parse(manuscript)->canonicalRepresentation()) == xmllint("--c14n", manuscript));
    const std::string database = withoutDocumentType(withoutComments(contents(kMimeDatabase)));
    EXPECT_TRUE(wq::toUTF8(parse(database)->canonicalRepresentation()) == xmllint("--c14n", database));
}

TEST(AgreementTest, CommentsMakeNoDifferenceToTheCanonicalForm) {
    const std::string manuscript = contents(kManuscript);
    EXPECT_NE(manuscript, withoutComments(manuscript));
    EXPECT_TRUE(parse(manuscript)->canonicalRepresentation() == parse(withoutComments(manuscript))->canonicalRepresentation());
}

TEST(AgreementTest, QueriesOfTheMimeDatabaseFindWhatTheBareLibraryFinds) {
    const std::vector<std::string> expressions = {
        "/",
        "/m:mime-info/m:mime-type[1]",
        "//m:mime-type[@type = 'text/plain']",
        "//m:glob[@pattern = '*.txt']/..",
        "//m:glob[@pattern = '*.txt']/../@type",
        "//m:comment[@xml:lang = 'de'][contains(., 'Bild')]",
        "//m:comment[@xml:lang = 'de'][contains(., 'Bild')]/text()",
        "//m:magic/m:match/m:match/m:match",
        "//m:mime-type[count(m:glob) > 4]/m:comment[not(@xml:lang)]",
        "//m:mime-type[last()]/preceding-sibling::m:mime-type[1]",
        "//@type[starts-with(., 'image/x')]",
        "//m:root-XML | //m:treemagic//m:treematch",
        "//comment()",
        "//processing-instruction()",
        "//m:root-XML/namespace::*",
        "//m:nobody",
        "//mime-type",
        "count(//m:glob)",
        "string(//m:glob/@pattern)",
        "//m:glob = 'x'",
    };
    EXPECT_GT(expectSameAnswers(Both(contents(kMimeDatabase)), expressions, "m", kMimeNamespace), 200u);
}

TEST(AgreementTest, QueriesOfTheManuscriptFindWhatTheBareLibraryFinds) {
    const std::vector<std::string> expressions = {
        "//node()",
        "//@*",
        "//node() | //@*",
        "//text()[normalize-space()]",
        "//comment()",
        "//b:p[contains(., '\xE2\x80\x9C')]",
        "//b:p[string-length() > 400]",
        "//b:chapter[@id = 'rope']//b:item[2]/following::b:p[1]",
        "//b:item/ancestor-or-self::*",
        "id('ferry rope nobody')",
        "id('ferry')/b:title",
        "//*[namespace-uri() != namespace-uri(/*)]",
        "//*[lang('en')]",
        "//namespace::* | /*",
        "sum(//@nobody)",
    };
    EXPECT_GT(expectSameAnswers(Both(contents(kManuscript)), expressions, "b", kManuscriptNamespace), 1000u);
}

TEST(AgreementTest, QueriesOfPagesFindWhatTheBareLibraryFinds) {
    size_t found = 0;
    forEachCleanPage([&](const Both& both) {
        found += expectSameAnswers(
            both,
            {"//a[@href]", "//a/@name", "//h1 | //h2 | //h3", "//pre/text()", "//p[a][last()]", "//comment()", "count(//*)",
             "//node()[self::br]"},
            nullptr, nullptr);
    });
    EXPECT_GT(found, 1000u);
}

// In no namespace of its own, since the program registers none.
TEST(AgreementTest, QueriesFindWhatTheProgramPrints) {
    const std::string manuscript = contents(kManuscript);
    const auto document = parse(manuscript);
    for (const char* expression :
         {"//*[local-name() = 'title']", "//*[local-name() = 'chapter']/@id", "//*[local-name() = 'p'][@class]/text()", "//comment()",
          "//*[local-name() = 'item'][position() = 2]", "//@*[namespace-uri() != '']", "id('ferry')/*[1]"}) {
        SCOPED_TRACE(expression);
        const std::string ours = printedLikeTheProgram(document, expression);
        EXPECT_NE(ours, "");
        EXPECT_EQ(ours, xmllint(std::string("--xpath \"") + expression + "\"", manuscript));
    }
}

TEST(AgreementTest, IdentifiersOfTheManuscriptAreThoseOfTheBareLibrary) {
    EXPECT_GT(expectSameIdentifiers(Both(contents(kManuscript))), 10u);
}

TEST(AgreementTest, IdentifiersOfPagesAreThoseOfTheBareLibrary) {
    size_t found = 0;
    forEachCleanPage([&](const Both& both) { found += expectSameIdentifiers(both); });
    EXPECT_GT(found, 100u);
}

TEST(AgreementTest, TheMimeDatabaseHasNoIdentifiers) { EXPECT_EQ(expectSameIdentifiers(Both(contents(kMimeDatabase))), 0u); }

}  // namespace
