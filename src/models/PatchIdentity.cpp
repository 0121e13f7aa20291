#include "PatchIdentity.h"

#include "VelgorPatch.h"

#include <QByteArrayView>
#include <QCryptographicHash>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <limits>
#include <optional>

namespace {

/// Without a walk through bytes that the two share, as copies of a patch do.
bool isEqual(QByteArrayView a, QByteArrayView b)
{
    return a.size() == b.size() && (a.data() == b.data() || a == b);
}

/// Without the number, which an export rewrites.
QByteArrayView responseOf(const SUserIR &userIR)
{
    const QByteArrayView data(userIR.data);
    return data.sliced(std::min<qsizetype>(SUserIR::numberSize, data.size()));
}

/// The name's field in the file of a patch.
QByteArray nameFieldOf(const VelgorPatch &patch)
{
    SPatch record;
    record.name = patch.records->patchData.name;
    record.unreadableName = patch.records->patchData.unreadableName;
    record.rename(record.name);
    return record.nameField();
}

bool hasSameNameField(const VelgorPatch &a, const VelgorPatch &b)
{
    const bool isTextAlike = a.records->patchData.name == b.records->patchData.name
        && a.records->patchData.unreadableName == b.records->patchData.unreadableName;
    return isTextAlike || nameFieldOf(a) == nameFieldOf(b);
}

void add(QCryptographicHash &hash, quint32 number)
{
    std::array<char, sizeof number> bytes{};
    qToLittleEndian(number, bytes.data());
    hash.addData(QByteArrayView(bytes));
}

/// Copies once got their number behind the longest name, so that the record holds a part of it at most.
bool givesIdUnderLongerName(const VelgorPatch &patch, quint64 id)
{
    constexpr int mostCopies = 99;
    const auto gives = [&](const QString &ending) {
        return VelgorPatch::staticSimpleHash(patch, patch.records->patchData.name + ending) == id;
    };
    for (int number = 0; number <= mostCopies; ++number) {
        const QString digits = QString::number(number);
        if (gives(digits) || gives(u'-' + digits)) {
            return true;
        }
    }
    return false;
}

/// The library file held the hash as another patch's id, perhaps several times.
bool givesIdBesideOthers(const VelgorPatch &patch, quint64 id)
{
    constexpr int mostTimes = 99;
    quint64 beside = VelgorPatch::staticSimpleHash(patch);
    for (int times = 0; times < mostTimes && beside != id; ++times) {
        beside = PatchIdentity::idBeside(beside);
    }
    return beside == id;
}

} // namespace

namespace PatchIdentity {

bool isSameSound(const VelgorPatch &a, const VelgorPatch &b)
{
    if (!a.records || !b.records) {
        return false;
    }
    const auto &[patch, userIR, header] = *a.records;
    const auto &[otherPatch, otherUserIR, otherHeader] = *b.records;
    return patch.mrap == otherPatch.mrap && patch.size == otherPatch.size && userIR.size == otherUserIR.size
        && isEqual(patch.data, otherPatch.data) && isEqual(responseOf(userIR), responseOf(otherUserIR));
}

bool isSameContent(const VelgorPatch &a, const VelgorPatch &b)
{
    if (!a.records || !b.records) {
        return a.id() == b.id();
    }
    return isSameSound(a, b) && hasSameNameField(a, b);
}

bool isSame(const VelgorPatch &a, const VelgorPatch &b)
{
    return a.id() == b.id() && isSameContent(a, b);
}

quint64 freshId(const VelgorPatch &patch, quint32 attempt)
{
    // Libraries on disk hold these values, so the order and the widths never change.
    QCryptographicHash hash(QCryptographicHash::Sha256);
    add(hash, attempt);
    if (patch.records) {
        hash.addData(nameFieldOf(patch));
        hash.addData(QByteArrayView(patch.records->patchData.mrap));
        add(hash, patch.records->patchData.size);
        hash.addData(patch.records->patchData.data);
        add(hash, patch.records->userIRData.size);
        hash.addData(responseOf(patch.records->userIRData));
    } else {
        add(hash, 0);
    }
    return qFromLittleEndian<quint64>(hash.result().constData());
}

bool givesId(const VelgorPatch &patch, quint64 id, quint32 attempts)
{
    bool isGiven = patch.records && VelgorPatch::staticSimpleHash(patch) == id;
    for (quint32 attempt = 1; patch.records && !isGiven && attempt <= attempts; ++attempt) {
        isGiven = freshId(patch, attempt) == id;
    }
    return isGiven;
}

quint64 idBeside(quint64 id)
{
    // The finaliser of the SplitMix64 generator.
    id += 0x9e3779b97f4a7c15;
    id = (id ^ (id >> 30)) * 0xbf58476d1ce4e5b9;
    id = (id ^ (id >> 27)) * 0x94d049bb133111eb;
    return (id ^ (id >> 31)) & std::numeric_limits<qint64>::max();
}

bool mayHaveId(const VelgorPatch &patch, quint64 id, const QString &shownName)
{
    // Copies that are renamed, one after the other, take one fresh id each.
    constexpr quint32 freshIds = 99;
    return patch.records
        && (VelgorPatch::staticSimpleHash(patch, shownName) == id || givesIdBesideOthers(patch, id)
            || givesIdUnderLongerName(patch, id) || givesId(patch, id, freshIds));
}

Place placeOf(const VelgorPatch &patch, const Holder &holder)
{
    std::optional<quint64> free;
    const auto isHeldUnder = [&](quint64 id) {
        const VelgorPatch *held = holder(id);
        if (!held && !free) {
            free = id;
        }
        return held && isSameContent(*held, patch);
    };
    if (isHeldUnder(patch.id()) || (!patch.records && !free)) {
        return {.id = patch.id(), .isKnown = true};
    }
    if (!patch.records) {
        return {.id = patch.id(), .isKnown = false};
    }
    const quint64 hash = VelgorPatch::staticSimpleHash(patch);
    if (hash != patch.id() && isHeldUnder(hash)) {
        return {.id = hash, .isKnown = true};
    }
    for (quint32 attempt = 1;; ++attempt) {
        const quint64 id = freshId(patch, attempt);
        const VelgorPatch *held = holder(id);
        if (held && isSameContent(*held, patch)) {
            return {.id = id, .isKnown = true};
        }
        if (!held) {
            return {.id = free.value_or(id), .isKnown = false};
        }
    }
}

} // namespace PatchIdentity
