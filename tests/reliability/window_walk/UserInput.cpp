// The keys, buttons and menus of UserActions, in a file of their own for its length.

#include "Commands.h"
#include "PresetSupply.h"
#include "UserActions.h"
#include "WindowFixture.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QInputMethodEvent>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <QWheelEvent>

#include <array>

namespace {

CommandId anyCommand(QRandomGenerator &random)
{
    return static_cast<CommandId>(random.bounded(static_cast<int>(CommandId::ColumnHelp) + 1));
}

QString anyText(QRandomGenerator &random)
{
    static const QStringList texts{QStringLiteral("Lead"), QStringLiteral("start"), QStringLiteral("a"),
        QStringLiteral("bright clean"), QStringLiteral("a/b"), QStringLiteral("\"\\{"), QStringLiteral(".."),
        QString::fromUtf8("\u00c4\u00df\u4e2d"), QString::fromUtf8("\U0001F3B8"), QString(300, u'x')};
    return texts.at(random.bounded(texts.size()));
}

} // namespace

QString UserActions::pressKey()
{
    constexpr std::array keys{Qt::Key_Up, Qt::Key_Down, Qt::Key_Left, Qt::Key_Right, Qt::Key_Home, Qt::Key_End,
        Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_Space, Qt::Key_Return, Qt::Key_Escape, Qt::Key_Tab, Qt::Key_Backtab,
        Qt::Key_Delete, Qt::Key_Backspace, Qt::Key_A, Qt::Key_Z, Qt::Key_Y, Qt::Key_X, Qt::Key_C, Qt::Key_V};
    constexpr std::array modifiers{
        Qt::NoModifier, Qt::NoModifier, Qt::ControlModifier, Qt::ShiftModifier, Qt::AltModifier};
    QWidget *focus = QApplication::focusWidget();
    if (!focus) {
        return QStringLiteral("found no focus");
    }
    const auto key = keys.at(static_cast<std::size_t>(m_random.bounded(static_cast<int>(keys.size()))));
    const auto modifier = modifiers.at(static_cast<std::size_t>(m_random.bounded(static_cast<int>(modifiers.size()))));
    const QString where = focus->accessibleName();
    QTest::keyClick(focus, key, modifier);
    return QStringLiteral("pressed %1 in %2").arg(QKeySequence(modifier | key).toString(), where);
}

QString UserActions::pressShortcut()
{
    QWidget *focus = QApplication::focusWidget();
    const QList<QKeySequence> shortcuts = m_window.window->commands().command(anyCommand(m_random)).shortcuts;
    if (!focus || shortcuts.isEmpty()) {
        return QStringLiteral("found no shortcut");
    }
    const QString where = focus->accessibleName();
    const QKeyCombination keys = shortcuts.first()[0];
    QTest::keyClick(focus, keys.key(), keys.keyboardModifiers());
    return QStringLiteral("pressed %1 in %2").arg(shortcuts.first().toString(), where);
}

QString UserActions::runCommand()
{
    QAction *action = m_window.window->commands().action(anyCommand(m_random));
    if (!action->isEnabled()) {
        return QStringLiteral("left \"%1\", which is disabled").arg(action->text());
    }
    const QString text = action->text();
    action->trigger();
    return QStringLiteral("chose \"%1\"").arg(text);
}

QString UserActions::pressButton()
{
    auto *button = qobject_cast<QAbstractButton *>(anyUsable("QAbstractButton"));
    if (!button) {
        return QStringLiteral("found no button");
    }
    const QString text = button->accessibleName() + u'/' + button->text();
    QTest::mouseClick(button, Qt::LeftButton);
    return QStringLiteral("pressed the button \"%1\"").arg(text);
}

QString UserActions::typeText()
{
    QWidget *field = anyUsable(m_random.bounded(3) == 0 ? "QPlainTextEdit" : "QLineEdit");
    if (!field) {
        return QStringLiteral("found no field");
    }
    QTest::mouseClick(field, Qt::LeftButton);
    if (m_random.bounded(3) == 0) {
        QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(field, Qt::Key_Delete);
    }
    const QString text = m_random.bounded(4) == 0 ? QString() : anyText(m_random);
    QInputMethodEvent typed;
    typed.setCommitString(text);
    QCoreApplication::sendEvent(field, &typed);
    if (m_random.bounded(3) == 0) {
        QTest::keyClick(field, Qt::Key_Return);
    }
    return QStringLiteral("typed \"%1\" into %2").arg(text.left(20), field->accessibleName());
}

QString UserActions::importFile()
{
    m_window.dialogs.answer = m_presets.anyFile(m_random);
    m_window.window->commands().action(CommandId::Import)->trigger();
    return QStringLiteral("imported %1").arg(*m_window.dialogs.answer);
}

QString UserActions::exportList()
{
    m_window.dialogs.answer = m_presets.target(m_random);
    return choose(static_cast<int>(CommandId::Export), true)
        ? QStringLiteral("exported to %1").arg(*m_window.dialogs.answer)
        : QStringLiteral("found nothing to export");
}

QString UserActions::openContextMenu()
{
    PatchListView *list = anyList();
    const QPoint point = anyPoint(*list);
    QTest::mouseClick(list->viewport(), Qt::RightButton, Qt::NoModifier, point);
    QContextMenuEvent event(QContextMenuEvent::Mouse, point, list->viewport()->mapToGlobal(point));
    QCoreApplication::sendEvent(list->viewport(), &event);
    return QStringLiteral("opened the menu of %1").arg(list->accessibleName());
}

QString UserActions::openMenu()
{
    const QList<QAction *> menus = m_window.window->menuBar()->actions();
    QAction *menu = menus.at(m_random.bounded(menus.size()));
    m_window.window->menuBar()->setActiveAction(menu);
    return QStringLiteral("opened the menu \"%1\"").arg(menu->text());
}

QString UserActions::turnWheel()
{
    const PatchListView *list = anyList();
    const QPoint point = anyPoint(*list);
    const int steps = m_random.bounded(-5, 6);
    QWheelEvent event(point, list->viewport()->mapToGlobal(point), QPoint(), QPoint(0, 120 * steps), Qt::NoButton,
        Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(list->viewport(), &event);
    return QStringLiteral("turned the wheel over %1 by %2").arg(list->accessibleName()).arg(steps);
}

QString UserActions::resizeWindow()
{
    m_window.window->resize(m_random.bounded(800, 1900), m_random.bounded(500, 1200));
    return QStringLiteral("resized to %1 x %2").arg(m_window.window->width()).arg(m_window.window->height());
}

QString UserActions::changeFont()
{
    QFont font = QApplication::font();
    // Few sizes: glyphs of each stay in memory for a while, which would hide other growth.
    constexpr std::array sizes{7, 11, 19};
    font.setPointSize(sizes.at(static_cast<std::size_t>(m_random.bounded(static_cast<int>(sizes.size())))));
    QApplication::setFont(font);
    return QStringLiteral("changed the font size to %1").arg(font.pointSize());
}

QString UserActions::closeAndReopen()
{
    m_window.window->close();
    return QStringLiteral("closed the window");
}

QString UserActions::waitABit()
{
    const int time = m_random.bounded(1, 60);
    QTest::qWait(time);
    return QStringLiteral("waited %1 ms").arg(time);
}
