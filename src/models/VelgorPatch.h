#pragma once

#include "PresetRecords.h"
#include "ReferenceDate.h"

#include <QString>

#include <optional>

/// One patch as the library knows it: its preset records, the user's classification, and its identity.
/// A value: copies are independent, and cheap because texts and bytes are shared until changed.
class VelgorPatch {
public:
    /// A patch without preset data, with a random id and the date of now.
    VelgorPatch(const QString &shownName, bool userIR);
    /// A patch from a preset file; its id is the hash of its content, name included.
    VelgorPatch(const SPatch &patch, const SUserIR &userIR, const SHeaderDesc &header);
    /// A patch of a stored library, whose fields and preset data are filled in by whoever loads it.
    explicit VelgorPatch(quint64 id);

    /// A copy under a new name. Its id is the hash under that name; a patch without preset data keeps its name
    /// and gets a random id. Everything else, the date included, is the source's.
    [[nodiscard]] static VelgorPatch copyNamed(const VelgorPatch &from, const QString &newName);
    /// Takes over what the user edits: name, comment, classification and date. Preset data and all that comes from it
    /// stay, the name in the record included.
    void applyEdits(const VelgorPatch &edited);

    /// The same patch under another id.
    [[nodiscard]] VelgorPatch withId(quint64 id) const &;
    [[nodiscard]] VelgorPatch withId(quint64 id) &&;

    /// Key of the library, of selections, of the remembered order and of drags.
    [[nodiscard]] quint64 id() const { return m_id; }

    QString name;
    bool hasUserIR = false;
    QString comment;
    QString version; ///< firmware version text; "!NONE" without preset data, "xxxxx" when it is not valid UTF-8
    ReferenceDate date; ///< when the patch was imported
    bool guitar = false;
    bool bass = false;
    bool clean = false;
    bool crunch = false;
    bool drive = false;
    bool higain = false;
    bool rythm = false;
    bool solo = false;
    bool empty = false; ///< stands for an empty place rather than for a sound

    std::optional<PresetRecords> records; ///< absent while a library entry waits for its file, and in what is empty

    /// Content hash of preset records, with `overrideName` in place of the name where given.
    [[nodiscard]] static quint64 staticSimpleHash(
        const SPatch &patch, const SUserIR &userIR, const std::optional<QString> &overrideName = std::nullopt);
    /// The same of a patch; a random number without one and without preset data.
    [[nodiscard]] static quint64 staticSimpleHash(
        const std::optional<VelgorPatch> &patch, const std::optional<QString> &overrideName = std::nullopt);
    /// The content hash without the name: equal for the same sound under any name. Absent without preset data.
    [[nodiscard]] std::optional<quint64> soundHash() const;

    /// Compares what the user sees: not the id, not `empty`, not the preset data.
    bool operator==(const VelgorPatch &other) const;

private:
    quint64 m_id;
};

/// Every member is, so that lists move patches as plain bytes.
Q_DECLARE_TYPEINFO(VelgorPatch, Q_RELOCATABLE_TYPE);
