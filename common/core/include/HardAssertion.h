// Hard assertions of the CSS engine: an invariant that does not hold ends the process.
//
//     WQ_HARD_ASSERT("Parser", "term", unit != nullptr);
//     WQ_HARD_ASSERT("Parser", "term", 0);   // a branch that is never reached
//
// They can be compiled out (build option WQ_HARD_ASSERTIONS); the code behind each of them goes on
// along the mildest path that keeps memory sound.
#pragma once

namespace wq {
// Prints "Assertion failed: (EXPRESSION), function FUNCTION, file FILE, line N." on standard error
// and aborts. The file is named by folder and stem, as in common/core/css/Parser.
[[noreturn]] void hardAssertionFailed(const char* expression, const char* function, const char* file, int line) noexcept;
}  // namespace wq

// Stays in every build. `file` and `function` are the names to be printed; the expression is evaluated once.
#define WQ_HARD_ASSERT_ALWAYS(file, function, expression) \
    ((expression) ? void() : wq::hardAssertionFailed(#expression, function, file, __LINE__))

#ifdef WQ_NO_HARD_ASSERTIONS
// As WQ_HARD_ASSERT_ALWAYS; where assertions are compiled out, the expression is not evaluated.
#define WQ_HARD_ASSERT(file, function, expression) static_cast<void>(sizeof(!(expression)))
#else
// As WQ_HARD_ASSERT_ALWAYS; where assertions are compiled out, the expression is not evaluated.
#define WQ_HARD_ASSERT(file, function, expression) WQ_HARD_ASSERT_ALWAYS(file, function, expression)
#endif
