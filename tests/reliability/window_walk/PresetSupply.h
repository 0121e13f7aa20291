#pragma once

#include <QByteArray>
#include <QStringList>

class QRandomGenerator;

/// Preset files for a walk to import, in a directory of their own.
class PresetSupply {
public:
    explicit PresetSupply(const QString &directory);

    /// The list that every round of the walk starts with: always the same.
    [[nodiscard]] QString startFile() const { return m_startFile; }
    [[nodiscard]] static int startCount();
    /// A file to choose in a dialog: made anew, exported before, damaged, or missing.
    [[nodiscard]] QString anyFile(QRandomGenerator &random);
    /// A well-formed file.
    [[nodiscard]] QString goodFile(QRandomGenerator &random);
    /// Where to export to; now and then a place where no file can be written.
    [[nodiscard]] QString target(QRandomGenerator &random) const;

private:
    [[nodiscard]] QString write(const QString &name, const QByteArray &bytes) const;

    QString m_directory;
    QString m_startFile;
};
