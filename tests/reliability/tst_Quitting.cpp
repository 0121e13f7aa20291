#include "CommentEdit.h"
#include "ContentView.h"
#include "LibraryListView.h"
#include "StoreFixture.h"
#include "TestProgram.h"
#include "VelgorStyle.h"
#include "Velgor_Library_ManagerApp.h"

#include <QApplication>
#include <QSessionManager>
#include <QSettings>
#include <QTest>

#include <csignal>

using namespace TestLibraries;

namespace {

/// Where the directory of the library and the home of the application are for one run of it.
struct Home : StoreFixture {
    Home()
        : StoreFixture(three())
    {
        QSettings store(QStringLiteral("velgor"), QStringLiteral("velgor-library-manager"));
        store.setValue(QStringLiteral("libraryDirectory"), path());
    }
};

enum class End { SigTerm, SigInt, SigHup, Closing, LoggingOut };

ContentView *mainWindow()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *window = qobject_cast<ContentView *>(widget)) {
            return window;
        }
    }
    return nullptr;
}

/// The list of the window that runs, once the library is in it and can be clicked at.
LibraryListView *filledList()
{
    const ContentView *window = mainWindow();
    auto *list = window != nullptr ? window->findChild<LibraryListView *>() : nullptr;
    return list != nullptr && list->isVisible() && list->model()->rowCount() > 0 ? list : nullptr;
}

void end(End way)
{
    switch (way) {
    case End::SigTerm:
        std::raise(SIGTERM);
        break;
    case End::SigInt:
        std::raise(SIGINT);
        break;
    case End::SigHup:
        std::raise(SIGHUP);
        break;
    case End::Closing:
        mainWindow()->close();
        break;
    case End::LoggingOut:
        // What follows is the session's business, and may be a kill.
        Q_EMIT qGuiApp->commitDataRequest(*qApp->findChild<QSessionManager *>());
        break;
    }
}

/// A home directory of its own: nothing of the user's takes part.
class EmptyHome {
public:
    EmptyHome()
    {
        for (const char *variable : {"HOME", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR", "XDG_DATA_HOME", "XDG_CACHE_HOME"}) {
            qputenv(variable, QFile::encodeName(m_directory.path()));
        }
    }

private:
    QTemporaryDir m_directory{QDir::tempPath() + QStringLiteral("/velgor-XXXXXX")};
};

/// The environment is set before the application reads it.
class ApplicationAwayFromHome : private EmptyHome, public QApplication {
public:
    ApplicationAwayFromHome(int &argc, char **argv)
        : QApplication(argc, argv)
    {
    }
};

} // namespace

Q_DECLARE_METATYPE(End)

/// The application itself, with an edit that no delayed save has written when it is told to end.
class TestQuitting : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        bool isNumber = false;
        const int given = qEnvironmentVariableIntValue("VELGOR_QUITS", &isNumber);
        m_rounds = isNumber ? given : m_rounds;
        QApplication::setStyle(new VelgorStyle);
    }

    static void lastEditIsOnDisk_data()
    {
        QTest::addColumn<End>("way");
        QTest::newRow("SIGTERM") << End::SigTerm;
        QTest::newRow("SIGINT") << End::SigInt;
        QTest::newRow("SIGHUP") << End::SigHup;
        QTest::newRow("closing") << End::Closing;
        QTest::newRow("logging out") << End::LoggingOut;
    }
    void lastEditIsOnDisk()
    {
        QFETCH(const End, way);
        for (int round = 0; round < m_rounds; ++round) {
            const Home home;
            const QString comment = QStringLiteral("edit %1").arg(round);
            // From at once to after the first delay, so that a background save is met as well.
            const int pause = round % 4 == 3 ? 950 + round % 100 : static_cast<int>(m_random.bounded(100));
            bool isSavedAtLogout = false;
            runApplication(way, comment, pause, home, isSavedAtLogout);
            const QList<VelgorPatch> stored = home.loaded();
            QCOMPARE(stored.size(), 3);
            QCOMPARE(stored.first().comment, comment);
            QVERIFY(way != End::LoggingOut || isSavedAtLogout);
            QVERIFY(!home.has(LibraryFileNames::libraryCopy()));
            QVERIFY(!home.has(LibraryFileNames::lockFile()));
            QCOMPARE(home.files().size(), 4);
        }
    }

private:
    static void runApplication(End way, const QString &comment, int pause, const Home &home, bool &isSavedAtLogout)
    {
        Velgor_Library_ManagerApp application;
        QTimer look;
        QTimer ending;
        look.setInterval(5);
        ending.setSingleShot(true);
        connect(&look, &QTimer::timeout, &look, [&] {
            LibraryListView *list = filledList();
            if (list == nullptr) {
                return;
            }
            look.stop();
            QTest::mouseClick(
                list->viewport(), Qt::LeftButton, {}, list->visualRect(list->model()->index(0, 0)).center());
            auto *field = mainWindow()->findChild<CommentEdit *>();
            field->selectAll();
            QTest::keyClicks(field, comment);
            ending.start(pause);
        });
        connect(&ending, &QTimer::timeout, &ending, [&] {
            end(way);
            if (way == End::LoggingOut) {
                isSavedAtLogout = home.loaded().first().comment == comment;
                QCoreApplication::exit(0);
            }
        });
        look.start();
        QCOMPARE(application.run(StartRequest()), 0);
    }

    int m_rounds = 20;
    QRandomGenerator m_random{13};
};

VELGOR_TEST_IN(ApplicationAwayFromHome, TestQuitting)
#include "tst_Quitting.moc"
