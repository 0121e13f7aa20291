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

/// One row: runs `ours` and `baseline` in turns, a pair an iteration, and adds the counters
/// "ours_ms" and "baseline_ms" (medians), "ratio" (median of the pairs' ratios), "target" (the largest ratio that is
/// meant to be) and the growth counter below.
void measurePairs(
    benchmark::State &state, const std::string &row, double target, const TimedRun &ours, const TimedRun &baseline);

/// One row: runs `ours` once an iteration and adds the counters "ours_ms" (median), "us_per_patch" and
/// "growth_per_tenfold": the time divided by that of the row of the same name with a tenth of the patches, if that was
/// measured before. 10 means that a patch costs the same.
void measureGrowth(benchmark::State &state, const std::string &row, const TimedRun &ours);
