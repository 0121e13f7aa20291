// What the library and the slots of the list have to do with each other: which patch a slot holds, which edits reach
// it, and what is kept of it.

#include "LibraryEditor.h"

#include "PatchIdentity.h"
#include "VelgorContent.h"
#include "VelgorLibrary.h"

#include <QHash>
#include <QSet>

#include <algorithm>

void LibraryEditor::propagate(quint64 id)
{
    if (const auto found = m_library.getPatchFromId(id)) {
        m_content.propagateChangedPatch(
            *found->patch, [this, id](const VelgorPatch &held) { return m_library.knownId(held) == id; });
    }
}

bool LibraryEditor::isOfSlot(const VelgorPatch &patch, const VelgorPatch &held) const
{
    if (!PatchIdentity::isSameSound(patch, held)) {
        return false;
    }
    // The same sound under another name counts where the library has not got this very patch.
    return PatchIdentity::isSameContent(patch, held) || !m_library.knownId(held);
}

QList<BankNumber> LibraryEditor::inContentPatch(quint64 pid) const
{
    QList<BankNumber> places;
    const auto found = m_library.getPatchFromId(pid);
    const std::optional<quint64> sound = found ? found->patch->soundHash() : std::nullopt;
    if (!sound) {
        return places;
    }
    const auto &sounds = m_content.soundHashes();
    for (qsizetype row = 0; row < sounds.size(); ++row) {
        const VelgorContentPatch &slot = m_content.velgorContentPatchList().at(row);
        if (sounds.at(row) == sound && isOfSlot(*found->patch, slot.patch)) {
            places.append({.bank = slot.bank, .number = slot.number});
        }
    }
    return places;
}

std::optional<quint64> LibraryEditor::patchOfSlot(qsizetype row) const
{
    const VelgorPatch &held = m_content.velgorContentPatchList().at(row).patch;
    const std::optional<quint64> sound = held.soundHash();
    if (!sound) {
        return std::nullopt;
    }
    if (const std::optional<quint64> known = m_library.knownId(held)) {
        return known;
    }
    const auto isHeld = [&](const VelgorPatch &patch) {
        return patch.soundHash() == sound && PatchIdentity::isSameSound(patch, held);
    };
    const auto &patches = m_library.patches();
    const auto same = std::find_if(patches.begin(), patches.end(), isHeld);
    return same != patches.end() ? std::optional(same->id()) : std::nullopt;
}

bool LibraryEditor::canKeep(const QList<TransferablePatch> &items) const
{
    QSet<QUuid> slotIds;
    for (const TransferablePatch &item : items) {
        if (item.cid) {
            slotIds.insert(*item.cid);
        }
    }
    const auto &list = m_content.velgorContentPatchList();
    return std::any_of(list.begin(), list.end(),
        [&slotIds](const VelgorContentPatch &slot) { return slot.patch.records && slotIds.contains(slot.id); });
}

QList<TransferablePatch> LibraryEditor::selectedSlots() const
{
    QList<TransferablePatch> items;
    for (const VelgorContentPatch &slot : m_content.velgorContentPatchList()) {
        if (m_content.selections().contains(slot.id)) {
            items.append(TransferablePatch::ofSlot(slot));
        }
    }
    return items;
}

void LibraryEditor::keepSelectedSlots()
{
    drop(selectedSlots(), 0);
}

bool LibraryEditor::canKeepSelectedSlots() const
{
    return canKeep(selectedSlots());
}

void LibraryEditor::keepSlots(const QList<TransferablePatch> &items)
{
    QHash<QUuid, const VelgorPatch *> slotPatches;
    for (const VelgorContentPatch &slot : m_content.velgorContentPatchList()) {
        slotPatches.insert(slot.id, &slot.patch);
    }
    QList<VelgorPatch> patches;
    bool isFirstThere = false;
    for (qsizetype i = 0; i < items.size(); ++i) {
        const VelgorPatch *held = items.at(i).cid ? slotPatches.value(*items.at(i).cid) : nullptr;
        // A slot without preset data has nothing that could be kept.
        if (held && held->records) {
            patches.append(*held);
            isFirstThere |= i == 0;
        }
    }
    keep(patches, isFirstThere);
}
