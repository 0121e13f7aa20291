#pragma once

#include "PatchListView.h"

class LibraryEditor;
class LibraryListModel;
class VelgorLibrary;

/// The list of library patches. Patches dropped on it move between the others; slots dropped on it are kept at the
/// end. Its selection is the library's, and stays while a patch is not shown.
class LibraryListView : public PatchListView {
    Q_OBJECT

public:
    /// All must outlive the list.
    LibraryListView(VelgorLibrary &library, LibraryEditor &editor, LibraryListModel &model, QWidget *parent = nullptr);

    /// Ticks or unticks the current row, and begins to tick if need be.
    void flipTickOfCurrent();
    /// Selects a patch, scrolls to it and takes the focus. While ticking it becomes the current row.
    void showPatch(quint64 id);
    /// Moves the selected patch past its neighbour in the list as it is shown.
    void moveSelected(int step);
    [[nodiscard]] bool canMoveSelected(int step) const;

protected:
    [[nodiscard]] DropMark markFor(const QList<TransferablePatch> &items, const QPoint &position) const override;
    [[nodiscard]] bool hasUserIR(const TransferablePatch &payload) const override;
    void take(const QList<TransferablePatch> &items, const DropMark &mark) override;
    [[nodiscard]] QModelIndexList draggedIndexes() const override;
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;

private:
    void followLibrary();
    void followTicking();

    VelgorLibrary &m_library;
    LibraryEditor &m_editor;
    LibraryListModel &m_model;
    bool m_isFollowing = false;
    bool m_isRemoving = false;
};
