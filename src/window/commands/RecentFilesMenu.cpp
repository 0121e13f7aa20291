#include "RecentFilesMenu.h"

#include "ShownName.h"
#include "StatusText.h"
#include "WindowState.h"

#include <QFileInfo>
#include <QTextDocument>

#include <chrono>

namespace {

/// No more than a moment, for a disk that has to wake up.
constexpr std::chrono::milliseconds longestLook(100);

/// A line of a menu, whatever the text holds.
QString entryPart(const QString &text, const QFontMetrics &metrics)
{
    const int width = 24 * metrics.height();
    // A tabulator would part the entry from its shortcut.
    QString shown = isolated(metrics.elidedText(text.simplified(), Qt::ElideMiddle, width));
    return shown.replace(u'&', QStringLiteral("&&"));
}

QString tipOf(const QString &text)
{
    return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text;
}

} // namespace

RecentFilesMenu::RecentFilesMenu(const WindowState &state, QAction &clear, FilePresence *presence, QWidget *parent)
    : QMenu(tr("Open &Recent"), parent)
    , m_state(state)
    , m_clear(clear)
    , m_presence(presence)
{
    presence->setParent(this);
    setToolTipsVisible(true);
    connect(this, &QMenu::aboutToShow, this, &RecentFilesMenu::lookForFiles);
    connect(presence, &FilePresence::answered, this, &RecentFilesMenu::showPresence);
    refresh();
}

void RecentFilesMenu::refresh()
{
    clear();
    m_entries.clear();
    const QStringList files = m_state.recentFiles();
    QStringList names;
    for (const QString &file : files) {
        names.append(entryPart(QFileInfo(file).fileName(), fontMetrics()));
    }
    for (qsizetype i = 0; i < files.size(); ++i) {
        const QString &file = files.at(i);
        const QString folder = entryPart(StatusText::directory(QFileInfo(file).path()), fontMetrics());
        QAction *const entry =
            addAction(names.count(names.at(i)) == 1 ? names.at(i) : tr("%1 in %2").arg(names.at(i), folder));
        entry->setData(file);
        // The import shows the file here, which takes the place of the entry.
        connect(
            entry, &QAction::triggered, this, [this, file] { Q_EMIT fileChosen(file); }, Qt::QueuedConnection);
        m_entries.append(entry);
    }
    addSeparator();
    addAction(&m_clear);
    menuAction()->setEnabled(!files.isEmpty());
    showPresence();
}

void RecentFilesMenu::lookForFiles()
{
    m_presence->look(m_state.recentFiles(), longestLook);
    showPresence();
}

void RecentFilesMenu::showPresence()
{
    for (QAction *const entry : std::as_const(m_entries)) {
        const QString file = entry->data().toString();
        const QString path = StatusText::directory(file);
        const bool isMissing = m_presence->isMissing(file);
        entry->setEnabled(!isMissing);
        entry->setToolTip(tipOf(isMissing ? tr("%1 is not there").arg(isolated(path)) : path));
    }
}
