#pragma once

#include "LibraryMarks.h"
#include "LibraryState.h"
#include "PatchIdentity.h"
#include "PatchIndex.h"
#include "RecordedRows.h"
#include "SPresetFile.h"

#include <QHash>
#include <QList>
#include <QObject>

#include <limits>
#include <optional>

/// The user's collection of patches: an ordered list with unique ids, a selection, ticks and a default patch.
///
/// When it would be empty it holds one placeholder patch ("Empty library", `empty` set), which count() and every
/// decision on emptiness leave out. Every change is announced, and can be recorded. User-interface thread only.
class VelgorLibrary : public RecordedRows<VelgorPatch> {
    Q_OBJECT

public:
    /// Where a patch was found, and the patch. The pointer is good until the next change of the library.
    struct Found {
        qsizetype index;
        const VelgorPatch *patch;
    };

    static constexpr qsizetype atEnd = -1;

    /// A library with nothing but the placeholder.
    explicit VelgorLibrary(QObject *parent = nullptr);
    /// A library as it was stored, without placeholder even if the list is empty.
    VelgorLibrary(const QList<VelgorPatch> &patches, std::optional<quint64> defaultPatch, QObject *parent = nullptr);

    [[nodiscard]] const QList<VelgorPatch> &patches() const { return rows(); }
    /// The lower-cased names and comments by row. The references are good until the next change of the library.
    [[nodiscard]] const CaselessTexts &caselessNames() const { return m_index.names(rows()); }
    [[nodiscard]] const CaselessTexts &caselessComments() const { return m_index.comments(rows()); }
    /// The ids in the order that sort() can go back to.
    [[nodiscard]] const QList<quint64> &order();
    /// The patches as they are stored: as long as sorting only shows them in another order, that is the former one.
    [[nodiscard]] QList<VelgorPatch> patchesInOwnOrder() const;
    /// What of the library is stored: everything but the placeholder patch. Cheap, as the patches are shared until one
    /// side changes them; may go to another thread.
    [[nodiscard]] LibraryState state() const;
    [[nodiscard]] std::optional<quint64> selection() const { return m_marks.selection; }
    [[nodiscard]] bool isMultiSel() const { return m_marks.isMultiSel; }
    [[nodiscard]] const MultiSelections &multiSelections() const { return m_marks.multiSelections; }
    [[nodiscard]] bool deleteConfirm() const { return m_deleteConfirm; }
    [[nodiscard]] TripleBool inverseSort() const { return m_marks.order.inverseSort; }
    [[nodiscard]] std::optional<quint64> defaultPatch() const { return m_marks.defaultPatch; }

    /// They are no part of the library, but no other patch gets one of these ids: only what comes under the same name
    /// is taken for the one that is awaited, and gets what the user had said about it.
    void setAwaited(const AwaitedPatches &awaited) { m_marks.awaited = awaited; }

    void setSelection(std::optional<quint64> selection);
    void setIsMultiSel(bool isMultiSel);
    void setMultiSelections(const MultiSelections &multiSelections);
    void setDeleteConfirm(bool deleteConfirm);

    /// Takes the patches, their order and the default patch of `loaded`, announced as one reset; selection, ticks,
    /// modes and the sort cycle start afresh. Everything is in place when wasReset() and the change signals come.
    void adopt(LibraryState loaded);

    /// Records what happens to the library until endChange(), which gives it.
    void startChange();
    [[nodiscard]] LibraryChange endChange();
    /// Does a recorded change again, or takes it back where it is the inverse of one. The library must be as it was
    /// when that began.
    void apply(const LibraryChange &change);

    /// Number of patches; a placeholder on its own counts as none.
    [[nodiscard]] qsizetype count() const;
    /// The first patch with this id; nothing for an absent or unknown id.
    [[nodiscard]] std::optional<Found> getPatchFromId(std::optional<quint64> id) const;

    /// Appends every patch of a file, each as append() below does, at the end. Prints a line when there are none.
    void append(const SPresetFile &presets, bool replace, std::optional<quint64> synonymId = std::nullopt);
    /// Inserts `patch` at `location` unless the library holds a patch with the id `synonymId`, or else this very patch.
    /// If it does: with `duplicate`, a copy under a new name goes to the end; otherwise, with `replace`, the stored
    /// patch takes over the preset records; otherwise nothing changes. Gives the id under which the library holds the
    /// patch now: a fresh one when another patch has its own.
    quint64 append(const VelgorPatch &patch, bool duplicate, bool replace, qsizetype location = atEnd,
        std::optional<quint64> synonymId = std::nullopt);
    /// Appends those of several patches that are not known yet at the end, announced as one insertion. Gives the id
    /// under which the library holds each of them now.
    QList<quint64> appendNew(const QList<VelgorPatch> &patches);
    /// Puts patches back at the end under the ids that they had; one whose id is taken is left out.
    void restore(const QList<VelgorPatch> &patches);
    /// The id under which the library holds this very patch: the same bytes and name of the record, whatever the name
    /// that the user gave it here.
    [[nodiscard]] std::optional<quint64> knownId(const VelgorPatch &patch) const;
    /// Puts an edited patch in the place of the one with its id. False when there is none.
    bool update(const VelgorPatch &patch) { return update(QList{patch}); }
    /// The same for several, announced as one change from the first to the last. False when one of them has no place.
    bool update(const QList<VelgorPatch> &patches);
    /// Moves one patch; `offset` counts in the list as it is before the move, as a drop between rows does.
    void move(qsizetype from, qsizetype offset);

    /// Puts a copy under a new name at the end, unless `id` is unknown or absent.
    void duplicateSelection(std::optional<quint64> id);
    /// The same for many. The order is remembered when the last copy is there.
    void duplicatePatches(const QList<quint64> &ids);
    /// Removes the patch with this id, its tick, and the default mark where it has it.
    void deletePatch(quint64 id) { deletePatches({id}); }
    /// The same for many, announced as one removal.
    void deletePatches(const QList<quint64> &ids);
    /// Makes a real patch the default; an absent or unknown id and the placeholder change nothing. False then.
    bool setDefaultPatch(std::optional<quint64> id);

    /// Remembers the present order, unless the library is empty. Where that is the order of a sort, it is announced.
    void saveOrder();
    /// Sorts by name upwards, goes back to the remembered order, sorts by name downwards: one step a call.
    void sort();
    /// Every patch, ticked when its preset content and impulse response equal those of `id` whatever the names.
    /// Empty for an unknown id and for the placeholder.
    [[nodiscard]] MultiSelections findSimilarPatches(quint64 id) const;
    /// The ticked patches that exist, in library order; the first `atMost` of them.
    [[nodiscard]] QList<VelgorPatch> getMultiSelection(qsizetype atMost = std::numeric_limits<qsizetype>::max()) const;
    /// The same as multiSelections().count(true), without a walk over all ticks.
    [[nodiscard]] qsizetype tickedCount() const;

Q_SIGNALS:
    void selectionChanged();
    void isMultiSelChanged();
    void multiSelectionsChanged();
    void deleteConfirmChanged();
    void inverseSortChanged();
    void defaultPatchChanged();
    /// The list was sorted, and a change has made the sorted order the one that sort() goes back to.
    void sortedOrderKept();

private:
    using Announcement = void (VelgorLibrary::*)();

    void followInserted(const QList<qsizetype> &rows) override;
    void followRemoved(const QList<qsizetype> &formerRows) override;
    void followChanged(qsizetype row, const VelgorPatch &before) override;
    void followMoved(qsizetype from, qsizetype to) override;
    void followReordered(const QList<qsizetype> &formerRows) override;
    void followExchanged() override;

    /// What is to be announced once the rows fit.
    [[nodiscard]] QList<Announcement> setMarks(const LibraryMarks &marks);
    void replaceRecords(qsizetype row, const std::optional<PresetRecords> &records);
    /// `alsoHere` finds patches that are about to be appended.
    [[nodiscard]] bool isAwaitedAsAnother(quint64 id, const QString &name) const;
    /// What was said about the patch of this id while it was awaited, if it was; it is awaited no longer.
    [[nodiscard]] VelgorPatch applyAwaited(VelgorPatch patch);
    /// The awaited patch that was the default one is it again once it is here, unless the user chose another.
    void settleAwaitedDefault();
    /// Where the library holds bytes under this patch's id that are damaged, or may be, and name and id say that it was
    /// this one, these take their place. True when it was so.
    bool restoreSound(const VelgorPatch &patch);
    [[nodiscard]] PatchIdentity::Place placeOf(const VelgorPatch &patch, const PatchIdentity::Holder &alsoHere) const;
    void appendAll(const QList<VelgorPatch> &patches);
    /// What the public append() does, but for the placeholder and the order.
    quint64 appendOrReplace(const VelgorPatch &patch, bool duplicate, bool replace, qsizetype location = atEnd,
        std::optional<quint64> synonymId = std::nullopt);
    quint64 appendDuplicate(const VelgorPatch &patch, const QString &foundName);
    [[nodiscard]] QString findNewNameForDuplicate(const QString &fromname);
    void manageDummy();
    void countEmpty();

    void materializeOrder();
    [[nodiscard]] bool isInRememberedOrder() const;
    [[nodiscard]] QList<qsizetype> rowsByRememberedOrder() const;
    void reorder(const QList<qsizetype> &formerRows);

    LibraryMarks m_marks;
    LibraryMarks m_marksBefore; ///< while a change is recorded
    mutable PatchIndex m_index;
    qsizetype m_emptyCount = 0;
    mutable std::optional<qsizetype> m_tickedCount; ///< made when asked for
    bool m_deleteConfirm = false;
};
