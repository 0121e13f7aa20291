#include "LibraryJournal.h"
#include "TemporaryFiles.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>

#include <limits>

namespace {

LibraryJournal journal()
{
    const QString name = TemporaryFiles::prefix();
    return {.staged = {{0, name + QStringLiteral("a")}, {std::numeric_limits<quint64>::max(), name}},
        .removed = {42, 18'446'744'073'709'551'614U}};
}

} // namespace

class TestLibraryJournal : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void whatIsWrittenIsRead()
    {
        QCOMPARE(LibraryJournal::decode(journal().encode()), std::optional(journal()));
        QCOMPARE(LibraryJournal::decode(LibraryJournal().encode()), std::optional(LibraryJournal()));
    }

    static void cutJournalIsNone()
    {
        const QByteArray text = journal().encode();
        for (qsizetype size = 0; size < text.size(); ++size) {
            QVERIFY(!LibraryJournal::decode(text.first(size)));
        }
    }

    static void journalOfAnythingButTemporaryFilesIsNone_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("library file") << QByteArray("put 1 velgorlibrary.json\nend\n");
        QTest::newRow("other directory") << QByteArray("put 1 .velgor-writing-/../../x\nend\n");
        QTest::newRow("no name") << QByteArray("put 1\nend\n");
        QTest::newRow("no id") << QByteArray("put x .velgor-writing-1\nend\n");
        QTest::newRow("id beyond 64 bits") << QByteArray("remove 18446744073709551616\nend\n");
        QTest::newRow("negative id") << QByteArray("remove -1\nend\n");
        QTest::newRow("unknown word") << QByteArray("move 1\nend\n");
        QTest::newRow("empty line") << QByteArray("\nend\n");
        QTest::newRow("text after the end") << QByteArray("end\nremove 1\n");
    }
    static void journalOfAnythingButTemporaryFilesIsNone()
    {
        QFETCH(const QByteArray, text);
        QVERIFY(!LibraryJournal::decode(text));
    }
};

VELGOR_TEST(TestLibraryJournal)
#include "tst_LibraryJournal.moc"
