#include "HandlerFixture.h"
#include "TestPatches.h"
#include "TestProgram.h"
#include "VelgorContent.h"

#include <QCoreApplication>
#include <QTest>

using TestPatches::imported;

class TestPatchFileHandler : public QObject, private HandlerFixture {
    Q_OBJECT

private Q_SLOTS:
    void init() { start(); }

    void openAsksAndReads()
    {
        const QByteArray bytes = TestRecords::fileBytes({TestRecords::patch(QStringLiteral("Lead"))});
        m_files->files.insert(out, bytes);
        const Result<SPresetFile> presets = open();
        QVERIFY(presets && *presets == *SPresetFile::fromData(bytes));
        QCOMPARE(m_dialogs->asked, QStringList{QStringLiteral("Open patches list")});
    }

    void openGivesNothing_data()
    {
        QTest::addColumn<bool>("isCancelled");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("problem");
        QTest::newRow("cancelled") << true << QByteArray("x") << QString();
        QTest::newRow("missing") << false << QByteArray() << "out.prst: no such file";
        QTest::newRow("malformed") << false << QByteArray("TSRP") << "out.prst: not a complete preset file (%1)";
    }

    void openGivesNothing()
    {
        QFETCH(const bool, isCancelled);
        QFETCH(const QByteArray, bytes);
        QFETCH(const QString, problem);
        if (!bytes.isEmpty()) {
            m_files->files.insert(out, bytes);
        }
        if (isCancelled) {
            m_dialogs->answer.reset();
        }
        const Result<SPresetFile> presets = open();
        QVERIFY(!presets);
        QCOMPARE(presets.problem().what == Problem::What::Cancelled, isCancelled);
        const QStringList lines = m_recorder->take();
        QCOMPARE(lines.isEmpty(), !problem.contains(u'%'));
        QCOMPARE(presets.problem().text(), lines.isEmpty() ? problem : problem.arg(lines.last()));
    }

    void anEmptyContentIsNotSaved_data()
    {
        QTest::addColumn<int>("slots");
        QTest::newRow("no slot") << 0;
        QTest::newRow("a placeholder first") << 2;
    }

    void anEmptyContentIsNotSaved()
    {
        QFETCH(const int, slots);
        VelgorContent content;
        if (slots > 0) {
            content.setLimit(slots);
            content.adjust(std::nullopt);
            content.setPatch(imported(QStringLiteral("Lead")), 1);
        }
        const Result<QString> saved = m_handler->save(content);
        QVERIFY(!saved);
        QCOMPARE(m_recorder->take(), QStringList{QStringLiteral("Cannot save empty VelgorContent")});
        QVERIFY(m_dialogs->asked.isEmpty() && m_files->files.isEmpty());
        QVERIFY(!isCancelled(saved.problem()) && !saved.problem().text().isEmpty());
        QVERIFY(!m_handler->exportTo(content, out));
        QVERIFY(m_files->files.isEmpty());
    }

    void contentProposesAFileName_data()
    {
        QTest::addColumn<std::optional<QString>>("fileName");
        QTest::addColumn<QString>("proposed");
        QTest::newRow("absent") << std::optional<QString>() << "patches.prst";
        QTest::newRow("a name") << std::optional(QStringLiteral("mine.prst")) << "mine.prst";
        QTest::newRow("a path") << std::optional(QStringLiteral("/home/me/mine.prst")) << "mine.prst";
    }

    void contentProposesAFileName()
    {
        QFETCH(const std::optional<QString>, fileName);
        QFETCH(const QString, proposed);
        VelgorContent content;
        content.createNew(imported(QStringLiteral("Lead")));
        QVERIFY(m_handler->save(content, fileName));
        QCOMPARE(m_dialogs->asked, QStringList{QStringLiteral("Save patches list: ") + proposed});
    }

    void cancellingWritesNothing()
    {
        m_dialogs->answer.reset();
        VelgorContent content;
        content.createNew(imported(QStringLiteral("Lead")));
        for (const Result<QString> &saved :
            {m_handler->save(content), m_handler->save(imported(QStringLiteral("Lead")))}) {
            QVERIFY(!saved && isCancelled(saved.problem()));
            QCOMPARE(saved.problem().text(), QString());
        }
        QVERIFY(m_files->files.isEmpty());
        QCOMPARE(m_recorder->take(), QStringList());
    }

    void aFailedWriteIsReported()
    {
        m_files->writeError = QStringLiteral("disk full");
        VelgorContent content;
        content.createNew(imported(QStringLiteral("Lead")));
        const VelgorPatch patch = imported(QStringLiteral("Lead"));
        const auto isReported = [](const auto &saved) {
            return !saved && !isCancelled(saved.problem())
                && saved.problem().text() == QStringLiteral("out.prst: disk full");
        };
        QVERIFY(isReported(m_handler->save(content)));
        QVERIFY(isReported(m_handler->save(patch)));
        QVERIFY(isReported(store(patch)));
        QVERIFY(isReported(m_handler->exportTo(QList{patch}, out)));
    }

    void aPatchProposesItsName_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("proposed");
        QTest::newRow("a word") << "Lead"
                                << "Lead.prst";
        QTest::newRow("a space and a dot") << "Lead 1.5"
                                           << "Lead 1.5.prst";
        QTest::newRow("a slash") << "AC/DC"
                                 << "DC.prst";
        QTest::newRow("a slash at the start") << "/Lead"
                                              << "Lead.prst";
        QTest::newRow("longer than file names") << QString(5'000, u'n') << QString(200, u'n') + QStringLiteral(".prst");
        QTest::newRow("longer, beyond ASCII") << QString::fromUtf8("\u00e9").repeated(150)
                                              << QString::fromUtf8("\u00e9").repeated(100) + QStringLiteral(".prst");
        QTest::newRow("two lines") << "two\nlines"
                                   << "two lines.prst";
        QTest::newRow("only beyond ASCII") << QString::fromUtf8("\u00e9") << QString::fromUtf8("\u00e9.prst");
    }

    void aPatchProposesItsName()
    {
        QFETCH(const QString, name);
        QFETCH(const QString, proposed);
        QVERIFY(m_handler->save(imported(name)));
        QCOMPARE(m_dialogs->asked, QStringList{QStringLiteral("Save patch: ") + proposed});
    }

    void aPatchNeedsItsRecords()
    {
        VelgorPatch patch = imported(QStringLiteral("Lead"));
        patch.records.reset();
        QVERIFY(!m_handler->save(patch));
        QCOMPARE(m_recorder->take(), QStringList{QStringLiteral("Cannot save empty VelgorPatch")});
        QVERIFY(!store(patch));
        QCOMPARE(m_recorder->take(), QStringList());
        QVERIFY(m_dialogs->asked.isEmpty() && m_files->files.isEmpty());
    }
};

VELGOR_TEST(TestPatchFileHandler)
#include "tst_PatchFileHandler.moc"
