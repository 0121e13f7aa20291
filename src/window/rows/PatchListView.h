#pragma once

#include "DropMark.h"
#include "EmptyHint.h"
#include "TransferablePatch.h"

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QListView>

#include <optional>

class QMenu;

/// A list of patches that can be dragged and dropped on. It shows where a drop will land; what it does is the
/// subclass's. Drags of other kinds are left to the window.
class PatchListView : public QListView {
    Q_OBJECT

public:
    explicit PatchListView(QWidget *parent = nullptr);

    [[nodiscard]] const DropMark &dropMark() const { return m_mark; }
    /// What the list shows in the middle of its height while it has no rows to speak of.
    void setHint(const EmptyHint &hint);
    void setContextMenu(QMenu *menu);

Q_SIGNALS:
    void dropMarkChanged();
    /// Return was pressed while it means nothing.
    void returnedInVain();

protected:
    /// Where these payloads would land at a place of the viewport; no mark refuses them.
    [[nodiscard]] virtual DropMark markFor(const QList<TransferablePatch> &items, const QPoint &position) const = 0;
    virtual void acceptDrop(const QList<TransferablePatch> &items, const DropMark &mark) = 0;
    /// Whether the patch that a payload stands for has a user impulse response.
    [[nodiscard]] virtual bool hasUserIR(const TransferablePatch &payload) const = 0;
    /// The rows that a drag takes along.
    [[nodiscard]] virtual QModelIndexList draggedIndexes() const;

    /// The row that an insertion at this place goes above.
    [[nodiscard]] int insertionRow(const QPoint &position) const;

    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void startDrag(Qt::DropActions supportedActions) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    /// Finds rows by the beginning of their names, or of what they read.
    void keyboardSearch(const QString &search) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    [[nodiscard]] QSize viewportSizeHint() const override;

private:
    /// Where to scroll for the drag: -1 up, 1 down, 0 not at all.
    [[nodiscard]] int edgeDirection() const;
    void setMark(const DropMark &mark);
    void updateMarkAfterScroll();
    void endDrag();
    void paintMark(QPainter &painter) const;
    void notePress(const QMouseEvent &event);
    /// Unless the button has been released.
    void beginDrag();
    [[nodiscard]] QModelIndex findFrom(int row, const QString &start) const;
    [[nodiscard]] QRect rowsRect(int first, int count) const;

    std::optional<QPoint> m_pressedAt; ///< where the button went down on a row that can be dragged
    bool m_isDragDue = false; ///< the pointer has gone far enough since
    QList<TransferablePatch> m_dragged; ///< of the drag that is over this list
    QPoint m_dragPosition;
    QBasicTimer m_edgeTimer; ///< scrolls while the drag is held at the upper or lower edge
    int m_edgeSteps = 0;
    DropMark m_mark;
    EmptyHint m_hint;
    QString m_typed; ///< so far, of a name that is looked for
    QElapsedTimer m_lastTyped;
};
