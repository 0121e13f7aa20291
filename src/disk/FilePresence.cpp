#include "FilePresence.h"

#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

/// Outlives the object as long as a file system does not answer.
struct FilePresence::Answers {
    std::mutex mutex;
    std::condition_variable changed;
    QSet<QString> awaited;
    QSet<QString> missing;
    FilePresence *asking = nullptr; ///< null when nobody is interested any more

    void add(const QString &file, bool isThere)
    {
        const std::scoped_lock lock(mutex);
        awaited.remove(file);
        if (isThere) {
            missing.remove(file);
        } else {
            missing.insert(file);
        }
        changed.notify_all();
        if (asking) {
            QMetaObject::invokeMethod(asking, &FilePresence::answered, Qt::QueuedConnection);
        }
    }
};

FilePresence::FilePresence(QObject *parent, IsThere isThere)
    : QObject(parent)
    , m_isThere(isThere ? std::move(isThere) : [](const QString &file) { return QFileInfo(file).isFile(); })
    , m_answers(std::make_shared<Answers>())
{
    m_answers->asking = this;
}

FilePresence::~FilePresence()
{
    const std::scoped_lock lock(m_answers->mutex);
    m_answers->asking = nullptr;
}

void FilePresence::look(const QStringList &files, std::chrono::milliseconds patience)
{
    std::unique_lock lock(m_answers->mutex);
    for (const QString &file : files) {
        if (m_answers->awaited.contains(file)) {
            continue;
        }
        m_answers->awaited.insert(file);
        try {
            std::thread([answers = m_answers, isThere = m_isThere, file] {
                answers->add(file, isThere(file));
            }).detach();
        } catch (const std::system_error &) {
            m_answers->awaited.remove(file);
        }
    }
    m_answers->changed.wait_for(lock, patience, [&] {
        return std::none_of(
            files.begin(), files.end(), [this](const QString &file) { return m_answers->awaited.contains(file); });
    });
}

bool FilePresence::isMissing(const QString &file) const
{
    const std::scoped_lock lock(m_answers->mutex);
    return m_answers->missing.contains(file);
}
