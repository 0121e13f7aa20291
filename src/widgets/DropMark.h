#pragma once

#include <QStringList>

/// What a list shows while a drag is over it: where the drop will land.
struct DropMark {
    enum Kind {
        None, ///< the drop would be refused
        Replace, ///< `count` rows from `row` on take new patches
        Insert, ///< the rows go above `row`
        WholeList, ///< the list takes the patches, wherever they are dropped
    };

    Kind kind = None;
    int row = 0;
    int count = 0;
    QStringList names = {}; ///< the names that come in, one for each replaced row
    qsizetype leftOut = 0; ///< so many more find no row
    QStringList firstLeftOut = {}; ///< the names of the first few of them
    qsizetype hidden = 0; ///< of those that come in, what the library's filter hides
    QString place = {}; ///< where an inserted row goes, in words, when the rows that are shown do not tell

    [[nodiscard]] bool replaces(int other) const { return kind == Replace && other >= row && other < row + count; }
    bool operator==(const DropMark &) const = default;
};
