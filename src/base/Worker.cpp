#include "Worker.h"

#include <QDeadlineTimer>
#include <QPointer>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <system_error>

namespace {

std::atomic<bool> anyLeftBehind = false;

} // namespace

struct Worker::Job {
    std::function<void(const Report &)> work;
    std::function<void()> then;
    Progress progress;
    bool isAwaited = false;
    QPointer<QObject> asking;
    QMetaObject::Connection askingGone;
    qsizetype told = 0;
    bool hasEnded = false; ///< guarded by the queue
    std::atomic<bool> isUnwanted = false;
    std::atomic<qsizetype> done = 0;
    std::atomic<qsizetype> total = 0;

    void run()
    {
        work([this](qsizetype nowDone, qsizetype ofTotal) {
            total = ofTotal;
            done = nowDone;
            return !isUnwanted;
        });
        // What it worked on may take its time to go.
        work = nullptr;
    }
};

/// Outlives the worker as long as a job does not end.
struct Worker::Queue {
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::shared_ptr<Job>> due;
    bool isServed = false; ///< a thread does the jobs
    Worker *worker = nullptr; ///< null when nobody is interested any more

    void serve() noexcept
    {
        std::unique_lock lock(mutex);
        while (!due.empty()) {
            std::shared_ptr<Job> job = due.front();
            due.pop_front();
            lock.unlock();
            job->run();
            lock.lock();
            // From here on it is the worker's alone, whose thread it goes on.
            std::exchange(job, nullptr)->hasEnded = true;
            if (worker) {
                QMetaObject::invokeMethod(worker, &Worker::tell, Qt::QueuedConnection);
            }
            changed.notify_all();
        }
        isServed = false;
        changed.notify_all();
    }

    [[nodiscard]] bool hasEnded(const Job &job)
    {
        const std::scoped_lock lock(mutex);
        return job.hasEnded;
    }
};

Worker::Worker(QObject *parent, std::chrono::milliseconds patience)
    : QObject(parent)
    , m_patience(patience)
    , m_queue(std::make_shared<Queue>())
{
    m_queue->worker = this;
    m_progressTimer.setInterval(std::chrono::milliseconds(34));
    m_progressTimer.setTimerType(Qt::PreciseTimer);
    connect(&m_progressTimer, &QTimer::timeout, this, &Worker::tellProgress);
}

Worker::~Worker()
{
    bool isAnyAwaited = false;
    for (const std::shared_ptr<Job> &job : m_jobs) {
        job->isUnwanted = true;
        // Who asked may be the worker itself, which is gone only after its jobs.
        disconnect(job->askingGone);
        isAnyAwaited = isAnyAwaited || job->isAwaited;
    }
    bool isLeftBehind = false;
    {
        std::unique_lock lock(m_queue->mutex);
        m_queue->worker = nullptr;
        const auto isDone = [this] { return !m_queue->isServed; };
        isLeftBehind = !isAnyAwaited && !m_queue->changed.wait_for(lock, m_patience, isDone);
    }
    if (isLeftBehind) {
        anyLeftBehind = true;
        m_thread.detach();
    } else if (m_thread.joinable()) {
        m_thread.join();
    }
}

bool Worker::isAnyLeftBehind()
{
    return anyLeftBehind;
}

void Worker::add(QObject *asking, std::function<void(const Report &)> work, std::function<void()> then,
    Progress progress, bool isAwaited)
{
    const auto job = std::make_shared<Job>();
    job->work = std::move(work);
    job->then = std::move(then);
    job->progress = std::move(progress);
    job->isAwaited = isAwaited;
    job->asking = asking;
    job->askingGone = connect(asking, &QObject::destroyed, this, [job = job.get()] { job->isUnwanted = true; });
    m_jobs.push_back(job);
    if (job->progress) {
        m_progressTimer.start();
    }
    {
        const std::scoped_lock lock(m_queue->mutex);
        m_queue->due.push_back(job);
        if (std::exchange(m_queue->isServed, true)) {
            return;
        }
    }
    if (m_thread.joinable()) {
        m_thread.join();
    }
    try {
        m_thread = std::thread([queue = m_queue] { queue->serve(); });
    } catch (const std::system_error &) {
        m_queue->serve();
    }
}

bool Worker::waitFor(std::optional<std::chrono::milliseconds> time)
{
    const QDeadlineTimer deadline = time ? QDeadlineTimer(*time) : QDeadlineTimer(QDeadlineTimer::Forever);
    const QPointer<Worker> self(this);
    while (self && isBusy()) {
        {
            std::unique_lock lock(m_queue->mutex);
            const auto hasEnded = [job = m_jobs.front()] { return job->hasEnded; };
            if (!time) {
                m_queue->changed.wait(lock, hasEnded);
            } else if (!m_queue->changed.wait_for(lock, deadline.remainingTimeAsDuration(), hasEnded)) {
                return false;
            }
        }
        tell();
    }
    return true;
}

void Worker::tell()
{
    const QPointer<Worker> self(this);
    while (self && isBusy() && m_queue->hasEnded(*m_jobs.front())) {
        const std::shared_ptr<Job> job = m_jobs.front();
        m_jobs.pop_front();
        disconnect(job->askingGone);
        if (m_jobs.empty()) {
            m_progressTimer.stop();
        }
        if (job->asking) {
            job->then();
        }
    }
}

void Worker::tellProgress()
{
    const std::shared_ptr<Job> job = m_jobs.front();
    const qsizetype done = job->done;
    if (job->progress && job->asking && done != job->told) {
        job->told = done;
        job->progress(done, job->total);
    }
}
