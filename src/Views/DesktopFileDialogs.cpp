#include "DesktopFileDialogs.h"

#include <QFileDialog>
#include <QFileInfo>

std::optional<QString> DesktopFileDialogs::askOpenFile(const QString &title)
{
    const QString chosen = QFileDialog::getOpenFileName(m_parent, title, m_openDirectory);
    if (chosen.isEmpty()) {
        return std::nullopt;
    }
    m_openDirectory = QFileInfo(chosen).absolutePath();
    return chosen;
}

std::optional<QString> DesktopFileDialogs::askSaveFile(const QString &title, const QString &proposedName)
{
    const QString directory = m_saveDirectory.isEmpty() ? m_openDirectory : m_saveDirectory;
    const QString proposed = directory.isEmpty() ? proposedName : directory + u'/' + proposedName;
    const QString chosen = QFileDialog::getSaveFileName(m_parent, title, proposed);
    if (chosen.isEmpty()) {
        return std::nullopt;
    }
    m_saveDirectory = QFileInfo(chosen).absolutePath();
    return chosen;
}
