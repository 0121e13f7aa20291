#include "PlaceBadges.h"

#include "LookMeasures.h"
#include "PlaceBadge.h"
#include "RelativeFont.h"

#include <QKeyEvent>
#include <QLabel>
#include <QStyle>

#include <algorithm>

using namespace LookMeasures;

namespace {

constexpr int gapToBadges = 8;
/// Neighbours share a part of their gutters: 4 pixels part the badges themselves.
constexpr int overlap = 2 * focusGutter - 4;

QString sentence(qsizetype places)
{
    if (places == 0) {
        return PlaceBadges::tr("Not used");
    }
    return places == 1 ? PlaceBadges::tr("Used in 1 position") : PlaceBadges::tr("Used in %1 positions").arg(places);
}

} // namespace

PlaceBadges::PlaceBadges(QWidget *parent)
    : QWidget(parent)
    , m_sentence(new QLabel(sentence(0), this))
    , m_more(new MorePlaces(this))
{
    new FontFollower(
        *this,
        [this] {
            arrange();
            updateGeometry();
        },
        this);
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    // Made now so that it has its place in the order of the Tab key; the others follow it.
    addBadge();
    setTabOrder(m_badges.first(), m_more);
    m_more->hide();
    connect(m_more, &QAbstractButton::clicked, this, &PlaceBadges::open);
}

void PlaceBadges::addBadge()
{
    auto *badge = new PlaceBadge(this);
    badge->hide();
    badge->installEventFilter(this);
    connect(badge, &QAbstractButton::clicked, this, [this, badge] { Q_EMIT placeActivated(badge->slotIndex()); });
    if (!m_badges.isEmpty()) {
        setTabOrder(m_badges.last(), badge);
        setTabOrder(badge, m_more);
        badge->setFocusPolicy(Qt::ClickFocus);
    }
    m_badges.append(badge);
}

void PlaceBadges::setPlaces(const QList<int> &slotIndexes)
{
    if (slotIndexes == m_places) {
        return;
    }
    m_places = slotIndexes;
    m_sentence->setText(sentence(m_places.size()));
    while (m_badges.size() < m_places.size()) {
        addBadge();
    }
    for (qsizetype i = 0; i < m_places.size(); ++i) {
        m_badges.at(i)->setSlotIndex(m_places.at(i));
    }
    arrange();
    updateGeometry();
}

void PlaceBadges::setStacked(bool isStacked)
{
    if (isStacked != m_isStacked) {
        m_isStacked = isStacked;
        arrange();
        updateGeometry();
    }
}

void PlaceBadges::fold()
{
    if (m_isOpen) {
        m_isOpen = false;
        arrange();
        updateGeometry();
    }
}

void PlaceBadges::open()
{
    const qsizetype firstHidden = m_shown;
    m_isOpen = true;
    arrange();
    updateGeometry();
    m_badges.at(firstHidden)->setFocus(m_more->hasFocus() ? Qt::TabFocusReason : Qt::OtherFocusReason);
}

int PlaceBadges::lineHeight() const
{
    return std::max(m_badges.first()->sizeHint().height(), m_sentence->sizeHint().height());
}

PlaceBadges::Arrangement PlaceBadges::arranged(int width) const
{
    constexpr int mostLines = 2;
    const QSize sentenceSize = m_sentence->sizeHint();
    const int height = lineHeight();
    Arrangement result;
    result.sentence = QRect(QPoint(focusGutter, (height - sentenceSize.height()) / 2), sentenceSize);
    int x = m_isStacked ? 0 : result.sentence.x() + sentenceSize.width() + gapToBadges;
    int y = m_isStacked ? result.sentence.y() + sentenceSize.height() + 2 : 0;
    int lines = 1;
    bool isFull = false;
    for (qsizetype i = 0; i < m_places.size() && !isFull; ++i) {
        const QSize size = m_badges.at(i)->sizeHint();
        if (x > 0 && x + size.width() > width) {
            isFull = !m_isOpen && lines == mostLines;
            if (isFull) {
                break;
            }
            ++lines;
            x = 0;
            y += height - overlap;
        }
        result.badges.append(QRect(QPoint(x, y), size));
        x += size.width() - overlap;
    }
    if (isFull) {
        const QSize size = m_more->sizeFor(m_places.size());
        // At least one badge stays, or there would be nothing to go on from.
        while (result.badges.size() > 1 && x + size.width() > width && result.badges.last().y() == y) {
            x = result.badges.takeLast().x();
        }
        result.more = QRect(QPoint(x, y + (m_badges.first()->sizeHint().height() - size.height()) / 2), size);
    }
    result.height = m_places.isEmpty() && !m_isStacked ? height : y + height;
    return result;
}

void PlaceBadges::arrange()
{
    const Arrangement places = arranged(width());
    m_shown = places.badges.size();
    m_sentence->setGeometry(QStyle::visualRect(layoutDirection(), rect(), places.sentence));
    for (qsizetype i = 0; i < m_badges.size(); ++i) {
        PlaceBadge *badge = m_badges.at(i);
        if (i < m_shown) {
            badge->setGeometry(QStyle::visualRect(layoutDirection(), rect(), places.badges.at(i)));
        } else if (badge->focusPolicy() == Qt::StrongFocus) {
            makeTabStop(m_badges.first());
        }
        badge->setVisible(i < m_shown);
    }
    m_more->setCount(m_places.size() - m_shown);
    m_more->setGeometry(QStyle::visualRect(layoutDirection(), rect(), places.more));
    m_more->setVisible(!places.more.isNull());
}

int PlaceBadges::heightForWidth(int width) const
{
    return std::max(arranged(width).height, m_badges.first()->sizeHint().height());
}

QSize PlaceBadges::sizeHint() const
{
    const int sentenceWidth = m_sentence->sizeHint().width() + 2 * focusGutter;
    return {sentenceWidth, heightForWidth(std::max(width(), sentenceWidth))};
}

QSize PlaceBadges::minimumSizeHint() const
{
    return {1, m_badges.first()->sizeHint().height()};
}

void PlaceBadges::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    arrange();
}

bool PlaceBadges::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn) {
        makeTabStop(watched);
    } else if (event->type() == QEvent::KeyPress && moveFocus(watched, static_cast<QKeyEvent *>(event)->key())) {
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void PlaceBadges::makeTabStop(const QObject *badge)
{
    for (PlaceBadge *each : std::as_const(m_badges)) {
        each->setFocusPolicy(each == badge ? Qt::StrongFocus : Qt::ClickFocus);
    }
}

bool PlaceBadges::moveFocus(const QObject *from, int key)
{
    const auto isFrom = [from](const PlaceBadge *badge) { return badge == from; };
    const qsizetype last = m_shown - 1;
    const auto index = std::find_if(m_badges.begin(), m_badges.end(), isFrom) - m_badges.begin();
    const int step = layoutDirection() == Qt::RightToLeft ? -1 : 1;
    qsizetype next = 0;
    switch (key) {
    case Qt::Key_Left:
        next = index - step;
        break;
    case Qt::Key_Right:
        next = index + step;
        break;
    case Qt::Key_Up:
        next = index - 1;
        break;
    case Qt::Key_Down:
        next = index + 1;
        break;
    case Qt::Key_Home:
        next = 0;
        break;
    case Qt::Key_End:
        next = last;
        break;
    default:
        return false;
    }
    m_badges.at(std::clamp<qsizetype>(next, 0, std::max<qsizetype>(last, 0)))->setFocus(Qt::TabFocusReason);
    return true;
}
