#include "PatchFileHandler.h"
#include "StoreFixture.h"
#include "TestProgram.h"
#include "TreeRecord.h"
#include "UserFiles.h"

#include <QCoreApplication>
#include <QTest>

using namespace TestLibraries;

namespace {

QStringList hostileNames()
{
    return {
        QStringLiteral("../../outside"),
        QStringLiteral("/etc/passwd"),
        QStringLiteral("a/b/../../../c"),
        QStringLiteral("..\\..\\outside"),
        QStringLiteral("C:\\x"),
        QStringLiteral("a") + QChar(0) + QStringLiteral("/b"),
        QStringLiteral("line\nfeed\r\t"),
        QStringLiteral("x.42.prst"),
        QStringLiteral("x.43."),
        QStringLiteral(".42.43.44."),
        QStringLiteral("lib-Lead.43.prst"),
        QStringLiteral("x").repeated(300),
        QStringLiteral(u"\u00E9").repeated(300),
        QStringLiteral(u"\U0001F3B8").repeated(300),
        QStringLiteral(u"\u202Eabc\u200F\u2066"),
        QStringLiteral(u"\U0001F468\u200D\U0001F469\u200D\U0001F467"),
        QStringLiteral(".."),
        QStringLiteral("."),
        QString(),
        QStringLiteral(" "),
        QStringLiteral("-rf"),
        QStringLiteral("--help"),
        QStringLiteral("velgorlibrary.json"),
        QStringLiteral(".velgor-writing-x"),
        QStringLiteral(".velgorlibrary.lock"),
        QStringLiteral("%2e%2e%2f$HOME`id`;&|<>*?\"'"),
        QStringLiteral(u"\uFEFFmark\uFFFF"),
    };
}

/// A patch that was given this name after its import, so that its record still has another.
VelgorPatch named(const QString &name, qsizetype index)
{
    VelgorPatch named = patch(QStringLiteral("Patch"), 42 + static_cast<quint64>(index), static_cast<int>(index) + 1);
    named.name = name;
    return named;
}

} // namespace

/// Patches are stored, found, renamed, removed and exported under any name, and nothing outside of the directory moves.
class TestHostileNames : public QObject {
    Q_OBJECT

    std::unique_ptr<StoreFixture> m_store;
    TreeRecord::Record m_outside;

    [[nodiscard]] TreeRecord::Record outside() const { return TreeRecord::of(m_store->parentPath(), m_store->path()); }

    /// One start of the program: loads, changes, saves.
    template <typename Change>
    void run(Change change)
    {
        StoreFixture program(static_cast<const LibraryDirectory &>(*m_store));
        QVERIFY(program.start());
        change(program);
        program.storage.save(program.library);
        QVERIFY2(!program.storage.writeError(), qPrintable(program.storage.writeProblems().join(u'|')));
        QCOMPARE(outside(), m_outside);
    }

    void hold(const QStringList &names)
    {
        const LibraryLoadResult result = m_store->load();
        QVERIFY(result.library && result.droppedPatches.isEmpty());
        QCOMPARE(TestPatches::names(result.library->patches), names);
        QCOMPARE(outside(), m_outside);
        // As many files as patches, each directly in the directory: no name lost or took another's.
        QCOMPARE(m_store->files().size(), names.size() + 1);
        QVERIFY(m_store->files().filter(QStringLiteral("/")).isEmpty());
    }

private Q_SLOTS:
    void init()
    {
        m_store = std::make_unique<StoreFixture>(LibraryDirectory(QStringLiteral("a/b/library")));
        // What names that lead out of the directory would hit.
        for (const char *path : {"outside", "c", "Lead.42.prst", "velgorlibrary.json", "a/outside", "a/b/outside",
                 "a/b/lib-Lead.42.prst", "a/b/$outside.42.prst"}) {
            QFile file(m_store->parentPath() + u'/' + QString::fromLatin1(path));
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write("precious") > 0);
        }
        m_outside = outside();
    }
    void cleanup() { m_store.reset(); }

    void patchLivesUnderAnyName_data()
    {
        QTest::addColumn<QString>("name");
        int row = 0;
        for (const QString &name : hostileNames()) {
            QTest::addRow("%d %s", row++, name.left(20).toUtf8().toPercentEncoding(" ").constData()) << name;
        }
    }
    void patchLivesUnderAnyName()
    {
        QFETCH(const QString, name);
        const QString second = QStringLiteral("A/B");
        const QString third = QStringLiteral("Clean");
        LibraryState content = three();
        content.patches[0].name = name;
        QVERIFY(!m_store->save(content).hasError());
        hold({name, second, third});

        const auto rename = [](const QString &to) { return [to](StoreFixture &program) { program.rename(42, to); }; };
        run(rename(QStringLiteral("Plain")));
        hold({QStringLiteral("Plain"), second, third});
        run(rename(name));
        hold({name, second, third});

        const VelgorPatch patch = m_store->loaded().first();
        QCOMPARE(patch.soundHash(), content.patches.first().soundHash());
        UserFiles files;
        PatchFileHandler handler(files);
        const QString target = m_store->parentPath() + QStringLiteral("/a/exported.prst");
        QVERIFY(handler.exportTo({patch}, target));
        const auto exported = handler.read(target);
        QVERIFY(exported && exported->patches.first().data == content.patches.first().records->patchData.data);
        QVERIFY(QFile::remove(target));
        QCOMPARE(outside(), m_outside);

        run([](StoreFixture &program) {
            program.deletePatches({42});
            program.storage.finish();
        });
        hold({second, third});
    }

    void namesThatLookAlikeAreKeptApart()
    {
        const QStringList names{QStringLiteral("lead"), QStringLiteral("LEAD"), QStringLiteral("Lead"),
            QStringLiteral(u"caf\u00E9"), QStringLiteral(u"cafe\u0301"), QStringLiteral(u"CAFE\u0301"),
            QStringLiteral("a/b"), QStringLiteral("a$b"), QStringLiteral("same"), QStringLiteral("same"),
            QStringLiteral("x").repeated(300), QStringLiteral("x").repeated(301)};
        LibraryState content;
        for (int i = 0; i < names.size(); ++i) {
            content.patches.append(named(names.at(i), i));
        }
        QVERIFY(!m_store->save(content).hasError());
        hold(names);
        QVERIFY(m_store->holds(content.patches));
        run([](StoreFixture &program) {
            program.deletePatches({42, 45, 48});
            program.storage.finish();
        });
        QCOMPARE(m_store->loadedNames().size(), names.size() - 3);
        QCOMPARE(m_store->load().droppedPatches, QStringList());
    }

    void allNamesLiveInOneLibrary()
    {
        LibraryState content;
        for (const QString &name : hostileNames()) {
            content.patches.append(named(name, content.patches.size()));
        }
        QVERIFY(!m_store->save(content).hasError());
        hold(hostileNames());
        QVERIFY(m_store->holds(content.patches));
        // Each takes the next one's name, where names hold the numbers of others.
        for (qsizetype i = 0; i < content.patches.size(); ++i) {
            content.patches[i].name = hostileNames().at((i + 1) % content.patches.size());
        }
        QVERIFY(!m_store->save(content).hasError());
        QVERIFY(m_store->holds(content.patches));
        QCOMPARE(outside(), m_outside);
    }
};

VELGOR_TEST(TestHostileNames)
#include "tst_HostileNames.moc"
