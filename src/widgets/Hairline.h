#pragma once

#include <QWidget>

/// One pixel that parts two regions of a column.
class Hairline : public QWidget {
public:
    explicit Hairline(QWidget *parent)
        : QWidget(parent)
    {
        setBackgroundRole(QPalette::Mid);
        setAutoFillBackground(true);
        setFixedHeight(1);
    }
};
