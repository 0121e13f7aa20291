#pragma once

#include "FileStamp.h"
#include "OpenDirectory.h"
#include "Result.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QString>

class QFile;

/// Writes whole files and checks that every byte is there.
class CheckedWriting {
    Q_DECLARE_TR_FUNCTIONS(CheckedWriting)

public:
    /// Makes a file that was not there, and nothing in its place on failure.
    [[nodiscard]] static Result<FileStamp> createFile(
        const OpenDirectory &directory, const QString &name, const QByteArray &bytes, bool isSynced);
    /// Fills a file that is open for writing, unbuffered and empty, and synchronises it.
    [[nodiscard]] static Result<> writeAndSync(QFile &file, const QByteArray &bytes);
};
