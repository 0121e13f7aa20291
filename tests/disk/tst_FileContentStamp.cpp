#include "FileStamp.h"
#include "LibraryDirectory.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>

/// Whether a file is still the one that was read.
class TestFileContentStamp : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void whatHappensToAFileIsSeen_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("isSameTime");
        QTest::addColumn<bool>("looksChanged");
        QTest::addColumn<bool>("isOther");
        QTest::newRow("nothing") << QByteArray() << true << false << false;
        QTest::newRow("another size") << QByteArray("longer text") << false << true << true;
        QTest::newRow("as many bytes") << QByteArray("tex2") << false << true << true;
        QTest::newRow("as many bytes, the time set back") << QByteArray("tex2") << true << true << true;
        QTest::newRow("the same bytes") << QByteArray("text") << false << true << false;
    }
    static void whatHappensToAFileIsSeen()
    {
        QFETCH(const QByteArray, bytes);
        QFETCH(const bool, isSameTime);
        const LibraryDirectory directory;
        const QString name = QStringLiteral("file");
        const QString path = directory.filePath(name);
        directory.write(name, "text");
        auto stamp = FileContentStamp::of(path);
        QVERIFY(stamp);
        stamp->setBytes("text");
        QTest::qWait(20);
        if (!bytes.isEmpty()) {
            directory.write(name, bytes);
        }
        if (isSameTime && !bytes.isEmpty()) {
            QFile file(path);
            QVERIFY(file.open(QIODevice::ReadWrite));
            QVERIFY(file.setFileTime(stamp->modified, QFileDevice::FileModificationTime));
        }
        QTEST(stamp->looksChanged(path), "looksChanged");
        QTEST(!stamp->isOf(directory.read(name)), "isOther");
    }

    static void aFileThatIsNotThereHasNone()
    {
        const LibraryDirectory directory;
        QVERIFY(!FileContentStamp::of(directory.filePath(QStringLiteral("file"))));
    }

    static void anOpenFileHasTheOneOfItsPath()
    {
        const LibraryDirectory directory;
        QFile file(directory.filePath(QStringLiteral("file")));
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && file.write("text") == 4);
        const FileContentStamp stamp = FileContentStamp::of(file);
        file.close();
        QVERIFY(!stamp.looksChanged(file.fileName()));
    }
};

VELGOR_TEST(TestFileContentStamp)
#include "tst_FileContentStamp.moc"
