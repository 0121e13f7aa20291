#pragma once

#include <QString>

#include <optional>

/// How the models ask the user for a file. The calls return when the user has answered; nothing means cancelled.
class FileDialogs {
public:
    FileDialogs() = default;
    virtual ~FileDialogs() = default;
    Q_DISABLE_COPY_MOVE(FileDialogs)

    /// One existing file.
    [[nodiscard]] virtual std::optional<QString> askOpenFile(const QString &title) = 0;
    [[nodiscard]] virtual std::optional<QString> askSaveFile(const QString &title, const QString &proposedName) = 0;
};
