#include "DiagnosticRecorder.h"
#include "LibraryManagerPreferences.h"
#include "LibraryStorageManager.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

class TestLibraryManagerPreferences : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_directory;
    int m_count = 0;
    QString m_path;

    [[nodiscard]] std::unique_ptr<QSettings> store() const
    {
        return std::make_unique<QSettings>(m_path, QSettings::IniFormat);
    }

private Q_SLOTS:
    static void initTestCase() { QStandardPaths::setTestModeEnabled(true); }

    void init() { m_path = m_directory.filePath(QString::number(++m_count) + QStringLiteral(".ini")); }

    void freshUserHasSystemColoursAndTheDefaultDirectory()
    {
        const LibraryManagerPreferences preferences(store());
        QCOMPARE(preferences.colorScheme(), PrefColors::prefsystem);
        QCOMPARE(preferences.libraryDirectory(),
            QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) + QStringLiteral("/VelgorLibrary"));
        QCOMPARE(preferences.libraryDirectory(), LibraryManagerPreferences::defaultLibraryDirectory());
    }

    void defaultDirectoryIsNotStoredWhenTheLibraryStoreStarts()
    {
        const QString home = qEnvironmentVariable("HOME");
        const QTemporaryDir otherHome;
        qputenv("HOME", otherHome.path().toLocal8Bit());
        LibraryManagerPreferences preferences(store());
        const LibraryStorageManager manager(preferences);
        qputenv("HOME", home.toLocal8Bit());
        QVERIFY(preferences.libraryDirectory().startsWith(otherHome.path()));
        QVERIFY(QFileInfo(manager.libDirectory()).isDir());
        QVERIFY(!manager.writeError());
        QVERIFY(!store()->contains(QStringLiteral("libraryDirectory")));
    }

    void aDirectoryThatIsStoredAlreadyIsNotWrittenAgain()
    {
        const QString directory = m_directory.filePath(QStringLiteral("own"));
        store()->setValue(QStringLiteral("libraryDirectory"), directory);
        // Writing would put the text into another order, or drop this line.
        QFile file(m_path);
        QVERIFY(file.open(QIODevice::Append));
        file.write("; note\n");
        file.close();
        {
            LibraryManagerPreferences preferences(store());
            QVERIFY(preferences.setLibraryDirectory(directory));
        }
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(file.readAll().endsWith("; note\n"));
    }

    void storedColourSchemeIsRead_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<PrefColors>("expected");
        QTest::newRow("0 is the system's") << QVariant(0) << PrefColors::prefsystem;
        QTest::newRow("1 is dark") << QVariant(1) << PrefColors::prefdark;
        QTest::newRow("2 is light") << QVariant(2) << PrefColors::preflight;
        QTest::newRow("3 is none") << QVariant(3) << PrefColors::prefsystem;
        QTest::newRow("7 is none") << QVariant(7) << PrefColors::prefsystem;
        QTest::newRow("-1 is none") << QVariant(-1) << PrefColors::prefsystem;
        QTest::newRow("a text is none") << QVariant(QStringLiteral("dark")) << PrefColors::prefsystem;
        QTest::newRow("a list is none") << QVariant(QStringList{QStringLiteral("1"), QStringLiteral("2")})
                                        << PrefColors::prefsystem;
    }
    void storedColourSchemeIsRead()
    {
        QFETCH(const QVariant, stored);
        store()->setValue(QStringLiteral("colorScheme"), stored);
        QTEST(LibraryManagerPreferences(store()).colorScheme(), "expected");
    }

    void rawValuesOutsideTheChoicesGiveNothing()
    {
        for (const int value : {0, 1, 2}) {
            QCOMPARE(static_cast<int>(prefColorsFromRawValue(value).value()), value);
        }
        for (const int value : {-1, 3, 7, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
            QVERIFY(!prefColorsFromRawValue(value));
        }
    }

    void colourSchemeIsStoredAtOnceAndAnnouncedOnce()
    {
        LibraryManagerPreferences preferences(store());
        const QSignalSpy changes(&preferences, &LibraryManagerPreferences::colorSchemeChanged);
        preferences.setColorScheme(PrefColors::preflight);
        preferences.setColorScheme(PrefColors::preflight);
        QCOMPARE(preferences.colorScheme(), PrefColors::preflight);
        QCOMPARE(changes.size(), 1);
        QCOMPARE(LibraryManagerPreferences(store()).colorScheme(), PrefColors::preflight);
    }

    void colourSchemeLastsUntilTheNextRun()
    {
        {
            LibraryManagerPreferences preferences(store());
            preferences.setColorScheme(PrefColors::prefdark);
        }
        QCOMPARE(LibraryManagerPreferences(store()).colorScheme(), PrefColors::prefdark);
        QCOMPARE(store()->value(QStringLiteral("colorScheme")).toInt(), 1);
    }

    void directoryLastsUntilTheNextRun_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("plain") << QStringLiteral("Presets");
        QTest::newRow("with a space") << QStringLiteral("My Presets");
        QTest::newRow("with signs that settings files use") << QStringLiteral("a,b;c=d\"%20[x]\\n");
        QTest::newRow("beyond Latin") << QString::fromUtf8("Größe 音 🎸");
    }
    void directoryLastsUntilTheNextRun()
    {
        QFETCH(const QString, name);
        const QString path = m_directory.filePath(name);
        {
            LibraryManagerPreferences preferences(store());
            const QSignalSpy changes(&preferences, &LibraryManagerPreferences::libraryDirectoryChanged);
            QVERIFY(preferences.setLibraryDirectory(path));
            QVERIFY(preferences.setLibraryDirectory(path));
            QCOMPARE(changes.size(), 1);
        }
        QCOMPARE(LibraryManagerPreferences(store()).libraryDirectory(), path);
        QCOMPARE(store()->value(QStringLiteral("libraryDirectory")).toString(), path);
    }

    void directoryThatCannotBeStoredIsNotTaken()
    {
        QFile file(m_path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        m_path += QStringLiteral("/below a file.ini");
        LibraryManagerPreferences preferences(store());
        const QSignalSpy changes(&preferences, &LibraryManagerPreferences::libraryDirectoryChanged);
        const QString former = preferences.libraryDirectory();
        const Result<> stored = preferences.setLibraryDirectory(m_directory.path());
        QVERIFY(!stored && stored.problem().text().contains(m_path));
        QCOMPARE(preferences.libraryDirectory(), former);
        QCOMPARE(changes.size(), 0);
    }

    void whatElseIsInTheFileStays()
    {
        store()->setValue(QStringLiteral("other/key"), QStringLiteral("mine"));
        LibraryManagerPreferences preferences(store());
        QVERIFY(preferences.setLibraryDirectory(m_directory.path()));
        preferences.setColorScheme(PrefColors::prefdark);
        QCOMPARE(store()->value(QStringLiteral("other/key")).toString(), QStringLiteral("mine"));
    }

    static void defaultDirectoryCanBeListed_data()
    {
        QTest::addColumn<QString>("home");
        QTest::addColumn<QString>("documents");
        QTest::addColumn<QString>("library");
        QTest::addColumn<QString>("expected");
        const QString plain = QStringLiteral("user");
        const QString other = QString::fromUtf8("müller");
        const QString inDocuments = QString::fromUtf8("Документы/VelgorLibrary");
        QTest::newRow("plain") << plain << QStringLiteral("Documents") << QString()
                               << QStringLiteral("Documents/VelgorLibrary");
        QTest::newRow("documents beyond ASCII")
            << plain << QString::fromUtf8("Документы") << QString() << QStringLiteral("VelgorLibrary");
        QTest::newRow("documents with a space")
            << plain << QStringLiteral("My Documents") << QString() << QStringLiteral("VelgorLibrary");
        QTest::newRow("library in documents beyond ASCII")
            << plain << QString::fromUtf8("Документы") << inDocuments << inDocuments;
        QTest::newRow("home beyond ASCII")
            << other << QStringLiteral("Documents") << QString() << QStringLiteral("Documents/VelgorLibrary");
        QTest::newRow("library in the home, documents renamed since")
            << plain << QStringLiteral("Documents") << QStringLiteral("VelgorLibrary")
            << QStringLiteral("VelgorLibrary");
    }
    static void defaultDirectoryCanBeListed()
    {
        QFETCH(const QString, home);
        QFETCH(const QString, documents);
        QFETCH(const QString, library);
        QFETCH(const QString, expected);
        const QTemporaryDir parent(QDir::tempPath() + QStringLiteral("/velgor-XXXXXX"));
        const QString place = parent.filePath(home);
        const auto write = [&place](const QString &name, const QByteArray &text) {
            QFile file(place + u'/' + name);
            return QDir().mkpath(QFileInfo(file).path()) && file.open(QIODevice::WriteOnly)
                && file.write(text) == text.size();
        };
        QVERIFY(QDir().mkpath(place + u'/' + documents));
        QVERIFY(write(
            QStringLiteral(".config/user-dirs.dirs"), "XDG_DOCUMENTS_DIR=\"$HOME/" + documents.toUtf8() + "\"\n"));
        if (!library.isEmpty()) {
            QVERIFY(write(library + QStringLiteral("/velgorlibrary.json"), "{}"));
        }
        const QByteArray formerHome = qgetenv("HOME");
        const bool hasConfig = qEnvironmentVariableIsSet("XDG_CONFIG_HOME");
        const QByteArray formerConfig = qgetenv("XDG_CONFIG_HOME");
        qputenv("HOME", QFile::encodeName(place));
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(place + QStringLiteral("/.config")));
        QStandardPaths::setTestModeEnabled(false);
        const QString found = LibraryManagerPreferences::defaultLibraryDirectory();
        QStandardPaths::setTestModeEnabled(true);
        qputenv("HOME", formerHome);
        if (hasConfig) {
            qputenv("XDG_CONFIG_HOME", formerConfig);
        } else {
            qunsetenv("XDG_CONFIG_HOME");
        }
        QCOMPARE(found, place + u'/' + expected);
    }

    void defaultDirectoryTakesTheKeyAway()
    {
        {
            LibraryManagerPreferences preferences(store());
            QVERIFY(preferences.setLibraryDirectory(m_directory.path()));
            QVERIFY(preferences.setLibraryDirectory(LibraryManagerPreferences::defaultLibraryDirectory()));
            QCOMPARE(preferences.libraryDirectory(), LibraryManagerPreferences::defaultLibraryDirectory());
        }
        QVERIFY(!store()->contains(QStringLiteral("libraryDirectory")));
    }

    void twoKeysAreAllThatIsStored()
    {
        {
            LibraryManagerPreferences preferences(store());
            preferences.setColorScheme(PrefColors::prefdark);
            QVERIFY(preferences.setLibraryDirectory(m_directory.path()));
        }
        QCOMPARE(store()->allKeys(), (QStringList{QStringLiteral("colorScheme"), QStringLiteral("libraryDirectory")}));
    }

    void lockThatADeadProgramLeftDoesNotDelayTheUsersOwnStore()
    {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_directory.path());
        const QString stored = m_directory.filePath(QStringLiteral("velgor/velgor-library-manager.conf"));
        QVERIFY(QDir().mkpath(QFileInfo(stored).path()));
        QFile lock(stored + QStringLiteral(".lock"));
        QVERIFY(lock.open(QIODevice::WriteOnly));
        lock.close();
        QElapsedTimer timer;
        timer.start();
        LibraryManagerPreferences().setColorScheme(PrefColors::prefdark);
        QVERIFY(timer.elapsed() < 10'000);
        QCOMPARE(LibraryManagerPreferences().colorScheme(), PrefColors::prefdark);
        QVERIFY(QFileInfo::exists(stored) && !lock.exists());
    }
};

VELGOR_TEST(TestLibraryManagerPreferences)
#include "tst_LibraryManagerPreferences.moc"
