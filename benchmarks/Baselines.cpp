#include "Baselines.h"

#include "PatchFields.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <numeric>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace {

void require(bool condition, const std::string &path)
{
    if (!condition) {
        std::perror(path.c_str());
        std::exit(2);
    }
}

template <typename Visit>
void visitEntries(const std::string &directory, Visit visit)
{
    DIR *stream = ::opendir(directory.c_str());
    require(stream != nullptr, directory);
    while (const dirent *entry = ::readdir(stream)) {
        visit(*entry);
    }
    ::closedir(stream);
}

template <typename Condition>
std::vector<qsizetype> rowsWhere(const QList<VelgorPatch> &patches, Condition condition)
{
    std::vector<qsizetype> rows;
    for (qsizetype row = 0; row < patches.size(); ++row) {
        if (condition(patches.at(row))) {
            rows.push_back(row);
        }
    }
    return rows;
}

} // namespace

namespace Baselines {

std::vector<std::string> filesIn(const std::string &directory)
{
    std::vector<std::string> paths;
    visitEntries(directory, [&](const dirent &entry) {
        if (entry.d_type == DT_REG) {
            paths.push_back(directory + '/' + &entry.d_name[0]);
        }
    });
    return paths;
}

std::vector<std::string> readFiles(const std::vector<std::string> &paths)
{
    // Kept from call to call: filling it anew would take longer than the reading.
    static std::vector<char> buffer(64U << 20U);
    std::vector<std::string> contents;
    contents.reserve(paths.size());
    for (const std::string &path : paths) {
        const int handle = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
        const ssize_t count = ::read(handle, buffer.data(), buffer.size());
        require(count >= 0, path);
        ::close(handle);
        contents.emplace_back(buffer.data(), static_cast<std::size_t>(count));
    }
    return contents;
}

void writeFile(const std::string &path, const QByteArray &bytes)
{
    const int handle = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    require(::write(handle, bytes.constData(), static_cast<std::size_t>(bytes.size())) == bytes.size(), path);
    ::close(handle);
}

qsizetype scan(const std::string &directory)
{
    qsizetype count = 0;
    visitEntries(directory, [&](const dirent &) { ++count; });
    return count;
}

void removeFiles(const std::vector<std::string> &paths)
{
    for (const std::string &path : paths) {
        require(::unlink(path.c_str()) == 0, path);
    }
}

QByteArray encodeByDocument(const QList<VelgorPatch> &patches)
{
    QJsonArray array;
    for (const VelgorPatch &patch : patches) {
        QJsonObject object;
        for (const PatchField &field : PatchFields::all()) {
            const QLatin1String key(field.key);
            if (field.text) {
                object.insert(key, patch.*(field.text));
            } else if (field.flag) {
                object.insert(key, patch.*(field.flag));
            }
        }
        object.insert(QLatin1String("id"), QString::number(patch.id()));
        object.insert(QLatin1String("date"), patch.date.seconds);
        array.append(object);
    }
    const QJsonObject library{{QStringLiteral("patches"), array}, {QStringLiteral("defaultPatch"), QJsonValue()}};
    return QJsonDocument(library).toJson(QJsonDocument::Compact);
}

QList<VelgorPatch> decodeByDocument(const QByteArray &text)
{
    const QJsonArray array = QJsonDocument::fromJson(text).object().value(QLatin1String("patches")).toArray();
    QList<VelgorPatch> patches;
    patches.reserve(array.size());
    for (const QJsonValue &value : array) {
        const QJsonObject object = value.toObject();
        VelgorPatch patch(object.value(QLatin1String("id")).toString().toULongLong());
        for (const PatchField &field : PatchFields::all()) {
            const QLatin1String key(field.key);
            if (field.text) {
                patch.*(field.text) = object.value(key).toString();
            } else if (field.flag) {
                patch.*(field.flag) = object.value(key).toBool();
            }
        }
        patch.date = {object.value(QLatin1String("date")).toDouble()};
        patches.append(patch);
    }
    return patches;
}

std::vector<qsizetype> rowsByName(const QList<VelgorPatch> &patches, const QString &fragment)
{
    const QString wanted = fragment.toLower();
    return rowsWhere(patches, [&](const VelgorPatch &patch) { return patch.name.toLower().contains(wanted); });
}

std::vector<qsizetype> rowsByComment(const QList<VelgorPatch> &patches, const QString &words)
{
    const QStringList wanted = words.toLower().split(u' ');
    return rowsWhere(patches, [&](const VelgorPatch &patch) {
        const QString text = patch.comment.toLower();
        return std::all_of(wanted.begin(), wanted.end(), [&](const QString &word) { return text.contains(word); });
    });
}

std::vector<qsizetype> sortedRows(const std::vector<std::string> &keys)
{
    std::vector<qsizetype> rows(keys.size());
    std::iota(rows.begin(), rows.end(), 0);
    const auto key = [&](qsizetype row) -> const std::string & { return keys[static_cast<std::size_t>(row)]; };
    std::stable_sort(rows.begin(), rows.end(), [&](qsizetype a, qsizetype b) { return key(a) < key(b); });
    return rows;
}

quint64 readPayload(const QList<VelgorPatch> &patches)
{
    quint64 sum = 0;
    const auto read = [&sum](const QByteArray &bytes) {
        for (qsizetype i = 0; i + 8 <= bytes.size(); i += 8) {
            quint64 word = 0;
            std::memcpy(&word, bytes.constData() + i, sizeof word);
            sum ^= word;
        }
    };
    for (const VelgorPatch &patch : patches) {
        read(patch.records->patchData.data);
        read(patch.records->userIRData.data);
    }
    return sum;
}

} // namespace Baselines
