#include "LibraryCheckDialog.h"

#include "KeptLibraryText.h"
#include "LibraryCheckColumn.h"
#include "LibraryCheckList.h"
#include "LibraryFindingText.h"
#include "LibraryStorageManager.h"
#include "LookMeasures.h"
#include "RelativeFont.h"
#include "StatusText.h"
#include "VelgorLibrary.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include <chrono>
#include <utility>

namespace {

constexpr QSize startSize{940, 600};
constexpr std::chrono::milliseconds patience(30);
constexpr int margin = 20 - LookMeasures::focusGutter;

/// The pointer says that the program is busy.
struct Waiting {
    Waiting() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~Waiting() { QGuiApplication::restoreOverrideCursor(); }
    Q_DISABLE_COPY_MOVE(Waiting)
};

void setSelectable(QLabel &label)
{
    // Paths are often copied into a mail, and nothing of them is markup.
    label.setTextFormat(Qt::PlainText);
    label.setTextInteractionFlags(Qt::TextSelectableByMouse);
}

} // namespace

LibraryCheckDialog::LibraryCheckDialog(
    std::unique_ptr<LibraryCheck> check, const VelgorLibrary &library, LibraryStorageManager &storage, QWidget *parent)
    : QDialog(parent)
    , m_library(library)
    , m_storage(storage)
    , m_check(std::move(check))
    , m_layout(new QVBoxLayout(this))
    , m_summary(new QLabel(this))
    , m_place(new QLabel(this))
    , m_findings(new LibraryCheckColumn(tr("Findings"), tr("About the finding"), this))
    , m_kept(new LibraryCheckColumn(tr("Former libraries"), tr("About the former library"), this))
    , m_done(new QLabel(this))
    , m_close(new QPushButton(tr("&Close"), this))
{
    setWindowTitle(tr("Check Library"));
    RelativeFont::set(*m_summary, LookMeasures::strongFont);
    m_place->setForegroundRole(QPalette::PlaceholderText);
    m_place->setWordWrap(true);
    for (QLabel *const label : {m_summary, m_place}) {
        setSelectable(*label);
        label->setContentsMargins(LookMeasures::focusGutter, 0, LookMeasures::focusGutter, 0);
    }
    m_layout->setContentsMargins(margin, margin + LookMeasures::focusGutter, margin, margin);
    m_layout->setSpacing(LookMeasures::smallGap);
    m_layout->addWidget(m_summary);
    m_layout->addWidget(m_place);
    addColumns();
    addBottom();
    resize(LookMeasures::scaledToText(startSize, fontMetrics()).boundedTo(LookMeasures::roomForWindow(*screen())));
    connect(m_check.get(), &LibraryCheck::progress, this, &LibraryCheckDialog::showProgress);
    connect(m_check.get(), &LibraryCheck::examined, this, &LibraryCheckDialog::showExamined);
    connect(m_check.get(), &LibraryCheck::ended, this, &LibraryCheckDialog::noteEnd);
    m_check->examine();
    await({});
}

void LibraryCheckDialog::addColumns()
{
    auto *const columns = new QHBoxLayout;
    columns->setSpacing(LookMeasures::wideGap - 2 * LookMeasures::focusGutter);
    columns->addWidget(m_findings, 1);
    columns->addWidget(m_kept, 1);
    m_layout->addSpacing(LookMeasures::gap);
    m_layout->addLayout(columns, 1);
    m_findings->button()->setText(tr("&Add Patches"));
    m_kept->button()->setText(tr("&Restore"));
    connect(m_findings->list(), &LibraryCheckList::selectionMoved, this,
        [this] { m_findings->setDetails(m_findings->list()->selectedRow().details); });
    connect(m_kept->list(), &LibraryCheckList::selectionMoved, this, &LibraryCheckDialog::describeKept);
    connect(m_findings->button(), &QPushButton::clicked, this, &LibraryCheckDialog::addRescued);
    connect(m_kept->button(), &QPushButton::clicked, this, &LibraryCheckDialog::restore);
}

void LibraryCheckDialog::addBottom()
{
    auto *const show = new QPushButton(tr("Show Library &Folder"), this);
    for (QPushButton *const button : {show, m_close}) {
        button->setProperty("roomy", true);
        button->setAutoDefault(false);
    }
    m_close->setDefault(true);
    auto *const bottom = new QHBoxLayout;
    bottom->setSpacing(LookMeasures::columnPadding);
    bottom->addWidget(show);
    bottom->addWidget(m_done, 1);
    bottom->addWidget(m_close);
    m_layout->addSpacing(LookMeasures::columnPadding);
    m_layout->addLayout(bottom);
    m_done->setForegroundRole(QPalette::PlaceholderText);
    m_done->setWordWrap(true);
    connect(show, &QPushButton::clicked, this, [this] { m_storage.openLibraryInFinder(); });
    connect(m_close, &QPushButton::clicked, this, &QDialog::accept);
}

void LibraryCheckDialog::await(const QString &done)
{
    m_doneText = done;
    {
        const Waiting waiting;
        // Most libraries take no longer, and nothing flickers.
        if (m_check->finishWithin(patience)) {
            return;
        }
    }
    m_isWaiting = true;
    m_focusBefore = focusWidget();
    m_summary->setText(tr("Checking the library folder..."));
    m_place->setText(StatusText::directory(m_storage.libDirectory()));
    m_done->clear();
    for (LibraryCheckColumn *const column : {m_findings, m_kept}) {
        column->setRows({}, {});
        column->button()->setEnabled(false);
    }
    keepFocus();
}

void LibraryCheckDialog::showProgress(qsizetype examined, qsizetype total)
{
    m_summary->setText(
        tr("Checking the library folder: %1 of %2 patches").arg(QString::number(examined), QString::number(total)));
}

void LibraryCheckDialog::showExamined()
{
    const qsizetype patches = m_library.count();
    const QString place = StatusText::directory(m_storage.libDirectory());
    m_summary->setText(LibraryFindingText::summary(m_check->health().findings.size()));
    m_place->setText(
        patches == 1 ? tr("1 patch in %1").arg(place) : tr("%1 patches in %2").arg(QString::number(patches), place));
    showFindings();
    showKept();
    m_done->setText(m_storage.writeError() ? QString() : m_doneText);
    if (std::exchange(m_isWaiting, false) && focusWidget() == m_close) {
        // It was only lent, while nothing else could be done.
        m_close->clearFocus();
        if (m_focusBefore) {
            m_focusBefore->setFocus();
        }
    }
    keepFocus();
}

void LibraryCheckDialog::showFindings()
{
    const EmptyHint hint{QStringLiteral("checkmark.circle.fill"), tr("Nothing to mend"),
        tr("Every patch has its file, and every patch file belongs to a patch.")};
    m_findings->setRows(LibraryFindingText::rows(m_check->health().findings + m_check->health().notes), hint);
    const qsizetype count = m_check->rescued().size();
    m_findings->button()->setEnabled(count > 0);
    m_findings->button()->setText(count == 0 ? tr("&Add Patches")
            : count == 1                     ? tr("&Add 1 Patch")
                                             : tr("&Add %1 Patches").arg(count));
}

void LibraryCheckDialog::showKept()
{
    const EmptyHint hint{QStringLiteral("tray"), tr("No former library"),
        tr("The library file is kept here before it is overwritten with less than it held: the last twenty times, and "
           "each time for thirty days.")};
    m_kept->setRows(KeptLibraryText::rows(m_check->health(), m_storage.libDirectory()), hint);
}

void LibraryCheckDialog::describeKept()
{
    const LibraryCheckRow row = m_kept->list()->selectedRow();
    m_previewed.reset();
    if (row.keptLibrary.isEmpty()) {
        m_kept->button()->setEnabled(false);
        m_kept->setDetails(row.details);
        return;
    }
    const auto show = [this, row](const LibraryCheck::Preview &preview) {
        m_kept->button()->setEnabled(preview && !preview->patches.isEmpty());
        m_kept->setDetails(row.details + QStringLiteral("\n\n") + KeptLibraryText::preview(preview));
    };
    m_previewed = std::make_unique<QObject>();
    m_check->preview(row.keptLibrary, m_previewed.get(), show);
    const Waiting waiting;
    if (!m_check->finishWithin(patience)) {
        m_kept->button()->setEnabled(false);
        m_kept->setDetails(row.details);
    }
}

void LibraryCheckDialog::addRescued()
{
    const qsizetype count = m_check->rescued().size();
    m_check->addRescued();
    await(
        count == 1 ? tr("1 patch was added to the library.") : tr("%1 patches were added to the library.").arg(count));
}

void LibraryCheckDialog::restore()
{
    m_check->restore(m_kept->list()->selectedRow().keptLibrary);
    await(tr("The former library is back. The one that it replaced is the first in the list."));
}

void LibraryCheckDialog::noteEnd(bool isDone)
{
    if (!isDone) {
        m_doneText = tr("Nothing was restored.");
    }
    Q_EMIT libraryChanged();
    m_check->examine();
}

void LibraryCheckDialog::keepFocus()
{
    const QWidget *const focused = focusWidget();
    if (!focused || !focused->isEnabled() || focused->focusPolicy() == Qt::NoFocus) {
        const bool hasFindings =
            m_findings->list()->focusPolicy() != Qt::NoFocus && !m_check->health().findings.isEmpty();
        (hasFindings ? static_cast<QWidget *>(m_findings->list()) : m_close)->setFocus();
    }
}
