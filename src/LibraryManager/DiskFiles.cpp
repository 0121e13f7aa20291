#include "DiskFiles.h"

#include "DiskSync.h"
#include "LibraryFileNames.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <new>
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
    const int flags =
        O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC | (links == DiskFiles::Links::Refuse ? O_NOFOLLOW : 0);
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

/// The file that a chain of links leads to, whether or not it exists; the path itself where there is no link.
QString endOfLinks(const QString &path)
{
    constexpr int longestChain = 40;
    QFileInfo info(path);
    for (int step = 0; step < longestChain && info.isSymLink(); ++step) {
        info.setFile(info.symLinkTarget());
    }
    return info.filePath();
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
    return replace(endOfLinks(path), bytes);
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
    QByteArray bytes;
    try {
        bytes.resize(size);
    } catch (const std::bad_alloc &) {
        return {std::nullopt, tr("there is not enough memory for it")};
    }
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
    const std::filesystem::path source = nativePath(from);
    const std::filesystem::path target = nativePath(to);
#ifdef Q_OS_LINUX
    if (::renameat2(AT_FDCWD, source.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0) {
        return {};
    }
    // Some file systems know no such move.
    if (errno != EINVAL && errno != ENOSYS) {
        return reason(std::error_code(errno, std::generic_category()));
    }
#endif
    std::error_code error;
    const bool isTaken = std::filesystem::symlink_status(target, error).type() != std::filesystem::file_type::not_found;
    if (isTaken && !std::filesystem::equivalent(source, target, error)) {
        return tr("there is a file of that name already");
    }
    std::filesystem::rename(source, target, error);
    return reason(error);
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
