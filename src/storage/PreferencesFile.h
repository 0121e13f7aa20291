#pragma once

#include "Result.h"

#include <QCoreApplication>
#include <QString>
#include <QVariant>

/// The text file in which a QSettings keeps its values. QSettings itself does not find out that a full disk took only a
/// part of the text, and would lose what was there before.
class PreferencesFile {
    Q_DECLARE_TR_FUNCTIONS(PreferencesFile)

public:
    explicit PreferencesFile(const QString &path);

    /// Gives a key another value, or takes it away where the value is invalid, and makes sure that the file says so.
    /// The file stays as it was where that failed.
    [[nodiscard]] Result<> change(const QString &key, const QVariant &value) const;

private:
    QString m_path;
};
