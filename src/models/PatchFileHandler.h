#pragma once

#include "FileAccess.h"
#include "FileDialogs.h"
#include "Result.h"
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

    /// Asks for a file to read. The problem is that the user cancelled.
    [[nodiscard]] Result<QString> askForFile();
    [[nodiscard]] Result<SPresetFile> read(const QString &filename);

    /// Asks where to save the list, writes it, and says where.
    [[nodiscard]] Result<QString> save(
        const VelgorContent &velgorContent, const std::optional<QString> &fileName = std::nullopt);
    /// The same for one patch.
    [[nodiscard]] Result<QString> save(const VelgorPatch &patch);
    /// The bytes of the library's own file of a patch, which has preset data.
    [[nodiscard]] static Result<QByteArray> storedBytes(const VelgorPatch &patch);
    /// Writes the list, or patches in their order, as one file for the unit's editor, and says where.
    [[nodiscard]] Result<QString> exportTo(const VelgorContent &velgorContent, const QString &filename);
    [[nodiscard]] Result<QString> exportTo(const QList<VelgorPatch> &patches, const QString &filename);

private:
    [[nodiscard]] static Result<> checkExport(const VelgorContent &velgorContent);
    [[nodiscard]] static Result<> checkExport(const VelgorPatch &patch);
    [[nodiscard]] Result<QString> write(
        const SHeaderDesc &header, QList<SPatch> patches, QList<SUserIR> userIRs, const QString &filename);

    FileAccess &m_files;
    FileDialogs *m_dialogs;
};
