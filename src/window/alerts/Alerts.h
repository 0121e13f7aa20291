#pragma once

#include "Alert.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QWidget>

#include <utility>

class LibraryStorageManager;
class QMessageBox;
class VelgorContent;
class VelgorLibrary;
struct Editors;

/// Shows a message for each flag of the shared objects that wants one, one message at a time, and clears the flag when
/// the message is dismissed.
class Alerts : public QObject {
    Q_OBJECT

public:
    /// All must outlive the alerts.
    Alerts(const VelgorLibrary &library, const VelgorContent &content, LibraryStorageManager &storage,
        const Editors &editors, QWidget &window);

    /// Asks the user to take the risk of an export; the export follows.
    void confirmExport();
    /// A message that no flag stands for, after those that are waiting. `answered` is not called when the window goes
    /// first.
    void show(const Alert &alert, const Alert::Answered &answered);
    [[nodiscard]] bool isShowing() const { return !m_box.isNull(); }
    /// A message that leads to the check of the library, after those that are waiting. `dismissed` is called when the
    /// user does not go there.
    void showAboutLibrary(const Alert &alert, const std::function<void()> &dismissed = {});
    /// The dialog over which messages are shown while it is visible, instead of over the window.
    void setFrontDialog(QWidget *dialog) { m_frontDialog = dialog; }
    /// Gives the keyboard to the message that is shown, if there is one.
    void raise();

Q_SIGNALS:
    /// The user answered a message by asking for a check of the library.
    void libraryCheckWanted();
    /// The same for its move to another folder.
    void libraryMoveWanted();
    /// The user asked for help about the message that is shown.
    void helpWanted();

private:
    /// A flag with its message.
    struct Row {
        std::function<bool()> isRaised;
        std::function<Alert()> alert;
        std::function<void()> clear;
        std::function<void()> accept = nullptr; ///< what the answer leads to, besides clearing the flag
    };

    void addContentRows(const VelgorLibrary &library, const VelgorContent &content, const Editors &editors);
    void addStorageRows(LibraryStorageManager &storage);
    /// The signal tells that the flag was changed.
    template <typename Object, typename Signal>
    void add(const Object &object, Signal signal, const Row &row);
    void showNext();
    void open(const Alert &alert, const Alert::Answered &answered);

    QList<Row> m_rows; ///< in the order in which they are shown
    QWidget &m_window;
    QPointer<QWidget> m_frontDialog;
    QPointer<QMessageBox> m_box;
    QList<std::pair<Alert, Alert::Answered>> m_waiting;
    bool m_isExportToConfirm = false;
};
