// A benchmark whose preparation is not measured.
#pragma once

#include <benchmark/benchmark.h>

#include <chrono>

namespace bench {

// Each iteration: `prepare` makes a value, `work` gets it and is measured. What `work` returns dies unmeasured.
template <class Prepare, class Work> void measure(benchmark::State& state, Prepare prepare, Work work) {
    for (auto _ : state) {
        auto prepared = prepare();
        const auto start = std::chrono::steady_clock::now();
        auto result = work(prepared);
        state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
        benchmark::DoNotOptimize(result);
    }
}

struct None {};

template <class Work> void measure(benchmark::State& state, Work work) {
    measure(
        state, [] { return None(); }, [&](None&) { return work(); });
}

}  // namespace bench
