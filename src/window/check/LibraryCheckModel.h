#pragma once

#include "LibraryCheckRow.h"

#include <QAbstractListModel>
#include <QList>

/// A list of the library check. Titles can neither be selected nor reached with the keyboard.
class LibraryCheckModel : public QAbstractListModel {
    Q_OBJECT

public:
    using QAbstractListModel::QAbstractListModel;

    void setRows(const QList<LibraryCheckRow> &rows);
    /// What an index stands for; an empty row for none.
    [[nodiscard]] LibraryCheckRow rowAt(const QModelIndex &index) const { return m_rows.value(index.row()); }
    /// The first row that is no title; an invalid index when there is none.
    [[nodiscard]] QModelIndex first() const;

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    QList<LibraryCheckRow> m_rows;
};
