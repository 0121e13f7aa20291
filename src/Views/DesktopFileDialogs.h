#pragma once

#include "FileDialogs.h"

#include <QPointer>
#include <QWidget>

class WindowState;

/// Asks for files with Qt's dialogs, native where the desktop has them, and remembers the directories used.
class DesktopFileDialogs : public FileDialogs {
public:
    /// The dialogs belong to the window of `parent`.
    explicit DesktopFileDialogs(QWidget *parent);

    [[nodiscard]] std::optional<QString> askOpenFile(const QString &title) override;
    [[nodiscard]] std::optional<QString> askSaveFile(const QString &title, const QString &proposedName) override;

    /// The file chosen last, however its dialog ended before; empty when none was.
    [[nodiscard]] QString lastChosen() const { return m_lastChosen; }

private:
    QPointer<QWidget> m_parent;
    QString m_lastChosen;
    QString m_openDirectory;
    QString m_saveDirectory;
};
