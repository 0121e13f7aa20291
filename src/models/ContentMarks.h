#pragma once

#include "RowDelta.h"
#include "VelgorContentPatch.h"

#include <QList>
#include <QMap>
#include <QSet>
#include <QString>
#include <QUuid>

#include <memory>

/// The list as it stands in a file.
struct ContentOrigin {
    QString file;
    QList<VelgorContentPatch> list;
    bool inverseTailBit = false;
};

/// What belongs to the slots of a list besides themselves. A value.
struct ContentMarks {
    int limit = 0; ///< number of slots
    QMap<QString, int> versions = {}; ///< how many slots hold a patch of each firmware version
    bool inverseTailBit = false;
    QSet<QUuid> selections = {};
    std::shared_ptr<const ContentOrigin> origin = {}; ///< what was imported or exported last; none for a new list
};

/// What one deed did to a list.
using ContentChange = RowsChange<VelgorContentPatch, ContentMarks>;
