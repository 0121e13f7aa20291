#include "LibraryCheckModel.h"

#include <algorithm>

void LibraryCheckModel::setRows(const QList<LibraryCheckRow> &rows)
{
    beginResetModel();
    m_rows = rows;
    endResetModel();
}

QModelIndex LibraryCheckModel::first() const
{
    const auto row = std::find_if(
        m_rows.begin(), m_rows.end(), [](const LibraryCheckRow &candidate) { return !candidate.isTitle(); });
    return row != m_rows.end() ? index(static_cast<int>(row - m_rows.begin()), 0) : QModelIndex();
}

int LibraryCheckModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant LibraryCheckModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const LibraryCheckRow &row = m_rows.at(index.row());
    if (role == Qt::DisplayRole) {
        return row.text;
    }
    if (role == Qt::ToolTipRole && !row.isTitle()) {
        // A name that looks like markup is shown as it stands.
        return QString(QStringLiteral("<p>%1</p>")).arg(row.text.toHtmlEscaped());
    }
    return {};
}

Qt::ItemFlags LibraryCheckModel::flags(const QModelIndex &index) const
{
    return rowAt(index).isTitle() ? Qt::NoItemFlags
                                  : Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
}
