#include "CommandFixture.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>

/// The commands that change patches: several at once, names that do not fit, and what is said of it.
class TestChangeCommands : public QObject, private CommandFixture {
    Q_OBJECT

private:
    [[nodiscard]] static QStringList warnings(const VelgorProcess::Result &result)
    {
        return result.errorLines().filter(QStringLiteral("velgor: warning: "));
    }

private Q_SLOTS:
    void init() { startWithSample(); }

    void nameLongerThanTheFieldWarns_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("shown");
        QTest::newRow("fits") << "0123456789abcdef" << QString();
        QTest::newRow("one too many") << "0123456789abcdefg"
                                      << "0123456789abcdef";
        QTest::newRow("fits in characters, not in bytes")
            << QString::fromUtf8("東京の夜景色") << QString::fromUtf8("東京の夜景");
        QTest::newRow("an escape of a terminal") << QStringLiteral("0123456789abcd\x1b[2J") << "0123456789abcd\\u{1b}[";
    }
    void nameLongerThanTheFieldWarns()
    {
        QFETCH(const QString, name);
        QFETCH(const QString, shown);
        const auto check = [&shown](const VelgorProcess::Result &result) {
            QCOMPARE(result.status, 0);
            const QStringList lines = warnings(result);
            QCOMPARE(lines.size(), shown.isEmpty() ? 0 : 1);
            QVERIFY(shown.isEmpty() || lines.first().endsWith(u'"' + shown + u'"'));
        };
        check(library(QStringLiteral("set|%1|--name|%2|--default").arg(lead, name)));
        QVERIFY(patch(lead).at("name") == name.toStdString());
        check(library(QStringLiteral("export|%1|%2|%1|-o|-").arg(lead, slashed)));
        check(library(QStringLiteral("compose|-o|-")));
        // What has nothing to do with the name says nothing of it.
        QCOMPARE(warnings(library(QStringLiteral("set|%1|--solo|on").arg(lead))), QStringList());
        QCOMPARE(warnings(library(QStringLiteral("export|%1|-o|-").arg(slashed))), QStringList());
    }

    void severalPatchesAreSetAtOnce()
    {
        const Json before = patch(accented);
        const auto result =
            library(QStringLiteral("set|%1|%2|%1|--guitar|off|--solo|on|--comment|x").arg(lead, slashed));
        QCOMPARE(result.status, 0);
        for (const QString &id : {lead, slashed}) {
            const Json changed = patch(id);
            QVERIFY(changed.at("guitar") == false && changed.at("solo") == true && changed.at("comment") == "x");
        }
        QCOMPARE(patch(accented).dump(), before.dump());
        QVERIFY(patch(lead).at("drive") == true && patch(slashed).at("bass") == true);
        // One line for each, whatever was said of patch files meanwhile.
        QCOMPARE(QString::fromUtf8(result.output),
            QStringLiteral("changed  %1   Lead\nchanged  %2   A/B\n").arg(lead, slashed));
    }

    void changeOfNoneOrOfOneOnlyIsRefused_data()
    {
        QTest::addColumn<QString>("arguments");
        QTest::newRow("unknown id last") << "set|LEAD|SLASHED|12345|--guitar|off";
        QTest::newRow("no id last") << "set|LEAD|Lead|--guitar|off";
        QTest::newRow("no id at all") << "set|--guitar|off";
        QTest::newRow("wrong value") << "set|LEAD|SLASHED|--guitar|off|--solo|maybe";
        QTest::newRow("one name for two") << "set|LEAD|SLASHED|--name|x";
        QTest::newRow("two defaults") << "set|LEAD|SLASHED|--default";
        QTest::newRow("no name") << "set|LEAD|--name|";
        QTest::newRow("blank name") << "set|LEAD|--name|  ";
    }
    void changeOfNoneOrOfOneOnlyIsRefused()
    {
        QFETCH(QString, arguments);
        arguments.replace(QStringLiteral("LEAD"), lead).replace(QStringLiteral("SLASHED"), slashed);
        const auto before = m_directory->stamps();
        const auto result = library(arguments);
        QCOMPARE(result.status, 2);
        QCOMPARE(result.output, QByteArray());
        QVERIFY2(result.errors.contains("velgor: "), result.errors.constData());
        QCOMPARE(m_directory->stamps(), before);
    }

    void removedPatchesAreNamed()
    {
        const auto result = library(QStringLiteral("remove|%1|%2|%1").arg(accented, lead));
        QCOMPARE(result.status, 0);
        QCOMPARE(QString::fromUtf8(result.output),
            QString::fromUtf8("removed  %1  Größe\nremoved  %2   Lead\n").arg(accented, lead));
    }
};

VELGOR_TEST(TestChangeCommands)
#include "tst_ChangeCommands.moc"
