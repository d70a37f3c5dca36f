// Every piece of a session with each of libxml2's requests for memory refused in turn, each in a process of its own.
//
// libxml2 does not survive all of it. What it does not is listed here by the function that asked: the table in
// docs/security.md is this list.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <map>
#include <new>
#include <set>
#include <vector>

#include "platform/WQXMLException.h"
#include "tests/memory/FailingMemory.h"
#include "tests/memory/Process.h"
#include "tests/memory/Works.h"

namespace {

using namespace test;

enum Outcome { kSame = 10, kRaised, kOther, kNotRefused, kCrash, kHang };

const char* nameOf(int outcome) {
    switch (outcome) {
        case kSame: return "the same result";
        case kRaised: return "raised";
        case kOther: return "another result";
        case kHang: return "does not return";
        default: return "crash";
    }
}

int outcomeOf(const Work& work, uint64_t nth) {
    const FailingMemory memory(Memory::kLibxml2, nth, Refusal::kOnce);
    std::string result;
    try {
        result = work.run();
    } catch (const WQXMLException&) {
        return kRaised;
    } catch (const std::bad_alloc&) {
        return kRaised;
    } catch (const NothingThere&) {
        return kRaised;
    }
    if (!memory.hasRefused()) return kNotRefused;
    return result == work.result ? kSame : kOther;
}

struct Trial {
    int outcome = kCrash;
    std::string function;
};

Trial tryInAProcess(const Work& work, uint64_t nth) {
    int ends[2];
    if (pipe(ends) != 0) throw std::bad_alloc();
    const pid_t child = startProcess([&]() -> int {
        if (!freopen("/dev/null", "w", stderr) || !freopen("/dev/null", "w", stdout)) return kCrash;
        tellFunctionThatIsRefused(ends[1]);
        alarm(5);  // a work takes milliseconds
        return outcomeOf(work, nth);
    });
    close(ends[1]);
    Trial trial;
    char part[64];
    for (ssize_t size; (size = read(ends[0], part, sizeof part)) > 0;) trial.function.append(part, static_cast<size_t>(size));
    close(ends[0]);
    const int status = endOfProcess(child);
    if (WIFEXITED(status) && WEXITSTATUS(status) >= kSame) trial.outcome = WEXITSTATUS(status);
    if (WIFSIGNALED(status) && WTERMSIG(status) == SIGALRM) trial.outcome = kHang;
    return trial;
}

// Where libxml2 dies or goes round for ever, and where something is missing from the result and nobody is told.
const std::map<std::string, std::set<int>> kKnown = {
    {"htmlParseDocument", {kHang}},         // HTML
    {"xmlNewDocNodeEatName", {kHang}},      // HTML
    {"xmlStrndup", {kHang}},                // HTML
    {"xmlPatternGetStreamCtxt", {kOther}},  // XPath: no node is found
    {"xmlXPathEval", {kCrash}},             // XPath: a null pointer is followed, or a context freed twice
    {"xmlListPushFront", {kOther}},         // a writer: an element has no end tag
    {"xmlEncodeSpecialChars", {kOther}},    // HTML of styled text: a -1 is not looked at, and a text is missing
    {"xmlBufCreateSize", {kOther}},         // a document to a writer that refuses the declaration: nothing is written
    {"xmlStrdup", {kOther}},                // likewise
    {"xmlListInsert", {kOther}},            // the canonical form: an attribute or a namespace is missing
};

class Libxml2MemoryTest : public testing::TestWithParam<Work> {};

TEST_P(Libxml2MemoryTest, EndsAsKnown) {
    GetParam().run();  // what is made once is there
    std::map<std::string, std::set<int>> found;
    uint64_t nth = 1;
    for (Trial trial; (trial = tryInAProcess(GetParam(), nth)).outcome != kNotRefused; ++nth)
        if (trial.outcome != kSame && trial.outcome != kRaised) found[trial.function].insert(trial.outcome);
    EXPECT_GT(nth, 1u);
    RecordProperty("requests", std::to_string(nth - 1));
    for (const auto& [function, outcomes] : found)
        for (const int outcome : outcomes) {
            const auto known = kKnown.find(function);
            EXPECT_TRUE(known != kKnown.end() && known->second.contains(outcome)) << function << ": " << nameOf(outcome);
        }
}

std::vector<Work> worksWithLibxml2() {
    std::vector<Work> works;
    for (const Work& work : kWorks)
        if (work.usesLibxml2) works.push_back(work);
    return works;
}

INSTANTIATE_TEST_SUITE_P(Each, Libxml2MemoryTest, testing::ValuesIn(worksWithLibxml2()), [](const auto& work) { return work.param.name; });

}  // namespace
