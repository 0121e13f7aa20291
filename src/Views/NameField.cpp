#include "NameField.h"

#include "LookMeasures.h"

#include <QDragEnterEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QScopedValueRollback>

#include <limits>

using namespace LookMeasures;

namespace {

/// Pasted text may hold line breaks, which a name shown in one line cannot.
QString onOneLine(QString name)
{
    for (const QChar lineBreak :
        {QChar(u'\n'), QChar(u'\r'), QChar(QChar::LineSeparator), QChar(QChar::ParagraphSeparator)}) {
        name.replace(lineBreak, u' ');
    }
    return name;
}

} // namespace

NameField::NameField(QWidget *parent)
    : QLineEdit(parent)
{
    setProperty("quiet", true);
    setFont(titleFont(font()));
    setAccessibleName(tr("Name"));
    setMaxLength(std::numeric_limits<int>::max());
    // Not textEdited: assistive technology sets the text.
    connect(this, &QLineEdit::textChanged, this, [this](const QString &name) {
        if (!m_isShowing) {
            Q_EMIT nameEdited(onOneLine(name));
        }
    });
    connect(this, &QLineEdit::returnPressed, this, [this] { m_nameBefore = text(); });
}

void NameField::showName(const QString &name, bool isOtherPatch)
{
    if (isOtherPatch || name != text()) {
        const QScopedValueRollback showing(m_isShowing, true);
        setText(name);
        setCursorPosition(0);
        m_nameBefore = name;
    }
}

bool NameField::goesBackWith(const QEvent *event) const
{
    const auto *keys = static_cast<const QKeyEvent *>(event);
    return keys->key() == Qt::Key_Escape && keys->modifiers() == Qt::NoModifier && text() != m_nameBefore;
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
    // Coming back from a menu or another window goes on with the same edit.
    const Qt::FocusReason reason = event->reason();
    if (reason != Qt::PopupFocusReason && reason != Qt::MenuBarFocusReason && reason != Qt::ActiveWindowFocusReason) {
        m_nameBefore = text();
    }
    QLineEdit::focusInEvent(event);
}

void NameField::keyPressEvent(QKeyEvent *event)
{
    if (goesBackWith(event)) {
        // Unlike a text that is set, this can be undone.
        selectAll();
        insert(m_nameBefore);
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
