#include "DiskFiles.h"

#include "DiskSync.h"
#include "LibraryFileNames.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <cerrno>
#include <filesystem>
#include <system_error>

#ifndef Q_OS_WIN
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {

std::filesystem::path nativePath(const QString &path)
{
#ifdef Q_OS_WIN
    return path.toStdWString();
#else
    return QFile::encodeName(path).toStdString();
#endif
}

QString reason(const std::error_code &error)
{
    return error ? QString::fromLocal8Bit(error.message().c_str()) : QString();
}

/// Opens a regular file without ever waiting for what may stand in its place. The system's reason on failure.
QString openForReading(QFile &file, DiskFiles::Links links)
{
    const QString linkRefused = DiskFiles::tr("a link in the place of a file");
#ifdef Q_OS_WIN
    if (links == DiskFiles::Links::Refuse && QFileInfo(file).isSymLink()) {
        return linkRefused;
    }
    const bool isOpen = file.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
#else
    const int flags = O_RDONLY | O_NONBLOCK | O_CLOEXEC | (links == DiskFiles::Links::Refuse ? O_NOFOLLOW : 0);
    const int handle = ::open(QFile::encodeName(file.fileName()).constData(), flags);
    if (handle < 0) {
        const bool isLink = errno == ELOOP && links == DiskFiles::Links::Refuse;
        return isLink ? linkRefused : reason(std::error_code(errno, std::generic_category()));
    }
    struct stat status { };
    if (::fstat(handle, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(handle);
        return S_ISDIR(status.st_mode) ? DiskFiles::tr("a directory in the place of a file")
                                       : DiskFiles::tr("not a regular file");
    }
    const bool isOpen = file.open(handle, QIODevice::ReadOnly | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle);
#endif
    return isOpen ? QString() : file.errorString();
}

/// Writes and checks every byte; a full disk may show only when the file is flushed or measured.
bool writeChecked(QFile &file, const QByteArray &bytes, bool isSynced)
{
    return file.write(bytes) == bytes.size() && file.flush() && file.size() == bytes.size()
        && (!isSynced || DiskSync::syncFile(file));
}

} // namespace

FileReadResult DiskFiles::read(const QString &path)
{
    return readRegular(path, Links::Follow);
}

QString DiskFiles::write(const QString &path, const QByteArray &bytes)
{
    const QFileInfo info(path);
    return replace(info.isSymLink() ? info.symLinkTarget() : path, bytes);
}

FileReadResult DiskFiles::readRegular(const QString &path, Links links)
{
    QFile file(path);
    const QString error = openForReading(file, links);
    if (!error.isEmpty()) {
        return {std::nullopt, error};
    }
    const qint64 size = file.size();
    if (size > largestFile) {
        return {std::nullopt, tr("larger than any preset file")};
    }
    QByteArray bytes(size, Qt::Uninitialized);
    const qint64 count = file.read(bytes.data(), size);
    if (count < 0) {
        return {std::nullopt, file.errorString()};
    }
    bytes.truncate(count);
    return {bytes, {}};
}

QString DiskFiles::replace(const QString &path, const QByteArray &bytes)
{
    QString temporary;
    QString error = stage(path, bytes, true, temporary);
    if (error.isEmpty()) {
        error = commit(temporary, path);
    }
    if (error.isEmpty()) {
        DiskSync::syncDirectory(QFileInfo(path).absolutePath());
    }
    return error;
}

QString DiskFiles::stage(const QString &path, const QByteArray &bytes, bool isSynced, QString &temporary)
{
    const QFileInfo target(path);
    if (target.exists() && !target.isFile() && !target.isSymLink()) {
        return tr("there is something else than a file");
    }
    const QDir directory = target.absoluteDir();
    QFile file;
    do {
        const QString random = QString::number(QRandomGenerator::global()->generate64(), 36);
        file.setFileName(directory.filePath(LibraryFileNames::temporaryPrefix() + random));
    } while (file.exists());
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered)) {
        return file.errorString();
    }
    if (!writeChecked(file, bytes, isSynced)) {
        const QString error =
            file.error() == QFileDevice::NoError ? tr("not all bytes were written") : file.errorString();
        file.remove();
        return error;
    }
    if (target.isFile() && !target.isSymLink()) {
        file.setPermissions(target.permissions());
    }
    temporary = file.fileName();
    return {};
}

QString DiskFiles::commit(const QString &temporary, const QString &path)
{
    std::error_code error;
    std::filesystem::rename(nativePath(temporary), nativePath(path), error);
    if (error) {
        QFile::remove(temporary);
    }
    return reason(error);
}

QString DiskFiles::overwriteInPlace(const QString &path, const QByteArray &bytes, bool &wasTouched)
{
    wasTouched = false;
    const QFileInfo info(path);
    if (info.isSymLink() || (info.exists() && !info.isFile())) {
        return tr("not a regular file");
    }
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered)) {
        return file.errorString();
    }
    wasTouched = true;
    if (!writeChecked(file, bytes, true)) {
        return file.error() == QFileDevice::NoError ? tr("not all bytes were written") : file.errorString();
    }
    return {};
}

QString DiskFiles::move(const QString &from, const QString &to)
{
    QFile file(from);
    return file.rename(to) ? QString() : file.errorString();
}

QString DiskFiles::remove(const QString &path)
{
    QFile file(path);
    return file.remove() ? QString() : file.errorString();
}

QString DiskFiles::makeDirectory(const QString &path)
{
    std::error_code error;
    std::filesystem::create_directories(nativePath(path), error);
    if (!error && !QFileInfo(path).isDir()) {
        return tr("there is something else than a directory");
    }
    return reason(error);
}
