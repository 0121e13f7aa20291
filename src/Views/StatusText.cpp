#include "StatusText.h"

#include "DropMark.h"
#include "LibraryStorageManager.h"
#include "ShownName.h"
#include "VelgorContentPatch.h"
#include "VelgorLibrary.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(StatusText)
};

QString positionOf(qsizetype row)
{
    const BankNumber place = BankNumber::ofSlot(row);
    return QStringLiteral("%1.%2").arg(place.bank).arg(place.number);
}

QString fileNameOf(const QString &path)
{
    return shownName(QFileInfo(path).fileName());
}

} // namespace

QString StatusText::ofLibrary(const Desk &desk)
{
    if (desk.storage.isLoading()) {
        return Texts::tr("Loading the library");
    }
    if (desk.storage.waitingToSave()) {
        return Texts::tr("Saving changes");
    }
    if (desk.storage.hasUnsavedChanges()) {
        return Texts::tr("Changes not saved");
    }
    if (desk.library.count() == 0) {
        return Texts::tr("Library folder: %1").arg(directory(desk.storage.libDirectory()));
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
    if (mark.kind != DropMark::Replace) {
        return {};
    }
    if (mark.count == 1) {
        return Texts::tr("Replaces slot %1").arg(positionOf(mark.row));
    }
    return Texts::tr("Replaces %1 slots, %2 to %3")
        .arg(QString::number(mark.count), positionOf(mark.row), positionOf(mark.row + mark.count - 1));
}

QString StatusText::ofFileDrop(const QStringList &paths, bool isForLibrary)
{
    const QString file = fileNameOf(paths.first());
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

QString StatusText::ofDuplicates(const QString &firstName, qsizetype count)
{
    return count == 1 ? Texts::tr("Duplicated as \"%1\"").arg(shownName(firstName))
                      : Texts::tr("%1 patches duplicated").arg(count);
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
    const QString file = fileNameOf(path);
    return count == 1 ? Texts::tr("1 slot read from %1").arg(file)
                      : Texts::tr("%1 slots read from %2").arg(QString::number(count), file);
}

QString StatusText::ofExport(qsizetype count, const QString &path)
{
    const QString file = fileNameOf(path);
    return count == 1 ? Texts::tr("1 slot written to %1").arg(file)
                      : Texts::tr("%1 slots written to %2").arg(QString::number(count), file);
}

QString StatusText::ofPatchExport(const QString &name, const QString &path)
{
    return Texts::tr("\"%1\" written to %2").arg(shownName(name), fileNameOf(path));
}

QString StatusText::ofLibraryMove(const QString &path)
{
    return Texts::tr("Library moved to %1").arg(isolated(directory(path)));
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
