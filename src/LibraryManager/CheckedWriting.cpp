#include "CheckedWriting.h"

#include "DiskSync.h"

#include <QFile>

#include <algorithm>

#ifndef Q_OS_WIN
#include "FileHandle.h"
#include "SystemError.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

// A full disk may show only when the file is measured, and only the attempt to write the rest says why there was room
// for a part.

#ifdef Q_OS_WIN

namespace {

QString writeChecked(QFile &file, const QByteArray &bytes, bool isSynced)
{
    qint64 written = 0;
    qint64 count = 1;
    while (count > 0 && written < bytes.size()) {
        count = file.write(bytes.constData() + written, bytes.size() - written);
        written += std::max<qint64>(count, 0);
    }
    if (written == bytes.size() && file.flush() && file.size() == bytes.size()) {
        return isSynced ? DiskSync::syncFile(file.handle()) : QString();
    }
    return file.error() == QFileDevice::NoError ? CheckedWriting::tr("not all bytes were written") : file.errorString();
}

} // namespace

QString CheckedWriting::createFile(
    const OpenDirectory &directory, const QString &name, const QByteArray &bytes, bool isSynced, bool &isTaken)
{
    QFile file(directory.pathOf(name));
    isTaken = file.exists();
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered)) {
        return file.errorString();
    }
    QString error = writeChecked(file, bytes, isSynced);
    if (!error.isEmpty()) {
        file.remove();
    }
    return error;
}

QString CheckedWriting::writeAndSync(QFile &file, const QByteArray &bytes)
{
    return writeChecked(file, bytes, true);
}

#else

namespace {

constexpr mode_t usualRights = 0666;

QString writeChecked(int file, const QByteArray &bytes, bool isSynced)
{
    qsizetype written = 0;
    ssize_t count = 1;
    while (count != 0 && written < bytes.size()) {
        count = ::write(file, bytes.constData() + written, static_cast<std::size_t>(bytes.size() - written));
        if (count < 0 && errno != EINTR) {
            return systemError();
        }
        written += std::max<ssize_t>(count, 0);
    }
    if (written != bytes.size() || ::lseek(file, 0, SEEK_END) != bytes.size()) {
        return CheckedWriting::tr("not all bytes were written");
    }
    return isSynced ? DiskSync::syncFile(file) : QString();
}

} // namespace

QString CheckedWriting::createFile(
    const OpenDirectory &directory, const QString &name, const QByteArray &bytes, bool isSynced, bool &isTaken)
{
    const QByteArray encoded = directory.encoded(name);
    const FileHandle file(
        ::openat(directory.descriptor(), encoded.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, usualRights));
    isTaken = file.descriptor() < 0 && errno == EEXIST;
    if (file.descriptor() < 0) {
        return systemError();
    }
    QString error = writeChecked(file.descriptor(), bytes, isSynced);
    if (!error.isEmpty()) {
        ::unlinkat(directory.descriptor(), encoded.constData(), 0);
    }
    return error;
}

QString CheckedWriting::writeAndSync(QFile &file, const QByteArray &bytes)
{
    return writeChecked(file.handle(), bytes, true);
}

#endif
