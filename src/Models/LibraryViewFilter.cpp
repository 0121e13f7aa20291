#include "LibraryViewFilter.h"

#include <QStringList>

#include <algorithm>
#include <array>

namespace {

constexpr std::array askedFlags{&VelgorPatch::hasUserIR, &VelgorPatch::guitar, &VelgorPatch::bass, &VelgorPatch::clean,
    &VelgorPatch::crunch, &VelgorPatch::drive, &VelgorPatch::higain, &VelgorPatch::rythm, &VelgorPatch::solo};

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

/// The template's texts, lower-cased once for a whole pass over a library.
class Criteria {
public:
    explicit Criteria(const VelgorPatch &filterPatch)
        : m_filterPatch(filterPatch)
        , m_name(filterPatch.name.toLower())
        , m_words(commentWords(filterPatch.comment))
    {
    }

    [[nodiscard]] bool meets(const VelgorPatch &patch) const
    {
        const auto flagIsMet = [&](auto flag) { return !(m_filterPatch.*flag) || patch.*flag; };
        return std::all_of(askedFlags.begin(), askedFlags.end(), flagIsMet)
            && (m_name.isEmpty() || patch.name.toLower().contains(m_name)) && containsWords(patch.comment, m_words);
    }

private:
    const VelgorPatch &m_filterPatch;
    QString m_name;
    QStringList m_words;
};

} // namespace

LibraryViewFilter::LibraryViewFilter()
    : filterPatch(QString(), false)
{
    // The template's date means nothing; a fixed one makes two filters with the same criteria equal.
    filterPatch.date = {};
}

bool LibraryViewFilter::show(const VelgorPatch &patch) const
{
    return Criteria(filterPatch).meets(patch);
}

QList<VelgorPatch> LibraryViewFilter::filter(const QList<VelgorPatch> &patches) const
{
    const Criteria criteria(filterPatch);
    QList<VelgorPatch> shown;
    std::copy_if(patches.begin(), patches.end(), std::back_inserter(shown),
        [&criteria](const VelgorPatch &patch) { return criteria.meets(patch); });
    return shown;
}

std::vector<qsizetype> LibraryViewFilter::shownRows(const QList<VelgorPatch> &patches) const
{
    const Criteria criteria(filterPatch);
    std::vector<qsizetype> rows;
    rows.reserve(static_cast<size_t>(patches.size()));
    for (qsizetype row = 0; row < patches.size(); ++row) {
        if (criteria.meets(patches.at(row))) {
            rows.push_back(row);
        }
    }
    return rows;
}

bool LibraryViewFilter::containsComment(const QString &searchin, const QString &comment)
{
    return containsWords(searchin, commentWords(comment));
}
