#include "DesktopFileDialogs.h"

#include "WindowState.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QStandardPaths>

namespace {

/// Where preset files are looked for at first: not where the program happens to have been started.
QString firstDirectory()
{
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QFileInfo(documents).isDir() ? documents : QDir::homePath();
}

} // namespace

DesktopFileDialogs::DesktopFileDialogs(WindowState &state)
    : m_state(state)
{
}

std::optional<QString> DesktopFileDialogs::askOpenFile(const QString &title)
{
    const QString used = m_state.importDirectory();
    const QString chosen = QFileDialog::getOpenFileName(m_parent, title, used.isEmpty() ? firstDirectory() : used);
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
    const QString proposed = QDir(directory.isEmpty() ? firstDirectory() : directory).filePath(proposedName);
    const QString chosen = QFileDialog::getSaveFileName(m_parent, title, proposed);
    if (chosen.isEmpty()) {
        return std::nullopt;
    }
    m_state.setExportDirectory(QFileInfo(chosen).absolutePath());
    return chosen;
}

std::optional<QString> DesktopFileDialogs::askDirectory(const QString &title)
{
    const QString chosen = QFileDialog::getExistingDirectory(m_parent, title, QDir::homePath());
    return chosen.isEmpty() ? std::nullopt : std::optional(chosen);
}
