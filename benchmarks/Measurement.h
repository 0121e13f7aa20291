#pragma once

#include <benchmark/benchmark.h>

#include <chrono>
#include <functional>
#include <string>

/// Runs `work` and gives the seconds it took.
template <typename Work>
double secondsOf(Work work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Prepares the work, does it, and gives the seconds of the work alone.
using TimedRun = std::function<double()>;

/// The largest figures that are meant to be; 0 where there is none.
struct Target {
    double ratio = 0;
    int64_t patches = 0; ///< the size of the library for which the ratio is meant
    double growth = 0; ///< of the time, from 10,000 to 100,000 patches
};

/// One row: runs `ours` and `baseline` in turns, a pair an iteration, and adds the counters
/// "ours_ms" and "baseline_ms" (medians), "ratio" (median of the pairs' ratios), "target" and "growth_target" at the
/// sizes that have them, and the growth counter below.
void measurePairs(
    benchmark::State &state, const std::string &row, Target target, const TimedRun &ours, const TimedRun &baseline);

/// One row: runs `ours` once an iteration and adds the counters "ours_ms" (median), "us_per_patch" and
/// "growth_per_tenfold": the time divided by that of the row of the same name with a tenth of the patches, if that was
/// measured before. 10 means that a patch costs the same.
void measureGrowth(benchmark::State &state, const std::string &row, const TimedRun &ours, double growthTarget = 0);
