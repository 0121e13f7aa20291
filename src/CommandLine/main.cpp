#include "Command.h"
#include "Diagnostics.h"
#include "Dispatcher.h"
#include "Output.h"

#include <QCoreApplication>

#include <csignal>

int main(int argc, char *argv[])
{
#ifdef SIGPIPE
    // A reader that goes away is a failed write like any other.
    std::signal(SIGPIPE, SIG_IGN);
#endif
    const QCoreApplication application(argc, argv);
    Diagnostics::setSink(Diagnostics::standardError());

    const int status = Dispatcher().run(QCoreApplication::arguments().mid(1));
    if (!Output::isComplete()) {
        return Output::fail(QCoreApplication::translate("main", "standard output could not be written"));
    }
    return status;
}
