#pragma once

#include "RowValues.h"

#include <QString>
#include <QtGlobal>

#include <string>
#include <string_view>

/// The caseless keys (see Utf8Text::caselessKey) of one text of every row of a list, side by side in one block of
/// memory, so that a walk over all of them allocates nothing and lower-cases nothing.
class CaselessTexts {
public:
    [[nodiscard]] qsizetype size() const { return m_spans.size(); }
    [[nodiscard]] std::string_view at(qsizetype row) const;
    /// True when looking for the key of a text in these keys finds what looking for the lower-cased text in the
    /// lower-cased texts finds. Half a surrogate pair, in any of them, has no UTF-8 form and makes it false.
    [[nodiscard]] bool canSearch(const QString &text) const;
    /// Every row in the order of the keys; rows with equal keys stay as they are in both directions.
    [[nodiscard]] QList<qsizetype> sortedRows(bool ascending) const;
    /// Bytes in use, those of former texts included; at most about twice what the present ones need.
    [[nodiscard]] qsizetype byteCount() const { return static_cast<qsizetype>(m_bytes.size()); }

    void reserve(qsizetype rows) { m_spans.reserve(rows); }
    void append(const QString &text);
    void replace(qsizetype row, const QString &text);
    void remove(const QList<qsizetype> &ascendingRows);
    /// As in RowValues.
    void reorder(const QList<qsizetype> &formerRows) { m_spans.reorder(formerRows); }
    void move(qsizetype from, qsizetype to) { m_spans.move(from, to); }

private:
    struct Span {
        qsizetype begin = 0;
        quint32 size = 0;
        bool isValid = true; ///< the text has a UTF-8 form
    };

    [[nodiscard]] Span added(const QString &text);
    void forget(const Span &span);
    void dropFormerTexts();

    std::string m_bytes;
    RowValues<Span> m_spans;
    qsizetype m_formerBytes = 0;
    qsizetype m_invalidTexts = 0;
};
