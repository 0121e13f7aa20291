#include "LookTokens.h"
#include "ShownWidgets.h"
#include "TestLibraries.h"
#include "TestProgram.h"
#include "WindowFixture.h"

#include <QAction>
#include <QApplication>

using namespace ShownWidgets;

class TestColorSchemes : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theSchemeChangesAtOnceAndIsRemembered()
    {
        const LibraryDirectory directory;
        {
            WindowFixture window(directory);
            QVERIFY(window.open());
            window.systemColorScheme.setPreference(SystemColorScheme::Preference::Light);
            QVERIFY(!LookTokens::current().isDark);
            const QColor light = window.window->palette().color(QPalette::Window);
            QVERIFY(window.choose(QStringLiteral("Dark")));
            QVERIFY(LookTokens::current().isDark);
            QVERIFY(window.window->palette().color(QPalette::Window).lightness() < light.lightness());
            QVERIFY(window.menuEntry(QStringLiteral("Dark"))->isChecked());
            QVERIFY(!window.menuEntry(QStringLiteral("System"))->isChecked());
        }
        WindowFixture window(directory);
        QCOMPARE(window.preferences.colorScheme(), PrefColors::prefdark);
        QVERIFY(window.open());
        QVERIFY(LookTokens::current().isDark);
        QVERIFY(window.choose(QStringLiteral("Light")));
        QVERIFY(!LookTokens::current().isDark);
    }

    void theSystemsSchemeIsFollowedWhileItIsChosen()
    {
        const LibraryDirectory directory;
        WindowFixture window(directory);
        QVERIFY(window.open());
        window.systemColorScheme.setPreference(SystemColorScheme::Preference::Dark);
        QVERIFY(LookTokens::current().isDark);
        QVERIFY(window.choose(QStringLiteral("Light")));
        QVERIFY(!LookTokens::current().isDark);
        window.systemColorScheme.setPreference(SystemColorScheme::Preference::Light);
        window.systemColorScheme.setPreference(SystemColorScheme::Preference::Dark);
        QVERIFY(!LookTokens::current().isDark);
        QVERIFY(window.choose(QStringLiteral("System")));
        QVERIFY(LookTokens::current().isDark);
        window.systemColorScheme.setPreference(SystemColorScheme::Preference::Light);
        QVERIFY(!LookTokens::current().isDark);
    }

    void aSwitchOfTheSchemeLeavesNoColourBehind()
    {
        const auto picture = [](bool isSwitched) {
            const auto window = WindowFixture::shown(QStringLiteral("Lead Bells"), QStringLiteral("A B C D"));
            window->preferences.setColorScheme(isSwitched ? PrefColors::preflight : PrefColors::prefdark);
            WindowFixture::click(window->libraryList(), 0);
            window->contentList()->setFocus();
            (void)window->window->grab();
            window->preferences.setColorScheme(PrefColors::prefdark);
            WindowFixture::settle();
            return window->window->grab().toImage();
        };
        QCOMPARE(picture(true), picture(false));
    }
};

VELGOR_WIDGET_TEST(TestColorSchemes)
#include "tst_ColorSchemes.moc"
