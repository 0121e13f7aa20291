#include "LibraryListModel.h"

#include "CommandTargets.h"
#include "LibraryEditor.h"
#include "PatchPayload.h"
#include "PatchRoles.h"
#include "VelgorLibrary.h"

#include <algorithm>
#include <utility>

LibraryListModel::LibraryListModel(const VelgorLibrary &library, LibraryEditor &editor, QObject *parent)
    : QAbstractListModel(parent)
    , m_library(library)
    , m_editor(editor)
    , m_rows(m_filter.shownRows(m_library))
{
    connectLibrary();
}

void LibraryListModel::connectLibrary()
{
    connect(&m_library, &VelgorLibrary::rowsInserted, this, &LibraryListModel::followInserted);
    connect(&m_library, &VelgorLibrary::rowsAboutToBeRemoved, this, &LibraryListModel::announceRemoval);
    connect(&m_library, &VelgorLibrary::rowsRemoved, this, &LibraryListModel::followRemoved);
    connect(&m_library, &VelgorLibrary::rowAboutToBeMoved, this, &LibraryListModel::announceMove);
    connect(&m_library, &VelgorLibrary::rowMoved, this, &LibraryListModel::followMoved);
    connect(&m_library, &VelgorLibrary::rowsChanged, this, [this](qsizetype first, qsizetype last) {
        for (qsizetype row = first; row <= last; ++row) {
            followChanged(row);
        }
    });
    connect(&m_library, &VelgorLibrary::aboutToBeReordered, this, [this] { Q_EMIT layoutAboutToBeChanged(); });
    connect(&m_library, &VelgorLibrary::reordered, this, &LibraryListModel::followReordered);
    connect(&m_library, &VelgorLibrary::aboutToBeReset, this, [this] { beginResetModel(); });
    connect(&m_library, &VelgorLibrary::wasReset, this, [this] {
        m_rows = m_filter.shownRows(m_library);
        endResetModel();
    });
    connect(&m_library, &VelgorLibrary::isMultiSelChanged, this, &LibraryListModel::tickingChanged);
    connect(&m_library, &VelgorLibrary::multiSelectionsChanged, this, [this] {
        if (m_library.isMultiSel()) {
            tickingChanged();
        }
    });
    connect(&m_library, &VelgorLibrary::defaultPatchChanged, this, [this] {
        if (!m_rows.empty()) {
            Q_EMIT dataChanged(index(0), index(rowCount() - 1), {PatchRoles::IsDefault, Qt::AccessibleDescriptionRole});
        }
    });
}

int LibraryListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant LibraryListModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid()) {
        return {};
    }
    const VelgorPatch &patch = m_library.patches().at(libraryRow(index.row()));
    switch (role) {
    case Qt::DisplayRole:
        return PatchRoles::spokenRow(patch.name, patch.hasUserIR);
    case Qt::AccessibleDescriptionRole:
        return patch.empty ? QVariant() : description(patch);
    case Qt::CheckStateRole:
        if (!m_library.isMultiSel()) {
            return {};
        }
        return m_library.multiSelections().isTicked(patch.id()) ? Qt::Checked : Qt::Unchecked;
    case PatchRoles::Name:
        return patch.name;
    case PatchRoles::HasUserIR:
        return patch.hasUserIR;
    case PatchRoles::Version:
        return patch.version;
    case PatchRoles::IsDefault:
        return m_library.defaultPatch() == patch.id();
    case PatchRoles::IsPlaceholder:
        return patch.empty;
    case PatchRoles::Classification:
        return QVariant::fromValue(PatchFlags::classification(patch));
    case PatchRoles::Comment:
        return patch.comment;
    default:
        return {};
    }
}

QString LibraryListModel::description(const VelgorPatch &patch) const
{
    QStringList parts{PatchRoles::firmwareText(patch.version)};
    if (m_library.defaultPatch() == patch.id()) {
        parts.append(tr("default patch"));
    }
    parts.append(PatchRoles::spokenFlags(PatchFlags::classification(patch)));
    parts.append(PatchRoles::firstLine(patch.comment));
    parts.removeAll(QString());
    return parts.join(QStringLiteral(", "));
}

bool LibraryListModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::CheckStateRole || !m_library.isMultiSel() || !checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return false;
    }
    m_editor.setTicked(idAt(index.row()), value.toInt() == Qt::Checked);
    return true;
}

Qt::ItemFlags LibraryListModel::flags(const QModelIndex &index) const
{
    if (!index.isValid()) {
        return Qt::ItemIsDropEnabled;
    }
    Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
    if (!m_library.patches().at(libraryRow(index.row())).empty) {
        flags |= Qt::ItemIsDragEnabled;
        flags.setFlag(Qt::ItemIsUserCheckable, m_library.isMultiSel());
    }
    return flags;
}

QStringList LibraryListModel::mimeTypes() const
{
    return {TransferablePatch::typeIdentifier()};
}

QMimeData *LibraryListModel::mimeData(const QModelIndexList &indexes) const
{
    QList<VelgorPatch> patches;
    if (CommandTargets::areTicked(m_library)) {
        patches = CommandTargets::several(m_library);
    } else {
        for (const QModelIndex &index : indexes) {
            patches.append(m_library.patches().at(libraryRow(index.row())));
        }
    }
    QList<TransferablePatch> payloads;
    payloads.reserve(patches.size());
    for (const VelgorPatch &patch : std::as_const(patches)) {
        payloads.append(TransferablePatch::ofLibraryPatch(patch));
    }
    return PatchPayload::pack(payloads);
}

void LibraryListModel::setFilter(const LibraryViewFilter &filter)
{
    m_filter = filter;
    std::vector<qsizetype> rows = m_filter.shownRows(m_library);
    if (rows != m_rows) {
        beginResetModel();
        m_rows = std::move(rows);
        endResetModel();
    }
}

qsizetype LibraryListModel::filteredVelgorPatchesCount() const
{
    const bool isLonePlaceholder = m_rows.size() == 1 && m_library.patches().at(m_rows.front()).empty;
    return isLonePlaceholder ? 0 : static_cast<qsizetype>(m_rows.size());
}

QModelIndex LibraryListModel::indexOf(quint64 id) const
{
    const auto found = m_library.getPatchFromId(id);
    if (!found) {
        return {};
    }
    const int row = firstShownFrom(found->index);
    return row < rowCount() && libraryRow(row) == found->index ? index(row) : QModelIndex();
}

quint64 LibraryListModel::idAt(int row) const
{
    return m_library.patches().at(libraryRow(row)).id();
}

qsizetype LibraryListModel::libraryRow(int row) const
{
    return row < rowCount() ? m_rows.at(static_cast<size_t>(row)) : m_library.patches().size();
}

int LibraryListModel::firstShownFrom(qsizetype libraryRow) const
{
    return static_cast<int>(std::lower_bound(m_rows.begin(), m_rows.end(), libraryRow) - m_rows.begin());
}

bool LibraryListModel::isShown(qsizetype libraryRow) const
{
    return m_filter.show(m_library.patches().at(libraryRow));
}

void LibraryListModel::followInserted(qsizetype first, qsizetype last)
{
    const auto position = std::lower_bound(m_rows.begin(), m_rows.end(), first);
    std::for_each(position, m_rows.end(), [count = last - first + 1](qsizetype &row) { row += count; });
    std::vector<qsizetype> shown;
    for (qsizetype row = first; row <= last; ++row) {
        if (isShown(row)) {
            shown.push_back(row);
        }
    }
    if (!shown.empty()) {
        const int at = static_cast<int>(position - m_rows.begin());
        beginInsertRows({}, at, at + static_cast<int>(shown.size()) - 1);
        m_rows.insert(position, shown.begin(), shown.end());
        endInsertRows();
    }
}

void LibraryListModel::announceRemoval(qsizetype first, qsizetype last)
{
    const int begin = firstShownFrom(first);
    const int end = firstShownFrom(last + 1);
    m_isRemoving = begin < end;
    if (m_isRemoving) {
        beginRemoveRows({}, begin, end - 1);
    }
}

void LibraryListModel::followRemoved(qsizetype first, qsizetype last)
{
    const auto begin = std::lower_bound(m_rows.begin(), m_rows.end(), first);
    const auto behind = m_rows.erase(begin, std::upper_bound(begin, m_rows.end(), last));
    std::for_each(behind, m_rows.end(), [count = last - first + 1](qsizetype &row) { row -= count; });
    if (m_isRemoving) {
        endRemoveRows();
    }
}

void LibraryListModel::announceMove(qsizetype from, qsizetype offset)
{
    const int row = firstShownFrom(from);
    const int target = firstShownFrom(offset);
    const bool isRowShown = row < rowCount() && libraryRow(row) == from;
    m_isMoving = isRowShown && target != row && target != row + 1;
    if (m_isMoving) {
        beginMoveRows({}, row, row, {}, target);
    }
}

void LibraryListModel::followMoved()
{
    m_rows = m_filter.shownRows(m_library);
    if (m_isMoving) {
        endMoveRows();
    }
}

void LibraryListModel::followChanged(qsizetype libraryRow)
{
    const int row = firstShownFrom(libraryRow);
    const bool wasShown = row < rowCount() && this->libraryRow(row) == libraryRow;
    const bool isNowShown = isShown(libraryRow);
    if (wasShown && isNowShown) {
        Q_EMIT dataChanged(index(row), index(row));
    } else if (wasShown) {
        beginRemoveRows({}, row, row);
        m_rows.erase(m_rows.begin() + row);
        endRemoveRows();
    } else if (isNowShown) {
        beginInsertRows({}, row, row);
        m_rows.insert(m_rows.begin() + row, libraryRow);
        endInsertRows();
    }
}

void LibraryListModel::followReordered(const QList<qsizetype> &formerRows)
{
    std::vector<int> newRowOfFormer(static_cast<size_t>(formerRows.size()), -1);
    std::vector<int> formerRowOf(static_cast<size_t>(formerRows.size()), -1);
    for (size_t row = 0; row < m_rows.size(); ++row) {
        formerRowOf[static_cast<size_t>(m_rows[row])] = static_cast<int>(row);
    }
    m_rows = m_filter.shownRows(m_library);
    for (size_t row = 0; row < m_rows.size(); ++row) {
        const int former = formerRowOf[static_cast<size_t>(formerRows.at(m_rows[row]))];
        newRowOfFormer[static_cast<size_t>(former)] = static_cast<int>(row);
    }
    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    after.reserve(before.size());
    for (const QModelIndex &index : before) {
        after.append(this->index(newRowOfFormer[static_cast<size_t>(index.row())]));
    }
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged();
}

void LibraryListModel::tickingChanged()
{
    if (!m_rows.empty()) {
        Q_EMIT dataChanged(index(0), index(rowCount() - 1), {Qt::CheckStateRole});
    }
}
