#include "Command.h"
#include "Diagnostics.h"
#include "Dispatcher.h"
#include "Output.h"
#include "ProgramArguments.h"
#include "ShownText.h"

#include <QCoreApplication>

#include <csignal>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <unistd.h>
#endif

namespace {

/// A caller may close standard streams; the next file opened would take their place and receive what is printed.
void openStandardStreams()
{
#ifdef Q_OS_UNIX
    int descriptor = 0;
    do {
        descriptor = ::open("/dev/null", O_RDWR);
    } while (descriptor >= 0 && descriptor <= STDERR_FILENO);
    if (descriptor > STDERR_FILENO) {
        ::close(descriptor);
    }
#endif
}

} // namespace

int main(int argc, char *argv[])
{
    openStandardStreams();
#ifdef SIGPIPE
    // A reader that goes away is a failed write like any other.
    std::signal(SIGPIPE, SIG_IGN);
#endif
#ifdef SIGXFSZ
    // So is a file that grows beyond what the user may write.
    std::signal(SIGXFSZ, SIG_IGN);
#endif
    const QCoreApplication application(argc, argv);
    // Names of files and patches may hold what would play with a terminal.
    Diagnostics::setSink(
        [print = Diagnostics::standardError()](const QString &line) { print(ShownText::escaped(line)); });

    QByteArray bad;
    const std::optional<QStringList> words = ProgramArguments::decode(argc, argv, bad);
    if (!words) {
        return Output::fail(
            QCoreApplication::translate("main", "an argument is not valid UTF-8: %1").arg(QString::fromUtf8(bad)));
    }
    const int status = Dispatcher().run(*words);
    if (!Output::isComplete()) {
        return Output::fail(QCoreApplication::translate("main", "standard output could not be written"));
    }
    return status;
}
