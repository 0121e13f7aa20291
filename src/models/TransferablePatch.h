#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QUuid>

#include <optional>

struct VelgorContentPatch;
class VelgorPatch;

/// What travels with a drag: enough for the drop to find the patch again, not the patch itself.
struct TransferablePatch {
    enum Origin { fromContent = 0, fromLibrary = 1 };

    std::optional<QUuid> cid; ///< the slot that the drag started from; absent when it started in the library
    quint64 id = 0; ///< the patch id
    QString name;
    qint64 origin = fromContent;

    [[nodiscard]] static TransferablePatch ofSlot(const VelgorContentPatch &slot);
    [[nodiscard]] static TransferablePatch ofLibraryPatch(const VelgorPatch &patch);

    /// Type under which the payload is offered to drag and drop.
    [[nodiscard]] static QString typeIdentifier();
    /// The payload as a JSON object.
    [[nodiscard]] QByteArray encode() const;
    /// Nothing when the text is no such object or a required key is missing.
    [[nodiscard]] static std::optional<TransferablePatch> decode(const QByteArray &json);

    /// Several payloads of one drag: the object of a single one, otherwise a JSON array of them.
    [[nodiscard]] static QByteArray encode(const QList<TransferablePatch> &payloads);
    /// Empty when any of them cannot be read.
    [[nodiscard]] static QList<TransferablePatch> decodeAll(const QByteArray &json);

    bool operator==(const TransferablePatch &) const = default;
};
