#include "common/core/include/HardAssertion.h"

#include <cstdio>
#include <cstdlib>

namespace wq {

void hardAssertionFailed(const char* expression, const char* function, const char* file, int line) noexcept {
    std::fprintf(stderr, "Assertion failed: (%s), function %s, file %s, line %d.\n", expression, function, file, line);
    std::abort();
}

}  // namespace wq
