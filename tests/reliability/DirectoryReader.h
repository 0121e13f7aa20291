#pragma once

#include "Diagnostics.h"
#include "EditedStates.h"
#include "LibraryLoader.h"

#include <QStringList>

#include <atomic>
#include <chrono>
#include <thread>

/// Looks at a library's directory while it is written, and tells what it saw.
namespace DirectoryReader {

/// Several turns of the timer that edits.
inline constexpr std::chrono::milliseconds editTime{3};

/// Counts the beginnings and ends of writing, so that a reader knows whether it was alone. The counts put no order
/// between the threads, which would hide a race from the thread sanitizer.
class WritingWatch {
public:
    WritingWatch()
        : m_previous(Diagnostics::setSink([this](const QString &line) {
            if (line == QStringLiteral("Saving library...") || line == QStringLiteral("Saving in progress...")) {
                m_begun.fetch_add(1, std::memory_order_relaxed);
                // Edits are made before the save goes on: one that reads the library on its own thread races with them.
                std::this_thread::sleep_for(editTime);
            }
        }))
    {
    }
    ~WritingWatch() { Diagnostics::setSink(std::move(m_previous)); }
    Q_DISABLE_COPY_MOVE(WritingWatch)

    [[nodiscard]] int begun() const { return m_begun.load(std::memory_order_relaxed); }
    [[nodiscard]] int ended() const { return m_ended.load(std::memory_order_relaxed); }
    /// Several steps follow that belong together.
    void hold()
    {
        m_isHeld = true;
        m_begun.fetch_add(1, std::memory_order_relaxed);
    }
    void release() { m_isHeld = false; }
    /// Everything that has begun has ended.
    void endAll()
    {
        if (!m_isHeld) {
            m_ended.store(begun(), std::memory_order_relaxed);
        }
    }

private:
    std::atomic<int> m_begun = 0;
    std::atomic<int> m_ended = 0;
    bool m_isHeld = false;
    Diagnostics::Sink m_previous;
};

/// Loads the directory again and again, as another program would that looks at any moment.
class Reader {
public:
    Reader(const QString &directory, const EditedStates::States &states, const WritingWatch &writing)
        : m_directory(directory)
        , m_states(states)
        , m_writing(writing)
        , m_thread([this] { read(); })
    {
    }
    ~Reader() { stop(); }
    Q_DISABLE_COPY_MOVE(Reader)

    void stop()
    {
        m_isStopped = true;
        if (m_thread.joinable()) {
            m_thread.join();
        }
    }
    /// After stop().
    [[nodiscard]] QString problem() const { return m_problem; }
    [[nodiscard]] int wholeLoads() const { return m_wholeLoads; }
    [[nodiscard]] int loadsDuringSaves() const { return m_loadsDuringSaves; }

private:
    void read()
    {
        std::size_t last = 0;
        while (!m_isStopped && m_problem.isEmpty()) {
            const int begun = m_writing.begun();
            const bool wasQuiet = m_writing.ended() == begun;
            const LibraryLoadResult result = LibraryLoader(m_directory).load();
            const bool isWhole = result.library && result.droppedPatches.isEmpty() && !result.problem;
            const bool wasAlone = wasQuiet && m_writing.begun() == begun;
            m_loadsDuringSaves += wasAlone ? 0 : 1;
            if (!isWhole) {
                // A file may have moved on under its reader, but only while somebody writes.
                if (wasAlone) {
                    m_problem = QStringLiteral("a load that no save disturbed leaves out: %1 %2")
                                    .arg(result.droppedPatches.join(u' '), result.problem.value_or(Problem()).text());
                }
                continue;
            }
            const std::size_t number = EditedStates::States::numberOf(result.library->patches);
            if (!m_states.has(*result.library)) {
                m_problem = QStringLiteral("what was loaded after edit %1 never existed").arg(number);
            } else if (number < last) {
                m_problem = QStringLiteral("edit %1 was on disk, and then edit %2").arg(last).arg(number);
            }
            last = number;
            ++m_wholeLoads;
        }
    }

    QString m_directory;
    const EditedStates::States &m_states;
    const WritingWatch &m_writing;
    std::atomic<bool> m_isStopped = false;
    QString m_problem;
    int m_wholeLoads = 0;
    int m_loadsDuringSaves = 0;
    std::thread m_thread; ///< last, because it uses the rest
};

} // namespace DirectoryReader
