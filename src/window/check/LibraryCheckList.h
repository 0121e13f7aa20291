#pragma once

#include "EmptyHint.h"
#include "LibraryCheckRow.h"

#include <QList>
#include <QListView>

class QStandardItemModel;

/// A list of the library check, in which one row that is no title is selected while there is one.
class LibraryCheckList : public QListView {
    Q_OBJECT

public:
    explicit LibraryCheckList(QWidget *parent = nullptr);

    /// Selects the first row.
    void setRows(const QList<LibraryCheckRow> &rows);
    [[nodiscard]] LibraryCheckRow selectedRow() const;
    /// What the list shows while it has no rows.
    void setHint(const EmptyHint &hint);

Q_SIGNALS:
    void selectionMoved();

protected:
    void paintEvent(QPaintEvent *event) override;
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    QStandardItemModel *m_model;
    QList<LibraryCheckRow> m_rows;
    EmptyHint m_hint;
};
