// One text for each file, and URLs relative to others.
#include "dom/WQXMLExtensions.h"

#include "tests/dom/Support.h"

namespace {

using namespace test;

Ref<NSURL> url(const NSString& text) {
    auto result = NSURL::URLWithString(text);
    EXPECT_EQ(static_cast<bool>(result), static_cast<bool>(text)) << wq::toUTF8(wq::printed(text));
    return result;
}

struct Row {
    const char16_t *base, *url, *result;
};
constexpr const char16_t* null = nullptr;

// Bases come first: read a row as "at BASE, URL is written RESULT".
void expect(std::initializer_list<Row> rows) {
    const Assertions assertions;
    for (const Row& row : rows) {
        SCOPED_TRACE("at " + wq::toUTF8(wq::printed(row.base)) + ", " + wq::toUTF8(wq::printed(row.url)));
        EXPECT_EQ(raised([&] { EXPECT_EQ(stringRelativeToURL(url(row.url), url(row.base)), row.result); }), "");
    }
    EXPECT_THAT(assertions.descriptions, testing::IsEmpty());
}

}  // namespace

// ---- standardizedFileURL

TEST(WQXMLExtensionsTest, AFileURLWithoutAHostGetsOne) {
    struct {
        const char16_t *given, *standardized;
    } const rows[] = {
        {u"file:///a/b.html", u"file://localhost/a/b.html"},
        {u"file:///", u"file://localhost/"},
        {u"file:////a", u"file://localhost//a"},
        {u"file:///a%20b.html?q#f", u"file://localhost/a%20b.html?q#f"},
        {u"file:///it's.html", u"file://localhost/it's.html"},
        {u"file:///a/file:///b", u"file://localhost/a/file:///b"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(wq::toUTF8(NSString(row.given)));
        const auto given = url(row.given);
        const auto standardized = standardizedFileURL(given);
        EXPECT_EQ(standardized->absoluteString(), row.standardized);
        EXPECT_EQ(standardized->host(), u"localhost");
        EXPECT_TRUE(standardized->isFileURL());
        EXPECT_EQ(given->absoluteString(), row.given);
        EXPECT_EQ(standardizedFileURL(standardized), standardized);
    }
}

TEST(WQXMLExtensionsTest, EveryOtherURLComesBackItself) {
    for (const char16_t* text : {
             u"file://localhost/a.html",
             u"file://server/a.html",
             u"file:/a.html",
             u"file:a.html",
             u"file://",
             u"FILE:///a.html",
             u"http://h/a.html",
             u"http://h/file:///a",
             u"http:///a.html",
             u"x-file:///a.html",
             u"mailto:a@b",
             u"a/b.html",
             u"///a.html",
             u"#f",
             u"",
         }) {
        SCOPED_TRACE(wq::toUTF8(NSString(text)));
        const auto given = url(text);
        EXPECT_EQ(standardizedFileURL(given), given);
    }
}

TEST(WQXMLExtensionsTest, NullStandardizedIsNull) { EXPECT_FALSE(standardizedFileURL(nullptr)); }

TEST(WQXMLExtensionsTest, TheStandardizedURLOutlivesTheGivenOne) {
    auto given = url(u"file:///a.html");
    const auto standardized = standardizedFileURL(given);
    given = nullptr;
    EXPECT_EQ(standardized->absoluteString(), u"file://localhost/a.html");
    auto kept = url(u"http://h/a.html");
    const auto same = standardizedFileURL(kept);
    kept = nullptr;
    EXPECT_EQ(same->absoluteString(), u"http://h/a.html");
}

// ---- stringRelativeToURL

TEST(WQXMLExtensionsTest, WithoutABaseTheAnswerIsTheAbsoluteText) {
    expect({
        {null, u"http://h/a.html?q#f", u"http://h/a.html?q#f"},
        {null, u"file:///a.html", u"file:///a.html"},
        {null, u"http://h/it's.html", u"http://h/it's.html"},
        {null, u"#f", u"#f"},
        {null, u"", u""},
    });
}

TEST(WQXMLExtensionsTest, NullRelativeToAnythingIsNull) {
    expect({{null, null, null}, {u"http://h/", null, null}, {u"file:///a", null, null}, {u"", null, null}});
}

TEST(WQXMLExtensionsTest, BothWaysToWriteAFileAreTheSameFile) {
    expect({
        {u"file:///a/b.html", u"file://localhost/a/b.html", u""},
        {u"file://localhost/a/b.html", u"file:///a/b.html", u""},
        {u"file:///a/b.html", u"file:///a/b.html", u""},
        {u"file:///a/", u"file://localhost/a/b.html", u"b.html"},
        {u"file:///a/b.html", u"file://localhost/a/c.html", u"c.html"},
        {u"file://localhost/a/b.html", u"file:///a/c.html", u"c.html"},
        {u"file:///a/b.html", u"file:///c.html", u"../c.html"},
        {u"file:///a/b.html", u"file://server/a/c.html", u"file://server/a/c.html"},
        {u"file:/a/b.html", u"file:/a/c.html", u"c.html"},
        {u"file:///a/b.html", u"file:/a/c.html", u"file:/a/c.html"},  // "file:/" is not put into that form
    });
}

TEST(WQXMLExtensionsTest, AURLThatBeginsWithItsBaseIsWhatFollows) {
    expect({
        {u"http://h/a", u"http://h/a", u""},
        {u"http://h/a/", u"http://h/a/b/c.html", u"b/c.html"},
        {u"http://h/a", u"http://h/a/b.html", u"/b.html"},
        {u"http://h/chapter", u"http://h/chapter2.html", u"2.html"},
        {u"file:///a/chapter", u"file:///a/chapter2/b.html", u"2/b.html"},
        {u"http://h/a", u"http://h/a?q#f", u"?q#f"},
        {u"http://h/a.html", u"http://h/a.html#f", u"#f"},
        {u"http://h/a/", u"http://h/a/http://h/a/b", u"http://h/a/b"},
        {u"http:", u"http://h/a", u"//h/a"},
        {u"http://h", u"http://h2/a", u"2/a"},
        {u"a", u"ab", u"b"},
        {u"#", u"#f", u"f"},
        {u"", u"http://h/a", u"http://h/a"},
        {u"", u"a/b", u"a/b"},
        {u"", u"", u""},
        {u"", u"file:///a", u"file://localhost/a"},
    });
}

TEST(WQXMLExtensionsTest, WhatFollowsTheBaseKeepsItsApostrophes) {
    expect({
        {u"http://h/it's/", u"http://h/it's/it's.html#it's", u"it's.html#it's"},
        {u"http://h/a", u"http://h/a#it's", u"#it's"},
    });
}

TEST(WQXMLExtensionsTest, AFragmentAloneComesBack) {
    expect({
        {u"http://h/a.html", u"#f", u"#f"},
        {u"http://h/a.html", u"#", u"#"},
        {u"http://h/a.html", u"#it's", u"#it's"},
        {u"file:///a.html", u"#f", u"#f"},
        {u"a.html", u"#f", u"#f"},
    });
}

TEST(WQXMLExtensionsTest, AnotherSchemeGivesTheAbsoluteTextOfTheReceiver) {
    expect({
        {u"http://h/a.html", u"https://h/b.html", u"https://h/b.html"},
        {u"http://h/a.html", u"file:///b.html", u"file:///b.html"},
        {u"file:///a.html", u"http://h/b.html", u"http://h/b.html"},
        {u"http://h/a.html", u"mailto:it's@b", u"mailto:it's@b"},
        {u"http://h/a.html", u"javascript:alert('x')", u"javascript:alert('x')"},
        {u"http://h/a.html", u"b.html", u"b.html"},
        {u"http://h/a.html", u"", u""},
        {u"a.html", u"http://h/b.html", u"http://h/b.html"},
        {u"http://h/a.html", u"HTTP://h/b.html", u"HTTP://h/b.html"},
        {u"file:///a.html", u"FILE:///b.html", u"FILE:///b.html"},
    });
}

TEST(WQXMLExtensionsTest, EverythingElseIsThePathFromTheFolderOfTheBase) {
    expect({
        {u"http://h/a/b.html", u"http://h/a/c.html", u"c.html"},
        {u"http://h/a/b.html", u"http://h/c.html", u"../c.html"},
        {u"http://h/a/b.html", u"http://h/a/c/d.html", u"c/d.html"},
        {u"http://h/a/b.html", u"http://h/c/d.html", u"../c/d.html"},
        {u"http://h/a/b/c.html", u"http://h/d.html", u"../../d.html"},
        {u"http://h/a/b.html", u"http://h/a/", u"./"},
        {u"http://h/a/b.html", u"http://h/a", u"../a"},
        {u"http://h/a/b.html", u"http://h/", u"../"},
        {u"http://h/a/b/c.html", u"http://h/a/", u"../"},
        {u"a/b.html", u"a/c.html", u"c.html"},
        {u"a/b.html", u"c.html", u"../c.html"},
        {u"/a/b.html", u"/a/c.html", u"c.html"},
        {u"//h/a", u"//h/b", u"b"},
        {u"mailto:a@b", u"mailto:c@d", u"c@d"},
        {u"http://h/a/b.html", u"http://h/a/c%20d%C3%A4.html", u"c%20d%C3%A4.html"},
        {u"http://h/a/b.html", u"http://h/a/b%3Ac.html", u"b%3Ac.html"},
        {u"http://h/a/b.html", u"http://h/a/b:c.html", u"b%3Ac.html"},
        {u"http://h/a/b.html", u"http://h/a/x%2Fy.html", u"x/y.html"},
    });
}

TEST(WQXMLExtensionsTest, AnotherHostGivesTheWholeURL) {
    expect({
        {u"http://h/a/b.html", u"http://g/a/c.html?q#f", u"http://g/a/c.html?q#f"},
        {u"http://h/a/b.html", u"http://H/a/c.html", u"http://H/a/c.html"},
        {u"http://h/a/b.html", u"http://[::1]/x", u"http://[::1]/x"},
        {u"http://h/a/b.html", u"http://g/it's.html#it's", u"http://g/it%27s.html#it%27s"},
        {u"http://h/a/b.html", u"http://g/c.html#", u"http://g/c.html#"},
    });
}

TEST(WQXMLExtensionsTest, UserAndPortAreNotCompared) {
    expect({
        {u"http://h:80/a/b.html", u"http://h:81/a/c.html", u"c.html"},
        {u"http://h/a/b.html", u"http://u@h/a/c.html", u"c.html"},
    });
}

TEST(WQXMLExtensionsTest, TheQueryIsLostAndTheFragmentStays) {
    expect({
        {u"http://h/a/b.html", u"http://h/a/c.html?q", u"c.html"},
        {u"http://h/a/b.html", u"http://h/a/c.html#f", u"c.html#f"},
        {u"http://h/a/b.html", u"http://h/a/c.html?q#f", u"c.html#f"},
        {u"http://h/a/b.html", u"http://h/a/c.html#", u"c.html#"},
        {u"http://h/a/b.html", u"http://h/a/c.html#%41%20b", u"c.html#%41%20b"},
        {u"http://h/a/b.html", u"http://h/a/c.html#p/q?r", u"c.html#p/q?r"},
        {u"http://h/a/b.html", u"http://h/a/#f", u"./#f"},
        {u"http://h/a.html?q", u"http://h/a.html?r", u""},
        {u"file:///a/b.html", u"file:///a/c.html#f", u"c.html#f"},
    });
}

TEST(WQXMLExtensionsTest, AFragmentOfTheSameDocumentIsTheFragment) {
    expect({
        {u"http://h/a.html#e", u"http://h/a.html#f", u"#f"},
        {u"http://h/a.html?q", u"http://h/a.html#f", u"#f"},
        {u"http://h/a.html#e", u"http://h/a.html", u""},
        {u"file:///a.html#e", u"file://localhost/a.html#f", u"#f"},
    });
}

TEST(WQXMLExtensionsTest, AnApostropheIsEscaped) {
    expect({
        {u"http://h/a/b.html", u"http://h/a/it's.html", u"it%27s.html"},
        {u"http://h/a/b.html", u"http://h/''/'.html", u"../%27%27/%27.html"},
        {u"http://h/a/b.html", u"http://h/a/it%27s.html", u"it%27s.html"},
        {u"http://h/a/b.html", u"http://h/a/it%2527s.html", u"it%2527s.html"},
        {u"http://h/it's/b.html", u"http://h/it's/c.html", u"c.html"},
        {u"http://h/it%27s/b.html", u"http://h/it's/c.html", u"c.html"},
        {u"http://h/it's/b.html", u"http://h/a/c.html", u"../a/c.html"},
        {u"file:///a/b.html", u"file:///a/it's.html", u"it%27s.html"},
        {u"http://h/a/b.html", u"http://h/a/c.html#it's", u"c.html#it%27s"},
    });
}

TEST(WQXMLExtensionsTest, WhereThereIsNoAnswerItIsNull) { expect({{u"a/b.html", u"", null}, {u"#f", u"", null}}); }

TEST(WQXMLExtensionsTest, TheURLsStayAsTheyAre) {
    const auto base = url(u"file:///it's/b.html"), given = url(u"file:///it's/it's.html#f");
    EXPECT_EQ(stringRelativeToURL(given, base), u"it%27s.html#f");
    EXPECT_EQ(base->absoluteString(), u"file:///it's/b.html");
    EXPECT_EQ(given->absoluteString(), u"file:///it's/it's.html#f");
}
