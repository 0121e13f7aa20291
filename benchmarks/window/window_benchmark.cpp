// Measures the real window without a display: window_benchmark [PATCHES...]
// Prints one JSON object a line. "ours_ms" is the median of the rounds, "p95_ms" that which one round in twenty
// exceeds, "cpu_ms" what the window's own thread used of the median round, which says more while other programs run,
// "gap_ms" the median of the longest time in each round in which the event loop did not come round.

#include "SampleLibrary.h"
#include "WindowActions.h"

#include <QApplication>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace {

/// The largest share of rounds that may stay below.
double quantile(QList<double> values, double share)
{
    std::sort(values.begin(), values.end());
    const auto place = static_cast<qsizetype>(std::ceil(share * static_cast<double>(values.size()))) - 1;
    return values.at(std::clamp<qsizetype>(place, 0, values.size() - 1));
}

/// What a row is held against: a keystroke is to be answered within a frame, and nothing holds the event loop up for
/// longer than two.
QJsonObject targetOf(const WindowActions::Row &row, qsizetype patches)
{
    constexpr double frame = 16.7;
    constexpr double twoFrames = 33;
    constexpr qsizetype most = 100'000;
    constexpr qsizetype many = 10'000;
    if (row.name.startsWith(QStringLiteral("window, keystroke in the")) && patches == most) {
        return {{QStringLiteral("target_ms"), frame}, {QStringLiteral("target_of"), QStringLiteral("p95_ms")}};
    }
    if (patches == many || patches == most) {
        return {{QStringLiteral("target_ms"), twoFrames}, {QStringLiteral("target_of"), QStringLiteral("gap_ms")}};
    }
    return {{QStringLiteral("target_ms"), QJsonValue()}, {QStringLiteral("target_of"), QJsonValue()}};
}

void print(const QList<WindowActions::Row> &rows, qsizetype patches)
{
    constexpr qsizetype enoughForTail = 20;
    for (const WindowActions::Row &row : rows) {
        QList<double> totals;
        QList<double> gaps;
        QList<double> processor;
        for (const WindowClock::Round &round : row.rounds) {
            totals.append(round.total);
            gaps.append(round.longestGap);
            processor.append(round.processor);
        }
        QJsonObject line = targetOf(row, patches);
        line[QStringLiteral("row")] = row.name;
        line[QStringLiteral("patches")] = patches;
        line[QStringLiteral("ours_ms")] = quantile(totals, 0.5);
        line[QStringLiteral("p95_ms")] = totals.size() < enoughForTail ? QJsonValue() : quantile(totals, 0.95);
        line[QStringLiteral("cpu_ms")] = quantile(processor, 0.5);
        line[QStringLiteral("gap_ms")] = quantile(gaps, 0.5);
        std::puts(QJsonDocument(line).toJson(QJsonDocument::Compact).constData());
        std::fflush(stdout);
    }
}

void measure(qsizetype patches)
{
    const LibraryDirectory directory;
    if (patches > 0) {
        LibraryStorageManager(directory.path())
            .save(VelgorLibrary(SampleLibrary::ofSize(patches).patches(), std::nullopt));
    }
    constexpr int loads = 3;
    QList<WindowActions::Row> loaded;
    for (int load = 0; load < loads; ++load) {
        WindowActions window(directory);
        const QList<WindowActions::Row> rows = window.load();
        for (qsizetype i = 0; i < rows.size(); ++i) {
            if (load == 0) {
                loaded.append(rows.at(i));
            } else {
                loaded[i].rounds += rows.at(i).rounds;
            }
        }
        if (load == loads - 1) {
            print(loaded, patches);
            if (patches > 0) {
                print(window.use(), patches);
            }
        }
    }
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QList<qsizetype> sizes{0, 1000, 10'000, 100'000};
    const QStringList arguments = QCoreApplication::arguments().sliced(1);
    if (!arguments.isEmpty()) {
        sizes.clear();
        for (const QString &argument : arguments) {
            sizes.append(argument.toLongLong());
        }
    }
    for (const qsizetype patches : sizes) {
        measure(patches);
    }
    return 0;
}
