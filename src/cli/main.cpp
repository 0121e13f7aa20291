#include "Command.h"
#include "Diagnostics.h"
#include "Dispatcher.h"
#include "Output.h"
#include "ProgramArguments.h"
#include "ShownText.h"

#include <QCoreApplication>

#include <csignal>
#include <tuple>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <unistd.h>
#endif

namespace {

/// A caller may close standard streams; the next file opened would take their place and receive what is printed.
void openStandardStreams()
{
#ifdef Q_OS_UNIX
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        if (::fcntl(stream, F_GETFD) < 0) {
            // The lowest that is free, which is this one. Standard output is only read, so that writing to it fails.
            std::ignore = ::open("/dev/null", stream == STDERR_FILENO ? O_WRONLY : O_RDONLY);
        }
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

    const Result<QStringList> words = ProgramArguments::decode(argc, argv);
    if (!words) {
        return Output::fail(words.problem().why);
    }
    const int status = Dispatcher().run(*words);
    if (!Output::isComplete()) {
        return Output::fail(QCoreApplication::translate("main", "standard output could not be written"));
    }
    return status;
}
