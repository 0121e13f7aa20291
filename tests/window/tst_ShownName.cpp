#include "AlertTexts.h"
#include "ShownName.h"
#include "StatusText.h"
#include "TestDesk.h"
#include "TestProgram.h"

namespace {

/// "Guitar" in Hebrew.
const QString rightToLeft = QString::fromUtf8("\u05d2\u05d9\u05d8\u05e8\u05d4");
const QString isolatedName = u'\u2068' + rightToLeft + u'\u2069';

} // namespace

class TestShownName : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aTextFromElsewhereKeepsItsDirectionToItself_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("shown");
        QTest::newRow("left to right") << QStringLiteral("Lead (2)") << QStringLiteral("Lead (2)");
        QTest::newRow("right to left") << rightToLeft << isolatedName;
        QTest::newRow("mixed") << QString(u'2' + rightToLeft)
                               << QString(QChar(0x2068) + QStringLiteral("2") + rightToLeft + u'\u2069');
        QTest::newRow("an override left open")
            << QString(QChar(0x202e) + QStringLiteral("Lead")) << QStringLiteral("Lead");
        QTest::newRow("an end of what was begun outside")
            << QString(rightToLeft + QChar(0x2069) + u'!') << QString(u'\u2068' + rightToLeft + u'!' + u'\u2069');
        QTest::newRow("a name isolated before")
            << QString(QStringLiteral("Lead ") + isolatedName)
            << QString(u'\u2068' + QStringLiteral("Lead ") + isolatedName + u'\u2069');
        QTest::newRow("nested, one left open")
            << QString(QStringLiteral("\u2068a\u2068b\u2069c\u2068")) << QString(QStringLiteral("a\u2068b\u2069c"));
        QTest::newRow("nothing") << QString() << QString();
    }

    void aTextFromElsewhereKeepsItsDirectionToItself()
    {
        QFETCH(const QString, text);
        QFETCH(const QString, shown);
        QCOMPARE(isolated(text), shown);
        QCOMPARE(shownName(text), shown);
        QCOMPARE(shownPath(text), shown);
    }

    void sentencesStayLeftToRight()
    {
        TestDesk desk(rightToLeft);
        desk.select(0);
        const QString path = QStringLiteral("/lists/") + rightToLeft;
        for (const QString &sentence : {AlertTexts::deleteConfirm(desk.library, desk.libraryEditor).text,
                 AlertTexts::replaceUnexported(path).text, AlertTexts::severalFiles({path, path}, false).text,
                 AlertTexts::directoryInUse(rightToLeft + QStringLiteral(": 3 patches")).text,
                 AlertTexts::cannotShowDirectory(path).text, StatusText::ofDuplicates(rightToLeft, 1),
                 StatusText::ofPatchMove(rightToLeft, 2, 10), StatusText::ofExport(3, path),
                 StatusText::ofPatchExport(rightToLeft, path)}) {
            QVERIFY2(!sentence.isRightToLeft(), qPrintable(sentence));
            const auto count = sentence.count(rightToLeft);
            QVERIFY2(count > 0, qPrintable(sentence));
            QCOMPARE(sentence.count(u'\u2068'), count);
            QCOMPARE(sentence.count(u'\u2069'), count);
        }
    }

    void aProblemThatIsASentenceKeepsItsDirection()
    {
        TestDesk desk;
        const VelgorPatch patch(rightToLeft, false);
        QVERIFY(!desk.contentFiles.exportPatch(patch));
        const QString expected =
            QStringLiteral("The patch \"%1\" holds no preset data that could be exported.").arg(isolatedName);
        QCOMPARE(desk.contentFiles.problem(), expected);
        const QString text = AlertTexts::saveError(desk.contentFiles.problem()).text;
        QVERIFY2(text.contains(expected), qPrintable(text));
        QVERIFY(!text.isRightToLeft());
    }

    void aLongPathLacksItsMiddle()
    {
        const QString path = QStringLiteral("/start") + QString(4'000, u'x') + QStringLiteral("/end.prst");
        const QString shown = shownPath(path);
        QVERIFY(shown.size() < 130);
        QVERIFY(shown.startsWith(QStringLiteral("/start")) && shown.endsWith(QStringLiteral("/end.prst")));
        QCOMPARE(shown.count(u'\u2026'), 1);
        // Whole characters, however they are stored.
        const QString faces = QString::fromUtf8("\U0001f3b8").repeated(500);
        QVERIFY(shownPath(faces).isValidUtf16());
        QVERIFY(shownName(faces).isValidUtf16());
    }

    void aLongNameIsCutAtItsEnd()
    {
        QCOMPARE(shownName(QString(81, u'n')), QString(80, u'n') + u'\u2026');
        QCOMPARE(shownName(QString(80, u'n')), QString(80, u'n'));
        QCOMPARE(shownName(QStringLiteral("two\nlines")), QStringLiteral("two lines"));
    }
};

VELGOR_TEST(TestShownName)
#include "tst_ShownName.moc"
