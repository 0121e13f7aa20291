#pragma once

#include <QLabel>

/// A text of a patch, shown as it is and selectable with the mouse. Its accessible description says what it is.
class ValueLabel : public QLabel {
    Q_OBJECT

public:
    ValueLabel(const QString &description, QWidget *parent);

    void setValue(const QString &value);
};
