#pragma once

#include <QAbstractButton>

/// Something to be pressed among the places of a patch. Around it there is room for the focus ring, which is shown when
/// the focus came by a key.
class PlaceButton : public QAbstractButton {
    Q_OBJECT

public:
    explicit PlaceButton(QWidget *parent);

protected:
    void focusInEvent(QFocusEvent *event) override;
    void paintRing(QPainter &painter) const;

private:
    bool m_showsRing = false;
};

/// One place of the list being composed.
class PlaceBadge : public PlaceButton {
    Q_OBJECT

public:
    using PlaceButton::PlaceButton;

    /// Counted from 0.
    void setSlotIndex(int slotIndex);
    [[nodiscard]] int slotIndex() const { return m_slotIndex; }

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    int m_slotIndex = -1;
};

/// Says how many places are not shown, and shows them when it is pressed.
class MorePlaces : public PlaceButton {
    Q_OBJECT

public:
    explicit MorePlaces(QWidget *parent);

    void setCount(qsizetype count);
    /// As wide as it is for this many.
    [[nodiscard]] QSize sizeFor(qsizetype count) const;

    [[nodiscard]] QSize sizeHint() const override { return sizeFor(m_count); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    qsizetype m_count = 0;
};
