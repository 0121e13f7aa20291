#include "CommandFixture.h"
#include "OrdinaryUser.h"
#include "PresetFileSearch.h"
#include "TestProgram.h"

#include <QCoreApplication>
#include <QTest>

#include <fstream>
#include <memory>
#include <string>

#include <sys/stat.h>

/// Directories in the place of files that are added.
class TestAddDirectories : public QObject, private CommandFixture {
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_backups;

    void write(const QString &name, const QByteArray &bytes) const
    {
        ProgramFiles::write(m_backups->filePath(name), bytes);
    }
    [[nodiscard]] VelgorProcess::Result add(const QStringList &paths, const QString &option = {}) const
    {
        const QStringList options = option.isEmpty() ? QStringList() : QStringList(option);
        return library(QStringList(QStringLiteral("add")) + options + paths);
    }
    /// The paths as they are given out, without the directory.
    [[nodiscard]] QStringList filesOf(const Json &json) const
    {
        QStringList files;
        for (const Json &entry : json) {
            const QString path = QString::fromStdString(entry.at("file").get<std::string>());
            files.append(path.startsWith(m_backups->path() + u'/') ? path.sliced(m_backups->path().size() + 1) : path);
        }
        return files;
    }
    [[nodiscard]] QStringList names() const { return namesIn(listed()); }

private Q_SLOTS:
    void init()
    {
        m_backups = std::make_unique<QTemporaryDir>();
        startEmpty();
    }

    void everyPresetFileBelowIsAddedInOrderOfPath()
    {
        write(QStringLiteral("b.prst"), fileOf(QStringLiteral("B"), 1));
        write(QStringLiteral("a/z.prst"), fileOf(QStringLiteral("Z"), 2));
        write(QStringLiteral("a/deep/er/y.PRST"), fileOf(QStringLiteral("Y"), 3));
        write(QStringLiteral("a.prst"), fileOf(QStringLiteral("A"), 4));
        write(QStringLiteral(".hidden/h.prst"), fileOf(QStringLiteral("H"), 5));
        // Beyond the first plane, whose characters come first.
        write(QString::fromUtf8("🎸.prst"), fileOf(QStringLiteral("G"), 6));
        write(QString::fromUtf8("ﬀ.prst"), fileOf(QStringLiteral("F"), 7));
        write(QStringLiteral("a/readme.txt"), "no preset file");
        write(QStringLiteral("a/old.prst.bak"), "neither");
        write(QStringLiteral("named like one.prst/x.txt"), "nor this");
        const auto result = add({m_backups->path()}, QStringLiteral("--json"));
        QCOMPARE(result.status, 0);
        QCOMPARE(filesOf(result.json()),
            (QStringList{QStringLiteral(".hidden/h.prst"), QStringLiteral("a.prst"), QStringLiteral("a/deep/er/y.PRST"),
                QStringLiteral("a/z.prst"), QStringLiteral("b.prst"), QString::fromUtf8("ﬀ.prst"),
                QString::fromUtf8("🎸.prst")}));
        QCOMPARE(names(), QStringLiteral("H A Y Z B F G").split(u' '));
    }

    void filesAndDirectoriesComeInTheOrderGiven()
    {
        write(QStringLiteral("d/1.prst"), fileOf(QStringLiteral("One"), 1));
        write(QStringLiteral("2.prst"), fileOf(QStringLiteral("Two"), 2));
        write(QStringLiteral("c/3.prst"), fileOf(QStringLiteral("Three"), 3));
        const auto result = add({m_backups->filePath(QStringLiteral("d/")),
            m_backups->filePath(QStringLiteral("2.prst")), m_backups->filePath(QStringLiteral("c"))});
        QCOMPARE(result.status, 0);
        QCOMPARE(names(), QStringLiteral("One Two Three").split(u' '));
        QVERIFY(result.output.contains(m_backups->filePath(QStringLiteral("d/1.prst")).toUtf8() + ": 1 added"));
    }

    void loopsOfLinksEnd()
    {
        write(QStringLiteral("sub/x.prst"), fileOf(QStringLiteral("X"), 1));
        write(QStringLiteral("elsewhere"), fileOf(QStringLiteral("L"), 2));
        QVERIFY(QFile::link(m_backups->path(), m_backups->filePath(QStringLiteral("sub/loop"))));
        QVERIFY(QFile::link(m_backups->path(), m_backups->filePath(QStringLiteral("sub/loop.prst"))));
        QVERIFY(QFile::link(QStringLiteral("itself"), m_backups->filePath(QStringLiteral("itself"))));
        QVERIFY(QFile::link(
            m_backups->filePath(QStringLiteral("elsewhere")), m_backups->filePath(QStringLiteral("link.prst"))));
        m_velgor.setTimeLimit(10'000);
        const auto result = add({m_backups->path()}, QStringLiteral("--json"));
        QCOMPARE(result.status, 0);
        QCOMPARE(filesOf(result.json()), (QStringList{QStringLiteral("link.prst"), QStringLiteral("sub/x.prst")}));
        // A link that is named is followed.
        const LibraryDirectory other;
        const auto named =
            m_velgor.library(other.path(), {QStringLiteral("add"), m_backups->filePath(QStringLiteral("sub/loop"))});
        QCOMPARE(named.status, 0);
        QCOMPARE(other.files().size(), 3);
    }

    void whatIsReadableIsKeptAndTheRestReported()
    {
        write(QStringLiteral("1.prst"), fileOf(QStringLiteral("One"), 1));
        write(QStringLiteral("2.prst"), "damaged");
        write(QStringLiteral("4.prst"), fileOf(QStringLiteral("Four"), 4));
        QCOMPARE(mkfifo(QFile::encodeName(m_backups->filePath(QStringLiteral("3.prst"))).constData(), 0600), 0);
        QVERIFY(QFile::link(QStringLiteral("nowhere"), m_backups->filePath(QStringLiteral("5.prst"))));
        m_velgor.setTimeLimit(10'000);
        const auto result = add({m_backups->path()}, QStringLiteral("--json"));
        QCOMPARE(result.status, 2);
        const Json json = result.json();
        QCOMPARE(json.size(), std::size_t(5));
        for (const std::size_t unreadable : {1U, 2U, 4U}) {
            QVERIFY(json.at(unreadable).at("error").is_string());
        }
        QCOMPARE(names(), QStringLiteral("One Four").split(u' '));
        // The table names each file once.
        const QByteArray damaged = m_backups->filePath(QStringLiteral("2.prst")).toUtf8();
        QCOMPARE(add({m_backups->path()}).output.count(damaged), 1);
    }

    void directoryThatMayNotBeSearchedIsReported()
    {
        const LibraryDirectory backups;
        backups.write(QStringLiteral("a/1.prst"), "x");
        backups.write(QStringLiteral("secret/2.prst"), "x");
        const QString secret = backups.filePath(QStringLiteral("secret"));
        QVERIFY(QFile::setPermissions(secret, {}));
        const OrdinaryUser user(backups, 0755);
        const QList<PresetFileSearch::Entry> found = PresetFileSearch::below(backups.path());
        QCOMPARE(found.size(), 2);
        QCOMPARE(found.at(0).path, backups.filePath(QStringLiteral("a/1.prst")));
        QCOMPARE(found.at(0).error, QString());
        QCOMPARE(found.at(1).path, secret);
        QVERIFY(!found.at(1).error.isEmpty());
    }

    void leadingMarkInNamesIsKept()
    {
        const QString mark(QChar::ByteOrderMark);
        write(mark + QStringLiteral("one.prst"), fileOf(QStringLiteral("One"), 1));
        write(mark + QStringLiteral("two/") + mark + mark + QStringLiteral(".prst"), fileOf(QStringLiteral("Two"), 2));
        write(QStringLiteral("one.prst"), fileOf(QStringLiteral("Three"), 3));
        const auto result = add({m_backups->path()}, QStringLiteral("--json"));
        QCOMPARE(result.status, 0);
        QCOMPARE(filesOf(result.json()),
            (QStringList{QStringLiteral("one.prst"), mark + QStringLiteral("one.prst"),
                mark + QStringLiteral("two/") + mark + mark + QStringLiteral(".prst")}));
        QCOMPARE(names(), QStringLiteral("Three One Two").split(u' '));
    }

    void namesThatAreNoTextAreReportedAsSuch()
    {
        const QByteArray root = QFile::encodeName(m_backups->path());
        QCOMPARE(mkdir((root + "/caf\xE9").constData(), 0700), 0);
        for (const char *name : {"/caf\xE9/in.prst", "/caf\xE9/in.txt", "/b\xE9.prst", "/b\xE9.txt"}) {
            std::ofstream(root.toStdString() + name) << fileOf(QStringLiteral("Bad"), 1).toStdString();
        }
        // Shown in the same way, it is another file.
        write(QString::fromUtf8("b\uFFFD.prst"), fileOf(QStringLiteral("Good"), 2));
        const auto result = add({m_backups->path()}, QStringLiteral("--json"));
        QCOMPARE(result.status, 2);
        QStringList errors;
        for (const Json &entry : result.json()) {
            errors.append(
                entry.at("error").is_null() ? QString() : QString::fromStdString(entry.at("error").get<std::string>()));
        }
        errors.sort();
        const QString path = m_backups->path() + u'/';
        QCOMPARE(errors,
            (QStringList{QString(), path + QString::fromUtf8("b\uFFFD.prst: its name is not valid UTF-8"),
                path + QString::fromUtf8("caf\uFFFD/in.prst: its name is not valid UTF-8")}));
        QCOMPARE(names(), QStringList(QStringLiteral("Good")));
    }

    void directoryWithoutPresetFilesIsNoErrorAndMakesNoLibrary()
    {
        const QString library = m_velgor.filePath(QStringLiteral("not made"));
        const auto result = m_velgor.library(library, {QStringLiteral("add"), m_backups->path()});
        QCOMPARE(result.status, 0);
        QVERIFY2(result.errors.startsWith("velgor: warning: " + m_backups->path().toUtf8()), result.errors.constData());
        QVERIFY(!QFile::exists(library));
    }

    void libraryDirectoryOfAnotherIsTakenOver()
    {
        const LibraryDirectory other;
        ProgramFiles::copyLibrary(QStringLiteral("ok"), other);
        QCOMPARE(add({other.path()}).status, 0);
        QCOMPARE(names().size(), 3);
        // Its own files are all there.
        const auto again = add({m_directory->path()}, QStringLiteral("--json"));
        QCOMPARE(again.status, 0);
        for (const Json &entry : again.json()) {
            QVERIFY(entry.at("added").empty() && entry.at("known").size() == 1);
        }
    }
};

VELGOR_TEST(TestAddDirectories)
#include "tst_AddDirectories.moc"
