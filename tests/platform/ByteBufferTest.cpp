#include "platform/ByteBuffer.h"

#include <gtest/gtest.h>

namespace {

using wq::ByteBuffer;

TEST(ByteBufferTest, ANewOneIsEmpty) {
    const ByteBuffer buffer;
    EXPECT_EQ(buffer.view(), "");
}

TEST(ByteBufferTest, TakesBytesOverWhereTheyAre) {
    std::string bytes(10'000, 'x');
    const char* place = bytes.data();
    const ByteBuffer buffer(std::move(bytes));
    EXPECT_EQ(buffer.view().data(), place);
    EXPECT_EQ(buffer.view().size(), 10'000u);
}

TEST(ByteBufferTest, AppendsToWhatWasGiven) {
    ByteBuffer buffer("given");
    buffer.append(" and grown");
    EXPECT_EQ(buffer.view(), "given and grown");
    buffer.append(" again");
    EXPECT_EQ(buffer.view(), "given and grown again");
}

TEST(ByteBufferTest, KeepsNullBytes) {
    ByteBuffer buffer(std::string("a\0b", 3));
    buffer.append({"\0c", 2});
    EXPECT_EQ(buffer.view(), std::string_view("a\0b\0c", 5));
}

TEST(ByteBufferTest, AppendingNothingChangesNothing) {
    ByteBuffer buffer(std::string(100, 'x'));
    const char* place = buffer.view().data();
    buffer.append({});
    buffer.append("");
    EXPECT_EQ(buffer.view().data(), place);
}

TEST(ByteBufferTest, KeepsEveryByteWhileItGrows) {
    ByteBuffer buffer;
    std::string expected;
    for (int i = 0; i < 20'000; ++i) {
        const std::string part = std::to_string(i) + ",";
        buffer.append(part);
        expected += part;
    }
    EXPECT_EQ(expected.size(), 108'890u);
    EXPECT_EQ(buffer.view(), expected);
}

TEST(ByteBufferTest, TakesMoreThanTwiceWhatItHolds) {
    ByteBuffer buffer("ab");
    buffer.append(std::string(1'000'000, 'c'));
    EXPECT_EQ(buffer.view(), "ab" + std::string(1'000'000, 'c'));
}

TEST(ByteBufferTest, AppendsItsOwnBytes) {
    ByteBuffer given(std::string(5'000, 'g') + "end");
    given.append(given.view().substr(5'000));
    EXPECT_EQ(given.view(), std::string(5'000, 'g') + "endend");

    ByteBuffer grown;
    grown.append("0123456789");
    for (int i = 0; i < 10; ++i) grown.append(grown.view());  // and moves several times
    EXPECT_EQ(grown.view().size(), 10'240u);
    EXPECT_EQ(grown.view().substr(10'230), "0123456789");
    EXPECT_EQ(grown.view().substr(0, 11), "01234567890");
}

}  // namespace
