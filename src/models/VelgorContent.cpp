#include "VelgorContent.h"

#include "Diagnostics.h"
#include "ObservableProperty.h"
#include "PatchIdentity.h"

#include <algorithm>

VelgorContent::VelgorContent(QObject *parent)
    : QObject(parent)
{
}

void VelgorContent::setLimit(int limit)
{
    setObservable(this, m_limit, limit, &VelgorContent::limitChanged);
}

void VelgorContent::setOpenError(bool openError)
{
    setObservable(this, m_openError, openError, &VelgorContent::openErrorChanged);
}

void VelgorContent::setUnreadableNames(bool unreadableNames)
{
    setObservable(this, m_unreadableNames, unreadableNames, &VelgorContent::unreadableNamesChanged);
}

void VelgorContent::setSaveError(bool saveError)
{
    setObservable(this, m_saveError, saveError, &VelgorContent::saveErrorChanged);
}

void VelgorContent::setSelectDefault(bool selectDefault)
{
    setObservable(this, m_selectDefault, selectDefault, &VelgorContent::selectDefaultChanged);
}

void VelgorContent::setMixVersions(bool mixVersions)
{
    setObservable(this, m_mixVersions, mixVersions, &VelgorContent::mixVersionsChanged);
}

void VelgorContent::setInverseTailBit(bool inverseTailBit)
{
    setObservable(this, m_inverseTailBit, inverseTailBit, &VelgorContent::inverseTailBitChanged);
}

void VelgorContent::setSelections(const QSet<QUuid> &selections)
{
    setObservable(this, m_selections, selections, &VelgorContent::selectionsChanged);
}

void VelgorContent::setVersions(const QMap<QString, int> &versions)
{
    setObservable(this, m_versions, versions, &VelgorContent::versionsChanged);
}

void VelgorContent::populate(const SPresetFile &presets)
{
    const int count = presets.headerDesc.nbpatches;
    if (count == 0) {
        Diagnostics::printLine(QStringLiteral("Cannot populate VelgorContent with no value"));
        return;
    }
    if (presets.patches.size() < count || presets.userIRs.size() < count) {
        Diagnostics::fatalStop("preset file with fewer records than it counts");
    }
    Q_EMIT aboutToBeReset();
    changingSlots().clear();
    setLimit(count);
    fill(std::nullopt);
    QMap<QString, int> versions;
    for (int i = 0; i < count; ++i) {
        place(VelgorPatch(presets.patches.at(i), presets.userIRs.at(i), presets.headerDesc), i, versions);
    }
    Q_EMIT wasReset();
    setVersions(versions);
}

void VelgorContent::createNew(const VelgorPatch &fillwith)
{
    // Copied before the former slots go, as the patch may stand in one of them.
    const std::optional<VelgorPatch> filler(fillwith);
    Q_EMIT aboutToBeReset();
    changingSlots().clear();
    setLimit(newListSize);
    fill(filler);
    Q_EMIT wasReset();
}

void VelgorContent::adjust(const std::optional<VelgorPatch> &fillwith)
{
    const qsizetype before = m_slots.size();
    const qsizetype after = std::max(m_limit, 0);
    if (after > before) {
        Q_EMIT rowsAboutToBeInserted(before, after - 1);
        fill(fillwith);
        Q_EMIT rowsInserted(before, after - 1);
    } else if (after < before) {
        Q_EMIT rowsAboutToBeRemoved(after, before - 1);
        changingSlots().remove(after, before - after);
        Q_EMIT rowsRemoved(after, before - 1);
    }
    renum();
}

void VelgorContent::fill(const std::optional<VelgorPatch> &fillwith)
{
    QList<VelgorContentPatch> &list = changingSlots();
    list.reserve(m_limit);
    while (list.size() < m_limit) {
        VelgorContentPatch slot(fillwith ? *fillwith : VelgorPatch(QStringLiteral("-empty-"), false));
        slot.standAt(list.size());
        list.append(slot);
    }
}

void VelgorContent::setPatch(const VelgorPatch &patch, qsizetype location)
{
    setPatches({patch}, location);
}

void VelgorContent::setPatches(const QList<VelgorPatch> &patches, qsizetype location)
{
    if (location < 0) {
        Diagnostics::fatalStop("slot location below 0");
    }
    if (location >= m_slots.size() || patches.isEmpty()) {
        return;
    }
    const qsizetype end = location + std::min(patches.size(), m_slots.size() - location);
    QMap<QString, int> versions = m_versions;
    for (qsizetype row = location; row < end; ++row) {
        place(patches.at(row - location), row, versions);
    }
    Q_EMIT rowsChanged(location, end - 1);
    setVersions(versions);
}

void VelgorContent::place(const VelgorPatch &patch, qsizetype location, QMap<QString, int> &versions)
{
    VelgorPatch &held = changingSlots()[location].patch;
    versions[held.version] = std::max(0, versions.value(held.version, 0) - 1);
    ++versions[patch.version];
    held = patch;
}

void VelgorContent::replace(const QUuid &id, const VelgorPatch &with)
{
    const auto found =
        std::find_if(m_slots.begin(), m_slots.end(), [&id](const VelgorContentPatch &slot) { return slot.id == id; });
    if (found != m_slots.end()) {
        replace(QList{found - m_slots.begin()}, with);
    }
}

void VelgorContent::replace(const QList<qsizetype> &rows, const VelgorPatch &with)
{
    if (rows.isEmpty()) {
        return;
    }
    // Copied before the former slots go, as the patch may stand in one of them.
    const VelgorContentPatch filler(with);
    for (const qsizetype row : rows) {
        VelgorContentPatch slot(filler.patch);
        slot.standAt(row);
        changingSlots()[row] = slot;
    }
    Q_EMIT rowsChanged(rows.first(), rows.last());
}

void VelgorContent::move(qsizetype from, qsizetype offset)
{
    move(QList{from}, offset);
}

void VelgorContent::move(const QList<qsizetype> &rows, qsizetype offset)
{
    if (!rows.isEmpty()
        && (rows.first() < 0 || rows.last() >= m_slots.size() || offset < 0 || offset > m_slots.size())) {
        Diagnostics::fatalStop("slot out of range");
    }
    if (rows.size() == 1) {
        moveOne(rows.first(), offset);
    } else if (rows.size() > 1) {
        moveMany(rows, offset);
    }
    if (!m_slots.isEmpty()) {
        renum();
    }
}

void VelgorContent::moveOne(qsizetype from, qsizetype offset)
{
    if (offset == from || offset == from + 1) {
        return;
    }
    Q_EMIT rowAboutToBeMoved(from, offset);
    changingSlots().move(from, offset > from ? offset - 1 : offset);
    Q_EMIT rowMoved(from, offset);
}

void VelgorContent::moveMany(const QList<qsizetype> &rows, qsizetype offset)
{
    QList<qsizetype> formerRows;
    QList<qsizetype> behind;
    auto moved = rows.begin();
    for (qsizetype row = 0; row < m_slots.size(); ++row) {
        if (moved != rows.end() && *moved == row) {
            ++moved;
        } else {
            (row < offset ? formerRows : behind).append(row);
        }
    }
    formerRows += rows;
    formerRows += behind;
    if (std::is_sorted(formerRows.begin(), formerRows.end())) {
        return;
    }
    Q_EMIT aboutToBeReordered();
    QList<VelgorContentPatch> &former = changingSlots();
    QList<VelgorContentPatch> reorderedSlots;
    reorderedSlots.reserve(former.size());
    for (const qsizetype row : std::as_const(formerRows)) {
        reorderedSlots.append(std::move(former[row]));
    }
    m_slots = reorderedSlots;
    Q_EMIT reordered(formerRows);
}

void VelgorContent::propagateChangedPatch(
    const VelgorPatch &velgorPatch, const std::function<bool(const VelgorPatch &held)> &isHeld)
{
    // Copied, as the patch may stand in one of the slots.
    const VelgorPatch patch = velgorPatch;
    QList<quint64> ids{patch.id()};
    if (isHeld && patch.records) {
        ids += {VelgorPatch::staticSimpleHash(patch), PatchIdentity::freshId(patch, 1)};
    }
    qsizetype first = -1;
    qsizetype last = -1;
    for (qsizetype row = 0; row < m_slots.size(); ++row) {
        const VelgorPatch &held = m_slots.at(row).patch;
        if (ids.contains(held.id()) && PatchIdentity::isSameContent(held, patch) && (!isHeld || isHeld(held))) {
            m_slots[row].patch.takeEdits(patch);
            first = first < 0 ? row : first;
            last = row;
        }
    }
    if (last >= 0) {
        Q_EMIT rowsChanged(first, last);
    }
}

void VelgorContent::renum()
{
    if (m_slots.isEmpty()) {
        Diagnostics::fatalStop("an empty list has no slots to number");
    }
    qsizetype first = m_slots.size();
    qsizetype last = -1;
    for (qsizetype row = 0; row < m_slots.size(); ++row) {
        if (m_slots[row].standAt(row)) {
            first = std::min(first, row);
            last = row;
        }
    }
    if (last >= 0) {
        Q_EMIT rowsChanged(first, last);
    }
}

void VelgorContent::checkVersions()
{
    QMap<QString, int> versions = m_versions;
    versions.removeIf([](QMap<QString, int>::iterator entry) { return entry.value() == 0; });
    setVersions(versions);
    setMixVersions(versions.size() > 1);
}

void VelgorContent::recountVersions()
{
    QMap<QString, int> versions;
    for (const VelgorContentPatch &slot : std::as_const(m_slots)) {
        ++versions[slot.patch.version];
    }
    setVersions(versions);
}

QList<VelgorContentPatch> &VelgorContent::changingSlots()
{
    m_soundHashes.reset();
    return m_slots;
}

const RowValues<std::optional<quint64>> &VelgorContent::soundHashes() const
{
    if (!m_soundHashes) {
        m_soundHashes.emplace();
        m_soundHashes->reserve(m_slots.size());
        for (const VelgorContentPatch &slot : m_slots) {
            m_soundHashes->append(slot.patch.soundHash());
        }
    }
    return *m_soundHashes;
}

std::pair<QList<SPatch>, QList<SUserIR>> VelgorContent::getPatchesAndUserIRs() const
{
    if (m_slots.isEmpty()) {
        Diagnostics::fatalStop("an empty list has no records");
    }
    std::pair<QList<SPatch>, QList<SUserIR>> records;
    for (const VelgorContentPatch &slot : m_slots) {
        if (const std::optional<PresetRecords> &held = slot.patch.records) {
            records.first.append(held->patchData);
            records.first.last().rename(slot.patch.name);
            records.second.append(held->userIRData);
        }
    }
    return records;
}
