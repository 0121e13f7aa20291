#pragma once

#include <QAbstractButton>

/// One place of the list being composed, to be pressed. Around the badge there is room for the focus ring.
class PlaceBadge : public QAbstractButton {
    Q_OBJECT

public:
    explicit PlaceBadge(QWidget *parent);

    /// Counted from 0.
    void setSlotIndex(int slotIndex);
    [[nodiscard]] int slotIndex() const { return m_slotIndex; }

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void focusInEvent(QFocusEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    int m_slotIndex = -1;
    bool m_showsRing = false;
};
