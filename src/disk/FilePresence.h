#pragma once

#include <QHash>
#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>

class Worker;

/// Finds out which files are there without waiting for a file system that does not answer, as one whose network is
/// gone: each file is looked for by a worker of its own, which nobody waits for at the end of the program either.
/// User-interface thread only.
class FilePresence : public QObject {
    Q_OBJECT

public:
    /// Called on other threads, at once for several files.
    using IsThere = std::function<bool(const QString &file)>;

    /// Looks for regular files, links followed, unless told otherwise.
    explicit FilePresence(QObject *parent = nullptr, IsThere isThere = {});

    /// Looks for these files anew, and waits for the answers, but no longer than that. Those that come later are
    /// announced too. A file for which an earlier call still waits is not looked for a second time.
    void look(const QStringList &files, std::chrono::milliseconds patience);
    /// The last answer for the file was that it is not there. False while there is none.
    [[nodiscard]] bool isMissing(const QString &file) const { return m_missing.contains(file); }

Q_SIGNALS:
    /// Answers have come, perhaps others than before.
    void answered();

private:
    void take(const QString &file, bool isThere);

    IsThere m_isThere;
    QHash<QString, Worker *> m_awaited;
    QSet<QString> m_missing;
};
