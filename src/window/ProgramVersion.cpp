#include "ProgramVersion.h"

QString ProgramVersion::number()
{
    return QStringLiteral(VELGOR_VERSION);
}

QString ProgramVersion::text()
{
    return commit().isEmpty() ? number() : QStringLiteral("%1 (%2)").arg(number(), commit());
}
