#pragma once

#include "PatchListView.h"
#include "VelgorLibrary.h"

class LibraryEditor;
class LibraryListModel;

/// The list of library patches. Patches dropped on it move between the others; slots dropped on it are kept at the
/// end. Its selection is the library's, and stays while a patch is not shown. While ticking, the current row is the
/// selected one.
class LibraryListView : public PatchListView {
    Q_OBJECT

public:
    /// All must outlive the list.
    LibraryListView(
        const VelgorLibrary &library, LibraryEditor &editor, LibraryListModel &model, QWidget *parent = nullptr);

    /// Ticks or unticks the current row, and begins to tick if need be.
    void flipTickOfCurrent();
    /// Selects a patch, scrolls to it and grabs the focus. While ticking it becomes the current row.
    void showPatch(quint64 id);
    /// Whether that would do something.
    [[nodiscard]] bool canFlipTickOfCurrent() const;
    /// Grabs the focus, with a row selected. Does nothing while no patch is shown.
    void grabFocus();
    /// Moves the selected patch past its neighbour in the list as it is shown.
    void moveSelected(int step);
    [[nodiscard]] bool canMoveSelected(int step) const;

protected:
    [[nodiscard]] DropMark markFor(const QList<TransferablePatch> &items, const QPoint &position) const override;
    [[nodiscard]] bool hasUserIR(const TransferablePatch &payload) const override;
    void acceptDrop(const QList<TransferablePatch> &items, const DropMark &mark) override;
    [[nodiscard]] QModelIndexList draggedIndexes() const override;
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    void followLibrary();
    /// With Control one row is ticked or unticked, with Shift all rows from the selected one on are ticked.
    void tickByClick(const QModelIndex &index, bool isRange);
    [[nodiscard]] QString placeInWholeLibrary(const VelgorLibrary::Found &patch, int row) const;

    const VelgorLibrary &m_library;
    LibraryEditor &m_editor;
    LibraryListModel &m_model;
    bool m_isFollowing = false;
    bool m_isRemoving = false;
    bool m_isTickingClick = false; ///< the button is down for one
};
