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
    , patchData(patch)
    , userIRData(userIR)
    , headerData(header)
    , m_id(staticSimpleHash(patch, userIR))
{
}

VelgorPatch::VelgorPatch(quint64 id)
    : m_id(id)
{
}

VelgorPatch VelgorPatch::copyNamed(const VelgorPatch &from, const QString &newName)
{
    if (!from.patchData || !from.userIRData) {
        VelgorPatch copy = from.withId(randomId());
        copy.patchData.reset();
        return copy;
    }
    VelgorPatch copy = from.withId(staticSimpleHash(from.patchData, from.userIRData, newName));
    copy.name = newName;
    copy.patchData->name = newName;
    copy.patchData->unreadableName.clear();
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

quint64 VelgorPatch::staticSimpleHash(const std::optional<SPatch> &patch, const std::optional<SUserIR> &userIR,
    const std::optional<QString> &overrideName)
{
    if (!patch) {
        return randomId();
    }
    return patch->simpleHash(overrideName) ^ (userIR ? userIR->simpleHash() : 0);
}

quint64 VelgorPatch::staticSimpleHash(
    const std::optional<VelgorPatch> &patch, const std::optional<QString> &overrideName)
{
    return patch ? staticSimpleHash(patch->patchData, patch->userIRData, overrideName) : randomId();
}

std::optional<quint64> VelgorPatch::soundHash() const
{
    if (!patchData) {
        return std::nullopt;
    }
    return staticSimpleHash(patchData, userIRData, QString());
}
