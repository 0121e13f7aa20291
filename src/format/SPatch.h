#pragma once

#include <QByteArray>
#include <QString>

#include <array>
#include <optional>

/// One patch block of a preset file. `sep`, `sep2` and `data` are opaque and kept as read.
struct SPatch {
    static constexpr qint64 sizeFieldEnd = 8; ///< tag and size: the bytes that `size` does not count
    static constexpr quint32 fixedSize = 20; ///< the part of `size` that is not `data`

    std::array<char, 4> mrap{}; ///< tag, not checked
    quint32 size = 0; ///< bytes after this field: 20 and the bytes of `data`
    quint8 sep = 0;
    quint16 pos = 0; ///< position in the file's list, from 0; rewritten on export
    quint8 sep2 = 0;
    QString name; ///< "_error_" when the bytes of its field are not valid UTF-8
    QByteArray data;
    qint64 length = 0; ///< bytes taken in the file: `size` + 8
    QByteArray unreadableName; ///< the name's field as it stands in the file when it is no text; else empty

    /// Reads the patch block at `dataOffset`. Prints a line and gives nothing when the block has no data bytes
    /// (`size` of 20 or less) or is longer than what remains.
    [[nodiscard]] static std::optional<SPatch> fromData(const QByteArray &data, qint64 dataOffset);

    /// The bytes of the name's field, as a file gets them. Nothing is cut; see PatchName::encodeField().
    [[nodiscard]] QByteArray nameField() const;
    /// Gives the record a name, cut to what fits its field. The name that it has changes no byte of the field, not
    /// even of one that is no text.
    void rename(const QString &newName);

    /// Content hash. `overrideName` takes the place of the name. The position and the separators do not count, so
    /// that a patch hashes the same wherever it stands.
    [[nodiscard]] quint64 simpleHash(const std::optional<QString> &overrideName = std::nullopt) const;

    bool operator==(const SPatch &) const = default;
};
