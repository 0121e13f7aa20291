#include "Alerts.h"

#include "AlertTexts.h"
#include "ContentEditor.h"
#include "ContentFiles.h"
#include "Editors.h"
#include "FileExistence.h"
#include "LibraryEditor.h"
#include "LibraryPlace.h"
#include "LibraryStorageManager.h"
#include "VelgorContent.h"
#include "VelgorLibrary.h"

#include <QMessageBox>
#include <QShortcut>
#include <QTimer>

Alerts::Alerts(const VelgorLibrary &library, const VelgorContent &content, LibraryStorageManager &storage,
    const Editors &editors, QWidget &window)
    : QObject(&window)
    , m_window(window)
{
    addContentRows(library, content, editors);
    addStorageRows(storage);
    add(library, &VelgorLibrary::deleteConfirmChanged,
        {.isRaised = [&library] { return library.deleteConfirm(); },
            .alert = [&library, &editor = editors.library] { return AlertTexts::deleteConfirm(library, editor); },
            .clear = [&editor = editors.library] { editor.setDeleteConfirm(false); },
            .accept = [&editor = editors.library] { editor.deleteAndGoOn(); }});
    // Nothing but confirmExport() raises it.
    m_rows.append({.isRaised = [this] { return m_isExportToConfirm; },
        .alert = [&content] { return AlertTexts::confirmExport(content); },
        .clear = [this] { m_isExportToConfirm = false; },
        .accept = [&files = editors.files] { files.exportList(); }});
    QTimer::singleShot(0, this, &Alerts::showNext);
}

template <typename Object, typename Signal>
void Alerts::add(const Object &object, Signal signal, const Row &row)
{
    // A message waits for what raised its flag to end, as that may be a drop or the closing of another message.
    connect(&object, signal, this, &Alerts::showNext, Qt::QueuedConnection);
    m_rows.append(row);
}

void Alerts::addContentRows(const VelgorLibrary &library, const VelgorContent &content, const Editors &editors)
{
    add(content, &VelgorContent::openErrorChanged,
        {.isRaised = [&content] { return content.openError(); },
            .alert = [&files = editors.files] { return AlertTexts::openError(files.problem()); },
            .clear = [&files = editors.files] { files.endOpenError(); }});
    add(content, &VelgorContent::unreadableNamesChanged,
        {.isRaised = [&content] { return content.unreadableNames(); },
            .alert = [&content] { return AlertTexts::unreadableNames(content); },
            .clear = [&files = editors.files] { files.endUnreadableNames(); }});
    add(content, &VelgorContent::saveErrorChanged,
        {.isRaised = [&content] { return content.saveError(); },
            .alert = [&files = editors.files] { return AlertTexts::saveError(files.problem()); },
            .clear = [&files = editors.files] { files.endSaveError(); }});
    add(content, &VelgorContent::selectDefaultChanged,
        {.isRaised = [&content] { return content.selectDefault(); },
            .alert = [&library] { return AlertTexts::selectDefault(library); },
            .clear = [&editor = editors.content] { editor.endSelectDefault(); }});
    add(content, &VelgorContent::mixVersionsChanged,
        {.isRaised = [&content] { return content.mixVersions(); },
            .alert = [&content, editors] { return AlertTexts::mixVersions(content, editors); },
            .clear = [&editor = editors.content] { editor.endMixVersions(); }});
}

void Alerts::addStorageRows(LibraryStorageManager &storage)
{
    // While a library is loaded, its directory may have more to say.
    connect(&storage, &LibraryStorageManager::loadFinished, this, &Alerts::showNext, Qt::QueuedConnection);
    add(storage, &LibraryStorageManager::readErrorChanged,
        {.isRaised = [&storage] { return !storage.isLoading() && storage.readError(); },
            .alert = [&storage] { return AlertTexts::readError(storage); },
            .clear = [&storage] { storage.setReadError(false); },
            .accept = [this] { Q_EMIT libraryCheckWanted(); }});
    add(storage, &LibraryStorageManager::writeErrorChanged,
        {.isRaised = [&storage] { return !storage.isLoading() && storage.writeError(); },
            .alert = [&storage] { return AlertTexts::writeError(storage); },
            .clear = [&storage] { storage.setWriteError(false); },
            .accept =
                [this, &storage] {
                    const QString directory = storage.libDirectory();
                    if (LibraryPlace::isListable(directory) && existence(directory) != FileExistence::file) {
                        Q_EMIT libraryCheckWanted();
                    } else {
                        Q_EMIT libraryMoveWanted();
                    }
                }});
}

void Alerts::confirmExport()
{
    m_isExportToConfirm = true;
    showNext();
}

void Alerts::show(const Alert &alert, const Alert::Answered &answered)
{
    m_waiting.append({alert, answered});
    showNext();
}

void Alerts::showAboutLibrary(const Alert &alert, const std::function<void()> &dismissed)
{
    show(alert, [this, dismissed](bool isAccepted) {
        if (isAccepted) {
            // The message is still closing.
            QTimer::singleShot(0, this, &Alerts::libraryCheckWanted);
        } else if (dismissed) {
            dismissed();
        }
    });
}

void Alerts::open(const Alert &alert, const Alert::Answered &answered)
{
    const bool hasDialog = m_frontDialog && m_frontDialog->isVisible();
    m_box = alert.show(hasDialog ? m_frontDialog.data() : &m_window, [this, answered](bool isAccepted) {
        m_box.clear();
        answered(isAccepted);
        QTimer::singleShot(0, this, &Alerts::showNext);
    });
    connect(new QShortcut(Qt::Key_F1, m_box), &QShortcut::activated, this, &Alerts::helpWanted);
}

void Alerts::raise()
{
    if (m_box) {
        m_box->activateWindow();
    }
}

void Alerts::showNext()
{
    if (m_box || !m_window.isVisible()) {
        return;
    }
    for (const Row &row : std::as_const(m_rows)) {
        if (row.isRaised()) {
            open(row.alert(), [this, row](bool isAccepted) {
                row.clear();
                if (isAccepted && row.accept) {
                    // The message is still closing; a file dialog of the answer would stand over it.
                    QTimer::singleShot(0, this, row.accept);
                }
            });
            return;
        }
    }
    if (!m_waiting.isEmpty()) {
        const auto [alert, answered] = m_waiting.takeFirst();
        open(alert, answered);
    }
}
