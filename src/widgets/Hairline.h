#pragma once

#include <QWidget>

/// One pixel that parts two regions of a column.
class Hairline : public QWidget {
    Q_OBJECT

public:
    explicit Hairline(QWidget *parent);
};
