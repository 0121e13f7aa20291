#include "ContentListModel.h"

#include "PatchPayload.h"
#include "PatchRoles.h"
#include "VelgorContent.h"

#include <algorithm>

ContentListModel::ContentListModel(const VelgorContent &content, QObject *parent)
    : QAbstractListModel(parent)
    , m_content(content)
{
    connectContent();
}

void ContentListModel::connectContent()
{
    connect(&m_content, &VelgorContent::rowsAboutToBeInserted, this, [this](qsizetype first, qsizetype last) {
        beginInsertRows({}, static_cast<int>(first), static_cast<int>(last));
    });
    connect(&m_content, &VelgorContent::rowsInserted, this, [this] { endInsertRows(); });
    connect(&m_content, &VelgorContent::rowsAboutToBeRemoved, this, [this](qsizetype first, qsizetype last) {
        beginRemoveRows({}, static_cast<int>(first), static_cast<int>(last));
    });
    connect(&m_content, &VelgorContent::rowsRemoved, this, [this] { endRemoveRows(); });
    connect(&m_content, &VelgorContent::rowAboutToBeMoved, this, [this](qsizetype from, qsizetype offset) {
        const int row = static_cast<int>(from);
        beginMoveRows({}, row, row, {}, static_cast<int>(offset));
    });
    connect(&m_content, &VelgorContent::rowMoved, this, [this] { endMoveRows(); });
    connect(&m_content, &VelgorContent::rowsChanged, this, [this](qsizetype first, qsizetype last) {
        Q_EMIT dataChanged(index(static_cast<int>(first)), index(static_cast<int>(last)));
    });
    connect(&m_content, &VelgorContent::aboutToBeReordered, this, [this] { Q_EMIT layoutAboutToBeChanged(); });
    connect(&m_content, &VelgorContent::reordered, this, &ContentListModel::followReordered);
    connect(&m_content, &VelgorContent::aboutToBeReset, this, [this] {
        beginResetModel();
        m_usedRows.clear();
    });
    connect(&m_content, &VelgorContent::wasReset, this, [this] { endResetModel(); });
}

void ContentListModel::followReordered(const QList<qsizetype> &formerRows)
{
    QList<int> newRows(formerRows.size());
    for (qsizetype row = 0; row < formerRows.size(); ++row) {
        newRows[formerRows.at(row)] = static_cast<int>(row);
    }
    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    after.reserve(before.size());
    for (const QModelIndex &index : before) {
        after.append(this->index(newRows.at(index.row())));
    }
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged();
}

int ContentListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_content.velgorContentPatchList().size());
}

QVariant ContentListModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid()) {
        return {};
    }
    const VelgorContentPatch &slot = m_content.velgorContentPatchList().at(index.row());
    const auto position = [&slot] { return QStringLiteral("%1.%2").arg(slot.bank).arg(slot.number); };
    switch (role) {
    case Qt::DisplayRole:
        return PatchRoles::spokenRow(position() + u' ' + slot.patch.name, slot.patch.hasUserIR);
    case Qt::AccessibleDescriptionRole:
        return PatchRoles::firmwareText(slot.patch.version);
    case PatchRoles::Name:
        return slot.patch.name;
    case PatchRoles::HasUserIR:
        return slot.patch.hasUserIR;
    case PatchRoles::Version:
        return slot.patch.version;
    case PatchRoles::Position:
        return position();
    case PatchRoles::IsPlaceUsed:
        return m_usedRows.contains(index.row());
    default:
        return {};
    }
}

Qt::ItemFlags ContentListModel::flags(const QModelIndex &index) const
{
    return index.isValid() ? Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsDragEnabled | Qt::ItemNeverHasChildren
                           : Qt::ItemIsDropEnabled;
}

QStringList ContentListModel::mimeTypes() const
{
    return {TransferablePatch::typeIdentifier()};
}

QMimeData *ContentListModel::mimeData(const QModelIndexList &indexes) const
{
    QList<int> rows;
    for (const QModelIndex &index : indexes) {
        rows.append(index.row());
    }
    std::sort(rows.begin(), rows.end());
    QList<TransferablePatch> payloads;
    for (const int row : std::as_const(rows)) {
        payloads.append(TransferablePatch::ofSlot(m_content.velgorContentPatchList().at(row)));
    }
    return PatchPayload::pack(payloads);
}

void ContentListModel::setUsedRows(const QSet<int> &rows)
{
    const QSet<int> changed = (rows | m_usedRows) - (rows & m_usedRows);
    m_usedRows = rows;
    for (const int row : changed) {
        if (row < rowCount()) {
            Q_EMIT dataChanged(index(row), index(row), {PatchRoles::IsPlaceUsed});
        }
    }
}
