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

StatusLine::StatusLine(const Desk &desk, IsShown isShown, QWidget *parent)
    : QStatusBar(parent)
    , m_desk(desk)
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
    const VelgorLibrary &library = m_desk.library;
    for (const auto signal : {&VelgorLibrary::rowsInserted, &VelgorLibrary::rowsRemoved, &VelgorLibrary::rowMoved}) {
        connect(&library, signal, this, &StatusLine::clearAll);
    }
    connect(&library, &VelgorLibrary::reordered, this, &StatusLine::clearAll);
    // A sort that finds the order as it is.
    connect(&library, &VelgorLibrary::inverseSortChanged, this, &StatusLine::clearAll);
    connect(&library, &VelgorLibrary::wasReset, this, &StatusLine::clearAll);
    connect(&library, &VelgorLibrary::defaultPatchChanged, this, &StatusLine::clear);
    const VelgorContent &content = m_desk.content;
    for (const auto signal : {&VelgorContent::rowsInserted, &VelgorContent::rowsRemoved, &VelgorContent::rowMoved}) {
        connect(&content, signal, this, &StatusLine::clearAll);
    }
    connect(&content, &VelgorContent::reordered, this, &StatusLine::clearAll);
    connect(&content, &VelgorContent::wasReset, this, &StatusLine::clearAll);
    // Every letter of an edit is a change; what the first one did to the order is to be read all the same.
    connect(&library, &VelgorLibrary::rowsChanged, this, &StatusLine::clear);
    connect(&content, &VelgorContent::rowsChanged, this, &StatusLine::clear);
    // Comes behind the change that made it so.
    connect(&library, &VelgorLibrary::sortedOrderKept, this, [this] {
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
    connect(&m_desk.libraryEditor, &LibraryEditor::kept, this,
        [this, hidden](const QList<quint64> &fresh, const QList<quint64> &known) {
            say(StatusText::ofKept(fresh.size(), known.size()));
            add(hidden(fresh + known));
        });
    connect(&m_desk.libraryEditor, &LibraryEditor::duplicated, this, [this, hidden](const QList<quint64> &copies) {
        const auto first = m_desk.library.getPatchFromId(copies.first());
        say(StatusText::ofDuplicates(first ? first->patch->name : QString(), copies.size()));
        add(hidden(copies));
    });
    connect(&m_desk.libraryEditor, &LibraryEditor::deleted, this,
        [this](const QString &firstName, qsizetype count) { say(StatusText::ofDeletion(firstName, count)); });
    connect(&m_desk.libraryEditor, &LibraryEditor::moved, this, [this](quint64 id) {
        if (const auto found = m_desk.library.getPatchFromId(id)) {
            say(StatusText::ofPatchMove(found->patch->name, found->index, m_desk.library.count()));
        }
    });
    connect(&m_desk.libraryEditor, &LibraryEditor::classified, this,
        [this, hidden](const QList<quint64> &ids, bool VelgorPatch::*flag, bool isSet) {
            const auto first = m_desk.library.getPatchFromId(ids.first());
            say(StatusText::ofClassification(first ? first->patch->name : QString(), ids.size(), flag, isSet));
            add(hidden(ids));
        });
    connect(&m_desk.contentEditor, &ContentEditor::placed, this, [this, hidden] {
        const ContentEditor::Placement &placement = m_desk.contentEditor.lastPlacement();
        QList<quint64> ids;
        for (const VelgorPatch &patch : placement.patches) {
            ids.append(patch.id());
        }
        say(StatusText::ofPlacement(placement));
        add(hidden(ids));
    });
    connect(&m_desk.contentEditor, &ContentEditor::replaced, this,
        [this, hidden](quint64 id, const QList<qsizetype> &rows) {
            const auto found = m_desk.library.getPatchFromId(id);
            say(StatusText::ofReplacement(found ? found->patch->name : QString(), rows));
            add(hidden({id}));
        });
    connect(&m_desk.contentEditor, &ContentEditor::moved, this,
        [this](qsizetype first, qsizetype count) { say(StatusText::ofSlotMove(first, count)); });
    connect(&m_desk.contentFiles, &ContentFiles::imported, this,
        [this](qsizetype count, const QString &path) { say(StatusText::ofImport(count, path)); });
    connect(&m_desk.contentFiles, &ContentFiles::exported, this,
        [this](qsizetype count, const QString &path) { say(StatusText::ofExport(count, path)); });
    connect(&m_desk.contentFiles, &ContentFiles::patchExported, this,
        [this](const QString &name, const QString &path) { say(StatusText::ofPatchExport(name, path)); });
}

void StatusLine::follow(const PatchListView &list)
{
    connect(
        &list, &PatchListView::dropMarkChanged, this, [this, &list] { setDrop(StatusText::ofDrop(list.dropMark())); });
    connect(&list, &PatchListView::returnedInVain, this,
        [this] { say(StatusText::ofMissingForPut(m_desk.library, m_desk.content, m_desk.contentEditor)); });
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
    const QString library = StatusText::ofLibrary(m_desk.library, m_desk.storage);
    QStringList done{m_done, m_order};
    done.removeAll(QString());
    const QString first = m_drop.isEmpty() ? done.join(QStringLiteral(". ")) : m_drop;
    // What a drag does comes first in its sentence.
    m_first->setElideMode(m_drop.isEmpty() ? Qt::ElideMiddle : Qt::ElideRight);
    m_first->setText(first.isEmpty() ? library : first);
    // No tool tip shows what is cut off while a drag goes on.
    m_last->setText(first.isEmpty() || !m_drop.isEmpty() ? QString() : library);
}
