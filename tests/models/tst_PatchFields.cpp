#include "FurtherFlag.h"
#include "LibraryJson.h"
#include "LibraryJsonTexts.h"
#include "LibraryViewFilter.h"
#include "TestPatches.h"
#include "TestProgram.h"
#include "VelgorLibrary.h"

#include <QSet>
#include <QTest>

using namespace LibraryJsonTexts;

namespace {

/// The members of a patch as a version writes them that does not know the further flag.
QList<Member> olderMembers()
{
    QList<Member> members = patchMembers();
    members.removeLast();
    return members;
}

QByteArray olderPatch()
{
    return objectOf(olderMembers());
}

QByteArray newerPatch(const QByteArray &value)
{
    QList<Member> members = olderMembers();
    members.append({"live", value, "boolean"});
    return objectOf(members);
}

VelgorPatch marked(bool isLive)
{
    VelgorPatch patch(QStringLiteral("Lead"), false);
    patch.empty = isLive;
    return patch;
}

} // namespace

class TestPatchFields : public QObject {
    Q_OBJECT

private:
    const std::vector<PatchField> m_rows = FurtherFlag::rowsWith();

private Q_SLOTS:
    void aRowSaysAllThatIsAskedOfIt()
    {
        QSet<QByteArray> keys;
        QSet<QByteArray> options;
        QSet<QByteArray> shortcuts;
        int withoutMember = 0;
        for (const PatchField &field : PatchFields::all()) {
            const int members = (field.text ? 1 : 0) + (field.flag ? 1 : 0) + (field.date ? 1 : 0);
            QVERIFY2(members <= 1, field.key);
            withoutMember += 1 - members;
            QVERIFY2(!keys.contains(field.key), field.key);
            keys.insert(field.key);
            const bool isShown = field.group != PatchField::Group::None;
            QVERIFY2(!isShown || (field.flag && field.isSeen && field.label && field.initial), field.key);
            QCOMPARE(field.isMark(), isShown && field.group != PatchField::Group::UserImpulseResponse);
            QCOMPARE(field.command != nullptr, field.isMark());
            QVERIFY2(field.isFilter == isShown && (field.option != nullptr) == isShown, field.key);
            QVERIFY2(!isShown || !options.contains(field.option), field.key);
            options.insert(field.option);
            QVERIFY2(!field.shortcut || !shortcuts.contains(field.shortcut), field.key);
            shortcuts.insert(field.shortcut);
            // A mark needs no words of its own for what the filter asks.
            const bool hasWords = field.filterHelp != nullptr;
            QCOMPARE(hasWords, field.isFilter && !field.isMark());
            QCOMPARE(field.filterToolTip != nullptr, hasWords);
        }
        QCOMPARE(withoutMember, 1);
        QVERIFY(keys.size() <= 64);
    }

    void aFurtherFlagIsWrittenAndComesBack()
    {
        VelgorPatch patch = TestPatches::stored(7, QStringLiteral("Lead"));
        for (const bool isSet : {true, false}) {
            patch.empty = isSet;
            const QByteArray text = LibraryJson::encode({{patch}, 7}, m_rows);
            QVERIFY(text.contains(isSet ? R"("solo":false,"live":true}])" : R"("solo":false,"live":false}])"));
            QVERIFY(!text.contains("empty"));
            QVERIFY(text.contains(LibraryJson::encodePatch(patch, m_rows)));
            const auto decoded = LibraryJson::decode(text, m_rows);
            QVERIFY(decoded && !decoded->hasUnknown);
            QVERIFY(TestPatches::isIdentical(decoded->patches.first(), patch));
        }
        QVERIFY(!LibraryJson::decode(libraryOf(newerPatch("1")), m_rows));
    }

    void anOptionalKeyThatIsMissingHasItsDefault_data()
    {
        QTest::addColumn<bool>("isSetWhenMissing");
        QTest::newRow("set") << true;
        QTest::newRow("not set") << false;
    }

    void anOptionalKeyThatIsMissingHasItsDefault()
    {
        QFETCH(const bool, isSetWhenMissing);
        PatchField further = FurtherFlag::row;
        if (!isSetWhenMissing) {
            further.setMissing = [](VelgorPatch &patch) { patch.empty = false; };
        }
        const std::vector<PatchField> rows = FurtherFlag::rowsWith(further);
        // Patches before and behind it must not lend it their value.
        const QByteArray other = newerPatch(isSetWhenMissing ? "false" : "true");
        const auto decoded = LibraryJson::decode(libraryOf(other + ',' + olderPatch() + ',' + other), rows);
        QVERIFY(decoded && !decoded->hasUnknown);
        QCOMPARE(decoded->patches.at(0).empty, !isSetWhenMissing);
        QCOMPARE(decoded->patches.at(1).empty, isSetWhenMissing);
        QCOMPARE(decoded->patches.at(2).empty, !isSetWhenMissing);
        QCOMPARE(decoded->patches.at(1).name, QStringLiteral("Lead"));
    }

    void aRequiredKeyThatIsMissingIsRefused()
    {
        PatchField further = FurtherFlag::row;
        further.setMissing = nullptr;
        const std::vector<PatchField> rows = FurtherFlag::rowsWith(further);
        QVERIFY(LibraryJson::decode(libraryOf(newerPatch("true")), rows));
        QVERIFY(!LibraryJson::decode(libraryOf(olderPatch()), rows));
    }

    void besideAnOptionalKeyTheOthersStayRequired()
    {
        for (const Member &left : olderMembers()) {
            QList<Member> members = olderMembers();
            members.removeIf([&left](const Member &member) { return member.key == left.key; });
            QVERIFY2(!LibraryJson::decode(libraryOf(objectOf(members)), m_rows), left.key.constData());
        }
    }

    void aFurtherFlagIsCompared()
    {
        const VelgorPatch with = marked(true);
        VelgorPatch without = with;
        without.empty = false;
        QVERIFY(with == without);
        QVERIFY(!PatchFields::areEqual(with, without, m_rows));
        QVERIFY(PatchFields::areEqual(with, with, m_rows));
    }

    void aFurtherFlagGoesAlongWithEdits()
    {
        VelgorPatch patch = marked(false);
        VelgorPatch edited = marked(true);
        edited.name = QStringLiteral("Mine");
        edited.solo = true;
        edited.version = QStringLiteral("V9");
        PatchFields::copyEdited(edited, patch, m_rows);
        QVERIFY(patch.empty && patch.solo);
        QCOMPARE(patch.name, QStringLiteral("Mine"));
        QCOMPARE(patch.version, QStringLiteral("!NONE"));
    }

    void theFilterAsksForAFurtherFlag()
    {
        LibraryViewFilter filter;
        filter.filterPatch.empty = true;
        const QList<VelgorPatch> patches{marked(false), marked(true)};
        QVERIFY(filter.show(patches.at(0)));
        QVERIFY(!filter.show(patches.at(0), m_rows));
        QVERIFY(filter.show(patches.at(1), m_rows));
        QCOMPARE(filter.filter(patches, m_rows).size(), 1);
        const VelgorLibrary library(patches, std::nullopt);
        QCOMPARE(filter.shownRows(library, m_rows), std::vector<qsizetype>{1});
    }
};

VELGOR_TEST(TestPatchFields)
#include "tst_PatchFields.moc"
