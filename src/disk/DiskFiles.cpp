#include "DiskFiles.h"

#include "CheckedWriting.h"
#include "DiskSync.h"
#include "TemporaryFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <new>
#include <system_error>
#include <utility>

#ifndef Q_OS_WIN
#include "FileHandle.h"
#include "SystemError.h"

#include <fcntl.h>
#include <sys/stat.h>
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

#ifndef Q_OS_WIN

/// Why an open file is not to be read; its stamp where it is.
QString checkRegular(const FileHandle &handle, FileStamp &stamp)
{
    struct stat status { };
    if (::fstat(handle.descriptor(), &status) != 0) {
        return systemError();
    }
    if (S_ISDIR(status.st_mode)) {
        return DiskFiles::tr("a directory in the place of a file");
    }
    stamp = FileStamp::of(status);
    return S_ISREG(status.st_mode) ? QString() : DiskFiles::tr("not a regular file");
}

/// Fills `bytes`, or cuts them where the file ends before.
QString readAll(const FileHandle &handle, QByteArray &bytes)
{
    qsizetype count = 0;
    while (count < bytes.size()) {
        const ssize_t got =
            ::read(handle.descriptor(), bytes.data() + count, static_cast<std::size_t>(bytes.size() - count));
        if (got < 0 && errno != EINTR) {
            return systemError();
        }
        if (got == 0) {
            break;
        }
        count += std::max<ssize_t>(got, 0);
    }
    bytes.truncate(count);
    return {};
}

#endif

bool makeRoom(QByteArray &bytes, qint64 size)
{
    try {
        bytes.resize(size);
    } catch (const std::bad_alloc &) {
        return false;
    }
    return true;
}

/// What stands under a name; a link is not followed.
struct Place {
    enum class Kind { Nothing, File, Link, Other };
    Kind kind = Kind::Nothing;
    unsigned rights = 0; ///< of a file, in the system's form
};

Place whatIsAt(const OpenDirectory &directory, const QString &name)
{
#ifdef Q_OS_WIN
    const QFileInfo info(directory.pathOf(name));
    const Place::Kind other = info.isFile() ? Place::Kind::File : Place::Kind::Other;
    const Place::Kind kind = info.isSymLink() ? Place::Kind::Link : (info.exists() ? other : Place::Kind::Nothing);
    return {.kind = kind, .rights = static_cast<unsigned>(info.permissions())};
#else
    struct stat status { };
    if (::fstatat(directory.descriptor(), directory.encoded(name).constData(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
        return {};
    }
    const Place::Kind other = S_ISREG(status.st_mode) ? Place::Kind::File : Place::Kind::Other;
    constexpr unsigned rights = 0777;
    return {.kind = S_ISLNK(status.st_mode) ? Place::Kind::Link : other, .rights = status.st_mode & rights};
#endif
}

/// Where that is not possible, the file keeps the rights of any new file. Its owner can read it in any case.
void setRights(const OpenDirectory &directory, const QString &name, unsigned rights)
{
#ifdef Q_OS_WIN
    QFile::setPermissions(directory.pathOf(name), QFile::Permissions::fromInt(static_cast<int>(rights)));
#else
    std::ignore = ::fchmodat(directory.descriptor(), directory.encoded(name).constData(), rights | S_IRUSR, 0);
#endif
}

QString whyNotReplaceable(const Place &place)
{
    return place.kind == Place::Kind::Other ? DiskFiles::tr("there is something else than a file") : QString();
}

} // namespace

FileReadResult DiskFiles::readRegular(const QString &path, Links links)
{
    return readRegular(OpenDirectory(), path, links);
}

FileReadResult DiskFiles::readRegular(
    const OpenDirectory &directory, const QString &name, Links links, QByteArray room, FileStamp *stamp)
{
    const auto fail = [](const QString &error, bool isForNow = false) {
        return FileReadResult{.bytes = std::nullopt, .error = error, .isUnreadable = isForNow};
    };
    const auto tooLarge = [] { return tr("larger than any preset file"); };
    const auto noMemory = [] { return tr("there is not enough memory for it"); };
    const auto isLink = [] { return tr("a link in the place of a file"); };
#ifdef Q_OS_WIN
    const QString path = directory.pathOf(name);
    QFile file(path);
    if (links == Links::Refuse && QFileInfo(path).isSymLink()) {
        return fail(isLink(), true);
    }
    if (stamp) {
        *stamp = FileStamp::of(directory, name).value_or(FileStamp());
    }
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        return fail(file.errorString());
    }
    if (file.size() > largestFile) {
        return fail(tooLarge());
    }
    if (!makeRoom(room, file.size())) {
        return fail(noMemory());
    }
    const qint64 count = file.read(room.data(), room.size());
    if (count < 0) {
        return fail(file.errorString());
    }
    room.truncate(count);
#else
    // Opening never waits, whatever stands there, and a terminal does not become this program's.
    const int linkFlag = links == Links::Refuse ? O_NOFOLLOW : 0;
    const QByteArray encoded = directory.encoded(name);
    const FileHandle handle(
        ::openat(directory.descriptor(), encoded.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC | linkFlag));
    if (handle.descriptor() < 0) {
        const bool isLinkRefused = errno == ELOOP && links == Links::Refuse;
        const bool isMissing = errno == ENOENT || errno == ENOTDIR || errno == ELOOP || errno == ENAMETOOLONG;
        // What opening refuses without a try may be no file at all.
        const bool isSomethingElse = errno == ENXIO || errno == ENODEV || errno == EISDIR;
        return isLinkRefused ? fail(isLink(), true) : fail(systemError(), !isMissing && !isSomethingElse);
    }
    FileStamp found;
    const QString refusal = checkRegular(handle, found);
    if (!refusal.isEmpty()) {
        return fail(refusal);
    }
    const qint64 size = found.size;
    if (stamp) {
        *stamp = found;
    }
    if (size > largestFile) {
        return fail(tooLarge());
    }
    if (!makeRoom(room, size)) {
        return fail(noMemory());
    }
    const QString error = readAll(handle, room);
    if (!error.isEmpty()) {
        return fail(error, true);
    }
#endif
    return {.bytes = std::move(room), .error = {}};
}

QString DiskFiles::replace(const QString &path, const QByteArray &bytes)
{
    const OpenDirectory anywhere;
    Staged staged;
    QString error = stage(anywhere, path, bytes, {}, staged);
    if (error.isEmpty()) {
        error = commit(anywhere, staged.name, path);
        if (!error.isEmpty()) {
            std::ignore = remove(staged.name);
        }
    }
    return error.isEmpty() ? DiskSync::syncDirectory(QFileInfo(path).absolutePath()) : error;
}

QString DiskFiles::whyNotReplaceable(const OpenDirectory &directory, const QString &name)
{
    return ::whyNotReplaceable(whatIsAt(directory, name));
}

QString DiskFiles::stage(const OpenDirectory &directory, const QString &name, const QByteArray &bytes,
    const Staging &staging, Staged &staged)
{
    const Place place = staging.isFree ? Place() : whatIsAt(directory, name);
    QString refusal = ::whyNotReplaceable(place);
    if (!refusal.isEmpty()) {
        return refusal;
    }
    // By chance one name is taken, or two in a row, but not so many; a file system may say so of every name.
    constexpr int mostAttempts = 8;
    CheckedWriting::Created created{.isTaken = true};
    for (int attempt = 0; created.isTaken && attempt < mostAttempts; ++attempt) {
        staged.name = TemporaryFiles::nameBeside(name);
        created = CheckedWriting::createFile(directory, staged.name, bytes, staging.isSynced);
    }
    staged.stamp = created.stamp;
    if (created.error.isEmpty() && place.kind == Place::Kind::File) {
        setRights(directory, staged.name, place.rights);
    }
    return created.error;
}

QString DiskFiles::commit(const OpenDirectory &directory, const QString &temporary, const QString &name)
{
#ifdef Q_OS_WIN
    std::error_code error;
    std::filesystem::rename(nativePath(directory.pathOf(temporary)), nativePath(directory.pathOf(name)), error);
    return reason(error);
#else
    const QByteArray from = directory.encoded(temporary);
    const QByteArray to = directory.encoded(name);
    const int place = directory.descriptor();
    return ::renameat(place, from.constData(), place, to.constData()) == 0 ? QString() : systemError();
#endif
}

QString DiskFiles::overwriteInPlace(
    const QString &path, const QByteArray &bytes, bool &wasTouched, std::optional<FileContentStamp> *stamp)
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
    QString error = CheckedWriting::writeAndSync(file, bytes);
    if (stamp) {
        *stamp = FileContentStamp::of(file);
        (*stamp)->setBytes(error.isEmpty() ? bytes : QByteArray());
    }
    return error;
}

QString DiskFiles::endOfLinks(const QString &path)
{
    constexpr int longestChain = 40;
    QFileInfo info(path);
    for (int step = 0; step < longestChain && info.isSymLink(); ++step) {
        info.setFile(info.symLinkTarget());
    }
    return info.filePath();
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
        return systemError();
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
