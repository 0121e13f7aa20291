#include "VelgorContent.h"

#include "Diagnostics.h"
#include "ObservableProperty.h"
#include "PatchIdentity.h"

#include <algorithm>
#include <numeric>
#include <utility>

VelgorContent::VelgorContent(QObject *parent)
    : RecordedRows(parent)
{
}

void VelgorContent::setLimit(int limit)
{
    setObservable(this, m_marks.limit, limit, &VelgorContent::limitChanged);
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
    setObservable(this, m_marks.inverseTailBit, inverseTailBit, &VelgorContent::inverseTailBitChanged);
}

void VelgorContent::setSelections(const QSet<QUuid> &selections)
{
    setObservable(this, m_marks.selections, selections, &VelgorContent::selectionsChanged);
}

void VelgorContent::setFile(const QString &path)
{
    setOrigin(std::make_shared<ContentOrigin>(ContentOrigin{path, rows(), inverseTailBit()}));
}

void VelgorContent::setOrigin(const std::shared_ptr<const ContentOrigin> &origin)
{
    setObservable(this, m_marks.origin, origin, &VelgorContent::originChanged);
}

void VelgorContent::setVersions(const QMap<QString, int> &versions)
{
    setObservable(this, m_marks.versions, versions, &VelgorContent::versionsChanged);
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
    QList<VelgorContentPatch> slotsOfFile;
    slotsOfFile.reserve(count);
    // As patches count that are placed one by one where nothing was.
    const QString placeholderVersion = VelgorPatch(QString(), false).version;
    QMap<QString, int> versions;
    for (int row = 0; row < count; ++row) {
        slotsOfFile.append(
            VelgorContentPatch(VelgorPatch(presets.patches.at(row), presets.userIRs.at(row), presets.headerDesc)));
        slotsOfFile.last().standAt(row);
        versions[placeholderVersion] = std::max(0, versions.value(placeholderVersion, 0) - 1);
        ++versions[slotsOfFile.last().patch.version];
    }
    exchangeRows(slotsOfFile);
    setVersions(versions);
}

void VelgorContent::createNew(const VelgorPatch &fillwith)
{
    exchangeRows(filled(0, newListSize, fillwith));
}

void VelgorContent::adjust(const std::optional<VelgorPatch> &fillwith)
{
    const qsizetype before = rows().size();
    const qsizetype after = std::max(limit(), 0);
    if (after > before) {
        insertRows(before, filled(before, after - before, fillwith));
    } else if (after < before) {
        QList<qsizetype> dropped(before - after);
        std::iota(dropped.begin(), dropped.end(), after);
        removeRows(dropped);
    }
    renum();
}

QList<VelgorContentPatch> VelgorContent::filled(
    qsizetype first, qsizetype count, const std::optional<VelgorPatch> &fillwith)
{
    QList<VelgorContentPatch> list;
    list.reserve(count);
    while (list.size() < count) {
        VelgorContentPatch slot(fillwith ? *fillwith : VelgorPatch(QStringLiteral("-empty-"), false));
        slot.standAt(first + list.size());
        list.append(slot);
    }
    return list;
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
    QList<qsizetype> filledRows;
    QList<VelgorContentPatch> values;
    QMap<QString, int> versions = m_marks.versions;
    for (qsizetype row = location; row < rows().size() && row - location < patches.size(); ++row) {
        VelgorContentPatch slot = rows().at(row);
        const VelgorPatch &patch = patches.at(row - location);
        versions[slot.patch.version] = std::max(0, versions.value(slot.patch.version, 0) - 1);
        ++versions[patch.version];
        slot.patch = patch;
        filledRows.append(row);
        values.append(slot);
    }
    changeRows(filledRows, values);
    setVersions(versions);
}

void VelgorContent::replace(const QUuid &id, const VelgorPatch &with)
{
    const auto found =
        std::find_if(rows().begin(), rows().end(), [&id](const VelgorContentPatch &slot) { return slot.id == id; });
    if (found != rows().end()) {
        replace(QList{found - rows().begin()}, with);
    }
}

void VelgorContent::replace(const QList<qsizetype> &rows, const VelgorPatch &with)
{
    QList<VelgorContentPatch> values;
    values.reserve(rows.size());
    for (const qsizetype row : rows) {
        values.append(filled(row, 1, with));
    }
    changeRows(rows, values);
}

void VelgorContent::move(qsizetype from, qsizetype offset)
{
    move(QList{from}, offset);
}

void VelgorContent::move(const QList<qsizetype> &rows, qsizetype offset)
{
    const qsizetype count = this->rows().size();
    if (!rows.isEmpty() && (rows.first() < 0 || rows.last() >= count || offset < 0 || offset > count)) {
        Diagnostics::fatalStop("slot out of range");
    }
    if (rows.size() == 1) {
        moveRow(rows.first(), offset);
    } else if (rows.size() > 1) {
        QList<qsizetype> formerRows;
        QList<qsizetype> behind;
        auto moved = rows.begin();
        for (qsizetype row = 0; row < count; ++row) {
            if (moved != rows.end() && *moved == row) {
                ++moved;
            } else {
                (row < offset ? formerRows : behind).append(row);
            }
        }
        reorderRows(formerRows + rows + behind);
    }
    if (count > 0) {
        renum();
    }
}

void VelgorContent::propagateChangedPatch(
    const VelgorPatch &patch, const std::function<bool(const VelgorPatch &held)> &isHeld)
{
    QList<quint64> ids{patch.id()};
    if (isHeld && patch.records) {
        ids += {VelgorPatch::staticSimpleHash(patch), PatchIdentity::freshId(patch, 1)};
    }
    QList<qsizetype> holding;
    QList<VelgorContentPatch> values;
    for (qsizetype row = 0; row < rows().size(); ++row) {
        const VelgorContentPatch &slot = rows().at(row);
        if (ids.contains(slot.patch.id()) && PatchIdentity::isSameContent(slot.patch, patch)
            && (!isHeld || isHeld(slot.patch))) {
            holding.append(row);
            values.append(slot);
            values.last().patch.applyEdits(patch);
        }
    }
    changeRows(holding, values);
}

void VelgorContent::startChange()
{
    m_marksBefore = m_marks;
    startRecording();
}

ContentChange VelgorContent::endChange()
{
    return {.deltas = takeRecorded(), .before = std::exchange(m_marksBefore, {}), .after = m_marks};
}

void VelgorContent::apply(const ContentChange &change)
{
    applyDeltas(change.deltas);
    setLimit(change.after.limit);
    if (!rows().isEmpty()) {
        renum();
    }
    setVersions(change.after.versions);
    setInverseTailBit(change.after.inverseTailBit);
    setSelections(change.after.selections);
    // An export is no part of a change, and stays when one is taken back.
    if (change.before.origin != change.after.origin) {
        setOrigin(change.after.origin);
    }
}

void VelgorContent::followChanged(qsizetype row, const VelgorContentPatch &before)
{
    if (!PatchIdentity::isSameSound(before.patch, rows().at(row).patch)) {
        m_soundHashes.reset();
    }
}

void VelgorContent::followExchanged()
{
    m_soundHashes.reset();
    setLimit(static_cast<int>(rows().size()));
    setOrigin({});
}

void VelgorContent::renum()
{
    if (rows().isEmpty()) {
        Diagnostics::fatalStop("an empty list has no slots to number");
    }
    qsizetype first = rows().size();
    qsizetype last = -1;
    for (qsizetype row = 0; row < rows().size(); ++row) {
        if (unrecordedRows()[row].standAt(row)) {
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
    QMap<QString, int> versions = m_marks.versions;
    versions.removeIf([](QMap<QString, int>::iterator entry) { return entry.value() == 0; });
    setVersions(versions);
    setMixVersions(versions.size() > 1);
}

void VelgorContent::recountVersions()
{
    QMap<QString, int> versions;
    for (const VelgorContentPatch &slot : rows()) {
        ++versions[slot.patch.version];
    }
    setVersions(versions);
}

const RowValues<std::optional<quint64>> &VelgorContent::soundHashes() const
{
    if (!m_soundHashes) {
        m_soundHashes.emplace();
        m_soundHashes->reserve(rows().size());
        for (const VelgorContentPatch &slot : rows()) {
            m_soundHashes->append(slot.patch.soundHash());
        }
    }
    return *m_soundHashes;
}

std::pair<QList<SPatch>, QList<SUserIR>> VelgorContent::getPatchesAndUserIRs() const
{
    if (rows().isEmpty()) {
        Diagnostics::fatalStop("an empty list has no records");
    }
    std::pair<QList<SPatch>, QList<SUserIR>> records;
    for (const VelgorContentPatch &slot : rows()) {
        if (const std::optional<PresetRecords> &held = slot.patch.records) {
            records.first.append(held->patchData);
            records.first.last().rename(slot.patch.name);
            records.second.append(held->userIRData);
        }
    }
    return records;
}
