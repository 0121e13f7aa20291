#include "Measurement.h"

#include <algorithm>
#include <map>
#include <vector>

namespace {

constexpr double millisecondsPerSecond = 1e3;
constexpr double microsecondsPerSecond = 1e6;

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void addGrowth(benchmark::State &state, const std::string &row, double seconds, double target)
{
    constexpr int64_t targetSize = 100'000;
    static std::map<std::pair<std::string, int64_t>, double> measured;
    measured[{row, state.range(0)}] = seconds;
    const auto smaller = measured.find({row, state.range(0) / 10});
    if (smaller != measured.end()) {
        state.counters["growth_per_tenfold"] = seconds / smaller->second;
    }
    if (target > 0 && state.range(0) == targetSize) {
        state.counters["growth_target"] = target;
    }
}

} // namespace

void measurePairs(
    benchmark::State &state, const std::string &row, Target target, const TimedRun &ours, const TimedRun &baseline)
{
    // The first pair warms the cache and does not count.
    ours();
    baseline();
    std::vector<double> oursSeconds;
    std::vector<double> baselineSeconds;
    std::vector<double> ratios;
    bool isOursFirst = true;
    for ([[maybe_unused]] auto _ : state) {
        const double first = isOursFirst ? ours() : baseline();
        const double second = isOursFirst ? baseline() : ours();
        oursSeconds.push_back(isOursFirst ? first : second);
        baselineSeconds.push_back(isOursFirst ? second : first);
        ratios.push_back(oursSeconds.back() / baselineSeconds.back());
        state.SetIterationTime(oursSeconds.back());
        isOursFirst = !isOursFirst;
    }
    state.counters["ours_ms"] = median(oursSeconds) * millisecondsPerSecond;
    state.counters["baseline_ms"] = median(baselineSeconds) * millisecondsPerSecond;
    state.counters["ratio"] = median(ratios);
    if (target.ratio > 0 && state.range(0) == target.patches) {
        state.counters["target"] = target.ratio;
    }
    addGrowth(state, row, median(oursSeconds), target.growth);
}

void measureGrowth(benchmark::State &state, const std::string &row, const TimedRun &ours, double growthTarget)
{
    std::vector<double> seconds;
    for ([[maybe_unused]] auto _ : state) {
        seconds.push_back(ours());
        state.SetIterationTime(seconds.back());
    }
    const double typical = median(seconds);
    state.counters["ours_ms"] = typical * millisecondsPerSecond;
    state.counters["us_per_patch"] = typical * microsecondsPerSecond / static_cast<double>(state.range(0));
    addGrowth(state, row, typical, growthTarget);
}
