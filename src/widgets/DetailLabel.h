#pragma once

#include <QLabel>

/// The label of a value in the details: secondary, and on one line with a ValueLabel beside it.
class DetailLabel : public QLabel {
    Q_OBJECT

public:
    DetailLabel(const QString &text, QWidget *parent);
};
