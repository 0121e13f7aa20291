#include "UnreadableNames.h"

#include "SPresetFile.h"
#include "VelgorContent.h"

#include <QStringList>

#include <algorithm>

namespace {

/// Unless the user has renamed it.
bool hasUnreadableName(const VelgorPatch &patch)
{
    return patch.records && !patch.records->patchData.unreadableName.isEmpty()
        && patch.name == patch.records->patchData.name;
}

} // namespace

UnreadableNames::UnreadableNames(const SPresetFile &file)
{
    for (qsizetype i = 0; i < file.patches.size(); ++i) {
        if (!file.patches.at(i).unreadableName.isEmpty()) {
            m_slots.append(i);
        }
    }
}

UnreadableNames::UnreadableNames(const QList<VelgorPatch> &patches)
{
    for (qsizetype i = 0; i < patches.size(); ++i) {
        if (hasUnreadableName(patches.at(i))) {
            m_slots.append(i);
        }
    }
}

UnreadableNames::UnreadableNames(const VelgorContent &content)
{
    const QList<VelgorContentPatch> &list = content.velgorContentPatchList();
    for (qsizetype row = 0; row < list.size(); ++row) {
        if (hasUnreadableName(list.at(row).patch)) {
            m_slots.append(row);
        }
    }
}

QString UnreadableNames::places() const
{
    constexpr qsizetype most = 12;
    QStringList texts;
    for (const qsizetype slot : m_slots.first(std::min(most, m_slots.size()))) {
        const BankNumber place = BankNumber::ofSlot(slot);
        texts.append(QStringLiteral("%1.%2").arg(place.bank).arg(place.number));
    }
    const QString listed = texts.join(QStringLiteral(", "));
    return m_slots.size() <= most ? listed : tr("%1 and %2 more").arg(listed).arg(m_slots.size() - most);
}
