#pragma once

#include "FileDialogs.h"

#include <QPointer>
#include <QWidget>

/// Asks for files with Qt's dialogs, native where the desktop has them, and remembers the directories used.
class DesktopFileDialogs : public FileDialogs {
public:
    /// The window that the dialogs belong to.
    void setParent(QWidget *parent) { m_parent = parent; }

    [[nodiscard]] std::optional<QString> askOpenFile(const QString &title) override;
    [[nodiscard]] std::optional<QString> askSaveFile(const QString &title, const QString &proposedName) override;

private:
    QPointer<QWidget> m_parent;
    QString m_openDirectory;
    QString m_saveDirectory;
};
