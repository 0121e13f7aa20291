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
    Alert (*alert)(const Desk &desk);
    void (*clear)(Alerts &alerts);
    void (*accept)(Alerts &alerts);
};

const QList<Alerts::Entry> &Alerts::table()
{
    static const QList<Entry> entries{
        {[](const Alerts &alerts) { return alerts.m_desk.content.openError(); }, AlertTexts::openError,
            [](Alerts &alerts) { alerts.m_desk.contentFiles.endOpenError(); }, nullptr},
        {[](const Alerts &alerts) { return alerts.m_desk.content.unreadableNames(); }, AlertTexts::unreadableNames,
            [](Alerts &alerts) { alerts.m_desk.contentFiles.endUnreadableNames(); }, nullptr},
        {[](const Alerts &alerts) { return alerts.m_desk.content.saveError(); }, AlertTexts::saveError,
            [](Alerts &alerts) { alerts.m_desk.contentFiles.endSaveError(); }, nullptr},
        {[](const Alerts &alerts) { return alerts.m_desk.content.selectDefault(); }, AlertTexts::selectDefault,
            [](Alerts &alerts) { alerts.m_desk.contentEditor.endSelectDefault(); }, nullptr},
        {[](const Alerts &alerts) { return alerts.m_desk.content.mixVersions(); }, AlertTexts::mixVersions,
            [](Alerts &alerts) { alerts.m_desk.contentEditor.endMixVersions(); }, nullptr},
        {[](const Alerts &alerts) { return !alerts.m_desk.storage.isLoading() && alerts.m_desk.storage.readError(); },
            AlertTexts::readError, [](Alerts &alerts) { alerts.m_desk.storage.setReadError(false); },
            [](Alerts &alerts) { Q_EMIT alerts.libraryCheckWanted(); }},
        {[](const Alerts &alerts) { return !alerts.m_desk.storage.isLoading() && alerts.m_desk.storage.writeError(); },
            AlertTexts::writeError, [](Alerts &alerts) { alerts.m_desk.storage.setWriteError(false); },
            [](Alerts &alerts) {
                const QString directory = alerts.m_desk.storage.libDirectory();
                if (LibraryPlace::isListable(directory) && existence(directory) != FileExistence::file) {
                    Q_EMIT alerts.libraryCheckWanted();
                } else if (alerts.m_desk.moveLibrary) {
                    alerts.m_desk.moveLibrary();
                }
            }},
        {[](const Alerts &alerts) { return alerts.m_desk.library.deleteConfirm(); }, AlertTexts::deleteConfirm,
            [](Alerts &alerts) { alerts.m_desk.libraryEditor.setDeleteConfirm(false); },
            [](Alerts &alerts) { alerts.m_desk.libraryEditor.deleteAndGoOn(); }},
        {[](const Alerts &alerts) { return alerts.m_isExportToConfirm; }, AlertTexts::confirmExport,
            [](Alerts &alerts) { alerts.m_isExportToConfirm = false; },
            [](Alerts &alerts) { alerts.m_desk.contentFiles.exportList(); }},
    };
    return entries;
}

Alerts::Alerts(Desk &desk, QWidget &window)
    : QObject(&window)
    , m_desk(desk)
    , m_window(window)
{
    followFlags();
}

void Alerts::followFlags()
{
    // A message waits for what raised its flag to end, as that may be a drop or the closing of another message.
    const auto follow = [this](auto *object, auto signal) {
        connect(object, signal, this, &Alerts::showNext, Qt::QueuedConnection);
    };
    follow(&m_desk.content, &VelgorContent::openErrorChanged);
    follow(&m_desk.content, &VelgorContent::unreadableNamesChanged);
    follow(&m_desk.content, &VelgorContent::saveErrorChanged);
    follow(&m_desk.content, &VelgorContent::selectDefaultChanged);
    follow(&m_desk.content, &VelgorContent::mixVersionsChanged);
    follow(&m_desk.storage, &LibraryStorageManager::readErrorChanged);
    follow(&m_desk.storage, &LibraryStorageManager::writeErrorChanged);
    // Until then the directory may have more to say.
    follow(&m_desk.storage, &LibraryStorageManager::loadFinished);
    follow(&m_desk.library, &VelgorLibrary::deleteConfirmChanged);
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
