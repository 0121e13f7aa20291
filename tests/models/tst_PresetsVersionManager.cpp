#include "PresetsVersionManager.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>

class TestPresetsVersionManager : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { PresetsVersionManager::reset(); }

    void versionsAreNumberedAsTheyAreMet()
    {
        QCOMPARE(PresetsVersionManager::versionId(QStringLiteral("A")), 1);
        QCOMPARE(PresetsVersionManager::versionId(QStringLiteral("B")), 2);
        QCOMPARE(PresetsVersionManager::versionId(QStringLiteral("A")), 1);
        QCOMPARE(PresetsVersionManager::versionId(QStringLiteral("C")), 3);
    }

    void letterCaseCounts()
    {
        QVERIFY(PresetsVersionManager::versionId(QStringLiteral("v1.20"))
            != PresetsVersionManager::versionId(QStringLiteral("V1.20")));
    }

    void theFirstVersionHasTheAccentColour_data()
    {
        QTest::addColumn<QString>("version");
        QTest::newRow("no version") << "!NONE";
        QTest::newRow("unreadable") << "xxxxx";
        QTest::newRow("empty") << "";
        QTest::newRow("usual") << "V1.20";
    }

    void theFirstVersionHasTheAccentColour()
    {
        QFETCH(const QString, version);
        QVERIFY(!PresetsVersionManager::getColor(PresetsVersionManager::versionId(version)));
        QVERIFY(PresetsVersionManager::getColor(PresetsVersionManager::versionId(QStringLiteral("next"))));
    }

    void colourOfAnId_data()
    {
        QTest::addColumn<int>("id");
        QTest::addColumn<double>("red");
        QTest::addColumn<double>("green");
        QTest::addColumn<double>("blue");
        QTest::newRow("2") << 2 << 0.764 << 0.025 << 0.456;
        QTest::newRow("3") << 3 << 0.456 << 0.316 << 0.097;
        QTest::newRow("0") << 0 << 0.4 << 0.428 << 0.737;
    }

    void colourOfAnId()
    {
        QFETCH(const int, id);
        QFETCH(const double, red);
        QFETCH(const double, green);
        QFETCH(const double, blue);
        const auto color = PresetsVersionManager::getColor(id);
        QVERIFY(color);
        QVERIFY(std::abs(color->red - red) < 0.0006);
        QVERIFY(std::abs(color->green - green) < 0.0006);
        QVERIFY(std::abs(color->blue - blue) < 0.0006);
    }

    void componentsStayWithinTheirRange()
    {
        for (int id = 2; id < 10000; ++id) {
            const auto color = PresetsVersionManager::getColor(id);
            for (const double component : {color->red, color->green, color->blue}) {
                QVERIFY(component >= 0.0 && component <= 0.8);
            }
        }
    }

    void badgeShowsTheLastThreeCharacters_data()
    {
        QTest::addColumn<int>("id");
        QTest::addColumn<QString>("text");
        QTest::newRow("one digit") << 7 << " 7 ";
        QTest::newRow("two digits") << 12 << "12 ";
        QTest::newRow("three digits") << 123 << "23 ";
        QTest::newRow("four digits") << 1234 << "34 ";
    }

    void badgeShowsTheLastThreeCharacters()
    {
        QFETCH(const int, id);
        QTEST(PresetsVersionManager::badgeText(id), "text");
    }
};

VELGOR_TEST(TestPresetsVersionManager)
#include "tst_PresetsVersionManager.moc"
