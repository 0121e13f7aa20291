#include "PresetFileSearch.h"

#include "DirectoryWalk.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace {

bool isListable(const QString &directory)
{
    std::error_code error;
    const std::filesystem::directory_iterator entries(QFileInfo(directory).filesystemFilePath(), error);
    return !error;
}

} // namespace

QList<PresetFileSearch::Entry> PresetFileSearch::below(const QString &directory)
{
    using Kind = DirectoryListing::Kind;
    const auto denied = [] { return tr("the directory may not be searched"); };
    QList<Entry> entries;
    const QDir root(directory);
    const bool isSearched = DirectoryWalk::visit(directory, [&](const QString &relative, Kind kind) {
        const QString path = root.filePath(relative);
        if (kind == Kind::Directory) {
            if (!isListable(path)) {
                entries.append({.path = path, .error = denied()});
            }
            return;
        }
        const bool isNamedSo = relative.endsWith(QStringLiteral(".prst"), Qt::CaseInsensitive);
        if (isNamedSo && (kind == Kind::RegularFile || !QFileInfo(path).isDir())) {
            entries.append({.path = path, .error = {}});
        }
    });
    if (!isSearched) {
        entries.append({.path = directory, .error = tr("the directory could not be searched to its end")});
    }
    // By characters, which UTF-16 units are not.
    std::sort(entries.begin(), entries.end(),
        [](const Entry &one, const Entry &other) { return one.path.toUtf8() < other.path.toUtf8(); });
    return entries;
}
