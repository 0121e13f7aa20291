#include "CaselessTexts.h"
#include "TestPatches.h"
#include "TestProgram.h"
#include "Utf8Text.h"

#include <QCoreApplication>
#include <QTest>

#include <algorithm>
#include <numeric>

namespace {

QByteArray keyAt(const CaselessTexts &texts, qsizetype row)
{
    const std::string_view key = texts.at(row);
    return {key.data(), static_cast<qsizetype>(key.size())};
}

} // namespace

class TestCaselessTexts : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyCharacterHasItsPlainKey()
    {
        CaselessTexts texts;
        QStringList plain;
        for (char32_t character = 0; character < 0x3000; ++character) {
            plain.append(QString::fromUcs4(&character, 1));
            texts.append(plain.last());
        }
        for (qsizetype row = 0; row < plain.size(); ++row) {
            QCOMPARE(keyAt(texts, row), Utf8Text::caselessKey(plain.at(row)));
        }
    }

    void sortedRowsAreThoseOfAStableSort_data()
    {
        QTest::addColumn<quint32>("seed");
        for (quint32 seed = 1; seed <= 10; ++seed) {
            QTest::addRow("seed %u", seed) << seed;
        }
    }

    void sortedRowsAreThoseOfAStableSort()
    {
        QFETCH(const quint32, seed);
        QRandomGenerator random(seed);
        CaselessTexts texts;
        QList<QByteArray> keys;
        for (int count = 0; count < 400; ++count) {
            // Equal beginnings of all lengths, zero characters, and what follows them.
            QString text(random.bounded(20), QChar(random.bounded(4) == 0 ? u'\0' : u'a'));
            text += TestPatches::randomText(random, 1);
            texts.append(text);
            keys.append(Utf8Text::caselessKey(text));
        }
        QList<qsizetype> rows(keys.size());
        std::iota(rows.begin(), rows.end(), 0);
        QList<qsizetype> descending = rows;
        std::stable_sort(rows.begin(), rows.end(), [&](qsizetype a, qsizetype b) { return keys.at(a) < keys.at(b); });
        std::stable_sort(
            descending.begin(), descending.end(), [&](qsizetype a, qsizetype b) { return keys.at(b) < keys.at(a); });
        QCOMPARE(texts.sortedRows(true), rows);
        QCOMPARE(texts.sortedRows(false), descending);
    }

    void textsCanBeSearchedAgainOnceHalvesOfSurrogatePairsAreGone()
    {
        const QString half(QChar(0xd83d));
        CaselessTexts texts;
        for (const QString &text : {QStringLiteral("a"), half, half}) {
            texts.append(text);
        }
        QVERIFY(!texts.canSearch(QStringLiteral("a")));
        texts.replace(1, QStringLiteral("b"));
        QVERIFY(!texts.canSearch(QStringLiteral("a")));
        texts.remove({2});
        QVERIFY(texts.canSearch(QStringLiteral("a")));
        QVERIFY(!texts.canSearch(half));
    }

    void manyEditsTakeNoMoreThanTwiceTheRoom()
    {
        QRandomGenerator random(1);
        CaselessTexts texts;
        QStringList plain;
        for (int count = 0; count < 200; ++count) {
            plain.append(TestPatches::randomText(random, 60));
            texts.append(plain.last());
        }
        for (int edit = 0; edit < 5000; ++edit) {
            const qsizetype row = random.bounded(plain.size());
            plain[row] = TestPatches::randomText(random, 60);
            texts.replace(row, plain.at(row));
        }
        qsizetype bytes = 0;
        for (qsizetype row = 0; row < plain.size(); ++row) {
            QCOMPARE(keyAt(texts, row), Utf8Text::caselessKey(plain.at(row)));
            bytes += keyAt(texts, row).size();
        }
        QVERIFY2(texts.byteCount() <= 2 * bytes + 4096, qPrintable(QString::number(texts.byteCount())));
    }
};

VELGOR_TEST(TestCaselessTexts)
#include "tst_CaselessTexts.moc"
