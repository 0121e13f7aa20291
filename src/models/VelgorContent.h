#pragma once

#include "ContentMarks.h"
#include "RecordedRows.h"
#include "RowValues.h"
#include "SPresetFile.h"
#include "VelgorContentPatch.h"

#include <QList>
#include <QMap>
#include <QSet>

#include <functional>
#include <optional>
#include <utility>

class PatchFileHandler;

/// The preset list being composed: slots in the unit's order, each holding a patch.
/// User-interface thread only. Every change is announced, as in VelgorLibrary.
class VelgorContent : public RecordedRows<VelgorContentPatch> {
    Q_OBJECT

public:
    /// Slots of a new list: all that the unit has.
    static constexpr int newListSize = 99;

    explicit VelgorContent(QObject *parent = nullptr);

    /// Records what happens to the list until endChange(), which gives it.
    void startChange();
    [[nodiscard]] ContentChange endChange();
    /// Does a recorded change again, or takes it back where it is the inverse of one. The list must be as it was when
    /// that began.
    void apply(const ContentChange &change);

    /// Number of slots that adjust() makes the list have.
    [[nodiscard]] int limit() const { return m_marks.limit; }
    void setLimit(int limit);
    [[nodiscard]] const QList<VelgorContentPatch> &velgorContentPatchList() const { return rows(); }
    /// How many slots hold a patch of each firmware version; entries of 0 stay until checkVersions().
    [[nodiscard]] const QMap<QString, int> &versions() const { return m_marks.versions; }
    [[nodiscard]] bool openError() const { return m_openError; }
    /// The list was imported with names that cannot be read, and the user was not told yet.
    [[nodiscard]] bool unreadableNames() const { return m_unreadableNames; }
    [[nodiscard]] bool saveError() const { return m_saveError; }
    [[nodiscard]] bool selectDefault() const { return m_selectDefault; }
    [[nodiscard]] bool mixVersions() const { return m_mixVersions; }
    [[nodiscard]] bool inverseTailBit() const { return m_marks.inverseTailBit; }
    [[nodiscard]] const QSet<QUuid> &selections() const { return m_marks.selections; }
    /// The list as it was imported or exported last; nullptr for a new list.
    [[nodiscard]] const ContentOrigin *origin() const { return m_marks.origin.get(); }

    void setOpenError(bool openError);
    void setUnreadableNames(bool unreadableNames);
    void setSaveError(bool saveError);
    void setSelectDefault(bool selectDefault);
    void setMixVersions(bool mixVersions);
    void setInverseTailBit(bool inverseTailBit);
    void setSelections(const QSet<QUuid> &selections);
    /// The list stands in this file as it is now.
    void setFile(const QString &path);

    /// Asks for a file and fills the list from it, and says which file. One that cannot be read sets openError;
    /// cancelling does not.
    Result<QString> openPresetFile(PatchFileHandler &files);
    /// The same with a file that is known already.
    Result<QString> openPresetFile(PatchFileHandler &files, const QString &filename);
    /// One slot a patch of the file. Prints a line and changes nothing for a file without patches.
    void populate(const SPresetFile &presets);
    /// A new list of 99 slots, all holding `fillwith`. The version table is left alone.
    void createNew(const VelgorPatch &fillwith);
    /// Adds slots with `fillwith`, or with placeholders, or drops the last ones, until there are `limit` of them.
    void adjust(const std::optional<VelgorPatch> &fillwith);
    /// Puts a patch into the slot at `location` and keeps the version table. Beyond the list nothing happens; a
    /// location below 0 stops the program.
    void setPatch(const VelgorPatch &patch, qsizetype location);
    /// The same for several, into the slot at `location` and those behind it, announced as one change.
    void setPatches(const QList<VelgorPatch> &patches, qsizetype location);
    /// Puts a new slot with this patch in the place of the slot `id`; the version table is left alone.
    void replace(const QUuid &id, const VelgorPatch &with);
    /// The same for the slots at several ascending rows, announced as one change from the first to the last.
    void replace(const QList<qsizetype> &rows, const VelgorPatch &with);
    /// Moves one slot; `offset` counts in the list as it is before the move.
    void move(qsizetype from, qsizetype offset);
    /// Moves several slots, given by ascending rows, to stand together in their order at `offset`.
    void move(const QList<qsizetype> &rows, qsizetype offset);
    /// Every slot that holds this patch takes over what the user edits; see VelgorPatch::applyEdits(). What else an
    /// export writes stays as it is. A slot whose records are the same is asked about also when its id is another one
    /// that they give; without a question, the ids have to be equal.
    void propagateChangedPatch(
        const VelgorPatch &velgorPatch, const std::function<bool(const VelgorPatch &held)> &isHeld = {});
    /// The content hash without the name of each slot's patch; good until the next change of the list.
    [[nodiscard]] const RowValues<std::optional<quint64>> &soundHashes() const;
    /// Gives every slot its bank and number again. The list must not be empty.
    void renum();
    /// Drops version entries of 0 and sets mixVersions when more than one is left.
    void checkVersions();
    /// Counts the version table anew from the slots.
    void recountVersions();
    /// The records to export, in slot order, each under the name that the user sees, cut to its field. Slots
    /// without preset records give none. The list must not be empty.
    [[nodiscard]] std::pair<QList<SPatch>, QList<SUserIR>> getPatchesAndUserIRs() const;

Q_SIGNALS:
    void limitChanged();
    void versionsChanged();
    void openErrorChanged();
    void unreadableNamesChanged();
    void saveErrorChanged();
    void selectDefaultChanged();
    void mixVersionsChanged();
    void inverseTailBitChanged();
    void selectionsChanged();
    void originChanged();

private:
    /// The slots of a list without those that are there.
    [[nodiscard]] static QList<VelgorContentPatch> filled(
        qsizetype first, qsizetype count, const std::optional<VelgorPatch> &fillwith);
    void setVersions(const QMap<QString, int> &versions);
    void setOrigin(const std::shared_ptr<const ContentOrigin> &origin);
    void followInserted(const QList<qsizetype> & /*rows*/) override { m_soundHashes.reset(); }
    void followRemoved(const QList<qsizetype> & /*formerRows*/) override { m_soundHashes.reset(); }
    void followMoved(qsizetype /*from*/, qsizetype /*to*/) override { m_soundHashes.reset(); }
    void followReordered(const QList<qsizetype> & /*formerRows*/) override { m_soundHashes.reset(); }
    void followChanged(qsizetype row, const VelgorContentPatch &before) override;
    void followExchanged() override;

    ContentMarks m_marks;
    ContentMarks m_marksBefore; ///< while a change is recorded
    mutable std::optional<RowValues<std::optional<quint64>>> m_soundHashes; ///< made when asked for
    bool m_openError = false;
    bool m_unreadableNames = false;
    bool m_saveError = false;
    bool m_selectDefault = false;
    bool m_mixVersions = false;
};
