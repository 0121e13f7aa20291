#include "MessageWindow.h"

#include "LookMeasures.h"
#include "WrappedText.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QScopedValueRollback>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>

#include <algorithm>

namespace {

constexpr int usualTextWidth = 360;
constexpr int margin = 20;

void dressLabel(QLabel &label, const QFont &font, QPalette::ColorRole role)
{
    label.setFont(font);
    // Texts come from files and their names; nothing of them is markup.
    label.setTextFormat(Qt::PlainText);
    label.setForegroundRole(role);
    // Reasons and paths are often copied into a mail.
    label.setTextInteractionFlags(Qt::TextSelectableByMouse);
    label.setContentsMargins({});
    label.setMargin(0);
    label.setIndent(0);
}

/// The whole text, or what fits the width of it, line by line.
void fitLabel(QLabel &label, const QString &whole, int width)
{
    const QString shown = WrappedText::fitted(whole, label.font(), width);
    if (label.text() != shown) {
        label.setText(shown);
        label.setToolTip(shown == whole ? QString() : Qt::convertFromPlainText(whole));
    }
    if (!label.wordWrap()) {
        label.setWordWrap(true);
    }
    // A label never counts with less than its smallest width, which may be that of another try.
    label.setMinimumSize(0, 0);
    label.setFixedSize(width, label.heightForWidth(width));
}

} // namespace

void MessageWindow::dress()
{
    m_title = findChild<QLabel *>(QStringLiteral("qt_msgbox_label"));
    m_text = findChild<QLabel *>(QStringLiteral("qt_msgbox_informativelabel"));
    m_wholeTitle = text();
    m_wholeText = informativeText();
    dressLabel(*m_title, LookMeasures::strongFont(font()), QPalette::WindowText);
    if (m_text) {
        dressLabel(*m_text, font(), QPalette::PlaceholderText);
    }
    layout()->setContentsMargins(margin, margin, margin, margin - LookMeasures::focusGutter);
    const QList<QAbstractButton *> all = buttons();
    for (QAbstractButton *const button : all) {
        button->setProperty("roomy", true);
        button->setIcon(QIcon());
    }
}

bool MessageWindow::event(QEvent *event)
{
    if (event->type() == QEvent::LayoutRequest) {
        // NOLINTNEXTLINE(bugprone-parent-virtual-call): QMessageBox would size itself by rules of its own.
        const bool isTaken = QDialog::event(event);
        fit();
        return isTaken;
    }
    return QMessageBox::event(event);
}

void MessageWindow::showEvent(QShowEvent *event)
{
    QMessageBox::showEvent(event);
    fit();
}

void MessageWindow::changeEvent(QEvent *event)
{
    QMessageBox::changeEvent(event);
    if (m_title && event->type() == QEvent::FontChange) {
        m_title->setFont(LookMeasures::strongFont(font()));
        if (m_text) {
            m_text->setFont(font());
        }
    }
    fit();
}

void MessageWindow::keyPressEvent(QKeyEvent *event)
{
    // A message may come up while the user types. Only with Alt does a letter press a button.
    const bool isTyped = !event->text().isEmpty() && event->text().front().isPrint();
    if (isTyped && !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))) {
        event->accept();
        return;
    }
    QMessageBox::keyPressEvent(event);
}

QSize MessageWindow::sizeWith(int textWidth)
{
    fitLabel(*m_title, m_wholeTitle, textWidth);
    if (m_text) {
        fitLabel(*m_text, m_wholeText, textWidth);
    }
    if (m_scrollArea) {
        m_scrollArea->setFixedSize(m_text->size());
    }
    layout()->invalidate();
    return layout()->totalMinimumSize();
}

void MessageWindow::scrollText(int width, int height)
{
    if (!m_scrollArea) {
        auto *const grid = qobject_cast<QGridLayout *>(layout());
        int row = 0;
        int column = 0;
        int rows = 0;
        int columns = 0;
        grid->getItemPosition(grid->indexOf(m_text), &row, &column, &rows, &columns);
        grid->removeWidget(m_text);
        m_scrollArea = new QScrollArea(this);
        m_scrollArea->setAccessibleName(m_wholeTitle);
        m_scrollArea->setFrameShape(QFrame::NoFrame);
        m_scrollArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        m_scrollArea->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
        m_scrollArea->setWidget(m_text);
        m_scrollArea->viewport()->setAutoFillBackground(false);
        m_text->setAutoFillBackground(false);
        grid->addWidget(m_scrollArea, row, column, rows, columns);
        m_scrollArea->show();
    }
    fitLabel(*m_text, m_wholeText, width - m_scrollArea->verticalScrollBar()->sizeHint().width());
    m_scrollArea->setFixedSize(width, std::max(height, 2 * m_text->fontMetrics().height()));
    layout()->invalidate();
}

void MessageWindow::fit()
{
    if (!m_title || !isVisible() || m_isFitting) {
        return;
    }
    const QScopedValueRollback fitting(m_isFitting, true);
    const QSize most = LookMeasures::roomForWindow(*screen());
    int width = std::max(usualTextWidth, 22 * fontMetrics().height());
    // In a window as broad as this, the buttons do not count.
    const int beside = sizeWith(most.width()).width() - most.width();
    const int widest = most.width() - beside;
    if (!WrappedText::canBeWrapped(m_wholeTitle + u'\n' + m_wholeText, font(), width)) {
        // Paths rarely are broader than that.
        width += width / 2;
    }
    width = std::min(width, widest);
    QSize size = sizeWith(width);
    // A long text gets broader rather than higher than the screen.
    while (size.height() > most.height() * 3 / 4 && width < widest) {
        width = std::min(width + width / 4, widest);
        size = sizeWith(width);
    }
    if (m_text && size.height() > most.height()) {
        scrollText(width, m_text->height() - (size.height() - most.height()));
        size = layout()->totalMinimumSize();
    }
    setFixedSize(size.boundedTo(most));
    layout()->activate();
    // What was changed here is laid out.
    QCoreApplication::removePostedEvents(this, QEvent::LayoutRequest);
}
