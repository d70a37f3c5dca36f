#include "examples/book/HtmlPage.h"

#include "tests/examples/book/Support.h"

using namespace test;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;

namespace {

std::string pageOf(
    const std::string& content,
    const NSString& title = u"Bells",
    const NSString& base = nullptr,
    const std::string& rules = "") {
    const Manuscript manuscript("<book>" + content + "</book>", rules);
    return htmlPage(
        joined(manuscript.paragraphs(base)), title, manuscript.styles.styleOf(manuscript.document->documentElement()),
        NSURL::URLWithString(base));
}

TEST(HtmlPageTest, AroundTheBodyStandsAWholePage) {
    const std::string page = pageOf("<p>One</p>");
    EXPECT_THAT(page, testing::StartsWith("<!DOCTYPE html>"));
    EXPECT_THAT(
        page,
        MatchesRegex("<!DOCTYPE html>\n?<html><head>(.|\n)*<title>Bells</title>(.|\n)*</head><body (.|\n)*One(.|\n)*</body></html>\n?"));
    EXPECT_THAT(page, HasSubstr("<meta charset=\"utf-8\""));
}

TEST(HtmlPageTest, ThePageIsWellFormed) {
    const std::string page = pageOf("<p>A &amp; B &lt; C <a href='http://h/?a&amp;b'>é𝕊</a></p>", u"A & B < \"C\"");
    const auto document = parse(page.substr(std::string("<!DOCTYPE html>").size()));
    EXPECT_EQ(wq::cast<WQXMLElement>(find(document, u"title"))->innerText(), u"A & B < \"C\"");
    EXPECT_EQ(wq::cast<WQXMLElement>(find(document, u"a"))->innerText(), u"é𝕊");
    EXPECT_THAT(page, HasSubstr("é𝕊"));  // UTF-8, without references
}

TEST(HtmlPageTest, TheBaseSheetTakesAwayWhatBrowsersAdd) {
    const std::string page = pageOf("<p>One</p>");
    const size_t sheet = page.find("<style>"), head = page.find("</head>");
    ASSERT_LT(sheet, head);
    EXPECT_THAT(page.substr(sheet, head - sheet), HasSubstr("margin: 0"));
    EXPECT_THAT(page.substr(sheet, head - sheet), Not(HasSubstr("&")));
}

TEST(HtmlPageTest, TheBodyHasTheFontAndTheColourOfTheElementAround) {
    const std::string page = pageOf("<p>One</p>", u"x", nullptr, "book { color: #102030; font-size: 17px }");
    const std::string body = page.substr(page.find("<body "), page.find('>', page.find("<body ")) - page.find("<body "));
    for (const char* part : {"font-family: 'TeX Gyre Pagella'", "font-size: 17px", "color: #102030", "line-height: 1.25"})
        EXPECT_THAT(body, HasSubstr(part));
    EXPECT_THAT(page, HasSubstr("<p>One</p>"));  // which says nothing of its own then
}

TEST(HtmlPageTest, WhatDiffersFromTheBodyIsSaid) {
    EXPECT_THAT(
        pageOf("<p>One <em>two</em></p>", u"x", nullptr, "em { font-style: italic }"),
        HasSubstr("<span style=\"font-style: italic; \">two</span>"));
}

TEST(HtmlPageTest, LinksAreRelativeToTheBase) {
    const std::string content = "<p><a href='b.html#c'>x</a> <a href='http://other/'>y</a></p>";
    const std::string page = pageOf(content, u"x", u"http://h/d/a.xml");
    EXPECT_THAT(page, HasSubstr("href=\"b.html#c\""));
    EXPECT_THAT(page, HasSubstr("href=\"http://other/\""));
    EXPECT_THAT(pageOf(content), HasSubstr("href=\"b.html#c\""));
}

TEST(HtmlPageTest, ListsAreLists) {
    const std::string page = pageOf("<list><item>One</item><item>Two</item></list>", u"x", nullptr, "list { list-style-type: decimal }");
    EXPECT_THAT(page, testing::ContainsRegex("<ul [^>]*list-style-type: decimal[^>]*><li>.*One.*</li><li>.*Two.*</li></ul>"));
    EXPECT_THAT(page, Not(HasSubstr("1.\t")));
}

TEST(HtmlPageTest, TheTitleIsNeverEmpty) {
    EXPECT_THAT(pageOf("<p>One</p>", u""), Not(testing::ContainsRegex("<title></title>|<title/>")));
    EXPECT_THAT(pageOf("<p>One</p>", nullptr), Not(testing::ContainsRegex("<title></title>|<title/>")));
    EXPECT_THAT(pageOf("<p>One</p>", u""), HasSubstr("</title>"));
}

}  // namespace
