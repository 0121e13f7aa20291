#include "PatchRoles.h"
#include "PatchWriter.h"
#include "TestProgram.h"
#include "TestRecords.h"
#include "WindowFixture.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>

namespace {

/// A list as a unit exports it whose firmware, opaque bytes and tail are not those of the library's patches.
QByteArray listFile(const QList<SPatch> &records, const QList<SUserIR> &userIRs = {})
{
    QByteArray bytes = TestRecords::fileBytes(records, userIRs, "V1.21");
    auto file = SPresetFile::fromData(bytes);
    file->headerDesc.filler.fill('#');
    file->headerDesc.tailBit = 0x33;
    const auto other = SPresetFile::fromRecords(file->headerDesc, file->patches, file->userIRs);
    return *PatchWriter::encodePatches(*other);
}

/// One sound under names that hash alike in tens.
QList<SPatch> presets(int count)
{
    QList<SPatch> records;
    for (int number = 1; number <= count; ++number) {
        records.append(TestRecords::patch(QStringLiteral("Preset %1").arg(number, 2, 10, QLatin1Char('0')), 4));
    }
    return records;
}

/// Two sounds with one name and one hash.
QList<SPatch> twins()
{
    SPatch record = TestRecords::patch(QStringLiteral("Twin"), 9);
    SPatch other = record;
    for (const qsizetype place : {8, 16}) {
        other.data[place] = static_cast<char>(other.data.at(place) ^ 0x40);
    }
    return {record, other};
}

QString usedSlots(const WindowFixture &window)
{
    QStringList positions;
    const QAbstractItemModel *model = window.contentList()->model();
    for (int row = 0; row < model->rowCount(); ++row) {
        const QModelIndex index = model->index(row, 0);
        if (index.data(PatchRoles::IsPlaceUsed).toBool()) {
            positions.append(index.data(PatchRoles::Position).toString());
        }
    }
    return positions.join(u' ');
}

} // namespace

/// What an edit in the library does to slots, and what keeping slots does to the library: by mouse and keys, with
/// files.
class TestSlotsAndLibrary : public QObject {
    Q_OBJECT

    std::unique_ptr<WindowFixture> m_window;

    void import(const QByteArray &bytes) const
    {
        m_window->write(QStringLiteral("../list.prst"), bytes);
        m_window->window->importFile(m_window->filePath(QStringLiteral("../list.prst")));
        if (m_window->message() == QStringLiteral("The list has changes that were not exported")) {
            QVERIFY(m_window->answer(QStringLiteral("Import")));
        }
        WindowFixture::settle();
    }

    [[nodiscard]] QByteArray exported() const
    {
        m_window->dialogs.answer = m_window->filePath(QStringLiteral("../out.prst"));
        const bool isDone = m_window->press(QStringLiteral("Export")) && m_window->answer(QStringLiteral("OK"));
        WindowFixture::settle();
        return isDone && m_window->message().isEmpty() ? m_window->read(QStringLiteral("../out.prst")) : QByteArray();
    }

    void keepAllSlots() const
    {
        WindowFixture::click(m_window->contentList(), 0);
        WindowFixture::key(m_window->contentList(), Qt::Key_A, Qt::ControlModifier);
        QVERIFY(m_window->choose(QStringLiteral("Keep Selected Slots in Library")));
    }

    void rename(int row, const QString &name) const
    {
        WindowFixture::click(m_window->libraryList(), row);
        QVERIFY(m_window->choose(QStringLiteral("Rename Library Patch")));
        auto *field = qobject_cast<QLineEdit *>(QApplication::focusWidget());
        QVERIFY(field != nullptr);
        field->selectAll();
        QTest::keyClicks(field, name);
        QTest::keyClick(field, Qt::Key_Return);
        WindowFixture::settle();
    }

private Q_SLOTS:
    void init()
    {
        m_window = std::make_unique<WindowFixture>(LibraryDirectory());
        QVERIFY(m_window->open());
    }
    void cleanup() { m_window.reset(); }

    void aFlagChangesNoByteOfTheExportedList()
    {
        const QList<SPatch> records{
            TestRecords::patch(QStringLiteral("Lead"), 1), TestRecords::patch(QStringLiteral("Solo"), 2)};
        const QList<SUserIR> userIRs{TestRecords::userIR(0, 5), SUserIR()};
        // The library has the patches from a list of other firmware.
        import(TestRecords::fileBytes(records, userIRs));
        keepAllSlots();
        const QByteArray list = listFile(records, userIRs);
        import(list);
        QCOMPARE(exported(), list);
        WindowFixture::click(m_window->libraryList(), 0);
        QVERIFY(m_window->choose(QStringLiteral("Solo")));
        QVERIFY(m_window->choose(QStringLiteral("Guitar")));
        QCOMPARE(exported(), list);
        const VelgorPatch &held = m_window->content.velgorContentPatchList().first().patch;
        QVERIFY(held.solo && held.guitar && held.hasUserIR);
        QCOMPARE(held.version, QStringLiteral("V1.21"));
        QVERIFY(!m_window->content.velgorContentPatchList().last().patch.solo);
        // What the slot took over comes back with it.
        QVERIFY(m_window->press(QStringLiteral("Delete")));
        QVERIFY(m_window->answer(QStringLiteral("Yes")));
        QCOMPARE(m_window->libraryRows(), QStringLiteral("Solo"));
        keepAllSlots();
        QCOMPARE(m_window->libraryRows(), QStringLiteral("Solo Lead, user IR"));
        QVERIFY(m_window->library.patches().last().solo && m_window->library.patches().last().guitar);
    }

    void anotherNameChangesNothingElseOfTheExportedList()
    {
        const QList<SPatch> records{
            TestRecords::patch(QStringLiteral("Lead"), 1), TestRecords::patch(QStringLiteral("Solo"), 2)};
        import(TestRecords::fileBytes(records));
        keepAllSlots();
        import(listFile(records));
        rename(0, QStringLiteral("Other"));
        QCOMPARE(m_window->slotNames(), QStringLiteral("Other Solo"));
        QList<SPatch> renamed = records;
        renamed.first().name = QStringLiteral("Other");
        QCOMPARE(exported(), listFile(renamed));
        QCOMPARE(exported().mid(8, 5), QByteArray("V1.21"));
    }

    void patchesWithOneHashAreAllKept()
    {
        const QByteArray list = listFile(presets(99));
        import(list);
        keepAllSlots();
        QCOMPARE(m_window->library.count(), 99);
        keepAllSlots();
        QCOMPARE(m_window->library.count(), 99);
        QVERIFY(m_window->isSaid(QStringLiteral("Showing: 99 elements out of 99")));
        m_window->storage.save(m_window->library);
        qsizetype files = 0;
        for (const QString &name : m_window->files()) {
            files += name.endsWith(QStringLiteral(".prst")) ? 1 : 0;
        }
        QCOMPARE(files, 99);
        rename(41, QStringLiteral("Lead"));
        QCOMPARE(m_window->slotNames().count(QStringLiteral("Lead")), 1);
        QCOMPARE(m_window->slotNames().split(u' ').count(QStringLiteral("Preset")), 98);
        QCOMPARE(m_window->content.velgorContentPatchList().at(41).patch.name, QStringLiteral("Lead"));
        // After a restart too.
        const LibraryDirectory place = *m_window;
        m_window.reset();
        m_window = std::make_unique<WindowFixture>(place);
        QVERIFY(m_window->open());
        import(list);
        keepAllSlots();
        QCOMPARE(m_window->library.count(), 99);
        rename(41, QStringLiteral("Solo"));
        QCOMPARE(m_window->content.velgorContentPatchList().at(41).patch.name, QStringLiteral("Solo"));
        QCOMPARE(m_window->slotNames().count(QStringLiteral("Solo")), 1);
    }

    void placesAndSimilarPatchesGoByTheExactSound()
    {
        import(listFile(twins() + presets(1) + twins().first(1)));
        keepAllSlots();
        QCOMPARE(m_window->libraryRows(), QStringLiteral("Twin Twin Preset 01"));
        WindowFixture::click(m_window->libraryList(), 0);
        QCOMPARE(usedSlots(*m_window), QStringLiteral("1.1 2.1"));
        WindowFixture::click(m_window->libraryList(), 1);
        QCOMPARE(usedSlots(*m_window), QStringLiteral("1.2"));
        QVERIFY(m_window->choose(QStringLiteral("Find Similar Patches")));
        QCOMPARE(m_window->library.tickedCount(), 1);
    }

    void aRenamedDeletedAndKeptPatchIsStoredUnderTheIdOfItsContent()
    {
        import(listFile(twins().first(1)));
        keepAllSlots();
        rename(0, QStringLiteral("Lead"));
        QVERIFY(m_window->press(QStringLiteral("Delete")));
        QVERIFY(m_window->answer(QStringLiteral("Yes")));
        keepAllSlots();
        m_window->storage.save(m_window->library);
        QCOMPARE(m_window->libraryRows(), QStringLiteral("Lead"));
        const QStringList files = m_window->files().filter(QStringLiteral(".prst"));
        QCOMPARE(files.size(), 1);
        const auto file = SPresetFile::fromData(m_window->read(files.first()));
        QVERIFY(file);
        const quint64 id = file->patches.first().simpleHash() ^ file->userIRs.first().simpleHash();
        QCOMPARE(files.first(), QStringLiteral("lib-Lead.%1.prst").arg(id));
        // The list that it came from holds nothing new.
        import(listFile(twins().first(1)));
        keepAllSlots();
        QCOMPARE(m_window->library.count(), 1);
    }

    void namesThatAreNoTextAreToldAndTheirBytesKept()
    {
        SPatch bad = TestRecords::patch(QStringLiteral("_error_"), 3);
        bad.unreadableName = QByteArray("Caf\xE9").leftJustified(16, '\0');
        QByteArray list = listFile(twins() + QList{bad} + presets(1) + QList{bad});
        import(list);
        QCOMPARE(m_window->message(), QStringLiteral("Some names in the file cannot be read"));
        QVERIFY(m_window->messageText().startsWith(
            QStringLiteral("The names in slots 1.3, 2.2 are not valid text and are shown as \"_error_\".")));
        QVERIFY(m_window->answer(QStringLiteral("OK")));
        QCOMPARE(m_window->message(), QString());
        QCOMPARE(exported(), list);
        // From the library as well, also after a restart, until it is renamed.
        keepAllSlots();
        QCOMPARE(m_window->libraryRows(), QStringLiteral("Twin Twin _error_ Preset 01"));
        m_window->storage.save(m_window->library);
        const LibraryDirectory place = *m_window;
        m_window.reset();
        m_window = std::make_unique<WindowFixture>(place);
        QVERIFY(m_window->open());
        WindowFixture::click(m_window->libraryList(), 2);
        m_window->dialogs.answer = m_window->filePath(QStringLiteral("../one.prst"));
        QVERIFY(m_window->choose(QStringLiteral("Export One Patch")));
        QCOMPARE(m_window->read(QStringLiteral("../one.prst")), listFile({bad}));
        rename(2, QStringLiteral("Cafe"));
        QVERIFY(m_window->choose(QStringLiteral("Export One Patch")));
        SPatch renamed = bad;
        renamed.rename(QStringLiteral("Cafe"));
        QCOMPARE(m_window->read(QStringLiteral("../one.prst")), listFile({renamed}));
        import(listFile(twins()));
        QCOMPARE(m_window->message(), QString());
    }
};

VELGOR_WIDGET_TEST(TestSlotsAndLibrary)
#include "tst_SlotsAndLibrary.moc"
