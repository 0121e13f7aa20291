#pragma once

#include <QtGlobal>

#include <functional>

class VelgorPatch;

/// Which patches are one and the same. An id is short and made by exclusive-or, so that different patches often have
/// the same one: equal ids are where the comparison begins, and the bytes decide.
///
/// What counts is what the content hash reads: tag, size, name and data of the patch record, size and response of the
/// user impulse response. The place in a list and its numbers do not, nor does what the user said about the patch.
namespace PatchIdentity {

/// The same bytes under whatever name. Two patches without preset data have nothing in common.
[[nodiscard]] bool isSameSound(const VelgorPatch &a, const VelgorPatch &b);
/// The same bytes, and the same name in the record, whatever the ids and the names that the user sees. Names are
/// compared as a file holds them, cut to their field. Without preset data of both, equal ids have to do.
[[nodiscard]] bool isSameContent(const VelgorPatch &a, const VelgorPatch &b);
/// Equal ids and the same content.
[[nodiscard]] bool isSame(const VelgorPatch &a, const VelgorPatch &b);

/// An id for a patch whose own one is taken: worked out from its content alone, with the same result on every machine.
/// `attempt` counts from 1; the second is for the case that the first is taken by yet another patch.
[[nodiscard]] quint64 freshId(const VelgorPatch &patch, quint32 attempt);
/// What a patch gets whose id stands in a library file already, for another one. Spread over 63 bits like any other id.
[[nodiscard]] quint64 idBeside(quint64 id);
/// The id is one that this content gives: its hash, or one of its first fresh ones.
[[nodiscard]] bool givesId(const VelgorPatch &patch, quint64 id, quint32 attempts = 1);

/// The id is one that this patch may have got: one that its content gives, its hash under the name `shownName`, or its
/// hash under a copy's name that was too long for the record, or what a library file made of its hash that held it
/// twice. Anything else is the id of a different patch, or was not made by this program.
[[nodiscard]] bool mayHaveId(const VelgorPatch &patch, quint64 id, const QString &shownName);

/// Where a patch belongs among others.
struct Place {
    quint64 id; ///< of the same patch among them, or one that is free there
    bool isKnown; ///< the same patch is there
};
/// The patch that stands under an id, or nullptr.
using Holder = std::function<const VelgorPatch *(quint64 id)>;

/// Looks for the patch under its id, under its content's hash and under its fresh ids. It keeps its id where that is
/// free. A patch without preset data is known when anything has its id.
[[nodiscard]] Place placeOf(const VelgorPatch &patch, const Holder &holder);

} // namespace PatchIdentity
