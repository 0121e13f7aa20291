#pragma once

#include "UserFiles.h"

/// The files that a user names: "-" stands for standard input where a file is read, and for standard output where one
/// is written.
class PipedFiles : public UserFiles {
public:
    [[nodiscard]] Result<QByteArray> read(const QString &path) override;
    /// What could not be written to standard output is told at the end of the program.
    [[nodiscard]] Result<> write(const QString &path, const QByteArray &bytes) override;
};
