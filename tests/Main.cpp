// Runs the tests. After each of them every counted object and every libxml2 node must be gone.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

#include "platform/Object.h"

namespace wq {
[[gnu::weak]] int64_t numberOfLivingNodes() noexcept;  // of dom, where it is linked in
}

namespace {

int64_t livingObjects() {
#ifdef WQ_COUNT_OBJECTS
    return wq::Object::numberOfLivingObjects();
#else
    return 0;
#endif
}
int64_t livingNodes() { return wq::numberOfLivingNodes ? wq::numberOfLivingNodes() : 0; }

class NothingIsLeft : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo&) override {
        objects = livingObjects();
        nodes = livingNodes();
    }
    void OnTestEnd(const testing::TestInfo& info) override {
        if (info.result()->Skipped()) return;
        EXPECT_EQ(livingObjects(), objects) << "counted objects outlived the test";
        EXPECT_EQ(livingNodes(), nodes) << "libxml2 nodes outlived the test";
    }
    int64_t objects = 0, nodes = 0;
};

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    setenv("RC_PARAMS", "max_success=200", 0);  // RapidCheck's cases a property, if nobody says otherwise
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    testing::UnitTest::GetInstance()->listeners().Append(new NothingIsLeft);
    const int failed = RUN_ALL_TESTS();
    if (!testing::GTEST_FLAG(list_tests) && testing::UnitTest::GetInstance()->test_to_run_count() == 0) {
        std::fprintf(stderr, "no test ran\n");
        return 1;
    }
    return failed;
}
