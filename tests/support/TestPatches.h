#pragma once

#include "TestRecords.h"
#include "VelgorPatch.h"

#include <QRandomGenerator>
#include <QStringList>

/// Library patches for tests.
namespace TestPatches {

/// As imported from a file; the sound depends on `seed` alone.
inline VelgorPatch imported(
    const QString &name, int seed = 1, const SUserIR &userIR = {}, const QByteArray &version = "V1.20")
{
    return VelgorPatch(TestRecords::patch(name, seed), userIR, TestRecords::header(1, version));
}

/// As decoded from a library file: without preset data.
inline VelgorPatch stored(quint64 id, const QString &name)
{
    VelgorPatch patch(id);
    patch.name = name;
    return patch;
}

inline QStringList names(const QList<VelgorPatch> &patches)
{
    QStringList result;
    for (const VelgorPatch &patch : patches) {
        result.append(patch.name);
    }
    return result;
}

inline QList<quint64> ids(const QList<VelgorPatch> &patches)
{
    QList<quint64> result;
    for (const VelgorPatch &patch : patches) {
        result.append(patch.id());
    }
    return result;
}

/// Every field, and not only what operator== compares.
inline bool isIdentical(const VelgorPatch &a, const VelgorPatch &b)
{
    return a == b && a.id() == b.id() && a.empty == b.empty && a.records == b.records;
}

/// Up to `longest` characters from everywhere in Unicode, with those among them that formats tend to lose.
inline QString randomText(QRandomGenerator &random, int longest)
{
    static const QString awkward =
        QString::fromUtf8("\"\\/\b\f\n\r\t\x01\x1f\x7f\u2028\uFEFF\uFFFDiI\u0130\u00df {}[],:");
    QString text;
    for (int count = static_cast<int>(random.bounded(longest + 1)); count > 0; --count) {
        char32_t character = 0;
        switch (random.bounded(5)) {
        case 0:
            character = awkward.at(random.bounded(awkward.size())).unicode();
            break;
        case 1:
            character = random.bounded(0x80U);
            break;
        case 2:
            character = random.bounded(0xD800U);
            break;
        case 3:
            character = random.bounded(0xE000U, 0x10000U);
            break;
        default:
            character = random.bounded(0x10000U, 0x110000U);
        }
        text += QString::fromUcs4(&character, 1);
    }
    return text;
}

} // namespace TestPatches
