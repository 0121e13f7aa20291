#include "StatusText.h"

#include "DropMark.h"
#include "LibraryStorageManager.h"
#include "VelgorContentPatch.h"
#include "VelgorLibrary.h"

#include <QCoreApplication>
#include <QDir>

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(StatusText)
};

QString positionOf(int row)
{
    const BankNumber place = BankNumber::ofSlot(row);
    return QStringLiteral("%1.%2").arg(place.bank).arg(place.number);
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
