#pragma once

#include "PatchListView.h"

class ContentEditor;
class ContentListModel;
class LibraryEditor;
class VelgorContent;

/// The list of slots. Library patches dropped on it replace the slots that they land on; slots dropped on it move
/// between the others. Its selection is the content's.
class ContentListView : public PatchListView {
    Q_OBJECT

public:
    /// All must outlive the list.
    ContentListView(const VelgorContent &content, ContentEditor &editor, const LibraryEditor &libraryEditor,
        ContentListModel &model, QWidget *parent = nullptr);

    void showSlot(int row);

protected:
    [[nodiscard]] DropMark markFor(const QList<TransferablePatch> &items, const QPoint &position) const override;
    [[nodiscard]] bool hasUserIR(const TransferablePatch &payload) const override;
    void acceptDrop(const QList<TransferablePatch> &items, const DropMark &mark) override;
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;

private:
    [[nodiscard]] QList<qsizetype> rowsOf(const QList<TransferablePatch> &items) const;
    void followContent();
    void publishSelection();

    const VelgorContent &m_content;
    ContentEditor &m_editor;
    const LibraryEditor &m_libraryEditor;
    bool m_isFollowing = false;
};
