#pragma once

#include <QString>

/// A line in a list of the library check: the title of a group, or something in it.
struct LibraryCheckRow {
    QString text;
    QString details = {}; ///< what is said about it; empty for a title
    QString keptLibrary = {}; ///< the former library file that it stands for, if it does

    [[nodiscard]] bool isTitle() const { return details.isEmpty(); }
    bool operator==(const LibraryCheckRow &) const = default;
};
