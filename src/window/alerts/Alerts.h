#pragma once

#include "Alert.h"
#include "Desk.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QWidget>

#include <functional>
#include <utility>

class QMessageBox;

/// Shows a message for each flag of the shared objects that wants one, one message at a time, and clears the flag when
/// the message is dismissed.
class Alerts : public QObject {
    Q_OBJECT

public:
    /// Both must outlive the alerts.
    Alerts(Desk &desk, QWidget &window);

    /// Asks the user to take the risk of an export; the export follows.
    void confirmExport();
    /// A message that no flag stands for, after those that are waiting. `answered` is not called when the window goes
    /// first.
    void show(const Alert &alert, const std::function<void(bool isAccepted)> &answered);
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
    /// The user asked for help about the message that is shown.
    void helpWanted();

private:
    using Answered = std::function<void(bool isAccepted)>;
    struct Entry;
    /// Every flag with its message, in the order in which they are shown.
    [[nodiscard]] static const QList<Entry> &table();

    template <typename Object, typename Signal>
    void follow(const Object &object, Signal signal);
    void showNext();
    void open(const Alert &alert, const Answered &answered);

    Desk &m_desk;
    QWidget &m_window;
    QPointer<QWidget> m_frontDialog;
    QPointer<QMessageBox> m_box;
    QList<std::pair<Alert, Answered>> m_waiting;
    bool m_isExportToConfirm = false;
};
