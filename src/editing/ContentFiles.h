#pragma once

#include "Result.h"
#include "VelgorPatch.h"

#include <QList>
#include <QObject>
#include <QString>

class EditHistory;
class PatchFileHandler;
class VelgorContent;

/// Brings the list being composed in from preset files and out to them, and knows which file it stands in and
/// whether an export would write something else now. User-interface thread only.
class ContentFiles : public QObject {
    Q_OBJECT

public:
    /// All three must outlive this object.
    ContentFiles(VelgorContent &content, PatchFileHandler &files, EditHistory &history);

    /// Asks for a file and fills the list from it.
    void importFile();
    /// Fills the list from this file.
    void importFile(const QString &path);
    /// The patches of a file, which goes nowhere; none when it cannot be read, for the reason that problem() then
    /// gives.
    [[nodiscard]] QList<VelgorPatch> patchesIn(const QString &path);
    /// Asks where to and writes the list. False when cancelled or failed; only a failure sets the content's flag.
    bool exportList();
    /// The same for one patch; the list's file and state stay as they are.
    bool exportPatch(const VelgorPatch &patch);

    /// The user was told that a file could not be read or written, or of names that are no text.
    void endOpenError();
    void endSaveError();
    void endUnreadableNames();

    /// The file that the list was imported from or exported to last; empty for a new list.
    [[nodiscard]] QString fileName() const;
    /// The list holds something that was neither imported nor exported in that form.
    [[nodiscard]] bool isModified() const;
    /// Why the last import or export failed, naming the file; translated.
    [[nodiscard]] QString problem() const { return m_problem; }

Q_SIGNALS:
    /// The file name or, perhaps, isModified() changed.
    void changed();
    /// Files were read into the list or written, as many patches as that.
    void imported(qsizetype count, const QString &path);
    void exported(qsizetype count, const QString &path);
    void patchExported(const QString &name, const QString &path);

private:
    [[nodiscard]] bool finishExport(const Result<QString> &path);

    VelgorContent &m_content;
    PatchFileHandler &m_files;
    EditHistory &m_history;
    QString m_problem;
};
