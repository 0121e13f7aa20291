#include "DiskFiles.h"

#include "DiskSync.h"
#include "FileExistence.h"
#include "LibraryFileNames.h"
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

#ifndef Q_OS_WIN

/// An open file, closed with the object.
class Handle {
public:
    explicit Handle(int descriptor)
        : m_descriptor(descriptor)
    {
    }
    ~Handle()
    {
        if (m_descriptor >= 0) {
            ::close(m_descriptor);
        }
    }
    Q_DISABLE_COPY_MOVE(Handle)

    [[nodiscard]] int descriptor() const { return m_descriptor; }

private:
    int m_descriptor;
};

QString systemError()
{
    return reason(std::error_code(errno, std::generic_category()));
}

/// Why an open file is not to be read; its size where it is.
QString checkRegular(const Handle &handle, qint64 &size)
{
    struct stat status { };
    if (::fstat(handle.descriptor(), &status) != 0) {
        return systemError();
    }
    if (S_ISDIR(status.st_mode)) {
        return DiskFiles::tr("a directory in the place of a file");
    }
    size = status.st_size;
    return S_ISREG(status.st_mode) ? QString() : DiskFiles::tr("not a regular file");
}

/// Fills `bytes`, or cuts them where the file ends before.
QString readAll(const Handle &handle, QByteArray &bytes)
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
QString writeChecked(QFile &file, const QByteArray &bytes, bool isSynced)
{
    qint64 written = 0;
    qint64 count = 1;
    // Only the attempt to write the rest says why there was room for a part.
    while (count > 0 && written < bytes.size()) {
        count = file.write(bytes.constData() + written, bytes.size() - written);
        written += std::max<qint64>(count, 0);
    }
    if (written == bytes.size() && file.flush() && file.size() == bytes.size()) {
        return isSynced ? DiskSync::syncFile(file) : QString();
    }
    return file.error() == QFileDevice::NoError ? DiskFiles::tr("not all bytes were written") : file.errorString();
}

} // namespace

FileReadResult DiskFiles::read(const QString &path)
{
    return readRegular(path, Links::Follow);
}

QString DiskFiles::write(const QString &path, const QByteArray &bytes)
{
    const QFileInfo target(endOfLinks(path));
    const bool isLibraryDirectory = holdsLibrary(target.absolutePath());
    const QString name = target.fileName();
    if (isLibraryDirectory && (LibraryFileNames::isReserved(name) || LibraryFileNames::patchFileId(name))) {
        return tr("the file belongs to a library and is not replaced by an export");
    }
    if (!isLibraryDirectory) {
        TemporaryFiles::sweep(target.absoluteDir());
    }
    return replace(target.filePath(), bytes);
}

FileReadResult DiskFiles::readRegular(const QString &path, Links links)
{
    const auto fail = [](const QString &error) { return FileReadResult{.bytes = std::nullopt, .error = error}; };
    const auto tooLarge = [] { return tr("larger than any preset file"); };
    const auto noMemory = [] { return tr("there is not enough memory for it"); };
    const auto isLink = [] { return tr("a link in the place of a file"); };
    QByteArray bytes;
#ifdef Q_OS_WIN
    QFile file(path);
    if (links == Links::Refuse && QFileInfo(path).isSymLink()) {
        return fail(isLink());
    }
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        return fail(file.errorString());
    }
    if (file.size() > largestFile) {
        return fail(tooLarge());
    }
    if (!makeRoom(bytes, file.size())) {
        return fail(noMemory());
    }
    const qint64 count = file.read(bytes.data(), bytes.size());
    if (count < 0) {
        return fail(file.errorString());
    }
    bytes.truncate(count);
#else
    // Opening never waits, whatever stands there, and a terminal does not become this program's.
    const int linkFlag = links == Links::Refuse ? O_NOFOLLOW : 0;
    const Handle handle(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC | linkFlag));
    if (handle.descriptor() < 0) {
        const bool isLinkRefused = errno == ELOOP && links == Links::Refuse;
        const bool isMissing = errno == ENOENT || errno == ENOTDIR || errno == ELOOP || errno == ENAMETOOLONG;
        // What opening refuses without a try may be no file at all.
        const bool isSomethingElse = errno == ENXIO || errno == ENODEV || errno == EISDIR;
        FileReadResult result = fail(isLinkRefused ? isLink() : systemError());
        result.isUnreadable = !isMissing && !isSomethingElse;
        return result;
    }
    qint64 size = 0;
    const QString refusal = checkRegular(handle, size);
    if (!refusal.isEmpty()) {
        return fail(refusal);
    }
    if (size > largestFile) {
        return fail(tooLarge());
    }
    if (!makeRoom(bytes, size)) {
        return fail(noMemory());
    }
    const QString error = readAll(handle, bytes);
    if (!error.isEmpty()) {
        FileReadResult result = fail(error);
        result.isUnreadable = true;
        return result;
    }
#endif
    return {.bytes = bytes, .error = {}};
}

QString DiskFiles::replace(const QString &path, const QByteArray &bytes)
{
    QString temporary;
    QString error = stage(path, bytes, true, temporary);
    if (error.isEmpty()) {
        error = commit(temporary, path);
        if (!error.isEmpty()) {
            std::ignore = remove(temporary);
        }
    }
    return error.isEmpty() ? DiskSync::syncDirectory(QFileInfo(path).absolutePath()) : error;
}

QString DiskFiles::whyNotReplaceable(const QString &path)
{
    const QFileInfo target(path);
    const bool isOther = target.exists() && !target.isFile() && !target.isSymLink();
    return isOther ? tr("there is something else than a file") : QString();
}

QString DiskFiles::stage(const QString &path, const QByteArray &bytes, bool isSynced, QString &temporary)
{
    QString error = whyNotReplaceable(path);
    if (!error.isEmpty()) {
        return error;
    }
    const QFileInfo target(path);
    const QDir directory = target.absoluteDir();
    QFile file(TemporaryFiles::freePath(directory));
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered)) {
        return file.errorString();
    }
    error = writeChecked(file, bytes, isSynced);
    if (!error.isEmpty()) {
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
    return reason(error);
}

QString DiskFiles::overwriteInPlace(
    const QString &path, const QByteArray &bytes, bool &wasTouched, std::optional<LibraryFileStamp> *stamp)
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
    QString error = writeChecked(file, bytes, true);
    if (stamp) {
        *stamp = LibraryFileStamp::of(file);
        (*stamp)->setBytes(error.isEmpty() ? bytes : QByteArray());
    }
    return error;
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
