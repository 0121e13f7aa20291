#pragma once

#include <QAbstractButton>

/// Says how many places are not shown, and shows them when it is pressed. Around the text there is room for the focus
/// ring.
class MorePlaces : public QAbstractButton {
    Q_OBJECT

public:
    explicit MorePlaces(QWidget *parent);

    void setCount(qsizetype count);
    /// As wide as it is for this many.
    [[nodiscard]] QSize sizeFor(qsizetype count) const;

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void focusInEvent(QFocusEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    qsizetype m_count = 0;
    bool m_showsRing = false;
};
