#include "Activation.h"
#include "ApplicationId.h"
#include "ProgramArguments.h"
#include "StartOptions.h"
#include "StartRequest.h"
#include "VelgorStyle.h"
#include "Velgor_Library_ManagerApp.h"
#include "Worker.h"

#include <QApplication>
#include <QIcon>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <tuple>

namespace {

constexpr int wrongUsage = 2;

void nameProgram()
{
    QCoreApplication::setOrganizationName(QStringLiteral("velgor"));
    QCoreApplication::setApplicationName(QStringLiteral("Velgor Library Manager"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VELGOR_VERSION));
}

QIcon programIcon()
{
    QIcon icon;
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
        icon.addFile(QStringLiteral(":/icons/application-%1.png").arg(size));
    }
    return icon;
}

} // namespace

int main(int argc, char *argv[])
{
#ifdef SIGXFSZ
    // A file that grows beyond what the user may write is a failed write like any other.
    std::signal(SIGXFSZ, SIG_IGN);
#endif
    nameProgram();
    const Result<QStringList> words = ProgramArguments::decode(argc, argv);
    if (!words) {
        StartOptions::refuse(words.problem().why);
        return wrongUsage;
    }
    if (StartOptions::needNoWindow(*words)) {
        const QCoreApplication application(argc, argv);
        std::ignore = StartOptions().requestOf(ProgramArguments::remaining(argc, argv));
        return wrongUsage;
    }
    const Activation activation = Activation::extractFromEnvironment();
    const QApplication application(argc, argv);
    Activation::removeStartupIdFromEnvironment();
    QGuiApplication::setDesktopFileName(ApplicationId::text());
    QGuiApplication::setWindowIcon(programIcon());

    std::optional<StartRequest> request = StartOptions().requestOf(ProgramArguments::remaining(argc, argv));
    if (!request) {
        return wrongUsage;
    }
    QApplication::setStyle(new VelgorStyle);
    request->activation = activation;
    const int status = Velgor_Library_ManagerApp().run(*request);
    if (Worker::isAnyLeftBehind()) {
        // It goes on, whatever is destroyed.
        std::fflush(nullptr);
        std::_Exit(status);
    }
    return status;
}
