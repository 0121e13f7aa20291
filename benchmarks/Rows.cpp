#include "Rows.h"

void registerRows(std::initializer_list<Row> rows)
{
    constexpr int rounds = 9;
    constexpr int64_t smallest = 1000;
    for (const Row &row : rows) {
        benchmark::RegisterBenchmark(row.name.c_str(), row.run)
            ->RangeMultiplier(10)
            ->Range(smallest, row.largest)
            ->Iterations(rounds)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    }
}
