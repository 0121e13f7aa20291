#pragma once

#include <QCoreApplication>
#include <QStringList>

/// Names that are longer than the field that the unit has for them.
class LongNames {
    Q_DECLARE_TR_FUNCTIONS(LongNames)

public:
    /// Says on standard error what the unit will show of each name that does not fit, once for equal names.
    static void warn(const QStringList &names);
};
