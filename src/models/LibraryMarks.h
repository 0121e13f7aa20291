#pragma once

#include "AwaitedPatches.h"
#include "MultiSelections.h"
#include "RowDelta.h"
#include "TripleBool.h"
#include "VelgorPatch.h"

#include <QList>

#include <optional>

/// What belongs to the patches of a library besides themselves. A value.
struct LibraryMarks {
    /// The order that sorting can go back to.
    struct Order {
        QList<quint64> ids = {}; ///< written out only when they are about to differ from the list or are asked for
        bool isList = false; ///< it is that of the list
        bool isListSorted = false; ///< the list is sorted into another order than this one
        TripleBool inverseSort = TripleBool::tripleFalse;
    };

    Order order = {};
    std::optional<quint64> defaultPatch = {};
    AwaitedPatches awaited = {};
    std::optional<quint64> selection = {};
    bool isMultiSel = false;
    MultiSelections multiSelections = {};
};

/// What one deed did to a library.
using LibraryChange = RowsChange<VelgorPatch, LibraryMarks>;
