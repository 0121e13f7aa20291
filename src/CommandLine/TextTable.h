#pragma once

#include <QStringList>

/// Rows of text in aligned columns under a header. The last column is cut to the terminal's width, where standard
/// output is a terminal; nothing is cut otherwise.
class TextTable {
public:
    explicit TextTable(const QStringList &header);

    /// One text a column. Control characters are shown as escapes.
    void addRow(const QStringList &cells);
    /// Lines, each with a line feed.
    [[nodiscard]] QString text() const;

private:
    QList<QStringList> m_rows;
};
