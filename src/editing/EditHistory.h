#pragma once

#include "EditDeed.h"

#include <QObject>
#include <QString>
#include <QUndoStack>

#include <functional>

class LibraryStorage;
class VelgorContent;
class VelgorLibrary;

/// The one door through which what the user does changes library and list: each deed is a named step that can be taken
/// back and done again, and the save that it needs is asked for. What only concerns the looking (selection, ticks,
/// sorting, filter) makes no step of its own. User-interface thread only.
class EditHistory : public QObject {
    Q_OBJECT

public:
    /// Steps that are kept; the oldest go first.
    static constexpr int mostSteps = 500;

    /// All three must outlive the history.
    EditHistory(VelgorLibrary &library, VelgorContent &content, LibraryStorage &storage);

    /// Does `deed` as one step, whose name reads well behind "Undo"; a deed within a deed is a part of it. One that
    /// changes nothing makes no step. A step whose `field` is not empty becomes one with the step before it, if that
    /// has the same field: so typing is one step.
    void perform(const QString &name, const std::function<void()> &deed, const QString &field = {});
    /// Asks for a save of the library after a quiet moment.
    void requestSave();
    /// Library or list are not those of the steps any more.
    void forget();

    /// Named steps, to be taken back and done again through it. It belongs to the history.
    [[nodiscard]] QUndoStack &steps() { return m_steps; }

private:
    class Step;

    void undo(const EditDeed &deed);
    void redo(const EditDeed &deed);
    void requestSaveOf(const LibraryChange &change);

    VelgorLibrary &m_library;
    VelgorContent &m_content;
    LibraryStorage &m_storage;
    LibraryChange m_sorting; ///< since the last step, which counts rows as they were before
    QUndoStack m_steps;
    bool m_isPerforming = false;
};
