// The writing application, as its user sees it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <csignal>
#include <cstdio>
#include <sstream>

#include "tests/dom/Support.h"
#include "tests/tree/Headers.h"

namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

struct Result {
    int status = 0;
    std::string output, error;
};

const std::string kSheet = "book, chapter, p, title, quote { display: block } book { font-size: 12px }";
const std::string kWords = "The near bell says a little less than it means, and the far one has a crack in it and tells the truth. ";

// A document with that many paragraphs of five lines or so.
std::string bookOf(size_t paragraphs) {
    std::string xml = "<book><title>Bells</title>";
    for (size_t index = 0; index < paragraphs; ++index) xml += "<p>" + kWords + kWords + kWords + "</p>";
    return xml + "</book>";
}

std::string quoted(const std::string& word) { return "'" + word + "'"; }

class TypesetManuscriptTest : public testing::Test {
protected:
    // Runs a command of the shell in the test's own folder.
    Result shell(const std::string& command) const {
        const std::string errors = folder.file("errors");
        FILE* pipe = popen(("cd " + quoted(folder.path) + " && { " + command + "; } 2> errors").c_str(), "r");
        Result result;
        char buffer[4096];
        while (size_t read = std::fread(buffer, 1, sizeof buffer, pipe)) result.output.append(buffer, read);
        result.status = WEXITSTATUS(pclose(pipe));
        result.error = test::contentsOf(errors);
        std::filesystem::remove(errors);
        return result;
    }

    Result typeset(const std::string& arguments) const { return shell(WQ_TYPESET_MANUSCRIPT " " + arguments); }

    // Typesets it as x.xml by a sheet.
    Result typesetBook(const std::string& xml, const std::string& sheet = kSheet, const char* name = "x.xml") const {
        folder.file("x.css", sheet);
        folder.file(name, xml);
        return typeset(name + " x.css"s);
    }

    Result typesetSample() const {
        const auto samples = test::sourceFolder() / "examples/manuscript";
        return typeset(quoted(samples / "manuscript.xml") + " " + quoted(samples / "manuscript.css"));
    }

    std::string output(const std::string& name) const { return test::contentsOf(folder.path / "out" / name); }

    // What the output folder holds, in order; hidden files too.
    std::vector<std::string> outputs(const char* name = "out") const {
        std::vector<std::string> names;
        if (!std::filesystem::is_directory(folder.path / name)) return names;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.path / name))
            if (!entry.is_directory()) names.push_back(entry.path().lexically_relative(folder.path / name));
        std::sort(names.begin(), names.end());
        return names;
    }

    // The pages' text without their heads and feet.
    std::string textOf(const std::string& pdf) const { return shell("pdftotext -raw -x 0 -y 66 -W 396 -H 480 out/" + pdf + " -").output; }

    void expectFailure(const Result& result, const std::string& line) const {
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.error, line);
        EXPECT_EQ(result.output, "");
        expectNothingNew();
    }

    // What the test put there itself, and no more: nothing beside the output folder either.
    void expectNothingNew() const {
        for (const auto& entry : std::filesystem::directory_iterator(folder.path))
            EXPECT_THAT(entry.path().filename().string(), testing::AnyOf("x.xml", "x.css", "x.html"));
    }

    test::Folder folder;
};

// ---- What is written

TEST_F(TypesetManuscriptTest, WritesEachKindOfFile) {
    const Result result = typesetBook(bookOf(16));
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.error, "");
    EXPECT_THAT(
        outputs(), ElementsAre(
                       "x-edit.png", "x-edited.xml", "x-pages/page-01.png", "x-pages/page-02.png", "x-pages/page-03.png", "x-spread.png",
                       "x.html", "x.pdf"));
    EXPECT_THAT(output("x.pdf"), StartsWith("%PDF-"));
    for (const char* picture : {"x-edit.png", "x-pages/page-01.png", "x-spread.png"}) EXPECT_THAT(output(picture), StartsWith("\x89PNG"));
    EXPECT_THAT(output("x.html"), StartsWith("<!DOCTYPE html>"));
}

TEST_F(TypesetManuscriptTest, OfAShortDocumentThereIsNoSpreadAndWithoutParagraphsNoEdit) {
    EXPECT_EQ(typesetBook("<book>One</book>").status, 0);
    EXPECT_THAT(outputs(), ElementsAre("x-edited.xml", "x-pages/page-01.png", "x.html", "x.pdf"));
}

TEST_F(TypesetManuscriptTest, TheFolderAndTheNameMayHaveBlanksAndOtherCharacters) {
    folder.file("x.css", kSheet);
    folder.file("Two bells – 2nd.xml", "<book>One</book>");
    EXPECT_EQ(typeset("'Two bells – 2nd.xml' x.css 'my output'").status, 0);
    EXPECT_THAT(outputs("my output"), testing::Contains("Two bells – 2nd.pdf"));
}

TEST_F(TypesetManuscriptTest, TheFolderMayEndWithASlashOrStandInOneThatIsNotThereYet) {
    folder.file("x.css", kSheet);
    folder.file("x.xml", "<book>One</book>");
    for (const char* name : {"first/", "second/third"}) {
        const Result result = typeset("x.xml x.css "s + name);
        EXPECT_EQ(result.error, "");
        EXPECT_THAT(outputs(name), ElementsAre("x-edited.xml", "x-pages/page-01.png", "x.html", "x.pdf"));
    }
    EXPECT_EQ(typeset("x.xml x.css .").status, 0);
    EXPECT_TRUE(std::filesystem::exists(folder.path / "x.pdf"));
}

TEST_F(TypesetManuscriptTest, TellsWhatItDid) {
    const std::string output = typesetBook(bookOf(2)).output;
    EXPECT_THAT(output, StartsWith("Bells\n"));
    for (const char* line : {"rules +2", "styles made +7", "fonts shared +1", "paragraphs +3", "pages +1"})
        EXPECT_THAT(output, testing::ContainsRegex("\n  "s + line + " *\n"));
    EXPECT_THAT(output, testing::EndsWith("  all in out\n"));
}

// The words of the sample that its sheet shows, with the markers of its lists.
void addWords(const _xmlNode* node, std::string& words) {
    static const std::string inlines = " em strong a ";
    const auto is = [&](const char* name) { return xmlStrEqual(node->name, BAD_CAST name); };
    if (node->type == XML_TEXT_NODE || node->type == XML_CDATA_SECTION_NODE) words += reinterpret_cast<const char*>(node->content);
    if (node->type != XML_ELEMENT_NODE || is("remark")) return;
    const std::string around =
        inlines.find(" " + std::string(reinterpret_cast<const char*>(node->name)) + " ") == std::string::npos ? " " : "";
    words += around;
    if (is("item")) {
        int number = 1;
        for (auto item = node->prev; item; item = item->prev) number += item->type == XML_ELEMENT_NODE;
        words += xmlStrEqual(node->parent->properties->children->content, BAD_CAST "decimal") ? std::to_string(number) + ". " : "• ";
    }
    for (auto child = node->children; child; child = child->next) addWords(child, words);
    words += around;
}

std::vector<std::string> divided(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

TEST_F(TypesetManuscriptTest, ThePagesOfTheSampleHaveItsWordsInOrder) {
    ASSERT_EQ(typesetSample().status, 0);
    std::string text = textOf("manuscript.pdf");
    text = std::regex_replace(text, std::regex("\u00AD[\n\f]*"), "");        // words that were divided
    text = std::regex_replace(text, std::regex("([-—])\n([^\n])"), "$1$2");  // and those that have a hyphen
    text = std::regex_replace(text, std::regex("(^|\f)[0-9]+\n"), "$1");     // numbers of chapters
    std::string expected;
    const auto document = test::parse(test::contentsOf(test::sourceFolder() / "examples/manuscript/manuscript.xml"));
    addWords(document->documentElement()->xmlNode(), expected);
    expected = std::regex_replace(expected, std::regex("([-—])\n"), "$1");
    const auto words = divided(text), expectedWords = divided(expected);
    const auto [word, expectedWord] = std::mismatch(words.begin(), words.end(), expectedWords.begin(), expectedWords.end());
    EXPECT_EQ(
        std::vector(word, std::min(word + 5, words.end())), std::vector(expectedWord, std::min(expectedWord + 5, expectedWords.end())));
}

TEST_F(TypesetManuscriptTest, ThePDFOfTheSampleHasItsTitleAndTheSizeOfItsPages) {
    ASSERT_EQ(typesetSample().status, 0);
    const std::string facts = shell("pdfinfo out/manuscript.pdf").output;
    EXPECT_THAT(facts, HasSubstr("Title:           The Near Bell and the Far\n"));
    EXPECT_THAT(facts, HasSubstr("Page size:       396 x 612 pts\n"));
}

TEST_F(TypesetManuscriptTest, ThePDFHasAnOutlineOfItsHeadings) {
    typesetBook(
        "<book><title>A &amp; B</title><chapter><title>One</title><p>x</p></chapter><chapter><title>Two</title><p>y</p></chapter></book>",
        kSheet + "chapter { page-break-before: always }");
    const std::string pages = shell("pdftohtml -xml -stdout -i out/x.pdf").output;
    EXPECT_THAT(
        pages,
        HasSubstr("<outline>\n<item page=\"1\">A &amp; B</item>\n<outline>\n<item page=\"2\">One</item>\n<item page=\"3\">Two</item>\n"
                  "</outline>\n</outline>\n"));
}

TEST_F(TypesetManuscriptTest, ThePDFHasLinksToTheirWholeAddresses) {
    typesetBook("<book><p>See <a href='http://h.example/a?b=c#d'>there</a> and <a href='other.html#x'>here</a>.</p></book>");
    const std::string links = shell("pdfinfo -url out/x.pdf").output;
    EXPECT_THAT(links, HasSubstr("   1  Annotation    http://h.example/a?b=c#d\n"));
    EXPECT_THAT(links, HasSubstr("   1  Annotation    file://" + folder.path.string() + "/other.html#x\n"));
}

TEST_F(TypesetManuscriptTest, AnAddressWithParenthesesIsWholeInThePDF) {
    typesetBook("<book><p>See <a href='http://h.example/a_(b)'>it</a> and <a href='http://h.example/a)b'>that</a>.</p></book>");
    const std::string links = shell("pdfinfo -url out/x.pdf").output;
    EXPECT_THAT(links, HasSubstr("http://h.example/a_(b)\n"));
    EXPECT_THAT(links, HasSubstr("http://h.example/a%29b\n"));
}

TEST_F(TypesetManuscriptTest, TheHTMLHasTheTextAndItsLinksAreRelative) {
    typesetBook("<book><title>Bells</title><p>A &lt; B, see <a href='other.html#x'>here</a>.</p></book>");
    EXPECT_THAT(output("x.html"), HasSubstr("<title>Bells</title>"));
    EXPECT_THAT(output("x.html"), HasSubstr("A &lt; B"));
    EXPECT_THAT(output("x.html"), HasSubstr("href=\"other.html#x\""));
}

TEST_F(TypesetManuscriptTest, ADocumentWithoutAHeadingIsTitledByItsName) {
    EXPECT_EQ(typesetBook("<book>One</book>").status, 0);
    EXPECT_THAT(output("x.html"), HasSubstr("<title>x</title>"));
}

TEST_F(TypesetManuscriptTest, TheEditedDocumentHasTheTwoParagraphsEditedAndTheRestAsItWas) {
    const Result result = typesetBook(bookOf(4));
    EXPECT_THAT(result.output, HasSubstr("deleted"));
    const std::string edited = output("x-edited.xml");
    const std::string untouched = "<p>" + kWords + kWords + kWords + "</p>";
    EXPECT_THAT(edited, testing::EndsWith(untouched + untouched + "</book>\n"));
    EXPECT_THAT(edited, Not(HasSubstr(untouched + untouched + untouched)));
    EXPECT_EQ(test::parse(edited)->nodesForXPath(u"/book/p")->size(), 4u);
}

TEST_F(TypesetManuscriptTest, TheSameInputGivesTheSameBytes) {
    typesetBook(bookOf(12));
    EXPECT_EQ(shell("mv out first && " WQ_TYPESET_MANUSCRIPT " x.xml x.css > told && diff -r first out").output, "");
}

TEST_F(TypesetManuscriptTest, OlderPagesMakeRoomAndOtherFilesStay) {
    typesetBook(bookOf(16));
    folder.file("out/notes.txt", "mine");
    EXPECT_THAT(outputs(), testing::Contains("x-pages/page-03.png"));
    EXPECT_EQ(typesetBook("<book>One</book>").status, 0);
    const auto files = outputs();
    for (const char* file : {"notes.txt", "x-edited.xml", "x-pages/page-01.png", "x.html", "x.pdf"})
        EXPECT_THAT(files, testing::Contains(file));
    EXPECT_THAT(files, Not(testing::Contains("x-pages/page-03.png")));
    EXPECT_EQ(output("notes.txt"), "mine");
}

// ---- What is read

TEST_F(TypesetManuscriptTest, ReadsHTML) {
    const std::string page =
        "<!DOCTYPE html PUBLIC \"-//W3C//DTD HTML 4.01//EN\" \"http://www.w3.org/TR/html4/strict.dtd\">\n"
        "<html><head><title>t</title></head><body><h1>Bells</h1><p>One&nbsp;&eacute;<br>two<ul><li>three</ul></body></html>";
    const Result result = typesetBook(page, test::contentsOf(test::sourceFolder() / "examples/html.css"), "x.html");
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(textOf("x.pdf"), MatchesRegex("Bells\nOne(\u00A0| )é\ntwo\n• three\n\n*\f"));
}

TEST_F(TypesetManuscriptTest, HTMLThatTheParserReportsOnEndsWithTheLine) {
    const Result result = typesetBook("<!DOCTYPE html>\n<html><body>\n<p>One</q></p></body></html>", kSheet, "x.html");
    expectFailure(result, "x.html:3: Unexpected end tag : q\n");
}

std::string xhtmlOf(const std::string& body) {
    return "<?xml version=\"1.0\"?>\n"
           "<!DOCTYPE html PUBLIC \"-//W3C//DTD XHTML 1.0 Strict//EN\" \"http://www.w3.org/TR/xhtml1/DTD/xhtml1-strict.dtd\">\n"
           "<html xmlns=\"http://www.w3.org/1999/xhtml\"><head><title>t</title></head><body>" +
           body + "</body></html>";
}

TEST_F(TypesetManuscriptTest, ReadsXHTMLWithItsDoctypeWithoutTheNetwork) {
    const Result result = typesetBook(xhtmlOf("<h1>Bells</h1><p>One</p>"), test::contentsOf(test::sourceFolder() / "examples/html.css"));
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(textOf("x.pdf"), StartsWith("Bells\nOne\n"));
}

TEST_F(TypesetManuscriptTest, ReadsTheNamedCharactersOfXHTMLWithoutTheNetwork) {
    const std::string body = "<p>caf&eacute;&mdash;&amp; x</p>";
    const Result result = typesetBook(xhtmlOf(body), test::contentsOf(test::sourceFolder() / "examples/html.css"));
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(textOf("x.pdf"), StartsWith("café—& x\n"));
    EXPECT_THAT(output("x.html"), HasSubstr("café—&amp; x"));
}

TEST_F(TypesetManuscriptTest, AnXMLDocumentMayBeInAnotherEncoding) {
    EXPECT_EQ(typesetBook("<?xml version='1.0' encoding='ISO-8859-1'?><book>caf\xE9</book>").status, 0);
    EXPECT_THAT(textOf("x.pdf"), StartsWith("café\n"));
}

// ---- What cannot be read

TEST_F(TypesetManuscriptTest, AMissingDocumentEndsWithOneLine) {
    folder.file("x.css", kSheet);
    const Result result = typeset("nowhere.xml x.css");
    expectFailure(result, "file://" + folder.path.string() + "/nowhere.xml: No such file or directory\n");
}

TEST_F(TypesetManuscriptTest, AMissingSheetEndsWithOneLine) {
    folder.file("x.xml", "<book>One</book>");
    expectFailure(typeset("x.xml nowhere.css"), "file://" + folder.path.string() + "/nowhere.css: No such file or directory\n");
}

TEST_F(TypesetManuscriptTest, AFolderIsNoDocument) {
    folder.file("x.css", kSheet);
    expectFailure(typeset(". x.css"), "file://" + folder.path.string() + "/.: Is a directory\n");
}

TEST_F(TypesetManuscriptTest, AMalformedDocumentEndsWithFileLineAndMessage) {
    expectFailure(typesetBook("<book>\n<p>One\n</book>"), "x.xml:3: Opening and ending tag mismatch: p line 2 and book\n");
    expectFailure(
        typesetBook("<book>\n\xFF</book>"), "x.xml:2: Input is not proper UTF-8, indicate encoding ! Bytes: 0xFF 0x3C 0x2F 0x62\n");
    expectFailure(typesetBook("<book>&nowhere;</book>"), "x.xml:1: Entity 'nowhere' not defined\n");
}

TEST_F(TypesetManuscriptTest, AnEmptyDocumentEndsWithOneLine) { expectFailure(typesetBook(""), "x.xml: the file is empty\n"); }

TEST_F(TypesetManuscriptTest, ASheetThatIsNotUTF8EndsWithOneLine) {
    expectFailure(
        typesetBook("<book>One</book>", "p { color: red } /* \xFF */"),
        "file://" + folder.path.string() + "/x.css: the text is not in UTF-8\n");
}

TEST_F(TypesetManuscriptTest, AMalformedSheetLeavesNoFiles) {
    const Result result = typesetBook("<book>One</book>", "book { display: block }\np { color red }");
    expectNothingNew();
#ifdef WQ_NO_HARD_ASSERTIONS
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.error, MatchesRegex("x.css:[^\n]*CSS Parse Error before token red[^\n]*\n"));
#else
    EXPECT_EQ(result.status, 128 + SIGABRT);
    EXPECT_THAT(result.error, HasSubstr("Assertion failed: (0), function error, file common/core/css/Parser, line "));
#endif
}

TEST_F(TypesetManuscriptTest, ADocumentOfWhichTheSheetShowsNothingEndsWithOneLine) {
    const Result result = typesetBook("<book>One</book>", "book { display: none }");
    expectFailure(result, "x.xml: there is no text that the sheet shows\n");
    EXPECT_EQ(typesetBook("<book/>").status, 1);
}

TEST_F(TypesetManuscriptTest, TooFewOrTooManyArgumentsAskForTheRightOnes) {
    for (const char* arguments : {"", "x.xml", "x.xml x.css out more"}) {
        const Result result = typeset(arguments);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.error, "usage: typeset-manuscript DOCUMENT SHEET [FOLDER]\n");
    }
}

// ---- What cannot be written

TEST_F(TypesetManuscriptTest, AFolderThatCannotBeMadeEndsWithOneLine) {
    folder.file("out", "a file");
    const Result result = typesetBook("<book>One</book>");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.error, "out: Not a directory\n");
    EXPECT_EQ(test::contentsOf(folder.file("out")), "a file");
}

TEST_F(TypesetManuscriptTest, AFolderThatCannotBeWrittenToEndsWithOneLine) {
    folder.file("x.css", kSheet);
    folder.file("x.xml", "<book>One</book>");
    const Result result = typeset("x.xml x.css /proc/wq-typeset");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.error, MatchesRegex("/proc/wq-typeset[^\n]*: [^\n]+\n"));
}

TEST_F(TypesetManuscriptTest, AFolderInThePlaceOfAFileLeavesTheOldFilesAsTheyWere) {
    typesetBook(bookOf(2));
    std::filesystem::remove(folder.path / "out/x.pdf");
    std::filesystem::create_directories(folder.path / "out/x.pdf/keep");
    folder.file("out/x.pdf/keep/mine", "mine");
    const auto before = outputs();
    const std::string html = output("x.html");
    const Result result = typesetBook("<book>One</book>");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.error, MatchesRegex("out/x.pdf: [^\n]+\n"));
    EXPECT_EQ(outputs(), before);
    EXPECT_EQ(output("x.html"), html);
}

TEST_F(TypesetManuscriptTest, AFailureLeavesOlderFilesAsTheyWere) {
    typesetBook(bookOf(2));
    const auto before = outputs();
    const std::string pdf = output("x.pdf");
    EXPECT_EQ(typesetBook("<book>").status, 1);
    EXPECT_EQ(outputs(), before);
    EXPECT_EQ(output("x.pdf"), pdf);
}

// ---- Progress

// Runs on a terminal of its own; both outputs come together.
std::string onTerminal(const std::string& command) { return "script -qec " + quoted(command) + " /dev/null"; }

TEST_F(TypesetManuscriptTest, LongWorkTellsOnATerminalHowFarItIs) {
    folder.file("x.css", kSheet);
    folder.file("x.xml", bookOf(400));
    EXPECT_THAT(
        shell(onTerminal(WQ_TYPESET_MANUSCRIPT " x.xml x.css")).output, testing::ContainsRegex("drawing pictures: [0-9]+ of [0-9]+"));
}

TEST_F(TypesetManuscriptTest, LongWorkTellsAPipeNothing) {
    const Result result = typesetBook(bookOf(400));
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.error, "");
    EXPECT_THAT(result.output, Not(HasSubstr("drawing pictures:")));
    EXPECT_THAT(result.output, Not(HasSubstr("\r")));
}

TEST_F(TypesetManuscriptTest, ShortWorkTellsATerminalNothingEither) {
    folder.file("x.css", kSheet);
    folder.file("x.xml", "<book>One</book>");
    const std::string output = shell(onTerminal(WQ_TYPESET_MANUSCRIPT " x.xml x.css")).output;
    EXPECT_THAT(output, StartsWith("x\r\n  "));
    EXPECT_THAT(output, Not(HasSubstr(" of ")));
}

// ---- What a user has

TEST_F(TypesetManuscriptTest, WhatElseLiesAmongThePagesStays) {
    std::filesystem::create_directories(folder.path / "out/x-pages");
    folder.file("out/x-pages/notes.txt", "mine");
    folder.file("out/x-pages/page-99.png", "older");
    EXPECT_EQ(typesetBook("<book>One</book>").status, 0);
    EXPECT_EQ(output("x-pages/notes.txt"), "mine");
    EXPECT_THAT(outputs(), testing::Contains("x-pages/page-01.png"));
    EXPECT_THAT(outputs(), Not(testing::Contains("x-pages/page-99.png")));
}

TEST_F(TypesetManuscriptTest, TheDocumentIsNotWrittenOver) {
    std::filesystem::create_directories(folder.path / "out");
    folder.file("x.css", kSheet);
    folder.file("out/x.html", "<book>One</book>");
    const Result result = typeset("out/x.html x.css");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.error, "out/x.html: is the document itself\n");
    EXPECT_EQ(output("x.html"), "<book>One</book>");
}

TEST_F(TypesetManuscriptTest, ANameThatIsTooLongForItsFilesEndsWithOneLine) {
    const std::string name(250, 'x');
    folder.file("x.css", kSheet);
    folder.file((name + ".xml").c_str(), "<book>One</book>");
    const Result result = typeset(name + ".xml x.css");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.error, MatchesRegex("out/x+[^\n]*\n"));
    EXPECT_THAT(outputs(), IsEmpty());
}

TEST_F(TypesetManuscriptTest, AResultThatCannotBeTold) {
    folder.file("x.css", kSheet);
    folder.file("x.xml", "<book>One</book>");
    const Result result = typeset("x.xml x.css >/dev/full");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.error, StartsWith("standard output: "));
}

TEST_F(TypesetManuscriptTest, AnEmptyArgumentIsNone) {
    EXPECT_EQ(typeset("'' x.css").status, 2);
    EXPECT_EQ(typeset("x.xml x.css ''").status, 2);
}

// ---- Which parser reads it

TEST_F(TypesetManuscriptTest, XMLThatSpeaksOfHTMLIsXML) {
    EXPECT_EQ(typesetBook("<book><p><![CDATA[<html>]]></p></book>").status, 0);
    EXPECT_EQ(textOf("x.pdf"), "<html>\n\f");
    EXPECT_EQ(typesetBook("<html><p><![CDATA[<!doctype html>]]></p></html>", "html, p { display: block }").status, 0);
    EXPECT_EQ(textOf("x.pdf"), "<!doctype html>\n\f");
}

TEST_F(TypesetManuscriptTest, WithoutACharsetHTMLIsUTF8WhereItCanBe) {
    EXPECT_EQ(
        typesetBook("<!DOCTYPE html PUBLIC '-//W3C//DTD HTML 4.01//EN'><html><p>caf\u00E9</html>", "html, p { display: block }").status, 0);
    EXPECT_EQ(textOf("x.pdf"), "caf\u00E9\n\f");
    EXPECT_EQ(typesetBook("<html><p>caf\u00E9<p>Two</html>", "html, p { display: block }").status, 0);
    EXPECT_EQ(textOf("x.pdf"), "caf\u00E9\nTwo\n\f");
}

// ---- Lists for browsers

TEST_F(TypesetManuscriptTest, MarkersAreTheBrowsersAffair) {
    const std::string sheet = "ol, li, p { display: block } ol { list-style-type: decimal }";
    typesetBook("<ol><li><p>first</p><p>still</p></li><li>second</li></ol>", sheet);
    EXPECT_THAT(output("x.html"), HasSubstr("<li>first</li><li>still</li><li>second</li>"));
    EXPECT_THAT(textOf("x.pdf"), HasSubstr("2. second"));
}

TEST_F(TypesetManuscriptTest, PicturesThatAreNotMadeAgainGo) {
    EXPECT_EQ(typesetBook(bookOf(16)).status, 0);
    EXPECT_THAT(outputs(), testing::IsSupersetOf({"x-edit.png", "x-spread.png"}));
    EXPECT_EQ(typesetBook("<book>One</book>").status, 0);
    EXPECT_THAT(outputs(), ElementsAre("x-edited.xml", "x-pages/page-01.png", "x.html", "x.pdf"));
}

}  // namespace
