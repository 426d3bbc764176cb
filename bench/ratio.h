// Benchmarks whose figure is a ratio: the time of our work over that of a reference, taken alternately in one run, the
// best of each. Times alone say little on another machine; ratios do.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace bench {

struct RatioRow {
  std::string name;
  double ours, reference;  // seconds, best of the runs
  double bar;              // the largest ratio that is good enough; 0: none
};

inline std::vector<RatioRow>& ratioRows() {
  static std::vector<RatioRow> rows;
  return rows;
}

inline double secondsOf(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Registers a benchmark of `ours` with the counters "ratio" and, unless it is 0, "bar". Both are run once before they
/// are timed.
inline void addRatio(const std::string& name, double bar, std::function<void()> ours, std::function<void()> reference,
                     int runs = 30) {
  benchmark::RegisterBenchmark(name.c_str(),
                               [=](benchmark::State& state) {
                                 RatioRow row{name, 1e9, 1e9, bar};
                                 ours();
                                 reference();
                                 for (auto _ : state) {
                                   const double seconds = secondsOf(ours);
                                   state.SetIterationTime(seconds);
                                   row.ours = std::min(row.ours, seconds);
                                   row.reference = std::min(row.reference, secondsOf(reference));
                                 }
                                 state.counters["ratio"] = row.ours / row.reference;
                                 if (bar > 0) state.counters["bar"] = bar;
                                 ratioRows().push_back(row);
                               })
      ->UseManualTime()
      ->Unit(benchmark::kMillisecond)
      ->Iterations(runs);
}

/// The benchmarks asked for on the command line, then a row for each: name, ratio, bar, best times.
inline int runRatios(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  std::printf("\n%-44s %7s %5s %10s %10s\n", "name", "ratio", "bar", "ours ms", "other ms");
  for (const RatioRow& row : ratioRows()) {
    const double ratio = row.ours / row.reference;
    std::printf("%-44s %7.2f", row.name.c_str(), ratio);
    row.bar > 0 ? std::printf(" %5.2f", row.bar) : std::printf(" %5s", "");
    std::printf(" %10.3f %10.3f%s\n", row.ours * 1e3, row.reference * 1e3,
                row.bar > 0 && ratio > row.bar ? "  MISSED" : "");
  }
  benchmark::Shutdown();
  return 0;
}

}  // namespace bench
