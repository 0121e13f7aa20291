#include "Hairline.h"

Hairline::Hairline(QWidget *parent)
    : QWidget(parent)
{
    setBackgroundRole(QPalette::Mid);
    setAutoFillBackground(true);
    setFixedHeight(1);
}
