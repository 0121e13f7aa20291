#pragma once

#include "DirectoryWalk.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

/// Everything below a directory, from one scan, found by the patch ids in the paths. Links are not followed.
/// The owner reports what it moves and adds, so that one scan serves a whole save.
class DirectoryListing {
public:
    using Kind = DirectoryWalk::Kind;

    /// Nothing when the directory cannot be read.
    [[nodiscard]] static std::optional<DirectoryListing> scan(const QString &directory);

    /// Relative paths of everything but directories that hold "." + id + ".".
    [[nodiscard]] QStringList pathsFor(quint64 id) const;
    /// True when there is one path of this id, and it is this regular file directly in the directory.
    [[nodiscard]] bool hasOnly(quint64 id, const QString &name) const;
    /// What stands directly in the directory under this name.
    [[nodiscard]] std::optional<Kind> kindOf(const QString &name) const;
    /// The names directly in the directory.
    [[nodiscard]] QStringList names() const { return m_kinds.keys(); }

    void added(const QString &name);
    void moved(const QString &from, const QString &to);

private:
    /// Nearly every id has one path, which takes no list then.
    struct Paths {
        QString first;
        Kind firstKind = Kind::Other; ///< as it was found
        QStringList others;
    };

    void insert(const QString &path, Kind kind);
    void add(quint64 id, const QString &path, Kind kind);

    QHash<quint64, Paths> m_paths;
    QHash<QString, Kind> m_kinds;
};
