// The example program, as its user sees it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <csignal>
#include <cstdio>

#include "tests/tree/Headers.h"

namespace {

using testing::HasSubstr;
using testing::Not;

struct Result {
    int status;
    std::string output;  // standard output and standard error
};

Result tour(const std::string& arguments) {
    FILE* pipe = popen((WQ_MANUSCRIPT_TOUR " " + arguments + " 2>&1").c_str(), "r");
    std::string output;
    char buffer[4096];
    while (size_t read = std::fread(buffer, 1, sizeof buffer, pipe)) output.append(buffer, read);
    return {WEXITSTATUS(pclose(pipe)), output};
}

std::string sheet() { return (test::sourceFolder() / "examples/manuscript/manuscript.css").string(); }

std::string sample() { return (test::sourceFolder() / "examples/manuscript/manuscript.xml").string(); }

// A file of its own for each test, which may run beside others.
std::string fileWith(const std::string& name, const std::string& bytes) {
    const std::string path = testing::TempDir() + "wq-tour-" + name;
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
}

TEST(ManuscriptTourTest, PrintsTheOutlineOfTheSampleWithPathsAndDepths) {
    const Result result = tour(sample());
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(
        result.output, HasSubstr("  /book[1]/chapter[1]                          depth 1  The Crossing\n"
                                 "  /book[1]/chapter[1]/section[1]               depth 2  A Bell on a Post\n"));
    EXPECT_THAT(result.output, HasSubstr("nodes by class:  Section 27  WQXMLAttr 59  WQXMLElement 118  WQXMLNode 3  WQXMLText 287\n"));
}

TEST(ManuscriptTourTest, PrintsTheComputedTextOfTellingNodesOfTheSample) {
    const std::string output = tour(sample() + " " + sheet()).output;
    EXPECT_THAT(
        output, HasSubstr("\nStyles by manuscript.css:\n"
                          "  /book[1]\n"
                          "      color:#1a1a1a; font-size:11px; font-style:normal; font-family:TeX Gyre Pagella; vertical-align:middle; "
                          "list-style-type:disc; display:block; line-height:1.3636; margin-top:0px; margin-left:0px; margin-right:0px; "
                          "margin-bottom:0px; width:auto; page-break-after:auto; page-break-before:auto; font-weight:normal; "
                          "text-indent:0px; text-decoration:none; text-align:left;\n"
                          "  /book[1]/title[1]\n"
                          "      font-size:23px; line-height:1.3043; margin-top:120px; margin-bottom:7.5px; text-align:center;\n"
                          "  /book[1]/subtitle[1]\n"
                          "      font-size:13px; font-style:italic; line-height:1.1538; margin-bottom:120px; text-align:center;\n"
                          "  /book[1]/chapter[1]\n"
                          "      page-break-before:always;\n"));
    EXPECT_THAT(
        output, HasSubstr("  /book[1]/chapter[1]/section[2]/p[2]/note:remark[1]\n"
                          "      color:#b22222; font-size:8.5px;\n"));
}

TEST(ManuscriptTourTest, CountsWhatTheStylesOfTheSampleShare) {
    EXPECT_THAT(tour(sample() + " " + sheet()).output, HasSubstr("  24 rules, 435 nodes, 432 styles with 47 fonts and 49 box records\n"));
}

TEST(ManuscriptTourTest, WithoutASheetEveryNodeSharesOneFontAndOneBoxRecord) {
    const Result result = tour(fileWith("plain.xml", "<a><b>x</b><!--c--><b>y</b></a>"));
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output, HasSubstr("\nStyles, without a style sheet:\n"));
    EXPECT_THAT(result.output, HasSubstr("  0 rules, 6 nodes, 5 styles with 1 fonts and 1 box records\n"));
}

TEST(ManuscriptTourTest, AStyleAttributeCountsAndABadValueInItCostsAWarning) {
    const Result result = tour(fileWith("attribute.xml", "<a style='color: red; width: wide'><b>x</b></a>"));
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output, HasSubstr("Warning: Unsupported property width or invalid value \"wide\"\n"));
    EXPECT_THAT(result.output, HasSubstr("      color:#ff0000; font-size:12px;"));
}

TEST(ManuscriptTourTest, AMissingSheetEndsWithOneLine) {
    const Result result = tour(sample() + " /nonexistent.css");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.output, HasSubstr("file:///nonexistent.css: No such file or directory\n"));
}

#ifdef WQ_NO_HARD_ASSERTIONS
TEST(ManuscriptTourTest, ABadSheetEndsWithTheMessageAndTheFile) {
    const std::string path = fileWith("bad.css", "p { color red }");
    const Result result = tour(sample() + " " + path);
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.output, HasSubstr(path + ": CSS Parse Error before token red\n"));
}

TEST(ManuscriptTourTest, ABadStyleAttributeCostsThatAttribute) {
    const Result result = tour(fileWith("bad-attribute.xml", "<a style='color: red; width }'><b style='color: blue'>x</b></a>"));
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output, HasSubstr("CSS Parse Error before token }\n"));
    EXPECT_THAT(result.output, HasSubstr("  /a[1]\n      color:#000000; "));
    EXPECT_THAT(result.output, HasSubstr("  /a[1]/b[1]\n      color:#0000ff;\n"));
}
#else
TEST(ManuscriptTourTest, ABadSheetIsTheEndWhereHardAssertionsAreOn) {
    const Result result = tour(sample() + " " + fileWith("bad.css", "p { color red }"));
    EXPECT_EQ(result.status, 128 + SIGABRT);
    EXPECT_THAT(result.output, HasSubstr("Assertion failed: (0), function error, file common/core/css/Parser, line "));
}
#endif

TEST(ManuscriptTourTest, PrintsEveryEventOfAMoveAndARemoval) {
    EXPECT_THAT(
        tour(sample()).output, HasSubstr("chapter#rope goes ahead of chapter#ferry:\n"
                                         "  event 8 removed   phase 1 capture  target chapter#rope  related node book\n"
                                         "  event 4 inserted  phase 1 capture  target chapter#rope  related node book\n"
                                         "chapter#other-bank is removed:\n"
                                         "  event 8 removed   phase 1 capture  target chapter#other-bank  related node book\n"));
}

TEST(ManuscriptTourTest, PrintsTheOutlineAgainAfterTheEdits) {
    const std::string output = tour(sample()).output;
    const std::string after = output.substr(output.find("The outline now:"));
    EXPECT_THAT(after, HasSubstr("/book[1]/chapter[1]                          depth 1  The Rope\n"));
    EXPECT_THAT(after, HasSubstr("/book[1]/chapter[2]                          depth 1  The Crossing\n"));
    EXPECT_THAT(after, Not(HasSubstr("The Other Bank")));
    EXPECT_THAT(after, HasSubstr("nodes by class:  Section 23  WQXMLAttr 52  WQXMLElement 97  WQXMLNode 3  WQXMLText 240\n"));
}

TEST(ManuscriptTourTest, RewritesTheSampleAndTellsWhatEachEditFires) {
    EXPECT_THAT(
        tour(sample()).output, HasSubstr("Rewriting:\n"
                                         "  book: revision=\"2\"                                         fires 1 attribute set\n"
                                         "  book: publisher spelled out                                fires nothing\n"
                                         "  p: text split at 20                                        fires 1 text changed, 1 inserted\n"
                                         "  p: element split at 1                                      fires 2 inserted, 1 removed\n"
                                         "  p: elements merged                                         fires 1 inserted, 2 removed\n"
                                         "  p: texts merged                                            fires 1 text changed, 1 removed\n"
                                         "  p: new inner XML                                           fires 1 removed\n"));
}

// A line of the part about ranges, with "*" for every address.
std::string rangesWithoutAddresses(const std::string& output) {
    const size_t from = output.find("Ranges:"), to = output.find("Queries:");
    return std::regex_replace(output.substr(from, to - from), std::regex("0x[0-9a-f]+"), "*");
}

TEST(ManuscriptTourTest, HoldsRangesThroughEditsOfTheSample) {
    const std::string ranges = rangesWithoutAddresses(tour(sample()).output);
    EXPECT_THAT(
        ranges, HasSubstr("  at first\n"
                          "    selection  WQXMLRange * (<WQXMLText: *> [20] - <WQXMLText: *> [12]\n"
                          "               “write it down before you form an opinion about it. Walk the …”\n"
                          "    bookmark   WQXMLRange * (<WQXMLText: *> [6] - <WQXMLText: *> [6]\n"
                          "               “”\n"
                          "    deaf       WQXMLRange * (<WQXMLText: *> [0] - <WQXMLText: *> [4]\n"
                          "               “Read”\n"));
    EXPECT_THAT(
        ranges, HasSubstr("  the text split at 4: a point in its tail is mirrored there\n"
                          "    selection  WQXMLRange * (<WQXMLText: *> [0] - <WQXMLText: *> [12]\n"));
    EXPECT_THAT(
        ranges, HasSubstr("  the selection deleted, and its paragraphs merged\n"
                          "    selection  WQXMLRange * (<WQXMLText: *> [0] - <WQXMLElement: *> [2]\n"));
}

TEST(ManuscriptTourTest, ADocumentWithoutParagraphsHasNothingToSelect) {
    EXPECT_THAT(tour(fileWith("short.xml", "<a><b>one</b><b>two</b></a>")).output, HasSubstr("no two paragraphs stand side by side"));
}

TEST(ManuscriptTourTest, FindsNodesOfTheSampleByPathAndByIdentifier) {
    EXPECT_THAT(
        tour(sample()).output,
        HasSubstr("Queries:\n"
                  "  a means urn:example:manuscript\n"
                  "  //a:p                                        44 nodes, the first /book[1]/chapter[1]/section[1]/p[1]\n"
                  "  b means urn:example:notes\n"
                  "  //b:remark                                   4 nodes, the first /book[1]/chapter[2]/section[2]/p[2]/note:remark[1]\n"
                  "  identifier rope                              /book[1]/chapter[1]\n"));
}

TEST(ManuscriptTourTest, WritesTheSampleInFourWaysAndReadsItAgain) {
    const std::string output = tour(sample()).output;
    const std::string written = output.substr(output.find("Written:"));
    for (const char* way : {"XMLData ", "formattedXMLData ", "canonicalRepresentation ", "encodeWithWriter "})
        EXPECT_THAT(written, testing::ContainsRegex(std::string("  ") + way + " +[0-9]+ bytes +2[0-9][0-9] lines\n"));
    EXPECT_THAT(written, HasSubstr("  and read again: 119 elements, "));
}

TEST(ManuscriptTourTest, SaysWhyADocumentHasNoCanonicalForm) {
    const std::string path = fileWith("entity.xml", "<!DOCTYPE a [<!ENTITY e 'x'>]><a><b/><b>&e;</b></a>");
    const Result result = tour(path);
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output, HasSubstr("  canonicalRepresentation  Node XML_ENTITY_REF_NODE is invalid here : processing node\n"));
    EXPECT_THAT(result.output, HasSubstr("encodeWithWriter"));
}

TEST(ManuscriptTourTest, ReadsHTMLWhosePathsBeginAtTheNamelessDocument) {
    const std::string page =
        fileWith("page.html", "<!DOCTYPE html><html><body><div><h1>One</h1></div><div><h2>Two</h2></div></body></html>");
    const Result result = tour(page);
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output, HasSubstr("/(null)[1]/html[1]/body[1]/div[2]            depth 2  Two\n"));
}

TEST(ManuscriptTourTest, ReadsXHTMLAsXML) {
    const std::string page = fileWith(
        "page.xhtml",
        "<html xmlns='http://www.w3.org/1999/xhtml'><head><title>t</title></head><body><section><h1>A</h1></section></body></html>");
    const Result result = tour(page);
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output, HasSubstr("  /html[1]/body[1]/section[1]                  depth 2  A\n"));
}

TEST(ManuscriptTourTest, ADocumentWithoutSiblingsHasNothingToMove) {
    const Result result = tour(fileWith("single.xml", "<a/>"));
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output, HasSubstr("there is nothing to move"));
}

TEST(ManuscriptTourTest, AMissingFileEndsWithOneLine) {
    const Result result = tour("/nonexistent.xml");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "file:///nonexistent.xml: No such file or directory\n");
}

TEST(ManuscriptTourTest, AMalformedFileEndsWithItsNameTheLineAndTheMessage) {
    const std::string path = fileWith("bad.xml", "<a>\n<b>\n</a>");
    const Result result = tour(path);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, path + ":3: Opening and ending tag mismatch: b line 2 and a\n");
}

TEST(ManuscriptTourTest, AnEmptyFileEndsWithOneLine) {
    const std::string path = fileWith("empty.xml", "");
    const Result result = tour(path);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, path + ": the file is empty\n");
}

TEST(ManuscriptTourTest, TheFirstProgramPrintsWhatTheReadmeShows) {
    FILE* pipe = popen(WQ_FIRST_PROGRAM, "r");
    char buffer[4096];
    const size_t read = std::fread(buffer, 1, sizeof buffer, pipe);
    EXPECT_EQ(pclose(pipe), 0);
    EXPECT_EQ(std::string(buffer, read), "/book[1]/p[1]: Four\n/book[1]/p[2]: One\n/book[1]/p[3]: Two & three\n");
    EXPECT_THAT(
        test::contentsOf(test::sourceFolder() / "README.md"),
        HasSubstr("    /book[1]/p[1]: Four\n    /book[1]/p[2]: One\n    /book[1]/p[3]: Two & three\n"));
}

}  // namespace
