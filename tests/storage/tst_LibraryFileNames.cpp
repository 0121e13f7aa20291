#include "LibraryFileNames.h"
#include "LibraryPlace.h"
#include "TemporaryFiles.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QTest>

using namespace LibraryFileNames;

class TestLibraryFileNames : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void patchFileIsNamedByNameAndId_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<quint64>("id");
        QTest::addColumn<QString>("file");
        QTest::newRow("plain") << QStringLiteral("Lead") << quint64(42) << QStringLiteral("lib-Lead.42.prst");
        QTest::newRow("slash") << QStringLiteral("A/B") << quint64(42) << QStringLiteral("lib-A$B.42.prst");
        QTest::newRow("only slashes") << QStringLiteral("///") << quint64(1) << QStringLiteral("lib-$$$.1.prst");
        QTest::newRow("empty") << QString() << quint64(0) << QStringLiteral("lib-.0.prst");
        QTest::newRow("largest id") << QStringLiteral("x") << ~quint64(0)
                                    << QStringLiteral("lib-x.18446744073709551615.prst");
        QTest::newRow("NUL") << QString(QStringLiteral("a") + QChar(u'\0') + QStringLiteral("b")) << quint64(7)
                             << QStringLiteral("lib-ab.7.prst");
        QTest::newRow("newline") << QStringLiteral("a\nb") << quint64(7) << QStringLiteral("lib-a\nb.7.prst");
        QTest::newRow("backslash") << QStringLiteral("a\\b") << quint64(7) << QStringLiteral("lib-a\\b.7.prst");
        QTest::newRow("directories") << QStringLiteral("../..") << quint64(7) << QStringLiteral("lib-..$...7.prst");
        QTest::newRow("half a surrogate pair") << QString(QStringLiteral("a") + QChar(0xD83C) + QStringLiteral("b"))
                                               << quint64(7) << QStringLiteral("lib-a?b.7.prst");
        QTest::newRow("emoji") << QString::fromUtf8("🎸") << quint64(7) << QString::fromUtf8("lib-🎸.7.prst");
    }
    static void patchFileIsNamedByNameAndId()
    {
        QFETCH(const QString, name);
        QFETCH(const quint64, id);
        QTEST(patchFile(name, id), "file");
        QCOMPARE(patchFileId(patchFile(name, id)), std::optional(id));
    }

    static void longNameIsShortenedToWholeCharacters_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("least");
        QTest::newRow("one byte each") << QString(400, u'x') << 255;
        QTest::newRow("two bytes each") << QString(400, QChar(0xE9)) << 254;
        QTest::newRow("four bytes each") << QString::fromUtf8("🎸").repeated(100) << 252;
    }
    static void longNameIsShortenedToWholeCharacters()
    {
        QFETCH(const QString, name);
        QFETCH(const int, least);
        for (const quint64 id : {quint64(7), ~quint64(0)}) {
            const QString file = patchFile(name, id);
            QVERIFY(file.toUtf8().size() <= 255);
            QVERIFY(file.toUtf8().size() >= least);
            QCOMPARE(patchFileId(file), std::optional(id));
            QVERIFY(QString::fromUtf8(file.toUtf8()) == file);
            const QString end = u'.' + QString::number(id) + QStringLiteral(".prst");
            QVERIFY(name.startsWith(file.sliced(4).chopped(end.size())));
        }
    }

    static void longestNameThatFitsIsNotShortened()
    {
        const QString name(255 - 4 - 7, u'x');
        QCOMPARE(patchFile(name, 7), QStringLiteral("lib-") + name + QStringLiteral(".7.prst"));
        QCOMPARE(patchFile(name + u'y', 7), patchFile(name, 7));
    }

    static void onlyNamesOfPatchFilesHaveAnId_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<qint64>("id");
        QTest::newRow("patch file") << QStringLiteral("lib-Lead.42.prst") << qint64(42);
        QTest::newRow("another id inside") << QStringLiteral("lib-Amp.42.x.77.prst") << qint64(77);
        QTest::newRow("no prefix") << QStringLiteral("x.42.prst") << qint64(-1);
        QTest::newRow("other case") << QStringLiteral("Lib-x.42.prst") << qint64(-1);
        QTest::newRow("other suffix") << QStringLiteral("lib-x.42.txt") << qint64(-1);
        QTest::newRow("something behind") << QStringLiteral("lib-x.42.prst.bak") << qint64(-1);
        QTest::newRow("no id") << QStringLiteral("lib-x..prst") << qint64(-1);
        QTest::newRow("no dot before the id") << QStringLiteral("lib-42.prst") << qint64(-1);
        QTest::newRow("leading zero") << QStringLiteral("lib-x.042.prst") << qint64(-1);
        QTest::newRow("sign") << QStringLiteral("lib-x.+42.prst") << qint64(-1);
        QTest::newRow("space") << QStringLiteral("lib-x. 42.prst") << qint64(-1);
        QTest::newRow("more than 64 bits") << QStringLiteral("lib-x.18446744073709551616.prst") << qint64(-1);
        QTest::newRow("other digits") << QString::fromUtf8("lib-x.٤٢.prst") << qint64(-1);
    }
    static void onlyNamesOfPatchFilesHaveAnId()
    {
        QFETCH(const QString, file);
        QFETCH(const qint64, id);
        QCOMPARE(patchFileId(file), id < 0 ? std::nullopt : std::optional(quint64(id)));
    }

    static void everyNumberBetweenDotsIsAnId_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QList<quint64>>("ids");
        QTest::newRow("none") << QStringLiteral("notes.txt") << QList<quint64>();
        QTest::newRow("patch file") << QStringLiteral("lib-x.42.prst") << QList<quint64>{42};
        QTest::newRow("user's file") << QStringLiteral("notes.42.txt") << QList<quint64>{42};
        QTest::newRow("neighbours share a dot") << QStringLiteral("a.1.2.3.b") << QList<quint64>{1, 2, 3};
        QTest::newRow("twice") << QStringLiteral("a.7.7.b") << QList<quint64>{7};
        QTest::newRow("in a directory") << QStringLiteral("d.5.e/x.6.y") << QList<quint64>{5, 6};
        QTest::newRow("across a slash") << QStringLiteral("d.5/6.y") << QList<quint64>();
        QTest::newRow("at the end") << QStringLiteral("x.5") << QList<quint64>();
        QTest::newRow("at the start") << QStringLiteral("5.x") << QList<quint64>();
        QTest::newRow("hidden") << QStringLiteral(".5.x") << QList<quint64>{5};
        QTest::newRow("zero") << QStringLiteral("x.0.y") << QList<quint64>{0};
        QTest::newRow("leading zeros") << QStringLiteral("x.05.00.y") << QList<quint64>();
        QTest::newRow("largest") << QStringLiteral("x.18446744073709551615.y") << QList<quint64>{~quint64(0)};
        QTest::newRow("too large") << QStringLiteral("x.18446744073709551616.y") << QList<quint64>();
    }
    static void everyNumberBetweenDotsIsAnId()
    {
        QFETCH(const QString, path);
        const PathIds ids = idsIn(path);
        QTEST(QList<quint64>(ids.begin(), ids.end()), "ids");
    }

    static void ownFilesAreReservedAndHoldNoId()
    {
        for (const QString &name : {libraryFile(), libraryCopy(), lockFile(),
                 TemporaryFiles::prefix() + QStringLiteral("42"), datedCopy(0), datedCopy(42), datedCopy(12345)}) {
            QVERIFY2(isReserved(name), qPrintable(name));
            QVERIFY(idsIn(name).isEmpty());
            QCOMPARE(patchFileId(name), std::nullopt);
        }
    }

    static void usersOwnFilesAreNotReserved()
    {
        for (const char *name : {"velgorlibrary-backup.json", "velgorlibrary.json.bak", "velgorlibrary-2024.json",
                 "velgorlibrary-20240101T000000.json", "my-velgorlibrary-20240101T000000-00.json",
                 "velgorlibrary-20240101T000000-00.json.bak", "lib-velgorlibrary.42.prst", "notes.42.txt"}) {
            QVERIFY2(!isReserved(QString::fromLatin1(name)), name);
        }
    }

    static void datedCopiesOfOneSecondDiffer()
    {
        QVERIFY(isDatedCopy(datedCopy(0)));
        QVERIFY(datedCopy(0) != datedCopy(1));
        static const QRegularExpression idBetweenDots(QStringLiteral("\\.\\d+\\."));
        QVERIFY(!idBetweenDots.match(datedCopy(7)).hasMatch());
    }

    static void directoryIsListableWhenItsPathNeedsNoEncoding_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("isListable");
        QTest::newRow("plain") << QStringLiteral("/home/user/Documents/VelgorLibrary") << true;
        QTest::newRow("space") << QStringLiteral("/home/user/My Documents") << false;
        QTest::newRow("percent sign") << QStringLiteral("/home/user/100%") << false;
        QTest::newRow("looks encoded") << QStringLiteral("/home/user/My%20Documents") << false;
        QTest::newRow("umlaut") << QString::fromUtf8("/home/jürgen/x") << false;
        QTest::newRow("question mark") << QStringLiteral("/home/user/what?") << false;
        QTest::newRow("number sign") << QStringLiteral("/home/user/C#") << false;
    }
    static void directoryIsListableWhenItsPathNeedsNoEncoding()
    {
        QFETCH(const QString, path);
        QTEST(LibraryPlace::isListable(path), "isListable");
    }

    static void addressIsAnEncodedFileAddress()
    {
        QCOMPARE(address(QStringLiteral("/a b/lib-A$B.42.prst")), QStringLiteral("file:///a%20b/lib-A$B.42.prst"));
    }
};

VELGOR_TEST(TestLibraryFileNames)
#include "tst_LibraryFileNames.moc"
