#pragma once

#include "ContentEditor.h"
#include "ContentFiles.h"
#include "Desk.h"
#include "DiagnosticRecorder.h"
#include "EditHistory.h"
#include "FakeFiles.h"
#include "LibraryCheck.h"
#include "LibraryDirectory.h"
#include "LibraryEditor.h"
#include "LibraryManagerPreferences.h"
#include "LibraryStorageManager.h"
#include "PatchFileHandler.h"
#include "TestPatches.h"
#include "VelgorContent.h"

#include <QSettings>

#include <memory>

/// Everything that a window works on, in a directory of its own. No save happens but those asked for at once.
struct TestDesk {
    DiagnosticRecorder recorder;
    LibraryDirectory directory;
    LibraryManagerPreferences preferences{
        std::make_unique<QSettings>(directory.parentPath() + QStringLiteral("/settings"), QSettings::IniFormat)};
    LibraryStorageManager storage{directory.path(), std::chrono::hours(1)};
    VelgorLibrary library;
    VelgorContent content;
    FakeFileAccess files;
    FakeFileDialogs dialogs;
    PatchFileHandler handler{files, &dialogs};
    EditHistory history{library, content, storage};
    LibraryEditor libraryEditor{library, content, history};
    ContentEditor contentEditor{library, content, history};
    ContentFiles contentFiles{content, handler, history};
    Desk desk{library, content, storage, preferences, {libraryEditor, contentEditor, contentFiles},
        [this] { return std::make_unique<LibraryCheck>(library, storage, history); }};

    /// A library of these patches, one sound each.
    explicit TestDesk(const QString &names = {}, const QString &directoryName = QStringLiteral("library"))
        : directory(directoryName)
    {
        for (const QString &name : names.split(u' ', Qt::SkipEmptyParts)) {
            library.append(patch(name), false, false);
        }
    }

    static VelgorPatch patch(const QString &name) { return TestPatches::imported(name, name.at(0).unicode()); }
    [[nodiscard]] quint64 idOf(qsizetype row) const { return library.patches().at(row).id(); }
    [[nodiscard]] QString shown() const { return TestPatches::names(library.patches()).join(u' '); }
    void select(qsizetype row) { library.setSelection(idOf(row)); }
    void tick(const QList<qsizetype> &rows)
    {
        MultiSelections ticks;
        for (const qsizetype row : rows) {
            ticks.multiSelections.insert(idOf(row), true);
        }
        library.setIsMultiSel(true);
        library.setMultiSelections(ticks);
    }
    /// A list of these patches, with the first one selected.
    void fillContent(const QString &names)
    {
        QList<SPatch> records;
        for (const QString &name : names.split(u' ')) {
            records.append(patch(name).records->patchData);
        }
        content.populate(TestRecords::file(records));
        content.setSelections({content.velgorContentPatchList().first().id});
    }
};
