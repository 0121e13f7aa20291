#pragma once

#include "FileAccess.h"

#include <QCoreApplication>

/// The files that the user names, outside of a library. Links are followed.
class UserFiles : public FileAccess {
    Q_DECLARE_TR_FUNCTIONS(UserFiles)

public:
    /// Reads a regular file. Never waits for a pipe or a device.
    [[nodiscard]] Result<QByteArray> read(const QString &path) override;
    /// Replaces a file safely: see DiskFiles::replace(). Refuses the files of a library, which an export would destroy.
    /// Removes what programs that were killed while they wrote into that directory left there.
    [[nodiscard]] Result<> write(const QString &path, const QByteArray &bytes) override;
};
