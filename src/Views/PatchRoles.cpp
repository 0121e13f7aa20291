#include "PatchRoles.h"

#include "FirmwareBadge.h"

#include <QCoreApplication>

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(PatchRoles)
};

} // namespace

QString PatchRoles::spokenRow(const QString &text, bool hasUserIR)
{
    return hasUserIR ? Texts::tr("%1, user IR").arg(text) : text;
}

QString PatchRoles::firmwareText(const QString &version)
{
    return Texts::tr("firmware %1").arg(FirmwareBadge::shownVersion(version));
}
