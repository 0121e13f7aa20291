#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>

#include <optional>

/// What a save is about to do to patch files once the library file is written. A program that finds it in a library
/// directory knows how to finish the save of one that was killed: what a patch of the library file lacks is put in
/// place, and what the library file no longer holds is removed.
struct LibraryJournal {
    QHash<quint64, QString> staged; ///< patch id to the temporary file that holds the patch, without a directory
    QList<quint64> removed; ///< ids of patches whose files go

    bool operator==(const LibraryJournal &) const = default;
    [[nodiscard]] bool isEmpty() const { return staged.isEmpty() && removed.isEmpty(); }

    [[nodiscard]] QByteArray encode() const;
    /// Nothing when the text is not a whole journal, or names anything but temporary files.
    [[nodiscard]] static std::optional<LibraryJournal> decode(const QByteArray &text);
};
