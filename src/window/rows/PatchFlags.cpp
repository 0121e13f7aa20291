#include "PatchFlags.h"

#include <QCoreApplication>

#include <algorithm>
#include <iterator>

namespace {

using Tone = ToggleButton::Tone;

// "Rythm" is spelt like this on the unit, and "Higain" too.
constexpr ShownPatchFlag guitar{&VelgorPatch::guitar, QT_TRANSLATE_NOOP("PatchFlags", "Guitar"),
    QT_TRANSLATE_NOOP("PatchFlags", "G"), Tone::Instrument};
constexpr ShownPatchFlag bass{&VelgorPatch::bass, QT_TRANSLATE_NOOP("PatchFlags", "Bass"),
    QT_TRANSLATE_NOOP("PatchFlags", "B"), Tone::Instrument};
constexpr ShownPatchFlag rythm{
    &VelgorPatch::rythm, QT_TRANSLATE_NOOP("PatchFlags", "Rythm"), QT_TRANSLATE_NOOP("PatchFlags", "R"), Tone::Usage};
constexpr ShownPatchFlag solo{
    &VelgorPatch::solo, QT_TRANSLATE_NOOP("PatchFlags", "Solo"), QT_TRANSLATE_NOOP("PatchFlags", "S"), Tone::Usage};
constexpr ShownPatchFlag userIR{&VelgorPatch::hasUserIR, QT_TRANSLATE_NOOP("PatchFlags", "User IR"),
    QT_TRANSLATE_NOOP("PatchFlags", "U"), Tone::Accent};
constexpr ShownPatchFlag clean{
    &VelgorPatch::clean, QT_TRANSLATE_NOOP("PatchFlags", "Clean"), QT_TRANSLATE_NOOP("PatchFlags", "Cl"), Tone::Style};
constexpr ShownPatchFlag crunch{&VelgorPatch::crunch, QT_TRANSLATE_NOOP("PatchFlags", "Crunch"),
    QT_TRANSLATE_NOOP("PatchFlags", "Cr"), Tone::Style};
constexpr ShownPatchFlag drive{
    &VelgorPatch::drive, QT_TRANSLATE_NOOP("PatchFlags", "Drive"), QT_TRANSLATE_NOOP("PatchFlags", "D"), Tone::Style};
constexpr ShownPatchFlag higain{
    &VelgorPatch::higain, QT_TRANSLATE_NOOP("PatchFlags", "Higain"), QT_TRANSLATE_NOOP("PatchFlags", "H"), Tone::Style};

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

QString PatchFlags::initial(const ShownPatchFlag &shown)
{
    return QCoreApplication::translate("PatchFlags", shown.initial);
}

QList<ShownPatchFlag> PatchFlags::classification(const VelgorPatch &patch)
{
    QList<ShownPatchFlag> set;
    for (const auto &kind : {usage(), style()}) {
        std::copy_if(kind.begin(), kind.end(), std::back_inserter(set),
            [&patch](const ShownPatchFlag &shown) { return patch.*shown.flag; });
    }
    return set;
}
