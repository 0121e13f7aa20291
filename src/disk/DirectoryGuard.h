#pragma once

#include <QString>

/// Lets one program at a time do something short in a directory. It holds no file, so that a program that dies leaves
/// nothing. Where the system or the file system has no such thing, it guards nothing.
class DirectoryGuard {
public:
    /// Waits for another holder, two seconds at the most.
    explicit DirectoryGuard(const QString &directory);
    ~DirectoryGuard();
    Q_DISABLE_COPY_MOVE(DirectoryGuard)

    [[nodiscard]] bool isHeld() const { return m_isHeld; }

private:
    int m_handle = -1;
    bool m_isHeld = false;
};
