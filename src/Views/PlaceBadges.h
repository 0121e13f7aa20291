#pragma once

#include <QList>
#include <QWidget>

class PlaceBadge;
class QLabel;

/// Where a patch is used: a sentence, and a badge for every place, in as many lines as they need. The badges are one
/// stop of the Tab key; arrow keys go from one to the next. The widget starts a focus gutter before its sentence.
class PlaceBadges : public QWidget {
    Q_OBJECT

public:
    explicit PlaceBadges(QWidget *parent);

    /// The slots, counted from 0, in order.
    void setPlaces(const QList<int> &slotIndexes);
    /// Whether the badges stand below the sentence rather than behind it.
    void setStacked(bool isStacked);

    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

Q_SIGNALS:
    void placeActivated(int slotIndex);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    /// The place of the sentence, then those of the badges, in a widget of this width.
    [[nodiscard]] QList<QRect> arranged(int width) const;
    void arrange();
    void addBadge();
    void makeTabStop(const QObject *badge);
    [[nodiscard]] bool moveFocus(const QObject *from, int key);

    QLabel *m_sentence;
    QList<int> m_places;
    QList<PlaceBadge *> m_badges; ///< the first of them show the places; the first one is always there
    bool m_isStacked = false;
};
