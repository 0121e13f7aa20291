#pragma once

#include <QList>
#include <QWidget>

class MorePlaces;
class PlaceBadge;
class QLabel;

/// Where a patch is used: a sentence, and a badge for every place. Where they fill more than two lines, the rest is
/// counted and shown when it is asked for. The badges are one stop of the Tab key; arrow keys go from one to the next.
/// The widget starts a focus gutter before its sentence.
class PlaceBadges : public QWidget {
    Q_OBJECT

public:
    explicit PlaceBadges(QWidget *parent);

    /// The slots, counted from 0, in order.
    void setPlaces(const QList<int> &slotIndexes);
    /// Whether the badges stand below the sentence rather than behind it.
    void setStacked(bool isStacked);
    /// Shows two lines of badges again.
    void fold();

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
    struct Arrangement {
        QRect sentence;
        QList<QRect> badges; ///< of those that are shown
        QRect more; ///< null when all are shown
        int height = 0;
    };

    /// In a widget of this width.
    [[nodiscard]] Arrangement arranged(int width) const;
    [[nodiscard]] int lineHeight() const;
    void open();
    void arrange();
    void addBadge();
    void makeTabStop(const QObject *badge);
    [[nodiscard]] bool moveFocus(const QObject *from, int key);

    QLabel *m_sentence;
    QList<int> m_places;
    QList<PlaceBadge *> m_badges; ///< the first of them show the places; the first one is always there
    MorePlaces *m_more;
    qsizetype m_shown = 0; ///< badges that are not counted as more
    bool m_isStacked = false;
    bool m_isOpen = false;
};
