#include "DiskFiles.h"

#include "CheckedWriting.h"
#include "DiskSync.h"
#include "FaultPoint.h"
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

Result<> outcome(const std::error_code &error, const QString &where)
{
    return error ? Problem{.where = where, .why = QString::fromLocal8Bit(error.message().c_str())}
                 : Result<>(Success());
}

#ifndef Q_OS_WIN

/// The stamp of an open file that may be read.
Result<FileStamp> checkRegular(const FileHandle &handle)
{
    struct stat status { };
    if (::fstat(handle.descriptor(), &status) != 0) {
        return Problem{.why = systemError()};
    }
    if (S_ISDIR(status.st_mode)) {
        return Problem{.why = DiskFiles::tr("a directory in the place of a file")};
    }
    if (!S_ISREG(status.st_mode)) {
        return Problem{.why = DiskFiles::tr("not a regular file")};
    }
    return FileStamp::of(status);
}

/// Fills `bytes`, or cuts them where the file ends before.
Result<> readAll(const FileHandle &handle, QByteArray &bytes)
{
    qsizetype count = 0;
    while (count < bytes.size()) {
        const ssize_t got =
            ::read(handle.descriptor(), bytes.data() + count, static_cast<std::size_t>(bytes.size() - count));
        if (got < 0 && errno != EINTR) {
            return Problem{.why = systemError()};
        }
        if (got == 0) {
            break;
        }
        count += std::max<ssize_t>(got, 0);
    }
    bytes.truncate(count);
    return Success();
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

} // namespace

Result<QByteArray> DiskFiles::readRegular(const QString &path, Links links)
{
    Result<ReadFile> file = readRegular(OpenDirectory(), path, links);
    return file ? Result<QByteArray>(std::move(file->bytes)) : file.problem();
}

Result<DiskFiles::ReadFile> DiskFiles::readRegular(
    const OpenDirectory &directory, const QString &name, Links links, QByteArray room)
{
    const auto fail = [&](const QString &reason, bool mayPass = false) {
        return Problem{.where = directory.pathOf(name), .why = reason, .mayPass = mayPass};
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
    const FileStamp stamp = FileStamp::of(directory, name).value_or(FileStamp());
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        Problem problem = fail(file.errorString());
        problem.what = QFileInfo::exists(path) ? Problem::What::Failed : Problem::What::Absent;
        return problem;
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
    const int linkFlag = links == Links::Refuse && !FaultPoint::isSet("links-followed") ? O_NOFOLLOW : 0;
    const QByteArray encoded = directory.encoded(name);
    const FileHandle handle(
        ::openat(directory.descriptor(), encoded.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC | linkFlag));
    if (handle.descriptor() < 0) {
        const bool isLinkRefused = errno == ELOOP && links == Links::Refuse;
        const bool isMissing = errno == ENOENT || errno == ENOTDIR || errno == ELOOP || errno == ENAMETOOLONG;
        // What opening refuses without a try may be no file at all.
        const bool isSomethingElse = errno == ENXIO || errno == ENODEV || errno == EISDIR;
        Problem problem = isLinkRefused ? fail(isLink(), true) : fail(systemError(), !isMissing && !isSomethingElse);
        problem.what = isMissing && !isLinkRefused ? Problem::What::Absent : Problem::What::Failed;
        return problem;
    }
    const Result<FileStamp> checked = checkRegular(handle);
    if (!checked) {
        return fail(checked.problem().why);
    }
    const FileStamp stamp = *checked;
    if (stamp.size > largestFile && !FaultPoint::isSet("size-unchecked")) {
        return fail(tooLarge());
    }
    if (!makeRoom(room, stamp.size)) {
        return fail(noMemory());
    }
    if (const Result<> read = readAll(handle, room); !read) {
        return fail(read.problem().why, true);
    }
#endif
    return ReadFile{.bytes = std::move(room), .stamp = stamp};
}

Result<> DiskFiles::replace(const QString &path, const QByteArray &bytes)
{
    const OpenDirectory anywhere;
    const Result<Staged> staged = stage(anywhere, path, bytes, {});
    if (!staged) {
        return staged.problem();
    }
    Result<> committed = commit(anywhere, staged->name, path);
    if (!committed) {
        std::ignore = remove(staged->name);
        return committed;
    }
    const Result<> synced = DiskSync::syncDirectory(QFileInfo(path).absolutePath());
    return synced ? synced : synced.problem().in(path);
}

Result<DiskFiles::Staged> DiskFiles::stage(
    const OpenDirectory &directory, const QString &name, const QByteArray &bytes, const Staging &staging)
{
    const Place place = staging.isFree ? Place() : whatIsAt(directory, name);
    if (place.kind == Place::Kind::Other) {
        return Problem{.what = Problem::What::Taken,
            .where = directory.pathOf(name),
            .why = tr("there is something else than a file")};
    }
    // By chance one name is taken, or two in a row, but not so many; a file system may say so of every name.
    constexpr int mostAttempts = 8;
    QString temporary;
    Result<FileStamp> created = Problem{.what = Problem::What::Taken};
    for (int attempt = 0; !created && created.problem().what == Problem::What::Taken && attempt < mostAttempts;
         ++attempt) {
        temporary = TemporaryFiles::nameBeside(name);
        created = CheckedWriting::createFile(directory, temporary, bytes, staging.isSynced);
    }
    if (!created) {
        return created.problem().in(directory.pathOf(name));
    }
    if (place.kind == Place::Kind::File) {
        setRights(directory, temporary, place.rights);
    }
    return Staged{.name = temporary, .stamp = *created};
}

Result<> DiskFiles::commit(const OpenDirectory &directory, const QString &temporary, const QString &name)
{
#ifdef Q_OS_WIN
    std::error_code error;
    std::filesystem::rename(nativePath(directory.pathOf(temporary)), nativePath(directory.pathOf(name)), error);
    return outcome(error, directory.pathOf(name));
#else
    const QByteArray from = directory.encoded(temporary);
    const QByteArray to = directory.encoded(name);
    const int place = directory.descriptor();
    if (::renameat(place, from.constData(), place, to.constData()) != 0) {
        const QString reason = systemError();
        return Problem{.where = directory.pathOf(name), .why = reason};
    }
    return Success();
#endif
}

Result<FileContentStamp> DiskFiles::overwriteInPlace(const QString &path, const QByteArray &bytes)
{
    const QFileInfo info(path);
    if ((info.isSymLink() && !FaultPoint::isSet("links-overwritten")) || (info.exists() && !info.isFile())) {
        return Problem{.where = path, .why = tr("not a regular file")};
    }
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered)) {
        return Problem{.where = path, .why = file.errorString()};
    }
    if (const Result<> written = CheckedWriting::writeAndSync(file, bytes); !written) {
        return Problem{.what = Problem::What::Touched, .where = path, .why = written.problem().why};
    }
    FileContentStamp stamp = FileContentStamp::of(file);
    stamp.setBytes(bytes);
    return stamp;
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

Result<> DiskFiles::move(const QString &from, const QString &to)
{
    const std::filesystem::path source = nativePath(from);
    const std::filesystem::path target = nativePath(to);
#ifdef Q_OS_LINUX
    if (::renameat2(AT_FDCWD, source.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0) {
        return Success();
    }
    // Some file systems know no such move.
    if (errno != EINVAL && errno != ENOSYS) {
        return Problem{.where = from, .why = systemError()};
    }
#endif
    std::error_code error;
    const bool isTaken = std::filesystem::symlink_status(target, error).type() != std::filesystem::file_type::not_found;
    if (isTaken && !std::filesystem::equivalent(source, target, error)) {
        return Problem{.what = Problem::What::Taken, .where = from, .why = tr("there is a file of that name already")};
    }
    std::filesystem::rename(source, target, error);
    return outcome(error, from);
}

Result<> DiskFiles::remove(const QString &path)
{
    QFile file(path);
    return file.remove() ? Result<>(Success()) : Problem{.where = path, .why = file.errorString()};
}

Result<> DiskFiles::makeDirectory(const QString &path)
{
    std::error_code error;
    std::filesystem::create_directories(nativePath(path), error);
    if (!error && !QFileInfo(path).isDir()) {
        return Problem{.where = path, .why = tr("there is something else than a directory")};
    }
    return outcome(error, path);
}
