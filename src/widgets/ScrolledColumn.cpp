#include "ScrolledColumn.h"

#include <QLayout>

#include <algorithm>

void ScrolledColumn::setColumn(int width, int leftPadding, int rightPadding)
{
    m_width = width;
    m_leftPadding = leftPadding;
    m_rightPadding = rightPadding;
    setMaximumWidth(width);
    applyPadding();
}

int ScrolledColumn::heightForWidth(int /*width*/) const
{
    const QMargins margins = layout()->contentsMargins();
    const int inside = m_width - m_leftPadding - m_rightPadding;
    return layout()->totalHeightForWidth(inside + margins.left() + margins.right());
}

void ScrolledColumn::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    applyPadding();
}

void ScrolledColumn::applyPadding()
{
    QMargins margins = layout()->contentsMargins();
    margins.setLeft(m_leftPadding);
    margins.setRight(std::max(m_rightPadding - std::max(m_width - width(), 0), 0));
    if (margins != layout()->contentsMargins()) {
        layout()->setContentsMargins(margins);
        // At once, so that no frame is painted with the contents in the wrong place.
        layout()->activate();
    }
}
