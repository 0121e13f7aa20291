#pragma once

#include "Command.h"
#include "Result.h"

#include <QHash>
#include <QStringList>

#include <optional>

/// What the user gave a command: checked against its declaration, not yet against the world.
class Arguments {
public:
    /// Parses what follows the command's words. The problem is one line.
    [[nodiscard]] static Result<Arguments> parse(const Command &command, const QStringList &words);

    /// What stands without an option, in order.
    [[nodiscard]] const QStringList &positional() const { return m_positional; }
    [[nodiscard]] bool has(const QString &option) const { return m_values.contains(option); }
    /// The value given last; nothing when the option was not given.
    [[nodiscard]] std::optional<QString> value(const QString &option) const;
    [[nodiscard]] QStringList values(const QString &option) const { return m_values.value(option); }

private:
    QStringList m_positional;
    QHash<QString, QStringList> m_values;
};
