#include "EditingKeys.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>

#include <algorithm>
#include <array>

namespace {

constexpr std::array editingKeys{QKeySequence::Undo, QKeySequence::Redo, QKeySequence::Cut, QKeySequence::Copy,
    QKeySequence::Paste, QKeySequence::SelectAll, QKeySequence::Delete, QKeySequence::Backspace,
    QKeySequence::DeleteStartOfWord, QKeySequence::DeleteEndOfWord, QKeySequence::DeleteEndOfLine,
    QKeySequence::DeleteCompleteLine, QKeySequence::MoveToNextWord, QKeySequence::MoveToPreviousWord,
    QKeySequence::SelectNextWord, QKeySequence::SelectPreviousWord};

} // namespace

EditingKeys::EditingKeys(QObject *parent)
    : QObject(parent)
{
    qApp->installEventFilter(this);
}

bool EditingKeys::eventFilter(QObject *watched, QEvent *event)
{
    const bool isKey = event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress;
    if (!isKey || !(qobject_cast<QLineEdit *>(watched) || qobject_cast<QPlainTextEdit *>(watched))) {
        return QObject::eventFilter(watched, event);
    }
    const auto *key = static_cast<QKeyEvent *>(event);
    if (key->modifiers() == Qt::ControlModifier && key->key() == Qt::Key_D) {
        // Some desktops delete a character with it, and nobody who meant the command would notice.
        event->setAccepted(event->type() == QEvent::KeyPress);
        return true;
    }
    if (event->type() == QEvent::ShortcutOverride) {
        if (std::any_of(editingKeys.begin(), editingKeys.end(),
                [key](QKeySequence::StandardKey editing) { return key->matches(editing); })) {
            event->accept();
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}
