#include "FilePresence.h"

#include "Worker.h"

#include <QDeadlineTimer>
#include <QFileInfo>
#include <QPointer>

#include <utility>

FilePresence::FilePresence(QObject *parent, IsThere isThere)
    : QObject(parent)
    , m_isThere(isThere ? std::move(isThere) : [](const QString &file) { return QFileInfo(file).isFile(); })
{
}

void FilePresence::look(const QStringList &files, std::chrono::milliseconds patience)
{
    for (const QString &file : files) {
        if (!m_awaited.contains(file)) {
            auto *const worker = new Worker(this, std::chrono::milliseconds::zero());
            m_awaited.insert(file, worker);
            worker->start(
                this, [isThere = m_isThere, file](const Worker::Report &) { return isThere(file); },
                [this, file](bool isThere) { take(file, isThere); });
        }
    }
    const QDeadlineTimer deadline(patience);
    for (const QString &file : files) {
        if (const QPointer<Worker> worker = m_awaited.value(file)) {
            worker->finishWithin(std::chrono::milliseconds(deadline.remainingTime()));
        }
    }
}

void FilePresence::take(const QString &file, bool isThere)
{
    m_awaited.take(file)->deleteLater();
    if (isThere) {
        m_missing.remove(file);
    } else {
        m_missing.insert(file);
    }
    Q_EMIT answered();
}
