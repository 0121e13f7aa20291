#include "SearchField.h"

#include "LookMeasures.h"
#include "LookTokens.h"
#include "RelativeFont.h"
#include "Symbols.h"

#include <QAction>
#include <QDragEnterEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>
#include <QStyle>

#include <limits>

namespace {

constexpr int symbolInset = 8;
constexpr int gapAfterSymbol = 5;
constexpr int ownTextInset = 8;

} // namespace

SearchField::SearchField(const QString &placeholder, const QString &accessibleName, QWidget *parent)
    : QLineEdit(parent)
{
    new FontFollower(
        *this, [this] { makeRoomForSymbol(); }, this);
    setPlaceholderText(placeholder);
    setAccessibleName(accessibleName);
    setMaxLength(std::numeric_limits<int>::max());
    makeRoomForSymbol();

    // Named for assistive technology, which meets the button by this text.
    auto *clearAction = new QAction(
        symbolIcon(QStringLiteral("xmark"), QPalette::PlaceholderText), tr("Clear %1").arg(placeholder), this);
    clearAction->setToolTip(tr("Clear"));
    addAction(clearAction, TrailingPosition);
    clearAction->setVisible(false);
    connect(clearAction, &QAction::triggered, this, [this] { clear(); });
    connect(this, &QLineEdit::textChanged, clearAction,
        [clearAction](const QString &text) { clearAction->setVisible(!text.isEmpty()); });
}

void SearchField::makeRoomForSymbol()
{
    setTextMargins(symbolInset + LookMeasures::symbolSize(fontMetrics()) + gapAfterSymbol - ownTextInset, 0, 0, 0);
}

void SearchField::showText(const QString &text)
{
    if (text != this->text()) {
        setText(text);
    }
}

bool SearchField::clearsWith(const QEvent *event) const
{
    const auto *keys = static_cast<const QKeyEvent *>(event);
    return keys->key() == Qt::Key_Escape && keys->modifiers() == Qt::NoModifier && !text().isEmpty();
}

bool SearchField::event(QEvent *event)
{
    // Escape belongs to the field before any shortcut of the window.
    if (event->type() == QEvent::ShortcutOverride && clearsWith(event)) {
        event->accept();
        return true;
    }
    return QLineEdit::event(event);
}

void SearchField::keyPressEvent(QKeyEvent *event)
{
    if (clearsWith(event)) {
        clear();
        return;
    }
    const bool isPlain = !(event->modifiers() & ~Qt::KeypadModifier);
    if (isPlain && (event->key() == Qt::Key_Down || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)) {
        Q_EMIT left();
        return;
    }
    QLineEdit::keyPressEvent(event);
}

void SearchField::paintEvent(QPaintEvent *event)
{
    QLineEdit::paintEvent(event);
    QPainter painter(this);
    const int size = LookMeasures::symbolSize(fontMetrics());
    const QRect place(symbolInset, (height() - size) / 2, size, size);
    const LookTokens &tokens = LookTokens::current();
    paintSymbol(&painter, QStringLiteral("search"), isEnabled() ? tokens.secondary : tokens.disabledText,
        QStyle::visualRect(layoutDirection(), rect(), place));
}

void SearchField::dragEnterEvent(QDragEnterEvent *event)
{
    if (event->mimeData()->hasUrls()) {
        event->ignore();
    } else {
        QLineEdit::dragEnterEvent(event);
    }
}
