#pragma once

#include <QObject>
#include <QTimer>

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <thread>
#include <type_traits>
#include <utility>

/// Does jobs beside the thread that it belongs to, one at a time and in the order in which they were given. What they
/// came to is told on its own thread, in the same order: by the event loop, or by finish(). A job works on values, as
/// it may outlive the worker. An exception of a job ends the program. Where no thread is to be had, a job is done at
/// once, and what it came to is told later all the same.
class Worker : public QObject {
    Q_OBJECT

public:
    /// For a job to call, as often as it likes. False once nobody waits for what the job comes to: it is to end then.
    using Report = std::function<bool(qsizetype done, qsizetype total)>;
    /// Called at most thirty times a second, while what the job reports changes.
    using Progress = std::function<void(qsizetype done, qsizetype total)>;

    static constexpr std::chrono::milliseconds usualPatience{2000};

    explicit Worker(QObject *parent = nullptr, std::chrono::milliseconds patience = usualPatience);
    /// Waits for the jobs that were given. Those that report are told to end, and left behind when they have not done
    /// so in time, as where a disk does not answer.
    ~Worker() override;
    Q_DISABLE_COPY_MOVE(Worker)

    /// A job was left behind. Its thread may go on until the program ends, which is to end at once then: what is
    /// destroyed after main() would be taken from under it.
    [[nodiscard]] static bool isAnyLeftBehind();

    /// Has `work` done, and calls `then` with what it returned, unless `asking` is gone. Work that takes a Report is
    /// told by it when that is so; work that takes nothing is done to its end.
    template <typename Work, typename Then>
    void start(QObject *asking, Work work, Then then, const Progress &progress = {});
    /// True from start() until right before `then` of the last job.
    [[nodiscard]] bool isBusy() const { return !m_jobs.empty(); }
    /// Waits until everything is done and told, what is started meanwhile included.
    void finish() { waitFor(std::nullopt); }
    /// The same, but waits no longer than that. False when something is still to be done.
    bool finishWithin(std::chrono::milliseconds time) { return waitFor(time); }

private:
    struct Job;
    struct Queue;

    void add(QObject *asking, std::function<void(const Report &)> work, std::function<void()> then, Progress progress,
        bool isAwaited);
    bool waitFor(std::optional<std::chrono::milliseconds> time);
    void tell();
    void tellProgress();

    std::chrono::milliseconds m_patience;
    QTimer m_progressTimer;
    std::deque<std::shared_ptr<Job>> m_jobs; ///< those that nothing was told of yet
    std::shared_ptr<Queue> m_queue;
    std::thread m_thread;
};

template <typename Work, typename Then>
void Worker::start(QObject *asking, Work work, Then then, const Progress &progress)
{
    if constexpr (std::is_invocable_v<Work &, const Report &>) {
        const auto result = std::make_shared<std::optional<std::invoke_result_t<Work &, const Report &>>>();
        add(
            asking, [work, result](const Report &report) mutable { result->emplace(work(report)); },
            [then, result]() mutable { then(std::move(**result)); }, progress, false);
    } else {
        const auto result = std::make_shared<std::optional<std::invoke_result_t<Work &>>>();
        add(
            asking, [work, result](const Report &) mutable { result->emplace(work()); },
            [then, result]() mutable { then(std::move(**result)); }, progress, true);
    }
}
