#include "ProgramFiles.h"
#include "TestProgram.h"
#include "TreeRecord.h"
#include "VelgorProcess.h"

#include <QCoreApplication>
#include <QTest>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

const QString lead = QStringLiteral("8725204569585644227");
const QString leadFile = QStringLiteral("lib-Lead.8725204569585644227.prst");
const QString libraryFile = QStringLiteral("velgorlibrary.json");

#ifdef __SANITIZE_ADDRESS__
/// Sanitized programs start slowly. Every fifth row still has every name and every kind.
constexpr int rowStep = 5;
#else
constexpr int rowStep = 1;
#endif

QByteArray native(const QString &path)
{
    return QFile::encodeName(path);
}

bool makeSocket(const QString &path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, native(path).constData(), sizeof(address.sun_path));
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM, 0);
    // The interface wants a pointer to the general kind of address.
    const bool isBound =
        ::bind(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof(address)) == 0; // NOLINT
    ::close(descriptor);
    return isBound;
}

/// Puts a thing of this kind at `path`; `outside` is a directory with a file "file" and a directory "directory". False
/// when this user or system cannot make one.
bool place(const QString &kind, const QString &path, const QString &outside)
{
    const auto is = [&kind](const char *name) { return kind == QLatin1String(name); };
    if (is("link to a file outside")) {
        return QFile::link(outside + QStringLiteral("/file"), path);
    }
    if (is("link to a library file outside")) {
        return QFile::link(outside + u'/' + libraryFile, path);
    }
    if (is("link to a file inside")) {
        return ::symlink(native(QStringLiteral("notes.txt")).constData(), native(path).constData()) == 0;
    }
    if (is("dangling link")) {
        return QFile::link(outside + QStringLiteral("/nothing"), path);
    }
    if (is("loop of links")) {
        return ::symlink(native(path).constData(), native(path).constData()) == 0;
    }
    if (is("link to a directory")) {
        return QFile::link(outside + QStringLiteral("/directory"), path);
    }
    if (is("directory")) {
        ProgramFiles::write(path + QStringLiteral("/kept.42.prst"), "precious");
        return true;
    }
    if (is("pipe")) {
        return ::mkfifo(native(path).constData(), 0600) == 0;
    }
    if (is("socket")) {
        return makeSocket(path);
    }
    if (is("endless device")) {
        return ::mknod(native(path).constData(), S_IFCHR | 0600, makedev(1, 5)) == 0;
    }
    ProgramFiles::write(path, "locked away");
    return ::chmod(native(path).constData(), 0) == 0;
}

} // namespace

/// Links, directories, pipes and devices in the places of the files of a library: nothing is followed out of the
/// directory, nothing is waited for, and what is refused is refused with a reason.
class TestHostileDirectory : public QObject {
    Q_OBJECT

    VelgorProcess m_velgor;

    static QStringList kinds()
    {
        return {QStringLiteral("link to a file outside"), QStringLiteral("link to a library file outside"),
            QStringLiteral("link to a file inside"), QStringLiteral("dangling link"), QStringLiteral("loop of links"),
            QStringLiteral("link to a directory"), QStringLiteral("directory"), QStringLiteral("pipe"),
            QStringLiteral("socket"), QStringLiteral("endless device"), QStringLiteral("unreadable file")};
    }

    /// What stands around the library, with things that a followed link would reach.
    static QString makeOutside(const LibraryDirectory &directory)
    {
        const QString outside = directory.parentPath() + QStringLiteral("/outside");
        ProgramFiles::write(outside + QStringLiteral("/file"), "precious");
        ProgramFiles::write(outside + u'/' + libraryFile, R"({"patches":[],"defaultPatch":null})");
        ProgramFiles::write(outside + QStringLiteral("/directory/lib-Lead.8725204569585644227.prst"), "precious");
        return outside;
    }

    [[nodiscard]] QString faultOf(const VelgorProcess::Result &result) const
    {
        if (result.status < 0 || result.status > 2) {
            return QStringLiteral("crashed, or waited");
        }
        const QStringList lines = result.errorLines();
        const bool isTold = !lines.isEmpty() && lines.last().startsWith(u"velgor: ");
        return result.status == 2 && !isTold ? QStringLiteral("failed without a reason") : QString();
    }

private Q_SLOTS:
    void init() { m_velgor.setTimeLimit(10'000); }

    void nothingIsFollowedOutOfTheDirectory_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("kind");
        int row = 0;
        for (const QString &name :
            {libraryFile, QStringLiteral("velgorlibrary.copy.json"), QStringLiteral(".velgorlibrary.lock"),
                QStringLiteral(".velgorlibrary.lock.rmlock"), QStringLiteral(".velgorlibrary.journal"),
                QStringLiteral(".velgor-writing-1x"), leadFile, QStringLiteral("lib-Renamed.8725204569585644227.prst"),
                QStringLiteral("velgorlibrary-20200101T000000-00.json"), QStringLiteral("damaged-42-00.prst")}) {
            for (const QString &kind : kinds()) {
                if (row++ % rowStep == 0) {
                    QTest::addRow("%s as %s", qPrintable(name), qPrintable(kind)) << name << kind;
                }
            }
        }
    }
    void nothingIsFollowedOutOfTheDirectory()
    {
        QFETCH(const QString, name);
        QFETCH(const QString, kind);
        const LibraryDirectory directory;
        ProgramFiles::copyLibrary(QStringLiteral("ok"), directory);
        directory.write(QStringLiteral("notes.txt"), "precious");
        const QByteArray old = directory.read(libraryFile);
        const QString outside = makeOutside(directory);
        const QString target = directory.filePath(name);
        QFile::remove(target);
        if (!place(kind, target, outside)) {
            QSKIP("This user cannot make one.");
        }
        const auto before = TreeRecord::of(directory.parentPath(), directory.path());

        const QList<QStringList> commands{{QStringLiteral("list")},
            {QStringLiteral("set"), lead, QStringLiteral("--name"), QStringLiteral("Renamed")},
            {QStringLiteral("add"), ProgramFiles::sample(QStringLiteral("edge/one_patch"))},
            {QStringLiteral("remove"), lead}};
        for (const QStringList &command : commands) {
            const auto result = m_velgor.library(directory.path(), command);
            const QString fault = faultOf(result);
            QVERIFY2(fault.isEmpty(),
                qPrintable(command.first() + QStringLiteral(": ") + fault + QString::fromUtf8(result.errors)));
            QCOMPARE(TreeRecord::of(directory.parentPath(), directory.path()), before);
            QCOMPARE(directory.read(QStringLiteral("notes.txt")), QByteArray("precious"));
        }
        if (kind == QStringLiteral("directory") && QFileInfo(target).isDir()) {
            QCOMPARE(directory.read(name + QStringLiteral("/kept.42.prst")), QByteArray("precious"));
        }
        // Without the thing, the library is there as before, but for what the commands were able to do.
        if (!QFile::remove(target)) {
            QDir(target).removeRecursively();
        }
        if (name == libraryFile) {
            directory.write(name, old);
        }
        const auto last = m_velgor.library(directory.path(), {QStringLiteral("list"), QStringLiteral("--json")});
        QCOMPARE(last.status, 0);
        QVERIFY2(last.json().at("total") >= 2, last.output.constData());
    }

    void nothingIsReadThroughALink_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("told");
        QTest::newRow("library file") << libraryFile << 2 << QStringLiteral("a link in the place of a file");
        QTest::newRow("patch file")
            << leadFile << 0 << QStringLiteral("left out: Lead: a link in the place of a file (%1)").arg(leadFile);
    }
    void nothingIsReadThroughALink()
    {
        QFETCH(const QString, name);
        QFETCH(const int, status);
        QFETCH(const QString, told);
        const LibraryDirectory directory;
        ProgramFiles::copyLibrary(QStringLiteral("ok"), directory);
        // The link leads to the file that the library needs.
        const QString elsewhere = directory.parentPath() + QStringLiteral("/elsewhere");
        QVERIFY(QFile::rename(directory.filePath(name), elsewhere));
        QVERIFY(QFile::link(elsewhere, directory.filePath(name)));
        const auto result = m_velgor.library(directory.path(), {QStringLiteral("list")});
        QCOMPARE(result.status, status);
        QVERIFY2(result.errorLines().last().endsWith(told), result.errors.constData());
    }

    void whatStandsBesideANewDirectoryIsNotWritten_data()
    {
        QTest::addColumn<QString>("kind");
        for (const QString &kind : kinds()) {
            QTest::newRow(qPrintable(kind)) << kind;
        }
    }
    void whatStandsBesideANewDirectoryIsNotWritten()
    {
        QFETCH(const QString, kind);
        const LibraryDirectory directory;
        const QString outside = makeOutside(directory);
        const QString fresh = directory.parentPath() + QStringLiteral("/fresh");
        if (!place(kind, fresh + QStringLiteral(".testfile.txt"), outside)) {
            QSKIP("This user cannot make one.");
        }
        const auto before = TreeRecord::of(outside);
        const auto result =
            m_velgor.library(fresh, {QStringLiteral("add"), ProgramFiles::sample(QStringLiteral("edge/one_patch"))});
        QVERIFY2(faultOf(result).isEmpty(), result.errors.constData());
        QCOMPARE(TreeRecord::of(outside), before);
    }

    void exportIntoWhatIsNoFileIsRefused_data() { whatStandsBesideANewDirectoryIsNotWritten_data(); }
    void exportIntoWhatIsNoFileIsRefused()
    {
        QFETCH(const QString, kind);
        const LibraryDirectory directory;
        ProgramFiles::copyLibrary(QStringLiteral("ok"), directory);
        const QString outside = makeOutside(directory);
        const QString target = directory.parentPath() + QStringLiteral("/export.prst");
        if (!place(kind, target, outside)) {
            QSKIP("This user cannot make one.");
        }
        const auto before = TreeRecord::of(directory.parentPath());
        const auto result =
            m_velgor.library(directory.path(), {QStringLiteral("export"), lead, QStringLiteral("-o"), target});
        QVERIFY2(faultOf(result).isEmpty(), result.errors.constData());
        // A link is the user's own way to say where an export goes; a library file is never replaced.
        const bool isRefused = !kind.contains(QStringLiteral("link")) && kind != QStringLiteral("unreadable file");
        if (isRefused || kind == QStringLiteral("link to a library file outside")) {
            QCOMPARE(result.status, 2);
            QCOMPARE(TreeRecord::of(directory.parentPath()), before);
        }
    }

    void directoryBehindALinkIsTheLibrary()
    {
        const LibraryDirectory directory;
        ProgramFiles::copyLibrary(QStringLiteral("ok"), directory);
        const QString link = directory.parentPath() + QStringLiteral("/link");
        QVERIFY(QFile::link(directory.path(), link));
        const QStringList rename{QStringLiteral("set"), lead, QStringLiteral("--name"), QStringLiteral("Renamed")};
        QCOMPARE(m_velgor.library(link, rename).status, 0);
        QVERIFY(directory.has(QStringLiteral("lib-Renamed.%1.prst").arg(lead)));
        QVERIFY(QFileInfo(link).isSymLink());
    }
};

VELGOR_TEST(TestHostileDirectory)
#include "tst_HostileDirectory.moc"
