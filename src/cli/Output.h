#pragma once

#include <QByteArray>
#include <QString>

#include <nlohmann/json_fwd.hpp>

/// What a command prints: results on standard output, trouble on standard error.
namespace Output {

/// Text for standard output, flushed at once.
void print(const QString &text);
/// Bytes as they are.
void printBytes(const QByteArray &bytes);
/// One JSON document and a line feed.
void printJson(const nlohmann::ordered_json &document);
/// The same of a document of these members and one more, a list whose entries are written already, as
/// LibraryJson::listing() writes them; a large library never stands in memory as a tree.
void printJson(const nlohmann::ordered_json &members, const char *key, const QByteArray &entries);
/// False when anything could not be written to standard output.
[[nodiscard]] bool isComplete();

/// "velgor: " and the line, on standard error. Returns ExitStatus::Failed.
int fail(const QString &line);
/// "velgor: warning: " and the line, on standard error.
void warn(const QString &line);

/// JSON text holds Unicode; this is it without loss, U+FEFF included.
[[nodiscard]] std::string jsonText(const QString &text);

} // namespace Output
