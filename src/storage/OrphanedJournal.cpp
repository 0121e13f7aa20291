#include "OrphanedJournal.h"

#include "LibraryFileNames.h"
#include "LibraryPlace.h"

void OrphanedJournal::settle(const LibraryPlace &place)
{
    const Result<QByteArray> text = place.read(LibraryFileNames::journalFile());
    const auto journal = text ? LibraryJournal::decode(*text) : std::nullopt;
    const auto staged = journal ? journal->staged : QHash<quint64, QString>();
    for (auto patch = staged.cbegin(); patch != staged.cend(); ++patch) {
        if (const Result<VelgorPatch> found = place.patch(patch.value())) {
            std::ignore = place.move(patch.value(), LibraryFileNames::patchFile(found->name, patch.key()));
        }
    }
    if (text) {
        std::ignore = place.remove(LibraryFileNames::journalFile());
    }
}
