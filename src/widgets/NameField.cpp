#include "NameField.h"

#include "LookMeasures.h"
#include "RelativeFont.h"

#include <QCoreApplication>
#include <QDragEnterEvent>
#include <QGuiApplication>
#include <QInputMethod>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QRegularExpression>
#include <QScopedValueRollback>

#include <algorithm>
#include <limits>

using namespace LookMeasures;

namespace {

/// A name may come in with line breaks, from a file or the clipboard; the field shows it in one line.
QString onOneLine(const QString &name)
{
    static const QRegularExpression outerBreaks(QStringLiteral("^[\\t\\n\\v\\f\\r\\x{85}\\x{2028}\\x{2029}]+|"
                                                               "[\\t\\n\\v\\f\\r\\x{85}\\x{2028}\\x{2029}]+$"));
    static const QRegularExpression innerBreaks(QStringLiteral("[\\t\\n\\v\\f\\r\\x{85}\\x{2028}\\x{2029}]+"));
    return QString(name).remove(outerBreaks).replace(innerBreaks, QStringLiteral(" "));
}

bool isBlank(const QString &name)
{
    return name.trimmed().isEmpty();
}

/// Leaving the field for a menu or another window is no end of the edit.
bool isPassing(Qt::FocusReason reason)
{
    return reason == Qt::PopupFocusReason || reason == Qt::MenuBarFocusReason || reason == Qt::ActiveWindowFocusReason;
}

} // namespace

NameField::NameField(QWidget *parent)
    : QLineEdit(parent)
{
    setProperty("quiet", true);
    RelativeFont::set(*this, titleFont);
    setAccessibleName(tr("Name"));
    setMaxLength(std::numeric_limits<int>::max());
    // Not textEdited: assistive technology sets the text.
    connect(this, &QLineEdit::textChanged, this, &NameField::noteText);
    connect(this, &QLineEdit::returnPressed, this, [this] {
        endEdit();
        m_nameBefore = m_name;
    });
}

void NameField::showName(const QString &name, bool isOtherPatch)
{
    if (!isOtherPatch && name == m_name) {
        return;
    }
    const QScopedValueRollback showing(m_isShowing, true);
    m_name = name;
    m_nameBefore = name;
    m_line = onOneLine(name);
    setText(m_line);
    setCursorPosition(0);
}

void NameField::noteText(const QString &text)
{
    if (m_isShowing) {
        return;
    }
    const QString line = onOneLine(text);
    if (line != text) {
        removeLineBreaks(text);
        return;
    }
    m_line = line;
    // Only then, because assistive technology reads it out where there is no description.
    setPlaceholderText(isBlank(line) ? onOneLine(m_nameBefore) : QString());
    const bool isAsBefore = isBlank(line) || line == onOneLine(m_nameBefore);
    tell(isAsBefore ? m_nameBefore : line);
    if (isBlank(line) && line != onOneLine(m_nameBefore) && !hasFocus()) {
        goBack();
    }
}

void NameField::removeLineBreaks(const QString &text)
{
    const QString line = onOneLine(text);
    if (line == m_line) {
        // Going back beyond what is done below goes on to what was before the line breaks came.
        undo();
        return;
    }
    const qsizetype cursor = std::min(onOneLine(text.first(cursorPosition()) + u'x').size() - 1, line.size());
    {
        const QScopedValueRollback replacing(m_isShowing, true);
        // Unlike a text that is set, this can be undone.
        selectAll();
        insert(line);
        setCursorPosition(static_cast<int>(cursor));
    }
    noteText(line);
}

void NameField::tell(const QString &name)
{
    if (name != m_name) {
        m_name = name;
        Q_EMIT nameEdited(name);
    }
}

void NameField::goBack()
{
    selectAll();
    insert(onOneLine(m_nameBefore));
}

void NameField::endEdit()
{
    if (!m_composed.isEmpty()) {
        QGuiApplication::inputMethod()->commit();
    }
    if (!m_composed.isEmpty()) {
        QInputMethodEvent taken;
        taken.setCommitString(m_composed);
        QCoreApplication::sendEvent(this, &taken);
        QGuiApplication::inputMethod()->reset();
    }
    if (isBlank(text()) && text() != onOneLine(m_nameBefore)) {
        goBack();
    }
}

bool NameField::goesBackWith(const QEvent *event) const
{
    const auto *keys = static_cast<const QKeyEvent *>(event);
    return keys->key() == Qt::Key_Escape && keys->modifiers() == Qt::NoModifier && text() != onOneLine(m_nameBefore);
}

bool NameField::event(QEvent *event)
{
    // Escape belongs to the field before any shortcut of the window.
    if (event->type() == QEvent::ShortcutOverride && goesBackWith(event)) {
        event->accept();
        return true;
    }
    return QLineEdit::event(event);
}

void NameField::focusInEvent(QFocusEvent *event)
{
    if (!isPassing(event->reason())) {
        m_nameBefore = m_name;
    }
    QLineEdit::focusInEvent(event);
    Q_EMIT focusChanged(true);
}

void NameField::focusOutEvent(QFocusEvent *event)
{
    if (!isPassing(event->reason())) {
        endEdit();
    }
    QLineEdit::focusOutEvent(event);
    Q_EMIT focusChanged(false);
}

void NameField::inputMethodEvent(QInputMethodEvent *event)
{
    m_composed = event->preeditString();
    QLineEdit::inputMethodEvent(event);
}

void NameField::keyPressEvent(QKeyEvent *event)
{
    if (goesBackWith(event)) {
        goBack();
        return;
    }
    QLineEdit::keyPressEvent(event);
}

void NameField::dragEnterEvent(QDragEnterEvent *event)
{
    if (event->mimeData()->hasUrls()) {
        event->ignore();
    } else {
        QLineEdit::dragEnterEvent(event);
    }
}
