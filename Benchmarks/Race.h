#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace bench {

/// One way of doing the job that a race measures.
struct Rival {
    std::string name;
    std::function<void()> run;
};

/// Runs `subject` and its rivals by turns, `callsPerTurn` calls each, so that all of them meet the same
/// machine in the same moments. The quickest turn of each counts: other work on the machine only ever
/// makes a turn longer. Counters: best_ns, one call of the subject; vs_NAME, how many times as long that
/// rival took: above 1 the subject is the faster one.
inline void Race(benchmark::State& state, int callsPerTurn, const std::function<void()>& subject,
                 const std::vector<Rival>& rivals) {
    using Clock = std::chrono::steady_clock;
    const auto seconds = [callsPerTurn](const std::function<void()>& run) {
        const auto start = Clock::now();
        for (int i = 0; i < callsPerTurn; ++i) {
            run();
            benchmark::ClobberMemory();
        }
        return std::chrono::duration<double>(Clock::now() - start).count();
    };
    double subjectBest = std::numeric_limits<double>::max();
    std::vector<double> rivalBest(rivals.size(), subjectBest);
    for (auto unused : state) {
        static_cast<void>(unused);
        const double turn = seconds(subject);
        subjectBest = std::min(subjectBest, turn);
        state.SetIterationTime(turn / callsPerTurn);
        for (std::size_t i = 0; i < rivals.size(); ++i) {
            rivalBest[i] = std::min(rivalBest[i], seconds(rivals[i].run));
        }
    }
    state.counters["best_ns"] = subjectBest / callsPerTurn * 1e9;
    for (std::size_t i = 0; i < rivals.size(); ++i) {
        state.counters["vs_" + rivals[i].name] = rivalBest[i] / subjectBest;
    }
}

/// The main function of a program whose benchmarks `registerAll` registers.
inline int RunAll(int argc, char** argv, void (*registerAll)()) {
    registerAll();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

}  // namespace bench
