#pragma once

#include "LibraryCallbacks.h"
#include "LibraryViewFilter.h"
#include "TransferablePatch.h"

#include <QList>
#include <QObject>

struct AwaitedPatches;
struct LibraryState;
class EditHistory;
class VelgorContent;
class VelgorLibrary;

/// What the user does to the library, by mouse, keyboard or menu: each operation is a step of the history that changes
/// the library and lets the list being composed follow. Which patches it means is up to CommandTargets. Unknown ids do
/// nothing. User-interface thread only.
class LibraryEditor : public QObject, public LibraryCallbacks {
    Q_OBJECT

public:
    /// One classification of a patch.
    using Flag = bool VelgorPatch::*;

    /// All three must outlive the editor.
    LibraryEditor(VelgorLibrary &library, VelgorContent &content, EditHistory &history);

    void edit(const VelgorPatch &patch) override;
    void changed(quint64 id) override;
    [[nodiscard]] QList<BankNumber> inContentPatch(quint64 pid) const override;
    void setDefaultPatch(quint64 id) override;
    [[nodiscard]] bool isDefaultPatch(quint64 id) const override;

    /// The library changed: its order is remembered and a save is asked for.
    void changed();
    /// Adopts a library that was loaded, if there is one; no step leads back behind that. No patch gets an id of
    /// those that are awaited.
    void adoptLoaded(std::optional<LibraryState> loaded, const AwaitedPatches &awaited);
    void select(std::optional<quint64> id);
    /// The list shows what passes this filter from now on. Another filter than before deselects.
    void setFilter(const LibraryViewFilter &filter);
    /// How many of these patches the list does not show.
    [[nodiscard]] qsizetype hiddenCount(const QList<VelgorPatch> &patches) const;
    /// The next of the three orders: see VelgorLibrary::sort().
    void sort();
    /// Turns ticking on or off; both start without ticks.
    void flipMultiSelection();
    /// Ticks or unticks one patch.
    void flipTick(quint64 id);
    void setTicked(quint64 id, bool isTicked);
    /// Ticks these patches besides those that are ticked. Where ticking begins with it, the selected patch, if the list
    /// shows it, is ticked too.
    void tickToo(const QList<quint64> &ids);
    /// Ticks the patches that the list shows, and no others.
    void tickAll();
    /// Ticks the patches with the sound of the selected one.
    void tickSimilar();
    void duplicateSelected();
    void setSelectedAsDefault();
    /// Sets a classification of several patches, or clears it when all of them have it, as in
    /// flipFlagOfSelected(&VelgorPatch::guitar).
    void flipFlagOfSelected(Flag flag);
    /// The selected patch; nullptr when none is selected, it is gone or stands for the empty library.
    [[nodiscard]] const VelgorPatch *selectedPatch() const;
    /// The library patch that a slot holds: the one with its id, or else the first with its sound under another name.
    [[nodiscard]] std::optional<quint64> patchOfSlot(qsizetype row) const;
    /// Any of these slots still is there and holds a patch that can be kept.
    [[nodiscard]] bool canKeep(const QList<TransferablePatch> &items) const;
    /// Keeps the selected slots, as a drop of them would.
    void keepSelectedSlots();
    [[nodiscard]] bool canKeepSelectedSlots() const;
    /// Raises, or withdraws, the question whether to delete.
    void setDeleteConfirm(bool isAsked);
    /// Deletes several; nothing is selected then.
    void deleteSelected();
    /// The same, then selects what the user works on next: the selected patch if it is left, otherwise the next one in
    /// the list, or the last.
    void deleteAndGoOn();
    /// Deletes one patch and its files, and saves at once.
    void deleteFromId(quint64 id);

    /// Accepts what was dropped between two rows; `location` is the row that it was dropped above. A single library
    /// patch moves there. Slots are kept as new patches at the end, wherever they were dropped, and the first is
    /// selected.
    void drop(const QList<TransferablePatch> &items, qsizetype location);
    /// Moves one patch by library rows, as drop() counts them.
    void move(quint64 id, qsizetype location);
    /// Keeps patches as new ones at the end, and selects the first if so wished.
    void keep(const QList<VelgorPatch> &patches, bool isFirstSelected = true);

Q_SIGNALS:
    /// Patches were to be kept: these are new in the library, and these it held already, one for each patch.
    void kept(const QList<quint64> &fresh, const QList<quint64> &known);
    void duplicated(const QList<quint64> &copies);
    /// These patches got a classification, or lost it.
    void classified(const QList<quint64> &ids, LibraryEditor::Flag flag, bool isSet);
    void deleted(const QString &firstName, qsizetype count);
    /// Patches were deleted, and what the user works on next is selected.
    void wentOn();
    /// A patch went to another row of the library.
    void moved(quint64 id);

private:
    /// Which text is typed, where nothing else differs from what the library has; empty otherwise.
    [[nodiscard]] QString typedField(const VelgorPatch &edited) const;
    /// The slots that hold this patch follow its edits.
    void propagate(quint64 id);
    /// Whether what a slot holds counts as a use of this patch.
    [[nodiscard]] bool isOfSlot(const VelgorPatch &patch, const VelgorPatch &held) const;
    [[nodiscard]] QList<TransferablePatch> selectedSlots() const;
    [[nodiscard]] QList<quint64> idsOfSeveral() const;
    void deleteAll(const QList<quint64> &ids, std::optional<quint64> next);
    void keepSlots(const QList<TransferablePatch> &items);
    [[nodiscard]] QList<quint64> idsFrom(qsizetype row) const;

    VelgorLibrary &m_library;
    VelgorContent &m_content;
    EditHistory &m_history;
    LibraryViewFilter m_filter;
};
