#include "PatchFlags.h"

#include <QCoreApplication>

namespace {

using Tone = ToggleButton::Tone;

// "Rythm" is spelt like this on the unit, and "Higain" too.
constexpr ShownPatchFlag guitar{&VelgorPatch::guitar, QT_TRANSLATE_NOOP("PatchFlags", "Guitar"), Tone::Instrument};
constexpr ShownPatchFlag bass{&VelgorPatch::bass, QT_TRANSLATE_NOOP("PatchFlags", "Bass"), Tone::Instrument};
constexpr ShownPatchFlag rythm{&VelgorPatch::rythm, QT_TRANSLATE_NOOP("PatchFlags", "Rythm"), Tone::Usage};
constexpr ShownPatchFlag solo{&VelgorPatch::solo, QT_TRANSLATE_NOOP("PatchFlags", "Solo"), Tone::Usage};
constexpr ShownPatchFlag userIR{&VelgorPatch::hasUserIR, QT_TRANSLATE_NOOP("PatchFlags", "User IR"), Tone::Accent};
constexpr ShownPatchFlag clean{&VelgorPatch::clean, QT_TRANSLATE_NOOP("PatchFlags", "Clean"), Tone::Style};
constexpr ShownPatchFlag crunch{&VelgorPatch::crunch, QT_TRANSLATE_NOOP("PatchFlags", "Crunch"), Tone::Style};
constexpr ShownPatchFlag drive{&VelgorPatch::drive, QT_TRANSLATE_NOOP("PatchFlags", "Drive"), Tone::Style};
constexpr ShownPatchFlag higain{&VelgorPatch::higain, QT_TRANSLATE_NOOP("PatchFlags", "Higain"), Tone::Style};

} // namespace

const std::array<ShownPatchFlag, 4> &PatchFlags::usage()
{
    static constexpr std::array flags{guitar, bass, rythm, solo};
    return flags;
}

const std::array<ShownPatchFlag, 4> &PatchFlags::style()
{
    static constexpr std::array flags{clean, crunch, drive, higain};
    return flags;
}

const std::array<ShownPatchFlag, 9> &PatchFlags::inFilter()
{
    static constexpr std::array flags{guitar, bass, rythm, solo, userIR, clean, crunch, drive, higain};
    return flags;
}

QString PatchFlags::label(const ShownPatchFlag &shown)
{
    return QCoreApplication::translate("PatchFlags", shown.label);
}
