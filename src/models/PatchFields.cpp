#include "PatchFields.h"

#include <algorithm>
#include <array>

namespace {

using Group = PatchField::Group;

constexpr PatchField mark(const char *name, bool VelgorPatch::*flag, Group group, const char *label,
    const char *initial, const char *command, const char *shortcut)
{
    return {.key = name,
        .flag = flag,
        .isSeen = true,
        .isEdited = true,
        .isFilter = true,
        .group = group,
        .label = label,
        .initial = initial,
        .command = command,
        .shortcut = shortcut,
        .option = name};
}

// "Rythm" is spelt like this on the unit, and "Higain" too.
constexpr std::array fields{
    PatchField{.key = "id"},
    PatchField{.key = "name", .text = &VelgorPatch::name, .isSeen = true, .isEdited = true},
    PatchField{.key = "hasUserIR",
        .flag = &VelgorPatch::hasUserIR,
        .isSeen = true,
        .isFilter = true,
        .group = Group::UserImpulseResponse,
        .label = QT_TRANSLATE_NOOP("PatchFlags", "User IR"),
        .initial = QT_TRANSLATE_NOOP("PatchFlags", "U"),
        .option = "user-ir",
        .filterToolTip = QT_TRANSLATE_NOOP("FilterFlags", "Show only patches with a user impulse response"),
        .filterHelp = QT_TRANSLATE_NOOP("CommandTable", "only patches with a user impulse response")},
    PatchField{.key = "comment", .text = &VelgorPatch::comment, .isSeen = true, .isEdited = true},
    PatchField{.key = "version", .text = &VelgorPatch::version, .isSeen = true},
    PatchField{.key = "date", .date = &VelgorPatch::date, .isSeen = true, .isEdited = true},
    mark("guitar", &VelgorPatch::guitar, Group::Instrument, QT_TRANSLATE_NOOP("PatchFlags", "Guitar"),
        QT_TRANSLATE_NOOP("PatchFlags", "G"), QT_TRANSLATE_NOOP("EditCommands", "&Guitar"), "Ctrl+1"),
    mark("bass", &VelgorPatch::bass, Group::Instrument, QT_TRANSLATE_NOOP("PatchFlags", "Bass"),
        QT_TRANSLATE_NOOP("PatchFlags", "B"), QT_TRANSLATE_NOOP("EditCommands", "&Bass"), "Ctrl+2"),
    mark("clean", &VelgorPatch::clean, Group::Style, QT_TRANSLATE_NOOP("PatchFlags", "Clean"),
        QT_TRANSLATE_NOOP("PatchFlags", "Cl"), QT_TRANSLATE_NOOP("EditCommands", "&Clean"), "Ctrl+5"),
    mark("crunch", &VelgorPatch::crunch, Group::Style, QT_TRANSLATE_NOOP("PatchFlags", "Crunch"),
        QT_TRANSLATE_NOOP("PatchFlags", "Cr"), QT_TRANSLATE_NOOP("EditCommands", "Cr&unch"), "Ctrl+6"),
    mark("drive", &VelgorPatch::drive, Group::Style, QT_TRANSLATE_NOOP("PatchFlags", "Drive"),
        QT_TRANSLATE_NOOP("PatchFlags", "D"), QT_TRANSLATE_NOOP("EditCommands", "&Drive"), "Ctrl+7"),
    mark("higain", &VelgorPatch::higain, Group::Style, QT_TRANSLATE_NOOP("PatchFlags", "Higain"),
        QT_TRANSLATE_NOOP("PatchFlags", "H"), QT_TRANSLATE_NOOP("EditCommands", "&Higain"), "Ctrl+8"),
    mark("rythm", &VelgorPatch::rythm, Group::Usage, QT_TRANSLATE_NOOP("PatchFlags", "Rythm"),
        QT_TRANSLATE_NOOP("PatchFlags", "R"), QT_TRANSLATE_NOOP("EditCommands", "&Rythm"), "Ctrl+3"),
    mark("solo", &VelgorPatch::solo, Group::Usage, QT_TRANSLATE_NOOP("PatchFlags", "Solo"),
        QT_TRANSLATE_NOOP("PatchFlags", "S"), QT_TRANSLATE_NOOP("EditCommands", "&Solo"), "Ctrl+4"),
    PatchField{.key = "empty", .flag = &VelgorPatch::empty},
};

} // namespace

PatchFields::Rows PatchFields::all()
{
    return fields;
}

bool PatchFields::areEqual(const VelgorPatch &a, const VelgorPatch &b, Rows rows)
{
    return std::all_of(rows.begin(), rows.end(), [&a, &b](const PatchField &field) {
        return !field.isSeen || (field.flag && a.*field.flag == b.*field.flag)
            || (field.text && a.*field.text == b.*field.text) || (field.date && a.*field.date == b.*field.date);
    });
}

void PatchFields::copyEdited(const VelgorPatch &from, VelgorPatch &to, Rows rows)
{
    for (const PatchField &field : rows) {
        if (field.isEdited && field.text) {
            to.*field.text = from.*field.text;
        } else if (field.isEdited && field.flag) {
            to.*field.flag = from.*field.flag;
        } else if (field.isEdited && field.date) {
            to.*field.date = from.*field.date;
        }
    }
}

// A patch itself does not know the table, which is made of its members.

void VelgorPatch::applyEdits(const VelgorPatch &edited)
{
    PatchFields::copyEdited(edited, *this);
}

bool VelgorPatch::operator==(const VelgorPatch &other) const
{
    return PatchFields::areEqual(*this, other);
}
