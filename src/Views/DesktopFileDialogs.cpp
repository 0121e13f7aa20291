#include "DesktopFileDialogs.h"

#include "WindowState.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

DesktopFileDialogs::DesktopFileDialogs(WindowState &state)
    : m_state(state)
{
}

std::optional<QString> DesktopFileDialogs::askOpenFile(const QString &title)
{
    const QString chosen = QFileDialog::getOpenFileName(m_parent, title, m_state.importDirectory());
    if (chosen.isEmpty()) {
        return std::nullopt;
    }
    m_state.setImportDirectory(QFileInfo(chosen).absolutePath());
    return chosen;
}

std::optional<QString> DesktopFileDialogs::askSaveFile(const QString &title, const QString &proposedName)
{
    const QString used = m_state.exportDirectory();
    const QString directory = used.isEmpty() ? m_state.importDirectory() : used;
    const QString proposed = directory.isEmpty() ? proposedName : QDir(directory).filePath(proposedName);
    const QString chosen = QFileDialog::getSaveFileName(m_parent, title, proposed);
    if (chosen.isEmpty()) {
        return std::nullopt;
    }
    m_state.setExportDirectory(QFileInfo(chosen).absolutePath());
    return chosen;
}
