#pragma once

#include "SPresetFile.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QList>
#include <QString>

#include <optional>

/// Something in a preset file that the unit's editor may not take as it stands.
struct PresetFileFinding {
    QString code; ///< stable word for scripts, for example "checksum"
    QString message; ///< for people, translated
    std::optional<qint64> offset; ///< first byte concerned, from the start of the file

    bool operator==(const PresetFileFinding &) const = default;
};

/// What a strict reading of a file gives.
struct PresetFileReport {
    std::optional<SPresetFile> file; ///< absent when the file is malformed; there are no findings then
    std::optional<Problem> problem; ///< in that case
    QList<PresetFileFinding> findings;
    bool roundTrip = false; ///< reading the file and writing it again gives the same bytes
};

/// Strict verification of a preset file: everything that SPresetFile reads without complaint and a clean export
/// would have written otherwise.
class PresetFileChecker {
    Q_DECLARE_TR_FUNCTIONS(PresetFileChecker)

public:
    /// Prints the reader's lines when `data` is malformed.
    [[nodiscard]] static PresetFileReport check(const QByteArray &data);

private:
    explicit PresetFileChecker(const QByteArray &data, const SPresetFile &file);

    void checkAll();
    void checkHeader(qint64 endOfBlocks);
    void checkDescriptor(qsizetype index, qint64 blockOffset);
    void checkPatch(qsizetype index, qint64 blockOffset);
    void checkName(qsizetype index, qint64 fieldOffset);
    void checkUserIR(qsizetype index, qint64 blockOffset);
    void checkTail(qint64 tailOffset);
    void report(const char *code, const QString &message, qint64 offset);

    const QByteArray &m_data;
    const SPresetFile &m_file;
    QList<PresetFileFinding> m_findings;
    std::optional<qsizetype> m_firstWithUserIR;
};
