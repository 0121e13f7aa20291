#include "DetailMeasures.h"

#include "LookMeasures.h"

#include <QCoreApplication>

QString DetailMeasures::longestLabel()
{
    return QCoreApplication::translate("PatchSubdetailsInfoView", "Velgor name: ");
}

int DetailMeasures::labelColumn(const QFontMetrics &metrics)
{
    return metrics.horizontalAdvance(longestLabel()) + LookMeasures::gap;
}
