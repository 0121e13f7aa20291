#include "EditHistory.h"

#include "LibraryStorage.h"
#include "VelgorContent.h"
#include "VelgorLibrary.h"

#include <QUndoCommand>

#include <utility>

class EditHistory::Step : public QUndoCommand {
public:
    /// `deed` was done already.
    Step(const QString &name, const EditDeed &deed, const QString &field, EditHistory &history)
        : QUndoCommand(name)
        , m_deed(deed)
        , m_field(field)
        , m_history(history)
    {
    }

    void undo() override { m_history.undo(m_deed); }
    void redo() override
    {
        if (!std::exchange(m_isDone, false)) {
            m_history.redo(m_deed);
        }
    }
    [[nodiscard]] int id() const override { return 1; }
    [[nodiscard]] bool mergeWith(const QUndoCommand *other) override
    {
        const auto *next = dynamic_cast<const Step *>(other);
        if (!next || m_field.isEmpty() || m_field != next->m_field || !next->m_deed.sorting.deltas.isEmpty()) {
            return false;
        }
        m_deed.library = m_deed.library.followedBy(next->m_deed.library);
        m_deed.content = m_deed.content.followedBy(next->m_deed.content);
        return true;
    }

private:
    EditDeed m_deed;
    QString m_field;
    EditHistory &m_history;
    bool m_isDone = true; ///< the stack does each step once when it gets it
};

EditHistory::EditHistory(VelgorLibrary &library, VelgorContent &content, LibraryStorage &storage)
    : m_library(library)
    , m_content(content)
    , m_storage(storage)
{
    m_steps.setUndoLimit(mostSteps);
}

void EditHistory::perform(const QString &name, const std::function<void()> &deed, const QString &field)
{
    if (m_isPerforming) {
        deed();
        return;
    }
    m_isPerforming = true;
    m_library.startChange();
    m_content.startChange();
    deed();
    const EditDeed done{m_sorting, m_library.endChange(), m_content.endChange()};
    m_isPerforming = false;
    if (!done.isEmpty()) {
        m_sorting = {};
        requestSaveOf(done.library);
        m_steps.push(new Step(name, done, field, *this));
    } else if (!done.library.deltas.isEmpty()) {
        m_sorting = m_sorting.followedBy(done.library);
    }
}

void EditHistory::undo(const EditDeed &deed)
{
    m_library.apply(m_sorting.inverse());
    m_library.apply(deed.library.inverse());
    m_content.apply(deed.content.inverse());
    m_sorting = deed.sorting;
    requestSaveOf(deed.library.inverse());
}

void EditHistory::redo(const EditDeed &deed)
{
    m_library.apply(m_sorting.inverse());
    m_library.apply(deed.sorting);
    m_library.apply(deed.library);
    m_content.apply(deed.content);
    m_sorting = {};
    requestSaveOf(deed.library);
}

void EditHistory::requestSaveOf(const LibraryChange &change)
{
    const QList<quint64> removed = EditDeed::removedIds(change, m_library);
    if (!removed.isEmpty()) {
        m_storage.remove(removed);
        m_storage.startSave(m_library);
    } else if (EditDeed::concernsStorage(change)) {
        requestSave();
    }
}

void EditHistory::requestSave()
{
    m_storage.delayedSave(m_library);
}

void EditHistory::forget()
{
    m_steps.clear();
    m_sorting = {};
}
