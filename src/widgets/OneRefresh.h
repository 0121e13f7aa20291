#pragma once

#include <QEvent>
#include <QObject>

#include <functional>

/// One refresh for all the changes of a moment. It is done when control is back in the event loop, at the latest before
/// anything is painted or the next key or click of the user reaches anything: nobody meets what has gone stale.
class OneRefresh : public QObject {
    Q_OBJECT

public:
    OneRefresh(std::function<void()> refresh, QObject *parent);

    void ask();
    /// Does what was asked for, if it was.
    void catchUp();

    /// Waits for a refresh that is due.
    [[nodiscard]] static QEvent::Type dueEvent();

    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void done();

private:
    std::function<void()> m_refresh;
    bool m_isDue = false;
};
