#pragma once

#include "InstanceListener.h"
#include "InstanceMessage.h"
#include "LibraryLock.h"
#include "StartRequest.h"

#include <QDeadlineTimer>
#include <QObject>
#include <QString>

#include <chrono>
#include <optional>

/// Keeps a library directory to one running application, and lets further starts reach that one.
///
/// The lock in the directory decides; a local socket of the same user leads to whoever holds it. Both work between
/// sandboxes of the application, too: the system itself keeps the lock's file from being removed while its holder
/// lives, in whatever sandbox. It has to outlive the last save, since it gives the directory free.
class SingleInstance : public QObject {
    Q_OBJECT

public:
    enum class Outcome {
        First, ///< this program has the directory
        HandedOver, ///< the first has taken the request; there is nothing left to do but to end
        Refused, ///< another program has the directory; reason() tells the user
    };

    static constexpr std::chrono::milliseconds usualPatience{5000};

    /// `patience` is how long start() waits for another program at the most.
    explicit SingleInstance(const QString &directory, std::chrono::milliseconds patience = usualPatience);

    /// Takes the directory, or hands the request over to the application that has it. The directory is there, if it
    /// can be. To be called once; it blocks while it waits.
    [[nodiscard]] Outcome start(const StartRequest &request);
    /// Why the outcome was Refused, or that the first cannot lock its directory because it cannot be written; empty
    /// otherwise. Translated.
    [[nodiscard]] QString reason() const { return m_reason; }

Q_SIGNALS:
    /// The program was started again.
    void activated(const StartRequest &request);

private:
    /// What another program said; nothing when there is none, Unfinished when it has kept silent till the deadline.
    using Reply = std::optional<InstanceMessage::Answer>;

    [[nodiscard]] Reply handOver(const QByteArray &request, const QDeadlineTimer &deadline) const;
    [[nodiscard]] static Reply ask(
        const QString &socketName, const QByteArray &request, const QDeadlineTimer &deadline);
    void listen();

    QString m_directory;
    QStringList m_sockets; ///< on which the application may listen that has the directory
    std::chrono::milliseconds m_patience;
    QString m_reason;
    LibraryLock m_lock;
    InstanceListener m_listener;
};
