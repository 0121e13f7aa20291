#include "StartOptions.h"
#include "VelgorStyle.h"
#include "Velgor_Library_ManagerApp.h"

#include <QApplication>

#include <csignal>
#include <tuple>

namespace {

constexpr int wrongUsage = 2;

void nameProgram()
{
    QCoreApplication::setOrganizationName(QStringLiteral("velgor"));
    QCoreApplication::setApplicationName(QStringLiteral("Velgor Library Manager"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VELGOR_VERSION));
}

QStringList wordsOf(int argc, const char *const *argv)
{
    QStringList words;
    for (int i = 1; i < argc; ++i) {
        words.append(QString::fromLocal8Bit(argv[i]));
    }
    return words;
}

} // namespace

int main(int argc, char *argv[])
{
#ifdef SIGXFSZ
    // A file that grows beyond what the user may write is a failed write like any other.
    std::signal(SIGXFSZ, SIG_IGN);
#endif
    nameProgram();
    if (StartOptions::needNoWindow(wordsOf(argc, argv))) {
        const QCoreApplication application(argc, argv);
        std::ignore = StartOptions().fileOf(QCoreApplication::arguments());
        return wrongUsage;
    }
    const QApplication application(argc, argv);
    QGuiApplication::setDesktopFileName(QStringLiteral("velgor-library-manager"));

    const std::optional<QString> file = StartOptions().fileOf(QCoreApplication::arguments());
    if (!file) {
        return wrongUsage;
    }
    QApplication::setStyle(new VelgorStyle);
    Velgor_Library_ManagerApp app;
    return app.run(*file);
}
