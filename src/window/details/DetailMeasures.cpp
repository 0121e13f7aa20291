#include "DetailMeasures.h"

#include "LookMeasures.h"
#include "PatchSubdetailsInfoView.h"

int DetailMeasures::labelColumn(const QFontMetrics &metrics)
{
    return metrics.horizontalAdvance(PatchSubdetailsInfoView::longestLabel()) + LookMeasures::gap;
}
