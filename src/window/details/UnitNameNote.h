#pragma once

#include "ElidedLabel.h"

class NameField;

/// What the unit will show of a name that is longer than the room it has there, while that name is typed. Its place
/// stays, so that nothing moves when it appears.
class UnitNameNote : public ElidedLabel {
    Q_OBJECT

public:
    UnitNameNote(NameField &field, QWidget *parent);

private:
    void refresh();

    NameField &m_field;
};
