#pragma once

#include "FileDialogs.h"

#include <QCoreApplication>
#include <QPointer>
#include <QWidget>

class WindowState;

/// Asks for files with Qt's dialogs, native where the desktop has them. Each kind of dialog opens in the directory
/// that it was last used in.
class DesktopFileDialogs : public FileDialogs {
    Q_DECLARE_TR_FUNCTIONS(DesktopFileDialogs)

public:
    /// `state` remembers the directories and must outlive the dialogs.
    explicit DesktopFileDialogs(WindowState &state);

    /// The window that the dialogs belong to.
    void setParent(QWidget *parent) { m_parent = parent; }

    [[nodiscard]] std::optional<QString> askOpenFile(const QString &title) override;
    [[nodiscard]] std::optional<QString> askSaveFile(const QString &title, const QString &proposedName) override;

    /// One directory, which may be made in the dialog.
    [[nodiscard]] std::optional<QString> askDirectory(const QString &title);

private:
    WindowState &m_state;
    QPointer<QWidget> m_parent;
};
