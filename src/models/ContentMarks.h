#pragma once

#include "RowDelta.h"
#include "VelgorContentPatch.h"

#include <QMap>
#include <QSet>
#include <QString>
#include <QUuid>

/// What belongs to the slots of a list besides themselves. A value.
struct ContentMarks {
    int limit = 0; ///< number of slots
    QMap<QString, int> versions = {}; ///< how many slots hold a patch of each firmware version
    bool inverseTailBit = false;
    QSet<QUuid> selections = {};
};

/// What one deed did to a list.
using ContentChange = RowsChange<VelgorContentPatch, ContentMarks>;
