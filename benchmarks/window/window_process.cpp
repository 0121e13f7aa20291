// One process for one measurement; see usage() below. The library directory of a window is that of the preferences.

#include "ContentView.h"
#include "LibraryListView.h"
#include "LibraryStorageManager.h"
#include "PaintSignal.h"
#include "SampleLibrary.h"
#include "VelgorLibrary.h"
#include "VelgorStyle.h"
#include "Velgor_Library_ManagerApp.h"

#include <QAbstractItemModel>
#include <QApplication>

#include <cstdio>
#include <cstring>

namespace {

int usage()
{
    std::fputs("window_process make DIRECTORY PATCHES   writes a library\n"
               "window_process records DIRECTORY        makes its records, without a window\n"
               "window_process window                   shows the window, to its first paint\n"
               "window_process rows                     shows the window, to the first paint of the loaded patches\n",
        stderr);
    return 2;
}

int make(const QString &directory, qsizetype patches)
{
    LibraryStorageManager storage(directory);
    storage.save(VelgorLibrary(SampleLibrary::ofSize(patches).patches(), std::nullopt));
    return storage.writeError() ? 1 : 0;
}

int makeRecords(const QString &directory)
{
    LibraryStorageManager storage(directory);
    const std::optional<LibraryState> loaded = storage.decodeLibrary();
    if (!loaded) {
        return 1;
    }
    VelgorLibrary library;
    library.adopt(*loaded);
    PaintSignal::writeLine();
    return 0;
}

bool isWindow(const QObject *painted)
{
    return qobject_cast<const ContentView *>(painted) != nullptr;
}

bool isListOfPatches(const QObject *painted)
{
    const auto *list = qobject_cast<const LibraryListView *>(painted->parent());
    return list != nullptr && list->viewport() == painted && list->model()->rowCount() > 1;
}

int showWindow(bool (*counts)(const QObject *painted))
{
    QCoreApplication::setOrganizationName(QStringLiteral("velgor"));
    QCoreApplication::setApplicationName(QStringLiteral("Velgor Library Manager"));
    QApplication::setStyle(new VelgorStyle);
    const PaintSignal signal(counts);
    Velgor_Library_ManagerApp app;
    return app.run({});
}

} // namespace

int main(int argc, char *argv[])
{
    const auto isAskedFor = [=](const char *task, int arguments) {
        return argc == 2 + arguments && std::strcmp(argv[1], task) == 0;
    };
    const auto argument = [=](int number) { return QString::fromLocal8Bit(argv[1 + number]); };
    if (isAskedFor("window", 0) || isAskedFor("rows", 0)) {
        const QApplication application(argc, argv);
        return showWindow(isAskedFor("window", 0) ? isWindow : isListOfPatches);
    }
    const QCoreApplication application(argc, argv);
    if (isAskedFor("make", 2)) {
        return make(argument(1), argument(2).toLongLong());
    }
    return isAskedFor("records", 1) ? makeRecords(argument(1)) : usage();
}
