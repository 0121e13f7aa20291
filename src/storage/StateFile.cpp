#include "StateFile.h"

#include "ApplicationId.h"
#include "Diagnostics.h"
#include "DiskFiles.h"
#include "OwnerlessLock.h"
#include "TemporaryFiles.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>
#include <tuple>

namespace {

/// Of all programs of the user. Qt knows such a place from version 6.7 on only, and what is remembered must not get
/// lost when the program is built with a newer one.
QString genericDirectory()
{
#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN)
    const QString named = qEnvironmentVariable("XDG_STATE_HOME");
    // Relative paths are to be ignored.
    return QDir::isAbsolutePath(named) ? QDir::cleanPath(named) : QDir::homePath() + QStringLiteral("/.local/state");
#else
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
#endif
}

bool isSomethingAt(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

/// `to` is not replaced.
Result<> moveFile(const QString &from, const QString &to)
{
    // A link would lead elsewhere from its new place.
    if (!QFileInfo(from).isSymLink() && DiskFiles::move(from, to)) {
        return Success();
    }
    // The places may be on two file systems.
    const Result<QByteArray> read = DiskFiles::readRegular(from, DiskFiles::Links::Follow);
    if (!read) {
        return read.problem();
    }
    const QString copy = TemporaryFiles::nameBeside(to);
    const Result<> copied = DiskFiles::replace(copy, *read);
    Result<> moved = copied ? DiskFiles::move(copy, to) : copied;
    // Both may stay without harm.
    std::ignore = DiskFiles::remove(moved ? from : copy);
    return moved;
}

} // namespace

QString StateFile::usualPath()
{
    return genericDirectory() + u'/' + ApplicationId::text() + QStringLiteral("/state.ini");
}

QStringList StateFile::formerPaths()
{
    QStringList directories{genericDirectory(), QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)};
#if QT_VERSION >= QT_VERSION_CHECK(6, 7, 0)
    directories.append(QStandardPaths::writableLocation(QStandardPaths::GenericStateLocation));
#endif
    directories.removeDuplicates();
    for (QString &directory : directories) {
        directory += QStringLiteral("/velgor/velgor-library-manager-state.ini");
    }
    return directories;
}

QString StateFile::inherit(const QString &path, const QStringList &formerPaths)
{
    QStringList former = formerPaths;
    former.removeIf([](const QString &file) { return !QFileInfo(file).isFile(); });
    if (isSomethingAt(path) || former.isEmpty()) {
        return path;
    }
    const QString latest = *std::max_element(former.begin(), former.end(),
        [](const QString &a, const QString &b) { return QFileInfo(a).lastModified() < QFileInfo(b).lastModified(); });
    const QString directory = QFileInfo(path).path();
    const Result<> made = DiskFiles::makeDirectory(directory);
    const Result<> moved = made ? moveFile(latest, path) : made;
    if (!moved) {
        Diagnostics::printLine(tr("%1 cannot be moved to %2: %3").arg(latest, path, moved.problem().why));
        QDir().rmdir(directory);
        return isSomethingAt(path) ? path : latest;
    }
    // It would keep the directory from being empty.
    OwnerlessLock::remove(latest + QStringLiteral(".lock"));
    QDir().rmdir(QFileInfo(latest).path());
    return path;
}
