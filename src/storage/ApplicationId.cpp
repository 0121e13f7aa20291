#include "ApplicationId.h"

QString ApplicationId::text()
{
    return QStringLiteral(VELGOR_APPLICATION_ID);
}
