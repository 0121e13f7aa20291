#pragma once

#include "VelgorLibrary.h"

#include <QStringList>

#include <utility>

/// Writes down every signal of a library, in order.
class LibraryAnnouncements {
public:
    explicit LibraryAnnouncements(VelgorLibrary &library)
    {
        const auto rows = [&](const char *name, auto signal) {
            QObject::connect(&library, signal, &m_context, [this, name](qsizetype a, qsizetype b) {
                m_all.append(QStringLiteral("%1 %2 %3").arg(QLatin1String(name)).arg(a).arg(b));
            });
        };
        const auto plain = [&](const char *name, auto signal) {
            QObject::connect(&library, signal, &m_context, [this, name] { m_all.append(QLatin1String(name)); });
        };
        rows("+insert", &VelgorLibrary::rowsAboutToBeInserted);
        rows("insert", &VelgorLibrary::rowsInserted);
        rows("+remove", &VelgorLibrary::rowsAboutToBeRemoved);
        rows("remove", &VelgorLibrary::rowsRemoved);
        rows("+move", &VelgorLibrary::rowAboutToBeMoved);
        rows("move", &VelgorLibrary::rowMoved);
        rows("change", &VelgorLibrary::rowsChanged);
        plain("+reorder", &VelgorLibrary::aboutToBeReordered);
        plain("reorder", &VelgorLibrary::reordered);
        plain("+reset", &VelgorLibrary::aboutToBeReset);
        plain("reset", &VelgorLibrary::wasReset);
        plain("selection", &VelgorLibrary::selectionChanged);
        plain("mode", &VelgorLibrary::isMultiSelChanged);
        plain("ticks", &VelgorLibrary::multiSelectionsChanged);
        plain("confirm", &VelgorLibrary::deleteConfirmChanged);
        plain("step", &VelgorLibrary::inverseSortChanged);
        plain("default", &VelgorLibrary::defaultPatchChanged);
    }

    /// What was announced since the last call, joined by "; ": "+insert 0 1" before, "insert 0 1" after.
    QString take() { return std::exchange(m_all, {}).join(QStringLiteral("; ")); }

private:
    QObject m_context;
    QStringList m_all;
};
