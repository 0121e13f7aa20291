#include "StatusText.h"

#include "CommandTargets.h"
#include "DropMark.h"
#include "LibraryStorageManager.h"
#include "PatchFlags.h"
#include "ShownName.h"
#include "VelgorContent.h"
#include "VelgorLibrary.h"

#include <QCoreApplication>
#include <QDir>

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(StatusText)
};

/// The first few of many names, and how many more there are.
QString fewNames(const QStringList &first, qsizetype all)
{
    QStringList names;
    for (const QString &name : first) {
        names.append(Texts::tr("\"%1\"").arg(shownName(name)));
    }
    const QString list = names.join(Texts::tr(", "));
    return all > names.size() ? Texts::tr("%1 and %2 more").arg(list, QString::number(all - names.size())) : list;
}

QString positionOf(qsizetype row)
{
    const BankNumber place = BankNumber::ofSlot(row);
    return QStringLiteral("%1.%2").arg(place.bank).arg(place.number);
}

/// How many patches do not fit of those that were to be placed, and which.
QString ofLeftOut(qsizetype placed, qsizetype leftOut, const QStringList &firstLeftOut)
{
    return Texts::tr("%1 of %2 patches fit, no slot is left for %3")
        .arg(QString::number(placed), QString::number(placed + leftOut), fewNames(firstLeftOut, leftOut));
}

} // namespace

QString StatusText::ofLibrary(const VelgorLibrary &library, const LibraryStorageManager &storage)
{
    if (storage.isLoading()) {
        return Texts::tr("Loading the library");
    }
    if (storage.waitingToSave() || storage.isSaving()) {
        return Texts::tr("Saving changes");
    }
    if (storage.hasUnsavedChanges()) {
        return Texts::tr("Changes not saved");
    }
    if (library.count() == 0) {
        return Texts::tr("Library folder: %1").arg(shownPath(directory(storage.libDirectory())));
    }
    return Texts::tr("All changes saved");
}

QString StatusText::directory(const QString &path)
{
    const QString home = QDir::homePath();
    const QString shown = path.startsWith(home + u'/') ? QStringLiteral("~") + path.mid(home.size()) : path;
    return QDir::toNativeSeparators(shown);
}

QString StatusText::ofDrop(const DropMark &mark)
{
    if (mark.kind == DropMark::Insert) {
        return mark.place;
    }
    if (mark.kind != DropMark::Replace) {
        return {};
    }
    QStringList sentences;
    if (mark.count == 1) {
        sentences.append(Texts::tr("Replaces slot %1").arg(positionOf(mark.row)));
    } else {
        sentences.append(
            Texts::tr("Replaces %1 slots, %2 to %3")
                .arg(QString::number(mark.count), positionOf(mark.row), positionOf(mark.row + mark.count - 1)));
    }
    if (mark.leftOut > 0) {
        sentences.append(ofLeftOut(mark.count, mark.leftOut, mark.firstLeftOut));
    }
    if (mark.hidden > 0) {
        sentences.append(Texts::tr("The filter hides %1 of them").arg(mark.hidden));
    }
    return sentences.join(QStringLiteral(". "));
}

QString StatusText::ofMove(const QString &name, qsizetype row, qsizetype count, const QString &before)
{
    const QString place = QString::number(row + 1);
    if (before.isEmpty()) {
        return Texts::tr(R"(Moves "%1" to row %2 of %3 in the whole library)")
            .arg(shownName(name), place, QString::number(count));
    }
    return Texts::tr(R"(Moves "%1" to row %2 of %3 in the whole library, behind "%4")")
        .arg(shownName(name), place, QString::number(count), shownName(before));
}

QString StatusText::ofMoveNowhere(const QString &name, qsizetype row, qsizetype count)
{
    return Texts::tr("Leaves \"%1\" in row %2 of %3 in the whole library")
        .arg(shownName(name), QString::number(row + 1), QString::number(count));
}

QString StatusText::ofPlacement(const ContentEditor::Placement &placement)
{
    const qsizetype placed = placement.patches.size();
    if (placed == 0) {
        return {};
    }
    if (placement.wanted() == 1) {
        return Texts::tr("\"%1\" placed in slot %2")
            .arg(shownName(placement.patches.first().name), positionOf(placement.row));
    }
    const QString where = placed == 1
        ? Texts::tr("1 patch placed in slot %1").arg(positionOf(placement.row))
        : Texts::tr("%1 patches placed in slots %2 to %3")
              .arg(QString::number(placed), positionOf(placement.row), positionOf(placement.row + placed - 1));
    return placement.leftOut == 0
        ? where
        : where + QStringLiteral(". ") + ofLeftOut(placed, placement.leftOut, placement.firstLeftOut);
}

QString StatusText::ofReplacement(const QString &name, const QList<qsizetype> &rows)
{
    return rows.size() == 1 ? Texts::tr("\"%1\" placed in slot %2").arg(shownName(name), positionOf(rows.first()))
                            : Texts::tr("\"%1\" placed in %2 slots").arg(shownName(name), QString::number(rows.size()));
}

QString StatusText::ofClassification(const QString &firstName, qsizetype count, bool VelgorPatch::*flag, bool isSet)
{
    QString label;
    for (const PatchField &field : PatchFields::all()) {
        if (field.flag == flag) {
            label = PatchFlags::label(field);
        }
    }
    if (count == 1) {
        const QString text =
            isSet ? Texts::tr("\"%1\" is marked as %2 now") : Texts::tr("\"%1\" is not marked as %2 any more");
        return text.arg(shownName(firstName), label);
    }
    const QString text =
        isSet ? Texts::tr("%1 patches are marked as %2 now") : Texts::tr("%1 patches are not marked as %2 any more");
    return text.arg(QString::number(count), label);
}

QString StatusText::ofSortedOrder()
{
    return Texts::tr("The sorted order is the library's own now");
}

QString StatusText::ofMissingForPut(
    const VelgorLibrary &library, const VelgorContent &content, const ContentEditor &editor)
{
    if (content.velgorContentPatchList().isEmpty()) {
        return Texts::tr("Import or make a list first");
    }
    if (editor.selectedRows().isEmpty()) {
        return Texts::tr("Select a slot first, in the list on the left");
    }
    if (CommandTargets::count(library) == 0) {
        return Texts::tr("Select a patch in the library first");
    }
    if (!CommandTargets::one(library)) {
        return Texts::tr("Select one patch in the library first, its tick does not count here");
    }
    return {};
}

QString StatusText::ofFileDrop(const QStringList &paths, bool isForLibrary)
{
    const QString file = shownFileName(paths.first());
    if (paths.size() == 1) {
        return isForLibrary ? Texts::tr("Keeps the patches of %1 in the library").arg(file)
                            : Texts::tr("Imports %1 into the list").arg(file);
    }
    return isForLibrary ? Texts::tr("Keeps the patches of %1 files in the library").arg(paths.size())
                        : Texts::tr("Only one of %1 files can be imported into the list").arg(paths.size());
}

QString StatusText::ofKept(qsizetype kept, qsizetype known)
{
    return Texts::tr("%1 kept, %2 already there").arg(kept).arg(known);
}

QString StatusText::ofDoubtfulPatches(qsizetype count)
{
    if (count == 0) {
        return {};
    }
    return count == 1
        ? Texts::tr("The file of a patch may hold another one than the library says; \"Check Library...\" names it")
        : Texts::tr(
            "The files of %1 patches may hold other ones than the library says; \"Check Library...\" names them")
              .arg(count);
}

QString StatusText::ofDuplicates(const QString &firstName, qsizetype count)
{
    return count == 1 ? Texts::tr("Duplicated as \"%1\"").arg(shownName(firstName))
                      : Texts::tr("%1 patches duplicated").arg(count);
}

QString StatusText::ofDeletion(const QString &firstName, qsizetype count)
{
    return count == 1 ? Texts::tr("\"%1\" deleted").arg(shownName(firstName))
                      : Texts::tr("%1 patches deleted").arg(count);
}

QString StatusText::ofPatchMove(const QString &name, qsizetype row, qsizetype count)
{
    return Texts::tr("\"%1\" is row %2 of %3 now")
        .arg(shownName(name), QString::number(row + 1), QString::number(count));
}

QString StatusText::ofSlotMove(qsizetype first, qsizetype count)
{
    if (count == 1) {
        return Texts::tr("Slot moved to %1").arg(positionOf(first));
    }
    return Texts::tr("%1 slots moved, %2 to %3 now")
        .arg(QString::number(count), positionOf(first), positionOf(first + count - 1));
}

QString StatusText::ofImport(qsizetype count, const QString &path)
{
    const QString file = shownFileName(path);
    return count == 1 ? Texts::tr("1 slot read from %1").arg(file)
                      : Texts::tr("%1 slots read from %2").arg(QString::number(count), file);
}

QString StatusText::ofExport(qsizetype count, const QString &path)
{
    const QString file = shownFileName(path);
    return count == 1 ? Texts::tr("1 slot written to %1").arg(file)
                      : Texts::tr("%1 slots written to %2").arg(QString::number(count), file);
}

QString StatusText::ofPatchExport(const QString &name, const QString &path)
{
    return Texts::tr("\"%1\" written to %2").arg(shownName(name), shownFileName(path));
}

QString StatusText::ofLibraryMove(const QString &path)
{
    return Texts::tr("Library moved to %1").arg(shownPath(directory(path)));
}

QString StatusText::ofHidden(qsizetype hidden, qsizetype count)
{
    if (hidden == 0) {
        return {};
    }
    if (hidden < count) {
        return Texts::tr("The filter hides %1 of them").arg(hidden);
    }
    return count == 1 ? Texts::tr("The filter hides it") : Texts::tr("The filter hides them");
}

QString StatusText::ofPage(const QString &address)
{
    return Texts::tr("The browser was asked to show %1").arg(address);
}
