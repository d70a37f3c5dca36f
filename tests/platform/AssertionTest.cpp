#include "platform/Assertion.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/Object.h"

namespace {

class Account : public wq::Object {
public:
    void withdraw_from(int amount) {
        WQ_ASSERT(amount >= 0, u"The amount is negative");
        ++withdrawals;
    }
    int withdrawals = 0;
};

struct Kept {
    std::string operation;
    const wq::Object* receiver;
    std::string file;
    int line;
    NSString description;
};

class AssertionTest : public testing::Test {
protected:
    wq::AssertionHandler keep() {
        return [this](const wq::AssertionFailure& failure) {
            kept.push_back(
                {std::string(failure.operation), failure.receiver, std::string(failure.file), failure.line, failure.description});
        };
    }
    Ref<Account> account{new Account};
    std::vector<Kept> kept;
};

}  // namespace

TEST_F(AssertionTest, RaisesByDefault) {
    try {
        account->withdraw_from(-1);
        FAIL() << "nothing was raised";
    } catch (const WQXMLException& exception) {
        EXPECT_EQ(exception.name(), u"NSInternalInconsistencyException");
        EXPECT_EQ(exception.reason(), u"The amount is negative");
    }
    EXPECT_EQ(account->withdrawals, 0);
}

TEST_F(AssertionTest, ThatHoldsDoesNothing) {
    const wq::AssertionScope scope(keep());
    account->withdraw_from(1);
    EXPECT_TRUE(kept.empty());
    EXPECT_EQ(account->withdrawals, 1);
}

TEST_F(AssertionTest, TheOperationGoesOnAfterAHandlerThatReturns) {
    const wq::AssertionScope scope(keep());
    account->withdraw_from(-1);
    EXPECT_EQ(kept.size(), 1u);
    EXPECT_EQ(account->withdrawals, 1);
}

TEST_F(AssertionTest, TheHandlerLearnsWhatFailedWhere) {
    const wq::AssertionScope scope(keep());
    account->withdraw_from(-1);
    ASSERT_EQ(kept.size(), 1u);
    EXPECT_EQ(kept[0].operation, "withdraw_from");
    EXPECT_EQ(kept[0].receiver, account.get());
    EXPECT_EQ(kept[0].file, "AssertionTest");
    EXPECT_GT(kept[0].line, 0);
    EXPECT_EQ(kept[0].description, u"The amount is negative");
}

TEST_F(AssertionTest, AScopeRestoresTheHandlerBefore) {
    const wq::AssertionScope outer(keep());
    {
        const wq::AssertionScope inner([](const wq::AssertionFailure&) {});
        account->withdraw_from(-1);
    }
    EXPECT_TRUE(kept.empty());
    account->withdraw_from(-1);
    EXPECT_EQ(kept.size(), 1u);
}

TEST_F(AssertionTest, AScopeThatAnExceptionLeavesRestoresTheHandlerBefore) {
    const wq::AssertionScope outer(keep());
    EXPECT_THROW(
        {
            const wq::AssertionScope inner([](const wq::AssertionFailure&) { throw 1; });
            account->withdraw_from(-1);
        },
        int);
    account->withdraw_from(-1);
    EXPECT_EQ(kept.size(), 1u);
}

TEST_F(AssertionTest, AnEmptyHandlerIsTheDefault) {
    const wq::AssertionScope outer(keep());
    const wq::AssertionScope inner(nullptr);
    EXPECT_THROW(account->withdraw_from(-1), WQXMLException);
}

TEST_F(AssertionTest, SettingAHandlerAnswersTheOneBefore) {
    EXPECT_FALSE(static_cast<bool>(wq::setAssertionHandler(keep())));
    const wq::AssertionHandler before = wq::setAssertionHandler(nullptr);
    before({"operation", nullptr, "File", 1, u"description"});
    EXPECT_EQ(kept.size(), 1u);
}

TEST_F(AssertionTest, NullNeverAsserts) {
    const wq::AssertionScope scope(keep());
    const Ref<Account> null;
    null->withdraw_from(-1);
    EXPECT_TRUE(kept.empty());
    null->withdrawals = 0;
}

TEST_F(AssertionTest, AHandlerMayReplaceItself) {
    int calls = 0;
    const wq::AssertionScope scope([this, &calls, padding = std::string(100, 'x')](const wq::AssertionFailure& failure) {
        wq::setAssertionHandler(keep());
        calls += static_cast<int>(padding.size());
        EXPECT_EQ(failure.operation, "withdraw_from");
    });
    account->withdraw_from(-1);
    account->withdraw_from(-1);
    EXPECT_EQ(calls, 100);
    EXPECT_EQ(kept.size(), 1u);
}

TEST_F(AssertionTest, AFailureWithoutReceiverReachesTheHandler) {
    const wq::AssertionScope scope(keep());
    wq::fail({"operation", nullptr, "File", 7, u"description"});
    ASSERT_EQ(kept.size(), 1u);
    EXPECT_EQ(kept[0].receiver, nullptr);
    EXPECT_EQ(kept[0].line, 7);
}

TEST(FileName, IsWithoutFolderAndExtension) {
    static_assert(wq::fileName("/a/b.c/WQXMLNode.cpp") == "WQXMLNode");
    static_assert(wq::fileName("WQXMLNode.cpp") == "WQXMLNode");
    static_assert(wq::fileName("dom/WQXMLNode+Parsing.cpp") == "WQXMLNode+Parsing");
    static_assert(wq::fileName("dom/Plain") == "Plain");
}
