#include "RandomId.h"

#include <QRandomGenerator>

quint64 randomId()
{
    return QRandomGenerator::global()->generate64() >> 1U;
}
