#include "Diagnostics.h"
#include "LibraryJournal.h"
#include "TemporaryFiles.h"

#include <cstdint>

namespace {

void require(bool condition, const char *what)
{
    if (!condition) {
        Diagnostics::fatalStop(what);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto journal = LibraryJournal::decode(
        QByteArray::fromRawData(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)));
    if (!journal) {
        return 0;
    }
    for (const QString &name : journal->staged) {
        require(name.startsWith(TemporaryFiles::prefix()), "a file that is none of a save's is moved");
        require(!name.contains(u'/') && !name.contains(QChar(u'\0')), "a journal leads out of the directory");
    }
    require(LibraryJournal::decode(journal->encode()) == journal, "a journal comes back changed");
    return 0;
}
