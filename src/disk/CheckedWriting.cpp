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

CheckedWriting::Created CheckedWriting::createFile(
    const OpenDirectory &directory, const QString &name, const QByteArray &bytes, bool isSynced)
{
    QFile file(directory.pathOf(name));
    Created created{.isTaken = file.exists()};
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered)) {
        created.error = file.errorString();
        return created;
    }
    created.error = writeChecked(file, bytes, isSynced);
    if (!created.error.isEmpty()) {
        file.remove();
        return created;
    }
    file.close();
    created.stamp = FileStamp::of(directory, name).value_or(FileStamp());
    return created;
}

QString CheckedWriting::writeAndSync(QFile &file, const QByteArray &bytes)
{
    return writeChecked(file, bytes, true);
}

#else

namespace {

constexpr mode_t usualRights = 0666;

QString writeChecked(int file, const QByteArray &bytes, bool isSynced, FileStamp &stamp)
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
    struct stat status { };
    if (written != bytes.size() || ::fstat(file, &status) != 0 || status.st_size != bytes.size()) {
        return CheckedWriting::tr("not all bytes were written");
    }
    stamp = FileStamp::of(status);
    return isSynced ? DiskSync::syncFile(file) : QString();
}

} // namespace

CheckedWriting::Created CheckedWriting::createFile(
    const OpenDirectory &directory, const QString &name, const QByteArray &bytes, bool isSynced)
{
    const QByteArray encoded = directory.encoded(name);
    const FileHandle file(
        ::openat(directory.descriptor(), encoded.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, usualRights));
    Created created{.isTaken = file.descriptor() < 0 && errno == EEXIST};
    if (file.descriptor() < 0) {
        created.error = systemError();
        return created;
    }
    created.error = writeChecked(file.descriptor(), bytes, isSynced, created.stamp);
    if (!created.error.isEmpty()) {
        ::unlinkat(directory.descriptor(), encoded.constData(), 0);
    }
    return created;
}

QString CheckedWriting::writeAndSync(QFile &file, const QByteArray &bytes)
{
    FileStamp stamp;
    return writeChecked(file.handle(), bytes, true, stamp);
}

#endif
