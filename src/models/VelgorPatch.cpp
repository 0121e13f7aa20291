#include "VelgorPatch.h"

#include "RandomId.h"
#include "Utf8Text.h"

#include <utility>

VelgorPatch::VelgorPatch(const QString &shownName, bool userIR)
    : name(shownName)
    , hasUserIR(userIR)
    , version(QStringLiteral("!NONE"))
    , date(ReferenceDate::now())
    , m_id(randomId())
{
}

VelgorPatch::VelgorPatch(const SPatch &patch, const SUserIR &userIR, const SHeaderDesc &header)
    : name(patch.name)
    , hasUserIR(userIR.size != 0)
    , version(Utf8Text::decode(header.pm0).value_or(QStringLiteral("xxxxx")))
    , date(ReferenceDate::now())
    , records({patch, userIR, header})
    , m_id(staticSimpleHash(patch, userIR))
{
}

VelgorPatch::VelgorPatch(quint64 id)
    : m_id(id)
{
}

VelgorPatch VelgorPatch::copyNamed(const VelgorPatch &from, const QString &newName)
{
    if (!from.records) {
        return from.withId(randomId());
    }
    VelgorPatch copy = from.withId(staticSimpleHash(from.records->patchData, from.records->userIRData, newName));
    copy.name = newName;
    copy.records->patchData.name = newName;
    copy.records->patchData.unreadableName.clear();
    return copy;
}

VelgorPatch VelgorPatch::withId(quint64 id) const &
{
    return VelgorPatch(*this).withId(id);
}

VelgorPatch VelgorPatch::withId(quint64 id) &&
{
    m_id = id;
    return std::move(*this);
}

quint64 VelgorPatch::staticSimpleHash(
    const SPatch &patch, const SUserIR &userIR, const std::optional<QString> &overrideName)
{
    return patch.simpleHash(overrideName) ^ userIR.simpleHash();
}

quint64 VelgorPatch::staticSimpleHash(
    const std::optional<VelgorPatch> &patch, const std::optional<QString> &overrideName)
{
    return patch && patch->records
        ? staticSimpleHash(patch->records->patchData, patch->records->userIRData, overrideName)
        : randomId();
}

std::optional<quint64> VelgorPatch::soundHash() const
{
    if (!records) {
        return std::nullopt;
    }
    return staticSimpleHash(records->patchData, records->userIRData, QString());
}
