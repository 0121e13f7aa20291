#pragma once

#include "VelgorPatch.h"

#include <span>

/// One field of a patch, with all that files, the command line and the window have to know of it.
struct PatchField {
    /// What a flag is about, in the order in which flags stand on the screen; each group has a colour of its own there.
    enum class Group { None, Instrument, Usage, UserImpulseResponse, Style };

    const char *key = nullptr; ///< in the library file
    /// The member that holds it: one of the three, and none for the id.
    QString VelgorPatch::*text = nullptr;
    bool VelgorPatch::*flag = nullptr;
    ReferenceDate VelgorPatch::*date = nullptr;
    /// Gives a patch its value where a library file does not have the key. Where this is missing the key is required: a
    /// file without it is none.
    void (*setMissing)(VelgorPatch &patch) = nullptr;

    bool isSeen = false; ///< patches that differ in it are different ones for the user
    bool isEdited = false; ///< goes along with what the user edits
    bool isFilter = false; ///< a flag that the filter can ask for

    Group group = Group::None; ///< of a flag
    /// What stands for a flag where the user sees it: untranslated, and in the context "PatchFlags".
    const char *label = nullptr;
    const char *initial = nullptr; ///< one letter, or two where one would not do, where the label has no room
    const char *command = nullptr; ///< of a flag that the user sets: untranslated, and in the context "EditCommands"
    const char *shortcut = nullptr; ///< of that command; nullptr for none
    const char *option = nullptr; ///< of the command line, without dashes
    /// What asking for the flag means, where it is no mark: untranslated, in the contexts "FilterFlags" and
    /// "CommandTable".
    const char *filterToolTip = nullptr;
    const char *filterHelp = nullptr;

    /// A flag that the user sets and clears.
    [[nodiscard]] bool isMark() const { return flag && isEdited; }
};

/// Every field, each once. Who reads, writes, compares, asks for or shows fields goes by these rows.
namespace PatchFields {

using Rows = std::span<const PatchField>;

/// In the order in which they are written.
[[nodiscard]] Rows all();

/// Equal in what the user sees.
[[nodiscard]] bool areEqual(const VelgorPatch &a, const VelgorPatch &b, Rows rows = all());
void copyEdited(const VelgorPatch &from, VelgorPatch &to, Rows rows = all());

} // namespace PatchFields
