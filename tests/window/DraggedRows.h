#pragma once

#include "DragOver.h"
#include "ShownWidgets.h"
#include "TestLibraries.h"
#include "WindowFixture.h"

#include <utility>

/// Drags of rows of the lists, as a user makes them.
namespace DraggedRows {

inline constexpr qreal upperHalf = 0.2;
inline constexpr qreal lowerHalf = 0.8;

using namespace ShownWidgets;

inline QPoint pointIn(const PatchListView *list, int row, qreal part = 0.5)
{
    const QRect rect = list->visualRect(list->model()->index(row, 0));
    return {rect.center().x(), rect.top() + static_cast<int>(rect.height() * part)};
}

inline QPoint belowRows(const PatchListView *list)
{
    return {20, list->visualRect(list->model()->index(list->model()->rowCount() - 1, 0)).bottom() + 20};
}

/// What a drag of these rows carries.
inline QMimeData *rows(const PatchListView *list, const QList<int> &rows)
{
    QModelIndexList indexes;
    for (const int row : rows) {
        indexes.append(list->model()->index(row, 0));
    }
    return list->model()->mimeData(indexes);
}

inline bool drop(const PatchListView *from, const QList<int> &dragged, const PatchListView *to, const QPoint &point)
{
    DragOver drag(to->viewport(), rows(from, dragged));
    const bool isTaken = drag.dropAt(point);
    WindowFixture::settle();
    return isTaken;
}

} // namespace DraggedRows
