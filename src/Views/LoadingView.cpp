#include "LoadingView.h"

#include "LookMeasures.h"

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
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);
    m_title->setFont(LookMeasures::strongFont(font()));
    m_bar->setFixedSize(barSize);
    m_bar->setTextVisible(false);
    m_bar->setAccessibleName(tr("Loading the library"));
    for (QLabel *label : {m_count, m_reason}) {
        label->setForegroundRole(QPalette::PlaceholderText);
    }
    m_reason->setFont(LookMeasures::footnoteFont(font()));
    m_reason->setWordWrap(true);
    m_reason->setAlignment(Qt::AlignHCenter);
    m_reason->setFixedSize(barSize.width(), m_reason->heightForWidth(barSize.width()));

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
    // On one line with the symbols of the columns that are empty.
    const int top = window()->height() * 2 / 5 - mapTo(window(), QPoint(0, 0)).y();
    layout()->setContentsMargins(0, std::max(top + LookMeasures::columnPadding, 0), 0, 0);
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
