#pragma once

#include "Result.h"

#include <QCoreApplication>
#include <QLockFile>
#include <QString>

#include <optional>

/// Keeps a library directory to one program. A lock left by a crash is taken over.
class LibraryLock {
    Q_DECLARE_TR_FUNCTIONS(LibraryLock)

public:
    explicit LibraryLock(const QString &directory);

    /// Does not wait. The problem is `Taken` where another program holds the directory; else the lock cannot be
    /// written.
    [[nodiscard]] Result<> tryLock();

    /// Another program holds the directory now, as far as can be told. Takes and changes nothing.
    [[nodiscard]] static bool isHeldByOther(const QString &directory);

private:
    struct Holder {
        qint64 process = 0;
        bool isHere = false; ///< on this computer
    };

    [[nodiscard]] std::optional<Holder> holder() const;
    /// By something that is no file and that must not be opened.
    [[nodiscard]] bool isPlaceTaken() const;
    void removeLeftovers();

    QString m_directory;
    QLockFile m_file;
};
