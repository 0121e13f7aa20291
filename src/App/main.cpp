#include "VelgorStyle.h"
#include "Velgor_Library_ManagerApp.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>

#include <csignal>

int main(int argc, char *argv[])
{
#ifdef SIGXFSZ
    // A file that grows beyond what the user may write is a failed write like any other.
    std::signal(SIGXFSZ, SIG_IGN);
#endif
    QApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("velgor"));
    QCoreApplication::setApplicationName(QStringLiteral("Velgor Library Manager"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VELGOR_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("velgor-library-manager"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QCoreApplication::translate("main", "Patch librarian for the Velgor"));
    parser.addPositionalArgument(QStringLiteral("FILE"), QCoreApplication::translate("main", "A preset file to open."),
        QStringLiteral("[FILE]"));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.process(application);

    const QStringList files = parser.positionalArguments();
    const QString file = files.isEmpty() ? QString() : QFileInfo(files.first()).absoluteFilePath();
    QApplication::setStyle(new VelgorStyle);
    Velgor_Library_ManagerApp app;
    return app.run(file);
}
