#include "CommandTable.h"
#include "FurtherFlag.h"
#include "TestProgram.h"

#include <QTest>

namespace {

QString namesOf(const QList<CommandOption> &options)
{
    QStringList names;
    for (const CommandOption &option : options) {
        names.append(option.name);
    }
    return names.join(u' ');
}

} // namespace

/// The options that the fields of patches have.
class TestPatchOptions : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void flagsAreOptionsOfListAndSet()
    {
        const QString marks = QStringLiteral("guitar bass clean crunch drive higain rythm solo");
        QCOMPARE(namesOf(CommandTable::filterOptions()), marks + QStringLiteral(" user-ir"));
        QCOMPARE(namesOf(CommandTable::markOptions()), marks);
        const Command *list = CommandTable::find(QStringLiteral("library list"));
        const Command *set = CommandTable::find(QStringLiteral("library set"));
        QCOMPARE(namesOf(list->options),
            QStringLiteral("json ids name comment %1 user-ir sort library help version").arg(marks));
        QCOMPARE(namesOf(set->options), QStringLiteral("name comment %1 default library help version").arg(marks));
    }

    void aFurtherFlagIsAnOptionToo()
    {
        const std::vector<PatchField> rows = FurtherFlag::rowsWith();
        const QList<CommandOption> filters = CommandTable::filterOptions(rows);
        const QList<CommandOption> marks = CommandTable::markOptions(rows);
        QCOMPARE(namesOf(filters), QStringLiteral("guitar bass clean crunch drive higain rythm solo live user-ir"));
        QCOMPARE(namesOf(marks), QStringLiteral("guitar bass clean crunch drive higain rythm solo live"));
        QCOMPARE(filters.at(8).value, QString());
        QCOMPARE(filters.at(8).description, QStringLiteral("only patches marked \"live\""));
        QCOMPARE(marks.last().value, QStringLiteral("on|off"));
        QCOMPARE(marks.last().description, QStringLiteral("marks the patch \"live\", or takes the mark away"));
    }
};

VELGOR_TEST(TestPatchOptions)
#include "tst_PatchOptions.moc"
