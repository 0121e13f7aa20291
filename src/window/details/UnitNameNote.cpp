#include "UnitNameNote.h"

#include "LookMeasures.h"
#include "NameField.h"
#include "PatchName.h"
#include "RelativeFont.h"
#include "ShownName.h"

UnitNameNote::UnitNameNote(NameField &field, QWidget *parent)
    : ElidedLabel(parent)
    , m_field(field)
{
    setForegroundRole(QPalette::PlaceholderText);
    RelativeFont::set(*this, LookMeasures::footnoteFont);
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    policy.setRetainSizeWhenHidden(true);
    setSizePolicy(policy);
    hide();
    connect(&field, &QLineEdit::textChanged, this, &UnitNameNote::refresh);
    connect(&field, &NameField::focusChanged, this, &UnitNameNote::refresh);
}

void UnitNameNote::refresh()
{
    const QString name = m_field.text();
    const QString fitted = PatchName::fitted(name);
    const bool isTold = m_field.hasFocus() && m_field.isModified() && fitted != name;
    setText(isTold ? tr("The unit will show: %1").arg(isolated(fitted)) : QString());
    setVisible(isTold);
    m_field.setAccessibleDescription(text());
}
