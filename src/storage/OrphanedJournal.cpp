#include "OrphanedJournal.h"

#include "DiskFiles.h"
#include "LibraryFileNames.h"
#include "LibraryJournal.h"
#include "SPresetFile.h"

void OrphanedJournal::settle(const QString &directory)
{
    const auto pathOf = [&directory](const QString &name) { return directory + u'/' + name; };
    const QString path = pathOf(LibraryFileNames::journalFile());
    const FileReadResult file = DiskFiles::readRegular(path, DiskFiles::Links::Refuse);
    const auto journal = file.bytes ? LibraryJournal::decode(*file.bytes) : std::nullopt;
    const auto staged = journal ? journal->staged : QHash<quint64, QString>();
    for (auto patch = staged.cbegin(); patch != staged.cend(); ++patch) {
        const FileReadResult bytes = DiskFiles::readRegular(pathOf(patch.value()), DiskFiles::Links::Refuse);
        const auto presets = bytes.bytes ? SPresetFile::fromData(*bytes.bytes) : std::nullopt;
        if (presets && presets->patches.size() == 1) {
            const QString name = LibraryFileNames::patchFile(presets->patches.first().name, patch.key());
            std::ignore = DiskFiles::move(pathOf(patch.value()), pathOf(name));
        }
    }
    if (file.bytes) {
        std::ignore = DiskFiles::remove(path);
    }
}
