#pragma once

#include <QObject>

#include <memory>

/// Tells the event loop that the system wants the program to end: on Unix by SIGTERM, SIGINT or SIGHUP. Elsewhere it
/// does nothing.
///
/// At most one exists at a time. A signal that the program was started to ignore stays ignored. With the object goes
/// its hold on the signals.
class TerminationSignals : public QObject {
    Q_OBJECT

public:
    TerminationSignals();
    ~TerminationSignals() override;
    Q_DISABLE_COPY_MOVE(TerminationSignals)

Q_SIGNALS:
    /// Comes again when the system asks again.
    void terminated();

private:
    struct Handlers;
    std::unique_ptr<Handlers> m_handlers;
};
