#pragma once

#include <QByteArray>
#include <QString>

/// A directory that is held open, so that the system need not look for it anew with each of its files. Where that
/// cannot be, it is looked for each time.
class OpenDirectory {
public:
    /// None: the names are whole paths.
    OpenDirectory() = default;
    /// `path` has no slash at its end.
    explicit OpenDirectory(const QString &path);
    ~OpenDirectory();
    Q_DISABLE_COPY_MOVE(OpenDirectory)

    [[nodiscard]] QString pathOf(const QString &name) const { return m_path.isEmpty() ? name : m_path + u'/' + name; }

    /// False when another directory, or none, stands under the path by now.
    [[nodiscard]] bool isInPlace() const;

#ifndef Q_OS_WIN
    /// For the system calls that take a directory, and the name that belongs to it.
    [[nodiscard]] int descriptor() const;
    [[nodiscard]] QByteArray encoded(const QString &name) const;
#endif

private:
    QString m_path;
    int m_descriptor = -1;
};
