#include "TestProgram.h"
#include "WindowState.h"

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

class TestWindowState : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_directory = std::make_unique<QTemporaryDir>();
        // In a directory that is not there yet.
        m_file = m_directory->filePath(QStringLiteral("velgor/state.ini"));
    }

    void nothingIsRememberedAtFirst()
    {
        const WindowState state(m_file);
        QCOMPARE(state.geometry(), QByteArray());
        QCOMPARE(state.splitterSizes(), QList<int>());
        QCOMPARE(state.importDirectory(), QString());
        QCOMPARE(state.exportDirectory(), QString());
        QCOMPARE(state.recentFiles(), QStringList());
    }

    void everythingLastsToTheNextRun()
    {
        const QByteArray geometry("\x01\0\xff;,\"\n", 7);
        const QString importing = m_directory->filePath(QString::fromUtf8("in, \u00e4"));
        const QString exporting = m_directory->filePath(QStringLiteral("out"));
        QVERIFY(QDir().mkpath(importing) && QDir().mkpath(exporting));
        {
            WindowState state(m_file);
            state.setGeometry(geometry);
            state.setSplitterSizes({280, 0, 512});
            state.setImportDirectory(importing);
            state.setExportDirectory(exporting);
            state.addRecentFile(QStringLiteral("/a, b.prst"));
        }
        QVERIFY(QFile::exists(m_file));
        WindowState state(m_file);
        QCOMPARE(state.geometry(), geometry);
        QCOMPARE(state.splitterSizes(), (QList<int>{280, 0, 512}));
        QCOMPARE(state.importDirectory(), importing);
        QCOMPARE(state.exportDirectory(), exporting);
        QCOMPARE(state.recentFiles(), QStringList{QStringLiteral("/a, b.prst")});
    }

    void recentFilesAreTheLastTenEachOnce()
    {
        WindowState state(m_file);
        for (int i = 1; i <= 12; ++i) {
            state.addRecentFile(QStringLiteral("/%1.prst").arg(i));
        }
        state.addRecentFile(QStringLiteral("/5.prst"));
        state.addRecentFile(QStringLiteral("here.prst"));
        QStringList expected{QDir::current().filePath(QStringLiteral("here.prst")), QStringLiteral("/5.prst")};
        for (const int i : {12, 11, 10, 9, 8, 7, 6, 4}) {
            expected.append(QStringLiteral("/%1.prst").arg(i));
        }
        QCOMPARE(state.recentFiles(), expected);
    }

    void directoryThatIsGoneIsForgotten()
    {
        WindowState state(m_file);
        state.setImportDirectory(m_directory->filePath(QStringLiteral("gone")));
        state.setExportDirectory(m_directory->path());
        QCOMPARE(state.importDirectory(), QString());
        QCOMPARE(state.exportDirectory(), m_directory->path());
    }

    void brokenValuesReadAsNone_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("no settings") << QByteArray("\0\xff\x01[[[", 6);
        QTest::newRow("texts") << QByteArray("[window]\ncolumns=wide, 3\nmaximized=\n[directories]\nimport=in\n"
                                             "export=..\n[files]\nrecent=list.prst\n");
        QTest::newRow("numbers") << QByteArray("[window]\ncolumns=-1, 3\n[directories]\nimport=1\n[files]\nrecent=1\n");
        QTest::newRow("too large") << QByteArray("[window]\ncolumns=99999999999, 1\n");
        QTest::newRow("other types") << QByteArray("[window]\ncolumns=@Rect(1 2 3 4)\nmaximized=@Size(1 2)\n"
                                                   "[directories]\nimport=@Rect(1 2 3 4)\n[files]\n"
                                                   "recent=@Point(1 1)\n");
    }
    void brokenValuesReadAsNone()
    {
        QFETCH(const QByteArray, text);
        QFile file(m_file);
        QVERIFY(QDir().mkpath(QFileInfo(m_file).path()) && file.open(QIODevice::WriteOnly));
        file.write(text);
        file.close();
        WindowState state(m_file);
        QCOMPARE(state.geometry(), QByteArray());
        QCOMPARE(state.splitterSizes(), QList<int>());
        QCOMPARE(state.importDirectory(), QString());
        QCOMPARE(state.exportDirectory(), QString());
        QCOMPARE(state.recentFiles(), QStringList());
        state.addRecentFile(QStringLiteral("/list.prst"));
        QCOMPARE(state.recentFiles(), QStringList{QStringLiteral("/list.prst")});
    }

    void fileThatCannotBeWrittenHurtsNobody()
    {
        QVERIFY(QDir().mkpath(m_file));
        WindowState state(m_file);
        state.setSplitterSizes({280, 512, 300});
        QCOMPARE(state.splitterSizes(), (QList<int>{280, 512, 300}));
    }

    void anotherFileIsGoneOnWith()
    {
        const QString other = m_directory->filePath(QStringLiteral("other.ini"));
        WindowState(other).addRecentFile(QStringLiteral("/other.prst"));
        WindowState state(m_file);
        state.open(other);
        QCOMPARE(state.recentFiles(), QStringList{QStringLiteral("/other.prst")});
        state.addRecentFile(QStringLiteral("/list.prst"));
        QCOMPARE(WindowState(other).recentFiles(),
            (QStringList{QStringLiteral("/list.prst"), QStringLiteral("/other.prst")}));
        QVERIFY(!QFile::exists(m_file));
    }

private:
    std::unique_ptr<QTemporaryDir> m_directory;
    QString m_file;
};

VELGOR_TEST(TestWindowState)
#include "tst_WindowState.moc"
