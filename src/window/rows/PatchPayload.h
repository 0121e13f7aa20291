#pragma once

#include "TransferablePatch.h"

#include <QList>

class QMimeData;

/// The payloads of a drag, in and out of what drag and drop carries.
namespace PatchPayload {

/// Nullptr for no payload. The caller owns the result.
[[nodiscard]] QMimeData *pack(const QList<TransferablePatch> &payloads);
/// Empty for anything that is no payload of ours.
[[nodiscard]] QList<TransferablePatch> unpack(const QMimeData *data);

} // namespace PatchPayload
