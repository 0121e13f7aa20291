#pragma once

#include <QList>
#include <QPoint>
#include <QRandomGenerator>
#include <QString>

class PatchListView;
class PresetSupply;
class QDialog;
class QMessageBox;
class QWidget;
struct WindowFixture;

/// What a user can do to the window, by the events that reach it from the desktop.
class UserActions {
public:
    /// All must outlive the actions.
    UserActions(WindowFixture &window, PresetSupply &presets, QRandomGenerator &random);

    /// Does something, and says what it was. The window is open afterwards, and free of messages and menus.
    QString any();
    /// Comes to the same state from wherever the window is, by deleting everything and importing the same list. What
    /// went wrong, if anything.
    [[nodiscard]] QString startOver();

private:
    struct Kind {
        int weight;
        QString (UserActions::*act)();
    };
    static const QList<Kind> &kinds();

    QString clickRow();
    QString doubleClickRow();
    QString pressKey();
    QString pressShortcut();
    QString runCommand();
    QString pressButton();
    QString typeText();
    QString clearFilter();
    QString dragRows();
    QString dropFile();
    QString importFile();
    QString exportList();
    QString openContextMenu();
    QString openMenu();
    QString turnWheel();
    QString resizeWindow();
    QString changeFont();
    QString closeAndReopen();
    QString waitABit();

    /// Answers whatever is asked until nothing is, and has the window open.
    QString settle();
    [[nodiscard]] QMessageBox *message() const;
    static void answer(QMessageBox &box, bool isAccepted);
    /// A dialog that is open and no message.
    [[nodiscard]] QDialog *dialog() const;
    /// Uses it for a while, and closes it unless a message came up.
    QString useDialog(QDialog &open);
    /// Runs a command as its menu does, with the same answer to what it asks. False when it is disabled.
    bool choose(int command, bool isAccepted);
    void reopen();

    [[nodiscard]] PatchListView *anyList();
    [[nodiscard]] int anyRow(const PatchListView &list);
    [[nodiscard]] QPoint anyPoint(const PatchListView &list);
    /// A widget of this class that can be seen and used; nullptr when there is none.
    [[nodiscard]] QWidget *anyUsable(const char *className);
    [[nodiscard]] Qt::KeyboardModifiers anyModifiers();

    WindowFixture &m_window;
    PresetSupply &m_presets;
    QRandomGenerator &m_random;
};
