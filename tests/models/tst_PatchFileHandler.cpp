#include "DiagnosticRecorder.h"
#include "FakeFiles.h"
#include "PatchFileHandler.h"
#include "TestPatches.h"
#include "TestProgram.h"
#include "VelgorContent.h"

#include <QCoreApplication>
#include <QTest>

using TestPatches::imported;

namespace {

const QString out = QStringLiteral("out.prst");

QString fromUtf8(const char *text)
{
    return QString::fromUtf8(text);
}

} // namespace

class TestPatchFileHandler : public QObject {
    Q_OBJECT

private:
    std::optional<SPresetFile> written() const
    {
        const auto bytes = m_files->files.constFind(out);
        return bytes == m_files->files.constEnd() ? std::nullopt : SPresetFile::fromData(*bytes);
    }

    std::unique_ptr<FakeFileAccess> m_files;
    std::unique_ptr<FakeFileDialogs> m_dialogs;
    std::unique_ptr<PatchFileHandler> m_handler;
    std::unique_ptr<DiagnosticRecorder> m_recorder;

private Q_SLOTS:
    void init()
    {
        m_files = std::make_unique<FakeFileAccess>();
        m_dialogs = std::make_unique<FakeFileDialogs>();
        m_dialogs->answer = out;
        m_handler = std::make_unique<PatchFileHandler>(*m_files, m_dialogs.get());
        m_recorder.reset();
        m_recorder = std::make_unique<DiagnosticRecorder>();
    }

    void openAsksAndReads()
    {
        const QByteArray bytes = TestRecords::fileBytes({TestRecords::patch(QStringLiteral("Lead"))});
        m_files->files.insert(out, bytes);
        const VelgorContent content;
        const auto presets = m_handler->open(content);
        QVERIFY(presets && *presets == *SPresetFile::fromData(bytes));
        QCOMPARE(m_dialogs->asked, QStringList{QStringLiteral("Open patches list")});
        QVERIFY(!m_handler->wasCancelled());
        QCOMPARE(m_handler->problem(), QString());
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
        QVERIFY(!m_handler->open(VelgorContent()));
        QCOMPARE(m_handler->wasCancelled(), isCancelled);
        const QStringList lines = m_recorder->take();
        QCOMPARE(lines.isEmpty(), !problem.contains(u'%'));
        QCOMPARE(m_handler->problem(), lines.isEmpty() ? problem : problem.arg(lines.last()));
    }

    void aProblemIsForgottenByTheNextOperation()
    {
        QVERIFY(!m_handler->read(QStringLiteral("missing")));
        QVERIFY(!m_handler->problem().isEmpty());
        m_dialogs->answer.reset();
        QVERIFY(!m_handler->save(imported(QStringLiteral("Lead"))));
        QVERIFY(m_handler->problem().isEmpty() && m_handler->wasCancelled());
        QVERIFY(m_handler->save(imported(QStringLiteral("Lead")), out));
        QVERIFY(!m_handler->wasCancelled());
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
        QVERIFY(!m_handler->save(content));
        QCOMPARE(m_recorder->take(), QStringList{QStringLiteral("Cannot save empty VelgorContent")});
        QVERIFY(m_dialogs->asked.isEmpty() && m_files->files.isEmpty());
        QVERIFY(!m_handler->wasCancelled() && !m_handler->problem().isEmpty());
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

    void anExportedContentReadsBack()
    {
        const QList<SUserIR> userIRs{TestRecords::userIR(8), SUserIR(), TestRecords::userIR(9)};
        QList<SPatch> patches;
        for (int i = 0; i < 3; ++i) {
            patches.append(TestRecords::patch(QString::number(i), i + 1));
        }
        const SPresetFile original = *SPresetFile::fromData(TestRecords::fileBytes(patches, userIRs));
        VelgorContent content;
        content.populate(original);
        QVERIFY(m_handler->save(content));
        QVERIFY(written() && *written() == original);
    }

    void placeholdersFurtherDownAreLeftOut()
    {
        VelgorContent content;
        content.createNew(imported(QStringLiteral("Lead")));
        content.setPatch(VelgorPatch(QStringLiteral("-empty-"), false), 50);
        QVERIFY(m_handler->save(content));
        QVERIFY(written());
        QCOMPARE(written()->headerDesc.nbpatches, 98);
        QCOMPARE(written()->patches.size(), 98);
    }

    void headerIsThatOfTheFirstSlot()
    {
        VelgorContent content;
        VelgorPatch first = imported(QStringLiteral("Lead"));
        first.records->headerData.tailBit = 0x5A;
        first.records->headerData.size = 77;
        first.records->headerData.filler.fill('F');
        content.createNew(imported(QStringLiteral("Other"), 2, {}, "V9.99"));
        content.setPatch(first, 0);
        QVERIFY(m_handler->save(content));
        QVERIFY(written());
        QCOMPARE(QByteArrayView(written()->headerDesc.pm0), QByteArrayView("V1.20"));
        QCOMPARE(written()->headerDesc.filler, first.records->headerData.filler);
        QCOMPARE(written()->tailBit, 0x5A);
        QCOMPARE(written()->headerDesc.size, m_files->files.value(out).size() - 8 - 3);
    }

    void tailBitIsInvertedInListsOnly()
    {
        VelgorContent content;
        content.createNew(imported(QStringLiteral("Lead")));
        content.setInverseTailBit(true);
        QVERIFY(m_handler->save(content));
        QCOMPARE(written()->tailBit, 0x5B);
        QVERIFY(m_handler->save(content.velgorContentPatchList().first().patch));
        QCOMPARE(written()->tailBit, 0x5A);
        content.setInverseTailBit(false);
        QVERIFY(m_handler->save(content));
        QCOMPARE(written()->tailBit, 0x5A);
    }

    void cancellingWritesNothing()
    {
        m_dialogs->answer.reset();
        VelgorContent content;
        content.createNew(imported(QStringLiteral("Lead")));
        QVERIFY(!m_handler->save(content));
        QVERIFY(m_handler->wasCancelled());
        QVERIFY(!m_handler->save(imported(QStringLiteral("Lead"))));
        QVERIFY(m_handler->wasCancelled());
        QVERIFY(m_files->files.isEmpty());
        QCOMPARE(m_handler->problem(), QString());
        QCOMPARE(m_recorder->take(), QStringList());
    }

    void aFailedWriteIsReported()
    {
        m_files->writeError = QStringLiteral("disk full");
        VelgorContent content;
        content.createNew(imported(QStringLiteral("Lead")));
        const VelgorPatch patch = imported(QStringLiteral("Lead"));
        const auto isReported = [this](bool isDone) {
            return !isDone && !m_handler->wasCancelled()
                && m_handler->problem() == QStringLiteral("out.prst: disk full");
        };
        QVERIFY(isReported(m_handler->save(content)));
        QVERIFY(isReported(m_handler->save(patch)));
        QVERIFY(isReported(m_handler->save(patch, out)));
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
        QTest::newRow("longer, beyond ASCII")
            << fromUtf8("\u00e9").repeated(150) << fromUtf8("\u00e9").repeated(100) + QStringLiteral(".prst");
        QTest::newRow("two lines") << "two\nlines"
                                   << "two lines.prst";
        QTest::newRow("only beyond ASCII") << fromUtf8("\u00e9") << fromUtf8("\u00e9.prst");
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
        QVERIFY(!m_handler->save(patch, out));
        QCOMPARE(m_recorder->take(), QStringList());
        QVERIFY(m_dialogs->asked.isEmpty() && m_files->files.isEmpty());
    }

    void aSinglePatchFileReadsBackIntoTheSameId_data()
    {
        QTest::addColumn<SUserIR>("userIR");
        QTest::newRow("with user IR") << TestRecords::userIR(77);
        QTest::newRow("without user IR") << SUserIR();
        QTest::newRow("user IR without data") << TestRecords::userIR(0, 1, 4);
        QTest::newRow("user IR of 3 bytes") << TestRecords::userIR(77, 1, 3);
        QTest::newRow("user IR of 1 byte") << TestRecords::userIR(77, 1, 1);
        QTest::newRow("user IR of 5 bytes") << TestRecords::userIR(77, 1, 5);
    }

    void aSinglePatchFileReadsBackIntoTheSameId()
    {
        QFETCH(const SUserIR, userIR);
        VelgorPatch patch = imported(QStringLiteral("Lead"), 1, userIR);
        patch.records->headerData.nbpatches = 99;
        patch.records->patchData.pos = 42;
        const auto check = [&] {
            const auto file = written();
            QVERIFY(file);
            QCOMPARE(file->headerDesc.nbpatches, 1);
            QCOMPARE(file->headerPatchDescs.first().offset, 40U);
            QCOMPARE(qint64(file->headerPatchDescs.first().size), patch.records->patchData.length + userIR.length);
            QCOMPARE(file->patches.first().pos, 0);
            QCOMPARE(file->userIRs.first().getFirstUInt32(), 0U);
            QCOMPARE(VelgorPatch(file->patches.first(), file->userIRs.first(), file->headerDesc).id(), patch.id());
        };
        QVERIFY(m_handler->save(patch));
        check();
        m_files->files.clear();
        QVERIFY(m_handler->save(patch, out));
        check();
    }

    void exportsCarryTheShownNameCutToItsField_data()
    {
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("inFile");
        QTest::newRow("short") << "Solo"
                               << "Solo";
        QTest::newRow("empty") << ""
                               << "";
        QTest::newRow("16 letters") << "Crunchy Rhythm 1"
                                    << "Crunchy Rhythm 1";
        QTest::newRow("17 letters") << "Crunchy Rhythm 12"
                                    << "Crunchy Rhythm 1";
        QTest::newRow("two bytes end at 16") << fromUtf8("12345678901234\u00e9") << fromUtf8("12345678901234\u00e9");
        QTest::newRow("two bytes end at 17") << fromUtf8("123456789012345\u00e9x") << "123456789012345";
        QTest::newRow("three bytes end at 17") << fromUtf8("12345678901234\u20ac") << "12345678901234";
        QTest::newRow("four bytes end at 18") << fromUtf8("12345678901234\U0001F3B8") << "12345678901234";
        QTest::newRow("four bytes each") << fromUtf8("\U0001F3B8").repeated(5) << fromUtf8("\U0001F3B8").repeated(4);
    }

    void exportsCarryTheShownNameCutToItsField()
    {
        QFETCH(const QString, shown);
        QFETCH(const QString, inFile);
        VelgorPatch patch = imported(QStringLiteral("Lead"));
        patch.name = shown;
        const auto nameInFile = [&] {
            const auto file = written();
            m_files->files.clear();
            return file ? file->patches.first().name : QStringLiteral("nothing written");
        };
        QVERIFY(m_handler->save(patch));
        QCOMPARE(nameInFile(), inFile);
        QVERIFY(m_handler->exportTo(QList{patch}, out));
        QCOMPARE(nameInFile(), inFile);
        VelgorContent content;
        content.createNew(patch);
        QVERIFY(m_handler->save(content));
        QCOMPARE(nameInFile(), inFile);
        // The library's own file keeps the record as it was hashed.
        QVERIFY(m_handler->save(patch, out));
        QCOMPARE(nameInFile(), QStringLiteral("Lead"));
    }

    void noStoredRecordIsLongerThanItsField()
    {
        const QString name = fromUtf8("\u00e9").repeated(16);
        QVERIFY(m_handler->save(imported(name), out));
        QVERIFY(written());
        QCOMPARE(written()->patches.first().name, name.left(8));
    }

    void severalPatchesAreExportedInTheirOrder()
    {
        const QList<VelgorPatch> patches{imported(QStringLiteral("B"), 2, TestRecords::userIR(9), "V1.21"),
            imported(QStringLiteral("A"), 1), imported(QStringLiteral("B"), 2)};
        QVERIFY(m_handler->exportTo(patches, out));
        QVERIFY(written());
        QCOMPARE(written()->patches.size(), 3);
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(written()->patches.at(i).name, patches.at(i).name);
            QCOMPARE(written()->patches.at(i).pos, i);
            QCOMPARE(written()->userIRs.at(i).simpleHash(), patches.at(i).records->userIRData.simpleHash());
        }
        QCOMPARE(QByteArrayView(written()->headerDesc.pm0), QByteArrayView("V1.21"));
    }

    void noPatchesAreNotExported()
    {
        QVERIFY(!m_handler->exportTo(QList<VelgorPatch>(), out));
        QVERIFY(!m_handler->exportTo({imported(QStringLiteral("A")), VelgorPatch(QStringLiteral("B"), false)}, out));
        QVERIFY(m_files->files.isEmpty());
    }

    void moreThanTheCountHoldsIsRefused()
    {
        const QList<VelgorPatch> patches(0x10000, imported(QStringLiteral("Lead")));
        QVERIFY(!m_handler->exportTo(patches, out));
        QVERIFY(m_files->files.isEmpty() && !m_handler->problem().isEmpty());
        QVERIFY(m_handler->exportTo(patches.first(0xFFFF), out));
        QCOMPARE(written()->patches.size(), 0xFFFF);
    }
};

VELGOR_TEST(TestPatchFileHandler)
#include "tst_PatchFileHandler.moc"
