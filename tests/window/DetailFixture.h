#pragma once

#include "LookTokens.h"
#include "RecordingCallbacks.h"
#include "ShownWidgets.h"
#include "TestPatches.h"
#include "VelgorPatchDetailView.h"

#include <QCoreApplication>
#include <QLineEdit>
#include <QPlainTextEdit>

/// The detail column of a library with two patches, "Lead" and "Solo", of which the first is selected.
struct DetailFixture {
    explicit DetailFixture(const QList<VelgorPatch> &patches = twoPatches())
        : library(patches, std::nullopt)
        , callbacks(library, content)
        , view(library, content, callbacks)
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

    /// Lets what was put off happen, layouts included: a layout may ask for another one.
    static void settle()
    {
        constexpr int rounds = 5;
        for (int i = 0; i < rounds; ++i) {
            QCoreApplication::sendPostedEvents();
            QCoreApplication::processEvents();
        }
    }

    [[nodiscard]] const VelgorPatch &patch(qsizetype row = 0) const { return library.patches().at(row); }
    void select(qsizetype row) { library.setSelection(patch(row).id()); }
    void changeElsewhere(const QString &name, const QString &comment)
    {
        VelgorPatch changed = patch();
        changed.name = name;
        changed.comment = comment;
        library.update(changed);
    }

    [[nodiscard]] QLineEdit *name() const { return ShownWidgets::named<QLineEdit>(view, QStringLiteral("Name")); }
    [[nodiscard]] QPlainTextEdit *comment() const
    {
        return ShownWidgets::named<QPlainTextEdit>(view, QStringLiteral("Comment"));
    }

    VelgorLibrary library;
    VelgorContent content;
    RecordingCallbacks callbacks;
    VelgorPatchDetailView view;
};
