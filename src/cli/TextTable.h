#pragma once

#include <QByteArrayList>
#include <QStringList>

/// Rows of text in aligned columns under a header. The last column is cut to the terminal's width, where standard
/// output is a terminal; nothing is cut otherwise.
class TextTable {
public:
    explicit TextTable(const QStringList &header);

    /// One text a column. Control characters are shown as escapes.
    void addRow(const QStringList &cells);
    /// On standard output, one line a row.
    void print() const;

private:
    void store(const QStringList &cells);

    QByteArrayList m_rows; ///< escaped cells between line feeds, which no cell holds: tables can be very long
    QList<int> m_widths;
};
