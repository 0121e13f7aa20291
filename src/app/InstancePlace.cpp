#include "InstancePlace.h"

#include "ApplicationId.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace {

QString nameOf(const QString &libraryDirectory)
{
    const QFileInfo info(libraryDirectory);
    const QString path = info.exists() ? info.canonicalFilePath() : info.absoluteFilePath();
    const QByteArray hash = QCryptographicHash::hash(path.toUtf8(), QCryptographicHash::Sha256).toHex();
    return QStringLiteral("library-") + QString::fromLatin1(hash.first(16));
}

} // namespace

QStringList InstancePlace::sockets(const QString &libraryDirectory)
{
    const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (runtime.isEmpty()) {
        return {};
    }
    const QString name = nameOf(libraryDirectory);
    return
    {
#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN)
        runtime + QStringLiteral("/app/") + ApplicationId::text() + u'/' + name,
#endif
            runtime + QStringLiteral("/velgor-") + name
    };
}

bool InstancePlace::prepare(const QString &socket)
{
    const QDir folder = QFileInfo(socket).dir();
    for (const QString &path : {QFileInfo(folder.path()).path(), folder.path()}) {
        const QFileInfo info(path);
        info.dir().mkdir(info.fileName(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    return isTrusted(socket);
}

bool InstancePlace::isTrusted(const QString &socket)
{
    const QFileInfo folder(QFileInfo(socket).path());
#ifdef Q_OS_UNIX
    const auto byOthers = QFile::WriteGroup | QFile::WriteOther;
    return folder.isDir() && folder.ownerId() == geteuid() && !(folder.permissions() & byOthers);
#else
    return folder.isDir();
#endif
}
