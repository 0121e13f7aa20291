#include "ElidedLabel.h"

#include <QHelpEvent>
#include <QStyle>
#include <QStylePainter>
#include <QToolTip>

#include <algorithm>

ElidedLabel::ElidedLabel(QWidget *parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
}

void ElidedLabel::setElideMode(Qt::TextElideMode mode)
{
    m_elideMode = mode;
    update();
}

QRect ElidedLabel::textRect() const
{
    const QRect inner = contentsRect().adjusted(std::max(indent(), 0), 0, 0, 0);
    return QStyle::visualRect(layoutDirection(), contentsRect(), inner);
}

bool ElidedLabel::isElided() const
{
    return fontMetrics().horizontalAdvance(text()) > textRect().width();
}

bool ElidedLabel::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip && toolTip().isEmpty() && isElided()) {
        const QString shown = Qt::mightBeRichText(text()) ? Qt::convertFromPlainText(text()) : text();
        QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), shown, this);
        return true;
    }
    return QLabel::event(event);
}

void ElidedLabel::paintEvent(QPaintEvent *event)
{
    if (!isElided()) {
        QLabel::paintEvent(event);
        return;
    }
    QStylePainter painter(this);
    const QString shown = fontMetrics().elidedText(text(), m_elideMode, textRect().width());
    painter.drawItemText(textRect(), static_cast<int>(QStyle::visualAlignment(layoutDirection(), alignment())),
        palette(), isEnabled(), shown, foregroundRole());
}
