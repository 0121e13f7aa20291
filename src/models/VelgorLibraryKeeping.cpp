// How patches enter a library: which of them it has already, under which id the others come, and copies.

#include "VelgorLibrary.h"

#include "Diagnostics.h"
#include "ObservableProperty.h"
#include "PatchIdentity.h"
#include "PatchName.h"
#include "RandomId.h"
#include "Utf8Text.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <utility>

namespace {

const VelgorPatch *nobodyElse(quint64 id)
{
    Q_UNUSED(id)
    return nullptr;
}

} // namespace

bool VelgorLibrary::isAwaitedAsAnother(quint64 id, const QString &name) const
{
    const auto awaited = m_marks.awaited.patches.constFind(id);
    return awaited != m_marks.awaited.patches.cend() && PatchName::fitted(awaited->name) != PatchName::fitted(name);
}

VelgorPatch VelgorLibrary::applyAwaited(VelgorPatch patch)
{
    const auto awaited = patch.records ? m_marks.awaited.patches.constFind(patch.id()) : m_marks.awaited.patches.cend();
    if (awaited == m_marks.awaited.patches.cend()) {
        return patch;
    }
    patch.applyEdits(*awaited);
    m_marks.awaited.patches.erase(awaited);
    return patch;
}

void VelgorLibrary::settleAwaitedDefault()
{
    if (m_marks.awaited.defaultPatch && getPatchFromId(m_marks.awaited.defaultPatch)) {
        const std::optional<quint64> id = std::exchange(m_marks.awaited.defaultPatch, std::nullopt);
        setObservable(this, m_marks.defaultPatch, m_marks.defaultPatch ? m_marks.defaultPatch : id,
            &VelgorLibrary::defaultPatchChanged);
    }
}

bool VelgorLibrary::restoreSound(const VelgorPatch &patch)
{
    const auto held = m_marks.awaited.doubtful.contains(patch.id()) ? getPatchFromId(patch.id()) : std::nullopt;
    // The id does not see every damage; where the damage is certain, the held bytes prove nothing.
    const bool isOriginal = held && held->patch->records && patch.records
        && held->patch->records->patchData.nameField() == patch.records->patchData.nameField()
        && VelgorPatch::staticSimpleHash(patch) == patch.id()
        && (m_marks.awaited.damaged.contains(patch.id())
            || !PatchIdentity::mayHaveId(*held->patch, patch.id(), held->patch->name));
    if (isOriginal) {
        if (!PatchIdentity::isSameSound(*held->patch, patch)) {
            // Another sound that gives the same id is another patch from now on.
            m_marks.awaited.damaged.remove(patch.id());
        }
        replaceRecords(held->index, patch.records);
    }
    return isOriginal;
}

PatchIdentity::Place VelgorLibrary::placeOf(const VelgorPatch &patch, const PatchIdentity::Holder &alsoHere) const
{
    // Stands for a patch of which nothing can be read: it is the same as no other.
    const VelgorPatch unread(~patch.id());
    const PatchIdentity::Place place = PatchIdentity::placeOf(patch, [&](quint64 id) {
        const auto found = getPatchFromId(id);
        if (!found && patch.records && isAwaitedAsAnother(id, patch.records->patchData.name)) {
            return &unread;
        }
        return found ? found->patch : alsoHere(id);
    });
    if (place.isKnown || !patch.records) {
        return place;
    }
    std::optional<Found> first;
    for (const quint64 id : m_index.otherIds(VelgorPatch::staticSimpleHash(patch), rows())) {
        const auto found = getPatchFromId(id);
        if (found && (!first || found->index < first->index) && PatchIdentity::isSameContent(*found->patch, patch)) {
            first = found;
        }
    }
    return first ? PatchIdentity::Place{.id = first->patch->id(), .isKnown = true} : place;
}

std::optional<quint64> VelgorLibrary::knownId(const VelgorPatch &patch) const
{
    const PatchIdentity::Place place = placeOf(patch, nobodyElse);
    return place.isKnown ? std::optional(place.id) : std::nullopt;
}

void VelgorLibrary::append(const SPresetFile &presets, bool replace, std::optional<quint64> synonymId)
{
    if (presets.patches.isEmpty() || presets.patches.size() != presets.userIRs.size()) {
        Diagnostics::printLine(QStringLiteral("Nothing to put into library"));
        return;
    }
    for (qsizetype i = 0; i < presets.patches.size(); ++i) {
        const auto found = replace && synonymId ? getPatchFromId(synonymId) : std::nullopt;
        if (found && !found->patch->empty) {
            // As append() would, without a patch whose id nobody asks for.
            replaceRecords(
                found->index, PresetRecords{presets.patches.at(i), presets.userIRs.at(i), presets.headerDesc});
            manageDummy();
            saveOrder();
            continue;
        }
        const VelgorPatch patch(presets.patches.at(i), presets.userIRs.at(i), presets.headerDesc);
        append(patch, false, replace, atEnd, synonymId);
    }
}

quint64 VelgorLibrary::append(
    const VelgorPatch &patch, bool duplicate, bool replace, qsizetype location, std::optional<quint64> synonymId)
{
    const quint64 id = appendOrReplace(patch, duplicate, replace, location, synonymId);
    settleAwaitedDefault();
    manageDummy();
    saveOrder();
    return id;
}

quint64 VelgorLibrary::appendOrReplace(
    const VelgorPatch &patch, bool duplicate, bool replace, qsizetype location, std::optional<quint64> synonymId)
{
    std::optional<Found> found = getPatchFromId(synonymId);
    quint64 id = synonymId.value_or(0);
    if (!found) {
        const PatchIdentity::Place place = placeOf(patch, nobodyElse);
        id = place.id;
        found = place.isKnown ? getPatchFromId(id) : std::nullopt;
        // What the damage spared may be the sound, and the header not.
        const bool isHeldHere = found && !duplicate && id == patch.id();
        if ((!found || isHeldHere) && restoreSound(patch)) {
            return patch.id();
        }
    }
    if (!found) {
        const bool isInside = location != atEnd && location <= count();
        insertRows(isInside ? location : count(), {applyAwaited(patch.withId(id))});
    } else if (duplicate && !found->patch->empty) {
        id = appendDuplicate(patch, found->patch->name);
    } else if (replace && !found->patch->empty) {
        replaceRecords(found->index, patch.records);
    }
    return id;
}

QList<quint64> VelgorLibrary::appendNew(const QList<VelgorPatch> &patches)
{
    QList<quint64> ids;
    QList<VelgorPatch> fresh;
    QHash<quint64, qsizetype> freshRows;
    const auto freshPatch = [&](quint64 id) {
        const qsizetype row = freshRows.value(id, -1);
        return row < 0 ? nullptr : &fresh.at(row);
    };
    for (const VelgorPatch &patch : patches) {
        const PatchIdentity::Place place = placeOf(patch, freshPatch);
        const bool isElsewhere = place.isKnown && place.id != patch.id();
        if (!isElsewhere && restoreSound(patch)) {
            ids.append(patch.id());
            continue;
        }
        ids.append(place.id);
        if (!place.isKnown) {
            freshRows.insert(place.id, fresh.size());
            fresh.append(applyAwaited(patch.withId(place.id)));
        }
    }
    appendAll(fresh);
    return ids;
}

void VelgorLibrary::restore(const QList<VelgorPatch> &patches)
{
    QList<VelgorPatch> restored;
    QSet<quint64> ids;
    for (const VelgorPatch &patch : patches) {
        if (!getPatchFromId(patch.id()) && !ids.contains(patch.id())) {
            ids.insert(patch.id());
            restored.append(patch);
        }
    }
    appendAll(restored);
}

void VelgorLibrary::appendAll(const QList<VelgorPatch> &patches)
{
    if (!patches.isEmpty()) {
        insertRows(count(), patches);
    }
    settleAwaitedDefault();
    manageDummy();
    saveOrder();
}

void VelgorLibrary::replaceRecords(qsizetype row, const std::optional<PresetRecords> &records)
{
    VelgorPatch stored = rows().at(row);
    stored.records = records;
    changeRows({row}, {stored});
}

quint64 VelgorLibrary::appendDuplicate(const VelgorPatch &patch, const QString &foundName)
{
    VelgorPatch copy = VelgorPatch::copyNamed(patch, findNewNameForDuplicate(foundName));
    // Names of nine bytes that differ in the last one hash alike.
    for (quint32 attempt = 1; getPatchFromId(copy.id()) || m_marks.awaited.patches.contains(copy.id()); ++attempt) {
        copy = copy.withId(copy.records ? PatchIdentity::freshId(copy, attempt) : randomId());
    }
    insertRows(rows().size(), {copy});
    return copy.id();
}

QString VelgorLibrary::findNewNameForDuplicate(const QString &fromname)
{
    // Whole characters, so that the suffix is not cut off where the name's field ends.
    constexpr qsizetype longestBase = PatchName::fieldSize - 1;
    for (int digits = 1;; ++digits) {
        const qsizetype baseSize = std::max<qsizetype>(longestBase - digits, 0);
        const QString base = Utf8Text::longestPrefixWithin(PatchName::fitted(fromname), baseSize);
        const QString stem = base + u'-';
        if (const auto number = m_index.freeNumber(stem, digits, rows())) {
            return stem + QString::number(*number);
        }
    }
}
