#pragma once

#include "FileAccess.h"

#include <QCoreApplication>
#include <QStringList>

#include <optional>

/// What another program pipes into a command.
class StandardInput {
    Q_DECLARE_TR_FUNCTIONS(StandardInput)

public:
    /// What stands for it among arguments.
    [[nodiscard]] static QString mark() { return QStringLiteral("-"); }
    /// All of it, however often it is asked for.
    [[nodiscard]] static const Result<QByteArray> &read();
    /// `ids` with the ids of standard input, one a line, in the place of "-". Says on standard error why not when it
    /// cannot be read or holds none.
    [[nodiscard]] static std::optional<QStringList> withIds(const QStringList &ids);
};
