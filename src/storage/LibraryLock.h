#pragma once

#include <QCoreApplication>
#include <QLockFile>
#include <QString>

#include <optional>

/// Keeps a library directory to one program. A lock left by a crash is taken over.
class LibraryLock {
    Q_DECLARE_TR_FUNCTIONS(LibraryLock)

public:
    explicit LibraryLock(const QString &directory);

    /// False when another program holds the directory or the lock cannot be written.
    [[nodiscard]] bool tryLock();
    /// After tryLock() was false: another program holds the directory.
    [[nodiscard]] bool isHeldElsewhere() const;
    /// After tryLock() was false: why. Names the directory; translated.
    [[nodiscard]] QString reason() const;

    /// Another program holds the directory now, as far as can be told. Takes and changes nothing.
    [[nodiscard]] static bool isHeldByOther(const QString &directory);

private:
    struct Holder {
        qint64 process = 0;
        bool isHere = false; ///< on this computer
    };

    [[nodiscard]] std::optional<Holder> holder() const;
    [[nodiscard]] bool isPlaceTaken() const;
    void removeLeftovers();

    QString m_directory;
    QLockFile m_file;
    int m_systemError = 0; ///< of the last tryLock(), as the system numbers its errors
    bool m_isPlaceTaken = false; ///< by something that is no file and that must not be opened
};
