#include "common/core/include/HardAssertion.h"

#include <cstdio>
#include <cstdlib>

#ifdef WQ_COVERAGE
extern "C" void __gcov_dump();  // a process that aborts loses what it has counted
#endif

namespace wq {

void hardAssertionFailed(const char* expression, const char* function, const char* file, int line) noexcept {
    std::fprintf(stderr, "Assertion failed: (%s), function %s, file %s, line %d.\n", expression, function, file, line);
#ifdef WQ_COVERAGE
    __gcov_dump();
#endif
    std::abort();
}

}  // namespace wq
