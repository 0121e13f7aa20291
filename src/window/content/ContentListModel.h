#pragma once

#include <QAbstractListModel>
#include <QSet>

class VelgorContent;

/// The slots of the list being composed, one row each. Each change of the content is translated one to one.
class ContentListModel : public QAbstractListModel {
    Q_OBJECT

public:
    /// `content` must outlive the model.
    explicit ContentListModel(const VelgorContent &content, QObject *parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;
    [[nodiscard]] QStringList mimeTypes() const override;
    /// The payload of the rows, in their order.
    [[nodiscard]] QMimeData *mimeData(const QModelIndexList &indexes) const override;
    [[nodiscard]] Qt::DropActions supportedDragActions() const override { return Qt::CopyAction | Qt::MoveAction; }

    /// The slots that hold the library patch whose details are shown.
    void setUsedRows(const QSet<int> &rows);

private:
    void connectContent();
    void followReordered(const QList<qsizetype> &formerRows);

    const VelgorContent &m_content;
    QSet<int> m_usedRows;
};
