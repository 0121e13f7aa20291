#include "LibraryDirectory.h"
#include "TemporaryFiles.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QSysInfo>
#include <QTest>

#include <limits>

class TestTemporaryFiles : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void nameIsInTheDirectoryOfTheOtherAndTellsTheProcess()
    {
        QVERIFY(TemporaryFiles::nameBeside(QStringLiteral("/a/b/c")).startsWith(QStringLiteral("/a/b/.velgor-")));
        const QString name = TemporaryFiles::nameBeside(QStringLiteral("c"));
        QCOMPARE(TemporaryFiles::ownerOf(name, QSysInfo::machineHostName()),
            std::optional<qint64>(QCoreApplication::applicationPid()));
    }

    static void namesAreDrawnFromAMillionAndMore()
    {
        constexpr int draws = 1000;
        QSet<QString> names;
        for (int i = 0; i < draws; ++i) {
            names.insert(TemporaryFiles::nameBeside(QStringLiteral("x")));
        }
        QVERIFY(names.size() > draws - 10);
    }

    // Linux keeps longer names in memory of their own, which makes saving new patches slower.
    static void nameIsShort()
    {
        const QString prefix = TemporaryFiles::prefix(QSysInfo::machineHostName(), QCoreApplication::applicationPid());
        QVERIFY(TemporaryFiles::nameBeside(QStringLiteral("x")).size() <= prefix.size() + 6);
    }

    static void onlyWhatGoneProcessesLeftIsSwept()
    {
        const LibraryDirectory directory;
        const QString host = QSysInfo::machineHostName();
        // No system gives this number to a process.
        constexpr qint64 gone = std::numeric_limits<qint32>::max();
        const QString left = TemporaryFiles::prefix(host, gone) + u'1';
        const QString own = TemporaryFiles::nameBeside(QStringLiteral("x"));
        const QString foreign = TemporaryFiles::prefix(QStringLiteral("other host"), gone) + u'1';
        for (const QString &name : {left, own, foreign}) {
            directory.write(name, "bytes");
        }
        TemporaryFiles::sweep(QDir(directory.path()));
        QVERIFY(!QFile::exists(directory.filePath(left)));
        QVERIFY(QFile::exists(directory.filePath(own)));
        QVERIFY(QFile::exists(directory.filePath(foreign)));
    }
};

VELGOR_TEST(TestTemporaryFiles)
#include "tst_TemporaryFiles.moc"
