#include "TestProgram.h"
#include "Utf8Text.h"

#include <QCoreApplication>
#include <QTest>

class TestUtf8Text : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void validBytesDecode_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << QByteArray() << QString();
        QTest::newRow("ASCII") << QByteArray("V1.20") << QStringLiteral("V1.20");
        QTest::newRow("NUL is a character") << QByteArray(1, '\0') << QString(1, QChar(u'\0'));
        QTest::newRow("leading byte-order mark is kept")
            << QByteArray::fromHex("EFBBBF41") << QStringLiteral(u"\uFEFFA");
        QTest::newRow("both of two leading byte-order marks are kept")
            << QByteArray::fromHex("EFBBBFEFBBBF41") << QStringLiteral(u"\uFEFF\uFEFFA");
        QTest::newRow("byte-order mark alone") << QByteArray::fromHex("EFBBBF") << QStringLiteral(u"\uFEFF");
        QTest::newRow("smallest two-byte form") << QByteArray::fromHex("C280") << QString(QChar(u'\x80'));
        QTest::newRow("smallest three-byte form") << QByteArray::fromHex("E0A080") << QStringLiteral(u"\u0800");
        QTest::newRow("last before the surrogates") << QByteArray::fromHex("ED9FBF") << QStringLiteral(u"\uD7FF");
        QTest::newRow("first after the surrogates") << QByteArray::fromHex("EE8080") << QStringLiteral(u"\uE000");
        QTest::newRow("noncharacter U+FFFF") << QByteArray::fromHex("EFBFBF") << QStringLiteral(u"\uFFFF");
        QTest::newRow("replacement character itself") << QByteArray::fromHex("EFBFBD") << QStringLiteral(u"\uFFFD");
        QTest::newRow("smallest four-byte form") << QByteArray::fromHex("F0908080") << QStringLiteral(u"\U00010000");
        QTest::newRow("U+10FFFF") << QByteArray::fromHex("F48FBFBF") << QStringLiteral(u"\U0010FFFF");
    }

    void validBytesDecode()
    {
        QFETCH(const QByteArray, bytes);
        QFETCH(const QString, text);
        const auto decoded = Utf8Text::decode(bytes);
        QVERIFY(decoded);
        QCOMPARE(*decoded, text);
        QCOMPARE(decoded->toUtf8(), bytes);
    }

    void invalidBytesGiveNothing_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("lone continuation byte") << QByteArray::fromHex("80");
        QTest::newRow("two-byte form cut") << QByteArray::fromHex("C3");
        QTest::newRow("three-byte form cut after one") << QByteArray::fromHex("41E2");
        QTest::newRow("three-byte form cut after two") << QByteArray::fromHex("41E282");
        QTest::newRow("four-byte form cut after three") << QByteArray::fromHex("F09F8E");
        QTest::newRow("three-byte form cut by a letter") << QByteArray::fromHex("E28241");
        QTest::newRow("overlong two-byte form") << QByteArray::fromHex("C0AF");
        QTest::newRow("overlong two-byte form, C1") << QByteArray::fromHex("C1BF");
        QTest::newRow("overlong three-byte form") << QByteArray::fromHex("E09FBF");
        QTest::newRow("overlong four-byte form") << QByteArray::fromHex("F08FBFBF");
        QTest::newRow("overlong NUL") << QByteArray::fromHex("C080");
        QTest::newRow("first surrogate") << QByteArray::fromHex("EDA080");
        QTest::newRow("last surrogate") << QByteArray::fromHex("EDBFBF");
        QTest::newRow("surrogate pair") << QByteArray::fromHex("EDA0BCEDBEB8");
        QTest::newRow("above U+10FFFF") << QByteArray::fromHex("F4908080");
        QTest::newRow("F5") << QByteArray::fromHex("F5808080");
        QTest::newRow("five-byte form") << QByteArray::fromHex("F888808080");
        QTest::newRow("FE FF") << QByteArray::fromHex("FEFF");
        QTest::newRow("good text around a bad byte") << QByteArray::fromHex("4142FF4344");
    }

    void invalidBytesGiveNothing()
    {
        QFETCH(const QByteArray, bytes);
        QVERIFY(!Utf8Text::decode(bytes));
        QVERIFY(!Utf8Text::decode("text before that is long enough for a fast path " + bytes));
    }

    void firstCharactersCountsCodePoints()
    {
        const QString text = QStringLiteral(u"a\U0001F3B8\u00E9b");
        QCOMPARE(Utf8Text::firstCharacters(text, 0), QString());
        QCOMPARE(Utf8Text::firstCharacters(text, 1), QStringLiteral("a"));
        QCOMPARE(Utf8Text::firstCharacters(text, 2), QStringLiteral(u"a\U0001F3B8"));
        QCOMPARE(Utf8Text::firstCharacters(text, 3), QStringLiteral(u"a\U0001F3B8\u00E9"));
        QCOMPARE(Utf8Text::firstCharacters(text, 4), text);
        QCOMPARE(Utf8Text::firstCharacters(text, 5), text);
        QCOMPARE(Utf8Text::firstCharacters(QString(), 5), QString());
    }

    void longestPrefixKeepsWholeCharacters()
    {
        const QString text = QStringLiteral(u"a\U0001F3B8\u00E9b"); // 1, 4, 2 and 1 bytes
        const QList<qsizetype> expectedUnits{0, 1, 1, 1, 1, 3, 3, 4, 5, 5};
        for (qsizetype limit = 0; limit < expectedUnits.size(); ++limit) {
            QCOMPARE(Utf8Text::longestPrefixWithin(text, limit), text.left(expectedUnits.at(limit)));
        }
    }

    void caselessKeyIgnoresCase_data()
    {
        QTest::addColumn<QString>("one");
        QTest::addColumn<QString>("other");
        QTest::newRow("ASCII") << QStringLiteral("LEAD") << QStringLiteral("lead");
        QTest::newRow("accents") << QStringLiteral(u"\u00C9T\u00C9") << QStringLiteral(u"\u00E9t\u00E9");
        QTest::newRow("Greek") << QStringLiteral(u"\u03A9") << QStringLiteral(u"\u03C9");
        QTest::newRow("letters beyond U+FFFF") << QStringLiteral(u"\U00010400") << QStringLiteral(u"\U00010428");
    }

    void caselessKeyIgnoresCase()
    {
        QFETCH(const QString, one);
        QFETCH(const QString, other);
        QCOMPARE(Utf8Text::caselessKey(one), Utf8Text::caselessKey(other));
    }

    void caselessKeyOrdersByCodePoint()
    {
        const QString fullWidth = QStringLiteral(u"\uFF41");
        const QString guitar = QStringLiteral(u"\U0001F3B8");
        QVERIFY(guitar < fullWidth); // as UTF-16 units
        QVERIFY(Utf8Text::caselessKey(fullWidth) < Utf8Text::caselessKey(guitar));
        QVERIFY(Utf8Text::caselessKey(QStringLiteral("Z")) < Utf8Text::caselessKey(QStringLiteral(u"\u00E4")));
        QVERIFY(Utf8Text::caselessKey(QStringLiteral("ab")) > Utf8Text::caselessKey(QStringLiteral("A")));
    }
};

VELGOR_TEST(TestUtf8Text)
#include "tst_Utf8Text.moc"
