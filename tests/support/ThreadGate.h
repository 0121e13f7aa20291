#pragma once

#include "Diagnostics.h"

#include <QStringList>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

/// Holds every other thread that prints a certain diagnostic line. Collects all lines. Nothing is to be printed on the
/// own thread meanwhile, as no line is printed beside another.
class ThreadGate {
public:
    /// A thread is held until open(), but no longer than `longest`.
    ThreadGate(std::chrono::milliseconds longest, const QString &held)
        : m_longest(longest)
        , m_held(held)
        , m_owner(std::this_thread::get_id())
        , m_previous(Diagnostics::setSink([this](const QString &line) { take(line); }))
    {
    }
    ~ThreadGate() { Diagnostics::setSink(std::move(m_previous)); }
    Q_DISABLE_COPY_MOVE(ThreadGate)

    [[nodiscard]] bool isHolding() const
    {
        const std::lock_guard lock(m_mutex);
        return m_isHolding;
    }

    void open()
    {
        const std::lock_guard lock(m_mutex);
        m_isOpen = true;
        m_opened.notify_all();
    }

    [[nodiscard]] QStringList lines() const
    {
        const std::lock_guard lock(m_mutex);
        return m_lines;
    }

private:
    void take(const QString &line)
    {
        std::unique_lock lock(m_mutex);
        m_lines.append(line);
        if (std::this_thread::get_id() != m_owner && line == m_held) {
            m_isHolding = true;
            m_opened.wait_for(lock, m_longest, [this] { return m_isOpen; });
            m_isHolding = false;
        }
    }

    std::chrono::milliseconds m_longest;
    QString m_held; ///< the line
    std::thread::id m_owner;
    mutable std::mutex m_mutex;
    std::condition_variable m_opened;
    QStringList m_lines;
    bool m_isOpen = false;
    bool m_isHolding = false;
    Diagnostics::Sink m_previous;
};
