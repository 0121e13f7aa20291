#include "PatchName.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>

class TestPatchName : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void fieldDecodes_data()
    {
        QTest::addColumn<QByteArray>("field");
        QTest::addColumn<QString>("name");
        const QString error = QStringLiteral("_error_");
        QTest::newRow("padded ASCII") << QByteArray("Lead") << QStringLiteral("Lead");
        QTest::newRow("zero bytes in the middle are skipped")
            << QByteArray::fromHex("414200004344") << QStringLiteral("ABCD");
        QTest::newRow("zero bytes at the start are skipped") << QByteArray::fromHex("00005A") << QStringLiteral("Z");
        QTest::newRow("sixteen zero bytes are the empty name") << QByteArray() << QString();
        QTest::newRow("all sixteen bytes") << QByteArray("0123456789ABCDEF") << QStringLiteral("0123456789ABCDEF");
        QTest::newRow("two-byte character") << QByteArray("Caf\xC3\xA9") << QStringLiteral(u"Caf\u00E9");
        QTest::newRow("two-byte character split by a zero byte")
            << QByteArray::fromHex("C300A9") << QStringLiteral(u"\u00E9");
        QTest::newRow("four-byte character") << QByteArray::fromHex("F09F8EB8") << QStringLiteral(u"\U0001F3B8");
        QTest::newRow("byte-order mark is text") << QByteArray::fromHex("EFBBBF41") << QStringLiteral(u"\uFEFFA");
        QTest::newRow("control characters are text") << QByteArray("a\tb\n") << QStringLiteral("a\tb\n");
        QTest::newRow("spaces are kept") << QByteArray("  a  ") << QStringLiteral("  a  ");
        QTest::newRow("byte that never occurs") << QByteArray::fromHex("41FF42") << error;
        QTest::newRow("cut sequence at the end") << QByteArray("0123456789ABCDE\xC3") << error;
        QTest::newRow("cut sequence before padding") << QByteArray::fromHex("41E282") << error;
        QTest::newRow("lone continuation byte") << QByteArray::fromHex("4180") << error;
        QTest::newRow("overlong form") << QByteArray::fromHex("C0AF") << error;
        QTest::newRow("surrogate") << QByteArray::fromHex("EDA080") << error;
    }

    void fieldDecodes()
    {
        QFETCH(const QByteArray, field);
        QFETCH(const QString, name);
        QCOMPARE(PatchName::getStringFrom16UInt8(field.leftJustified(16, '\0'), 16), name);
    }

    void sizeArgumentIsNotUsed()
    {
        QCOMPARE(PatchName::getStringFrom16UInt8("Lead", 0), QStringLiteral("Lead"));
        QCOMPARE(PatchName::getStringFrom16UInt8("Lead", 1000), QStringLiteral("Lead"));
    }

    void nameEncodes_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("field");
        QTest::newRow("Lead and twelve zero bytes")
            << QStringLiteral("Lead") << QByteArray("Lead").leftJustified(16, '\0');
        QTest::newRow("empty") << QString() << QByteArray(16, '\0');
        QTest::newRow("seventeenth character is dropped")
            << QStringLiteral("0123456789ABCDEFG") << QByteArray("0123456789ABCDEF");
        QTest::newRow("sixteen two-byte characters are not cut")
            << QString(16, u'\u00E9') << QByteArray("\xC3\xA9").repeated(16);
        QTest::newRow("pairs count as one character")
            << QStringLiteral(u"\U0001F3B8").repeated(17) << QByteArray::fromHex("F09F8EB8").repeated(16);
    }

    void nameEncodes()
    {
        QFETCH(const QString, name);
        QFETCH(const QByteArray, field);
        QCOMPARE(PatchName::encodeField(name), field);
    }

    void nameIsFitted_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("fitted");
        QTest::newRow("short name stays") << QStringLiteral("Lead") << QStringLiteral("Lead");
        QTest::newRow("sixteen bytes stay") << QStringLiteral("0123456789ABCDEF") << QStringLiteral("0123456789ABCDEF");
        QTest::newRow("seventeenth byte goes")
            << QStringLiteral("0123456789ABCDEFG") << QStringLiteral("0123456789ABCDEF");
        QTest::newRow("eight two-byte characters fit") << QString(9, u'\u00E9') << QString(8, u'\u00E9');
        QTest::newRow("character across the end goes whole")
            << QStringLiteral(u"0123456789ABCDE\u00E9") << QStringLiteral("0123456789ABCDE");
        QTest::newRow("nothing after the one that does not fit")
            << QStringLiteral(u"0123456789ABCD\U0001F3B8z") << QStringLiteral("0123456789ABCD");
        QTest::newRow("four four-byte characters fit")
            << QStringLiteral(u"\U0001F3B8").repeated(5) << QStringLiteral(u"\U0001F3B8").repeated(4);
        QTest::newRow("NUL is left out before cutting")
            << QString(QStringLiteral("01234567") + QChar(u'\0') + QStringLiteral("89ABCDEFG"))
            << QStringLiteral("0123456789ABCDEF");
        QTest::newRow("empty") << QString() << QString();
    }

    void nameIsFitted()
    {
        QFETCH(const QString, name);
        QFETCH(const QString, fitted);
        QCOMPARE(PatchName::fitted(name), fitted);
        QCOMPARE(PatchName::encodeField(fitted).size(), PatchName::fieldSize);
        QCOMPARE(PatchName::getStringFrom16UInt8(PatchName::encodeField(fitted), 16), fitted);
    }
};

VELGOR_TEST(TestPatchName)
#include "tst_PatchName.moc"
