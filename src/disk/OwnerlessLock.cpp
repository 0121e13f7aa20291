#include "OwnerlessLock.h"

#include <QFileInfo>
#include <QLockFile>

#include <chrono>
#include <thread>

namespace {

bool removeOne(const QString &lockFile)
{
    // Between making the file and writing its owner goes by no time to speak of, unless the program died there.
    constexpr int attempts = 10;
    constexpr std::chrono::milliseconds pause(20);
    QLockFile lock(lockFile);
    for (int attempt = 0; attempt < attempts; ++attempt) {
        qint64 process = 0;
        QString host;
        QString application;
        const QFileInfo info(lockFile);
        if (!info.isFile() || info.isSymLink() || lock.getLockInfo(&process, &host, &application)) {
            return false;
        }
        std::this_thread::sleep_for(pause);
    }
    return lock.removeStaleLockFile();
}

} // namespace

bool OwnerlessLock::remove(const QString &lockFile)
{
    // Taking over is itself guarded by a lock, and that one likewise.
    const QString removal = lockFile + QStringLiteral(".rmlock");
    removeOne(removal + QStringLiteral(".rmlock"));
    removeOne(removal);
    return removeOne(lockFile);
}
