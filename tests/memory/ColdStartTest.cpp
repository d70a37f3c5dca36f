// The first piece of a process's first session with one of its requests for memory refused: what is made once for the process
// is then made by the next use. Each in a process of its own.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <new>

#include "platform/WQXMLException.h"
#include "tests/memory/FailingMemory.h"
#include "tests/memory/Process.h"
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
        } catch (const NothingThere&) {
        } catch (const WQXMLException&) {}  // asserts for a writer's -1
        isRefused = memory.hasRefused();
    }
    if (!isRefused) return kNotRefused;
    return work.run() == work.result ? kAsBefore : kOther;
}

class ColdStartTest : public testing::TestWithParam<Work> {
protected:
    static int endOfTrial(uint64_t nth) {
        return endOfProcess(startProcess([nth] { return runRefusedAndAgain(GetParam(), nth); }));
    }
    static bool exits(int status, Outcome outcome) { return WIFEXITED(status) && WEXITSTATUS(status) == outcome; }
};

TEST_P(ColdStartTest, IsMadeUpForByTheNextUse) {
    uint64_t nth = 1;
    int end = endOfTrial(nth);
    while (exits(end, kAsBefore)) end = endOfTrial(++nth);
    EXPECT_TRUE(exits(end, kNotRefused)) << "request " << nth << ": " << nameOfEnd(end);
}

INSTANTIATE_TEST_SUITE_P(Each, ColdStartTest, testing::ValuesIn(kWorks), [](const auto& work) { return work.param.name; });

}  // namespace
