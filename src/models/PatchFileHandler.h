#pragma once

#include "FileAccess.h"
#include "FileDialogs.h"
#include "SPresetFile.h"
#include "VelgorPatch.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QList>

#include <optional>

class VelgorContent;

/// Imports and exports preset files, through dialogs or at a given place.
///
/// Every operation returns when the user has answered. Exported records carry the name that the user sees; only
/// the library's own files keep a record as it was hashed. User-interface thread only when dialogs are used.
class PatchFileHandler {
    Q_DECLARE_TR_FUNCTIONS(PatchFileHandler)

public:
    /// Both must outlive the handler. Without `dialogs`, only the operations that name a file may be called.
    explicit PatchFileHandler(FileAccess &files, FileDialogs *dialogs = nullptr);

    /// Asks for a file and reads it. Nothing when cancelled, unreadable or malformed.
    [[nodiscard]] std::optional<SPresetFile> open(const VelgorContent &velgorContent);
    /// Reads a file. Nothing when unreadable or malformed.
    [[nodiscard]] std::optional<SPresetFile> read(const QString &filename);

    /// Asks where to save the list and writes it. False when cancelled, empty or not written.
    [[nodiscard]] bool save(const VelgorContent &velgorContent, const std::optional<QString> &fileName = std::nullopt);
    /// Asks where to save one patch and writes it.
    [[nodiscard]] bool save(const VelgorPatch &patch);
    /// Writes the library's own file of a patch.
    [[nodiscard]] bool save(const VelgorPatch &patch, const QString &filename);
    /// The bytes of that file. Nothing without preset data.
    [[nodiscard]] static std::optional<QByteArray> storedBytes(const VelgorPatch &patch);
    /// Writes the list, or patches in their order, as one file for the unit's editor.
    [[nodiscard]] bool exportTo(const VelgorContent &velgorContent, const QString &filename);
    [[nodiscard]] bool exportTo(const QList<VelgorPatch> &patches, const QString &filename);

    /// The last operation ended because the user cancelled its dialog.
    [[nodiscard]] bool wasCancelled() const { return m_wasCancelled; }
    /// Why the last operation failed, naming the file where there is one. Empty otherwise. Translated.
    [[nodiscard]] QString problem() const { return m_problem; }
    /// The file of the last operation; empty when none was chosen.
    [[nodiscard]] QString path() const { return m_path; }

private:
    void begin();
    bool fail(const QString &problem);
    bool cancel();
    bool canExport(const VelgorContent &velgorContent);
    bool canExport(const VelgorPatch &patch);
    bool write(const SHeaderDesc &header, QList<SPatch> patches, QList<SUserIR> userIRs, const QString &filename);

    FileAccess &m_files;
    FileDialogs *m_dialogs;
    bool m_wasCancelled = false;
    QString m_problem;
    QString m_path;
};
