#include "Alerts.h"

#include "AlertTexts.h"
#include "ContentEditor.h"
#include "ContentFiles.h"
#include "FileExistence.h"
#include "LibraryEditor.h"
#include "LibraryPlace.h"
#include "LibraryStorageManager.h"
#include "MessageBox.h"
#include "VelgorContent.h"
#include "VelgorLibrary.h"

#include <QMessageBox>
#include <QShortcut>
#include <QTimer>

struct Alerts::Entry {
    bool (*isRaised)(const Alerts &alerts);
    void (*follow)(Alerts &alerts); ///< listens to what tells that the flag was changed; nullptr: nothing does
    Alert (*alert)(const Desk &desk); ///< title and text
    void (*clear)(Alerts &alerts);
    void (*accept)(Alerts &alerts) = nullptr; ///< what the answer leads to, besides clearing the flag
};

template <typename Object, typename Signal>
void Alerts::follow(const Object &object, Signal signal)
{
    // A message waits for what raised its flag to end, as that may be a drop or the closing of another message.
    connect(&object, signal, this, &Alerts::showNext, Qt::QueuedConnection);
}

const QList<Alerts::Entry> &Alerts::table()
{
    static const QList<Entry> entries{
        {.isRaised = [](const Alerts &alerts) { return alerts.m_desk.content.openError(); },
            .follow = [](Alerts &alerts) { alerts.follow(alerts.m_desk.content, &VelgorContent::openErrorChanged); },
            .alert = AlertTexts::openError,
            .clear = [](Alerts &alerts) { alerts.m_desk.contentFiles.endOpenError(); }},
        {.isRaised = [](const Alerts &alerts) { return alerts.m_desk.content.unreadableNames(); },
            .follow =
                [](Alerts &alerts) { alerts.follow(alerts.m_desk.content, &VelgorContent::unreadableNamesChanged); },
            .alert = AlertTexts::unreadableNames,
            .clear = [](Alerts &alerts) { alerts.m_desk.contentFiles.endUnreadableNames(); }},
        {.isRaised = [](const Alerts &alerts) { return alerts.m_desk.content.saveError(); },
            .follow = [](Alerts &alerts) { alerts.follow(alerts.m_desk.content, &VelgorContent::saveErrorChanged); },
            .alert = AlertTexts::saveError,
            .clear = [](Alerts &alerts) { alerts.m_desk.contentFiles.endSaveError(); }},
        {.isRaised = [](const Alerts &alerts) { return alerts.m_desk.content.selectDefault(); },
            .follow =
                [](Alerts &alerts) { alerts.follow(alerts.m_desk.content, &VelgorContent::selectDefaultChanged); },
            .alert = AlertTexts::selectDefault,
            .clear = [](Alerts &alerts) { alerts.m_desk.contentEditor.endSelectDefault(); }},
        {.isRaised = [](const Alerts &alerts) { return alerts.m_desk.content.mixVersions(); },
            .follow = [](Alerts &alerts) { alerts.follow(alerts.m_desk.content, &VelgorContent::mixVersionsChanged); },
            .alert = AlertTexts::mixVersions,
            .clear = [](Alerts &alerts) { alerts.m_desk.contentEditor.endMixVersions(); }},
        // While a library is loaded, its directory may have more to say.
        {.isRaised =
                [](const Alerts &alerts) {
                    return !alerts.m_desk.storage.isLoading() && alerts.m_desk.storage.readError();
                },
            .follow =
                [](Alerts &alerts) {
                    alerts.follow(alerts.m_desk.storage, &LibraryStorageManager::readErrorChanged);
                    alerts.follow(alerts.m_desk.storage, &LibraryStorageManager::loadFinished);
                },
            .alert = AlertTexts::readError,
            .clear = [](Alerts &alerts) { alerts.m_desk.storage.setReadError(false); },
            .accept = [](Alerts &alerts) { Q_EMIT alerts.libraryCheckWanted(); }},
        {.isRaised =
                [](const Alerts &alerts) {
                    return !alerts.m_desk.storage.isLoading() && alerts.m_desk.storage.writeError();
                },
            .follow =
                [](Alerts &alerts) {
                    alerts.follow(alerts.m_desk.storage, &LibraryStorageManager::writeErrorChanged);
                    alerts.follow(alerts.m_desk.storage, &LibraryStorageManager::loadFinished);
                },
            .alert = AlertTexts::writeError,
            .clear = [](Alerts &alerts) { alerts.m_desk.storage.setWriteError(false); },
            .accept =
                [](Alerts &alerts) {
                    const QString directory = alerts.m_desk.storage.libDirectory();
                    if (LibraryPlace::isListable(directory) && existence(directory) != FileExistence::file) {
                        Q_EMIT alerts.libraryCheckWanted();
                    } else if (alerts.m_desk.moveLibrary) {
                        alerts.m_desk.moveLibrary();
                    }
                }},
        {.isRaised = [](const Alerts &alerts) { return alerts.m_desk.library.deleteConfirm(); },
            .follow =
                [](Alerts &alerts) { alerts.follow(alerts.m_desk.library, &VelgorLibrary::deleteConfirmChanged); },
            .alert = AlertTexts::deleteConfirm,
            .clear = [](Alerts &alerts) { alerts.m_desk.libraryEditor.setDeleteConfirm(false); },
            .accept = [](Alerts &alerts) { alerts.m_desk.libraryEditor.deleteAndGoOn(); }},
        {.isRaised = [](const Alerts &alerts) { return alerts.m_isExportToConfirm; },
            .follow = nullptr,
            .alert = AlertTexts::confirmExport,
            .clear = [](Alerts &alerts) { alerts.m_isExportToConfirm = false; },
            .accept = [](Alerts &alerts) { alerts.m_desk.contentFiles.exportList(); }},
    };
    return entries;
}

Alerts::Alerts(Desk &desk, QWidget &window)
    : QObject(&window)
    , m_desk(desk)
    , m_window(window)
{
    for (const Entry &entry : table()) {
        if (entry.follow) {
            entry.follow(*this);
        }
    }
    QTimer::singleShot(0, this, &Alerts::showNext);
}

void Alerts::confirmExport()
{
    m_isExportToConfirm = true;
    showNext();
}

void Alerts::show(const Alert &alert, const Answered &answered)
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

void Alerts::open(const Alert &alert, const Answered &answered)
{
    const bool hasDialog = m_frontDialog && m_frontDialog->isVisible();
    m_box = MessageBox::show(hasDialog ? m_frontDialog.data() : &m_window, alert, [this, answered](bool isAccepted) {
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
    for (const Entry &entry : table()) {
        if (entry.isRaised(*this)) {
            open(entry.alert(m_desk), [this, &entry](bool isAccepted) {
                entry.clear(*this);
                if (isAccepted && entry.accept) {
                    // The message is still closing; a file dialog of the answer would stand over it.
                    QTimer::singleShot(0, this, [this, &entry] { entry.accept(*this); });
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
