#include "EditHistory.h"

#include "LibraryStorage.h"
#include "VelgorContent.h"
#include "VelgorLibrary.h"

EditHistory::EditHistory(VelgorLibrary &library, VelgorContent &content, LibraryStorage &storage, QObject *parent)
    : QObject(parent)
    , m_library(library)
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
        m_steps.push(new EditStep(name, done, field, *this));
    } else if (!done.library.deltas.isEmpty()) {
        m_sorting = m_sorting.followedBy(done.library);
    }
}

void EditHistory::takeBack(const EditDeed &deed)
{
    m_library.apply(m_sorting.inverse());
    m_library.apply(deed.library.inverse());
    m_content.apply(deed.content.inverse());
    m_sorting = deed.sorting;
    requestSaveOf(deed.library.inverse());
}

void EditHistory::doAgain(const EditDeed &deed)
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
