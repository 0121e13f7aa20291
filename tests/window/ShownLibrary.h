#pragma once

#include "DeskFixture.h"
#include "LibraryListModel.h"
#include "PatchPayload.h"
#include "PatchRoles.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

#include <functional>
#include <memory>

/// A library and the rows that a model shows of it.
namespace ShownLibrary {

inline VelgorPatch patch(const QString &name, bool isSolo = false)
{
    VelgorPatch patch = TestPatches::imported(name, name.at(0).unicode());
    patch.solo = isSolo;
    return patch;
}

/// A model under a tester, and the patch ids that persistent indexes are to follow.
struct Shown : DeskFixture {
    LibraryListModel model{library, libraryEditor};
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
    QSignalSpy resets{&model, &QAbstractItemModel::modelReset};
    QSignalSpy layouts{&model, &QAbstractItemModel::layoutChanged};
    QSignalSpy inserted{&model, &QAbstractItemModel::rowsInserted};
    QSignalSpy removed{&model, &QAbstractItemModel::rowsRemoved};
    QSignalSpy moved{&model, &QAbstractItemModel::rowsMoved};
    QSignalSpy changed{&model, &QAbstractItemModel::dataChanged};

    explicit Shown(const QString &names = {})
    {
        QList<VelgorPatch> patches;
        for (const QString &name : wordsOf(names)) {
            patches.append(ShownLibrary::patch(name));
        }
        library.appendNew(patches);
        forget();
    }
    void forget()
    {
        for (QSignalSpy *spy : {&resets, &layouts, &inserted, &removed, &moved, &changed}) {
            spy->clear();
        }
    }
    [[nodiscard]] QString rows() const
    {
        QStringList names;
        for (int row = 0; row < model.rowCount(); ++row) {
            names.append(model.index(row).data(PatchRoles::Name).toString());
        }
        return names.join(u' ');
    }
    /// Signals since forget(), as "reset layout insert remove move change".
    [[nodiscard]] QString signalCounts() const
    {
        QStringList counts;
        for (const QSignalSpy *spy : {&resets, &layouts, &inserted, &removed, &moved, &changed}) {
            counts.append(QString::number(spy->count()));
        }
        return counts.join(u' ');
    }
    [[nodiscard]] QVariant data(int row, int role) const { return model.index(row).data(role); }
};

inline LibraryViewFilter named(const QString &name)
{
    LibraryViewFilter filter;
    filter.filterPatch.name = name;
    return filter;
}

inline void edit(Shown &shown, qsizetype row, const std::function<void(VelgorPatch &)> &change)
{
    shown.edit(shown.idOf(row), change);
}

} // namespace ShownLibrary
