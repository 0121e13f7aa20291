#include "PatchFlags.h"

#include <QCoreApplication>

namespace {

using Group = PatchField::Group;

ShownFlags ofGroups(std::initializer_list<Group> groups, PatchFields::Rows rows)
{
    ShownFlags flags;
    for (const Group group : groups) {
        for (const PatchField &field : rows) {
            if (field.group == group) {
                flags.append(&field);
            }
        }
    }
    return flags;
}

} // namespace

ShownFlags PatchFlags::usage(PatchFields::Rows rows)
{
    return ofGroups({Group::Instrument, Group::Usage}, rows);
}

ShownFlags PatchFlags::style(PatchFields::Rows rows)
{
    return ofGroups({Group::Style}, rows);
}

ShownFlags PatchFlags::marks(PatchFields::Rows rows)
{
    return usage(rows) + style(rows);
}

ShownFlags PatchFlags::inFilter(PatchFields::Rows rows)
{
    ShownFlags flags = usage(rows) + ofGroups({Group::UserImpulseResponse}, rows) + style(rows);
    flags.removeIf([](const PatchField *field) { return !field->isFilter; });
    return flags;
}

ShownFlags PatchFlags::classification(const VelgorPatch &patch, PatchFields::Rows rows)
{
    ShownFlags set = marks(rows);
    set.removeIf([&patch](const PatchField *field) { return !(patch.*field->flag); });
    return set;
}

QString PatchFlags::label(const PatchField &field)
{
    return QCoreApplication::translate("PatchFlags", field.label);
}

QString PatchFlags::initial(const PatchField &field)
{
    return QCoreApplication::translate("PatchFlags", field.initial);
}

ToggleButton::Tone PatchFlags::tone(const PatchField &field)
{
    using Tone = ToggleButton::Tone;
    return field.group == Group::Instrument ? Tone::Instrument
        : field.group == Group::Usage       ? Tone::Usage
        : field.group == Group::Style       ? Tone::Style
                                            : Tone::Accent;
}
