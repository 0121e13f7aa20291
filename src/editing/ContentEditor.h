#pragma once

#include "VelgorPatch.h"

#include <QList>
#include <QObject>
#include <QSet>
#include <QStringList>
#include <QUuid>

class EditHistory;
class VelgorContent;
class VelgorLibrary;

/// What the user does to the list being composed: each change of it is a step of the history. Operations that place
/// patches warn of mixed firmware versions by the content's flag. User-interface thread only.
class ContentEditor : public QObject {
    Q_OBJECT

public:
    /// Where patches go, and which of them find no slot.
    struct Placement {
        qsizetype row = 0; ///< of the first patch
        QList<VelgorPatch> patches = {}; ///< one a slot, from there on
        qsizetype leftOut = 0; ///< so many more were to be placed
        QStringList firstLeftOut = {}; ///< the names of the first few of them

        [[nodiscard]] qsizetype wanted() const { return patches.size() + leftOut; }
    };

    /// All three must outlive the editor.
    ContentEditor(VelgorLibrary &library, VelgorContent &content, EditHistory &history);

    /// A library patch was dropped on the slot at `location`: it goes there. When ticking, the ticked patches, if there
    /// are any, go there and into the slots behind it, as far as there are slots, and ticking ends.
    void dropDest(quint64 id, qsizetype location);
    /// What dropDest() would do.
    [[nodiscard]] Placement placementFor(quint64 id, qsizetype location) const;
    /// What the last dropDest() did.
    [[nodiscard]] const Placement &lastPlacement() const { return m_lastPlacement; }
    /// As dropDest() with the selected library patch on the first selected slot; then the slot behind is selected.
    void putIntoSelectedSlot();
    /// Puts the selected library patch into every selected slot.
    void replaceSelectedSlots();
    /// A new list filled with the default patch; without one, the user is asked to choose one first.
    void reset();
    /// Moves slots, keeping their order, to stand above the slot that is now at `offset`.
    void moveSlots(const QList<qsizetype> &rows, qsizetype offset);
    /// Moves the selected slots up (-1) or down (1) by one. Those that do not stand together are brought together.
    void moveSelectedSlots(int step);

    void select(const QSet<QUuid> &slotIds);
    /// Exports carry the tail bit inverted, or as it was imported.
    void setInverseTailBit(bool isInverse);
    /// The user was told that a default patch has to be chosen, or of the mixed versions.
    void endSelectDefault();
    void endMixVersions();

    /// Rows of the selected slots, upwards.
    [[nodiscard]] QList<qsizetype> selectedRows() const;
    [[nodiscard]] bool canPut() const;
    [[nodiscard]] bool canReplace() const;
    [[nodiscard]] bool canMoveSelected(int step) const;

Q_SIGNALS:
    /// So many slots were moved and stand together now, from this row on.
    void moved(qsizetype first, qsizetype count);
    /// Patches went into slots; see lastPlacement().
    void placed();
    /// A library patch went into these slots.
    void replaced(quint64 id, const QList<qsizetype> &rows);

private:
    void warnOfMixedVersions();

    VelgorLibrary &m_library;
    VelgorContent &m_content;
    EditHistory &m_history;
    Placement m_lastPlacement;
};
