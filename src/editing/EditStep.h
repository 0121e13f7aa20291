#pragma once

#include "ContentMarks.h"
#include "LibraryMarks.h"

#include <QList>
#include <QString>
#include <QUndoCommand>

class VelgorLibrary;

/// What one deed of the user did to library and list. A value.
struct EditDeed {
    LibraryChange sorting; ///< how the library was shown in another order since the deed before
    LibraryChange library;
    ContentChange content;

    /// Nothing that is stored or exported differs, though the library may be shown in another order.
    [[nodiscard]] bool isEmpty() const;
    /// The library is to be stored anew.
    [[nodiscard]] static bool concernsStorage(const LibraryChange &change);
    /// The patches that it took from the library, which has not got them now.
    [[nodiscard]] static QList<quint64> removedIds(const LibraryChange &change, const VelgorLibrary &library);
};

/// What deeds are done to.
class EditTarget {
public:
    EditTarget() = default;
    virtual ~EditTarget() = default;
    Q_DISABLE_COPY_MOVE(EditTarget)

    virtual void takeBack(const EditDeed &deed) = 0;
    virtual void doAgain(const EditDeed &deed) = 0;
};

/// One step of the history.
class EditStep : public QUndoCommand {
public:
    /// `deed` was done already. `target` must outlive the step.
    EditStep(const QString &name, const EditDeed &deed, const QString &field, EditTarget &target);

    void undo() override { m_target.takeBack(m_deed); }
    void redo() override;
    [[nodiscard]] int id() const override { return 1; }
    [[nodiscard]] bool mergeWith(const QUndoCommand *other) override;

private:
    EditDeed m_deed;
    QString m_field;
    EditTarget &m_target;
    bool m_isDone = true; ///< the stack does each step once when it gets it
};
