#pragma once

#include "ElidedLabel.h"

/// A text of a patch, shown as it is and selectable with the mouse. Its accessible description says what it is.
class ValueLabel : public ElidedLabel {
    Q_OBJECT

public:
    ValueLabel(const QString &description, QWidget *parent);

    void setValue(const QString &value);
};

/// The label of a value: secondary, and on one line with the ValueLabel beside it.
class DetailLabel : public QLabel {
    Q_OBJECT

public:
    DetailLabel(const QString &text, QWidget *parent);
};
