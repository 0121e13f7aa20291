#include "CaselessTexts.h"

#include "Utf8Text.h"

#include <QtEndian>

#include <array>
#include <cstring>

namespace {

/// A key's first bytes as numbers that order as they do: all of a name's, as a rule, so that the sort seldom has to
/// look at the texts themselves.
struct SortKey {
    std::array<quint64, 2> start;
    qsizetype row;
};

std::array<quint64, 2> startOf(std::string_view text)
{
    std::array<quint64, 2> start{};
    std::memcpy(start.data(), text.data(), std::min(text.size(), sizeof start));
    return {qFromBigEndian(start[0]), qFromBigEndian(start[1])};
}

bool isAscii(char16_t unit)
{
    return unit < 0x80;
}

char lowered(char16_t unit)
{
    return static_cast<char>(unit >= u'A' && unit <= u'Z' ? unit + (u'a' - u'A') : unit);
}

} // namespace

std::string_view CaselessTexts::at(qsizetype row) const
{
    const Span &span = m_spans.at(row);
    return {m_bytes.data() + span.begin, span.size};
}

bool CaselessTexts::canSearch(const QString &text) const
{
    return m_invalidTexts == 0 && text.isValidUtf16();
}

QList<qsizetype> CaselessTexts::sortedRows(bool ascending) const
{
    std::vector<SortKey> keys;
    keys.reserve(static_cast<size_t>(size()));
    for (qsizetype row = 0; row < size(); ++row) {
        keys.push_back({.start = startOf(at(row)), .row = row});
    }
    const auto isBefore = [this](const SortKey &a, const SortKey &b) {
        return a.start == b.start ? at(a.row) < at(b.row) : a.start < b.start;
    };
    std::stable_sort(keys.begin(), keys.end(), [&isBefore, ascending](const SortKey &a, const SortKey &b) {
        return ascending ? isBefore(a, b) : isBefore(b, a);
    });
    QList<qsizetype> rows;
    rows.reserve(size());
    for (const SortKey &key : keys) {
        rows.append(key.row);
    }
    return rows;
}

void CaselessTexts::append(const QString &text)
{
    m_spans.append(added(text));
}

void CaselessTexts::replace(qsizetype row, const QString &text)
{
    forget(m_spans.at(row));
    m_spans[row] = added(text);
    dropFormerTexts();
}

void CaselessTexts::remove(const QList<qsizetype> &ascendingRows)
{
    for (const qsizetype row : ascendingRows) {
        forget(m_spans.at(row));
    }
    m_spans.remove(ascendingRows);
    dropFormerTexts();
}

CaselessTexts::Span CaselessTexts::added(const QString &text)
{
    const QStringView units(text);
    bool isValid = true;
    const size_t begin = m_bytes.size();
    const char16_t *const end = units.utf16() + units.size();
    if (std::all_of(units.utf16(), end, isAscii)) {
        // As most texts are, and without two texts in between.
        m_bytes.resize(begin + static_cast<size_t>(units.size()));
        std::transform(units.utf16(), end, m_bytes.begin() + static_cast<qsizetype>(begin), lowered);
    } else {
        const QByteArray key = Utf8Text::caselessKey(text);
        m_bytes.append(key.constData(), static_cast<size_t>(key.size()));
        isValid = units.isValidUtf16();
        m_invalidTexts += isValid ? 0 : 1;
    }
    return {.begin = static_cast<qsizetype>(begin),
        .size = static_cast<quint32>(m_bytes.size() - begin),
        .isValid = isValid};
}

void CaselessTexts::forget(const Span &span)
{
    m_formerBytes += span.size;
    m_invalidTexts -= span.isValid ? 0 : 1;
}

void CaselessTexts::dropFormerTexts()
{
    constexpr qsizetype worthTheWork = 4096;
    if (m_formerBytes < worthTheWork || m_formerBytes < byteCount() / 2) {
        return;
    }
    std::string bytes;
    bytes.reserve(static_cast<size_t>(byteCount() - m_formerBytes));
    for (qsizetype row = 0; row < size(); ++row) {
        const std::string_view text = at(row);
        m_spans[row].begin = static_cast<qsizetype>(bytes.size());
        bytes += text;
    }
    m_bytes = std::move(bytes);
    m_formerBytes = 0;
}
