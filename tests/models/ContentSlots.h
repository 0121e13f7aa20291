#pragma once

#include "TestPatches.h"
#include "VelgorContent.h"

#include <QObject>

#include <utility>

/// Slots of a list, told in words.
namespace ContentSlots {

inline SPresetFile fileOf(int count, const QByteArray &version = "V1.20")
{
    QList<SPatch> patches;
    for (int i = 0; i < count; ++i) {
        patches.append(TestRecords::patch(QStringLiteral("Patch %1").arg(i), i + 1));
    }
    return TestRecords::file(patches, {}, version);
}

inline QStringList places(const VelgorContent &content)
{
    QStringList result;
    for (const VelgorContentPatch &slot : content.velgorContentPatchList()) {
        result.append(QStringLiteral("%1-%2").arg(slot.bank).arg(slot.number));
    }
    return result;
}

inline QStringList names(const VelgorContent &content)
{
    QStringList result;
    for (const VelgorContentPatch &slot : content.velgorContentPatchList()) {
        result.append(slot.patch.name);
    }
    return result;
}

/// Writes down every signal of a content, in order.
class Announcements {
public:
    explicit Announcements(VelgorContent &content)
    {
        const auto rows = [&](const char *name, auto signal) {
            QObject::connect(&content, signal, &m_context, [this, name](qsizetype a, qsizetype b) {
                m_all.append(QStringLiteral("%1 %2 %3").arg(QLatin1String(name)).arg(a).arg(b));
            });
        };
        const auto plain = [&](const char *name, auto signal) {
            QObject::connect(&content, signal, &m_context, [this, name] { m_all.append(QLatin1String(name)); });
        };
        rows("+insert", &VelgorContent::rowsAboutToBeInserted);
        rows("insert", &VelgorContent::rowsInserted);
        rows("+remove", &VelgorContent::rowsAboutToBeRemoved);
        rows("remove", &VelgorContent::rowsRemoved);
        rows("+move", &VelgorContent::rowAboutToBeMoved);
        rows("move", &VelgorContent::rowMoved);
        rows("change", &VelgorContent::rowsChanged);
        plain("+reorder", &VelgorContent::aboutToBeReordered);
        plain("reorder", &VelgorContent::reordered);
        plain("+reset", &VelgorContent::aboutToBeReset);
        plain("reset", &VelgorContent::wasReset);
        plain("limit", &VelgorContent::limitChanged);
        plain("versions", &VelgorContent::versionsChanged);
        plain("openError", &VelgorContent::openErrorChanged);
        plain("mixVersions", &VelgorContent::mixVersionsChanged);
    }

    /// What was announced since the last call, joined by "; ".
    QString take() { return std::exchange(m_all, {}).join(QStringLiteral("; ")); }

private:
    QObject m_context;
    QStringList m_all;
};

} // namespace ContentSlots
