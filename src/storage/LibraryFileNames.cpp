#include "LibraryFileNames.h"

#include "FaultPoint.h"
#include "TemporaryFiles.h"
#include "Utf8Text.h"

#include <QDateTime>
#include <QRegularExpression>
#include <QStringBuilder>

namespace LibraryFileNames {

namespace {

constexpr QLatin1String patchPrefix("lib-");
constexpr QLatin1String patchSuffix(".prst");

/// Bytes of a file name that every usual file system takes.
constexpr qsizetype longestFileName = 255;

std::optional<quint64> idFromText(QStringView text)
{
    if (text.isEmpty() || (text.size() > 1 && text.first() == u'0')) {
        return std::nullopt;
    }
    for (const QChar digit : text) {
        if (digit < u'0' || digit > u'9') {
            return std::nullopt;
        }
    }
    bool isWithin64Bits = false;
    const quint64 id = text.toULongLong(&isWithin64Bits);
    return isWithin64Bits ? std::optional(id) : std::nullopt;
}

} // namespace

QString libraryFile()
{
    return QStringLiteral("velgorlibrary.json");
}

QString libraryCopy()
{
    return QStringLiteral("velgorlibrary.copy.json");
}

QString lockFile()
{
    return QStringLiteral(".velgorlibrary.lock");
}

QString journalFile()
{
    return QStringLiteral(".velgorlibrary.journal");
}

QString lockRemovalFile()
{
    return lockFile() + QStringLiteral(".rmlock");
}

QString writeTestFile(const QString &directory)
{
    return directory + QStringLiteral(".testfile.txt");
}

QByteArray writeTestText()
{
    return QByteArrayLiteral("Test file that can be removed");
}

QString datedCopy(int attempt)
{
    const QString time = QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd'T'HHmmss"));
    return QStringLiteral("velgorlibrary-%1-%2.json").arg(time).arg(attempt, 2, 10, QChar(u'0'));
}

bool isDatedCopy(const QString &name)
{
    static const QRegularExpression pattern(QStringLiteral("^velgorlibrary-\\d{8}T\\d{6}-\\d{2,}\\.json\\z"));
    return pattern.match(name).hasMatch();
}

QDateTime dateOfCopy(const QString &name)
{
    QDateTime date = QDateTime::fromString(name.section(u'-', 1, 1), QStringLiteral("yyyyMMdd'T'HHmmss"));
    date.setTimeSpec(Qt::UTC);
    return date;
}

QString damagedFile(quint64 patchID, int attempt)
{
    return QStringLiteral("damaged-%1-%2.prst").arg(patchID).arg(attempt, 2, 10, QChar(u'0'));
}

bool isDamagedFile(const QString &name)
{
    static const QRegularExpression pattern(QStringLiteral("^damaged-\\d+-\\d{2,}\\.prst\\z"));
    return pattern.match(name).hasMatch();
}

bool isReserved(const QString &name)
{
    static const QStringList names{libraryFile(), libraryCopy(), lockFile(), lockRemovalFile(), journalFile()};
    return names.contains(name) || name.startsWith(TemporaryFiles::prefix()) || isDatedCopy(name);
}

QString patchFile(const QString &patchName, quint64 patchID)
{
    // Half a surrogate pair has no form in a file name.
    QString name = patchName.isValidUtf16() ? patchName : QString::fromUtf8(patchName.toUtf8());
    if (!FaultPoint::isSet("null-character-kept")) {
        name.remove(QChar(u'\0'));
    }
    if (!FaultPoint::isSet("slash-kept")) {
        name.replace(u'/', u'$');
    }
    const QString id = QString::number(patchID);
    const qsizetype rest = patchPrefix.size() + 1 + id.size() + patchSuffix.size();
    return patchPrefix % Utf8Text::longestPrefixWithin(name, longestFileName - rest) % u'.' % id % patchSuffix;
}

std::optional<quint64> patchFileId(const QString &name)
{
    if (!name.startsWith(patchPrefix) || !name.endsWith(patchSuffix)) {
        return std::nullopt;
    }
    const QStringView base = QStringView(name).chopped(patchSuffix.size());
    const qsizetype dot = base.lastIndexOf(u'.');
    return dot < patchPrefix.size() ? std::nullopt : idFromText(base.sliced(dot + 1));
}

QString patchNameIn(const QString &fileName)
{
    const QString base = fileName.chopped(patchSuffix.size());
    return base.first(base.lastIndexOf(u'.')).sliced(patchPrefix.size());
}

PathIds idsIn(const QString &path)
{
    PathIds ids;
    qsizetype from = path.indexOf(u'.');
    while (from >= 0) {
        const qsizetype to = path.indexOf(u'.', from + 1);
        if (to < 0) {
            break;
        }
        const auto id = idFromText(QStringView(path).sliced(from + 1, to - from - 1));
        if (id && !ids.contains(*id)) {
            ids.append(*id);
        }
        from = to;
    }
    return ids;
}

QString address(const QString &path)
{
    return QString::fromLatin1(QUrl::fromLocalFile(path).toEncoded());
}

} // namespace LibraryFileNames
