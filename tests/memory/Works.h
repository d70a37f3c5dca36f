// Small pieces of an editing session, from loading to saving, each with what comes of it.
#pragma once

#include <ostream>
#include <string>

namespace test {

struct Work {
    const char* name;
    std::string (*run)();
    const char* result;
    const char* refusal = nullptr;  // what it answers, instead of raising, where memory is short
    bool usesLibxml2 = true;
};

inline void PrintTo(const Work& work, std::ostream* out) { *out << work.name; }

// Raised by a work where an operation answers null, or a writer -1: the work has been told.
struct NothingThere {};

extern const Work kWorks[15];

}  // namespace test
