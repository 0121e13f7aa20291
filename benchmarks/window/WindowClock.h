#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <QWidget>

#include <functional>

/// Takes the time from an action to the repainted widget, and watches meanwhile how long the event loop is away.
class WindowClock : public QObject {
public:
    /// In milliseconds.
    struct Round {
        double total = 0;
        double longestGap = 0;
        double processor = 0; ///< what the window's thread used of the total; other programs do not count
    };
    using Action = std::function<void()>;
    using Condition = std::function<bool()>;

    WindowClock();

    /// Runs `action` and the event loop, until `widget` was painted since and `isDone` is true. Ends the program when
    /// that does not come to pass within a minute.
    [[nodiscard]] Round measure(QWidget &widget, const Action &action, const Condition &isDone = {});

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    [[nodiscard]] double milliseconds() const;
    void noteGap();

    QElapsedTimer m_clock;
    QTimer m_ticks;
    double m_lastTick = 0;
    double m_longestGap = 0;
    bool m_isPainted = false;
};
