#include "StatusLine.h"

#include "ContentEditor.h"
#include "ContentFiles.h"
#include "ElidedLabel.h"
#include "LibraryEditor.h"
#include "LookMeasures.h"
#include "OneRefresh.h"
#include "PatchListView.h"
#include "RelativeFont.h"
#include "StatusText.h"
#include "VelgorContent.h"
#include "VelgorLibrary.h"

#include <algorithm>
#include <utility>

using namespace LookMeasures;

StatusLine::StatusLine(const VelgorLibrary &library, const VelgorContent &content, const LibraryStorageManager &storage,
    const Editors &editors, IsShown isShown, QWidget *parent)
    : QStatusBar(parent)
    , m_library(library)
    , m_content(content)
    , m_storage(storage)
    , m_editors(editors)
    , m_isShown(std::move(isShown))
    , m_first(new ElidedLabel(this))
    , m_last(new ElidedLabel(this))
    , m_refresh(new OneRefresh([this] { showTexts(); }, this))
{
    setSizeGripEnabled(false);
    for (ElidedLabel *const label : {m_first, m_last}) {
        RelativeFont::set(*label, footnoteFont);
        label->setForegroundRole(QPalette::PlaceholderText);
        // Folders and files are told apart by their ends.
        label->setElideMode(Qt::ElideMiddle);
        // The status bar has a margin of its own.
        label->setContentsMargins(columnPadding - tinyGap, 0, columnPadding, 0);
    }
    addWidget(m_first, 1);
    addPermanentWidget(m_last);
    followChanges();
    followEditors();
    showTexts();
}

void StatusLine::followChanges()
{
    for (const auto signal : {&VelgorLibrary::rowsInserted, &VelgorLibrary::rowsRemoved, &VelgorLibrary::rowMoved}) {
        connect(&m_library, signal, this, &StatusLine::clearAll);
    }
    connect(&m_library, &VelgorLibrary::reordered, this, &StatusLine::clearAll);
    // A sort that finds the order as it is.
    connect(&m_library, &VelgorLibrary::inverseSortChanged, this, &StatusLine::clearAll);
    connect(&m_library, &VelgorLibrary::wasReset, this, &StatusLine::clearAll);
    connect(&m_library, &VelgorLibrary::defaultPatchChanged, this, &StatusLine::clear);
    for (const auto signal : {&VelgorContent::rowsInserted, &VelgorContent::rowsRemoved, &VelgorContent::rowMoved}) {
        connect(&m_content, signal, this, &StatusLine::clearAll);
    }
    connect(&m_content, &VelgorContent::reordered, this, &StatusLine::clearAll);
    connect(&m_content, &VelgorContent::wasReset, this, &StatusLine::clearAll);
    // Every letter of an edit is a change; what the first one did to the order is to be read all the same.
    connect(&m_library, &VelgorLibrary::rowsChanged, this, &StatusLine::clear);
    connect(&m_content, &VelgorContent::rowsChanged, this, &StatusLine::clear);
    // Comes behind the change that made it so.
    connect(&m_library, &VelgorLibrary::sortedOrderKept, this, [this] {
        m_order = StatusText::ofSortedOrder();
        refresh();
    });
}

void StatusLine::followEditors()
{
    const auto hidden = [this](const QList<quint64> &ids) {
        const auto isHidden = [this](quint64 id) { return !m_isShown(id); };
        return StatusText::ofHidden(std::count_if(ids.begin(), ids.end(), isHidden), ids.size());
    };
    connect(&m_editors.library, &LibraryEditor::kept, this,
        [this, hidden](const QList<quint64> &fresh, const QList<quint64> &known) {
            say(StatusText::ofKept(fresh.size(), known.size()));
            add(hidden(fresh + known));
        });
    connect(&m_editors.library, &LibraryEditor::duplicated, this, [this, hidden](const QList<quint64> &copies) {
        say(StatusText::ofDuplicates(nameOf(copies.first()), copies.size()));
        add(hidden(copies));
    });
    connect(&m_editors.library, &LibraryEditor::deleted, this,
        [this](const QString &firstName, qsizetype count) { say(StatusText::ofDeletion(firstName, count)); });
    connect(&m_editors.library, &LibraryEditor::moved, this, [this](quint64 id) {
        if (const auto found = m_library.getPatchFromId(id)) {
            say(StatusText::ofPatchMove(found->patch->name, found->index, m_library.count()));
        }
    });
    connect(&m_editors.library, &LibraryEditor::classified, this,
        [this, hidden](const QList<quint64> &ids, bool VelgorPatch::*flag, bool isSet) {
            say(StatusText::ofClassification(nameOf(ids.first()), ids.size(), flag, isSet));
            add(hidden(ids));
        });
    connect(&m_editors.content, &ContentEditor::placed, this, [this, hidden] {
        const ContentEditor::Placement &placement = m_editors.content.lastPlacement();
        QList<quint64> ids;
        for (const VelgorPatch &patch : placement.patches) {
            ids.append(patch.id());
        }
        say(StatusText::ofPlacement(placement));
        add(hidden(ids));
    });
    connect(
        &m_editors.content, &ContentEditor::replaced, this, [this, hidden](quint64 id, const QList<qsizetype> &rows) {
            say(StatusText::ofReplacement(nameOf(id), rows));
            add(hidden({id}));
        });
    connect(&m_editors.content, &ContentEditor::moved, this,
        [this](qsizetype first, qsizetype count) { say(StatusText::ofSlotMove(first, count)); });
    connect(&m_editors.files, &ContentFiles::imported, this,
        [this](qsizetype count, const QString &path) { say(StatusText::ofImport(count, path)); });
    connect(&m_editors.files, &ContentFiles::exported, this,
        [this](qsizetype count, const QString &path) { say(StatusText::ofExport(count, path)); });
    connect(&m_editors.files, &ContentFiles::patchExported, this,
        [this](const QString &name, const QString &path) { say(StatusText::ofPatchExport(name, path)); });
}

QString StatusLine::nameOf(quint64 id) const
{
    const auto found = m_library.getPatchFromId(id);
    return found ? found->patch->name : QString();
}

void StatusLine::follow(const PatchListView &list)
{
    connect(
        &list, &PatchListView::dropMarkChanged, this, [this, &list] { setDrop(StatusText::ofDrop(list.dropMark())); });
    connect(&list, &PatchListView::returnedInVain, this,
        [this] { say(StatusText::ofMissingForPut(m_library, m_content, m_editors.content)); });
}

void StatusLine::setDrop(const QString &text)
{
    m_drop = text;
    refresh();
}

void StatusLine::say(const QString &text)
{
    m_done = text;
    refresh();
}

void StatusLine::add(const QString &text)
{
    if (!text.isEmpty()) {
        say(m_done.isEmpty() ? text : m_done + QStringLiteral(". ") + text);
    }
}

void StatusLine::clear()
{
    if (!m_done.isEmpty()) {
        say({});
    }
}

void StatusLine::clearAll()
{
    m_order.clear();
    say({});
}

void StatusLine::refresh()
{
    m_refresh->ask();
}

void StatusLine::showTexts()
{
    const QString library = StatusText::ofLibrary(m_library, m_storage);
    QStringList done{m_done, m_order};
    done.removeAll(QString());
    const QString first = m_drop.isEmpty() ? done.join(QStringLiteral(". ")) : m_drop;
    // What a drag does comes first in its sentence.
    m_first->setElideMode(m_drop.isEmpty() ? Qt::ElideMiddle : Qt::ElideRight);
    m_first->setText(first.isEmpty() ? library : first);
    // No tool tip shows what is cut off while a drag goes on.
    m_last->setText(first.isEmpty() || !m_drop.isEmpty() ? QString() : library);
}
