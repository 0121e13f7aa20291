#include "LibraryEditor.h"

#include "AwaitedPatches.h"
#include "CommandTargets.h"
#include "Diagnostics.h"
#include "EditHistory.h"
#include "ShownName.h"
#include "VelgorLibrary.h"

#include <QSet>

#include <algorithm>
#include <iterator>
#include <utility>

LibraryEditor::LibraryEditor(VelgorLibrary &library, VelgorContent &content, EditHistory &history)
    : m_library(library)
    , m_content(content)
    , m_history(history)
{
}

void LibraryEditor::edit(const VelgorPatch &patch)
{
    m_history.perform(
        tr("Edit of \"%1\"").arg(shownName(patch.name)),
        [&] {
            m_library.update(patch);
            propagate(patch.id());
            m_library.saveOrder();
        },
        typedField(patch));
}

QString LibraryEditor::typedField(const VelgorPatch &edited) const
{
    const auto found = m_library.getPatchFromId(edited.id());
    if (!found) {
        return {};
    }
    VelgorPatch patch = *found->patch;
    patch.name = edited.name;
    const bool isName = patch == edited && patch.name != found->patch->name;
    patch.name = found->patch->name;
    patch.comment = edited.comment;
    const bool isComment = patch == edited && patch.comment != found->patch->comment;
    return isName || isComment ? QStringLiteral("%1 %2").arg(edited.id()).arg(isName) : QString();
}

void LibraryEditor::adoptLoaded(std::optional<LibraryState> loaded, const AwaitedPatches &awaited)
{
    if (loaded) {
        m_library.adopt(*std::move(loaded));
    }
    m_library.setAwaited(awaited);
    m_history.forget();
}

void LibraryEditor::changed()
{
    m_library.saveOrder();
    m_history.requestSave();
}

void LibraryEditor::changed(quint64 id)
{
    m_history.perform(tr("Edit"), [&] { propagate(id); });
    changed();
}

void LibraryEditor::setDefaultPatch(quint64 id)
{
    m_history.perform(tr("Choice of the Default Patch"), [&] { m_library.setDefaultPatch(id); });
}

bool LibraryEditor::isDefaultPatch(quint64 id) const
{
    return m_library.defaultPatch() == id;
}

void LibraryEditor::select(std::optional<quint64> id)
{
    m_library.setSelection(id);
}

void LibraryEditor::setFilter(const LibraryViewFilter &filter)
{
    if (m_filter != filter) {
        m_filter = filter;
        select(std::nullopt);
    }
}

qsizetype LibraryEditor::hiddenCount(const QList<VelgorPatch> &patches) const
{
    return std::count_if(
        patches.begin(), patches.end(), [this](const VelgorPatch &patch) { return !m_filter.show(patch); });
}

void LibraryEditor::sort()
{
    select(std::nullopt);
    m_history.perform(tr("Sort"), [this] { m_library.sort(); });
}

void LibraryEditor::flipMultiSelection()
{
    m_library.setMultiSelections({});
    m_library.setIsMultiSel(!m_library.isMultiSel());
}

void LibraryEditor::flipTick(quint64 id)
{
    setTicked(id, !m_library.multiSelections().isTicked(id));
}

void LibraryEditor::setTicked(quint64 id, bool isTicked)
{
    MultiSelections ticks = m_library.multiSelections();
    ticks.multiSelections[id] = isTicked;
    m_library.setMultiSelections(ticks);
}

void LibraryEditor::tickToo(const QList<quint64> &ids)
{
    MultiSelections ticks;
    const VelgorPatch *selected = selectedPatch();
    if (m_library.isMultiSel()) {
        ticks = m_library.multiSelections();
    } else if (selected && m_filter.show(*selected)) {
        ticks.multiSelections.insert(selected->id(), true);
    }
    for (const quint64 id : ids) {
        ticks.multiSelections.insert(id, true);
    }
    m_library.setMultiSelections(ticks);
    m_library.setIsMultiSel(true);
}

void LibraryEditor::tickAll()
{
    if (m_library.count() == 0) {
        return;
    }
    const std::vector<qsizetype> rows = m_filter.shownRows(m_library);
    MultiSelections ticks;
    ticks.multiSelections.reserve(static_cast<qsizetype>(rows.size()));
    for (const qsizetype row : rows) {
        ticks.multiSelections.insert(m_library.patches().at(row).id(), true);
    }
    m_library.setMultiSelections(ticks);
    m_library.setIsMultiSel(true);
}

void LibraryEditor::tickSimilar()
{
    if (const VelgorPatch *selected = selectedPatch()) {
        const MultiSelections similar = m_library.findSimilarPatches(selected->id());
        m_library.setMultiSelections(similar);
        m_library.setIsMultiSel(true);
    }
}

void LibraryEditor::setDeleteConfirm(bool isAsked)
{
    m_library.setDeleteConfirm(isAsked);
}

void LibraryEditor::duplicateSelected()
{
    const qsizetype former = m_library.count();
    const QList<quint64> ids = idsOfSeveral();
    m_history.perform(ids.size() == 1 ? tr("Duplicate of a Patch") : tr("Duplicates of %1 Patches").arg(ids.size()),
        [&] { m_library.duplicatePatches(ids); });
    if (m_library.count() > former) {
        Q_EMIT duplicated(idsFrom(former));
    }
}

void LibraryEditor::setSelectedAsDefault()
{
    if (const std::optional<quint64> id = m_library.selection()) {
        setDefaultPatch(*id);
    }
}

void LibraryEditor::flipFlagOfSelected(Flag flag)
{
    const bool isSet = !CommandTargets::allHave(m_library, flag);
    QList<VelgorPatch> patches = CommandTargets::several(m_library);
    if (patches.isEmpty()) {
        return;
    }
    for (VelgorPatch &patch : patches) {
        patch.*flag = isSet;
    }
    m_history.perform(patches.size() == 1 ? tr("Mark of a Patch") : tr("Mark of %1 Patches").arg(patches.size()), [&] {
        m_library.update(patches);
        for (const VelgorPatch &patch : std::as_const(patches)) {
            propagate(patch.id());
        }
        m_library.saveOrder();
    });
    Q_EMIT classified(idsOfSeveral(), flag, isSet);
}

const VelgorPatch *LibraryEditor::selectedPatch() const
{
    return CommandTargets::one(m_library);
}

QList<quint64> LibraryEditor::idsOfSeveral() const
{
    QList<quint64> ids;
    const QList<VelgorPatch> patches = CommandTargets::several(m_library);
    ids.reserve(patches.size());
    for (const VelgorPatch &patch : patches) {
        ids.append(patch.id());
    }
    return ids;
}

void LibraryEditor::deleteAll(const QList<quint64> &ids, std::optional<quint64> next)
{
    m_history.perform(ids.size() == 1 ? tr("Delete of a Patch") : tr("Delete of %1 Patches").arg(ids.size()), [&] {
        // Selected first, so that what shows the selected patch is not without one in between.
        m_library.setSelection(next);
        if (!ids.isEmpty()) {
            m_library.deletePatches(ids);
        }
    });
}

void LibraryEditor::deleteSelected()
{
    deleteAll(idsOfSeveral(), std::nullopt);
}

void LibraryEditor::deleteAndGoOn()
{
    const QList<quint64> ids = idsOfSeveral();
    const auto first = ids.isEmpty() ? std::nullopt : m_library.getPatchFromId(ids.first());
    const QString firstName = first ? first->patch->name : QString();
    deleteAll(ids, CommandTargets::nextToDeleted(m_library, m_filter));
    if (!ids.isEmpty()) {
        Q_EMIT deleted(firstName, ids.size());
    }
    Q_EMIT wentOn();
}

void LibraryEditor::deleteFromId(quint64 id)
{
    if (m_library.getPatchFromId(id)) {
        deleteAll({id}, m_library.selection());
    }
}

void LibraryEditor::drop(const QList<TransferablePatch> &items, qsizetype location)
{
    if (items.size() == 1 && items.first().origin == TransferablePatch::fromLibrary) {
        move(items.first().id, location);
    } else {
        keepSlots(items);
    }
}

void LibraryEditor::move(quint64 id, qsizetype location)
{
    const auto found = m_library.getPatchFromId(id);
    if (!found || found->patch->empty) {
        return;
    }
    const qsizetype former = found->index;
    m_history.perform(tr("Move of \"%1\"").arg(shownName(found->patch->name)), [&] {
        m_library.move(former, std::clamp<qsizetype>(location, 0, m_library.patches().size()));
        m_library.saveOrder();
    });
    if (m_library.getPatchFromId(id)->index != former) {
        Q_EMIT moved(id);
    }
}

void LibraryEditor::keep(const QList<VelgorPatch> &patches, bool isFirstSelected)
{
    if (patches.isEmpty()) {
        return;
    }
    QList<VelgorPatch> dated = patches;
    for (VelgorPatch &patch : dated) {
        patch.date = ReferenceDate::now();
    }
    const qsizetype former = m_library.count();
    QList<quint64> ids;
    m_history.perform(
        dated.size() == 1 ? tr("Keeping of a Patch") : tr("Keeping of %1 Patches").arg(dated.size()), [&] {
            ids = m_library.appendNew(dated);
            if (isFirstSelected) {
                Diagnostics::printLine(QStringLiteral("Select %1").arg(ids.first()));
                m_library.setSelection(ids.first());
            }
        });
    const QList<quint64> fresh = idsFrom(former);
    QSet<quint64> unseen(fresh.begin(), fresh.end());
    QList<quint64> known;
    std::copy_if(
        ids.begin(), ids.end(), std::back_inserter(known), [&unseen](quint64 id) { return !unseen.remove(id); });
    Q_EMIT kept(fresh, known);
}

QList<quint64> LibraryEditor::idsFrom(qsizetype row) const
{
    QList<quint64> ids;
    for (qsizetype i = row; i < m_library.count(); ++i) {
        ids.append(m_library.patches().at(i).id());
    }
    return ids;
}
