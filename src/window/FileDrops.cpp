#include "FileDrops.h"

#include "AlertTexts.h"
#include "Alerts.h"
#include "ContentFiles.h"
#include "LibraryContentMainView.h"
#include "LibraryEditor.h"
#include "LibraryStorageManager.h"
#include "StatusLine.h"
#include "StatusText.h"
#include "UnreadableNames.h"
#include "VelgorLibraryView.h"

#include <QDropEvent>
#include <QFileInfo>
#include <QMimeData>
#include <QUrl>

namespace {

QStringList filesIn(const QDropEvent &event)
{
    QStringList paths;
    QStringList elsewhere;
    const QList<QUrl> urls = event.mimeData()->urls();
    for (const QUrl &url : urls) {
        if (const QString path = url.toLocalFile(); !path.isEmpty()) {
            paths.append(path);
        } else {
            elsewhere.append(url.toDisplayString());
        }
    }
    // Beside files of this machine, the others are said too.
    return paths.isEmpty() ? paths : paths + elsewhere;
}

} // namespace

FileDrops::FileDrops(QWidget &window, const LibraryStorageManager &storage, LibraryEditor &editor, ContentFiles &files,
    LibraryContentMainView &columns, Alerts &alerts, StatusLine &status)
    : QObject(&window)
    , m_storage(storage)
    , m_editor(editor)
    , m_files(files)
    , m_columns(columns)
    , m_alerts(alerts)
    , m_status(status)
{
    window.setAcceptDrops(true);
    window.installEventFilter(this);
}

bool FileDrops::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove:
        dragOver(*static_cast<QDropEvent *>(event));
        return true;
    case QEvent::DragLeave:
        m_status.setDrop({});
        event->accept();
        return true;
    case QEvent::Drop:
        drop(*static_cast<QDropEvent *>(event));
        return true;
    default:
        return QObject::eventFilter(watched, event);
    }
}

bool FileDrops::isOverLibrary(const QPoint &position) const
{
    const QWidget *const library = m_columns.library();
    return library->rect().contains(library->mapFrom(m_columns.window(), position));
}

void FileDrops::dragOver(QDropEvent &event)
{
    const QStringList paths = filesIn(event);
    const bool isForLibrary = isOverLibrary(event.position().toPoint());
    const bool isTaken = !paths.isEmpty() && !(isForLibrary && m_storage.isLoading());
    m_status.setDrop(isTaken ? StatusText::ofFileDrop(paths, isForLibrary) : QString());
    if (isTaken) {
        event.setDropAction(Qt::CopyAction);
    }
    event.setAccepted(isTaken);
}

void FileDrops::drop(QDropEvent &event)
{
    dragOver(event);
    m_status.setDrop({});
    if (!event.isAccepted()) {
        return;
    }
    const QStringList paths = filesIn(event);
    if (isOverLibrary(event.position().toPoint())) {
        keep(paths);
    } else {
        importOneOf(paths);
    }
}

void FileDrops::importOneOf(const QStringList &paths)
{
    const QString &path = paths.first();
    const bool isModified = m_files.isModified();
    if (paths.size() == 1 && !isModified) {
        m_files.importFile(path);
        return;
    }
    const Alert question =
        paths.size() == 1 ? AlertTexts::replaceUnexported(path) : AlertTexts::severalFiles(paths, isModified);
    m_alerts.show(question, [this, path](bool isAccepted) {
        if (isAccepted) {
            m_files.importFile(path);
        }
    });
}

void FileDrops::keep(const QStringList &paths)
{
    QList<VelgorPatch> patches;
    QStringList problems;
    QStringList unreadable;
    for (const QString &path : paths) {
        const QList<VelgorPatch> held = m_files.patchesIn(path);
        if (held.isEmpty()) {
            problems.append(m_files.problem());
        }
        const UnreadableNames names(held);
        if (names.count() > 0) {
            const QString places = names.count() == 1 ? tr("%1: slot %2") : tr("%1: slots %2");
            unreadable.append(places.arg(QFileInfo(path).fileName(), names.places()));
        }
        patches.append(held);
    }
    m_editor.keep(patches);
    if (!problems.isEmpty()) {
        m_alerts.show(AlertTexts::filesNotKept(problems, paths.size()), [](bool) {});
    }
    if (!unreadable.isEmpty()) {
        m_alerts.show(AlertTexts::unreadableNamesKept(unreadable), [](bool) {});
    }
}
