#include "NameWarning.h"

#include "Output.h"
#include "PatchName.h"
#include "UnreadableNames.h"

#include <QCoreApplication>

namespace {

/// The context of this file's texts.
struct Texts {
    Q_DECLARE_TR_FUNCTIONS(NameWarning)
};

} // namespace

void NameWarning::print(const QString &path, const SPresetFile &file)
{
    const UnreadableNames names(file);
    if (names.count() > 0) {
        Output::warn(
            Texts::tr("%1: these names are not valid UTF-8 and are shown as \"%2\"; their bytes are kept until the "
                      "patch is renamed: %3")
                .arg(path, PatchName::unreadable(), names.places()));
    }
}
