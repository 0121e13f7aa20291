#include "WalkInvariants.h"

#include "LibraryFileNames.h"
#include "LibraryListModel.h"
#include "LibraryLoader.h"
#include "PatchRoles.h"
#include "WindowFixture.h"

#include <QApplication>
#include <QDir>

#include <algorithm>

namespace {

QString libraryRowsWrong(const WindowFixture &window)
{
    const auto *model = qobject_cast<const LibraryListModel *>(window.libraryList()->model());
    const QList<VelgorPatch> shown = model->filter().filter(window.library.patches());
    if (model->rowCount() != shown.size()) {
        return QStringLiteral("%1 rows for %2 patches that pass the filter").arg(model->rowCount()).arg(shown.size());
    }
    for (int row = 0; row < model->rowCount(); ++row) {
        const VelgorPatch &patch = shown.at(row);
        const QModelIndex index = model->index(row, 0);
        const bool isTicked = window.library.isMultiSel() && window.library.multiSelections().isTicked(patch.id());
        if (model->idAt(row) != patch.id() || index.data(PatchRoles::Name) != patch.name
            || index.data(PatchRoles::HasUserIR) != patch.hasUserIR || index.data(PatchRoles::Version) != patch.version
            || (index.data(Qt::CheckStateRole) == Qt::Checked) != isTicked) {
            return QStringLiteral("library row %1 does not show \"%2\"").arg(row).arg(patch.name);
        }
        const bool isSelected = window.libraryList()->selectionModel()->isSelected(index);
        if (isSelected != (window.library.selection() == patch.id())) {
            return QStringLiteral("library row %1 is selected or not against the library").arg(row);
        }
    }
    const qsizetype count = model->filteredVelgorPatchesCount();
    const QString said = QStringLiteral("Showing: %1 element%2 out of %3")
                             .arg(QString::number(count), count >= 2 ? QStringLiteral("s") : QString(),
                                 QString::number(window.library.count()));
    return window.isSaid(said) ? QString() : QStringLiteral("the window does not say \"%1\"").arg(said);
}

QString slotsWrong(const WindowFixture &window)
{
    const auto &list = window.content.velgorContentPatchList();
    const QAbstractItemModel *model = window.contentList()->model();
    if (!list.isEmpty() && list.size() != window.content.limit()) {
        return QStringLiteral("%1 slots instead of %2").arg(list.size()).arg(window.content.limit());
    }
    if (model->rowCount() != list.size()) {
        return QStringLiteral("%1 rows for %2 slots").arg(model->rowCount()).arg(list.size());
    }
    for (int row = 0; row < model->rowCount(); ++row) {
        const VelgorContentPatch &slot = list.at(row);
        const QModelIndex index = model->index(row, 0);
        const QString place = QStringLiteral("%1.%2 ").arg(row / 3 + 1).arg(row % 3 + 1);
        if (slot.bank != row / 3 + 1 || slot.number != row % 3 + 1 || index.data(PatchRoles::Name) != slot.patch.name
            || !index.data().toString().startsWith(place)) {
            return QStringLiteral("content row %1 does not show \"%2\"").arg(row).arg(slot.patch.name);
        }
        if (window.contentList()->selectionModel()->isSelected(index)
            != window.content.selections().contains(slot.id)) {
            return QStringLiteral("content row %1 is selected or not against the list").arg(row);
        }
    }
    return {};
}

QString libraryWrong(const VelgorLibrary &library)
{
    QSet<quint64> ids;
    for (qsizetype row = 0; row < library.patches().size(); ++row) {
        const VelgorPatch &patch = library.patches().at(row);
        const auto found = library.getPatchFromId(patch.id());
        if (!found || found->index != row || ids.contains(patch.id())) {
            return QStringLiteral("\"%1\" is not found by its id").arg(patch.name);
        }
        if (patch.empty ? library.patches().size() != 1 : !patch.records.has_value()) {
            return QStringLiteral("\"%1\" has no sound").arg(patch.name);
        }
        ids.insert(patch.id());
    }
    return library.patches().isEmpty() ? QStringLiteral("the library has lost its placeholder") : QString();
}

/// Everything that the user can come to see of each patch, by its id.
QMap<quint64, QByteArray> described(const QList<VelgorPatch> &patches)
{
    QMap<quint64, QByteArray> result;
    FakeFileAccess files;
    PatchFileHandler handler(files);
    const QString path = QStringLiteral("patch");
    for (const VelgorPatch &patch : patches) {
        files.files.clear();
        std::ignore = handler.exportTo({patch}, path);
        result.insert(patch.id(), LibraryJson::encodePatch(patch) + files.files.value(path));
    }
    return result;
}

QString filesWrong(const QString &directory, const QList<VelgorPatch> &patches)
{
    QStringList expected;
    for (const VelgorPatch &patch : patches) {
        expected.append(LibraryFileNames::patchFile(patch.name, patch.id()));
    }
    QStringList found =
        QDir(directory).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    if (found.removeAll(LibraryFileNames::libraryFile()) != 1) {
        return QStringLiteral("the library file is missing");
    }
    std::sort(expected.begin(), expected.end());
    std::sort(found.begin(), found.end());
    if (found == expected) {
        return {};
    }
    const QSet<QString> foundNames(found.begin(), found.end());
    const QSet<QString> expectedNames(expected.begin(), expected.end());
    return QStringLiteral("files that should not be there: %1; missing: %2")
        .arg((foundNames - expectedNames).values().join(u' '), (expectedNames - foundNames).values().join(u' '));
}

} // namespace

QString WalkInvariants::shownWrong(const WindowFixture &window)
{
    if (!window.message().isEmpty() || QApplication::activeModalWidget() || QApplication::activePopupWidget()) {
        return QStringLiteral("something stands over the window: %1").arg(window.message());
    }
    for (const QString &problem : {libraryWrong(window.library), libraryRowsWrong(window), slotsWrong(window)}) {
        if (!problem.isEmpty()) {
            return problem;
        }
    }
    return {};
}

QString WalkInvariants::storedWrong(WindowFixture &window, bool isOrderSaved)
{
    if (!window.storage.saveUnsaved() || window.storage.writeError() || window.storage.readError()) {
        return QStringLiteral("the library cannot be saved: ") + window.storage.writeProblems().join(u' ');
    }
    const LibraryState here = window.library.state();
    const LibraryLoadResult result = LibraryLoader(window.storage.libDirectory()).load();
    const LibraryState there = result.library.value_or(LibraryState());
    if (!result.droppedPatches.isEmpty() || result.problem) {
        return QStringLiteral("loading leaves out %1 %2")
            .arg(result.droppedPatches.join(u' '), result.problem.value_or(Problem()).text());
    }
    if (described(there.patches) != described(here.patches)) {
        return QStringLiteral("what is stored is not what is shown");
    }
    if (!here.patches.isEmpty() && there.defaultPatch != here.defaultPatch) {
        return QStringLiteral("the stored default patch is another one");
    }
    if (isOrderSaved && LibraryJson::encode({there.patches, {}}) != LibraryJson::encode({here.patches, {}})) {
        return QStringLiteral("the stored order is another one");
    }
    return filesWrong(window.storage.libDirectory(), here.patches);
}
