#pragma once

#include "LibraryViewFilter.h"

#include <QAbstractListModel>

#include <vector>

class LibraryEditor;
class VelgorLibrary;

/// The library patches that pass the filter, one row each, in library order.
///
/// The shown patches are held as an ascending list of library rows, which keeps typing in the filter fast with many
/// patches; each change of the library is translated one to one.
class LibraryListModel : public QAbstractListModel {
    Q_OBJECT

public:
    /// Both must outlive the model; the editor is the library's.
    LibraryListModel(const VelgorLibrary &library, LibraryEditor &editor, QObject *parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    /// Ticks or unticks a row, while the library is in multi-selection mode.
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;
    [[nodiscard]] QStringList mimeTypes() const override;
    /// The payloads of these rows; while patches are ticked, of those instead.
    [[nodiscard]] QMimeData *mimeData(const QModelIndexList &indexes) const override;
    [[nodiscard]] Qt::DropActions supportedDragActions() const override { return Qt::CopyAction | Qt::MoveAction; }

    [[nodiscard]] const LibraryViewFilter &filter() const { return m_filter; }
    void setFilter(const LibraryViewFilter &filter);
    /// Number of patches that pass the filter; the placeholder on its own counts as none.
    [[nodiscard]] qsizetype filteredVelgorPatchesCount() const;

    /// Absent when the filter hides the patch or there is none with this id.
    [[nodiscard]] QModelIndex indexOf(quint64 id) const;
    [[nodiscard]] quint64 idAt(int row) const;
    /// The library row shown in `row`; the number of library patches for the row behind the last one.
    [[nodiscard]] qsizetype libraryRow(int row) const;

private:
    void connectLibrary();
    [[nodiscard]] QString description(const VelgorPatch &patch) const;
    [[nodiscard]] int firstShownFrom(qsizetype libraryRow) const;
    [[nodiscard]] bool isShown(qsizetype libraryRow) const;
    void followInserted(qsizetype first, qsizetype last);
    void announceRemoval(qsizetype first, qsizetype last);
    void followRemoved(qsizetype first, qsizetype last);
    void announceMove(qsizetype from, qsizetype offset);
    void followMoved();
    void followChanged(qsizetype libraryRow);
    void followReordered(const QList<qsizetype> &formerRows);
    void tickingChanged();

    const VelgorLibrary &m_library;
    LibraryEditor &m_editor;
    LibraryViewFilter m_filter;
    std::vector<qsizetype> m_rows;
    bool m_isRemoving = false;
    bool m_isMoving = false;
};
