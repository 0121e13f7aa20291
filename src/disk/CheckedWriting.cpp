#include "CheckedWriting.h"

#include "DiskSync.h"

#include <QFile>

#include <algorithm>

#ifndef Q_OS_WIN
#include "FaultPoint.h"
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

Result<> writeChecked(QFile &file, const QByteArray &bytes, bool isSynced)
{
    qint64 written = 0;
    qint64 count = 1;
    while (count > 0 && written < bytes.size()) {
        count = file.write(bytes.constData() + written, bytes.size() - written);
        written += std::max<qint64>(count, 0);
    }
    if (written == bytes.size() && file.flush() && file.size() == bytes.size()) {
        return isSynced ? DiskSync::syncFile(file.handle()) : Success();
    }
    const bool isShort = file.error() == QFileDevice::NoError;
    return Problem{.why = isShort ? CheckedWriting::tr("not all bytes were written") : file.errorString()};
}

} // namespace

Result<FileStamp> CheckedWriting::createFile(
    const OpenDirectory &directory, const QString &name, const QByteArray &bytes, bool isSynced)
{
    QFile file(directory.pathOf(name));
    const bool isTaken = file.exists();
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered)) {
        return Problem{.what = isTaken ? Problem::What::Taken : Problem::What::Failed, .why = file.errorString()};
    }
    const Result<> written = writeChecked(file, bytes, isSynced);
    if (!written) {
        file.remove();
        return written.problem();
    }
    file.close();
    return FileStamp::of(directory, name).value_or(FileStamp());
}

Result<> CheckedWriting::writeAndSync(QFile &file, const QByteArray &bytes)
{
    return writeChecked(file, bytes, true);
}

#else

namespace {

constexpr mode_t usualRights = 0666;

Result<FileStamp> writeChecked(int file, const QByteArray &bytes, bool isSynced)
{
    if (FaultPoint::isSet("bytes-not-counted")) {
        std::ignore = ::write(file, bytes.constData(), static_cast<std::size_t>(bytes.size()));
        return FileStamp();
    }
    qsizetype written = 0;
    ssize_t count = 1;
    while (count != 0 && written < bytes.size()) {
        count = ::write(file, bytes.constData() + written, static_cast<std::size_t>(bytes.size() - written));
        if (count < 0 && errno != EINTR) {
            return Problem{.why = systemError()};
        }
        written += std::max<ssize_t>(count, 0);
    }
    struct stat status { };
    if (written != bytes.size() || ::fstat(file, &status) != 0 || status.st_size != bytes.size()) {
        return Problem{.why = CheckedWriting::tr("not all bytes were written")};
    }
    const Result<> synced = isSynced ? DiskSync::syncFile(file) : Success();
    return synced ? Result<FileStamp>(FileStamp::of(status)) : synced.problem();
}

} // namespace

Result<FileStamp> CheckedWriting::createFile(
    const OpenDirectory &directory, const QString &name, const QByteArray &bytes, bool isSynced)
{
    const QByteArray encoded = directory.encoded(name);
    const FileHandle file(
        ::openat(directory.descriptor(), encoded.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, usualRights));
    if (file.descriptor() < 0) {
        return Problem{.what = errno == EEXIST ? Problem::What::Taken : Problem::What::Failed, .why = systemError()};
    }
    Result<FileStamp> written = writeChecked(file.descriptor(), bytes, isSynced);
    if (!written) {
        ::unlinkat(directory.descriptor(), encoded.constData(), 0);
    }
    return written;
}

Result<> CheckedWriting::writeAndSync(QFile &file, const QByteArray &bytes)
{
    const Result<FileStamp> written = writeChecked(file.handle(), bytes, true);
    return written ? Result<>(Success()) : written.problem();
}

#endif
