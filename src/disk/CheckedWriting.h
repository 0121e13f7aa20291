#pragma once

#include "FileStamp.h"
#include "OpenDirectory.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QString>

class QFile;

/// Writes whole files and checks that every byte is there. Errors are returned as the system's reason, translated; an
/// empty text means success.
class CheckedWriting {
    Q_DECLARE_TR_FUNCTIONS(CheckedWriting)

public:
    /// What came of making a file.
    struct Created {
        QString error = {};
        bool isTaken = false; ///< there was one already
        FileStamp stamp = {}; ///< of the file, where there was no error
    };

    /// Makes a file that was not there, and nothing in its place on failure.
    [[nodiscard]] static Created createFile(
        const OpenDirectory &directory, const QString &name, const QByteArray &bytes, bool isSynced);
    /// Fills a file that is open for writing, unbuffered and empty, and synchronises it.
    [[nodiscard]] static QString writeAndSync(QFile &file, const QByteArray &bytes);
};
