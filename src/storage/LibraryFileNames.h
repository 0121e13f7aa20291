#pragma once

#include <QDateTime>
#include <QString>
#include <QUrl>
#include <QVarLengthArray>

#include <optional>

/// What the files of a library directory are called.
namespace LibraryFileNames {

/// The library file, the complete copy that stands beside it while it is rewritten, and the lock.
[[nodiscard]] QString libraryFile();
[[nodiscard]] QString libraryCopy();
[[nodiscard]] QString lockFile();
/// What a save is about to do to patch files.
[[nodiscard]] QString journalFile();
/// What taking over the lock of a program that died leaves, when it is itself interrupted.
[[nodiscard]] QString lockRemovalFile();
/// The file with which a new directory is tested, beside it; and what stands in it.
[[nodiscard]] QString writeTestFile(const QString &directory);
[[nodiscard]] QByteArray writeTestText();

/// Where an old library file is kept: a name of its own for each `attempt` within the present second.
[[nodiscard]] QString datedCopy(int attempt);
[[nodiscard]] bool isDatedCopy(const QString &name);
/// When a dated copy was made, in UTC.
[[nodiscard]] QDateTime dateOfCopy(const QString &name);
/// Where a patch file that cannot be read is set aside: a name without the id between dots.
[[nodiscard]] QString damagedFile(quint64 patchID, int attempt);
[[nodiscard]] bool isDamagedFile(const QString &name);
/// True for every file that belongs to the library as a whole and never to one patch.
[[nodiscard]] bool isReserved(const QString &name);

/// The file of a patch: "lib-", its name with "/" as "$", its id, ".prst". NUL characters are left out, and a name
/// too long for a file system is shortened, which the id makes harmless.
[[nodiscard]] QString patchFile(const QString &patchName, quint64 patchID);
/// The id for which this is the name of a patch file.
[[nodiscard]] std::optional<quint64> patchFileId(const QString &name);
/// The patch name in the name of a patch file: with "$" for "/", and as much of it as a file name holds.
[[nodiscard]] QString patchNameIn(const QString &fileName);
/// Nearly every path holds one.
using PathIds = QVarLengthArray<quint64, 1>;
/// Every number between two dots of a path, as ids are written: decimal, without leading zeros, within 64 bits.
[[nodiscard]] PathIds idsIn(const QString &path);

/// A path as it is shown in printed lines: a file address.
[[nodiscard]] QString address(const QString &path);

} // namespace LibraryFileNames
