#pragma once

#include <QList>
#include <QObject>

/// Announces what happens to a list of rows: structural changes in pairs of a signal before and a signal after, made
/// for an item model to translate one to one. User-interface thread only.
class RowAnnouncer : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

Q_SIGNALS:
    void rowsAboutToBeInserted(qsizetype first, qsizetype last);
    void rowsInserted(qsizetype first, qsizetype last);
    void rowsAboutToBeRemoved(qsizetype first, qsizetype last);
    void rowsRemoved(qsizetype first, qsizetype last);
    /// `offset` counts in the list as it is before the move.
    void rowAboutToBeMoved(qsizetype from, qsizetype offset);
    void rowMoved(qsizetype from, qsizetype offset);
    void rowsChanged(qsizetype first, qsizetype last);
    /// The same rows in another order: formerRows holds, for each row, the one that it was before.
    void aboutToBeReordered();
    void reordered(const QList<qsizetype> &formerRows);
    /// The whole list was exchanged, or rows came or went in several places at once.
    void aboutToBeReset();
    void wasReset();
};
