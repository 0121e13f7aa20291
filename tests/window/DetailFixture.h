#pragma once

#include "DeskFixture.h"
#include "LookTokens.h"
#include "RecordingCallbacks.h"
#include "ShownWidgets.h"
#include "VelgorPatchDetailView.h"

#include <QLineEdit>
#include <QPlainTextEdit>

/// The detail column of a library with two patches, "Lead" and "Solo", of which the first is selected.
struct DetailFixture : DeskFixture {
    explicit DetailFixture(const QList<VelgorPatch> &patches = twoPatches())
        : DeskFixture(patches)
    {
        applyLook(false);
        library.setSelection(patches.isEmpty() ? std::nullopt : std::optional(patches.first().id()));
        view.resize(542, 742);
        view.show();
        settle();
    }

    static QList<VelgorPatch> twoPatches()
    {
        return {TestPatches::imported(QStringLiteral("Lead"), 1), TestPatches::imported(QStringLiteral("Solo"), 2)};
    }

    [[nodiscard]] const VelgorPatch &patch(qsizetype row = 0) const { return library.patches().at(row); }
    void changeElsewhere(const QString &name, const QString &comment)
    {
        edit(idOf(0), [&](VelgorPatch &changed) {
            changed.name = name;
            changed.comment = comment;
        });
    }

    [[nodiscard]] QLineEdit *name() const { return ShownWidgets::named<QLineEdit>(view, QStringLiteral("Name")); }
    [[nodiscard]] QPlainTextEdit *comment() const
    {
        return ShownWidgets::named<QPlainTextEdit>(view, QStringLiteral("Comment"));
    }

    RecordingCallbacks callbacks{library, content};
    VelgorPatchDetailView view{library, content, callbacks};
};
