#include "Look.h"

#include "LookTokens.h"

#include <QApplication>
#include <QPixmapCache>
#include <QToolTip>

void applyLook(bool dark)
{
    LookTokens::setCurrent(dark ? LookTokens::dark() : LookTokens::light());
    const QPalette palette = LookTokens::current().palette();
    QApplication::setPalette(palette);
    // A desktop's theme may have given tool tips a palette of their own.
    QToolTip::setPalette(palette);
    QPixmapCache::clear();
}
