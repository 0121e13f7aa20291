#include "VelgorPatchDetailView.h"

#include "EmptyDetails.h"
#include "LibraryCallbacks.h"
#include "OneRefresh.h"
#include "PatchDetailForm.h"
#include "VelgorContent.h"
#include "VelgorLibrary.h"

#include <QKeySequence>
#include <QStackedLayout>

VelgorPatchDetailView::VelgorPatchDetailView(
    const VelgorLibrary &library, const VelgorContent &content, LibraryCallbacks &callbacks, QWidget *parent)
    : QWidget(parent)
    , m_library(library)
    , m_content(content)
    , m_callbacks(callbacks)
    , m_pages(new QStackedLayout(this))
    , m_empty(new EmptyDetails(this))
    , m_form(new PatchDetailForm(this))
    , m_refresh(new OneRefresh([this] { refresh(); }, this))
{
    m_pages->addWidget(m_empty);
    m_pages->addWidget(m_form);

    connect(m_form, &PatchDetailForm::nameEdited, this,
        [this](const QString &name) { edit([&name](VelgorPatch &patch) { patch.name = name; }); });
    connect(m_form, &PatchDetailForm::commentEdited, this,
        [this](const QString &comment) { edit([&comment](VelgorPatch &patch) { patch.comment = comment; }); });
    connect(m_form, &PatchDetailForm::flagToggled, this,
        [this](PatchFlag flag, bool isSet) { edit([=](VelgorPatch &patch) { patch.*flag = isSet; }); });
    connect(m_form, &PatchDetailForm::defaultPressed, this, [this] {
        if (m_shownId) {
            m_callbacks.setDefaultPatch(*m_shownId);
        }
        m_refresh->ask();
    });
    connect(m_form, &PatchDetailForm::placeActivated, this, &VelgorPatchDetailView::placeActivated);

    for (const auto signal : {&VelgorLibrary::rowsInserted, &VelgorLibrary::rowsRemoved, &VelgorLibrary::rowsChanged}) {
        connect(&library, signal, m_refresh, &OneRefresh::ask);
    }
    connect(&library, &VelgorLibrary::wasReset, m_refresh, &OneRefresh::ask);
    connect(&library, &VelgorLibrary::selectionChanged, m_refresh, &OneRefresh::ask);
    connect(&library, &VelgorLibrary::defaultPatchChanged, m_refresh, &OneRefresh::ask);
    for (const auto signal : {&VelgorContent::rowsInserted, &VelgorContent::rowsRemoved, &VelgorContent::rowMoved,
             &VelgorContent::rowsChanged}) {
        connect(&content, signal, m_refresh, &OneRefresh::ask);
    }
    connect(&content, &VelgorContent::wasReset, m_refresh, &OneRefresh::ask);
    refresh();
}

void VelgorPatchDetailView::setLoading(bool isLoading)
{
    m_isLoading = isLoading;
    m_refresh->ask();
}

QSize VelgorPatchDetailView::sizeHint() const
{
    constexpr int startWidth = 542;
    return {startWidth, m_form->sizeHint().height()};
}

QSize VelgorPatchDetailView::minimumSizeHint() const
{
    return m_form->minimumSizeHint();
}

void VelgorPatchDetailView::focusName()
{
    m_refresh->catchUp();
    if (m_shownId) {
        m_form->focusName();
    }
}

const VelgorPatch *VelgorPatchDetailView::selectedPatch() const
{
    const auto found = m_library.getPatchFromId(m_library.selection());
    return found ? found->patch : nullptr;
}

QString VelgorPatchDetailView::reasonForNoDetails() const
{
    if (selectedPatch() != nullptr) {
        return tr("Nothing in library. Import a preset file (.prst) into the left section of the window, then drag "
                  "patches into the library in the center of the window.");
    }
    if (m_library.count() < 1 && !m_isLoading) {
        return tr("Empty library. Import a preset file (.prst) into the left section of the window, then drag patches "
                  "into the library in the center of the window.");
    }
    return tr("Select item in library to see details");
}

QString VelgorPatchDetailView::nextStep() const
{
    if (m_isLoading || m_content.velgorContentPatchList().isEmpty()) {
        return {};
    }
    const QString key = QKeySequence(Qt::CTRL | Qt::Key_K).toString(QKeySequence::NativeText);
    if (m_library.count() > 0) {
        return tr("Next: select slots on the left and press %1 to keep them, or drag a library patch onto a slot to "
                  "replace it.")
            .arg(key);
    }
    return tr("Next: select slots on the left and press %1 to keep them, or drag them into the library.").arg(key);
}

void VelgorPatchDetailView::refresh()
{
    if (m_shownId && m_shownId != m_library.selection()) {
        m_form->endEdits();
    }
    const VelgorPatch *patch = selectedPatch();
    if (patch == nullptr || patch->empty) {
        m_shownId.reset();
        m_empty->setText(reasonForNoDetails(), nextStep());
        m_pages->setCurrentWidget(m_empty);
        return;
    }
    const bool isOtherPatch = m_shownId != patch->id();
    m_shownId = patch->id();
    m_form->showPatch(*patch, isOtherPatch);
    m_form->showDefault(m_callbacks.isDefaultPatch(*m_shownId));
    QList<int> slotIndexes;
    const QList<BankNumber> places = m_callbacks.inContentPatch(*m_shownId);
    for (const BankNumber &place : places) {
        slotIndexes.append(static_cast<int>(place.slot()));
    }
    m_form->showPlaces(slotIndexes);
    m_pages->setCurrentWidget(m_form);
}

void VelgorPatchDetailView::edit(const std::function<void(VelgorPatch &)> &change)
{
    const auto found = m_library.getPatchFromId(m_shownId);
    if (!found || found->patch->empty) {
        return;
    }
    VelgorPatch patch = *found->patch;
    change(patch);
    if (patch != *found->patch) {
        m_callbacks.edit(patch);
    }
}
