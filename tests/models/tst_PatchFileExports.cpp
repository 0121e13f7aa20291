#include "HandlerFixture.h"
#include "TestProgram.h"
#include "VelgorContent.h"

#include <QCoreApplication>
#include <QTest>

using TestPatches::imported;

/// What is in the files that exports write.
class TestPatchFileExports : public QObject, private HandlerFixture {
    Q_OBJECT

private Q_SLOTS:
    void init() { start(); }

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
        QVERIFY(store(patch));
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
        QTest::newRow("two bytes end at 16")
            << QString::fromUtf8("12345678901234\u00e9") << QString::fromUtf8("12345678901234\u00e9");
        QTest::newRow("two bytes end at 17") << QString::fromUtf8("123456789012345\u00e9x") << "123456789012345";
        QTest::newRow("three bytes end at 17") << QString::fromUtf8("12345678901234\u20ac") << "12345678901234";
        QTest::newRow("four bytes end at 18") << QString::fromUtf8("12345678901234\U0001F3B8") << "12345678901234";
        QTest::newRow("four bytes each") << QString::fromUtf8("\U0001F3B8").repeated(5)
                                         << QString::fromUtf8("\U0001F3B8").repeated(4);
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
        QVERIFY(store(patch));
        QCOMPARE(nameInFile(), QStringLiteral("Lead"));
    }

    void noStoredRecordIsLongerThanItsField()
    {
        const QString name = QString::fromUtf8("\u00e9").repeated(16);
        QVERIFY(store(imported(name)));
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
        const Result<QString> exported = m_handler->exportTo(patches, out);
        QVERIFY(!exported && !exported.problem().text().isEmpty());
        QVERIFY(m_files->files.isEmpty());
        QVERIFY(m_handler->exportTo(patches.first(0xFFFF), out));
        QCOMPARE(written()->patches.size(), 0xFFFF);
    }
};

VELGOR_TEST(TestPatchFileExports)
#include "tst_PatchFileExports.moc"
