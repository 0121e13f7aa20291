#include "Diagnostics.h"
#include "Rows.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    Diagnostics::setSink([](const QString &) {});
    registerStorageRows();
    registerModelRows();
    registerGrowthRows();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
