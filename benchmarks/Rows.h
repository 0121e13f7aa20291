#pragma once

#include <benchmark/benchmark.h>

#include <initializer_list>
#include <string>

struct Row {
    std::string name;
    void (*run)(benchmark::State &) = nullptr;
    int64_t largest = 100'000; ///< number of patches; from 1,000 on in steps of ten
};

/// Nine rounds of each row at each size, timed by the row itself.
void registerRows(std::initializer_list<Row> rows);

/// The library directory beside plain reading and writing.
void registerStorageRows();
/// Filtering, sorting and searching beside plain ways of doing the same.
void registerModelRows();
/// Operations that must not cost more for each patch when there are more patches.
void registerGrowthRows();
