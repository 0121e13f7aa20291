#pragma once

#include "PatchIdentity.h"
#include "TestPatches.h"
#include "Utf8Text.h"
#include "VelgorLibrary.h"

#include <algorithm>

/// What the library does, written as plainly as possible: no index, no lazy order.
struct PlainLibrary {
    QList<VelgorPatch> patches;
    QList<quint64> order;
    std::optional<quint64> defaultPatch;
    int step = 0;

    qsizetype positionOf(quint64 id) const { return TestPatches::ids(patches).indexOf(id); }

    void saveOrder()
    {
        if (!patches.isEmpty()) {
            order = TestPatches::ids(patches);
        }
    }

    /// The row of the very patch: by one of the ids that it may have, or else the first that holds the same.
    qsizetype knownRow(const VelgorPatch &patch) const
    {
        if (!patch.records) {
            return positionOf(patch.id());
        }
        const auto isSame = [&patch](const VelgorPatch &held) {
            return held.records ? held.records->patchData.name == patch.records->patchData.name
                    && held.records->patchData.data == patch.records->patchData.data
                                : held.id() == patch.id();
        };
        QList<quint64> ids{patch.id(), VelgorPatch::staticSimpleHash(patch), PatchIdentity::freshId(patch, 1)};
        for (quint32 attempt = 2; positionOf(ids.last()) >= 0; ++attempt) {
            ids.append(PatchIdentity::freshId(patch, attempt));
        }
        for (const quint64 id : ids) {
            const qsizetype at = positionOf(id);
            if (at >= 0 && isSame(patches.at(at))) {
                return at;
            }
        }
        const auto other = std::find_if(patches.begin(), patches.end(), isSame);
        return other == patches.end() ? -1 : other - patches.begin();
    }

    quint64 freeId(const VelgorPatch &patch) const
    {
        quint64 id = patch.id();
        if (positionOf(id) >= 0 && patch.records) {
            id = VelgorPatch::staticSimpleHash(patch);
        }
        for (quint32 attempt = 1; positionOf(id) >= 0; ++attempt) {
            id = PatchIdentity::freshId(patch, attempt);
        }
        return id;
    }

    qsizetype rowFor(const VelgorPatch &patch, std::optional<quint64> synonym) const
    {
        const qsizetype at = synonym ? positionOf(*synonym) : -1;
        return at < 0 ? knownRow(patch) : at;
    }

    void append(
        const VelgorPatch &patch, bool duplicate, bool replace, qsizetype location, std::optional<quint64> synonym)
    {
        const qsizetype at = rowFor(patch, synonym);
        if (at < 0) {
            const VelgorPatch placed = patch.withId(freeId(patch));
            patches.insert(location < 0 || location > patches.size() ? patches.size() : location, placed);
        } else if (duplicate) {
            // The copy's id may be random: the caller takes the copy over from the library and checks it.
        } else if (replace) {
            patches[at].records = patch.records;
        }
        saveOrder();
    }

    QString newNameFor(const QString &name) const
    {
        const QStringList names = TestPatches::names(patches);
        for (int number = 1;; ++number) {
            const QString digits = QString::number(number);
            const QString candidate = Utf8Text::longestPrefixWithin(name, 15 - digits.size()) + u'-' + digits;
            if (!names.contains(candidate)) {
                return candidate;
            }
        }
    }

    MultiSelections similarTo(quint64 id) const
    {
        MultiSelections result;
        const qsizetype at = positionOf(id);
        for (qsizetype row = 0; at >= 0 && row < patches.size(); ++row) {
            const auto sound = patches.at(row).soundHash();
            result.multiSelections[patches.at(row).id()] = row == at || (sound && sound == patches.at(at).soundHash());
        }
        return result;
    }

    void remove(const QList<quint64> &ids)
    {
        patches.removeIf([&ids](const VelgorPatch &patch) { return ids.contains(patch.id()); });
        if (defaultPatch && ids.contains(*defaultPatch)) {
            defaultPatch.reset();
        }
        saveOrder();
    }

    void sort()
    {
        const auto key = [](const VelgorPatch &patch) { return patch.name.toLower().toUcs4(); };
        const auto place = [this](const VelgorPatch &patch) {
            const qsizetype at = order.indexOf(patch.id());
            return at < 0 ? patches.size() : at;
        };
        std::stable_sort(patches.begin(), patches.end(), [&](const VelgorPatch &a, const VelgorPatch &b) {
            return step == 0 ? key(a) < key(b) : step == 1 ? place(a) < place(b) : key(b) < key(a);
        });
        step = (step + 1) % 3;
    }
};
