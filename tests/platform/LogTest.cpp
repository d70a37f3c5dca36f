#include "platform/Log.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

class LogTest : public testing::Test {
protected:
    LogTest() {
        wq::setLogSink([this](const NSString& message) { messages.push_back(message); });
    }
    ~LogTest() override { wq::setLogSink(nullptr); }
    std::vector<NSString> messages;
};

std::string written(const NSString& message) {
    testing::internal::CaptureStderr();
    wq::log(message);
    return testing::internal::GetCapturedStderr();
}

}  // namespace

TEST_F(LogTest, TheSinkReceivesOneMessageAtATimeWithoutLineEnd) {
    wq::log(u"first");
    wq::log(u"");
    wq::log(u"two\nlines");
    EXPECT_EQ(messages, (std::vector<NSString>{u"first", u"", u"two\nlines"}));
}

TEST_F(LogTest, NothingGoesToStandardErrorBesideASink) { EXPECT_EQ(written(u"quiet"), ""); }

TEST_F(LogTest, NullIsPrintedInParentheses) {
    wq::log(nullptr);
    EXPECT_EQ(messages, std::vector<NSString>{u"(null)"});
}

TEST_F(LogTest, SettingASinkAnswersTheOneBefore) {
    const wq::LogSink before = wq::setLogSink(nullptr);
    before(u"direct");
    EXPECT_EQ(messages, std::vector<NSString>{u"direct"});
    EXPECT_FALSE(static_cast<bool>(wq::setLogSink(before)));
}

TEST_F(LogTest, ASinkMayReplaceItself) {
    wq::setLogSink([this, padding = std::string(100, 'x')](const NSString& message) {
        wq::setLogSink(nullptr);
        messages.push_back(message + wq::fromUTF8(padding.substr(0, 1)));
    });
    wq::log(u"last");
    EXPECT_EQ(messages, std::vector<NSString>{u"lastx"});
    EXPECT_EQ(written(u"default again"), "default again\n");
}

TEST(Log, WritesALineOfUTF8ToStandardErrorByDefault) {
    EXPECT_EQ(
        written(u"Gr\u00FC\u00DFe"),
        "Gr\xC3\xBC\xC3\x9F"
        "e\n");
    EXPECT_EQ(written(u""), "\n");
    EXPECT_EQ(written(nullptr), "(null)\n");
}
