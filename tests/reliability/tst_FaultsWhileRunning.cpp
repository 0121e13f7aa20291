#include "StoreFixture.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>

#include <chrono>
#include <csignal>
#include <functional>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace std::chrono_literals;
using namespace TestLibraries;

namespace {

constexpr auto shortPeriod = 20ms;
constexpr uid_t ordinaryUser = 65534;

/// Something that keeps a library from being saved while it exists.
class Fault {
public:
    enum class Kind { Vanished, PlainFile, ReadOnlyDirectory, ReadOnlyFile, DirectoryForFile, NoSpace, LittleSpace };

    Fault(Kind kind, const LibraryDirectory &directory)
        : m_path(directory.path())
        , m_file(directory.filePath(libraryFile))
    {
        begin(kind);
    }
    ~Fault() { end(); }
    Q_DISABLE_COPY_MOVE(Fault)

    void end()
    {
        for (auto undo = m_undo.rbegin(); undo != m_undo.rend(); ++undo) {
            (*undo)();
        }
        m_undo.clear();
    }

private:
    void begin(Kind kind)
    {
        switch (kind) {
        case Kind::Vanished:
            moveAway(m_path);
            break;
        case Kind::PlainFile:
            moveAway(m_path);
            writeFile(m_path);
            break;
        case Kind::ReadOnlyDirectory:
            forbid(m_path, 0555, 0755);
            break;
        case Kind::ReadOnlyFile:
            forbid(m_file, 0444, 0644);
            break;
        case Kind::DirectoryForFile:
            moveAway(m_file);
            QDir().mkdir(m_file);
            m_undo.append([path = m_file] { QDir().rmdir(path); });
            break;
        case Kind::NoSpace:
            limitFiles(0);
            break;
        case Kind::LittleSpace:
            limitFiles(100);
            break;
        }
    }

    void moveAway(const QString &path)
    {
        const QString away = path + QStringLiteral("-away");
        QFile::rename(path, away);
        m_undo.append([path, away] { QFile::rename(away, path); });
    }

    void writeFile(const QString &path)
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly)) {
            qFatal("cannot write %s", qPrintable(path));
        }
        m_undo.append([path] { QFile::remove(path); });
    }

    void forbid(const QString &path, mode_t forbidden, mode_t usual)
    {
        const QByteArray name = QFile::encodeName(path);
        chmod(name.constData(), forbidden);
        m_undo.append([name, usual] { chmod(name.constData(), usual); });
        if (geteuid() == 0) {
            // Rights mean nothing to root.
            giveAll(ordinaryUser);
            seteuid(ordinaryUser);
            m_undo.append([this] {
                seteuid(0);
                giveAll(0);
            });
        }
    }

    void giveAll(uid_t user) const
    {
        const QDir directory(m_path);
        const QString parent = QFileInfo(m_path).path();
        for (const QString &path : {m_path, parent}) {
            std::ignore = chown(QFile::encodeName(path).constData(), user, gid_t(-1));
        }
        for (const QString &name : directory.entryList(QDir::Files | QDir::Hidden)) {
            std::ignore = chown(QFile::encodeName(directory.filePath(name)).constData(), user, gid_t(-1));
        }
    }

    void limitFiles(rlim_t bytes)
    {
        rlimit former{};
        getrlimit(RLIMIT_FSIZE, &former);
        rlimit limit = former;
        limit.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limit);
        m_undo.append([former] { setrlimit(RLIMIT_FSIZE, &former); });
    }

    QString m_path;
    QString m_file;
    QList<std::function<void()>> m_undo;
};

enum class Change { Edit, Rename, Addition, Deletion };
enum class Resumption { NextRequest, Closing };

void make(Change change, StoreFixture &store)
{
    switch (change) {
    case Change::Edit:
        store.edit(42, [](VelgorPatch &patch) { patch.comment = QStringLiteral("edited"); });
        break;
    case Change::Rename:
        store.rename(42, QStringLiteral("Renamed"));
        break;
    case Change::Addition:
        store.library.appendNew({patch(QStringLiteral("New"), 50, 7), patch(QStringLiteral("Newer"), 51, 8)});
        break;
    case Change::Deletion:
        store.deletePatches({42, 44});
        store.storage.finish();
        return;
    }
    store.requestSave();
}

QStringList filesOf(const QList<VelgorPatch> &patches)
{
    QStringList names{libraryFile};
    for (const VelgorPatch &patch : patches) {
        names.append(fileOf(patch));
    }
    names.sort();
    return names;
}

} // namespace

Q_DECLARE_METATYPE(Change)
Q_DECLARE_METATYPE(Resumption)

class TestFaultsWhileRunning : public QObject {
    Q_OBJECT

private Q_SLOTS:
    static void initTestCase() { std::signal(SIGXFSZ, SIG_IGN); }

    static void everythingIsSavedOnceTheFaultIsGone_data()
    {
        QTest::addColumn<Fault::Kind>("fault");
        QTest::addColumn<Change>("change");
        QTest::addColumn<Resumption>("resumption");
        const QList<std::pair<const char *, Fault::Kind>> faults{{"vanished directory", Fault::Kind::Vanished},
            {"plain file for the directory", Fault::Kind::PlainFile},
            {"read-only directory", Fault::Kind::ReadOnlyDirectory},
            {"read-only library file", Fault::Kind::ReadOnlyFile},
            {"directory for the library file", Fault::Kind::DirectoryForFile}, {"no space", Fault::Kind::NoSpace},
            {"little space", Fault::Kind::LittleSpace}};
        const QList<std::pair<const char *, Change>> changes{{"edit", Change::Edit}, {"rename", Change::Rename},
            {"addition", Change::Addition}, {"deletion", Change::Deletion}};
        const QList<std::pair<const char *, Resumption>> ways{
            {"next request", Resumption::NextRequest}, {"closing", Resumption::Closing}};
        for (const auto &[faultName, fault] : faults) {
            for (const auto &[changeName, change] : changes) {
                for (const auto &[wayName, way] : ways) {
                    QTest::addRow("%s, %s, %s", faultName, changeName, wayName) << fault << change << way;
                }
            }
        }
    }
    static void everythingIsSavedOnceTheFaultIsGone()
    {
        QFETCH(const Fault::Kind, fault);
        QFETCH(const Change, change);
        QFETCH(const Resumption, resumption);
        StoreFixture store(three(), shortPeriod);
        QVERIFY(store.start());
        store.storage.sweepLeftovers();

        Fault cause(fault, store);
        make(change, store);
        QVERIFY(store.waitForSave());
        QVERIFY(store.storage.writeError() && !store.storage.wasLastSaveWritten());
        QVERIFY(store.storage.hasUnsavedChanges());
        const QString told = store.storage.writeProblems().join(u'\n');
        QVERIFY2(told.contains(store.path()), qPrintable(told));
        // Failing once more changes nothing.
        store.requestSave();
        QVERIFY(store.waitForSave());
        QVERIFY(store.storage.hasUnsavedChanges());

        cause.end();
        QVERIFY(store.holds(three().patches));
        if (resumption == Resumption::NextRequest) {
            store.storage.setWriteError(false);
            store.requestSave();
            QVERIFY(store.waitForSave());
            QVERIFY2(!store.storage.writeError(), qPrintable(store.storage.writeProblems().join(u'\n')));
        } else {
            QVERIFY(store.storage.saveUnsaved());
        }
        QVERIFY(!store.storage.hasUnsavedChanges() && store.storage.wasLastSaveWritten());
        QVERIFY(store.holds(store.library.patches()));
        QCOMPARE(store.files(), filesOf(store.library.patches()));
    }

    static void directoryThatComesBackEmptyGetsTheWholeLibrary()
    {
        StoreFixture store(three(), shortPeriod);
        QVERIFY(store.start());
        QVERIFY(QFile::rename(store.path(), store.path() + QStringLiteral("-away")));
        make(Change::Edit, store);
        QVERIFY(store.waitForSave());
        QVERIFY(store.storage.hasUnsavedChanges());
        QVERIFY(QDir().mkdir(store.path()));
        QVERIFY(store.storage.saveUnsaved());
        QVERIFY(store.holds(store.library.patches()));
    }

    static void patchFilesTakenAwayComeBackWithTheNextSave()
    {
        StoreFixture store(three());
        QVERIFY(store.start());
        for (const QString &name : store.files().filter(QStringLiteral(".prst"))) {
            QVERIFY(QFile::remove(store.filePath(name)));
        }
        store.storage.save(store.library);
        QVERIFY(store.holds(three().patches));
    }
};

VELGOR_TEST(TestFaultsWhileRunning)
#include "tst_FaultsWhileRunning.moc"
