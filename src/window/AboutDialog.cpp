#include "AboutDialog.h"

#include "ElidedLabel.h"
#include "LookMeasures.h"
#include "RelativeFont.h"
#include "StatusText.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGridLayout>
#include <QGuiApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include <utility>

namespace {

constexpr QSize usualSize{620, 460};
constexpr int edge = 20 - LookMeasures::focusGutter;
constexpr QSize iconSize{48, 48};

} // namespace

AboutDialog::AboutDialog(const ProblemReport &report, QWidget *parent)
    : QDialog(parent)
    , m_report(report)
    , m_layout(new QVBoxLayout(this))
{
    setWindowTitle(tr("About Velgor Library Manager"));
    m_layout->setContentsMargins(edge, edge + LookMeasures::focusGutter, edge, edge);
    m_layout->setSpacing(LookMeasures::smallGap);
    addHead();
    m_layout->addSpacing(LookMeasures::wideGap);
    addFacts();
    m_layout->addSpacing(LookMeasures::wideGap);
    addMessages();
    m_layout->addSpacing(LookMeasures::columnPadding);
    addBottom();
    resize(LookMeasures::scaledToText(usualSize, fontMetrics()).boundedTo(LookMeasures::roomForWindow(*screen())));
}

void AboutDialog::addHead()
{
    auto *const name = new QLabel(QCoreApplication::applicationName(), this);
    RelativeFont::set(*name, LookMeasures::titleFont);
    auto *const version = new QLabel(tr("Version %1").arg(m_report.version), this);
    version->setTextInteractionFlags(Qt::TextSelectableByMouse);
    for (QLabel *const label : {name, version}) {
        label->setTextFormat(Qt::PlainText);
    }
    auto *const head = new QGridLayout;
    head->setContentsMargins(LookMeasures::focusGutter, 0, LookMeasures::focusGutter, 0);
    head->setHorizontalSpacing(LookMeasures::wideGap);
    head->setVerticalSpacing(LookMeasures::tinyGap);
    if (const QIcon icon = QGuiApplication::windowIcon(); !icon.isNull()) {
        auto *const picture = new QLabel(this);
        picture->setPixmap(icon.pixmap(LookMeasures::scaledToText(iconSize, fontMetrics()), devicePixelRatioF()));
        head->addWidget(picture, 0, 0, 2, 1, Qt::AlignTop);
    }
    head->addWidget(name, 0, 1);
    head->addWidget(version, 1, 1);
    head->setColumnStretch(1, 1);
    m_layout->addLayout(head);
}

void AboutDialog::addFacts()
{
    const QString directory = StatusText::directory(m_report.library);
    const QString patches =
        m_report.patches == 1 ? tr("1 patch") : tr("%1 patches").arg(QString::number(m_report.patches));
    const QList<std::pair<QString, QString>> facts{{tr("Library folder"), directory}, {tr("In the library"), patches},
        {tr("Qt"), m_report.qt}, {tr("System"), m_report.system}};
    auto *const grid = new QGridLayout;
    grid->setContentsMargins(LookMeasures::focusGutter, 0, LookMeasures::focusGutter, 0);
    grid->setHorizontalSpacing(LookMeasures::wideGap);
    grid->setVerticalSpacing(LookMeasures::smallGap);
    grid->setColumnStretch(1, 1);
    for (const auto &[title, fact] : facts) {
        const int row = grid->rowCount();
        auto *const label = new QLabel(title, this);
        label->setForegroundRole(QPalette::PlaceholderText);
        auto *const value = new ElidedLabel(this);
        value->setElideMode(Qt::ElideMiddle);
        value->setText(fact);
        label->setBuddy(value);
        grid->addWidget(label, row, 0);
        grid->addWidget(value, row, 1);
    }
    m_layout->addLayout(grid);
}

void AboutDialog::addMessages()
{
    // Assistive technology reads, and Tab goes, in the order in which all is made.
    auto *const title = new QLabel(tr("&Messages of this run"), this);
    RelativeFont::set(*title, LookMeasures::strongFont);
    auto *const messages = new QPlainTextEdit(this);
    title->setBuddy(messages);
    messages->setReadOnly(true);
    messages->setTabChangesFocus(true);
    messages->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    messages->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    messages->setAccessibleName(tr("Messages of this run"));
    messages->setPlaceholderText(tr("None"));
    messages->setPlainText(m_report.messages.join(u'\n'));
    messages->moveCursor(QTextCursor::End);
    auto *const column = new QVBoxLayout;
    column->setContentsMargins(LookMeasures::focusGutter, 0, LookMeasures::focusGutter, 0);
    column->setSpacing(LookMeasures::gap);
    column->addWidget(title);
    column->addWidget(messages, 1);
    m_layout->addLayout(column, 1);
}

void AboutDialog::addBottom()
{
    auto *const copying = new QPushButton(tr("&Copy for a Bug Report"), this);
    m_done = new QLabel(this);
    auto *const closing = new QPushButton(tr("Cl&ose"), this);
    for (QPushButton *const button : {copying, closing}) {
        button->setProperty("roomy", true);
        button->setAutoDefault(false);
    }
    closing->setDefault(true);
    closing->setFocus();
    m_done->setForegroundRole(QPalette::PlaceholderText);
    auto *const bottom = new QHBoxLayout;
    bottom->setSpacing(LookMeasures::columnPadding);
    bottom->addWidget(copying);
    bottom->addWidget(m_done, 1);
    bottom->addWidget(closing);
    m_layout->addLayout(bottom);
    connect(copying, &QPushButton::clicked, this, &AboutDialog::copy);
    connect(closing, &QPushButton::clicked, this, &QDialog::accept);
}

void AboutDialog::copy()
{
    QGuiApplication::clipboard()->setText(m_report.text());
    m_done->setText(tr("Copied"));
}
