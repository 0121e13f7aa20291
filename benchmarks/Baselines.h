#pragma once

#include "VelgorPatch.h"

#include <QByteArray>
#include <QList>

#include <string>
#include <vector>

/// The plain ways of doing what the program does, to measure it against.
namespace Baselines {

/// The regular files of a directory, as paths.
[[nodiscard]] std::vector<std::string> filesIn(const std::string &directory);
/// Reads every file and keeps its bytes in an allocation of its own.
[[nodiscard]] std::vector<std::string> readFiles(const std::vector<std::string> &paths);
void writeFile(const std::string &path, const QByteArray &bytes);
/// Walks through a directory once; the number of its entries.
[[nodiscard]] qsizetype scan(const std::string &directory);
void removeFiles(const std::vector<std::string> &paths);

/// The library file's text of patches, and the patches of a text, by Qt's own JSON document. Ids are texts there: its
/// numbers do not hold them.
[[nodiscard]] QByteArray encodeByDocument(const QList<VelgorPatch> &patches);
[[nodiscard]] QList<VelgorPatch> decodeByDocument(const QByteArray &text);

/// The rows that a filter shows, lower-casing each record's text as it comes.
[[nodiscard]] std::vector<qsizetype> rowsByName(const QList<VelgorPatch> &patches, const QString &fragment);
[[nodiscard]] std::vector<qsizetype> rowsByComment(const QList<VelgorPatch> &patches, const QString &words);

/// The rows in the stable order of keys that are ready to be compared.
[[nodiscard]] std::vector<qsizetype> sortedRows(const std::vector<std::string> &keys);

/// Reads all bytes of the preset data once, as 64-bit words; their exclusive or.
[[nodiscard]] quint64 readPayload(const QList<VelgorPatch> &patches);

} // namespace Baselines
