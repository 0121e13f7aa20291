#pragma once

#include "VelgorPatch.h"

#include <QCoreApplication>
#include <QList>
#include <QString>

struct SPresetFile;
class VelgorContent;

/// Names of a preset file whose bytes are not valid UTF-8. They are shown as "_error_", and an export writes their very
/// bytes again as long as the patch is not renamed.
class UnreadableNames {
    Q_DECLARE_TR_FUNCTIONS(UnreadableNames)

public:
    explicit UnreadableNames(const SPresetFile &file);
    /// Of patches as a file holds them, in their order.
    explicit UnreadableNames(const QList<VelgorPatch> &patches);
    /// Of the slots that still have such a name.
    explicit UnreadableNames(const VelgorContent &content);

    [[nodiscard]] qsizetype count() const { return m_slots.size(); }
    /// The first of their places, and how many more there are; translated. "3.1, 3.2 and 4 more"
    [[nodiscard]] QString places() const;

private:
    QList<qsizetype> m_slots; ///< counted from 0
};
