#include "LoadingView.h"

#include "LookMeasures.h"
#include "RelativeFont.h"

#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>

using namespace std::chrono_literals;

namespace {

constexpr QSize barSize{260, 6};

} // namespace

LoadingView::LoadingView(QWidget *parent)
    : QWidget(parent)
    , m_title(new QLabel(tr("Loading the library"), this))
    , m_bar(new QProgressBar(this))
    , m_count(new QLabel(this))
    , m_reason(new QLabel(tr("The patches appear once all of them have been read and checked"), this))
{
    new FontFollower(
        *this, [this] { arrange(); }, this);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);
    RelativeFont::set(*m_title, LookMeasures::strongFont);
    m_bar->setFixedSize(barSize);
    m_bar->setTextVisible(false);
    m_bar->setAccessibleName(tr("Loading the library"));
    for (QLabel *label : {m_count, m_reason}) {
        label->setForegroundRole(QPalette::PlaceholderText);
    }
    RelativeFont::set(*m_reason, LookMeasures::footnoteFont);
    m_reason->setWordWrap(true);
    m_reason->setAlignment(Qt::AlignHCenter);

    auto *const column = new QVBoxLayout(this);
    column->setSpacing(LookMeasures::columnPadding);
    for (QWidget *widget : {static_cast<QWidget *>(m_title), static_cast<QWidget *>(m_bar),
             static_cast<QWidget *>(m_count), static_cast<QWidget *>(m_reason)}) {
        column->addWidget(widget, 0, Qt::AlignHCenter);
        // Its place stays, so that nothing jumps when it appears.
        QSizePolicy policy = widget->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        widget->setSizePolicy(policy);
    }
    column->addStretch(1);

    m_patience.setSingleShot(true);
    m_patience.setInterval(150ms);
    connect(&m_patience, &QTimer::timeout, this, [this] { setContentsVisible(true); });
    setContentsVisible(false);
}

void LoadingView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    arrange();
}

void LoadingView::arrange()
{
    constexpr int lineLength = 40;
    const int wanted = std::max(barSize.width(), lineLength * fontMetrics().averageCharWidth());
    const int reasonWidth = std::min(wanted, std::max(width() - 2 * LookMeasures::columnPadding, 1));
    m_reason->setFixedSize(reasonWidth, m_reason->heightForWidth(reasonWidth));
    // On one line with the symbols of the columns that are empty, unless it would not fit then.
    const int top = window()->height() * 2 / 5 - mapTo(window(), QPoint(0, 0)).y() + LookMeasures::columnPadding;
    const int needed = layout()->minimumSize().height() - layout()->contentsMargins().top();
    layout()->setContentsMargins(0, std::clamp(top, 0, std::max(height() - needed, 0)), 0, 0);
}

QSize LoadingView::minimumSizeHint() const
{
    // It shares its place with the list, which decides.
    return {1, 1};
}

void LoadingView::setLoading(bool isLoading)
{
    setContentsVisible(false);
    m_bar->setRange(0, 0);
    m_count->clear();
    if (isLoading) {
        m_patience.start();
    } else {
        m_patience.stop();
    }
}

void LoadingView::setProgress(qsizetype loaded, qsizetype total)
{
    m_bar->setRange(0, static_cast<int>(total));
    m_bar->setValue(static_cast<int>(loaded));
    m_count->setText(tr("%1 of %2 patches").arg(QString::number(loaded), QString::number(total)));
}

void LoadingView::setContentsVisible(bool areVisible)
{
    m_title->setVisible(areVisible);
    m_bar->setVisible(areVisible);
    m_count->setVisible(areVisible);
    m_reason->setVisible(areVisible);
}
