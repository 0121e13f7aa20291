#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QStringList>

#include <cstring>

#include <sys/inotify.h>
#include <unistd.h>

/// Sees how often a directory is listed, and which of its files are opened.
class DirectoryWatch {
public:
    explicit DirectoryWatch(const QString &directory)
        : m_handle(inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    {
        m_isWatching = inotify_add_watch(m_handle, QFile::encodeName(directory).constData(),
                           IN_OPEN | IN_ACCESS | IN_CLOSE_WRITE | IN_CLOSE_NOWRITE)
            >= 0;
    }
    ~DirectoryWatch() { close(m_handle); }
    Q_DISABLE_COPY_MOVE(DirectoryWatch)

    [[nodiscard]] bool isWatching() const { return m_isWatching; }

    /// Looks at what happened since the last call.
    void look()
    {
        scans = 0;
        opened.clear();
        bool wasListed = false;
        QByteArray buffer(1 << 16, '\0');
        for (ssize_t size = read(m_handle, buffer.data(), 1 << 16); size > 0;
             size = read(m_handle, buffer.data(), 1 << 16)) {
            qsizetype at = 0;
            while (at < size) {
                inotify_event event{};
                std::memcpy(&event, buffer.constData() + at, sizeof event);
                const QString name =
                    event.len > 0 ? QFile::decodeName(buffer.constData() + at + qsizetype(sizeof event)) : QString();
                at += qsizetype(sizeof event) + qsizetype(event.len);
                if (!name.isEmpty()) {
                    if ((event.mask & IN_OPEN) != 0) {
                        opened.append(name);
                    }
                } else if ((event.mask & IN_ACCESS) != 0) {
                    wasListed = true;
                } else if ((event.mask & IN_CLOSE_NOWRITE) != 0) {
                    scans += wasListed ? 1 : 0;
                    wasListed = false;
                }
            }
        }
    }

    int scans = 0; ///< times that the directory was read, an opening without reading not counted
    QStringList opened; ///< names in the directory that were opened, once for each time

private:
    int m_handle;
    bool m_isWatching = false;
};
