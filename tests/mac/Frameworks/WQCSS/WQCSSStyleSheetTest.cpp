#include "mac/Frameworks/WQCSS/WQCSSStyleSheet.h"

#include <cerrno>
#include <csignal>

#include "tests/dom/Support.h"

using namespace test;

namespace {

std::string selectorsOf(const Ref<WQCSSStyleSheet>& sheet) {
    std::string text;
    for (const auto& rule : sheet->cssStyleSheet()->styleRules) text += rule->GetSelectorText() + ";";
    return text;
}

struct Answer {
    Ref<WQCSSStyleSheet> sheet;
    Ref<NSError> error;
};
Answer read(const Ref<NSURL>& url) {
    Answer answer;
    answer.sheet = WQCSSStyleSheet::styleSheetWithContentsOfURL_error(url, &answer.error);
    return answer;
}

TEST(WQCSSStyleSheetTest, IsMadeOfAText) {
    const auto sheet = WQCSSStyleSheet::styleSheetWithString(u"p { color: red } a, b { } @page { } @import 'x';");
    EXPECT_EQ(selectorsOf(sheet), "p;a,b;");
    EXPECT_EQ(sheet->cssStyleSheet()->styleRules[0]->declaration->cssText(), "color: #ff0000; ");
    EXPECT_EQ(sheet->cssStyleSheet()->origin, CSS::Stylesheet::Author);
    EXPECT_EQ(sheet->cssStyleSheet()->refCount, 1);
}

TEST(WQCSSStyleSheetTest, OfAnEmptyTextIsEmpty) {
    for (const NSString& text : {u""_ns, u" \n/* */"_ns}) {
        const auto sheet = WQCSSStyleSheet::newWithString(text);
        ASSERT_TRUE(sheet);
        ASSERT_TRUE(sheet->cssStyleSheet());
        EXPECT_EQ(selectorsOf(sheet), "");
    }
}

TEST(WQCSSStyleSheetTest, OfNullIsNull) {
    EXPECT_FALSE(WQCSSStyleSheet::styleSheetWithString(nullptr));
    EXPECT_FALSE(WQCSSStyleSheet::newWithString(nullptr));
}

TEST(WQCSSStyleSheetTest, ATextCrossesInUTF8) {
    EXPECT_EQ(selectorsOf(WQCSSStyleSheet::styleSheetWithString(u"\U0001D11E\u00E4 { }")), "\xF0\x9D\x84\x9E\xC3\xA4;");
    const char16_t lone[] = {0xD834, u'{', u'}', 0};
    EXPECT_EQ(selectorsOf(WQCSSStyleSheet::styleSheetWithString(lone)), "\xEF\xBF\xBD;");
}

TEST(WQCSSStyleSheetTest, SharesASheetOfTheEngine) {
    const SharedPtr<CSS::Stylesheet> shared = CSS::Stylesheet::CreateWithData("p { }");
    auto sheet = WQCSSStyleSheet::newWithCSSStyleSheet(shared.Get());
    EXPECT_EQ(sheet->cssStyleSheet(), shared.Get());
    EXPECT_EQ(shared->refCount, 2);
    shared->styleRules.push_back(new CSS::StyleRule);
    EXPECT_EQ(sheet->cssStyleSheet()->styleRules.size(), 2u);
    sheet = nullptr;
    EXPECT_EQ(shared->refCount, 1);
}

TEST(WQCSSStyleSheetTest, SettingASheetMovesTheCount) {
    const SharedPtr<CSS::Stylesheet> before = new CSS::Stylesheet, after = new CSS::Stylesheet;
    const auto sheet = WQCSSStyleSheet::newWithCSSStyleSheet(before.Get());
    sheet->setCSSStyleSheet(after.Get());
    EXPECT_EQ(sheet->cssStyleSheet(), after.Get());
    EXPECT_EQ(before->refCount, 1);
    EXPECT_EQ(after->refCount, 2);
    sheet->setCSSStyleSheet(after.Get());
    EXPECT_EQ(after->refCount, 2);
    sheet->setCSSStyleSheet(nullptr);
    EXPECT_EQ(sheet->cssStyleSheet(), nullptr);
    EXPECT_EQ(after->refCount, 1);
}

TEST(WQCSSStyleSheetTest, SettingItsOwnSheetKeepsItAlive) {
    const auto sheet = WQCSSStyleSheet::newWithString(u"p { }");
    sheet->setCSSStyleSheet(sheet->cssStyleSheet());
    EXPECT_EQ(selectorsOf(sheet), "p;");
    EXPECT_EQ(sheet->cssStyleSheet()->refCount, 1);
}

TEST(WQCSSStyleSheetTest, MayBeAroundNone) {
    const auto none = WQCSSStyleSheet::newWithCSSStyleSheet(nullptr);
    ASSERT_TRUE(none);
    EXPECT_EQ(none->cssStyleSheet(), nullptr);
}

// Counts the sheets that it is given.
class Counting : public WQCSSStyleSheet {
public:
    void setCSSStyleSheet(CSS::Stylesheet* sheet) override {
        ++sheets;
        WQCSSStyleSheet::setCSSStyleSheet(sheet);
    }
    int sheets = 0;
};

TEST(WQCSSStyleSheetTest, EachWayToMakeOneSetsItsSheet) {
    const Folder folder;
    const auto url = fileURL(folder.file("a.css", "p { }"));
    EXPECT_EQ(WQCSSStyleSheet::newWithCSSStyleSheet<Counting>(new CSS::Stylesheet)->sheets, 1);
    EXPECT_EQ(WQCSSStyleSheet::styleSheetWithString<Counting>(u"p { }")->sheets, 1);
    EXPECT_EQ(WQCSSStyleSheet::styleSheetWithContentsOfURL_error<Counting>(url, nullptr)->sheets, 1);
}

// ---- From a URL

TEST(WQCSSStyleSheetTest, ReadsAFileAsUTF8) {
    const Folder folder;
    const auto url = fileURL(folder.file("\xF0\x9D\x84\x9E.css", "\xF0\x9D\x84\x9E { color: red }"));
    const Answer answer = read(url);
    EXPECT_EQ(selectorsOf(answer.sheet), "\xF0\x9D\x84\x9E;");
    EXPECT_FALSE(answer.error);
    EXPECT_EQ(selectorsOf(WQCSSStyleSheet::newWithContentsOfURL_error(url, nullptr)), "\xF0\x9D\x84\x9E;");
}

TEST(WQCSSStyleSheetTest, AnEmptyFileIsAnEmptySheet) {
    const Folder folder;
    const Answer answer = read(fileURL(folder.file("a.css", "")));
    ASSERT_TRUE(answer.sheet);
    EXPECT_EQ(selectorsOf(answer.sheet), "");
    EXPECT_FALSE(answer.error);
}

TEST(WQCSSStyleSheetTest, AByteOrderMarkBelongsToTheFirstName) {
    const Folder folder;
    EXPECT_EQ(selectorsOf(read(fileURL(folder.file("a.css", "\xEF\xBB\xBFp { }"))).sheet), "\xEF\xBB\xBFp;");
}

TEST(WQCSSStyleSheetTest, AMissingFileGivesNullAndThePlatformsError) {
    const Folder folder;
    const Answer answer = read(fileURL(folder.file("missing")));
    EXPECT_FALSE(answer.sheet);
    EXPECT_EQ(answer.error->domain(), NSPOSIXErrorDomain);
    EXPECT_EQ(answer.error->code(), ENOENT);
    EXPECT_FALSE(WQCSSStyleSheet::styleSheetWithContentsOfURL_error(fileURL(folder.file("missing")), nullptr));
}

TEST(WQCSSStyleSheetTest, AFileThatIsNotUTF8GivesNullAndAnError) {
    const Folder folder;
    const Answer answer = read(fileURL(folder.file("a.css", "p { } /* \xE4 */")));
    EXPECT_FALSE(answer.sheet);
    EXPECT_EQ(answer.error->domain(), NSCocoaErrorDomain);
    EXPECT_EQ(answer.error->code(), NSFileReadInapplicableStringEncodingError);
}

TEST(WQCSSStyleSheetTest, ANullURLGivesNullAndAnError) {
    const Answer answer = read(nullptr);
    EXPECT_FALSE(answer.sheet);
    EXPECT_TRUE(answer.error);
    EXPECT_FALSE(WQCSSStyleSheet::styleSheetWithContentsOfURL_error(nullptr, nullptr));
}

// ---- Syntax errors

#ifdef WQ_NO_HARD_ASSERTIONS

TEST(WQCSSStyleSheetTest, ASyntaxErrorGivesNullAndNoError) {
    const Folder folder;
    const auto url = fileURL(folder.file("a.css", "p { color: }"));
    testing::internal::CaptureStderr();
    EXPECT_FALSE(WQCSSStyleSheet::styleSheetWithString(u"a ~ b { }"));
    const Answer answer = read(url);
    EXPECT_FALSE(answer.sheet);
    EXPECT_FALSE(answer.error);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "CSS Parse Error before token ~\nCSS Parse Error before token }\n");
}

#else

TEST(WQCSSStyleSheetDeathTest, ASyntaxErrorEndsTheProcess) {
    EXPECT_EXIT(
        WQCSSStyleSheet::styleSheetWithString(u"a ~ b { }"), testing::KilledBySignal(SIGABRT),
        "^Assertion failed: \\(0\\), function error, file common/core/css/Parser, line [0-9]+\\.\n");
}

#endif

}  // namespace
