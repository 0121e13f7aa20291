#pragma once

#include <QLabel>

/// A text in one line that never makes its column wider: where the room is short it ends with an ellipsis, or has
/// one where it is told to, and the tool tip has all of it.
class ElidedLabel : public QLabel {
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget *parent = nullptr);

    void setElideMode(Qt::TextElideMode mode);

    [[nodiscard]] QSize minimumSizeHint() const override { return {1, QLabel::minimumSizeHint().height()}; }

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    [[nodiscard]] QRect textRect() const;
    [[nodiscard]] bool isElided() const;

    Qt::TextElideMode m_elideMode = Qt::ElideRight;
};
