#pragma once

#include "Desk.h"
#include "DeskFixture.h"
#include "LibraryCheck.h"

/// The desk of a window. No save happens but those asked for at once.
struct TestDesk : DeskFixture {
    explicit TestDesk(const QString &names = {}, const QString &directoryName = QStringLiteral("library"))
        : DeskFixture(names, {}, Saves::Made, LibraryDirectory(directoryName))
    {
    }

    Desk desk{library, content, storage, preferences, {libraryEditor, contentEditor, contentFiles},
        [this] { return std::make_unique<LibraryCheck>(library, storage, history); }};
};
