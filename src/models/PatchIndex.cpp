#include "PatchIndex.h"

#include "PatchIdentity.h"

namespace {

const CaselessTexts &madeOnce(
    std::optional<CaselessTexts> &texts, const QList<VelgorPatch> &patches, QString VelgorPatch::*text)
{
    if (!texts) {
        texts.emplace();
        texts->reserve(patches.size());
        for (const VelgorPatch &patch : patches) {
            texts->append(patch.*text);
        }
    }
    return *texts;
}

qint64 powerOfTen(int exponent)
{
    return exponent == 0 ? 1 : 10 * powerOfTen(exponent - 1);
}

} // namespace

qsizetype PatchIndex::positionOf(quint64 id, const QList<VelgorPatch> &patches)
{
    if (!m_positions) {
        m_positions.emplace();
        m_positions->reserve(patches.size());
        for (qsizetype row = patches.size(); row-- > 0;) {
            m_positions->insert(patches.at(row).id(), row);
        }
    }
    return m_positions->value(id, -1);
}

bool PatchIndex::containsName(const QString &name, const QList<VelgorPatch> &patches)
{
    if (!m_nameCounts) {
        m_nameCounts.emplace();
        m_nameCounts->reserve(patches.size());
        for (const VelgorPatch &patch : patches) {
            ++(*m_nameCounts)[patch.name];
        }
    }
    return m_nameCounts->value(name, 0) > 0;
}

std::optional<qint64> PatchIndex::freeNumber(const QString &stem, int digits, const QList<VelgorPatch> &patches)
{
    const std::pair key(stem, digits);
    qint64 number = m_lowestFree.value(key, powerOfTen(digits - 1));
    const qint64 end = powerOfTen(digits);
    while (number < end && containsName(stem + QString::number(number), patches)) {
        ++number;
    }
    m_lowestFree.insert(key, number);
    return number < end ? std::optional(number) : std::nullopt;
}

const CaselessTexts &PatchIndex::names(const QList<VelgorPatch> &patches)
{
    return madeOnce(m_names, patches, &VelgorPatch::name);
}

const CaselessTexts &PatchIndex::comments(const QList<VelgorPatch> &patches)
{
    return madeOnce(m_comments, patches, &VelgorPatch::comment);
}

const PatchIndex::SoundHashes &PatchIndex::soundHashes(const QList<VelgorPatch> &patches)
{
    if (!m_soundHashes) {
        m_soundHashes.emplace();
        m_soundHashes->reserve(patches.size());
        for (const VelgorPatch &patch : patches) {
            m_soundHashes->append(patch.soundHash());
        }
    }
    return *m_soundHashes;
}

QList<quint64> PatchIndex::otherIds(quint64 contentHash, const QList<VelgorPatch> &patches)
{
    if (!m_otherIds) {
        m_otherIds.emplace();
        for (const VelgorPatch &patch : patches) {
            noteOtherId(patch);
        }
    }
    return m_otherIds->values(contentHash);
}

void PatchIndex::noteOtherId(const VelgorPatch &patch)
{
    if (patch.records && !PatchIdentity::givesId(patch, patch.id())) {
        m_otherIds->insert(VelgorPatch::staticSimpleHash(patch), patch.id());
    }
}

void PatchIndex::appended(const VelgorPatch &patch, qsizetype position)
{
    if (m_positions && !m_positions->contains(patch.id())) {
        m_positions->insert(patch.id(), position);
    }
    if (m_nameCounts) {
        ++(*m_nameCounts)[patch.name];
    }
    if (m_names) {
        m_names->append(patch.name);
    }
    if (m_comments) {
        m_comments->append(patch.comment);
    }
    if (m_soundHashes) {
        m_soundHashes->append(patch.soundHash());
    }
    if (m_otherIds) {
        noteOtherId(patch);
    }
}

void PatchIndex::changed(qsizetype row, const VelgorPatch &before, const VelgorPatch &after)
{
    if (before.name != after.name) {
        m_lowestFree.clear();
        if (m_nameCounts) {
            --(*m_nameCounts)[before.name];
            ++(*m_nameCounts)[after.name];
        }
        if (m_names) {
            m_names->replace(row, after.name);
        }
    }
    if (m_comments && before.comment != after.comment) {
        m_comments->replace(row, after.comment);
    }
    if (before.records != after.records) {
        presetDataReplaced(row, after);
    }
}

void PatchIndex::presetDataReplaced(qsizetype row, const VelgorPatch &after)
{
    m_otherIds.reset();
    if (m_soundHashes) {
        (*m_soundHashes)[row] = after.soundHash();
    }
}

void PatchIndex::removed(const QList<qsizetype> &ascendingRows)
{
    m_nameCounts.reset();
    m_lowestFree.clear();
    moveRows([&](auto &values) { values.remove(ascendingRows); });
}

void PatchIndex::reordered(const QList<qsizetype> &formerRows)
{
    moveRows([&](auto &values) { values.reorder(formerRows); });
}

void PatchIndex::moved(qsizetype from, qsizetype to)
{
    moveRows([&](auto &values) { values.move(from, to); });
}

template <typename Move>
void PatchIndex::moveRows(Move move)
{
    m_positions.reset();
    const auto moveIn = [&](auto &values) {
        if (values) {
            move(*values);
        }
    };
    moveIn(m_names);
    moveIn(m_comments);
    moveIn(m_soundHashes);
}
