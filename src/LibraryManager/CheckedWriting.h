#pragma once

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
    /// Makes a file that was not there, and nothing in its place on failure. `isTaken` says that there is one already.
    [[nodiscard]] static QString createFile(
        const OpenDirectory &directory, const QString &name, const QByteArray &bytes, bool isSynced, bool &isTaken);
    /// Fills a file that is open for writing, unbuffered and empty, and synchronises it.
    [[nodiscard]] static QString writeAndSync(QFile &file, const QByteArray &bytes);
};
