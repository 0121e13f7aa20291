#include "PatchPayload.h"

#include <QMimeData>

#include <memory>

QMimeData *PatchPayload::pack(const QList<TransferablePatch> &payloads)
{
    if (payloads.isEmpty()) {
        return nullptr;
    }
    auto data = std::make_unique<QMimeData>();
    data->setData(TransferablePatch::typeIdentifier(), TransferablePatch::encode(payloads));
    return data.release();
}

QList<TransferablePatch> PatchPayload::unpack(const QMimeData *data)
{
    if (!data || !data->hasFormat(TransferablePatch::typeIdentifier())) {
        return {};
    }
    return TransferablePatch::decodeAll(data->data(TransferablePatch::typeIdentifier()));
}
