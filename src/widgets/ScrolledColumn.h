#pragma once

#include <QWidget>

/// The contents of an area that scrolls vertically. A scroll bar stands in the padding at the right: it takes nothing
/// from what is inside, so that nothing moves when the bar appears. The widget needs a layout.
class ScrolledColumn : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// `width` is the width without a scroll bar, paddings included.
    void setColumn(int width, int leftPadding, int rightPadding);

    /// As high as the layout needs at the width without a scroll bar, whatever the width asked for.
    [[nodiscard]] int heightForWidth(int width) const override;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void applyPadding();

    int m_width = 0;
    int m_leftPadding = 0;
    int m_rightPadding = 0;
};
