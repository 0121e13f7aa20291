#include "LibraryViewFilter.h"

#include "VelgorLibrary.h"

#include <QStringList>
#include <QVarLengthArray>

#include <algorithm>
#include <numeric>
#include <string>
#include <string_view>

namespace {

QStringList commentWords(const QString &comment)
{
    return comment.toLower().split(u' ', Qt::SkipEmptyParts);
}

bool containsWords(const QString &searchin, const QStringList &words)
{
    if (words.isEmpty()) {
        return true;
    }
    const QString text = searchin.toLower();
    return std::all_of(words.begin(), words.end(), [&text](const QString &word) { return text.contains(word); });
}

/// What the template asks for, gathered once for a whole pass over a library.
struct Criteria {
    Criteria(const VelgorPatch &filterPatch, PatchFields::Rows fields)
        : name(filterPatch.name.toLower())
        , words(commentWords(filterPatch.comment))
    {
        for (const PatchField &field : fields) {
            if (field.isFilter && filterPatch.*field.flag) {
                flags.push_back(field.flag);
            }
        }
    }

    [[nodiscard]] bool meetsFlags(const VelgorPatch &patch) const
    {
        return std::all_of(flags.begin(), flags.end(), [&patch](auto flag) { return patch.*flag; });
    }

    [[nodiscard]] bool meets(const VelgorPatch &patch) const
    {
        return meetsFlags(patch) && (name.isEmpty() || patch.name.toLower().contains(name))
            && containsWords(patch.comment, words);
    }

    QVarLengthArray<bool VelgorPatch::*, 16> flags;
    QString name; ///< in lower case, as the words are
    QStringList words;
};

/// Leaves the rows whose text holds all of the lower-cased words.
void keepContaining(std::vector<qsizetype> &rows, const QStringList &words, const CaselessTexts &texts)
{
    std::vector<std::string> keys;
    for (const QString &word : words) {
        keys.push_back(word.toStdString());
    }
    std::erase_if(rows, [&](qsizetype row) {
        const std::string_view text = texts.at(row);
        return !std::all_of(keys.begin(), keys.end(),
            [text](const std::string &key) { return text.find(key) != std::string_view::npos; });
    });
}

} // namespace

LibraryViewFilter::LibraryViewFilter()
    : filterPatch(QString(), false)
{
    // The template's date means nothing; a fixed one makes two filters with the same criteria equal.
    filterPatch.date = {};
}

bool LibraryViewFilter::show(const VelgorPatch &patch, PatchFields::Rows rows) const
{
    return Criteria(filterPatch, rows).meets(patch);
}

QList<VelgorPatch> LibraryViewFilter::filter(const QList<VelgorPatch> &patches, PatchFields::Rows rows) const
{
    const Criteria criteria(filterPatch, rows);
    QList<VelgorPatch> shown;
    std::copy_if(patches.begin(), patches.end(), std::back_inserter(shown),
        [&criteria](const VelgorPatch &patch) { return criteria.meets(patch); });
    return shown;
}

std::vector<qsizetype> LibraryViewFilter::shownRows(const VelgorLibrary &library, PatchFields::Rows fields) const
{
    const Criteria criteria(filterPatch, fields);
    const QList<VelgorPatch> &patches = library.patches();
    std::vector<qsizetype> rows(static_cast<size_t>(patches.size()));
    std::iota(rows.begin(), rows.end(), 0);
    // Without a criterion for it, a text need not be lower-cased.
    const bool hasKeys = (criteria.name.isEmpty() || library.caselessNames().canSearch(filterPatch.name))
        && (criteria.words.isEmpty() || library.caselessComments().canSearch(filterPatch.comment));
    if (!hasKeys) {
        std::erase_if(rows, [&](qsizetype row) { return !criteria.meets(patches.at(row)); });
        return rows;
    }
    if (!criteria.flags.isEmpty()) {
        std::erase_if(rows, [&](qsizetype row) { return !criteria.meetsFlags(patches.at(row)); });
    }
    if (!criteria.name.isEmpty()) {
        keepContaining(rows, {criteria.name}, library.caselessNames());
    }
    if (!criteria.words.isEmpty()) {
        keepContaining(rows, criteria.words, library.caselessComments());
    }
    return rows;
}

bool LibraryViewFilter::containsComment(const QString &searchin, const QString &comment)
{
    return containsWords(searchin, commentWords(comment));
}
