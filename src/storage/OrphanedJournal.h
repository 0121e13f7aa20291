#pragma once

class LibraryPlace;

/// The journal of a library file that could not be decoded.
namespace OrphanedJournal {

/// The library file may have held what the journal speaks of: what the journal prepared becomes files without an
/// entry, which can be added, and what it wanted to remove stays.
void settle(const LibraryPlace &place);

} // namespace OrphanedJournal
