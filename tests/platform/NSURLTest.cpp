#include "platform/NSURL.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

namespace {

using namespace wq::literals;

Ref<NSURL> url(const NSString& text) { return NSURL::URLWithString(text); }

struct Accepted {
    const char16_t *text, *scheme, *host, *path, *fragment;
};
constexpr const char16_t* no = nullptr;

constexpr Accepted kAccepted[] = {
    {u"http://example.com/a/b.html#frag", u"http", u"example.com", u"/a/b.html", u"frag"},
    {u"http://example.com", u"http", u"example.com", u"", no},
    {u"http://example.com/", u"http", u"example.com", u"/", no},
    {u"file:///tmp/a.txt", u"file", no, u"/tmp/a.txt", no},
    {u"file://localhost/tmp/a.txt", u"file", u"localhost", u"/tmp/a.txt", no},
    {u"file:/tmp/a.txt", u"file", no, u"/tmp/a.txt", no},
    {u"file://server/share/a", u"file", u"server", u"/share/a", no},
    {u"FILE:///tmp/A", u"FILE", no, u"/tmp/A", no},
    {u"file:///", u"file", no, u"/", no},
    {u"file:/", u"file", no, u"/", no},
    {u"file://", u"file", no, u"", no},
    {u"file:////double", u"file", no, u"//double", no},
    {u"a/b.html", no, no, u"a/b.html", no},
    {u"a//b/", no, no, u"a//b/", no},
    {u"../b%20c.html#x", no, no, u"../b c.html", u"x"},
    {u"?q", no, no, u"", no},
    {u"/a/b", no, no, u"/a/b", no},
    {u"//host/p", no, u"host", u"/p", no},
    {u"#frag", no, no, u"", u"frag"},
    {u"", no, no, u"", no},
    {u"mailto:a@b.org", u"mailto", no, u"a@b.org", no},
    {u"urn:isbn:0451450523", u"urn", no, u"isbn:0451450523", no},
    {u"http://[::1]:8080/x", u"http", u"::1", u"/x", no},
    {u"http://ex.com/it's.html", u"http", u"ex.com", u"/it's.html", no},
    {u"http://user:pw@ex.com:80/", u"http", u"ex.com", u"/", no},
    {u"http:///path", u"http", no, u"/path", no},
    {u"http://ex.com/#", u"http", u"ex.com", u"/", u""},
    {u"./b:c", no, no, u"./b:c", no},
    {u"http://ex.com/a%2Fb#%41", u"http", u"ex.com", u"/a/b", u"%41"},
    {u"http://ex.com/a?b=c/d#e/f?g", u"http", u"ex.com", u"/a", u"e/f?g"},
    {u"http://ex.com/%C3%A4+b", u"http", u"ex.com", u"/\u00E4+b", no},
    {u"javascript:alert('x')", u"javascript", no, u"alert('x')", no},
};

constexpr const char16_t* kRefused[] = {
    u"a b.html",
    u" a.html",
    u"a.html\n",
    u"http://example.com/\u00E4",
    u"http://example.com/%zz",
    u"http://ex.com/100%",
    u"http://ex.com/%4",
    u"http://ex.com/a#b#c",
    u"1a:b",
    u"http://ex.com:port/",
    u"C:\\dir\\file",
    u"http://ex.com/|",
    u"http://ex.com/{",
    u"http://ex.com/<",
    u"http://ex.com/\"",
    u"http://ex.com/^",
    u"http://ex.com/`",
    u"http://ex.com/[",
    u"#a[b]",
    u":a",
};

}  // namespace

TEST(NSURL, KnowsItsParts) {
    for (const Accepted& row : kAccepted) {
        SCOPED_TRACE(testing::PrintToString(NSString(row.text)));
        const auto parsed = url(row.text);
        ASSERT_TRUE(parsed);
        EXPECT_EQ(parsed->scheme(), row.scheme);
        EXPECT_EQ(parsed->host(), row.host);
        EXPECT_EQ(parsed->path(), row.path);
        EXPECT_EQ(parsed->fragment(), row.fragment);
    }
}

TEST(NSURL, KeepsItsTextByteForByte) {
    for (const Accepted& row : kAccepted) {
        EXPECT_EQ(url(row.text)->absoluteString(), row.text);
        EXPECT_EQ(url(row.text)->description(), row.text);
    }
}

TEST(NSURL, IsNullForATextThatIsNoURL) {
    for (const char16_t* text : kRefused) EXPECT_EQ(url(text), nullptr) << testing::PrintToString(NSString(text));
}

TEST(NSURL, IsNullForATextWithANUL) {
    EXPECT_EQ(url(u"a\0b"_ns), nullptr);
    EXPECT_EQ(url(u"\0"_ns), nullptr);
}

TEST(NSURL, IsNullForALoneSurrogate) { EXPECT_EQ(url(NSString(std::u16string(1, 0xD834))), nullptr); }

TEST(NSURL, IsNullForNull) { EXPECT_EQ(url(nullptr), nullptr); }

TEST(NSURL, HasNoPathIfThatHoldsAnEscapedNUL) {
    const auto parsed = url(u"file:///tmp/a%00b");
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->path(), nullptr);
    EXPECT_EQ(parsed->absoluteString(), u"file:///tmp/a%00b");
}

TEST(NSURL, LeavesEscapedLineBreaksInItsPath) { EXPECT_EQ(url(u"file:///a%0D%0Ab%0Dc")->path(), u"/a\r\nb\rc"); }

TEST(NSURL, ReplacesWhatIsNotUTF8InItsPath) { EXPECT_EQ(url(u"file:///%FFa")->path(), u"/\uFFFDa"); }

TEST(NSURL, IsAFileURLInAnyCase) {
    for (const char16_t* text : {u"file:///a", u"FILE:///a", u"File:/a", u"file://localhost/a", u"file:a"})
        EXPECT_TRUE(url(text)->isFileURL());
    for (const char16_t* text : {u"", u"file", u"http://file/", u"files:///a", u"fil:/a", u"/file:/a"})
        EXPECT_FALSE(url(text)->isFileURL());
}

TEST(NSURL, EscapesAndReadsFilePaths) {
    const struct {
        const char16_t *path, *text;
    } rows[] = {
        {u"/tmp/a.txt", u"file:///tmp/a.txt"},
        {u"/", u"file:///"},
        {u"/tmp/", u"file:///tmp/"},
        {u"/a b", u"file:///a%20b"},
        {u"/100%", u"file:///100%25"},
        {u"/%41", u"file:///%2541"},
        {u"/a#b", u"file:///a%23b"},
        {u"/a?b", u"file:///a%3Fb"},
        {u"/it's", u"file:///it%27s"},
        {u"/a:b", u"file:///a%3Ab"},
        {u"/[x]|", u"file:///%5Bx%5D%7C"},
        {u"/line\nend", u"file:///line%0Aend"},
        {u"/Gr\u00FC\u00DFe \U0001D11E", u"file:///Gr%C3%BC%C3%9Fe%20%F0%9D%84%9E"},
        {u"/-._~", u"file:///-._~"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(NSString(row.path)));
        const auto made = NSURL::fileURLWithPath(row.path);
        ASSERT_TRUE(made);
        EXPECT_EQ(made->absoluteString(), row.text);
        EXPECT_EQ(made->path(), row.path);
        EXPECT_TRUE(made->isFileURL());
        EXPECT_EQ(made->host(), nullptr);
        EXPECT_EQ(made->fragment(), nullptr);
    }
}

TEST(NSURL, ARelativePathStartsAtTheCurrentFolder) {
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path("/");
    EXPECT_EQ(NSURL::fileURLWithPath(u"a b/c")->absoluteString(), u"file:///a%20b/c");
    std::filesystem::current_path(before);
}

TEST(NSURL, IsNullForAPathThatNoFileCanHave) {
    EXPECT_EQ(NSURL::fileURLWithPath(nullptr), nullptr);
    EXPECT_EQ(NSURL::fileURLWithPath(u""), nullptr);
    EXPECT_EQ(NSURL::fileURLWithPath(u"/a\0b"_ns), nullptr);
}

TEST(NSURL, NullAnswersNothing) {
    const Ref<NSURL> null;
    EXPECT_EQ(null->absoluteString(), nullptr);
    EXPECT_EQ(null->scheme(), nullptr);
    EXPECT_EQ(null->host(), nullptr);
    EXPECT_EQ(null->path(), nullptr);
    EXPECT_EQ(null->fragment(), nullptr);
    EXPECT_FALSE(null->isFileURL());
    EXPECT_EQ(null->description(), nullptr);
}

TEST(NSURL, EqualsOneOfTheSameText) {
    EXPECT_TRUE(url(u"http://wq.invalid/a")->isEqual(url(u"http://wq.invalid/a")));
    EXPECT_FALSE(url(u"http://wq.invalid/a")->isEqual(url(u"http://WQ.invalid/a")));
    EXPECT_FALSE(url(u"http://wq.invalid/a")->isEqual(url(u"http://wq.invalid/%61")));
    EXPECT_TRUE(url(u"")->isEqual(url(u"")));
    EXPECT_FALSE(url(u"")->isEqual(nullptr));
    EXPECT_FALSE(Ref<NSURL>()->isEqual(nullptr));
    EXPECT_FALSE(Ref<NSURL>()->isEqual(url(u"")));
}
