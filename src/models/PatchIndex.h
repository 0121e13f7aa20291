#pragma once

#include "CaselessTexts.h"
#include "VelgorPatch.h"

#include <QHash>
#include <QList>

#include <optional>
#include <utility>

/// Answers questions about a list of patches without walking through it, or without working on every patch anew.
///
/// It copies what it needs, each part lazily: the first question that needs a part makes it in one pass. The owner of
/// the list reports every change, which the parts that are made follow. Every question takes the list as it is now.
class PatchIndex {
public:
    using SoundHashes = RowValues<std::optional<quint64>>;

    /// Position of the first patch with this id in `patches`, or -1.
    [[nodiscard]] qsizetype positionOf(quint64 id, const QList<VelgorPatch> &patches);
    [[nodiscard]] bool containsName(const QString &name, const QList<VelgorPatch> &patches);
    /// The lowest number with that many digits, from 1 on, that makes a name of no patch when put behind `stem`.
    [[nodiscard]] std::optional<qint64> freeNumber(const QString &stem, int digits, const QList<VelgorPatch> &patches);
    /// By row. The references are good until the next change of the list.
    [[nodiscard]] const CaselessTexts &names(const QList<VelgorPatch> &patches);
    [[nodiscard]] const CaselessTexts &comments(const QList<VelgorPatch> &patches);
    [[nodiscard]] const SoundHashes &soundHashes(const QList<VelgorPatch> &patches);
    /// The ids of patches whose content has this hash and gives another id than they have; such ids are
    /// found in no other way. An id may name nothing any more.
    [[nodiscard]] QList<quint64> otherIds(quint64 contentHash, const QList<VelgorPatch> &patches);

    /// `patch` was added behind the last one and now stands at `position`.
    void appended(const VelgorPatch &patch, qsizetype position);
    /// The patch at `row` changed in anything but its id.
    void changed(qsizetype row, const VelgorPatch &before, const VelgorPatch &after);
    /// The patch at `row` got other preset data, and nothing else changed.
    void presetDataReplaced(qsizetype row, const VelgorPatch &after);
    void removed(const QList<qsizetype> &ascendingRows);
    /// formerRows holds, for each row, the row that its patch had before.
    void reordered(const QList<qsizetype> &formerRows);
    /// One patch moved; `to` is the row that it has now.
    void moved(qsizetype from, qsizetype to);
    /// Anything may have changed.
    void invalidate() { *this = PatchIndex(); }

private:
    void noteOtherId(const VelgorPatch &patch);
    template <typename Move>
    void moveRows(Move move);

    std::optional<QHash<quint64, qsizetype>> m_positions;
    std::optional<QHash<QString, int>> m_nameCounts;
    /// By stem and digits, a number below which every one is taken. True as long as no name goes.
    QHash<std::pair<QString, int>, qint64> m_lowestFree;
    std::optional<CaselessTexts> m_names;
    std::optional<CaselessTexts> m_comments;
    std::optional<SoundHashes> m_soundHashes;
    std::optional<QMultiHash<quint64, quint64>> m_otherIds; ///< by the hash of the content
};
