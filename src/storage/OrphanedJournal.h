#pragma once

#include <QString>

/// The journal of a library file that could not be decoded.
namespace OrphanedJournal {

/// The library file may have held what the journal speaks of: what the journal prepared becomes files without an
/// entry, which can be added, and what it wanted to remove stays. `directory` is a path without a slash at its end.
void settle(const QString &directory);

} // namespace OrphanedJournal
