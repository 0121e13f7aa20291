#pragma once

#include "KeptLibraries.h"
#include "LibraryHealth.h"

#include <QCoreApplication>
#include <QString>

/// What "library doctor" prints.
class DoctorReport {
    Q_DECLARE_TR_FUNCTIONS(DoctorReport)

public:
    DoctorReport(const QString &directory, const LibraryHealth &health);

    /// The patches that repairing has added.
    void setAdded(const QList<VelgorPatch> &added) { m_added = added; }
    void print(bool isJson) const;
    /// What restoring a former library changes, or has changed.
    static void printPreview(const KeptLibraries::Preview &preview, bool isJson);

private:
    void printLines() const;
    [[nodiscard]] static QString lineOf(const LibraryFinding &finding);
    static void printPreviewJson(const KeptLibraries::Preview &preview);
    void printJson() const;

    QString m_directory;
    LibraryHealth m_health;
    QList<VelgorPatch> m_added;
};
