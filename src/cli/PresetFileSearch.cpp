#include "PresetFileSearch.h"

#include "DirectoryWalk.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

QList<PresetFileSearch::Entry> PresetFileSearch::below(const QString &directory)
{
    using Kind = DirectoryWalk::Kind;
    QList<Entry> entries;
    const QDir root(directory);
    const bool isSearched = DirectoryWalk::visit(directory, [&](const DirectoryWalk::Entry &found) {
        const QString path = root.filePath(found.path);
        if (found.kind == Kind::Directory) {
            if (!found.isListed) {
                entries.append({.path = path, .error = tr("the directory may not be searched")});
            }
            return;
        }
        if (!found.path.endsWith(QStringLiteral(".prst"), Qt::CaseInsensitive)) {
            return;
        }
        if (!found.isUtf8) {
            entries.append({.path = path, .error = tr("its name is not valid UTF-8")});
        } else if (found.kind == Kind::RegularFile || !QFileInfo(path).isDir()) {
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
