#include "ProcessExistence.h"

#ifdef Q_OS_UNIX
#include <cerrno>
#include <csignal>
#endif

bool isProcessGone(qint64 process)
{
#ifdef Q_OS_UNIX
    return process > 0 && ::kill(static_cast<pid_t>(process), 0) != 0 && errno == ESRCH;
#else
    Q_UNUSED(process)
    return false;
#endif
}
