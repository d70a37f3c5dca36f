#include "examples/book/Steps.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cstdio>

namespace {

using namespace std::chrono_literals;

constexpr auto kPatience = 1s;
constexpr auto kBetween = 100ms;

// One line, written over and over, and wiped off in the end.
class ProgressLine {
public:
    explicit ProgressLine(std::string aName) : name(std::move(aName)) {}
    ~ProgressLine() {
        if (isShown) fmt::print(stderr, "\r\033[K");
    }
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    void show(size_t done, size_t all) {
        const auto now = Steps::Clock::now();
        if (!isTerminal || now < next) return;
        next = now + kBetween;
        isShown = true;
        fmt::print(stderr, "\r\033[K{}: {} of {}", name, done, all);
        std::fflush(stderr);
    }

private:
    const std::string name;
    const bool isTerminal = isatty(STDERR_FILENO) == 1;
    Steps::Clock::time_point next = Steps::Clock::now() + kPatience;
    bool isShown = false;
};

}  // namespace

void Steps::run(const std::string& name, const std::function<void(const Progress&)>& work) {
    const auto start = Clock::now();
    ProgressLine line(name);
    work([&](size_t done, size_t all) { line.show(done, all); });
    steps.push_back({name, std::chrono::duration<double>(Clock::now() - start).count()});
}
