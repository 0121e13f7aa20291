#include "LookTokens.h"
#include "SystemColorScheme.h"
#include "TestProgram.h"

#include <QApplication>
#include <QDBusVariant>
#include <QSignalSpy>
#include <QTest>

using Preference = SystemColorScheme::Preference;

class TestSystemColorScheme : public QObject {
    Q_OBJECT

private:
    static void tell(SystemColorScheme &scheme, const QString &group, const QString &key, const QVariant &value)
    {
        QMetaObject::invokeMethod(&scheme, "adoptSetting", Q_ARG(QString, group), Q_ARG(QString, key),
            Q_ARG(QDBusVariant, QDBusVariant(value)));
    }

private Q_SLOTS:
    // What the desktop of the machine prefers must not decide here.
    void initTestCase()
    {
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
        qputenv("XDG_RUNTIME_DIR", "/nonexistent");
    }

    void startsWithTheLightnessOfThePalette()
    {
        QApplication::setPalette(LookTokens::dark().palette());
        const SystemColorScheme dark;
        QVERIFY(dark.isDark());
        QApplication::setPalette(LookTokens::light().palette());
        const SystemColorScheme light;
        QVERIFY(!light.isDark());
    }

    void ownSchemeDoesNotCount()
    {
        QApplication::setPalette(LookTokens::light().palette());
        const SystemColorScheme scheme;
        applyLook(true);
        QVERIFY(!scheme.isDark());
    }

    void preferenceOutweighsThePalette()
    {
        QApplication::setPalette(LookTokens::light().palette());
        SystemColorScheme scheme;
        QSignalSpy changes(&scheme, &SystemColorScheme::changed);
        scheme.setPreference(Preference::Dark);
        QVERIFY(scheme.isDark());
        QCOMPARE(changes.count(), 1);
        scheme.setPalette(LookTokens::dark().palette());
        QCOMPARE(changes.count(), 1);
        scheme.setPreference(Preference::None);
        QVERIFY(scheme.isDark());
        QCOMPARE(changes.count(), 1);
        scheme.setPreference(Preference::Light);
        QVERIFY(!scheme.isDark());
        QCOMPARE(changes.count(), 2);
    }

    void desktopSettingIsTaken_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<bool>("dark");
        QTest::newRow("dark") << QVariant(1U) << true;
        QTest::newRow("light") << QVariant(2U) << false;
        QTest::newRow("no preference") << QVariant(0U) << false;
        QTest::newRow("unknown") << QVariant(77U) << false;
        QTest::newRow("text") << QVariant(QStringLiteral("dark")) << false;
        QTest::newRow("wrapped") << QVariant::fromValue(QDBusVariant(QVariant(1U))) << true;
    }

    void desktopSettingIsTaken()
    {
        QFETCH(const QVariant, value);
        QFETCH(const bool, dark);
        QApplication::setPalette(LookTokens::light().palette());
        SystemColorScheme scheme;
        tell(scheme, QStringLiteral("org.freedesktop.appearance"), QStringLiteral("color-scheme"), value);
        QCOMPARE(scheme.isDark(), dark);
    }

    void otherSettingsAreNot()
    {
        QApplication::setPalette(LookTokens::light().palette());
        SystemColorScheme scheme;
        tell(scheme, QStringLiteral("org.freedesktop.appearance"), QStringLiteral("accent-color"), 1U);
        tell(scheme, QStringLiteral("org.example.appearance"), QStringLiteral("color-scheme"), 1U);
        QVERIFY(!scheme.isDark());
    }
};

VELGOR_WIDGET_TEST(TestSystemColorScheme)
#include "tst_SystemColorScheme.moc"
