#pragma once

#include "SPresetFile.h"

#include <QByteArray>
#include <QString>

/// Records and files for tests, well-formed unless a test damages them.
namespace TestRecords {

/// A header with the version text `version`, cut or zero-padded to its 5 bytes, and `count` patches.
SHeaderDesc header(quint16 count = 1, const QByteArray &version = "V1.20");

/// A patch whose data is `dataSize` bytes that depend on `seed` alone.
SPatch patch(const QString &name, int seed = 1, int dataSize = 64);

/// A user impulse response of `dataSize` bytes, the 4 of its number included.
SUserIR userIR(quint32 number, int seed = 1, int dataSize = 32);

/// A file of these patches; without user IRs where `userIRs` is empty.
SPresetFile file(const QList<SPatch> &patches, QList<SUserIR> userIRs = {}, const QByteArray &version = "V1.20");

/// The bytes of such a file.
QByteArray fileBytes(
    const QList<SPatch> &patches, const QList<SUserIR> &userIRs = {}, const QByteArray &version = "V1.20");

} // namespace TestRecords
