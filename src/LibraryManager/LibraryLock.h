#pragma once

#include <QLockFile>
#include <QString>

/// Keeps a library directory to one program. A lock left by a crash is taken over.
class LibraryLock {
public:
    explicit LibraryLock(const QString &directory);

    /// False when another program holds the directory or the lock cannot be written; error() says which.
    [[nodiscard]] bool tryLock();
    [[nodiscard]] QLockFile::LockError error() const { return m_file.error(); }

private:
    [[nodiscard]] bool isWithoutOwner() const;

    QLockFile m_file;
};
