// Memory that is refused, to see what becomes of work that runs short of it.
#pragma once

#include <cstdint>

namespace test {

enum class Memory {
    kLibrary,  // what this library and flex ask for: operator new, malloc, realloc
    kLibxml2,  // what libxml2 asks for
};
enum class Refusal {
    kOnce,     // one request
    kForGood,  // that one and all that follow
};

// While one of these lives, the n-th request from now on is refused, counted from 1. Not to be nested.
class FailingMemory {
public:
    FailingMemory(Memory memory, uint64_t nth, Refusal refusal);
    ~FailingMemory();
    FailingMemory(const FailingMemory&) = delete;
    FailingMemory& operator=(const FailingMemory&) = delete;

    bool hasRefused() const;  // false: there were fewer than n

private:
    Memory memory;
};

// Which of libxml2's functions asked for the memory that is refused is written to that file: the innermost that it exports.
void tellFunctionThatIsRefused(int file);

}  // namespace test
