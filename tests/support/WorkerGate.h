#pragma once

#include "Worker.h"

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

/// Keeps a worker busy: what is given to it stands behind until open() is called, but no longer than `longest`, so that
/// nothing hangs when a test fails.
class WorkerGate {
public:
    explicit WorkerGate(Worker &worker, std::chrono::milliseconds longest = std::chrono::seconds(10))
    {
        const auto wait = [state = m_state, longest] {
            std::unique_lock lock(state->mutex);
            state->opened.wait_for(lock, longest, [state] { return state->isOpen; });
            state->isOpen = true;
            return true;
        };
        worker.start(&worker, wait, [](bool) {});
    }
    ~WorkerGate() { open(); }
    Q_DISABLE_COPY_MOVE(WorkerGate)

    /// Nobody opened it, and `longest` is not over.
    [[nodiscard]] bool isHolding() const
    {
        const std::scoped_lock lock(m_state->mutex);
        return !m_state->isOpen;
    }

    void open()
    {
        const std::scoped_lock lock(m_state->mutex);
        m_state->isOpen = true;
        m_state->opened.notify_all();
    }

private:
    struct State {
        std::mutex mutex;
        std::condition_variable opened;
        bool isOpen = false;
    };

    std::shared_ptr<State> m_state = std::make_shared<State>();
};
