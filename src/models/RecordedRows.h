#pragma once

#include "RowAnnouncer.h"
#include "RowDelta.h"

#include <optional>

/// A list whose every change is announced and, when asked for, recorded as steps that can be taken back.
/// User-interface thread only.
template <typename Row>
class RecordedRows : public RowAnnouncer {
public:
    using RowAnnouncer::RowAnnouncer;

protected:
    [[nodiscard]] const QList<Row> &rows() const { return m_rows; }
    /// For what announces the change itself, and need not be recorded as it follows from other changes.
    [[nodiscard]] QList<Row> &unrecordedRows() { return m_rows; }

    void startRecording() { m_recorded.emplace(); }
    /// The steps since startRecording(); from here on nothing is recorded.
    [[nodiscard]] QList<RowDelta<Row>> takeRecorded();
    void applyDeltas(const QList<RowDelta<Row>> &deltas);

    /// Rows ascend and count in the list with these values in it.
    void insertRows(const QList<qsizetype> &rows, const QList<Row> &values);
    void insertRows(qsizetype first, const QList<Row> &values);
    void removeRows(const QList<qsizetype> &ascendingRows);
    /// Announced as one change from the first to the last.
    void changeRows(const QList<qsizetype> &rows, const QList<Row> &values);
    /// Moving a row to where it is changes nothing.
    void moveRow(qsizetype from, qsizetype offset);
    /// An order in which every row stays changes nothing.
    void reorderRows(const QList<qsizetype> &formerRows);
    void exchangeRows(QList<Row> values);

    /// What depends on the rows follows before the end of the change is announced.
    virtual void followInserted(const QList<qsizetype> &rows) = 0;
    virtual void followRemoved(const QList<qsizetype> &formerRows) = 0;
    virtual void followChanged(qsizetype row, const Row &before) = 0;
    virtual void followMoved(qsizetype from, qsizetype to) = 0;
    virtual void followReordered(const QList<qsizetype> &formerRows) = 0;
    virtual void followExchanged() = 0;

private:
    template <typename Step>
    void record(const Step &step)
    {
        if (m_recorded) {
            m_recorded->append({step});
        }
    }

    QList<Row> m_rows;
    std::optional<QList<RowDelta<Row>>> m_recorded;
};
