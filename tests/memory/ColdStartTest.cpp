// The first piece of a process's first session with one of its requests for memory refused: what is made once for the process
// is then made by the next use. Each in a process of its own.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <new>
#include <string>

#include "tests/memory/FailingMemory.h"
#include "tests/memory/Works.h"

namespace {

using namespace test;

enum Outcome { kAsBefore = 10, kOther, kNotRefused };

int runRefusedAndAgain(const Work& work, uint64_t nth) {
    bool isRefused = false;
    {
        const FailingMemory memory(Memory::kLibrary, nth, Refusal::kOnce);
        try {
            work.run();
        } catch (const std::bad_alloc&) {
        } catch (const NothingThere&) {}
        isRefused = memory.hasRefused();
    }
    if (!isRefused) return kNotRefused;
    return work.run() == work.result ? kAsBefore : kOther;
}

int outcomeInAProcess(const Work& work, uint64_t nth) {
    const pid_t child = fork();
    if (child == 0) _exit(runRefusedAndAgain(work, nth));
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

class ColdStartTest : public testing::TestWithParam<Work> {};

TEST_P(ColdStartTest, IsMadeUpForByTheNextUse) {
    int outcome = kAsBefore;
    for (uint64_t nth = 1; outcome == kAsBefore; nth += 1 + nth / 50) {  // what is made once comes early
        outcome = outcomeInAProcess(GetParam(), nth);
        EXPECT_TRUE(outcome == kAsBefore || outcome == kNotRefused) << "request " << nth << ": " << outcome;
    }
}

INSTANTIATE_TEST_SUITE_P(Each, ColdStartTest, testing::ValuesIn(kWorks), [](const auto& work) { return work.param.name; });

}  // namespace
