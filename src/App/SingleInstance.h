#pragma once

#include "InstanceListener.h"
#include "LibraryLock.h"

#include <QDeadlineTimer>
#include <QObject>
#include <QString>

#include <chrono>

/// Keeps a library directory to one running application, and lets further starts reach that one.
///
/// The lock in the directory decides; a local socket of the same user leads to whoever holds it. It has to outlive
/// the last save, since it gives the directory free.
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
    explicit SingleInstance(
        const QString &directory, std::chrono::milliseconds patience = usualPatience, QObject *parent = nullptr);

    /// Takes the directory, or hands `file` (empty for none) over to the application that has it. The directory is
    /// there, if it can be. To be called once; it blocks while it waits.
    [[nodiscard]] Outcome start(const QString &file);
    /// Why the outcome was Refused, or that the first cannot lock its directory because it cannot be written; empty
    /// otherwise. Translated.
    [[nodiscard]] QString reason() const { return m_reason; }

    /// The local socket on which the application listens that has this directory; empty where the user has no
    /// directory for sockets.
    [[nodiscard]] static QString socketName(const QString &directory);

Q_SIGNALS:
    /// The program was started again: with an absolute path, or empty.
    void activated(const QString &fileOrEmpty);

private:
    enum class Reply { Yes, NoOneThere, Silence };

    [[nodiscard]] Reply handOver(const QByteArray &request, const QDeadlineTimer &deadline) const;
    void listen();

    QString m_directory;
    QString m_socketName;
    std::chrono::milliseconds m_patience;
    QString m_reason;
    LibraryLock m_lock;
    InstanceListener m_listener;
};
